#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "shell/menu_map.h"

namespace quillmarden {

// How the files of the menu map write their entries.

using MenuPress = std::function<void(Application& app, std::string_view screen)>;

inline MenuEntry entry(std::string name, std::string caption, MenuPress press = {}, std::string keys = {}) {
  MenuEntry made;
  made.name = std::move(name);
  made.caption = std::move(caption);
  made.press = std::move(press);
  made.keys = std::move(keys);
  return made;
}

/// One of a control array.
inline MenuEntry entryAt(std::string name, int index, std::string caption, MenuPress press = {},
                         std::string keys = {}) {
  MenuEntry made = entry(std::move(name), std::move(caption), std::move(press), std::move(keys));
  made.index = index;
  return made;
}

inline MenuEntry separator() {
  MenuEntry made;
  made.separator = true;
  return made;
}

inline MenuEntry submenu(std::string name, std::string caption, std::vector<MenuEntry> entries) {
  MenuEntry made = entry(std::move(name), std::move(caption));
  made.entries = std::move(entries);
  return made;
}

inline MenuEntry enabledWhen(MenuEntry made, MenuEntry::Test test) {
  made.enabled = std::move(test);
  return made;
}

inline MenuEntry checkedWhen(MenuEntry made, MenuEntry::Test test) {
  made.checked = std::move(test);
  return made;
}

inline MenuEntry visibleWhen(MenuEntry made, MenuEntry::Test test) {
  made.visible = std::move(test);
  return made;
}

/// A handler that needs nothing of the screen's name.
inline MenuPress on(void (*handler)(Application&)) {
  return [handler](Application& app, std::string_view) { handler(app); };
}

/// One that opens a screen.
inline MenuPress opens(std::string screen) {
  return [screen = std::move(screen)](Application& app, std::string_view) { app.windows.show(screen); };
}

/// A detail screen that holds a table.
inline bool hasTable(const Application& app, std::string_view screen) {
  return !app.detail(screen).lblID.caption.empty();
}

// The menus, a file each.
std::vector<Menu> listMenus();
std::vector<Menu> detailMenus();
/// ALTER statements and code snippets of the field grid.
std::vector<MenuEntry> codeMenus();
std::vector<Menu> shellMenus();
/// The handler of an output to a spreadsheet; an empty function for one that cannot be made yet.
MenuPress excelHandler(std::string_view name, int index);

}  // namespace quillmarden
