#include <chrono>
#include <ctime>
#include <optional>

#include "engine/convert.h"
#include "engine/sqlite_functions.h"

namespace quillmarden {

namespace {

constexpr std::size_t kDateLength = 10;  // "yyyy/mm/dd"
constexpr const char* kMidnight = " 00:00:00";
constexpr const char* kFirstDay = "1899/12/30 ";

std::string now() {
  const std::time_t moment = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm local{};
  localtime_r(&moment, &local);
  char text[32];
  const std::size_t length = std::strftime(text, sizeof text, "%Y/%m/%d %H:%M:%S", &local);
  return std::string(text, length);
}

void nowFunction(sqlite3_context* context, int, sqlite3_value**) { resultText(context, now()); }
void dateFunction(sqlite3_context* context, int, sqlite3_value**) {
  resultText(context, now().substr(0, kDateLength) + kMidnight);
}
void timeFunction(sqlite3_context* context, int, sqlite3_value**) {
  resultText(context, kFirstDay + now().substr(kDateLength + 1));
}

std::optional<std::string> dateOf(sqlite3_value* argument) {
  const int kind = sqlite3_value_type(argument);
  if (kind == SQLITE_INTEGER || kind == SQLITE_FLOAT) return dateFromDays(sqlite3_value_double(argument));
  std::string buffer;
  return normaliseDate(textArgument(argument, buffer));
}

std::string dateArgument(sqlite3_value* argument) {
  std::optional<std::string> date = dateOf(argument);
  if (!date) throw EngineError(engine_error::kConversion, "式の中の値は日付ではありません.");
  return *std::move(date);
}

void cdate(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (!isNullArgument(arguments[0])) resultText(context, dateArgument(arguments[0]));
}

void dateValue(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (isNullArgument(arguments[0])) return;
  resultText(context, dateArgument(arguments[0]).substr(0, kDateLength) + kMidnight);
}

void isDate(sqlite3_context* context, int, sqlite3_value** arguments) {
  sqlite3_result_int(context, sqlite3_value_type(arguments[0]) == SQLITE_TEXT && dateOf(arguments[0]) ? 1 : 0);
}

// A part of "yyyy/mm/dd hh:nn:ss" as a number.
template <std::size_t begin, std::size_t length>
void part(sqlite3_context* context, int, sqlite3_value** arguments) {
  if (isNullArgument(arguments[0])) return;
  sqlite3_result_int(context, std::stoi(dateArgument(arguments[0]).substr(begin, length)));
}

}  // namespace

void registerDateFunctions(sqlite3* connection) {
  // The clock moves on between statements, not within one.
  constexpr int kFlags = 0;
  addFunction<nowFunction>(connection, "qm_now", 0, kFlags);
  addFunction<dateFunction>(connection, "qm_date", 0, kFlags);
  addFunction<timeFunction>(connection, "qm_time", 0, kFlags);
  addFunction<cdate>(connection, "qm_cdate", 1);
  addFunction<dateValue>(connection, "qm_datevalue", 1);
  addFunction<isDate>(connection, "qm_isdate", 1);
  addFunction<part<0, 4>>(connection, "qm_year", 1);
  addFunction<part<5, 2>>(connection, "qm_month", 1);
  addFunction<part<8, 2>>(connection, "qm_day", 1);
  addFunction<part<11, 2>>(connection, "qm_hour", 1);
  addFunction<part<14, 2>>(connection, "qm_minute", 1);
  addFunction<part<17, 2>>(connection, "qm_second", 1);
}

}  // namespace quillmarden
