#include "editing_fixture.h"

namespace quillmarden {
namespace {

class DetailLoadTest : public EditingTest {};

TEST_F(DetailLoadTest, HeaderShowsTheTable) {
  const std::string id = addTable("販売", "PostgreSQL", " ORDERS ", " 受注 ");
  database().execute(
      "UPDATE MAS_TABLEINFO SET 略名 = ' ord ', 分類 = 'マスタ', 概要 = '受注の表', ORA_INITIAL = 4096, ORA_NEXT = 12, "
      "SQL文初回作成日 = #2026/01/02 03:04:05#, reffile = 'a.txt', partition_field = 'id', 全システム共通 = True, "
      "brinindex = 1, pmark = -1, 想定数 = 10 WHERE ID = " +
      id);
  ASSERT_FALSE(load(id));
  EXPECT_EQ(detail.txtTableNameENG.text, "ORDERS");
  EXPECT_EQ(detail.caption, "受注 : ORDERS [ a.txt ] ");
  EXPECT_EQ(detail.lblRyaku.caption, "ord");
  EXPECT_EQ(detail.lblNum[0].caption, "4,096 K");
  EXPECT_EQ(detail.lblNum[1].caption, "12");
  EXPECT_EQ(detail.lblNum[2].caption, "");
  EXPECT_EQ(detail.lblFirstSQL.caption, "2026/01/02 03:04");
  EXPECT_EQ(detail.lblNewSQL.caption, "");
  EXPECT_EQ(detail.lblNumSQL.caption, "0");
  EXPECT_EQ(detail.lblKensu[1].caption, "10");
  EXPECT_TRUE(detail.lblAllSystem.visible && detail.lblBRIN.visible && detail.PicPmark.visible);
  EXPECT_FALSE(detail.PicReverse.visible || detail.picTrigger.visible);
  EXPECT_TRUE(detail.cmdRefFile.enabled && detail.cmdPartition.enabled && detail.mnuPartition.visible);
  EXPECT_FALSE(detail.Spread.column(col::kPmark).hidden);

  database().execute(
      "UPDATE MAS_TABLEINFO SET ORA_INITIAL = 1500000, 日本語名 = Null, reffile = Null, pmark = 0 "
      "WHERE ID = " +
      id);
  ASSERT_FALSE(load(id));
  EXPECT_EQ(detail.lblNum[0].caption, "1,500 M");
  EXPECT_EQ(detail.caption, "ORDERS");
  EXPECT_TRUE(detail.Spread.column(col::kPmark).hidden);
}

TEST_F(DetailLoadTest, FieldsStandInTheirColumns) {
  database().execute("INSERT INTO MAS_DOMAIN (システム名, 日本語名, 型) VALUES ('販売', '顧客番号', 'int')");
  const std::string id = addTable("販売", "PostgreSQL", "ORDERS", "受注");
  database().execute("UPDATE MAS_TABLEINFO SET チェックポイント日付 = #2026/02/01# WHERE ID = " + id);
  addField(
      id, 1,
      "日本語名, 項目名, [KEY], 型, 整数桁数, 少数桁数, 長さ, Null値, 項目分類, 項目参照先, 備考, 初期値, DomainID, "
      "範囲分類, 範囲開始, 範囲終了, 外部参照, 外部参照TABLEID, 外部参照ROWNO, 作成者, 作成年月日",
      "'番号', 'id', -1, ' INTEGER', 10, 2, 4, 'NOT NULL', 'コード', '区分', '備', '0', 1, '範囲', '1', '9', "
      "'顧客:番号', 3, 4, 'ito', #2026/02/01 00:00:59#");
  addField(id, 2, "項目名, 範囲開始, 作成年月日", "'b', '5', #2026/03/01 10:00:00#");
  ASSERT_FALSE(load(id));
  ASSERT_EQ(detail.Spread.maxRows(), 2);
  EXPECT_EQ(
      cells(1, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20, 21, 22, 23, 24, 25, 26}),
      "番号|id|-1|integer|10|2|4|NOT NULL||コード|区分|備|0|顧客番号|1|範囲|1|9|顧客:番号||3|4||001|ito|2026/02/01 "
      "00:00");
  EXPECT_EQ(cells(2, {1, 2, 3, 4, 17, 24, 26}), "|b||||002|2026/03/01 10:00");
  EXPECT_EQ(detail.Spread.rowTag(2), 2);
  EXPECT_EQ(detail.Spread.kind(col::kType, 1), CellKind::Static) << "the domain owns the type";
  EXPECT_EQ(detail.Spread.kind(col::kType, 2), CellKind::List);
  EXPECT_EQ(detail.lblAddNum.caption, "1") << "seconds do not make a row later than the check point";
  EXPECT_EQ(detail.Spread.backColour(col::kJapaneseName, 2), session.settings.backColorAdd);
  EXPECT_EQ(detail.lblBiko.caption, "備考 [ 番号 ]");
  EXPECT_EQ(detail.lblColRow.caption, "001 : 001");
  EXPECT_EQ(detail.Spread.maxRows(), 2);
}

TEST_F(DetailLoadTest, GapsStayAndRowsWithoutAUsablePlaceAreNotLost) {
  const std::string id = addTable("販売", "PostgreSQL", "T", "表");
  const auto at = [&](int rowNo, const std::string& order) {
    database().execute("INSERT INTO MAS_TABLEDETAILES (ID, ROWNO, 表示順, 項目名) VALUES (" + id + ", " +
                       std::to_string(rowNo) + ", " + order + ", 'F" + std::to_string(rowNo) + "')");
  };
  at(1, "2");
  at(2, "4");
  at(3, "4");
  at(4, "Null");
  at(5, "2000000000");
  ASSERT_FALSE(load(id));
  Lines names;
  for (int row = 1; row <= detail.Spread.maxRows(); ++row) names.emplace_back(detail.Spread.text(col::kFieldName, row));
  EXPECT_EQ(names, (Lines{"F4", "F1", "", "F2", "F3", "F5"}));
}

TEST_F(DetailLoadTest, ReadOnlyTablesShowMarksAndUnknownTypes) {
  const std::string id = addTable("販売", "PostgreSQL", "T", "表");
  addField(id, 1, "項目名, [KEY], 型, pmark", "'a', -1, 'geometry', -1");
  addField(id, 2, "項目名, [KEY], 型, pmark", "'b', 0, 'int', 0");
  ASSERT_FALSE(load(id));
  EXPECT_FALSE(detail.readOnly);
  EXPECT_TRUE(detail.CmdUpDate.enabled);
  EXPECT_EQ(cells(1, {3, 4, 9}), "-1|geometry|-1") << "a type that the drop-down does not hold is still the field's";
  EXPECT_EQ(detail.Spread.backColour(col::kType, 1), 0x0000FFU);
  EXPECT_EQ(cells(2, {3, 4, 9}), "0|int|0");

  const auto expectLocked = [&](const char* why) {
    ASSERT_FALSE(load(id));
    EXPECT_FALSE(detail.CmdUpDate.enabled || detail.mnuEditing.enabled) << why;
    EXPECT_TRUE(detail.Txtbiko.locked) << why;
    EXPECT_EQ(cells(1, {3, 4, 9}), "○|geometry|○") << why;
    EXPECT_EQ(cells(2, {3, 4, 9}), "|int|") << why;
    EXPECT_EQ(detail.Spread.kind(col::kFieldName, 1), CellKind::Static) << why;
  };
  detail.batch = true;
  expectLocked("a generation run");
  EXPECT_FALSE(detail.picEdit.visible) << "the table itself may be changed";
  detail.batch = false;
  database().execute("UPDATE MAS_TABLEINFO SET 修正許可 = 0");
  expectLocked("the table's own right");
  EXPECT_TRUE(detail.picEdit.visible);
  database().execute("UPDATE MAS_TABLEINFO SET 修正許可 = Null");
  ASSERT_FALSE(load(id));
  EXPECT_FALSE(detail.readOnly) << "Null means editable";
  session.gCurrentSystem.editAllowed = false;
  expectLocked("the System's right");
  session.gCurrentSystem.editAllowed = true;
  session.gCurrentSystemName = "人事";
  expectLocked("another System's table");
  EXPECT_FALSE(detail.CmdER.enabled);
  EXPECT_EQ(detail.lblSystemName.backColour, 0x80FFFFU);
  session.gCurrentSystemName = kAllSystems;
  expectLocked("the entry for all Systems");
  session.gCurrentSystemName = "販売";
  ASSERT_FALSE(load(id));
  EXPECT_TRUE(detail.CmdER.enabled && detail.CmdUpDate.enabled);
  EXPECT_FALSE(detail.lblSystemName.backColour.has_value());
}

TEST_F(DetailLoadTest, EachKindSetsItsMode) {
  const std::string text = addTable("販売", " TEXT ", "F", "ファイル");
  addField(text, 1, "項目名, 型, 整数桁数, 長さ, Null値", "'a', 's9 c3', 8, 99, '8'");
  addField(text, 2, "項目名, 型, 整数桁数, 長さ, Null値", "'b', 'X', 3, 99, '11'");
  ASSERT_FALSE(load(text));
  EXPECT_EQ(detail.mode, DetailMode::Text);
  EXPECT_EQ(cells(1, {4, 7, 8}) + " " + cells(2, {4, 7, 8}), "S9 C3|1|8 X|9|11");
  EXPECT_EQ(detail.Spread.column(col::kLength).title, "開始");

  const std::string member = addTable("販売", "メンバー", "M", "体制");
  ASSERT_FALSE(load(member));
  EXPECT_EQ(detail.mode, DetailMode::Member);
  ASSERT_EQ(detail.Spread.maxRows(), 11);
  EXPECT_EQ(cells(2, {4, 12}) + " " + cells(8, {4, 12}) + " " + cells(11, {4, 12}), "会社略名| 役割|販売 メモ|");
  addField(member, 1, "項目名, 型", "'伊藤', '会社'");
  ASSERT_FALSE(load(member));
  EXPECT_EQ(cells(1, {1, 4}), "伊藤|会社");

  const std::string fixed = addTable("販売", "固定値", "C", "定数");
  addField(fixed, 1, "日本語名, 項目名, 型", "'税率', '10', 'Yes/No'");
  ASSERT_FALSE(load(fixed));
  EXPECT_EQ(detail.mode, DetailMode::FixedValue);
  EXPECT_EQ(cells(1, {1, 2, 4}), "税率|10|Yes/No");

  const std::string prj = addTable("販売", "PG管理", "P", "一覧");
  database().execute(
      "INSERT INTO MAS_PRJINFO (ID, ROWNO, 表示順, 日本語名, [KEY], DB_COLUMN_NAME, 型, 項目分類) VALUES (" + prj +
      ", 1, 1, '00001', -1, 'PG01', 'COBOL', '○完了')");
  ASSERT_FALSE(load(prj));
  EXPECT_EQ(detail.mode, DetailMode::Prj);
  EXPECT_EQ(cells(1, {1, 3, 4, 10}), "00001|PG01|COBOL|○完了");
  EXPECT_EQ(detail.Spread.backColour(col::kClass, 1), 0xC8E6FFU);

  const std::string view = addTable("販売", "PostgreSQL", "V", "ビュー");
  database().execute("UPDATE MAS_TABLEINFO SET 分類 = 'VIEW' WHERE ID = " + view);
  ASSERT_FALSE(load(view));
  EXPECT_EQ(detail.mode, DetailMode::Table);
  EXPECT_EQ(detail.Spread.text(col::kFieldName, 0), "VIEW.表示名");
  EXPECT_EQ(detail.Spread.maxRows(), 0);
}

TEST_F(DetailLoadTest, StatementsDoNotGrowWithTheFields) {
  const std::string small = addTable("販売", "PostgreSQL", "S", "小");
  addField(small, 1, "項目名", "'a'");
  const std::string large = addTable("販売", "PostgreSQL", "L", "大");
  for (int field = 1; field <= 40; ++field) addField(large, field, "項目名, 型, 項目参照先", "'f', 'int', '区分'");
  ASSERT_FALSE(load(small));
  const auto statements = [&](const std::string& id) {
    const long before = database().statementCount();
    EXPECT_FALSE(load(id));
    return database().statementCount() - before;
  };
  EXPECT_EQ(statements(small), 3);
  EXPECT_EQ(statements(large), 4) << "the value list of the active row is one more";
  detail.batch = true;
  EXPECT_EQ(statements(small), 2);
  EXPECT_EQ(statements(large), 2);
}

TEST_F(DetailLoadTest, IndexesAndValueListsStandBesideTheGrid) {
  const std::string id = addTable("販売", "PostgreSQL", "T", "表");
  addField(id, 1, "項目名, 項目参照先", "'a', '区分'");
  database().execute("INSERT INTO MAS_DIVISION (システム名, 値名称) VALUES ('販売', '区分')");
  database().execute(
      "INSERT INTO MAS_DIVISIONDETAILES (システム名, 値名称, 値, 内容, 初期値) VALUES "
      "('販売', '区分', '1', '新規', -1)");
  database().execute("INSERT INTO MAS_INDEX (INDEX_NAME, ID, ROWNO) VALUES ('IX1', " + id + ", 1)");
  ASSERT_FALSE(load(id));
  EXPECT_TRUE(detail.lblIndex.visible);
  EXPECT_EQ(detail.lstIndex.rows, (Lines{"IX1"}));
  EXPECT_EQ(detail.lstAtai.rows, (Lines{"[初期値]1:新規"}));
  database().execute("UPDATE MAS_TABLEDETAILES SET 項目参照先 = \"it's\"");
  ASSERT_FALSE(load(id)) << "a list that cannot be read does not hide the table";
  EXPECT_EQ(cells(1, {2, 11}), "a|it's");
}

TEST_F(DetailLoadTest, AMissingTableLeavesNothingThatCouldBeSaved) {
  const std::string id = addTable("販売", "PostgreSQL", "T", "表");
  addField(id, 1, "項目名", "'a'");
  ASSERT_FALSE(load(id));
  for (const char* wrong : {"4711", "", "abc", "1 OR 1=1"}) {
    EXPECT_TRUE(load(wrong)) << wrong;
    EXPECT_EQ(detail.Spread.maxRows(), 0) << wrong;
    EXPECT_TRUE(CmdUpDate_Click(session, scripted.host, detail)) << wrong;
  }
  EXPECT_TRUE(session.gKeepLog);
}

TEST_F(DetailLoadTest, NullsEverywhereAreShownAsNothing) {
  database().execute("INSERT INTO MAS_TABLEINFO (システム名) VALUES ('販売')");
  const std::string id = cell("SELECT Max(ID) AS newest FROM MAS_TABLEINFO");
  database().execute("INSERT INTO MAS_TABLEDETAILES (ID, ROWNO) VALUES (" + id + ", 1)");
  ASSERT_FALSE(load(id));
  EXPECT_EQ(detail.Spread.maxRows(), 1);
  for (int column = 1; column <= col::kCount; ++column)
    EXPECT_EQ(detail.Spread.text(column, 1), column == col::kOrder ? "001" : "") << column;
}

}  // namespace
}  // namespace quillmarden
