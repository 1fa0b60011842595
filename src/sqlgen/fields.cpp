#include "sqlgen/fields.h"

#include "common/text.h"

namespace quillmarden {

Field readField(const frmTBDetail& table, int row) {
  const Spread& grid = table.Spread;
  Field field;
  field.japaneseName = grid.text(field_col::kJapaneseName, row);
  field.cell = grid.text(field_col::kFieldName, row);
  field.name = trim(field.cell);
  field.key = isKey(grid.text(field_col::kKey, row));
  field.type = trim(grid.text(field_col::kType, row));
  field.wholeDigits = grid.text(field_col::kWholeDigits, row);
  field.fractionDigits = grid.text(field_col::kFractionDigits, row);
  field.null = grid.text(field_col::kNull, row);
  field.valueList = trim(grid.text(field_col::kValueList, row));
  field.remark = grid.text(field_col::kRemark, row);
  const std::string_view defaultText = grid.text(field_col::kDefault, row);
  if (!trim(defaultText).empty()) field.defaultText = defaultText;
  field.rangeKind = trim(grid.text(field_col::kRangeKind, row));
  field.rangeStart = grid.text(field_col::kRangeStart, row);
  field.rangeEnd = grid.text(field_col::kRangeEnd, row);
  field.foreign = grid.text(field_col::kForeign, row);
  return field;
}

std::vector<Field> readFields(const frmTBDetail& table) {
  std::vector<Field> fields;
  const int rows = table.Spread.maxRows();
  fields.reserve(static_cast<std::size_t>(rows));
  for (int row = 1; row <= rows && table.Spread.holds(field_col::kFieldName, row); ++row)
    fields.push_back(readField(table, row));
  return fields;
}

}  // namespace quillmarden
