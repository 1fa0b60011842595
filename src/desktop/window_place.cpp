#include "desktop/window_place.h"

#include <QGuiApplication>
#include <QScreen>
#include <QWidget>
#include <algorithm>

#include "common/form_settings.h"

namespace quillmarden {
namespace {

/// Further windows of a screen share the place of the first.
std::string_view formName(std::string_view screen) { return screen.substr(0, screen.find(':')); }

bool isSizable(const QWidget& window) { return window.minimumSize() != window.maximumSize(); }

QRect broughtIn(QRect place) {
  const QScreen* screen = QGuiApplication::screenAt(place.center());
  if (!screen) screen = QGuiApplication::primaryScreen();
  const QRect room = screen->availableGeometry();
  place.setSize(place.size().boundedTo(room.size()));
  place.moveLeft(std::clamp(place.left(), room.left(), room.right() - place.width() + 1));
  place.moveTop(std::clamp(place.top(), room.top(), room.bottom() - place.height() + 1));
  return place;
}

}  // namespace

void restorePlace(const Session& session, std::string_view screen, QWidget& window) {
  if (!session.ini) return;
  const FormPosition kept = gFormPosition(*session.ini, formName(screen));
  QSize size = window.size();
  if (isSizable(window) && kept.width && kept.height) size = QSize(*kept.width, *kept.height);
  if (kept.top && kept.left)
    window.setGeometry(broughtIn(QRect(QPoint(*kept.left, *kept.top), size)));
  else
    window.resize(size.boundedTo(QGuiApplication::primaryScreen()->availableSize()));
  if (kept.windowState == FormPosition::kMaximised) window.setWindowState(window.windowState() | Qt::WindowMaximized);
}

void bringIn(QWidget& window) {
  const QRect room = window.screen()->availableGeometry();
  const QRect frame = window.frameGeometry();
  const int left = std::max(room.left(), std::min(frame.left(), room.right() - frame.width() + 1));
  const int top = std::max(room.top(), std::min(frame.top(), room.bottom() - frame.height() + 1));
  if (QPoint(left, top) != frame.topLeft()) window.move(left, top);
}

void savePlace(Session& session, std::string_view screen, const QWidget& window) {
  if (!session.ini) return;
  FormPosition place;
  place.windowState = window.isMinimized()   ? FormPosition::kMinimised
                      : window.isMaximized() ? FormPosition::kMaximised
                                             : FormPosition::kNormal;
  const QRect rect = window.geometry();
  place.top = rect.top();
  place.left = rect.left();
  place.width = rect.width();
  place.height = rect.height();
  putFormPosition(*session.ini, formName(screen), place, isSizable(window));
}

}  // namespace quillmarden
