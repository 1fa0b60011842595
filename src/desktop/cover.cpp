#include "desktop/cover.h"

#include <QLabel>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <utility>

namespace quillmarden {
namespace {

QPainterPath vane() {
  QPainterPath path(QPointF(27, 72));
  path.cubicTo(25, 50, 45, 17, 90, 2);
  path.cubicTo(91, 12, 87, 22, 81, 30);
  path.lineTo(76, 31);  // a gap in the barbs
  path.lineTo(77, 35);
  path.cubicTo(68, 49, 49, 63, 27, 72);
  return path;
}

QPainterPath barbs() {
  QPainterPath path;
  for (const auto& [from, to] : {std::pair(QPointF(38, 57), QPointF(55, 58)),
                                 {{47, 46}, {66, 48}},
                                 {{57, 34}, {77, 35}},
                                 {{67, 24}, {86, 22}},
                                 {{36, 59}, {29, 50}},
                                 {{45, 48}, {35, 36}},
                                 {{55, 37}, {46, 23}},
                                 {{66, 25}, {60, 13}}}) {
    path.moveTo(from);
    path.lineTo(to);
  }
  return path;
}

QPainterPath shaft() {
  QPainterPath path(QPointF(15, 92));
  path.cubicTo(28, 68, 52, 34, 84, 8);
  return path;
}

QPainterPath writtenLine() {
  QPainterPath path(QPointF(18, 95));
  path.cubicTo(30, 90, 38, 99, 50, 95);
  path.cubicTo(58, 92, 64, 96, 74, 95);
  return path;
}

}  // namespace

void paintCover(QPainter& painter, const QRect& place) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  QLinearGradient ground(place.topLeft(), place.bottomRight());
  ground.setColorAt(0, QColor(0x21566f));
  ground.setColorAt(1, QColor(0x14324a));
  painter.fillRect(place, ground);

  // The feather leans into the right upper corner; its sheet is 100 units wide and high.
  const double scale = std::min(place.height() * 0.9, place.width() * 0.86) / 100.0;
  painter.translate(place.right() - 100 * scale, place.top() + 8 * scale);
  painter.scale(scale, scale);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(253, 246, 227, 52));
  painter.drawPath(vane());
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(QColor(253, 246, 227, 38), 0.8, Qt::SolidLine, Qt::RoundCap));
  painter.setClipPath(vane());
  painter.drawPath(barbs());
  painter.setClipping(false);
  painter.setPen(QPen(QColor(253, 246, 227, 150), 1.3, Qt::SolidLine, Qt::RoundCap));
  painter.drawPath(shaft());
  painter.setPen(QPen(QColor(0xf2c879), 1.3, Qt::SolidLine, Qt::RoundCap));
  painter.drawPath(writtenLine());
  painter.restore();
}

QLabel* coverLabel(const char* text, int points, bool strong) {
  auto* label = new QLabel(QString::fromUtf8(text));
  // A rule of its own: the cover stays dark in both looks, and so its texts stay light.
  label->setStyleSheet(QStringLiteral("color:#fdf6e3; background:transparent; font-size:%1pt; font-weight:%2;")
                           .arg(points)
                           .arg(strong ? 600 : 400));
  return label;
}

}  // namespace quillmarden
