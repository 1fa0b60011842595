#include "repository/rights.h"

#include <optional>

#include "common/message.h"
#include "common/numbers.h"
#include "common/text.h"
#include "repository/session.h"

namespace quillmarden {
namespace {

Right refusal(std::initializer_list<std::string_view> lines) { return {joinLines(lines)}; }

/// A name under the word for it, as the second line of a reason.
std::string named(std::string_view word, std::string_view name) {
  return std::string(" ").append(word).append(" : ").append(name);
}

/// Looks a right up. Where the Repository doesn't answer, nothing may be written to it either.
template <typename Look>
Right lookUp(Look&& look) {
  try {
    return look();
  } catch (const EngineError& error) {
    return refusal({"更新の権限を確認できませんでした.", error.what()});
  }
}

bool sameSystem(std::string_view one, std::string_view other) { return equalsNoCase(trim(one), trim(other)); }

/// A flag column; Null, and a column that an older file lacks, count as `otherwise`.
bool flagOf(const Recordset& row, std::string_view column, bool otherwise) {
  const int index = row.fieldIndex(column);
  return index < 0 || row.isNull(index) ? otherwise : row.integer(index) != 0;
}

/// What keeps the user from the record of the System itself.
Right recordRight(const Session& session, const SystemRecord& record) {
  // The login finds its user without regard to case, so the same person may be written in both ways.
  if (record.userLimit == 2 && !equalsNoCase(session.gLoginUser, record.owner))
    return refusal(
        {"ユーザー制限のため、変更できません.", named("システム名", record.name), named("作成者", record.owner)});
  return {};
}

Right systemRight(Session& session, std::string_view system, bool recordOnly) {
  if (Right right = mayWrite(session); !right) return right;
  if (system == kAllSystems) return refusal({"全システム共通では、変更できません."});
  const Recordset row = session.gDB->openRecordset("SELECT * FROM MAS_SYSTEM WHERE システム名 = paraSystem",
                                                   {{"paraSystem", std::string(system)}});
  if (row.eof()) return refusal({"指定のシステムが存在しません.", named("システム名", system)});
  SystemRecord record;
  record.name = row.text("システム名");
  record.owner = row.text("作成者");
  record.userLimit = static_cast<int>(row.integer("ユーザー制限"));
  record.editAllowed = flagOf(row, "修正許可", false);
  return recordOnly ? recordRight(session, record) : mayChangeSystem(session, record);
}

bool isCommon(std::string_view kind) { return kind == "メンバー" || kind == "固定値"; }

Right tableRight(Session& session, std::string_view tableId, TableChange change) {
  if (Right right = mayWrite(session); !right) return right;
  if (!isNumeric(tableId)) return refusal({"指定のテーブルが存在しません.", named("ID", tableId)});
  const Recordset row = session.gDB->openRecordset("SELECT * FROM MAS_TABLEINFO WHERE ID = paraId",
                                                   {{"paraId", static_cast<std::int64_t>(gVal(tableId))}});
  if (row.eof()) return refusal({"指定のテーブルが存在しません.", named("ID", tableId)});
  const std::string table = named("テーブル名", trim(row.text("テーブル名")));
  const std::string owner(row.text("システム名"));

  const bool deleted = flagOf(row, "削除フラグ", false);
  if (change == TableChange::kRestore && !deleted) return refusal({"このテーブルは削除されていません.", table});
  if (change != TableChange::kRestore && deleted) return refusal({"このテーブルは削除されています.", table});
  if (!isCommon(row.text("ファイル種別")) && !sameSystem(owner, session.gCurrentSystemName))
    return refusal({owner, "のシステムで定義されたものです.", "このシステムで修正する権限がありません.", table});
  if (Right right = systemRight(session, owner, false); !right) return right;
  if (change != TableChange::kLock && !flagOf(row, "修正許可", true))
    return refusal({"このテーブルは編集不可に設定されています.", table});
  return {};
}

}  // namespace

Right mayWrite(const Session& session) {
  if (session.gDB && session.gDB->readOnly())
    return refusal({"データベースファイルは読み取り専用です.", "更新することはできません."});
  if (session.gIsGuest) return refusal({"guestでは、変更できません."});
  return {};
}

Right mayChangeSystem(Session& session, std::string_view system) {
  return lookUp([&] { return systemRight(session, system, false); });
}

Right mayChangeSystem(const Session& session, const SystemRecord& record) {
  if (Right right = mayWrite(session); !right) return right;
  if (Right right = recordRight(session, record); !right) return right;
  if (!record.editAllowed)
    return refusal({"システム全体が編集できないように設定されています.", named("システム名", record.name)});
  return {};
}

Right mayChangeSystemRecord(Session& session, std::string_view system) {
  return lookUp([&] { return systemRight(session, system, true); });
}

Right mayChangeTable(Session& session, std::string_view tableId, TableChange change) {
  return lookUp([&] { return tableRight(session, trim(tableId), change); });
}

Right mayAdministerUsers(Session& session) {
  return lookUp([&]() -> Right {
    if (Right right = mayWrite(session); !right) return right;
    const Recordset row = session.gDB->openRecordset("SELECT * FROM MAS_USER WHERE ユーザー名 = paraUser",
                                                     {{"paraUser", session.gLoginUser}});
    if (row.eof() || !equalsNoCase(trim(row.text("グループ")), "ADMIN"))
      return refusal({"管理者でないため、ユーザーを変更できません.", named("ユーザー名", session.gLoginUser)});
    return {};
  });
}

bool refused(Host& host, const Right& right) {
  if (right) return false;
  gMsgBox(host, right.reason, kOkOnly | kStopIcon);
  return true;
}

}  // namespace quillmarden
