#include <fmt/format.h>

#include <tuple>

#include "common/message.h"
#include "common/text.h"
#include "common/typed_cell.h"
#include "editing/detail_parts.h"
#include "editing/tb_info_parts.h"
#include "engine/sql_text.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace {

constexpr std::size_t kWordWidth = 10;
constexpr int kShortNameWidth = 50;

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

/// What is wrong on the screen, and where; a blank text for nothing.
struct HeaderFault {
  std::string text;
  std::string_view control;
};

/// A box that must be filled, and what is said of a blank one.
struct RequiredBox {
  std::string_view control;
  const std::string* text;
  std::string_view fault;
};

std::vector<RequiredBox> requiredBoxes(const frmTBInfo& screen) {
  if (screen.CmbFileType.text == kMemberKind) return {{"TxtJPN", &screen.TxtJPN.text, "名称が未設定です."}};
  std::vector<RequiredBox> boxes = {{"TxtJPN", &screen.TxtJPN.text, "日本語名が未設定です."},
                                    {"TxtTableName", &screen.TxtTableName.text, "テーブル名が未設定です."},
                                    {"CmbFileType", &screen.CmbFileType.text, "データベースが未設定です."}};
  if (screen.CmbFileType.text == kPrjKind) return boxes;
  boxes.push_back({"CmbBunrui", &screen.CmbBunrui.text, "目的分類が未設定です."});
  boxes.push_back({"TxtMemo", &screen.TxtMemo.text, "概要が未設定です."});
  boxes.push_back({"TxtRyaku", &screen.TxtRyaku.text, "略名が未設定です."});
  boxes.push_back({"CmbKanKaku", &screen.CmbKanKaku.text, "作成間隔が未設定です."});
  return boxes;
}

/// The first of them that is blank.
HeaderFault missing(const frmTBInfo& screen) {
  for (const RequiredBox& box : requiredBoxes(screen))
    if (blank(*box.text)) return {std::string(box.fault), box.control};
  return {};
}

/// Looks at what is stored: half-width forms turn full-width signs into plain ones.
HeaderFault forbiddenCharacter(const Session& session, const frmTBInfo& screen) {
  if (holdsAny(screen.TxtJPN.text, kNameSigns))
    return {"日本語名に使用しては\nいけない文字が含まれています.", "TxtJPN"};
  const std::string stored = storedTableName(session, screen.TxtTableName.text);
  std::string_view name = stored;
  // A table that was read from a live database bears an "@" at its end.
  if (screen.loadedReverse && name.ends_with('@')) name.remove_suffix(1);
  if (holdsAny(name, kNameSigns) || holdsAny(name, kTableSigns))
    return {"テーブル名に使用しては\nいけない文字が含まれています.", "TxtTableName"};
  return {};
}

HeaderFault tooLong(const Session& session, const frmTBInfo& screen) {
  if (gLenB(screen.CmbDataBunrui.text) > kWordWidth) return {"データ分類は10文字以内です.", "CmbDataBunrui"};
  if (gLenB(screen.CmbDataBunrui2.text) > kWordWidth) return {"データ分類は10文字以内です.", "CmbDataBunrui2"};
  if (gLenB(screen.CmbKanKaku.text) > kWordWidth) return {"作成間隔は10文字以内です.", "CmbKanKaku"};
  if (gLenB(storedRyaku(session, screen.TxtRyaku.text)) > static_cast<std::size_t>(kShortNameWidth))
    return {"略名が長すぎます. " + limitText(kShortNameWidth) + "までです.", "TxtRyaku"};
  return {};
}

HeaderFault badDate(const frmTBInfo& screen, std::string_view made, std::string_view ended, std::string_view changed) {
  const std::tuple<const TextBox*, std::string_view, std::string_view> dates[] = {
      {&screen.TxtMakeDate, "TxtMakeDate", made},
      {&screen.TxtEndDate, "TxtEndDate", ended},
      {&screen.TxtChgDate, "TxtChgDate", changed}};
  for (const auto& [box, control, word] : dates)
    if (!blank(box->text) && !parseDateTime(trim(box->text)))
      return {fmt::format("{}が不正な日付です.", word), control};
  return {};
}

/// The names of the screen that another live table of the System has. Lists of persons may bear one name more than
/// once, but not one short name.
HeaderFault nameInUse(Session& session, const frmTBInfo& screen) {
  TableNames names{"", "", storedRyaku(session, screen.TxtRyaku.text)};
  if (screen.CmbFileType.text != kMemberKind) {
    names.table = storedTableName(session, screen.TxtTableName.text);
    names.japanese = trim(screen.TxtJPN.text);
  }
  const std::string text = tableNameInUse(session, screen.lblSystemName.caption, screen.lblID.caption, names);
  const std::string_view control = text.starts_with("テーブル名") ? "TxtTableName"
                                   : text.starts_with("日本語名") ? "TxtJPN"
                                                                  : "TxtRyaku";
  return {text, control};
}

bool tell(Host& host, frmTBInfo& screen, const HeaderFault& fault) {
  if (fault.text.empty()) return false;
  screen.refused = true;
  screen.focus = fault.control;
  gMsgBox(host, fault.text, kOkOnly | kWarningIcon, "入力確認");
  return true;
}

bool check(Session& session, Host& host, frmTBInfo& screen) {
  for (const HeaderFault& fault : {missing(screen), forbiddenCharacter(session, screen), tooLong(session, screen),
                                   badDate(screen, "作成日", "完了日", "変更日")})
    if (tell(host, screen, fault)) return true;
  return kindMustStay(session, host, screen) || tell(host, screen, nameInUse(session, screen));
}

}  // namespace

std::vector<std::string_view> missingBoxes(const frmTBInfo& screen) {
  std::vector<std::string_view> names;
  for (const RequiredBox& box : requiredBoxes(screen))
    if (blank(*box.text)) names.push_back(box.control);
  return names;
}

std::string tableNameInUse(Session& session, std::string_view system, std::string_view id, const TableNames& names) {
  const auto same = [](std::string_view stored, const std::string& name) {
    return !name.empty() && equalsNoCase(trim(stored), name);
  };
  bool table = false, japanese = false, shortName = false;
  const std::string sql =
      "SELECT inf.テーブル名, inf.日本語名, inf.略名 FROM MAS_TABLEINFO AS inf  WHERE inf.削除フラグ = 0   AND inf.ID "
      "<> " +
      std::string(id.empty() ? "0" : id) + "  AND inf.システム名 = " + sqlText(system);
  Recordset rows = session.gDB->openRecordset(sql);
  for (; !rows.eof(); rows.moveNext()) {
    table = table || same(rows.text(0), names.table);
    japanese = japanese || same(rows.text(1), names.japanese);
    shortName = shortName || same(rows.text(2), names.shortName);
  }
  if (table) return "テーブル名が他で使用されています.";
  if (japanese) return "日本語名が他で使用されています.";
  return shortName ? "略名が他で使用されています." : "";
}

bool pChkTableInfo(Session& session, Host& host, frmTBInfo& screen) { return check(session, host, screen); }

bool pChkPrjInfo(Session& session, Host& host, frmTBInfo& screen) { return check(session, host, screen); }

bool pChkMemberInfo(Session& session, Host& host, frmTBInfo& screen) {
  for (const HeaderFault& fault : {missing(screen), badDate(screen, "参加日", "終了予定日", "終了日")})
    if (tell(host, screen, fault)) return true;
  return kindMustStay(session, host, screen) || tell(host, screen, nameInUse(session, screen));
}

}  // namespace quillmarden
