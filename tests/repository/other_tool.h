#pragma once

#include <string>

namespace quillmarden {

/// Runs a script in SQLite's own dialect on a new file, as a tool beside this system does.
void writeWithOtherTool(const std::string& databaseFile, const std::string& scriptFile);

}  // namespace quillmarden
