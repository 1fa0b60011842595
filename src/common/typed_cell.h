#pragma once

#include <string>
#include <string_view>

#include "screen/spread.h"

namespace quillmarden {

/// What a text becomes in the cell that it is typed, pasted or read into, or why the cell does not take it.
struct TypedCell {
  std::string text;  ///< in the cell's own form: an entry's spelling, a plain number, "-1" or "0"
  std::string
      fault;  ///< goes on from a cell's name: "が長すぎます. 50バイト(全角25文字)までです."; "" for a taken text
};

/// Holds a text against the limits, list or mask of a column, for every way into a cell. `kind` is the cell's own; a
/// static cell takes nothing. An empty text empties any other cell.
TypedCell typedCell(const SpreadColumn& column, CellKind kind, std::string_view typed);

/// Whether the text is one of the entries, but for case, width and blanks around it; the first of them, else nullptr.
const std::string* entryOf(const SpreadColumn& column, std::string_view text);

/// A limit with its unit: "50バイト(全角25文字)".
std::string limitText(int bytes);

}  // namespace quillmarden
