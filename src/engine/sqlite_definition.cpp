#include <algorithm>
#include <iterator>
#include <new>

#include "engine/sqlite_state.h"
#include "engine/sqlite_writer_state.h"

namespace quillmarden {

using State = Database::State;

namespace {

// How a column stands in the file, other tools' declarations included.
struct StoredColumn {
  std::string name;
  std::string declaration;
  std::int64_t keyPlace = 0;
};

std::vector<StoredColumn> storedColumns(Connection& connection, const std::string& table) {
  PreparedStatement read(connection,
                         "SELECT name, type, \"notnull\", dflt_value, pk FROM pragma_table_info(?1) ORDER BY cid");
  const ResetAtEnd guard(read);
  read.bindCopy(1, table);
  std::vector<StoredColumn> columns;
  while (read.step()) {
    StoredColumn column;
    column.name = read.text(0);
    column.keyPlace = read.integer(4);
    column.declaration = read.text(1);
    const char* collation = nullptr;
    int isAuto = 0;
    sqlite3_table_column_metadata(connection.handle(), "main", table.c_str(), column.name.c_str(), nullptr, &collation,
                                  nullptr, nullptr, &isAuto);
    if (isAuto != 0) column.declaration += " PRIMARY KEY AUTOINCREMENT";
    if (collation != nullptr && !sameName(collation, "BINARY")) {
      column.declaration.append(" COLLATE ").append(collation);
    }
    if (read.integer(2) != 0) column.declaration += " NOT NULL";
    if (!read.isNull(3)) column.declaration.append(" DEFAULT (").append(read.text(3)).append(")");
    if (isAuto != 0) column.keyPlace = 0;
    columns.push_back(std::move(column));
  }
  return columns;
}

struct Conversion {
  const FieldDef* field;
  const std::string* table;
};

// The value of a rebuilt column, by the same rules as any assignment to it.
void convertStored(sqlite3_context* context, int, sqlite3_value** arguments) {
  const auto* conversion = static_cast<const Conversion*>(sqlite3_user_data(context));
  try {
    Value value;
    switch (sqlite3_value_type(arguments[0])) {
      case SQLITE_NULL:
        break;
      case SQLITE_INTEGER:
        value = std::int64_t{sqlite3_value_int64(arguments[0])};
        break;
      case SQLITE_FLOAT:
        value = sqlite3_value_double(arguments[0]);
        break;
      default: {
        const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(arguments[0]));
        value = std::string(text == nullptr ? "" : text, static_cast<std::size_t>(sqlite3_value_bytes(arguments[0])));
      }
    }
    value = convertForColumn(std::move(value), *conversion->field, *conversion->table);
    if (const auto* text = std::get_if<std::string>(&value)) {
      sqlite3_result_text64(context, text->data(), text->size(), SQLITE_TRANSIENT, SQLITE_UTF8);
    } else if (const auto* whole = std::get_if<std::int64_t>(&value)) {
      sqlite3_result_int64(context, *whole);
    } else if (const auto* real = std::get_if<double>(&value)) {
      sqlite3_result_double(context, *real);
    }
  } catch (const EngineError& fault) {
    resultError(context, fault);
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(context);
  }
}

/// Makes the conversion known to the connection as long as a table is being rebuilt.
class ConversionFunction {
 public:
  ConversionFunction(Connection& connection, Conversion& conversion) : connection_(connection) {
    if (define(&conversion, convertStored) != SQLITE_OK) connection_.fail();
  }
  ~ConversionFunction() { define(nullptr, nullptr); }
  ConversionFunction(const ConversionFunction&) = delete;
  ConversionFunction& operator=(const ConversionFunction&) = delete;

 private:
  int define(void* data, void (*function)(sqlite3_context*, int, sqlite3_value**)) {
    return sqlite3_create_function_v2(connection_.handle(), "quillmarden_rebuild", 1, SQLITE_UTF8, data, function,
                                      nullptr, nullptr, nullptr);
  }
  Connection& connection_;
};

std::vector<std::string> dependentStatements(Connection& connection, const std::string& table) {
  PreparedStatement read(connection,
                         "SELECT sql FROM sqlite_schema WHERE type IN ('index', 'trigger') AND sql IS NOT NULL "
                         "AND tbl_name = ?1 COLLATE NOCASE ORDER BY rowid");
  const ResetAtEnd guard(read);
  read.bindCopy(1, table);
  std::vector<std::string> statements;
  while (read.step()) statements.emplace_back(read.text(0));
  return statements;
}

// AUTOINCREMENT's highest number so far, -1 for a table that has none.
std::int64_t autoSequence(Connection& connection, const std::string& table) {
  PreparedStatement exists(connection, "SELECT 1 FROM sqlite_schema WHERE name = 'sqlite_sequence'");
  const ResetAtEnd guard(exists);
  if (!exists.step()) return -1;
  PreparedStatement read(connection, "SELECT seq FROM sqlite_sequence WHERE name = ?1");
  const ResetAtEnd readGuard(read);
  read.bindCopy(1, table);
  return read.step() ? read.integer(0) : -1;
}

void keepSequence(Connection& connection, const std::string& table, std::int64_t sequence) {
  if (sequence < 0) return;
  for (const char* sql :
       {"DELETE FROM sqlite_sequence WHERE name = ?1", "INSERT INTO sqlite_sequence (name, seq) VALUES (?1, ?2)"}) {
    PreparedStatement statement(connection, sql);
    statement.bindCopy(1, table);
    statement.bind(2, sequence);
    statement.run();
  }
}

bool isColumnAsWanted(const FieldDef& stored, const FieldDef& wanted) {
  return stored.type == wanted.type && (stored.type != FieldType::Text || stored.size == wanted.size) &&
         (stored.required || !wanted.required);
}

// SQLite cannot change a column's type in place, so the rows move to a table that has it. They keep their row ids, by
// which open sets of other processes find them.
void rebuildTable(Connection& connection, const TableDef& old, const FieldDef& wanted) {
  const std::string& table = old.name;
  const std::string rowId(rowIdName(old));
  const std::string rebuilt = table + " (rebuild)";
  const std::vector<std::string> dependents = dependentStatements(connection, table);
  const std::int64_t sequence = autoSequence(connection, table);
  const std::vector<StoredColumn> columns = storedColumns(connection, table);

  std::string declarations;
  std::string names;
  std::string values;
  for (const StoredColumn& column : columns) {
    const std::string name = quotedName(column.name);
    const bool isWanted = sameName(column.name, wanted.name);
    declarations += name + " " + (isWanted ? columnDeclaration(wanted) : column.declaration) + ", ";
    names += ", " + name;
    values += isWanted ? ", quillmarden_rebuild(" + name + ")" : ", " + name;
  }
  std::vector<StoredColumn> key;
  std::copy_if(columns.begin(), columns.end(), std::back_inserter(key), [](const auto& c) { return c.keyPlace > 0; });
  std::sort(key.begin(), key.end(), [](const auto& a, const auto& b) { return a.keyPlace < b.keyPlace; });
  std::string keyNames;
  for (const StoredColumn& column : key) keyNames.append(keyNames.empty() ? "" : ", ").append(quotedName(column.name));
  if (keyNames.empty()) {
    declarations.resize(declarations.size() - 2);
  } else {
    declarations += "PRIMARY KEY (" + keyNames + ")";
  }

  Conversion conversion{&wanted, &table};
  const ConversionFunction function(connection, conversion);
  connection.run("CREATE TABLE " + quotedName(rebuilt) + " (" + declarations + ")");
  connection.run("INSERT INTO " + quotedName(rebuilt) + " (" + rowId + names + ") SELECT " + rowId + values + " FROM " +
                 quotedName(table) + " ORDER BY " + rowId);
  connection.run("DROP TABLE " + quotedName(table));
  connection.run("ALTER TABLE " + quotedName(rebuilt) + " RENAME TO " + quotedName(table));
  for (const std::string& statement : dependents) connection.run(statement);
  keepSequence(connection, table, sequence);
}

const FieldDef& requireField(const TableDef& table, const std::string& name) {
  if (const FieldDef* field = table.field(name)) return *field;
  throw EngineError(engine_error::kNoSuchTableDef, "テーブル「" + table.name + "」に項目「" + name + "」がありません.");
}

void alterColumn(State& state, const std::string& tableName, FieldDef wanted) {
  if (wanted.type == FieldType::Text && wanted.size == 0) wanted.size = 255;
  if (isColumnAsWanted(requireField(state.table(tableName), wanted.name), wanted)) return;
  allOrNothing(state.connection, [&] {
    // Another login may have done the same while this one waited for the lock.
    state.schemaMoved();
    const TableDef table = state.table(tableName);
    const FieldDef& stored = requireField(table, wanted.name);
    if (isColumnAsWanted(stored, wanted)) return;
    if (stored.type == FieldType::Auto || wanted.type == FieldType::Auto) {
      throw EngineError(engine_error::kConversion, "テーブル「" + table.name + "」の項目「" + stored.name +
                                                       "」の型は変更できません. 自動番号の型です.");
    }
    wanted.name = stored.name;
    wanted.required = wanted.required || stored.required;
    wanted.allowZeroLength = wanted.allowZeroLength && stored.allowZeroLength;
    rebuildTable(state.connection, table, wanted);
    state.schemaHasChanged(true);
  });
}

void dropColumn(State& state, const std::string& tableName, const std::string& column) {
  const TableDef& table = state.table(tableName);
  state.connection.run("ALTER TABLE " + quotedName(table.name) + " DROP COLUMN " +
                       quotedName(requireField(table, column).name));
  state.schemaHasChanged(true);
}

}  // namespace

void addField(State& state, std::string_view tableName, const FieldDef& field) {
  const TableDef& table = state.table(tableName);
  if (table.field(field.name) != nullptr) {
    throw EngineError(engine_error::kFieldExists,
                      "テーブル「" + table.name + "」に項目「" + field.name + "」はすでにあります.");
  }
  if (field.type == FieldType::Auto) {
    throw EngineError(engine_error::kConversion,
                      "テーブル「" + table.name + "」に自動番号の項目「" + field.name + "」は追加できません.");
  }
  std::string sql = "ALTER TABLE " + quotedName(table.name) + " ADD COLUMN " + quotedName(field.name) + " " +
                    columnDeclaration(field);
  // Rows that are there already need something in a column that takes no Null.
  if (field.required) {
    const bool isText = field.type == FieldType::Text || field.type == FieldType::Memo;
    sql += isText ? " DEFAULT ''" : field.type == FieldType::Date ? " DEFAULT '1899/12/30 00:00:00'" : " DEFAULT 0";
  }
  state.connection.run(sql);
  state.schemaHasChanged(true);
}

void runDefinition(State& state, const CreateTableStatement& statement) {
  for (const IndexDef& index : statement.table.indexes) {
    for (const std::string& field : index.fields) requireField(statement.table, field);
  }
  const std::vector<std::string> statements = createTableStatements(statement.table);
  allOrNothing(state.connection, [&] {
    for (const std::string& sql : statements) state.connection.run(sql);
  });
  state.schemaHasChanged(true);
}

void runDefinition(State& state, const AlterTableStatement& statement) {
  switch (statement.action) {
    case AlterTableStatement::Action::AddColumn:
      addField(state, statement.table, statement.field);
      break;
    case AlterTableStatement::Action::AlterColumn:
      alterColumn(state, statement.table, statement.field);
      break;
    case AlterTableStatement::Action::DropColumn:
      dropColumn(state, statement.table, statement.field.name);
      break;
  }
}

void runDefinition(State& state, const DropTableStatement& statement) {
  state.connection.run("DROP TABLE " + quotedName(state.table(statement.table).name));
  state.schemaHasChanged(true);
}

void runDefinition(State& state, const CreateIndexStatement& statement) {
  const TableDef& table = state.table(statement.table);
  for (const IndexDef& index : table.indexes) {
    if (sameName(index.name, statement.index.name) || (isPrimaryKey(index) && isPrimaryKey(statement.index))) {
      throw EngineError(engine_error::kTableExists,
                        "テーブル「" + table.name + "」に索引「" + statement.index.name + "」はすでにあります.");
    }
  }
  for (const std::string& field : statement.index.fields) requireField(table, field);
  state.connection.run(createIndexStatement(table.name, statement.index));
  state.schemaHasChanged(true);
}

void runDefinition(State& state, const DropIndexStatement& statement) {
  const TableDef& table = state.table(statement.table);
  std::string stored;
  {
    PreparedStatement read(state.connection,
                           "SELECT name FROM sqlite_schema WHERE type = 'index' AND sql IS NOT NULL "
                           "AND tbl_name = ?1 AND name COLLATE NOCASE IN (?2, ?3)");
    const ResetAtEnd guard(read);
    read.bindCopy(1, table.name);
    read.bindCopy(2, storedIndexName(table.name, statement.index));
    read.bindCopy(3, statement.index);
    if (read.step()) stored = read.text(0);
  }
  if (stored.empty()) {
    throw EngineError(engine_error::kNoSuchTableDef,
                      "テーブル「" + table.name + "」に削除できる索引「" + statement.index + "」がありません.");
  }
  state.connection.run("DROP INDEX " + quotedName(stored));
  state.schemaHasChanged(true);
}

}  // namespace quillmarden
