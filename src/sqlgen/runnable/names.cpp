#include "sqlgen/runnable/names.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/text.h"
#include "common/utf8.h"
#include "sqlgen/runnable/reserved_words.h"

namespace quillmarden {

namespace {

/// The longest beginning of whole characters that costs no more than the limit.
template <typename Cost>
std::string_view beginning(std::string_view text, std::size_t limit, Cost cost) {
  std::size_t used = 0;
  std::size_t end = 0;
  while (end < text.size()) {
    const Utf8Step step = utf8At(text, end);
    used += cost(step);
    if (used > limit) break;
    end += step.size;
  }
  return text.substr(0, end);
}

std::size_t oneEach(const Utf8Step&) { return 1; }
std::size_t bytes(const Utf8Step& step) { return step.size; }

/// Letters that MySQL writes with three signs in the name of a file; a few more have as short a form.
constexpr std::pair<char32_t, char32_t> kShortInFiles[] = {
    {0xC0, 0xD6},     {0xD8, 0xF6},     {0xF8, 0x12F},    {0x131, 0x1BE},   {0x250, 0x2AF},  {0x38E, 0x3A1},
    {0x3A3, 0x3CE},   {0x3FB, 0x481},   {0x48A, 0x4CE},   {0x500, 0x50F},   {0x531, 0x555},  {0x561, 0x585},
    {0x1E00, 0x1E9B}, {0x2160, 0x217F}, {0x24B6, 0x24E9}, {0xFF21, 0xFF3A}, {0xFF41, 0xFF5A}};

std::size_t bytesInFile(const Utf8Step& step) {
  const char32_t c = step.character;
  const auto within = [c](char32_t first, char32_t last) { return c >= first && c <= last; };
  if (within('0', '9') || within('A', 'Z') || within('a', 'z') || c == '_') return 1;
  const bool isShort = std::any_of(std::begin(kShortInFiles), std::end(kShortInFiles),
                                   [&](const auto& range) { return within(range.first, range.second); });
  return isShort ? 3 : 5;
}

/// 255 bytes with the file's ending, such as ".frm".
constexpr std::size_t kLongestFile = 251;

/// Oracle has no way to write its quote inside a name, nor SQL Server what its tool acts on.
std::string_view untakable(const Dialect& dialect) {
  if (dialect.kind == ScriptKind::Oracle) return dialect.close;
  return dialect.kind == ScriptKind::SqlServer ? kToolVariable : std::string_view();
}

bool takes(const Dialect& dialect, std::string_view name) {
  const std::string_view sign = untakable(dialect);
  return sign.empty() || name.find(sign) == std::string_view::npos;
}

std::string takable(const Dialect& dialect, std::string_view name) {
  return takes(dialect, name) ? std::string(name) : gReplaceAll(name, untakable(dialect), "_");
}

bool isPlain(const Dialect& dialect, std::string_view name) {
  if (name.empty() || (name[0] >= '0' && name[0] <= '9')) return false;
  const bool lowerFits = dialect.bareCase != Dialect::BareCase::Upper;
  const bool upperFits = dialect.bareCase != Dialect::BareCase::Lower;
  return std::all_of(name.begin(), name.end(), [=](char c) {
    return (c >= 'a' && c <= 'z' && lowerFits) || (c >= 'A' && c <= 'Z' && upperFits) || (c >= '0' && c <= '9') ||
           c == '_';
  });
}

}  // namespace

void appendName(const Dialect& dialect, std::string_view name, std::string& script) {
  if (isPlain(dialect, name) && name[0] != '_' && !isReservedWord(dialect.kind, name)) {
    script += name;
    return;
  }
  script += dialect.open;
  if (takes(dialect, name) && name.find(dialect.close) == std::string_view::npos) {
    script += name;
  } else {
    script += gReplaceAll(takable(dialect, name), dialect.close, std::string(dialect.close).append(dialect.close));
  }
  script += dialect.close;
}

std::string quotedName(const Dialect& dialect, std::string_view name) {
  std::string quoted;
  appendName(dialect, name, quoted);
  return quoted;
}

std::string serverName(const Dialect& dialect, std::string_view name) {
  Dialect anyCase = dialect;
  anyCase.bareCase = Dialect::BareCase::Kept;
  return quotedName(anyCase, name);
}

bool fits(const Dialect& dialect, std::string_view name) {
  if (!takes(dialect, name)) return false;
  // Characters are never more than bytes: nearly all names are known to fit without counting.
  return name.size() <= dialect.nameLimit ||
         beginning(name, dialect.nameLimit, dialect.limitInBytes ? bytes : oneEach).size() == name.size();
}

std::string_view firstCharacters(std::string_view text, std::size_t most) { return beginning(text, most, oneEach); }

std::string NameScope::cut(std::string_view name, std::size_t tail) const {
  name = beginning(name, dialect_.nameLimit - tail, dialect_.limitInBytes ? bytes : oneEach);
  if (files_) name = beginning(name, kLongestFile - tail, bytesInFile);
  return std::string(name);
}

const std::string& NameScope::use(std::string_view key, std::string_view name) {
  const auto known = given_.find(std::string(key));
  if (known != given_.end()) return known->second;
  const std::string wanted = takable(dialect_, name);
  std::string chosen = cut(wanted, 0);
  for (int number = 2; !taken_.insert(toLower(chosen)).second; ++number) {
    const std::string tail = "_" + std::to_string(number);
    chosen = cut(wanted, tail.size()) + tail;
  }
  if (chosen != name) changes_.push_back(std::string(name) + " -> " + chosen);
  return given_.emplace(key, std::move(chosen)).first->second;
}

}  // namespace quillmarden
