#include "repository/upgrade.h"

#include <sys/resource.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "other_tool.h"
#include "repository_fixture.h"

namespace quillmarden {
namespace {

namespace fs = std::filesystem;

constexpr const char* kMissingKinds =
    "DB種類が追加されました.\n   Text   TeraDatabase   メンバー   MySQL   PostgreSQL   PG管理   "
    "固定値\n情報を追加します.";

class Upgrade : public RepositoryTest {
 protected:
  std::string errorLog() const {
    std::ostringstream text;
    text << std::ifstream(fs::path(session.gInfoFolder) / "logErrAddField.log").rdbuf();
    return text.str();
  }

  void expectNoFurtherChange() {
    logOff(session, scripted.host);
    ASSERT_TRUE(connect());
    const std::vector<std::string> before = contents(*session.gDB);
    beginSession(session, scripted.host, "admin", programFolder(), "tableinf.mdb");
    EXPECT_EQ(contents(*session.gDB), before);
  }
};

TEST_F(Upgrade, NewRepositoryIsUpToDate) {
  { createRepository(file()); }
  ASSERT_TRUE(connect());
  const std::vector<std::string> before = contents(*session.gDB);
  const auto written = fs::last_write_time(file());
  upgradeRepository(session, scripted.host);
  EXPECT_EQ(contents(*session.gDB), before);
  EXPECT_EQ(fs::last_write_time(file()), written);
}

TEST_F(Upgrade, OldFileIsBroughtUpToDate) {
  loadOld("before_conversion.sql");
  scripted.expect("確認",
                  "MAS_TABLEINFO\nMAS_SYSTEM\nMAS_FILETYPE\nMAS_DOMAIN\nMAS_TABLEDETAILES\nMAS_INDEX\n"
                  "テーブルに項目追加しました.");
  scripted.expect("確認", kMissingKinds);
  scripted.expect("確認", "対象データベース名の変更をします.");
  scripted.expect("確認", "データ変換 3 件行いました.");
  logIn();
  EXPECT_EQ(errorLog(), "");

  const auto type = [&](const char* table, const char* field) {
    const FieldDef* found = session.gDB->tableDef(table)->field(field);
    return found ? std::pair(found->type, found->size) : std::pair(FieldType::Memo, -1);
  };
  EXPECT_EQ(type("MAS_TABLEINFO", "reffile"), std::pair(FieldType::Text, 255));
  EXPECT_EQ(type("MAS_TABLEINFO", "partition_field"), std::pair(FieldType::Text, 100));
  EXPECT_EQ(type("MAS_TABLEINFO", "略名"), std::pair(FieldType::Text, 50));
  EXPECT_EQ(type("MAS_SYSTEM", "index_space"), std::pair(FieldType::Text, 50));
  EXPECT_EQ(type("MAS_SYSTEM", "narrow_flg").first, FieldType::Integer);
  EXPECT_EQ(type("MAS_INDEX", "bolUNIQUE").first, FieldType::Integer);
  EXPECT_THROW(session.gDB->execute("UPDATE MAS_SYSTEM SET index_space = ''"), EngineError);
  session.gDB->execute("UPDATE MAS_SYSTEM SET accessfilename = ''");

  // Old rows stay as they were, save for what the steps name.
  EXPECT_EQ(
      rows("Select * From MAS_FILETYPE Where ファイル種別 = 'Access' And 型 In ('yes/no型', '数値型', '10進型', "
           "'独自型') Order By 型"),
      (std::vector<std::string>{"Access|10進型|0|2|-1|-", "Access|Yes/No型|0|1|0|bit", "Access|独自型|-1|3|0|-"}));
  EXPECT_EQ(
      rows("Select 型, 桁数 From MAS_FILETYPE Where ファイル種別 = 'SQL Server' And 型 In ('integer', 'long', 'int')"),
      std::vector<std::string>{"int|2"});
  EXPECT_EQ(rows("Select 型 From MAS_TABLEDETAILES Order By ROWNO"),
            (std::vector<std::string>{"長整数型", "Yes/No型"}));
  EXPECT_EQ(cell("Select Count(*) From MAS_FILETYPE Where ファイル種別 = 'Access' And 型_変換 Is Null"), "2");
  EXPECT_EQ(rows("Select 元ファイル種別, Count(*) From MAS_FILECONV Group By 元ファイル種別"),
            (std::vector<std::string>{"Access|24", "PostgreSQL|30"}));
  EXPECT_EQ(session.gDB->tableDef("MAS_FILECONV")->primaryKey()->fields,
            (std::vector<std::string>{"元ファイル種別", "元型"}));
  EXPECT_EQ(rows("Select ファイル種別 From MAS_FILE Where ファイル種別 In ('組織', 'メンバー')"),
            std::vector<std::string>{"メンバー"});
  EXPECT_EQ(rows("Select システム名, databasetype From MAS_SYSTEM Order By ID"),
            (std::vector<std::string>{"販売|Access", "名簿|メンバー"}));
  EXPECT_EQ(rows("Select ファイル種別 From MAS_TABLEINFO Order By ID"),
            (std::vector<std::string>{"Access", "メンバー", "メンバー"}));
  EXPECT_EQ(rows("Select * From 独自の表"), std::vector<std::string>{"1|そのまま"});

  // What no step names, but the screens need.
  EXPECT_TRUE(session.gDB->tableDef("DAT_REFERENCE"));
  EXPECT_TRUE(session.gDB->tableDef("MAS_TABLEDETAILES")->field("外部参照TABLEID"));

  expectNoFurtherChange();
}

/// The columns that only this program has come without a word, behind all others, and what was there is whole.
TEST_F(Upgrade, OwnColumnsAreAddedToAnOtherwiseCurrentFile) {
  loadOld("before_own_columns.sql");
  logIn();
  EXPECT_EQ(errorLog(), "");
  EXPECT_EQ(session.gDB->tableDef("MAS_SYSTEM")->field("field_name_astyped")->type, FieldType::Integer);
  EXPECT_EQ(session.gDB->tableDef("MAS_PRJINFO")->field("開始日")->type, FieldType::Date);
  EXPECT_EQ(session.gDB->tableDef("MAS_PRJINFO")->field("完了日")->type, FieldType::Date);
  EXPECT_EQ(session.gDB->tableDef("MAS_PRJINFO")->field("参照仕様書ファイル")->size, 100);
  EXPECT_EQ(
      rows("Select 日本語名, 項目名, DB_COLUMN_NAME, 整数桁数, 長さ, 開始日, 参照仕様書ファイル From MAS_PRJINFO"),
      std::vector<std::string>{"00001|受注|PG01|12|3|-|-"});
  ASSERT_TRUE(selectSystem(session, scripted.host, "販売"));
  EXPECT_FALSE(session.gCurrentSystem.fieldAsTyped) << "names of a System that was there are stored as before";
  expectNoFurtherChange();
}

TEST_F(Upgrade, RemovedRowsComeBackByKind) {
  { createRepository(file()); }
  ASSERT_TRUE(connect());
  Database& database = *session.gDB;
  database.execute("Delete From MAS_FILETYPE Where 型 = 'blob'");  // of Oracle and of MySQL
  database.execute("Delete From MAS_FILETYPE Where ファイル種別 = 'Oracle' And 型 = 'number'");
  database.execute("Delete From MAS_FILECONV Where 元型 = 'uuid'");
  upgradeRepository(session, scripted.host);
  EXPECT_EQ(rows("Select ファイル種別 From MAS_FILETYPE Where 型 = 'blob'"), std::vector<std::string>{"Oracle"});
  EXPECT_EQ(cell("Select Count(*) From MAS_FILETYPE Where ファイル種別 = 'Oracle' And 型 = 'number'"), "0");
  EXPECT_EQ(cell("Select 先型 From MAS_FILECONV Where 元型 = 'uuid'"), "raw");

  database.execute("Delete From MAS_FILETYPE Where ファイル種別 = '固定値'");
  scripted.expect("確認", "DB種類が追加されました.\n   固定値\n情報を追加します.");
  upgradeRepository(session, scripted.host);
  EXPECT_EQ(rows("Select ファイル種別 From MAS_FILETYPE Where 型 = 'blob' Order By ファイル種別"),
            (std::vector<std::string>{"MySQL", "Oracle"}));
}

TEST_F(Upgrade, AccessTypesGetTheirConversionOnce) {
  { createRepository(file()); }
  ASSERT_TRUE(connect());
  session.gDB->execute("UpDate MAS_FILETYPE Set 型_変換 = 'mine' Where 型 = 'ﾃｷｽﾄ型'");
  session.gDB->execute("UpDate MAS_FILETYPE Set 型_変換 = '' Where 型 = '通貨型'");
  session.gDB->execute("UpDate MAS_FILETYPE Set 型_変換 = 'decimal' Where 型 = '10進型'");
  EXPECT_FALSE(ChkApUpDate2FileTypeAccess型変換(session, scripted.host));
  EXPECT_EQ(rows("Select 型, 型_変換 From MAS_FILETYPE Where 型 In ('ﾃｷｽﾄ型', '通貨型', '10進型') Order By 型"),
            (std::vector<std::string>{"10進型|decimal", "通貨型|money", "ﾃｷｽﾄ型|mine"}));
}

TEST_F(Upgrade, FieldsOfTheOldNumberTypeChangeAtEveryLogin) {
  { createRepository(file()); }
  ASSERT_TRUE(connect());
  session.gDB->execute("INSERT INTO MAS_TABLEDETAILES (ID, ROWNO, 型) VALUES (1, 1, '数値型')");
  upgradeRepository(session, scripted.host);
  EXPECT_EQ(cell("Select 型 From MAS_TABLEDETAILES"), "長整数型");
}

TEST_F(Upgrade, ColumnThatDoesNotTakeItsTypeIsToldAndNoted) {
  loadOld("long_short_names.sql");
  scripted.answerAll(kOk);
  logIn();
  ASSERT_GE(scripted.messages.size(), 2u);
  EXPECT_TRUE(scripted.messages[0].ends_with("\nテーブルに項目追加しました."));
  EXPECT_TRUE(scripted.messages[1].starts_with("確認|追加エラーが発生しました.\nErrNo: 3163\n"))
      << scripted.messages[1];
  EXPECT_TRUE(scripted.messages[1].ends_with("\nのエラーが発生しました."));
  EXPECT_NE(errorLog().find(file() + "\t2026/11/24 09:05:00"), std::string::npos) << errorLog();
  EXPECT_EQ(session.gSessionState, 1);
  EXPECT_EQ(cell("Select 略名 From MAS_TABLEINFO"), "abcdefghijklmnopqrstuvwxyzabcdefghijklmnopqrstuvwxyz");
  EXPECT_EQ(cell("Select Count(*) From MAS_FILECONV"), "54");
}

/// A file that grows no more: the login goes on, and what was there is whole.
TEST_F(Upgrade, FullDiskLeavesTheFileAsItWas) {
  loadOld("before_conversion.sql");
  ASSERT_TRUE(connect());
  const std::vector<std::string> before = contents(*session.gDB);
  rlimit limit{};
  getrlimit(RLIMIT_FSIZE, &limit);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  rlimit none = limit;
  none.rlim_cur = 0;
  setrlimit(RLIMIT_FSIZE, &none);
  scripted.answerAll(kOk);
  EXPECT_TRUE(ChkApUpDateField(session, scripted.host));
  EXPECT_TRUE(ChkApUpDate2FileType(session, scripted.host));
  EXPECT_TRUE(ChkApUpDate2FileTypeConv(session, scripted.host));
  EXPECT_TRUE(ConvFileType組織2メンバ(session, scripted.host));
  EXPECT_TRUE(ensureFileConversions(session, scripted.host));
  setrlimit(RLIMIT_FSIZE, &limit);
  std::signal(SIGXFSZ, handler);

  ASSERT_EQ(scripted.messages.size(), 6u);
  EXPECT_TRUE(scripted.messages[0].starts_with("確認|追加エラーが発生しました.\nErrNo: "));
  EXPECT_EQ(scripted.messages[1], std::string("確認|") + kMissingKinds);
  EXPECT_TRUE(scripted.messages[2].starts_with("確認|TeraDatabase.追加エラーが発生しました.\n"));
  EXPECT_TRUE(
      scripted.messages[3].starts_with("確認|ファイルタイプの変更に失敗しました.\n継続利用できます.\nエラーは、\n"));
  EXPECT_TRUE(scripted.messages[3].ends_with("\nです.\n関数:ChkApUpDate2FileTypeConv"));
  EXPECT_TRUE(scripted.messages[4].starts_with("確認|ファイルタイプの変換に失敗しました.\n継続利用できます.\n"));
  EXPECT_TRUE(scripted.messages[5].starts_with("DataBaseFileの確認|"));
  EXPECT_EQ(contents(*session.gDB), before);
}

TEST_F(Upgrade, SecondLoginAtTheSameTimeFindsItDone) {
  loadOld("before_conversion.sql");
  ASSERT_TRUE(connect());
  session.gDB->tableDefs();  // seen as they were before the other login

  ScriptedHost other;
  other.answerAll(kOk);
  Session otherSession;
  openUserData(otherSession, other.host);
  otherSession.gDB = std::make_unique<Database>(Database::open(file()));
  upgradeRepository(otherSession, other.host);
  EXPECT_EQ(other.messages.size(), 4u);

  upgradeRepository(session, scripted.host);  // an unexpected message would fail the test
  EXPECT_EQ(errorLog(), "");
}

/// Tables of another tool: no widths, no case rule, a Null ID in MAS_SYSTEM.
TEST_F(Upgrade, PlainTablesOfOtherTools) {
  writeWithOtherTool(file(), std::string(QM_TEST_DATA) + "/old/other_tool.sqlite.sql");
  scripted.expect("確認", "DB種類が追加されました.\n   メンバー   PG管理   固定値\n情報を追加します.");
  logIn("ADMIN");
  EXPECT_EQ(session.gDB->tableDef("MAS_TABLEINFO")->field("略名")->size, 50);
  ASSERT_TRUE(selectSystem(session, scripted.host, "pg_webmail"));
  EXPECT_EQ(session.gCurrentSystem.name, "PG_webmail");
  EXPECT_EQ(session.gCurrentSystemId, 0);
  EXPECT_EQ(session.gCurrentSystem.tableSpace, "roundcube");
  EXPECT_EQ(rows("Select 型, 型_変換 From MAS_FILETYPE Where ファイル種別 = 'Access' And 桁数 = 4 And 数値項目 = 0 "
                 "Order By 型"),
            (std::vector<std::string>{"可変長ﾊﾞｲﾅﾘ型|varbinary", "日付/時刻型|datetime", "時刻型|datetime"}));
  expectNoFurtherChange();
}

}  // namespace
}  // namespace quillmarden
