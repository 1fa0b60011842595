#include "repository/system_record.h"

#include "common/message.h"
#include "common/names.h"
#include "common/numbers.h"
#include "common/paths.h"
#include "common/replace_file.h"
#include "common/text.h"
#include "common/work_folders.h"
#include "engine/sql_text.h"
#include "repository/rights.h"
#include "repository/session.h"

namespace quillmarden {
namespace {

void setWorkFolders(const Session& session, const Host& host, std::string_view systemName, SystemRecord& record) {
  const std::string_view name = trim(systemName);
  const auto folderName = [](std::string_view text) { return fitFileName(gSafeFileName(text), kWorkFolderEnding); };
  record.workFolder = gPathJoin(session.gDataFolder, name.empty() ? "TableLayout" : folderName(name));
  record.tempWorkFolder =
      gPathJoin(userTempFolder(host.machine).string(), folderName(name.empty() ? "tempQuillmarden" : name));
}

/// A moment as the screens show it; text that is none stands as it is.
std::string minuteText(std::string_view moment) {
  const auto parsed = parseDateTime(moment);
  return parsed ? formatDateTime(*parsed, "yyyy/mm/dd hh:nn") : std::string(moment);
}

void readRecord(const Recordset& row, SystemRecord& record) {
  // An older file may lack any of the later columns.
  const auto text = [&](std::string_view column) {
    const int index = row.fieldIndex(column);
    return index < 0 ? std::string() : std::string(row.text(index));
  };
  const auto number = [&](std::string_view column) {
    const int index = row.fieldIndex(column);
    return index < 0 ? 0L : static_cast<long>(row.integer(index));
  };
  const auto flag = [&](std::string_view column) { return number(column) != 0; };

  record.id = number("ID");
  record.name = text("システム名");
  record.description = text("概要");
  record.createdAt = minuteText(text("作成年月日"));
  record.updatedAt = minuteText(text("更新年月日"));
  record.owner = text("作成者");
  record.editAllowed = flag("修正許可");
  record.userLimit = static_cast<int>(number("ユーザー制限"));
  record.hidden = flag("出力しない");
  record.connectDb = text("ConnectDatabsse");
  record.odbcSource = text("ODBCSouce");
  record.dbUser = text("Username");
  record.dbPassword = text("PassWord");
  record.databaseType = text("Databasetype");
  record.blockSize = number("db_block_size");
  record.tableSpace = text("TableSpace");
  record.indexSpace = text("IndexSpace");
  record.formatFile = text("書式ファイル名");
  record.accessFile = text("AccessFileName");
  record.tableNarrow = flag("bolTableNarrow");
  record.tableUpper = flag("table_name_ucase");
  record.fieldLower = flag("field_name_lcase");
  record.fieldUpper = flag("field_name_ucase");
  record.fieldAsTyped = flag("field_name_astyped");
  record.fieldNarrow = flag("narrow_flg");
  record.ryakuLower = flag("bolryakulower");
  record.ryakuDelMoji = flag("bolryakudelmoji");
  record.replaceJpnSpace = flag("replacejpnspace");
  record.fileLinkCopy = flag("filelinkcopy");
}

/// The tables that name their System, in the order of a rename.
constexpr std::string_view kTablesOfSystems[] = {"DAT_DOMAINCHANGE",
                                                 "DAT_REFERENCE",
                                                 "DAT_TABLEREF",
                                                 "MAS_DIVISION",
                                                 "MAS_DIVISIONDETAILES",
                                                 "MAS_DOMAIN",
                                                 "MAS_KENSU",
                                                 "MAS_SYSTEM",
                                                 "MAS_TABLEBIKO",
                                                 "MAS_TABLEINFO",
                                                 "ORA_SERCH_INFO",
                                                 "ORA_USER_COL_COMMENTS",
                                                 "ORA_USER_CONSTRAINTS",
                                                 "ORA_USER_FREE_SPACE",
                                                 "ORA_USER_IND_COLUMNS",
                                                 "ORA_USER_INDEXES",
                                                 "ORA_USER_OBJECTS",
                                                 "ORA_USER_TAB_COLUMNS",
                                                 "ORA_USER_TAB_COMMENTS",
                                                 "ORA_USER_TABLES",
                                                 "ORA_USER_TABLESPACES"};

}  // namespace

bool definesDatabase(const SystemRecord& record) {
  const std::string_view text = trim(record.connectDb);
  return isNumeric(text) ? gVal(text) != 0 : !text.empty() && !equalsNoCase(text, "False");
}

bool gMDB_GetSystemInfo(Session& session, Host& host, std::string_view systemName, SystemRecord& record) {
  record = {};
  setWorkFolders(session, host, systemName, record);
  try {
    const Recordset row = session.gDB->openRecordset(
        std::string("Select *  From MAS_SYSTEM  Where システム名 = ").append(sqlText(systemName)).append(";"));
    if (row.eof()) {
      session.log.gPutLog(host, std::string("gMDB_GetSystemInfo Not Record:").append(systemName));
      return false;
    }
    readRecord(row, record);
    return true;
  } catch (const EngineError& error) {
    session.log.putError(host, std::string("gMDB_GetSystemInfo:").append(systemName), error.number(), error.what());
    return false;
  }
}

bool gChkSystemName2Exists(Session& session, std::string_view name, long id) {
  return !session.gDB
              ->openRecordset(std::string("Select * From MAS_SYSTEM  Where システム名 = ")
                                  .append(sqlText(name))
                                  .append("  And ID <> ")
                                  .append(std::to_string(id)))
              .eof();
}

bool pMDB_UpdateSystemName(Session& session, Host& host, std::string_view oldName, std::string_view newName) {
  try {
    for (const std::string_view table : kTablesOfSystems) {
      if (!session.gDB->tableDef(table)) continue;
      session.gDB->execute(std::string("Update ")
                               .append(table)
                               .append(" SET  システム名 = ")
                               .append(sqlText(newName))
                               .append("  WHERE システム名 = ")
                               .append(sqlText(oldName))
                               .append(" "));
    }
    return false;
  } catch (const EngineError& error) {
    gMsgBox(host, joinLines({"pMDB_UpdateSystemName.でエラーがありました.", error.what()}), kStopIcon);
    return true;
  }
}

std::vector<std::string> gGetSystemList(Session& session) {
  std::vector<std::string> names;
  // Other tools leave the flag Null, which hides nothing.
  Recordset rows = session.gDB->openRecordset(
      "Select システム名 From MAS_SYSTEM  Where (出力しない = 0 Or 出力しない Is Null) Order by システム名 ");
  for (; !rows.eof(); rows.moveNext()) names.emplace_back(rows.text(0));
  return names;
}

bool selectSystem(Session& session, Host& host, std::string_view systemName) {
  SystemRecord record;
  const bool found = gMDB_GetSystemInfo(session, host, systemName, record);
  session.gCurrentSystemName = systemName;
  if (!found) {
    // The former record stays, but nothing may be written in the name of this System.
    session.gCurrentSystem.workFolder = record.workFolder;
    session.gCurrentSystem.tempWorkFolder = record.tempWorkFolder;
    session.gCurrentSystemId = 0;
    session.gCurrentDbType.clear();
    session.gCanEdit = false;
    return false;
  }
  session.gCanEdit = static_cast<bool>(mayChangeSystem(session, record));
  session.gCurrentSystemId = record.id;
  session.gCurrentDbType = record.databaseType;
  session.gCurrentSystem = std::move(record);
  return true;
}

}  // namespace quillmarden
