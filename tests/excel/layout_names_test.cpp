#include "excel/layout_names.h"

#include <fstream>
#include <set>

#include "common/work_folders.h"
#include "excel/er_book.h"
#include "excel/format_file.h"
#include "excel/list_book.h"
#include "excel/table_layout.h"
#include "excel_fixture.h"
#include "support/files.h"

namespace quillmarden {
namespace {

class LayoutNamesTest : public ExcelTest {
 protected:
  void SetUp() override {
    ExcelTest::SetUp();
    Workbook::create({.sheetName = "白紙"}).save(programFile("t白紙.xls"));
    run.outputFolder = scripted.folder.path() / "out";
  }

  std::string add(const std::string& japanese) {
    const std::string id = addTable("販売", "PostgreSQL", "t", japanese);
    choose(id, japanese);
    return id;
  }
  /// The table's layout made alone, by its file's name.
  std::string alone(const std::string& id) {
    EXPECT_FALSE(pGet_TableID2TableDetails(session, scripted.host, detail, id));
    BookRun own;
    own.outputFolder = run.outputFolder;
    const std::string path = pPutCurrentTable2ExcelFile(session, scripted.host, own, detail, "販売", false);
    EXPECT_EQ(cellText(Workbook::open(path).sheet(0), "C1"), detail.txtTableNameJPN.text);
    return std::filesystem::path(path).filename();
  }
  void make() {
    scripted.expect("確認", "Excelファイルを作成します.", kYes);
    EXPECT_EQ(putSeparateLayouts(session, scripted.host, run, list, detail, false), list.LstTableSel.count());
  }
  long made() const { return std::distance(std::filesystem::directory_iterator(run.outputFolder), {}); }
};

TEST_F(LayoutNamesTest, TablesOfOneFileNameAreNumberedAndTold) {
  const std::string first = add("単価/日");
  const std::string read = add("単価.日");
  const std::string second = add("単価.日");
  const std::string lower = add("Abc");
  const std::string upper = add("ABC");
  database().execute("UPDATE MAS_TABLEINFO SET REVERSE_DB = True WHERE ID = " + read);
  scripted.expect("確認", "Excelファイルを作成します.", kYes);
  scripted.expect("確認",
                  "ファイル名が同じになるテーブルがあるため、番号を付けました.\n  単価.日 : 単価.日(3).xlsx\n"
                  "  単価.日 : 単価.日(2).xlsx\n  ABC : ABC(2).xlsx");
  EXPECT_EQ(putSeparateLayouts(session, scripted.host, run, list, detail, false), 5);
  EXPECT_EQ(made(), 5);
  // A table has its file whatever else a run makes.
  EXPECT_EQ(alone(second), "単価.日(2).xlsx");
  EXPECT_EQ(alone(read), "単価.日(3).xlsx") << "what was read from a database gives way";
  EXPECT_EQ(alone(first), "単価.日.xlsx");
  EXPECT_EQ(alone(upper), "ABC(2).xlsx") << "some file systems know no case";
  EXPECT_EQ(alone(lower), "Abc.xlsx");
  EXPECT_EQ(made(), 5);

  scripted.answerAll(kYes);
  const Workbook all = Workbook::open(mnuExcel_Click(session, scripted.host, run, list, detail, false));
  std::set<std::string> names;
  for (int sheet = 0; sheet < all.sheetCount(); ++sheet) names.insert(cellText(all.sheet(sheet), "C1"));
  EXPECT_EQ(names, (std::set<std::string>{"単価/日", "単価.日", "Abc", "ABC"}));
}

TEST_F(LayoutNamesTest, LongNamesAndReservedOnesAreMade) {
  std::string name;
  while (name.size() < 300) name += "長";
  add(name + "一");
  add(name + "二");
  for (const char* reserved : {"History", "履歴"}) {
    const std::string id = add(reserved);
    ASSERT_FALSE(pGet_TableID2TableDetails(session, scripted.host, detail, id));
    const std::string path = pPutCurrentTable2ExcelFile(session, scripted.host, run, detail, "販売", false);
    EXPECT_EQ(Workbook::open(path).sheet(0).name(), std::string(reserved) + "_");
  }
  EXPECT_THROW(checkSheetName("hISTORY"), WorkbookError);
  make();
  EXPECT_EQ(made(), 4);
}

TEST_F(LayoutNamesTest, NoOutputTakesTheRepositoryOrATemplate) {
  const std::string id = add("受注");
  database().execute("UPDATE MAS_SYSTEM SET 書式ファイル名 = 'own.xlsx'");
  const std::string repository = session.gDB->path();
  const std::string ownTemplate = session.gDataFolder + "/own.xlsx";
  const std::string link = scripted.folder.file("link.xlsx");
  std::filesystem::create_hard_link(repository, scripted.folder.file("hard.xlsx"));
  std::filesystem::create_symlink(repository, link);
  std::ofstream(ownTemplate) << "own";
  std::ofstream(ownTemplate + ".inf") << "format";
  const std::string before = readFile(repository);
  scripted.answerAll(kYes);
  for (const std::string& target :
       {repository, repository + "-journal", repository + "-wal", scripted.folder.file("hard.xlsx"), link,
        scripted.folder.path().string() + "/./tableinf.mdb", programFile("t白紙.xls"), ownTemplate,
        ownTemplate + ".inf", session.gIniFile}) {
    run.outputFile = target;
    scripted.messages.clear();
    EXPECT_EQ(pPutExcel2ER(session, scripted.host, run, list, detail, {}), "") << target;
    EXPECT_EQ(pPutTableListLayout2Excel(session, scripted.host, run, list, true, false), "") << target;
    ASSERT_EQ(scripted.messages.size(), 2U) << target;
    for (const std::string& message : scripted.messages)
      EXPECT_TRUE(message.starts_with("確認|出力先に指定できないファイルです.\n  " + target + "\n")) << message;
  }
  EXPECT_EQ(readFile(repository), before);
  EXPECT_EQ(readFile(ownTemplate) + readFile(ownTemplate + ".inf"), "ownformat");

  // A layout takes its name from its table.
  run.outputFile.clear();
  run.outputFolder = scripted.host.machine.programFolder;
  database().execute("UPDATE MAS_TABLEINFO SET 日本語名 = 'own'");
  std::filesystem::rename(ownTemplate, programFile("own.xlsx"));
  database().execute("UPDATE MAS_SYSTEM SET 書式ファイル名 = Null WHERE システム名 = '販売'");
  database().execute("INSERT INTO MAS_SYSTEM (システム名, 書式ファイル名) VALUES ('他', 'own.xlsx')");
  ASSERT_FALSE(pGet_TableID2TableDetails(session, scripted.host, detail, id));
  EXPECT_EQ(pPutCurrentTable2ExcelFile(session, scripted.host, run, detail, "販売", false), "");
  EXPECT_EQ(readFile(programFile("own.xlsx")), "own");
}

TEST_F(LayoutNamesTest, ResultsInWorkFoldersAreNoted) {
  run.outputFolder.clear();
  const std::string id = add("受注");
  ASSERT_FALSE(pGet_TableID2TableDetails(session, scripted.host, detail, id));
  const std::string path = pPutCurrentTable2ExcelFile(session, scripted.host, run, detail, "販売", false);
  removeWorkFolders(scripted.host);
  EXPECT_TRUE(std::filesystem::exists(path)) << "a login of the same user, in the middle of the run";
  scripted.now.day += 1;
  removeWorkFolders(scripted.host);
  EXPECT_FALSE(std::filesystem::exists(path));
  session.outputsStay = true;
  pPutCurrentTable2ExcelFile(session, scripted.host, run, detail, "販売", false);
  scripted.now.month += 1;
  removeWorkFolders(scripted.host);
  EXPECT_TRUE(std::filesystem::exists(path)) << "of the command line";
}

}  // namespace
}  // namespace quillmarden
