#pragma once

#include <QProxyStyle>

namespace quillmarden {

/// The parts that a style sheet cannot draw without picture files: boxes to choose from and marks to set, as plain
/// lines in the colours of the present look.
class FlatStyle : public QProxyStyle {
 public:
  FlatStyle();

  void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                          const QWidget* widget = nullptr) const override;
  void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                   const QWidget* widget = nullptr) const override;
  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget = nullptr) const override;
  QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                       const QWidget* widget = nullptr) const override;
  QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                         const QWidget* widget = nullptr) const override;
};

}  // namespace quillmarden
