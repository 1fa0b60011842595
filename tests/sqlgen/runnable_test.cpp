// Each folder runnable/<kind> holds the words that setup.sql leaves open for the kind, and the script that the
// definitions must then give (expected.sql, LF for readability).

#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>

#include "common/text.h"
#include "repository/schema.h"
#include "sqlgen/frame.h"
#include "support/files.h"
#include "support/scripted_host.h"

namespace quillmarden {
namespace {

const std::filesystem::path kData = std::filesystem::path(QM_TEST_DATA) / "runnable";

class RunnableTest : public testing::TestWithParam<std::string> {
 protected:
  RunnableTest() {
    session.gDB = std::make_unique<Database>(createRepository(host.folder.file("r.mdb")));
    session.gLoginUser = "admin";
    session.gCurrentSystemName = "販売";
    std::string setup = readFile(kData / "setup.sql");
    std::istringstream words(readFile(kData / GetParam() / "words.txt"));
    for (std::string word; std::getline(words, word);) {
      const std::size_t equals = word.find('=');
      setup = gReplaceAll(setup, "{" + word.substr(0, equals) + "}", word.substr(equals + 1));
      if (word == "backup=1") list.mnuCreateSQLBack.checked = true;
    }
    std::istringstream statements(setup);
    for (std::string statement; std::getline(statements, statement);) session.gDB->execute(statement);
    for (const std::string name : {"order\t\t1", "T_LINE\t\t2", "unit\t\t3", "unit\t\t4"}) list.LstTable.add(name);
    list.mnuCreateSQLRunnable.checked = true;
    host.answerAll(kYes);
  }

  std::string script(SqlRows rows, SqlClauses clauses = SqlClauses::AsOptions, int row = 0) {
    list.LstTable.listIndex = row;
    const auto file = host.folder.path() / "out.sql";
    const RunResult result =
        mnuCreateSql_Click(session, host.host, list, detail, rows, clauses, {file, TextEncoding::Utf8});
    EXPECT_FALSE(result.failed);
    return gReplaceAll(readFile(file), "\r\n", "\n");
  }

  ScriptedHost host;
  Session session;
  frmTBList list;
  frmTBDetail detail;
};

TEST_P(RunnableTest, WritesTheExpectedScript) {
  EXPECT_EQ(script(SqlRows::All), readFile(kData / GetParam() / "expected.sql"));
}

TEST_P(RunnableTest, ATableAloneKeepsItsKeysAndStamp) {
  const std::string text = script(SqlRows::Current, SqlClauses::All, 1);
  EXPECT_EQ(text.find("DROP"), std::string::npos);
  std::size_t keys = 0;
  for (std::size_t at = text.find("FOREIGN KEY"); at != std::string::npos; at = text.find("FOREIGN KEY", at + 1))
    ++keys;
  EXPECT_EQ(keys, 2u);  // to tables that the run does not hold
  const Recordset stamps = session.gDB->openRecordset("SELECT 作成回数 FROM MAS_TABLEINFO ORDER BY ID");
  EXPECT_TRUE(stamps.isNull(0));
}

INSTANTIATE_TEST_SUITE_P(Kinds, RunnableTest,
                         testing::Values("oracle", "teradata", "sql_server", "mysql", "postgresql"),
                         [](const auto& info) { return info.param; });

}  // namespace
}  // namespace quillmarden
