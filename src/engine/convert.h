#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "engine/table_def.h"
#include "engine/value.h"

namespace quillmarden {

/// A value as the column stores it, whichever way it comes in: through a recordset, in bulk or by an SQL assignment.
/// Whole numbers are rounded half to even and checked for range, flags become 0 or -1 (an SQL assignment leaves another
/// whole number in a flag column as it is), dates "yyyy/mm/dd hh:nn:ss"; numbers given to a text column become text. An
/// Auto takes Null for "the next number".
/// Throws EngineError naming table and column: kTextTooLong, kConversion, kNullNotAllowed, kZeroLengthNotAllowed.
Value convertForColumn(Value value, const FieldDef& field, std::string_view table);

/// Whether convertForColumn would give the value back as it is. For callers that want to avoid a copy.
bool fitsColumn(const Value& value, const FieldDef& field);

/// The whole text as a decimal number, blanks around it left out of account; none for anything else.
std::optional<double> parseNumber(std::string_view text);

/// Half to even, as assignments to whole-number columns round.
double roundHalfToEven(double number);

/// A date, a time or both, with "/" or "-" between the parts of the date and one-digit parts allowed, as
/// "yyyy/mm/dd hh:nn:ss"; year first, or month first where the year has four digits. A missing time is midnight, a
/// missing date 1899/12/30. None for anything else, days that the calendar lacks included.
std::optional<std::string> normaliseDate(std::string_view text);

/// A date given as days since 1899/12/30, the fraction being the time; none outside the years 100 to 9999.
std::optional<std::string> dateFromDays(double days);

/// The inverse, of a date as normaliseDate gives it.
double daysFromDate(std::string_view date);

/// Characters of an UTF-8 text.
std::size_t characterCount(std::string_view text);

/// Names in a Repository compare without regard to the case of ASCII letters, as SQLite's NOCASE does.
bool sameName(std::string_view left, std::string_view right);
std::string lowerName(std::string_view name);

}  // namespace quillmarden
