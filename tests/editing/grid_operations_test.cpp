#include "editing/grid_operations.h"

#include <fstream>

#include "common/text.h"
#include "editing/detail_parts.h"
#include "editing/file_link.h"
#include "editing/frm_partition.h"
#include "editing/frm_sp_sort.h"
#include "editing/frm_tb_detail_edit.h"
#include "editing_fixture.h"

namespace quillmarden {
namespace {

class GridOperationsTest : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    id = addTable("販売", "PostgreSQL", "T", "表");
    for (const char* name : {"A", "B", "C", "D"}) {
      const int number = name[0] - 'A' + 1;
      addField(id, number, "日本語名, 項目名, 型, 整数桁数, 作成者",
               "'" + std::string(name) + "名', '" + name + "', 'varchar', " + std::to_string(10 - number) + ", 'ito'");
    }
    ASSERT_FALSE(load(id));
  }

  static GridSelection rowsOf(int first, int last) { return {{1, first, col::kCount, last, true}}; }

  /// Field names of all rows with their marks, such as "A B* -".
  std::string names() const {
    std::string all;
    for (int row = 1; row <= detail.Spread.maxRows(); ++row) {
      const std::string name(detail.Spread.text(col::kFieldName, row));
      all += (all.empty() ? "" : " ") + (name.empty() ? "-" : name);
      if (detail.Spread.text(col::kChanged, row) == kChangedMark) all += "*";
    }
    return all;
  }
  void remove(const GridSelection& selection) { mnuDelete_Click(session, scripted.host, detail, selection); }
  void insert(const GridSelection& selection) { mnuInSert_Click(session, scripted.host, detail, selection); }
  void undo() { mnuUndo_Click(session, scripted.host, detail); }

  std::string id;
};

constexpr std::string_view kDeleteFromDatabase =
    "データベースにテーブル定義済の場合\n行削除するとデータベース上の構造と\nQuillmardenの構造に差がでます."
    "\n行削除しますか?";
constexpr std::string_view kInsertIntoDatabase =
    "データベースにテーブル定義済の場合\n行挿入するとデータベース上の構造と\nQuillmardenの構造に差がでます."
    "\n行挿入しますか?";

TEST_F(GridOperationsTest, RowsGoAfterTheirQuestionAndMarkTheirPlace) {
  scripted.expect("削除確認", "行を削除しますか?", kNo);
  remove(rowsOf(2, 2));
  EXPECT_EQ(names(), "A B C D");
  EXPECT_FALSE(detail.changed);
  scripted.expect("削除確認", "行を削除しますか?", kYes);
  remove({{2, 1, 2, 1, false}, {2, 3, 2, 3, false}});
  EXPECT_EQ(names(), "B* D*");
  EXPECT_EQ(cells(2, {col::kOrder}), "002");
  undo();
  EXPECT_EQ(names(), "A B C D");
  EXPECT_FALSE(detail.changed);

  scripted.answerAll(kYes);
  remove(rowsOf(1, 4));
  EXPECT_EQ(names(), "-*") << "the mark stands where the rows were, or nothing could be saved";
  ASSERT_FALSE(CmdUpDate_Click(session, scripted.host, detail));
  EXPECT_EQ(fields(id, "項目名"), Lines{});
}

TEST_F(GridOperationsTest, ATableThatADatabaseHasGetsTheQuestionOfItsStructure) {
  detail.lblNumSQL.caption = "2";
  scripted.expect("確認", std::string(kDeleteFromDatabase), kNo);
  remove(rowsOf(4, 4));
  EXPECT_EQ(names(), "A B C D");
  scripted.expect("確認", std::string(kDeleteFromDatabase), kYes);
  remove(rowsOf(4, 4));
  EXPECT_EQ(names(), "A B C -*");
  scripted.expect("確認", std::string(kInsertIntoDatabase), kYes);
  insert(rowsOf(1, 1));
  EXPECT_EQ(names(), "-* A B C -*");
  // Rows behind the last stored one are nothing to a database.
  scripted.expect("挿入確認", "行を挿入しますか?", kNo);
  insert(rowsOf(5, 5));
  scripted.expect("削除確認", "行を削除しますか?", kNo);
  remove(rowsOf(5, 5));
  EXPECT_EQ(names(), "-* A B C -*");
}

TEST_F(GridOperationsTest, NoRowComesAboveAnIndexedField) {
  database().execute("INSERT INTO MAS_INDEX (INDEX_NAME, ID, ROWNO, 順序) VALUES ('IX', " + id + ", 3, 1)");
  ASSERT_FALSE(load(id));
  scripted.expect("確認", "Indexが作成されています。\n 行 : [ 3 ] \nより小さい行に挿入することはできません.");
  insert(rowsOf(2, 2));
  scripted.expect("挿入確認", "行を挿入しますか?", kYes);
  insert({{2, 3, 4, 4, false}});
  EXPECT_EQ(names(), "A B -* -* C D") << "as many rows as were selected";
  EXPECT_EQ(cells(5, {col::kOrder}), "005");
  ASSERT_FALSE(pPutTableDetails(session, scripted.host, detail));
  EXPECT_EQ(cell("SELECT ROWNO FROM MAS_INDEX"), "3") << "the index still means C";
}

TEST_F(GridOperationsTest, CopiesOfRowsAreNewFields) {
  mnuDuplicate_Click(session, scripted.host, detail, {{1, 1, 1, 1, false}, {1, 3, 1, 3, false}});
  EXPECT_EQ(names(), "A B C A* C* D");
  EXPECT_EQ(cells(4, {col::kJapaneseName, col::kAuthor}), "A名|");
  EXPECT_EQ(detail.Spread.rowTag(4), 0);
  EXPECT_EQ(detail.activeRow, 4);
  mnuAddLine_Click(session, scripted.host, detail);
  EXPECT_EQ(detail.activeRow, 7);
}

TEST_F(GridOperationsTest, ClearingAsksEmptiesAndEndsLinks) {
  database().execute(
      "INSERT INTO MAS_DOMAIN (システム名, 日本語名, 型, 整数桁数, 削除フラグ) VALUES ('販売', '語', 'text', 4, 0)");
  ASSERT_FALSE(setDomain(session, scripted.host, detail, 2, 1));
  for (int column : {col::kForeign, col::kForeignTableId, col::kForeignRowNo}) detail.Spread.setText(column, 3, "1");
  scripted.expect("確認", "選択された範囲をクリアします.", kNo);
  mnuClear_Click(session, scripted.host, detail, rowsOf(1, 1));
  EXPECT_EQ(names(), "A B* C D");

  scripted.expect("確認", "選択された範囲をクリアします.", kYes);
  mnuClear_Click(session, scripted.host, detail, {{4, 1, 5, 2, false}});
  EXPECT_EQ(cells(1, {2, 4, 5, 20}), "A|||変更");
  EXPECT_EQ(cells(2, {4, 5, 15}), "text|4|1") << "the domain owns them";
  clearCells(session, scripted.host, detail, rowsOf(2, 3));
  EXPECT_EQ(cells(2, {1, 2, 4, 5, 14, 15, 25}), "||||||ito");
  EXPECT_EQ(detail.Spread.kind(col::kType, 2), CellKind::List);
  EXPECT_EQ(cells(3, {1, 19, 21, 22}), "|||");
  EXPECT_EQ(detail.Spread.rowTag(3), 3) << "the row is still that field";
}

TEST_F(GridOperationsTest, SortingChecksItsKeysInOrder) {
  frmSpSort sort;
  frmSpSort_Load(sort, detail);
  ASSERT_EQ(sort.CmbKey[0].entries[2], "項目名 (物理)");
  const auto run = [&](std::string_view first, std::string_view second, std::string_view third) {
    sort.CmbKey[0].text = first;
    sort.CmbKey[1].text = second;
    sort.CmbKey[2].text = third;
    return cmdOK_Click(session, scripted.host, sort, detail);
  };
  scripted.expect("確認", "最優先のキーが未設定です.");
  EXPECT_TRUE(run("", "型", ""));
  scripted.expect("確認", "２番目のキーが未設定です.\n３番目のキーが設定されています.");
  EXPECT_TRUE(run("型", "", "型"));
  scripted.expect("確認", "最優先のキーと２番目のキーが同じです.");
  EXPECT_TRUE(run("型", "型", "型"));
  scripted.expect("確認", "最優先のキーと３番目のキーが同じです.");
  EXPECT_TRUE(run("型", "長さ", "型"));
  scripted.expect("確認", "２番目のキーと３番目のキーが同じです.");
  EXPECT_TRUE(run("型", "長さ", "長さ"));
  EXPECT_EQ(names(), "A B C D");
}

TEST_F(GridOperationsTest, SortingComparesNumbersAsNumbersAndKeepsBlankRowsBehind) {
  detail.Spread.setText(col::kWholeDigits, 1, "10");  // A 10, B 8, C 7, D 6
  detail.Spread.insertRow(2);
  detail.Spread.setText(col::kType, 5, "char");
  frmSpSort sort;
  frmSpSort_Load(sort, detail);
  sort.CmbKey[0].text = "整数桁数";
  ASSERT_FALSE(cmdOK_Click(session, scripted.host, sort, detail));
  EXPECT_EQ(names(), "D* C* B A* -");
  EXPECT_EQ(detail.Spread.rowTag(1), 4) << "a row keeps its identity";
  sort.CmbKey[0].text = "型";
  sort.CmbKey[1].text = "項目名 (物理)";
  sort.ChkDescending[1].value = true;
  ASSERT_FALSE(cmdOK_Click(session, scripted.host, sort, detail));
  EXPECT_EQ(names(), "D* C* B A* -");
  sort.ChkDescending[1].value = false;
  ASSERT_FALSE(cmdOK_Click(session, scripted.host, sort, detail));
  EXPECT_EQ(names(), "D* A* B C* -");
  undo();
  EXPECT_EQ(names(), "D* C* B A* -");
}

TEST_F(GridOperationsTest, ThePartitionListIsAskedAboutAndStored) {
  const auto choose = [&](const GridSelection& selection) {
    return mnuPartition_Click(session, scripted.host, detail, selection);
  };
  scripted.expect("確認", "複数の選択はできません.");
  EXPECT_TRUE(choose({{2, 1, 2, 1, false}, {2, 3, 2, 3, false}}));
  scripted.expect("確認", "Partitionを設定しました.\n A,B\n再読み込みすることで、背景色を設定します.");
  EXPECT_FALSE(choose(rowsOf(1, 2)));
  EXPECT_EQ(cell("SELECT partition_field FROM MAS_TABLEINFO WHERE ID = " + id), "A,B");
  scripted.expect("確認", "既にPartitionの設定がされています.\n A,B\n   ↓\n C\n変更しますか?", kNo);
  EXPECT_TRUE(choose(rowsOf(3, 3)));
  EXPECT_EQ(detail.txtPartitionRead.text, "A,B");

  scripted.answerAll(kYes);
  detail.Spread.setText(2, 1, std::string(101, 'x'));
  EXPECT_TRUE(choose(rowsOf(1, 1)));
  EXPECT_EQ(scripted.messages.back().substr(0, 30), std::string("こまった|エラーです.\n  ").substr(0, 30));
  EXPECT_EQ(cell("SELECT partition_field FROM MAS_TABLEINFO WHERE ID = " + id), "A,B");
  detail.Spread.setText(2, 1, "o'clock");
  EXPECT_FALSE(choose(rowsOf(1, 1)));
  EXPECT_EQ(cell("SELECT partition_field FROM MAS_TABLEINFO WHERE ID = " + id), "o'clock");
  EXPECT_FALSE(cmdPartition_Click(session, scripted.host, detail));
  EXPECT_EQ(cell("SELECT partition_field FROM MAS_TABLEINFO WHERE ID = " + id), "");
}

TEST_F(GridOperationsTest, AFileLinkIsCopiedBesideTheRepositoryAndOpened) {
  session.gDbFolder = scripted.folder.path().string();
  session.gDbFileName = "TableInf.MDB";
  const std::string fixed = addTable("販売", "固定値", "F", "定数");
  addField(fixed, 1, "日本語名, 型", "'文書', 'FileLink'");
  addField(fixed, 2, "日本語名, 型", "'値', '文字'");
  ASSERT_FALSE(load(fixed));
  EXPECT_TRUE(isFileLinkCell(detail, 2, 1));
  EXPECT_FALSE(isFileLinkCell(detail, 2, 2) || isFileLinkCell(detail, 1, 1));
  const std::string file = scripted.folder.file("見積.txt");
  std::ofstream(file) << "x";
  ASSERT_FALSE(linkFile(session, scripted.host, detail, 2, 1, file));
  EXPECT_EQ(cells(1, {2}), file) << "without the System's flag the file stays where it is";
  session.gCurrentSystem.fileLinkCopy = true;
  std::filesystem::create_directories(scripted.folder.path() / "_FileLink_tableinf");
  std::ofstream(scripted.folder.path() / "_FileLink_tableinf" / "0041_old.txt") << "x";
  ASSERT_FALSE(linkFile(session, scripted.host, detail, 2, 1, file));
  EXPECT_EQ(cells(1, {2, 20}), "0042_見積.txt|変更");
  scripted.answerAll(kYes);
  ASSERT_FALSE(CmdUpDate_Click(session, scripted.host, detail));
  EXPECT_EQ(cells(1, {2}), "0042_見積.txt") << "a value keeps its letters";
  openFileLink(session, scripted.host, detail, 2, 1);
  EXPECT_EQ(scripted.opened, (Lines{(scripted.folder.path() / "_FileLink_tableinf" / "0042_見積.txt").string()}));
  EXPECT_TRUE(linkFile(session, scripted.host, detail, 2, 1, scripted.folder.file("none.txt")));

  // A path that was stored in capitals, folder and all, still leads to its file.
  detail.Spread.setText(2, 1,
                        scripted.folder.path().parent_path().string() + "/" +
                            toUpper(scripted.folder.path().filename().string()) + "/見積.TXT");
  openFileLink(session, scripted.host, detail, 2, 1);
  EXPECT_EQ(scripted.opened.back(), file);
  detail.Spread.setText(2, 1, "");
  const std::string deep = scripted.folder.path().string() + "/" + std::string(200, 'd');
  std::filesystem::create_directories(deep);
  session.gCurrentSystem.fileLinkCopy = false;
  std::ofstream(deep + "/" + std::string(60, 'f')) << "x";
  scripted.messages.clear();
  EXPECT_TRUE(linkFile(session, scripted.host, detail, 2, 1, deep + "/" + std::string(60, 'f')));
  EXPECT_EQ(scripted.messages, (Lines{"入力確認|[値]が長すぎます. 255バイト(全角127文字)までです."}));
}

}  // namespace
}  // namespace quillmarden
