#include "engine/table_def.h"

#include "engine/convert.h"

namespace quillmarden {

const FieldDef* TableDef::field(std::string_view wanted) const {
  for (const FieldDef& candidate : fields) {
    if (sameName(candidate.name, wanted)) return &candidate;
  }
  return nullptr;
}

const IndexDef* TableDef::primaryKey() const {
  for (const IndexDef& index : indexes) {
    if (index.primary) return &index;
  }
  return nullptr;
}

}  // namespace quillmarden
