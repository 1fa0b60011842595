#include "workbook/formula_scan.h"

#include "workbook/formula_shift.h"

namespace quillmarden {

namespace {

constexpr std::size_t kNone = std::string_view::npos;

char at(std::string_view text, std::size_t place) { return place < text.size() ? text[place] : '\0'; }

/// Fills in what the prefix says: "[1]" a book, "a:b" several sheets.
void readPrefix(FormulaReference& reference) {
  std::string_view name = reference.prefix.substr(0, reference.prefix.size() - 1);
  if (name.starts_with('\'')) {
    name = name.substr(1, name.size() - 2);
    for (std::size_t i = 0; i < name.size(); ++i) {
      reference.sheet += name[i];
      if (name[i] == '\'') ++i;
    }
  } else {
    reference.sheet = name;
  }
  reference.otherBook = reference.sheet.find('[') != std::string::npos;
  reference.severalSheets = reference.sheet.find(':') != std::string::npos;
}

/// The end of a reference that begins at `start`, which is noted in `reference`; `start` when none does.
std::size_t referenceEnd(std::string_view formula, std::size_t start, FormulaReference& reference) {
  const std::size_t target = prefixEnd(formula, start);
  std::size_t end = addressEnd(formula, target);
  if (target > start) {
    reference.prefix = formula.substr(start, target - start);
    readPrefix(reference);
    if (end == target) end = at(formula, target) == '#' ? errorEnd(formula, target) : wordEnd(formula, target);
  }
  reference.target = formula.substr(target, end - target);
  return end;
}

}  // namespace

bool isFormulaWord(char c) {
  return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_' || c == '.' ||
         c == '\\' || c == '?' || c == '$' || static_cast<unsigned char>(c) >= 0x80;
}

std::size_t wordEnd(std::string_view formula, std::size_t at) {
  while (at < formula.size() && isFormulaWord(formula[at])) ++at;
  return at;
}

std::size_t quotedEnd(std::string_view formula, std::size_t start, char quote) {
  for (std::size_t i = start + 1; i < formula.size(); ++i) {
    if (formula[i] != quote) continue;
    if (at(formula, i + 1) != quote) return i + 1;
    ++i;
  }
  return kNone;
}

std::size_t bracketEnd(std::string_view formula, std::size_t start) {
  int depth = 0;
  for (std::size_t i = start; i < formula.size(); ++i) {
    if (formula[i] == '\'') {
      ++i;  // escapes the next character within structured references
    } else if (formula[i] == '[') {
      ++depth;
    } else if (formula[i] == ']' && --depth == 0) {
      return i + 1;
    }
  }
  return kNone;
}

std::size_t errorEnd(std::string_view formula, std::size_t at) {
  for (++at; at < formula.size(); ++at) {
    const char c = formula[at];
    if (c == '!' || c == '?') return at + 1;
    const bool letter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9');
    if (!letter && c != '/' && c != '_') break;
  }
  return at;
}

std::size_t prefixEnd(std::string_view formula, std::size_t start) {
  std::size_t end = start;
  if (at(formula, start) == '\'') {
    end = quotedEnd(formula, start, '\'');
  } else {
    if (at(formula, start) == '[') end = bracketEnd(formula, start);
    if (end == kNone) return start;
    const std::size_t name = wordEnd(formula, end);
    if (name == end) return start;
    end = name;
    if (at(formula, end) == ':') {
      const std::size_t second = wordEnd(formula, end + 1);
      if (at(formula, second) == '!' && second > end + 1) end = second;
    }
  }
  return end != kNone && at(formula, end) == '!' ? end + 1 : start;
}

std::size_t addressEnd(std::string_view formula, std::size_t start) {
  // What a word must not be followed by to be an address of its own: it would be a function or a sheet's name.
  const auto alone = [&](std::size_t end) { return at(formula, end) != '(' && at(formula, end) != '!'; };
  const std::size_t first = wordEnd(formula, start);
  if (first == start) return start;
  if (at(formula, first) == ':') {
    const std::size_t second = wordEnd(formula, first + 1);
    if (alone(second) && parseRange(formula.substr(start, second - start))) return second;
  }
  return alone(first) && parseCell(formula.substr(start, first - start)) ? first : start;
}

std::string doubledApostrophes(std::string_view text) {
  std::string out;
  for (const char c : text) out.append(c == '\'' ? 2 : 1, c);
  return out;
}

std::string editReferences(std::string_view formula, const std::function<std::string(const FormulaReference&)>& edit) {
  std::string out;
  out.reserve(formula.size() + 16);
  for (std::size_t i = 0; i < formula.size();) {
    FormulaReference reference;
    std::size_t end = referenceEnd(formula, i, reference);
    if (end > i) {
      out += edit(reference);
    } else {
      const char c = formula[i];
      end = c == '"'   ? quotedEnd(formula, i, '"')
            : c == '[' ? bracketEnd(formula, i)
            : c == '#' ? errorEnd(formula, i)
                       : wordEnd(formula, i);
      if (end == kNone) end = formula.size();
      if (end == i) ++end;
      out.append(formula, i, end - i);
    }
    i = end;
  }
  return out;
}

}  // namespace quillmarden
