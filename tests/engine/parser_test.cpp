#include "engine/parser.h"

#include <gtest/gtest.h>

#include <string>

#include "engine/sqlite_writer.h"

namespace quillmarden {
namespace {

// The text of the fault, or "" when the statement parses.
std::string fault(std::string_view sql) {
  try {
    parseStatement(sql);
  } catch (const EngineError& error) {
    EXPECT_EQ(error.number(), engine_error::kSyntax) << sql;
    return error.what();
  }
  return "";
}

std::string repeated(std::string_view part, int count) {
  std::string result;
  for (int i = 0; i < count; ++i) result += part;
  return result;
}

TEST(ParserTest, FaultsTellLineColumnAndWords) {
  EXPECT_EQ(fault("SELECT a.名 From"), "構文エラー: 行 1, 桁 16 (文の終わり): テーブル名が必要です.");
  EXPECT_EQ(fault("SELECT テーブル名\r\nFROM 表\r\nWHERE 値 == 1"),
            "構文エラー: 行 3, 桁 10 の「= 1」の近く: 式または項目名が必要です.");
  EXPECT_EQ(fault("SELECT a FROM t; SELECT b FROM t"),
            "構文エラー: 行 1, 桁 18 の「SELECT b FROM t」の近く: 文の終わりの後ろに余分な語があります.");
  EXPECT_EQ(fault("SELECT x FROM t WHERE s = 'O'Neil'"),
            "構文エラー: 行 1, 桁 34 の「'」の近く: 引用符が閉じていません.");
  EXPECT_EQ(fault("SELECT x FROM t WHERE d = #2026/02/30#"),
            "構文エラー: 行 1, 桁 27 の「#2026/02/30#」の近く: 日付は #yyyy/mm/dd hh:nn:ss# の形で書いて下さい.");
  EXPECT_EQ(fault("SELECT a b FROM t"),
            "構文エラー: 行 1, 桁 10 の「b FROM t」の近く: 文の終わりの後ろに余分な語があります.");
  EXPECT_NE(fault("SELECT x INTO y FROM t").find("SELECT … INTO には対応していません"), std::string::npos);
}

TEST(ParserTest, BrokenBytesAreFaultsAndDoNotReachTheMessage) {
  const std::string nul("SELECT 'a\0b' FROM t", 19);
  EXPECT_NE(fault(nul).find("NUL は使えません"), std::string::npos);
  EXPECT_EQ(fault(nul).find('\0'), std::string::npos);
  for (const std::string_view broken : {"SELECT '\xE3\x81", "SELECT \xFF FROM t", "SELECT [\xC0\xAF] FROM t",
                                        "SELECT \xED\xA0\x80 FROM t", "SELECT 'x\xE3\x81' FROM t"}) {
    const std::string text = fault(broken);
    EXPECT_NE(text.find("UTF-8 として正しくない文字です"), std::string::npos) << text;
    EXPECT_EQ(text.find('\xFF'), std::string::npos);
  }
}

TEST(ParserTest, NestingEndsInAFaultAndNotOnTheStack) {
  EXPECT_EQ(fault("SELECT " + repeated("(", 200) + "1" + repeated(")", 200)), "");
  for (const std::string& sql : {"SELECT " + repeated("(", 50000) + "1", "SELECT " + repeated("NOT ", 50000) + "1",
                                 "SELECT " + repeated("-", 50000) + "1", "SELECT 1" + repeated(" + 1", 50000),
                                 "SELECT " + repeated("Len(", 50000), "SELECT * FROM " + repeated("(", 50000),
                                 "SELECT * FROM " + repeated("[SELECT * FROM ", 50000),
                                 "SELECT " + repeated("(SELECT ", 50000), "SELECT * FROM t" + repeated(", t", 50000)}) {
    EXPECT_NE(fault(sql).find("入れ子が深すぎます"), std::string::npos) << sql.substr(0, 30);
  }
  // Lists of conditions and texts put together are no nesting.
  EXPECT_EQ(fault("SELECT * FROM t WHERE a = 1" + repeated(" OR a = 1", 20000)), "");
  EXPECT_EQ(fault("SELECT 'a'" + repeated(" & 'b'", 20000)), "");
}

TEST(ParserTest, LiteralsAreCountedAsTheKeyCountsThem) {
  for (const std::string_view sql :
       {"SELECT TOP 5 a, 'x''y', \"z\" FROM t WHERE d = #2026/11/24# AND n > -1.5e3 ORDER BY 2",
        "PARAMETERS p Text(255); SELECT a FROM [t 1] WHERE b = p", "ALTER TABLE t ALTER COLUMN a TEXT(50)",
        "INSERT INTO t VALUES (1, 'a', Null, True)", "SELECT a FROM [SELECT 1 AS a FROM t]. AS q WHERE a = 2"}) {
    EXPECT_EQ(parseStatement(sql).literalCount, static_cast<int>(statementKey(sql).literals.size())) << sql;
  }
}

TEST(ParserTest, DefinitionsKeepTheWidthsOfAccess) {
  const auto table = std::get<CreateTableStatement>(
      parseStatement("CREATE TABLE t (a INTEGER, b SMALLINT, c TEXT(50) NOT NULL, d COUNTER PRIMARY KEY, e YESNO, "
                     "f DATETIME, g LONGTEXT, h DOUBLE, CONSTRAINT k UNIQUE (a, [b]))")
          .body);
  std::vector<FieldType> types;
  for (const FieldDef& field : table.table.fields) types.push_back(field.type);
  EXPECT_EQ(types, (std::vector<FieldType>{FieldType::Long, FieldType::Integer, FieldType::Text, FieldType::Auto,
                                           FieldType::Flag, FieldType::Date, FieldType::Memo, FieldType::Double}));
  EXPECT_EQ(table.table.fields[2].size, 50);
  EXPECT_TRUE(table.table.fields[2].required);
  ASSERT_EQ(table.table.indexes.size(), 2u);
  EXPECT_EQ(table.table.indexes[0].name, "PrimaryKey");
  EXPECT_TRUE(table.table.indexes[0].primary);
  EXPECT_EQ(table.table.indexes[1].fields, (std::vector<std::string>{"a", "b"}));
}

}  // namespace
}  // namespace quillmarden
