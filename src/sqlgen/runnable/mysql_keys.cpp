#include "sqlgen/runnable/mysql_keys.h"

#include <algorithm>

#include "sqlgen/runnable/literals.h"

namespace quillmarden {

namespace {

constexpr long kMostBytes = 3072;  ///< of a whole key
constexpr long kBytesOfCharacter = 4;
constexpr long kTextBeginning = 255;

bool ownLength(const std::string& type) {
  return type != "char" && type != "varchar" && type != "binary" && type != "varbinary" && type != "nchar" &&
         type != "nvarchar";
}

}  // namespace

std::vector<std::string> mySqlKeyLengths(const ScriptTable& table, const std::vector<std::string>& fields) {
  std::vector<std::string> lengths(fields.size());
  std::vector<long> characters(fields.size());  // 0 for a field of fixed size
  long total = 0;
  long texts = 0;
  for (std::size_t i = 0; i < fields.size(); ++i) {
    const ScriptColumn* column = table.column(fields[i]);
    if (!column) continue;
    const TypeClass type = column->type->typeClass;
    const std::string& lower = column->type->lower;
    const bool isText = (type == TypeClass::Text && lower != "enum" && lower != "set") || type == TypeClass::Binary;
    if (!isText) {
      total += 8;
      continue;
    }
    characters[i] =
        column->wholeDigits > 0 && !ownLength(lower) ? static_cast<long>(column->wholeDigits) : kTextBeginning;
    if (ownLength(lower)) lengths[i] = "(" + std::to_string(kTextBeginning) + ")";
    total += characters[i] * kBytesOfCharacter;
    ++texts;
  }
  if (total <= kMostBytes || texts == 0) return lengths;
  const long fixed = 8 * (static_cast<long>(fields.size()) - texts);
  const long share = (kMostBytes - fixed) / kBytesOfCharacter / texts;
  for (std::size_t i = 0; i < fields.size(); ++i)
    if (characters[i] > share) lengths[i] = "(" + std::to_string(share) + ")";
  return lengths;
}

}  // namespace quillmarden
