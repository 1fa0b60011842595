#include "repository/login.h"

#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <fstream>

#include "repository_fixture.h"

namespace quillmarden {
namespace {

namespace fs = std::filesystem;

class Login : public RepositoryTest {
 protected:
  /// Tries to connect and gives the message for the user, "" on success.
  std::string tryFile(const std::string& name, std::string_view user = "admin") {
    std::string message;
    gConnectRepository(session, scripted.host, true, programFolder(), name, user, message, isAdmin);
    return message;
  }

  /// A file that does not open: the first message tells why, in its own words.
  void expectUnreadable(const std::string& name, const std::string& why) {
    scripted.messages.clear();
    scripted.answerAll(kOk);
    EXPECT_EQ(tryFile(name), "データベースに接続できませんでした.") << name;
    ASSERT_EQ(scripted.messages.size(), 1u) << name;
    EXPECT_TRUE(scripted.messages[0].starts_with("DataBaseFileの確認|DataBaseFile " + name + "が不正です｡\n"));
    EXPECT_NE(scripted.messages[0].find(why), std::string::npos) << scripted.messages[0];
    EXPECT_FALSE(session.gDB);
  }

  void write(const std::string& name, const std::string& bytes) {
    std::ofstream(scripted.host.machine.programFolder / name, std::ios::binary) << bytes;
  }

  bool isAdmin = false;
};

TEST_F(Login, FilesThatAreNoRepository) {
  EXPECT_EQ(tryFile("missing.mdb"), "データベースファイルが存在しない.");

  fs::create_directory(scripted.host.machine.programFolder / "folder.mdb");
  expectUnreadable("folder.mdb", "");
  write("text.mdb", std::string(5000, 'x'));
  expectUnreadable("text.mdb", "");
  write("access.mdb", std::string("\0\1\0\0Standard Jet DB\0", 20) + std::string(4000, '\0'));
  expectUnreadable("access.mdb", "Access");

  { Database::create(file()).execute("CREATE TABLE MAS_SYSTEM (ID LONG)"); }
  EXPECT_EQ(tryFile("tableinf.mdb"), "指定のデータベースは\nQuillmarden形式でないようです.");
  write("empty.mdb", "");
  EXPECT_EQ(tryFile("empty.mdb"), "指定のデータベースは\nQuillmarden形式でないようです.");
}

TEST_F(Login, DamagedRepository) {
  { createRepository(file()); }
  const auto size = fs::file_size(file());
  {
    std::fstream damaged(file(), std::ios::in | std::ios::out | std::ios::binary);
    damaged.seekp(100);
    damaged << std::string(static_cast<std::size_t>(size) - 100, '\x5a');
  }
  expectUnreadable("tableinf.mdb", "");
}

TEST_F(Login, NamesWithoutEndingOrInAnotherCase) {
  { createRepository(file()); }
  EXPECT_EQ(tryFile("tableinf"), "");
  EXPECT_EQ(tryFile("TableInf.MDB"), "");
  fs::rename(file(), scripted.host.machine.programFolder / "tableInf.mde.old");
  EXPECT_EQ(tryFile("tableinf.mde.old"), "");
  EXPECT_EQ(tryFile("tableinf"), "データベースファイルが存在しない.");
}

TEST_F(Login, UsersOfTheRepository) {
  { createRepository(file(), {"suzuki"}); }
  EXPECT_EQ(tryFile("tableinf.mdb", "ADMIN"), "");
  EXPECT_TRUE(isAdmin);
  EXPECT_EQ(cell("Select ログオン日付 From MAS_USER Where ユーザー名 = 'admin'"), "2026/11/24 09:05:00");
  EXPECT_EQ(tryFile("tableinf.mdb", "suzuki"), "");
  EXPECT_FALSE(isAdmin);
  EXPECT_EQ(tryFile("tableinf.mdb", "Guest"), "");
  EXPECT_TRUE(session.gIsGuest);
  EXPECT_EQ(tryFile("tableinf.mdb", "nobody"), "ユーザー名が未登録です.\n管理者に確認してください.");
  EXPECT_FALSE(session.gDB);
  EXPECT_FALSE(session.gIsGuest);
}

TEST_F(Login, QuoteInTheNameBreaksTheStatementAndRunsNothing) {
  { createRepository(file()); }
  for (const char* name : {"o'hara", "x'; Delete From MAS_USER; --", "x' OR '1'='1"}) {
    scripted.messages.clear();
    scripted.answerAll(kOk);
    EXPECT_EQ(tryFile("tableinf.mdb", name), "ユーザー名が未登録です.\n管理者に確認してください.") << name;
    ASSERT_EQ(scripted.messages.size(), 1u) << name;
    EXPECT_TRUE(scripted.messages[0].starts_with("DataBaseFileの確認|DataBaseFile tableinf.mdbが不正です｡\n"));
    EXPECT_NE(scripted.messages[0].find("」の「'」が対になっていません."), std::string::npos);
  }
  // A row is found by the name between its quotes, and is another one than was typed.
  { Database::open(file()).execute("Insert Into MAS_USER (ユーザー名) Values ('o''hara')"); }
  EXPECT_EQ(tryFile("tableinf.mdb", "o''hara"), "ユーザー名が未登録です.\n管理者に確認してください.");
  EXPECT_EQ(tryFile("tableinf.mdb"), "");
  EXPECT_EQ(rows("Select ユーザー名 From MAS_USER Where ログオン日付 Is Null"), (std::vector<std::string>{"o'hara"}));
}

/// On a full disk the time of the login can't be noted, which keeps nobody out.
TEST_F(Login, FullDiskLocksNobodyOut) {
  { createRepository(file()); }
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit none = before;
  none.rlim_cur = 0;
  setrlimit(RLIMIT_FSIZE, &none);
  scripted.answerAll(kOk);
  const std::string message = tryFile("tableinf.mdb");
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);

  EXPECT_EQ(message, "");
  EXPECT_TRUE(isAdmin);
  ASSERT_EQ(scripted.messages.size(), 1u);
  EXPECT_TRUE(scripted.messages[0].starts_with("DataBaseFileの確認|DataBaseFile tableinf.mdbが不正です｡\n"));
  EXPECT_EQ(cell("Select ログオン日付 From MAS_USER"), "-");
}

/// The login screen on a fresh machine.
class LoginScreen : public RepositoryTest {
 protected:
  void open() {
    screen = {};
    frmLogInNew_Load(session, scripted.host, screen);
    frmLogInNew_Activate(session, scripted.host, screen);
  }
  bool press() { return cmdOK_Click(session, scripted.host, screen); }

  frmLogInNew screen;
};

TEST_F(LoginScreen, ListsFilesInLowerCase) {
  for (const char* name : {"tableInf.mdb", "ER図.MDB", "Zeta.MDB", "alpha.mdb", "note.txt"})
    std::ofstream(scripted.host.machine.programFolder / name) << "";
  fs::create_directory(scripted.host.machine.programFolder / "folder.mdb");
  open();
  EXPECT_EQ(screen.LstDb.rows, (std::vector<std::string>{"alpha.mdb", "tableinf.mdb", "zeta.mdb"}));
  EXPECT_EQ(screen.LstDb.text(), "alpha.mdb");
  screen.chkAllFile.value = true;
  chkAllFile_Click(session, scripted.host, screen);
  EXPECT_EQ(screen.LstDb.rows, (std::vector<std::string>{"alpha.mdb", "note.txt", "tableinf.mdb", "zeta.mdb"}));

  for (int i = 0; i < 120; ++i)
    std::ofstream(scripted.host.machine.programFolder / ("b" + std::to_string(i) + ".mdb")) << "";
  LstFolder_Click(session, scripted.host, screen);
  EXPECT_EQ(screen.LstDb.count(), 101);
}

TEST_F(LoginScreen, FoldersAreRememberedOnce) {
  const std::string shared = scripted.folder.file("shared");
  fs::create_directory(shared);
  std::ofstream(shared + "/team.mdb") << "";
  open();
  EXPECT_FALSE(screen.LstFolder.enabled);
  screen.ChkDataBase.value = true;
  ChkDataBase_Click(session, scripted.host, screen);
  EXPECT_TRUE(screen.LstFolder.enabled);

  std::string chosen = shared;
  std::string prompt;
  scripted.host.dialogs.browseFolder = [&](std::string_view asked) {
    prompt = asked;
    return chosen;
  };
  CmdRef_Click(session, scripted.host, screen);
  EXPECT_EQ(prompt, "フォルダを指定して下さい。");
  CmdRef_Click(session, scripted.host, screen, shared);
  chosen = "";
  CmdRef_Click(session, scripted.host, screen);
  EXPECT_EQ(screen.LstFolder.rows, (std::vector<std::string>{programFolder(), shared}));
  EXPECT_EQ(screen.LstDb.text(), "team.mdb");

  scripted.expect("確認", "複数は追加できません..");
  LstFolder_Drop(session, scripted.host, screen, {shared, shared});
  scripted.expect("確認", "ファイルは追加できません.\n File : " + shared + "/team.mdb\n Code : 32");
  LstFolder_Drop(session, scripted.host, screen, {shared + "/team.mdb"});
  scripted.expect("確認", "ファイルは追加できません.\n File : /no/such\n Code : -1");
  LstFolder_Drop(session, scripted.host, screen, {"/no/such"});

  ListBox kept;
  gFolderList2File(session, kept, false);
  EXPECT_EQ(kept.rows, screen.LstFolder.rows);
  scripted.expect("確認", "選択フォルダを削除します.", kYes);
  objMenuDel1_Click(session, scripted.host, screen);
  EXPECT_EQ(screen.LstFolder.rows, std::vector<std::string>{programFolder()});
  EXPECT_EQ(screen.LstDb.count(), 0);
}

TEST_F(LoginScreen, FolderThatDoesNotAnswer) {
  open();
  screen.ChkDataBase.value = true;
  screen.LstFolder.clear();
  screen.LstFolder.add("/no/such/folder");
  screen.LstFolder.listIndex = 0;
  scripted.expect(
      "確認",
      "データベースリスト取得に失敗しました.\n指定フォルダ\n/no/such/folder\n指定フォルダにアクセスできませんでした."
      "\n No such file or directory\nのエラーがありました.");
  LstFolder_Click(session, scripted.host, screen);
}

TEST_F(LoginScreen, FourFailuresEndTheProgram) {
  open();
  scripted.expect("確認", "接続先ファイルが未設定です.");
  EXPECT_FALSE(press());
  EXPECT_EQ(screen.focus, "LstDb");
  { createRepository(file()); }
  open();
  screen.failedAttempts = 1;
  screen.txtUserName.text = "  ";
  scripted.expect("確認", "ユーザー名が未入力です.");
  EXPECT_FALSE(press());
  EXPECT_EQ(screen.focus, "txtUserName");
  for (int attempt = 0; attempt < 2; ++attempt) {
    screen.txtUserName.text = " nobody ";
    scripted.expect("確認", "ユーザー名が未登録です.\n管理者に確認してください.");
    EXPECT_FALSE(press());
    EXPECT_TRUE(screen.cmdOK.enabled);
    EXPECT_FALSE(screen.PicMsg.visible);
  }
  screen.txtUserName.text = "admin";
  scripted.expect("確認", "ログイン回数を超えました.\nプログラムを終了します.");
  EXPECT_FALSE(press());
  EXPECT_TRUE(screen.unloaded);
  EXPECT_EQ(session.gSessionState, 2);
}

TEST_F(LoginScreen, LoginStartsTheSessionAndKeepsTheChoices) {
  const std::string shared = scripted.folder.file("共有");
  fs::create_directory(shared);
  { createRepository(shared + "/tableInf.mdb", {"suzuki"}); }
  open();
  EXPECT_EQ(screen.txtUserName.text, "admin");
  screen.ChkDataBase.value = true;
  CmdRef_Click(session, scripted.host, screen, shared);
  screen.txtUserName.text = " suzuki ";

  const fs::path left = scripted.host.machine.tempFolder / "販売_-_-";
  fs::create_directories(left);
  std::ofstream(left / "Sql_old.txt") << "x";
  ASSERT_TRUE(press());
  EXPECT_TRUE(screen.unloaded);
  EXPECT_EQ(session.gSessionState, 1);
  EXPECT_EQ(session.gLoginUser, "suzuki");
  EXPECT_EQ(session.gDbFileName, "tableinf.mdb");
  EXPECT_EQ(session.gDbFolder, shared);
  EXPECT_EQ(session.gDbServerLabel, "(" + shared + ")");
  EXPECT_FALSE(fs::exists(left));
  EXPECT_TRUE(fs::is_directory(fs::path(session.gDataFolder) / "TempTemp_-_-"));

  logOff(session, scripted.host);
  EXPECT_FALSE(session.gDB);
  EXPECT_EQ(session.gSessionState, 0);
  open();
  EXPECT_EQ(screen.txtUserName.text, "suzuki");
  EXPECT_TRUE(screen.ChkDataBase.value);
  EXPECT_EQ(screen.LstFolder.text(), shared);
  EXPECT_EQ(screen.LstDb.text(), "tableinf.mdb");

  endProgram(session, scripted.host);
  EXPECT_FALSE(fs::exists(fs::path(session.gDataFolder) / "TempTemp_-_-"));
  EXPECT_FALSE(fs::exists(Log::file(scripted.host.machine)));
}

TEST_F(LoginScreen, RepositoryInTheProgramFolderIsLocal) {
  { createRepository(file()); }
  open();
  ASSERT_TRUE(press());
  EXPECT_EQ(session.gDbServerLabel, "(local)");
  EXPECT_EQ(session.gReferenceDataBase, 0);
}

TEST_F(LoginScreen, AFirstRepositoryIsMadeAndEntered) {
  open();
  EXPECT_TRUE(screen.lblNoRepository.visible);
  std::string offered, given;
  scripted.host.dialogs.newFile = [&](std::string_view, const fs::path& suggested) {
    offered = suggested.string();
    return given;
  };
  screen.txtUserName.text = " 佐藤 ";
  EXPECT_FALSE(CmdNewRepository_Click(session, scripted.host, screen)) << "no name was given";
  EXPECT_TRUE(offered.ends_with("/tableInf.mdb")) << offered;

  const std::string folder = scripted.folder.file("設計");
  fs::create_directory(folder);
  given = folder + "/Kaikei";
  scripted.expect("確認", "データベースを作成しました.\n " + given + ".mdb");
  ASSERT_TRUE(CmdNewRepository_Click(session, scripted.host, screen));
  EXPECT_FALSE(screen.lblNoRepository.visible);
  EXPECT_EQ(screen.LstFolder.text(), folder);
  EXPECT_EQ(screen.LstDb.text(), "kaikei.mdb");
  ASSERT_TRUE(cmdOK_Click(session, scripted.host, screen));
  EXPECT_EQ(session.gLoginUser, "佐藤");
  session.gDB.reset();

  scripted.expect("確認", "既に同じ名前のファイルが存在します.\n " + given + ".mdb");
  EXPECT_FALSE(CmdNewRepository_Click(session, scripted.host, screen));
  given = folder + "/missing/x.mdb";
  scripted.answerAll(kOk);
  EXPECT_FALSE(CmdNewRepository_Click(session, scripted.host, screen));
  EXPECT_TRUE(scripted.messages.back().starts_with("確認|データベースを作成できませんでした.\n " + given + "\n "))
      << scripted.messages.back();
}

TEST_F(LoginScreen, MakerOfRepositories) {
  scripted.expect("入手して!!", "初期データベース作成プログラムが存在ません.");
  EXPECT_FALSE(CmdReplica_Click(scripted.host));
  std::ofstream(scripted.host.machine.programFolder / "Vellomark.exe") << "";
  scripted.expect("終了確認", "初期データベース作成を行います.\nQuillmardenを一旦終了します.", kYes);
  EXPECT_TRUE(CmdReplica_Click(scripted.host));
  EXPECT_EQ(scripted.opened.size(), 1u);
}

}  // namespace
}  // namespace quillmarden
