#include "editing/frm_sp_sort.h"

#include <algorithm>
#include <compare>
#include <numeric>

#include "common/message.h"
#include "common/numbers.h"
#include "common/text.h"
#include "editing/detail_parts.h"
#include "editing/frm_tb_detail_edit.h"

namespace quillmarden {

namespace {

namespace col = field_col;

/// A cell as it compares: numbers before texts, nothing before all.
struct SortKey {
  int sort = 0;  ///< 0 nothing, 1 number, 2 text
  double number = 0;
  std::string text;

  std::partial_ordering operator<=>(const SortKey&) const = default;
};

SortKey keyOf(std::string_view cell) {
  if (trim(cell).empty()) return {};
  if (isNumeric(cell)) return {1, gVal(cell), ""};
  return {2, 0, toLower(trim(cell))};
}

struct SortRow {
  bool blank = true;
  std::array<SortKey, 3> keys;
};

/// The chosen column of each key, 0 for none.
std::array<int, 3> chosenColumns(const frmSpSort& screen) {
  std::array<int, 3> chosen{};
  for (std::size_t key = 0; key < chosen.size(); ++key) {
    const ComboBox& box = screen.CmbKey[key];
    const auto entry = std::find(box.entries.begin(), box.entries.end(), box.text);
    const auto place = static_cast<std::size_t>(entry - box.entries.begin());
    if (place < screen.columns.size()) chosen[key] = screen.columns[place];
  }
  return chosen;
}

/// What is wrong with the keys, "" when nothing is.
std::string faultOf(const std::array<int, 3>& keys) {
  const auto [first, second, third] = keys;
  if (first == 0) return "最優先のキーが未設定です.";
  if (second == 0 && third != 0) return "２番目のキーが未設定です.\n３番目のキーが設定されています.";
  if (first == second) return "最優先のキーと２番目のキーが同じです.";
  if (first == third) return "最優先のキーと３番目のキーが同じです.";
  if (second == third && second != 0) return "２番目のキーと３番目のキーが同じです.";
  return "";
}

SortRow sortRow(const Spread& grid, int row, const std::array<int, 3>& columns) {
  SortRow keys;
  for (int number = 1; number <= grid.maxCols() && keys.blank; ++number)
    keys.blank = number == col::kOrder || number == col::kChanged || trim(grid.text(number, row)).empty();
  for (std::size_t i = 0; i < columns.size(); ++i)
    if (columns[i] != 0) keys.keys[i] = keyOf(grid.text(columns[i], row));
  return keys;
}

bool before(const SortRow& left, const SortRow& right, const frmSpSort& screen) {
  if (left.blank != right.blank) return right.blank;
  for (std::size_t i = 0; i < left.keys.size(); ++i) {
    const auto order = left.keys[i] <=> right.keys[i];
    if (order != 0) return screen.ChkDescending[i].value ? order > 0 : order < 0;
  }
  return false;
}

void sortRows(const frmSpSort& screen, frmTBDetail& detail, const std::array<int, 3>& columns) {
  Spread& grid = detail.Spread;
  const int count = grid.maxRows();
  std::vector<SortRow> keys;
  for (int row = 1; row <= count; ++row) keys.push_back(sortRow(grid, row, columns));
  std::vector<std::size_t> order(keys.size());
  std::iota(order.begin(), order.end(), std::size_t{0});
  std::stable_sort(order.begin(), order.end(),
                   [&](std::size_t left, std::size_t right) { return before(keys[left], keys[right], screen); });

  std::vector<SpreadRow> rows = grid.rows(1, count);
  std::vector<SpreadRow> sorted;
  for (std::size_t place = 0; place < order.size(); ++place) {
    sorted.push_back(std::move(rows[order[place]]));
    // A row at another place gets another number.
    if (order[place] != place && !keys[order[place]].blank)
      sorted.back().cells[static_cast<std::size_t>(col::kChanged - 1)].text = kChangedMark;
  }
  grid.replaceRows(1, count, std::move(sorted));
}

}  // namespace

void frmSpSort_Load(frmSpSort& screen, const frmTBDetail& detail) {
  screen = {};
  std::vector<std::string> titles = {""};
  screen.columns = {0};
  for (int number = 1; number <= detail.Spread.maxCols(); ++number) {
    if (detail.Spread.column(number).hidden) continue;
    std::string title = detail.Spread.column(number).title;
    // A title that stands twice would always mean the first of its columns.
    if (std::find(titles.begin(), titles.end(), title) != titles.end()) title += " (" + threeDigits(number) + ")";
    titles.push_back(std::move(title));
    screen.columns.push_back(number);
  }
  for (ComboBox& box : screen.CmbKey) box.entries = titles;
}

bool cmdOK_Click(Session& session, Host& host, frmSpSort& screen, frmTBDetail& detail) {
  if (!editable(detail)) return false;
  const std::array<int, 3> columns = chosenColumns(screen);
  if (const std::string fault = faultOf(columns); !fault.empty()) {
    gMsgBox(host, fault);
    return true;
  }
  changeGrid(detail, [&] { sortRows(screen, detail, columns); });
  showActiveRow(session, host, detail);
  return false;
}

}  // namespace quillmarden
