#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/script_file.h"
#include "sqlgen/fields.h"
#include "sqlgen/generation.h"

namespace quillmarden {

// What Teradata words as Oracle does: the lines behind the columns of a CREATE TABLE, and the comments.

/// Whether storage figures and tablespaces are written.
bool storageDue(const Generation& generation);

/// "(digits) " behind a type name.
std::string bracketedDigits(const Field& field);

/// The default, where the field has one, and NULL or NOT NULL, as they stand behind a type.
std::string defaultAndNull(const Field& field);

/// Key, value-list checks, range checks and foreign keys, then the closing bracket.
void putConstraintsAndEnd(const Generation& generation, const std::vector<Field>& fields, ScriptText& script);

/// The storage clause from the header's figures, several lines of one text; "" when no figure is set.
std::string pGetStorageClause(const Generation& generation);

/// COMMENT statements for the table and its fields, with the terminator on a line of its own.
void putComments(const Generation& generation, const std::vector<Field>& fields, std::string_view terminator,
                 ScriptText& script);

}  // namespace quillmarden
