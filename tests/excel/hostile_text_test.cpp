// Texts that other tools left in the Repository, in every workbook.

#include "common/text.h"
#include "excel/er_book.h"
#include "excel/list_book.h"
#include "excel/member_book.h"
#include "excel/query_report.h"
#include "excel/table_layout.h"
#include "excel_fixture.h"
#include "support/package_rules.h"

namespace quillmarden {
namespace {

/// U+FFFE, U+FFFF, a lone surrogate, a byte that is no UTF-8, control characters, markup.
constexpr std::string_view kHostile = "悪\xEF\xBF\xBE\xEF\xBF\xBF\xED\xA0\x80\xFF\x01\x0B\x1B\x7F<b>&amp;\"_x000D_";

class HostileTextTest : public ExcelTest {
 protected:
  void SetUp() override {
    ExcelTest::SetUp();
    scripted.answerAll(kYes);
    const std::string hostile(kHostile);
    Workbook blank = Workbook::create({.sheetName = "白紙"});
    blank.sheet(0).setFormula(cellAt("B300"), "白紙!A1");
    blank.save(programFile(std::string(kBlankBook)));
    session.gLoginUser = hostile;
    parent = addTable("販売", "PostgreSQL", "p" + hostile, hostile);
    child = addTable("販売", "PostgreSQL", "c" + hostile, "子" + hostile);
    addField(parent, 1, "日本語名, 項目名, [KEY], 備考", "'" + hostile + "', '" + hostile + "', -1, '" + hostile + "'");
    addField(child, 1, "日本語名, 項目名, 外部参照, 外部参照TABLEID, 外部参照ROWNO",
             "'" + hostile + "', 'f', '" + hostile + "', " + parent + ", 1");
    member = addTable("販売", "メンバー", "m" + hostile, hostile);
    addField(member, 1, "型, 日本語名", "'氏名', '" + hostile + "'");
    program = addTable("販売", "PG管理", "pg", "進捗" + hostile);
    database().execute("INSERT INTO MAS_PRJINFO (ID, ROWNO, 表示順, 日本語名, 項目名) VALUES (" + program +
                       ", 1, 1, '" + hostile + "', '" + hostile + "')");
    for (const std::string& id : {parent, child}) choose(id, hostile);
  }

  void check(const std::string& path) {
    ASSERT_NE(path, "") << (scripted.messages.empty() ? "" : scripted.messages.back());
    const Workbook book = Workbook::open(path);
    EXPECT_EQ(PackageRules(book.bytes()).faults(), "") << path;
    for (const std::string& name : book.package().names())
      if (name.ends_with(".xlsx")) EXPECT_EQ(PackageRules(book.package().bytes(name)).faults(), "") << name;
  }

  std::string parent;
  std::string child;
  std::string member;
  std::string program;
};

TEST_F(HostileTextTest, EveryWorkbookIsWellFormed) {
  for (const std::string& id : {parent, child, program}) {
    ASSERT_FALSE(pGet_TableID2TableDetails(session, scripted.host, detail, id));
    check(pPutCurrentTable2ExcelFile(session, scripted.host, run, detail, "販売", false));
  }
  list.CmbBunrui.text = "分\xED\xA0\x80\x01";
  check(pPutExcel2ER(session, scripted.host, run, list, detail, {.fields = ErFields::TwoColumns}));
  check(pPutExcel2ERTextBox(session, scripted.host, run, list, detail, {}));
  check(pPutCurrentTable2ExcelDisk(session, scripted.host, run, list, detail, false));
  check(pPutTableListLayout2Excel(session, scripted.host, run, list, true, false));
  check(pPutTableListLayout2Excel(session, scripted.host, run, list, false, false));
  check(mnuExcel_Click(session, scripted.host, run, list, detail, false));
  frmReport report;
  report.CmbDataSource.text = kHostile;
  report.Spread.setColumns({SpreadColumn{.title = std::string(kHostile)}});
  report.Spread.setMaxRows(1);
  report.Spread.setText(1, 1, kHostile);
  check(CmdExcel_Click(session, scripted.host, run, report, false));
  list.LstTableSel.clear();
  choose(member);
  check(pPutMemberExcel(session, scripted.host, run, list, false));
}

TEST_F(HostileTextTest, TextsThatNoCellHoldsAreCutAndNamed) {
  std::string longText;
  for (int i = 0; i < 33000; ++i) longText += "長";
  addField(parent, 2, "日本語名, 項目名, 備考", "'長い項目', 'g', '" + longText + "'");
  database().execute("UPDATE MAS_TABLEINFO SET 日本語名 = '長い表', 概要 = '" + longText + "' WHERE ID = " + parent);
  database().execute("UPDATE MAS_TABLEINFO SET 日本語名 = '子' WHERE ID = " + child);
  const std::string told = "確認|長すぎる文字列があります. セルに入る長さで切りました.";
  ASSERT_FALSE(pGet_TableID2TableDetails(session, scripted.host, detail, parent));
  const std::string path = pPutCurrentTable2ExcelFile(session, scripted.host, run, detail, "販売", false);
  check(path);
  EXPECT_EQ(scripted.messages.back(), told + "\n 長い表\n 長い表 : 長い項目");
  EXPECT_TRUE(cellText(Workbook::open(path).sheet(0), "M11").ends_with("長長…(以下省略)"));

  check(pPutTableListLayout2Excel(session, scripted.host, run, list, true, false));
  EXPECT_EQ(scripted.messages.back(), told + "\n 長い表 : 長い項目");
  check(pPutExcel2ER(session, scripted.host, run, list, detail, {.fields = ErFields::TwoColumns}));
  EXPECT_EQ(scripted.messages.back(), told + "\n 長い表 : 長い項目");
  const std::size_t before = scripted.messages.size();
  check(pPutExcel2ER(session, scripted.host, run, list, detail, {}));
  EXPECT_EQ(scripted.messages.size(), before) << "nothing was cut, and what was is forgotten";
}

}  // namespace
}  // namespace quillmarden
