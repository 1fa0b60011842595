#pragma once

#include <QSystemTrayIcon>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "desktop/icons.h"
#include "desktop/qt_host.h"
#include "desktop/turn.h"
#include "shell/application.h"

class QTimer;

namespace quillmarden {

class View;

/// The windows of the program: makes a view for each screen that the shell shows, and does what Display asks for.
class Front {
 public:
  /// Fills app.display and, where a run offers its stop button, shows it on the wait panel.
  Front(Application& app, Turn& turn, WaitPanel* wait = nullptr);
  ~Front();
  Front(const Front&) = delete;
  Front& operator=(const Front&) = delete;

  Application& app() { return app_; }
  Turn& turn() { return turn_; }
  /// The view of an open screen; nullptr when there is none.
  View* find(std::string_view screen) const;
  /// What the login screen is to offer when it first opens; "" for what was chosen the last time.
  void prefill(std::string repository, std::string user);
  /// The splash screen, and from it the whole session.
  void start();

 private:
  void connectDisplay();
  void tick();
  View* reach(std::string_view screen);
  void placeOver(View& view, View* opener);
  void show(std::string_view screen);
  void close(std::string_view screen);
  bool focus(std::string_view screen);
  void arrange(const std::vector<std::string>& screens);
  void keepBarOnTop(bool onTop);
  void popUp(std::string_view screen, std::string_view menu);
  void showIcon();

  Application& app_;
  Turn& turn_;
  WaitPanel* wait_;
  std::string repository_;
  std::string user_;
  std::map<std::string, View*, std::less<>> views_;
  std::unique_ptr<QObject> popUpKeys_;
  std::unique_ptr<QSystemTrayIcon> icon_;
  std::unique_ptr<QTimer> splashTimer_;
  std::unique_ptr<QTimer> secondTimer_;
};

}  // namespace quillmarden
