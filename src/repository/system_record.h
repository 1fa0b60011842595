#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "screen/host.h"

namespace quillmarden {

struct Session;

/// The entry of CmbSystem that stands for the tables that all Systems share, and the one for a new System.
inline constexpr std::string_view kAllSystems = "<全システム共通>";
inline constexpr std::string_view kNewSystem = "<新しいシステム>";

/// A MAS_SYSTEM row in memory. A column that is Null or missing in an older file reads as 0 or blank.
struct SystemRecord {
  long id = 0;
  std::string name;
  std::string description;
  std::string createdAt;  ///< "yyyy/mm/dd hh:nn"
  std::string updatedAt;
  std::string owner;
  bool editAllowed = false;
  int userLimit = 0;    ///< 0 all users, 1 the one who made it, 2 administrators
  bool hidden = false;  ///< kept out of the table list
  std::string connectDb;
  std::string odbcSource;  ///< of PostgreSQL: the schema
  std::string dbUser;
  std::string dbPassword;
  std::string databaseType;
  long blockSize = 0;
  std::string tableSpace;  ///< of SQL Server: the schema
  std::string indexSpace;
  std::string formatFile;
  std::string accessFile;
  bool tableNarrow = false;
  bool tableUpper = false;
  bool fieldLower = false;
  bool fieldUpper = false;
  bool fieldAsTyped = false;  ///< names of fields keep their letters; the two cases win over it where one is set
  bool fieldNarrow = false;
  bool ryakuLower = false;
  bool ryakuDelMoji = false;
  bool replaceJpnSpace = false;
  bool fileLinkCopy = false;
  std::string workFolder;      ///< this System's folder under the user's data
  std::string tempWorkFolder;  ///< this System's folder under the temporary folder, where scripts go
};

/// Whether the record names a live database: other tools note one as -1, as True or by its name.
bool definesDatabase(const SystemRecord& record);

/// Reads the row. False when there is none (also logged); the record then holds its work folders alone.
bool gMDB_GetSystemInfo(Session& session, Host& host, std::string_view systemName, SystemRecord& record);

/// Whether a different row has this name.
bool gChkSystemName2Exists(Session& session, std::string_view name, long id);

/// Gives the System a new name in every table that has one. True on failure, with the message shown.
/// Does not run as one transaction.
bool pMDB_UpdateSystemName(Session& session, Host& host, std::string_view oldName, std::string_view newName);

/// The names of the shown Systems, sorted.
std::vector<std::string> gGetSystemList(Session& session);

/// Makes the System current: gCurrentSystem, gCurrentSystemName, gCurrentSystemId, gCurrentDbType, gCanEdit.
/// False when there is no such row.
bool selectSystem(Session& session, Host& host, std::string_view systemName);

}  // namespace quillmarden
