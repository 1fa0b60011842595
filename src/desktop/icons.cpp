#include "desktop/icons.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPixmap>

#include "desktop/theme.h"

namespace quillmarden {
namespace {

// All glyphs are drawn on a sheet of 24 by 24 units.
constexpr double kSheet = 24;

/// The feather with its shaft running down to the nib, and the line it has written.
void drawQuill(QPainter& painter, const QColor& feather, const QColor& vein, const QColor& ink) {
  QPainterPath vane(QPointF(7.2, 17.2));
  vane.cubicTo(6.2, 11.4, 10.4, 4.6, 20.6, 2.4);
  vane.cubicTo(21.6, 8.2, 17.6, 15.4, 10.2, 17.0);
  vane.closeSubpath();
  painter.setPen(Qt::NoPen);
  painter.setBrush(feather);
  painter.drawPath(vane);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(vein, 1.1, Qt::SolidLine, Qt::RoundCap));
  QPainterPath shaft(QPointF(4.4, 20.4));
  shaft.cubicTo(7.4, 14.8, 11.8, 9.4, 17.6, 5.4);
  painter.drawPath(shaft);
  painter.setPen(QPen(ink, 1.6, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(8.6, 21.2), QPointF(19.6, 21.2));
}

void drawProgram(QPainter& painter) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(QColor(0x2b6c8f));
  painter.drawRoundedRect(QRectF(0.5, 0.5, 23, 23), 5, 5);
  painter.translate(12, 12);
  painter.scale(0.82, 0.82);
  painter.translate(-12, -12);
  drawQuill(painter, QColor(0xfdf6e3), QColor(0x2b6c8f), QColor(0xf2c879));
}

void drawDisc(QPainter& painter, const QColor& colour, const char* mark) {
  painter.setPen(Qt::NoPen);
  painter.setBrush(colour);
  painter.drawEllipse(QRectF(2, 2, 20, 20));
  painter.setPen(QPen(palette().surface, 2.2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  switch (*mark) {
    case 'i':
      painter.drawLine(QPointF(12, 11), QPointF(12, 16.5));
      painter.drawPoint(QPointF(12, 7.4));
      break;
    case 'x':
      painter.drawLine(QPointF(8.5, 8.5), QPointF(15.5, 15.5));
      painter.drawLine(QPointF(15.5, 8.5), QPointF(8.5, 15.5));
      break;
    default: {
      QPainterPath hook(QPointF(8.9, 9.4));
      hook.cubicTo(8.9, 5.6, 15.1, 5.6, 15.1, 9.4);
      hook.cubicTo(15.1, 11.6, 12, 11.6, 12, 13.8);
      painter.drawPath(hook);
      painter.drawPoint(QPointF(12, 17.2));
    }
  }
}

void drawWarning(QPainter& painter) {
  QPainterPath sign(QPointF(12, 3));
  sign.lineTo(22, 20.5);
  sign.lineTo(2, 20.5);
  sign.closeSubpath();
  painter.setPen(QPen(palette().warning, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(palette().warning);
  painter.drawPath(sign);
  painter.setPen(QPen(palette().surface, 2.2, Qt::SolidLine, Qt::RoundCap));
  painter.drawLine(QPointF(12, 9), QPointF(12, 14));
  painter.drawPoint(QPointF(12, 17.4));
}

void drawGear(QPainter& painter) {
  painter.drawEllipse(QPointF(12, 12), 3, 3);
  painter.drawEllipse(QPointF(12, 12), 6.2, 6.2);
  painter.save();
  painter.translate(12, 12);
  for (int tooth = 0; tooth < 8; ++tooth, painter.rotate(45)) painter.drawLine(QPointF(0, -6.4), QPointF(0, -9));
  painter.restore();
}

void drawDatabase(QPainter& painter, double x, double y, double width, double height) {
  const double lid = height / 4;
  painter.drawEllipse(QRectF(x, y, width, lid * 1.4));
  QPainterPath body(QPointF(x, y + lid * 0.7));
  body.lineTo(x, y + height - lid * 0.7);
  body.quadTo(x + width / 2, y + height + lid * 0.7, x + width, y + height - lid * 0.7);
  body.lineTo(x + width, y + lid * 0.7);
  painter.drawPath(body);
}

void drawLogOff(QPainter& painter) {
  painter.drawPolyline(QPolygonF({{13, 4.5}, {5, 4.5}, {5, 19.5}, {13, 19.5}}));
  painter.drawLine(QPointF(10, 12), QPointF(19.5, 12));
  painter.drawPolyline(QPolygonF({{16, 8.5}, {19.5, 12}, {16, 15.5}}));
}

void drawFolder(QPainter& painter) {
  painter.drawPolygon(QPolygonF({{3, 18.5}, {3, 5.5}, {9, 5.5}, {11, 8}, {21, 8}, {21, 18.5}}));
}

void drawList(QPainter& painter) {
  for (const double y : {6.5, 12.0, 17.5}) {
    painter.drawPoint(QPointF(4.5, y));
    painter.drawLine(QPointF(8.5, y), QPointF(20, y));
  }
}

void drawSql(QPainter& painter) {
  painter.drawPolyline(QPolygonF({{8, 7}, {3, 12}, {8, 17}}));
  painter.drawPolyline(QPolygonF({{16, 7}, {21, 12}, {16, 17}}));
  painter.drawLine(QPointF(13.6, 5), QPointF(10.4, 19));
}

/// The glyphs that are lines in one colour.
void drawLines(QPainter& painter, Glyph glyph) {
  switch (glyph) {
    case Glyph::Add:
      painter.drawLine(QPointF(12, 5), QPointF(12, 19));
      painter.drawLine(QPointF(5, 12), QPointF(19, 12));
      break;
    case Glyph::Clear:
    case Glyph::Close:
      painter.drawLine(QPointF(6, 6), QPointF(18, 18));
      painter.drawLine(QPointF(18, 6), QPointF(6, 18));
      break;
    case Glyph::Folder:
      drawFolder(painter);
      break;
    case Glyph::Gear:
      drawGear(painter);
      break;
    case Glyph::Hide:
      painter.drawLine(QPointF(5, 18.5), QPointF(19, 18.5));
      painter.drawPolyline(QPolygonF({{7, 8}, {12, 13}, {17, 8}}));
      break;
    case Glyph::List:
      drawList(painter);
      break;
    case Glyph::LogOff:
      drawLogOff(painter);
      break;
    case Glyph::Menu:
      for (const double y : {7.0, 12.0, 17.0}) painter.drawLine(QPointF(4.5, y), QPointF(19.5, y));
      break;
    case Glyph::Pane:
      painter.drawRoundedRect(QRectF(3, 4.5, 18, 15), 2, 2);
      painter.drawLine(QPointF(14, 4.5), QPointF(14, 19.5));
      break;
    case Glyph::Replica:
      drawDatabase(painter, 3, 3, 10, 12);
      drawDatabase(painter, 11, 9, 10, 12);
      break;
    case Glyph::Search:
      painter.drawEllipse(QPointF(10.5, 10.5), 6, 6);
      painter.drawLine(QPointF(15, 15), QPointF(20, 20));
      break;
    case Glyph::Sql:
      drawSql(painter);
      break;
    default:
      break;
  }
}

void draw(QPainter& painter, Glyph glyph, const QColor& lines) {
  switch (glyph) {
    case Glyph::Quill:
      return drawProgram(painter);
    case Glyph::Information:
      return drawDisc(painter, palette().accent, "i");
    case Glyph::Question:
      return drawDisc(painter, palette().accent, "?");
    case Glyph::Help:
      return drawDisc(painter, lines, "?");
    case Glyph::Stop:
      return drawDisc(painter, palette().fault, "x");
    case Glyph::Warning:
      return drawWarning(painter);
    default:
      painter.setPen(QPen(lines, 1.8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
      painter.setBrush(Qt::NoBrush);
      drawLines(painter, glyph);
  }
}

class GlyphEngine : public QIconEngine {
 public:
  explicit GlyphEngine(Glyph glyph) : glyph_(glyph) {}

  void paint(QPainter* painter, const QRect& place, QIcon::Mode mode, QIcon::State) override {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->translate(place.topLeft());
    painter->scale(place.width() / kSheet, place.height() / kSheet);
    QColor lines = palette().text;
    if (mode == QIcon::Disabled) lines.setAlphaF(0.35F);
    draw(*painter, glyph_, lines);
    painter->restore();
  }
  QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override {
    QPixmap picture(size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paint(&painter, QRect(QPoint(), size), mode, state);
    return picture;
  }
  QIconEngine* clone() const override { return new GlyphEngine(*this); }

 private:
  Glyph glyph_;
};

}  // namespace

QIcon icon(Glyph glyph) { return QIcon(new GlyphEngine(glyph)); }

QIcon programIcon() {
  // The notification area and the window manager take pictures, and ask for the sizes there are.
  QIcon made;
  GlyphEngine engine(Glyph::Quill);
  for (const int size : {16, 22, 24, 32, 48, 64, 128, 256})
    made.addPixmap(engine.pixmap(QSize(size, size), QIcon::Normal, QIcon::Off));
  return made;
}

}  // namespace quillmarden
