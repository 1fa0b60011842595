#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "engine/database.h"
#include "screen/spread.h"

namespace quillmarden {

/// The field rows of a table as they were read at one moment: what a save holds against the rows that it finds. Values
/// are in the form that says what they mean to a person: a save that changed nothing brings its own form of nothing,
/// and writes the audit columns anew, and is none of anybody's concern.
struct LoadedRows {
  bool known = false;  ///< rows were read, and be it none
  /// By ROWNO, a value for each of loadedColumns(); Null for a column that an older file lacks.
  std::map<long, std::vector<Value>> rows = {};
};

/// The columns that are kept, those of identity first.
const std::vector<std::string>& loadedColumns();

/// Takes the rows of a set over; one that has all columns, in any order.
LoadedRows loadedRows(Recordset& rows);

bool sameRows(const LoadedRows& one, const LoadedRows& other);
/// Whether nothing but the number and the text of foreign keys is other: what they refer to has been saved or renamed,
/// and they have followed. That is no change of this table by anybody.
bool foreignKeysFollowed(const LoadedRows& before, const LoadedRows& now);

/// Which row of `now` is which row of `before`, ROWNO to ROWNO: a field is known again by both of its names, else by
/// its field name, else by its Japanese name, as far as each is there once; and by its place where nothing has moved
/// and the same person made it at the same moment. One that is not known again has no entry.
std::unordered_map<long, long> sameFields(const LoadedRows& before, const LoadedRows& now);

/// What has become of the rows, a line each: "+ ZIP 郵便番号", "- FAX", "* TEL : 型 [char] → [varchar]".
std::vector<std::string> differences(const LoadedRows& before, const LoadedRows& now);

/// A grid that was loaded as `before` stands, brought onto the rows as they are `now`: each row takes the number under
/// which its field is stored, a new one that of a stored field of its name; foreign keys that nobody put here are those
/// that are stored, others within the table follow their field or are emptied. Gives the names of the fields that
/// somebody has deleted: they will be new ones.
std::vector<std::string> rebase(Spread& grid, const LoadedRows& before, const LoadedRows& now,
                                std::string_view tableId);

/// As a text of lines, and back; nothing for a text that is none of this form.
std::string loadedRowsText(const LoadedRows& rows);
std::optional<LoadedRows> parseLoadedRows(std::string_view text);

}  // namespace quillmarden
