#include "dictionary/division.h"

#include "support/open_repository.h"

namespace quillmarden {
namespace {

class DivisionTest : public OpenRepositoryTest {
 protected:
  void addList(const std::string& system, const std::string& name, const std::string& shared) {
    database().execute("INSERT INTO MAS_DIVISION (システム名, 値名称, 全システム共通, 削除フラグ) VALUES ('" + system +
                       "', '" + name + "', " + shared + ", 0)");
  }
  void addEntry(const std::string& system, const std::string& name, int row, const std::string& value,
                const std::string& meaning, const std::string& preset) {
    database().execute("INSERT INTO MAS_DIVISIONDETAILES (システム名, 値名称, 行番号, 値, 内容, 初期値) VALUES ('" +
                       system + "', '" + name + "', " + std::to_string(row) + ", " + value + ", " + meaning + ", " +
                       preset + ")");
  }
};

TEST_F(DivisionTest, EntriesCarryMeaningAndDefaultAndSharedListsOfOthersServe) {
  addList("販売", "区分", "0");
  addEntry("販売", "区分", 1, "'1'", "' 新規 '", "0");
  addEntry("販売", "区分", 2, "'2'", "'更新'", "-1");
  addEntry("販売", "区分", 3, "Null", "'値なし'", "0");
  addList("共通", "フラグ", "-1");
  addEntry("共通", "フラグ", 1, "'0'", "Null", "Null");
  addList("共通", "社内", "0");
  addEntry("共通", "社内", 1, "'0'", "'x'", "0");

  EXPECT_EQ(pGetDivisionDetails2Text(database(), "販売", "区分"),
            (std::vector<std::string>{"1:新規", "[初期値]2:更新"}));
  EXPECT_EQ(pGetDivisionDetails2Text(database(), "販売", "フラグ"), (std::vector<std::string>{"0:"}));
  EXPECT_TRUE(pGetDivisionDetails2Text(database(), "販売", "社内").empty());
  for (const char* odd : {"it's", "x' OR 'a'='a"})
    EXPECT_TRUE(pGetDivisionDetails2Text(database(), "販売", odd).empty());
}

TEST_F(DivisionTest, InClauseKeepsTheOrderOfTheListAndQuotesOnlyTexts) {
  addEntry("販売", "区分", 2, "' 10 '", "''", "0");
  addEntry("販売", "区分", 1, "'20'", "''", "0");
  addEntry("販売", "区分", 3, "Null", "''", "0");
  EXPECT_EQ(pGetDivisionIn2Text(database(), "販売", "区分", ValueListType::Number), " IN (20,10) ");
  EXPECT_EQ(pGetDivisionIn2Text(database(), "販売", "区分", ValueListType::Text), " IN ('20','10') ");
  EXPECT_EQ(pGetDivisionIn2Text(database(), "販売", "ない", ValueListType::Number), "");
}

TEST_F(DivisionTest, OnlyALiveSharedListOfAnotherSystemCounts) {
  addList("共通", "区分", "-1");
  addList("販売", "単独", "0");
  std::string other;
  EXPECT_TRUE(gGetOtherSystem2DivName(database(), "販売", "区分", other));
  EXPECT_EQ(other, "共通");
  EXPECT_FALSE(gGetOtherSystem2DivName(database(), "共通", "区分", other));
  EXPECT_FALSE(gGetOtherSystem2DivName(database(), "共通", "単独", other));
  database().execute("UPDATE MAS_DIVISION SET 削除フラグ = 1 WHERE 値名称 = '区分'");
  EXPECT_FALSE(gGetOtherSystem2DivName(database(), "販売", "区分", other));
}

}  // namespace
}  // namespace quillmarden
