#include "workbook/emf.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "common/utf8.h"
#include "workbook/units.h"

namespace quillmarden {
namespace {

// Record types, by their names in the format.
enum Record : std::uint32_t {
  kHeaderRecord = 1,
  kSetWindowExtent = 9,
  kSetWindowOrigin = 10,
  kSetViewportExtent = 11,
  kSetViewportOrigin = 12,
  kEndOfFile = 14,
  kSetMapMode = 17,
  kSetBackgroundMode = 18,
  kSetTextAlign = 22,
  kSetTextColour = 24,
  kMoveTo = 27,
  kIntersectClip = 30,
  kSave = 33,
  kRestore = 34,
  kSelect = 37,
  kCreatePen = 38,
  kCreateBrush = 39,
  kDelete = 40,
  kRectangle = 43,
  kLineTo = 54,
  kStretchBits = 81,
  kCreateFont = 82,
  kTextOut = 84,
};

constexpr std::uint32_t kStockNullPen = 0x80000008;
constexpr std::uint32_t kStockWhiteBrush = 0x80000000;
constexpr std::uint32_t kStockSystemFont = 0x8000000D;
constexpr std::uint32_t kObject = 1;  // one object lives at a time, so one handle serves
constexpr double kUnits = 20;         // drawing units a point
constexpr double kHundredthsOfMillimetre = 2540.0 / 72.0;

std::int32_t rounded(double value) { return static_cast<std::int32_t>(std::lround(value)); }

// The format keeps colours as 0xBBGGRR.
std::uint32_t colourRef(std::uint32_t colour) {
  return ((colour & 0xFFU) << 16) | (colour & 0xFF00U) | ((colour >> 16) & 0xFFU);
}

std::u16string toUtf16(std::string_view text) {
  std::u16string units;
  for (std::size_t at = 0; at < text.size();) {
    const Utf8Step step = utf8At(text, at);
    at += step.size;
    if (step.character < 0x10000) {
      units += static_cast<char16_t>(step.character);
    } else {
      const auto offset = static_cast<std::uint32_t>(step.character) - 0x10000U;
      units += static_cast<char16_t>(0xD800U + (offset >> 10));
      units += static_cast<char16_t>(0xDC00U + (offset & 0x3FFU));
    }
  }
  return units;
}

std::uint32_t read32(std::string_view bytes, std::size_t at) {
  std::uint32_t value = 0;
  std::memcpy(&value, bytes.data() + at, sizeof value);
  return value;
}

}  // namespace

Emf::Emf(double width, double height) : width_(std::max(width, 1.0)), height_(std::max(height, 1.0)) {
  const auto header = begin(kHeaderRecord);
  for (int i = 0; i < 4; ++i) put32(0);  // bounds and frame are known at the end
  for (int i = 0; i < 4; ++i) put32(0);
  put32(0x464D4520);  // " EMF"
  put32(0x00010000);
  put32(0);  // bytes
  put32(0);  // records
  put16(2);  // handles: the reserved one and ours
  put16(0);
  put32(0);  // no description
  put32(0);
  put32(0);  // no palette
  put32(1920);
  put32(1080);  // a screen of 96 pixels an inch
  put32(508);
  put32(286);
  end(header);
  record(kSetMapMode, {8});  // free scales each way
  record(kSetWindowOrigin, {0, 0});
  record(kSetWindowExtent,
         {static_cast<std::uint32_t>(rounded(width_ * kUnits)), static_cast<std::uint32_t>(rounded(height_ * kUnits))});
  record(kSetViewportOrigin, {0, 0});
  record(kSetViewportExtent, {static_cast<std::uint32_t>(rounded(width_ * kPixelsPerPoint)),
                              static_cast<std::uint32_t>(rounded(height_ * kPixelsPerPoint))});
  record(kSetBackgroundMode, {1});
  record(kSetTextAlign, {24});  // texts stand on their base line
}

void Emf::fill(const Rectangle& area, std::uint32_t colour) {
  record(kCreateBrush, {kObject, 0, colourRef(colour), 0});
  select(kObject);
  select(kStockNullPen);
  const auto start = begin(kRectangle);
  // A rectangle without a pen ends one unit short of its right and lower edge.
  putArea({area.left, area.top, area.width + 1 / kUnits, area.height + 1 / kUnits});
  end(start);
  select(kStockWhiteBrush);
  drop(kObject);
}

void Emf::line(double fromX, double fromY, double toX, double toY, double width, std::uint32_t colour) {
  record(kCreatePen, {kObject, 0, static_cast<std::uint32_t>(rounded(width * kUnits)), 0, colourRef(colour)});
  select(kObject);
  auto start = begin(kMoveTo);
  putSigned(fromX * kUnits);
  putSigned(fromY * kUnits);
  end(start);
  start = begin(kLineTo);
  putSigned(toX * kUnits);
  putSigned(toY * kUnits);
  end(start);
  select(kStockNullPen);
  drop(kObject);
}

void Emf::text(const Rectangle& area, std::string_view text, const SizedFont& font, std::uint32_t colour, Align align,
               FontBook& fonts, double squeeze) {
  const std::u16string units = toUtf16(text);
  if (units.empty()) {
    return;
  }
  const FontFace& face = fonts.face(font.family, font.bold);
  record(kSave, {});
  const auto clip = begin(kIntersectClip);
  putArea(area);
  end(clip);

  const auto made = begin(kCreateFont);
  put32(kObject);
  putSigned(-font.size * kUnits);
  put32(0);
  put32(0);
  put32(0);
  put32(font.bold ? 700 : 400);
  put32(0x80000000);  // not italic, underlined or struck out; Japanese characters
  put32(0);
  std::u16string name = toUtf16(font.family);
  name.resize(32, u'\0');
  name.back() = u'\0';
  for (const char16_t unit : name) put16(static_cast<std::uint16_t>(unit));
  for (int i = 0; i < 32 + 64; ++i) put16(0);  // full name and style: none
  for (int i = 0; i < 9; ++i) put32(0);        // version to Panose
  end(made);
  select(kObject);
  record(kSetTextColour, {colourRef(colour)});

  std::vector<std::int32_t> advances;
  double width = 0;
  for (std::size_t i = 0; i < units.size(); ++i) {
    const bool second = units[i] >= 0xDC00 && units[i] <= 0xDFFF;
    char32_t character = units[i];
    if (units[i] >= 0xD800 && units[i] < 0xDC00 && i + 1 < units.size()) {
      character = 0x10000U + ((units[i] - 0xD800U) << 10) + (units[i + 1] - 0xDC00U);
    }
    const double advance = second ? 0 : face.advance(character) * font.size * squeeze;
    advances.push_back(rounded(advance * kUnits));
    width += advance;
  }
  const double left = align == Align::Centre ? area.left + std::max(0.0, (area.width - width) / 2) : area.left;
  const double base = area.top + (area.height - face.lineHeight() * font.size) / 2 + face.ascent() * font.size;
  const auto shown = begin(kTextOut);
  for (int i = 0; i < 4; ++i) put32(0);  // bounds
  put32(1);                              // compatible mode: no scale of its own
  put32(0);
  put32(0);
  putSigned(left * kUnits);
  putSigned(base * kUnits);
  put32(static_cast<std::uint32_t>(units.size()));
  constexpr std::uint32_t kFixedPart = 76;
  const auto padded = static_cast<std::uint32_t>((units.size() * 2 + 3) / 4 * 4);
  put32(kFixedPart);
  put32(0);
  for (int i = 0; i < 4; ++i) put32(0);
  put32(kFixedPart + padded);
  for (const char16_t unit : units) put16(static_cast<std::uint16_t>(unit));
  if (units.size() % 2 != 0) put16(0);
  for (const std::int32_t advance : advances) put32(static_cast<std::uint32_t>(advance));
  end(shown);

  select(kStockSystemFont);
  drop(kObject);
  record(kRestore, {static_cast<std::uint32_t>(-1)});
}

void Emf::bitmap(const Rectangle& area, std::string_view bmp) {
  constexpr std::size_t kFileHead = 14;
  constexpr std::size_t kInfoHead = 40;
  if (bmp.size() < kFileHead + kInfoHead || bmp.substr(0, 2) != "BM") {
    return;
  }
  const std::uint32_t bitsAt = read32(bmp, 10);
  const std::uint32_t headSize = read32(bmp, 14);
  const std::uint32_t compression = read32(bmp, 30);
  if (headSize < kInfoHead || bitsAt < kFileHead + headSize || bitsAt >= bmp.size() || compression != 0) {
    return;
  }
  const std::string_view info = bmp.substr(kFileHead, bitsAt - kFileHead);
  const std::string_view bits = bmp.substr(bitsAt);
  const auto padded = static_cast<std::uint32_t>((info.size() + 3) / 4 * 4);
  const auto start = begin(kStretchBits);
  for (int i = 0; i < 4; ++i) put32(0);  // bounds
  putSigned(area.left * kUnits);
  putSigned(area.top * kUnits);
  put32(0);
  put32(0);
  put32(read32(bmp, 18));
  put32(static_cast<std::uint32_t>(std::abs(static_cast<std::int32_t>(read32(bmp, 22)))));
  constexpr std::uint32_t kFixedPart = 80;
  put32(kFixedPart);
  put32(static_cast<std::uint32_t>(info.size()));
  put32(kFixedPart + padded);
  put32(static_cast<std::uint32_t>(bits.size()));
  put32(0);           // colours as RGB
  put32(0x00CC0020);  // copied over what is there
  putSigned(area.width * kUnits);
  putSigned(area.height * kUnits);
  out_.append(info);
  out_.append(padded - info.size(), '\0');
  out_.append(bits);
  out_.append((4 - bits.size() % 4) % 4, '\0');
  end(start);
}

std::string Emf::bytes() {
  record(kEndOfFile, {0, 16, 20});
  const auto patch = [this](std::size_t at, std::uint32_t value) { std::memcpy(out_.data() + at, &value, 4); };
  patch(16, static_cast<std::uint32_t>(rounded(width_ * kPixelsPerPoint)) - 1);
  patch(20, static_cast<std::uint32_t>(rounded(height_ * kPixelsPerPoint)) - 1);
  patch(32, static_cast<std::uint32_t>(rounded(width_ * kHundredthsOfMillimetre)));
  patch(36, static_cast<std::uint32_t>(rounded(height_ * kHundredthsOfMillimetre)));
  patch(48, static_cast<std::uint32_t>(out_.size()));
  patch(52, records_);
  return std::move(out_);
}

std::size_t Emf::begin(std::uint32_t type) {
  const std::size_t start = out_.size();
  put32(type);
  put32(0);
  ++records_;
  return start;
}

void Emf::end(std::size_t start) {
  const auto size = static_cast<std::uint32_t>(out_.size() - start);
  std::memcpy(out_.data() + start + 4, &size, 4);
}

void Emf::put16(std::uint16_t value) { out_.append(reinterpret_cast<const char*>(&value), 2); }
void Emf::put32(std::uint32_t value) { out_.append(reinterpret_cast<const char*>(&value), 4); }
void Emf::putSigned(double value) { put32(static_cast<std::uint32_t>(rounded(value))); }

void Emf::putArea(const Rectangle& area) {
  putSigned(area.left * kUnits);
  putSigned(area.top * kUnits);
  putSigned((area.left + area.width) * kUnits);
  putSigned((area.top + area.height) * kUnits);
}

void Emf::record(std::uint32_t type, std::initializer_list<std::uint32_t> values) {
  const auto start = begin(type);
  for (const std::uint32_t value : values) put32(value);
  end(start);
}

void Emf::select(std::uint32_t object) { record(kSelect, {object}); }
void Emf::drop(std::uint32_t object) { record(kDelete, {object}); }

}  // namespace quillmarden
