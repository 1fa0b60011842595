#include <cmath>
#include <optional>

#include "engine/convert.h"
#include "engine/sqlite_functions.h"

namespace quillmarden {

namespace {

bool eitherNull(sqlite3_value** arguments) { return isNullArgument(arguments[0]) || isNullArgument(arguments[1]); }

void resultFinite(sqlite3_context* context, double number) {
  if (!std::isfinite(number)) throw EngineError(engine_error::kOverflow, "式の計算結果が大きすぎます.");
  resultNumber(context, number);
}

[[noreturn]] void throwDivision() { throw EngineError(engine_error::kDivisionByZero, "0 で除算しました."); }

// Days since 1899/12/30 of a text that is a date and no number.
std::optional<double> daysOf(sqlite3_value* argument) {
  if (sqlite3_value_type(argument) != SQLITE_TEXT) return std::nullopt;
  std::string buffer;
  const std::string_view text = textArgument(argument, buffer);
  if (parseNumber(text)) return std::nullopt;
  const std::optional<std::string> date = normaliseDate(text);
  if (!date) return std::nullopt;
  return daysFromDate(*date);
}

void resultDate(sqlite3_context* context, double days) {
  const std::optional<std::string> date = dateFromDays(days);
  if (!date) throw EngineError(engine_error::kConversion, "式の計算結果が日付の範囲を超えています.");
  resultText(context, *date);
}

// "+" where the kinds of its operands show only now: two texts are joined, a date is moved on by days.
void add(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (eitherNull(arguments)) return;
  const bool leftText = sqlite3_value_type(arguments[0]) == SQLITE_TEXT;
  const bool rightText = sqlite3_value_type(arguments[1]) == SQLITE_TEXT;
  if (leftText && rightText) {
    std::string buffer;
    std::string joined(textArgument(arguments[0], buffer));
    joined += textArgument(arguments[1], buffer);
    resultText(context, joined);
    return;
  }
  if (const std::optional<double> days = daysOf(arguments[0])) {
    resultDate(context, *days + numberArgument(arguments[1]));
  } else if (const std::optional<double> moved = daysOf(arguments[1])) {
    resultDate(context, numberArgument(arguments[0]) + *moved);
  } else {
    resultFinite(context, numberArgument(arguments[0]) + numberArgument(arguments[1]));
  }
}

void subtract(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (eitherNull(arguments)) return;
  const std::optional<double> left = daysOf(arguments[0]);
  const std::optional<double> right = daysOf(arguments[1]);
  if (left && right) {
    resultNumber(context, *left - *right);
  } else if (left) {
    resultDate(context, *left - numberArgument(arguments[1]));
  } else {
    resultFinite(context, numberArgument(arguments[0]) - numberArgument(arguments[1]));
  }
}

void divide(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (eitherNull(arguments)) return;
  const double divisor = numberArgument(arguments[1]);
  if (divisor == 0) throwDivision();
  const double quotient = numberArgument(arguments[0]) / divisor;
  if (!std::isfinite(quotient)) throw EngineError(engine_error::kOverflow, "式の計算結果が大きすぎます.");
  sqlite3_result_double(context, quotient);
}

void quotient(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (eitherNull(arguments)) return;
  const std::int64_t divisor = wholeArgument(arguments[1]);
  if (divisor == 0) throwDivision();
  sqlite3_result_int64(context, wholeArgument(arguments[0]) / divisor);
}

void modulo(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (eitherNull(arguments)) return;
  const std::int64_t divisor = wholeArgument(arguments[1]);
  if (divisor == 0) throwDivision();
  sqlite3_result_int64(context, wholeArgument(arguments[0]) % divisor);
}

void power(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (eitherNull(arguments)) return;
  resultFinite(context, std::pow(numberArgument(arguments[0]), numberArgument(arguments[1])));
}

template <double (*function)(double)>
void ofNumber(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (!isNullArgument(arguments[0])) resultNumber(context, function(numberArgument(arguments[0])));
}

double sign(double number) { return number > 0 ? 1 : number < 0 ? -1 : 0; }
double toFloor(double number) { return std::floor(number); }
double toZero(double number) { return std::trunc(number); }
double same(double number) { return number; }

double squareRoot(double number) {
  if (number < 0) throw EngineError(engine_error::kConversion, "関数「Sqr」の引数が負の数です.");
  return std::sqrt(number);
}

// Half to even, as Basic rounds.
void roundTo(sqlite3_context* context, int count, sqlite3_value** arguments) {
  if (isNullArgument(arguments[0]) || (count == 2 && isNullArgument(arguments[1]))) return;
  const double number = numberArgument(arguments[0]);
  const int digits = count == 2 ? wholeArgument(arguments[1]) : 0;
  constexpr int kMostDigits = 15;
  if (digits < 0 || digits > kMostDigits) {
    throw EngineError(engine_error::kConversion, "関数「Round」の桁数は 0 から 15 です.");
  }
  const double scale = std::pow(10.0, digits);
  const double scaled = number * scale;
  resultNumber(context, std::isfinite(scaled) ? roundHalfToEven(scaled) / scale : number);
}

void cint(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (isNullArgument(arguments[0])) return;
  const int number = wholeArgument(arguments[0]);
  if (number < -32768 || number > 32767)
    throw EngineError(engine_error::kOverflow, "数値が整数型の範囲を超えています.");
  sqlite3_result_int(context, number);
}

void clng(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (!isNullArgument(arguments[0])) sqlite3_result_int(context, wholeArgument(arguments[0]));
}

// Val(text): the number that its beginning makes, blanks passed over; 0 where there is none.
void val(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (isNullArgument(arguments[0])) return;
  std::string buffer;
  std::string text;
  for (const char letter : textArgument(arguments[0], buffer)) {
    if (letter == ' ' || letter == '\t' || letter == '\r' || letter == '\n') continue;
    const bool part = (letter >= '0' && letter <= '9') || letter == '.' || letter == '-' || letter == '+' ||
                      letter == 'e' || letter == 'E' || letter == 'd' || letter == 'D';
    constexpr std::size_t kLongest = 400;
    if (!part || text.size() >= kLongest) break;
    text += letter == 'd' || letter == 'D' ? 'e' : letter;
  }
  while (!text.empty()) {
    if (const std::optional<double> number = parseNumber(text)) {
      resultFinite(context, *number);
      return;
    }
    text.pop_back();
  }
  sqlite3_result_int(context, 0);
}

void isNumeric(sqlite3_context* context, int, sqlite3_value** arguments) {
  const int kind = sqlite3_value_type(arguments[0]);
  std::string buffer;
  const bool number = kind == SQLITE_INTEGER || kind == SQLITE_FLOAT ||
                      (kind == SQLITE_TEXT && parseNumber(textArgument(arguments[0], buffer)).has_value());
  sqlite3_result_int(context, number ? 1 : 0);
}

}  // namespace

void registerNumberFunctions(sqlite3* connection) {
  addFunction<add>(connection, "qm_add", 2);
  addFunction<subtract>(connection, "qm_subtract", 2);
  addFunction<divide>(connection, "qm_divide", 2);
  addFunction<quotient>(connection, "qm_quotient", 2);
  addFunction<modulo>(connection, "qm_modulo", 2);
  addFunction<power>(connection, "qm_power", 2);
  addFunction<ofNumber<sign>>(connection, "qm_sgn", 1);
  addFunction<ofNumber<toFloor>>(connection, "qm_int", 1);
  addFunction<ofNumber<toZero>>(connection, "qm_fix", 1);
  addFunction<ofNumber<same>>(connection, "qm_cdbl", 1);
  addFunction<ofNumber<squareRoot>>(connection, "qm_sqr", 1);
  addFunction<roundTo>(connection, "qm_round", -1);
  addFunction<cint>(connection, "qm_cint", 1);
  addFunction<clng>(connection, "qm_clng", 1);
  addFunction<val>(connection, "qm_val", 1);
  addFunction<isNumeric>(connection, "qm_isnumeric", 1);
}

}  // namespace quillmarden
