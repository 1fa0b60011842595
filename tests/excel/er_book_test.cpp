#include "excel/er_book.h"

#include <pugixml.hpp>

#include "excel/er_tables.h"
#include "excel_fixture.h"
#include "support/files.h"

namespace quillmarden {
namespace {

class ErBookTest : public ExcelTest {
 protected:
  void SetUp() override {
    ExcelTest::SetUp();
    customer = addTable("販売", "PostgreSQL", "customer", "顧客");
    order = addTable("販売", "PostgreSQL", "orders", "受注");
    addField(customer, 1, "日本語名, 項目名, [KEY]", "'顧客番号', 'id', -1");
    addField(customer, 2, "項目名, 備考", "'name', '氏名'");
    addField(order, 1, "日本語名, 項目名, [KEY]", "'受注番号', 'id', -1");
    addField(order, 2, "日本語名, 項目名, 外部参照, 外部参照TABLEID, 外部参照ROWNO",
             "'顧客番号', 'customer', '顧客:顧客番号', " + customer + ", 1");
  }

  Workbook drawn(const ErChoice& choice) {
    path = pPutExcel2ER(session, scripted.host, run, list, detail, choice);
    return Workbook::open(path);
  }

  /// The texts of an embedded book, row by row.
  static std::string boxText(Workbook& book, int number) {
    const std::string part = "xl/embeddings/Microsoft_Excel_Sheet" + std::to_string(number) + ".xlsx";
    const Workbook box = Workbook::fromBytes(book.package().bytes(part));
    std::string text;
    const CellRange used = box.sheet(0).used().value_or(CellRange());
    for (int row = 1; row <= used.last.row; ++row) {
      for (int column = 1; column <= used.last.column; ++column) {
        text += box.sheet(0).text({row, column}) + (column < used.last.column ? "," : "|");
      }
    }
    return text;
  }

  std::string path;
  std::string customer;
  std::string order;
};

TEST_F(ErBookTest, EachTableIsAnEmbeddedBookAndReferencesBringTheirTables) {
  choose(order);
  Workbook book = drawn({});
  EXPECT_TRUE(path.ends_with("/販売_ER.xlsx"));
  EXPECT_EQ(boxText(book, 1), "【受注】,|,(PK)受注番号|,(FK)顧客番号|");
  EXPECT_EQ(boxText(book, 2), "【顧客】,|,(PK)顧客番号|,name|");
  const Worksheet& sheet = book.sheet(0);
  EXPECT_EQ(sheet.name(), "レイアウト");
  const PageSetup page = sheet.pageSetup();
  EXPECT_EQ(page.header.right, "作成日:2026/11/24\n変更日:2026/11/24");
  EXPECT_TRUE(page.fitToPage && page.fitToWidth == 1 && page.fitToHeight == 1);
  // Each object has a shape of its number, a book and a picture.
  pugi::xml_document objects;
  ASSERT_TRUE(objects.load_string(sheet.element("oleObjects").c_str()));
  pugi::xml_document shapes;
  ASSERT_TRUE(shapes.load_string(book.package().bytes(book.legacyDrawingPart(0)).c_str()));
  auto shape = shapes.first_child().child("v:shape");
  for (const auto object : objects.first_child().children()) {
    EXPECT_EQ(std::string("_x0000_s") + object.attribute("shapeId").value(), shape.attribute("o:spid").value());
    shape = shape.next_sibling("v:shape");
  }
  EXPECT_FALSE(shape);
}

TEST_F(ErBookTest, ModesChooseTheRows) {
  choose(order);
  choose(customer);
  Workbook keys = drawn({.fields = ErFields::KeysOnly});
  EXPECT_EQ(boxText(keys, 1), "【受注】,|,(PK)受注番号|");
  Workbook titles = drawn({.fields = ErFields::TitleOnly, .bookName = "<概観>"});
  EXPECT_TRUE(path.ends_with("/概観_ER.xlsx"));
  EXPECT_EQ(boxText(titles, 2), "【顧客】|");
  Workbook remarks = drawn({.fields = ErFields::TwoColumns, .dotTitle = true});
  EXPECT_EQ(boxText(remarks, 2), "【顧客】.,,|,(PK)顧客番号,|,name,氏名|");
  Workbook foreign = drawn({.foreignOnly = true});
  EXPECT_EQ(boxText(foreign, 1), "【受注】,|,(FK)顧客番号|");
}

TEST_F(ErBookTest, TheSheetBearsTheFiltersNames) {
  choose(order);
  list.CmbDataBunrui.text = "売上";
  list.CmbDataBunrui2.text = "月次";
  EXPECT_EQ(drawn({}).sheet(0).name(), "D分類-売上-月次");
  list.CmbDataBunrui.text = list.CmbDataBunrui2.text = "";
  list.CmbBunrui.text = "a/b";
  scripted.answerAll(kOk);
  EXPECT_EQ(pPutExcel2ER(session, scripted.host, run, list, detail, {}), "");
  EXPECT_TRUE(scripted.messages.back().starts_with("確認|ExcelObject作成に失敗しました.\n "));
}

TEST_F(ErBookTest, LinesJoinTheShapesOfTheShapeForms) {
  choose(order);
  choose(customer);
  path = pPutExcel2ERTextBox(session, scripted.host, run, list, detail, {});
  EXPECT_TRUE(path.ends_with("/販売_ER.xls"));
  Workbook boxes = Workbook::open(path);
  EXPECT_EQ(boxes.sheet(0).name(), "ER図");
  const std::string drawing = boxes.package().bytes(boxes.drawingPart(0));
  EXPECT_NE(drawing.find("name=\"FK 受注 - 顧客\""), std::string::npos);
  EXPECT_NE(drawing.find("txBox=\"1\""), std::string::npos);

  path = pPutCurrentTable2ExcelDisk(session, scripted.host, run, list, detail, false);
  Workbook disks = Workbook::open(path);
  EXPECT_NE(disks.package().bytes(disks.drawingPart(0)).find("flowChartMagneticDisk"), std::string::npos);

  list.LstTableSel.clear();
  scripted.expect("ぷんぶん!!", "選択されていません!!");
  EXPECT_EQ(pPutCurrentTable2ExcelDisk(session, scripted.host, run, list, detail, false), "");
}

TEST_F(ErBookTest, AStoppedSheetLeavesTheFormerOne) {
  choose(customer);
  const auto draw = [&](auto form) {
    run.stopped = false;
    return form(session, scripted.host, run, list, detail, {});
  };
  const std::string path = draw(pPutExcel2ER);
  const std::string former = readFile(path);
  // Wherever on its way the run is asked: at a table, at its box, while the book is written.
  int stopAt = 0;
  for (bool stopped = true; stopped; ++stopAt) {
    ASSERT_LT(stopAt, 10000);
    int asked = 0;
    scripted.host.dialogs.stopRequested = [&] { return asked++ >= stopAt; };
    scripted.answerAll(kYes);
    scripted.messages.clear();
    draw(pPutExcel2ER);
    stopped = run.stopped;
    if (!stopped) break;
    ASSERT_EQ(scripted.messages, std::vector<std::string>{"確認|中断しました.\n出力ファイルはありません."}) << stopAt;
    ASSERT_EQ(readFile(path), former) << stopAt;
  }
  EXPECT_GT(stopAt, 4);
  scripted.host.dialogs.stopRequested = [] { return true; };
  draw(pPutExcel2ERTextBox);
  EXPECT_TRUE(run.stopped);
}

TEST(ErGridTest, BoxesStandInAGridAndNeverOverlap) {
  // Nine tables: four columns, so the fifth box begins the second row.
  std::vector<Box> sizes(9, Box{0, 0, 100, 50});
  const std::vector<Box> even = placeErBoxes(sizes, 9, 7);
  EXPECT_EQ(even[0].left, 0);
  EXPECT_EQ(even[0].top, 0);
  EXPECT_EQ(even[1].left, 135);
  EXPECT_EQ(even[1].top, 14) << "every second column stands lower";
  EXPECT_EQ(even[4].left, 0);
  EXPECT_EQ(even[4].top, 85);
  EXPECT_EQ(placeErBoxes({{0, 0, 100, 50}}, 1, 7).front().left, 0);

  for (std::size_t i = 0; i < 40; ++i)
    sizes.push_back({0, 0, 40.0 + 37.0 * static_cast<double>(i % 7), 20.0 + 31.0 * static_cast<double>(i % 5)});
  const std::vector<Box> boxes = placeErBoxes(sizes, 30, 7);
  for (std::size_t i = 0; i < boxes.size(); ++i) {
    for (std::size_t k = i + 1; k < boxes.size(); ++k) {
      const bool apart =
          boxes[i].left + boxes[i].width <= boxes[k].left || boxes[k].left + boxes[k].width <= boxes[i].left ||
          boxes[i].top + boxes[i].height <= boxes[k].top || boxes[k].top + boxes[k].height <= boxes[i].top;
      EXPECT_TRUE(apart) << i << " " << k;
    }
  }
}

}  // namespace
}  // namespace quillmarden
