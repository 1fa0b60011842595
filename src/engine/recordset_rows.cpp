#include "engine/recordset_rows.h"

#include <algorithm>
#include <charconv>
#include <limits>

#include "engine/convert.h"

namespace quillmarden {

char* TextStore::room(std::size_t length) {
  if (length > left_) {
    constexpr std::size_t kLargestBlock = 1 << 20;
    const std::size_t size = std::max(length, nextBlock_);
    nextBlock_ = std::min(nextBlock_ * 4, kLargestBlock);
    blocks_.push_back(std::make_unique_for_overwrite<char[]>(size));
    free_ = blocks_.back().get();
    left_ = size;
  }
  char* place = free_;
  free_ += length;
  left_ -= length;
  return place;
}

const char* TextStore::keep(std::string_view text) {
  if (text.empty()) return "";
  char* place = room(text.size());
  std::memcpy(place, text.data(), text.size());
  return place;
}

void Rows::clear() {
  cells_.clear();
  texts_ = TextStore();
  count_ = 0;
}

Cell* Rows::add() {
  cells_.resize(cells_.size() + width_);
  ++count_;
  return cells_.data() + (count_ - 1) * width_;
}

void Rows::setText(Cell& cell, std::string_view text) {
  if (text.size() > std::numeric_limits<std::uint32_t>::max()) {
    throw EngineError(engine_error::kTextTooLong, "文字列が長すぎます.");
  }
  cell.text = texts_.keep(text);
  cell.length = static_cast<std::uint32_t>(text.size());
  cell.kind = Cell::Kind::Text;
}

void Rows::setValue(Cell& cell, const Value& value) {
  if (const auto* text = std::get_if<std::string>(&value)) {
    setText(cell, *text);
  } else if (const auto* whole = std::get_if<std::int64_t>(&value)) {
    cell.whole = *whole;
    cell.kind = Cell::Kind::Whole;
  } else if (const auto* real = std::get_if<double>(&value)) {
    cell.real = *real;
    cell.kind = Cell::Kind::Real;
  } else {
    cell = Cell();
  }
}

std::string_view Rows::text(Cell& cell) {
  switch (cell.kind) {
    case Cell::Kind::Null:
      return {};
    case Cell::Kind::Whole: {
      setText(cell, std::to_string(cell.whole));
      cell.kind = Cell::Kind::WholeAsText;
      break;
    }
    case Cell::Kind::Real: {
      setText(cell, numberText(cell.real));
      cell.kind = Cell::Kind::RealAsText;
      break;
    }
    case Cell::Kind::Text:
    case Cell::Kind::WholeAsText:
    case Cell::Kind::RealAsText:
      break;
  }
  return {cell.text, cell.length};
}

namespace {

std::int64_t wholeFromText(const Cell& cell) {
  std::int64_t whole = 0;
  const char* const end = cell.text + cell.length;
  const auto [stop, fault] = std::from_chars(cell.text, end, whole);
  if (fault == std::errc() && stop == end) return whole;
  return toInteger(parseNumber({cell.text, cell.length}).value_or(0));
}

}  // namespace

Value cellValue(const Cell& cell) {
  switch (cell.kind) {
    case Cell::Kind::Null:
      return {};
    case Cell::Kind::Whole:
      return cell.whole;
    case Cell::Kind::Real:
      return cell.real;
    case Cell::Kind::Text:
      return std::string(cell.text, cell.length);
    case Cell::Kind::WholeAsText:
      return wholeFromText(cell);
    case Cell::Kind::RealAsText:
      return parseNumber({cell.text, cell.length}).value_or(0);
  }
  return {};
}

std::int64_t cellInteger(const Cell& cell) {
  switch (cell.kind) {
    case Cell::Kind::Null:
      return 0;
    case Cell::Kind::Whole:
      return cell.whole;
    case Cell::Kind::Real:
      return toInteger(cell.real);
    default:
      return wholeFromText(cell);
  }
}

double cellNumber(const Cell& cell) {
  switch (cell.kind) {
    case Cell::Kind::Null:
      return 0;
    case Cell::Kind::Whole:
      return static_cast<double>(cell.whole);
    case Cell::Kind::Real:
      return cell.real;
    default:
      return parseNumber({cell.text, cell.length}).value_or(0);
  }
}

}  // namespace quillmarden
