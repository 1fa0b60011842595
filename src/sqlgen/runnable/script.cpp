#include "sqlgen/runnable/script.h"

#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "common/numbers.h"
#include "common/text.h"
#include "sqlgen/clauses.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/mysql_keys.h"
#include "sqlgen/runnable/names.h"

namespace quillmarden {

namespace {

/// What all statements of one script share: the names that have been given.
struct Writing {
  const RunnableScript& script;
  const SystemRecord& system;
  Database& database;
  const RunnableOptions& options;
  const Dialect& dialect;
  NameScope tables{dialect};
  NameScope constraints{dialect};
  NameScope indexes{dialect};
  std::unordered_map<std::string, NameScope> columns{};  ///< by table ID
  std::unordered_map<std::string, const ScriptTable*> byId{};
  std::unordered_set<std::string> referred{};  ///< of Oracle: what keys refer to, as referredKey() has it

  NameScope& relations() { return dialect.indexNamesInSchema ? tables : indexes; }
};

std::string schemaName(const Writing& writing) {
  switch (writing.dialect.kind) {
    case ScriptKind::PostgreSql:
      return std::string(schemaOf(writing.system));
    case ScriptKind::SqlServer:
      return std::string(trim(writing.system.tableSpace));
    case ScriptKind::Oracle:
      return std::string(trim(writing.system.dbUser));
    default:
      return {};
  }
}

TableNames namesOf(Writing& writing, const std::string& id, std::string_view name, std::string_view owner = "") {
  TableNames names;
  names.schema = owner.empty() ? schemaName(writing) : std::string(owner);
  // A table of another System stands in another schema, and takes no name from this one.
  names.name = owner.empty() ? writing.tables.use("table " + id, name) : std::string(name);
  if (!names.schema.empty()) names.qualified = quotedName(writing.dialect, names.schema) + ".";
  names.qualified += quotedName(writing.dialect, names.name);
  return names;
}

TableNames namesOf(Writing& writing, const ScriptTable& table) { return namesOf(writing, table.id, table.name); }

/// The name a column has been given. Names that fit keep what they have and are not even looked up, unless another of
/// the table had to be cut.
std::string columnName(Writing& writing, const std::string& tableId, std::string_view name) {
  auto scope = writing.columns.find(tableId);
  if (scope == writing.columns.end()) {
    if (fits(writing.dialect, name)) return std::string(name);
    scope = writing.columns.try_emplace(tableId, writing.dialect).first;
  }
  return scope->second.use(name, name);
}

/// Where a name of a table is too long, the names of all its columns are given in their order.
void nameLongColumns(Writing& writing, const ScriptTable& table) {
  const auto tooLong = [&](const ScriptColumn& column) { return !fits(writing.dialect, column.name); };
  if (std::none_of(table.columns.begin(), table.columns.end(), tooLong)) return;
  NameScope& scope = writing.columns.try_emplace(table.id, writing.dialect).first->second;
  for (const ScriptColumn& column : table.columns) scope.use(column.name, column.name);
}

std::string quotedColumn(Writing& writing, const std::string& tableId, std::string_view name) {
  return quotedName(writing.dialect, columnName(writing, tableId, name));
}

std::string columnList(Writing& writing, const std::string& tableId, const std::vector<std::string>& names) {
  std::string list;
  for (const std::string& name : names)
    list.append(list.empty() ? "" : ", ").append(quotedColumn(writing, tableId, name));
  return list;
}

/// The same for a key or index: the kind may want lengths behind the names.
std::string keyList(Writing& writing, const ScriptTable& table, const std::vector<std::string>& names) {
  if (writing.dialect.kind != ScriptKind::MySql) return columnList(writing, table.id, names);
  std::string list;
  const std::vector<std::string> lengths = mySqlKeyLengths(table, names);
  for (std::size_t i = 0; i < names.size(); ++i)
    list.append(list.empty() ? "" : ", ").append(quotedColumn(writing, table.id, names[i])).append(lengths[i]);
  return list;
}

std::string madeName(Writing& writing, NameScope& scope, std::string_view word, std::string_view rest) {
  std::string name(word);
  if (writing.dialect.bareCase == Dialect::BareCase::Lower) name = toLower(name);
  name += rest;
  return quotedName(writing.dialect, scope.use(name + " " + std::to_string(scope.uses()), name));
}

bool contains(const std::vector<std::string>& names, std::string_view name) {
  return std::any_of(names.begin(), names.end(), [&](const std::string& other) { return equalsNoCase(other, name); });
}

/// The fields of PARTITION BY that the table has.
std::vector<std::string> partitionFields(const ScriptTable& table) {
  std::vector<std::string> fields;
  std::string_view list = table.partition;
  while (!list.empty()) {
    const std::size_t comma = std::min(list.find(','), list.size());
    const std::string_view wanted = trim(list.substr(0, comma));
    for (const ScriptColumn& column : table.columns)
      if (equalsNoCase(column.name, wanted)) fields.push_back(column.name);
    list.remove_prefix(std::min(comma + 1, list.size()));
  }
  return fields;
}

/// A unique key of a partitioned table has to hold the fields that part it.
bool keepsPartition(const Writing& writing, const ScriptTable& table, const std::vector<std::string>& key) {
  if (writing.dialect.kind != ScriptKind::PostgreSql) return true;
  const std::vector<std::string> fields = partitionFields(table);
  return std::all_of(fields.begin(), fields.end(), [&](const std::string& field) { return contains(key, field); });
}

void putRemark(ScriptText& text, std::string_view remark, std::string_view what) {
  text.print("-- ", remark, ": ", oneLine(what));
}

// --- drops

/// Tables in an order in which what refers comes before what is referred to; circles are broken anywhere.
std::vector<const ScriptTable*> dropOrder(const Writing& writing) {
  std::vector<const ScriptTable*> parentsFirst;
  std::unordered_set<std::string> seen;
  struct Step {
    const ScriptTable* table;
    std::size_t next;
  };
  for (const ScriptTable& start : writing.script.tables) {
    std::vector<Step> path;
    if (seen.insert(start.id).second) path.push_back({&start, 0});
    while (!path.empty()) {
      Step& step = path.back();
      if (step.next == step.table->foreigns.size()) {
        parentsFirst.push_back(step.table);
        path.pop_back();
        continue;
      }
      const auto parent = writing.byId.find(step.table->foreigns[step.next++].referredId);
      if (parent != writing.byId.end() && seen.insert(parent->first).second) path.push_back({parent->second, 0});
    }
  }
  std::reverse(parentsFirst.begin(), parentsFirst.end());
  return parentsFirst;
}

/// Oracle's command-line tool asks for a value where it meets this sign, in comments and literals too.
bool asksForValues(const RunnableScript& script) {
  const auto asks = [](std::string_view text) { return text.find('&') != std::string_view::npos; };
  const auto columnAsks = [&](const ScriptColumn& column) {
    return asks(column.name) || asks(column.remark) || asks(column.defaultText) ||
           std::any_of(column.values.begin(), column.values.end(), asks);
  };
  const auto indexAsks = [&](const TableIndex& index) { return asks(index.name); };
  return std::any_of(script.tables.begin(), script.tables.end(),
                     [&](const ScriptTable& table) {
                       return asks(table.head) || asks(table.memo) || asks(table.name) ||
                              std::any_of(table.columns.begin(), table.columns.end(), columnAsks) ||
                              std::any_of(table.indexes.begin(), table.indexes.end(), indexAsks);
                     }) ||
         std::any_of(script.views.begin(), script.views.end(), [&](const ScriptView& view) {
           return asks(view.head) || std::any_of(view.items.begin(), view.items.end(), [&](const auto& item) {
                    return asks(item.first) || asks(item.second);
                  });
         });
}

/// Copies of the tables as they are now, where they are there.
void putBackups(Writing& writing, const ScriptSink& sink) {
  if (writing.options.backup.empty() || writing.dialect.kind != ScriptKind::Oracle) return;
  ScriptText text;
  for (const ScriptTable& table : writing.script.tables) {
    if (table.temporary) continue;
    const TableNames copy = namesOf(writing, "copy " + table.id, table.name + "_BK" + writing.options.backup);
    text.text +=
        oracleIfThere("CREATE TABLE " + copy.qualified + " AS SELECT * FROM " + namesOf(writing, table).qualified);
  }
  if (!text.text.empty()) sink("", text);
}

void putDrops(Writing& writing, const ScriptSink& sink) {
  if (!writing.options.drops || writing.script.tables.empty()) return;
  const bool mySql = writing.dialect.kind == ScriptKind::MySql;
  ScriptText text;
  // Tables outside this run may refer to the ones that go.
  if (mySql) text.text += "SET FOREIGN_KEY_CHECKS = 0\r\n;\r\n";
  for (const ScriptTable* table : dropOrder(writing)) text.text += writing.dialect.drop(namesOf(writing, *table));
  if (mySql) text.text += "SET FOREIGN_KEY_CHECKS = 1\r\n;\r\n";
  text.print();
  sink("", text);
}

// --- tables

std::string cutComment(std::string_view text, std::size_t most) {
  std::size_t characters = 0;
  for (std::size_t i = 0; most > 0 && i < text.size(); ++i)
    if ((static_cast<unsigned char>(text[i]) & 0xC0) != 0x80 && ++characters > most)
      return std::string(text.substr(0, i));
  return std::string(text);
}

/// Comments that the server would refuse stand cut in the statement; the script says so.
void putCutComments(const Writing& writing, const ScriptTable& table, ScriptText& text) {
  const Dialect& dialect = writing.dialect;
  if (!writing.options.comments) return;
  // Bytes are never fewer than characters: nearly all comments are known to fit without counting.
  const auto isCut = [](const std::string& comment, std::size_t most) {
    return most > 0 && comment.size() > most && cutComment(comment, most) != comment;
  };
  if (isCut(table.memo, dialect.tableComment)) putRemark(text, "コメントを切り詰めました", table.name);
  for (const ScriptColumn& column : table.columns)
    if (!column.computed && isCut(column.remark, dialect.columnComment))
      putRemark(text, "コメントを切り詰めました", table.name + "." + column.name);
}

std::string columnLine(Writing& writing, const ScriptTable& table, const ScriptColumn& column) {
  const Dialect& dialect = writing.dialect;
  std::string line = quotedColumn(writing, table.id, column.name);
  if (column.computed) return line + dialect.computed(column.remark);
  line.append(" ").append(dialect.type(column));
  const std::string value = writing.options.defaults ? defaultLiteral(dialect, column) : std::string();
  const std::string defaultClause = value.empty() ? "" : " DEFAULT " + value;
  const bool identity = dialect.kind == ScriptKind::SqlServer && line.ends_with("identity(1,1)");
  // A time stamp that may be Null has to say so on servers that think otherwise.
  const bool saysNull = dialect.kind == ScriptKind::MySql || dialect.kind == ScriptKind::SqlServer;
  const std::string nullClause = column.notNull ? " NOT NULL" : saysNull && !identity ? " NULL" : "";
  line += dialect.defaultBeforeNull ? defaultClause + nullClause : nullClause + defaultClause;
  if (dialect.commentsInCreate && writing.options.comments && !trim(column.remark).empty())
    line += " COMMENT " + textLiteral(dialect, cutComment(column.remark, dialect.columnComment));
  return line;
}

void putKey(Writing& writing, const ScriptTable& table, ScriptText& text) {
  const std::vector<std::string> fields = table.keyFields();
  if (fields.empty()) return;
  if (!keepsPartition(writing, table, fields)) {
    putRemark(text, "主キーを作成できません. パーティションの項目が含まれていません", table.name);
    return;
  }
  std::string key = madeName(writing, writing.dialect.indexNamesInSchema ? writing.relations() : writing.constraints,
                             "PK_", table.name);
  // MySQL has one name for all primary keys.
  key = writing.dialect.kind == ScriptKind::MySql ? "\t,PRIMARY KEY (" : "\t,CONSTRAINT " + key + " PRIMARY KEY";
  if (writing.dialect.kind != ScriptKind::MySql) key.append(writing.dialect.clustered).append(" (");
  key += keyList(writing, table, fields) + ")";
  const std::string_view space = trim(writing.system.indexSpace);
  if (writing.dialect.kind == ScriptKind::Oracle && writing.options.storage && !space.empty() && !table.temporary)
    key += " USING INDEX TABLESPACE " + quotedName(writing.dialect, space);
  text.print(key);
}

void putChecks(Writing& writing, const ScriptTable& table, ScriptText& text) {
  for (const ScriptColumn& column : table.columns) {
    if (column.computed || (column.values.empty() && column.rangeKind.empty())) continue;
    if (!writing.options.checks && !column.values.empty()) continue;
    const std::string condition = checkCondition(writing.dialect, column, quotedColumn(writing, table.id, column.name));
    if (!condition.empty())
      text.print("\t,CONSTRAINT ", madeName(writing, writing.constraints, "CK_", table.shortName + "_" + column.name),
                 " CHECK (", condition, ")");
  }
}

std::string openingWords(const Writing& writing, const ScriptTable& table) {
  if (writing.dialect.kind == ScriptKind::Oracle && table.temporary) return "CREATE GLOBAL TEMPORARY TABLE ";
  if (writing.dialect.kind != ScriptKind::Teradata) return "CREATE TABLE ";
  return table.isSet ? "CREATE SET TABLE " : "CREATE MULTISET TABLE ";
}

/// What stands between a table's name and its columns.
std::string_view tableOptions(const Dialect& dialect) {
  if (dialect.kind != ScriptKind::Teradata) return {};
  return ", NO FALLBACK, NO BEFORE JOURNAL, NO AFTER JOURNAL, CHECKSUM = DEFAULT";
}

void putTableEnd(Writing& writing, const ScriptTable& table, ScriptText& text) {
  const Dialect& dialect = writing.dialect;
  std::string end = ")";
  if (dialect.kind == ScriptKind::PostgreSql && !table.partition.empty())
    end += " PARTITION BY RANGE (" + columnList(writing, table.id, partitionFields(table)) + ")";
  if (dialect.commentsInCreate && writing.options.comments && !table.memo.empty())
    end += " COMMENT = " + textLiteral(dialect, cutComment(table.memo, dialect.tableComment));
  if (dialect.kind == ScriptKind::Oracle && table.temporary) end += "\r\nON COMMIT PRESERVE ROWS";
  text.print(end);
  // An empty line would end the statement for the command-line tool.
  const std::size_t last = table.storage.find_last_not_of("\r\n ");
  if (last != std::string::npos) text.print(table.storage.substr(0, last + 1));
  text.print(dialect.end);
  text.print();
}

void putTable(Writing& writing, const ScriptTable& table, const ScriptSink& sink) {
  ScriptText text;
  text.text = table.head;
  const auto impossible = [&](const ScriptColumn& column) {
    return column.computed && (column.remark.empty() || writing.dialect.computed(column.remark).empty());
  };
  bool first = true;
  ScriptText body;
  for (const ScriptColumn& column : table.columns) {
    if (impossible(column)) {
      putRemark(text, "計算式の項目を作成できません", table.name + "." + column.name);
      continue;
    }
    body.print(first ? "\t" : "\t,", columnLine(writing, table, column));
    first = false;
  }
  if (first) {
    putRemark(text, "項目がないため作成できません", table.name);
    sink(table.name, text);
    return;
  }
  putCutComments(writing, table, text);
  text.print(openingWords(writing, table), namesOf(writing, table).qualified, tableOptions(writing.dialect));
  text.print("(");
  text.text += body.text;
  putKey(writing, table, text);
  putChecks(writing, table, text);
  putTableEnd(writing, table, text);
  sink(table.name, text);
}

// --- keys between tables

/// The lists of fields that a key of another table may refer to.
std::vector<std::vector<std::string>> targetLists(const Writing& writing, const std::string& tableId) {
  const auto inRun = writing.byId.find(tableId);
  if (inRun == writing.byId.end()) return uniqueFieldLists(writing.database, tableId);
  const ScriptTable& table = *inRun->second;
  std::vector<std::vector<std::string>> lists = {table.keyFields()};
  for (const TableIndex& index : table.indexes) {
    // MySQL refers to any index.
    if (!index.unique() && writing.dialect.kind != ScriptKind::MySql) continue;
    std::vector<std::string> names;
    for (const TableIndex::Field& field : index.fields) names.push_back(field.name);
    lists.push_back(std::move(names));
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

/// Oracle refers to constraints alone: a unique index that keys refer to has to be one.
void noteReferred(Writing& writing) {
  if (writing.dialect.kind != ScriptKind::Oracle || !writing.options.foreignKeys) return;
  for (const ScriptTable& table : writing.script.tables)
    for (ScriptForeign foreign : table.foreigns)
      if (followKey(writing, foreign)) writing.referred.insert(referredKey(foreign.referredId, foreign.referred));
}

bool sameKindOfType(const Dialect& dialect, const ScriptColumn& own, const ScriptColumn& referred) {
  const TypeClass type = classOf(dialect, own);
  if (type != classOf(dialect, referred)) return false;
  if (dialect.kind != ScriptKind::MySql || type == TypeClass::Text) return true;
  // Whole numbers have to agree in size and sign.
  return lowerType(own) == lowerType(referred);
}

std::string typeFault(const Writing& writing, const ScriptTable& table, const ScriptForeign& foreign) {
  const auto inRun = writing.byId.find(foreign.referredId);
  if (inRun == writing.byId.end()) return {};
  for (std::size_t i = 0; i < foreign.own.size(); ++i) {
    const ScriptColumn* own = table.column(foreign.own[i]);
    const ScriptColumn* referred = inRun->second->column(foreign.referred[i]);
    if (own && referred && !sameKindOfType(writing.dialect, *own, *referred))
      return "型が違います (" + own->name + " " + own->type + ", " + referred->name + " " + referred->type + ")";
  }
  return {};
}

/// Oracle gives no keys to and from tables of a session.
bool isTemporary(const Writing& writing, const std::string& tableId) {
  const auto inRun = writing.byId.find(tableId);
  return writing.dialect.kind == ScriptKind::Oracle && inRun != writing.byId.end() && inRun->second->temporary;
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
  if (!text.text.empty()) sink(table.name, text);
}

// --- indexes

std::string indexStatement(Writing& writing, const ScriptTable& table, const TableIndex& index,
                           const std::vector<std::string>& fields) {
  const Dialect& dialect = writing.dialect;
  const bool brin = index.brin && dialect.kind == ScriptKind::PostgreSql;
  NameScope& scope = dialect.indexNamesInSchema
                         ? writing.relations()
                         : writing.columns.try_emplace("indexes of " + table.id, dialect).first->second;
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
  if (!text.text.empty()) sink(table.name, text);
}

// --- comments

void putComments(Writing& writing, const ScriptTable& table, const ScriptSink& sink) {
  ScriptText text;
  const TableNames names = namesOf(writing, table);
  const Dialect& dialect = writing.dialect;
  if (!table.memo.empty()) text.text += dialect.comment(names, "", cutComment(table.memo, dialect.tableComment));
  for (const ScriptColumn& column : table.columns) {
    if (column.computed || trim(column.remark).empty()) continue;
    text.text += dialect.comment(names, columnName(writing, table.id, column.name),
                                 cutComment(column.remark, dialect.columnComment));
  }
  if (!text.text.empty()) sink(table.name, text);
}

// --- views

std::string_view viewWords(ScriptKind kind) {
  if (kind == ScriptKind::SqlServer) return "CREATE OR ALTER VIEW ";
  return kind == ScriptKind::Teradata ? "REPLACE VIEW " : "CREATE OR REPLACE VIEW ";
}

void putView(Writing& writing, const ScriptView& view, const ScriptSink& sink) {
  const Dialect& dialect = writing.dialect;
  const std::vector<ScriptTable>& tables = writing.script.tables;
  const auto table = std::find_if(tables.begin(), tables.end(),
                                  [&](const ScriptTable& other) { return equalsNoCase(other.name, view.table); });
  // The server's own tables are not defined here: their names take the server's case.
  const bool defined = table != tables.end();
  const auto columnOf = [&](std::string_view name) {
    return defined ? quotedColumn(writing, table->id, name) : serverName(dialect, name);
  };
  ScriptText text;
  text.text = view.head;
  if (view.items.empty()) {
    putRemark(text, "項目がないため作成できません", view.name);
    sink(view.name, text);
    return;
  }
  text.print(viewWords(dialect.kind), namesOf(writing, "view " + view.name, view.name).qualified, " AS");
  for (const auto& [source, alias] : view.items) {
    const std::string as = alias.empty() ? "" : " AS " + quotedName(dialect, alias);
    text.print(&source == &view.items.front().first ? "SELECT\ta." : "\t,a.", columnOf(source), as);
  }
  text.print("FROM ", defined ? namesOf(writing, *table).qualified : serverName(dialect, view.table), " a");
  text.print(dialect.end);
  sink(view.name, text);
}

void putNameChanges(const Writing& writing, const ScriptSink& sink) {
  ScriptText text;
  const auto put = [&](const NameScope& scope) {
    for (const std::string& change : scope.changes()) putRemark(text, "名称を変更しました", change);
  };
  put(writing.tables);
  put(writing.constraints);
  put(writing.indexes);
  for (const auto& [id, scope] : writing.columns) put(scope);
  if (!text.text.empty()) sink("", text);
}

}  // namespace

std::optional<ScriptKind> scriptKindOf(std::string_view fileType) {
  const std::string kind = toLower(trim(fileType));
  if (kind == "oracle" || kind == "red brick") return ScriptKind::Oracle;
  if (kind == "sql server") return ScriptKind::SqlServer;
  if (kind == "teradatabase") return ScriptKind::Teradata;
  if (kind == "postgresql") return ScriptKind::PostgreSql;
  if (kind == "mysql") return ScriptKind::MySql;
  return std::nullopt;
}

void putRunnableScript(const RunnableScript& script, const SystemRecord& system, Database& database,
                       const RunnableOptions& options, const ScriptSink& sink) {
  Writing writing{script, system, database, options, dialectOf(script.kind)};
  for (const ScriptTable& table : script.tables) writing.byId.emplace(table.id, &table);
  for (const ScriptTable& table : script.tables) {  // tables choose before what hangs on them
    namesOf(writing, table);
    nameLongColumns(writing, table);
  }
  noteReferred(writing);
  if (writing.dialect.kind == ScriptKind::Oracle && asksForValues(script)) sink("", ScriptText{"SET DEFINE OFF\r\n"});
  putBackups(writing, sink);
  putDrops(writing, sink);
  for (const ScriptTable& table : script.tables) putTable(writing, table, sink);
  for (const ScriptTable& table : script.tables) putIndexes(writing, table, true, sink);
  if (options.foreignKeys)
    for (const ScriptTable& table : script.tables) putForeignKeys(writing, table, sink);
  for (const ScriptTable& table : script.tables) putIndexes(writing, table, false, sink);
  if (options.comments && !writing.dialect.commentsInCreate)
    for (const ScriptTable& table : script.tables) putComments(writing, table, sink);
  for (const ScriptView& view : script.views) putView(writing, view, sink);
  putNameChanges(writing, sink);
}

}  // namespace quillmarden
