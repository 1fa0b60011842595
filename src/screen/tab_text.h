#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillmarden {

/// Rows of cells, as they travel through the clipboard.
using TextRows = std::vector<std::vector<std::string>>;

/// Cells joined by a tab, rows ended by CR LF, as spreadsheet programs have it: a cell that holds a tab, a line end or
/// a quote at its beginning stands in quotes, with the quotes inside it doubled.
std::string toTabText(const TextRows& rows);

/// The cells of such a text. CR LF, LF and CR end a row, and one at the very end opens no further row. Line ends inside
/// a quoted cell become "\n". A quote inside an unquoted cell, or one that is never closed, is a plain character.
TextRows fromTabText(std::string_view text);

}  // namespace quillmarden
