#pragma once

#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "editing/frm_tb_detail.h"
#include "repository/session.h"

namespace quillmarden {

/// Stamps that wait to be written. Every commit waits for the disk, so the stamps of a run are written together;
/// what is stored in the end is what stamping each table by itself stores.
struct SqlHistory {
  struct Stamp {
    std::string id;      ///< the table's
    std::string moment;  ///< "yyyy/mm/dd hh:nn:00"
  };
  std::vector<Stamp> waiting;
  std::unordered_set<std::string> ids;  ///< of those that wait
};

/// Stamps a table. Writes when enough stamps wait; throws EngineError then.
void stampTable(Session& session, SqlHistory& history, const std::string& id, const DateTime& now);

/// The same for the table on show, which then shows the new values.
void pPutSqlHistory(Session& session, SqlHistory& history, frmTBDetail& table, const DateTime& now);

/// Whether the table's own stamp has not reached the Repository yet.
bool waitsForStamp(const SqlHistory& history, std::string_view tableId);

/// Writes all waiting stamps in one transaction, those aside of tables that may not be changed: who may look at a
/// design may print it, and leaves it as it is. Throws EngineError; the stamps are dropped then.
void writeSqlHistory(Session& session, SqlHistory& history);

}  // namespace quillmarden
