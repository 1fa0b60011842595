#pragma once

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/value.h"

namespace quillmarden {

/// Texts laid one behind the other in large blocks. They stay where they are until the store goes.
class TextStore {
 public:
  /// Room for `length` bytes.
  char* room(std::size_t length);
  const char* keep(std::string_view text);

 private:
  std::vector<std::unique_ptr<char[]>> blocks_;
  std::size_t nextBlock_ = 512;
  char* free_ = nullptr;
  std::size_t left_ = 0;
};

/// One cell of a set: 16 bytes, texts kept in a TextStore.
struct Cell {
  enum class Kind : std::uint8_t { Null, Whole, Real, Text, WholeAsText, RealAsText };
  union {
    std::int64_t whole;
    double real;
    const char* text;
  };
  std::uint32_t length = 0;
  Kind kind = Kind::Null;

  Cell() : whole(0) {}
};

/// The rows of a set in one block, row behind row.
class Rows {
 public:
  explicit Rows(int width = 0) : width_(static_cast<std::size_t>(width)) {}

  std::size_t count() const { return count_; }
  void clear();
  /// Adds a row of Nulls and gives its first cell; good until the next row is added.
  Cell* add();
  Cell& cell(std::size_t row, int column) { return cells_[row * width_ + static_cast<std::size_t>(column)]; }
  const Cell& cell(std::size_t row, int column) const {
    return cells_[row * width_ + static_cast<std::size_t>(column)];
  }

  void setText(Cell& cell, std::string_view text);
  void setValue(Cell& cell, const Value& value);
  /// A number asked for as text is kept as text from then on, so that the view stays good.
  std::string_view text(Cell& cell);

 private:
  std::size_t width_;
  std::size_t count_ = 0;
  std::vector<Cell> cells_;
  TextStore texts_;
};

Value cellValue(const Cell& cell);
std::int64_t cellInteger(const Cell& cell);
double cellNumber(const Cell& cell);

}  // namespace quillmarden
