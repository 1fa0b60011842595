#include "editing/validation.h"

#include "editing/frm_tb_detail_edit.h"
#include "editing_fixture.h"

namespace quillmarden {
namespace {

class ValidationTest : public EditingTest {
 protected:
  /// An empty grid of the kind with the mark of a change on the rows that are put.
  void begin(const std::string& kind) { ASSERT_FALSE(load(addTable("販売", kind, "T", "表"))); }
  bool check() { return pChkTableDetails(session, scripted.host, detail); }
  /// The faults of the table on show are these lines.
  void expectFaults(const std::string& lines) {
    scripted.expect("入力エラー", lines);
    EXPECT_TRUE(check()) << lines;
  }
};

TEST_F(ValidationTest, ChangedRowsNeedTypeAndDigits) {
  begin("PostgreSQL");
  put(1, {{1, "番号"}, {2, "a"}});
  expectFaults("型が未設定です.\n整数桁数が未設定です.");
  EXPECT_EQ(detail.Spread.backColour(col::kType, 1), 0x0000FFU);
  detail.Spread.setText(col::kType, 1, "varchar");
  expectFaults("整数桁数が未設定です.");
  EXPECT_EQ(detail.Spread.backColour(col::kType, 1), 0xFFFFFFU);
  detail.Spread.setText(col::kType, 1, "INTEGER");
  EXPECT_FALSE(check()) << "a fixed type takes no digits";
  detail.Spread.setText(col::kType, 1, "datetime");
  scripted.expect("確認", "型が一覧にありません. このまま保存します.\n  a : datetime");
  EXPECT_FALSE(check());
  detail.Spread.setText(col::kType, 1, "");
  detail.Spread.setText(col::kChanged, 1, "");
  put(2, {{1, ""}, {2, " "}});
  EXPECT_FALSE(check()) << "an unchanged row and one without names are not looked at";
}

TEST_F(ValidationTest, KeysAndRanges) {
  begin("PostgreSQL");
  put(1, {{2, "a"}, {3, "-1"}, {4, "int"}, {8, "NULL"}});
  put(2, {{2, "b"}, {4, "text"}, {16, "≧"}});
  put(3, {{2, "c"}, {4, "int"}, {16, "範囲"}, {17, "1"}});
  expectFaults(
      "主キーの項目は必ずNOT NULLです.\n数字以外では範囲の設定はできません.\n範囲開始が未設定です.\n"
      "範囲終了が未設定です.");
  put(1, {{8, "NOT NULL"}});
  put(2, {{16, " "}});
  put(3, {{18, "2"}});
  EXPECT_FALSE(check());
}

TEST_F(ValidationTest, NamesStandOnceAndFitAScript) {
  begin("PostgreSQL");
  put(1, {{1, "同じ"}, {2, "a"}, {4, "int"}});
  put(2, {{1, "別"}, {2, "o'x"}, {4, ""}});
  put(3, {{1, " 同じ "}, {2, "c"}, {4, "int"}});
  expectFaults(
      "日本語/項目名に重複があります.\n項目名に, or 'が含まれています.\n型が未設定です.\n整数桁数が未設定です.");
  EXPECT_EQ(detail.Spread.backColour(col::kJapaneseName, 1), 0x0000FFU);
  EXPECT_EQ(detail.Spread.backColour(col::kJapaneseName, 2), 0xFFFFFFU);
  EXPECT_EQ(detail.Spread.backColour(col::kFieldName, 2), 0x0000FFU);
  EXPECT_EQ(detail.Spread.backColour(col::kFieldName, 3), 0xFFFFFFU);
  EXPECT_TRUE(pChkFieldChar("a,b"));
  EXPECT_FALSE(pChkFieldChar("a.b"));

  begin("Text");
  put(1, {{2, "FILLER"}, {3, "-1"}, {4, "X"}, {5, "1"}});
  put(2, {{2, "FILLER"}, {4, "X"}, {5, "1"}});
  EXPECT_FALSE(check()) << "a text layout may repeat a name, and its column 8 is a position";
}

TEST_F(ValidationTest, NamesThatAreStoredAlikeAreDuplicates) {
  begin("PostgreSQL");
  const auto expectDuplicates = [&](const char* japanese, const char* physical) {
    put(1, {{1, "金額1"}, {2, "bb"}, {4, "int"}});
    put(2, {{1, japanese}, {2, physical}, {4, "int"}});
    expectFaults("日本語/項目名に重複があります.");
  };
  expectDuplicates("別", "BB");
  expectDuplicates("金額１", "c");
  session.gCurrentSystem.fieldAsTyped = true;
  expectDuplicates("別", "BB");
  put(2, {{2, "ｂｂ"}});
  EXPECT_FALSE(check());
  session.gCurrentSystem.fieldNarrow = session.gCurrentSystem.replaceJpnSpace = true;
  expectDuplicates("別", "ｂｂ");
  expectDuplicates("金　額1", "c");
  put(2, {{1, "別"}, {2, "a，b"}});
  expectFaults("項目名に, or 'が含まれています.");

  begin("PG管理");
  put(1, {{2, "a program without a number"}});
  put(2, {{1, "00001"}});
  scripted.expect("入力エラー", "管理IDに重複があります.");
  EXPECT_TRUE(pChkPrjDetails(session, scripted.host, detail));
}

TEST_F(ValidationTest, WhatWasStoredSoIsToldAndSaved) {
  const std::string id = addTable("販売", "MySQL", "T", "表");
  addField(id, 1, "項目名, 型, 整数桁数, 範囲分類, 範囲開始", "'a', 'ENUM(''x'')', 0, '≧', '1'");
  addField(id, 2, "項目名, 型, 整数桁数", "'b', 'MEDIUMBLOB', 0");
  addField(id, 3, "項目名, 型", "'c', 'VARCHAR'");
  ASSERT_FALSE(load(id));
  put(1, {});
  put(2, {});
  scripted.expect("確認",
                  "型が一覧にありません. このまま保存します.\n  a : ENUM('x')\n"
                  "整数桁数が未設定です. このまま保存します.\n  b : MEDIUMBLOB");
  EXPECT_FALSE(check());
  EXPECT_TRUE(badCells(detail).empty()) << "nothing for a person to put right";
  put(4, {{2, "d"}, {4, "MEDIUMBLOB"}});
  expectFaults("整数桁数が未設定です.");
  put(4, {{5, "1"}});
  put(2, {{4, "LONGBLOB"}});
  expectFaults("整数桁数が未設定です.");
  put(2, {{5, "1"}});
  put(3, {});
  expectFaults("整数桁数が未設定です.");
}

TEST_F(ValidationTest, SqlServerAllowsOneIdentityAndNeedsFormulas) {
  begin("SQL Server");
  put(1, {{2, "a"}, {4, "int identity"}});
  put(2, {{2, "b"}, {4, "BIGINT IDENTITY"}});
  expectFaults("identityは、テーブルに一つのみ定義できます.");
  for (int row : {1, 2}) detail.Spread.setText(col::kChanged, row, "");
  expectFaults("identityは、テーブルに一つのみ定義できます.");
  detail.Spread.setText(col::kType, 2, "計算式");
  expectFaults("型=計算式のときは、備考に計算式を設定して下さい.");
  put(2, {{12, "a + 1"}});
  EXPECT_FALSE(check());
}

TEST_F(ValidationTest, ViewsMembersAndProgramsHaveTheirOwn) {
  begin("PostgreSQL");
  put(1, {{1, "a"}, {2, "x"}});
  put(2, {{1, "a"}, {2, "y"}});
  scripted.expect("入力エラー", "日本語/項目名に重複があります.");
  EXPECT_TRUE(pChkViewDetails(session, scripted.host, detail));
  put(2, {{1, "b"}});
  EXPECT_FALSE(pChkViewDetails(session, scripted.host, detail)) << "a view needs no types";

  begin("メンバー");
  detail.Spread.setMaxRows(0);
  put(1, {{1, "伊藤"}});
  put(2, {{1, "不明"}, {4, "参加日"}});
  put(3, {{1, "2026/04/01"}, {4, "終了日"}});
  put(4, {{1, "x"}, {4, "メモ"}});
  put(5, {{1, "y"}, {4, "メモ"}});
  scripted.expect("入力エラー", "型が未設定です.\n日付以外が設定されています.\n日本語/項目名に重複があります.");
  EXPECT_TRUE(pChkMemberDetails(session, scripted.host, detail));

  begin("PG管理");
  put(1, {{1, "7"}});
  put(2, {{1, "7"}});
  scripted.expect("入力エラー", "管理IDに重複があります.");
  EXPECT_TRUE(pChkPrjDetails(session, scripted.host, detail));
  detail.Spread.setMaxRows(0);
  scripted.expect("確認", "データの変更はありませんでした.");
  EXPECT_TRUE(pChkPrjDetails(session, scripted.host, detail));
}

}  // namespace
}  // namespace quillmarden
