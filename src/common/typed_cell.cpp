#include "common/typed_cell.h"

#include <fmt/format.h>

#include <cmath>

#include "common/numbers.h"
#include "common/text.h"
#include "screen/date_time.h"

namespace quillmarden {

namespace {

TypedCell taken(std::string text) { return {std::move(text), ""}; }
TypedCell refused(std::string fault) { return {"", std::move(fault)}; }

TypedCell dateCell(std::string_view typed) {
  const std::string narrow = toNarrow(typed);
  if (trim(narrow).empty()) return taken("");
  const auto moment = parseDateTime(trim(narrow));
  if (!moment) return refused("が日付ではありません.");
  const bool day = moment->hour == 0 && moment->minute == 0 && moment->second == 0;
  return taken(formatDateTime(*moment, day ? "yyyy/mm/dd" : "yyyy/mm/dd hh:nn:ss"));
}

TypedCell editCell(const SpreadColumn& column, std::string_view typed) {
  if (typed.find('\0') != std::string_view::npos) return refused("にNUL文字が含まれています.");
  if (column.date) return dateCell(typed);
  std::string text = gReplaceAll(typed, "\r", "");
  if (column.oneLine) text = gReplaceAll(gReplaceAll(text, "\n", ""), "\t", " ");
  if (column.maxLength > 0 && gLenB(text) > static_cast<std::size_t>(column.maxLength))
    return refused("が長すぎます. " + limitText(column.maxLength) + "までです.");
  return taken(std::move(text));
}

TypedCell checkCell(std::string_view typed) {
  const std::string word = toLower(trim(toNarrow(typed)));
  if (word == "○" || word == "-1" || word == "1" || word == "true") return taken("-1");
  if (word.empty() || word == "0" || word == "false") return taken("0");
  return refused("は、-1 か 0 です.");
}

TypedCell listCell(const SpreadColumn& column, std::string_view typed) {
  if (const std::string* entry = entryOf(column, typed)) return taken(*entry);
  if (trim(typed).empty()) return taken("");
  return column.open ? editCell(column, typed) : refused("が一覧にありません.");
}

TypedCell numberCell(const SpreadColumn& column, bool whole, std::string_view typed) {
  const std::string narrow = gReplaceAll(toNarrow(typed), ",", "");
  if (trim(narrow).empty()) return taken("");
  if (!isNumeric(narrow)) return refused("が数値ではありません.");
  const double number = gVal(narrow);
  if (whole && number != std::floor(number)) return refused("が整数ではありません.");
  if (!(number >= column.minimum && number <= column.maximum))
    return refused(fmt::format("は、{}から{}までです.", plainNumber(column.minimum), plainNumber(column.maximum)));
  return taken(plainNumber(number));
}

}  // namespace

TypedCell typedCell(const SpreadColumn& column, CellKind kind, std::string_view typed) {
  switch (kind) {
    case CellKind::Edit:
      return editCell(column, typed);
    case CellKind::Check:
      return checkCell(typed);
    case CellKind::List:
      return listCell(column, typed);
    case CellKind::Integer:
      return numberCell(column, true, typed);
    case CellKind::Float:
      return numberCell(column, false, typed);
    case CellKind::Static:
      break;
  }
  return refused("は変更できません.");
}

const std::string* entryOf(const SpreadColumn& column, std::string_view text) {
  const auto form = [](std::string_view word) { return toLower(trim(toNarrow(word))); };
  const std::string wanted = form(text);
  const std::string* other = nullptr;
  for (const std::string& entry : column.entries) {
    if (equalsNoCase(trim(entry), trim(text))) return &entry;
    if (other == nullptr && form(entry) == wanted) other = &entry;
  }
  return other;
}

std::string limitText(int bytes) { return fmt::format("{}バイト(全角{}文字)", bytes, bytes / 2); }

}  // namespace quillmarden
