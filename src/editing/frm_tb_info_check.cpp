#include <fmt/format.h>

#include <optional>

#include "common/message.h"
#include "common/text.h"
#include "editing/detail_parts.h"
#include "editing/tb_info_parts.h"
#include "engine/sql_text.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace {

constexpr std::size_t kWordWidth = 10;

/// Signs that lists, references and statements use around names.
constexpr std::string_view kNameSigns = "'\"[]<>@:";
/// Signs that no table of a database and no file can have in its name.
constexpr std::string_view kTableSigns = "\\/*?|,";

bool holdsAny(std::string_view text, std::string_view signs) {
  for (const char c : text)
    if (static_cast<unsigned char>(c) < 0x20 || signs.find(c) != std::string_view::npos) return true;
  return false;
}

bool blank(const std::string& text) { return trim(text).empty(); }

/// The first fault of the fields that must be filled, "" when there is none.
std::string missing(const frmTBInfo& screen, bool full) {
  if (blank(screen.TxtJPN.text)) return "日本語名が未設定です.";
  if (blank(screen.TxtTableName.text)) return "テーブル名が未設定です.";
  if (blank(screen.CmbFileType.text)) return "データベースが未設定です.";
  if (!full) return "";
  if (blank(screen.CmbBunrui.text)) return "目的分類が未設定です.";
  if (blank(screen.TxtMemo.text)) return "概要が未設定です.";
  if (blank(screen.TxtRyaku.text)) return "略名が未設定です.";
  if (blank(screen.CmbKanKaku.text)) return "作成間隔が未設定です.";
  return "";
}

std::string forbiddenCharacter(const frmTBInfo& screen) {
  if (holdsAny(screen.TxtJPN.text, kNameSigns)) return "日本語名に使用しては\nいけない文字が含まれています.";
  std::string_view name = trim(screen.TxtTableName.text);
  // A table that was read from a live database bears an "@" at its end.
  if (screen.loadedReverse && name.ends_with('@')) name.remove_suffix(1);
  if (holdsAny(name, kNameSigns) || holdsAny(name, kTableSigns))
    return "テーブル名に使用しては\nいけない文字が含まれています.";
  return "";
}

std::string tooLong(const frmTBInfo& screen) {
  if (gLenB(screen.CmbDataBunrui.text) > kWordWidth || gLenB(screen.CmbDataBunrui2.text) > kWordWidth)
    return "データ分類は10文字以内です.";
  if (gLenB(screen.CmbKanKaku.text) > kWordWidth) return "作成間隔は10文字以内です.";
  return "";
}

std::string badDate(const frmTBInfo& screen, std::string_view made, std::string_view ended, std::string_view changed) {
  const std::pair<const TextBox*, std::string_view> dates[] = {
      {&screen.TxtMakeDate, made}, {&screen.TxtEndDate, ended}, {&screen.TxtChgDate, changed}};
  for (const auto& [box, word] : dates)
    if (!blank(box->text) && !parseDateTime(trim(box->text))) return fmt::format("{}が不正な日付です.", word);
  return "";
}

/// Whether another live table of the System has one of the names.
std::string nameInUse(Session& session, const frmTBInfo& screen) {
  const std::string japanese(trim(screen.TxtJPN.text));
  const std::string name = storedTableName(session, screen.TxtTableName.text);
  const std::string id = screen.lblID.caption.empty() ? "0" : screen.lblID.caption;
  const std::string sql =
      "SELECT inf.テーブル名, inf.日本語名 FROM MAS_TABLEINFO AS inf  WHERE inf.削除フラグ = 0 And (inf.日本語名 =" +
      sqlText(japanese) + "     OR inf.テーブル名 =" + sqlText(name) + ")   AND inf.ID <> " + id +
      "  AND inf.システム名 = " + sqlText(screen.lblSystemName.caption);
  bool sameJapanese = false;
  for (Recordset rows = session.gDB->openRecordset(sql); !rows.eof(); rows.moveNext()) {
    if (equalsNoCase(trim(rows.text(0)), name)) return "テーブル名が他で使用されています.";
    sameJapanese = true;
  }
  return sameJapanese ? "日本語名が他で使用されています." : "";
}

bool tell(Host& host, const std::string& fault) {
  if (fault.empty()) return false;
  gMsgBox(host, fault, kOkOnly | kWarningIcon, "入力確認");
  return true;
}

bool check(Session& session, Host& host, frmTBInfo& screen, bool full) {
  for (const std::string& fault : {missing(screen, full), forbiddenCharacter(screen), tooLong(screen),
                                   badDate(screen, "作成日", "完了日", "変更日")})
    if (tell(host, fault)) return true;
  return kindMustStay(session, host, screen) || tell(host, nameInUse(session, screen));
}

}  // namespace

bool pChkTableInfo(Session& session, Host& host, frmTBInfo& screen) { return check(session, host, screen, true); }

bool pChkPrjInfo(Session& session, Host& host, frmTBInfo& screen) { return check(session, host, screen, false); }

bool pChkMemberInfo(Session& session, Host& host, frmTBInfo& screen) {
  if (blank(screen.TxtJPN.text)) return tell(host, "名称が未設定です.");
  if (tell(host, badDate(screen, "参加日", "終了予定日", "終了日"))) return true;
  return kindMustStay(session, host, screen);
}

}  // namespace quillmarden
