#include "repository/system_record.h"

#include "repository/rights.h"
#include "repository_fixture.h"

namespace quillmarden {
namespace {

class SystemRecords : public RepositoryTest {
 protected:
  void SetUp() override {
    { createRepository(file(), {"suzuki"}); }
    logIn();
  }
};

TEST_F(SystemRecords, ReadsColumnsWithoutCaseAndNullAsBlank) {
  session.gDB->execute(
      "INSERT INTO MAS_SYSTEM (システム名, 概要, 作成年月日, 更新年月日, 作成者, 修正許可, ユーザー制限, odbcsouce, "
      "databasetype, DB_BLOCK_SIZE, indexspace, narrow_flg, bolryakudelmoji) VALUES ('販売/管理', '概要です', "
      "#2026/11/24 09:05:07#, Null, 'suzuki', -1, 2, 'public', 'PostgreSQL', 5432, 'IDX', -1, 1)");
  SystemRecord record;
  ASSERT_TRUE(gMDB_GetSystemInfo(session, scripted.host, "販売/管理", record));
  EXPECT_EQ(record.id, 1);
  EXPECT_EQ(record.description, "概要です");
  EXPECT_EQ(record.createdAt, "2026/11/24 09:05");
  EXPECT_EQ(record.updatedAt, "");
  EXPECT_EQ(record.odbcSource, "public");
  EXPECT_EQ(record.databaseType, "PostgreSQL");
  EXPECT_EQ(record.blockSize, 5432);
  EXPECT_EQ(record.indexSpace, "IDX");
  EXPECT_TRUE(record.fieldNarrow);
  EXPECT_TRUE(record.ryakuDelMoji);
  EXPECT_FALSE(record.tableNarrow);
  EXPECT_TRUE(record.workFolder.ends_with("/quillmarden/販売_管理_-_-")) << record.workFolder;
  EXPECT_EQ(record.tempWorkFolder, scripted.host.machine.tempFolder.string() + "/販売_管理_-_-");
}

TEST_F(SystemRecords, MissingOrBrokenNameKeepsTheFormerRecord) {
  session.gDB->execute(
      "INSERT INTO MAS_SYSTEM (システム名, 作成者, 修正許可, ユーザー制限) VALUES ('販売', 'suzuki', -1, 0)");
  ASSERT_TRUE(selectSystem(session, scripted.host, "販売"));
  EXPECT_TRUE(session.gCanEdit);
  for (const char* name : {"なし", "o'hara", "'; Delete From MAS_SYSTEM; --"}) {
    EXPECT_FALSE(selectSystem(session, scripted.host, name)) << name;
    EXPECT_EQ(session.gCurrentSystem.name, "販売");
    EXPECT_EQ(session.gCurrentSystemName, name);
    EXPECT_FALSE(session.gCanEdit);
  }
  EXPECT_EQ(cell("Select Count(*) From MAS_SYSTEM"), "1");

  SystemRecord record;
  EXPECT_FALSE(gMDB_GetSystemInfo(session, scripted.host, " ", record));
  EXPECT_TRUE(record.workFolder.ends_with("/quillmarden/TableLayout"));
  EXPECT_EQ(record.tempWorkFolder, scripted.host.machine.tempFolder.string() + "/tempQuillmarden_-_-");
}

TEST_F(SystemRecords, WhoMayEdit) {
  const auto allowed = [&](const char* user, bool guest, bool editAllowed, int limit) {
    session.gLoginUser = user;
    session.gIsGuest = guest;
    SystemRecord record;
    record.owner = "Suzuki";
    record.editAllowed = editAllowed;
    record.userLimit = limit;
    return static_cast<bool>(mayChangeSystem(session, record));
  };
  EXPECT_TRUE(allowed("admin", false, true, 0));
  EXPECT_TRUE(allowed("admin", false, true, 1));
  EXPECT_FALSE(allowed("admin", false, true, 2));
  EXPECT_TRUE(allowed("suzuki", false, true, 2));
  EXPECT_FALSE(allowed("suzuki", false, false, 2));
  EXPECT_FALSE(allowed("guest", true, true, 0));
}

TEST_F(SystemRecords, ListHoldsShownSystemsSorted) {
  session.gDB->execute("INSERT INTO MAS_SYSTEM (システム名, 出力しない) VALUES ('b', 0)");
  session.gDB->execute("INSERT INTO MAS_SYSTEM (システム名, 出力しない) VALUES ('hidden', -1)");
  session.gDB->execute("INSERT INTO MAS_SYSTEM (システム名) VALUES ('A')");
  EXPECT_EQ(gGetSystemList(session), (std::vector<std::string>{"A", "b"}));
}

TEST_F(SystemRecords, NameIsTakenByAnotherRowOnly) {
  session.gDB->execute("INSERT INTO MAS_SYSTEM (システム名) VALUES ('販売')");
  EXPECT_FALSE(gChkSystemName2Exists(session, "販売", 1));
  EXPECT_TRUE(gChkSystemName2Exists(session, "販売", 2));
  EXPECT_FALSE(gChkSystemName2Exists(session, "在庫", 2));
}

TEST_F(SystemRecords, RenameReachesEveryTable) {
  int tables = 0;
  for (const TableDef& table : repositoryTables()) {
    if (!table.field("システム名")) continue;
    const bool hasKeyBeside =
        table.primaryKey() && table.primaryKey()->fields.size() > 1 && table.primaryKey()->fields[0] == "システム名";
    std::string columns = "システム名", values = "'旧'";
    if (hasKeyBeside)
      for (std::size_t i = 1; i < table.primaryKey()->fields.size(); ++i) {
        columns += ", " + table.primaryKey()->fields[i];
        values += ", '1'";
      }
    if (table.name == "MAS_TABLEBIKO") columns += ", ID, NUM", values += ", 1, 1";
    session.gDB->execute("INSERT INTO " + table.name + " (" + columns + ") VALUES (" + values + ")");
    ++tables;
  }
  EXPECT_EQ(tables, 21);
  EXPECT_FALSE(pMDB_UpdateSystemName(session, scripted.host, "旧", "新"));
  for (const TableDef& table : repositoryTables()) {
    if (!table.field("システム名")) continue;
    EXPECT_EQ(rows("Select システム名 From " + table.name), std::vector<std::string>{"新"}) << table.name;
  }
}

TEST_F(SystemRecords, FailedRenameIsTold) {
  session.gDB->execute("INSERT INTO MAS_SYSTEM (システム名) VALUES ('販売')");
  scripted.answerAll(kOk);
  EXPECT_TRUE(pMDB_UpdateSystemName(session, scripted.host, "販売", std::string(300, 'x')));
  ASSERT_EQ(scripted.messages.size(), 1u);
  EXPECT_TRUE(scripted.messages[0].starts_with("確認|pMDB_UpdateSystemName.でエラーがありました.\n"));
  EXPECT_EQ(cell("Select システム名 From MAS_SYSTEM"), "販売");
}

}  // namespace
}  // namespace quillmarden
