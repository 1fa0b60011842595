#include "editing/row_numbers.h"

#include <string>
#include <vector>

namespace quillmarden {

namespace {

void followIndexes(Database& database, const std::string& tableId, const RowNumbers& numbers) {
  Recordset rows = database.openRecordset("SELECT * FROM MAS_INDEX WHERE ID = " + tableId);
  if (rows.eof()) return;
  std::vector<std::string> columns;
  for (int i = 0; i < rows.fieldCount(); ++i) columns.push_back(rows.fieldName(i));
  const int rowNo = rows.fieldIndex("ROWNO");

  std::vector<std::vector<Value>> kept;
  for (; !rows.eof(); rows.moveNext()) {
    const long number = static_cast<long>(rows.integer(rowNo));
    if (numbers.isGone(number)) continue;
    std::vector<Value> row;
    for (int i = 0; i < rows.fieldCount(); ++i) row.push_back(rows.value(i));
    row[static_cast<std::size_t>(rowNo)] = static_cast<std::int64_t>(numbers.after(number));
    kept.push_back(std::move(row));
  }
  database.execute("DELETE * FROM MAS_INDEX WHERE ID = " + tableId);
  if (!kept.empty()) database.insertRows("MAS_INDEX", columns, kept);
}

void followReferences(Database& database, const std::string& tableId, const RowNumbers& numbers) {
  const std::string others = " WHERE 外部参照TABLEID = " + tableId + " AND ID <> " + tableId;
  std::vector<long> referred;
  for (Recordset rows = database.openRecordset("SELECT DISTINCT 外部参照ROWNO FROM MAS_TABLEDETAILES" + others);
       !rows.eof(); rows.moveNext())
    referred.push_back(static_cast<long>(rows.integer(0)));

  std::string goneList;
  bool moved = false;
  for (long number : referred) {
    const long after = numbers.after(number);
    if (numbers.isGone(number)) {
      goneList.append(goneList.empty() ? "" : ",").append(std::to_string(number));
    } else if (after != number) {
      // Negative on the way, so that a number that was just given is not moved on.
      database.execute("UPDATE MAS_TABLEDETAILES SET 外部参照ROWNO = " + std::to_string(-after) + others +
                       " AND 外部参照ROWNO = " + std::to_string(number));
      moved = true;
    }
  }
  if (!goneList.empty()) {
    database.execute("UPDATE MAS_TABLEDETAILES SET 外部参照 = '', 外部参照TABLEID = Null, 外部参照ROWNO = Null" +
                     others + " AND 外部参照ROWNO In (" + goneList + ")");
  }
  if (moved)
    database.execute("UPDATE MAS_TABLEDETAILES SET 外部参照ROWNO = -外部参照ROWNO" + others + " AND 外部参照ROWNO < 0");
}

}  // namespace

long RowNumbers::after(long number) const {
  const auto found = moved.find(number);
  return found == moved.end() ? number : found->second;
}

void followRowNumbers(Database& database, std::string_view tableId, const RowNumbers& numbers) {
  if (numbers.unchanged()) return;
  const std::string id(tableId);
  followIndexes(database, id, numbers);
  followReferences(database, id, numbers);
}

}  // namespace quillmarden
