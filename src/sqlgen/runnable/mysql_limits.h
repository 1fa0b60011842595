#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "sqlgen/runnable/model.h"
#include "sqlgen/runnable/types.h"

namespace quillmarden {

// What MySQL allows of characters, columns and rows.

constexpr long kLongestVarbinary = 65532;

/// The longest character of a character set in bytes; 0 for one that is not known.
int bytesOfCharacter(std::string_view charset);
/// Whether the server has the collation.
bool knownCollation(std::string_view collation);
/// Whether names, comments and enumerations can hold the text: they know no character beyond the basic plane.
bool withinBasicPlane(std::string_view text);

/// Bytes of the longest value of a text or row of bytes with a length of its own.
long mostBytes(const ScriptType& type);
/// The most characters of a varchar in the type's character set.
long longestVarchar(const ScriptType& type);
/// Whether the values stand outside the row: texts and bytes without a length of their own.
bool isLarge(const ScriptType& type);

/// A column of a row whose size counts.
struct RowColumn {
  const ScriptType* type = nullptr;
  bool key = false;
};
/// Gives columns other types where the server would not take the table with theirs: rows that are too long, more
/// columns than one that number themselves, one that no key begins with.
void fitMySqlColumns(ScriptTable& table, ScriptLookUps& lookUps);

/// The columns, by their place, whose texts have to become large ones for the row to stay within the server's limits.
std::vector<std::size_t> tooLargeForRow(const std::vector<RowColumn>& columns);

}  // namespace quillmarden
