#pragma once

#include <string>
#include <vector>

#include "sqlgen/runnable/model.h"

namespace quillmarden {

/// What stands behind each field of a MySQL key: "(255)" for a text without a length of its own, and where the key
/// would be longer than the server allows, shorter beginnings of its texts; else "".
std::vector<std::string> mySqlKeyLengths(const ScriptTable& table, const std::vector<std::string>& fields);

}  // namespace quillmarden
