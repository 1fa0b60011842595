#include "repository/login.h"

#include <algorithm>
#include <array>

#include "common/list_file.h"
#include "common/message.h"
#include "common/paths.h"
#include "common/text.h"
#include "common/work_folders.h"
#include "engine/sql_text.h"
#include "repository/rights.h"
#include "repository/upgrade.h"

namespace quillmarden {
namespace {

namespace fs = std::filesystem;

/// The file that a typed or listed name stands for. The list shows names in lower case, so a name that is not there
/// letter for letter may be there in another case. Nothing when there is no such file.
std::optional<fs::path> existingFile(std::string_view folder, std::string_view file) {
  const fs::path path = toPath(trim(folder).empty() ? trim(file) : std::string_view(gPathJoin(folder, file)));
  std::error_code error;
  if (fs::exists(path, error)) return path;
  const std::string wanted = toLower(path.filename().string());
  const fs::path parent = path.has_parent_path() ? path.parent_path() : fs::path(".");
  for (fs::directory_iterator entry(parent, error), end; !error && entry != end; entry.increment(error))
    if (toLower(entry->path().filename().string()) == wanted) return entry->path();
  return std::nullopt;
}

bool hasDatabaseEnding(std::string_view file) {
  const std::string upper = toUpper(file);
  return upper.find(".MDB") != std::string::npos || upper.find(".MDE") != std::string::npos;
}

/// The same with the ending that a name without one gets. A file that bears just the typed name is taken when there
/// is none with the ending.
std::optional<fs::path> databaseFile(std::string_view folder, std::string_view file) {
  if (!hasDatabaseEnding(file))
    if (auto found = existingFile(folder, std::string(trim(file)).append(".mdb"))) return found;
  return existingFile(folder, file);
}

void closeDatabase(Session& session) { session.gDB.reset(); }

/// Notes the time of the login. A guest's is nobody's, and a reader leaves none. While another program writes, the
/// login goes on without it: nothing that a person wants to look at waits for a stamp.
void stampLogin(Host& host, Database& database, Recordset& user, std::string_view name) {
  if (equalsNoCase(name, "guest") || database.readOnly()) return;
  database.setWaiting(false);
  try {
    user.edit();
    user.set("ログオン日付", formatDateTime(host.clock.now(), "yyyy/mm/dd hh:nn:ss"));
    user.update();
  } catch (const EngineError& error) {
    database.setWaiting(true);
    if (error.number() != engine_error::kLocked) throw;
  }
  database.setWaiting(true);
}

}  // namespace

void showDatabaseError(Host& host, std::string_view file, std::string_view error) {
  gMsgBox(host,
          joinLines({std::string("DataBaseFile ").append(file).append("が不正です｡"),
                     "DataBaseFileをチェックして下さい｡", "エラーの内容は", error, "です..."}),
          kStopIcon, "DataBaseFileの確認");
}

bool gOpenAccessFile(Host& host, std::string_view folder, std::string_view file, std::unique_ptr<Database>& database,
                     std::string_view /*password: this engine's files have none*/) {
  const auto path = databaseFile(folder, file);
  if (!path) return false;
  try {
    database = std::make_unique<Database>(Database::open(path->string()));
    return true;
  } catch (const EngineError& error) {
    showDatabaseError(host, file, error.what());
    return false;
  }
}

bool gChkRepositoryTables(Database& database) {
  static constexpr std::array<std::string_view, 12> kRequired = {
      "MAS_DIVISION", "MAS_DIVISIONDETAILES", "MAS_DOMAIN",        "MAS_FILE",     "MAS_FILETYPE",  "MAS_HOST",
      "MAS_SYSTEM",   "MAS_TABLEBIKO",        "MAS_TABLEDETAILES", "MAS_TABLEHIS", "MAS_TABLEINFO", "MAS_USER"};
  return std::all_of(kRequired.begin(), kRequired.end(),
                     [&](std::string_view name) { return database.tableDef(name) != nullptr; });
}

bool gChkLoginUser(Session& session, Host& host, std::string_view userName, bool& isAdmin, Database& database) {
  isAdmin = false;
  session.gIsGuest = false;
  bool accepted = false;
  try {
    // The name goes in as typed: a quote in it breaks this statement, and what the row says is not believed before
    // it is held against the name.
    Recordset user = database.openRecordset(
        std::string("Select * From MAS_USER Where ユーザー名 = ").append(asTyped(userName)).append("; "));
    if (!user.eof() && equalsNoCase(user.text("ユーザー名"), userName)) {
      accepted = true;
      const int group = user.fieldIndex("グループ");
      isAdmin = group >= 0 && toUpper(user.text(group)) == "ADMIN";
      stampLogin(host, database, user, userName);
    }
  } catch (const EngineError& error) {
    // A known user gets in even where the time of the login can't be noted, on a full disk for one.
    showDatabaseError(host, fs::path(database.path()).filename().string(), error.what());
  }
  if (toLower(userName) == "guest") {
    session.gIsGuest = true;
    isAdmin = false;
    accepted = true;
  }
  return accepted;
}

bool gConnectRepository(Session& session, Host& host, bool useFolder, std::string_view folder,
                        std::string_view fileName, std::string_view userName, std::string& message, bool& isAdmin) {
  closeDatabase(session);
  isAdmin = false;
  const std::string place = useFolder ? std::string(folder) : host.machine.programFolder.string();
  if (!databaseFile(place, fileName)) {
    message = "データベースファイルが存在しない.";
    return false;
  }
  if (!gOpenAccessFile(host, place, fileName, session.gDB)) {
    message = "データベースに接続できませんでした.";
    return false;
  }
  try {
    if (!gChkRepositoryTables(*session.gDB)) {
      message = "指定のデータベースは\nQuillmarden形式でないようです.";
      return false;
    }
    if (!gChkLoginUser(session, host, userName, isAdmin, *session.gDB)) {
      closeDatabase(session);
      message = "ユーザー名が未登録です.\n管理者に確認してください.";
      return false;
    }
  } catch (const EngineError& error) {
    closeDatabase(session);
    showDatabaseError(host, fileName, error.what());
    message = "データベースに接続できませんでした.";
    return false;
  }
  message.clear();
  return true;
}

void beginSession(Session& session, Host& host, std::string_view userName, std::string_view folder,
                  std::string_view fileName, frmLogInNew* screen, bool sweep) {
  const auto show = [&](std::string_view text) {
    if (!screen) return;
    screen->lblMsg.caption = text;
    host.dialogs.yield();
  };
  show("初期化中です...");
  session.gLoginUser = trim(userName);
  session.gDbFileName = trim(fileName);
  session.gDbFolder =
      trim(folder).empty() ? fs::absolute(session.gDB->path()).parent_path().string() : std::string(trim(folder));
  std::error_code ignored;
  const bool local = fs::equivalent(toPath(session.gDbFolder), host.machine.programFolder, ignored);
  session.gDbServerLabel = local ? "(local)" : std::string("(").append(gGetServerName(session.gDbFolder)).append(")");
  session.gReferenceDataBase = (screen ? screen->ChkDataBase.value : !local) ? 1 : 0;
  session.catalogue = {};
  session.gCurrentSystem = {};
  session.gCurrentSystemName.clear();
  session.gCurrentSystemId = 0;
  session.gCurrentDbType.clear();
  session.gCanEdit = false;

  // Whoever may only look gets the file as it is.
  if (mayWrite(session)) upgradeRepository(session, host);
  show("整合性確認中です...");
  show("起動準備中です...");
  const fs::path work = toPath(gPathJoin(session.gDataFolder, "TempTemp_-_-"));
  if (sweep) removeWorkFolders(host, work);
  if (!fs::is_directory(work, ignored)) gMakeFolder(work.string());
  if (screen) saveLogInChoices(session, *screen);
  session.gSessionState = 1;
  session.log.gPutLog(host, "LOGON:" + session.gLoginUser + "/" + session.gDB->path());
}

void logOff(Session& session, Host& /*host*/) {
  closeDatabase(session);
  session.gLoginUser.clear();
  session.gDbFileName.clear();
  session.gIsGuest = false;
  session.gSessionState = 0;
  session.gCurrentSystem = {};
  session.gCurrentSystemName.clear();
  session.gCurrentSystemId = 0;
  session.gCurrentDbType.clear();
  session.gCanEdit = false;
  session.catalogue = {};
}

void endProgram(Session& session, Host& host) {
  session.log.finish(host, session.gKeepLog);
  removeWorkFolders(host);
  Log::prune(host);
}

}  // namespace quillmarden
