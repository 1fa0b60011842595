#include "engine/sqlite_schema.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace quillmarden {

namespace {

constexpr std::string_view kPrimaryKey = "PrimaryKey";

// The words that other tools declare columns with, beside our own; what is not among them is text.
constexpr std::array<std::pair<std::string_view, FieldType>, 34> kStoredTypes = {{
    {"text", FieldType::Text},          {"memo", FieldType::Memo},       {"clob", FieldType::Memo},
    {"longtext", FieldType::Memo},      {"char", FieldType::Text},       {"varchar", FieldType::Text},
    {"nchar", FieldType::Text},         {"nvarchar", FieldType::Text},   {"smallint", FieldType::Integer},
    {"integer", FieldType::Long},       {"int", FieldType::Long},        {"bigint", FieldType::Long},
    {"mediumint", FieldType::Long},     {"tinyint", FieldType::Integer}, {"long", FieldType::Long},
    {"real", FieldType::Double},        {"double", FieldType::Double},   {"float", FieldType::Double},
    {"numeric", FieldType::Double},     {"decimal", FieldType::Double},  {"number", FieldType::Double},
    {"currency", FieldType::Double},    {"money", FieldType::Double},    {"single", FieldType::Double},
    {"boolean", FieldType::Flag},       {"bool", FieldType::Flag},       {"bit", FieldType::Flag},
    {"yesno", FieldType::Flag},         {"datetime", FieldType::Date},   {"date", FieldType::Date},
    {"timestamp", FieldType::Date},     {"counter", FieldType::Long},    {"short", FieldType::Integer},
    {"autoincrement", FieldType::Long},
}};

// "TEXT(50)": a Text of 50; "TEXT" alone: text without a limit.
void readDeclaredType(std::string_view declared, FieldDef& field) {
  const std::size_t wordEnd = std::min(declared.find_first_of(" ("), declared.size());
  const std::string_view word = declared.substr(0, wordEnd);
  const auto* found = std::find_if(kStoredTypes.begin(), kStoredTypes.end(),
                                   [&](const auto& entry) { return sameName(entry.first, word); });
  field.type = found == kStoredTypes.end() ? FieldType::Memo : found->second;
  if (field.type != FieldType::Text) return;
  const std::size_t open = declared.find('(');
  int size = 0;
  if (open != std::string_view::npos)
    std::from_chars(declared.data() + open + 1, declared.data() + declared.size(), size);
  if (size > 0) {
    field.size = size;
  } else {
    field.type = FieldType::Memo;
  }
}

std::string zeroLengthCheck(std::string_view column) { return "CHECK (" + quotedName(column) + " <> '')"; }

std::string columnList(const std::vector<std::string>& columns) {
  std::string list;
  for (const std::string& column : columns) list.append(list.empty() ? "" : ", ").append(quotedName(column));
  return list;
}

struct KeyColumn {
  std::int64_t place;
  std::string name;
};

IndexDef primaryKeyOf(std::vector<KeyColumn> key) {
  std::sort(key.begin(), key.end(), [](const KeyColumn& a, const KeyColumn& b) { return a.place < b.place; });
  IndexDef index{std::string(kPrimaryKey), {}, true, true};
  for (KeyColumn& column : key) index.fields.push_back(std::move(column.name));
  return index;
}

TableDef readTable(Connection& connection, std::string_view name, std::string_view sql) {
  TableDef table{std::string(name), {}, {}};
  std::vector<KeyColumn> key;
  bool keyIsRowId = false;
  const bool hasChecks = sql.find("CHECK") != std::string_view::npos;
  PreparedStatement columns(connection, "PRAGMA table_info(" + quotedName(name) + ")");
  while (columns.step()) {
    FieldDef field;
    field.name = columns.text(1);
    readDeclaredType(columns.text(2), field);
    field.required = columns.integer(3) != 0;
    if (hasChecks && (field.type == FieldType::Text || field.type == FieldType::Memo)) {
      field.allowZeroLength = sql.find(zeroLengthCheck(field.name)) == std::string_view::npos;
    }
    if (const std::int64_t place = columns.integer(5); place > 0) {
      // Exactly this word makes a column the row's number.
      if (sameName(columns.text(2), "INTEGER")) keyIsRowId = true;
      key.push_back({place, field.name});
    }
    table.fields.push_back(std::move(field));
  }
  if (key.empty()) return table;
  if (keyIsRowId && key.size() == 1) {
    for (FieldDef& field : table.fields) {
      if (field.name == key[0].name) field.type = FieldType::Auto;
    }
  }
  table.indexes.push_back(primaryKeyOf(std::move(key)));
  return table;
}

// One PRAGMA for each table costs half of SQLite's table-valued form of it, which runs the same one inside.
void readTables(Connection& connection, Schema& schema) {
  PreparedStatement tables(connection,
                           "SELECT name, sql FROM sqlite_schema "
                           "WHERE type = 'table' AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY rowid");
  while (tables.step()) {
    if (sameName(tables.text(0), kQueryTable)) {
      schema.hasQueries = true;
      continue;
    }
    TableDef table = readTable(connection, tables.text(0), tables.text(1));
    schema.places.emplace(table.name, schema.tables.size());
    schema.tables.push_back(std::move(table));
  }
}

IndexDef readIndex(Connection& connection, std::string_view stored, std::string_view name, bool unique) {
  IndexDef index{std::string(name), {}, sameName(name, kPrimaryKey), unique};
  PreparedStatement columns(connection, "PRAGMA index_info(" + quotedName(stored) + ")");
  while (columns.step()) index.fields.emplace_back(columns.text(2));
  return index;
}

void readIndexes(Connection& connection, Schema& schema) {
  PreparedStatement indexes(connection,
                            "SELECT tbl_name, name, sql LIKE 'CREATE UNIQUE%' FROM sqlite_schema "
                            "WHERE type = 'index' AND sql IS NOT NULL ORDER BY rowid");
  while (indexes.step()) {
    const auto place = schema.places.find(indexes.text(0));
    if (place == schema.places.end()) continue;
    TableDef& table = schema.tables[place->second];
    const std::string prefix = table.name + ".";
    std::string_view name = indexes.text(1);
    if (sameName(name.substr(0, prefix.size()), prefix)) name.remove_prefix(prefix.size());
    IndexDef index = readIndex(connection, indexes.text(1), name, indexes.integer(2) != 0);
    if (index.primary) {
      // Beside an Auto number that SQLite has for its key, the table's own key is this one.
      for (IndexDef& other : table.indexes) {
        if (other.primary) other = IndexDef{"RowNumber", other.fields, false, true};
      }
    }
    table.indexes.push_back(std::move(index));
  }
}

}  // namespace

std::size_t NameHash::operator()(std::string_view name) const {
  std::size_t hash = 14695981039346656037U;
  for (const char letter : name) {
    const auto byte = static_cast<unsigned char>(letter);
    hash = (hash ^ (byte >= 'A' && byte <= 'Z' ? byte + ('a' - 'A') : byte)) * 1099511628211U;
  }
  return hash;
}

const TableDef* Schema::find(std::string_view table) const {
  const auto place = places.find(table);
  return place == places.end() ? nullptr : &tables[place->second];
}

std::int64_t schemaVersion(Connection& connection) {
  PreparedStatement version(connection, "PRAGMA schema_version");
  const ResetAtEnd guard(version);
  return version.step() ? version.integer(0) : -1;
}

Schema readSchema(Connection& connection) {
  Schema schema;
  // Read first: a change in between is then seen as one at the next comparison.
  schema.version = schemaVersion(connection);
  readTables(connection, schema);
  readIndexes(connection, schema);
  return schema;
}

bool isPrimaryKey(const IndexDef& index) { return index.primary || sameName(index.name, kPrimaryKey); }

std::string storedIndexName(std::string_view table, std::string_view index) {
  return std::string(table) + "." + std::string(index);
}

std::string columnDeclaration(const FieldDef& field) {
  std::string text;
  switch (field.type) {
    case FieldType::Text:
      text = "TEXT(" + std::to_string(field.size > 0 ? field.size : 255) + ") COLLATE NOCASE";
      break;
    case FieldType::Memo:
      text = "TEXT COLLATE NOCASE";
      break;
    case FieldType::Integer:
      text = "SMALLINT";
      break;
    case FieldType::Long:
      text = "INTEGER";
      break;
    case FieldType::Double:
      text = "REAL";
      break;
    case FieldType::Flag:
      text = "BOOLEAN";
      break;
    case FieldType::Date:
      text = "DATETIME";
      break;
    case FieldType::Auto:
      return "INTEGER PRIMARY KEY AUTOINCREMENT";
  }
  if (field.required) text += " NOT NULL";
  if (!field.allowZeroLength && (field.type == FieldType::Text || field.type == FieldType::Memo)) {
    text += " " + zeroLengthCheck(field.name);
  }
  return text;
}

std::vector<std::string> createTableStatements(const TableDef& table) {
  if (table.name.empty() || table.fields.empty()) {
    throw EngineError(engine_error::kSyntax, "テーブル「" + table.name + "」に名前または項目がありません.");
  }
  const auto isAuto = [](const FieldDef& field) { return field.type == FieldType::Auto; };
  if (std::count_if(table.fields.begin(), table.fields.end(), isAuto) > 1) {
    throw EngineError(engine_error::kSyntax, "テーブル「" + table.name + "」の自動番号の項目は 1 つだけです.");
  }
  const bool hasAuto = std::any_of(table.fields.begin(), table.fields.end(), isAuto);
  const auto primary = std::find_if(table.indexes.begin(), table.indexes.end(), isPrimaryKey);
  const bool hasKey = primary != table.indexes.end();
  const bool keyIsAuto = hasKey && primary->fields.size() == 1 && table.field(primary->fields[0]) != nullptr &&
                         isAuto(*table.field(primary->fields[0]));
  const bool keyInTable = hasKey && !hasAuto;

  std::string sql = "CREATE TABLE " + quotedName(table.name) + " (";
  for (std::size_t i = 0; i < table.fields.size(); ++i) {
    FieldDef field = table.fields[i];
    const bool inKey = hasKey && std::any_of(primary->fields.begin(), primary->fields.end(),
                                             [&](const std::string& name) { return sameName(name, field.name); });
    if (inKey) field.required = true;
    std::string declaration = columnDeclaration(field);
    // A single INTEGER key would become the row's number and be given by itself.
    if (keyInTable && inKey && primary->fields.size() == 1 && field.type == FieldType::Long) {
      declaration.replace(0, std::string_view("INTEGER").size(), "INT");
    }
    sql.append(i > 0 ? ", " : "").append(quotedName(field.name)).append(" ").append(declaration);
  }
  if (keyInTable) sql += ", PRIMARY KEY (" + columnList(primary->fields) + ")";
  std::vector<std::string> statements = {sql + ")"};
  for (const IndexDef& index : table.indexes) {
    if (isPrimaryKey(index) && (keyInTable || keyIsAuto)) continue;
    statements.push_back(createIndexStatement(table.name, index));
  }
  return statements;
}

std::string createIndexStatement(std::string_view table, const IndexDef& index, bool ifMissing) {
  const bool primary = isPrimaryKey(index);
  return std::string("CREATE ") + (primary || index.unique ? "UNIQUE " : "") + "INDEX " +
         (ifMissing ? "IF NOT EXISTS " : "") +
         quotedName(storedIndexName(table, primary ? kPrimaryKey : std::string_view(index.name))) + " ON " +
         quotedName(table) + " (" + columnList(index.fields) + ")";
}

}  // namespace quillmarden
