#include "excel/value_list_book.h"

#include <fstream>

#include "common/message.h"
#include "support/open_repository.h"

namespace quillmarden {
namespace {

using Lines = std::vector<std::string>;

class ValueListBookTest : public OpenRepositoryTest {
 protected:
  void SetUp() override {
    OpenRepositoryTest::SetUp();
    addSystem("販売", "PostgreSQL");
    ASSERT_TRUE(selectSystem(session, scripted.host, "販売"));
  }

  /// A list of two entries, the second one preset, and its screen.
  void show(const std::string& type, const std::string& first, const std::string& second) {
    database().execute(
        "INSERT INTO MAS_DIVISION (システム名, 値名称, 種別, 型, 内容, 削除フラグ) VALUES ('販売', '状態', '区分', '" +
        type + "', '=進み具合', 0)");
    int row = 0;
    for (const auto& [value, preset] : {std::pair(first, "0"), std::pair(second, "-1")}) {
      database().execute(
          "INSERT INTO MAS_DIVISIONDETAILES (システム名, 値名称, 行番号, 値, 内容, 初期値, 作成者) VALUES ('販売', "
          "'状態', " +
          std::to_string(++row) + ", '" + value + "', '概要" + value + "', " + preset + ", 'maker')");
    }
    frmDivision_Load(session, scripted.host, screen);
    ASSERT_FALSE(showValueList(session, scripted.host, screen, {"状態", "販売", "区分", type, "=進み具合"}));
  }
  void expectQuestion(int answer = kYes) { scripted.expect("出力確認", "値リストをExcel出力しますか?", answer); }
  std::string put(bool openAfter = false) {
    BookRun run;
    return CmdExcel_Click(session, scripted.host, run, screen, openAfter);
  }
  /// The cells of a row from column A on, parted by "|".
  static std::string line(const Worksheet& sheet, int row, int columns) {
    std::string text;
    for (int column = 1; column <= columns; ++column)
      text.append(column == 1 ? "" : "|").append(sheet.text({row, column}));
    return text;
  }

  frmDivision screen;
};

TEST_F(ValueListBookTest, TheListOnShowStandsInTheBook) {
  show("文字", "01", "-2");
  expectQuestion();
  scripted.expect("確認", "対象ファイルを開きます.");
  const std::string path = put(true);
  EXPECT_EQ(std::filesystem::path(path).filename(), "temptemp.xlsx");
  EXPECT_EQ(scripted.opened, Lines{path});
  EXPECT_EQ(scripted.waitTexts, (Lines{"Excel出力中です....", ""}));

  Workbook book = Workbook::open(path);
  const Worksheet& sheet = book.sheet(0);
  EXPECT_EQ(line(sheet, 1, 2), "システム名:|販売");
  EXPECT_EQ(line(sheet, 2, 2), "値リスト名:|状態");
  EXPECT_EQ(line(sheet, 3, 2), "種別:|区分");
  EXPECT_EQ(line(sheet, 4, 2), "型:|文字");
  EXPECT_EQ(line(sheet, 5, 2), "値の説明:|=進み具合") << "a text, no formula";
  EXPECT_EQ(line(sheet, 7, 7), "初期値|値|概要|作成者|作成日|更新者|更新日");
  EXPECT_EQ(line(sheet, 8, 4), "|01|概要01|maker");
  EXPECT_EQ(line(sheet, 9, 4), "○|-2|概要-2|maker");
  EXPECT_EQ(sheet.used()->last.row, 9) << "the blank rows of the screen are left out";
  EXPECT_EQ(sheet.value({8, 2}), CellValue(std::string("01"))) << "a code keeps its zeros";
  EXPECT_EQ(sheet.pageSetup().titleRows, rangeAt("7:7"));
}

TEST_F(ValueListBookTest, ValuesOfANumericListAreNumbers) {
  show("数値", "1", "20");
  expectQuestion();
  Workbook book = Workbook::open(put());
  EXPECT_EQ(book.sheet(0).value({9, 2}), CellValue(20.0));
  EXPECT_TRUE(scripted.opened.empty());
}

TEST_F(ValueListBookTest, NothingIsWrittenWithoutAListOrAYesOrAFreeFile) {
  frmDivision_Load(session, scripted.host, screen);
  scripted.expect("確認", "出力する内容がありません.");
  EXPECT_EQ(put(), "");
  show("文字", "a", "b");
  expectQuestion(kNo);
  EXPECT_EQ(put(), "");

  expectQuestion();
  const std::filesystem::path path = put();
  std::ofstream(path.parent_path() / ".~lock.temptemp.xlsx#") << "someone";
  expectQuestion();
  scripted.expect(
      "確認", joinLines({"指定ファイルは使用中です.", "  " + path.string(), "確認して下さい.", "処理を中止します."}));
  EXPECT_EQ(put(), "");
}

}  // namespace
}  // namespace quillmarden
