#include "editing/save_conflict.h"

#include "common/message.h"

namespace quillmarden {

namespace {

std::string knownOr(const std::string& word) { return word.empty() ? std::string("不明") : word; }

std::string joinedDifferences(const LoadedRows& before, const LoadedRows& now) {
  std::string text;
  for (const std::string& line : differences(before, now)) text.append(text.empty() ? "" : "\n").append(line);
  return text;
}

}  // namespace

ConflictWay askConflict(Host& host, const frmTBDetail& screen, const LoadedRows& stored, const LastSaver& saver) {
  if (screen.leave.over) return ConflictWay::kMine;
  const std::string details = joinedDifferences(screen.loaded, stored);
  const std::string text = joinLines({"読み込みの後に、このテーブルは他で更新されています.",
                                      " 更新者 : " + knownOr(saver.user), " 更新年月日 : " + knownOr(saver.moment)});
  if (!screen.leave.asks || !host.dialogs.choose) {
    gMsgBox(host, joinLines({text, details, "更新していません."}), kOkOnly | kStopIcon);
    return ConflictWay::kNone;
  }
  switch (host.dialogs.choose(text, details, {"更新された内容を読み込む", "画面の内容で上書きする"}, "確認")) {
    case 0:
      return ConflictWay::kTheirs;
    case 1:
      return ConflictWay::kMine;
    default:
      return ConflictWay::kNone;
  }
}

void tellLost(Host& host, const std::vector<std::string>& renewed, const std::vector<std::string>& lost) {
  std::string text;
  const auto add = [&](std::string_view heading, const std::vector<std::string>& lines) {
    if (lines.empty()) return;
    text.append(text.empty() ? "" : "\n").append(heading);
    for (const std::string& line : lines) text.append("\n ").append(line);
  };
  add("他で削除された次の項目は、新しい項目として登録しました. インデックスと外部参照は引き継がれません.", renewed);
  add("次の定義は、対象の項目がなくなったため失われました.", lost);
  if (!text.empty()) gMsgBox(host, text, kOkOnly | kWarningIcon);
}

}  // namespace quillmarden
