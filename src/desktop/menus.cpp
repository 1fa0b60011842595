#include "desktop/menus.h"

#include <QMenu>
#include <QMenuBar>
#include <QShortcut>
#include <utility>
#include <vector>

#include "desktop/view.h"

namespace quillmarden {
namespace {

QString menuText(std::string text) {
  // An ampersand in a caption is a letter, no mark for a key.
  return toQt(text).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

/// The screen that a menu works on: the view's own, or, of the icon's menu that lives in the bar, the icon.
std::string screenOf(const View& view, const Menu& menu) {
  return view.screen().substr(0, view.screen().find(':')) == menu.screen ? view.screen() : menu.screen;
}

/// The press runs when the menu has let go of it: handlers open messages and yield, and a menu that waits for them in
/// the middle of its own event does not live through that.
void press(View& view, const std::string& screen, const MenuEntry& entry) {
  view.later([&app = view.app(), screen, &entry] { pressMenu(app, screen, entry.name, entry.index); });
}

using Actions = std::vector<std::pair<QAction*, const MenuEntry*>>;

void addEntries(View& view, const std::string& screen, QMenu* menu, const std::vector<MenuEntry>& entries,
                Actions& actions) {
  for (const MenuEntry& entry : entries) {
    if (entry.separator) {
      menu->addSeparator();
      continue;
    }
    QAction* action = nullptr;
    if (!entry.entries.empty()) {
      QMenu* inner = menu->addMenu(menuText(entry.caption));
      addEntries(view, screen, inner, entry.entries, actions);
      action = inner->menuAction();
    } else {
      action = menu->addAction(menuText(entry.caption));
      QObject::connect(action, &QAction::triggered, &view, [&view, screen, &entry] { press(view, screen, entry); });
    }
    action->setObjectName(entry.index < 0 ? toQt(entry.name)
                                          : QStringLiteral("%1:%2").arg(toQt(entry.name)).arg(entry.index));
    actions.emplace_back(action, &entry);
  }
}

/// Behind a tab a menu shows the keys, though they are the focused widget's and not the window's.
QString actionText(const Application& app, const MenuEntry& entry) {
  QString text = menuText(captionOf(app, entry));
  if (!entry.keys.empty()) text += QLatin1Char('\t') + toQt(entry.keys);
  return text;
}

void showEntries(const Application& app, const std::string& screen, const Actions& actions) {
  for (const auto& [action, entry] : actions) {
    action->setText(actionText(app, *entry));
    action->setVisible(isVisible(app, screen, *entry));
    action->setEnabled(isEnabled(app, screen, *entry));
    if (!entry->checked) continue;
    action->setCheckable(true);
    action->setChecked(isChecked(app, screen, *entry));
  }
}

void addKeys(View& view, const std::string& screen, QWidget* widget, const std::vector<MenuEntry>& entries) {
  for (const MenuEntry& entry : entries) {
    addKeys(view, screen, widget, entry.entries);
    if (entry.keys.empty()) continue;
    const auto* key =
        new QShortcut(QKeySequence(toQt(entry.keys)), widget, nullptr, nullptr, Qt::WidgetWithChildrenShortcut);
    QObject::connect(key, &QShortcut::activated, &view, view.binder().act([&app = view.app(), screen, &entry] {
      pressMenu(app, screen, entry.name, entry.index);
    }));
  }
}

}  // namespace

QMenu* makeMenu(View& view, const Menu& menu) {
  auto* made = new QMenu(menuText(menu.caption), &view);
  made->setObjectName(toQt(menu.name));
  Actions actions;
  const std::string screen = screenOf(view, menu);
  addEntries(view, screen, made, menu.entries, actions);
  const auto showNow = [&app = view.app(), screen, actions] { showEntries(app, screen, actions); };
  QObject::connect(made, &QMenu::aboutToShow, &view, showNow);
  showNow();
  return made;
}

QMenuBar* makeMenuBar(View& view) {
  auto* bar = new QMenuBar(&view);
  bar->setNativeMenuBar(false);
  const std::string screen = view.screen().substr(0, view.screen().find(':'));
  for (const Menu& menu : menuMap())
    if (menu.onBar && menu.screen == screen) bar->addMenu(makeMenu(view, menu));
  const auto* key = new QShortcut(Qt::Key_F10, &view);
  QObject::connect(key, &QShortcut::activated, bar, [bar] {
    if (!bar->actions().isEmpty()) bar->setActiveAction(bar->actions().constFirst());
  });
  return bar;
}

void popUpOnce(QMenu* menu, const QPoint& place) {
  // Not while the menu is still about its own hiding; nothing else runs in between, for presses wait, too.
  QObject::connect(menu, &QMenu::aboutToHide, menu, &QObject::deleteLater, Qt::QueuedConnection);
  menu->popup(place);
}

void popUpMenu(View& view, std::string_view menu, const QPoint& place) {
  if (const Menu* found = findMenu(view.screen(), menu)) popUpOnce(makeMenu(view, *found), place);
}

void addMenuKeys(View& view, QWidget* widget, std::string_view menu) {
  if (const Menu* found = findMenu(view.screen(), menu)) addKeys(view, screenOf(view, *found), widget, found->entries);
}

}  // namespace quillmarden
