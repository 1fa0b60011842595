#include "other_tool.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <fstream>
#include <sstream>

namespace quillmarden {

void writeWithOtherTool(const std::string& databaseFile, const std::string& scriptFile) {
  std::ostringstream script;
  script << "BEGIN;" << std::ifstream(scriptFile).rdbuf() << "COMMIT;";
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open(databaseFile.c_str(), &database), SQLITE_OK);
  EXPECT_EQ(sqlite3_exec(database, script.str().c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
      << sqlite3_errmsg(database);
  sqlite3_close(database);
}

}  // namespace quillmarden
