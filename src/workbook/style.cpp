#include "workbook/style.h"

namespace quillmarden {

std::uint32_t paletteRgb(int colorIndex) {
  static constexpr std::uint32_t kPalette[56] = {
      0x000000, 0xFFFFFF, 0xFF0000, 0x00FF00, 0x0000FF, 0xFFFF00, 0xFF00FF, 0x00FFFF, 0x800000, 0x008000,
      0x000080, 0x808000, 0x800080, 0x008080, 0xC0C0C0, 0x808080, 0x9999FF, 0x993366, 0xFFFFCC, 0xCCFFFF,
      0x660066, 0xFF8080, 0x0066CC, 0xCCCCFF, 0x000080, 0xFF00FF, 0xFFFF00, 0x00FFFF, 0x800080, 0x800000,
      0x008080, 0x0000FF, 0x00CCFF, 0xCCFFFF, 0xCCFFCC, 0xFFFF99, 0x99CCFF, 0xFF99CC, 0xCC99FF, 0xFFCC99,
      0x3366FF, 0x33CCCC, 0x99CC00, 0xFFCC00, 0xFF9900, 0xFF6600, 0x666699, 0x969696, 0x003366, 0x339966,
      0x003300, 0x333300, 0x993300, 0x993366, 0x333399, 0x333333,
  };
  return colorIndex >= 1 && colorIndex <= 56 ? kPalette[colorIndex - 1] : 0;
}

CellColor CellColor::index(int colorIndex) {
  return colorIndex >= 1 && colorIndex <= 56 ? rgb(paletteRgb(colorIndex)) : automatic();
}

BorderLine BorderLine::of(int lineStyle, int weight, int colorIndex) {
  const bool medium = weight == -4138 || weight == 4;
  BorderLine line;
  switch (lineStyle) {
    case 1:
      line.kind = weight == 1       ? LineKind::Hair
                  : weight == -4138 ? LineKind::Medium
                  : weight == 4     ? LineKind::Thick
                                    : LineKind::Thin;
      break;
    case -4115:
      line.kind = medium ? LineKind::MediumDashed : LineKind::Dashed;
      break;
    case -4118:
      line.kind = LineKind::Dotted;
      break;
    case -4119:
      line.kind = LineKind::Double;
      break;
    case 4:
      line.kind = medium ? LineKind::MediumDashDot : LineKind::DashDot;
      break;
    case 5:
      line.kind = medium ? LineKind::MediumDashDotDot : LineKind::DashDotDot;
      break;
    case 13:
      line.kind = LineKind::SlantDashDot;
      break;
    default:
      return line;
  }
  line.color = CellColor::index(colorIndex);
  return line;
}

void CellAlignment::setOrientation(int orientation) {
  switch (orientation) {
    case -4128:
      rotation = 0;
      return;
    case -4166:
      rotation = 255;
      return;
    case -4171:
      rotation = 90;
      return;
    case -4170:
      rotation = 180;
      return;
    default:
      if (orientation < -90 || orientation > 90) return;
      rotation = orientation >= 0 ? orientation : 90 - orientation;
  }
}

}  // namespace quillmarden
