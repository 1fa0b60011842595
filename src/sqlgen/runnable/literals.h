#pragma once

#include <string>
#include <string_view>

#include "sqlgen/runnable/dialect.h"
#include "sqlgen/runnable/model.h"

namespace quillmarden {

/// The text as a literal of the kind: quotes doubled, line ends kept where the kind can.
std::string textLiteral(const Dialect& dialect, std::string_view text);
/// The same behind what the script holds.
void appendTextLiteral(const Dialect& dialect, std::string_view text, std::string& script);

/// The default by what it is: a number and an expression stay bare, a text and a date get quotes. "" without one.
std::string defaultLiteral(const Dialect& dialect, const ScriptColumn& column);

/// The condition of a column's value list or range, "" without one. `name` is the column's quoted name.
std::string checkCondition(const Dialect& dialect, const ScriptColumn& column, std::string_view name);

}  // namespace quillmarden
