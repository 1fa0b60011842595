#include "desktop/elided_label.h"

#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOption>
#include <QToolTip>
#include <utility>

namespace quillmarden {

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

void ElidedLabel::setPress(std::function<void()> press) {
  press_ = std::move(press);
  setCursor(Qt::PointingHandCursor);
  setFocusPolicy(Qt::TabFocus);
}

QSize ElidedLabel::minimumSizeHint() const { return {0, QLabel::minimumSizeHint().height()}; }

bool ElidedLabel::isCut() const { return fontMetrics().horizontalAdvance(text()) > contentsRect().width(); }

void ElidedLabel::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QStyleOption option;
  option.initFrom(this);
  style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);  // the colours of a style sheet
  const QRect place = contentsRect();
  style()->drawItemText(&painter, place, static_cast<int>(alignment()) | Qt::TextSingleLine, option.palette,
                        isEnabled(), fontMetrics().elidedText(text(), Qt::ElideRight, place.width()), foregroundRole());
  if (!hasFocus()) return;
  QStyleOptionFocusRect focus;
  focus.initFrom(this);
  style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
}

bool ElidedLabel::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip && toolTip().isEmpty()) {
    if (isCut()) QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), text(), this);
    return true;
  }
  return QLabel::event(event);
}

void ElidedLabel::mouseReleaseEvent(QMouseEvent* event) {
  if (press_ && event->button() == Qt::LeftButton && rect().contains(event->position().toPoint())) press_();
}

void ElidedLabel::keyPressEvent(QKeyEvent* event) {
  const int key = event->key();
  if (press_ && (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space)) return press_();
  QLabel::keyPressEvent(event);
}

}  // namespace quillmarden
