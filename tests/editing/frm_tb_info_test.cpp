#include "editing/frm_tb_info.h"

#include <fstream>

#include "common/text.h"
#include "editing_fixture.h"

namespace quillmarden {
namespace {

namespace fs = std::filesystem;

class TbInfoTest : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    session.gDbFolder = scripted.folder.path().string();
    session.gDbFileName = "tableinf.mdb";
    windows.listChanged = [this](std::string_view id) { refreshed.emplace_back(id); };
  }

  bool open(const std::string& id) { return frmTBInfo_Load(session, scripted.host, info, id); }
  /// A new table with all that a full check asks for.
  void openFilled() {
    ASSERT_FALSE(open(""));
    info.TxtJPN.text = "受注";
    info.TxtTableName.text = "orders";
    info.CmbBunrui.text = "マスタ";
    info.TxtMemo.text = "概要";
    info.TxtRyaku.text = "ord";
    info.CmbKanKaku.text = "毎日";
  }
  bool press() { return cmdOK_Click(session, scripted.host, windows, info); }
  void expectFault(const std::string& text) {
    scripted.expect("入力確認", text);
    EXPECT_TRUE(press()) << text;
  }
  /// A live table with one field that another table in another System refers to.
  std::string addReferred() {
    const std::string id = addTable("販売", "PostgreSQL", "T", "表");
    database().execute(
        "UPDATE MAS_TABLEINFO SET 分類 = 'マスタ', 概要 = '概', 略名 = 't', 作成間隔 = '毎日' WHERE ID = " + id);
    addField(id, 1, "日本語名, 項目名", "'番号', 'A'");
    addSystem("経理", "PostgreSQL");
    other = addTable("経理", "PostgreSQL", "U", "別");
    addField(other, 1, "項目名, 外部参照, 外部参照TABLEID, 外部参照ROWNO", "'R', '表:番号', " + id + ", 1");
    return id;
  }
  std::string header(const std::string& id, const std::string& columns) {
    return cell("SELECT " + columns + " FROM MAS_TABLEINFO WHERE ID = " + id);
  }

  frmTBInfo info;
  Windows windows;
  Lines refreshed;
  std::string other;
};

constexpr std::string_view kUpdate =
    "更新します.\n更新しないときは、[いいえ]のあと\n[キャンセル]ボタンを押してください.";

TEST_F(TbInfoTest, ANewTableIsWrittenWhole) {
  openFilled();
  database().execute(
      "INSERT INTO MAS_KENSU (システム名, 定義名, 件数, 削除フラグ, 全システム共通) VALUES ('販売', '月間', 9, 0, 0)");
  openFilled();
  info.CmbKensu.text = "月間";
  info.TxtKensu[1].text = "1,200";
  info.TxtOra[kOraPctFree].text = "20";
  info.TxtMakeDate.text = "2026/4/1";
  info.ChkPmark.value = info.ChkBRIN.value = info.ChkRecUpdate.value = true;
  info.CmbInpData.text = "データ連携";
  scripted.expect("確認", std::string(kUpdate), kNo);
  EXPECT_TRUE(press());
  EXPECT_EQ(cell("SELECT Count(*) AS n FROM MAS_TABLEINFO"), "0");
  scripted.expect("確認", std::string(kUpdate), kYes);
  ASSERT_FALSE(press());
  EXPECT_EQ(
      header("1",
             "作成年月日, 作成者, システム名, テーブル名, 略名, 日本語名, 分類, 概要, 修正許可, ファイル種別, "
             "更新年月日, 作成間隔, 想定数, 更新者, 削除フラグ, COMPNAME, make_server"),
      "2026/11/24 09:05:00|admin|販売|orders|ord|受注|マスタ|概要|-1|PostgreSQL|2026/11/24 09:05:00|毎日|1200|admin|0|"
      "TESTPC|TESTPC");
  EXPECT_EQ(header("1",
                   "ORA_INITIAL, ORA_PCTFREE, データ入力元, 進捗状況, 作成日, 完了日, 全システム共通, 件数定義ID, "
                   "レコード更新削除, REVERSE_DB, pmark, brinindex, inttriggerflg, reffile"),
            "-|20|データ連携|未着手|2026/04/01 00:00:00|-|0|1|-1|0|-1|-1|0|");
  EXPECT_EQ(info.lblID.caption + info.savedJPN + info.savedTableName, "1受注orders");
  EXPECT_TRUE(info.saved);
  EXPECT_EQ(refreshed, (Lines{"1"}));

  // What was stored comes back, and a second save keeps who made it and when.
  ASSERT_FALSE(open("1"));
  EXPECT_EQ(info.CmbKensu.text + info.TxtMakeDate.text + info.TxtOra[kOraPctFree].text, "月間2026/04/0120");
  EXPECT_TRUE(info.ChkPmark.value && info.ChkRecUpdate.value && info.ChkEditOK.value && !info.ChkTrigger.value);
  session.gLoginUser = "ito";
  scripted.now.hour = 10;
  scripted.expect("確認", std::string(kUpdate), kYes);
  ASSERT_FALSE(press());
  EXPECT_EQ(header("1", "作成者, 作成年月日, 更新者, 更新年月日, 件数定義ID"),
            "admin|2026/11/24 09:05:00|ito|2026/11/24 10:05:00|1");
}

TEST_F(TbInfoTest, EachSortOfTableStopsAtItsFirstFault) {
  openFilled();
  struct Case {
    std::string& box;
    std::string bad;
    std::string fault;
  };
  const Case cases[] = {
      {info.TxtJPN.text, " ", "日本語名が未設定です."},
      {info.TxtTableName.text, "", "テーブル名が未設定です."},
      {info.CmbFileType.text, "", "データベースが未設定です."},
      {info.CmbBunrui.text, "", "目的分類が未設定です."},
      {info.TxtMemo.text, " ", "概要が未設定です."},
      {info.TxtRyaku.text, "", "略名が未設定です."},
      {info.CmbKanKaku.text, "", "作成間隔が未設定です."},
      {info.TxtJPN.text, "受'注", "日本語名に使用しては\nいけない文字が含まれています."},
      {info.TxtTableName.text, "a/b", "テーブル名に使用しては\nいけない文字が含まれています."},
      {info.TxtTableName.text, "orders@", "テーブル名に使用しては\nいけない文字が含まれています."},
      {info.CmbDataBunrui.text, "データ分類六", "データ分類は10文字以内です."},
      {info.CmbKanKaku.text, "12345678901", "作成間隔は10文字以内です."},
      {info.TxtRyaku.text, std::string(51, 'x'), "略名が長すぎます. 50バイト(全角25文字)までです."},
      {info.TxtMakeDate.text, "2026/02/30", "作成日が不正な日付です."},
      {info.TxtEndDate.text, "x", "完了日が不正な日付です."},
      {info.TxtChgDate.text, "x", "変更日が不正な日付です."},
  };
  for (const Case& one : cases) {
    const std::string good = one.box;
    one.box = one.bad;
    expectFault(one.fault);
    one.box = good;
  }
  info.CmbFileType.text = "PG管理";
  info.CmbBunrui.text = info.TxtMemo.text = info.TxtRyaku.text = "";
  scripted.expect("確認", std::string(kUpdate), kNo);
  EXPECT_TRUE(press()) << "programs need less";
  info.CmbFileType.text = "メンバー";
  info.TxtTableName.text.clear();
  info.TxtEndDate.text = "x";
  expectFault("終了予定日が不正な日付です.");
  info.TxtJPN.text.clear();
  expectFault("名称が未設定です.");
}

TEST_F(TbInfoTest, NamesAreUniqueAmongTheSystemsLiveTables) {
  const std::string taken = addTable("販売", "PostgreSQL", "ORDERS", "受注明細");
  openFilled();
  expectFault("テーブル名が他で使用されています.");
  info.TxtTableName.text = "orders2";
  info.TxtJPN.text = "受注明細";
  expectFault("日本語名が他で使用されています.");
  info.TxtJPN.text = "受注";
  database().execute("UPDATE MAS_TABLEINFO SET 略名 = 'Ord' WHERE ID = " + taken);
  expectFault("略名が他で使用されています.");
  info.CmbFileType.text = "メンバー";
  expectFault("略名が他で使用されています.");
  info.CmbFileType.text = "PostgreSQL";
  database().execute("UPDATE MAS_TABLEINFO SET 削除フラグ = 1 WHERE ID = " + taken);
  scripted.expect("確認", std::string(kUpdate), kNo);
  EXPECT_TRUE(press());
}

TEST_F(TbInfoTest, ATableMovesOnlyToWhereItsNamesAreFree) {
  const std::string id = addReferred();
  const std::string there = addTable("経理", "PostgreSQL", "V", "第三");
  database().execute("UPDATE MAS_TABLEINFO SET 略名 = 'T' WHERE ID = " + there);
  ASSERT_FALSE(open(id));
  info.CmbMoveSystem.text = "経理";
  scripted.expect("入力確認", "略名が他で使用されています.\n 経理");
  EXPECT_TRUE(cmdMoveSystem_Click(session, scripted.host, windows, info));
  EXPECT_EQ(header(id, "システム名"), "販売");
  database().execute("UPDATE MAS_TABLEINFO SET 略名 = 'v' WHERE ID = " + there);
  scripted.expect("確認", "所属システム変更の変更をしました。");
  EXPECT_FALSE(cmdMoveSystem_Click(session, scripted.host, windows, info));
  EXPECT_EQ(header(id, "システム名"), "経理");
}

TEST_F(TbInfoTest, NamesTakeTheSystemsForm) {
  session.gCurrentSystem.tableNarrow = session.gCurrentSystem.tableUpper = true;
  session.gCurrentSystem.ryakuLower = session.gCurrentSystem.ryakuDelMoji = true;
  openFilled();
  EXPECT_EQ(info.lblTableNameForm.caption + "/" + info.lblRyakuForm.caption, "半角大文字/小文字半角,「- 」「_ 」削除");
  info.TxtTableName.text = "orders［１］";
  expectFault("テーブル名に使用しては\nいけない文字が含まれています.");
  info.TxtTableName.text = " ｏrders ";
  info.TxtRyaku.text = "Ａ-b_１";
  scripted.answerAll(kYes);
  ASSERT_FALSE(press());
  EXPECT_EQ(header("1", "テーブル名, 略名"), "ORDERS|ab1");
  session.gCurrentSystem = {};
  EXPECT_EQ(storedTableName(session, " ｏr "), "ｏr");
  EXPECT_EQ(storedRyaku(session, "Ａ_（b）"), "A_(b)");
}

TEST_F(TbInfoTest, ARenameRepairsWhatRefersToTheTable) {
  const std::string id = addReferred();
  database().execute("INSERT INTO DAT_REFERENCE (システム名, ID, ROWNO, ID_REF, ROWNO_REF, FK) VALUES ('経理', " + id +
                     ", 1, " + other + ", 1, '表:番号')");
  const std::string question =
      "下記の内容について変更されています.\n  日本語名が変更になっています.\n  テーブル名が変更になっています.\n"
      "変更を行い、関連項目も一括変更しますか?";
  ASSERT_FALSE(open(id));
  info.TxtJPN.text = "新表";
  info.TxtTableName.text = "T2";
  scripted.expect("確認", question, kNo);
  scripted.expect("確認", std::string(kUpdate), kYes);
  ASSERT_FALSE(press());
  EXPECT_EQ(fields(other, "外部参照"), (Lines{"表:番号"}));
  ASSERT_FALSE(open(id));
  info.TxtJPN.text = "表改";
  scripted.expect("確認",
                  "下記の内容について変更されています.\n  日本語名が変更になっています.\n"
                  "変更を行い、関連項目も一括変更しますか?",
                  kYes);
  scripted.expect("確認", std::string(kUpdate), kYes);
  ASSERT_FALSE(press());
  EXPECT_EQ(fields(other, "外部参照"), (Lines{"表改:番号"}));
  EXPECT_EQ(cell("SELECT FK FROM DAT_REFERENCE"), "表:番号");
}

TEST_F(TbInfoTest, TheKindOfATableWithFieldsGoesBack) {
  const std::string id = addReferred();
  ASSERT_FALSE(open(id));
  info.CmbFileType.text = "Oracle";
  scripted.expect(
      "入力確認",
      "作成先のデータベース名が変更されました.\nテーブルの詳細情報があります.\nこのため、変更することはできません.\n"
      "元に戻します.");
  CmbFileType_Change(session, scripted.host, info);
  EXPECT_EQ(info.CmbFileType.text, "PostgreSQL");
  ASSERT_FALSE(open(addTable("販売", "PostgreSQL", "V", "空")));
  info.CmbFileType.text = "Oracle";
  CmbFileType_Change(session, scripted.host, info);
  EXPECT_EQ(info.CmbFileType.text, "Oracle") << "an empty table may move";
}

TEST_F(TbInfoTest, AReverseResultEndsWithItsMark) {
  const std::string id = addReferred();
  database().execute("UPDATE MAS_TABLEINFO SET REVERSE_DB = -1, テーブル名 = 'T@' WHERE ID = " + id);
  ASSERT_FALSE(open(id));
  scripted.expect("確認", std::string(kUpdate), kYes);
  ASSERT_FALSE(press());
  EXPECT_EQ(header(id, "REVERSE_DB, テーブル名"), "-1|T@") << "a change of the rest leaves the state";
  info.TxtTableName.text = "T";
  scripted.expect("確認",
                  "下記の内容について変更されています.\n  テーブル名が変更になっています.\n"
                  "変更を行い、関連項目も一括変更しますか?",
                  kYes);
  scripted.expect("確認",
                  "更新します.\nリバースフラグは解除されます.\n更新しないときは、[いいえ]のあと\n[キャンセル]"
                  "ボタンを押してください.",
                  kYes);
  ASSERT_FALSE(press());
  EXPECT_EQ(header(id, "REVERSE_DB, テーブル名"), "0|T");
}

TEST_F(TbInfoTest, ARefusedSaveLeavesTheRow) {
  const std::string id = addReferred();
  ASSERT_FALSE(open(id));
  info.TxtInpForm.text = std::string(300, 'x');
  scripted.answerAll(kYes);
  EXPECT_TRUE(press());
  EXPECT_TRUE(scripted.messages.back().starts_with("確認とゆうか...|更新エラーがありました.\n "));
  EXPECT_TRUE(scripted.messages.back().ends_with("のエラーが発生しました."));
  EXPECT_EQ(header(id, "画面名等, 更新者"), "-|-");
  EXPECT_FALSE(info.saved);
}

TEST_F(TbInfoTest, WorkDatesFollowTheStatus) {
  openFilled();
  const auto choose = [&](std::string_view status) {
    info.CmbStat.text = status;
    CmbStat_Change(scripted.host, info);
    return info.TxtMakeDate.text + "|" + info.TxtEndDate.text + "|" + info.TxtChgDate.text;
  };
  EXPECT_EQ(choose("未着手"), "||") << "no question about dates that are not there";
  EXPECT_EQ(choose("開発中"), "2026/11/24||");
  scripted.now.day = 25;
  EXPECT_EQ(choose("完了"), "2026/11/24|2026/11/25|");
  EXPECT_EQ(choose("開発中"), "2026/11/24|2026/11/25|") << "a date that is set stays";
  EXPECT_EQ(choose("変更中"), "2026/11/24|2026/11/25|2026/11/25");
  scripted.expect("確認", "作成日/完了日/変更日を初期化します.", kNo);
  EXPECT_EQ(choose("未着手"), "2026/11/24|2026/11/25|2026/11/25");
  scripted.expect("確認", "作成日/完了日/変更日を初期化します.", kYes);
  EXPECT_EQ(choose("未着手"), "||");
}

TEST_F(TbInfoTest, TheShortNamesInUseAreListed) {
  const std::string id = addReferred();
  openFilled();
  info.TxtRyaku.text = "T";
  TxtRyaku_Change(session, scripted.host, info);
  EXPECT_EQ(info.lstRyaku.rows, (Lines{"t"}));
  database().execute("UPDATE MAS_TABLEINFO SET 略名 = 'x''y' WHERE ID = " + id);
  for (const char* text : {"x'", "X", "x' OR '1'='1", "["}) {
    info.TxtRyaku.text = text;
    TxtRyaku_Change(session, scripted.host, info);
    EXPECT_EQ(info.lstRyaku.rows, std::string_view(text).size() < 3 && *text != '[' ? Lines{"x'y"} : Lines{}) << text;
  }
}

TEST_F(TbInfoTest, ATableMovesWithItsReferences) {
  const std::string id = addReferred();
  database().execute("INSERT INTO DAT_REFERENCE (システム名, ID, ROWNO, ID_REF, ROWNO_REF) VALUES ('販売', " + id +
                     ", 1, 9, 1)");
  ASSERT_FALSE(open(id));
  EXPECT_EQ(info.CmbMoveSystem.entries, (Lines{"経理"}));
  info.CmbMoveSystem.text = std::string(300, 'x');
  scripted.answerAll(kOk);
  EXPECT_TRUE(cmdMoveSystem_Click(session, scripted.host, windows, info));
  EXPECT_EQ(scripted.messages.back(), "確認|指定のシステムが存在しません.\n システム名 : " + info.CmbMoveSystem.text);
  EXPECT_EQ(header(id, "システム名"), "販売");
  info.CmbMoveSystem.text = "経理";
  EXPECT_FALSE(cmdMoveSystem_Click(session, scripted.host, windows, info));
  EXPECT_EQ(scripted.messages.back(), "確認|所属システム変更の変更をしました。");
  EXPECT_EQ(header(id, "システム名") + cell("SELECT システム名 FROM DAT_REFERENCE"), "経理経理");
}

TEST_F(TbInfoTest, AReferenceFileIsTakenInAndCleared) {
  const std::string id = addReferred();
  const std::string file = scripted.folder.file("O'Neilの設計.xlsx");
  std::ofstream(file) << "1";
  const auto drop = [&](Lines files) { TxtRefFileName_Drop(session, scripted.host, info, files); };
  openFilled();
  scripted.expect("確認", "複数ファイル選択は処理できません.");
  drop({file, file});
  scripted.expect("確認", "テーブル情報を保存してからのみ設定できます.");
  drop({file});
  ASSERT_FALSE(open(id));
  scripted.expect("確認", "ファイルの拡張子は対象外です.\n File : a.ＥXE\nＥXE");
  drop({scripted.folder.file("a.ＥXE")});
  scripted.expect("確認", "参照ファイルを、MDBフォルダ配下に複写します.", kNo);
  drop({file});
  EXPECT_EQ(info.TxtRefFileName.text, "");
  const std::string copy = scripted.folder.file("RefFiles/tableinf/O'Neilの設計.xlsx");
  scripted.expect("確認", "参照ファイルを、MDBフォルダ配下に複写します.", kYes);
  drop({file});
  EXPECT_TRUE(fs::exists(copy));
  EXPECT_EQ(header(id, "reffile"), "O'Neilの設計.xlsx");
  cmdRefFileOpen_Click(session, scripted.host, info);
  EXPECT_EQ(scripted.opened, (Lines{copy}));

  scripted.expect("確認", "参照ファイルを、MDBフォルダ配下に複写します.", kYes);
  scripted.expect("確認", "複写先に同じファイルが存在します. 上書きしますか?\n O'Neilの設計.xlsx", kNo);
  scripted.expect("確認", "複写先に同じファイルが存在し、ユーザーにより[いいえ]が選択されました.");
  drop({file});
  database().execute("UPDATE MAS_TABLEINFO SET reffile = 'O''Neilの設計.xlsx' WHERE ID = " + other);
  scripted.expect("確認", "ファイルは削除しないので、手動で処理してください.");
  cmdClearRefFile_Click(session, scripted.host, info);
  EXPECT_EQ(info.TxtRefFileName.text + header(id, "reffile"), "");
  EXPECT_TRUE(fs::exists(copy));
  cmdRefFileOpen_Click(session, scripted.host, info);
  info.TxtRefFileName.text = "none.txt";
  scripted.expect("確認", "指定の参照ファイルが存在しない");
  cmdRefFileOpen_Click(session, scripted.host, info);
}

TEST_F(TbInfoTest, AMemoFileIsMadeOnce) {
  openFilled();
  scripted.expect("確認", "登録後、利用できます.");
  cmdFileMemo_Click(session, scripted.host, info);
  const std::string id = addReferred();
  ASSERT_FALSE(open(id));
  cmdFileMemo_Click(session, scripted.host, info);
  const std::string memo = scripted.folder.file("RefFiles/tableinf/00001_MemoFile.txt");
  EXPECT_EQ(scripted.opened, (Lines{memo}));
  EXPECT_EQ(info.TxtRefFileName.text + "/" + header(id, "reffile"), "00001_MemoFile.txt/00001_MemoFile.txt");
  std::string bytes;
  std::getline(std::ifstream(memo), bytes, '\0');
  EXPECT_EQ(fromCp932(bytes),
            "\r\n-- SYSTEM : 販売\r\n-- TABLE  : 00001 : 表\r\n-- CLASS  : マスタ\r\n-- DB     : PostgreSQL\r\n"
            "-- CREATE : 2026/11/24 09:05:00\r\n\r\n");
  std::ofstream(memo) << "mine";
  cmdFileMemo_Click(session, scripted.host, info);
  EXPECT_EQ(fs::file_size(memo), 4U) << "what a person wrote stays";
}

}  // namespace
}  // namespace quillmarden
