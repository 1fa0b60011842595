#include "shell/menu_map.h"

#include <algorithm>
#include <iterator>

#include "common/message.h"
#include "shell/menu_build.h"

namespace quillmarden {

namespace {

/// "frmTBDetail:2" has the menus of "frmTBDetail".
std::string_view menuOwner(std::string_view screen) { return screen.substr(0, screen.find(':')); }

/// Entries that wait for their screen say so.
void bindLater(std::string_view screen, std::vector<MenuEntry>& entries) {
  for (MenuEntry& made : entries) {
    bindLater(screen, made.entries);
    if (!made.press && isLater(screen, made.name))
      made.press = [caption = made.caption](Application& app, std::string_view) { tellLater(app, caption); };
  }
}

std::vector<Menu> makeMap() {
  std::vector<Menu> map;
  for (auto* part : {listMenus, detailMenus, shellMenus}) std::ranges::move(part(), std::back_inserter(map));
  for (Menu& menu : map) bindLater(menu.screen, menu.entries);
  return map;
}

const MenuEntry* findIn(const std::vector<MenuEntry>& entries, std::string_view name, int index) {
  for (const MenuEntry& made : entries) {
    if (!made.separator && made.name == name && made.index == index) return &made;
    if (const MenuEntry* inner = findIn(made.entries, name, index)) return inner;
  }
  return nullptr;
}

}  // namespace

void tellLater(Application& app, std::string_view caption) {
  gMsgBox(app.host, joinLines({"[" + std::string(caption) + "] は、", "この版ではまだ利用できません."}),
          kOkOnly | kInformationIcon);
}

const std::vector<Menu>& menuMap() {
  static const std::vector<Menu> kMap = makeMap();
  return kMap;
}

const Menu* findMenu(std::string_view screen, std::string_view name) {
  for (const Menu& menu : menuMap())
    if (menu.screen == menuOwner(screen) && menu.name == name) return &menu;
  return nullptr;
}

const MenuEntry* findEntry(std::string_view screen, std::string_view name, int index) {
  for (const Menu& menu : menuMap()) {
    if (menu.screen != menuOwner(screen)) continue;
    if (const MenuEntry* found = findIn(menu.entries, name, index)) return found;
  }
  return nullptr;
}

bool isEnabled(const Application& app, std::string_view screen, const MenuEntry& made) {
  // A run lets the screens repaint and take input; a second run, or another table under its hands, would break it.
  if (app.list.running) return false;
  return !made.enabled || made.enabled(app, screen);
}

bool isVisible(const Application& app, std::string_view screen, const MenuEntry& made) {
  return !made.visible || made.visible(app, screen);
}

bool isChecked(const Application& app, std::string_view screen, const MenuEntry& made) {
  return made.checked && made.checked(app, screen);
}

std::string captionOf(const Application& app, const MenuEntry& made) {
  return made.changingCaption ? made.changingCaption(app) : made.caption;
}

bool pressMenu(Application& app, std::string_view screen, std::string_view name, int index) {
  const MenuEntry* found = findEntry(screen, name, index);
  if (!found || !found->press || !isVisible(app, screen, *found) || !isEnabled(app, screen, *found)) return false;
  // The handler may close the screen and, with it, the text that names it.
  const std::string own(screen);
  found->press(app, own);
  return true;
}

}  // namespace quillmarden
