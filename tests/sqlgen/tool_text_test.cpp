#include "sqlgen/runnable/tool_text.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>

#include "common/text.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/names.h"

namespace quillmarden {
namespace {

std::string repeated(std::string_view text, int times) {
  std::string all;
  for (int i = 0; i < times; ++i) all += text;
  return all;
}

/// The text as Oracle's tool takes it; every line is checked for what the tool would refuse or act on.
std::string oracleText(const std::string& text) {
  const std::string taken = toolText(ScriptKind::Oracle, text);
  std::istringstream lines(taken);
  for (std::string line; std::getline(lines, line);) {
    EXPECT_LE(line.size(), kLongestOracleLine + 1);  // with the CR
    EXPECT_FALSE(line.ends_with("-\r")) << line.substr(line.size() - 20);
  }
  return taken;
}

TEST(ToolTextTest, ALiteralGoesOnInPiecesThatGiveItBack) {
  // Quotes and characters of three bytes at every distance from where a line has to end.
  for (int shift = 0; shift < 8; ++shift)
    for (const std::string_view part : {"''", "'' ", "あ", "あ''", "a"}) {
      const std::string literal =
          "'" + repeated("x", shift) + repeated(part, 9000 / static_cast<int>(part.size())) + "'";
      const std::string text = oracleText("CREATE TABLE t\r\n(\r\n\ta clob DEFAULT " + literal + "\r\n)\r\n;\r\n");
      std::string joined = gReplaceAll(text, "' ||\r\n'", "");
      joined = gReplaceAll(joined, "\r\n '", " '");
      EXPECT_NE(joined.find("DEFAULT " + literal + "\r\n)"), std::string::npos) << part << shift;
      // A piece is a literal of its own: its quotes come in pairs.
      std::istringstream lines(text);
      for (std::string line; std::getline(lines, line);)
        EXPECT_EQ(std::count(line.begin(), line.end(), '\''), std::count(line.begin(), line.end(), '\'') / 2 * 2);
      std::size_t invalid = 0;
      for (std::size_t at = text.find("' ||"); at != std::string::npos; at = text.find("' ||", at + 1))
        invalid += (static_cast<unsigned char>(text[at + 7]) & 0xC0) == 0x80;
      EXPECT_EQ(invalid, 0u);
    }
}

TEST(ToolTextTest, LinesBreakBetweenWordsAndCommentsStayComments) {
  const std::string list = "\t,CONSTRAINT \"c, d e\" CHECK (a IN (" + repeated("'a, b', ", 600) + "'z'))";
  const std::string words = "\t,b GENERATED ALWAYS AS (" + repeated("a - ", 1500) + "1)";
  const std::string comment = "-- " + repeated("長い ", 2000);
  const std::string text = oracleText(comment + "\r\n" + list + "\r\n" + words + "\r\nshort\r\n");
  const std::string joined = gReplaceAll(gReplaceAll(text, "\r\n-- ", ""), "\r\n", "");
  EXPECT_EQ(joined, comment + list + words + "short");
  EXPECT_EQ(text.find("' ||"), std::string::npos);

  const std::string usual = repeated("line\r\n", 2000);
  EXPECT_EQ(toolText(ScriptKind::Oracle, usual), usual);
  EXPECT_EQ(toolText(ScriptKind::PostgreSql, comment), comment);
}

TEST(ToolTextTest, TextsHoldNoVariableOfATool) {
  EXPECT_EQ(toolText(ScriptKind::SqlServer, "-- $(x) $y ($)\r\n"), "-- $ (x) $y ($)\r\n");
  EXPECT_EQ(textLiteral(sqlServerDialect(), "$(x)'$$(y"), "N'$' + N'(x)''$$' + N'(y'");
  EXPECT_EQ(textLiteral(postgreSqlDialect(), "$(x)"), "'$(x)'");
  NameScope names(sqlServerDialect(), NameOf::Table);
  EXPECT_EQ(names.use("1", "a$(x)"), "a_x)");
  EXPECT_EQ(names.use("2", "a_x)"), "a_x)_2");
}

// MySQL keeps a table in a file of its name; 255 bytes with the ending, five for what is no letter or digit.
TEST(ToolTextTest, NamesFitTheirFiles) {
  NameScope files(mySqlDialect(), NameOf::Table);
  EXPECT_EQ(files.use("1", repeated("表", 50) + "a"), repeated("表", 50) + "a");
  EXPECT_EQ(files.use("2", repeated("表", 50) + "ab"), repeated("表", 49) + "_2");
  EXPECT_EQ(files.use("3", repeated("表", 64)), repeated("表", 50));
  EXPECT_EQ(files.use("4", repeated("表", 63)), repeated("表", 49) + "_3");
  EXPECT_EQ(files.use("5", repeated("Ａ", 64)), repeated("Ａ", 64));
  NameScope columns(mySqlDialect(), NameOf::Column);
  EXPECT_EQ(columns.use("1", repeated("表", 64)), repeated("表", 64));
}

TEST(ToolTextTest, NamesAreToldApartAsTheServerDoes) {
  NameScope exact(postgreSqlDialect(), NameOf::Column);
  EXPECT_EQ(exact.use("1", "a"), "a");
  EXPECT_EQ(exact.use("2", "A"), "A");
  EXPECT_EQ(exact.use("3", "ctid"), "ctid_2");
  NameScope caseless(mySqlDialect(), NameOf::Column);
  EXPECT_EQ(caseless.use("1", "a"), "a");
  EXPECT_EQ(caseless.use("2", "A"), "A_2");
  EXPECT_EQ(caseless.use("3", "絵😀\t"), "絵__");
  EXPECT_EQ(caseless.use("4", "DB_ROW_ID"), "DB_ROW_ID_2");
  NameScope indexes(mySqlDialect(), NameOf::Index);
  EXPECT_EQ(indexes.use("1", "Primary"), "Primary_2");
  EXPECT_EQ(indexes.useOnce(repeated("x", 70)), repeated("x", 64));
  EXPECT_EQ(indexes.useOnce(repeated("x", 71)), repeated("x", 62) + "_2");
  EXPECT_EQ(indexes.changes().size(), 3u);
}

TEST(ToolTextTest, ServersReadEveryByte) {
  EXPECT_EQ(toolText(ScriptKind::PostgreSql, std::string("-- a\0b\xE8\xA1 表\r\n", 13)), "-- a?b?? 表\r\n");
}

}  // namespace
}  // namespace quillmarden
