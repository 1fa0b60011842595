#include "sqlgen/snippet.h"

#include <gtest/gtest.h>

#include "sqlgen/chosen_fields.h"

namespace quillmarden {
namespace {

namespace col = field_col;

class SnippetTest : public testing::Test {
 protected:
  SnippetTest() {
    const auto add = [&](std::string_view name, std::string_view japanese, std::string_view type,
                         std::string_view key) {
      chosen.add({{col::kFieldName, name}, {col::kJapaneseName, japanese}, {col::kType, type}, {col::kKey, key}});
    };
    add("no", "番号", "integer", "-1");
    add(" Sql_name ", "名称", "varchar", "○");
    add("", "見出し", "", "-1");
    add("price", "単価", "numeric", "0");
    for (const char* name : {"a", "b", "c"}) add(name, "他", "text", "");
  }

  std::string snippet(int index, int first, int last) {
    mnuCopyCode_Click(chosen.session, chosen.host.host, chosen.detail, ChosenFields::rows(first, last), index);
    return chosen.clipboard();
  }

  ChosenFields chosen{"PostgreSQL"};
};

TEST_F(SnippetTest, Selects) {
  EXPECT_EQ(snippet(0, 1, 7), "Select \n\na.no, a.Sql_name, a.price, a.a, a.b, \na.c\n From \nT_ORDER a \n");
  EXPECT_EQ(snippet(1, 2, 4), "Select \n\nSql_name, price\n From \nT_ORDER a \n");
}

TEST_F(SnippetTest, Lists) {
  EXPECT_EQ(snippet(5, 1, 4), "   no\t--番号\n   Sql_name\t--名称\n   price\t--単価\n");
  EXPECT_EQ(snippet(19, 4, 4), "   price\t'単価\n");
  EXPECT_EQ(snippet(7, 1, 4), "   a.no AS 番号\n , a.Sql_name AS 名称\n , a.price AS 単価\n");
}

TEST_F(SnippetTest, PlainStatements) {
  EXPECT_EQ(snippet(17, 1, 2),
            "InSert Into T_ORDER\n ( \n\tno\t'番号\n\t,Sql_name\t'名称\n ) Values (\n\t \t'番号\n\t,\t'名称\n ) \n");
  EXPECT_EQ(snippet(34, 1, 4),
            "UpDate T_ORDER Set \n\tno = \t--番号\n\t,Sql_name = \t--名称\n\t,price = \t--単価\n"
            " Where no = \n And Sql_name = \n");
  EXPECT_EQ(snippet(18, 4, 4), "UpDate T_ORDER Set \n\tprice = \t'単価\n");
  EXPECT_EQ(snippet(20, 1, 1), "UpDate T_ORDER Set \n\t,[no] = \t'番号' \n Where no = \n");
}

TEST_F(SnippetTest, EmbeddedInsertNumbersItsLines) {
  EXPECT_EQ(snippet(13, 1, 7),
            "\t Sql = \" InSert Into T_ORDER ( \"\n"
            "\t Sql &= \"  no\"\t'番号\n"
            "\t Sql &= \" ,Sql_name\"\t'名称\n"
            "\t Sql &= \" ,price\"\t'単価\n"
            "\t Sql &= \" ,a\"\t'他\n"
            "\t Sql &= \" ,b\"\t'他\n"
            "\t'6\n"
            "\t Sql &= \" ,c\"\t'他\n"
            "\t Sql &= \" ) Values (\"\n"
            "\t Sql &= \"  \" & no\t'番号(integer)\n"
            "\t Sql &= \" ,'\" & Sql_name & \"'\"\t'名称(varchar)\n"
            "\t Sql &= \" ,\" & price\t'単価(numeric)\n"
            "\t Sql &= \" ,'\" & a & \"'\"\t'他(text)\n"
            "\t Sql &= \" ,'\" & b & \"'\"\t'他(text)\n"
            "\t'6\n"
            "\t Sql &= \" ,'\" & c & \"'\"\t'他(text)\n"
            "\t Sql &= \" ) \"\n");
}

TEST_F(SnippetTest, EmbeddedUpdateFollowsTheLanguage) {
  EXPECT_EQ(snippet(22, 1, 2),
            "\t Sql   = \" UpDate T_ORDER\"\n"
            "\t Sql = SQl & \" Set \"\n"
            "\t Sql = SQl & \"  no = \" & no\t'番号\n"
            "\t Sql = SQl & \" ,Sql_name = '\" & Sql_name & \"'\"\t'名称\n"
            "\t Sql = SQl & \" Where no = \" & no\t'番号\n"
            "\t Sql = SQl & \" And Sql_name = '\" & Sql_name & \"'\"\t'名称\n");
  EXPECT_EQ(snippet(26, 2, 2),
            "\t sql   = \" UpDate T_ORDER\"\n"
            "\t sql += \" Set \"\n"
            "\t sql += \"  sql_name = '\" + sql_name + \"'\"\t#名称\n"
            "\t sql += \" Where sql_name = '\" + sql_name + \"'\"\t#名称\n");
  EXPECT_EQ(snippet(25, 1, 7).find("Sql"), std::string::npos);
  EXPECT_EQ(snippet(14, 4, 7).find("Where"), std::string::npos);
}

TEST_F(SnippetTest, AnUnknownIndexLeavesAnEmptyText) {
  for (const int index : {-1, 2, 35}) {
    chosen.host.clipboard = "former";
    EXPECT_EQ(snippet(index, 1, 4), "");
  }
}

}  // namespace
}  // namespace quillmarden
