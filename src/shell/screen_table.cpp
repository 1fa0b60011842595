#include "shell/screen_table.h"

#include <algorithm>
#include <concepts>

#include "editing/detail_navigation.h"
#include "editing/frm_tb_detail_edit.h"
#include "shell/list_commands.h"
#include "shell/screens.h"
#include "shell/tell.h"
#include "shell/unsaved_work.h"

namespace quillmarden {

namespace {

using Kinds = std::vector<ScreenKind>;

/// A screen whose record is a member of the application: it is blank again when the screen has gone, and its caption
/// and its end are read from the record where that has them.
template <typename Record>
ScreenKind recordKind(std::string_view name, Record Application::*record) {
  ScreenKind kind;
  kind.name = name;
  kind.closed = [record](Application& app, std::string_view) { app.*record = Record(); };
  if constexpr (requires(Record one) { one.caption; })
    kind.caption = [record](const Application& app, std::string_view) { return (app.*record).caption; };
  if constexpr (requires(Record one) { one.changed; })
    kind.changed = [record](const Application& app, std::string_view) { return (app.*record).changed; };
  if constexpr (requires(Record one) { one.unloaded; })
    kind.unloaded = [record](const Application& app) { return (app.*record).unloaded; };
  return kind;
}

/// The same with a load that cannot fail.
template <typename Record>
ScreenKind loadedKind(std::string_view name, Record Application::*record, void (*load)(Session&, Host&, Record&)) {
  ScreenKind kind = recordKind(name, record);
  kind.load = [record, load](Application& app, std::string_view) {
    load(app.session, app.host, app.*record);
    return false;
  };
  return kind;
}

template <typename Record>
void captioned(Kinds& kinds, std::string_view name, Record Application::*record, std::string caption) {
  kinds.push_back(recordKind(name, record));
  kinds.back().caption = [caption = std::move(caption)](const Application&, std::string_view) { return caption; };
}

/// Whether a screen's own question about its changes keeps it. The handler ends the screen on its No; here it stays
/// until all screens have been asked.
template <typename Record>
bool asksToStay(Host& host, Record& record, bool (*close)(Host&, Record&)) {
  const bool stays = close(host, record);
  record.unloaded = false;
  return stays;
}

// --- the detail screens

bool loadDetail(Application& app, std::string_view screen) {
  app.details[std::string(screen)];
  return false;
}

bool detailStays(Application& app, std::string_view screen) { return keepsEditing(app.host, app.detail(screen)); }

std::string detailCaption(const Application& app, std::string_view screen) {
  const std::string& caption = app.detail(screen).caption;
  return caption.empty() ? "詳細画面" : caption;
}

/// The main screen forgets a table of the former System; others show theirs on, with the rights that the System leaves
/// to them. What is being edited in the same System stays.
void detailSystemChanged(Application& app, std::string_view systemName) {
  for (auto& [name, detail] : app.details) {
    const std::string id = detail.lblID.caption;
    const bool sameSystem = detail.lblSystemName.caption == systemName;
    if (id.empty() || (sameSystem && detail.changed)) continue;
    if (sameSystem || name != "frmTBDetail") {
      detail.changed = false;
      pGet_TableID2TableDetails(app.session, app.host, detail, id);
      continue;
    }
    gClearForm(detail);
    if (OpenScreen* open = app.open.find(name); open && open->visible) {
      open->visible = false;
      tell(app.display.hide, name);
    }
  }
}

ScreenKind detailKind() {
  ScreenKind kind;
  kind.name = "frmTBDetail";
  kind.caption = detailCaption;
  kind.load = loadDetail;
  kind.changed = [](const Application& app, std::string_view screen) { return app.detail(screen).changed; };
  kind.stays = detailStays;
  kind.closed = [](Application& app, std::string_view screen) {
    dropUnsavedWork(app, screen);
    app.details.erase(std::string(screen));
  };
  kind.systemChanged = detailSystemChanged;
  kind.followsRecord = true;
  kind.rightsChanged = [](Application& app) {
    for (auto& [name, detail] : app.details) refreshRights(app.session, app.host, detail);
  };
  return kind;
}

// --- the list and what opens from it

ScreenKind listKind() {
  ScreenKind kind = recordKind("frmTBList", &Application::list);
  kind.load = [](Application& app, std::string_view) {
    frmTBList_Load(app.session, app.host, app.list);
    restoreListScreen(app.session, app.host, app.windows, app.list);
    return false;
  };
  kind.closed = [](Application& app, std::string_view) {
    keepListScreen(app.session, app.list);
    app.list = {};
  };
  kind.rightsChanged = [](Application& app) { refreshRights(app.session, app.host, app.list); };
  return kind;
}

/// The list has been rebuilt by the save; the detail screens take the new header and keep rows that wait to be saved.
void tableInfoClosed(Application& app, std::string_view) {
  const frmTBInfo info = std::exchange(app.tbInfo, {});
  const bool isNew = app.tbInfoFor && app.tbInfoFor->empty();
  app.tbInfoFor.reset();
  if (!info.saved) return;
  for (auto& [name, detail] : app.details) tableInfoSaved(app.session, app.host, detail, info.lblID.caption);
  tellRights(app);
  // A table that has just been made wants its fields.
  if (isNew) showTable(app, info.lblID.caption);
}

ScreenKind tableInfoKind() {
  ScreenKind kind = recordKind("frmTBInfo", &Application::tbInfo);
  kind.load = [](Application& app, std::string_view) {
    const std::string id = app.tbInfoFor ? *app.tbInfoFor : app.detail(app.activeDetail()).lblID.caption;
    return frmTBInfo_Load(app.session, app.host, app.tbInfo, id);
  };
  kind.changed = [](const Application& app, std::string_view) { return isChanged(app.tbInfo); };
  kind.stays = [](Application& app, std::string_view) { return cmdCancel_Click(app.host, app.tbInfo); };
  kind.closed = tableInfoClosed;
  kind.rightsChanged = [](Application& app) { refreshRights(app.session, app.tbInfo); };
  return kind;
}

ScreenKind systemInfKind() {
  ScreenKind kind = recordKind("frmSystemInf", &Application::systemInf);
  kind.load = [](Application& app, std::string_view) {
    return !frmSystemInf_Load(app.session, app.host, app.systemInf, app.list.CmbSystem.text);
  };
  kind.changed = [](const Application& app, std::string_view) { return isChanged(app.systemInf); };
  kind.stays = [](Application& app, std::string_view) { return keepsEditing(app.host, app.systemInf); };
  kind.closed = [](Application& app, std::string_view) {
    const frmSystemInf screen = std::exchange(app.systemInf, {});
    // A rename logs off: there is no System to read any more.
    if (!app.open.has("frmTBList")) return;
    frmSystemInf_Unload(app.session, app.host, app.windows, screen);
    fillSystems(app.session, app.list);
    if (!screen.made || screen.record.hidden) return;
    // Whoever makes a System goes on in it.
    app.list.CmbSystem.text = screen.record.name;
    chooseSystem(app);
  };
  return kind;
}

ScreenKind divisionKind() {
  ScreenKind kind = loadedKind("frmDivision", &Application::division, frmDivision_Load);
  kind.stays = [](Application& app, std::string_view) {
    return asksToStay<frmDivision>(app.host, app.division, CmdClose_Click);
  };
  kind.systemChanged = [](Application& app, std::string_view) {
    if (app.open.has("frmDivision")) frmDivision_Load(app.session, app.host, app.division);
  };
  kind.rightsChanged = [](Application& app) { refreshRights(app.session, app.division); };
  return kind;
}

ScreenKind divisionInfoKind() {
  // Whoever opens it has filled the record.
  ScreenKind kind = recordKind("frmDiviInfo", &Application::diviInfo);
  kind.stays = [](Application& app, std::string_view) {
    return asksToStay<frmDiviInfo>(app.host, app.diviInfo, cmdCancel_Click);
  };
  kind.closed = [](Application& app, std::string_view) {
    if (app.open.has("frmDivision")) frmDiviInfo_Unload(app.session, app.host, app.division, app.diviInfo);
    app.diviInfo = {};
  };
  kind.rightsChanged = [](Application& app) { app.diviInfo.cmdOK.enabled = app.session.gCanEdit; };
  return kind;
}

ScreenKind kenSuKind() {
  ScreenKind kind = loadedKind("frmKENSU", &Application::kenSu, frmKENSU_Load);
  kind.stays = [](Application& app, std::string_view) {
    return asksToStay<frmKENSU>(app.host, app.kenSu, CmdClose_Click);
  };
  kind.systemChanged = [](Application& app, std::string_view) {
    if (app.open.has("frmKENSU")) frmKENSU_Load(app.session, app.host, app.kenSu);
  };
  kind.rightsChanged = [](Application& app) { refreshRights(app.session, app.kenSu); };
  return kind;
}

/// Its queries belong to the Repository; another System changes the caption alone.
ScreenKind reportKind() {
  ScreenKind kind = loadedKind("frmReport", &Application::report, frmReport_Load);
  kind.systemChanged = [](Application& app, std::string_view) {
    if (app.open.has("frmReport")) frmReport_Load(app.session, app.host, app.report);
  };
  return kind;
}

// --- what opens from a detail screen

ScreenKind memoKind() {
  ScreenKind kind = recordKind("frmMemo", &Application::memo);
  kind.load = [](Application& app, std::string_view) {
    const frmTBDetail& detail = app.detail(app.activeDetail());
    if (detail.lblID.caption.empty()) return true;
    return gGetMasTableMemo(app.session, app.host, app.memo, detail.lblID.caption, detail.lblSystemName.caption,
                            !detail.readOnly);
  };
  kind.stays = [](Application& app, std::string_view) {
    return asksToStay<frmMemo>(app.host, app.memo, CmdClose_Click);
  };
  kind.rightsChanged = [](Application& app) { refreshRights(app.session, app.memo); };
  kind.staysWhenHidden = true;
  return kind;
}

ScreenKind sortKind() {
  ScreenKind kind = recordKind("frmSpSort", &Application::spSort);
  kind.caption = [](const Application&, std::string_view) { return "並び替え設定"; };
  kind.load = [](Application& app, std::string_view) {
    app.callFrom(app.activeDetail());
    frmSpSort_Load(app.spSort, app.detail(app.caller.screen));
    return false;
  };
  return kind;
}

ScreenKind divisionRefKind() {
  ScreenKind kind = recordKind("frmDiviRef", &Application::diviRef);
  kind.closed = [](Application& app, std::string_view) {
    const frmDiviRef screen = std::exchange(app.diviRef, {});
    if (frmTBDetail* detail = app.callingDetail(); detail && !screen.chosen.empty())
      setValueList(app.session, app.host, *detail, app.caller.row, screen.chosen);
  };
  return kind;
}

// --- the session's own

ScreenKind logInKind() {
  ScreenKind kind = recordKind("frmLogInNew", &Application::logIn);
  kind.load = [](Application& app, std::string_view) {
    app.logIn = {};
    frmLogInNew_Load(app.session, app.host, app.logIn);
    return false;
  };
  kind.unloaded = {};  // what follows its end is the session's to decide
  return kind;
}

ScreenKind barKind() {
  ScreenKind kind = recordKind("frmAppBar", &Application::bar);
  kind.load = [](Application& app, std::string_view) {
    app.bar.caption = "Quillmarden";
    return false;
  };
  kind.staysWhenHidden = true;
  return kind;
}

ScreenKind iconKind() {
  ScreenKind kind = recordKind("frmTASK", &Application::task);
  kind.load = [](Application& app, std::string_view) {
    app.task.iconShown = true;
    app.task.toolTip = "Quillmarden";
    return false;
  };
  kind.staysWhenHidden = true;
  return kind;
}

ScreenKind aboutKind() {
  ScreenKind kind = recordKind("frmAbout", &Application::about);
  kind.load = [](Application& app, std::string_view) {
    frmAbout_Load(app.about);
    return false;
  };
  return kind;
}

ScreenKind optionsKind() {
  ScreenKind kind = loadedKind("frmOptions", &Application::options, frmOptions_Load);
  kind.closed = [](Application& app, std::string_view) {
    const bool saved = app.options.saved;
    app.options = {};
    if (!saved) return;
    openUserData(app.session, app.host);
    tell(app.display.settingsChanged);
  };
  return kind;
}

Kinds makeTable() {
  Kinds kinds = {logInKind(),     barKind(),         iconKind(),         listKind(),  detailKind(), tableInfoKind(),
                 systemInfKind(), divisionKind(),    divisionInfoKind(), kenSuKind(), reportKind(), memoKind(),
                 sortKind(),      divisionRefKind(), optionsKind(),      aboutKind()};
  captioned(kinds, "frmSplash", &Application::splash, "Quillmarden");
  captioned(kinds, "frmMSG", &Application::msg, "メッセージ");
  captioned(kinds, "frmSTOP", &Application::stop, "処理中");
  captioned(kinds, "frmMessageClose", &Application::messageClose, "Quillmarden");
  captioned(kinds, "frmdetailslist", &Application::detailsList, "詳細画面リスト");
  kinds.back().staysWhenHidden = true;
  // Its caller fills the record.
  kinds.push_back(recordKind("frmCOLOR", &Application::color));
  return kinds;
}

}  // namespace

const std::vector<ScreenKind>& screenTable() {
  static const Kinds kTable = makeTable();
  return kTable;
}

const ScreenKind* screenKind(std::string_view screen) {
  const std::string_view base = screen.substr(0, screen.find(':'));
  const auto& table = screenTable();
  const auto found =
      std::find_if(table.begin(), table.end(), [&](const ScreenKind& kind) { return kind.name == base; });
  return found == table.end() ? nullptr : &*found;
}

}  // namespace quillmarden
