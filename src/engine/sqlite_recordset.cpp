#include <algorithm>
#include <unordered_map>
#include <utility>

#include "engine/recordset.h"
#include "engine/recordset_rows.h"
#include "engine/sqlite_state.h"
#include "engine/sqlite_writer_state.h"

namespace quillmarden {

struct Recordset::State {
  enum class Mode { Reading, Adding, Editing };
  struct Change {
    int column;
    Value value;
  };

  State(std::shared_ptr<Database::State> owner, std::shared_ptr<const SetColumns> shown)
      : database(std::move(owner)), columns(std::move(shown)), rows(columns->width) {}

  std::shared_ptr<Database::State> database;
  std::shared_ptr<const SetColumns> columns;
  mutable Rows rows;
  std::size_t current = 0;
  std::vector<bool> removed;  ///< one a row once a row has been removed
  std::size_t removedCount = 0;
  Mode mode = Mode::Reading;
  std::vector<Change> changes;
  std::int64_t lastId = 0;
  bool isTable = false;
  std::string seekSql;
  std::size_t seekColumns = 0;

  bool isRemoved(std::size_t row) const { return row < removed.size() && removed[row]; }
  bool hasCurrent() const { return current < rows.count() && !isRemoved(current); }
  void requireCurrent() const {
    if (!hasCurrent()) {
      throw EngineError(engine_error::kNoCurrentRecord, "現在の行がありません. 行の終わりか、削除された行です.");
    }
  }
  void checkColumn(int index) const {
    if (index < 0 || static_cast<std::size_t>(index) >= columns->columns.size()) {
      throw EngineError(engine_error::kNoSuchTableDef,
                        "レコードセットに番号 " + std::to_string(index) + " の項目がありません.");
    }
  }
  Cell& cell(int index) const {
    checkColumn(index);
    requireCurrent();
    return rows.cell(current, index);
  }
  int requireColumn(std::string_view name) const {
    const auto place = columns->places.find(name);
    if (place == columns->places.end()) {
      throw EngineError(engine_error::kNoSuchTableDef,
                        "レコードセットに項目「" + std::string(name) + "」がありません.");
    }
    return place->second;
  }
  const ShownTable& shownTable(int column) const;
  std::int64_t requireRowId(const ShownTable& table) const;
  void forgetChanges() {
    mode = Mode::Reading;
    changes.clear();
  }
  void insert();
  void change();
  void changeTable(int table);
  int tableOfRemoval() const;
};

namespace {

[[noreturn]] void throwNotEditable(const std::string& what) {
  throw EngineError(engine_error::kReadOnly, what + "は更新できません.");
}

void readRow(PreparedStatement& statement, Rows& rows, int width) {
  sqlite3_stmt* const handle = statement.handle();
  Cell* cell = rows.add();
  for (int i = 0; i < width; ++i, ++cell) {
    switch (sqlite3_column_type(handle, i)) {
      case SQLITE_NULL:
        break;
      case SQLITE_INTEGER:
        cell->whole = sqlite3_column_int64(handle, i);
        cell->kind = Cell::Kind::Whole;
        break;
      case SQLITE_FLOAT:
        cell->real = sqlite3_column_double(handle, i);
        cell->kind = Cell::Kind::Real;
        break;
      default:
        rows.setText(*cell, statement.text(i));
    }
  }
}

// A removal or change that meets no row: another user was there first.
[[noreturn]] void throwRowIsGone(const std::string& table) {
  throw EngineError(engine_error::kNoCurrentRecord,
                    "テーブル「" + table + "」の行は他のユーザーによって削除されています.");
}

}  // namespace

std::shared_ptr<const SetColumns> setColumns(const SqliteStatement& select) {
  auto result = std::make_shared<SetColumns>();
  result->columns = select.columns;
  result->tables = select.shownTables;
  result->width = select.columnCount + static_cast<int>(select.shownTables.size());
  for (std::size_t i = 0; i < result->columns.size(); ++i) {
    result->places.emplace(result->columns[i].name, static_cast<int>(i));
  }
  // Both spellings are taken of a column that has only one of them for its name.
  for (std::size_t i = 0; i < result->columns.size(); ++i) {
    const ResultColumn& column = result->columns[i];
    if (column.shownTable >= 0) {
      const ShownTable& table = result->tables[static_cast<std::size_t>(column.shownTable)];
      result->places.emplace(table.alias + "." + column.field, static_cast<int>(i));
    }
    if (const std::size_t dot = column.name.find('.'); dot != std::string::npos) {
      result->places.emplace(column.name.substr(dot + 1), static_cast<int>(i));
    }
  }
  return result;
}

SqliteStatement wholeTable(const TableDef& table) {
  SqliteStatement result;
  result.isSelect = true;
  result.columnCount = static_cast<int>(table.fields.size());
  result.shownTables = {{table.name, table.name, result.columnCount}};
  result.sql = "SELECT ";
  for (const FieldDef& field : table.fields) {
    result.columns.push_back({field.name, 0, field.name});
    result.sql.append(quotedName(field.name)).append(", ");
  }
  result.sql.append(rowIdName(table)).append(" FROM ").append(quotedName(table.name));
  return result;
}

std::optional<Recordset> openSet(std::shared_ptr<Database::State> database, DataStatement& statement) {
  auto set = std::make_unique<Recordset::State>(std::move(database), statement.columns);
  PreparedStatement& prepared = statement.prepared;
  const ResetAtEnd guard(prepared);
  bool more = prepared.step();
  if (prepared.schemaMoved()) return std::nullopt;
  for (; more; more = prepared.step()) readRow(prepared, set->rows, set->columns->width);
  return Recordset(std::move(set));
}

Recordset openTableSet(std::shared_ptr<Database::State> database, const TableDef& table) {
  const SqliteStatement whole = wholeTable(table);
  auto set = std::make_unique<Recordset::State>(std::move(database), setColumns(whole));
  set->isTable = true;
  if (const IndexDef* key = table.primaryKey()) {
    std::string sql = whole.sql;
    for (const std::string& name : key->fields) {
      const FieldDef* field = table.field(name);
      const bool isText = field != nullptr && (field->type == FieldType::Text || field->type == FieldType::Memo);
      sql.append(set->seekColumns++ == 0 ? " WHERE " : " AND ").append(quotedName(name)).append(" = ?");
      if (isText) sql += " COLLATE NOCASE";
    }
    set->seekSql = std::move(sql);
  }
  return Recordset(std::move(set));
}

const ShownTable& Recordset::State::shownTable(int column) const {
  const ResultColumn& source = columns->columns[static_cast<std::size_t>(column)];
  if (source.shownTable < 0) throwNotEditable("項目「" + source.name + "」");
  return columns->tables[static_cast<std::size_t>(source.shownTable)];
}

std::int64_t Recordset::State::requireRowId(const ShownTable& table) const {
  const Cell& cell = rows.cell(current, table.rowIdColumn);
  if (cell.kind == Cell::Kind::Null) {
    throw EngineError(engine_error::kNoCurrentRecord, "テーブル「" + table.table + "」には対応する行がありません.");
  }
  return cellInteger(cell);
}

void Recordset::State::insert() {
  if (columns->tables.empty()) throwNotEditable("このレコードセット");
  const int place = changes.empty() ? 0 : columns->columns[static_cast<std::size_t>(changes[0].column)].shownTable;
  const ShownTable& shown = columns->tables[static_cast<std::size_t>(place)];
  const TableDef& table = database->table(shown.table);
  std::string names;
  std::string slots;
  for (Change& change : changes) {
    const ResultColumn& source = columns->columns[static_cast<std::size_t>(change.column)];
    if (source.shownTable != place) throwNotEditable("複数のテーブルの項目を設定した新しい行");
    const FieldDef* field = table.field(source.field);
    if (field == nullptr) throwNotEditable("項目「" + source.field + "」");
    change.value = convertForColumn(std::move(change.value), *field, table.name);
    names.append(names.empty() ? "" : ", ").append(quotedName(field->name));
    slots.append(slots.empty() ? "?" : ", ?");
  }
  PreparedStatement& statement =
      database->own("INSERT INTO " + quotedName(table.name) +
                    (changes.empty() ? " DEFAULT VALUES" : " (" + names + ") VALUES (" + slots + ")"));
  int slot = 0;
  for (const Change& change : changes) statement.bind(++slot, change.value);
  statement.run();
  const bool numbered = std::any_of(table.fields.begin(), table.fields.end(),
                                    [](const FieldDef& field) { return field.type == FieldType::Auto; });
  lastId = numbered ? sqlite3_last_insert_rowid(database->connection.handle()) : 0;
}

void Recordset::State::changeTable(int place) {
  const ShownTable& shown = columns->tables[static_cast<std::size_t>(place)];
  const std::int64_t rowId = requireRowId(shown);
  const TableDef& table = database->table(shown.table);
  std::string sql = "UPDATE " + quotedName(table.name) + " SET ";
  std::vector<const Value*> values;
  for (Change& change : changes) {
    const ResultColumn& source = columns->columns[static_cast<std::size_t>(change.column)];
    if (source.shownTable != place) continue;
    const FieldDef* field = table.field(source.field);
    if (field == nullptr) throwNotEditable("項目「" + source.field + "」");
    change.value = convertForColumn(std::move(change.value), *field, table.name);
    sql.append(values.empty() ? "" : ", ").append(quotedName(field->name)).append(" = ?");
    values.push_back(&change.value);
  }
  PreparedStatement& statement = database->own(sql + " WHERE " + std::string(rowIdName(table)) + " = ?");
  int slot = 0;
  for (const Value* value : values) statement.bind(++slot, *value);
  statement.bind(++slot, rowId);
  if (statement.run() == 0) throwRowIsGone(table.name);
}

void Recordset::State::change() {
  requireCurrent();
  std::vector<int> places;
  for (const Change& change : changes) {
    const int place = columns->columns[static_cast<std::size_t>(change.column)].shownTable;
    if (std::find(places.begin(), places.end(), place) == places.end()) places.push_back(place);
  }
  if (places.size() == 1) {
    changeTable(places[0]);
  } else if (places.size() > 1) {
    allOrNothing(database->connection, [&] {
      for (const int place : places) changeTable(place);
    });
  }
  for (const Change& change : changes) {
    const ResultColumn& source = columns->columns[static_cast<std::size_t>(change.column)];
    for (std::size_t i = 0; i < columns->columns.size(); ++i) {
      const ResultColumn& other = columns->columns[i];
      if (other.shownTable == source.shownTable && sameName(other.field, source.field)) {
        rows.setValue(rows.cell(current, static_cast<int>(i)), change.value);
      }
    }
  }
}

// Of a join the side that has each of its rows once in the set: the one that the other sides are looked up from.
int Recordset::State::tableOfRemoval() const {
  if (columns->tables.empty()) throwNotEditable("このレコードセット");
  if (columns->tables.size() == 1) return 0;
  for (std::size_t t = 0; t < columns->tables.size(); ++t) {
    const int column = columns->tables[t].rowIdColumn;
    std::vector<std::int64_t> ids;
    bool whole = true;
    for (std::size_t row = 0; row < rows.count() && whole; ++row) {
      const Cell& cell = rows.cell(row, column);
      whole = cell.kind != Cell::Kind::Null;
      ids.push_back(cellInteger(cell));
    }
    std::sort(ids.begin(), ids.end());
    if (whole && std::adjacent_find(ids.begin(), ids.end()) == ids.end()) return static_cast<int>(t);
  }
  throwNotEditable("この結合のレコードセット");
}

Recordset::Recordset(std::unique_ptr<State> state) : state_(std::move(state)) {}
Recordset::Recordset(Recordset&&) noexcept = default;
Recordset& Recordset::operator=(Recordset&&) noexcept = default;
Recordset::~Recordset() = default;

int Recordset::recordCount() const { return static_cast<int>(state_->rows.count() - state_->removedCount); }

bool Recordset::bof() const { return recordCount() == 0; }

bool Recordset::eof() const { return state_->current >= state_->rows.count(); }

void Recordset::moveFirst() {
  state_->forgetChanges();
  state_->current = 0;
  while (state_->isRemoved(state_->current)) ++state_->current;
}

void Recordset::moveNext() {
  if (eof()) throw EngineError(engine_error::kNoCurrentRecord, "最後の行より先には進めません.");
  state_->forgetChanges();
  do {
    ++state_->current;
  } while (state_->isRemoved(state_->current));
}

int Recordset::fieldCount() const { return static_cast<int>(state_->columns->columns.size()); }

const std::string& Recordset::fieldName(int index) const {
  state_->checkColumn(index);
  return state_->columns->columns[static_cast<std::size_t>(index)].name;
}

int Recordset::fieldIndex(std::string_view name) const {
  const auto place = state_->columns->places.find(name);
  return place == state_->columns->places.end() ? -1 : place->second;
}

bool Recordset::isNull(int index) const { return state_->cell(index).kind == Cell::Kind::Null; }
std::string_view Recordset::text(int index) const { return state_->rows.text(state_->cell(index)); }
std::int64_t Recordset::integer(int index) const { return cellInteger(state_->cell(index)); }
double Recordset::number(int index) const { return cellNumber(state_->cell(index)); }
Value Recordset::value(int index) const { return cellValue(state_->cell(index)); }

bool Recordset::isNull(std::string_view name) const { return isNull(state_->requireColumn(name)); }
std::string_view Recordset::text(std::string_view name) const { return text(state_->requireColumn(name)); }
std::int64_t Recordset::integer(std::string_view name) const { return integer(state_->requireColumn(name)); }
double Recordset::number(std::string_view name) const { return number(state_->requireColumn(name)); }
Value Recordset::value(std::string_view name) const { return value(state_->requireColumn(name)); }

void Recordset::addNew() {
  if (state_->columns->tables.empty()) throwNotEditable("このレコードセット");
  state_->changes.clear();
  state_->mode = State::Mode::Adding;
}

void Recordset::edit() {
  if (state_->columns->tables.empty()) throwNotEditable("このレコードセット");
  state_->requireCurrent();
  state_->changes.clear();
  state_->mode = State::Mode::Editing;
}

void Recordset::set(std::string_view name, Value value) {
  const int column = state_->requireColumn(name);
  if (state_->mode == State::Mode::Reading) {
    throw EngineError(engine_error::kUpdateWithoutEdit,
                      "項目「" + std::string(name) + "」は、行の追加または編集を始めてから設定して下さい.");
  }
  state_->shownTable(column);
  for (State::Change& change : state_->changes) {
    if (change.column == column) {
      change.value = std::move(value);
      return;
    }
  }
  state_->changes.push_back({column, std::move(value)});
}

void Recordset::update() {
  if (state_->mode == State::Mode::Reading) {
    throw EngineError(engine_error::kUpdateWithoutEdit, "行の追加または編集を始めずに更新しようとしました.");
  }
  // A refused row is given up: what was set for it must not come back with the next one.
  try {
    if (state_->mode == State::Mode::Adding) {
      state_->insert();
    } else {
      state_->change();
    }
  } catch (...) {
    state_->forgetChanges();
    throw;
  }
  state_->forgetChanges();
}

void Recordset::cancelUpdate() { state_->forgetChanges(); }

void Recordset::remove() {
  state_->forgetChanges();
  state_->requireCurrent();
  const ShownTable& shown = state_->columns->tables[static_cast<std::size_t>(state_->tableOfRemoval())];
  const std::string rowId(rowIdName(state_->database->table(shown.table)));
  PreparedStatement& statement =
      state_->database->own("DELETE FROM " + quotedName(shown.table) + " WHERE " + rowId + " = ?");
  statement.bind(1, state_->requireRowId(shown));
  const bool wasThere = statement.run() > 0;
  state_->removed.resize(state_->rows.count(), false);
  state_->removed[state_->current] = true;
  ++state_->removedCount;
  if (!wasThere) throwRowIsGone(shown.table);
}

std::int64_t Recordset::lastId() const { return state_->lastId; }

bool Recordset::seek(const std::vector<Value>& key) {
  if (!state_->isTable)
    throw EngineError(engine_error::kNoSuchTableDef, "索引で探せるのはテーブルとして開いたときだけです.");
  if (state_->seekSql.empty() || key.size() != state_->seekColumns) {
    throw EngineError(engine_error::kNoSuchTableDef, "テーブル「" + state_->columns->tables[0].table +
                                                         "」の索引「PrimaryKey」は " +
                                                         std::to_string(state_->seekColumns) + " 項目です. " +
                                                         std::to_string(key.size()) + " 個の値では探せません.");
  }
  state_->forgetChanges();
  state_->rows.clear();
  state_->removed.clear();
  state_->removedCount = 0;
  state_->current = 0;
  PreparedStatement& statement = state_->database->own(state_->seekSql);
  const ResetAtEnd guard(statement);
  int slot = 0;
  for (const Value& value : key) statement.bindCopy(++slot, value);
  if (!statement.step()) return false;
  readRow(statement, state_->rows, state_->columns->width);
  return true;
}

}  // namespace quillmarden
