#include <algorithm>
#include <array>
#include <unordered_map>
#include <unordered_set>

#include "common/numbers.h"
#include "common/text.h"
#include "common/typed_cell.h"
#include "editing/detail_parts.h"
#include "relations/index.h"
#include "repository/rights.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace {

namespace col = field_col;

/// The columns of a field row that the grid shows; an enumerator is the place of its name below.
enum FieldColumn {
  kRowNo,
  kOrder,
  kNameInJapanese,
  kFieldName,
  kKey,
  kType,
  kWholeDigits,
  kFractionDigits,
  kLength,
  kNull,
  kPersonalMark,
  kClass,
  kValueList,
  kRemark,
  kDefault,
  kDomainId,
  kRangeKind,
  kRangeStart,
  kRangeEnd,
  kForeign,
  kForeignTableId,
  kForeignRowNo,
  kAuthor,
  kCreated,
  kDbColumnName,
  kPrjStart,
  kPrjEnd,
  kPrjSpecification,
  kDomainName,  ///< of the joined domain
};

constexpr std::array<std::string_view, kDomainName> kFieldColumns = {
    "ROWNO",         "表示順",   "日本語名",   "項目名",         "KEY",      "型",         "整数桁数",
    "少数桁数",      "長さ",     "Null値",     "pmark",          "項目分類", "項目参照先", "備考",
    "初期値",        "DomainID", "範囲分類",   "範囲開始",       "範囲終了", "外部参照",   "外部参照TABLEID",
    "外部参照ROWNO", "作成者",   "作成年月日", "DB_COLUMN_NAME", "開始日",   "完了日",     "参照仕様書ファイル"};

/// Columns whose cell takes what is stored, as it stands.
struct PlainColumn {
  FieldColumn from;
  int to;
};
constexpr PlainColumn kPlainColumns[] = {
    {kNameInJapanese, col::kJapaneseName},
    {kFieldName, col::kFieldName},
    {kNull, col::kNull},
    {kClass, col::kClass},
    {kValueList, col::kValueList},
    {kRemark, col::kRemark},
    {kDefault, col::kDefault},
    {kDomainName, col::kDomainName},
    {kDomainId, col::kDomainId},
    {kRangeKind, col::kRangeKind},
    {kForeign, col::kForeign},
    {kForeignTableId, col::kForeignTableId},
    {kForeignRowNo, col::kForeignRowNo},
    {kAuthor, col::kAuthor},
};

constexpr int kLargestGridRow = 32767;

/// What the rows of one load have in common.
struct Fill {
  frmTBDetail& screen;
  bool locked = false;
  bool paint = true;
  DateTime checkPoint{};
  Colour addedColour = kWhite;
  std::unordered_set<std::string> partitions{};          ///< lower-case field names
  std::unordered_map<std::string, std::string> types{};  ///< lower-case type to the drop-down's spelling
  double textPosition = 1;
  int added = 0;
};

std::unordered_set<std::string> partitionNames(std::string_view list) {
  std::unordered_set<std::string> names;
  while (!list.empty()) {
    const std::size_t comma = list.find(',');
    std::string name = toLower(trim(list.substr(0, comma)));
    if (!name.empty()) names.insert(std::move(name));
    list = comma == std::string_view::npos ? std::string_view() : list.substr(comma + 1);
  }
  return names;
}

DetailMode modeOf(std::string_view kind) {
  if (kind == "PG管理") return DetailMode::Prj;
  if (kind == "メンバー") return DetailMode::Member;
  if (kind == "固定値") return DetailMode::FixedValue;
  return toLower(trim(kind)) == "text" ? DetailMode::Text : DetailMode::Table;
}

void clearForLoad(Session& session, frmTBDetail& screen, std::string_view tableId) {
  screen.loading = true;
  screen.lblSystemName.caption = session.gCurrentSystemName;
  screen.lblSystemName.backColour.reset();
  screen.lblSystemName.foreColour.reset();
  screen.lblID.caption = trim(tableId);
  screen.whyReadOnly.clear();
  screen.loaded = {};
  screen.picRen.visible = false;
  screen.PicPmark.visible = false;
  screen.lblAllSystem.visible = false;
  screen.lblIndex.visible = false;
  screen.lstAtai.clear();
  screen.lstIndex.clear();
  screen.Txtbiko.text.clear();
  screen.TxtMemo.text.clear();
}

/// Shows what the rights on the table allow. A run over many tables looks at them only.
bool showRights(const Session& session, frmTBDetail& screen) {
  const bool common = screen.mode == DetailMode::Member || screen.mode == DetailMode::FixedValue;
  const bool others = !common && session.gCurrentSystemName != kAllSystems &&
                      !equalsNoCase(trim(screen.lblSystemName.caption), trim(session.gCurrentSystemName));
  if (others) {
    screen.lblSystemName.backColour = 0x80FFFF;
    screen.lblSystemName.foreColour = 0x400000;
  }
  screen.CmdER.enabled = !others;
  const bool locked = screen.readOnly || screen.batch;
  screen.mnuEditing.enabled = !locked;
  screen.CmdUpDate.enabled = !locked;
  screen.Txtbiko.locked = locked;
  return locked;
}

std::string flagCell(bool set, bool locked) {
  if (locked) return set ? std::string(kCheckMark) : "";
  return set ? "-1" : "0";
}

void fillCheck(Fill& fill, const Recordset& row, FieldColumn from, int to, int gridRow) {
  if (!row.isNull(from)) fill.screen.Spread.setText(to, gridRow, flagCell(row.integer(from) != 0, fill.locked));
}

void fillType(Fill& fill, const Recordset& row, int gridRow) {
  if (row.isNull(kType)) return;
  Spread& grid = fill.screen.Spread;
  // The development language of a program is free text; only types have a fixed vocabulary.
  if (fill.locked || fill.screen.mode == DetailMode::Prj) {
    grid.setText(col::kType, gridRow, row.text(kType));
    return;
  }
  // A type that the catalogue lacks stays what it is until a person chooses another one.
  const auto known = fill.types.find(toLower(trim(row.text(kType))));
  grid.setText(col::kType, gridRow, known != fill.types.end() ? std::string_view(known->second) : row.text(kType));
  if (fill.paint && known == fill.types.end() && !trim(row.text(kType)).empty())
    grid.setBackColour(col::kType, gridRow, kRed);
}

void fillLength(Fill& fill, const Recordset& row, int gridRow) {
  Spread& grid = fill.screen.Spread;
  if (fill.screen.mode != DetailMode::Text) {
    if (!row.isNull(kLength)) grid.setText(col::kLength, gridRow, row.text(kLength));
    return;
  }
  grid.setText(col::kLength, gridRow, plainNumber(fill.textPosition));
  fill.textPosition += gStr2Double(row.text(kWholeDigits));
}

/// A stored date as the cell has it: without a time where it has none.
void fillDate(Fill& fill, const Recordset& row, FieldColumn from, int to, int gridRow) {
  if (row.isNull(from)) return;
  Spread& grid = fill.screen.Spread;
  const TypedCell date = typedCell(grid.column(to), CellKind::Edit, row.text(from));
  grid.setText(to, gridRow, date.fault.empty() ? std::string_view(date.text) : row.text(from));
}

/// The columns that a program's row has in the place of digits, key and database.
void fillProgram(Fill& fill, const Recordset& row, int gridRow) {
  Spread& grid = fill.screen.Spread;
  if (!row.isNull(kDbColumnName)) grid.setText(col::kKey, gridRow, row.text(kDbColumnName));
  if (!row.isNull(kPrjSpecification)) grid.setText(col::kDbCheck, gridRow, row.text(kPrjSpecification));
  fillDate(fill, row, kPrjStart, col::kWholeDigits, gridRow);
  fillDate(fill, row, kPrjEnd, col::kFractionDigits, gridRow);
}

void fillRange(Fill& fill, const Recordset& row, int gridRow) {
  if (row.text(kRangeKind).empty()) return;
  if (!row.isNull(kRangeStart)) fill.screen.Spread.setText(col::kRangeStart, gridRow, row.text(kRangeStart));
  if (!row.isNull(kRangeEnd)) fill.screen.Spread.setText(col::kRangeEnd, gridRow, row.text(kRangeEnd));
}

void fillCreated(Fill& fill, const Recordset& row, int gridRow) {
  Spread& grid = fill.screen.Spread;
  auto created = parseDateTime(row.text(kCreated));
  if (created) created->second = 0;
  if (!row.isNull(kCreated)) {
    grid.setText(col::kCreated, gridRow,
                 created ? formatDateTime(*created, kMinuteForm) : std::string(row.text(kCreated)));
  }
  if (!fill.paint) return;
  const bool added = created && *created > fill.checkPoint;
  if (added) ++fill.added;
  grid.setBackColour(col::kJapaneseName, gridRow, added ? fill.addedColour : kWhite);
}

void fillRow(Fill& fill, const Recordset& row, int gridRow) {
  Spread& grid = fill.screen.Spread;
  const DetailMode mode = fill.screen.mode;
  grid.setRowTag(gridRow, static_cast<long>(row.integer(kRowNo)));
  for (const PlainColumn& plain : kPlainColumns)
    if (!row.isNull(plain.from)) grid.setText(plain.to, gridRow, row.text(plain.from));
  if (mode == DetailMode::Member && row.text(kNameInJapanese).empty() && !row.text(kFieldName).empty())
    grid.setText(col::kJapaneseName, gridRow, row.text(kFieldName));
  if (mode == DetailMode::Prj) {
    fillProgram(fill, row, gridRow);
  } else {
    if (!row.isNull(kWholeDigits)) grid.setText(col::kWholeDigits, gridRow, row.text(kWholeDigits));
    if (!row.isNull(kFractionDigits)) grid.setText(col::kFractionDigits, gridRow, row.text(kFractionDigits));
    fillCheck(fill, row, kKey, col::kKey, gridRow);
  }
  fillType(fill, row, gridRow);
  fillLength(fill, row, gridRow);
  fillCheck(fill, row, kPersonalMark, col::kPmark, gridRow);
  fillRange(fill, row, gridRow);
  fillCreated(fill, row, gridRow);
  grid.setText(col::kOrder, gridRow, threeDigits(gridRow));
  if (!fill.paint) return;
  if (!fill.partitions.empty() && fill.partitions.contains(toLower(trim(row.text(kFieldName)))))
    grid.setBackColour(col::kFieldName, gridRow, kButtonFace);
  if (mode == DetailMode::Prj) {
    grid.setBackColour(col::kClass, gridRow, progressColour(row.text(kClass)));
  } else if (grid.holds(col::kDomainName, gridRow)) {
    lockDomainCells(grid, gridRow);
  }
}

Recordset openFields(Session& session, frmTBDetail& screen) {
  const bool prj = screen.mode == DetailMode::Prj;
  const std::string_view table = prj ? "MAS_PRJINFO" : "MAS_TABLEDETAILES";
  std::string& statement = prj ? screen.statements.prjFields : screen.statements.fields;
  bool& havePmark = prj ? screen.statements.prjFieldsHavePmark : screen.statements.fieldsHavePmark;
  if (statement.empty()) {
    statement = selectColumns(*session.gDB, table, "det", kFieldColumns);
    havePmark = hasColumn(*session.gDB, table, "pmark");
  }
  screen.detailsHavePmark = havePmark;
  std::string sql = statement;
  sql.append(" , dom.日本語名 as dom日本語名  FROM ")
      .append(table)
      .append(" AS det    LEFT JOIN MAS_DOMAIN AS dom ON det.DomainID = dom.ID Where (((det.ID) = ")
      .append(screen.lblID.caption)
      .append("))    ORDER BY det.表示順, det.ROWNO;");
  return session.gDB->openRecordset(sql);
}

/// The attributes that every list of persons begins with.
void putStandardMembers(const Session& session, Spread& grid) {
  constexpr std::string_view kAttributes[] = {"会社", "会社略名", "所属1",  "所属2",  "役職", "電話",
                                              "Mail", "役割",     "参加日", "終了日", "メモ"};
  int row = 0;
  for (std::string_view attribute : kAttributes) grid.setText(col::kType, ++row, attribute);
  for (int systemRow = 8; systemRow <= 10; ++systemRow)
    grid.setText(col::kRemark, systemRow, session.gCurrentSystemName);
}

/// A row goes where its display order says, so that a gap stays visible. One without a usable place, or whose place
/// is taken, follows the row before it: nothing that is stored may fail to show.
int targetRow(std::int64_t order, int lastRow) {
  return order > lastRow && order <= kLargestGridRow ? static_cast<int>(order) : lastRow + 1;
}

void loadFields(Session& session, Host& host, frmTBDetail& screen, bool locked) {
  Recordset rows = openFields(session, screen);
  // What is looked at alone is never saved.
  if (!screen.batch) screen.loaded = loadedRows(rows);
  if (rows.recordCount() > 0) rows.moveFirst();
  if (rows.eof()) {
    if (screen.mode == DetailMode::Member) putStandardMembers(session, screen.Spread);
    return;
  }
  Fill fill{.screen = screen, .locked = locked, .paint = !screen.batch};
  if (fill.paint) {
    fill.checkPoint = parseDateTime(screen.lblCheckPoint.caption).value_or(host.clock.now());
    fill.addedColour = session.settings.backColorAdd;
    fill.partitions = partitionNames(screen.txtPartitionRead.text);
  }
  if (!locked)
    for (const std::string& type : screen.Spread.column(col::kType).entries)
      fill.types.emplace(toLower(trim(type)), type);

  screen.Spread.setMaxRows(rows.recordCount());
  int lastRow = 0;
  for (; !rows.eof(); rows.moveNext()) {
    lastRow = targetRow(rows.integer(kOrder), lastRow);
    fillRow(fill, rows, lastRow);
  }
  screen.lblAddNum.caption = std::to_string(fill.added);
  screen.lblAddNum.foreColour = fill.added > 0 ? kRed : kBlack;
}

/// What a person who looks at the grid sees around it.
void showHelpers(Session& session, Host& host, frmTBDetail& screen) {
  showActiveRow(session, host, screen);
  for (std::string& name : indexNames(*session.gDB, screen.lblID.caption)) screen.lstIndex.add(std::move(name));
  screen.lblIndex.visible = screen.lstIndex.count() > 0;
}

/// True on failure; the grid is then empty and cannot be saved.
bool load(Session& session, Host& host, frmTBDetail& screen, std::string_view tableId) {
  clearForLoad(session, screen, tableId);
  screen.activeRow = screen.activeCol = 1;
  screen.Spread.setMaxRows(0);
  screen.CmdUpDate.enabled = false;
  if (pGet_TableID2TableInfo(session, host, screen, screen.lblID.caption)) return true;

  putCaption(screen);
  screen.mode = modeOf(screen.lblFileType.caption);
  const bool locked = showRights(session, screen);
  prepareSpread(session, screen, locked);
  const bool access = screen.mode == DetailMode::Table && screen.lblFileType.caption == "Access";
  screen.cmdOpenMDBFile.visible = screen.cmdOpenMDBFolder.visible = access;
  screen.lblAddNum.caption = "0";
  screen.lblAddNum.foreColour = kBlack;
  loadFields(session, host, screen, locked);
  return false;
}

}  // namespace

std::span<const std::string_view> fieldColumns() { return kFieldColumns; }

void putCaption(frmTBDetail& screen) {
  const std::string& japanese = screen.txtTableNameJPN.text;
  const std::string& physical = screen.txtTableNameENG.text;
  screen.caption = japanese.empty() ? physical : japanese + " : " + physical;
  const std::string& file = screen.txtRefFileNameRead.text;
  if (!file.empty()) screen.caption += " [ " + file + " ] ";
}

void showFormerRows(frmTBDetail& screen, const LoadedRows& rows) {
  const auto place = [](std::string_view column) {
    const auto& columns = loadedColumns();
    return static_cast<std::size_t>(std::find(columns.begin(), columns.end(), column) - columns.begin());
  };
  const std::size_t order = place("表示順");
  std::vector<std::pair<long, const std::vector<Value>*>> sorted;
  for (const auto& [number, row] : rows.rows) sorted.emplace_back(number, &row);
  std::stable_sort(sorted.begin(), sorted.end(), [&](const auto& left, const auto& right) {
    return toInteger((*left.second)[order]) < toInteger((*right.second)[order]);
  });
  Spread& grid = screen.Spread;
  grid.setMaxRows(0);
  int row = 0;
  for (const auto& [number, values] : sorted) {
    row = targetRow(toInteger((*values)[order]), row);
    grid.setRowTag(row, number);
    for (const PlainColumn& column : kPlainColumns)
      if (column.from != kDomainName)
        grid.setText(column.to, row, toText((*values)[place(kFieldColumns[column.from])]));
    grid.setText(col::kType, row, toText((*values)[place(kFieldColumns[kType])]));
    grid.setText(col::kOrder, row, threeDigits(row));
  }
}

void refreshRights(Session& session, Host& host, frmTBDetail& screen) {
  const std::string id = screen.lblID.caption;
  if (id.empty() || screen.batch || mayChangeTable(session, id, TableChange::kFields).reason == screen.whyReadOnly)
    return;
  if (!screen.changed) {
    pGet_TableID2TableDetails(session, host, screen, id);
    return;
  }
  try {
    pGet_TableID2TableInfo(session, host, screen, id);
    putCaption(screen);
    screen.Spread.lockAll(showRights(session, screen));
    screen.columnsFor.clear();
  } catch (const EngineError& error) {
    tellError(session, host, "refreshRights", error);
  }
}

bool pGet_TableID2TableDetails(Session& session, Host& host, frmTBDetail& screen, std::string_view tableId) {
  if (!screen.batch) pPutWaitMsg(host, screen, true, "検索中です....");
  bool failed = true;
  try {
    failed = load(session, host, screen, tableId);
    if (!failed && !screen.batch) showHelpers(session, host, screen);
  } catch (const EngineError& error) {
    failed = true;
    screen.Spread.setMaxRows(0);
    screen.CmdUpDate.enabled = false;
    tellError(session, host, "pGet_TableID2TableDetails", error);
  }
  screen.changed = false;
  screen.undo.clear();
  screen.loading = false;
  if (!screen.batch) pPutWaitMsg(host, screen, false, "");
  return failed;
}

}  // namespace quillmarden
