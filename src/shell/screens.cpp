#include "shell/screens.h"

#include <algorithm>

#include "common/message.h"
#include "shell/screen_table.h"
#include "shell/session_life.h"
#include "shell/tell.h"
#include "shell/unsaved_work.h"

namespace quillmarden {

namespace {

constexpr std::string_view kMainDetail = "frmTBDetail";

bool isDetail(std::string_view screen) { return screen.substr(0, screen.find(':')) == kMainDetail; }

bool asksToStay(Application& app, const std::string& screen) {
  const ScreenKind* kind = screenKind(screen);
  if (!kind || !kind->stays || (kind->changed && !kind->changed(app, screen))) return false;
  // What is asked about must be seen.
  if (app.open.allHidden) hideOrShowAll(app);
  return kind->stays(app, screen);
}

/// lstForm and the list of detail screens show what is open.
void screensChanged(Application& app) {
  std::vector<std::pair<std::string, std::string>> open;
  for (const OpenScreen& screen : app.open.screens)
    if (screen.visible) open.emplace_back(screenCaption(app, screen.name), screen.name);
  std::sort(open.begin(), open.end(), [](const auto& left, const auto& right) { return left.second < right.second; });
  pRefrashListForm(app.list, open);
  refreshDetailsList(app);
}

/// Takes a screen away. It leaves the order first, so that the window's own closing finds nothing left to ask.
void removeScreen(Application& app, const std::string& screen) {
  if (!app.open.has(screen)) return;
  app.open.remove(screen);
  tell(app.display.close, screen);
  if (const ScreenKind* kind = screenKind(screen); kind && kind->closed) kind->closed(app, screen);
}

void hideScreen(Application& app, const std::string& screen) {
  if (OpenScreen* open = app.open.find(screen)) open->visible = false;
  std::erase(app.open.hidden, screen);
  tell(app.display.hide, screen);
}

void setHideCaptions(Application& app) {
  app.bar.CmdMinCaption = app.open.allHidden ? "画面の表示" : "画面の隠す";
  app.task.Mnu_OpenCaption = app.open.allHidden ? "開く" : "最小化";
}

void tellSystem(Application& app, std::string_view systemName) {
  // The record of the System that is current anyway has changed: its screens keep what is being typed.
  const bool same = app.toldSystem == systemName;
  app.toldSystem = systemName;
  for (const ScreenKind& kind : screenTable())
    if (kind.systemChanged && (!same || kind.followsRecord)) kind.systemChanged(app, systemName);
  tellRights(app);
  screensChanged(app);
}

}  // namespace

void tellRights(Application& app) {
  for (const ScreenKind& kind : screenTable())
    if (kind.rightsChanged && app.open.has(kind.name)) kind.rightsChanged(app);
}

namespace {

void tellTable(Application& app, std::string_view tableId) {
  for (const ScreenKind& kind : screenTable())
    if (kind.tableChosen && app.open.has(kind.name)) kind.tableChosen(app, tableId);
}

}  // namespace

void openScreen(Application& app, std::string_view screen) {
  const ScreenKind* kind = screenKind(screen);
  if (!kind) {
    gMsgBox(app.host, joinLines({screen, "この画面は、まだ用意されていません."}), kOkOnly | kInformationIcon);
    return;
  }
  if (!app.open.has(screen) && kind->load && kind->load(app, screen)) return;
  app.open.raise(screen).visible = true;
  tell(app.display.show, screen);
  screensChanged(app);
}

bool closeScreen(Application& app, std::string_view screen) {
  const std::string name(screen);
  if (!app.open.has(name)) return false;
  if (name == "frmAppBar" || name == "frmTASK") {
    exitProgram(app);
    return !app.ended;
  }
  if (name == "frmTBList") {
    exitProgram(app, app.list.caption);
    return !app.ended;
  }
  if (name == "frmLogInNew") {
    cancelLogIn(app);
    return false;
  }
  if (asksToStay(app, name)) return true;
  if (name == kMainDetail) {
    // Generators and the list go on to fill it.
    if (app.detail(name).changed) {
      gClearForm(app.detail(name));
      dropUnsavedWork(app, name);
    }
    hideScreen(app, name);
  } else {
    removeScreen(app, name);
  }
  screensChanged(app);
  return false;
}

void settleScreens(Application& app) {
  for (const std::string& name : app.open.names()) {
    const ScreenKind* kind = screenKind(name);
    if (kind && kind->unloaded && kind->unloaded(app)) removeScreen(app, name);
  }
  screensChanged(app);
}

bool unsavedWorkStays(Application& app) {
  const std::vector<std::string> names = app.open.names();
  return std::any_of(names.rbegin(), names.rend(), [&](const std::string& name) { return asksToStay(app, name); });
}

void closeAllScreens(Application& app, const std::vector<std::string_view>& keep) {
  const std::vector<std::string> names = app.open.names();
  for (auto name = names.rbegin(); name != names.rend(); ++name)
    if (std::find(keep.begin(), keep.end(), *name) == keep.end()) removeScreen(app, *name);
  app.open.allHidden = false;
  app.open.hidden.clear();
}

std::string screenCaption(const Application& app, std::string_view screen) {
  const ScreenKind* kind = screenKind(screen);
  return kind && kind->caption ? kind->caption(app, screen) : "";
}

void screenActivated(Application& app, std::string_view screen) {
  if (app.open.has(screen)) app.open.raise(screen);
}

std::string openDetail(Application& app, std::string_view tableId) {
  frmTBDetail detail;
  if (pGet_TableID2TableDetails(app.session, app.host, detail, tableId)) return "";
  const std::string name = freeDetailName(app);
  app.details.insert_or_assign(name, std::move(detail));
  openScreen(app, name);
  return name;
}

std::string freeDetailName(const Application& app) {
  int number = 2;
  const auto name = [&] { return std::string(kMainDetail) + ":" + std::to_string(number); };
  while (app.open.has(name())) ++number;
  return name();
}

void mnuDetailsArrange_Click(Application& app) {
  std::vector<std::string> details;
  for (const OpenScreen& screen : app.open.screens)
    if (isDetail(screen.name) && screen.visible) details.push_back(screen.name);
  std::sort(details.begin(), details.end());
  if (!details.empty()) tell(app.display.arrange, details);
}

void hideOrShowAll(Application& app) {
  OpenScreens& open = app.open;
  if (open.allHidden) {
    open.allHidden = false;
    for (const std::string& name : std::exchange(open.hidden, {})) {
      if (!open.has(name)) continue;
      open.raise(name).visible = true;
      tell(app.display.show, name);
    }
  } else {
    open.allHidden = true;
    for (OpenScreen& screen : open.screens) {
      const ScreenKind* kind = screenKind(screen.name);
      if (!screen.visible || (kind && kind->staysWhenHidden)) continue;
      screen.visible = false;
      open.hidden.push_back(screen.name);
      tell(app.display.hide, screen.name);
    }
  }
  setHideCaptions(app);
}

void connectWindows(Application& app) {
  app.windows.show = [&app](std::string_view screen) { openScreen(app, screen); };
  app.windows.close = [&app](std::string_view screen) {
    removeScreen(app, std::string(screen));
    screensChanged(app);
  };
  app.windows.systemChanged = [&app](std::string_view systemName) { tellSystem(app, systemName); };
  app.windows.tableChosen = [&app](std::string_view tableId) { tellTable(app, tableId); };
  app.windows.openDetail = [&app](std::string_view tableId) { openDetail(app, tableId); };
  app.windows.listChanged = [&app](std::string_view tableId) {
    pGetTableList(app.session, app.host, app.list, tableId);
  };
  app.windows.logOff = [&app] { logOffNow(app); };
}

}  // namespace quillmarden
