#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "shell/application.h"

namespace quillmarden {

/// A line of a menu. `screen` is the name of the screen whose menu is open: for "frmTBDetail:2" the handlers work on
/// that detail screen.
struct MenuEntry {
  using Test = std::function<bool(const Application& app, std::string_view screen)>;

  std::string name;                ///< of the control, such as "mnuCreateSql"; "" for a separator
  int index = -1;                  ///< in its control array; -1 for a control that stands alone
  std::string caption;             ///< to the letter
  std::string keys;                ///< such as "Ctrl+S", "F5"; "" for none
  std::vector<MenuEntry> entries;  ///< of a submenu
  std::function<void(Application& app, std::string_view screen)> press;
  Test enabled;                                                        ///< empty: always
  Test visible;                                                        ///< empty: always
  Test checked;                                                        ///< empty: an entry without a check mark
  std::function<std::string(const Application& app)> changingCaption;  ///< where the caption follows a state
  bool separator = false;
};

/// A menu of a screen: on its menu bar, the popup of a control, or both.
struct Menu {
  std::string screen;  ///< "frmTBList", "frmTBDetail", "frmAppBar", "frmTASK", "frmLogInNew"
  std::string name;    ///< of the group, such as "mnutRef"
  std::string caption;
  bool onBar = false;
  std::string popupOf;  ///< the control whose right click opens it; "" for none
  std::vector<MenuEntry> entries;
};

/// All menus, in the order of the bar.
const std::vector<Menu>& menuMap();
/// A screen's menu by its name; nullptr when there is none. Any detail screen finds those of "frmTBDetail".
const Menu* findMenu(std::string_view screen, std::string_view name);
const MenuEntry* findEntry(std::string_view screen, std::string_view name, int index = -1);

bool isEnabled(const Application& app, std::string_view screen, const MenuEntry& entry);
bool isVisible(const Application& app, std::string_view screen, const MenuEntry& entry);
bool isChecked(const Application& app, std::string_view screen, const MenuEntry& entry);
std::string captionOf(const Application& app, const MenuEntry& entry);

/// Runs an entry's handler. False when there is no such entry, or it is hidden or disabled: nothing ran then.
bool pressMenu(Application& app, std::string_view screen, std::string_view name, int index = -1);

/// An entry, or a button of a screen, that waits for what it opens: pressing it says so.
struct LaterScreen {
  std::string_view screen;  ///< of the menu or the button
  std::string_view entry;
  std::string_view what;  ///< what it will open, for the developer
};
const std::vector<LaterScreen>& laterScreens();
bool isLater(std::string_view screen, std::string_view entry);
void tellLater(Application& app, std::string_view caption);

}  // namespace quillmarden
