#pragma once

#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sqlgen/runnable/dialect.h"
#include "sqlgen/runnable/sql_tokens.h"

namespace quillmarden {

/// What a type is to defaults, checks and keys.
enum class TypeFamily {
  Integer,
  Exact,  ///< with digits behind the point
  Real,
  Money,
  Text,
  Date,
  Time,
  Moment,
  Interval,
  Boolean,
  Bits,
  Bytes,
  Json,
  Uuid,
  Members,    ///< one of a list of texts
  MemberSet,  ///< any of them
  Year,
  Address,  ///< of a network
  Array,
  Other
};

/// What the grid says about a column's type.
struct TypeCell {
  std::string_view text;
  double wholeDigits = 0;
  double fractionDigits = 0;
  const ScriptValues* list = nullptr;
};

/// A type as the statements have it, with what they ask about it.
struct ScriptType {
  std::string sql;    ///< with digits
  std::string fault;  ///< a remark where the type could not be had as it is stored
  TypeFamily family = TypeFamily::Other;
  std::string base;  ///< in lower case, without digits; one name for all synonyms
  long length = 0;   ///< characters, bytes, bits, or all digits; 0 without a limit
  long scale = 0;    ///< digits behind the point, or of a second
  bool isUnsigned = false;
  bool zoned = false;          ///< of times
  bool numbersItself = false;  ///< the server gives the numbers: no default beside it
  bool keyable = true;         ///< can stand in keys, indexes and comparisons
  std::string charset;         ///< of MySQL, where it is the column's own; with the collation
  std::vector<std::string> members;
  std::shared_ptr<const ScriptType> element;  ///< of an array
};

/// Sizes of whole numbers in bytes; 0 for a type that is none.
int integerBytes(const ScriptType& type);
bool isNumber(TypeFamily family);
bool isTime(TypeFamily family);

/// The type of a cell in a kind. One that the kind does not know becomes a long text, which its `fault` says.
ScriptType scriptType(ScriptKind kind, const TypeCell& cell);

// --- what the kinds read types with

/// The words of a type, what stands between its brackets, and the words behind.
struct TypeWords {
  std::vector<std::string> words;  ///< as typed, on both sides of the brackets
  std::size_t before = 0;          ///< words in front of the brackets
  bool brackets = false;
  std::vector<SqlToken> arguments;  ///< without commas
  int arrays = 0;                   ///< dimensions

  /// The words from `first` on in lower case, joined by blanks.
  std::string lower(std::size_t first = 0, std::size_t count = std::string::npos) const;
};
/// Nothing for a text that is no type in form.
std::optional<TypeWords> typeWords(ScriptKind kind, std::string_view text);

/// The arguments as whole numbers, nothing when one is none or there are more than `most`.
std::optional<std::vector<long>> typeNumbers(const TypeWords& words, std::size_t most);

/// The reason of a type that stands without its digits.
constexpr std::string_view kNoSuchDigits = "桁数が使えない";
/// The text, of a length where one is given, that stands for a type which cannot be had.
ScriptType textInstead(std::string_view sql, const TypeCell& cell, long length = 0);
/// Has the type's `fault` say what it stands for, and why.
void noteInstead(ScriptType& type, std::string_view reason);

/// Of the kinds whose types are not known one by one: the words with digits behind the first, where `takesDigits` names
/// it; as stored when it has brackets already.
ScriptType looseType(ScriptKind kind, const TypeCell& cell, std::initializer_list<std::string_view> takesDigits,
                     std::string_view instead);

}  // namespace quillmarden
