#include "shell/unsaved_work.h"

#include <algorithm>

#include "shell/screens.h"

namespace quillmarden {

namespace {

bool anyChanged(const Application& app) {
  return std::any_of(app.details.begin(), app.details.end(), [](const auto& detail) { return detail.second.changed; });
}

void takeUp(Application& app, const GridLeftOver& leftOver) {
  if (leftOver.system != app.session.gCurrentSystemName) {
    app.list.CmbSystem.text = leftOver.system;
    CmbSystem_Click(app.session, app.host, app.windows, app.list);
  }
  // The main screen is taken while it is empty: a click in the list would ask before it puts another table there.
  const std::string screen = app.detail().lblID.caption.empty() ? "frmTBDetail" : freeDetailName(app);
  if (restoreGrid(app.session, app.host, leftOver, app.details[screen], app.backups[screen])) {
    app.backups.erase(screen);
    if (screen != "frmTBDetail") app.details.erase(screen);
    return;
  }
  openScreen(app, screen);
}

}  // namespace

void offerLeftOvers(Application& app) {
  for (const GridLeftOver& leftOver : leftOverGrids(app.session)) {
    if (app.askedLeftOvers.contains(leftOver.file)) continue;
    if (leftOver.system != app.session.gCurrentSystemName && anyChanged(app)) continue;
    app.askedLeftOvers.insert(leftOver.file);
    switch (askLeftOver(app.host, leftOver)) {
      case LeftOverAnswer::Restore:
        takeUp(app, leftOver);
        break;
      case LeftOverAnswer::Drop:
        dropLeftOver(leftOver);
        break;
      case LeftOverAnswer::Later:
        break;
    }
  }
}

void dropUnsavedWork(Application& app, std::string_view screen) {
  if (const auto kept = app.backups.find(screen); kept != app.backups.end()) {
    kept->second.drop();
    app.backups.erase(kept);
  }
}

}  // namespace quillmarden
