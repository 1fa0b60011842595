#pragma once

#include <string_view>
#include <unordered_map>
#include <unordered_set>

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

/// Lets index rows of the table and references from other tables follow its fields; those of removed fields
/// go. References within the table are the saver's own rows. Runs in the caller's transaction.
void followRowNumbers(Database& database, std::string_view tableId, const RowNumbers& numbers);

}  // namespace quillmarden
