#include "engine/sqlite_writer.h"

#include <algorithm>
#include <utility>

#include "engine/convert.h"
#include "engine/sqlite_connection.h"
#include "engine/sqlite_writer_state.h"

namespace quillmarden {

namespace {

// As Access names a column that is no column of a table and has no AS.
constexpr std::size_t kFirstUnnamed = 1000;

bool isAggregated(const SelectStatement& select) {
  return !select.groupBy.empty() || select.having != nullptr ||
         std::any_of(select.items.begin(), select.items.end(), [](const SelectItem& item) {
           return item.expression != nullptr && hasAggregate(*item.expression);
         });
}

int outputOf(const std::vector<Output>& outputs, const std::string& name) {
  const auto found =
      std::find_if(outputs.begin(), outputs.end(), [&](const Output& output) { return sameName(output.name, name); });
  return found == outputs.end() ? -1 : static_cast<int>(found - outputs.begin());
}

std::string unnamed(std::size_t index) { return "Expr" + std::to_string(kFirstUnnamed + index); }

// Columns of several tables that share a name are told apart as "alias.name". A column that comes twice keeps its name
// the first time.
void nameDuplicates(std::vector<Output>& outputs) {
  const auto byPlace = [&](const auto& nameOf) {
    std::vector<std::pair<std::string, std::size_t>> names;
    names.reserve(outputs.size());
    for (std::size_t i = 0; i < outputs.size(); ++i) names.emplace_back(lowerName(nameOf(outputs[i])), i);
    std::sort(names.begin(), names.end());
    return names;
  };
  const auto full = byPlace([](const Output& output) {
    return output.named || output.qualifier.empty() ? output.name : output.qualifier + "." + output.name;
  });
  for (std::size_t i = 1; i < full.size(); ++i) {
    Output& output = outputs[full[i].second];
    if (full[i - 1].first != full[i].first || output.named) continue;
    output.name = unnamed(full[i].second);
    output.qualifier.clear();
  }
  const auto names = byPlace([](const Output& output) { return output.name; });
  for (std::size_t i = 0; i < names.size(); ++i) {
    const bool shared = (i > 0 && names[i - 1].first == names[i].first) ||
                        (i + 1 < names.size() && names[i + 1].first == names[i].first);
    Output& output = outputs[names[i].second];
    if (shared && !output.named && !output.qualifier.empty()) output.name = output.qualifier + "." + output.name;
  }
}

}  // namespace

StatementWriter::StatementWriter(const Statement& statement, const SchemaView& schema)
    : statement_(statement), schema_(schema), declared_(&statement.parameters) {
  result_.literalCount = statement.literalCount;
  // SQLite numbers its slots up to 32,766.
  constexpr int kMostSlots = 32000;
  if (statement.literalCount > kMostSlots) {
    inlineLiterals_ = true;
    result_.literalCount = 0;
    result_.cacheable = false;
  }
}

SqliteStatement StatementWriter::write() {
  if (const auto* query = std::get_if<std::shared_ptr<const SelectStatement>>(&statement_.body)) {
    WrittenSelect written = select(**query, nullptr, Use::Result);
    result_.isSelect = true;
    result_.columnCount = static_cast<int>(written.outputs.size());
    result_.sql = std::move(written.sql);
  } else if (const auto* insertion = std::get_if<std::shared_ptr<const InsertStatement>>(&statement_.body)) {
    insert(**insertion);
  } else if (const auto* change = std::get_if<std::shared_ptr<const UpdateStatement>>(&statement_.body)) {
    update(**change);
  } else if (const auto* removal = std::get_if<std::shared_ptr<const DeleteStatement>>(&statement_.body)) {
    deletion(**removal);
  } else {
    throw EngineError(engine_error::kNotAnAction, "定義の文はここでは実行できません.");
  }
  return std::move(result_);
}

WrittenSelect StatementWriter::select(const SelectStatement& select, const Scope* outer, Use use) {
  constexpr int kMostDepth = 100;
  if (++depth_ > kMostDepth) throw EngineError(engine_error::kSyntax, "SELECT の入れ子が深すぎます.");
  const bool inUnion = !select.unions.empty();
  WrittenSelect result = selectCore(select, outer, use, inUnion);
  for (const SelectStatement::Union& further : select.unions) {
    const WrittenSelect next = selectCore(*further.select, outer, Use::Rows, inUnion);
    if (next.outputs.size() != result.outputs.size()) {
      throw EngineError(engine_error::kSyntax, "構文エラー: UNION の SELECT の項目数が違います.");
    }
    result.sql += further.all ? " UNION ALL " : " UNION ";
    result.sql += next.sql;
    for (std::size_t i = 0; i < next.outputs.size(); ++i) {
      Written& column = result.outputs[i].value;
      const ValueType type = next.outputs[i].value.type;
      column.field = nullptr;
      if (column.type == ValueType::Null) column.type = type;
      if (column.type != type && type != ValueType::Null) column.type = ValueType::Unknown;
    }
  }
  if (inUnion && !select.orderBy.empty()) result.sql += unionOrderBy(select, result.outputs);
  --depth_;
  return result;
}

WrittenSelect StatementWriter::selectCore(const SelectStatement& select, const Scope* outer, Use use, bool inUnion) {
  Scope scope;
  scope.outer = outer;
  if (select.from != nullptr) addSources(*select.from, scope, false);
  WrittenSelect result;
  scope.select = &select;
  result.outputs = outputs(select, scope);
  const bool aggregated = isAggregated(select);
  const bool distinct = select.distinct == Distinct::Values;
  const std::vector<std::size_t> shown = shownSources(scope, result.outputs);

  std::string columns;
  for (const Output& output : result.outputs) {
    if (!columns.empty()) columns += ", ";
    columns += operand(output.value);
    // Rows that differ in case only are the same row to DISTINCT and UNION.
    if ((distinct || inUnion) && output.value.type == ValueType::Text) columns += " COLLATE NOCASE";
    const auto number = static_cast<std::size_t>(&output - result.outputs.data()) + 1;
    columns += " AS " + quotedName(use == Use::Columns ? "c" + std::to_string(number) : output.name);
  }
  const auto rowId = [&](std::size_t source) {
    const Source& table = scope.sources[source];
    return quotedName(table.alias) + "." + std::string(rowIdName(*table.table));
  };
  if (use == Use::Result) {
    for (const Output& output : result.outputs) result_.columns.push_back({output.name, -1, {}});
    const bool derived = std::any_of(scope.sources.begin(), scope.sources.end(),
                                     [](const Source& source) { return source.table == nullptr; });
    if (!aggregated && !distinct && !inUnion && !derived) {
      show(scope, result.outputs, shown);
      for (const std::size_t source : shown) columns += ", " + rowId(source);
    }
  }
  result.sql = std::string(distinct ? "SELECT DISTINCT " : "SELECT ") + columns;

  scope.select = nullptr;
  if (select.from != nullptr) result.sql += " FROM " + from(*select.from, scope);
  if (select.where != nullptr) result.sql += " WHERE " + condition(*select.where, scope);
  scope.select = &select;
  std::string groups;
  for (const ExpressionPtr& group : select.groupBy) {
    const Written written = value(*group, scope);
    groups += (groups.empty() ? "" : ", ") + operand(written);
    groups += collation(written.type);
  }
  // DISTINCTROW takes the rows of the shown tables once, however many rows of the others they meet.
  if (select.distinct == Distinct::Rows && !aggregated && shown.size() < scope.sources.size()) {
    for (const std::size_t source : shown) groups += (groups.empty() ? "" : ", ") + rowId(source);
  }
  if (!groups.empty()) result.sql += " GROUP BY " + groups;
  if (select.having != nullptr) result.sql += " HAVING " + condition(*select.having, scope);
  if (!inUnion && !select.orderBy.empty()) result.sql += orderBy(select, scope, result.outputs);
  if (select.top) {
    result.sql += " LIMIT " + std::to_string(*select.top);
    if (inUnion) result.sql = "SELECT * FROM (" + result.sql + ")";
    result_.cacheable = false;
  }
  return result;
}

std::vector<Output> StatementWriter::outputs(const SelectStatement& select, Scope& scope) {
  std::vector<Output> result;
  for (const SelectItem& item : select.items) {
    if (item.expression == nullptr) {
      addStar(item, scope, result);
      continue;
    }
    Output output;
    output.value = value(*item.expression, scope);
    output.named = !item.alias.empty();
    if (output.named) {
      output.name = item.alias;
    } else if (output.value.source >= 0 && item.expression->kind == ExpressionKind::Name) {
      output.name = output.value.field != nullptr ? output.value.field->name : item.expression->name;
      output.qualifier = scope.sources[static_cast<std::size_t>(output.value.source)].alias;
    } else {
      output.name = unnamed(result.size());
    }
    result.push_back(std::move(output));
  }
  nameDuplicates(result);
  return result;
}

void StatementWriter::addStar(const SelectItem& item, const Scope& scope, std::vector<Output>& result) const {
  bool found = false;
  for (std::size_t i = 0; i < scope.sources.size(); ++i) {
    const Source& source = scope.sources[i];
    if (!item.starOf.empty() && !sameName(source.alias, item.starOf)) continue;
    found = true;
    const auto add = [&](const std::string& name, ValueType type, const FieldDef* field) {
      Written column{quotedName(source.alias) + "." + quotedName(name), type, true, static_cast<int>(i), field};
      result.push_back({name, std::move(column), source.alias, false});
    };
    if (source.table == nullptr) {
      for (const Output& column : source.columns) add(column.name, column.value.type, nullptr);
    } else {
      for (const FieldDef& field : source.table->fields) add(field.name, typeOf(field), &field);
    }
  }
  if (found) return;
  if (item.starOf.empty()) throw EngineError(engine_error::kSyntax, "構文エラー: 「*」には FROM が必要です.");
  throw EngineError(engine_error::kNoSuchTable, "「" + item.starOf + ".*」のテーブルが FROM にありません.");
}

// The base tables with a column among the outputs, in the order of FROM.
std::vector<std::size_t> StatementWriter::shownSources(const Scope& scope, const std::vector<Output>& outputs) {
  std::vector<std::size_t> result;
  for (std::size_t i = 0; i < scope.sources.size(); ++i) {
    if (scope.sources[i].table == nullptr || scope.sources[i].nested) continue;
    const bool shown = std::any_of(outputs.begin(), outputs.end(), [&](const Output& output) {
      return output.value.field != nullptr && output.value.source == static_cast<int>(i);
    });
    if (shown) result.push_back(i);
  }
  return result;
}

void StatementWriter::show(const Scope& scope, const std::vector<Output>& outputs,
                           const std::vector<std::size_t>& shown) {
  for (const std::size_t source : shown) {
    const int column = static_cast<int>(outputs.size() + result_.shownTables.size());
    const int table = static_cast<int>(result_.shownTables.size());
    result_.shownTables.push_back({scope.sources[source].table->name, scope.sources[source].alias, column});
    for (std::size_t i = 0; i < outputs.size(); ++i) {
      const Written& value = outputs[i].value;
      if (value.field == nullptr || value.source != static_cast<int>(source)) continue;
      result_.columns[i].shownTable = table;
      result_.columns[i].field = value.field->name;
    }
  }
}

std::string StatementWriter::orderBy(const SelectStatement& select, Scope& scope, const std::vector<Output>& outputs) {
  const bool aggregated = isAggregated(select);
  std::string terms;
  for (const OrderItem& item : select.orderBy) {
    const Expression& node = *item.expression;
    // A constant sorts nothing, and SQLite would take it for the number of a column.
    if (node.kind == ExpressionKind::Constant) continue;
    std::string term;
    int output = -1;
    // Over groups a name that AS gives hides the column of that name, which has no one value there.
    if (aggregated && node.kind == ExpressionKind::Name && node.qualifier.empty())
      output = outputOf(outputs, node.name);
    if (output >= 0) {
      const Output& column = outputs[static_cast<std::size_t>(output)];
      term = std::to_string(output + 1);
      term += collation(column.value.type);
    } else if (node.kind == ExpressionKind::Literal) {
      term = ordinal(node, outputs);
    } else {
      const Written written = value(node, scope);
      term = operand(written);
      term += collation(written.type);
    }
    if (item.descending) term += " DESC";
    terms += (terms.empty() ? " ORDER BY " : ", ") + term;
  }
  return terms;
}

std::string StatementWriter::unionOrderBy(const SelectStatement& select, const std::vector<Output>& outputs) {
  std::string terms;
  for (const OrderItem& item : select.orderBy) {
    const Expression& node = *item.expression;
    std::string term;
    if (node.kind == ExpressionKind::Literal) {
      term = ordinal(node, outputs);
    } else {
      const int output = node.kind == ExpressionKind::Name ? outputOf(outputs, node.name) : -1;
      if (output < 0) {
        throw EngineError(engine_error::kSyntax,
                          "構文エラー: UNION の ORDER BY には最初の SELECT の項目名だけが使えます.");
      }
      term = std::to_string(output + 1);
      term += collation(outputs[static_cast<std::size_t>(output)].value.type);
    }
    if (item.descending) term += " DESC";
    terms += (terms.empty() ? " ORDER BY " : ", ") + term;
  }
  return terms;
}

std::string StatementWriter::ordinal(const Expression& literal, const std::vector<Output>& outputs) {
  const auto* number = std::get_if<std::int64_t>(&literal.value);
  if (number == nullptr || *number < 1 || *number > static_cast<std::int64_t>(outputs.size())) {
    throw EngineError(engine_error::kSyntax, "構文エラー: ORDER BY の項目の番号が正しくありません.");
  }
  result_.cacheable = false;
  std::string result = std::to_string(*number);
  result += collation(outputs[static_cast<std::size_t>(*number) - 1].value.type);
  return result;
}

SqliteStatement writeSqlite(const Statement& statement, const SchemaView& schema) {
  return StatementWriter(statement, schema).write();
}

}  // namespace quillmarden
