#pragma once

#include <gtest/gtest.h>

#include <QTest>
#include <memory>
#include <string>
#include <string_view>

#include "desktop/front.h"
#include "desktop/view.h"
#include "shell/application.h"
#include "support/scripted_host.h"

namespace quillmarden {

/// The whole program on a copy of the sample, with a scripted host in place of the desktop around it.
class DesktopTest : public testing::Test {
 protected:
  DesktopTest();
  ~DesktopTest() override;

  /// From the splash screen to the login.
  void startToLogIn();
  /// On to the table list, with this System chosen.
  void logInTo(std::string_view system = "");

  View& view(std::string_view screen);
  /// The widget of a control; fails and ends the test program's use of it when there is none.
  template <typename Widget = QWidget>
  Widget& control(std::string_view screen, const char* name) {
    auto* found = view(screen).findChild<Widget*>(QString::fromLatin1(name));
    if (!found) throw std::runtime_error(std::string("no control ") + name);
    return *found;
  }
  /// Makes a window the active one. A window that belongs to another counts as active to Qt while that one is.
  void activate(std::string_view screen);
  /// A pick in a box, as the keyboard does it.
  void pick(std::string_view screen, const char* name, const char* text);
  void press(std::string_view screen, const char* name);
  void chooseRow(std::string_view screen, const char* name, int row, Qt::KeyboardModifiers keys = {});
  /// Types a text as an input method hands it over.
  void type(QWidget& widget, const char* text);
  /// Lets queued events run.
  void settle();

  ScriptedHost scripted;
  Turn turn;
  std::unique_ptr<Application> appOwned;
  std::unique_ptr<Front> front;
  Application& app;
};

}  // namespace quillmarden
