#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>

#include "dictionary/frm_division.h"
#include "editing/frm_partition.h"
#include "editing/frm_tb_detail_edit.h"
#include "operations/capacity.h"
#include "shell_fixture.h"
#include "sqlgen/frame.h"

namespace quillmarden {
namespace {

namespace fs = std::filesystem;
namespace col = field_col;

/// Every screen that writes, loaded by somebody who works in 販売, with something to write on each.
struct Desk {
  Session session;
  Windows windows;
  frmTBList list;
  frmTBDetail detail;
  frmTBDetail programs;
  frmTBInfo header;
  frmTBInfo newHeader;
  frmSystemInf system;
  frmDivision division;
  frmDiviInfo divisionInfo;
  frmKENSU kenSu;
  frmMemo memo;
};

/// What an action writes to: the table T, the System 販売, or its own record.
enum class Writes { kTable, kSystem, kRecord };

struct Action {
  std::string name;
  std::function<void(Desk& desk, Host& host)> run;
  Writes writes = Writes::kTable;
  bool tells = true;     ///< why it was refused; runs whose outcome is a file go on
  bool unlocks = false;  ///< comes to a locked table by design
};

void update(Desk& desk, Host& host) {
  desk.detail.Spread.setText(col::kRemark, 1, "changed");
  desk.detail.Spread.setText(col::kChanged, 1, kChangedMark);
  CmdUpDate_Click(desk.session, host, desk.detail);
}

void sqlRun(Desk& desk, Host& host, bool runnable) {
  frmTBDetail detail;
  frmTBList list = desk.list;
  list.mnuCreateSQLRunnable.checked = runnable;
  const RunResult result =
      mnuCreateSql_Click(desk.session, host, list, detail, SqlRows::Current, SqlClauses::AsOptions);
  EXPECT_FALSE(result.failed);
  EXPECT_TRUE(fs::exists(result.file)) << "what can be looked at can be printed";
}

std::vector<Action> actionsOnTables() {
  const auto onList = [](void (*handler)(Session&, Host&, frmTBList&)) {
    return [handler](Desk& desk, Host& host) { handler(desk.session, host, desk.list); };
  };
  const auto lock = [](bool editable) {
    return [editable](Desk& desk, Host& host) { mnutbEdit_Click(desk.session, host, desk.list, editable); };
  };
  return {
      {"fields", update},
      {"fields without the button", [](Desk& desk, Host& host) { pPutTableDetails(desk.session, host, desk.detail); }},
      {"program rows", [](Desk& desk, Host& host) { pPutPrjDetails(desk.session, host, desk.programs); }},
      {"partition",
       [](Desk& desk, Host& host) {
         mnuPartition_Click(desk.session, host, desk.detail, {{1, 2, 1, 2}});
       }},
      {"no partition", [](Desk& desk, Host& host) { cmdPartition_Click(desk.session, host, desk.detail); }},
      {"memo", [](Desk& desk, Host& host) { CmdUpDate_Click(desk.session, host, desk.memo); }},
      {"header", [](Desk& desk, Host& host) { cmdOK_Click(desk.session, host, desk.windows, desk.header); }},
      {"header without the button",
       [](Desk& desk, Host& host) { pPutTableInfo(desk.session, host, desk.header, true); }},
      {"move", [](Desk& desk, Host& host) { cmdMoveSystem_Click(desk.session, host, desk.windows, desk.header); }},
      {"reference file",
       [](Desk& desk, Host& host) {
         const std::string file = (host.machine.tempFolder / "design.txt").string();
         std::ofstream(file) << "1";
         TxtRefFileName_Drop(desk.session, host, desk.header, {file});
       }},
      {"no reference file", [](Desk& desk, Host& host) { cmdClearRefFile_Click(desk.session, host, desk.header); }},
      {"memo file",
       [](Desk& desk, Host& host) {
         desk.header.TxtRefFileName.text.clear();
         cmdFileMemo_Click(desk.session, host, desk.header);
       }},
      {"delete", onList(mnuDelete_Click)},
      {"lock", lock(false), Writes::kTable, true, true},
      {"unlock", lock(true), Writes::kTable, true, true},
      {"shared", onList(mnuUpDateAllSystem_Click)},
      {"checkpoint", onList(mnuCheckPoint_Click)},
      {"script", [](Desk& desk, Host& host) { sqlRun(desk, host, false); }, Writes::kTable, false},
      {"runnable script", [](Desk& desk, Host& host) { sqlRun(desk, host, true); }, Writes::kTable, false},
  };
}

std::vector<Action> actionsOnSystems() {
  const auto tool = [](void (*handler)(Session&, Host&, frmSystemInf&)) {
    return [handler](Desk& desk, Host& host) { handler(desk.session, host, desk.system); };
  };
  const auto of = [](std::string name, std::function<void(Desk&, Host&)> run) {
    return Action{std::move(name), std::move(run), Writes::kSystem};
  };
  return {
      of("new table", [](Desk& desk, Host& host) { cmdOK_Click(desk.session, host, desk.windows, desk.newHeader); }),
      of("lock all", tool(CmdProtect_Click)),
      of("unlock all", tool(CmdUnProtect_Click)),
      of("checkpoint of all", tool(CmdChk_Click)),
      of("lengths", tool(CmdCalc_Click)),
      of("narrow", tool(CmdNarrow_Click)),
      of("lower case", tool(CmdLowerCase_Click)),
      of("defaults", tool(CmdDef0_Click)),
      of("reverse tables", tool(CmdDel_Click)),
      of("rename", [](Desk& desk, Host& host) { cmdChange_Click(desk.session, host, desk.windows, desk.system); }),
      {"record", [](Desk& desk, Host& host) { cmdOK_Click(desk.session, host, desk.system); }, Writes::kRecord},
      of("value list", [](Desk& desk, Host& host) { CmdUpDate_Click(desk.session, host, desk.division); }),
      of("value list's record", [](Desk& desk, Host& host) { cmdOK_Click(desk.session, host, desk.divisionInfo); }),
      of("no value list", [](Desk& desk, Host& host) { mnuDelete_Click(desk.session, host, desk.division); }),
      of("row counts", [](Desk& desk, Host& host) { CmdUpDate_Click(desk.session, host, desk.kenSu); }),
  };
}

std::vector<Action> allActions() {
  std::vector<Action> all = actionsOnTables();
  for (Action& action : actionsOnSystems()) all.push_back(std::move(action));
  return all;
}

/// A way to be refused: what is done to the Repository or the session, and what messages say then.
struct Situation {
  std::string name;
  std::string statement;  ///< on the Repository, by somebody else
  std::string reason;
  std::function<bool(const Action&)> concerned;
  bool guest = false;
  bool reader = false;
};

bool anything(const Action&) { return true; }
bool tables(const Action& action) { return action.writes == Writes::kTable; }
bool butRecords(const Action& action) { return action.writes != Writes::kRecord; }
bool lockedTables(const Action& action) { return tables(action) && !action.unlocks; }

const std::vector<Situation>& situations() {
  static const std::vector<Situation> kSituations = {
      {"guest", "", "guestでは、変更できません.", anything, true},
      {"reader", "", "データベースファイルは読み取り専用です.", anything, false, true},
      {"shutOut", "UPDATE MAS_SYSTEM SET ユーザー制限 = 2 WHERE システム名 = '販売'", "ユーザー制限のため、", anything},
      {"lockedSystem", "UPDATE MAS_SYSTEM SET 修正許可 = 0 WHERE システム名 = '販売'",
       "システム全体が編集できないように設定されています.", butRecords},
      {"lockedTable", "UPDATE MAS_TABLEINFO SET 修正許可 = 0", "このテーブルは編集不可に設定されています.",
       lockedTables},
      {"othersTable", "UPDATE MAS_TABLEINFO SET システム名 = '在庫', 全システム共通 = -1",
       "在庫\nのシステムで定義されたものです.", tables},
      {"deletedTable", "UPDATE MAS_TABLEINFO SET 削除フラグ = 1", "このテーブルは削除されています.", tables},
  };
  return kSituations;
}

/// All rows of all tables.
std::string contents(const std::string& file) {
  Database database = Database::open(file);
  std::string all;
  const std::vector<TableDef> tables = database.tableDefs();
  for (const TableDef& table : tables) {
    all += table.name + "\n";
    for (Recordset rows = database.openRecordset("Select * From [" + table.name + "]"); !rows.eof(); rows.moveNext()) {
      for (int i = 0; i < rows.fieldCount(); ++i) all.append(rows.isNull(i) ? "-" : rows.text(i)).append("|");
      all += "\n";
    }
  }
  return all;
}

class WriteRights : public testing::Test {
 protected:
  void SetUp() override {
    std::error_code ignored;
    file = (scripted.host.machine.programFolder / "tableinf.mdb").string();
    Database made = createRepository(file, {"sato"});
    const auto run = [&](std::string_view sql) { made.execute(sql); };
    for (const char* system : {"販売", "在庫"})
      run(std::string(
              "INSERT INTO MAS_SYSTEM (システム名, 概要, databasetype, 修正許可, 出力しない, ユーザー制限, 作成者) "
              "VALUES ('") +
          system + "', '概', 'PostgreSQL', -1, 0, 0, 'admin')");
    run("INSERT INTO MAS_TABLEINFO (システム名, ファイル種別, テーブル名, 日本語名, 分類, 概要, 略名, 作成間隔, "
        "削除フラグ, "
        "修正許可, partition_field, reffile, REVERSE_DB, 想定数, 想定保持) VALUES ('販売', 'PostgreSQL', 'T', '表', "
        "'マスタ', '概', 't', '毎日', 0, -1, 'Ａ', 'old.txt', -1, 10, 1)");
    for (const char* row : {"1, 1, 'Ａ'", "2, 2, 'B'"})
      run(std::string(
              "INSERT INTO MAS_TABLEDETAILES (ID, ROWNO, 表示順, 項目名, 型, 整数桁数, 項目分類, 備考) VALUES (1, ") +
          row + ", 'varchar', 5, '数量(値)', '')");
    run("INSERT INTO MAS_TABLEINFO (システム名, ファイル種別, テーブル名, 日本語名, 略名, 削除フラグ, 修正許可) VALUES "
        "("
        "'販売', 'PG管理', 'P', '予定', 'p', 0, -1)");
    run("INSERT INTO MAS_TABLEBIKO (ID, NUM, 日本語名, 備考) VALUES (1, 1, '注', '前')");
    run("INSERT INTO MAS_DIVISION (システム名, 値名称, 種別, 型, 内容, 全システム共通, 削除フラグ) VALUES ('販売', "
        "'状態', "
        "'区分', '文字', '説明', 0, 0)");
    for (const char* value : {"'1', 1", "'2', 2"})
      run(std::string(
              "INSERT INTO MAS_DIVISIONDETAILES (システム名, 値名称, 値, 行番号, 内容) VALUES ('販売', '状態', ") +
          value + ", '')");
    run("INSERT INTO MAS_KENSU (システム名, 定義名, 概要, 件数, 全システム共通, 削除フラグ) VALUES ('販売', '件', "
        "'概', 5, "
        "0, 0)");
    scripted.answerAll(kYes);
  }

  void TearDown() override {
    if (::geteuid() != ::getuid() && ::seteuid(::getuid()) != 0) FAIL();
    fs::permissions(file, fs::perms::owner_all);
  }

  void open(Desk& desk, const std::string& user) {
    openUserData(desk.session, scripted.host);
    std::string message;
    bool isAdmin = false;
    ASSERT_TRUE(gConnectRepository(desk.session, scripted.host, false, "", "tableinf.mdb", user, message, isAdmin))
        << message;
    beginSession(desk.session, scripted.host, user, scripted.host.machine.programFolder.string(), "tableinf.mdb");
  }

  void load(Desk& desk) {
    Session& session = desk.session;
    Host& host = scripted.host;
    frmTBList_Load(session, host, desk.list);
    desk.list.CmbSystem.text = "販売";
    CmbSystem_Click(session, host, desk.windows, desk.list);
    // The row as it stands in a list that was filled before.
    desk.list.LstTable.clear();
    desk.list.LstTable.add("T\t表\t1");
    desk.list.LstTable.selected[0] = true;
    desk.list.LstTable.listIndex = 0;
    desk.list.rowCount = 1;
    pGet_TableID2TableDetails(session, host, desk.detail, "1");
    pGet_TableID2TableDetails(session, host, desk.programs, "2");
    desk.programs.Spread.setMaxRows(1);
    desk.programs.Spread.setText(col::kJapaneseName, 1, "new");
    frmTBInfo_Load(session, host, desk.header, "1");
    desk.header.TxtMemo.text = "changed";
    desk.header.CmbMoveSystem.text = "在庫";
    frmTBInfo_Load(session, host, desk.newHeader, "");
    for (TextBox* box :
         {&desk.newHeader.TxtJPN, &desk.newHeader.TxtTableName, &desk.newHeader.TxtMemo, &desk.newHeader.TxtRyaku})
      box->text = "n";
    desk.newHeader.CmbBunrui.text = "マスタ";
    desk.newHeader.CmbKanKaku.text = "毎日";
    frmSystemInf_Load(session, host, desk.system, "販売");
    desk.system.TxtMemo.text = "changed";
    desk.system.CmbEdit.text = userLimitTexts()[0];
    desk.system.TxtSystemNameNew.text = "新";
    frmDivision_Load(session, host, desk.division);
    desk.division.lstDivision.listIndex = 0;
    lstDivision_Click(session, host, desk.division);
    desk.division.Spread.setText(division_col::kOutline, 1, "changed");
    Spread_Change(desk.division, division_col::kOutline, 1);
    pGetDivisionInfo(session, host, desk.divisionInfo, "状態");
    desk.divisionInfo.Txtbiko.text = "changed";
    frmKENSU_Load(session, host, desk.kenSu);
    desk.kenSu.LstTeigi.listIndex = 0;
    LstTeigi_Click(session, host, desk.kenSu);
    desk.kenSu.Txtbiko.text = "changed";
    gGetMasTableMemo(session, host, desk.memo, "1", "販売", !desk.detail.readOnly);
    desk.memo.Spread.setText(memo_col::kText, 1, "changed");
  }

  /// Makes the session one that may only read: the file's rights, and a user who is no owner.
  void becomeReader() {
    fs::permissions(file, fs::perms::owner_read | fs::perms::group_read | fs::perms::others_read);
    for (fs::path folder = fs::path(file).parent_path(); folder != folder.root_path(); folder = folder.parent_path()) {
      std::error_code ignored;
      if (folder.string().starts_with(scripted.folder.path().string()))
        fs::permissions(folder, fs::perms::all, ignored);
    }
    for (const auto& entry : fs::recursive_directory_iterator(scripted.folder.path()))
      if (entry.path() != file) fs::permissions(entry.path(), fs::perms::all);
    if (::geteuid() == 0) {
      ASSERT_EQ(::seteuid(65534), 0);
    }
  }

  void refuse(const Situation& situation, bool stale) {
    Desk desk;
    if (!situation.statement.empty() && !stale) Database::open(file).execute(situation.statement);
    if (situation.reader && !stale) becomeReader();
    ASSERT_NO_FATAL_FAILURE(open(desk, situation.guest && !stale ? "guest" : "sato"));
    ASSERT_NO_FATAL_FAILURE(load(desk));
    if (stale) {
      if (!situation.statement.empty()) Database::open(file).execute(situation.statement);
      desk.session.gIsGuest = situation.guest;
      if (situation.reader) {
        becomeReader();
        *desk.session.gDB = Database::open(file);
      }
    }
    if (situation.reader) {
      ASSERT_TRUE(desk.session.gDB->readOnly());
    }
    const std::string before = contents(file);
    for (const Action& action : allActions()) {
      if (!situation.concerned(action)) continue;
      SCOPED_TRACE(situation.name + (stale ? ", after it was loaded: " : ": ") + action.name);
      scripted.messages.clear();
      action.run(desk, scripted.host);
      EXPECT_TRUE(contents(file) == before) << "something was written";
      const bool told =
          std::any_of(scripted.messages.begin(), scripted.messages.end(),
                      [&](const std::string& message) { return message.find(situation.reason) != std::string::npos; });
      EXPECT_EQ(told, action.tells) << (scripted.messages.empty() ? "no message" : scripted.messages.back());
    }
    EXPECT_FALSE(fs::exists(fs::path(file).parent_path() / "RefFiles" / "tableinf" / "design.txt"));
  }

  std::string file;
  ScriptedHost scripted;
};

// Without it the tests below might pass for want of anything to write.
TEST_F(WriteRights, EachActionWritesForOneWhoMay) {
  const std::string whole = file + ".whole";
  fs::copy_file(file, whole);
  for (const Action& action : allActions()) {
    SCOPED_TRACE(action.name);
    fs::copy_file(whole, file, fs::copy_options::overwrite_existing);
    Database::open(file).execute(action.name == "defaults" ? "UPDATE MAS_TABLEINFO SET ファイル種別 = 'Oracle'"
                                                           : "UPDATE MAS_TABLEINFO SET 現在数 = 0");
    if (action.name == "defaults") Database::open(file).execute("UPDATE MAS_TABLEDETAILES SET 型 = 'number'");
    if (action.name == "unlock" || action.name == "unlock all")
      Database::open(file).execute("UPDATE MAS_TABLEINFO SET 修正許可 = 0");
    Desk desk;
    ASSERT_NO_FATAL_FAILURE(open(desk, "sato"));
    ASSERT_NO_FATAL_FAILURE(load(desk));
    const std::string before = contents(file);
    action.run(desk, scripted.host);
    EXPECT_FALSE(contents(file) == before);
  }
}

class RefusedWrites : public WriteRights, public testing::WithParamInterface<Situation> {};

TEST_P(RefusedWrites, OnScreensThatOpenInTheSituation) { refuse(GetParam(), false); }
TEST_P(RefusedWrites, OnScreensThatWereOpenBefore) { refuse(GetParam(), true); }

INSTANTIATE_TEST_SUITE_P(Situations, RefusedWrites, testing::ValuesIn(situations()),
                         [](const auto& situation) { return situation.param.name; });

TEST_F(WriteRights, ToolsOverASystemLeaveLockedTablesAlone) {
  Database::open(file).execute("UPDATE MAS_TABLEINFO SET 修正許可 = 0");
  Desk desk;
  ASSERT_NO_FATAL_FAILURE(open(desk, "sato"));
  ASSERT_NO_FATAL_FAILURE(load(desk));
  const std::string before = contents(file);
  using Tool = void (*)(Session&, Host&, frmSystemInf&);
  for (const Tool tool :
       {CmdChk_Click, CmdCalc_Click, CmdNarrow_Click, CmdLowerCase_Click, CmdDef0_Click, CmdDel_Click}) {
    tool(desk.session, scripted.host, desk.system);
    EXPECT_TRUE(contents(file) == before) << scripted.messages.back();
  }
  EXPECT_TRUE(scripted.messages.back().ends_with("\n編集不可のテーブル2件は、変更していません."));
}

TEST_F(WriteRights, ATableMovesToNoSystemThatIsLocked) {
  Database::open(file).execute("UPDATE MAS_SYSTEM SET 修正許可 = 0 WHERE システム名 = '在庫'");
  Desk desk;
  ASSERT_NO_FATAL_FAILURE(open(desk, "sato"));
  ASSERT_NO_FATAL_FAILURE(load(desk));
  EXPECT_TRUE(cmdMoveSystem_Click(desk.session, scripted.host, desk.windows, desk.header));
  EXPECT_EQ(scripted.messages.back(), "確認|システム全体が編集できないように設定されています.\n システム名 : 在庫");
}

TEST_F(WriteRights, AShutOutUserLiftsNoLimitAndALockedSystemIsUnlockedInItsRecord) {
  Database::open(file).execute("UPDATE MAS_SYSTEM SET 修正許可 = 0");
  Desk desk;
  ASSERT_NO_FATAL_FAILURE(open(desk, "sato"));
  ASSERT_NO_FATAL_FAILURE(load(desk));
  EXPECT_TRUE(desk.system.cmdOK.enabled);
  EXPECT_FALSE(desk.system.CmdProtect.enabled || desk.system.cmdChange.enabled);
  desk.system.ChkChangeData.value = false;
  EXPECT_TRUE(cmdOK_Click(desk.session, scripted.host, desk.system));
  EXPECT_TRUE(mayChangeSystem(desk.session, "販売"));
  Database::open(file).execute("UPDATE MAS_SYSTEM SET ユーザー制限 = 2");
  frmSystemInf_Load(desk.session, scripted.host, desk.system, "販売");
  EXPECT_FALSE(desk.system.cmdOK.enabled);
}

// --- what is open follows

class ChangedRights : public ShellTest {
 protected:
  void SetUp() override {
    ShellTest::SetUp();
    enter();
    chooseRow(0);
    scripted.answerAll(kYes);
    app.list.LstTable.selected[0] = true;
  }
  bool press(const std::string& menu, int index = -1) { return pressMenu(app, "frmTBList", menu, index); }
  bool adds() { return isEnabled(app, "frmTBDetail", *findEntry("frmTBDetail", "mnuAddLine")); }
};

TEST_F(ChangedRights, OfATableReachItsScreens) {
  openScreen(app, "frmTBInfo");
  openScreen(app, "frmMemo");
  ASSERT_TRUE(adds() && app.detail().CmdUpDate.enabled && app.tbInfo.cmdMoveSystem.enabled &&
              app.memo.CmdUpDate.enabled);
  ASSERT_TRUE(press("mnutbEdit", 0));
  EXPECT_FALSE(adds() || app.detail().CmdUpDate.enabled || app.tbInfo.cmdMoveSystem.enabled ||
               app.memo.CmdUpDate.enabled);
  EXPECT_EQ(app.detail().whyReadOnly, "このテーブルは編集不可に設定されています.\n テーブル名 : A");
  app.list.LstTable.selected[0] = true;
  ASSERT_TRUE(press("mnutbEdit", 1));
  EXPECT_TRUE(adds() && app.detail().CmdUpDate.enabled && app.tbInfo.cmdMoveSystem.enabled &&
              app.memo.CmdUpDate.enabled);
  app.list.LstTable.selected[0] = true;
  ASSERT_TRUE(press("mnuDelete"));
  EXPECT_FALSE(adds() || app.detail().CmdUpDate.enabled || app.memo.CmdUpDate.enabled);
}

TEST_F(ChangedRights, LeaveWhatWasTyped) {
  edit();
  ASSERT_TRUE(press("mnutbEdit", 0));
  EXPECT_EQ(app.detail().Spread.text(field_col::kFieldName, 1), "typed");
  EXPECT_TRUE(app.detail().changed && app.detail().Spread.locked());
  EXPECT_FALSE(app.detail().CmdUpDate.enabled);
  app.list.LstTable.selected[0] = true;
  ASSERT_TRUE(press("mnutbEdit", 1));
  EXPECT_TRUE(app.detail().CmdUpDate.enabled);
  EXPECT_FALSE(app.detail().Spread.locked());
}

TEST_F(ChangedRights, OfTheSystemReachTheListAndItsScreens) {
  openScreen(app, "frmDivision");
  openScreen(app, "frmKENSU");
  app.kenSu.TxtName.text = "typed";
  const auto work = [&](bool locked) {
    openScreen(app, "frmSystemInf");
    app.systemInf.TxtMemo.text = "概";
    app.systemInf.ChkChangeData.value = locked;
    ASSERT_TRUE(cmdOK_Click(app.session, scripted.host, app.systemInf));
    settleScreens(app);
    EXPECT_EQ(app.list.mnuAdd.enabled, !locked);
    EXPECT_EQ(app.list.mnuDelete.enabled, !locked);
    EXPECT_EQ(adds(), !locked);
    EXPECT_EQ(app.division.mnuAdd.enabled, !locked);
    EXPECT_EQ(app.kenSu.CmdUpDate.enabled, !locked);
  };
  work(true);
  work(false);
  EXPECT_EQ(app.kenSu.TxtName.text, "typed") << "the System is the same";
}

}  // namespace
}  // namespace quillmarden
