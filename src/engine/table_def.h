#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillmarden {

enum class FieldType {
  Text,     ///< character column of `size` characters
  Memo,     ///< long text
  Integer,  ///< 16 bits
  Long,     ///< 32 bits
  Double,
  Flag,  ///< 0 for false, -1 for true
  Date,  ///< text "yyyy/mm/dd hh:nn:ss"
  Auto,  ///< Long that the engine numbers at insertion; a number is never given twice
};

struct FieldDef {
  std::string name;
  FieldType type = FieldType::Text;
  int size = 0;  ///< characters of a Text; 0 for 255, and for a column that other tools made without a width: no limit
  bool required = false;
  bool allowZeroLength = true;
};

/// An index or key: its name ("PrimaryKey" for the one that `seek` uses) and its columns in order.
struct IndexDef {
  std::string name;
  std::vector<std::string> fields;
  bool primary = false;
  bool unique = false;
};

/// A table as the engine knows it: what `TableDefs` lists and `createTable` takes.
struct TableDef {
  std::string name;
  std::vector<FieldDef> fields;
  std::vector<IndexDef> indexes;

  /// The field of that name, compared without case; nullptr when there is none.
  const FieldDef* field(std::string_view name) const;
  /// The index named "PrimaryKey", or nullptr.
  const IndexDef* primaryKey() const;
};

}  // namespace quillmarden
