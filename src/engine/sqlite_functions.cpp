#include "engine/sqlite_functions.h"

#include <cmath>

#include "engine/convert.h"
#include "engine/like.h"
#include "engine/sqlite_writer.h"

namespace quillmarden {

namespace {

// qm_store(value, type, size, zero length allowed, table, column): the value as the column stores it.
void store(sqlite3_context* context, int, sqlite3_value** arguments) {
  sqlite3_value* value = arguments[0];
  const int kind = sqlite3_value_type(value);
  if (kind == SQLITE_NULL) return;
  const auto type = static_cast<FieldType>(sqlite3_value_int(arguments[1]));
  const int size = sqlite3_value_int(arguments[2]);
  const bool zeroLength = sqlite3_value_int(arguments[3]) != 0;
  // What most values are goes through without a copy.
  if (kind == SQLITE_TEXT && (type == FieldType::Text || type == FieldType::Memo)) {
    const int bytes = sqlite3_value_bytes(value);
    if ((bytes > 0 || zeroLength) && (type == FieldType::Memo || size == 0 || bytes <= size)) {
      sqlite3_result_value(context, value);
      return;
    }
  }
  // A flag column may hold any whole number: other tools and soft deletion write 1.
  if (kind == SQLITE_INTEGER && type == FieldType::Flag) {
    sqlite3_result_value(context, value);
    return;
  }
  // The empty text stands for no date.
  if (kind == SQLITE_TEXT && type == FieldType::Date && sqlite3_value_bytes(value) == 0) return;
  FieldDef field;
  field.type = type;
  field.size = size;
  field.allowZeroLength = zeroLength;
  Value given = valueArgument(value);
  if (fitsColumn(given, field)) {
    sqlite3_result_value(context, value);
    return;
  }
  std::string buffer;
  field.name = textArgument(arguments[5], buffer);
  const std::string table(textArgument(arguments[4], buffer));
  const Value stored = convertForColumn(std::move(given), field, table);
  if (const auto* text = std::get_if<std::string>(&stored)) {
    resultText(context, *text);
  } else if (const auto* whole = std::get_if<std::int64_t>(&stored)) {
    sqlite3_result_int64(context, *whole);
  } else if (const auto* real = std::get_if<double>(&stored)) {
    sqlite3_result_double(context, *real);
  }
}

void like(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (isNullArgument(arguments[0]) || isNullArgument(arguments[1])) return;
  std::string textBuffer;
  std::string patternBuffer;
  const std::string_view text = textArgument(arguments[0], textBuffer);
  sqlite3_result_int(context, matchesLike(text, textArgument(arguments[1], patternBuffer)) ? 1 : 0);
}

// qm_text(value): the value as a part of "&", Null as the empty text.
void text(sqlite3_context* context, int, sqlite3_value** arguments) {
  std::string buffer;
  resultText(context, textArgument(arguments[0], buffer));
}

}  // namespace

std::string_view textArgument(sqlite3_value* argument, std::string& buffer) {
  switch (sqlite3_value_type(argument)) {
    case SQLITE_NULL:
      return {};
    case SQLITE_FLOAT:
      buffer = numberText(sqlite3_value_double(argument));
      return buffer;
    default: {
      const unsigned char* text = sqlite3_value_text(argument);
      if (text == nullptr) return {};
      return {reinterpret_cast<const char*>(text), static_cast<std::size_t>(sqlite3_value_bytes(argument))};
    }
  }
}

double numberArgument(sqlite3_value* argument) {
  if (sqlite3_value_type(argument) != SQLITE_TEXT) return sqlite3_value_double(argument);
  std::string buffer;
  const std::string_view text = textArgument(argument, buffer);
  const std::optional<double> number = parseNumber(text);
  if (!number) {
    throw EngineError(engine_error::kConversion,
                      "式の中の「" + std::string(text.substr(0, 60)) + "」は数値ではありません.");
  }
  return *number;
}

int wholeArgument(sqlite3_value* argument) {
  const double number = roundHalfToEven(numberArgument(argument));
  constexpr double kLowest = -2147483648.0;
  constexpr double kHighest = 2147483647.0;
  if (!(number >= kLowest && number <= kHighest)) {
    throw EngineError(engine_error::kConversion, "式の中の数値 " + numberText(number) + " が整数の範囲を超えています.");
  }
  return static_cast<int>(number);
}

Value valueArgument(sqlite3_value* argument) {
  switch (sqlite3_value_type(argument)) {
    case SQLITE_NULL:
      return {};
    case SQLITE_INTEGER:
      return std::int64_t{sqlite3_value_int64(argument)};
    case SQLITE_FLOAT:
      return sqlite3_value_double(argument);
    default: {
      std::string buffer;
      return std::string(textArgument(argument, buffer));
    }
  }
}

void resultText(sqlite3_context* context, std::string_view text) {
  sqlite3_result_text64(context, text.data(), text.size(), SQLITE_TRANSIENT, SQLITE_UTF8);
}

void resultNumber(sqlite3_context* context, double number) {
  constexpr double kExact = 9007199254740992.0;
  if (std::fabs(number) < kExact && number == std::trunc(number)) {
    sqlite3_result_int64(context, static_cast<std::int64_t>(number));
  } else {
    sqlite3_result_double(context, number);
  }
}

void registerFunctions(sqlite3* connection) {
  addFunction<store>(connection, "qm_store", 6);
  addFunction<like>(connection, "qm_like", 2);
  addFunction<text>(connection, "qm_text", 1);
  registerTextFunctions(connection);
  registerNumberFunctions(connection);
  registerDateFunctions(connection);
  registerAggregates(connection);
}

}  // namespace quillmarden
