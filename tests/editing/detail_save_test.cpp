#include "editing/frm_tb_detail_edit.h"
#include "editing_fixture.h"

namespace quillmarden {
namespace {

class DetailSaveTest : public EditingTest {
 protected:
  bool save() { return pPutTableDetails(session, scripted.host, detail); }

  /// A table of three fields A, B and C with an index over all and a referring field in another table.
  std::string addReferred() {
    const std::string id = addTable("販売", "PostgreSQL", "T", "表");
    addField(id, 1, "項目名, 型, 整数桁数, DB_DATA_TYPE", "'A', 'varchar', 1, 'dbA'");
    addField(id, 2, "項目名, 型, 整数桁数, DB_DATA_TYPE", "'B', 'varchar', 2, 'dbB'");
    addField(id, 3, "項目名, 型, 整数桁数, 外部参照, 外部参照TABLEID, 外部参照ROWNO, 外部参照登録方法",
             "'C', 'varchar', 3, '表:A', " + id + ", 1, '自動'");
    for (int rowNo = 1; rowNo <= 3; ++rowNo)
      database().execute("INSERT INTO MAS_INDEX (INDEX_NAME, ID, ROWNO, 順序) VALUES ('IX', " + id + ", " +
                         std::to_string(rowNo) + ", " + std::to_string(rowNo) + ")");
    other = addTable("販売", "PostgreSQL", "U", "別");
    for (int rowNo = 1; rowNo <= 3; ++rowNo)
      addField(other, rowNo, "項目名, 外部参照, 外部参照TABLEID, 外部参照ROWNO",
               "'R', '表', " + id + ", " + std::to_string(rowNo));
    return id;
  }
  Lines indexRows(const std::string& id) {
    return rows("SELECT INDEX_NAME, ROWNO, 順序 FROM MAS_INDEX WHERE ID = " + id + " ORDER BY ROWNO");
  }
  Lines references() { return fields(other, "外部参照, 外部参照TABLEID, 外部参照ROWNO"); }

  std::string other;
};

TEST_F(DetailSaveTest, AnUntouchedGridSavesWhatItLoaded) {
  const std::string id = addReferred();
  database().execute(
      "UPDATE MAS_TABLEDETAILES SET 日本語名 = 項目名, [KEY] = 0, [INDEX] = -1, DomainRef = -1, 長さ = "
      "整数桁数, 少数桁数 = Null, Null値 = 'NULL', 項目分類 = 'コード', 項目参照先 = '', 備考 = '備', 初期値 = "
      "'1', 範囲分類 = '範囲', 範囲開始 = '1', 範囲終了 = '2', DomainID = 0, 外部参照 = 外部参照 & '', pmark "
      "= -1, REVERSE_DB = 0, 作成者 = 'ito', 作成年月日 = #2026/01/02 03:04:00#, make_server = 'PC1' WHERE "
      "ID = " +
      id);
  const std::string all =
      "ROWNO, 表示順, 日本語名, 項目名, [KEY], [INDEX], 型, 整数桁数, 少数桁数, 長さ, Null値, 項目分類, 項目参照先, "
      "備考, 初期値, "
      "範囲分類, 範囲開始, 範囲終了, DomainID, DomainRef, 外部参照, 外部参照TABLEID, 外部参照ROWNO, 外部参照登録方法, "
      "pmark, "
      "DB_DATA_TYPE, 作成者, 作成年月日, make_server";
  const Lines before = fields(id, all);
  const Lines indexes = indexRows(id);
  const Lines referring = references();
  ASSERT_FALSE(load(id));
  ASSERT_FALSE(save());
  EXPECT_EQ(fields(id, all), before);
  EXPECT_EQ(indexRows(id), indexes);
  EXPECT_EQ(references(), referring);
  EXPECT_EQ(fields(id, "更新年月日, 更新者, COMPNAME")[0], "2026/11/24 09:05:00|admin|TESTPC");
}

TEST_F(DetailSaveTest, CellsAreStoredInTheirForm) {
  const std::string id = addTable("販売", "PostgreSQL", "T", "表");
  ASSERT_FALSE(load(id));
  put(1, {{1, " 金額（１２） 計 "}, {2, " amount "}, {3, "-1"}, {4, " varchar "}, {5, "12"}, {8, "NULL"}});
  put(2, {{2, "b"}, {3, "0"}, {4, "text"}, {16, "範囲"}, {17, "1.5"}, {9, "-1"}, {26, "2026/05/06 07:08"}});
  put(3, {{1, " "}, {2, ""}, {4, "text"}, {12, "a note alone is no field"}});
  put(4, {{1, "日本語だけ"}, {3, "○"}});
  ASSERT_FALSE(save());
  EXPECT_EQ(fields(id, "ROWNO, 日本語名, 項目名, [KEY], 型, 整数桁数, 少数桁数, Null値, 範囲分類, 範囲開始, pmark"),
            (Lines{"1|金額(12) 計|AMOUNT|-1|varchar|12|-|NOT NULL| ||0", "2||B|0|text|-|-|NULL|範囲|1.5|-1",
                   "3|日本語だけ||-1||-|-|NOT NULL| ||0"}));
  EXPECT_EQ(fields(id, "作成者, 作成年月日, make_server, [INDEX], DomainID, 外部参照TABLEID, 備考")[1],
            "admin|2026/05/06 07:08:00|TESTPC|0|0|-|");
  EXPECT_EQ(fields(id, "長さ")[0], "12") << "the length is computed after the save";
}

TEST_F(DetailSaveTest, NamesFollowTheSystemsRules) {
  const std::string id = addTable("販売", "PostgreSQL", "T", "表");
  const auto saved = [&] {
    EXPECT_FALSE(load(id));
    put(1, {{1, "名 前　１"}, {2, "ＡbＣ"}});
    EXPECT_FALSE(save());
    return fields(id, "日本語名, 項目名").front();
  };
  EXPECT_EQ(saved(), "名 前　1|ＡBＣ");
  session.settings.lowerFieldName = true;
  EXPECT_EQ(saved(), "名 前　1|ａbｃ");
  session.gCurrentSystem.fieldAsTyped = true;
  EXPECT_EQ(saved(), "名 前　1|ＡbＣ");
  session.gCurrentSystem.fieldUpper = true;
  EXPECT_EQ(saved(), "名 前　1|ＡBＣ") << "the older flags win";
  session.settings.lowerFieldName = false;
  session.gCurrentSystem.fieldLower = session.gCurrentSystem.fieldNarrow = true;
  session.gCurrentSystem.replaceJpnSpace = true;
  EXPECT_EQ(saved(), "名前1|abc");
}

TEST_F(DetailSaveTest, ReferencesAndIndexesFollowAMovedField) {
  const std::string id = addReferred();
  ASSERT_FALSE(load(id));
  detail.Spread.insertRow(1);
  put(1, {{2, "NEW"}, {4, "int"}});
  ASSERT_FALSE(save());
  EXPECT_EQ(fields(id, "ROWNO, 項目名, 外部参照ROWNO, DB_DATA_TYPE, 外部参照登録方法"),
            (Lines{"1|NEW|-|-|-", "2|A|-|dbA|-", "3|B|-|dbB|-", "4|C|2|-|自動"}));
  EXPECT_EQ(indexRows(id), (Lines{"IX|2|1", "IX|3|2", "IX|4|3"}));
  EXPECT_EQ(references(), (Lines{"表|" + id + "|2", "表|" + id + "|3", "表|" + id + "|4"}));

  // A second save starts from the new numbers, without a load between.
  detail.Spread.deleteRow(1);
  ASSERT_FALSE(save());
  EXPECT_EQ(indexRows(id), (Lines{"IX|1|1", "IX|2|2", "IX|3|3"}));
  EXPECT_EQ(references(), (Lines{"表|" + id + "|1", "表|" + id + "|2", "表|" + id + "|3"}));
}

TEST_F(DetailSaveTest, WhatPointsAtARemovedFieldGoesWithIt) {
  const std::string id = addReferred();
  ASSERT_FALSE(load(id));
  detail.Spread.deleteRow(1);
  ASSERT_FALSE(save());
  EXPECT_EQ(fields(id, "ROWNO, 項目名, 外部参照, 外部参照TABLEID, 外部参照ROWNO"), (Lines{"1|B||-|-", "2|C||-|-"}));
  EXPECT_EQ(indexRows(id), (Lines{"IX|1|2", "IX|2|3"}));
  EXPECT_EQ(references(), (Lines{"|-|-", "表|" + id + "|1", "表|" + id + "|2"}));
}

TEST_F(DetailSaveTest, SwappedRowsAndClosedGapsKeepTheirReferences) {
  const std::string id = addReferred();
  database().execute("UPDATE MAS_TABLEDETAILES SET 表示順 = 9 WHERE 項目名 = 'A' AND ID = " + id);
  ASSERT_FALSE(load(id));
  EXPECT_EQ(detail.Spread.maxRows(), 9);
  ASSERT_FALSE(save());
  EXPECT_EQ(fields(id, "ROWNO, 表示順, 項目名, 外部参照ROWNO"), (Lines{"1|1|B|-", "2|2|C|3", "3|3|A|-"}));
  EXPECT_EQ(references(), (Lines{"表|" + id + "|3", "表|" + id + "|1", "表|" + id + "|2"}));
}

TEST_F(DetailSaveTest, TheDomainsWordWins) {
  database().execute(
      "INSERT INTO MAS_DOMAIN (システム名, 日本語名, 型, 整数桁数, 少数桁数, 項目分類) VALUES "
      "('販売', '名称', 'varchar', 40, 0, '名称')");
  const std::string id = addTable("販売", "PostgreSQL", "T", "表");
  ASSERT_FALSE(load(id));
  put(1, {{2, "A"}, {4, "int"}, {5, "1"}, {6, "0"}, {15, "1"}});
  put(2, {{2, "B"}, {4, "varchar"}, {5, "40"}, {6, "3"}, {15, "1"}});
  put(3, {{2, "C"}, {4, "int"}, {5, "1"}});
  ASSERT_FALSE(save());
  EXPECT_EQ(fields(id, "型, 整数桁数, 項目分類, DomainID"),
            (Lines{"varchar|40|名称|1", "varchar|40|名称|1", "int|1||0"}));
}

TEST_F(DetailSaveTest, TextLayoutsArePositionedAnew) {
  const std::string id = addTable("販売", "Text", "F", "ファイル");
  ASSERT_FALSE(load(id));
  put(1, {{2, "A"}, {3, "-1"}, {4, "X"}, {5, "8"}, {7, "77"}});
  put(2, {{2, "B"}, {4, "9"}, {5, "0"}});
  put(3, {{2, "C"}, {4, "N"}, {5, "3"}});
  ASSERT_FALSE(save());
  EXPECT_EQ(fields(id, "長さ, Null値"), (Lines{"1|NOT NULL", "9|8", "9|11"}));
  EXPECT_EQ(cells(1, {7, 8}) + " " + cells(3, {7, 8}), "1|8 9|11");
}

TEST_F(DetailSaveTest, MembersAndFixedValuesAndProgramsRoundTrip) {
  const std::string member = addTable("販売", "メンバー", "M", "体制");
  ASSERT_FALSE(load(member));
  ASSERT_FALSE(save());
  EXPECT_EQ(fields(member, "型").size(), 11U) << "a type alone makes a row of a person list";
  ASSERT_FALSE(load(member));
  ASSERT_FALSE(save());
  EXPECT_EQ(fields(member, "型")[1], "会社略名") << "and it survives the next save";

  const std::string fixed = addTable("販売", "固定値", "C", "定数");
  ASSERT_FALSE(load(fixed));
  put(1, {{1, "税率"}, {2, "10"}, {4, "数値"}});
  ASSERT_FALSE(save());
  ASSERT_FALSE(load(fixed));
  EXPECT_EQ(cells(1, {1, 2, 4}), "税率|10|数値");

  const std::string prj = addTable("販売", "PG管理", "P", "一覧");
  ASSERT_FALSE(load(prj));
  put(1, {{2, "受注"}, {3, "PG01"}, {4, "COBOL"}, {10, "○完了"}, {19, "伊藤"}});
  put(2, {{1, "A-7（１）"}});
  put(4, {{12, "no number and no name"}});
  ASSERT_FALSE(pPutPrjDetails(session, scripted.host, detail));
  EXPECT_EQ(
      rows("SELECT ROWNO, 日本語名, 項目名, [KEY], DB_COLUMN_NAME, Null値, 外部参照 FROM MAS_PRJINFO ORDER BY ROWNO"),
      (Lines{"1|00001|受注|-1|PG01|NULL|伊藤", "2|A-7（１）||-1| |NULL|"}));
  ASSERT_FALSE(load(prj));
  EXPECT_EQ(cells(1, {1, 2, 3, 4, 10, 19}), "00001|受注|PG01|COBOL|○完了|伊藤");
  EXPECT_TRUE(fields(prj, "ROWNO").empty());
}

TEST_F(DetailSaveTest, ValuesAndPathsKeepTheirLetters) {
  session.gCurrentSystem.fieldNarrow = true;
  const auto saved = [&](const char* kind, const char* type) {
    const std::string id = addTable("販売", kind, "T", "表");
    EXPECT_FALSE(load(id));
    put(1, {{1, "対象"}, {2, " /home/Ｂ/見積 a.Txt "}, {4, type}});
    EXPECT_FALSE(detail.mode == DetailMode::Prj ? pPutPrjDetails(session, scripted.host, detail) : save());
    EXPECT_FALSE(load(id));
    return cells(1, {2});
  };
  EXPECT_EQ(saved("固定値", "文字"), "/home/Ｂ/見積 a.Txt");
  EXPECT_EQ(saved("固定値", "FileLink"), "/home/Ｂ/見積 a.Txt");
  EXPECT_EQ(saved("PG管理", "Java"), "/home/Ｂ/見積 a.Txt");
  EXPECT_EQ(saved("メンバー", "Mail"), "/home/Ｂ/見積 a.Txt");
  EXPECT_EQ(saved("PostgreSQL", "filelink"), "/home/Ｂ/見積 a.Txt");
  EXPECT_EQ(saved("PostgreSQL", "text"), "/HOME/B/見積 A.TXT");
}

TEST_F(DetailSaveTest, DatesAndSpecificationsOfProgramsAreStored) {
  const std::string prj = addTable("販売", "PG管理", "P", "一覧");
  ASSERT_FALSE(load(prj));
  const auto edit = [&](int column, std::string_view text) {
    return cellEdited(session, scripted.host, detail, column, 1, text);
  };
  ASSERT_TRUE(edit(1, "7") && edit(5, "2026/4/1") && edit(6, "２０２６-05-31 12:30") && edit(23, "仕様/受注.xlsx"));
  EXPECT_FALSE(edit(5, "4月頃") || edit(7, "半日"));
  EXPECT_EQ(cells(1, {5, 6, 23}), "2026/04/01|2026/05/31 12:30:00|仕様/受注.xlsx");
  scripted.answerAll(kYes);
  ASSERT_FALSE(CmdUpDate_Click(session, scripted.host, detail));
  EXPECT_EQ(rows("SELECT 開始日, 完了日, 参照仕様書ファイル, 整数桁数 FROM MAS_PRJINFO"),
            (Lines{"2026/04/01 00:00:00|2026/05/31 12:30:00|仕様/受注.xlsx|-"}));
  EXPECT_EQ(cells(1, {5, 6, 23}), "2026/04/01|2026/05/31 12:30:00|仕様/受注.xlsx");

  database().execute("UPDATE MAS_PRJINFO SET 整数桁数 = 12");
  ASSERT_FALSE(load(prj));
  ASSERT_TRUE(edit(5, "") && edit(23, ""));
  ASSERT_FALSE(pPutPrjDetails(session, scripted.host, detail));
  EXPECT_EQ(rows("SELECT 開始日, 参照仕様書ファイル, 整数桁数 FROM MAS_PRJINFO"), (Lines{"-||12"}))
      << "a number from the time before stays where it is";

  database().execute("ALTER TABLE MAS_PRJINFO DROP COLUMN 開始日");
  frmTBDetail other;
  ASSERT_FALSE(pGet_TableID2TableDetails(session, scripted.host, other, prj));
  EXPECT_FALSE(cellEdited(session, scripted.host, other, 5, 1, "2026/04/01")) << "there is nowhere to store it";
  EXPECT_TRUE(cellEdited(session, scripted.host, other, 6, 1, "2026/04/02"));
}

TEST_F(DetailSaveTest, ATypeOutsideTheCatalogueStays) {
  const std::string id = addReferred();
  database().execute("UPDATE MAS_TABLEDETAILES SET 型 = 'geometry' WHERE 項目名 = 'B' AND ID = " + id);
  ASSERT_FALSE(load(id));
  put(1, {{12, "another row"}});
  ASSERT_FALSE(save());
  EXPECT_EQ(fields(id, "型"), (Lines{"varchar", "geometry", "varchar"}));
  ASSERT_FALSE(load(id));
  EXPECT_TRUE(cellEdited(session, scripted.host, detail, col::kType, 2, "TEXT"));
  ASSERT_FALSE(save());
  EXPECT_EQ(fields(id, "型"), (Lines{"varchar", "text", "varchar"}));
}

TEST_F(DetailSaveTest, MarksOfTheTableAreSetAndCleared) {
  const std::string id = addReferred();
  database().execute("UPDATE MAS_TABLEINFO SET REVERSE_DB = -1, pmark = 1 WHERE ID = " + id);
  ASSERT_FALSE(load(id));
  EXPECT_TRUE(detail.PicReverse.visible);
  ASSERT_FALSE(save());
  EXPECT_EQ(cell("SELECT REVERSE_DB, pmark FROM MAS_TABLEINFO WHERE ID = " + id), "0|-1");
}

TEST_F(DetailSaveTest, AFaultKeepsTheFormerRowsAndTheGrid) {
  const std::string id = addReferred();
  const Lines before = fields(id, "ROWNO, 項目名, 型");
  const Lines indexes = indexRows(id);
  ASSERT_FALSE(load(id));
  detail.Spread.deleteRow(1);
  put(1, {{2, "CHANGED"}});
  put(2, {{1, std::string(300, 'x')}});
  detail.changed = true;
  scripted.answerAll(kOk);
  EXPECT_TRUE(save());
  ASSERT_EQ(scripted.messages.size(), 1U);
  EXPECT_TRUE(scripted.messages[0].starts_with("こまった|エラーです.\n  "));
  EXPECT_EQ(fields(id, "ROWNO, 項目名, 型"), before);
  EXPECT_EQ(indexRows(id), indexes);
  EXPECT_FALSE(database().inTransaction());
  EXPECT_EQ(detail.Spread.text(2, 1), "CHANGED");
  EXPECT_EQ(cells(2, {19, 22}), "表:A|1") << "the grid stays as it was";
  EXPECT_TRUE(detail.changed);
  EXPECT_FALSE(detail.lblMsg.visible);

  put(2, {{1, "短い"}, {5, "many"}});
  EXPECT_TRUE(save()) << "digits that are no number";
  EXPECT_EQ(fields(id, "ROWNO, 項目名, 型"), before);
}

TEST_F(DetailSaveTest, StatementsDoNotGrowWithTheFields) {
  const auto statements = [&](int count) {
    const std::string id = addTable("販売", "PostgreSQL", "T", "表");
    EXPECT_FALSE(load(id));
    for (int row = 1; row <= count; ++row) put(row, {{2, "F" + std::to_string(row)}, {4, "int"}});
    const long before = database().statementCount();
    EXPECT_FALSE(save());
    return database().statementCount() - before;
  };
  statements(1);
  EXPECT_EQ(statements(2), statements(60));
}

TEST_F(DetailSaveTest, TheButtonChecksAsksSavesAndReads) {
  const std::string id = addTable("販売", "PostgreSQL", "T", "表");
  ASSERT_FALSE(load(id));
  detail.Spread.setMaxRows(5);
  scripted.expect("確認", "データの変更はありませんでした.");
  EXPECT_TRUE(CmdUpDate_Click(session, scripted.host, detail));
  put(3, {{1, "番号"}, {2, "a"}, {4, "int"}});
  scripted.expect("確認", "登録内容を更新します.", kNo);
  EXPECT_TRUE(CmdUpDate_Click(session, scripted.host, detail));
  EXPECT_TRUE(fields(id, "ROWNO").empty());
  scripted.expect("確認", "登録内容を更新します.", kYes);
  EXPECT_FALSE(CmdUpDate_Click(session, scripted.host, detail));
  EXPECT_EQ(fields(id, "ROWNO, 項目名"), (Lines{"1|A"}));
  EXPECT_EQ(detail.Spread.maxRows(), 1);
  EXPECT_EQ(cells(1, {2, 20, 24}), "A||001");
}

}  // namespace
}  // namespace quillmarden
