#include "excel/format_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "common/message.h"
#include "common/numbers.h"
#include "common/paths.h"
#include "common/text.h"
#include "common/text_file.h"

namespace quillmarden {
namespace {

constexpr std::array<std::string_view, kLayoutKeyCount> kKeyTexts = {
    "KEY_1ページの行数:",  "KEY_1ページ記入項目数:",
    "KEY_日本語名:",       "KEY_TABLE_NAME:",
    "KEY_システム名:",     "KEY_作成日:",
    "KEY_修正日:",         "KEY_修正回数:",
    "KEY_概要1:",          "KEY_概要2:",
    "KEY_概要3:",          "KEY_概要4:",
    "KEY_概要1行文字数:",  "KEY_ファイル種別:",
    "KEY_作成間隔:",       "KEY_想定数:",
    "KEY_想定保持:",       "KEY_作成者:",
    "KEY_PCTFREE:",        "KEY_PCTUSED:",
    "KEY_INITIAL:",        "KEY_NEXT:",
    "KEY_MINEXTENTS:",     "KEY_MAXEXTENTS:",
    "KEY_PCTINCREASE:",    "KEY_開始行:",
    "KEY_項目名(日本語):", "KEY_項目名:",
    "KEY_KEY表示:",        "KEY_型:",
    "KEY_桁数整数:",       "KEY_桁数少数:",
    "KEY_項目番号:",       "KEY_項目分類:",
    "KEY_NULL値:",         "KEY_備考:",
    "KEY_値リスト:",       "KEY_項目変更日:",
    "KEY_参照:",           "KEY_チェック制約:",
    "KEY_コメント間隔:",   "KEY_コメント番号:",
    "KEY_コメント内容:",   "KEY_コメント日付:",
};

constexpr std::string_view kNotSet = "が未設定です.";
constexpr std::string_view kNoNumber = "に数字以外が設定されています.";

/// Whether people would read the text as a number, groups of digits parted by "," included.
bool isTypedNumber(std::string_view text) { return isNumeric(gReplaceAll(text, ",", "")); }

void addFault(std::string& errorText, std::string_view fault) {
  errorText = trim(errorText).empty() ? std::string(fault) : joinLines({errorText, fault});
}

std::optional<LayoutKey> keyOf(std::string_view text) {
  const auto found = std::ranges::find(kKeyTexts, text);
  if (found == kKeyTexts.end()) return std::nullopt;
  return static_cast<LayoutKey>(found - kKeyTexts.begin());
}

void readLine(std::string_view line, LayoutFormat& format) {
  const std::string_view text = trim(line);
  const std::size_t colon = text.find(':');
  // A key without a value leaves its field as it is.
  if (colon == std::string_view::npos || colon + 1 == text.size()) return;
  if (const auto key = keyOf(text.substr(0, colon + 1))) {
    format[*key] = text.substr(colon + 1);
  }
}

std::string defaultText(std::string_view name, const DateTime& now) {
  std::string out;
  const auto line = [&out](std::string_view text) { (out += text) += "\r\n"; };
  const auto key = [&line](LayoutKey which, std::string_view value = "") {
    line(fmt::format("{}{}", layoutKeyText(which), value));
  };
  const auto keys = [&key](LayoutKey first, LayoutKey last) {
    for (auto at = static_cast<std::size_t>(first); at <= static_cast<std::size_t>(last); ++at) {
      key(static_cast<LayoutKey>(at));
    }
  };
  line("#-------------------------------------");
  line("# Quillmaden テーブルレイアウト出力設定");
  line(fmt::format("# 書式ファイル:{}", name));
  line(fmt::format("# 作成日      :{}", formatDateTime(now, "yyyy/mm/dd hh:nn:ss")));
  line("#記入方法は各キーワードの:Excel列名を記入してください.");
  line("#例:");
  line("#KEY_日本語名:A2");
  line("#KEY_TABLE_NAME:O8");
  line("-------------------------------------");
  line("[BASE SECTION]");
  line("#数字を入力する.");
  key(LayoutKey::PageLines, "60");
  line("#数字を入力する.");
  key(LayoutKey::PageFields, "40");
  line("[HEADER SECTION]");
  line("#■■■■■省略不可■■■■■");
  keys(LayoutKey::JapaneseName, LayoutKey::CreatedAt);
  line("#■■■■■省略可■■■■■");
  keys(LayoutKey::ChangedAt, LayoutKey::Outline4);
  line("#数字を入力する.");
  key(LayoutKey::OutlineWidth);
  keys(LayoutKey::FileType, LayoutKey::PctIncrease);
  line("-------------------------------------");
  line("[BODY SECTION]");
  line("■■■■■省略不可■■■■■");
  line("#数字を入力する.");
  key(LayoutKey::StartRow);
  line("#列名のみ記入してください(繰り返しをするため)");
  line("#繰り返し数は、BASE SECTIONのKEY_1ページ記入項目数で設定してください.");
  keys(LayoutKey::FieldJapaneseName, LayoutKey::FractionDigits);
  line("#■■■■■省略可■■■■■");
  keys(LayoutKey::FieldNumber, LayoutKey::CheckConstraint);
  line("-------------------------------------");
  line("#■■■■■省略可■■■■■");
  line("[COMMENT_SECTION]");
  keys(LayoutKey::CommentInterval, LayoutKey::CommentDate);
  return out;
}

}  // namespace

bool LayoutFormat::has(LayoutKey key) const { return !trim((*this)[key]).empty(); }

std::string_view layoutKeyText(LayoutKey key) { return kKeyTexts[static_cast<std::size_t>(key)]; }

std::string layoutFormatPath(const Session& session, std::string_view name) {
  return gPathJoin(session.gDataFolder, std::string(name) + ".inf");
}

int gGetLayoutFormat(Session& session, Host& host, std::string_view name, LayoutFormat& format, std::string& errorText,
                     bool check) {
  const std::string path = layoutFormatPath(session, name);
  if (!gFileExists(host, path, true)) {
    errorText = "書式ファイルが存在しない";
  } else {
    std::error_code error;
    const auto bytes = readFile(toPath(path), error);
    if (!bytes) {
      errorText = error.message();
      return -1;
    }
    const std::string text = decodeText(*bytes);
    for (const std::string_view line : splitLines(text)) {
      readLine(line, format);
    }
  }
  return check ? pChkLayoutFormat(format, errorText) : 0;
}

int pChkLayoutFormat(const LayoutFormat& format, std::string& errorText) {
  const auto mandatory = [&](LayoutKey key, std::string_view shown) {
    if (!format.has(key)) addFault(errorText, joinLines({shown, kNotSet}));
  };
  const auto numeric = [&](LayoutKey key, std::string_view blankFault, std::string_view numberFault) {
    if (!format.has(key)) {
      addFault(errorText, blankFault);
    } else if (!isTypedNumber(format[key])) {
      addFault(errorText, numberFault);
    }
  };
  // People know this text with its stray letter, and scripts look for it.
  numeric(LayoutKey::PageLines, "KEY_h1ページの行数が未設定です.", joinLines({"KEY_1ページの行数", kNoNumber}));
  numeric(LayoutKey::PageFields, joinLines({"KEY_1ページ記入項目数", kNotSet}),
          joinLines({"KEY_1ページ記入項目数", kNoNumber}));
  mandatory(LayoutKey::JapaneseName, "KEY_日本語名");
  mandatory(LayoutKey::TableName, "KEY_TABLE_NAME");
  mandatory(LayoutKey::SystemName, "KEY_システム名");
  mandatory(LayoutKey::CreatedAt, "KEY_作成日");
  numeric(LayoutKey::StartRow, joinLines({"KEY_開始行", kNotSet}),
          joinLines({"KEY_開始行に数字以外", "が設定されています."}));
  mandatory(LayoutKey::FieldJapaneseName, "KEY_項目名日本語");
  mandatory(LayoutKey::FieldName, "KEY_項目名");
  mandatory(LayoutKey::KeyMark, "KEY_KEY表示");
  mandatory(LayoutKey::Type, "KEY_型");
  mandatory(LayoutKey::WholeDigits, "KEY_桁数整数");
  mandatory(LayoutKey::FractionDigits, "KEY_桁数少数");
  if (format.has(LayoutKey::OutlineWidth) && !isTypedNumber(format[LayoutKey::OutlineWidth])) {
    addFault(errorText, joinLines({"KEY_概要1行文字数以外", "が設定されています."}));
  }
  return errorText.empty() ? 0 : -1;
}

bool writeDefaultLayoutFormat(Session& session, Host& host, std::string_view name) {
  const std::string path = layoutFormatPath(session, name);
  if (gFileExists(host, path, false)) return false;
  if (replaceFile(toPath(path), encodeText(defaultText(name, host.clock.now())))) return false;
  gMsgBox(host, joinLines({"書式ファイルを作成できませんでした.", " " + path}), kStopIcon);
  return true;
}

void gPutLayoutFormatDefault(Session& session, Host& host, std::string_view name) {
  if (!writeDefaultLayoutFormat(session, host, name)) {
    host.opener.openFile(toPath(layoutFormatPath(session, name)));
  }
}

}  // namespace quillmarden
