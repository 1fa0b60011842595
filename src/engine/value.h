#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <variant>

namespace quillmarden {

/// One cell as the engine hands it out or takes it in: Null, a whole number, a real number or UTF-8 text.
/// Flags travel as the whole numbers 0 and -1, dates as text "yyyy/mm/dd hh:nn:ss".
using Value = std::variant<std::monostate, std::int64_t, double, std::string>;

/// Whether the cell holds Null, which is not the same as the empty text.
bool isNull(const Value& value);

/// The cell as text: Null gives "", a real number its shortest plain form ("0.5", "64.784").
std::string toText(const Value& value);

/// The cell as a number: Null and text that is no number give 0.
double toNumber(const Value& value);

/// The cell as a whole number, reals rounded half to even; Null and text that is no number give 0.
std::int64_t toInteger(const Value& value);

/// The shortest plain decimal form of a number, without exponent and without a trailing ".0".
std::string numberText(double value);

/// What went wrong in one call of the engine. The number tells programs which case it is, the text tells
/// people what and where.
class EngineError : public std::runtime_error {
 public:
  EngineError(int number, const std::string& text) : std::runtime_error(text), number_(number) {}
  int number() const { return number_; }

 private:
  int number_;
};

/// The numbers that callers test for. All others are for the log.
namespace engine_error {
inline constexpr int kOverflow = 6;
inline constexpr int kOutOfMemory = 7;
inline constexpr int kDivisionByZero = 11;
inline constexpr int kLikePattern = 93;
inline constexpr int kTableExists = 3010;
inline constexpr int kUpdateWithoutEdit = 3020;  ///< Update before AddNew or Edit
inline constexpr int kNoCurrentRecord = 3021;
inline constexpr int kDuplicateKey = 3022;
inline constexpr int kReadOnly = 3027;     ///< the file, or a set or column that cannot be edited
inline constexpr int kTransaction = 3034;  ///< begun twice, or ended without a beginning
inline constexpr int kDiskOrNetwork = 3043;
inline constexpr int kDiskFull = 3049;
inline constexpr int kCannotOpen = 3051;        ///< no such file, a directory, no permission
inline constexpr int kMissingParameter = 3061;  ///< a name in the statement is no column
inline constexpr int kNotAnAction = 3065;  ///< a statement that gives rows where an action was wanted, or the reverse
inline constexpr int kSyntax = 3075;
inline constexpr int kNoSuchTable = 3078;
inline constexpr int kAmbiguousColumn = 3079;  ///< a name that more than one table of the statement has
inline constexpr int kTextTooLong = 3163;
inline constexpr int kUnknownFunction = 3085;
inline constexpr int kNoSuchTableDef = 3265;  ///< an item that a collection does not hold
inline constexpr int kLocked = 3260;          ///< still in use by another process after the time-out
inline constexpr int kNullNotAllowed = 3314;
inline constexpr int kZeroLengthNotAllowed = 3315;
inline constexpr int kUnrecognisedFormat = 3343;
inline constexpr int kFieldExists = 3380;
inline constexpr int kConversion = 3421;  ///< a value that does not fit the column's type
inline constexpr int kDamaged = 3428;
inline constexpr int kAccessFile = 3847;  ///< a real Access database, which has to be taken in first
}  // namespace engine_error

/// Whether a fault is that of the database file as a whole, whatever the statement was.
constexpr bool isFileFault(int number) {
  using namespace engine_error;
  return number == kLocked || number == kReadOnly || number == kDiskOrNetwork || number == kDiskFull ||
         number == kCannotOpen || number == kDamaged;
}

}  // namespace quillmarden
