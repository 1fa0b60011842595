#include "operations/rows.h"

#include <cmath>

#include "common/message.h"
#include "common/numbers.h"
#include "common/text.h"
#include "engine/sql_text.h"
#include "repository/rights.h"
#include "repository/tell_error.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace {

constexpr std::string_view kParting = "                                                   ";  // 51 blanks

std::array<TextBox*, 3> tableBoxes(frmKENSU& screen) { return {&screen.TxtTb1, &screen.TxtTb2, &screen.TxtTb3}; }

bool isChanged(const frmKENSU& screen) { return kenSuRecord(screen) != screen.loaded; }

void clearFields(const Session& session, frmKENSU& screen) {
  for (TextBox* box : {&screen.TxtName, &screen.Txtbiko, &screen.TxtSu, &screen.TxtTb1, &screen.TxtTb2, &screen.TxtTb3})
    box->text.clear();
  screen.ChkAllSystem.value = false;
  screen.lblID.caption.clear();
  screen.lblEditSystem.caption = session.gCurrentSystemName;
  screen.LstTeigi.listIndex = -1;
  screen.activeTb = 0;
  screen.loaded = kenSuRecord(screen);
}

void selectOnShow(frmKENSU& screen) {
  screen.LstTeigi.listIndex = -1;
  for (int row = 0; row < screen.LstTeigi.count() && !screen.lblID.caption.empty(); ++row)
    if (kenSuRowId(screen.LstTeigi.rows[static_cast<std::size_t>(row)]) == screen.lblID.caption)
      screen.LstTeigi.listIndex = row;
}

void fillTables(Session& session, Host& host, frmKENSU& screen) {
  const std::string sql =
      "SELECT a.日本語名 from MAS_TABLEINFO as a  WHERE (((a.分類)='区分' Or (a.分類)='マスタ')    AND "
      "((a.システム名)=" +
      sqlText(session.gCurrentSystemName) + ")    AND ((a.削除フラグ)=0));";
  try {
    for (Recordset rows = session.gDB->openRecordset(sql); !rows.eof(); rows.moveNext())
      if (!trim(rows.text(0)).empty()) screen.lstTb.add(std::string(rows.text(0)));
  } catch (const EngineError& error) {
    tellError(session, host, "frmKENSU.lstTb", error);
  }
}

/// The number of the count's box. One with a fraction is told apart by the engine, which takes whole ones.
Value countValue(std::string_view text) {
  const double number = gStr2Double(text);
  if (std::nearbyint(number) == number && std::abs(number) < 1e15) return static_cast<std::int64_t>(number);
  return number;
}

/// Writes the definition and gives its ID.
std::string writeDefinition(Session& session, Host& host, const KenSuRecord& record) {
  const std::string& system = session.gCurrentSystemName;
  const std::string now = formatDateTime(host.clock.now(), "yyyy/mm/dd hh:nn:ss");
  Recordset row = session.gDB->openRecordset("Select a.* From MAS_KENSU a  Where a.システム名 = " + sqlText(system) +
                                             "  And a.定義名 = " + sqlText(record.name) + " ");
  const bool isNew = row.eof();
  std::string id;
  if (isNew) {
    row.addNew();
    row.set("システム名", system);
    row.set("定義名", record.name);
    row.set("作成年月日", now);
    row.set("作成者", session.gLoginUser);
    row.set("make_server", host.machine.computerName);
    row.set("削除フラグ", std::int64_t{0});
  } else {
    id = row.text("ID");
    row.edit();
  }
  row.set("概要", record.outline);
  row.set("件数", countValue(record.count));
  row.set("テーブル1", record.tables[0]);
  row.set("テーブル2", record.tables[1]);
  row.set("テーブル3", record.tables[2]);
  row.set("更新年月日", now);
  row.set("更新者", session.gLoginUser);
  row.set("COMPNAME", host.machine.computerName);
  row.set("全システム共通", std::int64_t{record.allSystems ? -1 : 0});
  row.update();
  return isNew ? std::to_string(row.lastId()) : id;
}

void startNew(Session& session, Host& host, frmKENSU& screen) {
  if (isChanged(screen) && gMsgBox(host, joinLines({"内容が変更されています.", "変更内容を取り消し新規作成します."}),
                                   kYesNo | kQuestionIcon | kDefaultSecond) != kYes)
    return;
  clearFields(session, screen);
}

}  // namespace

std::string kenSuRow(std::string_view name, std::string_view id) {
  std::string row(name);
  row.append(kParting);
  return row.append(id);
}

std::string_view kenSuRowId(std::string_view row) {
  const std::size_t parting = row.rfind(kParting);
  return parting == std::string_view::npos ? std::string_view() : row.substr(parting + kParting.size());
}

KenSuRecord kenSuRecord(const frmKENSU& screen) {
  const auto text = [](const TextBox& box) { return std::string(trim(box.text)); };
  return {.name = text(screen.TxtName),
          .outline = text(screen.Txtbiko),
          .count = text(screen.TxtSu),
          .tables = {text(screen.TxtTb1), text(screen.TxtTb2), text(screen.TxtTb3)},
          .allSystems = screen.ChkAllSystem.value};
}

void frmKENSU_Load(Session& session, Host& host, frmKENSU& screen) {
  screen = frmKENSU{};
  screen.caption = "件数定義情報 : システム名: [ " + session.gCurrentSystemName + " ] ";
  refreshRights(session, screen);
  clearFields(session, screen);
  fillTables(session, host, screen);
  pGetKenSuTeigi(session, host, screen);
}

void refreshRights(const Session& session, frmKENSU& screen) {
  for (Button* button : {&screen.CmdUpDate, &screen.CmdAddNew, &screen.CmdClear}) button->enabled = session.gCanEdit;
}

bool pGetKenSuTeigi(Session& session, Host& host, frmKENSU& screen) {
  const std::string sql =
      "SELECT a.*  FROM MAS_KENSU AS a  WHERE (((a.システム名)=" + sqlText(session.gCurrentSystemName) +
      ")    AND ((a.削除フラグ)=False))   OR (((a.削除フラグ)=False)    AND "
      "((a.全システム共通)=True));";
  try {
    ListBox found;
    for (Recordset rows = session.gDB->openRecordset(sql); !rows.eof(); rows.moveNext())
      found.add(kenSuRow(rows.text("定義名"), rows.text("ID")));
    screen.LstTeigi = std::move(found);
    selectOnShow(screen);
    return false;
  } catch (const EngineError& error) {
    tellError(session, host, "pGetKenSuTeigi", error);
    return true;
  }
}

bool LstTeigi_Click(Session& session, Host& host, frmKENSU& screen) {
  const std::string id(kenSuRowId(screen.LstTeigi.text()));
  if (!isNumeric(id)) return true;
  if (isChanged(screen) && (id == screen.lblID.caption || gAskKeepEditing(host, screen.TxtName.text))) {
    selectOnShow(screen);
    return true;
  }
  try {
    Recordset row = session.gDB->openRecordset("Select a.* From MAS_KENSU as a Where a.ID = " + id);
    if (row.eof()) {
      clearFields(session, screen);
      return true;
    }
    screen.TxtName.text = row.text("定義名");
    screen.Txtbiko.text = row.text("概要");
    screen.TxtSu.text = row.text("件数");
    screen.TxtTb1.text = row.text("テーブル1");
    screen.TxtTb2.text = row.text("テーブル2");
    screen.TxtTb3.text = row.text("テーブル3");
    screen.ChkAllSystem.value = row.integer("全システム共通") != 0;
    screen.lblEditSystem.caption = row.text("システム名");
    screen.lblID.caption = id;
    screen.loaded = kenSuRecord(screen);
    return false;
  } catch (const EngineError& error) {
    tellError(session, host, "LstTeigi_Click", error);
    return true;
  }
}

void CmdRef_Click(frmKENSU& screen) { screen.lstTbVisible = !screen.lstTbVisible; }

void lstTb_DblClick(frmKENSU& screen) {
  const std::string_view name = screen.lstTb.text();
  if (name.empty()) return;
  const auto boxes = tableBoxes(screen);
  if (screen.activeTb >= 1 && screen.activeTb <= 3) {
    boxes[static_cast<std::size_t>(screen.activeTb - 1)]->text = name;
    return;
  }
  for (TextBox* box : boxes) {
    if (!trim(box->text).empty()) continue;
    box->text = name;
    return;
  }
}

bool pChkKenSu(const Session& session, Host& host, const frmKENSU& screen) {
  const KenSuRecord record = kenSuRecord(screen);
  std::string fault;
  if (record.name.empty()) {
    fault = "定義名が未設定です.";
  } else if (record.outline.empty()) {
    fault = "概要が未設定です.";
  } else if (gStr2Double(record.count) == 0) {
    fault = "件数が未設定です.";
  } else if (!equalsNoCase(screen.lblEditSystem.caption, session.gCurrentSystemName)) {
    fault = joinLines(
        {screen.lblEditSystem.caption, "のシステムで定義されたものです.", "このシステムで修正する権限がありません."});
  }
  if (fault.empty()) return false;
  gMsgBox(host, fault, kOkOnly | kStopIcon);
  return true;
}

bool CmdUpDate_Click(Session& session, Host& host, frmKENSU& screen) {
  if (refused(host, mayChangeSystem(session, session.gCurrentSystemName))) return true;
  if (!isChanged(screen)) {
    gMsgBox(host, "変更はありません.");
    return true;
  }
  if (pChkKenSu(session, host, screen)) return true;
  if (gMsgBox(host, "更新します.", kYesNo | kQuestionIcon) != kYes) return true;
  const KenSuRecord record = kenSuRecord(screen);
  try {
    screen.lblID.caption = writeDefinition(session, host, record);
  } catch (const EngineError& error) {
    session.log.putError(host, "frmKENSU.CmdUpDate", error.number(), error.what());
    gMsgBox(host, joinLines({"更新エラー", std::string(" ") + error.what()}), kOkOnly | kStopIcon, "こまった");
    return true;
  }
  screen.loaded = record;
  pGetKenSuTeigi(session, host, screen);
  return false;
}

void CmdAddNew_Click(Session& session, Host& host, frmKENSU& screen) { startNew(session, host, screen); }
void CmdClear_Click(Session& session, Host& host, frmKENSU& screen) { startNew(session, host, screen); }

bool CmdClose_Click(Host& host, frmKENSU& screen) {
  if (isChanged(screen) && gMsgBox(host, "画面を閉じます.", kYesNo | kQuestionIcon | kDefaultSecond) != kYes)
    return true;
  screen.unloaded = true;
  return false;
}

}  // namespace quillmarden
