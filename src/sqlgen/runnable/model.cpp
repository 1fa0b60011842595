#include "sqlgen/runnable/model.h"

#include <algorithm>
#include <cstdint>

#include "common/numbers.h"
#include "common/text.h"
#include "engine/sql_text.h"
#include "sqlgen/clauses.h"
#include "sqlgen/fields.h"
#include "sqlgen/fk_clause.h"
#include "sqlgen/oracle_clauses.h"
#include "sqlgen/runnable/mysql_limits.h"
#include "sqlgen/runnable/oracle_storage.h"
#include "sqlgen/runnable/script.h"

namespace quillmarden {

namespace {

/// A list of the System itself comes before a shared one of another.
const ScriptValues& valueList(const Generation& generation, std::string_view name, ScriptLookUps& cache) {
  const auto known = cache.lists.find(name);
  if (known != cache.lists.end()) return known->second;
  const std::string system = sqlText(generation.system.name);
  Recordset rows = generation.session.gDB->openRecordset(
      "SELECT d.システム名, d.型, a.値 FROM MAS_DIVISION AS d INNER JOIN MAS_DIVISIONDETAILES AS a "
      "ON d.システム名 = a.システム名 AND d.値名称 = a.値名称 WHERE d.値名称 = " +
      sqlText(name) + " AND d.削除フラグ = 0 AND (d.システム名 = " + system +
      " OR d.全システム共通 <> 0) ORDER BY IIf(d.システム名 = " + system + ", 0, 1), d.システム名, a.行番号");
  ScriptValues entry;
  const std::string owner(rows.eof() ? std::string_view() : rows.text(0));
  for (; !rows.eof() && rows.text(0) == owner; rows.moveNext()) {
    entry.text = rows.text(1) == "文字";
    const std::string_view value = trim(rows.text(2));
    if (!value.empty()) entry.values.emplace_back(value);
  }
  return cache.lists.emplace(name, std::move(entry)).first->second;
}

ScriptColumn columnOf(const Generation& generation, ScriptKind kind, const Field& field, ScriptLookUps& lookUps) {
  ScriptColumn column;
  column.name = field.name;
  column.key = field.key;
  column.notNull = field.key || equalsNoCase(trim(field.null), "NOT NULL");
  column.computed = field.computed();
  column.defaultText = trim(field.defaultText);
  column.remark = field.remark;
  if (!field.valueList.empty()) column.list = &valueList(generation, field.valueList, lookUps);
  if (field.hasRange()) {
    column.rangeKind = field.rangeKind;
    column.rangeStart = field.rangeStart;
    column.rangeEnd = field.rangeEnd;
  }
  column.type =
      &typeOf(kind, {field.type, numberIn(field.wholeDigits), numberIn(field.fractionDigits), column.list}, lookUps);
  return column;
}

bool isComputed(std::string_view type) {
  Field field;
  field.type = trim(type);
  return field.computed();
}

/// Leaves out what comes again under the same name, and what a table has no room for.
void dropDoubleColumns(ScriptTable& table, std::size_t most) {
  std::vector<std::string_view> names;
  for (const ScriptColumn& column : table.columns) names.push_back(column.name);
  std::sort(names.begin(), names.end());
  if (names.size() <= most && std::adjacent_find(names.begin(), names.end()) == names.end()) return;
  std::vector<ScriptColumn> kept;
  for (const ScriptColumn& column : table.columns) {
    const bool again =
        std::any_of(kept.begin(), kept.end(), [&](const auto& other) { return other.name == column.name; });
    if (!again && kept.size() < most) {
      kept.push_back(column);
      continue;
    }
    table.remarks.emplace_back(again ? "同じ名称の項目があるため作成しません" : "項目が多すぎるため作成できません",
                               table.name + "." + std::string(column.name));
  }
  table.columns = std::move(kept);
}

constexpr std::string_view ScriptColumn::*kColumnTexts[] = {&ScriptColumn::name,       &ScriptColumn::defaultText,
                                                            &ScriptColumn::remark,     &ScriptColumn::rangeKind,
                                                            &ScriptColumn::rangeStart, &ScriptColumn::rangeEnd};

/// Moves the texts from the grid, which shows another table soon, to the table: in one piece, since a run over
/// thousands of tables holds them all.
void keepTexts(ScriptTable& table) {
  std::size_t size = 0;
  for (const ScriptColumn& column : table.columns)
    for (const auto text : kColumnTexts) size += (column.*text).size();
  table.columnTexts = std::make_unique<char[]>(size);
  char* end = table.columnTexts.get();
  for (ScriptColumn& column : table.columns)
    for (const auto text : kColumnTexts) {
      const std::string_view kept(end, (column.*text).copy(end, std::string_view::npos));
      end += kept.size();
      column.*text = kept;
    }
}

/// The columns of the question for keys. "+ 0" keeps the storage from beginning with all fields of the System: few of
/// them refer to others, and those have an index.
enum ForeignColumn { kOwnId, kOwn, kReferred, kReferredId, kTable, kShortName, kSystem, kUser, kSource, kSpace };
constexpr std::string_view kForeignRows =
    "SELECT m.ID, m.項目名, s.項目名, s.ID, i.テーブル名, i.略名, i.システム名, sys.username, sys.odbcsouce, "
    "sys.tablespace FROM (((MAS_TABLEDETAILES AS m "
    "INNER JOIN MAS_TABLEDETAILES AS s ON (m.外部参照TABLEID + 0 = s.ID) AND (m.外部参照ROWNO = s.ROWNO)) "
    "INNER JOIN MAS_TABLEINFO AS i ON s.ID = i.ID) INNER JOIN MAS_TABLEINFO AS t ON m.ID + 0 = t.ID) "
    "LEFT JOIN MAS_SYSTEM AS sys ON i.システム名 = sys.システム名 WHERE ";

std::string ownerOf(ScriptKind kind, const Recordset& row) {
  if (kind == ScriptKind::PostgreSql) return row.text(kSource).empty() ? "public" : std::string(row.text(kSource));
  return std::string(row.text(kind == ScriptKind::SqlServer ? kSpace : kUser));
}

/// Adds a pair of fields to those of a table that refer to the same one.
void addPair(const Generation& generation, ScriptKind kind, const Recordset& row,
             std::vector<ScriptForeign>& foreigns) {
  const std::string_view own = trim(row.text(kOwn));
  const std::string_view referred = trim(row.text(kReferred));
  if (own.empty() || referred.empty()) return;
  const std::string_view id = row.text(kReferredId);
  auto open = std::find_if(foreigns.begin(), foreigns.end(),
                           [&](const ScriptForeign& foreign) { return foreign.referredId == id; });
  if (open == foreigns.end()) {
    ScriptForeign foreign;
    foreign.referredId = id;
    foreign.referredTable = trim(row.text(kTable));
    foreign.referredShortName = trim(row.text(kShortName));
    if (foreign.referredShortName.empty()) foreign.referredShortName = foreign.referredTable;
    if (!equalsNoCase(row.text(kSystem), generation.system.name)) foreign.referredOwner = ownerOf(kind, row);
    open = foreigns.insert(foreigns.end(), std::move(foreign));
  }
  open->pairs.push_back({std::string(own), std::string(referred)});
}

/// Reads the keys of the table on show or, for a run over many tables, those of the whole System.
void readForeigns(const Generation& generation, ScriptKind kind, bool wholeSystem, ScriptLookUps& lookUps) {
  std::string sql(kForeignRows);
  if (wholeSystem) {
    sql += "t.システム名 = " + sqlText(generation.system.name) + " AND m.外部参照TABLEID > 0";
  } else {
    sql += "m.ID = " + generation.table.lblID.caption;
  }
  Recordset rows = generation.session.gDB->openRecordset(sql + " ORDER BY m.ID + 0, s.ID, s.ROWNO, m.表示順");
  for (; !rows.eof(); rows.moveNext())
    addPair(generation, kind, rows, lookUps.foreigns[std::string(rows.text(kOwnId))]);
}

/// Whether what the table needs is read with that of the whole System; a shared table belongs to another one.
bool readTogether(const Generation& generation, const ScriptLookUps& lookUps) {
  return lookUps.manyTables && equalsNoCase(generation.table.lblSystemName.caption, generation.system.name);
}

std::vector<ScriptForeign> foreignsOf(const Generation& generation, ScriptKind kind, ScriptLookUps& lookUps) {
  const bool together = readTogether(generation, lookUps);
  if (!together || !lookUps.foreignsRead) readForeigns(generation, kind, together, lookUps);
  if (together) lookUps.foreignsRead = true;
  const auto found = lookUps.foreigns.find(generation.table.lblID.caption);
  return found == lookUps.foreigns.end() ? std::vector<ScriptForeign>() : std::move(found->second);
}

std::vector<TableIndex> indexesOf(const Generation& generation, ScriptLookUps& lookUps) {
  const std::string& id = generation.table.lblID.caption;
  if (!readTogether(generation, lookUps)) return gGetIndexList(*generation.session.gDB, id);
  if (!lookUps.indexesRead) lookUps.indexes = indexesOfSystem(*generation.session.gDB, generation.system.name);
  lookUps.indexesRead = true;
  const auto found = lookUps.indexes.find(id);
  return found == lookUps.indexes.end() ? std::vector<TableIndex>() : std::move(found->second);
}

}  // namespace

const ScriptColumn* ScriptTable::column(std::string_view wanted) const {
  const auto found =
      std::find_if(columns.begin(), columns.end(), [&](const ScriptColumn& column) { return column.name == wanted; });
  return found == columns.end() ? nullptr : &*found;
}

std::vector<std::string> ScriptTable::keyFields() const {
  std::vector<std::string> names;
  for (const ScriptColumn& column : columns)
    if (column.key && !column.computed) names.emplace_back(column.name);
  return names;
}

ScriptTable readScriptTable(const Generation& generation, ScriptKind kind, ScriptLookUps& lookUps) {
  const frmTBDetail& shown = generation.table;
  ScriptTable table;
  table.id = shown.lblID.caption;
  table.name = trim(shown.txtTableNameENG.text);
  table.shortName = trim(shown.lblRyaku.caption);
  if (table.shortName.empty()) table.shortName = table.id;
  table.memo = trim(shown.TxtMemo.text);
  const std::vector<Field> fields = readFields(shown);
  table.columns.reserve(fields.size());
  for (const Field& field : fields) table.columns.push_back(columnOf(generation, kind, field, lookUps));
  keepTexts(table);
  dropDoubleColumns(table, dialectOf(kind).mostColumns);
  if (kind == ScriptKind::MySql) fitMySqlColumns(table, lookUps);
  table.indexes = indexesOf(generation, lookUps);
  if (hasForeignKeys(fields)) table.foreigns = foreignsOf(generation, kind, lookUps);
  table.partition = trim(shown.txtPartitionRead.text);
  table.brin = shown.lblBRIN.visible;
  table.temporary = shown.lblBunrui.caption == "GlobalTemporary";
  // The figure of the first extent is free there, and tells whether the table is a set.
  table.isSet = kind == ScriptKind::Teradata && numberIn(shown.lblNum[0].caption) == 1;
  if (kind == ScriptKind::Oracle && !table.temporary && storageDue(generation))
    table.storage = oracleStorage(generation);
  return table;
}

ScriptView readScriptView(const Generation& generation) {
  constexpr std::string_view kMark = "V_";
  const std::string_view name = trim(generation.table.txtTableNameENG.text);
  const std::string upper = toUpper(name);
  ScriptView view;
  view.name = upper.starts_with(kMark) ? name : std::string(kMark).append(name);
  view.table = upper.starts_with(kMark) ? name.substr(kMark.size()) : name;
  const bool ownGrid = upper.find(kMark) != std::string::npos;
  const Spread& grid = generation.table.Spread;
  for (int row = 1; row <= grid.maxRows(); ++row) {
    const std::string_view japaneseName = trim(grid.text(field_col::kJapaneseName, row));
    const std::string_view fieldName = trim(grid.text(field_col::kFieldName, row));
    const std::string_view source = ownGrid ? japaneseName : fieldName;
    if (source.empty()) break;
    view.items.emplace_back(source, ownGrid ? fieldName : japaneseName);
  }
  return view;
}

const ScriptType& typeOf(ScriptKind kind, const TypeCell& cell, ScriptLookUps& lookUps) {
  std::string key(cell.text);
  if (cell.wholeDigits != 0 || cell.fractionDigits != 0)
    key.append("\n").append(plainNumber(cell.wholeDigits)).append("\n").append(plainNumber(cell.fractionDigits));
  if (cell.list) key.append("\n").append(std::to_string(reinterpret_cast<std::uintptr_t>(cell.list)));
  const auto known = lookUps.types.find(key);
  if (known != lookUps.types.end()) return known->second;
  return lookUps.types.emplace(std::move(key), scriptType(kind, cell)).first->second;
}

std::optional<ScriptTable> readReferredTable(Database& database, ScriptKind kind, std::string_view tableId,
                                             ScriptLookUps& lookUps) {
  const std::string id(tableId);
  const Recordset head =
      database.openRecordset("SELECT テーブル名, ファイル種別, 分類, 削除フラグ FROM MAS_TABLEINFO WHERE ID = " + id);
  if (head.eof() || head.integer(3) != 0 || scriptKindOf(head.text(1)) != kind || head.text(2) == "VIEW")
    return std::nullopt;
  ScriptTable table;
  table.id = id;
  table.name = trim(head.text(0));
  Recordset rows = database.openRecordset(
      "SELECT 項目名, 型, 整数桁数, 少数桁数, KEY FROM MAS_TABLEDETAILES WHERE ID = " + id + " ORDER BY 表示順, ROWNO");
  for (; !rows.eof() && !trim(rows.text(0)).empty(); rows.moveNext()) {
    ScriptColumn column;
    column.name = trim(rows.text(0));
    column.computed = isComputed(rows.text(1));
    column.type = &typeOf(kind, {trim(rows.text(1)), rows.number(2), rows.number(3), nullptr}, lookUps);
    column.key = rows.integer(4) != 0;
    table.columns.push_back(column);
  }
  keepTexts(table);
  if (table.columns.empty()) return std::nullopt;
  table.indexes = gGetIndexList(database, id);
  return table;
}

}  // namespace quillmarden
