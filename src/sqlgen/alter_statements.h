#pragma once

#include <vector>

#include "common/script_file.h"
#include "sqlgen/alter.h"
#include "sqlgen/fields.h"

namespace quillmarden {

// One routine a Database kind: the statements that add or change these fields, of which there is at least one.

void putAlter4Oracle(const Generation& generation, const std::vector<Field>& fields, AlterMode mode, ScriptText& text);
void putAlter4SQLServer(const Generation& generation, const std::vector<Field>& fields, AlterMode mode,
                        ScriptText& text);
void putAlter4MySQL(const Generation& generation, const std::vector<Field>& fields, AlterMode mode, ScriptText& text);
void putAlter4PostgreSQL(const Generation& generation, const std::vector<Field>& fields, AlterMode mode,
                         ScriptText& text);

}  // namespace quillmarden
