#pragma once

#include <string_view>
#include <vector>

#include "editing/frm_tb_detail.h"

namespace quillmarden {

/// One field as generators read it from the grid. The texts belong to the grid and are valid until it changes.
struct Field {
  std::string_view japaneseName;
  std::string_view cell;  ///< the field name's cell as it stands, blanks around it included
  std::string_view name;  ///< the same, trimmed
  bool key = false;
  std::string_view type;  ///< trimmed
  std::string_view wholeDigits;
  std::string_view fractionDigits;
  std::string_view null;         ///< "NULL", "NOT NULL" or ""
  std::string_view valueList;    ///< trimmed
  std::string_view remark;       ///< as it stands, with its line ends
  std::string_view defaultText;  ///< as it stands; "" for blanks alone
  std::string_view rangeKind;    ///< trimmed
  std::string_view rangeStart;
  std::string_view rangeEnd;
  std::string_view foreign;

  /// A value list comes before a range: with both, only the list is checked.
  bool hasRange() const { return valueList.empty() && !rangeKind.empty(); }
  /// A computed column, whose remark is its expression.
  bool computed() const { return type == "計算式"; }
};

/// A row of the grid as a field; one without a name has an empty `name`.
Field readField(const frmTBDetail& table, int row);

/// The fields of the table on show, up to the first row without a field name.
std::vector<Field> readFields(const frmTBDetail& table);

}  // namespace quillmarden
