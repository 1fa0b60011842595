#pragma once

#include <string>
#include <string_view>

#include "screen/host.h"

namespace quillmarden {

struct Session;
struct SystemRecord;

// The one place that decides what this session may change. Every routine that writes asks it, right before it writes,
// whether a screen stands in front of it or a command: what a screen showed or enabled may be old. The answers come
// from the Repository as it is now, except for the name of the user.

/// Whether a change is allowed, and why not: lines for a message, "" for an allowed one.
struct Right {
  std::string reason;
  explicit operator bool() const { return reason.empty(); }
};

/// What is to be done to a table.
enum class TableChange {
  kDefinition,  ///< header, indexes, marks, deletion: anything but the three below
  kFields,      ///< field rows and memo
  kLock,        ///< 修正許可: the lock itself does not stand in its way
  kRestore,     ///< a deleted table comes back
};

/// Anything at all: rows that belong to no System, such as placements, and a System that is new. Refused to a guest,
/// and where the Repository file is open for looking only.
Right mayWrite(const Session& session);

/// What belongs to a System, by its name in any case, whether it is the current one or not: new tables, tables that
/// move in, value lists, row counts, tools over all of its tables. Refused beyond mayWrite where ユーザー制限 shuts the
/// user out, where 修正許可 of the System is off, for kAllSystems, and for a name that no System has.
Right mayChangeSystem(Session& session, std::string_view system);
/// The same by a record that has just been read.
Right mayChangeSystem(const Session& session, const SystemRecord& record);

/// The System's own record: as mayChangeSystem, save that 修正許可 does not stand in the way. It is set and taken off
/// there. A new System is a matter of mayWrite.
Right mayChangeSystemRecord(Session& session, std::string_view system);

/// What of a table decides, as it has just been read.
struct TableState {
  std::string_view name;
  std::string_view system;
  std::string_view kind;
  bool editable = true;  ///< 修正許可; one that was never set is on
  bool deleted = false;
};

/// A table, by its ID as text. Refused beyond mayChangeSystem of the table's own System: for a deleted table (one that
/// is not deleted, for kRestore), a locked one, and a table of another System than the current one. Members and fixed
/// values are kept in common: the fields of those of another System follow that System's rights alone.
Right mayChangeTable(Session& session, std::string_view tableId, TableChange change = TableChange::kDefinition);
/// The same of a table that has just been read, for what a screen shows of it: the current System's record is taken as
/// it was read last.
Right mayChangeTable(Session& session, const TableState& table, TableChange change = TableChange::kDefinition);

/// The lock as a condition for statements over all tables of a System that may be changed; `alias` names MAS_TABLEINFO
/// there. And the number of live tables that it leaves out.
std::string unlockedTables(std::string_view alias);
int countLockedTables(Session& session, std::string_view system);

/// Users that go, and who belongs to the group ADMIN: beyond mayWrite the user has to be in that group.
Right mayAdministerUsers(Session& session);

/// Shows the reason of a refusal under "確認". True when it was refused.
bool refused(Host& host, const Right& right);

}  // namespace quillmarden
