#include "repository/schema.h"

#include <algorithm>
#include <filesystem>
#include <optional>

#include "common/text.h"
#include "repository/type_catalogue.h"

namespace quillmarden {
namespace {

struct LookUp {
  std::string_view table;
  std::vector<std::string> fields;
};

/// What the system searches by, beside the primary keys.
const std::vector<LookUp>& lookUps() {
  static const std::vector<LookUp> wanted = {
      {"MAS_TABLEINFO", {"システム名"}},
      {"MAS_TABLEINFO", {"ファイル種別", "システム名"}},
      {"MAS_TABLEDETAILES", {"外部参照TABLEID", "外部参照ROWNO"}},
      {"MAS_TABLEDETAILES", {"DomainID"}},
      {"MAS_TABLEDETAILES", {"型"}},
      {"MAS_INDEX", {"ID"}},
      {"MAS_DOMAIN", {"システム名"}},
      {"MAS_DIVISION", {"値名称"}},
      {"MAS_DIVISIONDETAILES", {"システム名", "値名称"}},
      {"DAT_REFERENCE", {"ID_REF", "ROWNO_REF"}},
  };
  return wanted;
}

std::string indexName(const LookUp& lookUp) {
  std::string name("IX_");
  name.append(lookUp.table);
  for (const std::string& field : lookUp.fields) name.append("_").append(field);
  return name;
}

std::vector<std::vector<Value>> userRows(const std::vector<std::string>& users) {
  std::vector<std::vector<Value>> rows = {{std::string("admin"), std::string("ADMIN")}};
  for (const std::string& user : users) {
    const std::string name(trim(user));
    const bool known = std::any_of(rows.begin(), rows.end(), [&](const std::vector<Value>& row) {
      return equalsNoCase(toText(row.front()), name);
    });
    if (!name.empty() && !known) rows.push_back({name, Value()});
  }
  return rows;
}

void fill(Database& database, const std::vector<std::string>& users) {
  for (const TableDef& table : repositoryTables()) database.createTable(table);
  ensureRepositoryIndexes(database);

  std::vector<std::vector<Value>> kinds, types, conversions;
  for (const SeedKind& kind : seedKinds()) {
    kinds.push_back({std::string(kind.kind)});
    if (kind.kind == "Oracle")
      for (const SeedType& type : initialOracleTypes()) types.push_back(fileTypeRow(kind.kind, type));
    for (const SeedType& type : kind.types) types.push_back(fileTypeRow(kind.kind, type));
  }
  for (const SeedConversion& conversion : seedConversions()) conversions.push_back(fileConvRow(conversion));
  database.insertRows("MAS_FILE", {"ファイル種別"}, kinds);
  database.insertRows("MAS_FILETYPE", fileTypeColumns(), types);
  database.insertRows("MAS_FILECONV", fileConvColumns(), conversions);
  database.insertRows("MAS_USER", {"ユーザー名", "グループ"}, userRows(users));

  for (const QueryDef& query : repositoryQueries()) database.putQueryDef(query);
}

}  // namespace

void ensureRepositoryIndexes(Database& database) {
  std::vector<const LookUp*> missing;
  for (const LookUp& lookUp : lookUps()) {
    const TableDef* table = database.tableDef(lookUp.table);
    if (!table) continue;
    const std::string name = indexName(lookUp);
    const bool there = std::any_of(table->indexes.begin(), table->indexes.end(),
                                   [&](const IndexDef& index) { return index.name == name; });
    const bool possible = std::all_of(lookUp.fields.begin(), lookUp.fields.end(),
                                      [&](const std::string& field) { return table->field(field); });
    if (!there && possible) missing.push_back(&lookUp);
  }
  if (missing.empty()) return;
  inTransaction(database, [&] {
    for (const LookUp* lookUp : missing) database.ensureIndex(lookUp->table, indexName(*lookUp), lookUp->fields);
  });
}

Database createRepository(const std::string& path, const std::vector<std::string>& users) {
  std::optional<Database> database = Database::create(path);
  try {
    inTransaction(*database, [&] { fill(*database, users); });
  } catch (...) {
    database.reset();
    std::error_code ignored;
    std::filesystem::remove(path, ignored);
    throw;
  }
  return *std::move(database);
}

}  // namespace quillmarden
