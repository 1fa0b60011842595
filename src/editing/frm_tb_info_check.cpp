#include <fmt/format.h>

#include <tuple>

#include "common/message.h"
#include "common/numbers.h"
#include "common/text.h"
#include "editing/detail_parts.h"
#include "editing/tb_info_parts.h"
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

HeaderFault forbiddenCharacter(const frmTBInfo& screen) {
  if (holdsAny(screen.TxtJPN.text, kNameSigns))
    return {"日本語名に使用しては\nいけない文字が含まれています.", "TxtJPN"};
  std::string_view name = trim(screen.TxtTableName.text);
  // A table that was read from a live database bears an "@" at its end.
  if (screen.loadedReverse && name.ends_with('@')) name.remove_suffix(1);
  if (holdsAny(name, kNameSigns) || holdsAny(name, kTableSigns))
    return {"テーブル名に使用しては\nいけない文字が含まれています.", "TxtTableName"};
  return {};
}

HeaderFault tooLong(const frmTBInfo& screen) {
  if (gLenB(screen.CmbDataBunrui.text) > kWordWidth) return {"データ分類は10文字以内です.", "CmbDataBunrui"};
  if (gLenB(screen.CmbDataBunrui2.text) > kWordWidth) return {"データ分類は10文字以内です.", "CmbDataBunrui2"};
  if (gLenB(screen.CmbKanKaku.text) > kWordWidth) return {"作成間隔は10文字以内です.", "CmbKanKaku"};
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

HeaderFault nameInUse(Session& session, const frmTBInfo& screen) {
  const TableNames names{storedTableName(session, screen.TxtTableName.text), std::string(trim(screen.TxtJPN.text)),
                         storedRyaku(session, screen.TxtRyaku.text)};
  return namesInUse(*session.gDB, screen.lblSystemName.caption, names,
                    static_cast<std::int64_t>(gVal(screen.lblID.caption)));
}

bool tell(Host& host, frmTBInfo& screen, const HeaderFault& fault) {
  if (fault.text.empty()) return false;
  screen.refused = true;
  screen.focus = fault.control;
  gMsgBox(host, fault.text, kOkOnly | kWarningIcon, "入力確認");
  return true;
}

bool check(Session& session, Host& host, frmTBInfo& screen) {
  for (const HeaderFault& fault :
       {missing(screen), forbiddenCharacter(screen), tooLong(screen), badDate(screen, "作成日", "完了日", "変更日")})
    if (tell(host, screen, fault)) return true;
  return kindMustStay(session, host, screen) || tell(host, screen, nameInUse(session, screen));
}

}  // namespace

HeaderFault namesInUse(Database& database, std::string_view system, const TableNames& names, std::int64_t id) {
  const std::string sql =
      "SELECT inf.テーブル名, inf.日本語名 FROM MAS_TABLEINFO AS inf  WHERE inf.削除フラグ = 0 And (inf.日本語名 = "
      "paraJapanese     OR inf.テーブル名 = paraName)   AND inf.ID <> paraId  AND inf.システム名 = paraSystem";
  bool sameJapanese = false;
  for (Recordset rows = database.openRecordset(sql, {{"paraJapanese", names.japanese},
                                                     {"paraName", names.name},
                                                     {"paraId", id},
                                                     {"paraSystem", std::string(system)}});
       !rows.eof(); rows.moveNext()) {
    if (equalsNoCase(trim(rows.text(0)), names.name)) return {"テーブル名が他で使用されています.", "TxtTableName"};
    sameJapanese = true;
  }
  if (sameJapanese) return {"日本語名が他で使用されています.", "TxtJPN"};
  return {};
}

bool pChkTableInfo(Session& session, Host& host, frmTBInfo& screen) { return check(session, host, screen); }

bool pChkPrjInfo(Session& session, Host& host, frmTBInfo& screen) { return check(session, host, screen); }

bool pChkMemberInfo(Session& session, Host& host, frmTBInfo& screen) {
  for (const HeaderFault& fault : {missing(screen), badDate(screen, "参加日", "終了予定日", "終了日")})
    if (tell(host, screen, fault)) return true;
  return kindMustStay(session, host, screen);
}

}  // namespace quillmarden
