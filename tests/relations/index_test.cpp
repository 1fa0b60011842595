#include "relations/index.h"

#include "relations/tableref.h"
#include "support/open_repository.h"

namespace quillmarden {
namespace {

class LookUpTest : public OpenRepositoryTest {};

TEST_F(LookUpTest, IndexesComeByNameWithTheirFieldsInPlace) {
  for (const char* field : {"1, 'A'", "2, 'B'", "3, 'C'"})
    database().execute("INSERT INTO MAS_TABLEDETAILES (ID, ROWNO, 項目名) VALUES (7, " + std::string(field) + ")");
  for (const char* row : {"'IX2', 7, 1, 1, 0, 0, Null", "'IX1', 7, 1, 2, 1, 0, '備考'", "'IX1', 7, 3, 1, 1, 0, '備考'",
                          "'IX3', 7, 9, 1, 0, -1, Null", "'IX2', 8, 1, 1, 0, 0, Null"})
    database().execute("INSERT INTO MAS_INDEX (INDEX_NAME, ID, ROWNO, 順序, bolUNIQUE, brinindex, 備考) VALUES (" +
                       std::string(row) + ")");

  const long before = database().statementCount();
  const std::vector<TableIndex> indexes = gGetIndexList(database(), "7");
  EXPECT_EQ(database().statementCount() - before, 1);
  ASSERT_EQ(indexes.size(), 2U) << "an index whose only field is gone has nothing to stand on";
  EXPECT_EQ(indexes[0].name, "IX1");
  EXPECT_TRUE(indexes[0].unique());
  EXPECT_EQ(indexes[0].remark, "備考");
  ASSERT_EQ(indexes[0].fields.size(), 2U);
  EXPECT_EQ(indexes[0].fields[0].name, "C");
  EXPECT_EQ(indexes[0].fields[1].rowNo, 1);
  EXPECT_FALSE(indexes[1].unique());

  EXPECT_EQ(indexNames(database(), "7"), (std::vector<std::string>{"IX1", "IX2", "IX3"}));
  EXPECT_TRUE(hasIndexes(database(), "8"));
  EXPECT_FALSE(hasIndexes(database(), "9"));
  EXPECT_FALSE(hasIndexes(database(), "7 OR 1=1"));
  EXPECT_TRUE(gGetIndexList(database(), "").empty());
}

TEST_F(LookUpTest, UsedTablesAreLiveSharedAndOfOthers) {
  const std::string used = addTable("人事", "Oracle", "EMP", "社員");
  const std::string unshared = addTable("人事", "Oracle", "PAY", "給与");
  const std::string deleted = addTable("人事", "Oracle", "OLD", "旧");
  const std::string own = addTable("販売", "Oracle", "ORD", "受注");
  const std::string notPicked = addTable("人事", "Oracle", "DEP", "部門");
  database().execute("UPDATE MAS_TABLEINFO SET 全システム共通 = True WHERE ID <> " + unshared);
  database().execute("UPDATE MAS_TABLEINFO SET 削除フラグ = 1 WHERE ID = " + deleted);
  for (const std::string& id : {used, unshared, deleted, own})
    database().execute("INSERT INTO DAT_TABLEREF (システム名, ID, 検索) VALUES ('販売', " + id + ", True)");

  const std::vector<UsedTable> tables = usedTables(database(), "販売");
  ASSERT_EQ(tables.size(), 1U);
  EXPECT_EQ(tables[0].id, used);
  EXPECT_EQ(tables[0].systemName, "人事");
  EXPECT_EQ(tables[0].japaneseName, "社員");
  EXPECT_TRUE(usedTables(database(), "人事").empty());
}

}  // namespace
}  // namespace quillmarden
