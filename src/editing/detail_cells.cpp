#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

#include "common/numbers.h"
#include "common/text.h"
#include "common/utf8.h"
#include "editing/detail_parts.h"
#include "editing/frm_tb_detail_edit.h"

namespace quillmarden {

namespace {

namespace col = field_col;

constexpr int kDomainCells[] = {col::kType, col::kWholeDigits, col::kFractionDigits, col::kLength, col::kClass};

int characters(std::string_view text) {
  int count = 0;
  for (std::size_t at = 0; at < text.size(); at += utf8At(text, at).size) ++count;
  return count;
}

/// A line of text; the remark alone may have several.
std::optional<std::string> editText(const SpreadColumn& column, int number, std::string_view typed) {
  std::string text = gReplaceAll(typed, "\r", "");
  if (number != col::kRemark) text = gReplaceAll(gReplaceAll(text, "\n", ""), "\t", " ");
  if (text.find('\0') != std::string::npos) return std::nullopt;
  if (column.maxLength > 0 && characters(text) > column.maxLength) return std::nullopt;
  return text;
}

std::string checkText(std::string_view typed) {
  const std::string word = toLower(trim(toNarrow(typed)));
  return isKey(trim(typed)) || word == "1" || word == "true" ? "-1" : "0";
}

std::optional<std::string> listText(const SpreadColumn& column, std::string_view typed) {
  const std::string wanted = toLower(trim(typed));
  for (const std::string& entry : column.entries)
    if (toLower(trim(entry)) == wanted) return entry;
  if (wanted.empty()) return "";
  return std::nullopt;
}

std::optional<std::string> numberText(const SpreadColumn& column, bool whole, std::string_view typed) {
  const std::string narrow = gReplaceAll(toNarrow(typed), ",", "");
  if (trim(narrow).empty()) return "";
  if (!isNumeric(narrow)) return std::nullopt;
  double number = gVal(narrow);
  if (whole) number = std::round(number);
  if (!(number >= column.minimum && number <= column.maximum)) return std::nullopt;
  return plainNumber(number);
}

/// The kind of a cell, of the row that is about to be made included.
CellKind kindFor(const Spread& grid, int number, int row) {
  if (row <= grid.maxRows() || grid.locked()) return grid.kind(number, row);
  return grid.column(number).kind;
}

/// The typed text in the cell's own form; nothing when the cell does not take it.
std::optional<std::string> cellText(const frmTBDetail& screen, int number, int row, std::string_view typed) {
  const SpreadColumn& column = screen.Spread.column(number);
  switch (kindFor(screen.Spread, number, row)) {
    case CellKind::Edit:
      return editText(column, number, typed);
    case CellKind::Check:
      return checkText(typed);
    case CellKind::List:
      // The development language of a program is free text.
      if (screen.mode == DetailMode::Prj && number == col::kType) return editText(column, number, typed);
      return listText(column, typed);
    case CellKind::Integer:
      return numberText(column, true, typed);
    case CellKind::Float:
      return numberText(column, false, typed);
    case CellKind::Static:
      break;
  }
  return std::nullopt;
}

/// A type with fixed length brings it along; with the others the length follows the digits. Oracle's lengths need the
/// arithmetic of the save.
void followType(Session& session, frmTBDetail& screen, int row) {
  Spread& grid = screen.Spread;
  const std::string_view kind = trim(screen.lblFileType.caption);
  if (equalsNoCase(kind, "Oracle")) return;
  const FileType* type = gChkFileType(*session.gDB, session.catalogue, kind, trim(grid.text(col::kType, row)));
  if (type == nullptr) return;
  const std::string length =
      type->takesDigits ? std::string(grid.text(col::kWholeDigits, row)) : std::to_string(type->digits);
  grid.setText(col::kLength, row, length);
}

void followTextPositions(Spread& grid) {
  double position = 1;
  for (int row = 1; row <= grid.maxRows(); ++row) {
    const bool named =
        !trim(grid.text(col::kJapaneseName, row)).empty() || !trim(grid.text(col::kFieldName, row)).empty();
    if (named) putTextPositions(grid, row, position);
  }
}

/// Lets the cells follow that depend on the one that changed.
void followCell(Session& session, frmTBDetail& screen, int number, int row) {
  Spread& grid = screen.Spread;
  if (grid.backColour(number, row) == kRed) grid.setBackColour(number, row, kWhite);
  switch (screen.mode) {
    case DetailMode::Table:
      if (number == col::kType || number == col::kWholeDigits) followType(session, screen, row);
      // What is part of the key is stored as NOT NULL whatever the cell says.
      if (number == col::kKey && isKey(grid.text(col::kKey, row))) grid.setText(col::kNull, row, "NOT NULL");
      break;
    case DetailMode::Text:
      followTextPositions(grid);
      break;
    case DetailMode::Prj:
      if (number == col::kClass) grid.setBackColour(number, row, progressColour(grid.text(number, row)));
      break;
    case DetailMode::Member:
    case DetailMode::FixedValue:
      break;
  }
}

}  // namespace

bool editable(const frmTBDetail& screen) {
  return screen.CmdUpDate.enabled && !screen.Spread.locked() && screen.Spread.maxCols() == col::kCount;
}

void lockDomainCells(Spread& grid, int row) {
  for (int number : kDomainCells) {
    grid.setKind(number, row, CellKind::Static);
    grid.setBackColour(number, row, kButtonFace);
  }
}

void releaseDomainCells(Spread& grid, int row) {
  for (int number : kDomainCells) {
    grid.setKind(number, row, grid.column(number).kind);
    grid.setBackColour(number, row, kWhite);
  }
}

bool linkDomain(Session& session, frmTBDetail& screen, int row, long domainId) {
  Spread& grid = screen.Spread;
  if (domainId == 0) {
    if (!grid.holds(col::kDomainName, row) && !grid.holds(col::kDomainId, row)) return true;
    grid.setText(col::kDomainName, row, "");
    grid.setText(col::kDomainId, row, "");
    releaseDomainCells(grid, row);
    markRow(screen, row);
    return true;
  }
  const Recordset domain = session.gDB->openRecordset(
      "SELECT 日本語名, 項目名, 型, 整数桁数, 少数桁数, 長さ, 項目分類 FROM MAS_DOMAIN WHERE 削除フラグ = 0 AND ID = " +
      std::to_string(domainId));
  if (domain.eof()) return false;
  constexpr int kFrom[] = {col::kJapaneseName,   col::kFieldName, col::kType, col::kWholeDigits,
                           col::kFractionDigits, col::kLength,    col::kClass};
  for (int i = 0; i < static_cast<int>(std::size(kFrom)); ++i) {
    const bool name = kFrom[i] == col::kJapaneseName || kFrom[i] == col::kFieldName;
    if (!name || trim(grid.text(kFrom[i], row)).empty()) grid.setText(kFrom[i], row, domain.text(i));
  }
  grid.setText(col::kDomainName, row, domain.text(0));
  grid.setText(col::kDomainId, row, std::to_string(domainId));
  lockDomainCells(grid, row);
  if (screen.mode == DetailMode::Text) followTextPositions(grid);
  markRow(screen, row);
  return true;
}

Colour progressColour(std::string_view progress) {
  const auto rgb = [](Colour red, Colour green, Colour blue) { return blue << 16 | green << 8 | red; };
  if (progress == "△作成中") return rgb(230, 220, 255);
  if (progress == "○完了") return rgb(255, 230, 200);
  if (progress == "■中止" || progress == "■対象外") return rgb(230, 230, 230);
  if (progress == "△修正中") return rgb(220, 255, 220);
  if (progress == "△機能拡張中") return rgb(210, 240, 255);
  if (progress == "△バグ調査中") return rgb(255, 255, 200);
  if (progress == "△バグ対応中") return rgb(255, 210, 210);
  return kWhite;
}

void putTextPositions(Spread& grid, int row, double& position) {
  const double width = gStr2Double(grid.text(col::kWholeDigits, row));
  grid.setText(col::kLength, row, plainNumber(position));
  grid.setText(col::kNull, row, plainNumber(position + width - 1));
  position += width;
}

bool putCell(Session& session, frmTBDetail& screen, int number, int row, std::string_view newText) {
  Spread& grid = screen.Spread;
  if (!editable(screen) || number < 1 || number > grid.maxCols() || row < 1 || row > Spread::kMaxRows) return false;
  const std::optional<std::string> text = cellText(screen, number, row, newText);
  if (!text) return false;
  const bool unset = grid.column(number).kind == CellKind::Check && !grid.holds(number, row) && *text == "0";
  if (grid.text(number, row) == *text || unset) return true;
  grid.setText(number, row, *text);
  followCell(session, screen, number, row);
  markRow(screen, row);
  return true;
}

}  // namespace quillmarden
