#include <QAbstractItemView>
#include <QApplication>
#include <QContextMenuEvent>
#include <QEventLoop>
#include <QMenu>
#include <QMenuBar>
#include <QTimer>
#include <QToolButton>
#include <functional>

#include "desktop/menus.h"
#include "desktop_fixture.h"
#include "editing/frm_tb_list.h"
#include "shell/list_commands.h"
#include "shell/screens.h"

namespace quillmarden {
namespace {

using EntryPath = QStringList;  ///< of an entry: those of the submenus above it, and its own name

QString entryName(const QAction& action) { return action.objectName().isEmpty() ? action.text() : action.objectName(); }

/// Real popups, with messages that turn the event loop as those of a display do: what a menu's entry starts goes on
/// while the menu closes.
class PopupTest : public DesktopTest {
 protected:
  using Opener = std::function<void()>;

  PopupTest() {
    scripted.host.dialogs.message = [](std::string_view, int style, std::string_view title) {
      for (int turns = 0; turns < 3; ++turns) {
        QEventLoop loop;
        QTimer::singleShot(0, &loop, &QEventLoop::quit);
        loop.exec();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
      }
      if ((style & 7) != kYesNo) return static_cast<int>(kOk);
      // The session is to go on, and edits are to be given up.
      return static_cast<int>(title == "終了確認" || (style & kKeepsOnYes) ? kNo : kYes);
    };
    scripted.host.dialogs.yield = [] { QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents); };
  }

  static QMenu* shownMenu() { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); }

  QMenu* open(const Opener& opener) {
    opener();
    EXPECT_TRUE(QTest::qWaitFor([] { return shownMenu() != nullptr; }, 2000)) << "no menu opened";
    return shownMenu();
  }

  static void closePopups() {
    while (QWidget* popup = QApplication::activePopupWidget()) popup->close();
  }

  static void collect(QMenu& menu, EntryPath path, std::vector<EntryPath>& found) {
    Q_EMIT menu.aboutToShow();
    for (QAction* action : menu.actions()) {
      if (action->isSeparator() || !action->isVisible() || !action->isEnabled()) continue;
      path.push_back(entryName(*action));
      if (action->menu())
        collect(*action->menu(), path, found);
      else
        found.push_back(path);
      path.pop_back();
    }
  }

  static QAction* actionOf(const QMenu& menu, const QString& name) {
    for (QAction* action : menu.actions())
      if (entryName(*action) == name && action->isVisible() && action->isEnabled()) return action;
    return nullptr;
  }

  static void click(QMenu& menu, QAction& action) {
    const QPoint place = menu.actionGeometry(&action).center();
    // A menu takes no press that may still belong to the one that opened it.
    for (int step = 0; step < 8; ++step) QTest::mouseMove(&menu, place + QPoint(step % 2, 0));
    QTest::mouseClick(&menu, Qt::LeftButton, {}, place);
  }

  /// Opens the menu and presses the entry, with the mouse or with the keyboard. False when it is not offered any more,
  /// as an entry for chosen rows is when none are left.
  bool pressEntry(const Opener& opener, const EntryPath& path, bool mouse) {
    QMenu* menu = open(opener);
    for (qsizetype level = 0; menu && level < path.size(); ++level) {
      QAction* action = actionOf(*menu, path[level]);
      if (!action) break;
      const bool leaf = level + 1 == path.size();
      if (mouse && menu->rect().contains(menu->actionGeometry(action).center())) {
        click(*menu, *action);
      } else {
        menu->setActiveAction(action);
        QTest::keyClick(menu, leaf ? Qt::Key_Return : Qt::Key_Right);
      }
      if (leaf) {
        settle();
        return true;
      }
      QMenu* inner = action->menu();
      if (!QTest::qWaitFor([inner] { return inner->isVisible(); }, 2000)) {
        ADD_FAILURE() << "no submenu";
        break;
      }
      menu = inner;
    }
    closePopups();
    return false;
  }

  /// Every entry of the menu that the opener opens, twice.
  int pressAll(const Opener& opener) {
    restore();
    std::vector<EntryPath> paths;
    if (QMenu* menu = open(opener)) collect(*menu, {}, paths);
    closePopups();
    settle();
    int pressed = 0;
    for (const EntryPath& path : paths) {
      SCOPED_TRACE(fromQt(path.join('/')));
      for (const bool mouse : {true, false}) {
        restore();
        if (pressEntry(opener, path, mouse)) ++pressed;
        EXPECT_FALSE(turn.running());
        // This one leads on to the menu of what was chosen.
        const bool leadsOn = path.constLast() == "mnuSelectPut";
        EXPECT_TRUE(leadsOn || !QApplication::activePopupWidget()) << "a menu stayed open";
        closePopups();
      }
    }
    return pressed;
  }

  void rightClick(std::string_view screen, const char* name) {
    auto& widget = control<QAbstractItemView>(screen, name);
    const QModelIndex row = widget.model()->index(0, 0);
    QPoint place = widget.visualRect(row).center();
    if (!row.isValid()) place = QPoint(5, 5);
    QTest::mousePress(widget.viewport(), Qt::RightButton, {}, place);
    QContextMenuEvent event(QContextMenuEvent::Mouse, place, widget.viewport()->mapToGlobal(place));
    QApplication::sendEvent(widget.viewport(), &event);
    QTest::mouseRelease(widget.viewport(), Qt::RightButton, {}, place);
  }

  /// The list of a System with two rows chosen for output and the first table on show, and nothing else open.
  void backToList(const char* system) {
    if (!app.session.gDB) logInTo(system);
    turn.run([&] {
      if (app.open.allHidden) hideOrShowAll(app);
      for (const std::string& name : app.open.names())
        if (name != "frmTASK" && name != "frmAppBar" && name != "frmTBList" && name != "frmTBDetail")
          app.windows.close(name);
      app.list.lstFormVisible = true;
      app.list.narrow = false;
      frmTBList& list = app.list;
      list.LstTable.selected.assign(list.LstTable.rows.size(), false);
      list.LstTable.selected[0] = list.LstTable.selected[1] = true;
      list.LstTable.listIndex = 0;
      mnuExcelSel_Click(list);
      list.LstTableSel.listIndex = 0;
      app.detail().changed = false;
      LstTable_Click(app);
      list.lstForm.listIndex = 0;
    });
    settle();
  }

  /// The screens as the next press expects them.
  std::function<void()> restore = [] {};
};

TEST_F(PopupTest, EveryEntryOfTheListsMenusTwice) {
  logInTo("販売管理_PostgreSQL");
  restore = [this] { backToList("販売管理_PostgreSQL"); };
  auto& list = view("frmTBList");
  const QMenuBar* bar = list.findChild<QMenuBar*>();
  for (QAction* top : bar->actions()) {
    SCOPED_TRACE(fromQt(top->text()));
    EXPECT_GT(pressAll([&] {
                auto* menuBar = view("frmTBList").findChild<QMenuBar*>();
                QTest::mouseClick(menuBar, Qt::LeftButton, {}, menuBar->actionGeometry(top).center());
              }),
              0);
  }
  EXPECT_GE(pressAll([this] { rightClick("frmTBList", "LstTable"); }), 2 * 20);
  EXPECT_GE(pressAll([this] { rightClick("frmTBList", "LstTableSel"); }), 2 * 10);
  EXPECT_GE(pressAll([this] { rightClick("frmTBList", "lstForm"); }), 2);
}

TEST_F(PopupTest, EveryEntryOfTheGridsMenusTwice) {
  logInTo("販売管理_PostgreSQL");
  restore = [this] {
    backToList("販売管理_PostgreSQL");
    control<QAbstractItemView>("frmTBDetail", "Spread").setCurrentIndex({});
  };
  EXPECT_GE(pressAll([this] { rightClick("frmTBDetail", "Spread"); }), 2 * 15);
  EXPECT_GE(pressAll([this] {
              auto* bar = view("frmTBDetail").findChild<QMenuBar*>();
              QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(bar->actions().constFirst()).center());
            }),
            2 * 15);
}

TEST_F(PopupTest, EveryEntryOfTheOtherMenusTwice) {
  startToLogIn();
  press("frmLogInNew", "ChkDataBase");
  restore = [this] {
    app.logIn.LstFolder.rows = {scripted.folder.file("program")};
    app.logIn.LstFolder.selected = {true};
    app.logIn.LstFolder.listIndex = 0;
    turn.refresh();
  };
  EXPECT_EQ(pressAll([this] { rightClick("frmLogInNew", "LstFolder"); }), 2 * 2);
  app.logIn.ChkDataBase.value = false;
  turn.run([this] { ChkDataBase_Click(app.session, app.host, app.logIn); });
  press("frmLogInNew", "cmdOK");
  ASSERT_NE(front->find("frmTBList"), nullptr);
  pick("frmTBList", "CmbSystem", "販売管理_PostgreSQL");

  restore = [this] { backToList("販売管理_PostgreSQL"); };
  const auto barMenu = [this] {
    QContextMenuEvent event(QContextMenuEvent::Mouse, QPoint(3, 3), view("frmAppBar").mapToGlobal(QPoint(3, 3)));
    QApplication::sendEvent(&view("frmAppBar"), &event);
  };
  EXPECT_EQ(pressAll(barMenu), 2 * 3);
  EXPECT_EQ(pressAll([this] {
              for (QToolButton* button : view("frmAppBar").findChildren<QToolButton*>())
                if (button->menu()) button->menu()->popup(QPoint(0, 0));
            }),
            2 * 6);
  // The icon's, which the tests' display has no place for.
  EXPECT_EQ(pressAll([this] {
              for (const Menu& menu : menuMap())
                if (menu.screen == "frmTASK") popUpOnce(makeMenu(view("frmAppBar"), menu), QPoint(0, 0));
            }),
            2 * 2);

  const auto opened = [this](const char* screen) {
    restore = [this, screen] {
      backToList("販売管理_PostgreSQL");
      turn.run([&] { openScreen(app, screen); });
      settle();
    };
  };
  opened("frmdetailslist");
  EXPECT_EQ(pressAll([this] { rightClick("frmdetailslist", "lstDetails"); }), 2);
  opened("frmDivision");
  EXPECT_EQ(pressAll([this] { rightClick("frmDivision", "lstDivision"); }), 2 * 3);
  restore = [this, again = restore] {
    again();
    app.division.changed = false;
    turn.run([this] {
      app.division.lstDivision.listIndex = 0;
      lstDivision_Click(app.session, app.host, app.division);
    });
    settle();
  };
  EXPECT_EQ(pressAll([this] { rightClick("frmDivision", "Spread"); }), 2 * 3);
  opened("frmMemo");
  EXPECT_EQ(pressAll([this] { rightClick("frmMemo", "Spread"); }), 2);
}

}  // namespace
}  // namespace quillmarden
