#include "excel/table_layout.h"

#include "common/text.h"
#include "common/text_file.h"
#include "excel/format_file.h"
#include "excel_fixture.h"

namespace quillmarden {
namespace {

class TableLayoutTest : public ExcelTest {
 protected:
  void SetUp() override {
    ExcelTest::SetUp();
    // A plain form: numbered rows from 10 to 249, a mark below them.
    Workbook blank = Workbook::create({.sheetName = "白紙"});
    for (int row = 10; row <= 249; ++row) {
      blank.sheet(0).setNumber({row, 1}, row - 9);
      blank.sheet(0).setRowHeight(row, 18);
    }
    blank.sheet(0).changeStyle(rangeAt("A10:N249"), [](CellStyle& style) { style.alignment.wrap = true; });
    blank.sheet(0).setText({250, 2}, "below");
    blank.save(programFile(std::string(kBlankBook)));
  }

  Workbook layoutOf(const std::string& id) {
    EXPECT_FALSE(pGet_TableID2TableDetails(session, scripted.host, detail, id));
    path = pPutCurrentTable2ExcelFile(session, scripted.host, run, detail, "販売", false);
    return Workbook::open(path);
  }

  std::string path;
};

TEST_F(TableLayoutTest, HeaderAndFieldsStandInTheirCells) {
  const std::string id = addTable("販売", "PostgreSQL", "orders", "受注");
  database().execute(
      "UPDATE MAS_TABLEINFO SET 概要 = ' 一行目 ' & Chr(13) & Chr(10) & '=二行目' & Chr(13) & Chr(10) & '三' & Chr(13) "
      "& "
      "Chr(10) & '四', 作成間隔 = '毎日', 想定数 = 10, 想定保持 = 3, 分類 = 'マスタ', 格納先 = '基幹', ORA_NEXT = 12, "
      "作成年月日 = #2026/01/02 03:04:05#, 更新年月日 = #2026/02/03 04:05:06#, 作成者 = 'ito', pmark = -1, "
      "チェックポイント日付 = #2026/05/01# WHERE ID = " +
      id);
  database().execute(
      "INSERT INTO MAS_DIVISION (システム名, 値名称, 型, 削除フラグ) VALUES ('販売', '状態', '数値', 0)");
  database().execute(
      "INSERT INTO MAS_DIVISIONDETAILES (システム名, 値名称, 値, 内容, 行番号) VALUES ('販売', '状態', '1', '確定', "
      "1)");
  addField(id, 1, "日本語名, 項目名, [KEY], 型, 整数桁数, 作成年月日", "'番号', 'id', -1, 'integer', 10, #2026/06/01#");
  addField(id, 2,
           "日本語名, 項目名, 型, 備考, 項目参照先, 初期値, 範囲分類, 範囲開始, 範囲終了, PMARK, DomainID, 作成年月日",
           "'状態', 'state', 'smallint', '=SUM(A1)', '状態', '0', '範囲', '1', '9', -1, 4, #2026/01/01#");
  addField(id, 3, "日本語名, 項目名, 項目参照先, 外部参照", "'顧客', 'customer', '状態', '顧客:番号'");
  const Workbook book = layoutOf(id);
  const Worksheet& sheet = book.sheet(0);
  EXPECT_TRUE(path.ends_with("/受注.xlsx"));
  EXPECT_EQ(sheet.name(), "受注");
  EXPECT_EQ(cellText(sheet, "C1") + "|" + cellText(sheet, "H1"), "受注|orders");
  EXPECT_EQ(cellText(sheet, "B2"), "一行目=二行目三");
  EXPECT_EQ(cellText(sheet, "C5") + "|" + cellText(sheet, "E5") + "|" + cellText(sheet, "H5"), "毎日|10|3");
  EXPECT_EQ(cellText(sheet, "M3"), "");
  EXPECT_EQ(cellText(sheet, "M4"), "NEXT   : 12");
  EXPECT_EQ(cellText(sheet, "N5") + "|" + cellText(sheet, "N6"), "格納先 : 基幹|作成者 : ito");
  EXPECT_EQ(sheet.pageSetup().header.right, "作成日:2026/01/02 03:04\n変更日:2026/02/03 04:05");

  EXPECT_EQ(cellText(sheet, "B10") + "|" + cellText(sheet, "D10") + "|" + cellText(sheet, "F10"), "番号|id|○");
  EXPECT_EQ(cellText(sheet, "H10"), "10");
  EXPECT_EQ(sheet.style(cellAt("F10")).fill, CellFill::solid(CellColor::index(38)));
  EXPECT_EQ(sheet.style(cellAt("A10")).fill, CellFill::solid(CellColor::index(39))) << "changed after the check point";
  EXPECT_EQ(sheet.style(cellAt("A11")).fill.pattern, FillPattern::None);
  EXPECT_EQ(cellText(sheet, "M11"), "【個人情報】\n'=SUM(A1)") << "joined texts keep the mark that made them safe";
  EXPECT_EQ(cellText(sheet, "N11"), "状態\n1:確定\n初=0\n1 ≦ n ≦ 9");
  EXPECT_EQ(sheet.style(cellAt("G11")).fill, CellFill::solid(CellColor::index(48)));
  EXPECT_GT(sheet.rowHeight(11), 18 * 2);
  EXPECT_EQ(sheet.rowHeight(10), 18);
  EXPECT_EQ(cellText(sheet, "N12"), "顧客:番号") << "a reference takes the place of the value list";
}

TEST_F(TableLayoutTest, TextsThatLookLikeFormulasStayTexts) {
  const std::string id = addTable("販売", "PostgreSQL", "t", "表");
  addField(id, 1, "日本語名, 項目名, 備考", "'+1', '-a', '=1+1'");
  const Workbook book = layoutOf(id);
  EXPECT_EQ(cellText(book.sheet(0), "M10"), "=1+1");
  EXPECT_EQ(book.sheet(0).formula(cellAt("M10")), "");
  EXPECT_TRUE(book.sheet(0).style(cellAt("M10")).quotePrefix);
  EXPECT_EQ(cellText(book.sheet(0), "B10"), "+1");
}

TEST_F(TableLayoutTest, TheFormIsCutBehindTheLastRow) {
  const std::string id = addTable("販売", "PostgreSQL", "t", "表");
  // Without fields and memo the form keeps 30 rows.
  const Workbook empty = layoutOf(id);
  EXPECT_EQ(cellText(empty.sheet(0), "A30"), "21");
  EXPECT_EQ(cellText(empty.sheet(0), "A31"), "");
  EXPECT_EQ(cellText(empty.sheet(0), "B31"), "below");
  EXPECT_EQ(empty.sheet(0).style(cellAt("C31")).border.bottom.kind, LineKind::Thin);

  // A row without names ends the printed part.
  addField(id, 1, "項目名", "'a'");
  addField(id, 2, "備考", "'no name'");
  addField(id, 3, "項目名", "'c'");
  const Workbook cut = layoutOf(id);
  EXPECT_EQ(cellText(cut.sheet(0), "D10"), "a");
  EXPECT_EQ(cellText(cut.sheet(0), "D12"), "");

  for (int i = 0; i < 3; ++i) {
    database().execute("INSERT INTO MAS_TABLEBIKO (ID, NUM, 日本語名, 備考, ファイル名) VALUES (" + id + ", " +
                       std::to_string(i + 1) + ", '" + (i == 1 ? " " : "※") + "', '備考" + std::to_string(i) +
                       "', '2026/03/04 05:06:07')");
  }
  const Workbook memo = layoutOf(id);
  // Three memo rows: the form ends two rows earlier.
  EXPECT_EQ(cellText(memo.sheet(0), "A28"), "19");
  EXPECT_EQ(cellText(memo.sheet(0), "A29"), "");
  EXPECT_EQ(cellText(memo.sheet(0), "A30"), "*****付帯事項*****");
  EXPECT_EQ(
      cellText(memo.sheet(0), "B31") + "|" + cellText(memo.sheet(0), "C31") + "|" + cellText(memo.sheet(0), "N31"),
      "※|備考0|(2026/03/04 05:06:07) ");
  EXPECT_EQ(cellText(memo.sheet(0), "B32"), "･");
}

TEST_F(TableLayoutTest, ALongTableLengthensTheForm) {
  const std::string id = addTable("販売", "PostgreSQL", "t", "表");
  for (int i = 1; i <= 245; ++i) addField(id, i, "項目名", "'f" + std::to_string(i) + "'");
  const Workbook book = layoutOf(id);
  EXPECT_EQ(cellText(book.sheet(0), "D254"), "f245");
  EXPECT_EQ(cellText(book.sheet(0), "A254"), "245");
  EXPECT_EQ(book.sheet(0).rowHeight(254), 18);
  EXPECT_EQ(cellText(book.sheet(0), "B255"), "below") << "what stood below the form is not lost";
}

TEST_F(TableLayoutTest, NamesThatSheetsCannotCarry) {
  EXPECT_EQ(layoutOf(addTable("販売", "PostgreSQL", "t", "受注/明細:[仮]")).sheet(0).name(), "受注.明細..仮.");
  std::string longName;
  for (int i = 0; i < 40; ++i) longName += "長";
  EXPECT_EQ(layoutOf(addTable("販売", "PostgreSQL", "t", longName)).sheet(0).name().size(), 31U * 3);
  // A sign in first place stays, and no sheet can have that name.
  ASSERT_FALSE(pGet_TableID2TableDetails(session, scripted.host, detail, addTable("販売", "PostgreSQL", "t", "*印")));
  scripted.answerAll(kOk);
  EXPECT_EQ(pPutCurrentTable2ExcelFile(session, scripted.host, run, detail, "販売", false), "");
  EXPECT_TRUE(scripted.messages.back().starts_with("確認|Excel作成中にエラーが発生しました.\n "));
  EXPECT_NE(scripted.messages.back().find("テーブル「*印」: "), std::string::npos) << "of many it says which";
  EXPECT_EQ(scripted.messages.back().find("プリンタ"), std::string::npos);
}

TEST_F(TableLayoutTest, AFileInUseIsNamedAndNothingElseHappens) {
  const std::string id = addTable("販売", "PostgreSQL", "t", "表");
  layoutOf(id);
  const std::string before = readFile(std::filesystem::path(path), *std::make_unique<std::error_code>()).value();
  std::ofstream(std::filesystem::path(path).parent_path() / ".~lock.表.xlsx#") << "held";
  scripted.expect("確認", "指定ファイルは使用中です.\n  " + path + "\n確認して下さい.\n処理を中止します.");
  EXPECT_EQ(pPutCurrentTable2ExcelFile(session, scripted.host, run, detail, "販売", true), "");
  std::error_code error;
  EXPECT_EQ(readFile(std::filesystem::path(path), error), before);
  EXPECT_TRUE(scripted.opened.empty());
}

class UserTemplateTest : public TableLayoutTest {
 protected:
  void SetUp() override {
    TableLayoutTest::SetUp();
    database().execute("UPDATE MAS_SYSTEM SET 書式ファイル名 = 'form.xls' WHERE システム名 = '販売'");
    Workbook form = Workbook::create({.sheetName = "form"});
    form.sheet(0).setText(cellAt("A1"), "title");
    form.sheet(0).setText(cellAt("F6"), "pattern ");
    form.sheet(0).setText(cellAt("A8"), "foot");
    form.save(programFile("form.xls"));
    replaceFile(layoutFormatPath(session, "form.xls"),
                toCp932("KEY_1ページの行数:60\r\nKEY_1ページ記入項目数:2\r\nKEY_日本語名:B2\r\nKEY_TABLE_NAME:B3\r\n"
                        "KEY_システム名:D2\r\nKEY_作成日:D3\r\nKEY_修正回数:E3\r\nKEY_開始行:5\r\n"
                        "KEY_項目名(日本語):B\r\nKEY_項目名:C\r\nKEY_KEY表示:G\r\nKEY_型:D\r\nKEY_桁数整数:H\r\n"
                        "KEY_桁数少数:I\r\nKEY_項目番号:A\r\nKEY_備考:F\r\nKEY_値リスト:F\r\nKEY_項目変更日:F\r\n"));
  }
};

TEST_F(UserTemplateTest, FillsTheNamedCellsAndAddsRowsOfTheSecondOnesPattern) {
  const std::string id = addTable("販売", "PostgreSQL", "orders", "受注");
  addField(id, 1, "日本語名, 項目名, 型, 備考, 作成年月日", "'番号', 'id', 'integer', '主キー', #2026/01/01#");
  addField(id, 2, "項目名, 備考, 項目参照先, 作成年月日", "'b', '備', '状態', #2026/02/01#");
  addField(id, 3, "項目名, 作成年月日", "'c', #2026/02/01#");
  addField(id, 4, "項目名", "'d'");
  const Workbook book = layoutOf(id);
  const Worksheet& sheet = book.sheet(0);
  EXPECT_TRUE(path.ends_with("/受注.xls"));
  EXPECT_EQ(sheet.name(), "受注");
  EXPECT_EQ(cellText(sheet, "A1") + "|" + cellText(sheet, "B2") + "|" + cellText(sheet, "B3") + "|" +
                cellText(sheet, "D2") + "|" + cellText(sheet, "E3"),
            "title|受注|orders|販売|2");
  EXPECT_EQ(cellText(sheet, "A5") + "|" + cellText(sheet, "B5") + "|" + cellText(sheet, "C5") + "|" +
                cellText(sheet, "D5") + "|" + cellText(sheet, "F5"),
            "001|番号|id|integer|主キー");
  EXPECT_EQ(cellText(sheet, "F6"), "pattern 状態備(2026/02/01 00:00)") << "what the template holds stays in front";
  EXPECT_EQ(cellText(sheet, "F7"), "pattern (2026/02/01 00:00)");
  EXPECT_EQ(cellText(sheet, "C8") + "|" + cellText(sheet, "F8"), "d|pattern ");
  EXPECT_EQ(cellText(sheet, "A10"), "foot") << "two rows were added above it";
}

TEST_F(UserTemplateTest, ADateInACellForDatesIsADate) {
  Workbook form = Workbook::open(programFile("form.xls"));
  form.sheet(0).changeStyle(rangeAt("D3"),
                            [](CellStyle& style) { style.numberFormat = "[$-411]ggge\"年\"m\"月\"d\"日\""; });
  form.save(programFile("form.xls"));
  const std::string id = addTable("販売", "PostgreSQL", "orders", "受注");
  database().execute("UPDATE MAS_TABLEINFO SET 作成年月日 = #2026/11/24 12:00:00# WHERE ID = " + id);
  const Workbook book = layoutOf(id);
  EXPECT_EQ(book.sheet(0).value(cellAt("D3")), CellValue(46350.5));
}

TEST_F(UserTemplateTest, FaultsOfTheFormatAndAMissingTemplate) {
  const std::string id = addTable("販売", "PostgreSQL", "t", "表");
  ASSERT_FALSE(pGet_TableID2TableDetails(session, scripted.host, detail, id));
  std::filesystem::remove(programFile("form.xls"));
  scripted.expect("確認", "指定されたファイルが存在しません.\n " + programFile("form.xls") + "\n確認してください.");
  EXPECT_EQ(pPutCurrentTable2ExcelFile(session, scripted.host, run, detail, "販売", false), "");

  // A faulty Format file goes to the log alone; who has no screen finds its faults in the run.
  replaceFile(layoutFormatPath(session, "form.xls"), "KEY_TABLE_NAME:B3\r\n");
  EXPECT_EQ(pPutCurrentTable2ExcelFile(session, scripted.host, run, detail, "販売", false), "");
  EXPECT_TRUE(run.formatFault.starts_with("KEY_h1ページの行数が未設定です.")) << run.formatFault;
}

TEST_F(TableLayoutTest, AProgramTableIsPrintedAsItsGridStands) {
  const std::string id = addTable("販売", "PG管理", "pg", "進捗");
  database().execute("INSERT INTO MAS_PRJINFO (ID, ROWNO, 表示順, 日本語名, 項目名, 備考) VALUES (" + id +
                     ", 1, 1, '=001', '受注入力', '概要文' & Chr(10) & '二' & Chr(10) & '三')");
  const Workbook book = layoutOf(id);
  const Worksheet& sheet = book.sheet(0);
  EXPECT_TRUE(path.ends_with("TempTemp_-_-/temptemp.xlsx"));
  EXPECT_EQ(cellText(sheet, "A1") + "|" + cellText(sheet, "B1"), "管理No|項目名");
  EXPECT_EQ(cellText(sheet, "A2") + "|" + cellText(sheet, "B2"), "=001|受注入力");
  EXPECT_TRUE(sheet.style(cellAt("A2")).quotePrefix);
  EXPECT_EQ(sheet.style(cellAt("M1")).fill, CellFill::solid(CellColor::index(6)));
  EXPECT_EQ(sheet.pageSetup().footer.right, "KVRTN");
  EXPECT_GT(sheet.rowHeight(2), 2.5 * sheet.rowHeight(3)) << "three lines have room";
  EXPECT_EQ(sheet.pageSetup().header.right, "作成日:2026/11/24 09:05\n変更日:2026/11/24 (1)");
}

}  // namespace
}  // namespace quillmarden
