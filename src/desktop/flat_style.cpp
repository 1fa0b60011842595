#include "desktop/flat_style.h"

#include <QComboBox>
#include <QPainter>
#include <QStyleOption>
#include <algorithm>

#include "desktop/theme.h"

namespace quillmarden {
namespace {

constexpr int kFieldHeight = 28;  ///< of a box to choose from, as high as a text field
constexpr int kTextAt = 9;        ///< where the text begins in the frame of a text field

QRectF lineRect(const QRect& rect) { return QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5); }

void drawChevron(QPainter& painter, const QPointF& middle, const QColor& colour) {
  painter.setPen(QPen(colour, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  painter.drawPolyline(
      QPolygonF({middle + QPointF(-3.5, -1.8), middle + QPointF(0, 1.8), middle + QPointF(3.5, -1.8)}));
}

void drawField(QPainter& painter, const QStyleOption& option, bool fault) {
  const Palette& colours = palette();
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  painter.setPen(fault                                                      ? colours.fault
                 : option.state.testFlag(QStyle::State_HasFocus) && enabled ? colours.accent
                                                                            : colours.line);
  painter.setBrush(enabled ? colours.field : colours.window);
  painter.drawRoundedRect(lineRect(option.rect), 5, 5);
}

/// The frame of a mark, and whether it is filled.
bool drawMarkFrame(QPainter& painter, const QStyleOption& option, const QRectF& rect, double radius) {
  const Palette& colours = palette();
  const bool enabled = option.state.testFlag(QStyle::State_Enabled);
  const bool on = option.state.testFlag(QStyle::State_On) || option.state.testFlag(QStyle::State_NoChange);
  const bool pointed = option.state.testFlag(QStyle::State_MouseOver) || option.state.testFlag(QStyle::State_HasFocus);
  const QColor fill = !on ? (enabled ? colours.field : colours.window) : enabled ? colours.accent : colours.line;
  painter.setPen(QPen(on ? fill : pointed && enabled ? colours.accent : colours.faint, 1));
  painter.setBrush(fill);
  painter.drawRoundedRect(rect, radius, radius);
  return on;
}

void drawCheckMark(QPainter& painter, const QStyleOption& option) {
  const QRectF rect = lineRect(option.rect);
  if (!drawMarkFrame(painter, option, rect, 3)) return;
  const double unit = rect.width() / 14;
  const auto at = [&](double x, double y) { return rect.topLeft() + QPointF(x * unit, y * unit); };
  painter.setPen(QPen(palette().accentText, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  if (option.state.testFlag(QStyle::State_NoChange))
    painter.drawLine(at(3.5, 7), at(10.5, 7));
  else
    painter.drawPolyline(QPolygonF({at(3.2, 7.2), at(5.9, 10), at(10.8, 4.2)}));
}

void drawRadioMark(QPainter& painter, const QStyleOption& option) {
  const QRectF rect = lineRect(option.rect);
  if (!drawMarkFrame(painter, option, rect, rect.width() / 2)) return;
  painter.setPen(Qt::NoPen);
  painter.setBrush(palette().accentText);
  painter.drawEllipse(rect.center(), rect.width() * 0.2, rect.width() * 0.2);
}

}  // namespace

FlatStyle::FlatStyle() : QProxyStyle(QStringLiteral("Fusion")) {}

void FlatStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                   const QWidget* widget) const {
  const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option);
  if (control != CC_ComboBox || !box || !box->frame) {
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    return;
  }
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  drawField(*painter, *box, widget && widget->property("fault").toBool());
  const QRectF arrow = subControlRect(CC_ComboBox, option, SC_ComboBoxArrow, widget);
  drawChevron(*painter, arrow.center(), box->state.testFlag(State_Enabled) ? palette().text : palette().faint);
  painter->restore();
}

void FlatStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                            const QWidget* widget) const {
  // A hint in an empty box is no choice, and looks so.
  const auto* box = qobject_cast<const QComboBox*>(widget);
  if (element == CE_ComboBoxLabel && box && !box->isEditable() && box->currentIndex() < 0) {
    if (const auto* shown = qstyleoption_cast<const QStyleOptionComboBox*>(option)) {
      QStyleOptionComboBox hint = *shown;
      hint.palette.setColor(QPalette::ButtonText, palette().faint);
      hint.palette.setColor(QPalette::Text, palette().faint);
      QProxyStyle::drawControl(element, &hint, painter, widget);
      return;
    }
  }
  QProxyStyle::drawControl(element, option, painter, widget);
}

void FlatStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                              const QWidget* widget) const {
  const auto* row = qstyleoption_cast<const QStyleOptionViewItem*>(option);
  if (element == PE_PanelItemViewRow && row) {
    // Cells show by themselves whether they are chosen; a grid frames its current cell and keeps that clear.
    QStyleOptionViewItem plain = *row;
    plain.state.setFlag(State_Selected, false);
    QProxyStyle::drawPrimitive(element, &plain, painter, widget);
    return;
  }
  if (element != PE_IndicatorCheckBox && element != PE_IndicatorRadioButton) {
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    return;
  }
  painter->save();
  painter->setRenderHint(QPainter::Antialiasing);
  if (element == PE_IndicatorCheckBox)
    drawCheckMark(*painter, *option);
  else
    drawRadioMark(*painter, *option);
  painter->restore();
}

QRect FlatStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                const QWidget* widget) const {
  QRect place = QProxyStyle::subControlRect(control, option, part, widget);
  const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option);
  if (control != CC_ComboBox || part != SC_ComboBoxEditField || !box || !box->frame) return place;
  // The field of a text box and the label of the other kind add so much by themselves.
  place.setLeft(box->rect.left() + kTextAt - (box->editable ? 2 : 1));
  return place;
}

QSize FlatStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                                  const QWidget* widget) const {
  QSize needed = QProxyStyle::sizeFromContents(type, option, size, widget);
  const auto* box = qstyleoption_cast<const QStyleOptionComboBox*>(option);
  if (type != CT_ComboBox) return needed;
  needed.setHeight(std::max(needed.height(), kFieldHeight));
  if (box && box->frame) needed.rwidth() += kTextAt;
  return needed;
}

}  // namespace quillmarden
