#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "repository/session.h"
#include "screen/controls.h"
#include "screen/host.h"

namespace quillmarden {

/// The login screen.
struct frmLogInNew {
  std::string caption;
  ListBox LstFolder;
  ListBox LstDb;
  TextBox txtUserName;
  CheckBox ChkDataBase;
  CheckBox chkAllFile;
  Button CmdRef;
  Button CmdReplica;
  Button CmdNewRepository;
  Label lblNoRepository;  ///< seen where LstDb is empty
  Button cmdOK;
  Button cmdCancel;
  Picture PicMsg;
  Label lblMsg;
  std::string_view focus;  ///< the control that the last message was about; the view goes there and clears it
  int failedAttempts = 0;
  bool unloaded = false;  ///< the screen is done: logged in, cancelled, or too many attempts
};

/// Fills the screen from the settings: name, folders, switches. Makes the data folders.
void frmLogInNew_Load(Session& session, Host& host, frmLogInNew& screen);
/// First activation: fills LstDb and restores its selection.
void frmLogInNew_Activate(Session& session, Host& host, frmLogInNew& screen);

/// Puts a Repository and a user that the program was started with on the screen; an empty text leaves what is there.
/// Nothing of it is kept before the login.
void chooseRepository(Session& session, Host& host, frmLogInNew& screen, std::string_view file, std::string_view user);

/// The Repository files of the chosen folder, in lower case, at most 101 directory entries looked at.
void gListDataBaseFiles(Session& session, Host& host, bool useFolder, std::string_view folder, ListBox& list,
                        bool allFiles);
/// Reads or writes MdbServer.lst.
void gFolderList2File(Session& session, ListBox& list, bool write);

void ChkDataBase_Click(Session& session, Host& host, frmLogInNew& screen);
void chkAllFile_Click(Session& session, Host& host, frmLogInNew& screen);
void LstFolder_Click(Session& session, Host& host, frmLogInNew& screen);
/// Asks for a folder and adds it.
void CmdRef_Click(Session& session, Host& host, frmLogInNew& screen);
/// Adds a folder that was chosen; "" for none.
void CmdRef_Click(Session& session, Host& host, frmLogInNew& screen, std::string_view chosenFolder);
void LstFolder_Drop(Session& session, Host& host, frmLogInNew& screen, const std::vector<std::string>& paths);
void objMenuDel1_Click(Session& session, Host& host, frmLogInNew& screen);
void objMnuOpenFolder_Click(Host& host, frmLogInNew& screen);
/// Asks for a file and makes an initial Repository of it, with the administrator and the user on the screen; a name
/// without an ending gets ".mdb", a file that is there is refused. It is then the chosen one. True when it was made.
bool CmdNewRepository_Click(Session& session, Host& host, frmLogInNew& screen);
/// Starts the sibling that makes initial Repositories. True when this program is to end.
bool CmdReplica_Click(Host& host);
/// The login with its messages, counted attempts, upgrade steps and saved choices. True when logged in.
bool cmdOK_Click(Session& session, Host& host, frmLogInNew& screen);
void cmdCancel_Click(Session& session, Host& host, frmLogInNew& screen);
/// Keeps what this login chose for the next one.
void saveLogInChoices(Session& session, frmLogInNew& screen);

/// Opens and checks a Repository and its user. On false, `message` is the text for the user and nothing stays open,
/// save where a file that is no Repository keeps open until the next attempt.
bool gConnectRepository(Session& session, Host& host, bool useFolder, std::string_view folder,
                        std::string_view fileName, std::string_view userName, std::string& message, bool& isAdmin);
/// The one routine that opens a Repository or Access file. False after its message; a missing file gives none.
bool gOpenAccessFile(Host& host, std::string_view folder, std::string_view file, std::unique_ptr<Database>& database,
                     std::string_view password = "");
/// What is told of a file that cannot be opened or fails in a way that no step expects.
void showDatabaseError(Host& host, std::string_view file, std::string_view error);
/// Whether the file has the twelve tables that make a Repository.
bool gChkRepositoryTables(Database& database);
/// Whether the user may enter; notes the time of the login in the user's row.
bool gChkLoginUser(Session& session, Host& host, std::string_view userName, bool& isAdmin, Database& database);

/// What follows a successful connection: upgrade, leftover folders, work folder, log line, state. Used by the screen
/// and by the command line. Without `sweep` the work folders of earlier sessions stay: a script that one command has
/// made must outlive the login of the next.
void beginSession(Session& session, Host& host, std::string_view userName, std::string_view folder,
                  std::string_view fileName, frmLogInNew* screen = nullptr, bool sweep = true);
/// Closes the Repository and clears the state; the program can log in again.
void logOff(Session& session, Host& host);
/// The end of the program: log, leftover folders, old logs.
void endProgram(Session& session, Host& host);

}  // namespace quillmarden
