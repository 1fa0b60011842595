#include "engine/sql_text.h"

#include "engine/sqlite_writer.h"
#include "engine_fixture.h"

namespace quillmarden {
namespace {

class SqlTextTest : public EngineTest {};

TEST_F(SqlTextTest, AnyValueIsOneTextAndHasOneStatement) {
  const std::string key = statementKey("SELECT " + sqlText("a") + " AS v").key;
  for (const std::string value : {"", "'", "''", "x' OR '1'='1", "x'; DELETE FROM t; --", "a\"b", "[SELECT 1]. AS a",
                                  "#", "\r\n\t", "\\'", "表ソ'能", "%*?", "' & Chr(39) & '"}) {
    const std::string sql = "SELECT " + sqlText(value) + " AS v";
    EXPECT_EQ(db.openRecordset(sql).text(0), value);
    EXPECT_EQ(statementKey(sql).key, key) << value;
  }
  EXPECT_EQ(db.openRecordset("SELECT " + sqlText(std::string(5000, '\'')) + " AS v").text(0), std::string(5000, '\''));
}

TEST_F(SqlTextTest, AQuoteWithoutAPartnerIsRefusedInWords) {
  EXPECT_EQ(asTyped("a''b", "*", "*"), "'*a''b*'");
  EXPECT_EQ(asTyped("''''"), "''''''");
  for (const char* text : {"'", "o'hara", "'''", "a''b'", "x' OR '1'='1", "x'' OR '1'='1"}) {
    try {
      asTyped(text);
      ADD_FAILURE() << text;
    } catch (const EngineError& error) {
      EXPECT_EQ(error.number(), engine_error::kSyntax);
      EXPECT_TRUE(
          std::string_view(error.what()).starts_with("「" + std::string(text) + "」の「'」が対になっていません."));
    }
  }
}

}  // namespace
}  // namespace quillmarden
