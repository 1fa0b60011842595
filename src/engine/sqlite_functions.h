#pragma once

#include <sqlite3.h>

#include <string>
#include <string_view>

#include "engine/sqlite_error.h"
#include "engine/value.h"

// What the SQL functions of this system share. Each takes Null for Null unless it says otherwise.
namespace quillmarden {

inline bool isNullArgument(sqlite3_value* argument) { return sqlite3_value_type(argument) == SQLITE_NULL; }

/// The argument as text; numbers in their shortest form. Valid until the function returns, for a number until the
/// buffer goes.
std::string_view textArgument(sqlite3_value* argument, std::string& buffer);
/// The argument as a number. Throws kConversion for a text that is none.
double numberArgument(sqlite3_value* argument);
/// The same as a whole number, rounded half to even; throws kConversion beyond 32 bits.
int wholeArgument(sqlite3_value* argument);
Value valueArgument(sqlite3_value* argument);

void resultText(sqlite3_context* context, std::string_view text);
/// A number that is whole within 53 bits as an integer, all others as real.
void resultNumber(sqlite3_context* context, double number);

using Function = void (*)(sqlite3_context*, int, sqlite3_value**);

/// Runs a function body; a fault of the engine ends the statement with its number and text.
template <Function body>
void guarded(sqlite3_context* context, int count, sqlite3_value** arguments) {
  try {
    body(context, count, arguments);
  } catch (const EngineError& fault) {
    resultError(context, fault);
  } catch (const std::bad_alloc&) {
    sqlite3_result_error_nomem(context);
  }
}

/// Makes a function known. `count` arguments, -1 for any number.
template <Function body>
void addFunction(sqlite3* connection, const char* name, int count, int flags = SQLITE_DETERMINISTIC) {
  sqlite3_create_function_v2(connection, name, count, SQLITE_UTF8 | SQLITE_INNOCUOUS | flags, nullptr, guarded<body>,
                             nullptr, nullptr, nullptr);
}

// The groups of functions, one file each.
void registerTextFunctions(sqlite3* connection);
void registerNumberFunctions(sqlite3* connection);
void registerDateFunctions(sqlite3* connection);
void registerAggregates(sqlite3* connection);

}  // namespace quillmarden
