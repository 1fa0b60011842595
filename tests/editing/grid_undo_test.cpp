#include "editing/grid_undo.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace quillmarden {
namespace {

Spread gridOf(int columns) {
  Spread grid;
  grid.setColumns(std::vector<SpreadColumn>(static_cast<std::size_t>(columns)));
  return grid;
}

std::vector<SpreadRow> all(const Spread& grid) { return grid.rows(1, grid.maxRows()); }

/// Some change of a grid, as edits, insertions, deletions and swaps come.
void changeSomehow(Spread& grid, std::mt19937& random) {
  const auto number = [&](int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); };
  const int rows = grid.maxRows();
  switch (number(0, 4)) {
    case 0:
      grid.setText(number(1, grid.maxCols()), number(1, rows + 2), std::to_string(number(0, 3)));
      break;
    case 1:
      grid.insertRow(number(1, rows + 1));
      break;
    case 2:
      if (rows > 0) grid.deleteRow(number(1, rows));
      break;
    case 3:
      if (rows > 0) grid.setBackColour(1, number(1, rows), static_cast<Colour>(number(0, 2)));
      break;
    default:
      if (rows > 1) {
        const int first = number(1, rows - 1);
        std::vector<SpreadRow> pair = grid.rows(first, first + 1);
        std::swap(pair[0], pair[1]);
        grid.replaceRows(first, first + 1, pair);
      }
  }
}

TEST(GridUndo, AnyRoadLeadsBackStepByStep) {
  std::mt19937 random(7);
  for (int round = 0; round < 50; ++round) {
    Spread grid = gridOf(3);
    GridUndo undo;
    std::vector<std::vector<SpreadRow>> states = {all(grid)};
    for (int step = 0; step < 40; ++step) {
      GridStep recorded = recordStep(grid, 1, std::max(grid.maxRows(), 1), [&] { changeSomehow(grid, random); });
      ASSERT_EQ(recorded.before.empty() && recorded.after.empty(), all(grid) == states.back());
      if (recorded.before.empty() && recorded.after.empty()) continue;
      undo.add(std::move(recorded));
      states.push_back(all(grid));
    }
    for (std::size_t i = states.size() - 1; i > 0; --i) {
      ASSERT_NE(undo.undo(grid), nullptr);
      ASSERT_EQ(all(grid), states[i - 1]);
    }
    EXPECT_TRUE(undo.atSaved());
    EXPECT_EQ(undo.undo(grid), nullptr);
    for (std::size_t i = 1; i < states.size(); ++i) {
      ASSERT_NE(undo.redo(grid), nullptr);
      ASSERT_EQ(all(grid), states[i]);
    }
    EXPECT_EQ(undo.redo(grid), nullptr);
  }
}

TEST(GridUndo, AStepHoldsNoMoreThanTheRowsThatChanged) {
  Spread grid = gridOf(2);
  for (int row = 1; row <= 100; ++row) grid.setText(1, row, std::to_string(row));
  const GridStep step = recordStep(grid, 1, 100, [&] {
    grid.setText(2, 40, "x");
    grid.setText(2, 42, "y");
  });
  EXPECT_EQ(step.firstRow, 40);
  EXPECT_EQ(step.before.size(), 3U);
  const GridStep row = recordStep(grid, 140, 140, [&] { grid.setText(1, 140, "far"); });
  EXPECT_EQ(row.firstRow, 101) << "rows that were made on the way belong to the step";
  EXPECT_EQ(row.after.size(), 40U);
}

TEST(GridUndo, OldStepsGoWhenMemoryIsUsedUp) {
  Spread grid = gridOf(1);
  grid.setMaxRows(1);
  GridUndo undo;
  const auto edit = [&](char letter) {
    undo.add(recordStep(grid, 1, 1, [&] { grid.setText(1, 1, std::string(GridUndo::kMaxBytes / 5, letter)); }));
  };
  for (const char letter : {'a', 'b', 'c', 'd', 'e', 'f'}) edit(letter);
  int taken = 0;
  while (undo.undo(grid) != nullptr) ++taken;
  EXPECT_GT(taken, 0);
  EXPECT_LT(taken, 6);
  EXPECT_FALSE(undo.atSaved()) << "the loaded grid is out of reach: the screen stays changed";
  undo.clear(false);
  edit('g');
  undo.undo(grid);
  EXPECT_FALSE(undo.atSaved());
}

}  // namespace
}  // namespace quillmarden
