#include "cli/grid_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <unordered_map>
#include <utility>

#include "common/numbers.h"
#include "common/text.h"
#include "common/typed_cell.h"
#include "editing/frm_tb_detail.h"

namespace quillmarden {

namespace {

/// As many rows as a grid has, with long texts in all cells.
constexpr std::size_t kMostGridBytes = std::size_t{64} << 20;

/// Whether the text is well-formed UTF-8: no cut or overlong form, no surrogate, nothing beyond U+10FFFF.
bool isUtf8(std::string_view text) {
  for (std::size_t at = 0; at < text.size();) {
    auto byte = [&](std::size_t offset) -> unsigned {
      return at + offset < text.size() ? static_cast<unsigned char>(text[at + offset]) : 0;
    };
    unsigned lead = byte(0);
    std::size_t length = lead < 0x80 ? 1 : lead >= 0xC2 && lead < 0xE0 ? 2 : lead >= 0xE0 && lead < 0xF0 ? 3 : 4;
    if (length == 4 && (lead < 0xF0 || lead > 0xF4)) return false;
    for (std::size_t offset = 1; offset < length; ++offset)
      if ((byte(offset) & 0xC0) != 0x80) return false;
    unsigned second = byte(1);
    if ((lead == 0xE0 && second < 0xA0) || (lead == 0xED && second > 0x9F) || (lead == 0xF0 && second < 0x90) ||
        (lead == 0xF4 && second > 0x8F))
      return false;
    at += length;
  }
  return true;
}

std::vector<std::string> cellsOf(std::string_view line) {
  std::vector<std::string> cells;
  for (;;) {
    std::size_t tab = line.find('\t');
    cells.emplace_back(line.substr(0, tab));
    if (tab == std::string_view::npos) return cells;
    line.remove_prefix(tab + 1);
  }
}

std::string faultOf(std::string_view line, const std::vector<std::string>& cells, const Spread& grid) {
  if (line.find('\0') != std::string_view::npos) return "NUL文字が含まれています.";
  if (!isUtf8(line)) return "UTF-8として正しくありません.";
  if (cells.size() > static_cast<std::size_t>(grid.maxCols()))
    return fmt::format("セルが{}個あります. {}個までです.", cells.size(), grid.maxCols());
  return "";
}

/// A cell as a file has it.
std::string shown(std::string_view text) {
  std::string cell;
  putCell(cell, text);
  return cell;
}

/// The loaded rows, each to be claimed once.
class RowsToClaim {
 public:
  explicit RowsToClaim(const Spread& grid) : grid_(grid), taken_(static_cast<std::size_t>(grid.maxRows()) + 1) {
    for (int row = 1; row <= grid.maxRows(); ++row) {
      if (grid.rowTag(row) == 0) continue;
      for (int col : {field_col::kOrder, field_col::kFieldName, field_col::kJapaneseName})
        rows_.emplace(key(col, grid.text(col, row)), row);
    }
  }

  /// Whether the orders of a file are those of these rows: none of its names stands at another order here.
  bool ordersFit(const std::vector<std::vector<std::string>>& rows) const {
    for (const auto& cells : rows) {
      if (cells.size() < field_col::kOrder) continue;
      const std::string& order = cells[field_col::kOrder - 1];
      const std::string& name = cells[field_col::kFieldName - 1];
      if (trim(order).empty() || trim(name).empty()) continue;
      const auto [first, last] = rows_.equal_range(key(field_col::kFieldName, name));
      if (first != last && std::none_of(first, last, [&](const auto& row) {
            return key(field_col::kOrder, grid_.text(field_col::kOrder, row.second)) == key(field_col::kOrder, order);
          }))
        return false;
    }
    return true;
  }

  /// The row whose cell has this text, 0 when there is none or it is taken. With `name` the row's field name must be
  /// this one as well.
  int claim(int col, std::string_view text, const std::string* name = nullptr) {
    if (trim(text).empty()) return 0;
    auto [first, last] = rows_.equal_range(key(col, text));
    for (auto it = first; it != last; ++it) {
      std::size_t row = static_cast<std::size_t>(it->second);
      if (taken_[row]) continue;
      if (name && !equalsNoCase(trim(grid_.text(field_col::kFieldName, it->second)), trim(*name))) continue;
      taken_[row] = true;
      return it->second;
    }
    return 0;
  }

 private:
  static std::string key(int col, std::string_view text) {
    // An order is a number, however many zeros stand in front of it.
    std::string word = col == field_col::kOrder ? plainNumber(gVal(text)) : toLower(trim(text));
    return fmt::format("{}:{}", col, word);
  }

  const Spread& grid_;
  std::unordered_multimap<std::string, int> rows_;
  std::vector<bool> taken_;
};

}  // namespace

bool readFile(Run& run, const std::string& file, std::string& text) {
  std::error_code ignored;
  bool folder = std::filesystem::is_directory(file, ignored);
  errno = 0;
  std::ifstream stream(file, std::ios::binary);
  bool room = true;
  if (!folder && stream) {
    // A device or a pipe may have no end.
    std::string block(1 << 16, '\0');
    while (room && (stream.read(block.data(), static_cast<std::streamsize>(block.size())), stream.gcount() > 0)) {
      text.append(block, 0, static_cast<std::size_t>(stream.gcount()));
      room = text.size() <= kMostGridBytes;
    }
    if (room && !stream.bad()) return true;
  }
  std::string reason = std::strerror(folder ? EISDIR : errno);
  if (!room) reason = fmt::format("大きすぎます. {}MBまでです.", kMostGridBytes >> 20);
  failure(run, fmt::format("ファイルを読み込めませんでした.\n {}\n {}", file, reason));
  return false;
}

std::string cellName(std::size_t row, int col, const Spread& grid) {
  return fmt::format("{}行目 : {}列目[{}]", row, col, grid.column(col).title);
}

LoadedCell loadedByRow(const Spread& grid, std::vector<int> continued) {
  return [&grid, continued = std::move(continued)](std::size_t row, int col,
                                                   std::string_view cell) -> std::optional<std::string> {
    if (continued[row] == 0) return std::nullopt;
    const std::string_view stored = grid.text(col, continued[row]);
    return shown(stored) == cell ? std::optional<std::string>(stored) : std::nullopt;
  };
}

LoadedCell loadedByColumn(const Spread& grid) {
  std::unordered_map<std::string, std::string> stored;
  const auto key = [](int col, std::string_view text) { return fmt::format("{}:{}", col, text); };
  for (int row = 1; row <= grid.maxRows(); ++row)
    for (int col = 1; col <= grid.maxCols(); ++col)
      stored.emplace(key(col, shown(grid.text(col, row))), grid.text(col, row));
  return [stored = std::move(stored), key](std::size_t, int col, std::string_view cell) -> std::optional<std::string> {
    const auto found = stored.find(key(col, cell));
    return found == stored.end() ? std::nullopt : std::optional<std::string>(found->second);
  };
}

std::string takeCells(GridText& text, const Spread& grid, const LoadedCell& loaded) {
  constexpr std::size_t kMostTold = 10;
  std::vector<std::string> faults;
  for (std::size_t row = 0; row < text.rows.size(); ++row) {
    for (std::size_t i = 0; i < text.rows[row].size(); ++i) {
      const int col = static_cast<int>(i) + 1;
      std::string& cell = text.rows[row][i];
      if (auto stored = loaded(row, col, cell)) {
        cell = std::move(*stored);
        continue;
      }
      const SpreadColumn& column = grid.column(col);
      if (column.kind == CellKind::Static) continue;
      TypedCell typed = typedCell(column, column.kind, cell);
      if (typed.fault.empty())
        cell = std::move(typed.text);
      else
        faults.push_back(cellName(row + 1, col, grid) + typed.fault);
    }
  }
  const std::size_t left = faults.size() - std::min(faults.size(), kMostTold);
  faults.resize(faults.size() - left);
  if (left > 0) faults.push_back(fmt::format("他 {}件", left));
  return fmt::format("{}", fmt::join(faults, "\n "));
}

GridText parseGridText(std::string_view text, const Spread& grid) {
  GridText result;
  if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
  for (int number = 1; !text.empty(); ++number) {
    std::size_t end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    std::vector<std::string> cells = cellsOf(line);
    result.fault = faultOf(line, cells, grid);
    if (!result.fault.empty()) {
      result.fault = fmt::format("{}行目 : {}", number, result.fault);
      return result;
    }
    result.rows.push_back(std::move(cells));
  }
  return result;
}

std::vector<int> continuedRows(const Spread& grid, const std::vector<std::vector<std::string>>& rows) {
  const auto cell = [&](std::size_t row, int col) {
    const std::size_t place = static_cast<std::size_t>(col - 1);
    return place < rows[row].size() ? rows[row][place] : std::string();
  };
  RowsToClaim loaded(grid);
  std::vector<int> continued(rows.size());
  // Rows that have kept both order and name come first, so that a copied line never takes the identity away from the
  // line that it was copied from.
  for (std::size_t row = 0; row < rows.size(); ++row) {
    const std::string name = cell(row, field_col::kFieldName);
    continued[row] = loaded.claim(field_col::kOrder, cell(row, field_col::kOrder), &name);
  }
  // Orders of another time would give a line the identity of its neighbour.
  const bool byOrder = loaded.ordersFit(rows);
  for (int col : {field_col::kOrder, field_col::kFieldName, field_col::kJapaneseName})
    for (std::size_t row = 0; row < rows.size() && (byOrder || col != field_col::kOrder); ++row)
      if (continued[row] == 0) continued[row] = loaded.claim(col, cell(row, col));
  return continued;
}

void replaceRows(Spread& grid, std::vector<std::vector<std::string>> rows, const std::vector<int>& continued) {
  std::vector<long> tags;
  for (int row : continued) tags.push_back(grid.rowTag(row));
  grid.setMaxRows(0);
  grid.setMaxRows(static_cast<int>(rows.size()));
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const int row = static_cast<int>(i) + 1;
    grid.setRowTag(row, tags[i]);
    for (std::size_t cell = 0; cell < rows[i].size(); ++cell)
      grid.setText(static_cast<int>(cell) + 1, row, rows[i][cell]);
  }
}

}  // namespace quillmarden
