#include "sqlgen/runnable/names.h"

#include <algorithm>
#include <iterator>
#include <span>
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

/// Whether a name of the kind can have the character: not Oracle its quote, nor MySQL what is beyond the basic plane.
bool takesCharacter(const Dialect& dialect, const Utf8Step& step) {
  constexpr char32_t kDelete = 0x7F, kBasicPlane = 0xFFFF;
  if (!step.valid || step.character < ' ' || step.character == kDelete) return false;
  if (dialect.kind == ScriptKind::Oracle) return step.character != '"';
  return dialect.kind != ScriptKind::MySql || step.character <= kBasicPlane;
}

/// A table of this name would be taken for one of an older server.
constexpr std::string_view kOldFile = "#mysql50#";

std::string takable(const Dialect& dialect, std::string_view name) {
  std::string taken;
  for (std::size_t at = 0; at < name.size();) {
    const Utf8Step step = utf8At(name, at);
    if (takesCharacter(dialect, step)) {
      taken += name.substr(at, step.size);
    } else {
      taken += '_';
    }
    at += step.size;
  }
  if (dialect.kind == ScriptKind::SqlServer) taken = gReplaceAll(taken, kToolVariable, "_");
  if (dialect.kind == ScriptKind::MySql && taken.starts_with(kOldFile)) taken[0] = '_';
  return taken.empty() ? "_" : taken;
}

bool takes(const Dialect& dialect, std::string_view name) {
  // Letters and digits are nearly all names.
  const auto isUsual = [](char c) {
    return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
  };
  return (!name.empty() && std::all_of(name.begin(), name.end(), isUsual)) || takable(dialect, name) == name;
}

/// What a server has by itself where names of this kind stand, in lower case.
std::span<const std::string_view> serverNames(const Dialect& dialect, NameOf what) {
  static constexpr std::string_view kPostgreSqlColumns[] = {"tableoid", "xmin", "cmin", "xmax", "cmax", "ctid"};
  static constexpr std::string_view kMySqlColumns[] = {"db_row_id", "db_trx_id", "db_roll_ptr", "fts_doc_id"};
  static constexpr std::string_view kMySqlIndexes[] = {"primary", "gen_clust_index", "fts_doc_id_index"};
  if (dialect.kind == ScriptKind::PostgreSql && what == NameOf::Column) return kPostgreSqlColumns;
  if (dialect.kind != ScriptKind::MySql) return {};
  if (what == NameOf::Column) return kMySqlColumns;
  return what == NameOf::Index ? std::span<const std::string_view>(kMySqlIndexes) : std::span<const std::string_view>();
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
  if (name.find(dialect.close) == std::string_view::npos) {
    script += name;
  } else {
    script += gReplaceAll(name, dialect.close, std::string(dialect.close).append(dialect.close));
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
  const std::string taken = takable(dialect, name);
  if (!isPlain(anyCase, taken)) return quotedName(dialect, taken);
  if (!isReservedWord(dialect.kind, taken) && taken[0] != '_') return taken;
  // In quotes it has to have the case itself.
  if (dialect.bareCase == Dialect::BareCase::Kept) return quotedName(dialect, taken);
  return quotedName(dialect, dialect.bareCase == Dialect::BareCase::Upper ? toUpper(taken) : toLower(taken));
}

bool fits(const Dialect& dialect, NameOf what, std::string_view name) {
  if (!takes(dialect, name)) return false;
  const auto own = serverNames(dialect, what);
  if (!own.empty() && std::find(own.begin(), own.end(), foldedName(dialect, name)) != own.end()) return false;
  // Characters are never more than bytes: nearly all names are known to fit without counting.
  return name.size() <= dialect.nameLimit ||
         beginning(name, dialect.nameLimit, dialect.limitInBytes ? bytes : oneEach).size() == name.size();
}

std::string foldedName(const Dialect& dialect, std::string_view name) {
  const bool exact = dialect.kind == ScriptKind::PostgreSql || dialect.kind == ScriptKind::Oracle;
  return exact ? std::string(name) : toLower(name);
}

std::string_view firstCharacters(std::string_view text, std::size_t most) { return beginning(text, most, oneEach); }

NameScope::NameScope(const Dialect& dialect, NameOf what) : dialect_(dialect), what_(what) {
  for (const std::string_view name : serverNames(dialect, what)) taken_.emplace(name);
}

std::string NameScope::cut(std::string_view name, std::size_t tail) const {
  name = beginning(name, dialect_.nameLimit - tail, dialect_.limitInBytes ? bytes : oneEach);
  // MySQL keeps a table in a file of its name, and takes no blank at a name's end.
  if (dialect_.kind == ScriptKind::MySql) {
    if (what_ == NameOf::Table) name = beginning(name, kLongestFile - tail, bytesInFile);
    name = name.substr(0, name.find_last_not_of(' ') + 1);
  }
  return std::string(name);
}

std::string NameScope::useOnce(std::string_view name) {
  const std::string wanted = takable(dialect_, name);
  std::string chosen = cut(wanted, 0);
  if (!taken_.insert(foldedName(dialect_, chosen)).second) {
    int& number = numbers_.try_emplace(foldedName(dialect_, chosen), 1).first->second;
    do {
      const std::string tail = "_" + std::to_string(++number);
      chosen = cut(wanted, tail.size()) + tail;
    } while (!taken_.insert(foldedName(dialect_, chosen)).second);
  }
  if (chosen != name) changes_.push_back(std::string(name) + " -> " + chosen);
  return chosen;
}

const std::string& NameScope::use(std::string_view key, std::string_view name) {
  const auto known = given_.find(std::string(key));
  if (known != given_.end()) return known->second;
  return given_.emplace(key, useOnce(name)).first->second;
}

}  // namespace quillmarden
