#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "editing/grid_operations.h"
#include "repository/session.h"

namespace quillmarden {

/// An entry of the menu that copies code.
struct SnippetEntry {
  int index;
  std::string_view caption;
};
/// The entries in the order of the menu.
const std::vector<SnippetEntry>& snippetEntries();

/// Text for a developer's program about these rows of the table on show; rows without a field name are left out.
/// "" for an index that no entry has.
std::string codeSnippet(Session& session, const frmTBDetail& table, const std::vector<int>& rows, int index);

/// The menu of the grid: puts the text for the selected rows on the clipboard.
void mnuCopyCode_Click(Session& session, Host& host, const frmTBDetail& screen, const GridSelection& selection,
                       int index);

}  // namespace quillmarden
