#include "repository/frm_system_inf.h"

#include "repository_fixture.h"

namespace quillmarden {
namespace {

class SystemScreen : public RepositoryTest {
 protected:
  void SetUp() override {
    { createRepository(file(), {"suzuki"}); }
    logIn();
    session.gDB->execute(
        "INSERT INTO MAS_SYSTEM (システム名, 略名, 概要, 作成年月日, 作成者, 修正許可, 出力しない, databasetype, "
        "connectdatabsse, username, password, DB_BLOCK_SIZE, tablelayoutpath, field_name_lcase) VALUES ('販売', 'HN', "
        "'販売管理', #2026/01/02 03:04:05#, 'suzuki', -1, 0, 'Oracle', 'HANBAI_ORA', 'scott', 'tiger ', 8192, 'keep', "
        "-1)");
  }

  void open(std::string_view system = "販売") {
    frmSystemInf_Load(session, scripted.host, screen, system);
    screen.focus = {};
  }
  /// A new System that passes every check.
  void openNew() {
    open("");
    screen.TxtSystemName.text = " 在庫 ";
    screen.TxtMemo.text = "在庫管理";
    choose("PostgreSQL");
  }
  void choose(const std::string& kind) {
    screen.CmbDBType.text = kind;
    CmbDBType_Click(session, scripted.host, screen);
  }
  bool press() { return cmdOK_Click(session, scripted.host, screen); }
  void expectFault(const std::string& text, std::string_view control) {
    scripted.expect("入力確認", text);
    EXPECT_FALSE(press());
    EXPECT_EQ(screen.focus, control) << text;
  }
  void expectSave() { scripted.expect("確認", "登録内容を更新します.", kYes); }
  void put(const std::filesystem::path& file) { std::ofstream(file) << "x"; }

  void addTable(const std::string& system, int id, const std::string& kind, int reverse = 0) {
    session.gDB->execute(
        "INSERT INTO MAS_TABLEINFO (ID, システム名, ファイル種別, 修正許可, 削除フラグ, REVERSE_DB, "
        "作成者) VALUES (" +
        std::to_string(id) + ", '" + system + "', '" + kind + "', -1, 0, " + std::to_string(reverse) + ", 'yamada')");
  }
  void addField(int id, int row, const std::string& name, const std::string& rest = "Null, Null, Null") {
    session.gDB->execute("INSERT INTO MAS_TABLEDETAILES (ID, ROWNO, 項目名, 型, 項目分類, 初期値) VALUES (" +
                         std::to_string(id) + ", " + std::to_string(row) + ", " + name + ", " + rest + ")");
  }
  void expectReport(const std::string& question, int count) {
    scripted.expect("確認", question, kYes);
    scripted.expect("よかった!!", "更新しました.\n" + std::to_string(count) + "件の\nテーブルに対して反映しました.");
  }

  frmSystemInf screen;
  Windows windows;
};

TEST_F(SystemScreen, SavedUnchangedTheRowStaysButForTheStamp) {
  open();
  EXPECT_TRUE(screen.TxtSystemName.locked);
  EXPECT_EQ(screen.CmbEdit.text, "0:全てのユーザー");
  EXPECT_TRUE(screen.ChkDataBase.value) << "a live database that another tool noted by its name";
  EXPECT_TRUE(screen.ChkFieldNameLcase.value);
  screen.TxtDataSource.text = "ORA";
  expectSave();
  ASSERT_TRUE(press());
  EXPECT_TRUE(screen.unloaded);
  EXPECT_EQ(rows("Select 略名, 概要, 作成年月日, 作成者, 修正許可, connectdatabsse, odbcsouce, password, "
                 "DB_BLOCK_SIZE, tablelayoutpath, field_name_lcase, 更新年月日, 更新者, make_server, COMPNAME From "
                 "MAS_SYSTEM"),
            (std::vector<std::string>{"HN|販売管理|2026/01/02 03:04:05|suzuki|-1|HANBAI_ORA|ORA|tiger |8192|keep|-1|"
                                      "2026/11/24 09:05:00|admin|-|TESTPC"}));
}

TEST_F(SystemScreen, NewSystemIsAdded) {
  openNew();
  EXPECT_EQ(screen.TxtBlockSize.text, "5432");
  EXPECT_FALSE(screen.CmdProtect.enabled || screen.cmdChange.enabled || screen.fraSystemChange.visible);
  screen.CmbEdit.text = "2:システム管理者";
  screen.ChkChangeData.value = screen.ChkNoPut.value = screen.chkFileLinkCopy.value = true;
  scripted.expect("確認",
                  "テーブルリストで表示しない\nにチェックがされています.\nこのチェックをするとこのシステムに\n"
                  "ついて内容の表示/修正ができなくなります.\n詳しくはヘルプを参照してください.");
  scripted.expect("確認", "登録内容を更新します.", kNo);
  EXPECT_FALSE(press());
  EXPECT_FALSE(screen.unloaded);

  screen.ChkNoPut.value = false;
  expectSave();
  ASSERT_TRUE(press());
  EXPECT_EQ(rows("Select 概要, 作成年月日, 作成者, make_server, 修正許可, ユーザー制限, 出力しない, connectdatabsse, "
                 "databasetype, DB_BLOCK_SIZE, filelinkcopy, narrow_flg From MAS_SYSTEM Where システム名 = '在庫'"),
            (std::vector<std::string>{"在庫管理|2026/11/24 09:05:00|admin|TESTPC|0|2|0|0|PostgreSQL|5432|-1|0"}));
  EXPECT_EQ(screen.record.id, 2);
}

TEST_F(SystemScreen, FaultsComeInTheirOrder) {
  open("<新しいシステム>");
  screen.ChkDataBase.value = true;
  expectFault("システム名が未設定です.", "TxtSystemName");
  screen.TxtSystemName.text = "販売";
  screen.TxtMemo.text = " ";
  expectFault("概要が未設定です.", "TxtMemo");
  screen.TxtMemo.text = "概要";
  expectFault("デフォルトデータベースが未設定です.", "CmbDBType");
  choose("MySQL");
  expectFault("入力されたシステム名は既に存在ます.", "TxtSystemName");
  screen.TxtSystemName.text = "販売2";
  expectFault("ODBCデータソース名が未設定です.", "TxtDataSource");
  screen.TxtDataSource.text = "dsn";
  expectFault("ユーザー名が未設定です.", "txtUserName");
  screen.ChkDataBase.value = false;
  expectFault("DataBase名が未設定です.", "TxtTableSpace");
  EXPECT_TRUE(screen.FraDBSetting.visible) << "the box that is meant can be seen";
  EXPECT_EQ(cell("Select Count(*) From MAS_SYSTEM"), "1");
}

TEST_F(SystemScreen, LayoutFileMustBeThereWithItsRules) {
  openNew();
  const auto program = scripted.host.machine.programFolder;
  const std::string fits = std::string(40, 'a') + "書式.xls" + "xx";
  screen.TxtLayoutFile.text = fits + "y";
  expectFault("ファイル名が長すぎます.", "TxtLayoutFile");
  screen.TxtLayoutFile.text = fits;
  expectFault("書式ファイルが存在しません.\n" + (program / fits).string() + "\nに複写して下さい.", "TxtLayoutFile");
  put(program / fits);
  expectFault("出力ルールが存在しません.\n出力ルールを作成してください.", "TxtLayoutFile");
  // A template of the user's own does as well.
  std::filesystem::rename(program / fits, session.gDataFolder + "/" + fits);
  put(session.gDataFolder + "/" + fits + ".inf");
  expectSave();
  EXPECT_TRUE(press());
}

TEST_F(SystemScreen, KindDecidesOnTheSettings) {
  open();
  EXPECT_EQ(screen.lblDBBlock.caption, "DB BLOCK SIZE");
  EXPECT_EQ(screen.settingCaption, "DB接続情報");
  CmdOracleSetting_Click(session, scripted.host, screen);
  EXPECT_TRUE(screen.FraDBSetting.visible);
  EXPECT_EQ(screen.settingCaption, "DB情報閉じる");
  choose("MySQL");
  EXPECT_TRUE(screen.FraDBSetting.visible);
  EXPECT_EQ(screen.lblSetName.caption + screen.lblDBBlock.caption + screen.lblTableSpace.caption,
            "■MySQL SettingPortDataBase");
  EXPECT_FALSE(screen.lblIndex.visible);
  EXPECT_EQ(screen.TxtBlockSize.text, "8192") << "an existing value stays";
  screen.TxtBlockSize.text = "";
  choose("MySQL");
  EXPECT_EQ(screen.TxtBlockSize.text, "3306");
  choose("SQL Server");
  EXPECT_FALSE(screen.lblDBBlock.visible);
  EXPECT_EQ(screen.lblTableSpace.caption + screen.lblIndex.caption, "スキーマ名Index FileGroup");

  choose("メンバー");
  EXPECT_FALSE(screen.FraDBSetting.visible || screen.CmdOracleSetting.enabled);
  choose("Access");
  CmdOracleSetting_Click(session, scripted.host, screen);
  EXPECT_TRUE(screen.FraAccess.visible);
  EXPECT_FALSE(screen.FraDBSetting.visible);
  choose("Oracle");
  EXPECT_FALSE(screen.FraAccess.visible);
}

TEST_F(SystemScreen, OlderFileWithoutTheAccessColumn) {
  session.gDB->execute("ALTER TABLE MAS_SYSTEM DROP COLUMN accessfilename");
  session.gDB->execute("ALTER TABLE MAS_SYSTEM DROP COLUMN narrow_flg");
  openNew();
  choose("Access");
  scripted.expect("確認",
                  "Accessファイルを設定することはできません.\n原因は、レプリカのAccessファイルに\n"
                  "テーブルに項目を追加することができなかったため\nレプリカ・デザインマスタと同期処理して下さい。");
  CmdOracleSetting_Click(session, scripted.host, screen);
  EXPECT_FALSE(screen.FraAccess.visible);
  screen.ChkFieldNameNarrow.value = true;
  expectSave();
  EXPECT_TRUE(press()) << "what the file has no column for is left out";
}

TEST_F(SystemScreen, OneLetterCaseAtMost) {
  session.gDB->execute("UPDATE MAS_SYSTEM SET field_name_ucase = -1");
  open();
  EXPECT_NE(screen.ChkFieldNameLcase.value, screen.ChkFieldNameUcase.value);
  screen.ChkFieldNameUcase.value = true;
  ChkFieldNameUcase_Click(session, scripted.host, screen);
  EXPECT_FALSE(screen.ChkFieldNameLcase.value);
  screen.ChkFieldNameLcase.value = true;
  ChkFieldNameLcase_Click(session, scripted.host, screen);
  EXPECT_FALSE(screen.ChkFieldNameUcase.value);
  screen.ChkFieldNameAsTyped.value = true;
  ChkFieldNameAsTyped_Click(session, scripted.host, screen);
  EXPECT_FALSE(screen.ChkFieldNameLcase.value);
  session.gDB->execute("UPDATE MAS_SYSTEM SET field_name_ucase = -1, field_name_lcase = 0, field_name_astyped = -1");
  open();
  EXPECT_FALSE(screen.ChkFieldNameAsTyped.value) << "the older flag is what a save goes by";
}

TEST_F(SystemScreen, NamesAsTypedAreThePresetOfServersThatKeepThem) {
  open();
  choose("PostgreSQL");
  EXPECT_FALSE(screen.ChkFieldNameAsTyped.value) << "a System that is there keeps its way";
  openNew();
  for (const auto& [kind, preset] :
       {std::pair("PostgreSQL", true), std::pair("Oracle", false), std::pair("MySQL", true)}) {
    choose(kind);
    EXPECT_EQ(screen.ChkFieldNameAsTyped.value, preset) << kind;
  }
  screen.ChkFieldNameAsTyped.value = false;
  ChkFieldNameAsTyped_Click(session, scripted.host, screen);
  choose("PostgreSQL");
  EXPECT_FALSE(screen.ChkFieldNameAsTyped.value) << "a person's choice stands";
}

TEST_F(SystemScreen, RefusedWriteLeavesTheRow) {
  open();
  screen.ChkDataBase.value = false;
  screen.TxtMemo.text = "新しい概要";
  screen.TxtBlockSize.text = "99999999999";
  scripted.answerAll(kYes);
  EXPECT_FALSE(press());
  ASSERT_EQ(scripted.messages.size(), 2u);
  EXPECT_TRUE(scripted.messages[1].starts_with("確認|更新エラー\n")) << scripted.messages[1];
  EXPECT_EQ(cell("Select 概要, DB_BLOCK_SIZE From MAS_SYSTEM"), "販売管理|8192");
  EXPECT_FALSE(screen.unloaded);
}

TEST_F(SystemScreen, AQuoteInTheNameReachesNoOtherSystem) {
  const std::string odd = "x' OR '1'='1";
  addTable("販売", 1, "Oracle", -1);
  addField(1, 1, "'Ａ'", "'number', '数量(値)', Null");
  openNew();
  screen.TxtSystemName.text = odd;
  scripted.answerAll(kYes);
  EXPECT_TRUE(press());
  const std::vector<std::string> before = contents(*session.gDB);
  open(odd);
  EXPECT_EQ(screen.TxtSystemName.text, odd);
  for (const auto tool :
       {CmdProtect_Click, CmdChk_Click, CmdNarrow_Click, CmdLowerCase_Click, CmdDef0_Click, CmdDel_Click})
    tool(session, scripted.host, screen);
  EXPECT_EQ(contents(*session.gDB), before);
  screen.TxtSystemNameNew.text = "o'hara";
  EXPECT_TRUE(cmdChange_Click(session, scripted.host, windows, screen));
  EXPECT_EQ(rows("Select システム名 From MAS_SYSTEM Order by ID"), (std::vector<std::string>{"販売", "o'hara"}));
}

TEST_F(SystemScreen, GuestChangesNothing) {
  session.gIsGuest = true;
  addTable("販売", 1, "Oracle");
  open();
  for (int i = 0; i < 4; ++i) scripted.expect("確認", "guestでは、変更できません.");
  EXPECT_FALSE(press());
  CmdProtect_Click(session, scripted.host, screen);
  CmdDel_Click(session, scripted.host, screen);
  screen.TxtSystemNameNew.text = "x";
  EXPECT_FALSE(cmdChange_Click(session, scripted.host, windows, screen));
  EXPECT_EQ(cell("Select 修正許可 From MAS_TABLEINFO"), "-1");
}

TEST_F(SystemScreen, ToolsReachAllTablesOfThisSystem) {
  addTable("販売", 1, "Oracle");
  addTable("販売", 2, "Oracle");
  addTable("在庫", 3, "Oracle");
  open();
  expectReport("全てのテープルに対して個別に編集禁止にする", 2);
  CmdProtect_Click(session, scripted.host, screen);
  EXPECT_EQ(rows("Select 修正許可 From MAS_TABLEINFO Order by ID"), (std::vector<std::string>{"0", "0", "-1"}));
  scripted.expect("確認", "全てのテーブルの編集許可を取り消す", kByEnter);
  CmdUnProtect_Click(session, scripted.host, screen);
  expectReport("全てのテーブルの編集許可を取り消す", 2);
  CmdUnProtect_Click(session, scripted.host, screen);
  EXPECT_EQ(rows("Select 修正許可 From MAS_TABLEINFO Order by ID"), (std::vector<std::string>{"-1", "-1", "-1"}));
  expectReport("このシステムにチェックポイントを設定", 2);
  CmdChk_Click(session, scripted.host, screen);
  EXPECT_EQ(rows("Select チェックポイント日付, 更新年月日, 作成者, 更新者, COMPNAME From MAS_TABLEINFO Order by ID"),
            (std::vector<std::string>{"2026/11/24 09:05:00|2026/11/24 09:05:00|admin|-|TESTPC",
                                      "2026/11/24 09:05:00|2026/11/24 09:05:00|admin|-|TESTPC", "-|-|yamada|-|-"}));
}

TEST_F(SystemScreen, ToolsOnFields) {
  addTable("販売", 1, "Oracle");
  addTable("販売", 2, "MySQL");
  addTable("在庫", 3, "Oracle");
  addField(1, 1, "'ＡＢ_カナ'", "'NUMBER', '数量(値)', Null");
  addField(1, 2, "Null", "'number', '数量(値)', ''");
  addField(1, 3, "'C'", "'number', '数量(値)', '7'");
  addField(1, 4, "'D'", "'number', '金額', Null");
  addField(2, 1, "'E'", "'number', '数量(値)', Null");
  addField(3, 1, "'Ｆ'", "'number', '数量(値)', Null");
  open();
  expectReport("項目名で設定さている全角を半角に変換します.", 4);
  CmdNarrow_Click(session, scripted.host, screen);
  expectReport("項目名で設定さている大文字を小文字に変換します.", 4);
  CmdLowerCase_Click(session, scripted.host, screen);
  expectReport("Number型で、項目分類=数値(値)に、\n初期値=0(Default 0)を設定する.", 2);
  CmdDef0_Click(session, scripted.host, screen);
  EXPECT_EQ(rows("Select 項目名, 初期値 From MAS_TABLEDETAILES Order by ID, ROWNO"),
            (std::vector<std::string>{"ab_ｶﾅ|0", "-|0", "c|7", "d|-", "e|-", "Ｆ|-"}));
}

TEST_F(SystemScreen, ReverseTablesGoWithTheirFields) {
  addTable("販売", 1, "Oracle");
  addTable("販売", 2, "Oracle", -1);
  addTable("在庫", 3, "Oracle", -1);
  for (int id : {1, 2, 3}) addField(id, 1, "'A'");
  open();
  expectReport("リバーステーブルを削除します.", 1);
  CmdDel_Click(session, scripted.host, screen);
  EXPECT_EQ(rows("Select ID From MAS_TABLEINFO Order by ID"), (std::vector<std::string>{"1", "3"}));
  EXPECT_EQ(rows("Select ID From MAS_TABLEDETAILES Order by ID"), (std::vector<std::string>{"1", "3"}));
  EXPECT_EQ(scripted.waitTexts, (std::vector<std::string>{"削除中です...", ""}));

  session.gDB->execute("UPDATE MAS_TABLEINFO SET REVERSE_DB = -1");
  session.gDB->execute("DROP TABLE MAS_TABLEDETAILES");
  scripted.expect("確認", "リバーステーブルを削除します.", kYes);
  scripted.expect("ごめん!!", "更新エラーがありました.");
  CmdDel_Click(session, scripted.host, screen);
  EXPECT_EQ(cell("Select Count(*) From MAS_TABLEINFO"), "2");
}

TEST_F(SystemScreen, RenameChecksAsksAndLogsOff) {
  session.gDB->execute("INSERT INTO MAS_SYSTEM (システム名) VALUES ('在庫')");
  addTable("販売", 1, "Oracle");
  bool loggedOff = false;
  windows.logOff = [&] { loggedOff = true; };
  open();
  const auto press = [&](const std::string& name) {
    screen.TxtSystemNameNew.text = name;
    return cmdChange_Click(session, scripted.host, windows, screen);
  };
  scripted.expect("確認", "変更後が未設定です.");
  EXPECT_FALSE(press(" "));
  scripted.expect("確認", "前後で同じです.");
  EXPECT_FALSE(press("販売 "));
  scripted.expect("確認", "変更後は、他で定義済みです.");
  EXPECT_FALSE(press("在庫"));
  EXPECT_EQ(screen.focus, "TxtSystemNameNew");
  scripted.expect("変更確認", "システム名を変更します.", kNo);
  EXPECT_FALSE(press("販売管理"));
  EXPECT_FALSE(loggedOff);
  scripted.expect("変更確認", "システム名を変更します.", kYes);
  scripted.expect("確認", "システム名を変更しました.\nログオフします.");
  EXPECT_TRUE(press("販売管理"));
  EXPECT_TRUE(loggedOff);
  EXPECT_EQ(cell("Select システム名 From MAS_TABLEINFO"), "販売管理");
}

TEST_F(SystemScreen, ClosingReadsTheCurrentSystemAnew) {
  ASSERT_TRUE(selectSystem(session, scripted.host, "販売"));
  std::string told;
  windows.systemChanged = [&](std::string_view name) { told = name; };
  open();
  screen.ChkDataBase.value = false;
  screen.ChkChangeData.value = true;
  expectSave();
  ASSERT_TRUE(press());
  EXPECT_TRUE(session.gCanEdit);
  frmSystemInf_Unload(session, scripted.host, windows, screen);
  EXPECT_FALSE(session.gCanEdit);
  EXPECT_EQ(told, "販売");
}

}  // namespace
}  // namespace quillmarden
