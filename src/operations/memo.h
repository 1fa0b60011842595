#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "repository/session.h"
#include "screen/cell_block.h"
#include "screen/controls.h"
#include "screen/host.h"
#include "screen/spread.h"

namespace quillmarden {

/// The columns of the memo grid.
namespace memo_col {
inline constexpr int kSymbol = 1;   ///< 記号
inline constexpr int kText = 2;     ///< 備考
inline constexpr int kCreated = 3;  ///< 作成日, "yyyy/mm/dd hh:nn:ss"
inline constexpr int kCount = 3;
}  // namespace memo_col

/// One line of a table's memo.
struct MemoLine {
  std::string symbol;  ///< " " on a line that has a text alone
  std::string text;
  std::string created;
};

/// The memo of one table.
struct frmMemo {
  std::string caption = "付帯メモ";
  quillmarden::Spread Spread;
  CellBlock block;  ///< what is selected in the grid; the view keeps it up to date
  Label lblEdit;    ///< "修正" when something changed
  MenuItem mnuClear;
  Button CmdUpDate;
  Button CmdClose;
  std::string tableId;
  std::string systemName;  ///< the table's
  bool changed = false;
  bool unloaded = false;
};

/// The memo lines of a table in their order, those without any text left out. Throws EngineError.
std::vector<MemoLine> readTableMemo(Database& database, std::string_view tableId);
/// The columns of the memo grid.
std::vector<SpreadColumn> memoColumns();

/// The screen with a table's memo. `editable`: whether the table may be changed. True on failure, after its message.
bool gGetMasTableMemo(Session& session, Host& host, frmMemo& screen, std::string_view tableId, std::string_view system,
                      bool editable);
/// The commands follow the rights as they are now; what is being typed stays.
void refreshRights(Session& session, frmMemo& screen);
/// A cell has got another text.
void Spread_Change(frmMemo& screen, int col, int row);
void mnuClear_Click(Host& host, frmMemo& screen);
/// Writes the memo anew from the grid. True on failure, after its message, when the former memo stays; and for a memo
/// that may not be changed.
bool CmdUpDate_Click(Session& session, Host& host, frmMemo& screen);
/// True when the screen stays open.
bool CmdClose_Click(Host& host, frmMemo& screen);

}  // namespace quillmarden
