#pragma once

#include <string>
#include <string_view>

#include "sqlgen/runnable/dialect.h"
#include "sqlgen/runnable/expressions.h"
#include "sqlgen/runnable/model.h"

namespace quillmarden {

/// A part of a column's definition, a remark about what could not be had of it, or both.
struct ColumnPart {
  std::string sql;
  std::string remark;
};

/// " DEFAULT …" by what the text is: a value of the type, or an expression that gives one; of MySQL also what the
/// server sets at each change.
ColumnPart defaultPart(const Dialect& dialect, const ScriptColumn& column);

/// The condition of a column's value list or range. `name` is the column's quoted name.
ColumnPart checkPart(const Dialect& dialect, const ScriptColumn& column, std::string_view name);

/// A computed column behind its name. `columns` are those that the expression may name.
ColumnPart computedPart(const Dialect& dialect, const ScriptColumn& column, const ColumnLookUp& columns);

}  // namespace quillmarden
