#include "desktop/front.h"

#include <QApplication>
#include <QMenu>
#include <QScreen>
#include <QTimer>
#include <QWindow>
#include <cmath>
#include <utility>

#include "common/message.h"
#include "desktop/look_menu.h"
#include "desktop/menus.h"
#include "desktop/view.h"
#include "desktop/views.h"
#include "desktop/window_place.h"
#include "shell/frm_msg.h"
#include "shell/frm_stop.h"
#include "shell/screens.h"
#include "shell/session_life.h"

namespace quillmarden {
namespace {

// The splash screen's ticks: the login opens on the second and people wait for it.
constexpr int kSplashTick = 40;

void openHelp(Host& host) {
  const auto page = host.machine.programFolder / "help" / "index.html";
  std::error_code ignored;
  if (!std::filesystem::exists(page, ignored) || !host.opener.openFile(page))
    gMsgBox(host, joinLines({"ヘルプを開けませんでした.", page.string()}), kOkOnly | kWarningIcon, "確認");
}

QString systemInformation() {
  QStringList lines{QSysInfo::prettyProductName(), QSysInfo::kernelType() + ' ' + QSysInfo::kernelVersion(),
                    QSysInfo::currentCpuArchitecture(), QStringLiteral("Qt ") + QString::fromLatin1(qVersion())};
  for (const QScreen* screen : QGuiApplication::screens())
    lines << QStringLiteral("%1 × %2 (%3 %)")
                 .arg(screen->size().width())
                 .arg(screen->size().height())
                 .arg(std::lround(screen->devicePixelRatio() * 100));
  return lines.join('\n');
}

/// While a drop-down or a menu is open its keys are its own. A drop-down closes already as Qt asks around who wants a
/// key for itself, and the window behind it would then take the key for a shortcut: [Esc] closed the screen together
/// with its list.
class PopUpKeys : public QObject {
 public:
  PopUpKeys() { qApp->installEventFilter(this); }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::ShortcutOverride) {
      if (QWidget* popUp = QApplication::activePopupWidget()) {
        asked_ = popUp;
        event->accept();
      }
      return false;
    }
    if (event->type() != QEvent::KeyPress || !asked_) return false;
    // The key that closed it does nothing more.
    return std::exchange(asked_, nullptr) != QApplication::activePopupWidget();
  }

 private:
  const QWidget* asked_ = nullptr;  ///< the popup that was open when the key was pressed; looked at, never used
};

}  // namespace

Front::Front(Application& app, Turn& turn, WaitPanel* wait)
    : app_(app), turn_(turn), wait_(wait), popUpKeys_(std::make_unique<PopUpKeys>()) {
  turn_.settle = [this] { settleScreens(app_); };
  if (wait_) wait_->stopPressed = [this] { CmdStop_Click(app_.stop); };
  connectDisplay();
}

Front::~Front() {
  for (const auto& [screen, view] : views_) delete view;
}

View* Front::find(std::string_view screen) const {
  const auto found = views_.find(screen);
  return found == views_.end() ? nullptr : found->second;
}

void Front::start() {
  turn_.run([this] { startProgram(app_); });
  applyKeptLook(app_);
  splashTimer_ = std::make_unique<QTimer>();
  QObject::connect(splashTimer_.get(), &QTimer::timeout, [this] {
    turn_.run([this] { tick(); });
    if (!app_.open.has("frmSplash")) splashTimer_->stop();
  });
  splashTimer_->start(kSplashTick);
  secondTimer_ = std::make_unique<QTimer>();
  QObject::connect(secondTimer_.get(), &QTimer::timeout, [this] {
    if (find("frmMSG") && !turn_.running()) turn_.run([this] { frmMSG_Timer(app_); });
  });
  secondTimer_->start(1000);
}

void Front::tick() {
  const bool opens = !app_.open.has("frmLogInNew");
  frmSplash_Timer(app_);
  if (opens && app_.open.has("frmLogInNew")) chooseRepository(app_.session, app_.host, app_.logIn, repository_, user_);
}

void Front::prefill(std::string repository, std::string user) {
  repository_ = std::move(repository);
  user_ = std::move(user);
}

void Front::connectDisplay() {
  Display& display = app_.display;
  display.show = [this](std::string_view screen) { show(screen); };
  display.hide = [this](std::string_view screen) {
    if (screen == "frmTASK") icon_.reset();
    if (View* view = find(screen)) view->hide();
  };
  display.close = [this](std::string_view screen) { close(screen); };
  display.minimise = [this](std::string_view screen) {
    if (View* view = find(screen)) view->showMinimized();
  };
  display.focus = [this](std::string_view screen) { return focus(screen); };
  display.arrange = [this](const std::vector<std::string>& screens) { arrange(screens); };
  display.keepBarOnTop = [this](bool onTop) { keepBarOnTop(onTop); };
  display.popUp = [this](std::string_view screen, std::string_view menu) { popUp(screen, menu); };
  display.help = [this] { openHelp(app_.host); };
  display.systemInformation = [this] { showMSG(app_, fromQt(systemInformation())); };
  display.settingsChanged = [this] { applyKeptLook(app_); };
  display.quit = [] { QTimer::singleShot(0, qApp, &QApplication::quit); };
}

View* Front::reach(std::string_view screen) {
  if (View* view = find(screen)) return view;
  const ViewMaker* maker = findViewMaker(screen);
  if (!maker) return nullptr;
  View* view = maker->make(*this, std::string(screen));
  views_.emplace(screen, view);
  restorePlace(app_.session, screen, *view);
  return view;
}

void Front::show(std::string_view screen) {
  if (screen == "frmTASK") return showIcon();
  if (screen == "frmSTOP") {
    if (wait_) wait_->offerStop();
    return;
  }
  View* view = reach(screen);
  if (!view) {
    gMsgBox(app_.host, joinLines({screen, "この画面は、まだ用意されていません."}), kOkOnly | kInformationIcon);
    app_.windows.close(screen);
    return;
  }
  view->binder().refresh();
  view->aboutToShow();
  if (findViewMaker(screen)->child && !view->isVisible()) placeOver(*view, View::inFront());
  if (view->isMinimized())
    view->showNormal();
  else
    view->show();
  view->raise();
  view->activateWindow();
}

void Front::close(std::string_view screen) {
  if (screen == "frmTASK") icon_.reset();
  const auto found = views_.find(screen);
  if (found == views_.end()) return;
  View* view = found->second;
  views_.erase(found);
  view->release();
  // Whoever closes a window goes on in the one that it was opened from.
  View* opener = view->isActiveWindow() ? view->opener() : nullptr;
  view->hide();
  if (opener && opener->isVisible()) opener->activateWindow();
  // The window may be closing out of one of its own buttons.
  view->deleteLater();
}

void Front::placeOver(View& view, View* opener) {
  if (!opener || opener == &view) return;
  view.setOpener(opener);
  // Owned for the window manager alone: the widget is no child, so that each window lives as long as its own screen.
  view.winId();
  if (QWindow* window = view.windowHandle(); window && opener->windowHandle())
    window->setTransientParent(opener->windowHandle());
}

bool Front::focus(std::string_view screen) {
  View* view = find(screen);
  if (!view || !view->isVisible()) return false;
  view->raise();
  view->activateWindow();
  view->setFocus();
  return true;
}

void Front::arrange(const std::vector<std::string>& screens) {
  std::vector<View*> windows;
  for (const std::string& screen : screens)
    if (View* view = find(screen)) windows.push_back(view);
  if (windows.empty()) return;
  const QRect room = windows.front()->QWidget::screen()->availableGeometry();
  const int columns = static_cast<int>(std::ceil(std::sqrt(static_cast<double>(windows.size()))));
  const int rows = (static_cast<int>(windows.size()) + columns - 1) / columns;
  for (std::size_t place = 0; place < windows.size(); ++place) {
    const int column = static_cast<int>(place) % columns, row = static_cast<int>(place) / columns;
    const QRect cell(room.left() + column * room.width() / columns, room.top() + row * room.height() / rows,
                     room.width() / columns, room.height() / rows);
    // The frame around a window takes room too.
    const QSize frame = windows[place]->frameGeometry().size() - windows[place]->size();
    windows[place]->showNormal();
    windows[place]->move(cell.topLeft());
    windows[place]->resize(cell.size() - frame);
  }
}

void Front::keepBarOnTop(bool onTop) {
  View* bar = find("frmAppBar");
  if (!bar || bar->windowFlags().testFlag(Qt::WindowStaysOnTopHint) == onTop) return;
  const bool visible = bar->isVisible();
  bar->setWindowFlag(Qt::WindowStaysOnTopHint, onTop);  // takes the window off the display
  if (visible) bar->show();
}

void Front::popUp(std::string_view screen, std::string_view menu) {
  if (View* view = find(screen)) popUpMenu(*view, menu, view->popUpPlace());
}

void Front::showIcon() {
  // The icon's menu belongs to the bar, which lives as long.
  View* bar = find("frmAppBar");
  app_.task.iconShown = bar && QSystemTrayIcon::isSystemTrayAvailable();
  if (icon_ || !app_.task.iconShown) return;
  icon_ = std::make_unique<QSystemTrayIcon>(programIcon());
  icon_->setToolTip(toQt(app_.task.toolTip));
  for (const Menu& menu : menuMap())
    if (menu.screen == "frmTASK") icon_->setContextMenu(makeMenu(*bar, menu));
  QObject::connect(icon_.get(), &QSystemTrayIcon::activated, [this](QSystemTrayIcon::ActivationReason reason) {
    if (reason == QSystemTrayIcon::DoubleClick || reason == QSystemTrayIcon::Trigger)
      turn_.run([this] { pressMenu(app_, "frmTASK", "Mnu_Open"); });
  });
  icon_->show();
}

}  // namespace quillmarden
