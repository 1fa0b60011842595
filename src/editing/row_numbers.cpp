#include "editing/row_numbers.h"

#include <string>
#include <vector>

namespace quillmarden {

namespace {

/// Columns of a table that together name a field.
struct FieldPointer {
  std::string_view id;
  std::string_view rowNo;
};

/// Gives the rows of a table that point at fields the new numbers; those that point at a removed one go.
void followRows(Database& database, std::string_view table, const std::string& tableId,
                const std::vector<FieldPointer>& pointers, const RowNumbers& numbers) {
  std::string where;
  for (const FieldPointer& pointer : pointers)
    where.append(where.empty() ? " WHERE " : " OR ").append(pointer.id).append(" = ").append(tableId);
  Recordset rows = database.openRecordset("SELECT * FROM " + std::string(table) + where);
  if (rows.eof()) return;
  std::vector<std::string> columns;
  for (int i = 0; i < rows.fieldCount(); ++i) columns.push_back(rows.fieldName(i));

  const auto ownId = static_cast<std::int64_t>(std::stoll(tableId));
  std::vector<std::vector<Value>> kept;
  for (; !rows.eof(); rows.moveNext()) {
    std::vector<Value> row;
    for (int i = 0; i < rows.fieldCount(); ++i) row.push_back(rows.value(i));
    bool gone = false;
    for (const FieldPointer& pointer : pointers) {
      if (rows.integer(pointer.id) != ownId) continue;
      const auto number = static_cast<long>(rows.integer(pointer.rowNo));
      gone = gone || numbers.isGone(number);
      row[static_cast<std::size_t>(rows.fieldIndex(pointer.rowNo))] = static_cast<std::int64_t>(numbers.after(number));
    }
    if (!gone) kept.push_back(std::move(row));
  }
  database.execute("DELETE * FROM " + std::string(table) + where);
  if (!kept.empty()) database.insertRows(table, columns, kept);
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

std::vector<std::string> pointersAtGone(Database& database, std::string_view tableId, const RowNumbers& numbers,
                                        const std::function<std::string(long)>& nameOf) {
  std::vector<std::string> lines;
  if (numbers.gone.empty()) return lines;
  const std::string id(tableId);
  for (Recordset rows =
           database.openRecordset("SELECT INDEX_NAME, ROWNO FROM MAS_INDEX WHERE ID = " + id + " ORDER BY INDEX_NAME");
       !rows.eof(); rows.moveNext()) {
    const long number = static_cast<long>(rows.integer(1));
    if (numbers.isGone(number)) lines.push_back("インデックス " + std::string(rows.text(0)) + " : " + nameOf(number));
  }
  const std::string references =
      "SELECT inf.テーブル名, det.項目名, det.外部参照ROWNO FROM MAS_TABLEINFO AS inf INNER JOIN MAS_TABLEDETAILES AS "
      "det "
      "ON inf.ID = det.ID WHERE det.外部参照TABLEID = " +
      id + " AND det.ID <> " + id + " ORDER BY inf.テーブル名, det.ROWNO";
  for (Recordset rows = database.openRecordset(references); !rows.eof(); rows.moveNext()) {
    const long number = static_cast<long>(rows.integer(2));
    if (numbers.isGone(number))
      lines.push_back("外部参照 " + std::string(rows.text(0)) + "." + std::string(rows.text(1)) + " : " +
                      nameOf(number));
  }
  return lines;
}

void followRowNumbers(Database& database, std::string_view tableId, const RowNumbers& numbers) {
  if (numbers.unchanged()) return;
  const std::string id(tableId);
  followRows(database, "MAS_INDEX", id, {{"ID", "ROWNO"}}, numbers);
  // What the reference analysis found is true of the fields, whatever their numbers.
  if (database.tableDef("DAT_REFERENCE"))
    followRows(database, "DAT_REFERENCE", id, {{"ID", "ROWNO"}, {"ID_REF", "ROWNO_REF"}}, numbers);
  followReferences(database, id, numbers);
}

}  // namespace quillmarden
