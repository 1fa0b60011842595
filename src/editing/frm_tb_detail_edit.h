#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "editing/frm_tb_detail.h"
#include "screen/windows.h"

namespace quillmarden {

// What a person does on the detail screen between load and save. A read-only or empty screen changes by none of it.

// --- cells

/// Text for a cell as typed or pasted. False when the cell does not take it: a static cell, no number in a number cell,
/// no entry of its list, more than its limit. The row is then as it was; text equal to the cell's is taken without a
/// change. A row beyond the last one is made.
bool cellEdited(Session& session, Host& host, frmTBDetail& screen, int col, int row, std::string_view newText);

/// The same without a step of its own to take back, for what changes many cells in one changeGrid().
bool putCell(Session& session, frmTBDetail& screen, int col, int row, std::string_view newText);
/// Why the cell does not take the text, with the column's title: "[項目名 (物理)]が長すぎます. …"; "" when it does.
std::string cellFault(const frmTBDetail& screen, int col, int row, std::string_view typed);

/// The person went to this cell: position, remark and value list beside the grid follow.
void activeCellChanged(Session& session, Host& host, frmTBDetail& screen, int col, int row);

/// The remark box beside the grid was changed: the active row's remark follows, line ends included.
void Txtbiko_Change(Session& session, Host& host, frmTBDetail& screen, std::string_view text);

/// Links the row to a domain, which gives it type, digits and class, and the names that it lacks; 0 ends the link.
/// True when there is no such domain.
bool setDomain(Session& session, Host& host, frmTBDetail& screen, int row, long domainId);
/// Names the row's value list; "" takes it away.
void setValueList(Session& session, Host& host, frmTBDetail& screen, int row, std::string_view name);

// --- changes as steps that can be taken back

/// Runs a change of the whole grid as one step, marks the screen changed and numbers the rows anew. False when
/// nothing changed.
bool changeGrid(frmTBDetail& screen, const std::function<void()>& change);
/// The same for a change that stays within one row.
bool changeRow(frmTBDetail& screen, int row, const std::function<void()>& change);
/// "変更" on the row: it waits to be saved.
void markRow(frmTBDetail& screen, int row);

void mnuUndo_Click(Session& session, Host& host, frmTBDetail& screen);
void mnuRedo_Click(Session& session, Host& host, frmTBDetail& screen);

// --- the screen's buttons

/// Opens the table's header for changes.
void cmdTBInfo_Click(Windows& windows, const frmTBDetail& screen);
/// Opens the reference file.
void cmdRefFile_Click(Session& session, Host& host, const frmTBDetail& screen);
/// Shows the column of personal information, which the save then notes for the table.
void mnuPmark_Click(frmTBDetail& screen);

// --- what the view asks and tells

/// The cells that the last check painted, row by row.
struct CellPlace {
  int col = 1;
  int row = 1;
  bool operator==(const CellPlace&) const = default;
};
std::vector<CellPlace> badCells(const frmTBDetail& screen);

/// A column's width was dragged, in widths of the letter "W"; it is kept for the mode.
void columnResized(Session& session, frmTBDetail& screen, int col, double width);
/// The grid's font size in points, from 6 to 72, kept for all detail screens; other sizes change nothing.
void gridFontChanged(Session& session, double points);

}  // namespace quillmarden
