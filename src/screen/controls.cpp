#include "screen/controls.h"

#include <utility>

namespace quillmarden {

void ListBox::clear() {
  rows.clear();
  selected.clear();
  listIndex = -1;
}

void ListBox::add(std::string row) {
  rows.push_back(std::move(row));
  selected.resize(rows.size());
}

std::string_view ListBox::text() const {
  if (listIndex < 0 || listIndex >= count()) return {};
  return rows[static_cast<std::size_t>(listIndex)];
}

}  // namespace quillmarden
