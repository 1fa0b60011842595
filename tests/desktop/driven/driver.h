#pragma once

#include <QCoreApplication>
#include <QPoint>
#include <QString>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <thread>
#include <type_traits>
#include <utility>

#include "desktop/front.h"
#include "shell/application.h"
#include "support/scripted_host.h"

class QWidget;

namespace quillmarden {

/// The program as it is started, on a display with a window manager, and a person in front of it: a second thread that
/// moves the mouse and presses keys through the display server, and looks at the windows alone. What the program does
/// then runs in its own event loop, messages and menus included.
class Driver {
 public:
  /// On an empty program folder, or with a copy of a Repository in it and that chosen.
  explicit Driver(const std::string& repository = {});
  ~Driver();

  /// Runs the person's doings beside the event loop, and comes back when both have ended.
  void run(const std::function<void()>& person);

  // --- for the person's thread

  /// Calls a function in the thread of the windows and waits for it, in the middle of a message as well.
  template <typename Function>
  std::invoke_result_t<Function> look(Function function) {
    if constexpr (std::is_void_v<std::invoke_result_t<Function>>) {
      QMetaObject::invokeMethod(qApp, function, Qt::BlockingQueuedConnection);
    } else {
      std::invoke_result_t<Function> seen{};
      QMetaObject::invokeMethod(
          qApp, [&] { seen = function(); }, Qt::BlockingQueuedConnection);
      return seen;
    }
  }
  /// Waits until something is to be seen; fails the test, with a picture, when it does not come.
  bool await(const char* what, const std::function<bool()>& seen, int milliseconds = 15'000);

  void click(const QPoint& place, int button = 1, int times = 1);
  void key(const char* keys);
  /// Types Latin letters, digits and blanks.
  void type(const std::string& text);
  void pause(int milliseconds);

  /// The middle of a control that is to be seen.
  QPoint at(std::string_view screen, const char* control);
  /// The middle of a row of a list, or of a cell of a grid; both count from 0.
  QPoint at(std::string_view screen, const char* list, int row, int column = 0);
  void press(std::string_view screen, const char* control);
  bool sees(std::string_view screen);
  void awaitScreen(std::string_view screen);
  void awaitGone(std::string_view screen);
  /// Walks through an open menu and its submenus with the mouse, and clicks the last caption.
  void choose(std::initializer_list<const char*> captions);
  /// Opens a box and clicks an entry of its list.
  void pick(std::string_view screen, const char* box, const char* entry);
  /// Waits for a message that holds this text and presses a key on it.
  void answer(const char* text, const char* keys);
  /// What a statement gives in its first column of its first row.
  std::string stored(const char* sql);

  Application& app() { return *app_; }
  Front& front() { return *front_; }
  ScriptedHost& outside() { return scripted_; }

 private:
  void awaitQuiet();
  void picture(const std::string& name);

  ScriptedHost scripted_;  ///< for its folders, and for what is handed to other programs
  Turn turn_;
  std::unique_ptr<QtHost> host_;
  std::unique_ptr<Application> app_;
  std::unique_ptr<Front> front_;
};

}  // namespace quillmarden
