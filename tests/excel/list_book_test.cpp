#include "excel/list_book.h"

#include "excel/member_book.h"
#include "excel/query_report.h"
#include "excel/table_layout.h"
#include "excel_fixture.h"

namespace quillmarden {
namespace {

/// A row's cells, parted by "|".
std::string rowText(const Worksheet& sheet, int row, int columns) {
  std::string text;
  for (int column = 1; column <= columns; ++column) text += (column > 1 ? "|" : "") + sheet.text({row, column});
  return text;
}

class ListBookTest : public ExcelTest {
 protected:
  void SetUp() override {
    ExcelTest::SetUp();
    order = addTable("販売", "PostgreSQL", "orders", "受注");
    database().execute(
        "UPDATE MAS_TABLEINFO SET 略名 = 'ord', 分類 = 'マスタ', 概要 = 'b', REVERSE_DB = True, 現在数 = 1200, 想定数 "
        "= 40 "
        "WHERE ID = " +
        order);
    addField(order, 2, "日本語名, 項目名, 型, 整数桁数, 少数桁数, Null値", "'金額', 'amount', 'numeric', 9, 2, 'NULL'");
    addField(order, 1, "日本語名, 項目名, [KEY], 型, 整数桁数, Null値, 項目分類",
             "'番号', 'id', -1, 'char', 8, 'NOT NULL', 'コード'");
    choose(order, "受注");
  }

  std::string order;
};

TEST_F(ListBookTest, ALineATableOrALineAField) {
  std::string path = pPutTableListLayout2Excel(session, scripted.host, run, list, false, false);
  EXPECT_TRUE(path.ends_with("/販売_TableLayout.xlsx"));
  const Workbook tables = Workbook::open(path);
  EXPECT_EQ(rowText(tables.sheet(0), 1, 12),
            "No.|日本語名(論理名)|テーブル名|略名|分類|データベース|備考|リバース|DB件数|DB履歴|件数|");
  EXPECT_EQ(rowText(tables.sheet(0), 2, 11), "1|受注|orders|ord|マスタ|PostgreSQL|b|○|1200||40");
  EXPECT_EQ(tables.sheet(0).style(cellAt("I2")).named, "Comma [0]");

  path = pPutTableListLayout2Excel(session, scripted.host, run, list, true, false);
  const Workbook fields = Workbook::open(path);
  EXPECT_EQ(rowText(fields.sheet(0), 1, 12),
            "No.|日本語名(論理名)|テーブル名|No.|項目名(JP)|項目名(ENG)|Key|型|桁数|Null|分類|備考");
  EXPECT_EQ(rowText(fields.sheet(0), 2, 12), "1|受注|orders|1|番号|id|○|char|8|×|コード|");
  EXPECT_EQ(rowText(fields.sheet(0), 3, 12), "1|受注|orders|2|金額|amount||numeric|(9,2)|||");
  EXPECT_EQ(scripted.waitTexts.back(), "");
}

TEST_F(ListBookTest, AStoppedRunSavesWhatItHasAndSaysSo) {
  choose(addTable("販売", "PostgreSQL", "second", "二"), "二");
  int asked = 0;
  scripted.host.dialogs.stopRequested = [&asked] { return ++asked > 1; };
  scripted.expect("確認", "中止しました.\n必要に応じてデスクトップ等に保存してください.");
  const std::string path = pPutTableListLayout2Excel(session, scripted.host, run, list, false, false);
  EXPECT_EQ(Workbook::open(path).sheet(0).used()->last.row, 2);
  EXPECT_TRUE(path.ends_with("/販売_TableLayout.途中.xlsx")) << "nobody takes it for a whole one";
  EXPECT_TRUE(run.stopped);
}

TEST_F(ListBookTest, NothingStartsWithoutASelectionOrOnAFileInUse) {
  const std::string path = pPutTableListLayout2Excel(session, scripted.host, run, list, false, false);
  std::ofstream(std::filesystem::path(path).parent_path() / "~$販売_TableLayout.xlsx") << "held";
  scripted.expect("確認", "作業用ファイルが使用中です.\nすべてのExcelを閉じてください.");
  EXPECT_EQ(pPutTableListLayout2Excel(session, scripted.host, run, list, false, true), "");
  list.LstTableSel.clear();
  scripted.expect("確認", "選択されていません.");
  EXPECT_EQ(mnuExcelSelList_Click(session, scripted.host, run, list, true, true), "");
  EXPECT_TRUE(scripted.opened.empty());
}

TEST_F(ListBookTest, LayoutsAreCollectedInOneBook) {
  Workbook blank = Workbook::create({.sheetName = "白紙"});
  blank.save(programFile(std::string(kBlankBook)));
  choose(addTable("販売", "PG管理", "pg1", "進捗1"), "進捗1");
  choose(addTable("販売", "PG管理", "pg2", "進捗2"), "進捗2");
  scripted.expect("確認", "Excelファイルを作成します.", kYes);
  scripted.expect("確認", "対象ファイルを開きます.");
  const std::string path = mnuExcel_Click(session, scripted.host, run, list, detail, true);
  EXPECT_TRUE(path.ends_with("/販売_テーブル一覧.xls"));
  const Workbook book = Workbook::open(path);
  ASSERT_EQ(book.sheetCount(), 3);
  EXPECT_EQ(cellText(book.sheet(2), "C1"), "受注");
  EXPECT_EQ(cellText(book.sheet(0), "A1"), "管理No");
  EXPECT_EQ(scripted.opened.back(), path);
  scripted.expect("確認", "Excelファイルを作成します.", kNo);
  EXPECT_EQ(mnuExcel_Click(session, scripted.host, run, list, detail, true), "");

  // Stopped at the third table, and the two of before wanted all the same.
  int asked = 0;
  scripted.host.dialogs.stopRequested = [&asked] { return ++asked > 2; };
  scripted.expect("確認", "Excelファイルを作成します.", kYes);
  scripted.expect("確認", "Excel出力を中止しました.\nファイルを開きますか?", kYes);
  const std::string partial = mnuExcel_Click(session, scripted.host, run, list, detail, false);
  EXPECT_TRUE(partial.ends_with("/販売_テーブル一覧.途中.xls"));
  EXPECT_EQ(Workbook::open(partial).sheetCount(), 2);
  EXPECT_EQ(Workbook::open(path).sheetCount(), 3) << "the former book stands";
}

class MemberBookTest : public ExcelTest {
 protected:
  void SetUp() override {
    ExcelTest::SetUp();
    group = addTable("販売", "メンバー", "team", "開発班");
    int row = 0;
    for (const std::string values :
         {"'山田', '氏名', Null", "'a@example.com', 'Mail', Null", "'a2@example.com', 'MAIL', '私用'",
          "'リーダー', '役割', '販売'", "'佐藤', '氏名', Null", "'S社', '会社', Null", "'b@example.com', 'mail', Null",
          "'x', '未知', Null"}) {
      addField(group, ++row, "日本語名, 型, 備考", values);
    }
    alone = addTable("販売", "メンバー", "suzuki", "鈴木");
    addField(alone, 1, "日本語名, 型", "'T社', '会社'");
  }

  std::string group;
  std::string alone;
};

TEST_F(MemberBookTest, APersonALine) {
  choose(group);
  choose(alone);
  choose(addTable("販売", "PostgreSQL", "t", "表"));
  const std::string path = pPutMemberExcel(session, scripted.host, run, list, false);
  EXPECT_TRUE(path.ends_with("TempTemp_-_-/temptemp.xls"));
  const Workbook book = Workbook::open(path);
  EXPECT_EQ(rowText(book.sheet(0), 1, 10), "グループ|会社|会社略名|所属1|所属2|役職|氏名|電話|Mail|参加日");
  EXPECT_EQ(rowText(book.sheet(0), 2, 12), "開発班||||||山田||a@example.com,a2@example.com (私用)|||リーダー (販売)");
  EXPECT_EQ(rowText(book.sheet(0), 3, 12), "開発班|S社|||||佐藤||b@example.com|||");
  EXPECT_EQ(rowText(book.sheet(0), 4, 12), "鈴木|T社|||||鈴木|||||");
  EXPECT_EQ(book.sheet(0).used()->last.row, 4);

  // One group gives the sheet its name; columns that the options leave out close up.
  list.LstTableSel.clear();
  choose(group);
  session.settings.putMemberInfo[1] = session.settings.putMemberInfo[6] = false;
  const Workbook less = Workbook::open(pPutMemberExcel(session, scripted.host, run, list, false));
  EXPECT_EQ(less.sheet(0).name(), "team");
  EXPECT_EQ(rowText(less.sheet(0), 1, 8), "グループ|会社|所属1|所属2|役職|氏名|電話|参加日");
  EXPECT_EQ(rowText(less.sheet(0), 3, 7), "開発班|S社||||佐藤|");
}

TEST_F(MemberBookTest, ALineAMemberAndSystem) {
  addField(group, 20, "日本語名, 型, 備考", "'2026/04/01', '参加日', '販売'");
  addField(group, 21, "日本語名, 型, 備考", "'2026/05/01', '参加日', '会計'");
  addField(group, 22, "日本語名, 型, 備考", "'2026/09/30', '終了日', '会計'");
  choose(group);
  const Workbook book = Workbook::open(pPutMemberSystemExcel(session, scripted.host, run, list, false));
  EXPECT_EQ(rowText(book.sheet(0), 3, 6), "グループ|氏名|システム|参加日|終了日|役割");
  EXPECT_EQ(rowText(book.sheet(0), 4, 6), "開発班|山田|販売|||リーダー");
  EXPECT_EQ(rowText(book.sheet(0), 5, 6), "開発班|佐藤|販売|2026/04/01||");
  EXPECT_EQ(rowText(book.sheet(0), 6, 6), "開発班|佐藤|会計|2026/05/01|2026/09/30|");
  list.LstTableSel.clear();
  choose(alone);
  scripted.expect("確認", "出力する内容がありません.");
  EXPECT_EQ(pPutMemberSystemExcel(session, scripted.host, run, list, true), "");
}

TEST_F(MemberBookTest, MailAddressesGoToTheClipboard) {
  choose(group);
  choose(alone);
  const std::string question =
      "メールアドレス一覧を作成します.\nデータベース=メンバーの\nメールをClipBordに複写します.";
  scripted.expect("確認", question, kYes);
  scripted.expect("確認", "ClipBordに一覧作成しました.");
  mnuMail_Click(session, scripted.host, list);
  EXPECT_EQ(scripted.clipboard, "a@example.com,a2@example.com,b@example.com");

  list.LstTableSel.clear();
  choose(alone);
  scripted.clipboard = "kept";
  scripted.expect("確認", question, kYes);
  scripted.expect("確認", "有効なMailアドレスはありませんでした.");
  mnuMail_Click(session, scripted.host, list);
  EXPECT_EQ(scripted.clipboard, "kept");
}

class QueryReportTest : public ExcelTest {
 protected:
  void define(const std::string& name, const std::string& sql) { database().putQueryDef({name, sql}); }
  bool choosing(const std::string& name) {
    screen.CmbDataSource.text = name;
    return CmbDataSource_Click(session, scripted.host, screen);
  }

  frmReport screen;
};

TEST_F(QueryReportTest, OffersAndChecksTheQueriesOfItsPrefix) {
  define("~出力_x", "SELECT 1 AS a");
  define("出力_three", "PARAMETERS [a] Long, [b] Text, [c] Text; SELECT [a], [b], [c]");
  define("出力_two", "PARAMETERS [件数] Long, [日] DateTime; SELECT [件数] AS n, [日] AS d, Null AS x");
  frmReport_Load(session, scripted.host, screen);
  EXPECT_EQ(screen.caption, "レポート : システム名: [ 販売 ] ");
  for (const std::string& entry : screen.CmbDataSource.entries) EXPECT_TRUE(entry.starts_with("出力_"));
  scripted.expect("確認", "3つ以上のパラメータには対応していません.");
  EXPECT_TRUE(choosing("出力_three"));
  ASSERT_FALSE(choosing("出力_two"));
  EXPECT_EQ(screen.TxtParaTips[0] + "|" + screen.lblKata[0].caption + "|" + screen.lblKata[1].caption,
            "件数|long|date");

  screen.TxtPara[0].text = "x";
  scripted.expect("確認", "数値以外が設定されています.");
  EXPECT_TRUE(pChkPara(scripted.host, screen));
  EXPECT_EQ(screen.focusPara, 0);
  screen.TxtPara[0].text = "7";
  screen.TxtPara[1].text = "2026/13/01";
  scripted.expect("確認", "時間/日付以外が設定されています.");
  EXPECT_TRUE(pChkPara(scripted.host, screen));
  screen.TxtPara[1].text = "2026/12/01";
  scripted.expect("確認", "Queryを実行します.", kYes);
  EXPECT_FALSE(CmdFind_Click(session, scripted.host, screen));
  EXPECT_EQ(screen.lblNum.caption, "1");
  EXPECT_EQ(std::string(screen.Spread.text(1, 1)) + "|" + std::string(screen.Spread.text(2, 1)) + "|" +
                std::string(screen.Spread.text(3, 1)),
            "7|2026/12/01 00:00:00|");
}

TEST_F(QueryReportTest, FaultsAreToldAndAnEmptyGridIsNotPutOut) {
  scripted.expect("確認", "Queryが未設定です.");
  EXPECT_TRUE(CmdFind_Click(session, scripted.host, screen));
  scripted.expect("確認", "出力する内容がありません.");
  EXPECT_EQ(CmdExcel_Click(session, scripted.host, run, screen, true), "");
  define("出力_broken", "SELECT a FROM 無い表");
  frmReport_Load(session, scripted.host, screen);
  scripted.answerAll(kYes);
  EXPECT_TRUE(choosing("出力_broken"));
  EXPECT_TRUE(CmdFind_Click(session, scripted.host, screen));
  EXPECT_TRUE(scripted.messages.back().starts_with("こまった|(>_<)エラーがありました.\n "));
}

TEST_F(QueryReportTest, TheGridGoesToABookBelowItsParameters) {
  define("出力_one", "PARAMETERS [名] Text; SELECT [名] AS 値, '=1+1' AS 式, 5 AS 数");
  frmReport_Load(session, scripted.host, screen);
  ASSERT_FALSE(choosing("出力_one"));
  screen.TxtPara[0].text = "a\nb";
  scripted.answerAll(kYes);
  ASSERT_FALSE(CmdFind_Click(session, scripted.host, screen));
  const std::string path = CmdExcel_Click(session, scripted.host, run, screen, false);
  EXPECT_TRUE(path.ends_with("TempTemp_-_-/temptemp.xlsx"));
  const Workbook book = Workbook::open(path);
  const Worksheet& sheet = book.sheet(0);
  EXPECT_EQ(cellText(sheet, "B1") + "|" + cellText(sheet, "B2") + "|" + cellText(sheet, "A5"),
            "販売|出力_one|パラメータ3:");
  EXPECT_EQ(rowText(sheet, 7, 3), "値|式|数");
  EXPECT_EQ(rowText(sheet, 8, 3), "a\nb|=1+1|5");
  EXPECT_EQ(sheet.formula(cellAt("B8")), "");
  EXPECT_GT(sheet.rowHeight(8), 1.9 * sheet.rowHeight(7));
}

TEST_F(QueryReportTest, NumbersAreNumbersWithAllTheirDigits) {
  frmReport_Load(session, scripted.host, screen);
  scripted.answerAll(kYes);
  const std::vector<std::string> numbers = {"-5",    "-0.25",        "0",    "1234567890123", "-123456789012.25",
                                            "0.001", "123456789012", "-1e5", "007",           "1234567890123456",
                                            "-",     "-0",           "+5",   "1.50",          "-=A1"};
  screen.Spread.setColumns({SpreadColumn{.title = "数"}});
  screen.Spread.setMaxRows(static_cast<int>(numbers.size()));
  for (std::size_t i = 0; i < numbers.size(); ++i) screen.Spread.setText(1, static_cast<int>(i) + 1, numbers[i]);
  const Workbook book = Workbook::open(CmdExcel_Click(session, scripted.host, run, screen, false));
  const Worksheet& sheet = book.sheet(0);
  for (std::size_t i = 0; i < numbers.size(); ++i) {
    const CellRef cell{static_cast<int>(i) + 8, 1};
    const CellValue value = sheet.value(cell);
    EXPECT_EQ(std::holds_alternative<double>(value), i < 7) << numbers[i];
    EXPECT_EQ(i < 7 ? value : CellValue(std::stod(numbers[0])), CellValue(std::stod(numbers[i < 7 ? i : 0])));
    if (i >= 7) EXPECT_EQ(sheet.text(cell), numbers[i]);
  }
  EXPECT_EQ(sheet.style({11, 1}).numberFormat, "0");
  EXPECT_EQ(sheet.style({12, 1}).numberFormat, "0.00");
  EXPECT_EQ(sheet.style({8, 1}).numberFormat, "");
}

}  // namespace
}  // namespace quillmarden
