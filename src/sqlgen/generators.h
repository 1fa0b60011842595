#pragma once

#include "common/script_file.h"
#include "sqlgen/generation.h"

namespace quillmarden {

// One routine a Database kind: writes the statements of the table on show. Throws EngineError when the Repository
// refuses a question about it, such as one for a value list with a quote in its name; what was written stays.
void pCreateCurrentTable2Sql4Oracle(const Generation& generation, ScriptText& script);
void pCreateCurrentTable2Sql4Tera(const Generation& generation, ScriptText& script);
void pCreateCurrentTable2Sql4SQLServer(const Generation& generation, ScriptText& script);
void pCreateCurrentTable2Sql4MySQL(const Generation& generation, ScriptText& script);
void pCreateCurrentTable2Sql4PostgreSQL(const Generation& generation, ScriptText& script);
/// The VIEW statement of the table on show, whatever its category.
void pCreateCurrentTable2SqlView(const Generation& generation, ScriptText& script);

}  // namespace quillmarden
