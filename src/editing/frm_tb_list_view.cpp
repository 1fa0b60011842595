#include <algorithm>
#include <array>

#include "common/form_settings.h"
#include "common/keys.h"
#include "common/message.h"
#include "common/numbers.h"
#include "common/paths.h"
#include "common/text.h"
#include "editing/detail_parts.h"
#include "editing/frm_tb_list.h"

namespace quillmarden {

namespace {

constexpr std::string_view kForm = "frmTBList";

/// What makes statements of tables, which only a database's kind has.
constexpr std::array<std::string_view, 2> kStatementMenus = {"mnuCreateSql", "mnuCreateView"};

template <std::size_t count>
bool contains(const std::array<std::string_view, count>& list, std::string_view text) {
  return std::find(list.begin(), list.end(), text) != list.end();
}

/// The screens that lstForm lists, in lower case.
bool isListed(std::string_view screen) {
  static constexpr std::array<std::string_view, 6> kListed = {"frmtbdetail", "frmfind",    "frmreport",
                                                              "frmdivision", "frmforeign", "frmdomain"};
  return contains(kListed, toLower(screen.substr(0, screen.find(':'))));
}

/// A control whose state is kept, under its name.
struct KeptControl {
  std::string_view name;
  ControlRef control;
};

/// The search text is not among them: a list that opens empty for a forgotten word puzzles.
std::vector<KeptControl> keptFilters(frmTBList& screen) {
  return {{"CmbTitle", &screen.CmbTitle},
          {"CmbWhere", &screen.CmbWhere},
          {"CmbHost", &screen.CmbHost},
          {"CmbBunrui", &screen.CmbBunrui},
          {"CmbDataBunrui", &screen.CmbDataBunrui},
          {"CmbDataBunrui2", &screen.CmbDataBunrui2}};
}

std::vector<KeptControl> keptSwitches(frmTBList& screen) {
  return {{"OptAll", &screen.OptAll},       {"OptTb", &screen.OptTb},       {"OptReverse", &screen.OptReverse},
          {"ChkAllSys", &screen.ChkAllSys}, {"ChkRefTb", &screen.ChkRefTb}, {"ChkSosikiNm", &screen.ChkSosikiNm}};
}

void restoreControl(const IniFile& ini, const KeptControl& kept) {
  gControlSetting(ini, kForm, kept.name, kept.control, true);
}

}  // namespace

void LstTable_RightClick(Session& session, Host& host, frmTBList& screen) {
  screen.popupKind.clear();
  const std::string_view id = tableListId(screen.LstTable.text());
  if (!isNumeric(id)) return;
  try {
    Recordset row = session.gDB->openRecordset("SELECT ファイル種別 FROM MAS_TABLEINFO WHERE ID = " + std::string(id));
    if (!row.eof()) screen.popupKind = trim(row.text(0));
  } catch (const EngineError& error) {
    tellError(session, host, "LstTable_RightClick", error);
  }
}

bool appliesToKind(std::string_view menu, std::string_view fileType) {
  static constexpr std::array<std::string_view, 4> kMemberMenus = {"mnuSosiki", "mnuSosikiKo", "mnuMember", "mnuMail"};
  static constexpr std::array<std::string_view, 3> kDrawnMenus = {"mnuExcelER2Book", "mnuExcelDisk", "mnuCheckPoint"};
  static constexpr std::array<std::string_view, 2> kAccessMenus = {"mnuCreateAccess", "mnuOpenAccess"};
  if (fileType.empty()) return true;
  const bool noDatabase = fileType == "メンバー" || fileType == "PG管理" || fileType == "Text";
  if (contains(kMemberMenus, menu)) return fileType == "メンバー";
  if (contains(kAccessMenus, menu) || menu == "mnuConvAccess2SQLServer") return fileType == "Access";
  if (menu == "mnuConvPostgreSQL2Oracle") return fileType == "PostgreSQL";
  if (menu == "mnutsCreateSQL") return !noDatabase;
  // Tables of this kind are made in their file, not by a script.
  if (contains(kStatementMenus, menu)) return !noDatabase && fileType != "Access";
  if (contains(kDrawnMenus, menu)) return fileType != "メンバー" && fileType != "PG管理";
  return true;
}

std::optional<ListKey> LstTable_KeyDown(char key, int shift) {
  if (shift != kCtrlAlone) return std::nullopt;
  switch (key) {
    case 's':
    case 'S':
      return ListKey{"mnuCopyClipBord"};
    case 'a':
    case 'A':
      return ListKey{"mnuClipBord", 1};
    case 'c':
    case 'C':
      return ListKey{"mnuClipBord", 0};
    case 'd':
    case 'D':
      return ListKey{"mnuClipBordJPN"};
    default:
      return std::nullopt;
  }
}

void pRefrashListForm(frmTBList& screen, const std::vector<std::pair<std::string, std::string>>& openScreens) {
  const std::string current(tableListId(screen.lstForm.text()));
  screen.lstForm.clear();
  for (const auto& [caption, name] : openScreens) {
    if (!isListed(name)) continue;
    screen.lstForm.add(gReplaceAll(caption, "\t", "") + "\t" + name);
    if (name == current) screen.lstForm.listIndex = screen.lstForm.count() - 1;
  }
}

void CmdFormList_Click(Session& session, frmTBList& screen) {
  screen.lstFormVisible = !screen.lstFormVisible;
  putFormSetting(*session.ini, kForm, "lstFormVisible", screen.lstFormVisible ? "1" : "0");
}

void CmdWidth_Click(frmTBList& screen) { screen.narrow = !screen.narrow; }

void ImageMove_Drag(frmTBList& screen, int dividerAt) { screen.dividerAt = std::max(dividerAt, 0); }

void mnuOpenDB_Click(Session& session, Host& host) { host.opener.openFile(toPath(session.gDB->path())); }

void mnuOpenDBConnect_Click(Session& session, Host& host) {
  if (gMsgBox(host, "接続先のデータベースを開きます.", kYesNo | kQuestionIcon, "確認") != kYes) return;
  const std::string& file = session.gCurrentSystem.accessFile;
  if (gFileExists(host, file, true)) host.opener.openFile(toPath(file));
}

void keepListScreen(Session& session, frmTBList& screen) {
  std::vector<std::pair<std::string, std::string>> values = {{"CmbSystem", screen.CmbSystem.text},
                                                             {"narrow", screen.narrow ? "1" : "0"},
                                                             {"dividerAt", std::to_string(screen.dividerAt)}};
  for (const auto& controls : {keptFilters(screen), keptSwitches(screen)})
    for (const KeptControl& kept : controls) values.emplace_back(kept.name, controlState(kept.control));
  session.ini->putAll(std::string(kForm) + "_App_Setting", values);
}

void restoreListScreen(Session& session, Host& host, Windows& windows, frmTBList& screen) {
  const IniFile& ini = *session.ini;
  screen.lstFormVisible = gGetFormSetting(ini, kForm, "lstFormVisible") == "1";
  screen.narrow = gGetFormSetting(ini, kForm, "narrow") != "0";
  screen.dividerAt = std::max(0, static_cast<int>(gVal(gGetFormSetting(ini, kForm, "dividerAt"))));
  for (const KeptControl& kept : keptSwitches(screen)) restoreControl(ini, kept);
  if (!screen.OptTb.value && !screen.OptReverse.value) screen.OptAll.value = true;
  restoreControl(ini, {"CmbTitle", &screen.CmbTitle});
  restoreControl(ini, {"CmbWhere", &screen.CmbWhere});
  restoreControl(ini, {"CmbSystem", &screen.CmbSystem});
  if (screen.CmbSystem.text.empty()) return;
  // The System fills the filters, so that only then their values can stand in them.
  CmbSystem_Click(session, host, windows, screen);
  for (const KeptControl& kept : keptFilters(screen)) restoreControl(ini, kept);
  const bool filtered = !screen.CmbHost.text.empty() || !screen.CmbBunrui.text.empty() ||
                        !screen.CmbDataBunrui.text.empty() || !screen.CmbDataBunrui2.text.empty();
  if (filtered) pGetTableList(session, host, screen);
}

}  // namespace quillmarden
