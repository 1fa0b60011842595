#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTabBar>
#include <QToolButton>
#include <array>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <random>

#include "desktop/view.h"
#include "driver.h"
#include "editing/frm_tb_list.h"

namespace quillmarden {
namespace {

/// A person without a plan: clicks and keys anywhere, answers of all sorts. What this looks for is a program that goes
/// down, a handler that throws and a window that no longer answers. QM_RESTLESS_SECONDS says how long, QM_RESTLESS_SEED
/// which way.
class Restless : public testing::Test {
 protected:
  static unsigned number(const char* variable, unsigned usual) {
    const char* given = std::getenv(variable);
    return given ? static_cast<unsigned>(std::strtoul(given, nullptr, 10)) : usual;
  }

  template <typename Range>
  auto& oneOf(Range& range) {
    return range[std::uniform_int_distribution<std::size_t>(0, std::size(range) - 1)(chance)];
  }
  bool once(int in) { return std::uniform_int_distribution<int>(1, in)(chance) == 1; }

  /// What the pointer can be put on now: the entries of an open menu or drop-down, the buttons of a message, else the
  /// controls of the window in front.
  std::vector<QPoint> targets() {
    std::vector<QPoint> places;
    const auto add = [&](const QWidget& widget, const QRect& part) {
      const QRect seen = part.intersected(widget.visibleRegion().boundingRect());
      if (seen.width() > 2 && seen.height() > 2) places.push_back(widget.mapToGlobal(seen.center()));
    };
    const auto addRows = [&](const QAbstractItemView& list) {
      const int rows = std::min(list.model()->rowCount(), 8), columns = std::min(list.model()->columnCount(), 14);
      for (int row = 0; row < rows; ++row)
        for (int column = 0; column < columns; ++column)
          add(*list.viewport(), list.visualRect(list.model()->index(row, column)));
      add(*list.viewport(), list.viewport()->rect());
    };
    if (const QWidget* popup = QApplication::activePopupWidget()) {
      if (const auto* menu = qobject_cast<const QMenu*>(popup))
        for (QAction* action : menu->actions()) add(*menu, menu->actionGeometry(action));
      else if (const auto* list = popup->findChild<QAbstractItemView*>())
        addRows(*list);
      return places;
    }
    const QWidget* window = QApplication::activeModalWidget();
    if (!window) window = QApplication::activeWindow();
    if (!window) return places;
    for (const QWidget* widget : window->findChildren<QWidget*>()) {
      if (!widget->isVisible() || widget->visibleRegion().isEmpty() || spared(*widget)) continue;
      if (const auto* list = qobject_cast<const QAbstractItemView*>(widget)) {
        addRows(*list);
      } else if (qobject_cast<const QAbstractButton*>(widget) || qobject_cast<const QLineEdit*>(widget) ||
                 qobject_cast<const QComboBox*>(widget) || qobject_cast<const QPlainTextEdit*>(widget)) {
        add(*widget, widget->rect());
      } else if (const auto* tabs = qobject_cast<const QTabBar*>(widget)) {
        for (int tab = 0; tab < tabs->count(); ++tab) add(*tabs, tabs->tabRect(tab));
      }
    }
    return places;
  }

  /// What ends the program, or leads out of it to a dialog that can reach any file.
  static bool spared(const QWidget& widget) {
    static const QStringList kSpared = {"cmdCancel", "CmdNewRepository", "CmdRef"};
    const auto* view = dynamic_cast<const View*>(widget.window());
    return view && view->screen() == "frmLogInNew" && kSpared.contains(widget.objectName());
  }

  void step() {
    struct Now {
      bool message = false, ending = false, login = false, dialog = false;
      std::vector<QPoint> places;
    };
    const Now now = person.look([this] {
      Now seen;
      const QWidget* modal = QApplication::activeModalWidget();
      seen.message = qobject_cast<const QMessageBox*>(modal) != nullptr;
      seen.dialog = modal && !seen.message;
      seen.ending = modal && modal->windowTitle() == QStringLiteral("終了確認");
      const View* logIn = person.front().find("frmLogInNew");
      seen.login = logIn && logIn->isVisible();
      seen.places = targets();
      return seen;
    });
    static constexpr std::array kKeys = {"Return", "Escape",    "Tab",    "space",  "Delete", "ctrl+z", "ctrl+y",
                                         "ctrl+c", "ctrl+v",    "ctrl+s", "F5",     "F2",     "F10",    "shift+F10",
                                         "Down",   "Up",        "Right",  "Left",   "Home",   "End",    "alt+Down",
                                         "alt+F4", "BackSpace", "ctrl+a", "ctrl+d", "Menu",   "Return", "Tab"};
    static constexpr std::array kAnswers = {"Return", "Escape", "alt+n", "alt+y", "alt+F4"};
    if (now.ending || now.dialog) return person.key("Escape");
    if (now.message) return person.key(oneOf(kAnswers));
    if (now.login) return person.press("frmLogInNew", "cmdOK");
    if (now.places.empty() || once(3)) {
      if (once(4)) return person.type(oneOf(kTexts));
      return person.key(oneOf(kKeys));
    }
    person.click(oneOf(now.places), once(4) ? 3 : 1, once(6) ? 2 : 1);
  }

  static inline const std::array<std::string, 5> kTexts = {"a", "12", "orders", "x y", "int"};
  std::mt19937 chance;
  Driver person{QM_SAMPLE_FILE};
};

TEST_F(Restless, NothingGoesDown) {
  const unsigned seconds = number("QM_RESTLESS_SECONDS", 20), seed = number("QM_RESTLESS_SEED", 1);
  chance.seed(seed);
  std::cerr << "seed " << seed << "\n";
  int steps = 0;
  person.run([&] {
    person.awaitScreen("frmLogInNew");
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
    while (std::chrono::steady_clock::now() < end && !HasFailure() &&
           !person.look([&] { return person.app().ended; })) {
      step();
      ++steps;
    }
    std::cerr << steps << " steps\n";
    // Whatever stands open is let go of, and the program still answers.
    for (int tries = 0; tries < 40 && person.look([] {
           return QApplication::activePopupWidget() || QApplication::activeModalWidget();
         });
         ++tries)
      person.key("Escape");
  });
  EXPECT_FALSE(person.app().ended) << "no way leads out without the question";
}

}  // namespace
}  // namespace quillmarden
