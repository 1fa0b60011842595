#pragma once

#include <vector>

#include "screen/spread.h"

namespace quillmarden {

/// A grid with a column of each kind: 1 a text of at most 8 characters, 2 a check, 3 a list, 4 an integer up to 100, 5
/// a number with a fraction, 6 a hidden text, 7 a static one.
inline Spread sampleSpread(int rows) {
  std::vector<SpreadColumn> columns(7);
  columns[0] = {.title = "名称", .kind = CellKind::Edit, .maxLength = 8, .width = 10};
  columns[1] = {.title = "Key", .kind = CellKind::Check, .width = 4};
  columns[2] = {.title = "型", .kind = CellKind::List, .entries = {"数値", "文字", "VARCHAR2"}, .width = 6};
  columns[3] = {.title = "桁数", .kind = CellKind::Integer, .minimum = 0, .maximum = 100, .width = 4};
  columns[4] = {.title = "範囲", .kind = CellKind::Float, .minimum = -1000000, .maximum = 1000000, .width = 6};
  columns[5] = {.title = "隠れた列", .kind = CellKind::Edit, .hidden = true, .width = 4};
  columns[6] = {.title = "作成者", .kind = CellKind::Static, .width = 6};
  Spread spread;
  spread.setColumns(std::move(columns));
  spread.setMaxRows(rows);
  return spread;
}

}  // namespace quillmarden
