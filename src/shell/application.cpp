#include "shell/application.h"

#include "shell/screens.h"

namespace quillmarden {

Application::Application(Host& outside) : host(outside) { connectWindows(*this); }

frmTBDetail& Application::detail(std::string_view screen) {
  const auto found = details.find(screen);
  return found != details.end() ? found->second : details["frmTBDetail"];
}

const frmTBDetail& Application::detail(std::string_view screen) const {
  static const frmTBDetail kNone;
  auto found = details.find(screen);
  if (found == details.end()) found = details.find("frmTBDetail");
  return found != details.end() ? found->second : kNone;
}

std::string Application::activeDetail() const {
  for (auto screen = open.screens.rbegin(); screen != open.screens.rend(); ++screen)
    if (screen->visible && details.contains(screen->name)) return screen->name;
  return "frmTBDetail";
}

void Application::callFrom(std::string_view screen) {
  const frmTBDetail& from = detail(screen);
  caller = {std::string(screen), from.lblID.caption, from.activeRow};
}

frmTBDetail* Application::callingDetail() {
  const auto found = details.find(caller.screen);
  return found != details.end() && found->second.lblID.caption == caller.tableId ? &found->second : nullptr;
}

}  // namespace quillmarden
