#pragma once

#include <sqlite3.h>

#include <string>

#include "engine/value.h"

namespace quillmarden {

/// Ends an SQL function with a fault of the engine. Number and text come out again where the statement was run.
void resultError(sqlite3_context* context, const EngineError& fault);

/// What the last call on the connection failed with: a number of engine_error and a text that names the file, or
/// the table and columns where SQLite tells them.
EngineError lastFault(sqlite3* connection, const std::string& path);

}  // namespace quillmarden
