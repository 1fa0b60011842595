#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "workbook/address.h"

namespace quillmarden {

/// Rows that came or went on a sheet.
struct RowChange {
  int first = 1;
  int count = 0;         ///< at least 1
  bool inserted = true;  ///< before the row `first`; otherwise the rows from `first` on were removed

  int last() const { return first + count - 1; }
};

/// Where a row stands after the change: nothing for a removed row, and for one that was pushed off the sheet.
std::optional<int> shiftRow(int row, const RowChange& change);
/// The range after the change: it grows with rows inserted inside, shrinks with removed ones; nothing when all of it
/// went. Whole columns stay.
std::optional<CellRange> shiftRange(const CellRange& range, const RowChange& change);

/// What a formula refers to: "A1", "$A$1:B2", "1:3", "Sheet2!A1", "'My sheet'!name".
struct FormulaReference {
  std::string_view prefix;     ///< as it stands, with its "!"; "" when there is none
  std::string sheet;           ///< the sheet that it names, without quotes; "" for none
  bool otherBook = false;      ///< in another book, as "[1]Sheet1!A1"
  bool severalSheets = false;  ///< "Sheet1:Sheet3!A1"
  std::string_view target;     ///< the address, or the name behind a prefix; may be ""
};

/// The formula with each reference replaced by what `edit` gives for it. Texts in quotes, function names, and
/// structured references are passed over.
std::string editReferences(std::string_view formula, const std::function<std::string(const FormulaReference&)>& edit);

/// The formula as it reads in a cell so many rows down and columns to the right: addresses without "$" move along.
std::string offsetFormula(std::string_view formula, int rows, int columns);
/// The formula of a cell on the sheet `home` after rows of the sheet `changed` came or went.
std::string shiftFormula(std::string_view formula, std::string_view home, std::string_view changed,
                         const RowChange& change);
/// The formula after a sheet got another name.
std::string renameInFormula(std::string_view formula, std::string_view from, std::string_view to);
/// The formula with "#REF!" for what refers to a sheet that `known` denies.
std::string dropSheets(std::string_view formula, const std::function<bool(std::string_view sheet)>& known);

/// A sheet's name as formulas write it: in apostrophes unless it is plain.
std::string sheetInFormula(std::string_view name);
/// Names of sheets compare without case.
bool sameSheet(std::string_view a, std::string_view b);

/// Whether a spreadsheet program could read the text (without "=") as a formula.
bool isFormula(std::string_view text);

}  // namespace quillmarden
