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

/// The name of something that the server has by itself, in the case that a bare name gets there: quoted only when it
/// could not stand bare.
std::string serverName(const Dialect& dialect, std::string_view name);

/// The beginning of a text with at most this many characters; bytes that are no UTF-8 count as one each.
std::string_view firstCharacters(std::string_view text, std::size_t most);

/// What names have to differ from.
enum class NameOf { Table, Column, Index, Constraint };

/// Whether the kind takes the name as it is: its length, its characters, what the server has for itself.
bool fits(const Dialect& dialect, NameOf what, std::string_view name);

/// The name as the kind tells names apart: most do without case.
std::string foldedName(const Dialect& dialect, std::string_view name);

/// What SQL Server's command-line tool takes for a variable of its own, in names and literals too.
constexpr std::string_view kToolVariable = "$(";

/// Names that must differ from each other, cut to what the kind allows. A name keeps what it has been given.
class NameScope {
 public:
  NameScope(const Dialect& dialect, NameOf what);

  /// The name to use for this one, without quotes: itself, or cut and numbered. `key` tells two things of one name
  /// apart; the first of them keeps it.
  const std::string& use(std::string_view key, std::string_view name);
  /// A name for something that is never asked for again: see use().
  std::string useOnce(std::string_view name);
  /// Keeps a name that the server gives by itself.
  void reserve(std::string_view name) { taken_.insert(foldedName(dialect_, name)); }
  /// A line for each name that had to change: "old -> new".
  const std::vector<std::string>& changes() const { return changes_; }

 private:
  /// The beginning of the name that leaves room for a tail of ASCII.
  std::string cut(std::string_view name, std::size_t tail) const;

  const Dialect& dialect_;
  NameOf what_;
  std::unordered_map<std::string, std::string> given_;
  std::unordered_set<std::string> taken_;         ///< folded
  std::unordered_map<std::string, int> numbers_;  ///< the last number behind a name, folded
  std::vector<std::string> changes_;
};

}  // namespace quillmarden
