#pragma once

#include <string>
#include <string_view>

#include "shell/menu_map.h"

class QMenu;
class QMenuBar;
class QPoint;
class QWidget;

namespace quillmarden {

class View;

/// A menu of the menu map for a view. What is enabled, visible and checked it asks when it opens; an entry's press runs
/// in its turn, behind the menu's own event.
QMenu* makeMenu(View& view, const Menu& menu);
/// The menus of the view's screen that stand on its bar. [F10] opens the first of them.
QMenuBar* makeMenuBar(View& view);
/// Opens a menu that was made for this one time; it goes after it has closed and nothing of it runs any more.
void popUpOnce(QMenu* menu, const QPoint& place);
/// Opens the menu as a right click on a widget does.
void popUpMenu(View& view, std::string_view menu, const QPoint& place);
/// The keys of all entries of a menu, for as long as the focus is in the widget.
void addMenuKeys(View& view, QWidget* widget, std::string_view menu);

}  // namespace quillmarden
