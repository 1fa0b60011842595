#include "sqlgen/sql_history.h"

#include <utility>

#include "common/numbers.h"
#include "repository/rights.h"
#include "sqlgen/clauses.h"

namespace quillmarden {

namespace {

constexpr std::size_t kStampsAtOnce = 500;

std::string stampSql(std::string_view moment, std::string_view idList) {
  const std::string date = "#" + std::string(moment) + "#";
  std::string sql =
      "UPDATE MAS_TABLEINFO SET 作成回数 = IIf(IsNull(作成回数), 1, 作成回数 + 1)"
      ", SQL文初回作成日 = IIf(IsNull(SQL文初回作成日), " +
      date +
      ", SQL文初回作成日)"
      ", SQL文最新作成日 = " +
      date + ", チェックポイント日付 = IIf(IsNull(チェックポイント日付), " + date +
      ", チェックポイント日付) WHERE ID In (";
  return sql.append(idList).append(")");
}

}  // namespace

void stampTable(Session& session, SqlHistory& history, const std::string& id, const DateTime& now) {
  if (waitsForStamp(history, id)) writeSqlHistory(session, history);
  history.waiting.push_back({id, formatDateTime(now, "yyyy/mm/dd hh:nn:00")});
  history.ids.insert(id);
  if (history.waiting.size() >= kStampsAtOnce) writeSqlHistory(session, history);
}

void pPutSqlHistory(Session& session, SqlHistory& history, frmTBDetail& table, const DateTime& now) {
  if (table.readOnly) return;
  const std::string shown = formatDateTime(now, "yyyy/mm/dd hh:nn");
  if (table.lblFirstSQL.caption.empty()) table.lblFirstSQL.caption = shown;
  table.lblNewSQL.caption = shown;
  table.lblNumSQL.caption = plainNumber(numberIn(table.lblNumSQL.caption) + 1);
  stampTable(session, history, table.lblID.caption, now);
}

bool waitsForStamp(const SqlHistory& history, std::string_view tableId) {
  return history.ids.contains(std::string(tableId));
}

void writeSqlHistory(Session& session, SqlHistory& history) {
  std::vector<SqlHistory::Stamp> stamps = std::exchange(history.waiting, {});
  history.ids.clear();
  if (stamps.empty() || !mayWrite(session)) return;
  inTransaction(*session.gDB, [&] {
    std::erase_if(stamps, [&](const SqlHistory::Stamp& stamp) { return !mayChangeTable(session, stamp.id); });
    // The count grows inside the statement, so that another process's stamp in between is never lost.
    for (std::size_t first = 0; first < stamps.size();) {
      std::string ids;
      std::size_t next = first;
      for (; next < stamps.size() && stamps[next].moment == stamps[first].moment; ++next)
        ids.append(ids.empty() ? "" : ",").append(stamps[next].id);
      session.gDB->execute(stampSql(stamps[first].moment, ids));
      first = next;
    }
  });
}

}  // namespace quillmarden
