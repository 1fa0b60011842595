#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "workbook/address.h"

namespace quillmarden {

/// The three texts of a header or footer. Codes pass through: "&A" sheet name, "&F" file name, "&P" page, "&N" pages,
/// "&D" date. A text that is no code goes through headerText first.
struct HeaderTexts {
  std::string left;
  std::string center;
  std::string right;

  bool operator==(const HeaderTexts&) const = default;
};

/// Plain text for a header: "&" doubled.
std::string headerText(std::string_view text);
/// The texts joined as "&L...&C...&R...", and taken apart.
std::string joinHeader(const HeaderTexts& texts);
HeaderTexts splitHeader(std::string_view joined);

struct PageSetup {
  enum class Orientation { Default, Portrait, Landscape };
  enum class Order { DownThenOver, OverThenDown };

  Orientation orientation = Orientation::Default;
  int paperSize = 0;       ///< 9 is A4, 8 A3, 12 B4; 0 leaves it to the printer
  int zoom = 100;          ///< percent, 10 to 400; used unless fitToPage
  bool fitToPage = false;  ///< the pages wide and tall count, and zoom does not
  int fitToWidth = 1;      ///< 0: as many as it takes
  int fitToHeight = 1;
  std::optional<int> firstPageNumber;  ///< nothing: automatic
  Order order = Order::DownThenOver;
  HeaderTexts header;
  HeaderTexts footer;
  double marginLeft = 0.7;  ///< inches, like the others
  double marginRight = 0.7;
  double marginTop = 0.75;
  double marginBottom = 0.75;
  double marginHeader = 0.3;
  double marginFooter = 0.3;
  bool centerHorizontally = false;
  bool centerVertically = false;
  bool gridLines = false;
  std::optional<CellRange> titleRows;     ///< whole rows, repeated on each page
  std::optional<CellRange> titleColumns;  ///< whole columns
  std::optional<CellRange> printArea;     ///< of an area in several pieces, the first

  bool operator==(const PageSetup&) const = default;
};

}  // namespace quillmarden
