#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "common/text.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/model.h"
#include "sqlgen/runnable/mysql_limits.h"
#include "sqlgen/runnable/types.h"

namespace quillmarden {

namespace {

using Family = TypeFamily;

/// What may stand in a type's brackets.
enum class Digits { None, Width, Exact, Real, Length, Size, Bits, Seconds, List };

/// A type by its words; `base` is one name for all its synonyms.
struct TypeName {
  std::string_view words;
  std::string_view base;
  Family family;
  Digits digits = Digits::None;
  bool keyable = true;
};

constexpr TypeName kTypes[] = {
    {"tinyint", "tinyint", Family::Integer, Digits::Width},
    {"int1", "tinyint", Family::Integer, Digits::Width},
    {"boolean", "tinyint", Family::Integer},
    {"bool", "tinyint", Family::Integer},
    {"smallint", "smallint", Family::Integer, Digits::Width},
    {"int2", "smallint", Family::Integer, Digits::Width},
    {"mediumint", "mediumint", Family::Integer, Digits::Width},
    {"middleint", "mediumint", Family::Integer, Digits::Width},
    {"int3", "mediumint", Family::Integer, Digits::Width},
    {"int", "int", Family::Integer, Digits::Width},
    {"integer", "int", Family::Integer, Digits::Width},
    {"int4", "int", Family::Integer, Digits::Width},
    {"bigint", "bigint", Family::Integer, Digits::Width},
    {"int8", "bigint", Family::Integer, Digits::Width},
    {"serial", "bigint", Family::Integer},
    {"decimal", "decimal", Family::Exact, Digits::Exact},
    {"numeric", "decimal", Family::Exact, Digits::Exact},
    {"dec", "decimal", Family::Exact, Digits::Exact},
    {"fixed", "decimal", Family::Exact, Digits::Exact},
    {"float", "float", Family::Real, Digits::Real},
    {"float4", "float", Family::Real},
    {"double", "double", Family::Real, Digits::Real},
    {"double precision", "double", Family::Real, Digits::Real},
    {"float8", "double", Family::Real},
    {"real", "double", Family::Real, Digits::Real},
    {"bit", "bit", Family::Bits, Digits::Bits},
    {"date", "date", Family::Date},
    {"time", "time", Family::Time, Digits::Seconds},
    {"datetime", "datetime", Family::Moment, Digits::Seconds},
    {"timestamp", "timestamp", Family::Moment, Digits::Seconds},
    {"year", "year", Family::Year, Digits::Width},
    {"char", "char", Family::Text, Digits::Length},
    {"character", "char", Family::Text, Digits::Length},
    {"nchar", "char", Family::Text, Digits::Length},
    {"national char", "char", Family::Text, Digits::Length},
    {"national character", "char", Family::Text, Digits::Length},
    {"varchar", "varchar", Family::Text, Digits::Length},
    {"varcharacter", "varchar", Family::Text, Digits::Length},
    {"char varying", "varchar", Family::Text, Digits::Length},
    {"character varying", "varchar", Family::Text, Digits::Length},
    {"nvarchar", "varchar", Family::Text, Digits::Length},
    {"nchar varchar", "varchar", Family::Text, Digits::Length},
    {"national varchar", "varchar", Family::Text, Digits::Length},
    {"national char varying", "varchar", Family::Text, Digits::Length},
    {"national character varying", "varchar", Family::Text, Digits::Length},
    {"tinytext", "tinytext", Family::Text},
    {"text", "text", Family::Text, Digits::Size},
    {"mediumtext", "mediumtext", Family::Text},
    {"longtext", "longtext", Family::Text},
    {"binary", "binary", Family::Bytes, Digits::Length},
    {"varbinary", "varbinary", Family::Bytes, Digits::Length},
    {"tinyblob", "tinyblob", Family::Bytes},
    {"blob", "blob", Family::Bytes, Digits::Size},
    {"mediumblob", "mediumblob", Family::Bytes},
    {"longblob", "longblob", Family::Bytes},
    {"enum", "enum", Family::Members, Digits::List},
    {"set", "set", Family::MemberSet, Digits::List},
    {"json", "json", Family::Json},
    {"uuid", "uuid", Family::Uuid},
    {"inet4", "inet4", Family::Address},
    {"inet6", "inet6", Family::Address},
    {"geometry", "geometry", Family::Other, Digits::None, false},
    {"point", "geometry", Family::Other, Digits::None, false},
    {"linestring", "geometry", Family::Other, Digits::None, false},
    {"polygon", "geometry", Family::Other, Digits::None, false},
    {"multipoint", "geometry", Family::Other, Digits::None, false},
    {"multilinestring", "geometry", Family::Other, Digits::None, false},
    {"multipolygon", "geometry", Family::Other, Digits::None, false},
    {"geometrycollection", "geometry", Family::Other, Digits::None, false},
};

constexpr long kWidest = 255;
constexpr long kMostDigits = 65;
constexpr long kMostFraction = 30;
constexpr long kRealBits = 53;
constexpr long kWidestBits = 64;
constexpr long kLongestChar = 255;
constexpr long kSecondDigits = 6;
constexpr long kLongestSize = 999999999;
constexpr std::size_t kMostOfSet = 64;
constexpr std::size_t kMostOfEnum = 65535;

const TypeName* nameOf(const TypeWords& words, std::size_t& used) {
  for (used = std::min(words.words.size(), words.before); used > 0; --used) {
    const std::string wanted = words.lower(0, used);
    const auto found =
        std::find_if(std::begin(kTypes), std::end(kTypes), [&](const TypeName& type) { return type.words == wanted; });
    if (found != std::end(kTypes)) return &*found;
  }
  return nullptr;
}

bool takesCharset(Family family) {
  return family == Family::Text || family == Family::Members || family == Family::MemberSet;
}

/// The words behind the name and the brackets: sign, character set, who gives the numbers. `kept` are those that a
/// server takes; false where one makes the type another than it looks.
bool takeAttributes(const TypeWords& words, std::size_t used, ScriptType& type, std::string& kept) {
  const auto word = [&](std::size_t i) { return i < words.words.size() ? toLower(words.words[i]) : std::string(); };
  const bool number = isNumber(type.family);
  for (std::size_t i = used; i < words.words.size(); ++i) {
    const std::string first = word(i);
    std::string attribute = words.words[i];
    if (number && (first == "unsigned" || first == "zerofill")) {
      type.isUnsigned = true;
    } else if (number && first == "signed") {
    } else if (first == "auto_increment" && type.family == Family::Integer) {
      type.numbersItself = true;
    } else if (takesCharset(type.family) && (first == "charset" || (first == "character" && word(i + 1) == "set"))) {
      i += first == "charset" ? 1 : 2;
      if (bytesOfCharacter(word(i)) == 0) return false;
      type.charset = word(i) + type.charset;
      attribute = "character set " + words.words[i];
    } else if (takesCharset(type.family) && first == "collate") {
      if (!knownCollation(word(++i))) return false;
      type.charset += " " + word(i);
      attribute += " " + words.words[i];
    } else if (takesCharset(type.family) && (first == "ascii" || first == "binary")) {
      type.charset = first == "ascii" ? "latin1" : type.charset + " binary";
    } else {
      return false;
    }
    kept.append(" ").append(attribute);
  }
  return true;
}

/// The collation that was named names its character set; the two have to agree.
bool charsetAgrees(const ScriptType& type) {
  const std::size_t blank = type.charset.find(' ');
  if (blank == std::string::npos || blank == 0 || type.charset.ends_with(" binary")) return true;
  return type.charset.substr(blank + 1).starts_with(type.charset.substr(0, blank) + "_");
}

bool takeNumbers(const TypeName& name, const std::vector<long>& numbers, ScriptType& type) {
  const long first = numbers.empty() ? 0 : numbers.front();
  const long second = numbers.size() > 1 ? numbers[1] : 0;
  const bool one = numbers.size() <= 1;
  const bool positive = numbers.empty() || first > 0;
  switch (name.digits) {
    case Digits::None:
    case Digits::List:
      return numbers.empty();
    case Digits::Width:
      return one && first <= kWidest && (type.family != Family::Year || numbers.empty() || first == 4);
    case Digits::Exact:
      type.length = numbers.empty() || first == 0 ? 10 : first;
      type.scale = second;
      return first <= kMostDigits && second <= kMostFraction && second <= type.length;
    case Digits::Real:
      if (one && !numbers.empty()) {  // FLOAT(8) is a width that makes a double of it from 25 on
        if (first > 24) type.base = "double";
        return type.base == "float" || name.words == "float" ? first <= kRealBits : false;
      }
      return first <= kWidest && second <= kMostFraction && second <= first;
    case Digits::Length: {
      const bool binary = type.family == Family::Bytes;
      const long longest = name.base == "char" || name.base == "binary" ? kLongestChar
                           : binary                                     ? kLongestVarbinary
                                                                        : longestVarchar(type);
      const bool varies = name.base.starts_with("var");
      type.length = numbers.empty() ? (varies ? kLongestChar : 1) : first;
      return one && first <= longest;
    }
    case Digits::Size:
      return one && first <= kLongestSize;
    case Digits::Bits:
      type.length = numbers.empty() ? 1 : first;
      return one && positive && first <= kWidestBits;
    case Digits::Seconds:
      type.scale = first;
      return one && first <= kSecondDigits;
  }
  return false;
}

std::vector<long> numbersOfGrid(const TypeName& name, const TypeCell& cell) {
  const auto whole = static_cast<long>(std::nearbyint(std::clamp(cell.wholeDigits, -1e9, 1e9)));
  const auto fraction = static_cast<long>(std::nearbyint(std::clamp(cell.fractionDigits, 0.0, 1e9)));
  const bool exact = name.digits == Digits::Exact;
  const bool takes = exact || name.digits == Digits::Length || name.digits == Digits::Bits;
  if (!takes || whole + fraction <= 0) return {};
  std::vector<long> numbers = {whole + fraction};
  if (exact && fraction > 0) numbers.push_back(fraction);
  return numbers;
}

/// For digits that the type cannot have: the most that it can where it needs them, else none.
std::vector<long> nearestDigits(const TypeName& name, const std::vector<long>& numbers, ScriptType& type) {
  type.length = type.scale = 0;
  if (name.digits != Digits::Exact) return {};
  type.length = std::min(numbers.front(), kMostDigits);
  type.scale = numbers.size() > 1 ? std::min({numbers[1], kMostFraction, type.length}) : 0;
  return {type.length, type.scale};
}

/// The texts of an enumeration: a server takes each once, and without the blanks behind it.
bool takeMembers(const TypeWords& words, const TypeCell& cell, ScriptType& type) {
  if (words.brackets) {
    for (const SqlToken& argument : words.arguments) type.members.push_back(argument.text);
  } else if (cell.list) {
    type.members = cell.list->values;
  }
  const bool set = type.family == Family::MemberSet;
  if (type.members.empty() || type.members.size() > (set ? kMostOfSet : kMostOfEnum)) return false;
  std::vector<std::string> seen;
  for (std::string& member : type.members) {
    member.resize(member.find_last_not_of(' ') + 1);
    if (!withinBasicPlane(member) || (set && member.find(',') != std::string::npos)) return false;
    seen.push_back(toLower(member));
  }
  std::sort(seen.begin(), seen.end());
  return std::adjacent_find(seen.begin(), seen.end()) == seen.end();
}

std::string bracketsOf(const ScriptType& type, const TypeName& name, const std::vector<long>& numbers) {
  std::string inside;
  for (const std::string& member : type.members)
    inside.append(inside.empty() ? "" : ",").append(textLiteral(mySqlDialect(), member));
  for (const long number : numbers) inside.append(inside.empty() ? "" : ",").append(std::to_string(number));
  // Types that cannot stand without a length.
  if (inside.empty() && name.digits == Digits::Length && name.base.starts_with("var"))
    inside = std::to_string(type.length);
  return inside.empty() ? inside : "(" + inside + ")";
}

/// A text or a row of bytes that is longer than its type may be.
ScriptType longInstead(const TypeName& name, const TypeCell& cell) {
  const bool bytes = name.family == Family::Bytes;
  ScriptType type = textInstead(bytes ? "longblob" : "longtext", cell);
  type.base = type.sql;
  type.family = name.family;
  return type;
}

}  // namespace

ScriptType mySqlType(const TypeCell& cell) {
  constexpr std::string_view kInstead = "text";
  const auto words = typeWords(ScriptKind::MySql, cell.text);
  if (!words || words->arrays > 0) return textInstead(kInstead, cell);
  std::size_t used = 0;
  const TypeName* name = nameOf(*words, used);
  if (!name || (words->brackets && words->before != used)) return textInstead(kInstead, cell);
  ScriptType type;
  type.base = name->base;
  type.family = name->family;
  type.keyable = name->keyable;
  if (name->words.starts_with("n") && type.family == Family::Text) type.charset = "utf8mb3";
  if (name->words == "serial") type.numbersItself = type.isUnsigned = true;
  std::string attributes;
  if (!takeAttributes(*words, used, type, attributes) || !charsetAgrees(type)) return textInstead(kInstead, cell);
  std::vector<long> numbers;
  bool fits = true;
  if (name->digits == Digits::List) {
    if (!takeMembers(*words, cell, type)) return textInstead("varchar", cell, kLongestChar);
  } else {
    const auto typed = typeNumbers(*words, 2);
    if (!typed || (words->brackets && typed->empty())) return textInstead(kInstead, cell);
    numbers = words->brackets ? *typed : numbersOfGrid(*name, cell);
    fits = takeNumbers(*name, numbers, type);
    if (!fits && name->digits == Digits::Length) return longInstead(*name, cell);
    if (!fits) numbers = nearestDigits(*name, numbers, type);
  }
  for (std::size_t i = 0; i < used; ++i) type.sql.append(i == 0 ? "" : " ").append(words->words[i]);
  type.sql += bracketsOf(type, *name, numbers) + attributes;
  if (!fits) noteInstead(type, kNoSuchDigits);
  return type;
}

}  // namespace quillmarden
