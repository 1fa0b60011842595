#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sqlgen/runnable/types.h"

namespace quillmarden {

// Expressions in defaults and computed columns of PostgreSQL and MySQL. What comes out of here is known to be taken by
// a server: its functions exist, and its operands fit each other.

/// What an expression gives.
enum class ValueKind {
  Null,
  Literal,  ///< a text in quotes: PostgreSQL takes it for whatever stands beside it
  Integer,
  Exact,
  Real,
  Text,
  Date,
  Time,
  ZonedTime,
  Moment,
  ZonedMoment,
  Interval,
  Boolean,
  Uuid,
  Json,
  Array,
  Other  ///< known by its `base` alone
};

struct Expression {
  std::string sql;
  ValueKind kind = ValueKind::Null;
  std::string base{};                   ///< of a cast: the type's; of a literal: its text
  std::optional<double> number{};       ///< of numbers without functions
  ValueKind element = ValueKind::Null;  ///< of an array
  bool call = false;                    ///< its outermost part is a function, a cast or joined texts
  bool single = false;                  ///< a function and nothing else
  bool now = false;                     ///< the present moment
  bool steady = true;                   ///< gives the same for the same columns
};

/// The column of this name as an operand, nothing where there is none.
using ColumnLookUp = std::function<std::optional<Expression>(std::string_view name)>;

struct ReadExpression {
  Expression expression;
  std::size_t used = 0;  ///< tokens; behind them stands no more of the expression
};

/// Reads an expression from its first token on. Nothing for one that is not known to be taken.
std::optional<ReadExpression> readExpression(const Dialect& dialect, const std::vector<SqlToken>& tokens,
                                             const ColumnLookUp& columns = {});

/// Whether the server puts what the expression gives into a column of the type by itself.
bool isAssignable(const Dialect& dialect, const Expression& expression, const ScriptType& type);

/// What values of a type are to an expression.
ValueKind kindOf(const ScriptType& type);

/// What an operator gives, nothing where the server has none for these operands.
std::optional<ValueKind> kindOfResult(ScriptKind dialect, std::string_view sign, const Expression& left,
                                      const Expression& right);
/// The number that it gives where both are known.
std::optional<double> resultOf(std::string_view sign, const Expression& left, const Expression& right);
/// Whether a value can be cast to the type, as far as that can be said without the value.
bool isCastable(const Dialect& dialect, const Expression& value, const ScriptType& type);

/// Calls a function with operands that have been read; nothing for one that is not known, or has others.
std::optional<Expression> callFunction(ScriptKind kind, const std::string& name, std::vector<Expression> operands,
                                       bool brackets);

}  // namespace quillmarden
