#include <algorithm>
#include <array>
#include <utility>

#include "common/text.h"
#include "sqlgen/runnable/key_plan.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/mysql_limits.h"
#include "sqlgen/runnable/writing.h"

namespace quillmarden {

namespace {

using Family = TypeFamily;
using Pair = ScriptForeign::Pair;

/// One key between two tables: its pairs in the order of the fields that it refers to.
struct PlannedForeign {
  std::vector<std::string> own;
  std::vector<std::string> referred;
};

/// The keys of a table that refer to one other table, and the pairs that no key can be made of.
struct ForeignPlan {
  std::vector<PlannedForeign> keys;
  std::vector<Pair> left;
};

/// A table by its ID, of the run or not; nullptr for one that no script makes.
const ScriptTable* tableOf(Writing& writing, const std::string& id) {
  if (const auto inRun = writing.byId.find(id); inRun != writing.byId.end())
    return writing.unmade.contains(inRun->second) ? nullptr : inRun->second;
  auto known = writing.outside.find(id);
  if (known == writing.outside.end())
    known = writing.outside.emplace(id, readReferredTable(writing.database, writing.dialect.kind, id, writing.lookUps))
                .first;
  return known->second ? &*known->second : nullptr;
}

/// The lists of fields that a key of another table may refer to.
std::vector<std::vector<std::string>> targetLists(const Writing& writing, const ScriptTable& table) {
  std::vector<std::vector<std::string>> lists;
  for (const PlannedKey& key : plannedKeys(writing, table)) {
    // MySQL refers to any index.
    const bool target = key.unique || (writing.dialect.kind == ScriptKind::MySql && !key.brin);
    if (target && key.fault.empty() && !key.partial()) lists.push_back(key.fields);
  }
  return lists;
}

/// Takes a pair for each field of the list out of `pairs`. False, with nothing taken, when one is missing.
bool takeList(const std::vector<std::string>& list, std::vector<Pair>& pairs, PlannedForeign& key) {
  std::vector<Pair> rest = pairs;
  for (const std::string& field : list) {
    const auto pair =
        std::find_if(rest.begin(), rest.end(), [&](const Pair& other) { return equalsNoCase(other.referred, field); });
    if (pair == rest.end()) return false;
    key.own.push_back(pair->own);
    key.referred.push_back(field);
    rest.erase(pair);
  }
  pairs = std::move(rest);
  return true;
}

/// Makes keys of the pairs: one of all where their fields are a key of the other table, else one for each of its keys
/// that finds its fields among them.
ForeignPlan planOf(const Writing& writing, const ScriptForeign& foreign, const ScriptTable& referred) {
  ForeignPlan plan;
  plan.left = foreign.pairs;
  const std::vector<std::vector<std::string>> lists = targetLists(writing, referred);
  for (std::vector<std::string> list : lists) {
    if (writing.dialect.kind == ScriptKind::MySql && list.size() > plan.left.size()) list.resize(plan.left.size());
    PlannedForeign key;
    if (list.size() != plan.left.size() || !takeList(list, plan.left, key)) continue;
    plan.keys.push_back(std::move(key));
    return plan;
  }
  for (const std::vector<std::string>& list : lists)
    for (PlannedForeign key; takeList(list, plan.left, key); key = {}) plan.keys.push_back(key);
  return plan;
}

// --- types that refer to each other

/// Where a type of numbers stands among those that become each other by themselves, from left to right.
int numberRank(const ScriptType& type) {
  return type.family == Family::Integer ? 0 : type.family == Family::Exact ? 1 : type.family == Family::Real ? 2 : 3;
}

bool mayReferPostgreSql(const ScriptType& own, const ScriptType& referred) {
  const auto isMoment = [](Family family) { return family == Family::Date || family == Family::Moment; };
  if (isNumber(own.family) && isNumber(referred.family)) {
    const int rank = numberRank(own), referredRank = numberRank(referred);
    return rank == 3 || referredRank == 3 ? rank == referredRank : rank <= referredRank;
  }
  if (isMoment(own.family) && isMoment(referred.family)) return true;
  if (own.family == Family::Text && referred.family == Family::Text)
    return own.base != "name" || referred.base != "char";
  if (own.family == Family::Bits && referred.family == Family::Bits) return true;
  if (own.base == "time" && (referred.base == "timetz" || referred.base == "interval")) return true;
  return own.base == referred.base;
}

bool mayReferMySql(const ScriptType& own, const ScriptType& referred) {
  const auto hasLength = [](const ScriptType& type) { return !isLarge(type); };
  if (own.family == referred.family && (own.family == Family::Text || own.family == Family::Bytes))
    return hasLength(own) && hasLength(referred) && own.charset == referred.charset;
  if (own.base != referred.base || !hasLength(own)) return false;
  // Whole numbers have to agree in size and sign.
  return own.family != Family::Integer || own.isUnsigned == referred.isUnsigned;
}

/// One word for the synonyms of the kinds whose types are not known one by one.
std::string looseBase(ScriptKind kind, const ScriptType& type) {
  constexpr std::array<std::pair<std::string_view, std::string_view>, 8> kSame = {{{"integer", "int"},
                                                                                   {"dec", "decimal"},
                                                                                   {"numeric", "decimal"},
                                                                                   {"character", "char"},
                                                                                   {"character varying", "varchar"},
                                                                                   {"varchar2", "varchar"},
                                                                                   {"double precision", "float"},
                                                                                   {"real", "float"}}};
  std::string base = type.base;
  if (kind != ScriptKind::SqlServer) base = base.substr(0, base.find(' '));
  if (kind == ScriptKind::Oracle && isNumber(type.family) && !base.starts_with("binary_")) return "number";
  // SQL Server tells these two apart where keys refer to each other.
  if (kind == ScriptKind::SqlServer && base == "numeric") return base;
  const auto found = std::find_if(kSame.begin(), kSame.end(), [&](const auto& same) { return same.first == base; });
  return found == kSame.end() ? base : std::string(found->second);
}

/// What stands behind the type's words: "(8,2)".
std::string digitsOf(const ScriptType& type) {
  const std::size_t open = type.sql.find('('), close = type.sql.find(')');
  return open == std::string::npos ? "" : type.sql.substr(open, close - open + 1);
}

/// Whether the server lets a field of the one type refer to one of the other.
bool mayRefer(const Dialect& dialect, const ScriptType& own, const ScriptType& referred) {
  if (dialect.kind == ScriptKind::PostgreSql) return mayReferPostgreSql(own, referred);
  if (dialect.kind == ScriptKind::MySql) return mayReferMySql(own, referred);
  const bool same = looseBase(dialect.kind, own) == looseBase(dialect.kind, referred);
  if (dialect.kind != ScriptKind::SqlServer) return same;
  const auto digits = [](const ScriptType& type) { return type.numbersItself ? std::string() : digitsOf(type); };
  return same && digits(own) == digits(referred);
}

std::string nameAndType(const ScriptColumn& column) { return std::string(column.name) + " " + column.type->sql; }

/// What keeps the server from having the key, "" for nothing.
std::string faultOf(const Writing& writing, const ScriptTable& table, const ScriptTable& referredTable,
                    const PlannedForeign& key) {
  for (std::size_t i = 0; i < key.own.size(); ++i) {
    const ScriptColumn* own = table.column(key.own[i]);
    const ScriptColumn* referred = referredTable.column(key.referred[i]);
    if (!own || !referred || writing.leftOut.contains(own)) return "項目がありません (" + key.own[i] + ")";
    if (own->computed || referred->computed) return "計算式の項目です (" + key.own[i] + ")";
    if (!mayRefer(writing.dialect, *own->type, *referred->type))
      return "型が違います (" + nameAndType(*own) + ", " + nameAndType(*referred) + ")";
    if (std::count(key.own.begin(), key.own.end(), key.own[i]) > 1) return "項目が重複しています (" + key.own[i] + ")";
  }
  return {};
}

/// Oracle gives no keys to and from tables of a session.
bool isTemporary(const Writing& writing, const ScriptTable& table) {
  return writing.dialect.kind == ScriptKind::Oracle && table.temporary;
}

/// The server of MySQL makes an index for a key whose fields no other begins with. False when there is no room for it.
bool hasIndexFor(const std::vector<std::string>& fields, std::vector<std::vector<std::string>>& indexes,
                 std::size_t& count) {
  for (const std::vector<std::string>& index : indexes)
    if (index.size() >= fields.size() && std::equal(fields.begin(), fields.end(), index.begin())) return true;
  if (count >= kMostMySqlIndexes) return false;
  indexes.push_back(fields);
  ++count;
  return true;
}

/// The statement; where it needs a table that stands in no statement before it, such as one of another System, in a
/// form that does not stop where that is not there.
void putStatement(const Writing& writing, const std::string& statement, const std::string& needed,
                  const std::string& what, ScriptText& text) {
  const Dialect& dialect = writing.dialect;
  const bool unsure = !needed.empty() && dialect.knowsTypes;
  if (unsure) putRemark(text, "参照先のテーブルがないときは、外部キーは確認されません", what);
  if (unsure && dialect.kind == ScriptKind::PostgreSql) {
    const std::string look =
        "BEGIN IF to_regclass(" + textLiteral(dialect, needed) + ") IS NOT NULL THEN " + statement + "; END IF; END";
    text.print("DO ", textLiteral(dialect, look));
    text.print(dialect.end);
    return;
  }
  if (unsure) text.print("SET FOREIGN_KEY_CHECKS = 0\r\n", dialect.end);
  text.print(statement);
  text.print(dialect.end);
  if (unsure) text.print("SET FOREIGN_KEY_CHECKS = 1\r\n", dialect.end);
}

/// The fields that each index of a table covers as a whole, from its first on.
std::vector<std::vector<std::string>> coveredFields(const std::vector<PlannedKey>& keys) {
  std::vector<std::vector<std::string>> covered;
  for (const PlannedKey& key : keys) {
    if (!key.fault.empty()) continue;
    std::vector<std::string>& fields = covered.emplace_back();
    for (std::size_t i = 0; i < key.fields.size() && key.lengths[i].empty(); ++i) fields.push_back(key.fields[i]);
  }
  return covered;
}

}  // namespace

std::string referredKey(const std::string& tableId, const std::vector<std::string>& fields) {
  std::string key = tableId;
  for (const std::string& field : fields) key.append("\n").append(toLower(field));
  return key;
}

// Oracle refers to constraints alone: a unique index that keys refer to has to be one.
void noteReferred(Writing& writing) {
  if (writing.dialect.kind != ScriptKind::Oracle || !writing.options.foreignKeys) return;
  for (const ScriptTable& table : writing.script.tables)
    for (const ScriptForeign& foreign : table.foreigns)
      if (const ScriptTable* referred = tableOf(writing, foreign.referredId))
        for (const PlannedForeign& key : planOf(writing, foreign, *referred).keys)
          writing.referred.insert(referredKey(foreign.referredId, key.referred));
}

void putForeignKeys(Writing& writing, const ScriptTable& table, const ScriptSink& sink) {
  if (writing.unmade.contains(&table) || table.foreigns.empty()) return;
  ScriptText text;
  const TableNames names = namesOf(writing, table);
  const bool mySql = writing.dialect.kind == ScriptKind::MySql;
  const std::vector<PlannedKey> keys = mySql ? plannedKeys(writing, table) : std::vector<PlannedKey>();
  std::vector<std::vector<std::string>> indexes = coveredFields(keys);
  std::size_t count = countOfIndexes(table, keys);
  for (const ScriptForeign& foreign : table.foreigns) {
    const std::string what = table.name + " -> " + foreign.referredTable;
    const auto refuse = [&](std::string_view fault) {
      putRemark(text, "外部キーを作成できません. " + std::string(fault), what);
    };
    const ScriptTable* referredTable = tableOf(writing, foreign.referredId);
    if (!referredTable) {
      refuse("参照先のテーブルがありません");
      continue;
    }
    const ForeignPlan plan = planOf(writing, foreign, *referredTable);
    for (const PlannedForeign& key : plan.keys) {
      std::string fault = faultOf(writing, table, *referredTable, key);
      if (isTemporary(writing, table) || isTemporary(writing, *referredTable)) fault = "一時表です";
      if (fault.empty() && mySql && !hasIndexFor(key.own, indexes, count)) fault = "インデックスが多すぎます";
      if (!fault.empty()) {
        refuse(fault);
        continue;
      }
      const TableNames referred = namesOf(writing, foreign.referredId, foreign.referredTable, foreign.referredOwner);
      const std::string statement =
          "ALTER TABLE " + names.qualified + " ADD CONSTRAINT " +
          madeName(writing, writing.constraints, "FK_", table.shortName + "_" + foreign.referredShortName) +
          " FOREIGN KEY (" + columnList(writing, table.id, key.own) + ") REFERENCES " + referred.qualified + " (" +
          columnList(writing, foreign.referredId, key.referred) + ")";
      putStatement(writing, statement, writing.byId.contains(foreign.referredId) ? "" : referred.qualified, what, text);
    }
    std::string left;
    for (const Pair& pair : plan.left) left.append(left.empty() ? "" : ", ").append(pair.own);
    if (!left.empty()) refuse("参照先が主キーでも一意でもありません (" + left + ")");
  }
  if (!text.text.empty()) sink(table.name, std::move(text));
}

}  // namespace quillmarden
