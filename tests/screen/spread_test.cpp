#include "screen/spread.h"

#include <gtest/gtest.h>

namespace quillmarden {
namespace {

Spread threeColumns() {
  Spread grid;
  SpreadColumn check;
  check.title = "Key";
  check.kind = CellKind::Check;
  grid.setColumns({SpreadColumn{}, check, SpreadColumn{}});
  return grid;
}

TEST(Spread, OutsideIsEmptyAndWritingBelowGrows) {
  Spread grid = threeColumns();
  EXPECT_EQ(grid.text(1, 1), "");
  EXPECT_EQ(grid.text(0, 0), "");
  EXPECT_EQ(grid.text(2, 0), "Key");
  EXPECT_EQ(grid.kind(9, 9), CellKind::Static);
  grid.setText(3, 4, "x");
  EXPECT_EQ(grid.maxRows(), 4);
  EXPECT_FALSE(grid.holds(3, 3));
  // Neither a wrong column nor the row number of a damaged file may grow the grid.
  grid.setText(4, 9, "x");
  grid.setText(1, 2'000'000'000, "x");
  grid.setKind(1, -1, CellKind::List);
  grid.setRowTag(-5, 1);
  EXPECT_EQ(grid.maxRows(), 4);
}

TEST(Spread, TextOfAnotherCellSurvivesGrowth) {
  Spread grid = threeColumns();
  grid.setText(1, 1, "text that is too long to live inside a string object");
  for (int row = 2; row < 200; ++row) grid.setText(1, row, grid.text(1, row - 1));
  EXPECT_EQ(grid.text(1, 199), grid.text(1, 1));
}

TEST(Spread, EverythingOfARowTravels) {
  Spread grid = threeColumns();
  for (int row = 1; row <= 3; ++row) {
    grid.setText(1, row, std::string(1, static_cast<char>('a' + row - 1)));
    grid.setRowTag(row, row * 10);
  }
  grid.setKind(2, 2, CellKind::Static);
  grid.setBackColour(3, 2, 0xC0C0FF);

  grid.insertRow(2);
  EXPECT_EQ(grid.maxRows(), 4);
  EXPECT_EQ(grid.text(1, 2), "");
  EXPECT_EQ(grid.rowTag(2), 0);
  EXPECT_EQ(grid.kind(2, 2), CellKind::Check);
  EXPECT_EQ(grid.text(1, 3), "b");
  EXPECT_EQ(grid.rowTag(3), 20);
  EXPECT_EQ(grid.kind(2, 3), CellKind::Static);
  EXPECT_EQ(grid.backColour(3, 3), Colour{0xC0C0FF});

  grid.deleteRow(1);
  grid.deleteRow(1);
  EXPECT_EQ(grid.text(1, 1), "b");
  EXPECT_EQ(grid.text(1, 2), "c");
  EXPECT_EQ(grid.rowTag(2), 30);
  grid.deleteRow(2);
  grid.deleteRow(2);
  EXPECT_EQ(grid.maxRows(), 1);
  grid.insertRow(5);
  EXPECT_EQ(grid.maxRows(), 5);
}

TEST(Spread, NothingOfTheFormerTableShowsThrough) {
  Spread grid = threeColumns();
  grid.setText(1, 2, "former");
  grid.setBackColour(1, 2, 1);
  grid.setKind(1, 2, CellKind::List);
  grid.setRowTag(2, 7);
  grid.setMaxRows(0);
  grid.setMaxRows(2);
  EXPECT_EQ(grid.text(1, 2), "");
  EXPECT_EQ(grid.backColour(1, 2), std::nullopt);
  EXPECT_EQ(grid.kind(1, 2), CellKind::Edit);
  EXPECT_EQ(grid.rowTag(2), 0);

  grid.setText(2, 2, "former");
  grid.lockAll();
  EXPECT_EQ(grid.kind(2, 1), CellKind::Static);
  // Other columns shift the cells: a row of two must not show what stood in a row of three.
  grid.setColumns({SpreadColumn{}, SpreadColumn{}});
  grid.setMaxRows(4);
  for (int row = 1; row <= 4; ++row) EXPECT_FALSE(grid.holds(1, row) || grid.holds(2, row)) << row;
  EXPECT_EQ(grid.kind(2, 1), CellKind::Edit);
}

TEST(Spread, RowsGiveWayToOthers) {
  const auto named = [](std::initializer_list<const char*> names) {
    std::vector<SpreadRow> rows;
    for (const char* name : names) rows.push_back({{SpreadCell{name, CellKind::Static, 0xFF}}, name[0]});
    return rows;
  };
  const auto names = [](const Spread& grid) {
    std::string all;
    for (int row = 1; row <= grid.maxRows(); ++row) {
      EXPECT_EQ(grid.rowTag(row), grid.text(1, row)[0]);
      EXPECT_EQ(grid.kind(1, row), CellKind::Static);
      EXPECT_EQ(grid.kind(2, row), grid.column(2).kind);
      all += grid.text(1, row);
    }
    return all;
  };
  Spread grid = threeColumns();
  grid.replaceRows(1, 0, named({"a", "b", "c", "d"}));
  EXPECT_EQ(names(grid), "abcd");
  EXPECT_EQ(grid.rows(0, 2), grid.rows(1, 2));
  EXPECT_EQ(grid.rows(4, 9).size(), 1U);
  EXPECT_TRUE(grid.rows(3, 2).empty());
  grid.replaceRows(2, 3, named({"x", "y", "z"}));
  EXPECT_EQ(names(grid), "axyzd");
  grid.replaceRows(2, 4, named({"b"}));
  EXPECT_EQ(names(grid), "abd");
  grid.replaceRows(3, 2, named({"c"}));
  EXPECT_EQ(names(grid), "abcd");
  grid.replaceRows(9, 99, named({"e"}));
  EXPECT_EQ(names(grid), "abcde") << "beyond the end is at the end";
  grid.replaceRows(-3, 2, {});
  EXPECT_EQ(names(grid), "cde");
  grid.setMaxRows(Spread::kMaxRows);
  grid.replaceRows(1, 0, named({"a", "b"}));
  EXPECT_EQ(grid.maxRows(), Spread::kMaxRows);
  EXPECT_EQ(grid.text(1, 1), "c") << "a full grid takes no more rows";
}

TEST(Spread, RevisionMovesOnlyWithChanges) {
  Spread grid = threeColumns();
  grid.setText(1, 1, "a");
  const long before = grid.revision();
  grid.setText(1, 1, "a");
  grid.setText(7, 1, "a");
  EXPECT_EQ(grid.revision(), before);
  grid.lockAll();
  EXPECT_GT(grid.revision(), before);
}

TEST(ListBox, CurrentRowOutsideTheListIsEmpty) {
  ListBox list;
  list.add("a");
  EXPECT_EQ(list.text(), "");
  list.listIndex = 0;
  EXPECT_EQ(list.text(), "a");
  list.listIndex = 1;
  EXPECT_EQ(list.text(), "");
  EXPECT_EQ(list.selected.size(), 1U);
}

}  // namespace
}  // namespace quillmarden
