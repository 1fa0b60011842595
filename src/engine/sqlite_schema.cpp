#include "engine/sqlite_schema.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace quillmarden {

namespace {

constexpr std::string_view kPrimaryKey = "PrimaryKey";

// The words that other tools declare columns with, beside our own; what is not among them is text.
constexpr std::array<std::pair<std::string_view, FieldType>, 34> kTypeWords = {{
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
  const auto* found = std::find_if(kTypeWords.begin(), kTypeWords.end(),
                                   [&](const auto& entry) { return sameName(entry.first, word); });
  field.type = found == kTypeWords.end() ? FieldType::Memo : found->second;
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

void readTables(Connection& connection, Schema& schema) {
  PreparedStatement columns(connection,
                            "SELECT t.name, t.sql, c.name, c.type, c.\"notnull\", c.pk "
                            "FROM sqlite_schema AS t, pragma_table_info(t.name) AS c "
                            "WHERE t.type = 'table' AND t.name NOT LIKE 'sqlite\\_%' ESCAPE '\\' "
                            "ORDER BY t.rowid, c.cid");
  struct KeyColumn {
    std::int64_t place;
    std::string name;
  };
  std::vector<KeyColumn> key;
  bool keyIsRowId = false;
  TableDef table;
  const auto finish = [&] {
    if (table.name.empty()) return;
    if (sameName(table.name, kQueryTable)) {
      schema.hasQueries = true;
    } else {
      if (!key.empty()) {
        std::sort(key.begin(), key.end(), [](const KeyColumn& a, const KeyColumn& b) { return a.place < b.place; });
        IndexDef index{std::string(kPrimaryKey), {}, true, true};
        for (KeyColumn& column : key) index.fields.push_back(std::move(column.name));
        if (keyIsRowId && index.fields.size() == 1) {
          for (FieldDef& field : table.fields) {
            if (field.name == index.fields[0]) field.type = FieldType::Auto;
          }
        }
        table.indexes.push_back(std::move(index));
      }
      schema.places.emplace(table.name, schema.tables.size());
      schema.tables.push_back(std::move(table));
    }
    table = TableDef{};
    key.clear();
    keyIsRowId = false;
  };
  std::string sql;
  while (columns.step()) {
    if (columns.text(0) != table.name) {
      finish();
      table.name = columns.text(0);
      sql = columns.text(1);
    }
    FieldDef field;
    field.name = columns.text(2);
    readDeclaredType(columns.text(3), field);
    field.required = columns.integer(4) != 0;
    if (field.type == FieldType::Text || field.type == FieldType::Memo) {
      field.allowZeroLength = sql.find(zeroLengthCheck(field.name)) == std::string::npos;
    }
    if (const std::int64_t place = columns.integer(5); place > 0) {
      // Exactly this word makes a column the row's number.
      if (sameName(columns.text(3), "INTEGER")) keyIsRowId = true;
      key.push_back({place, field.name});
    }
    table.fields.push_back(std::move(field));
  }
  finish();
}

void readIndexes(Connection& connection, Schema& schema) {
  PreparedStatement columns(connection,
                            "SELECT i.tbl_name, i.name, i.sql LIKE 'CREATE UNIQUE%', c.name "
                            "FROM sqlite_schema AS i, pragma_index_info(i.name) AS c "
                            "WHERE i.type = 'index' AND i.sql IS NOT NULL ORDER BY i.rowid, c.seqno");
  std::string current;
  IndexDef* index = nullptr;
  while (columns.step()) {
    if (columns.text(1) != current) {
      current = columns.text(1);
      index = nullptr;
      const auto place = schema.places.find(columns.text(0));
      if (place == schema.places.end()) continue;
      TableDef& table = schema.tables[place->second];
      const std::string prefix = table.name + ".";
      std::string_view name = current;
      if (sameName(name.substr(0, prefix.size()), prefix)) name.remove_prefix(prefix.size());
      IndexDef read{std::string(name), {}, false, columns.integer(2) != 0};
      if (sameName(name, kPrimaryKey)) {
        // Beside an Auto number that SQLite has for its key, the table's own key is this one.
        for (IndexDef& other : table.indexes) {
          if (other.primary) other = IndexDef{"RowNumber", other.fields, false, true};
        }
        read.primary = true;
      }
      table.indexes.push_back(std::move(read));
      index = &table.indexes.back();
    }
    if (index != nullptr) index->fields.emplace_back(columns.text(3));
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
