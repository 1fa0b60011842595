#pragma once

#include "cli/run.h"
#include "editing/frm_tb_detail.h"

namespace quillmarden {

// What `show` has printed of a table is what the file that comes back with `save` was made from. The rows are kept in
// the user's data folder, one file a table, user and Repository: by them a save knows what somebody else has changed in
// between, and a line of the file its field, whatever number that has got since.

/// Keeps the rows that the screen was loaded with. Without a place to write to nothing is kept, and nothing said.
void keepShownRows(const Run& run, const frmTBDetail& detail);

/// Puts the screen back to the rows that were shown to this user last, as far as lines are told apart by them; a table
/// that never was shown stays as it was loaded.
void takeShownRows(const Run& run, frmTBDetail& detail);

}  // namespace quillmarden
