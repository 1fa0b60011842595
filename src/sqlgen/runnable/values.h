#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "screen/date_time.h"
#include "sqlgen/runnable/types.h"

namespace quillmarden {

/// What a constant is for: a value of the column, which has to fit it, or one that the column is compared with.
enum class ConstantUse { Stored, Compared };

/// The text as a constant of the type; nothing where the type has no such value. Quotes around the whole text are not
/// part of it.
std::optional<std::string> constantOf(const Dialect& dialect, const ScriptType& type, std::string_view text,
                                      ConstantUse use);

// --- what the kinds read values with; all give nothing for a text that is none

/// A number without exponent and without needless signs: "-12.5".
std::optional<std::string> decimalText(std::string_view text);
/// Whether a number as decimalText() has it has at most so many digits on either side of the point.
bool fitsDigits(std::string_view decimal, long whole, long fraction);
/// Whether such a number is a whole one of so many bytes.
bool fitsBytes(std::string_view decimal, int bytes, bool isUnsigned);
/// A number as a constant of the column's type, which is of numbers.
std::optional<std::string> numberConstant(const ScriptType& type, std::string_view text, ConstantUse use);

/// A date or moment with what may stand behind its seconds.
struct MomentText {
  DateTime moment;
  std::string fraction;  ///< digits of a second
  std::string zone;      ///< "+09", "+09:00", "Z"
};
std::optional<MomentText> momentText(std::string_view text);
/// "12:34:56" with its fraction and zone, from "12:34" and "12:34:56.7+09"; hours up to `mostHours`.
std::optional<std::string> timeText(std::string_view text, int mostHours, bool zoned);

/// The signs of a literal B'101' or X'4F' as typed, by its letter.
std::optional<std::string> letteredText(ScriptKind kind, std::string_view text, std::string_view letter);
std::string hexOf(std::string_view bytes);
bool isHex(std::string_view text);
/// "f81d4fae-7dec-11d0-a765-00a0c91e6bf6".
bool isUuid(std::string_view text);
/// An address of the Internet, of version 4 or 6; `masks`: with or without "/24".
bool isAddress(std::string_view text, int version, bool masks);
bool isHardwareAddress(std::string_view text);
bool isJson(std::string_view text);

/// Of the kinds whose types are not known one by one.
std::optional<std::string> looseConstant(ScriptKind kind, const ScriptType& type, std::string_view text);

}  // namespace quillmarden
