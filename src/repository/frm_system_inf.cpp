#include "repository/frm_system_inf.h"

#include <algorithm>
#include <iterator>

#include "common/message.h"
#include "common/text.h"
#include "repository/type_catalogue.h"

namespace quillmarden {
namespace {

constexpr SystemTextColumn kTextColumns[] = {
    {"概要", &frmSystemInf::TxtMemo, &SystemRecord::description},
    {"odbcsouce", &frmSystemInf::TxtDataSource, &SystemRecord::odbcSource},
    {"username", &frmSystemInf::txtUserName, &SystemRecord::dbUser},
    {"password", &frmSystemInf::TxtPassword, &SystemRecord::dbPassword},
    {"書式ファイル名", &frmSystemInf::TxtLayoutFile, &SystemRecord::formatFile},
    {"tablespace", &frmSystemInf::TxtTableSpace, &SystemRecord::tableSpace},
    {"indexspace", &frmSystemInf::TxtIndexSpace, &SystemRecord::indexSpace},
    {"accessfilename", &frmSystemInf::TxtAccessFileName, &SystemRecord::accessFile},
};

constexpr SystemFlagColumn kFlagColumns[] = {
    {"出力しない", &frmSystemInf::ChkNoPut, &SystemRecord::hidden},
    {"table_name_ucase", &frmSystemInf::ChkTableNameUcase, &SystemRecord::tableUpper},
    {"field_name_lcase", &frmSystemInf::ChkFieldNameLcase, &SystemRecord::fieldLower},
    {"field_name_ucase", &frmSystemInf::ChkFieldNameUcase, &SystemRecord::fieldUpper},
    {"field_name_astyped", &frmSystemInf::ChkFieldNameAsTyped, &SystemRecord::fieldAsTyped},
    {"narrow_flg", &frmSystemInf::ChkFieldNameNarrow, &SystemRecord::fieldNarrow},
    {"boltablenarrow", &frmSystemInf::ChkNarrow, &SystemRecord::tableNarrow},
    {"bolryakulower", &frmSystemInf::ChkRyakuLower, &SystemRecord::ryakuLower},
    {"bolryakudelmoji", &frmSystemInf::ChkDelMoji, &SystemRecord::ryakuDelMoji},
    {"replacejpnspace", &frmSystemInf::chkReplaceJPNSpace, &SystemRecord::replaceJpnSpace},
    {"filelinkcopy", &frmSystemInf::chkFileLinkCopy, &SystemRecord::fileLinkCopy},
};

constexpr std::string_view kUserLimits[] = {"0:全てのユーザー", "1:システム登録者のみ", "2:システム管理者"};

constexpr std::string_view kSettingOpens = "DB接続情報";
constexpr std::string_view kSettingCloses = "DB情報閉じる";

/// What the panel of a Database kind shows. A blank label hides its pair.
struct KindSetting {
  std::string_view kind;
  std::string_view heading;
  std::string_view block;
  std::string_view tableSpace;
  std::string_view index;
  std::string_view port;  ///< what an empty block size begins with
};

constexpr KindSetting kKindSettings[] = {
    {"Oracle", "■Oracle Setting", "DB BLOCK SIZE", "TableSpase", "INDEX用", ""},
    {"SQL Server", "■SQL Server Setting", "", "スキーマ名", "Index FileGroup", ""},
    {"MySQL", "■MySQL Setting", "Port", "DataBase", "", "3306"},
    {"PostgreSQL", "■PostgreSQL Setting", "Port", "DataBase", "", "5432"},
};

const KindSetting* settingOf(std::string_view kind) {
  const auto found = std::find_if(std::begin(kKindSettings), std::end(kKindSettings),
                                  [&](const KindSetting& setting) { return equalsNoCase(setting.kind, kind); });
  return found == std::end(kKindSettings) ? nullptr : found;
}

bool isAccess(const frmSystemInf& screen) { return equalsNoCase(screen.CmbDBType.text, "Access"); }

void showSetting(frmSystemInf& screen, bool visible) {
  screen.FraDBSetting.visible = visible && !isAccess(screen);
  screen.FraAccess.visible = visible && isAccess(screen);
  screen.settingCaption = visible ? kSettingCloses : kSettingOpens;
}

void showLabel(Label& label, std::string_view caption) {
  label.caption = caption;
  label.visible = !caption.empty();
}

void showRecord(frmSystemInf& screen) {
  const SystemRecord& record = screen.record;
  screen.TxtSystemName.text = screen.TxtSystemNameOld.text = record.name;
  for (const SystemTextColumn& column : kTextColumns) (screen.*column.control).text = record.*column.field;
  for (const SystemFlagColumn& column : kFlagColumns) (screen.*column.control).value = record.*column.field;
  // Where several stand in the file, only that one is shown which a save of fields goes by.
  if (record.fieldLower) screen.ChkFieldNameUcase.value = false;
  if (record.fieldLower || record.fieldUpper) screen.ChkFieldNameAsTyped.value = false;
  const auto limit = static_cast<std::size_t>(record.userLimit);
  screen.CmbEdit.text = kUserLimits[limit < std::size(kUserLimits) ? limit : 0];
  screen.ChkChangeData.value = record.id != 0 && !record.editAllowed;
  screen.ChkDataBase.value = definesDatabase(record);
  screen.CmbDBType.text = record.databaseType;
  screen.TxtBlockSize.text = record.blockSize == 0 ? "" : std::to_string(record.blockSize);
  screen.TxtUserNameAccess.text = record.accessFile;
}

/// These servers keep the letters of names, and their designs are read from and written to them as they are.
void presetLetterCase(frmSystemInf& screen) {
  if (screen.record.id != 0 || screen.letterCaseChosen) return;
  screen.ChkFieldNameAsTyped.value =
      equalsNoCase(screen.CmbDBType.text, "PostgreSQL") || equalsNoCase(screen.CmbDBType.text, "MySQL");
}

/// The chosen way stays alone.
void chooseLetterCase(frmSystemInf& screen, CheckBox frmSystemInf::*chosen) {
  screen.letterCaseChosen = true;
  if (!(screen.*chosen).value) return;
  for (CheckBox frmSystemInf::*other :
       {&frmSystemInf::ChkFieldNameLcase, &frmSystemInf::ChkFieldNameUcase, &frmSystemInf::ChkFieldNameAsTyped})
    if (other != chosen) (screen.*other).value = false;
}

void setRights(Session& session, frmSystemInf& screen) {
  const bool existing = screen.record.id != 0;
  screen.TxtSystemName.locked = existing;
  screen.TxtSystemNameOld.locked = screen.TxtUserNameAccess.locked = true;
  screen.fraSystemChange.visible = existing;
  screen.cmdOK.enabled = static_cast<bool>(mayChangeRecord(session, screen));
  const bool works = existing && mayChangeSystem(session, screen.record.name);
  for (Button* tool :
       {&screen.CmdProtect, &screen.CmdUnProtect, &screen.CmdChk, &screen.CmdCalc, &screen.CmdNarrow,
        &screen.CmdLowerCase, &screen.CmdDef0, &screen.CmdDel, &screen.cmdConvAccessSQLServer, &screen.cmdChange})
    tool->enabled = works;
}

std::vector<std::string> inputOf(const frmSystemInf& screen) {
  std::vector<std::string> input = {screen.TxtSystemName.text, screen.CmbDBType.text, screen.CmbEdit.text,
                                    screen.TxtBlockSize.text};
  for (const SystemTextColumn& column : kTextColumns) input.push_back((screen.*column.control).text);
  for (const SystemFlagColumn& column : kFlagColumns) input.emplace_back((screen.*column.control).value ? "1" : "");
  for (const CheckBox* box : {&screen.ChkChangeData, &screen.ChkDataBase}) input.emplace_back(box->value ? "1" : "");
  return input;
}

}  // namespace

std::span<const SystemTextColumn> systemTextColumns() { return kTextColumns; }
std::span<const SystemFlagColumn> systemFlagColumns() { return kFlagColumns; }
std::span<const std::string_view> userLimitTexts() { return kUserLimits; }

Right mayChangeRecord(Session& session, const frmSystemInf& screen) {
  return screen.record.id == 0 ? mayWrite(session) : mayChangeSystemRecord(session, screen.record.name);
}

bool frmSystemInf_Load(Session& session, Host& host, frmSystemInf& screen, std::string_view systemName) {
  screen = {};
  const bool isNew = trim(systemName).empty() || systemName == kNewSystem;
  const bool found = !isNew && gMDB_GetSystemInfo(session, host, systemName, screen.record);
  const TableDef* systems = session.gDB->tableDef("MAS_SYSTEM");
  screen.hasAccessFile = systems != nullptr && systems->field("accessfilename") != nullptr;
  screen.CmbDBType.entries = gGetFileKindList(*session.gDB);
  screen.CmbEdit.entries.assign(std::begin(kUserLimits), std::end(kUserLimits));
  showRecord(screen);
  setRights(session, screen);
  CmbDBType_Click(session, host, screen);
  screen.loadedInput = inputOf(screen);
  return found || isNew;
}

void frmSystemInf_Unload(Session& session, Host& host, Windows& windows, const frmSystemInf& screen) {
  const std::string current = session.gCurrentSystemName;
  if (!current.empty() && current != kAllSystems && current != kNewSystem) selectSystem(session, host, current);
  if (windows.systemChanged) windows.systemChanged(screen.record.name.empty() ? current : screen.record.name);
}

void CmbDBType_Click(Session& /*session*/, Host& /*host*/, frmSystemInf& screen) {
  const KindSetting* setting = settingOf(screen.CmbDBType.text);
  presetLetterCase(screen);
  const bool open = screen.FraDBSetting.visible || screen.FraAccess.visible;
  screen.CmdOracleSetting.enabled = setting != nullptr || isAccess(screen);
  showSetting(screen, open && setting != nullptr);
  if (setting == nullptr) return;
  screen.lblSetName.caption = setting->heading;
  showLabel(screen.lblDBBlock, setting->block);
  showLabel(screen.lblTableSpace, setting->tableSpace);
  showLabel(screen.lblIndex, setting->index);
  if (trim(screen.TxtBlockSize.text).empty()) screen.TxtBlockSize.text = setting->port;
}

void CmdOracleSetting_Click(Session& /*session*/, Host& host, frmSystemInf& screen) {
  if (!screen.CmdOracleSetting.enabled) return;
  if (isAccess(screen) && !screen.hasAccessFile) {
    gMsgBox(host, joinLines({"Accessファイルを設定することはできません.", "原因は、レプリカのAccessファイルに",
                             "テーブルに項目を追加することができなかったため",
                             "レプリカ・デザインマスタと同期処理して下さい。"}));
    return;
  }
  showSetting(screen, !screen.FraDBSetting.visible && !screen.FraAccess.visible);
}

void CmdOther_Click(Session& /*session*/, Host& /*host*/, frmSystemInf& screen) {
  screen.FraOther.visible = !screen.FraOther.visible;
}

void ChkFieldNameLcase_Click(Session& /*session*/, Host& /*host*/, frmSystemInf& screen) {
  chooseLetterCase(screen, &frmSystemInf::ChkFieldNameLcase);
}

void ChkFieldNameUcase_Click(Session& /*session*/, Host& /*host*/, frmSystemInf& screen) {
  chooseLetterCase(screen, &frmSystemInf::ChkFieldNameUcase);
}

void ChkFieldNameAsTyped_Click(Session& /*session*/, Host& /*host*/, frmSystemInf& screen) {
  chooseLetterCase(screen, &frmSystemInf::ChkFieldNameAsTyped);
}

void TxtAccessFileName_Change(Session& /*session*/, Host& /*host*/, frmSystemInf& screen) {
  screen.TxtUserNameAccess.text = screen.TxtAccessFileName.text;
}

bool isChanged(const frmSystemInf& screen) { return inputOf(screen) != screen.loadedInput; }

bool keepsEditing(Host& host, const frmSystemInf& screen) {
  if (!screen.cmdOK.enabled || !isChanged(screen)) return false;
  const std::string_view name = trim(screen.TxtSystemName.text);
  return gAskKeepEditing(host, name.empty() ? std::string_view(screen.caption) : name);
}

void cmdCancel_Click(Session& /*session*/, Host& host, frmSystemInf& screen) {
  if (!keepsEditing(host, screen)) screen.unloaded = true;
}

}  // namespace quillmarden
