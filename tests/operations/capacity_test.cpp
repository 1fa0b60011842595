#include "operations/capacity.h"

#include "repository/frm_system_inf.h"
#include "support/open_repository.h"

namespace quillmarden {
namespace {

class CapacityTest : public OpenRepositoryTest {
 protected:
  void SetUp() override {
    OpenRepositoryTest::SetUp();
    addSystem("販売", "Oracle");
    database().execute("UPDATE MAS_SYSTEM SET DB_BLOCK_SIZE = 8192");
  }
  void addField(const std::string& id, int rowNo, const std::string& type, const std::string& digits,
                const std::string& length) {
    database().execute("INSERT INTO MAS_TABLEDETAILES (ID, ROWNO, 表示順, 型, 整数桁数, 少数桁数, 長さ) VALUES (" + id +
                       ", " + std::to_string(rowNo) + ", 1, '" + type + "', " + digits + ", " + length + ")");
  }
  std::string lengths(const std::string& id) {
    std::string all;
    for (const std::string& row : rows("SELECT 長さ FROM MAS_TABLEDETAILES WHERE ID = " + id + " ORDER BY ROWNO"))
      all += (all.empty() ? "" : " ") + row;
    return all;
  }
};

TEST(Capacity, FollowsTheArithmetic) {
  const Capacity usual = capacityOf(12000, 100, 8192, 10);
  EXPECT_DOUBLE_EQ(usual.recordLength, 112);
  EXPECT_NEAR(usual.recordsPerBlock, 64.784, 0.001);
  EXPECT_NEAR(usual.kilobytes, 1481.849, 0.001);
  const Capacity preset = capacityOf(12000, 100, 8192, 40);
  for (double pctfree : {0.0, -1.0, 100.0})
    EXPECT_DOUBLE_EQ(capacityOf(12000, 100, 8192, pctfree).kilobytes, preset.kilobytes) << pctfree;
  EXPECT_DOUBLE_EQ(capacityOf(1, 1, 0, 10).recordsPerBlock, capacityOf(1, 1, 8192, 10).recordsPerBlock);
}

TEST_F(CapacityTest, LengthsComeFromTheCatalogueAndUnknownTypesStay) {
  const std::string table = addTable("販売", "PostgreSQL", "T", "表");
  addField(table, 1, "integer", "Null, Null", "99");
  addField(table, 2, "VARCHAR", "30, 2", "Null");
  addField(table, 3, "varchar", "Null, Null", "5");
  addField(table, 4, "geometry", "7, 0", "3");
  const std::string other = addTable("販売", "PostgreSQL", "U", "別");
  addField(other, 1, "varchar", "8, 0", "1");

  EXPECT_FALSE(gSetFieldLength(session, scripted.host, "販売", table));
  EXPECT_EQ(lengths(table), "20 30 0 3");
  EXPECT_EQ(lengths(other), "1");
  EXPECT_FALSE(gSetFieldLength(session, scripted.host, "販売"));
  EXPECT_EQ(lengths(other), "8");
}

TEST_F(CapacityTest, OracleLengthsFollowDigits) {
  const std::string table = addTable("販売", "oracle", "T", "表");
  database().execute("DELETE * FROM MAS_FILETYPE");
  addField(table, 1, "NUMBER", "10, 2", "0");
  addField(table, 2, "date", "Null, Null", "Null");
  addField(table, 3, "varchar2", "40, 0", "0");
  addField(table, 4, "char", "5, 0", "9");
  const std::string foreign = addTable("販売", "MySQL", "M", "他");
  addField(foreign, 1, "date", "Null, Null", "1");

  EXPECT_FALSE(gSetOracleFieldLength(session, scripted.host, "販売"));
  EXPECT_EQ(lengths(table), "7 7 40 9");
  EXPECT_EQ(lengths(foreign), "1");
}

TEST_F(CapacityTest, WholeSystemInAFixedNumberOfReads) {
  const std::string full = addTable("販売", "PostgreSQL", "FULL", "全");
  addField(full, 1, "x", "Null, Null", "10");
  addField(full, 2, "x", "Null, Null", "20");
  addField(full, 3, "x", "Null, Null", "70");
  database().execute("UPDATE MAS_TABLEINFO SET 想定数 = 1000, 想定保持 = 12, ORA_PCTFREE = 10 WHERE ID = " + full);
  const std::string noRows = addTable("販売", "PostgreSQL", "NOROWS", "件数なし");
  addField(noRows, 1, "x", "Null, Null", "10");
  const std::string empty = addTable("販売", "PostgreSQL", "EMPTY", "項目なし");
  database().execute("UPDATE MAS_TABLEINFO SET 想定数 = 5, 必要容量 = 77 WHERE ID = " + empty);
  const std::string gone = addTable("販売", "PostgreSQL", "GONE", "削除");
  addField(gone, 1, "x", "Null, Null", "10");
  database().execute("UPDATE MAS_TABLEINFO SET 想定数 = 5, 削除フラグ = 1 WHERE ID = " + gone);
  const std::string once = addTable("販売", "PostgreSQL", "ONCE", "一世代");
  addField(once, 1, "x", "Null, Null", "88");
  database().execute("UPDATE MAS_TABLEINFO SET 想定数 = 3, 想定保持 = 0 WHERE ID = " + once);

  EXPECT_FALSE(gCalcCapacity(session, scripted.host, "販売"));
  EXPECT_EQ(cell("SELECT レコード長, 項目数 FROM MAS_TABLEINFO WHERE ID = " + full), "112|3");
  EXPECT_NEAR(database().openRecordset("SELECT 必要容量 FROM MAS_TABLEINFO WHERE ID = " + full).number(0), 1481.849,
              0.001);
  EXPECT_EQ(cell("SELECT レコード長, 必要容量 FROM MAS_TABLEINFO WHERE ID = " + noRows), "-|-");
  EXPECT_EQ(cell("SELECT 必要容量 FROM MAS_TABLEINFO WHERE ID = " + empty), "77");
  EXPECT_EQ(cell("SELECT レコード長 FROM MAS_TABLEINFO WHERE ID = " + gone), "-");
  EXPECT_EQ(cell("SELECT レコード長 FROM MAS_TABLEINFO WHERE ID = " + once), "100");

  const long before = database().statementCount();
  EXPECT_FALSE(gCalcCapacity(session, scripted.host, "販売"));
  const long fewTables = database().statementCount() - before;
  for (int i = 0; i < 20; ++i) addField(addTable("販売", "PostgreSQL", "N", "件数なし"), 1, "x", "Null, Null", "10");
  const long again = database().statementCount();
  EXPECT_FALSE(gCalcCapacity(session, scripted.host, "販売"));
  EXPECT_EQ(database().statementCount() - again, fewTables) << "a table without new values costs no statement";
}

TEST_F(CapacityTest, InitialExtentHasAFloorAndACeiling) {
  const auto table = [&](const char* name, const char* rows, const char* periods, const char* length) {
    const std::string id = addTable("販売", "Oracle", name, name);
    addField(id, 1, "x", "Null, Null", length);
    database().execute("UPDATE MAS_TABLEINFO SET 想定数 = " + std::string(rows) + ", 想定保持 = " + periods +
                       " WHERE ID = " + id);
    return id;
  };
  const std::string big = table("BIG", "8000", "10", "100");
  const std::string small = table("SMALL", "1", "1", "100");
  const std::string unknown = table("UNKNOWN", "Null", "Null", "100");
  const std::string huge = table("HUGE", "2000000000", "2000000000", "2000");
  EXPECT_FALSE(recalculateSystem(session, scripted.host, "販売"));
  const auto initial = [&](const std::string& id) {
    return cell("SELECT ORA_INITIAL FROM MAS_TABLEINFO WHERE ID = " + id);
  };
  EXPECT_EQ(initial(big), "8000");
  EXPECT_EQ(initial(small), "4096");
  EXPECT_EQ(initial(unknown), "4096");
  EXPECT_EQ(initial(huge), "2147483647");
}

TEST_F(CapacityTest, ARunThatTheRepositoryRefusesIsTold) {
  database().execute("DROP TABLE MAS_TABLEDETAILES");
  scripted.answerAll(kOk);
  EXPECT_TRUE(gSetFieldLength(session, scripted.host, "販売"));
  EXPECT_TRUE(gCalcOracleInitial(session, scripted.host, "販売"));
  ASSERT_EQ(scripted.messages.size(), 2U);
  EXPECT_TRUE(scripted.messages[0].starts_with("確認|レコード長の計算に失敗しました.\n"));
  EXPECT_TRUE(scripted.messages[1].starts_with("確認|更新に失敗しました.\n"));
  EXPECT_FALSE(database().inTransaction());
}

TEST_F(CapacityTest, ButtonAsksFirst) {
  const std::string table = addTable("販売", "PostgreSQL", "T", "表");
  addField(table, 1, "integer", "0, 0", "77");
  frmSystemInf screen;
  frmSystemInf_Load(session, scripted.host, screen, "販売");
  scripted.expect("処理確認", "各テーブルのレコード長を再計算します.", kNo);
  CmdCalc_Click(session, scripted.host, screen);
  EXPECT_EQ(lengths(table), "77");
  scripted.expect("処理確認", "各テーブルのレコード長を再計算します.", kYes);
  scripted.expect("確認", "終了しました.");
  CmdCalc_Click(session, scripted.host, screen);
  EXPECT_EQ(lengths(table), "20");
}

}  // namespace
}  // namespace quillmarden
