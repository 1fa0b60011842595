#include <array>
#include <charconv>
#include <cstdint>
#include <unordered_map>

#include "common/numbers.h"
#include "common/text.h"
#include "editing/detail_parts.h"
#include "editing/row_numbers.h"
#include "editing/save_conflict.h"
#include "operations/capacity.h"
#include "repository/rights.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace {

namespace col = field_col;

/// A grid row that the save keeps, under its new number.
struct KeptRow {
  int gridRow = 0;
  long number = 0;
  long former = 0;  ///< 0 for a row that the Repository does not hold
};

/// The rows of the table as the Repository holds them when the save begins. Columns that the grid does not carry
/// travel from here to the new rows.
struct FormerRows {
  std::vector<std::string> columns;
  std::unordered_map<std::string, std::size_t> places;  ///< lower-case column name to its place
  std::unordered_map<long, std::vector<Value>> byNumber;
};

/// What all rows of one save need.
struct Saving {
  Session& session;
  frmTBDetail& screen;
  bool prj = false;
  bool namesLost = false;  ///< a save over somebody else's tells what has lost its field
  std::string now{};
  std::string computer{};
  FormerRows former{};
  LoadedRows stored{};  ///< the same, as a load keeps them
  std::vector<KeptRow> kept{};
  RowNumbers numbers{};
  std::vector<std::string> lost{};  ///< what pointed at fields that are no more
};

std::string_view tableOf(const Saving& saving) { return saving.prj ? "MAS_PRJINFO" : "MAS_TABLEDETAILES"; }

/// A cell for a number column: Null when it holds nothing. Text that is no number goes on as it is, and the engine
/// refuses it.
Value numberCell(std::string_view text) {
  text = trim(text);
  if (text.empty()) return {};
  std::int64_t whole = 0;
  const auto end = text.data() + text.size();
  if (const auto read = std::from_chars(text.data(), end, whole); read.ec == std::errc() && read.ptr == end)
    return whole;
  return std::string(text);
}

/// A date for a date column; text that is none goes on as it is, and the engine refuses it.
Value dateValue(std::string_view text) {
  text = trim(text);
  if (text.empty()) return {};
  const auto moment = parseDateTime(text);
  return moment ? formatDateTime(*moment, kSecondForm) : std::string(text);
}

void readFormerRows(Saving& saving) {
  const std::string sql =
      "SELECT * FROM " + std::string(tableOf(saving)) + " WHERE ID = " + saving.screen.lblID.caption;
  Recordset rows = saving.session.gDB->openRecordset(sql);
  saving.stored = loadedRows(rows);
  if (rows.recordCount() > 0) rows.moveFirst();
  FormerRows& former = saving.former;
  former = {};
  for (int i = 0; i < rows.fieldCount(); ++i) {
    former.places.emplace(toLower(rows.fieldName(i)), former.columns.size());
    former.columns.push_back(rows.fieldName(i));
  }
  const int rowNo = rows.fieldIndex("ROWNO");
  for (; !rows.eof(); rows.moveNext()) {
    std::vector<Value>& row = former.byNumber[static_cast<long>(rows.integer(rowNo))];
    for (int i = 0; i < rows.fieldCount(); ++i) row.push_back(rows.value(i));
  }
}

void numberRows(Saving& saving) {
  const Spread& grid = saving.screen.Spread;
  std::unordered_map<long, long> numberOf;
  for (int row = 1; row <= grid.maxRows(); ++row) {
    if (!isKept(saving.screen, row)) continue;
    KeptRow kept{row, static_cast<long>(saving.kept.size()) + 1, grid.rowTag(row)};
    // Only the first of two rows with one origin is that field; the other is a copy of it.
    if (!saving.former.byNumber.contains(kept.former) || !numberOf.emplace(kept.former, kept.number).second)
      kept.former = 0;
    saving.kept.push_back(kept);
  }
  for (const auto& [number, row] : saving.former.byNumber) {
    const auto now = numberOf.find(number);
    if (now == numberOf.end()) {
      saving.numbers.gone.insert(number);
    } else if (now->second != number) {
      saving.numbers.moved.emplace(number, now->second);
    }
  }
}

/// The row's former values, or those of a row that is new: no flag set, everything else Null.
std::vector<Value> startOf(const Saving& saving, const KeptRow& kept) {
  if (kept.former != 0) return saving.former.byNumber.at(kept.former);
  std::vector<Value> row(saving.former.columns.size());
  const TableDef* def = saving.session.gDB->tableDef(tableOf(saving));
  for (std::size_t i = 0; i < row.size(); ++i) {
    const FieldDef* field = def == nullptr ? nullptr : def->field(saving.former.columns[i]);
    if (field != nullptr && field->type == FieldType::Flag) row[i] = std::int64_t{0};
  }
  return row;
}

bool keyOf(const Saving& saving, const KeptRow& kept) {
  const std::string_view cell = saving.screen.Spread.text(col::kKey, kept.gridRow);
  if (saving.prj) return true;
  if (cell.empty()) return false;
  return cell == kCheckMark || !isNumeric(cell) || gVal(cell) != 0;
}

/// A column of a stored row as text; "" for one that the table lacks.
std::string formerText(const Saving& saving, const std::vector<Value>& row, const std::string& column) {
  const auto place = saving.former.places.find(column);
  return place == saving.former.places.end() ? "" : toText(row[place->second]);
}

/// A name of a stored row for a message.
std::string formerName(const Saving& saving, long number) {
  const auto row = saving.former.byNumber.find(number);
  if (row == saving.former.byNumber.end()) return "";
  const std::string name = formerText(saving, row->second, "項目名");
  return name.empty() ? formerText(saving, row->second, "日本語名") : name;
}

/// A reference within the table follows its field to the new number, or goes with it.
void followOwnReference(Saving& saving, int row) {
  Spread& grid = saving.screen.Spread;
  if (saving.numbers.unchanged() || trim(grid.text(col::kForeignTableId, row)) != saving.screen.lblID.caption) return;
  const long referred = static_cast<long>(gVal(grid.text(col::kForeignRowNo, row)));
  if (saving.numbers.isGone(referred)) {
    if (saving.namesLost)
      saving.lost.push_back("外部参照 " + saving.screen.txtTableNameENG.text + "." +
                            std::string(grid.text(col::kFieldName, row)) + " : " + formerName(saving, referred));
    for (int column : {col::kForeign, col::kForeignTableId, col::kForeignRowNo}) grid.setText(column, row, "");
  } else {
    grid.setText(col::kForeignRowNo, row, std::to_string(saving.numbers.after(referred)));
  }
}

std::vector<Value> rowValues(Saving& saving, const KeptRow& kept) {
  const Spread& grid = saving.screen.Spread;
  const int row = kept.gridRow;
  std::vector<Value> values = startOf(saving, kept);
  const auto put = [&](std::string_view column, Value value) {
    const auto place = saving.former.places.find(toLower(column));
    if (place != saving.former.places.end()) values[place->second] = std::move(value);
  };
  const auto text = [&](int column) { return std::string(grid.text(column, row)); };
  const auto textOr = [&](int column, std::string_view empty) {
    return std::string(grid.holds(column, row) ? grid.text(column, row) : empty);
  };
  const bool key = keyOf(saving, kept);
  const auto created = parseDateTime(grid.text(col::kCreated, row));

  put("ID", numberCell(saving.screen.lblID.caption));
  put("ROWNO", static_cast<std::int64_t>(kept.number));
  put("表示順", static_cast<std::int64_t>(kept.number));
  put("日本語名", storedJapaneseName(saving.session, saving.screen, row, kept.number));
  put("項目名", storedFieldName(saving.session, saving.screen, row));
  put("KEY", static_cast<std::int64_t>(key ? -1 : 0));
  put("型", std::string(trim(grid.text(col::kType, row))));
  if (saving.prj) {
    for (const int date : {col::kWholeDigits, col::kFractionDigits})
      put(prjColumn(date), dateValue(grid.text(date, row)));
    put(prjColumn(col::kDbCheck), text(col::kDbCheck));
  } else {
    put("整数桁数", numberCell(grid.text(col::kWholeDigits, row)));
    put("少数桁数", numberCell(grid.text(col::kFractionDigits, row)));
  }
  put("長さ", numberCell(grid.text(col::kLength, row)));
  put("Null値", key && !saving.prj ? "NOT NULL" : textOr(col::kNull, "NULL"));
  put("項目分類", text(col::kClass));
  put("項目参照先", text(col::kValueList));
  put("備考", text(col::kRemark));
  put("初期値", text(col::kDefault));
  put("範囲分類", textOr(col::kRangeKind, " "));
  put("範囲開始", text(col::kRangeStart));
  put("範囲終了", text(col::kRangeEnd));
  put("DomainID", static_cast<std::int64_t>(gVal(grid.text(col::kDomainId, row))));
  put("外部参照", text(col::kForeign));
  put("外部参照TABLEID", numberCell(grid.text(col::kForeignTableId, row)));
  put("外部参照ROWNO", numberCell(grid.text(col::kForeignRowNo, row)));
  if (saving.prj) put("DB_COLUMN_NAME", textOr(col::kKey, " "));
  if (!saving.prj && saving.screen.detailsHavePmark)
    put("pmark", static_cast<std::int64_t>(gVal(grid.text(col::kPmark, row)) == -1 ? -1 : 0));
  put("作成者", textOr(col::kAuthor, saving.session.gLoginUser));
  put("作成年月日", created ? formatDateTime(*created, kSecondForm) : saving.now);
  put("更新年月日", saving.now);
  put("更新者", saving.session.gLoginUser);
  put("COMPNAME", saving.computer);
  if (kept.former == 0) put("make_server", saving.computer);
  return values;
}

void insertGrid(Saving& saving) {
  double position = 1;
  std::vector<std::vector<Value>> rows;
  rows.reserve(saving.kept.size());
  for (const KeptRow& kept : saving.kept) {
    if (saving.screen.mode == DetailMode::Text) putTextPositions(saving.screen.Spread, kept.gridRow, position);
    if (!saving.prj) followOwnReference(saving, kept.gridRow);
    rows.push_back(rowValues(saving, kept));
  }
  if (!rows.empty()) saving.session.gDB->insertRows(tableOf(saving), saving.former.columns, rows);
}

/// The dictionary's words win over what the grid showed.
void copyDomains(Database& database, const std::string& id) {
  database.execute(
      "UPDATE MAS_TABLEDETAILES AS td "
      " INNER JOIN MAS_DOMAIN AS d "
      " ON td.DomainID = d.ID "
      " SET "
      " td.型 = [d].[型]"
      ", td.整数桁数 = [d].[整数桁数]"
      ", td.少数桁数 = [d].[少数桁数]"
      ", td.項目分類 = [d].[項目分類]"
      " WHERE td.ID= " +
      id +
      " AND ("
      "     td.型       <> [d].[型] "
      " OR  td.整数桁数 <> [d].[整数桁数]"
      " OR  td.少数桁数 <> [d].[少数桁数]"
      " OR  td.項目分類 <> [d].[項目分類]"
      " ) ");
}

void putTableMarks(Database& database, const frmTBDetail& screen) {
  const std::string& id = screen.lblID.caption;
  if (screen.PicReverse.visible) database.execute("UPDATE MAS_TABLEINFO SET  REVERSE_DB = 0  WHERE ID = " + id);
  if (screen.PicPmark.visible && !screen.pmarkAtLoad && screen.tableHasPmark)
    database.execute("Update MAS_TABLEINFO  Set pmark = -1  Where ID = " + id + ";");
}

/// Whether the Repository still holds the rows that were loaded. Where only what they refer to has got another number
/// or name, the grid follows.
bool findsLoadedRows(Saving& saving) {
  frmTBDetail& screen = saving.screen;
  if (!screen.loaded.known || sameRows(screen.loaded, saving.stored)) return true;
  if (!foreignKeysFollowed(screen.loaded, saving.stored)) return false;
  rebase(screen.Spread, screen.loaded, saving.stored, screen.lblID.caption);
  screen.loaded = saving.stored;
  return true;
}

/// Writes the rows. False, with nothing written, when others are stored than were loaded.
bool writeTable(Saving& saving) {
  Database& database = *saving.session.gDB;
  const std::string& id = saving.screen.lblID.caption;
  saving.kept.clear();
  saving.numbers = {};
  readFormerRows(saving);
  if (!findsLoadedRows(saving)) return false;
  numberRows(saving);
  if (saving.namesLost && !saving.prj)
    saving.lost = pointersAtGone(database, id, saving.numbers, [&](long number) { return formerName(saving, number); });
  database.execute("Delete * From " + std::string(tableOf(saving)) + " Where ID = " + id + ";");
  insertGrid(saving);
  if (saving.prj) return true;
  followRowNumbers(database, id, saving.numbers);
  copyDomains(database, id);
  putTableMarks(database, saving.screen);
  return true;
}

LastSaver lastSaver(const Saving& saving) {
  LastSaver last;
  for (const auto& [number, row] : saving.former.byNumber)
    if (std::string moment = formerText(saving, row, "更新年月日"); moment >= last.moment)
      last = {formerText(saving, row, "更新者"), std::move(moment)};
  return last;
}

/// The grid as the Repository now knows it: a second save starts from these numbers.
void takeNewNumbers(Saving& saving) {
  Spread& grid = saving.screen.Spread;
  for (int row = 1; row <= grid.maxRows(); ++row) grid.setRowTag(row, 0);
  for (const KeptRow& kept : saving.kept) grid.setRowTag(kept.gridRow, kept.number);
  if (!saving.prj) {
    saving.screen.PicReverse.visible = false;
    saving.screen.pmarkAtLoad = saving.screen.PicPmark.visible;
  }
  saving.screen.undo.clear();  // its steps know the former numbers
  saving.screen.loaded = {};   // the next load tells
}

enum class SaveResult { kWritten, kNotWritten, kTheirsLoaded };

/// Writes the rows, after the message where they were not written.
SaveResult write(Saving& saving, Host& host) {
  frmTBDetail& screen = saving.screen;
  std::vector<std::string> renewed;
  for (;;) {
    Right right;
    bool written = false;
    inTransaction(*saving.session.gDB, [&] {
      right = mayChangeTable(saving.session, screen.lblID.caption, TableChange::kFields);
      written = right && writeTable(saving);
    });
    if (refused(host, right)) return SaveResult::kNotWritten;
    if (written) break;
    pPutWaitMsg(host, screen, false, "");
    const ConflictWay way = askConflict(host, screen, saving.stored, lastSaver(saving));
    if (way == ConflictWay::kNone) return SaveResult::kNotWritten;
    if (way == ConflictWay::kTheirs) {
      const std::string id = screen.lblID.caption;
      pGet_TableID2TableDetails(saving.session, host, screen, id);
      return SaveResult::kTheirsLoaded;
    }
    for (std::string& name : rebase(screen.Spread, screen.loaded, saving.stored, screen.lblID.caption))
      renewed.push_back(std::move(name));
    screen.loaded = saving.stored;
    saving.namesLost = true;
  }
  tellLost(host, renewed, saving.lost);
  return SaveResult::kWritten;
}

bool save(Session& session, Host& host, frmTBDetail& screen, bool prj, std::string_view routine) {
  pPutWaitMsg(host, screen, true, "保存中です....");
  Saving saving{.session = session, .screen = screen, .prj = prj};
  saving.now = formatDateTime(host.clock.now(), kSecondForm);
  saving.computer = host.machine.computerName;
  const quillmarden::Spread before = screen.Spread;
  const LoadedRows loaded = screen.loaded;
  SaveResult result = SaveResult::kNotWritten;
  try {
    result = write(saving, host);
  } catch (const EngineError& error) {
    pPutWaitMsg(host, screen, false, "");
    tellError(session, host, routine, error);
  }
  if (result != SaveResult::kWritten) {
    pPutWaitMsg(host, screen, false, "");
    if (result == SaveResult::kTheirsLoaded) return true;
    screen.Spread = before;
    screen.loaded = loaded;
    return true;
  }
  takeNewNumbers(saving);
  if (!prj)
    recalculateTable(session, host, screen.lblSystemName.caption, screen.lblID.caption,
                     trim(screen.lblFileType.caption));
  pPutWaitMsg(host, screen, false, "");
  screen.changed = false;
  screen.picRen.visible = false;
  return false;
}

}  // namespace

bool pPutTableDetails(Session& session, Host& host, frmTBDetail& screen) {
  return save(session, host, screen, false, "pPutTableDetails");
}

bool pPutPrjDetails(Session& session, Host& host, frmTBDetail& screen) {
  return save(session, host, screen, true, "pPutPrjDetails");
}

}  // namespace quillmarden
