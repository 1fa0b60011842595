#include "editing/frm_tb_detail_edit.h"

#include <fstream>

#include "editing/detail_navigation.h"
#include "editing/detail_parts.h"
#include "editing_fixture.h"

namespace quillmarden {
namespace {

class DetailEditTest : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    id = addTable("販売", "PostgreSQL", "T", "表");
    addField(id, 1, "日本語名, 項目名, 型, 整数桁数, Null値, 項目参照先, 備考, [KEY]",
             "'番号', 'A', 'varchar', 5, 'NULL', '区分', '一', 0");
    addField(id, 2, "日本語名, 項目名, 型, 備考", "'名前', 'B', 'text', '二'");
  }

  bool edit(int column, int row, std::string_view text) {
    return cellEdited(session, scripted.host, detail, column, row, text);
  }
  void undo() { mnuUndo_Click(session, scripted.host, detail); }
  void redo() { mnuRedo_Click(session, scripted.host, detail); }
  void goTo(int column, int row) { activeCellChanged(session, scripted.host, detail, column, row); }

  std::string id;
};

TEST_F(DetailEditTest, ACellTakesItsOwnFormOrStaysAsItWas) {
  ASSERT_FALSE(load(id));
  struct Case {
    int column;
    std::string_view typed;
    bool taken;
    std::string_view held;
  };
  const Case cases[] = {
      {col::kJapaneseName, "一行\r\n二行\t三", true, "一行二行 三"},
      {col::kJapaneseName, std::string_view("a\0b", 3), false, "一行二行 三"},
      {col::kRemark, "一\r\n二", true, "一\n二"},
      {col::kKey, "○", true, "-1"},
      {col::kKey, "いいえ", false, "-1"},
      {col::kKey, "false", true, "0"},
      {col::kType, " INTEGER ", true, "integer"},
      {col::kType, "inteeger", false, "integer"},
      {col::kWholeDigits, "１２", true, "12"},
      {col::kWholeDigits, "3.6", false, "12"},
      {col::kWholeDigits, "32768", false, "12"},
      {col::kWholeDigits, "-1", false, "12"},
      {col::kWholeDigits, "十", false, "12"},
      {col::kWholeDigits, " ", true, ""},
      {col::kRangeStart, "1,234.5", true, "1234.5"},
      {col::kRangeStart, "1e13", false, "1234.5"},
      {col::kClass, "", true, ""},
      {col::kDomainName, "x", false, ""},
      {col::kAuthor, "x", false, ""},
  };
  for (const Case& one : cases) {
    EXPECT_EQ(edit(one.column, 1, one.typed), one.taken) << one.typed;
    EXPECT_EQ(detail.Spread.text(one.column, 1), one.held) << one.typed;
  }
  std::string name;
  for (int i = 0; i < 40; ++i) name += "漢";
  EXPECT_TRUE(edit(col::kJapaneseName, 2, name));
  EXPECT_FALSE(edit(col::kJapaneseName, 2, name + "a"));
  EXPECT_EQ(cellFault(detail, col::kJapaneseName, 2, name + "a"),
            "[日本語項目名 (論理)]が長すぎます. 80バイト(全角40文字)までです.");
  EXPECT_EQ(cellFault(detail, col::kType, 2, "inteeger"), "[型]が一覧にありません.");
  EXPECT_EQ(cellFault(detail, col::kJapaneseName, 2, name), "");
  EXPECT_FALSE(edit(0, 1, "x") || edit(27, 1, "x") || edit(1, 0, "x") || edit(1, Spread::kMaxRows + 1, "x"));
}

TEST_F(DetailEditTest, AnEditMarksTheRowAndAnEqualTextDoesNot) {
  ASSERT_FALSE(load(id));
  EXPECT_TRUE(edit(col::kJapaneseName, 1, "番号"));
  EXPECT_TRUE(edit(col::kKey, 2, "0")) << "an unset check box is an unset one";
  EXPECT_FALSE(detail.changed);
  EXPECT_FALSE(detail.undo.canUndo());
  EXPECT_FALSE(edit(col::kType, 1, "?"));
  EXPECT_FALSE(detail.changed) << "a refused text is no change";
  EXPECT_TRUE(edit(col::kJapaneseName, 4, "新")) << "a row is made where it was typed";
  EXPECT_TRUE(detail.changed && detail.picRen.visible);
  EXPECT_EQ(cells(4, {1, 20, 24}), "新|変更|004");
  EXPECT_EQ(cells(3, {1, 20, 24}), "||");
  EXPECT_EQ(cells(1, {20}), "");
}

TEST_F(DetailEditTest, OtherCellsFollow) {
  ASSERT_FALSE(load(id));
  edit(col::kWholeDigits, 1, "9");
  EXPECT_EQ(cells(1, {col::kLength}), "9") << "the length follows the digits";
  edit(col::kType, 1, "smallint");
  EXPECT_EQ(cells(1, {col::kWholeDigits, col::kLength}), "9|8") << "the catalogue knows the length";
  edit(col::kKey, 1, "-1");
  EXPECT_EQ(cells(1, {col::kNull}), "NOT NULL");
  undo();
  EXPECT_EQ(cells(1, {col::kKey, col::kNull}), "0|NULL") << "what followed goes back in the same step";

  database().execute("UPDATE MAS_TABLEINFO SET ファイル種別 = 'Text' WHERE ID = " + id);
  ASSERT_FALSE(load(id));
  edit(col::kWholeDigits, 2, "3");
  edit(col::kWholeDigits, 1, "4");
  EXPECT_EQ(cells(1, {col::kLength, col::kNull}) + " " + cells(2, {col::kLength, col::kNull}), "1|4 5|7");
  EXPECT_EQ(cells(1, {col::kChanged}) + cells(2, {col::kChanged}), "変更変更");
}

TEST_F(DetailEditTest, TheHelpersShowTheActiveRow) {
  database().execute(
      "INSERT INTO MAS_DIVISION (システム名, 値名称, 削除フラグ, 全システム共通) VALUES ('販売', '区分', 0, 0)");
  database().execute(
      "INSERT INTO MAS_DIVISIONDETAILES (システム名, 値名称, 行番号, 値, 内容) VALUES ('販売', '区分', 1, '1', '有')");
  ASSERT_FALSE(load(id));
  EXPECT_EQ(detail.lstAtai.rows, (Lines{"1:有"}));
  goTo(3, 2);
  EXPECT_EQ(detail.lblColRow.caption, "003 : 002");
  EXPECT_EQ(detail.lblBiko.caption + "|" + detail.Txtbiko.text, "備考 [ 名前 ]|二");
  EXPECT_EQ(detail.lstAtai.count(), 0);

  setValueList(session, scripted.host, detail, 2, "区分");
  EXPECT_EQ(detail.lstAtai.rows, (Lines{"1:有"}));
  EXPECT_EQ(cells(2, {col::kValueList, col::kChanged}), "区分|変更");
  Txtbiko_Change(session, scripted.host, detail, "三\n四");
  EXPECT_EQ(cells(2, {col::kRemark}), "三\n四");
  scripted.expect("入力確認", "[備考]が長すぎます. 255バイト(全角127文字)までです.");
  Txtbiko_Change(session, scripted.host, detail, std::string(256, 'x'));
  EXPECT_EQ(detail.Txtbiko.text, "三\n四") << "what the cell does not take does not stay in the box";
  goTo(5, 99);
  EXPECT_EQ(detail.lblBiko.caption, "備考 [  ]") << "the row below the last one";
}

TEST_F(DetailEditTest, UndoLeadsBackToTheLoadedGridAndForthAgain) {
  ASSERT_FALSE(load(id));
  const Spread loaded = detail.Spread;
  edit(col::kJapaneseName, 1, "一");
  edit(col::kFieldName, 3, "C");
  changeGrid(detail, [&] { detail.Spread.deleteRow(2); });
  EXPECT_EQ(cells(2, {2}), "C");
  const std::vector<SpreadRow> edited = detail.Spread.rows(1, detail.Spread.maxRows());
  for (int i = 0; i < 3; ++i) undo();
  EXPECT_EQ(detail.Spread.rows(1, 9), loaded.rows(1, 9));
  EXPECT_FALSE(detail.changed || detail.picRen.visible) << "nothing differs from the Repository";
  undo();
  for (int i = 0; i < 4; ++i) redo();
  EXPECT_EQ(detail.Spread.rows(1, 9), edited);
  EXPECT_TRUE(detail.changed);
  undo();
  edit(col::kRemark, 1, "other road");
  redo();
  EXPECT_EQ(cells(2, {2}), "B") << "what was taken back is gone after another edit";
  ASSERT_FALSE(pPutTableDetails(session, scripted.host, detail));
  undo();
  EXPECT_EQ(cells(1, {12}), "other road") << "a save ends what can be taken back";
}

TEST_F(DetailEditTest, AFailedChangeLeavesTheGridWhole) {
  ASSERT_FALSE(load(id));
  const auto before = detail.Spread.rows(1, 9);
  EXPECT_THROW(changeGrid(detail,
                          [&] {
                            detail.Spread.deleteRow(1);
                            detail.Spread.setText(1, 7, "half");
                            throw EngineError(1, "fault");
                          }),
               EngineError);
  EXPECT_EQ(detail.Spread.rows(1, 9), before);
  EXPECT_FALSE(detail.changed || detail.undo.canUndo());
}

TEST_F(DetailEditTest, ADomainOwnsItsCellsUntilTheLinkEnds) {
  database().execute(
      "INSERT INTO MAS_DOMAIN (システム名, 日本語名, 項目名, 型, 整数桁数, 長さ, 項目分類, 削除フラグ) VALUES "
      "('販売', '顧客番号', 'cust_no', 'varchar', 8, 8, 'コード', 0)");
  ASSERT_FALSE(load(id));
  EXPECT_FALSE(setDomain(session, scripted.host, detail, 1, 1));
  EXPECT_EQ(cells(1, {1, 2, 4, 5, 7, 10, 14, 15, 20}), "番号|A|varchar|8|8|コード|顧客番号|1|変更");
  EXPECT_FALSE(edit(col::kType, 1, "text"));
  EXPECT_FALSE(setDomain(session, scripted.host, detail, 3, 1));
  EXPECT_EQ(cells(3, {1, 2}), "顧客番号|cust_no") << "an empty row takes the names too";
  EXPECT_TRUE(setDomain(session, scripted.host, detail, 2, 77));
  EXPECT_EQ(cells(2, {15, 20}), "|");
  EXPECT_FALSE(setDomain(session, scripted.host, detail, 1, 0));
  EXPECT_TRUE(edit(col::kType, 1, "text"));
  EXPECT_EQ(cells(1, {4, 14, 15}), "text||");
}

TEST_F(DetailEditTest, AReadOnlyTableChangesByNothing) {
  database().execute("UPDATE MAS_TABLEINFO SET 修正許可 = 0, pmark = 0 WHERE ID = " + id);
  ASSERT_FALSE(load(id));
  const auto before = detail.Spread.rows(1, 9);
  EXPECT_FALSE(edit(col::kJapaneseName, 1, "x"));
  EXPECT_FALSE(edit(col::kJapaneseName, 3, "x")) << "below the last row too";
  Txtbiko_Change(session, scripted.host, detail, "x");
  EXPECT_TRUE(setDomain(session, scripted.host, detail, 1, 0));
  setValueList(session, scripted.host, detail, 1, "x");
  mnuPmark_Click(detail);
  EXPECT_EQ(detail.Spread.rows(1, 9), before);
  EXPECT_FALSE(detail.PicPmark.visible || detail.changed);
  frmTBDetail empty;
  EXPECT_FALSE(cellEdited(session, scripted.host, empty, 1, 1, "x")) << "nor does a screen without a table";
}

TEST_F(DetailEditTest, RedCellsAreNamedAndAnEditTakesTheRedAway) {
  ASSERT_FALSE(load(id));
  edit(col::kJapaneseName, 2, "番号");
  edit(col::kKey, 1, "-1");
  edit(col::kNull, 1, "NULL");
  edit(col::kRangeKind, 2, "範囲");
  scripted.expect(
      "入力エラー",
      "日本語/項目名に重複があります.\n主キーの項目は必ずNOT NULLです.\n数字以外では範囲の設定はできません.\n"
      "範囲開始が未設定です.\n範囲終了が未設定です.");
  EXPECT_TRUE(CmdUpDate_Click(session, scripted.host, detail));
  EXPECT_EQ(badCells(detail), (std::vector<CellPlace>{{1, 1}, {8, 1}, {1, 2}, {16, 2}, {17, 2}, {18, 2}}));
  edit(col::kJapaneseName, 2, "名前");
  EXPECT_EQ(detail.Spread.backColour(1, 2), kWhite);
}

TEST_F(DetailEditTest, WidthsAndFontAreKept) {
  ASSERT_FALSE(load(id));
  columnResized(session, detail, 2, 21.5);
  columnResized(session, detail, 99, 3);
  gridFontChanged(session, 14);
  gridFontChanged(session, 500);
  IniFile ini(session.ini->path());
  EXPECT_EQ(gGetFormSetting(ini, "frmTBDetail", "frmTBDetailSpread_2"), "21.5");
  EXPECT_EQ(readAppSettings(ini).fontSize2Spread, 14);
  frmTBDetail again;
  ASSERT_FALSE(pGet_TableID2TableDetails(session, scripted.host, again, id));
  EXPECT_EQ(again.Spread.column(2).width, 21.5);
}

TEST_F(DetailEditTest, LeavingAsksAboutUnsavedChanges) {
  const std::string next = addTable("販売", "PostgreSQL", "U", "次表");
  frmTBList list;
  list.LstTable.add("表\tT\t" + id);
  list.LstTable.add("次表\tU\t" + next);
  list.LstTable.listIndex = 0;
  ASSERT_FALSE(load(id));
  EXPECT_TRUE(showNeighbour(session, scripted.host, list, detail, -1)) << "there is none above";
  edit(col::kJapaneseName, 1, "変");
  scripted.expect("確認", "内容が変更されています.\n    表\nの編集を続けますか?", kYes);
  EXPECT_TRUE(showNeighbour(session, scripted.host, list, detail, 1));
  EXPECT_EQ(list.LstTable.listIndex, 0);
  EXPECT_EQ(cells(1, {1}), "変");
  scripted.expect("確認", "内容が変更されています.\n    表\nの編集を続けますか?", kNo);
  EXPECT_FALSE(CmdReGet_Click(session, scripted.host, detail));
  EXPECT_EQ(cells(1, {1}), "番号");
  EXPECT_FALSE(showNeighbour(session, scripted.host, list, detail, 1));
  EXPECT_EQ(detail.lblID.caption, next);
  EXPECT_EQ(list.LstTable.selected, (std::vector<bool>{false, true}));
}

TEST_F(DetailEditTest, ASavedHeaderLeavesRowsThatWait) {
  ASSERT_FALSE(load(id));
  edit(col::kJapaneseName, 1, "変");
  database().execute("UPDATE MAS_TABLEINFO SET 日本語名 = '改名' WHERE ID = " + id);
  tableInfoSaved(session, scripted.host, detail, "999");
  EXPECT_EQ(detail.caption, "表 : T");
  tableInfoSaved(session, scripted.host, detail, id);
  EXPECT_EQ(detail.caption + "/" + cells(1, {1}), "改名 : T/変");
  mnuUndo_Click(session, scripted.host, detail);
  database().execute("UPDATE MAS_TABLEDETAILES SET 日本語名 = '新' WHERE ROWNO = 1");
  tableInfoSaved(session, scripted.host, detail, id);
  EXPECT_EQ(cells(1, {1}), "新") << "without changes all is read anew";
}

TEST_F(DetailEditTest, TheSqlToolNeedsAWholeConnectionAndItsProgram) {
  frmTBList list;
  list.TxtConnect.text = " db ";
  list.TxtUserName.text = "me";
  list.TxtPassword.text = "pw ";
  lblColRow_Click(scripted.host, list);
  EXPECT_TRUE(scripted.opened.empty());
  const auto program = scripted.host.machine.programFolder / "Ombrisel.exe";
  std::ofstream(program) << "x";
  lblColRow_Click(scripted.host, list);
  EXPECT_EQ(scripted.opened, (Lines{program.string() + " /C:db /U:me /P:pw"}));
  list.TxtUserName.text = " ";
  lblColRow_Click(scripted.host, list);
  EXPECT_EQ(scripted.opened.size(), 1U);
}

TEST_F(DetailEditTest, TheColumnOfPersonalInformationComesAndIsSaved) {
  ASSERT_FALSE(load(id));
  ASSERT_TRUE(detail.Spread.column(col::kPmark).hidden);
  mnuPmark_Click(detail);
  EXPECT_FALSE(detail.Spread.column(col::kPmark).hidden);
  edit(col::kPmark, 2, "-1");
  scripted.answerAll(kYes);
  ASSERT_FALSE(CmdUpDate_Click(session, scripted.host, detail));
  EXPECT_EQ(fields(id, "pmark"), (Lines{"0", "-1"}));
  EXPECT_EQ(cell("SELECT pmark FROM MAS_TABLEINFO WHERE ID = " + id), "-1");
  EXPECT_FALSE(detail.Spread.column(col::kPmark).hidden);
}

}  // namespace
}  // namespace quillmarden
