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
    const RunResult result = mnuCreateSql_Click(session, host.host, list, detail, rows, clauses, {file, encoding});
    EXPECT_FALSE(result.failed);
    return gReplaceAll(readFile(file), "\r\n", "\n");
  }

  std::optional<TextEncoding> encoding;
  ScriptedHost host;
  Session session;
  frmTBList list;
  frmTBDetail detail;
};

TEST_P(RunnableTest, WritesTheExpectedScript) {
  EXPECT_EQ(script(SqlRows::All), readFile(kData / GetParam() / "expected.sql"));
}

/// Up to the comment that every file begins with.
std::string firstLinesOf(const std::string& text) { return text.substr(0, text.find("-- ****")); }

TEST_P(RunnableTest, TheFileSaysWhatItIsWrittenIn) {
  const auto alone = [&] { return script(SqlRows::Current, SqlClauses::All); };
  const std::string utf8 = alone();
  EXPECT_NE(utf8.find("状態"), std::string::npos);
  encoding = TextEncoding::Cp932;
  const std::string cp932 = alone();
  EXPECT_NE(fromCp932(cp932).find("状態"), std::string::npos);
  EXPECT_NE(firstLinesOf(cp932), firstLinesOf(utf8));
  // The person's choice, where none is made for the run.
  encoding.reset();
  session.settings.createSql2RunnableUtf8 = false;
  EXPECT_EQ(firstLinesOf(alone()), firstLinesOf(cp932));
  list.mnuCreateSQLRunnable.checked = false;
  session.settings.createSql2RunnableUtf8 = true;
  EXPECT_NE(fromCp932(alone()).find("受注"), std::string::npos);
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
