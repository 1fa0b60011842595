#pragma once

#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "sqlgen/runnable/dialect.h"

namespace quillmarden {

/// The name as the kind takes it: quoted when it is a reserved word, would lose its case, or holds anything but
/// letters, digits and "_".
std::string quotedName(const Dialect& dialect, std::string_view name);
/// The same behind what the script holds.
void appendName(const Dialect& dialect, std::string_view name, std::string& script);

/// The name of something that the server has by itself: quoted only when it could not stand bare.
std::string serverName(const Dialect& dialect, std::string_view name);

/// The beginning of a text with at most this many characters; bytes that are no UTF-8 count as one each.
std::string_view firstCharacters(std::string_view text, std::size_t most);

/// Whether the kind takes a name of this length.
bool fits(const Dialect& dialect, std::string_view name);

/// What SQL Server's command-line tool takes for a variable of its own, in names and literals too.
constexpr std::string_view kToolVariable = "$(";

/// Names that must differ from each other, cut to what the kind allows. A name keeps what it has been given.
class NameScope {
 public:
  /// With `files`, the server keeps what is named in files of that name: these may not become too long either.
  explicit NameScope(const Dialect& dialect, bool files = false) : dialect_(dialect), files_(files) {}

  /// The name to use for this one, without quotes: itself, or cut and numbered. `key` tells two things of one name
  /// apart; the first of them keeps it.
  const std::string& use(std::string_view key, std::string_view name);
  /// How many names have been given.
  std::size_t uses() const { return given_.size(); }
  /// A line for each name that had to change: "old -> new".
  const std::vector<std::string>& changes() const { return changes_; }

 private:
  /// The beginning of the name that leaves room for a tail of ASCII.
  std::string cut(std::string_view name, std::size_t tail) const;

  const Dialect& dialect_;
  bool files_;
  std::unordered_map<std::string, std::string> given_;
  std::unordered_set<std::string> taken_;  ///< lower-case
  std::vector<std::string> changes_;
};

}  // namespace quillmarden
