#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "workbook/font_metrics.h"

namespace quillmarden {

/// A vector picture in the Enhanced Metafile form, as spreadsheet programs show embedded objects. Lengths are points
/// from the top left corner, colours 0xRRGGBB.
class Emf {
 public:
  /// A picture of this size; at least one point each way.
  Emf(double width, double height);

  struct Rectangle {
    double left;
    double top;
    double width;
    double height;
  };
  enum class Align { Left, Centre };

  void fill(const Rectangle& area, std::uint32_t colour);
  /// A line of this width in points; 0 is the thinnest that shows.
  void line(double fromX, double fromY, double toX, double toY, double width, std::uint32_t colour);
  /// One line of text, clipped to the area and centred in its height. `squeeze` up to 1 narrows the letters.
  void text(const Rectangle& area, std::string_view text, const SizedFont& font, std::uint32_t colour, Align align,
            FontBook& fonts, double squeeze = 1);
  /// A Windows bitmap (the bytes of a .bmp file, uncompressed); anything else is left out.
  void bitmap(const Rectangle& area, std::string_view bmp);

  /// The finished file. Nothing may be drawn afterwards.
  std::string bytes();

 private:
  std::size_t begin(std::uint32_t type);
  void end(std::size_t start);
  void put16(std::uint16_t value);
  void put32(std::uint32_t value);
  void putSigned(double value);
  void putArea(const Rectangle& area);
  void record(std::uint32_t type, std::initializer_list<std::uint32_t> values);
  void select(std::uint32_t object);
  void drop(std::uint32_t object);

  double width_;
  double height_;
  std::string out_;
  std::uint32_t records_ = 0;
};

}  // namespace quillmarden
