#include "desktop/view.h"

#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QCursor>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>
#include <QTabWidget>
#include <QToolButton>
#include <QVBoxLayout>
#include <utility>

#include "desktop/window_place.h"
#include "shell/frm_app_bar.h"
#include "shell/screens.h"

namespace quillmarden {
namespace {

QPointer<View> lastActive;

}  // namespace

View::View(Front& front, std::string screen)
    : front_(front), screen_(std::move(screen)), binder_(std::make_unique<Binder>(front.turn())) {
  setWindowIcon(programIcon());
  const auto* help = new QShortcut(QKeySequence::HelpContents, this);
  connect(help, &QShortcut::activated, this, binder_->act([this] { CmdHelp_Click(app()); }));
  // Beside the menu key, which many keyboards lack.
  const auto* menu = new QShortcut(Qt::SHIFT | Qt::Key_F10, this);
  connect(menu, &QShortcut::activated, this, &View::askMenu);
}

View::~View() = default;

void View::release() {
  if (!binder_) return;
  aboutToRelease();
  savePlace(app().session, screen_, *this);
  binder_.reset();
}

void View::later(Handler handler) {
  if (binder_) binder_->later(std::move(handler));
}

QPoint View::popUpPlace() const { return popUpPlace_.isNull() ? QCursor::pos() : popUpPlace_; }

void View::wishToClose() { closeScreen(app(), screen_); }

void View::askMenu() {
  QWidget* asked = focusWidget() ? focusWidget() : this;
  const QPoint place = asked->rect().center();
  QContextMenuEvent event(QContextMenuEvent::Keyboard, place, asked->mapToGlobal(place));
  QCoreApplication::sendEvent(asked, &event);
}

void View::closeOnEscape() {
  const auto* escape = new QShortcut(Qt::Key_Escape, this);
  connect(escape, &QShortcut::activated, this, &QWidget::close);
}

void View::takeFocus(std::string_view& focus) {
  if (focus.empty()) return;
  auto* widget = findChild<QWidget*>(toQt(focus));
  focus = {};
  if (!widget) return;
  // It may lie on a page that is behind another one.
  for (QWidget* around = widget; around; around = around->parentWidget())
    if (auto* tabs =
            qobject_cast<QTabWidget*>(around->parentWidget() ? around->parentWidget()->parentWidget() : nullptr))
      tabs->setCurrentWidget(around);
  widget->setFocus();
  if (auto* text = qobject_cast<QLineEdit*>(widget)) text->selectAll();
}

void View::answerEnter(QPushButton* button) {
  button->setDefault(true);  // for the look; only dialogs act on it by themselves
  for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
    const auto* enter = new QShortcut(key, this);
    connect(enter, &QShortcut::activated, button, [this, button] {
      auto* focused = qobject_cast<QAbstractButton*>(focusWidget());
      if (focused && !focused->isCheckable())
        focused->click();
      else
        button->click();
    });
  }
}

void View::closeEvent(QCloseEvent* event) {
  if (!binder_) {
    event->accept();
    return;
  }
  event->ignore();
  front_.turn().run([this] { wishToClose(); });
}

View* View::inFront() {
  if (auto* active = dynamic_cast<View*>(QApplication::activeWindow())) return active;
  return lastActive && lastActive->isVisible() ? lastActive.data() : nullptr;
}

void View::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() != QEvent::ActivationChange || !binder_ || !isActiveWindow()) return;
  lastActive = this;
  screenActivated(app(), screen_);
}

QWidget* captioned(const char* caption, QWidget* field) {
  auto* pair = new QWidget;
  auto* layout = new QHBoxLayout(pair);
  layout->setContentsMargins(0, 0, 0, 0);
  auto* label = new QLabel(QString::fromUtf8(caption), pair);
  label->setBuddy(field);
  layout->addWidget(label);
  layout->addWidget(field, 1);
  return pair;
}

QWidget* headed(const char* caption, QWidget* field) {
  auto* pair = new QWidget;
  auto* layout = new QVBoxLayout(pair);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  auto* label = new QLabel(QString::fromUtf8(caption), pair);
  label->setProperty("role", "heading");
  label->setBuddy(field);
  layout->addWidget(label);
  layout->addWidget(field);
  return pair;
}

QToolButton* glyphButton(Glyph glyph, const char* toolTip) {
  auto* button = new QToolButton;
  button->setIcon(icon(glyph));
  button->setIconSize(QSize(18, 18));
  button->setToolTip(QString::fromUtf8(toolTip));
  button->setAccessibleName(QString::fromUtf8(toolTip));
  button->setFocusPolicy(Qt::TabFocus);
  return button;
}

}  // namespace quillmarden
