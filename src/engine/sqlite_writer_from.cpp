#include <algorithm>

#include "engine/convert.h"
#include "engine/parser.h"
#include "engine/sqlite_connection.h"
#include "engine/sqlite_writer_state.h"

namespace quillmarden {

namespace {

bool isTable(const FromNode& node) { return node.kind != FromNode::Kind::Join; }

std::string_view trimmedEnd(std::string_view name) {
  while (!name.empty() && name.back() == ' ') name.remove_suffix(1);
  return name;
}

}  // namespace

std::string_view rowIdName(const TableDef& table) {
  for (const std::string_view name : {"rowid", "_rowid_"}) {
    if (table.field(name) == nullptr) return name;
  }
  return "oid";
}

const TableDef& StatementWriter::baseTable(const std::string& name) const {
  const TableDef* table = schema_.table(trimmedEnd(name));
  if (table == nullptr) throw EngineError(engine_error::kNoSuchTable, "テーブル「" + name + "」が見つかりません.");
  return *table;
}

// The tables of FROM in order of appearance, each with what its columns are.
void StatementWriter::addSources(const FromNode& node, Scope& scope, bool nested) {
  if (node.kind == FromNode::Kind::Join) {
    // Which side keeps its parentheses: see from().
    const bool bothOuter = node.join == JoinKind::Inner && !isInner(*node.left) && !isInner(*node.right);
    const bool left = bothOuter || (node.join == JoinKind::Right && !isTable(*node.left));
    const bool right = node.join == JoinKind::Left && !isTable(*node.right);
    addSources(*node.left, scope, nested || left);
    addSources(*node.right, scope, nested || right);
    return;
  }
  Source source;
  source.alias = node.alias;
  if (node.kind == FromNode::Kind::Query) {
    WrittenSelect query = select(*node.query, nullptr, Use::Rows);
    source.sql = std::move(query.sql);
    source.columns = std::move(query.outputs);
  } else {
    source.table = schema_.table(trimmedEnd(node.table));
    if (source.table == nullptr) source = storedQuery(node.table, node.alias);
  }
  source.nested = nested;
  for (const Source& other : scope.sources) {
    if (sameName(other.alias, source.alias)) {
      throw EngineError(engine_error::kSyntax,
                        "構文エラー: FROM に「" + source.alias + "」が二度あります. AS で別名を付けて下さい.");
    }
  }
  scope.sources.push_back(std::move(source));
}

Source StatementWriter::storedQuery(const std::string& name, const std::string& alias) {
  const std::string_view wanted = trimmedEnd(name);
  const QueryDef* query = schema_.query(wanted);
  if (query == nullptr) {
    throw EngineError(engine_error::kNoSuchTable, "テーブルまたはクエリ「" + name + "」が見つかりません.");
  }
  // Queries that each use others twice would grow without bound.
  constexpr int kMostQueries = 200;
  constexpr std::size_t kMostNested = 10;
  for (const std::string& open : storedQueries_) {
    if (sameName(open, wanted)) {
      throw EngineError(engine_error::kSyntax, "クエリ「" + name + "」が自分自身を参照しています.");
    }
  }
  if (storedQueries_.size() >= kMostNested || ++storedQueryCount_ > kMostQueries) {
    throw EngineError(engine_error::kSyntax, "クエリ「" + name + "」の入れ子が深すぎます.");
  }
  const Statement statement = parseStatement(query->sql);
  const auto* body = std::get_if<std::shared_ptr<const SelectStatement>>(&statement.body);
  if (body == nullptr) {
    throw EngineError(engine_error::kSyntax, "クエリ「" + name + "」は SELECT ではないので参照できません.");
  }
  const std::vector<QueryParameter>* outerDeclared = declared_;
  const bool outerInline = inlineLiterals_;
  declared_ = &statement.parameters;
  inlineLiterals_ = true;
  storedQueries_.emplace_back(wanted);
  WrittenSelect written = select(**body, nullptr, Use::Rows);
  storedQueries_.pop_back();
  inlineLiterals_ = outerInline;
  declared_ = outerDeclared;
  // The names of its tables mean nothing outside.
  for (Output& column : written.outputs) column.value.field = nullptr;
  return Source{alias, nullptr, std::move(written.sql), std::move(written.outputs), false};
}

bool StatementWriter::isInner(const FromNode& node) {
  return isTable(node) || (node.join == JoinKind::Inner && isInner(*node.left) && isInner(*node.right));
}

std::string StatementWriter::fromSource(const FromNode& node, const Scope& scope) const {
  const Source& source = *std::find_if(scope.sources.begin(), scope.sources.end(),
                                       [&](const Source& candidate) { return sameName(candidate.alias, node.alias); });
  if (source.table != nullptr) return quotedName(source.table->name) + " AS " + quotedName(source.alias);
  return "(" + source.sql + ") AS " + quotedName(source.alias);
}

// SQLite takes parentheses around a join for a subquery, which costs row ids and speed. So inner joins are written in
// one line, and a right join as a left join the other way round. What remains in parentheses is the far side of an
// outer join, and the second one of two outer joins that an inner one puts together.
std::string StatementWriter::from(const FromNode& node, Scope& scope) {
  if (isTable(node)) return fromSource(node, scope);
  if (node.join == JoinKind::Inner) {
    const bool swap = !isInner(*node.right);
    std::string sql = from(swap ? *node.right : *node.left, scope);
    const FromNode& second = swap ? *node.left : *node.right;
    std::vector<std::string> tables;
    std::vector<std::string> conditions;
    if (isInner(second)) {
      flatten(second, scope, tables, conditions);
    } else {
      tables.push_back("(" + from(second, scope) + ")");
    }
    for (const std::string& table : tables) sql += " JOIN " + table;
    if (node.on != nullptr) conditions.push_back(operand(expression(*node.on, scope)));
    if (!conditions.empty()) sql += " ON " + joined(conditions, " AND ");
    return sql;
  }
  const FromNode& kept = node.join == JoinKind::Left ? *node.left : *node.right;
  const FromNode& optional = node.join == JoinKind::Left ? *node.right : *node.left;
  std::string sql = from(kept, scope) + " LEFT JOIN ";
  sql += isTable(optional) ? from(optional, scope) : "(" + from(optional, scope) + ")";
  return sql + " ON " + condition(*node.on, scope);
}

void StatementWriter::flatten(const FromNode& node, Scope& scope, std::vector<std::string>& tables,
                              std::vector<std::string>& conditions) {
  if (isTable(node)) {
    tables.push_back(fromSource(node, scope));
    return;
  }
  flatten(*node.left, scope, tables, conditions);
  flatten(*node.right, scope, tables, conditions);
  if (node.on != nullptr) conditions.push_back(operand(expression(*node.on, scope)));
}

}  // namespace quillmarden
