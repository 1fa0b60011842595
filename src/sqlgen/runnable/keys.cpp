#include <algorithm>
#include <utility>

#include "common/text.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/writing.h"

namespace quillmarden {

namespace {

/// The lists of fields that a key of another table may refer to.
std::vector<std::vector<std::string>> targetLists(const Writing& writing, const std::string& tableId) {
  const auto inRun = writing.byId.find(tableId);
  if (inRun == writing.byId.end()) return uniqueFieldLists(writing.database, tableId);
  const ScriptTable& table = *inRun->second;
  std::vector<std::vector<std::string>> lists = {table.keyFields()};
  for (const TableIndex& index : table.indexes) {
    // MySQL refers to any index.
    if (!index.unique() && writing.dialect.kind != ScriptKind::MySql) continue;
    lists.push_back(index.fieldNames());
  }
  return lists;
}

/// Puts the pairs of fields into the order of a key that they match. False when there is none.
bool followKey(const Writing& writing, ScriptForeign& foreign) {
  for (std::vector<std::string> list : targetLists(writing, foreign.referredId)) {
    if (writing.dialect.kind == ScriptKind::MySql && list.size() > foreign.referred.size())
      list.resize(foreign.referred.size());
    if (list.size() != foreign.referred.size() || list.empty()) continue;
    if (!std::all_of(list.begin(), list.end(),
                     [&](const std::string& name) { return contains(foreign.referred, name); }))
      continue;
    std::vector<std::string> own;
    for (const std::string& name : list) {
      const auto place = std::find_if(foreign.referred.begin(), foreign.referred.end(),
                                      [&](const std::string& other) { return equalsNoCase(other, name); });
      own.push_back(foreign.own[static_cast<std::size_t>(place - foreign.referred.begin())]);
    }
    foreign.own = std::move(own);
    foreign.referred = std::move(list);
    return true;
  }
  return false;
}

/// A list of fields as the set of referred ones holds it.
std::string referredKey(const std::string& tableId, const std::vector<std::string>& fields) {
  std::string key = tableId;
  for (const std::string& field : fields) key.append("\n").append(toLower(field));
  return key;
}

/// Where a type of numbers stands among those that become each other by themselves, from left to right.
int numberRank(const std::string& lower) {
  if (lower.starts_with("numeric") || lower.starts_with("decimal")) return 1;
  if (lower.starts_with("float") || lower.starts_with("double") || lower.starts_with("real")) return 2;
  return lower.starts_with("money") ? 3 : 0;
}

std::string withoutIdentity(std::string type) {
  type = toLower(type);
  constexpr std::string_view kIdentity = " identity(1,1)";
  if (type.ends_with(kIdentity)) type.resize(type.size() - kIdentity.size());
  return type;
}

/// Whether the server lets a field of the one type refer to one of the other.
bool mayRefer(const Dialect& dialect, const ScriptColumn& own, const ScriptColumn& referred) {
  const TypeClass type = own.type->typeClass;
  if (type != referred.type->typeClass) return false;
  const std::string& lower = own.type->lower;
  const std::string& referredLower = referred.type->lower;
  const auto firstWord = [](const std::string& words) { return words.substr(0, words.find(' ')); };
  switch (dialect.kind) {
    case ScriptKind::MySql:  // numbers have to agree in size and sign
      return type == TypeClass::Text || lower == referredLower;
    case ScriptKind::SqlServer:
      return withoutIdentity(dialect.type(own)) == withoutIdentity(dialect.type(referred));
    case ScriptKind::Oracle:
    case ScriptKind::Teradata:
      return firstWord(lower) == firstWord(referredLower);
    case ScriptKind::PostgreSql:
      break;
  }
  if (type == TypeClass::Number) {
    const int rank = numberRank(lower);
    const int referredRank = numberRank(referredLower);
    return rank == 3 || referredRank == 3 ? rank == referredRank : rank <= referredRank;
  }
  return type != TypeClass::Other || lower == referredLower;
}

std::string nameAndType(const ScriptColumn& column) { return std::string(column.name) + " " + column.type->text; }

std::string typeFault(const Writing& writing, const ScriptTable& table, const ScriptForeign& foreign) {
  const auto inRun = writing.byId.find(foreign.referredId);
  if (inRun == writing.byId.end()) return {};
  for (std::size_t i = 0; i < foreign.own.size(); ++i) {
    const ScriptColumn* own = table.column(foreign.own[i]);
    const ScriptColumn* referred = inRun->second->column(foreign.referred[i]);
    if (own && referred && !mayRefer(writing.dialect, *own, *referred))
      return "型が違います (" + nameAndType(*own) + ", " + nameAndType(*referred) + ")";
  }
  return {};
}

/// Oracle gives no keys to and from tables of a session.
bool isTemporary(const Writing& writing, const std::string& tableId) {
  const auto inRun = writing.byId.find(tableId);
  return writing.dialect.kind == ScriptKind::Oracle && inRun != writing.byId.end() && inRun->second->temporary;
}

std::string indexStatement(Writing& writing, const ScriptTable& table, const TableIndex& index,
                           const std::vector<std::string>& fields) {
  const Dialect& dialect = writing.dialect;
  const bool brin = index.brin && dialect.kind == ScriptKind::PostgreSql;
  NameScope& scope =
      dialect.indexNamesInSchema ? writing.tables : writing.indexes.try_emplace(table.id, dialect).first->second;
  const std::string name = quotedName(dialect, scope.use("index " + table.id + " " + index.name, index.name));
  const std::string fieldList = " (" + keyList(writing, table, fields) + ")";
  const std::string_view space =
      writing.options.storage && !table.temporary ? trim(writing.system.indexSpace) : std::string_view();
  if (index.unique() && writing.referred.contains(referredKey(table.id, fields))) {
    std::string constraint = "ALTER TABLE " + namesOf(writing, table).qualified + " ADD CONSTRAINT " + name;
    constraint += " UNIQUE" + fieldList;
    return space.empty() ? constraint : constraint + " USING INDEX TABLESPACE " + quotedName(dialect, space);
  }
  std::string statement = index.unique() && !brin ? "CREATE UNIQUE " : "CREATE ";
  if (dialect.kind == ScriptKind::SqlServer) statement += "NONCLUSTERED ";
  statement += "INDEX " + name;
  // Teradata names the fields in front of the table.
  if (dialect.kind == ScriptKind::Teradata) return statement + fieldList + " ON " + namesOf(writing, table).qualified;
  statement += " ON " + namesOf(writing, table).qualified + (brin ? " USING brin" : "") + fieldList;
  if (space.empty()) return statement;
  if (dialect.kind == ScriptKind::SqlServer) return statement + " ON " + quotedName(dialect, space);
  if (dialect.kind == ScriptKind::MySql) return statement;
  return statement + " TABLESPACE " + quotedName(dialect, space);
}

/// Keys between tables may refer to the fields of these, which therefore come first.
bool comesBeforeKeys(const Dialect& dialect, const TableIndex& index) {
  return dialect.kind == ScriptKind::MySql || (index.unique() && !index.brin);
}

}  // namespace

// Oracle refers to constraints alone: a unique index that keys refer to has to be one.
void noteReferred(Writing& writing) {
  if (writing.dialect.kind != ScriptKind::Oracle || !writing.options.foreignKeys) return;
  for (const ScriptTable& table : writing.script.tables)
    for (ScriptForeign foreign : table.foreigns)
      if (followKey(writing, foreign)) writing.referred.insert(referredKey(foreign.referredId, foreign.referred));
}

void putForeignKeys(Writing& writing, const ScriptTable& table, const ScriptSink& sink) {
  ScriptText text;
  const TableNames names = namesOf(writing, table);
  for (ScriptForeign foreign : table.foreigns) {
    const std::string what = table.name + " -> " + foreign.referredTable;
    std::string fault =
        followKey(writing, foreign) ? typeFault(writing, table, foreign) : "参照先が主キーでも一意でもありません";
    if (isTemporary(writing, table.id) || isTemporary(writing, foreign.referredId)) fault = "一時表です";
    if (!fault.empty()) {
      putRemark(text, "外部キーを作成できません. " + fault, what);
      continue;
    }
    const TableNames referred = namesOf(writing, foreign.referredId, foreign.referredTable, foreign.referredOwner);
    text.print("ALTER TABLE ", names.qualified, " ADD CONSTRAINT ",
               madeName(writing, writing.constraints, "FK_", table.shortName + "_" + foreign.referredShortName),
               " FOREIGN KEY (", columnList(writing, table.id, foreign.own), ") REFERENCES ", referred.qualified, " (",
               columnList(writing, foreign.referredId, foreign.referred), ")");
    text.print(writing.dialect.end);
  }
  if (!text.text.empty()) sink(table.name, std::move(text));
}

void putIndexes(Writing& writing, const ScriptTable& table, bool beforeKeys, const ScriptSink& sink) {
  ScriptText text;
  std::vector<std::vector<std::string>> taken = {table.keyFields()};
  std::vector<TableIndex> indexes = table.indexes;
  if (table.brin && writing.dialect.kind == ScriptKind::PostgreSql && !table.keyFields().empty()) {
    TableIndex brin;
    brin.name = "idx_" + table.shortName + "_brin";
    brin.brin = true;
    for (const std::string& name : table.keyFields()) brin.fields.push_back({0, name});
    indexes.push_back(std::move(brin));
  }
  for (const TableIndex& index : indexes) {
    std::vector<std::string> fields;
    for (const TableIndex::Field& field : index.fields)
      if (table.column(field.name)) fields.push_back(field.name);
    if (fields.empty() || comesBeforeKeys(writing.dialect, index) != beforeKeys) continue;
    if (index.unique() && !keepsPartition(writing, table, fields)) {
      putRemark(text, "インデックスを作成できません. パーティションの項目が含まれていません",
                table.name + "." + index.name);
      continue;
    }
    // These have one index for a list of fields.
    if (writing.dialect.kind == ScriptKind::Oracle || writing.dialect.kind == ScriptKind::Teradata) {
      if (std::find(taken.begin(), taken.end(), fields) != taken.end()) {
        putRemark(text, "同じ項目のインデックスがあるため作成しません", table.name + "." + index.name);
        continue;
      }
      taken.push_back(fields);
    }
    text.print(indexStatement(writing, table, index, fields));
    text.print(writing.dialect.end);
  }
  if (!text.text.empty()) sink(table.name, std::move(text));
}

}  // namespace quillmarden
