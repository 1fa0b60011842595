#include "sqlgen/runnable/names.h"

#include <algorithm>

#include "common/text.h"
#include "sqlgen/runnable/reserved_words.h"

namespace quillmarden {

namespace {

bool isContinuation(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) == 0x80; }

std::size_t lengthOf(const Dialect& dialect, std::string_view name) {
  if (dialect.limitInBytes) return name.size();
  return static_cast<std::size_t>(std::count_if(name.begin(), name.end(), [](char c) { return !isContinuation(c); }));
}

/// The longest beginning of whole characters that fits.
std::string cut(const Dialect& dialect, std::string_view name, std::size_t limit) {
  while (lengthOf(dialect, name) > limit) {
    name.remove_suffix(1);
    while (!name.empty() && lengthOf(dialect, name) >= limit && isContinuation(name.back())) {
      // A cut inside a character takes the rest of it along.
      std::size_t start = name.size();
      while (start > 0 && isContinuation(name[start - 1])) --start;
      const auto lead = static_cast<unsigned char>(start > 0 ? name[start - 1] : 'a');
      const std::size_t wanted = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
      if (name.size() - start + 1 >= wanted) break;
      name = name.substr(0, start > 0 ? start - 1 : 0);
    }
  }
  return std::string(name);
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

std::string quotedName(const Dialect& dialect, std::string_view name) {
  if (isPlain(dialect, name) && name[0] != '_' && !isReservedWord(dialect.kind, name)) return std::string(name);
  std::string quoted(dialect.open);
  quoted += gReplaceAll(name, dialect.close, std::string(dialect.close) + std::string(dialect.close));
  return quoted.append(dialect.close);
}

std::string serverName(const Dialect& dialect, std::string_view name) {
  Dialect anyCase = dialect;
  anyCase.bareCase = Dialect::BareCase::Kept;
  return quotedName(anyCase, name);
}

bool fits(const Dialect& dialect, std::string_view name) {
  return name.size() <= dialect.nameLimit || lengthOf(dialect, name) <= dialect.nameLimit;
}

const std::string& NameScope::use(std::string_view key, std::string_view name) {
  const auto known = given_.find(std::string(key));
  if (known != given_.end()) return known->second;
  std::string chosen = cut(dialect_, name, dialect_.nameLimit);
  for (int number = 2; !taken_.insert(toLower(chosen)).second; ++number) {
    const std::string tail = "_" + std::to_string(number);
    chosen = cut(dialect_, name, dialect_.nameLimit - tail.size()) + tail;
  }
  if (chosen != name) changes_.push_back(std::string(name) + " -> " + chosen);
  return given_.emplace(key, std::move(chosen)).first->second;
}

}  // namespace quillmarden
