#include "relations/index.h"

#include "common/numbers.h"
#include "common/text.h"
#include "engine/sql_text.h"

namespace quillmarden {

namespace {

/// The statement about one table's index rows; "" for an ID that is no number, which no table has.
std::string indexSql(std::string_view select, std::string_view tableId, std::string_view tail) {
  if (!isNumeric(tableId)) return "";
  std::string sql(select);
  return sql.append(tableId).append(tail);
}

constexpr std::string_view kIndexRows =
    "SELECT i.INDEX_NAME, i.備考, i.bolUNIQUE, i.brinindex, i.ROWNO, d.項目名, i.ID "
    " FROM MAS_INDEX AS i "
    "   INNER JOIN MAS_TABLEDETAILES AS d "
    "       ON (i.ROWNO = d.ROWNO) "
    "       AND (i.ID = d.ID)";

/// Adds a row to the index that the row before it began, or begins another.
void addIndexRow(const Recordset& row, std::vector<TableIndex>& indexes) {
  if (indexes.empty() || indexes.back().name != row.text(0)) {
    TableIndex index;
    index.name = row.text(0);
    index.remark = row.text(1);
    index.uniqueFlag = static_cast<long>(row.integer(2));
    index.brin = row.integer(3) != 0;
    indexes.push_back(std::move(index));
  }
  indexes.back().fields.push_back({static_cast<long>(row.integer(4)), std::string(row.text(5))});
}

}  // namespace

std::vector<std::string> TableIndex::fieldNames() const {
  std::vector<std::string> names;
  names.reserve(fields.size());
  for (const Field& field : fields) names.push_back(field.name);
  return names;
}

std::vector<TableIndex> gGetIndexList(Database& database, std::string_view tableId) {
  std::vector<TableIndex> indexes;
  const std::string sql =
      indexSql(std::string(kIndexRows) + "   Where i.ID = ", tableId, " ORDER BY i.INDEX_NAME, i.順序");
  if (sql.empty()) return indexes;
  for (Recordset rows = database.openRecordset(sql); !rows.eof(); rows.moveNext()) addIndexRow(rows, indexes);
  return indexes;
}

std::unordered_map<std::string, std::vector<TableIndex>> indexesOfSystem(Database& database, std::string_view system) {
  std::unordered_map<std::string, std::vector<TableIndex>> indexes;
  std::string sql(kIndexRows);
  sql.append("   Where i.ID In (SELECT t.ID FROM MAS_TABLEINFO AS t WHERE t.システム名 = ")
      .append(sqlText(system))
      .append(") ORDER BY i.ID, i.INDEX_NAME, i.順序");
  for (Recordset rows = database.openRecordset(sql); !rows.eof(); rows.moveNext())
    addIndexRow(rows, indexes[std::string(rows.text(6))]);
  return indexes;
}

bool hasIndexes(Database& database, std::string_view tableId) {
  const std::string sql = indexSql("SELECT a.ID FROM MAS_INDEX AS a  WHERE a.ID = ", tableId, "");
  return !sql.empty() && !database.openRecordset(sql).eof();
}

std::vector<std::string> indexNames(Database& database, std::string_view tableId) {
  const std::string sql = indexSql("SELECT a.INDEX_NAME FROM MAS_INDEX AS a  WHERE a.ID = ", tableId,
                                   " GROUP BY a.INDEX_NAME ORDER BY a.INDEX_NAME");
  std::vector<std::string> names;
  if (sql.empty()) return names;
  for (Recordset rows = database.openRecordset(sql); !rows.eof(); rows.moveNext()) names.emplace_back(rows.text(0));
  return names;
}

}  // namespace quillmarden
