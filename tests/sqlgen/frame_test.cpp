#include "sqlgen/frame.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

#include <fstream>
#include <sstream>

#include "common/text.h"
#include "repository/schema.h"
#include "support/files.h"
#include "support/scripted_host.h"

namespace quillmarden {
namespace {

int count(std::string_view text, std::string_view part) {
  int times = 0;
  for (std::size_t at = text.find(part); at != std::string_view::npos; at = text.find(part, at + part.size())) ++times;
  return times;
}

class FrameTest : public testing::Test {
 protected:
  FrameTest() {
    session.gDB = std::make_unique<Database>(createRepository(host.folder.file("r.mdb")));
    session.gLoginUser = "admin";
    session.gCurrentSystemName = "販売";
    run("INSERT INTO MAS_SYSTEM (システム名, 概要, databasetype, 修正許可) VALUES ('販売', '受注から\r\n 請求まで \n; "
        "外', 'MySQL', -1)");
    addTable(1, "t_order", "受注", "MySQL");
    addTable(2, "t_line", "明細", "postgresql");
    addTable(3, "v_sum", "集計", "Oracle", "VIEW");
    addTable(4, "memo", "メモ", "Access");
  }

  void run(const std::string& sql) { session.gDB->execute(sql); }

  void addTable(int id, const std::string& name, const std::string& japaneseName, const std::string& kind,
                const std::string& category = "") {
    const std::string number = std::to_string(id);
    run("INSERT INTO MAS_TABLEINFO (ID, システム名, テーブル名, 日本語名, ファイル種別, 分類, 削除フラグ) VALUES (" +
        number + ", '販売', '" + name + "', '" + japaneseName + "', '" + kind + "', '" + category + "', 0)");
    run("INSERT INTO MAS_TABLEDETAILES (ID, ROWNO, 表示順, 日本語名, 項目名, KEY, 型, Null値) VALUES (" + number +
        ", 1, 1, '番号', 'no', -1, 'int', 'NOT NULL')");
    rows.push_back(gPadText(japaneseName, 50) + "\t" + name + "\t" + number);
    list.LstTable.add(rows.back());
  }

  void select(std::initializer_list<int> chosen) {
    for (int row : chosen) {
      list.LstTableSel.add(rows[static_cast<std::size_t>(row)]);
      list.LstTableSel.selected.back() = true;
    }
  }

  /// 作成回数, SQL文初回作成日, SQL文最新作成日, チェックポイント日付
  std::string stamp(int id) {
    const Recordset row = session.gDB->openRecordset(
        "SELECT 作成回数, SQL文初回作成日, SQL文最新作成日, チェックポイント日付 FROM MAS_TABLEINFO WHERE ID = " +
        std::to_string(id));
    std::string text;
    for (int i = 0; i < row.fieldCount(); ++i)
      text += (i > 0 ? "|" : "") + (row.isNull(i) ? std::string("-") : std::string(row.text(i)));
    return text;
  }

  std::string script(const RunResult& result) { return readFile(result.file); }

  ScriptedHost host;
  Session session;
  frmTBList list;
  frmTBDetail detail;
  std::vector<std::string> rows;
  const RunTarget utf8{std::nullopt, TextEncoding::Utf8};
};

TEST_F(FrameTest, CurrentRowIsAskedForWrittenStampedAndOffered) {
  host.expect("確認", "Sql文を作成します.", kYes);
  host.expect("確認", "作成結果を表示しますか?", kYes);
  list.LstTable.listIndex = 0;
  host.now.second = 42;
  const RunResult result =
      mnuCreateSql_Click(session, host.host, list, detail, SqlRows::Current, SqlClauses::AsOptions);

  EXPECT_FALSE(result.failed);
  EXPECT_EQ(result.tables, 1);
  EXPECT_EQ(result.file, host.host.machine.tempFolder / "販売_-_-" / "Sql_受注.txt");
  EXPECT_EQ(host.opened, std::vector<std::string>{result.file.string()});
  const std::string text = fromCp932(script(result));
  const std::string head =
      "-- *********************************** --\r\n"
      "-- システム名 : \t販売\r\n"
      "-- 概 要      : \t受注から\r\n"
      "-- 概 要      : \t請求まで\r\n"
      "-- 概 要      : \t; 外\r\n"
      "-- \tCreate Date:2026/11/24 09:05\r\n"
      "-- *********************************** --\r\n"
      "\r\n"
      "/*----------------------------------------------------*/\r\n"
      "/* \t受注*/\r\n";
  EXPECT_EQ(text.substr(0, head.size()), head);
  EXPECT_EQ(count(text, "DROP TABLE t_order\r\n"), 1);
  EXPECT_EQ(stamp(1), "1|2026/11/24 09:05:00|2026/11/24 09:05:00|2026/11/24 09:05:00");
  EXPECT_EQ(detail.lblFirstSQL.caption, "2026/11/24 09:05");
  EXPECT_EQ(detail.lblNumSQL.caption, "1");
  EXPECT_FALSE(list.running);
  EXPECT_FALSE(detail.batch);
  EXPECT_EQ(list.LstTable.listIndex, 0);
}

TEST_F(FrameTest, SecondRunKeepsTheFirstDateAndReplacesTheFile) {
  host.answerAll(kYes);
  list.LstTable.listIndex = 0;
  mnuCreateSql_Click(session, host.host, list, detail, SqlRows::Current, SqlClauses::AsOptions);
  host.now = {2026, 12, 1, 8, 0, 30};
  const RunResult result =
      mnuCreateSql_Click(session, host.host, list, detail, SqlRows::Current, SqlClauses::All, utf8);
  const std::string text = script(result);
  EXPECT_EQ(count(text, "-- システム名"), 1);
  EXPECT_EQ(count(text, "/* \t作成回数  :2 回目*/\r\n"), 1);
  EXPECT_EQ(count(text, "DROP TABLE"), 0) << "the full form never drops";
  EXPECT_EQ(stamp(1), "2|2026/11/24 09:05:00|2026/12/01 08:00:00|2026/11/24 09:05:00");
}

TEST_F(FrameTest, DeclinedOrBlockedRunsLeaveNothing) {
  list.LstTable.listIndex = 0;
  host.expect("確認", "Sql文を作成します.", kNo);
  EXPECT_TRUE(
      mnuCreateSql_Click(session, host.host, list, detail, SqlRows::Current, SqlClauses::AsOptions).file.empty());
  detail.changed = true;
  host.expect("確認", "詳細画面が編集中です.");
  EXPECT_TRUE(mnuCreateSql_Click(session, host.host, list, detail, SqlRows::All, SqlClauses::AsOptions).failed);
  host.expect("選択してね!", "選択されていないようです.");
  EXPECT_TRUE(mnuCreateSQLSel_Click(session, host.host, list, detail, SqlClauses::AsOptions).failed);
  EXPECT_EQ(stamp(1), "-|-|-|-");
  EXPECT_TRUE(std::filesystem::is_empty(host.host.machine.tempFolder));
}

TEST_F(FrameTest, AllRowsSkipGroupLinesAndOtherKinds) {
  list.LstTable.rows.insert(list.LstTable.rows.begin(), {"<グループ>", " [他] \tx\t1", "12"});
  list.LstTable.selected.resize(list.LstTable.rows.size());
  host.expect("確認", "Sql文を作成します.", kYes);
  host.expect("確認", "作成結果を表示しますか?", kNo);
  list.LstTable.listIndex = 4;
  const RunResult result =
      mnuCreateSql_Click(session, host.host, list, detail, SqlRows::All, SqlClauses::AsOptions, utf8);
  EXPECT_FALSE(result.failed);
  EXPECT_EQ(result.tables, 3);
  EXPECT_EQ(result.file.filename(), "Sql_販売.txt");
  const std::string text = script(result);
  EXPECT_EQ(count(text, "CREATE TABLE T_ORDER\r\n"), 1);
  EXPECT_EQ(count(text, "CREATE TABLE public.T_LINE\r\n"), 1);
  EXPECT_EQ(count(text, "CREATE VIEW V_SUM  AS \r\n"), 1);
  EXPECT_EQ(count(text, "memo"), 0);
  EXPECT_EQ(stamp(2).substr(0, 2), "1|");
  EXPECT_EQ(stamp(3), "-|-|-|-") << "a view is not stamped";
  EXPECT_EQ(stamp(4), "-|-|-|-");
  EXPECT_EQ(list.LstTable.listIndex, 4);
}

TEST_F(FrameTest, KindWithoutGeneratorIsToldWhenAlone) {
  host.expect("確認", "Sql文を作成します.", kYes);
  host.expect("確認", "このデータベースには対応していません.");
  host.expect("確認", "作成結果を表示しますか?", kNo);
  list.LstTable.listIndex = 3;
  const RunResult result =
      mnuCreateSql_Click(session, host.host, list, detail, SqlRows::Current, SqlClauses::AsOptions, utf8);
  EXPECT_TRUE(result.failed);
  EXPECT_EQ(result.tables, 0);
  EXPECT_EQ(count(script(result), "\r\n"), 8) << "the file holds its head alone";
}

TEST_F(FrameTest, SelectionRunHasOneHeadPerTableAndSeesItsOwnStamps) {
  select({1, 0, 1});
  host.expect("確認", "Sql文を作成します.", kYes);
  host.expect("確認", "出力結果を表示しますか?", kYes);
  const RunResult result = mnuCreateSQLSel_Click(session, host.host, list, detail, SqlClauses::All, utf8);
  const std::string text = script(result);
  EXPECT_EQ(count(text, "-- システム名"), 3);
  EXPECT_EQ(count(text, "DROP TABLE"), 0);
  EXPECT_LT(text.find("T_LINE"), text.find("T_ORDER"));
  EXPECT_EQ(count(text, "-- \t作成回数  : 1 回目"), 1);
  EXPECT_EQ(count(text, "-- \t作成回数  :2 回目"), 1) << "the second time the table knows of the first";
  EXPECT_EQ(stamp(2).substr(0, 2), "2|");
  EXPECT_EQ(host.opened, std::vector<std::string>{result.file.string()});
}

TEST_F(FrameTest, ViewRunsTakeEveryKindAndStampNothing) {
  host.expect("確認", "Sql文を作成します.", kYes);
  host.expect("確認", "作成結果を表示しますか?", kNo);
  list.LstTable.listIndex = 3;
  const RunResult single = mnuCreateView_Click(session, host.host, list, detail, utf8);
  EXPECT_EQ(single.file.filename(), "SqlView_メモ.txt");
  EXPECT_EQ(count(script(single), "-- システム名"), 1);
  EXPECT_EQ(count(script(single), "CREATE VIEW V_MEMO  AS \r\n"), 1);

  select({0, 3});
  host.expect("確認", "VIEW.Sql文を作成します.", kYes);
  host.expect("確認", "出力結果を表示しますか?", kNo);
  const RunResult many = mnuCreateViewSel_Click(session, host.host, list, detail, utf8);
  EXPECT_EQ(many.file.filename(), "SqlView_販売.txt");
  EXPECT_EQ(count(script(many), "-- システム名"), 0);
  EXPECT_EQ(count(script(many), "CREATE VIEW V_"), 2);
  EXPECT_EQ(stamp(1), "-|-|-|-");
}

TEST_F(FrameTest, ARefusedQuestionEndsTheRunWithTheTablesBeforeIt) {
  run("UPDATE MAS_TABLEDETAILES SET 項目参照先 = \"区分\" WHERE ID = 2");
  run("DROP TABLE MAS_DIVISIONDETAILES");
  host.expect("確認", "Sql文を作成します.", kYes);
  bool told = false;
  const auto scripted = host.host.dialogs.message;
  host.host.dialogs.message = [&](std::string_view text, int style, std::string_view title) {
    if (text.starts_with("1件まで出力しています.\n 途中までのファイル : ")) return static_cast<int>(kOk);
    if (!text.starts_with("出力エラーがありました.\n ")) return scripted(text, style, title);
    EXPECT_TRUE(text.ends_with("\n出力先ファイルを開いているようです.")) << text;
    told = true;
    return static_cast<int>(kOk);
  };
  const RunResult result =
      mnuCreateSql_Click(session, host.host, list, detail, SqlRows::All, SqlClauses::AsOptions, utf8);
  EXPECT_TRUE(told);
  EXPECT_TRUE(result.failed);
  EXPECT_TRUE(list.errorMark);
  EXPECT_EQ(result.tables, 1);
  EXPECT_EQ(count(script(result), "CREATE TABLE T_ORDER\r\n"), 1);
  EXPECT_EQ(stamp(1).substr(0, 2), "1|") << "what is in the file is stamped";
  EXPECT_EQ(stamp(2), "-|-|-|-");
}

TEST_F(FrameTest, AFullDiskLeavesWholeTables) {
  host.answerAll(kYes);
  const RunResult whole = mnuCreateSql_Click(session, host.host, list, detail, SqlRows::All, SqlClauses::All, utf8);
  const std::string text = script(whole);
  const std::size_t secondTable = text.find("--------------------------------------------------------\r\n-- \tSchema");
  ASSERT_NE(secondTable, std::string::npos);

  // No other thread runs, and the limit is lifted before the Repository is written again.
  rlimit before{};
  getrlimit(RLIMIT_FSIZE, &before);
  const auto handler = signal(SIGXFSZ, SIG_IGN);
  const rlimit small{secondTable + 50, before.rlim_max};
  const auto answer = host.host.dialogs.message;
  host.host.dialogs.yield = [&] { setrlimit(RLIMIT_FSIZE, detail.lblID.caption == "2" ? &small : &before); };
  host.host.dialogs.message = [&](std::string_view text, int style, std::string_view title) {
    setrlimit(RLIMIT_FSIZE, &before);
    return answer(text, style, title);
  };
  host.messages.clear();
  const RunResult cut = mnuCreateSql_Click(session, host.host, list, detail, SqlRows::All, SqlClauses::All, utf8);
  setrlimit(RLIMIT_FSIZE, &before);
  signal(SIGXFSZ, handler);

  EXPECT_TRUE(cut.failed);
  EXPECT_EQ(cut.tables, 1);
  ASSERT_EQ(host.messages.size(), 3U);
  EXPECT_TRUE(host.messages[1].starts_with("確認|出力エラーがありました.\n ")) << host.messages[1];
  EXPECT_EQ(host.messages[2], "確認|1件まで出力しています.\n 途中までのファイル : " + cut.file.string());
  EXPECT_EQ(script(whole), text) << "the former script stands";
  const std::string left = script(cut);
  EXPECT_TRUE(left.ends_with(
      "/*----------------------------------------------------*/\r\n\r\n\r\nCREATE TABLE T_ORDER\r\n  (\r\n"
      "\t no\t int  NOT NULL \r\n\t,PRIMARY KEY ( no ) \r\n) \r\n;\r\n"))
      << left;
}

TEST_F(FrameTest, CharactersThatTheEncodingLacksAreNamed) {
  run("UPDATE MAS_TABLEINFO SET 日本語名 = '受注🍎注' WHERE ID = 1");
  host.answerAll(kYes);
  list.LstTable.listIndex = 0;
  const RunResult result =
      mnuCreateSql_Click(session, host.host, list, detail, SqlRows::Current, SqlClauses::AsOptions);
  ASSERT_EQ(result.lost.size(), 1u);
  EXPECT_EQ(result.lost[0].first, "t_order");
  EXPECT_EQ(result.lost[0].second, U"🍎");
  EXPECT_TRUE(
      mnuCreateSql_Click(session, host.host, list, detail, SqlRows::Current, SqlClauses::AsOptions, utf8).lost.empty());
}

TEST_F(FrameTest, AStoppedRunSaysSoAndLeavesTheFormerScript) {
  host.answerAll(kYes);
  const RunResult whole =
      mnuCreateSql_Click(session, host.host, list, detail, SqlRows::All, SqlClauses::AsOptions, utf8);
  const std::string former = script(whole);
  const std::string stamped = stamp(2);
  for (const bool runnable : {false, true}) {
    list.mnuCreateSQLRunnable.checked = runnable;
    int asked = 0;
    host.host.dialogs.stopRequested = [&] { return ++asked > 1; };
    host.messages.clear();
    const RunResult stopped =
        mnuCreateSql_Click(session, host.host, list, detail, SqlRows::All, SqlClauses::AsOptions, utf8);
    EXPECT_EQ(stopped.tables, 1);
    EXPECT_TRUE(stopped.stopped);
    EXPECT_FALSE(stopped.failed);
    EXPECT_EQ(stopped.file.filename(), "Sql_販売.途中.txt");
    EXPECT_EQ(host.messages[1],
              "確認|中断しました. 1件まで出力しています.\n 途中までのファイル : " + stopped.file.string());
    EXPECT_EQ(host.opened.back(), stopped.file.string());
    EXPECT_NE(script(stopped).find("CREATE TABLE"), std::string::npos);
    EXPECT_EQ(script(whole), former);
    EXPECT_EQ(stamp(2), stamped);
  }

  select({0, 1});
  int asked = 0;
  host.host.dialogs.stopRequested = [&] { return ++asked > 2; };
  const RunResult selection = mnuCreateSQLSel_Click(session, host.host, list, detail, SqlClauses::AsOptions, utf8);
  EXPECT_TRUE(selection.stopped);
  EXPECT_EQ(selection.tables, 1);
  EXPECT_EQ(script(whole), former);

  host.host.dialogs.stopRequested = [] { return false; };
  list.mnuCreateSQLRunnable.checked = false;
  EXPECT_FALSE(mnuCreateSql_Click(session, host.host, list, detail, SqlRows::All, SqlClauses::AsOptions, utf8).stopped);
  EXPECT_FALSE(std::filesystem::exists(selection.file)) << "the next whole script takes its place";
}

TEST_F(FrameTest, TwoRunsToOneTargetDoNotCutEachOther) {
  host.answerAll(kYes);
  const std::string file = host.folder.file("a.sql");
  GrowingFile other(file);
  other.write("theirs");
  const RunResult refused = mnuCreateSql_Click(session, host.host, list, detail, SqlRows::All, SqlClauses::AsOptions,
                                               {file, TextEncoding::Utf8});
  EXPECT_TRUE(refused.failed);
  EXPECT_TRUE(refused.file.empty());
  other.commit();
  EXPECT_EQ(readFile(file), "theirs");
}

TEST_F(FrameTest, ASystemThatCannotBeReadEndsTheRun) {
  session.gCurrentSystemName = "消えた";
  host.expect("確認", "Sql文を作成します.", kYes);
  host.expect("確認", "作成結果を表示しますか?", kYes);
  list.LstTable.listIndex = 0;
  EXPECT_TRUE(mnuCreateSql_Click(session, host.host, list, detail, SqlRows::Current, SqlClauses::AsOptions).failed);
  EXPECT_TRUE(host.opened.empty());
  select({0});
  host.expect("確認", "Sql文を作成します.", kYes);
  host.expect("しっぱい", "システム情報の取得に失敗しました.");
  EXPECT_TRUE(mnuCreateSQLSel_Click(session, host.host, list, detail, SqlClauses::AsOptions).failed);
}

TEST_F(FrameTest, AChosenTargetIsWrittenUnlessItIsNotOurs) {
  host.answerAll(kYes);
  list.LstTable.listIndex = 0;
  const auto chosen = host.folder.path() / "out.sql";
  EXPECT_EQ(mnuCreateSql_Click(session, host.host, list, detail, SqlRows::Current, SqlClauses::AsOptions,
                               {chosen, TextEncoding::Utf8})
                .file,
            chosen);
  const auto link = host.folder.path() / "link";
  std::filesystem::create_symlink(chosen, link);
  const std::string repository = session.gDB->path();
  const std::string former = readFile(chosen);
  const std::string stamped = stamp(1);
  select({0, 1});
  for (const std::string& file : {link.string(), std::string("/dev/null"), repository, repository + "-journal"}) {
    host.messages.clear();
    const RunResult one = mnuCreateSql_Click(session, host.host, list, detail, SqlRows::Current, SqlClauses::AsOptions,
                                             {file, TextEncoding::Utf8});
    EXPECT_TRUE(one.failed && one.file.empty()) << file;
    const RunResult more =
        mnuCreateSQLSel_Click(session, host.host, list, detail, SqlClauses::AsOptions, {{file}, TextEncoding::Utf8});
    EXPECT_TRUE(more.failed && more.file.empty()) << file;
    EXPECT_TRUE(host.messages.back().starts_with("確認|出力エラーがありました.\n出力先に指定できないファイルです.\n"))
        << host.messages.back();
  }
  EXPECT_TRUE(std::filesystem::is_symlink(link) && std::filesystem::is_character_file("/dev/null"));
  EXPECT_EQ(readFile(chosen), former);
  EXPECT_EQ(stamp(1), stamped);
}

TEST_F(FrameTest, BackupCheckIsToggledAndStored) {
  const auto ini = host.folder.path() / "tableinf.ini";
  session.ini.emplace(ini);
  mnuCreateSQLBack_Click(session, list);
  EXPECT_TRUE(list.mnuCreateSQLBack.checked);
  EXPECT_EQ(gGetAppSetting(IniFile(ini), "CreateSql2BackUpTable"), "1");
  mnuCreateSQLBack_Click(session, list);
  EXPECT_EQ(gGetAppSetting(IniFile(ini), "CreateSql2BackUpTable"), "0");
}

}  // namespace
}  // namespace quillmarden
