#include <algorithm>
#include <functional>

#include "common/message.h"
#include "common/numbers.h"
#include "common/text.h"
#include "common/typed_cell.h"
#include "editing/detail_parts.h"
#include "editing/frm_tb_detail_edit.h"
#include "editing/grid_operations.h"

namespace quillmarden {

namespace {

namespace col = field_col;

/// The first line of a text that the domain screen copied.
constexpr std::string_view kDomainMarker = "CopyClipBord2DomainText";
constexpr std::size_t kDomainIdField = 12;  ///< where such a row has its DomainID, from 0
/// How many refused cells a message names.
constexpr std::size_t kNamedCells = 10;

/// The last column that a copy of rows takes: for programs the one of their specification.
int lastCopied(const frmTBDetail& screen) { return screen.mode == DetailMode::Prj ? col::kDbCheck : col::kRangeEnd; }

/// Whether the options let a copy of rows take the column. The end of a range goes with its beginning; what only
/// programs have, the options do not know.
bool copied(const Session& session, int number) {
  if (number > col::kRangeEnd) return true;
  if (number == col::kRangeEnd) number = col::kRangeStart;
  const auto place = static_cast<std::size_t>(number - 1);
  return place < session.settings.spreadCopy.size() && session.settings.spreadCopy[place];
}

std::string oneLine(std::string_view text) { return gReplaceAll(gReplaceAll(text, "\r", ""), "\n", ""); }

std::vector<int> visibleColumns(const Spread& grid, int first, int last) {
  std::vector<int> columns;
  for (int number = std::max(first, 1); number <= std::min(last, grid.maxCols()); ++number)
    if (!grid.column(number).hidden) columns.push_back(number);
  return columns;
}

std::string clipboardText(const TextRows& rows) {
  std::string text = toTabText(rows);
  if (text.ends_with("\r\n")) text.resize(text.size() - 2);
  return text;
}

/// Programs that pass a text on change its line ends.
std::string comparable(std::string_view text) {
  std::string plain = gReplaceAll(text, "\r", "");
  while (plain.ends_with('\n')) plain.pop_back();
  return plain;
}

// --- copy

/// Whole rows keep each column's place, so that they go in again where they came from.
TextRows rowTexts(const Session& session, const frmTBDetail& screen, const std::vector<int>& rows) {
  const Spread& grid = screen.Spread;
  TextRows texts;
  for (int row : rows) {
    std::vector<std::string>& cells = texts.emplace_back();
    for (int number : visibleColumns(grid, 1, lastCopied(screen)))
      cells.push_back(copied(session, number) ? oneLine(grid.text(number, row)) : "");
  }
  return texts;
}

TextRows blockTexts(const Spread& grid, const GridBlock& block) {
  TextRows texts;
  const std::vector<int> columns = visibleColumns(grid, block.firstCol, block.lastCol);
  for (int row = std::max(block.firstRow, 1); row <= std::min(block.lastRow, grid.maxRows()); ++row) {
    std::vector<std::string>& cells = texts.emplace_back();
    for (int number : columns) cells.push_back(oneLine(grid.text(number, row)));
  }
  return texts;
}

std::string captionOf(const frmTBDetail& screen, const std::vector<int>& rows) {
  const Spread& grid = screen.Spread;
  const std::string& japanese = screen.txtTableNameJPN.text;
  std::string caption = (japanese.empty() ? screen.txtTableNameENG.text : japanese) + " : ";
  const std::string_view name = trim(grid.text(col::kJapaneseName, rows.front()));
  caption += name.empty() ? trim(grid.text(col::kFieldName, rows.front())) : name;
  return caption + " (" + std::to_string(rows.size()) + ")";
}

void note(CopyHistory& history, CopiedRows copy) {
  std::erase_if(history.entries, [&](const CopiedRows& entry) { return entry.text == copy.text; });
  history.entries.insert(history.entries.begin(), std::move(copy));
  if (history.entries.size() > CopyHistory::kMaxEntries) history.entries.resize(CopyHistory::kMaxEntries);
}

// --- paste

/// One paste under way: what goes in and what does not.
struct Paste {
  Session& session;
  frmTBDetail& screen;
  std::vector<std::string> refused{};
  int leftRows = 0;

  /// Whether the row can be written to: the grid grows where the options allow it.
  bool reaches(int row) {
    const bool room = row <= screen.Spread.maxRows() || session.settings.spreadCopy2AddRow;
    if (room && row <= Spread::kMaxRows) return true;
    ++leftRows;
    return false;
  }

  void refuse(int number, int row, std::string_view text) {
    const SpreadColumn& column = screen.Spread.column(number);
    const bool tooLong = column.maxLength > 0 && gLenB(text) > static_cast<std::size_t>(column.maxLength);
    refused.push_back(
        "[" + threeDigits(row) + "] " + oneLine(column.title) +
        (tooLong ? "が長すぎます. " + limitText(column.maxLength) + "までです." : " : " + std::string(text)));
  }

  /// A cell of text. Static cells pass over what comes for them, but for the number of a domain.
  void cell(int number, int row, const std::string& text) {
    Spread& grid = screen.Spread;
    const bool newRow = row > grid.maxRows();
    const CellKind kind = newRow ? grid.column(number).kind : grid.kind(number, row);
    if (kind != CellKind::Static) {
      if (!putCell(session, screen, number, row, text)) refuse(number, row, text);
    } else if (number == col::kDomainId && isNumeric(text)) {
      domain(row, text);
    }
  }

  void domain(int row, std::string_view id) {
    if (!linkDomain(session, screen, row, static_cast<long>(gVal(id)))) refuse(col::kDomainId, row, id);
  }
};

/// A row from the history, in the columns that a copy of rows takes. What it replaces keeps its number.
void pasteRow(Paste& paste, const SpreadRow& source, int row) {
  Spread& grid = paste.screen.Spread;
  const auto text = [&](int number) -> const std::string& {
    return source.cells[static_cast<std::size_t>(number - 1)].text;
  };
  const bool link = copied(paste.session, col::kDomainName) || copied(paste.session, col::kDomainId);
  if (link) linkDomain(paste.session, paste.screen, row, 0);
  for (int number : visibleColumns(grid, 1, lastCopied(paste.screen))) {
    if (!copied(paste.session, number) || number == col::kDomainName || number == col::kDomainId) continue;
    if (number == col::kValueList && grid.column(number).kind == CellKind::Static)
      grid.setText(number, row, text(number));
    else
      paste.cell(number, row, text(number));
  }
  if (link && gVal(text(col::kDomainId)) != 0) paste.domain(row, text(col::kDomainId));
  markRow(paste.screen, row);
}

void pasteRows(Paste& paste, const std::vector<SpreadRow>& rows) {
  int row = paste.screen.activeRow;
  for (const SpreadRow& source : rows) {
    if (paste.reaches(row) && source.cells.size() == static_cast<std::size_t>(paste.screen.Spread.maxCols()))
      pasteRow(paste, source, row);
    ++row;
  }
}

/// A paste marks each row that it touches, a fill those that it changes.
void putTexts(Paste& paste, const TextRows& texts, int firstCol, int row, bool marks) {
  const std::vector<int> columns = visibleColumns(paste.screen.Spread, firstCol, paste.screen.Spread.maxCols());
  for (const std::vector<std::string>& cells : texts) {
    if (paste.reaches(row)) {
      for (std::size_t i = 0; i < cells.size() && i < columns.size(); ++i) paste.cell(columns[i], row, cells[i]);
      if (marks) markRow(paste.screen, row);
    }
    ++row;
  }
}

/// Words of the dictionary become fields; those with an ID are linked.
void pasteDomains(Paste& paste, const TextRows& texts) {
  constexpr int kColumns[] = {col::kJapaneseName,   col::kFieldName, col::kType,  col::kWholeDigits,
                              col::kFractionDigits, col::kLength,    col::kClass, col::kRemark};
  int row = paste.screen.activeRow;
  for (std::size_t i = 1; i < texts.size(); ++i, ++row) {
    if (!paste.reaches(row)) continue;
    const std::vector<std::string>& cells = texts[i];
    linkDomain(paste.session, paste.screen, row, 0);
    for (int number : kColumns) {
      const auto place = static_cast<std::size_t>(number - 1);
      if (place < cells.size() && !cells[place].empty()) paste.cell(number, row, cells[place]);
    }
    if (cells.size() > kDomainIdField && gVal(cells[kDomainIdField]) != 0) paste.domain(row, cells[kDomainIdField]);
    markRow(paste.screen, row);
  }
}

/// One cell goes into every cell of the selection.
void fill(Paste& paste, const GridSelection& selection, const std::string& text) {
  for (const GridBlock& block : selection)
    for (int row = std::max(block.firstRow, 1); row <= std::min(block.lastRow, paste.screen.Spread.maxRows()); ++row) {
      for (int number : visibleColumns(paste.screen.Spread, block.firstCol, block.lastCol))
        paste.cell(number, row, text);
      markRow(paste.screen, row);
    }
}

/// More than one cell, and not rows as such.
bool manyCells(const GridSelection& selection) {
  if (selection.empty() ||
      std::any_of(selection.begin(), selection.end(), [](const GridBlock& block) { return block.wholeRows; }))
    return false;
  const GridBlock& first = selection.front();
  return selection.size() > 1 || first.firstRow != first.lastRow || first.firstCol != first.lastCol;
}

void tellRefused(Host& host, const Paste& paste) {
  std::string text;
  for (std::size_t i = 0; i < std::min(paste.refused.size(), kNamedCells); ++i) text += "\n" + paste.refused[i];
  if (paste.refused.size() > kNamedCells) text += "\n他 " + std::to_string(paste.refused.size() - kNamedCells) + "件";
  if (!text.empty()) text = "貼り付けできない内容がありました." + text;
  if (paste.leftRows > 0) {
    if (!text.empty()) text += "\n";
    text += "最終行を超える" + std::to_string(paste.leftRows) + "行は貼り付けていません.";
  }
  if (!text.empty()) gMsgBox(host, text);
}

void runPaste(Session& session, Host& host, frmTBDetail& screen, const std::function<void(Paste&)>& body) {
  Paste paste{.session = session, .screen = screen};
  pPutWaitMsg(host, screen, true, "Copy...");
  try {
    changeGrid(screen, [&] { body(paste); });
  } catch (const EngineError& error) {
    pPutWaitMsg(host, screen, false, "");
    tellError(session, host, "mnuPaste", error);
    return;
  }
  pPutWaitMsg(host, screen, false, "");
  showActiveRow(session, host, screen);
  tellRefused(host, paste);
}

}  // namespace

void mnuCopy_Click(Session& session, Host& host, const frmTBDetail& screen, const GridSelection& selection,
                   CopyHistory& history) {
  const Spread& grid = screen.Spread;
  if (!host.machine.setClipboard) return;
  const bool whole = !selection.empty() && std::all_of(selection.begin(), selection.end(),
                                                       [](const GridBlock& block) { return block.wholeRows; });
  if (!whole) {
    TextRows texts;
    for (const GridBlock& block : selection)
      for (std::vector<std::string>& row : blockTexts(grid, block)) texts.push_back(std::move(row));
    if (selection.empty()) texts = {{oneLine(grid.text(screen.activeCol, screen.activeRow))}};
    if (!texts.empty()) host.machine.setClipboard(clipboardText(texts));
    return;
  }
  const std::vector<int> rows = selectedRows(screen, selection);
  if (rows.empty()) return;
  CopiedRows copy{clipboardText(rowTexts(session, screen, rows)), captionOf(screen, rows), {}};
  for (int row : rows) {
    copy.rows.push_back(std::move(grid.rows(row, row).front()));
    copy.rows.back().tag = 0;
  }
  host.machine.setClipboard(copy.text);
  note(history, std::move(copy));
}

void mnuPaste_Click(Session& session, Host& host, frmTBDetail& screen, const GridSelection& selection,
                    const CopyHistory& history) {
  if (!editable(screen) || !host.machine.clipboard) return;
  const std::string text = host.machine.clipboard();
  if (trim(text).empty()) return;
  for (std::size_t i = 0; i < history.entries.size(); ++i)
    if (comparable(history.entries[i].text) == comparable(text))
      return mnuPasteHistory_Click(session, host, screen, history, i);

  const TextRows texts = fromTabText(text);
  const bool single = texts.size() == 1 && texts[0].size() == 1;
  runPaste(session, host, screen, [&](Paste& paste) {
    if (texts.size() > 1 && texts[0].size() == 1 && trim(texts[0][0]) == kDomainMarker)
      pasteDomains(paste, texts);
    else if (single && manyCells(selection))
      fill(paste, selection, texts[0][0]);
    else
      putTexts(paste, texts, screen.activeCol, screen.activeRow, true);
  });
}

void putBlock(Session& session, Host& host, frmTBDetail& screen, int number, int row, const TextRows& texts) {
  if (editable(screen))
    runPaste(session, host, screen, [&](Paste& paste) { putTexts(paste, texts, number, row, false); });
}

void mnuPasteHistory_Click(Session& session, Host& host, frmTBDetail& screen, const CopyHistory& history,
                           std::size_t entry) {
  if (!editable(screen) || entry >= history.entries.size()) return;
  const std::vector<SpreadRow>& rows = history.entries[entry].rows;
  runPaste(session, host, screen, [&](Paste& paste) { pasteRows(paste, rows); });
}

}  // namespace quillmarden
