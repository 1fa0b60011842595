#pragma once

#include <QPointer>
#include <QWidget>
#include <memory>
#include <string>

#include "desktop/binder.h"
#include "desktop/front.h"

class QPushButton;
class QToolButton;

namespace quillmarden {

/// The window of a screen. A view builds widgets and binds them to its record; it decides nothing. It is made when the
/// shell first shows its screen and goes when the shell closes it, before the record is blank again.
class View : public QWidget {
 public:
  View(Front& front, std::string screen);
  ~View() override;

  const std::string& screen() const { return screen_; }
  Front& front() { return front_; }
  Binder& binder() { return *binder_; }
  const Binder& binder() const { return *binder_; }
  Application& app() { return front_.app(); }

  /// Runs a handler in its turn when the event loop comes round again, unless the screen is closed by then. For what
  /// lies in the middle of a widget's own event: menus, item views.
  void later(Handler handler);
  /// Called before the window is shown or raised.
  virtual void aboutToShow() {}
  /// Where the next menu opens, in global coordinates. A null point stands for the pointer.
  void setPopUpPlace(const QPoint& place) { popUpPlace_ = place; }
  QPoint popUpPlace() const;
  /// The window that this one was opened from; nullptr when there is none or it has gone.
  View* opener() const { return opener_; }
  void setOpener(View* opener) { opener_ = opener; }
  /// The program's window that a person used last, as long as it is seen: what opens now belongs to it.
  static View* inFront();
  /// The shell has closed the screen: nothing reads the record from now on, the widgets go later.
  void release();

 protected:
  /// The person wants the window closed. The shell decides, and closes it through Display.
  virtual void wishToClose();
  /// The last moment at which the record may be read.
  virtual void aboutToRelease() {}
  /// The control that a message was about gets the focus, its text chosen for typing over; `focus` is empty then.
  void takeFocus(std::string_view& focus);
  /// [Esc] is a wish to close: for small screens that hold no work.
  void closeOnEscape();
  /// [Enter] presses this button, wherever the focus is but on another button.
  void answerEnter(QPushButton* button);

  void askMenu();
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  Front& front_;
  std::string screen_;
  QPoint popUpPlace_;
  QPointer<View> opener_;
  std::unique_ptr<Binder> binder_;
};

/// A label in front of a field; `field` takes the focus for it.
QWidget* captioned(const char* caption, QWidget* field);
/// The same with the caption above the field, for rows of filters.
QWidget* headed(const char* caption, QWidget* field);
/// A button that shows a glyph alone. Its tool tip is what a screen reader says.
QToolButton* glyphButton(Glyph glyph, const char* toolTip);

}  // namespace quillmarden
