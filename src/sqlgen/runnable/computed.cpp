#include "common/text.h"
#include "sqlgen/clauses.h"
#include "sqlgen/runnable/column_parts.h"

namespace quillmarden {

namespace {

constexpr std::string_view kNoComputed = "計算式の項目を作成できません";

/// The type of what the expression gives; "" for what no computed column can have.
std::string_view computedType(ScriptKind kind, ValueKind value) {
  const bool mySql = kind == ScriptKind::MySql;
  switch (value) {
    case ValueKind::Integer:
    case ValueKind::Exact:
    case ValueKind::Real:
      return mySql ? "decimal(65,10)" : "numeric";
    case ValueKind::Text:
      return "text";
    case ValueKind::Date:
      return "date";
    case ValueKind::Moment:
      return mySql ? "datetime" : "timestamp";
    default:
      return {};
  }
}

}  // namespace

ColumnPart computedPart(const Dialect& dialect, const ScriptColumn& column, const ColumnLookUp& columns) {
  // In one line: an empty one would end the statement for some command-line tools.
  const std::string text = oneLine(trim(column.remark));
  const auto tokens = sqlTokens(dialect.kind, text);
  if (!tokens || tokens->size() < 2) return {{}, std::string(kNoComputed)};
  if (!dialect.knowsTypes) {
    const std::string sql = dialect.computed(text, {});
    return sql.empty() ? ColumnPart{{}, std::string(kNoComputed)} : ColumnPart{sql, {}};
  }
  const auto read = readExpression(dialect, *tokens, columns);
  if (!read || (*tokens)[read->used].kind != SqlToken::Kind::End || !read->expression.steady)
    return {{}, std::string(kNoComputed)};
  const std::string_view type = computedType(dialect.kind, read->expression.kind);
  if (type.empty()) return {{}, std::string(kNoComputed)};
  return {dialect.computed(read->expression.sql, type), {}};
}

}  // namespace quillmarden
