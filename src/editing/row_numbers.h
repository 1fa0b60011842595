#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "engine/database.h"

namespace quillmarden {

/// What a save does to the numbers by which a table's fields are known elsewhere.
struct RowNumbers {
  std::unordered_map<long, long> moved;  ///< former to new number, of fields that change theirs
  std::unordered_set<long> gone;         ///< former numbers of fields that the save removes

  bool unchanged() const { return moved.empty() && gone.empty(); }
  bool isGone(long number) const { return gone.contains(number); }
  /// The field's number after the save.
  long after(long number) const;
};

/// What points at the removed fields from outside of the table: its indexes and the references of other tables, a line
/// for a message each. `nameOf` gives a field's name by its former number.
std::vector<std::string> pointersAtGone(Database& database, std::string_view tableId, const RowNumbers& numbers,
                                        const std::function<std::string(long)>& nameOf);

/// Lets index rows of the table, references from other tables and the findings of the reference analysis follow its
/// fields; those of removed fields go. References within the table are the saver's own rows. Runs in the caller's
/// transaction.
void followRowNumbers(Database& database, std::string_view tableId, const RowNumbers& numbers);

}  // namespace quillmarden
