#include <utility>

#include "common/numbers.h"
#include "common/text.h"
#include "common/typed_cell.h"
#include "editing/detail_parts.h"
#include "editing/frm_tb_detail_edit.h"

namespace quillmarden {

namespace {

namespace col = field_col;

constexpr int kDomainCells[] = {col::kType, col::kWholeDigits, col::kFractionDigits, col::kLength, col::kClass};

/// The kind of a cell, of the row that is about to be made included.
CellKind kindFor(const Spread& grid, int number, int row) {
  if (row <= grid.maxRows() || grid.locked()) return grid.kind(number, row);
  return grid.column(number).kind;
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

std::string cellFault(const frmTBDetail& screen, int number, int row, std::string_view typed) {
  const Spread& grid = screen.Spread;
  if (number < 1 || number > grid.maxCols() || grid.text(number, row) == typed) return "";
  const std::string fault = typedCell(grid.column(number), kindFor(grid, number, row), typed).fault;
  return fault.empty() ? "" : "[" + gReplaceAll(grid.column(number).title, "\n", "") + "]" + fault;
}

bool putCell(Session& session, frmTBDetail& screen, int number, int row, std::string_view newText) {
  Spread& grid = screen.Spread;
  if (!editable(screen) || number < 1 || number > grid.maxCols() || row < 1 || row > Spread::kMaxRows) return false;
  // What stands there stays, even where the cell would not take it any more.
  if (grid.holds(number, row) && grid.text(number, row) == newText) return true;
  const auto [text, fault] = typedCell(grid.column(number), kindFor(grid, number, row), newText);
  if (!fault.empty()) return false;
  const bool unset = grid.column(number).kind == CellKind::Check && !grid.holds(number, row) && text == "0";
  if (grid.text(number, row) == text || unset) return true;
  grid.setText(number, row, text);
  followCell(session, screen, number, row);
  markRow(screen, row);
  return true;
}

}  // namespace quillmarden
