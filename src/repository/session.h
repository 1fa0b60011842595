#pragma once

#include <memory>
#include <optional>
#include <string>

#include "common/ini_file.h"
#include "common/log.h"
#include "common/settings.h"
#include "engine/database.h"
#include "repository/system_record.h"
#include "repository/type_catalogue.h"

namespace quillmarden {

/// What a login leaves to all screens and commands. Handed to what needs it; there is one a process.
struct Session {
  std::unique_ptr<Database> gDB;  ///< open from login to log-off
  std::string gLoginUser;
  std::string gDbFileName;     ///< bare file name of the Repository
  std::string gDbFolder;       ///< its folder
  std::string gDbServerLabel;  ///< "(local)" or "(server)"
  int gReferenceDataBase = 0;
  bool gIsGuest = false;
  int gSessionState = 0;  ///< 0 before login, 1 after it, 2 after too many attempts
  std::string gDataFolder;
  std::string gInfoFolder;
  std::string gIniFile;
  bool gKeepLog = false;
  bool outputsStay = false;  ///< what is made in work folders is never swept: of the command line
  SystemRecord gCurrentSystem;
  std::string gCurrentSystemName;
  long gCurrentSystemId = 0;
  std::string gCurrentDbType;
  bool gCanEdit = false;

  std::optional<IniFile> ini;  ///< gIniFile, read
  AppSettings settings;
  Log log;
  TypeCatalogue catalogue;  ///< loaded by its first look-up
};

/// The session's ini file and settings, read anew from the data folders of this machine; makes the folders.
void openUserData(Session& session, Host& host);

}  // namespace quillmarden
