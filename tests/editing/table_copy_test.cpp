#include "editing/table_copy.h"

#include "editing/deleted_tables.h"
#include "editing/frm_partition.h"
#include "editing_fixture.h"

namespace quillmarden {
namespace {

class TableCopy : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    source = addTable("販売", "PostgreSQL", "T_ORDER", "受注");
    run("UPDATE MAS_TABLEINFO SET 略名 = 'ORD', 分類 = '管理データ', 概要 = '受注の表', 作成間隔 = '毎日', "
        "レコード長 = 120, 作成回数 = 7, 進捗状況 = '完了', 作成日 = '2026/01/01 00:00:00', reffile = 'a.txt', "
        "partition_field = 'no' WHERE ID = " +
        source);
    addField(source, 1, "日本語名, 項目名, 型, [KEY]", "'番号', 'no', 'integer', -1");
    addField(source, 2, "日本語名, 項目名, 型, 外部参照, 外部参照TABLEID, 外部参照ROWNO",
             "'親番号', 'parent', 'integer', '受注:番号', " + source + ", 1");
    addField(source, 3, "日本語名, 項目名, 型, 外部参照, 外部参照TABLEID, 外部参照ROWNO",
             "'顧客', 'customer', 'integer', '顧客:番号', 77, 1");
    index("IDXORD_001", 2);
    index("BY_CUSTOMER", 3);
    run("INSERT INTO MAS_TABLEBIKO (ID, NUM, システム名, 日本語名, 備考) VALUES (" + source +
        ", 1, '販売', '※', '締め')");
  }

  void run(const std::string& sql) { database().execute(sql); }
  void index(const std::string& name, int rowNo) {
    run("INSERT INTO MAS_INDEX (INDEX_NAME, ID, ROWNO, 順序) VALUES ('" + name + "', " + source + ", " +
        std::to_string(rowNo) + ", 1)");
  }
  Outcome save() {
    Windows windows;
    scripted.expect("確認", "更新します.\n更新しないときは、[いいえ]のあと\n[キャンセル]ボタンを押してください.", kYes);
    return cmdOK_Click(session, scripted.host, windows, info) ? Outcome::Failed : Outcome::Done;
  }

  std::string source;
  frmTBInfo info;
};

TEST_F(TableCopy, TakesFieldsIndexesAndMemoAlongUnderFreeNames) {
  addTable("販売", "PostgreSQL", "t_order_2", "受注のコピー");
  ASSERT_FALSE(frmTBInfo_LoadCopy(session, scripted.host, info, source));
  EXPECT_EQ(info.TxtTableName.text + "|" + info.TxtJPN.text + "|" + info.TxtRyaku.text, "T_ORDER_3|受注のコピー2|ORD2");
  ASSERT_EQ(save(), Outcome::Done);
  const std::string id = info.lblID.caption;
  EXPECT_NE(id, source);
  EXPECT_EQ(rows("SELECT 分類, レコード長, 作成回数, 進捗状況, 作成日, reffile, partition_field, 作成者 FROM "
                 "MAS_TABLEINFO WHERE ID = " +
                 id),
            (Lines{"管理データ|120|-|未着手|-||no|admin"}));
  EXPECT_EQ(fields(id, "項目名, 外部参照, 外部参照TABLEID, 作成年月日"),
            (Lines{"no|-|-|2026/11/24 09:05:00", "parent|受注のコピー2:番号|" + id + "|2026/11/24 09:05:00",
                   "customer|顧客:番号|77|2026/11/24 09:05:00"}));
  EXPECT_EQ(fields(source, "外部参照, 外部参照TABLEID"), (Lines{"-|-", "受注:番号|" + source, "顧客:番号|77"}));
  EXPECT_EQ(rows("SELECT INDEX_NAME, ROWNO FROM MAS_INDEX WHERE ID = " + id + " ORDER BY ROWNO"),
            (Lines{"IDXORD2_001|2", "BY_CUSTOMER_2|3"}));
  EXPECT_EQ(rows("SELECT NUM, 備考 FROM MAS_TABLEBIKO WHERE ID = " + id), (Lines{"1|締め"}));

  // The second save of the screen is one of a table like any other.
  ASSERT_EQ(save(), Outcome::Done);
  EXPECT_EQ(fields(id, "項目名").size(), 3u);
}

TEST_F(TableCopy, KeepsTheKindOfItsFieldsAndLeavesNothingWhereTheyCannotBeWritten) {
  ASSERT_FALSE(frmTBInfo_LoadCopy(session, scripted.host, info, source));
  info.CmbFileType.text = "MySQL";
  scripted.expect("入力確認",
                  "作成先のデータベース名が変更されました.\nテーブルの詳細情報があります.\n"
                  "このため、変更することはできません.\n元に戻します.");
  Windows windows;
  EXPECT_TRUE(cmdOK_Click(session, scripted.host, windows, info));
  EXPECT_EQ(info.CmbFileType.text, "PostgreSQL");

  // Another person has removed the source meanwhile.
  run("DELETE * FROM MAS_TABLEINFO WHERE ID = " + source);
  scripted.answerAll(kYes);
  EXPECT_TRUE(cmdOK_Click(session, scripted.host, windows, info));
  EXPECT_EQ(info.lblID.caption, "");
  EXPECT_EQ(cell("SELECT Count(*) FROM MAS_TABLEINFO"), "0");
  EXPECT_EQ(cell("SELECT Count(*) FROM MAS_TABLEDETAILES"), "3");
}

TEST_F(TableCopy, NamesIndexesWithinTheirWidth) {
  run("DELETE * FROM MAS_INDEX");
  index("受注番号による索引の長い名前と", 1);  // 30 bytes
  ASSERT_FALSE(frmTBInfo_LoadCopy(session, scripted.host, info, source));
  ASSERT_EQ(save(), Outcome::Done);
  EXPECT_EQ(cell("SELECT INDEX_NAME FROM MAS_INDEX WHERE ID = " + info.lblID.caption),
            "受注番号による索引の長い名前_2");
}

class DeletedTables : public TableCopy {};

TEST_F(DeletedTables, ComeBackWholeUnlessANameWasTaken) {
  run("UPDATE MAS_TABLEINFO SET 削除フラグ = 1, 更新者 = 'sato' WHERE ID = " + source);
  const std::string other = addTable("在庫", "PostgreSQL", "X", "他");
  run("UPDATE MAS_TABLEINFO SET 削除フラグ = -1 WHERE ID = " + other);
  const auto deleted = deletedTables(database(), "販売");
  ASSERT_EQ(deleted.size(), 1u);
  EXPECT_EQ(deleted[0].id + deleted[0].tableName + deleted[0].japaneseName + deleted[0].updatedBy,
            source + "T_ORDER受注sato");

  const std::string taken = addTable("販売", "PostgreSQL", "T_X", "受注");
  scripted.expect("入力確認", "日本語名が他で使用されています.");
  EXPECT_EQ(restoreTable(session, scripted.host, source), Outcome::Refused);
  run("UPDATE MAS_TABLEINFO SET 日本語名 = '注文' WHERE ID = " + taken);
  scripted.expect("確認", "削除されたテーブルを元に戻します.\n  [受注]", kNo);
  EXPECT_EQ(restoreTable(session, scripted.host, source), Outcome::Refused);
  EXPECT_EQ(cell("SELECT 削除フラグ FROM MAS_TABLEINFO WHERE ID = " + source), "1");
  scripted.expect("確認", "削除されたテーブルを元に戻します.\n  [受注]", kYes);
  EXPECT_EQ(restoreTable(session, scripted.host, source), Outcome::Done);
  EXPECT_EQ(cell("SELECT 削除フラグ, 更新者, 更新年月日 FROM MAS_TABLEINFO WHERE ID = " + source),
            "0|admin|2026/11/24 09:05:00");
  EXPECT_TRUE(deletedTables(database(), "販売").empty());
}

TEST_F(DeletedTables, AreNotAGuestsToBringBack) {
  run("UPDATE MAS_TABLEINFO SET 削除フラグ = 1 WHERE ID = " + source);
  session.gIsGuest = true;
  scripted.expect("確認", "guestでは、変更できません.");
  EXPECT_EQ(restoreTable(session, scripted.host, source), Outcome::Refused);
}

TEST_F(TableCopy, PartitionTakesFieldsInTheOrderOfTheirNaming) {
  ASSERT_FALSE(load(source));
  scripted.expect("確認", "既にPartitionの設定がされています.\n no\n   ↓\n customer,no\n変更しますか?", kYes);
  scripted.expect("確認", "Partitionを設定しました.\n customer,no\n再読み込みすることで、背景色を設定します.");
  EXPECT_FALSE(setPartition(session, scripted.host, detail, {"CUSTOMER", " no "}));
  scripted.expect("確認", "指定の項目が存在しません.\n 項目名 : nope");
  EXPECT_TRUE(setPartition(session, scripted.host, detail, {"no", "nope"}));
  EXPECT_EQ(cell("SELECT partition_field FROM MAS_TABLEINFO WHERE ID = " + source), "customer,no");
}

}  // namespace
}  // namespace quillmarden
