#include "sqlgen/alter.h"

#include <gtest/gtest.h>

#include "sqlgen/chosen_fields.h"

namespace quillmarden {
namespace {

namespace col = field_col;

/// The kind's words for a text, a number and a moment.
struct Types {
  std::string_view text, number, moment;
};

struct Given : ChosenFields {
  Given(std::string_view kind, const Types& types) : ChosenFields(kind) {
    add({{col::kFieldName, "ID"},
         {col::kType, types.number},
         {col::kWholeDigits, "8"},
         {col::kNull, "NOT NULL"},
         {col::kKey, "-1"}});
    add({{col::kFieldName, " NAME "},
         {col::kType, types.text},
         {col::kWholeDigits, "40"},
         {col::kDefault, "x"},
         {col::kNull, "NOT NULL"},
         {col::kRemark, "it's\r\nlong"}});
    add({{col::kFieldName, ""}, {col::kJapaneseName, "見出し"}});
    add({{col::kFieldName, "PRICE"},
         {col::kType, types.number},
         {col::kWholeDigits, "8"},
         {col::kFractionDigits, "2"},
         {col::kDefault, "0"}});
    add({{col::kFieldName, "AT"}, {col::kType, types.moment}, {col::kNull, "NULL"}});
  }
};

std::string altered(ChosenFields& chosen, AlterMode mode) {
  EXPECT_FALSE(mnuAlterTable_Click(chosen.session, chosen.host.host, chosen.detail, ChosenFields::rows(2, 5), mode));
  return chosen.clipboard();
}

TEST(AlterTest, OracleTakesColumnsInBrackets) {
  Given chosen("Oracle", {"varchar2", "number", "date"});
  const std::string head = "\n-- System     : 販売\n-- Data Base  : Oracle\n-- Table Name : T_ORDER\n\n";
  const std::string columns =
      "(\n"
      "     NAME varchar2(40)  DEFAULT 'x'   NOT NULL \n"
      "    ,PRICE number(10,2)  DEFAULT 0  NULL \n"
      "    ,AT date  NULL \n"
      ")\n;\n"
      "\n COMMENT ON  COLUMN T_ORDER.NAME IS 'it\"s.long'\n;\n";
  EXPECT_EQ(altered(chosen, AlterMode::Add), head + "ALTER TABLE T_ORDER  ADD \n" + columns);
  EXPECT_EQ(altered(chosen, AlterMode::Change), head + "ALTER TABLE T_ORDER  MODIFY \n" + columns);
  // Only what was asked for: a row without a name gives the head alone.
  EXPECT_FALSE(
      mnuAlterTable_Click(chosen.session, chosen.host.host, chosen.detail, ChosenFields::rows(3, 3), AlterMode::Add));
  EXPECT_EQ(chosen.clipboard(), head);
}

TEST(AlterTest, SqlServerChangesAColumnAStatement) {
  Given chosen("SQL Server", {"nvarchar", "decimal", "datetime"});
  chosen.add({{col::kFieldName, "TWICE"}, {col::kType, "計算式"}, {col::kRemark, "PRICE * 2"}});
  chosen.add({{col::kFieldName, "OPEN"}, {col::kType, "計算式"}});
  chosen.add({{col::kFieldName, "NO"}, {col::kType, "bigint identity"}, {col::kNull, "NOT NULL"}});
  const std::string head = "\n-- System     : 販売\n-- Data Base  : SQL Server\n-- Table Name : T_ORDER\n\n";
  const std::string tail =
      "--制約等は、Create文作成側のものを利用してください.\n--すでに制約がある場合は、DROPが必要です.\n";
  EXPECT_FALSE(
      mnuAlterTable_Click(chosen.session, chosen.host.host, chosen.detail, ChosenFields::rows(4, 8), AlterMode::Add));
  EXPECT_EQ(chosen.clipboard(), head +
                                    "ALTER TABLE [own].[T_ORDER]  ADD \n"
                                    "     [PRICE] [decimal](10,2)  DEFAULT ((0)) NULL \n"
                                    "    ,[AT] [datetime] NULL \n"
                                    "    ,[TWICE] AS (PRICE * 2)\n"
                                    "    ,[OPEN] AS (計算式を記入して下さい)\n"
                                    "    ,[NO] [bigint] identity(1,1) NOT NULL \n"
                                    " go\n" +
                                    tail);
  EXPECT_FALSE(mnuAlterTable_Click(chosen.session, chosen.host.host, chosen.detail, ChosenFields::rows(2, 4),
                                   AlterMode::Change));
  EXPECT_EQ(chosen.clipboard(),
            head +
                "ALTER TABLE [own].[T_ORDER]  ALTER COLUMN \n     [NAME] [nvarchar](40)  NOT NULL \n go\n"
                "ALTER TABLE [own].[T_ORDER]  ALTER COLUMN \n     [PRICE] [decimal](10,2)  NULL \n go\n" +
                tail);
}

TEST(AlterTest, PostgreSqlHasAClauseAColumn) {
  Given chosen("PostgreSQL", {"varchar", "numeric", "timestamp"});
  const std::string head = "\n-- System     : 販売\n-- Data Base  : PostgreSQL\n-- Table Name : T_ORDER\n\n";
  const std::string tail =
      "\n COMMENT ON  COLUMN T_ORDER.NAME IS 'it's.long'\n;\n"
      "--制約等は、Create文作成側のものを利用してください.\n--すでに制約がある場合は、DROPが必要です.\n";
  EXPECT_EQ(altered(chosen, AlterMode::Add), head +
                                                 "ALTER TABLE T_ORDER  ADD \n"
                                                 "     NAME varchar(40)  DEFAULT ('x') NOT NULL \n"
                                                 ", ADD PRICE numeric(10,2)  DEFAULT ((0)) NULL \n"
                                                 ", ADD AT timestamp NULL \n;\n" +
                                                 tail);
  EXPECT_EQ(altered(chosen, AlterMode::Change), head +
                                                    " ALTER  TABLE T_ORDER ALTER NAME TYPE varchar(40);\n"
                                                    " ALTER  TABLE T_ORDER ALTER NAME SET NOT NULL;\n"
                                                    " ALTER  TABLE T_ORDER ALTER NAME SET DEFAULT ('x');\n"
                                                    " ALTER  TABLE T_ORDER ALTER PRICE TYPE numeric(10,2);\n"
                                                    " ALTER  TABLE T_ORDER ALTER PRICE DROP NOT NULL;\n"
                                                    " ALTER  TABLE T_ORDER ALTER PRICE SET DEFAULT ((0));\n"
                                                    " ALTER  TABLE T_ORDER ALTER AT TYPE timestamp;\n"
                                                    " ALTER  TABLE T_ORDER ALTER AT DROP NOT NULL;\n" +
                                                    tail);
}

TEST(AlterTest, MySqlKeepsCommentsInTheColumn) {
  Given chosen("MySQL", {"VARCHAR", "DECIMAL", "DATETIME"});
  const std::string head = "\n/* System     : 販売*/\n/* Data Base  : MySQL*/\n/* Table Name : T_ORDER*/\n\n";
  const std::string tail =
      "/*制約等は、Create文作成側のものを利用してください.*/\n/*すでに制約がある場合は、DROPが必要です.*/\n";
  EXPECT_EQ(altered(chosen, AlterMode::Add), head +
                                                 "ALTER TABLE T_ORDER  ADD \n"
                                                 "     NAME VARCHAR(40)  DEFAULT 'x' NOT NULL  COMMENT 'it''s.long'\n"
                                                 ", ADD PRICE DECIMAL(10,2)  DEFAULT 0 NULL \n"
                                                 ", ADD AT DATETIME NULL \n;\n" +
                                                 tail);
  EXPECT_EQ(altered(chosen, AlterMode::Change),
            head +
                " ALTER  TABLE T_ORDER MODIFY NAME VARCHAR(40)  NOT NULL  COMMENT 'it''s.long';\n"
                " ALTER  TABLE T_ORDER ALTER NAME SET DEFAULT 'x';\n"
                " ALTER  TABLE T_ORDER MODIFY PRICE DECIMAL(10,2)  NULL ;\n"
                " ALTER  TABLE T_ORDER ALTER PRICE SET DEFAULT 0;\n"
                " ALTER  TABLE T_ORDER MODIFY AT DATETIME NULL ;\n" +
                tail);
}

TEST(AlterTest, RefusesAllRowsAndOtherKinds) {
  Given chosen("Oracle", {"varchar2", "number", "date"});
  chosen.host.clipboard = "former";
  chosen.host.expect("確認", "全選択ではできません.");
  EXPECT_TRUE(
      mnuAlterTable_Click(chosen.session, chosen.host.host, chosen.detail, ChosenFields::rows(1, 5), AlterMode::Add));
  // Rows that are chosen one by one are no such block.
  const GridSelection each = {ChosenFields::rows(1, 2)[0], ChosenFields::rows(3, 5)[0]};
  EXPECT_FALSE(mnuAlterTable_Click(chosen.session, chosen.host.host, chosen.detail, each, AlterMode::Add));
  for (const char* kind : {"Access", "TeraDatabase", ""}) {
    ChosenFields other(kind);
    other.add({{col::kFieldName, "A"}});
    other.host.clipboard = "former";
    other.host.expect("確認", "このデータベースは\n対応していません.");
    EXPECT_TRUE(
        mnuAlterTable_Click(other.session, other.host.host, other.detail, ChosenFields::rows(1, 1), AlterMode::Add));
    EXPECT_EQ(other.clipboard(), "former");
  }
}

}  // namespace
}  // namespace quillmarden
