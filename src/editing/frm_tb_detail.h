#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "editing/grid_undo.h"
#include "editing/loaded_rows.h"
#include "repository/session.h"
#include "screen/cell_block.h"
#include "screen/controls.h"
#include "screen/host.h"
#include "screen/spread.h"

namespace quillmarden {

/// The columns of the field grid. A column's meaning is fixed by its number, in every mode.
namespace field_col {
inline constexpr int kJapaneseName = 1;
inline constexpr int kFieldName = 2;
inline constexpr int kKey = 3;
inline constexpr int kType = 4;
inline constexpr int kWholeDigits = 5;
inline constexpr int kFractionDigits = 6;
inline constexpr int kLength = 7;
inline constexpr int kNull = 8;
inline constexpr int kPmark = 9;
inline constexpr int kClass = 10;
inline constexpr int kValueList = 11;
inline constexpr int kRemark = 12;
inline constexpr int kDefault = 13;
inline constexpr int kDomainName = 14;
inline constexpr int kDomainId = 15;
inline constexpr int kRangeKind = 16;
inline constexpr int kRangeStart = 17;
inline constexpr int kRangeEnd = 18;
inline constexpr int kForeign = 19;
inline constexpr int kChanged = 20;  ///< "変更" on a row that waits to be saved
inline constexpr int kForeignTableId = 21;
inline constexpr int kForeignRowNo = 22;
inline constexpr int kDbCheck = 23;
inline constexpr int kOrder = 24;
inline constexpr int kAuthor = 25;
inline constexpr int kCreated = 26;
inline constexpr int kCount = 26;
}  // namespace field_col

inline constexpr std::string_view kChangedMark = "変更";

/// Which of the five forms of the grid is on show.
enum class DetailMode { Table, Text, Member, FixedValue, Prj };

/// The SELECT parts of a load, made by the first one for the columns that the open Repository has.
struct DetailStatements {
  std::string header;
  std::string fields;
  std::string prjFields;
  bool fieldsHavePmark = false;     ///< MAS_TABLEDETAILES has the column
  bool prjFieldsHavePmark = false;  ///< MAS_PRJINFO has it
};

/// What a save may do that loses rows. On a screen the person is asked; where nobody is, what is not allowed is
/// refused.
struct SaveLeave {
  bool asks = true;
  bool over = false;     ///< over the rows that somebody else has saved since the load
  bool removal = false;  ///< of all rows, or more than half of them
};

/// The detail screen: one table's header and its field grid. Generators and workbooks read a table from here
/// and from nowhere else.
struct frmTBDetail {
  // --- the header, as shown
  std::string caption;      ///< window title
  TextBox txtTableNameENG;  ///< テーブル名
  TextBox txtTableNameJPN;  ///< 日本語名
  Label lblID;
  Label lblSystemName;
  Label lblRyaku;
  Label lblBunrui;
  Label lblHost;
  Label lblFileType;
  Label lblDataBunrui;
  Label lblKanKaku;
  Label lblFirstSQL;  ///< "yyyy/mm/dd hh:nn" or ""
  Label lblNewSQL;
  Label lblNumSQL;  ///< "0" for a table never generated
  Label lblCheckPoint;
  Label lblAddNum;
  TextBox TxtMemo;              ///< the table memo, 概要
  TextBox Txtbiko;              ///< the active row's remark
  Label lblBiko;                ///< "備考 [ name ]" above it
  Label lblColRow;              ///< "001 : 001"
  std::array<Label, 7> lblNum;  ///< INITIAL, NEXT, MINEXTENTS, MAXEXTENTS, PCTINCREASE, PCTFREE, PCTUSED
  Label lblTbSpace;
  Label lblInpData;
  Label lblInpForm;
  TextBox txtRefFileNameRead;
  Button cmdRefFile;
  TextBox txtPartitionRead;
  Button cmdPartition;
  std::array<Label, 4> lblKensu;  ///< 現在数, 想定数, 現在保持, 想定保持
  // --- marks: visible or not
  Label lblAllSystem;
  Picture PicReverse;
  Picture PicPmark;
  Label lblBRIN;
  Picture picTrigger;
  Picture picEdit;  ///< shown for a read-only table
  Picture picRen;   ///< shown when the grid differs from the Repository
  Label lblIndex;   ///< shown when the table has indexes
  ListBox lstIndex;
  ListBox lstAtai;  ///< the entries of the active row's value list
  Label lblMsg;     ///< wait text
  // --- commands
  Button CmdUpDate;
  Button CmdER;
  Button cmdOpenMDBFile;
  Button cmdOpenMDBFolder;
  MenuItem mnuEditing;  ///< all entries that change the grid
  MenuItem mnuPartition;
  // --- the grid
  quillmarden::Spread Spread;
  int activeRow = 1;
  int activeCol = 1;
  std::vector<CellBlock> selection;  ///< the selected blocks; the view keeps it up to date
  GridUndo undo;                     ///< the editing since the load
  LoadedRows loaded;                 ///< the field rows that the grid was filled from
  SaveLeave leave;                   ///< what a save may do without a question
  // --- mode flags, set by the load
  DetailMode mode = DetailMode::Table;
  bool readOnly = false;
  std::string whyReadOnly;        ///< the reason, in lines; "" for a table that may be changed
  bool tableHasPmark = false;     ///< MAS_TABLEINFO has the column
  bool detailsHavePmark = false;  ///< the field rows have it
  bool pmarkAtLoad = false;
  bool loading = false;
  bool changed = false;
  bool batch = false;  ///< a generation run moves through tables: read-only, and only what generators read is loaded
  // --- kept from one load to the next
  DetailStatements statements;
  std::string columnsFor;  ///< mode, kind and rights that the grid's columns were set up for
};

/// Loads a table. True on failure: no such table. A cell that cannot be read stays empty.
bool pGet_TableID2TableDetails(Session& session, Host& host, frmTBDetail& screen, std::string_view tableId);
/// Brings the screen up to the rights on its table as they are now, where these have changed: the table is loaded anew,
/// or, with unsaved rows, these stay on show and the commands follow.
void refreshRights(Session& session, Host& host, frmTBDetail& screen);
/// Fills the grid with the numbers, places and texts of these rows, as a load of them would have: enough to tell rows
/// apart, and texts that a line of a file can't hold. Figures stay out.
void showFormerRows(frmTBDetail& screen, const LoadedRows& rows);
/// Loads the header. True when the row does not exist.
bool pGet_TableID2TableInfo(Session& session, Host& host, frmTBDetail& screen, std::string_view tableId);

/// Columns, cell kinds and captions of each mode. With `keepWidths` stored widths are taken from the settings.
void pSet_Spread4Table(Session& session, frmTBDetail& screen, bool keepWidths);
void pSet_Spread4Member(Session& session, frmTBDetail& screen, bool keepWidths);
void pSet_Spread4Prj(Session& session, frmTBDetail& screen, bool keepWidths);
void pSet_Spread4Fixed(Session& session, frmTBDetail& screen, bool keepWidths);

/// Saves the grid in one transaction, then recomputes length and capacity. True on failure, after its message;
/// the Repository then keeps the former rows. References and indexes follow their fields to new numbers. Rows that
/// somebody else has saved since the load are told with what differs: the person loads them, saves over them, or goes
/// on editing.
bool pPutTableDetails(Session& session, Host& host, frmTBDetail& screen);
/// The same for the rows of a PG管理 table.
bool pPutPrjDetails(Session& session, Host& host, frmTBDetail& screen);

/// The update button: checks, asks, saves, and loads the table anew. True on failure, when the user declined, and
/// for a table that is read-only.
bool CmdUpDate_Click(Session& session, Host& host, frmTBDetail& screen);

void gClearForm(frmTBDetail& screen);
void pPutWaitMsg(Host& host, frmTBDetail& screen, bool show, std::string_view text);

/// A true key cell: "○" or numerically -1.
bool isKey(std::string_view cell);

}  // namespace quillmarden
