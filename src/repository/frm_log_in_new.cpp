#include <algorithm>

#include "common/form_settings.h"
#include "common/list_file.h"
#include "common/message.h"
#include "common/paths.h"
#include "common/text.h"
#include "repository/login.h"
#include "repository/schema.h"

namespace quillmarden {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kForm = "frmLogInNew";
constexpr int kMaxFailedAttempts = 4;
constexpr std::size_t kMaxEntries = 101;

void sortRows(ListBox& list) {
  std::vector<std::string> rows = std::move(list.rows);
  std::sort(rows.begin(), rows.end(), [](const std::string& left, const std::string& right) {
    const std::string a = toLower(left), b = toLower(right);
    return a != b ? a < b : left < right;
  });
  list.clear();
  for (std::string& row : rows) list.add(std::move(row));
}

bool contains(const ListBox& list, std::string_view text) {
  return std::find(list.rows.begin(), list.rows.end(), text) != list.rows.end();
}

void refillDatabases(Session& session, Host& host, frmLogInNew& screen) {
  gListDataBaseFiles(session, host, screen.ChkDataBase.value, screen.LstFolder.text(), screen.LstDb,
                     screen.chkAllFile.value);
  screen.lblNoRepository.visible = screen.LstDb.count() == 0;
}

void addFolder(Session& session, Host& host, frmLogInNew& screen, std::string_view folder) {
  const std::string_view trimmed = trim(folder);
  if (trimmed.empty()) return;
  const bool isNew = !contains(screen.LstFolder, trimmed);
  gAddList(screen.LstFolder, trimmed, true);
  if (isNew) gFolderList2File(session, screen.LstFolder, true);
  refillDatabases(session, host, screen);
}

/// Most logins choose what the last one did, and a file that stays as it is need not be written.
void putIfChanged(IniFile& ini, std::string_view key, std::string_view value) {
  if (gGetAppSetting(ini, key) != value) putAppSetting(ini, key, value);
}

std::string_view flagText(const CheckBox& box) { return box.value ? "1" : "0"; }

/// One more attempt that did not succeed. The screen can be used again.
bool refuse(Host& host, frmLogInNew& screen, std::string_view message, std::string_view focus = {}) {
  gMsgBox(host, message);
  screen.focus = focus;
  ++screen.failedAttempts;
  screen.cmdOK.enabled = screen.cmdCancel.enabled = true;
  screen.PicMsg.visible = false;
  return false;
}

}  // namespace

void frmLogInNew_Load(Session& session, Host& host, frmLogInNew& screen) {
  openUserData(session, host);
  screen.caption = "ログイン ver " + gGetVersion();
  screen.lblNoRepository.caption = "データベースがありません. [新規作成]で作成できます.";
  screen.lblNoRepository.visible = false;
  screen.txtUserName.text = session.settings.loninUserName.empty() ? "admin" : session.settings.loninUserName;

  gFolderList2File(session, screen.LstFolder, false);
  sortRows(screen.LstFolder);
  const std::string folder =
      session.settings.dataBaseFolder.empty() ? host.machine.programFolder.string() : session.settings.dataBaseFolder;
  gAddList(screen.LstFolder, folder, true);

  screen.ChkDataBase.value = session.settings.referenceDataBase;
  screen.CmdRef.enabled = screen.LstFolder.enabled = screen.ChkDataBase.value;
  screen.chkAllFile.value = session.settings.allFileSearch;
}

void frmLogInNew_Activate(Session& session, Host& host, frmLogInNew& screen) {
  screen.lblMsg.caption = "ファイルリストの取得中...";
  screen.PicMsg.visible = true;
  host.dialogs.yield();
  refillDatabases(session, host, screen);
  screen.PicMsg.visible = false;
  gControlSetting(*session.ini, kForm, "LstDb", &screen.LstDb);
}

void chooseRepository(Session& session, Host& host, frmLogInNew& screen, std::string_view file, std::string_view user) {
  if (!trim(user).empty()) screen.txtUserName.text = trim(user);
  if (trim(file).empty()) return;
  const fs::path path = toPath(trim(file));
  const std::string name = toLower(path.filename().string());
  gAddList(screen.LstFolder, path.parent_path().string(), true);
  screen.ChkDataBase.value = true;
  if (!name.ends_with(".mdb")) screen.chkAllFile.value = true;
  ChkDataBase_Click(session, host, screen);
  if (contains(screen.LstDb, name)) gAddList(screen.LstDb, name, true);
}

void gListDataBaseFiles(Session& /*session*/, Host& host, bool useFolder, std::string_view folder, ListBox& list,
                        bool allFiles) {
  list.clear();
  const std::string place = useFolder ? std::string(trim(folder)) : host.machine.programFolder.string();
  if (place.empty()) return;

  std::vector<std::string> names;
  std::error_code error;
  for (fs::directory_iterator entry(toPath(place), error), end; !error && entry != end; entry.increment(error)) {
    std::error_code ignored;
    std::string name = toLower(entry->path().filename().string());
    if (entry->is_directory(ignored) || !(allFiles || name.ends_with(".mdb"))) continue;
    names.push_back(std::move(name));
  }
  if (error) {
    gMsgBox(host,
            joinLines({"データベースリスト取得に失敗しました.", "指定フォルダ", place,
                       "指定フォルダにアクセスできませんでした.", " " + error.message(), "のエラーがありました."}));
    return;
  }

  // A folder hands its entries out in any order; sorted, those that the limit leaves are the same each time.
  std::sort(names.begin(), names.end());
  if (names.size() > kMaxEntries) names.resize(kMaxEntries);
  std::string before;
  for (std::string& name : names) {
    // The first literal has a capital and so matches no name in lower case: the default Repository is listed.
    const bool skip = name == "tableInf.mdb" || name == "er図.mdb" || name == before;
    before = name;
    if (!skip) list.add(std::move(name));
  }
  if (list.count() == 0) return;
  list.listIndex = 0;
  list.selected.front() = true;
}

void gFolderList2File(Session& session, ListBox& list, bool write) {
  const fs::path file = toPath(gPathJoin(session.gInfoFolder, "MdbServer.lst"));
  if (write) {
    writeListFile(file, list.rows);
    return;
  }
  list.clear();
  for (std::string& folder : readListFile(file)) list.add(std::move(folder));
}

void ChkDataBase_Click(Session& session, Host& host, frmLogInNew& screen) {
  screen.CmdRef.enabled = screen.LstFolder.enabled = screen.ChkDataBase.value;
  refillDatabases(session, host, screen);
}

void chkAllFile_Click(Session& session, Host& host, frmLogInNew& screen) { refillDatabases(session, host, screen); }

void LstFolder_Click(Session& session, Host& host, frmLogInNew& screen) { refillDatabases(session, host, screen); }

void CmdRef_Click(Session& session, Host& host, frmLogInNew& screen) {
  std::string chosen;
  if (gBrowseFolder(host, chosen)) addFolder(session, host, screen, chosen);
}

void CmdRef_Click(Session& session, Host& host, frmLogInNew& screen, std::string_view chosenFolder) {
  addFolder(session, host, screen, chosenFolder);
}

void LstFolder_Drop(Session& session, Host& host, frmLogInNew& screen, const std::vector<std::string>& paths) {
  if (paths.empty()) return;
  if (paths.size() > 1) {
    gMsgBox(host, "複数は追加できません..");
    return;
  }
  const std::string& dropped = paths.front();
  if (!gChkFolder(dropped)) {
    std::error_code error;
    const bool exists = fs::exists(toPath(dropped), error);
    // The attributes of a plain file, or of nothing that can be read.
    gMsgBox(host, joinLines({"ファイルは追加できません.", " File : " + dropped,
                             std::string(" Code : ").append(exists && !error ? "32" : "-1")}));
    return;
  }
  addFolder(session, host, screen, dropped);
}

void objMenuDel1_Click(Session& session, Host& host, frmLogInNew& screen) {
  ListBox& folders = screen.LstFolder;
  if (folders.listIndex < 0 || folders.listIndex >= folders.count()) return;
  if (gMsgBox(host, "選択フォルダを削除します.", kYesNo | kQuestionIcon | kDefaultSecond) != kYes) return;
  std::vector<std::string> rows = folders.rows;
  rows.erase(rows.begin() + folders.listIndex);
  folders.clear();
  for (std::string& row : rows) folders.add(std::move(row));
  gFolderList2File(session, folders, true);
  refillDatabases(session, host, screen);
}

void objMnuOpenFolder_Click(Host& host, frmLogInNew& screen) {
  if (!trim(screen.LstFolder.text()).empty()) host.opener.openFolder(toPath(screen.LstFolder.text()));
}

bool CmdNewRepository_Click(Session& session, Host& host, frmLogInNew& screen) {
  const std::string place =
      screen.ChkDataBase.value ? std::string(trim(screen.LstFolder.text())) : host.machine.programFolder.string();
  if (!host.dialogs.newFile) return false;
  std::string file(trim(host.dialogs.newFile("新しいデータベース", toPath(gPathJoin(place, "tableInf.mdb")))));
  if (file.empty()) return false;
  // The rule by which a login finds a file that was named without its ending.
  const std::string upper = toUpper(toPath(file).filename().string());
  if (upper.find(".MDB") == std::string::npos && upper.find(".MDE") == std::string::npos) file += ".mdb";
  std::error_code ignored;
  if (fs::symlink_status(toPath(file), ignored).type() != fs::file_type::not_found) {
    gMsgBox(host, joinLines({"既に同じ名前のファイルが存在します.", " " + file}), kOkOnly | kWarningIcon);
    return false;
  }
  const std::string user(trim(screen.txtUserName.text));
  try {
    createRepository(file, {user == "guest" ? "" : user});
  } catch (const EngineError& error) {
    session.log.putError(host, "CmdNewRepository", error.number(), error.what());
    gMsgBox(host, joinLines({"データベースを作成できませんでした.", " " + file, " " + std::string(error.what())}),
            kOkOnly | kStopIcon);
    return false;
  }
  chooseRepository(session, host, screen, file, "");
  gFolderList2File(session, screen.LstFolder, true);
  gMsgBox(host, joinLines({"データベースを作成しました.", " " + file}), kOkOnly | kInformationIcon);
  return true;
}

bool CmdReplica_Click(Host& host) {
  const fs::path program = host.machine.programFolder / "Vellomark.exe";
  std::error_code error;
  if (!fs::exists(program, error)) {
    gMsgBox(host, "初期データベース作成プログラムが存在ません.", kOkOnly, "入手して!!");
    return false;
  }
  if (gMsgBox(host, "初期データベース作成を行います.\nQuillmardenを一旦終了します.", kYesNo | kQuestionIcon,
              "終了確認") != kYes)
    return false;
  return host.opener.startProgram(program);
}

bool cmdOK_Click(Session& session, Host& host, frmLogInNew& screen) {
  if (screen.failedAttempts >= kMaxFailedAttempts) {
    gMsgBox(host, "ログイン回数を超えました.\nプログラムを終了します.");
    session.gSessionState = 2;
    session.log.finish(host, session.gKeepLog);
    screen.unloaded = true;
    return false;
  }
  const std::string file(trim(screen.LstDb.text()));
  if (file.empty()) return refuse(host, screen, "接続先ファイルが未設定です.", "LstDb");
  screen.cmdOK.enabled = screen.cmdCancel.enabled = false;
  const std::string user(trim(screen.txtUserName.text));
  if (user.empty()) return refuse(host, screen, "ユーザー名が未入力です.", "txtUserName");

  screen.lblMsg.caption = "Accessを開いています...";
  screen.PicMsg.visible = true;
  host.dialogs.yield();
  const bool useFolder = screen.ChkDataBase.value;
  const std::string folder(screen.LstFolder.text());
  std::string message;
  bool isAdmin = false;
  if (!gConnectRepository(session, host, useFolder, folder, file, user, message, isAdmin))
    return refuse(host, screen, message);

  beginSession(session, host, user, useFolder ? folder : host.machine.programFolder.string(), file, &screen);
  screen.PicMsg.visible = false;
  screen.unloaded = true;
  return true;
}

void saveLogInChoices(Session& session, frmLogInNew& screen) {
  const std::string folder(trim(screen.LstFolder.text()));
  IniFile& ini = *session.ini;
  putIfChanged(ini, "DataBaseFolder", folder);
  putIfChanged(ini, "ReferenceDataBase", flagText(screen.ChkDataBase));
  putIfChanged(ini, "AllFileSearch", flagText(screen.chkAllFile));
  putIfChanged(ini, "LoninUserName", session.gLoginUser);
  putControlSetting(ini, kForm, "LstFolder", &screen.LstFolder);
  putControlSetting(ini, kForm, "LstDb", &screen.LstDb);
  putControlSetting(ini, kForm, "txtUserName", &screen.txtUserName);
  session.settings.dataBaseFolder = folder;
  session.settings.referenceDataBase = screen.ChkDataBase.value;
  session.settings.allFileSearch = screen.chkAllFile.value;
  session.settings.loninUserName = session.gLoginUser;
}

void cmdCancel_Click(Session& session, Host& host, frmLogInNew& screen) {
  session.log.finish(host, session.gKeepLog);
  screen.unloaded = true;
}

}  // namespace quillmarden
