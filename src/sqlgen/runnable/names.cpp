#include "sqlgen/runnable/names.h"

#include <algorithm>

#include "common/text.h"
#include "common/utf8.h"
#include "sqlgen/runnable/reserved_words.h"

namespace quillmarden {

namespace {

/// The longest beginning of whole characters that is within the limit, in bytes or in characters.
std::string_view beginning(std::string_view text, std::size_t limit, bool inBytes) {
  std::size_t used = 0;
  std::size_t end = 0;
  while (end < text.size()) {
    const std::size_t size = utf8At(text, end).size;
    used += inBytes ? size : 1;
    if (used > limit) break;
    end += size;
  }
  return text.substr(0, end);
}

std::string cut(const Dialect& dialect, std::string_view name, std::size_t limit) {
  return std::string(beginning(name, limit, dialect.limitInBytes));
}

/// Oracle has no way to write its quote inside a name.
bool takesQuote(const Dialect& dialect) { return dialect.kind != ScriptKind::Oracle; }

std::string takable(const Dialect& dialect, std::string_view name) {
  return takesQuote(dialect) ? std::string(name) : gReplaceAll(name, dialect.close, "_");
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
  quoted += gReplaceAll(takable(dialect, name), dialect.close, std::string(dialect.close).append(dialect.close));
  return quoted.append(dialect.close);
}

std::string serverName(const Dialect& dialect, std::string_view name) {
  Dialect anyCase = dialect;
  anyCase.bareCase = Dialect::BareCase::Kept;
  return quotedName(anyCase, name);
}

bool fits(const Dialect& dialect, std::string_view name) {
  if (!takesQuote(dialect) && name.find(dialect.close) != std::string_view::npos) return false;
  // Characters are never more than bytes: nearly all names are known to fit without counting.
  return name.size() <= dialect.nameLimit ||
         beginning(name, dialect.nameLimit, dialect.limitInBytes).size() == name.size();
}

std::string_view firstCharacters(std::string_view text, std::size_t most) { return beginning(text, most, false); }

const std::string& NameScope::use(std::string_view key, std::string_view name) {
  const auto known = given_.find(std::string(key));
  if (known != given_.end()) return known->second;
  const std::string wanted = takable(dialect_, name);
  std::string chosen = cut(dialect_, wanted, dialect_.nameLimit);
  for (int number = 2; !taken_.insert(toLower(chosen)).second; ++number) {
    const std::string tail = "_" + std::to_string(number);
    chosen = cut(dialect_, wanted, dialect_.nameLimit - tail.size()) + tail;
  }
  if (chosen != name) changes_.push_back(std::string(name) + " -> " + chosen);
  return given_.emplace(key, std::move(chosen)).first->second;
}

}  // namespace quillmarden
