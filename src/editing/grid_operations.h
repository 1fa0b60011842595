#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "editing/frm_tb_detail.h"
#include "screen/cell_block.h"
#include "screen/tab_text.h"

namespace quillmarden {

/// The selected blocks; with none the active cell is meant.
using GridBlock = CellBlock;
using GridSelection = std::vector<GridBlock>;

/// Rows that were copied, with more than their text can carry: a paste of this very text takes them as they are,
/// domain link included.
struct CopiedRows {
  std::string text;     ///< as put on the clipboard
  std::string caption;  ///< "table : first name (rows)", for a menu of what was copied
  std::vector<SpreadRow> rows;
};

/// What the program's grids have copied, the newest first. One for all detail screens.
struct CopyHistory {
  static constexpr std::size_t kMaxEntries = 20;
  std::vector<CopiedRows> entries;
};

/// Adds empty rows above the selection, as many as it has rows, after the questions of the screen.
void mnuInSert_Click(Session& session, Host& host, frmTBDetail& screen, const GridSelection& selection);
/// Takes the selected rows away, after the questions of the screen.
void mnuDelete_Click(Session& session, Host& host, frmTBDetail& screen, const GridSelection& selection);
/// Adds an empty row at the end and goes to it.
void mnuAddLine_Click(Session& session, Host& host, frmTBDetail& screen);
/// Adds copies of the selected rows below the last of them. Copies are new fields.
void mnuDuplicate_Click(Session& session, Host& host, frmTBDetail& screen, const GridSelection& selection);
/// Empties the selected cells after a question. A link that shows in an emptied cell goes with it.
void mnuClear_Click(Session& session, Host& host, frmTBDetail& screen, const GridSelection& selection);
/// The same without the question, for the Delete key.
void clearCells(Session& session, Host& host, frmTBDetail& screen, const GridSelection& selection);

/// Puts the selection on the clipboard: of whole rows those columns that the options name, of other blocks the visible
/// cells. Whole rows are noted in the history.
void mnuCopy_Click(Session& session, Host& host, const frmTBDetail& screen, const GridSelection& selection,
                   CopyHistory& history);
/// Writes the clipboard's cells from the active cell on. One single cell fills the whole selection. Rows run past the
/// last one where the options allow it; columns past the last visible one are dropped. Cells that a column does not
/// take are told.
void mnuPaste_Click(Session& session, Host& host, frmTBDetail& screen, const GridSelection& selection,
                    const CopyHistory& history);
/// Writes texts into the visible cells from this one on, as a fill does. Cells that do not take theirs are told.
void putBlock(Session& session, Host& host, frmTBDetail& screen, int col, int row, const TextRows& texts);
/// Pastes an entry of the history from the active row on.
void mnuPasteHistory_Click(Session& session, Host& host, frmTBDetail& screen, const CopyHistory& history,
                           std::size_t entry);

/// The rows of a selection, each once, in order; those beyond the grid are left out.
std::vector<int> selectedRows(const frmTBDetail& screen, const GridSelection& selection);

/// Ctrl+C, Ctrl+V, Ctrl+Z, Ctrl+Y, Ctrl+D (duplicate), Delete and Insert on the grid. `key` is the letter in either
/// case, or "Delete", "Insert"; `shiftState` as gShiftState numbers it: 6 Ctrl, 0 none. False when the key is none of
/// the grid's own.
bool Spread_KeyDown(Session& session, Host& host, frmTBDetail& screen, const GridSelection& selection,
                    CopyHistory& history, std::string_view key, int shiftState);

}  // namespace quillmarden
