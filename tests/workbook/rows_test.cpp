// Long runs of changes, compared with a model that is too simple to be wrong, and books of many rows.

#include <gtest/gtest.h>

#include <map>
#include <random>
#include <set>

#include "packages.h"
#include "support/package_rules.h"
#include "workbook/anchors.h"
#include "workbook/shared_strings.h"
#include "workbook/xml_fragment.h"

namespace quillmarden {
namespace {

/// A sheet as a list of rows, each with what it is known by.
struct PlainSheet {
  struct Row {
    std::string text;
    double height = 0;
    bool merged = false;
  };
  std::vector<Row> rows = std::vector<Row>(60);

  void insert(int before, int count) {
    rows.insert(rows.begin() + (before - 1), static_cast<std::size_t>(count), Row());
  }
  void remove(int first, int last) { rows.erase(rows.begin() + (first - 1), rows.begin() + last); }
  void copy(int from, int to) { at(to) = at(from); }
  Row& at(int row) { return rows[static_cast<std::size_t>(row - 1)]; }
};

TEST(Rows, randomChangesAgreeWithAPlainList) {
  for (unsigned seed = 1; seed <= 12; ++seed) {
    std::mt19937 random(seed);
    const auto pick = [&](int from, int to) {
      return from + static_cast<int>(random() % static_cast<unsigned>(to - from + 1));
    };
    Workbook book = Workbook::create();
    Worksheet& sheet = book.sheet(0);
    PlainSheet plain;
    for (int step = 0; step < 120; ++step) {
      const int rows = static_cast<int>(plain.rows.size());
      const int row = pick(1, rows);
      switch (pick(0, 6)) {
        case 0: {
          const int count = pick(1, 5);
          sheet.insertRows(row, count);
          plain.insert(row, count);
          break;
        }
        case 1: {
          const int last = std::min(row + pick(0, 4), rows);
          if (rows - (last - row + 1) < 10) break;
          sheet.deleteRows(row, last);
          plain.remove(row, last);
          break;
        }
        case 2: {
          const int to = pick(1, rows);
          sheet.copyRow(row, to);
          plain.copy(row, to);
          break;
        }
        case 3:
          sheet.setRowHeight(row, 10 + step);
          plain.at(row).height = 10 + step;
          break;
        case 4:
          sheet.merge({{row, 4}, {row, 6}});
          plain.at(row).merged = true;
          break;
        default:
          sheet.setText({row, pick(1, 1)}, "step " + std::to_string(step));
          plain.at(row).text = "step " + std::to_string(step);
      }
    }
    const std::string bytes = book.bytes();
    EXPECT_EQ(PackageRules(bytes).faults(), "") << "seed " << seed;
    const Workbook read = Workbook::fromBytes(bytes);
    const Worksheet& result = read.sheet(0);
    for (int row = 1; row <= static_cast<int>(plain.rows.size()); ++row) {
      const PlainSheet::Row& expected = plain.at(row);
      ASSERT_EQ(result.text({row, 1}), expected.text) << "seed " << seed << " row " << row;
      ASSERT_EQ(result.hasRowHeight(row), expected.height > 0) << "seed " << seed << " row " << row;
      if (expected.height > 0) {
        ASSERT_EQ(result.rowHeight(row), expected.height);
      }
      ASSERT_EQ(result.mergedRange({row, 5}).columns() == 3, expected.merged) << "seed " << seed << " row " << row;
    }
  }
}

TEST(Rows, aReferenceFollowsItsCell) {
  // Each cell of column A knows its own mark; formulas in B, in C of another sheet and a name point at them.
  for (unsigned seed = 1; seed <= 8; ++seed) {
    std::mt19937 random(seed);
    Workbook book = Workbook::create({.sheetName = "その 1"});
    book.addSheet("two");
    Worksheet& sheet = book.sheet(0);
    std::map<int, int> markOf;  // formula number to mark
    for (int row = 1; row <= 40; ++row) sheet.setNumber({row, 1}, row);
    for (int number = 1; number <= 20; ++number) {
      const int target = 1 + static_cast<int>(random() % 40);
      markOf[number] = target;
      book.sheet(1).setFormula({number, 3}, "'その 1'!$A$" + std::to_string(target));
      book.setDefinedName({"n" + std::to_string(number), -1, "'その 1'!$A$" + std::to_string(target), ""});
    }
    std::set<int> gone;
    for (int step = 0; step < 25; ++step) {
      const int row = 1 + static_cast<int>(random() % 40);
      if (random() % 2 == 0) {
        sheet.insertRows(row, 1 + static_cast<int>(random() % 3));
      } else {
        const CellValue value = sheet.value({row, 1});
        if (const auto* mark = std::get_if<double>(&value)) gone.insert(static_cast<int>(*mark));
        sheet.deleteRows(row, row);
      }
    }
    const Workbook read = Workbook::fromBytes(book.bytes());
    for (const auto& [number, mark] : markOf) {
      const std::string formula = read.sheet(1).formula({number, 3});
      EXPECT_EQ(read.definedNames()[static_cast<std::size_t>(number - 1)].formula, formula);
      const std::size_t bang = formula.find('!');
      if (gone.contains(mark)) {
        EXPECT_EQ(formula, "'その 1'!#REF!") << "seed " << seed;
      } else {
        EXPECT_EQ(read.sheet(0).value(cellAt(formula.substr(bang + 1))), CellValue(static_cast<double>(mark)))
            << "seed " << seed << " " << formula;
      }
    }
  }
}

TEST(Rows, aLongListComesBack) {
  Workbook book = Workbook::create();
  Worksheet& sheet = book.sheet(0);
  constexpr int kRows = 20000;
  const auto text = [](int row, int column) {
    return "項目 " + std::to_string(column == 2 ? row / 30 : row * 10 + column);
  };
  for (int row = 1; row <= kRows; ++row) {
    sheet.setNumber({row, 1}, row / 7.0);
    for (int column = 2; column <= 6; ++column) sheet.setText({row, column}, text(row, column));
  }
  const std::string bytes = book.bytes();
  EXPECT_EQ(bytes, book.bytes());
  const Workbook read = Workbook::fromBytes(bytes);
  for (int row = 1; row <= kRows; ++row) {
    ASSERT_EQ(read.sheet(0).value({row, 1}), CellValue(row / 7.0));
    for (int column = 2; column <= 6; ++column) ASSERT_EQ(read.sheet(0).text({row, column}), text(row, column));
  }
  EXPECT_EQ(read.sheet(0).used(), CellRange({1, 1}, {kRows, 6}));
}

TEST(Rows, cellsInAnyOrder) {
  Workbook book = Workbook::create();
  Worksheet& sheet = book.sheet(0);
  std::mt19937 random(7);
  std::map<CellRef, std::string> expected;
  for (int i = 0; i < 3000; ++i) {
    const CellRef cell{1 + static_cast<int>(random() % 200), 1 + static_cast<int>(random() % 50)};
    expected[cell] = std::to_string(random() % 500) + "x";
    sheet.setText(cell, expected[cell]);
  }
  const std::string bytes = book.bytes();
  EXPECT_EQ(PackageRules(bytes).faults(), "");
  const Workbook read = Workbook::fromBytes(bytes);
  for (const auto& [cell, text] : expected) ASSERT_EQ(read.sheet(0).text(cell), text) << cellName(cell);
}

TEST(SharedStrings, eachTextIsStoredOnce) {
  StringPool pool;
  std::vector<std::string> texts;
  for (int i = 0; i < 60000; ++i)
    texts.push_back(std::string(static_cast<std::size_t>(i % 90), 'a') + std::to_string(i));
  texts.push_back(std::string(3U << 20, 'L'));  // longer than a block
  texts.push_back("");
  for (std::size_t i = 0; i < texts.size(); ++i) ASSERT_EQ(pool.intern(texts[i]), i);
  StringPool copy = pool;
  EXPECT_EQ(copy.intern("only in the copy"), texts.size());
  EXPECT_EQ(pool.size(), texts.size());
  for (std::size_t i = 0; i < texts.size(); i += 7) {
    ASSERT_EQ(pool.intern(texts[i]), i);
    ASSERT_EQ(copy.text(static_cast<std::uint32_t>(i)), texts[i]);
  }
  EXPECT_NE(pool.internRich("<t>a</t>"), pool.intern("<t>a</t>")) << "a rich text is not its XML as a plain one";
  std::string xml;
  for (PartSource source = copy.source(); source(xml);) continue;
  const StringPool read = StringPool::parse(xml, "part");
  ASSERT_EQ(read.size(), copy.size());
  EXPECT_EQ(read.stored(59999), texts[59999]);
}

std::string anchorXml(const char* attributes, int from, int to) {
  const auto corner = [](const char* name, int row) {
    return std::string("<") + name + "><row>" + std::to_string(row) + "</row><rowOff>5</rowOff></" + name + ">";
  };
  return std::string("<d><twoCellAnchor ") + attributes + ">" + corner("from", from) + corner("to", to) +
         "</twoCellAnchor></d>";
}

TEST(Anchors, shapesMoveAndGrowAsTheySay) {
  struct Case {
    const char* attributes;
    int from, to;
    RowChange change;
    int newFrom, newTo;
    int newFromOffset = 5;
  };
  // Rows of anchors count from 0, those of changes from 1.
  const Case cases[] = {
      {"", 4, 8, {3, 2, true}, 6, 10},
      {"", 4, 8, {7, 2, true}, 4, 10},
      {"", 4, 8, {20, 2, true}, 4, 8},
      {"", 4, 8, {1, 2, false}, 2, 6},
      {"", 4, 8, {4, 3, false}, 3, 5, 0},
      {"", 4, 8, {7, 9, false}, 4, 6},
      {"", 4, 8, {1, 50, false}, 0, 0, 0},
      {"editAs=\"oneCell\"", 4, 8, {3, 2, true}, 6, 10},
      {"editAs=\"oneCell\"", 4, 8, {7, 2, true}, 4, 8},
      {"editAs=\"absolute\"", 4, 8, {1, 2, true}, 4, 8},
  };
  for (const Case& each : cases) {
    XmlFragment fragment(anchorXml(each.attributes, each.from, each.to), "part");
    const bool changed = shiftAnchors(fragment.root(), each.change);
    const pugi::xml_node anchor = fragment.root().first_child();
    EXPECT_EQ(anchor.child("from").child("row").text().as_int(), each.newFrom) << each.attributes << each.change.first;
    EXPECT_EQ(anchor.child("to").child("row").text().as_int(), each.newTo) << each.attributes << each.change.first;
    EXPECT_EQ(anchor.child("from").child("rowOff").text().as_int(), each.newFromOffset);
    EXPECT_EQ(changed, each.from != each.newFrom || each.to != each.newTo || each.newFromOffset != 5);
  }
}

TEST(Anchors, legacyShapes) {
  const auto shape = [](const std::string& data) {
    return "<v:shape id=\"a\"><br><x:ClientData ObjectType=\"" + data + "</x:ClientData></v:shape>";
  };
  const std::string object = "Pict\"><x:Anchor>1, 2, 10, 3, 4, 5, 12, 6</x:Anchor>";
  EXPECT_EQ(shiftLegacyAnchors(shape(object), {5, 3, true}),
            shape("Pict\"><x:Anchor>1, 2, 13, 3, 4, 5, 15, 6</x:Anchor>"));
  EXPECT_EQ(
      shiftLegacyAnchors(shape("Pict\"><x:MoveWithCells/><x:Anchor>1, 2, 10, 3, 4, 5, 12, 6</x:Anchor>"), {5, 3, true}),
      shape("Pict\"><x:MoveWithCells/><x:Anchor>1, 2, 10, 3, 4, 5, 12, 6</x:Anchor>"));
  const std::string note = "Note\"><x:Anchor>1, 2, 9, 3, 4, 5, 12, 6</x:Anchor><x:Row>10</x:Row>";
  EXPECT_EQ(shiftLegacyAnchors(shape(note) + shape(object), {10, 2, false}),
            shape("Pict\"><x:Anchor>1, 2, 9, 0, 4, 5, 10, 6</x:Anchor>"))
      << "a note goes with its row";
  // The prefixes are the writer's own, bound where it likes.
  const auto named = [&](const std::string& row) {
    return "<xml><n0:shape xmlns:n0=\"urn:schemas-microsoft-com:vml\"><br><ClientData ObjectType='Note' "
           "xmlns=\"urn:schemas-microsoft-com:office:excel\"><MoveWithCells/><Row>" +
           row + "</Row></ClientData></n0:shape><n1:shape xmlns:n1=\"urn:schemas-microsoft-com:vml\"><n0:ClientData " +
           "ObjectType=\"Note\" xmlns:n0=\"urn:other\"><n0:Row>10</n0:Row></n0:ClientData></n1:shape></xml>";
  };
  EXPECT_EQ(shiftLegacyAnchors(named("10"), {5, 3, true}), named("13"));
  EXPECT_EQ(shiftLegacyAnchors(named("10"), {11, 1, false}), "<xml>" + named("").substr(named("").find("<n1:shape")));
  for (const char* odd :
       {"", "<x:ClientData", "<x:ClientData><x:Anchor>", "<v:shape <x:ClientData \"Note\"<x:Row>x</x:Row>"})
    EXPECT_EQ(shiftLegacyAnchors(odd, {1, 1, false}), odd);
}

}  // namespace
}  // namespace quillmarden
