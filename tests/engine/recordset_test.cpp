#include "engine/recordset.h"

#include <algorithm>

#include "engine_fixture.h"

namespace quillmarden {
namespace {

class RecordsetTest : public EngineTest {
 protected:
  RecordsetTest() {
    db.insertRows(
        "INFO", {"テーブル名", "略名", "概要", "数", "容量", "削除", "日付"},
        {{std::string("受注"), std::string("jc"), Value{}, std::int64_t{12}, 64.784, std::int64_t{0},
          std::string("2026/11/24 09:05:00")},
         {std::string("Order"), std::string(""), std::string("長い\n説明"), Value{}, 5.0, std::int64_t{-1}, Value{}}});
    db.insertRows("DET", {"ID", "ROWNO", "項目名", "DomainID"},
                  {{std::int64_t{1}, std::int64_t{1}, std::string("番号"), std::int64_t{1}},
                   {std::int64_t{1}, std::int64_t{2}, std::string("日付"), std::int64_t{0}},
                   {std::int64_t{2}, std::int64_t{1}, std::string("名前"), std::int64_t{1}}});
  }
  Recordset join() {
    return db.openRecordset(
        "SELECT d.*, i.テーブル名, i.数 AS 件数 FROM DET AS d LEFT JOIN INFO AS i ON d.DomainID = i.ID "
        "ORDER BY d.ID, d.ROWNO");
  }
};

TEST_F(RecordsetTest, CellsAreReadInEveryForm) {
  Recordset set = db.openRecordset("SELECT * FROM INFO ORDER BY ID");
  ASSERT_EQ(set.recordCount(), 2);
  EXPECT_EQ(set.fieldCount(), 8) << "row ids are no columns";
  EXPECT_EQ(set.fieldName(0), "ID");
  EXPECT_EQ(set.fieldIndex("_rowid_"), -1);
  EXPECT_EQ(set.text("id"), "1");
  EXPECT_TRUE(set.isNull("概要"));
  EXPECT_EQ(set.text("概要"), "");
  EXPECT_EQ(set.integer("概要"), 0);
  // A number keeps its value and kind after it was read as text.
  const std::string_view asText = set.text("容量");
  EXPECT_EQ(asText, "64.784");
  EXPECT_EQ(set.number("容量"), 64.784);
  EXPECT_EQ(set.value("容量"), Value(64.784));
  EXPECT_EQ(set.integer("容量"), 65);
  EXPECT_EQ(set.text("数"), "12");
  EXPECT_EQ(set.value("数"), Value(std::int64_t{12}));
  EXPECT_EQ(set.text("日付"), "2026/11/24 09:05:00");
  EXPECT_EQ(set.integer("テーブル名"), 0);
  set.moveNext();
  EXPECT_EQ(asText, "64.784") << "a view holds on";
  EXPECT_FALSE(set.isNull("略名"));
  EXPECT_EQ(set.text("略名"), "");
  EXPECT_EQ(set.text("容量"), "5");
  EXPECT_EQ(set.value("削除"), Value(std::int64_t{-1}));
  set.moveNext();
  EXPECT_TRUE(set.eof());
  EXPECT_EQ(faultNumber([&] { set.moveNext(); }), engine_error::kNoCurrentRecord);
  EXPECT_EQ(faultNumber([&] { set.text("ID"); }), engine_error::kNoCurrentRecord);
  set.moveFirst();
  EXPECT_EQ(faultNumber([&] { set.text("無い"); }), engine_error::kNoSuchTableDef);
  EXPECT_EQ(faultNumber([&] { set.text(8); }), engine_error::kNoSuchTableDef);
  EXPECT_EQ(faultNumber([&] { set.text(-1); }), engine_error::kNoSuchTableDef);
}

TEST_F(RecordsetTest, AnEmptySetHasNoRow) {
  Recordset set = db.openRecordset("SELECT * FROM INFO WHERE ID = 99");
  EXPECT_TRUE(set.eof());
  EXPECT_TRUE(set.bof());
  EXPECT_EQ(set.recordCount(), 0);
  set.moveFirst();
  EXPECT_TRUE(set.eof());
  EXPECT_EQ(faultNumber([&] { set.edit(); }), engine_error::kNoCurrentRecord);
  EXPECT_EQ(faultNumber([&] { set.remove(); }), engine_error::kNoCurrentRecord);
}

TEST_F(RecordsetTest, ColumnsOfAJoinAreFoundByAlias) {
  Recordset set = db.openRecordset("SELECT * FROM DET AS d INNER JOIN INFO AS i ON d.ID = i.ID ORDER BY ROWNO");
  EXPECT_EQ(set.fieldIndex("d.id"), 0);
  EXPECT_EQ(set.fieldIndex("i.ID"), 4);
  EXPECT_GE(set.fieldIndex("ID"), 0);
  EXPECT_EQ(set.text("I.テーブル名"), set.text("テーブル名"));
}

TEST_F(RecordsetTest, EditWritesWhatWasSetAndNothingElse) {
  Recordset set = db.openRecordset("SELECT * FROM INFO WHERE ID = 1");
  db.execute("UPDATE INFO SET 概要 = 'もう一人' WHERE ID = 1");
  set.edit();
  set.set("略名", std::string("新"));
  set.set("日付", std::string("2027-1-2"));
  set.set("数", std::string("2.5"));
  set.update();
  EXPECT_EQ(set.text("略名"), "新");
  EXPECT_EQ(set.text("日付"), "2027/01/02 00:00:00");
  EXPECT_EQ(set.integer("数"), 2);
  Recordset again = db.openRecordset("SELECT * FROM INFO WHERE ID = 1");
  EXPECT_EQ(again.text("概要"), "もう一人");
  EXPECT_EQ(again.text("日付"), "2027/01/02 00:00:00");

  set.edit();
  set.set("略名", std::string("捨てる"));
  set.cancelUpdate();
  EXPECT_EQ(faultNumber([&] { set.update(); }), engine_error::kUpdateWithoutEdit);
  EXPECT_EQ(faultNumber([&] { set.set("略名", std::string("x")); }), engine_error::kUpdateWithoutEdit);

  set.edit();
  set.set("テーブル名", std::string("変わらない"));
  set.set("略名", std::string("六文字の略名"));
  EXPECT_EQ(faultNumber([&] { set.update(); }), engine_error::kTextTooLong);
  EXPECT_EQ(faultNumber([&] { set.update(); }), engine_error::kUpdateWithoutEdit);
  EXPECT_EQ(db.openRecordset("SELECT * FROM INFO WHERE ID = 1").text("テーブル名"), "受注");
}

TEST_F(RecordsetTest, EditGoesThroughAJoinToTheTableOfTheColumn) {
  Recordset set = join();
  ASSERT_EQ(set.recordCount(), 3);
  set.edit();
  set.set("項目名", std::string("受注番号"));
  set.set("件数", std::int64_t{99});
  set.update();
  EXPECT_EQ(set.text("項目名"), "受注番号");
  EXPECT_EQ(number("SELECT 数 FROM INFO WHERE ID = 1"), 99);
  EXPECT_EQ(number("SELECT Count(*) FROM DET WHERE 項目名 = '受注番号'"), 1);

  // One of two tables refuses: neither is changed.
  set.edit();
  set.set("項目名", std::string("半分"));
  set.set("件数", std::int64_t{100000});
  EXPECT_EQ(faultNumber([&] { set.update(); }), engine_error::kConversion);
  EXPECT_EQ(number("SELECT Count(*) FROM DET WHERE 項目名 = '半分'"), 0);

  // The second row has no partner.
  set.moveNext();
  EXPECT_TRUE(set.isNull("テーブル名"));
  set.edit();
  set.set("件数", std::int64_t{1});
  EXPECT_EQ(faultNumber([&] { set.update(); }), engine_error::kNoCurrentRecord);
}

TEST_F(RecordsetTest, NewRowsThroughAJoinBelongToOneTable) {
  Recordset set = join();
  set.addNew();
  set.set("d.ID", std::int64_t{2});
  set.set("ROWNO", std::int64_t{2});
  set.set("項目名", std::string("住所"));
  set.update();
  EXPECT_EQ(set.text("項目名"), "番号") << "the current row stays";
  EXPECT_EQ(number("SELECT Count(*) FROM DET WHERE 項目名 = '住所'"), 1);
  set.addNew();
  set.set("ROWNO", std::int64_t{3});
  set.set("テーブル名", std::string("x"));
  EXPECT_EQ(faultNumber([&] { set.update(); }), engine_error::kReadOnly);
  set.addNew();
  set.set("ID", std::int64_t{2});
  set.set("ROWNO", std::int64_t{2});
  std::string text;
  EXPECT_EQ(faultNumber([&] { set.update(); }, &text), engine_error::kDuplicateKey);
  EXPECT_NE(text.find("ROWNO"), std::string::npos) << text;
}

TEST_F(RecordsetTest, RowsAreRemovedAndTheWalkGoesOn) {
  Recordset set = db.openRecordset("SELECT * FROM DET ORDER BY ID, ROWNO");
  set.moveNext();
  set.remove();
  EXPECT_EQ(set.recordCount(), 2);
  EXPECT_FALSE(set.eof());
  EXPECT_EQ(faultNumber([&] { set.text("項目名"); }), engine_error::kNoCurrentRecord);
  set.moveNext();
  EXPECT_EQ(set.text("項目名"), "名前");
  set.remove();
  set.moveNext();
  EXPECT_TRUE(set.eof());
  set.moveFirst();
  EXPECT_EQ(set.text("項目名"), "番号");
  set.remove();
  set.moveFirst();
  EXPECT_TRUE(set.eof());
  EXPECT_EQ(number("SELECT Count(*) FROM DET"), 0);
}

TEST_F(RecordsetTest, RemovingFromAJoinTakesTheSideWithOneRowEach) {
  db.execute("UPDATE DET SET DomainID = 1");
  Recordset set = db.openRecordset(
      "SELECT i.テーブル名, d.項目名 FROM INFO AS i INNER JOIN DET AS d ON d.DomainID = i.ID ORDER BY d.項目名");
  ASSERT_EQ(set.recordCount(), 3);
  set.remove();
  EXPECT_EQ(number("SELECT Count(*) FROM DET"), 2);
  EXPECT_EQ(number("SELECT Count(*) FROM INFO"), 2);
}

TEST_F(RecordsetTest, ARowThatAnotherUserRemovedIsTold) {
  Recordset set = db.openRecordset("SELECT * FROM DET ORDER BY ID, ROWNO");
  Database::open(path()).execute("DELETE FROM DET WHERE ID = 1");
  set.edit();
  set.set("項目名", std::string("x"));
  std::string text;
  EXPECT_EQ(faultNumber([&] { set.update(); }, &text), engine_error::kNoCurrentRecord);
  EXPECT_NE(text.find("DET"), std::string::npos) << text;
  EXPECT_EQ(faultNumber([&] { set.remove(); }), engine_error::kNoCurrentRecord);
  EXPECT_EQ(number("SELECT Count(*) FROM DET"), 1);
}

TEST_F(RecordsetTest, SetsThatShowNoRowsOfATableCannotBeEdited) {
  for (const char* sql : {"SELECT ID, Count(*) AS n FROM DET GROUP BY ID", "SELECT DISTINCT 項目名 FROM DET"}) {
    Recordset set = db.openRecordset(sql);
    EXPECT_EQ(faultNumber([&] { set.edit(); }), engine_error::kReadOnly) << sql;
    EXPECT_EQ(faultNumber([&] { set.addNew(); }), engine_error::kReadOnly) << sql;
    EXPECT_EQ(faultNumber([&] { set.remove(); }), engine_error::kReadOnly) << sql;
  }
  Recordset set = db.openRecordset("SELECT ID, ID + 1 AS n FROM DET");
  set.edit();
  EXPECT_EQ(faultNumber([&] { set.set("n", std::int64_t{1}); }), engine_error::kReadOnly);
}

TEST_F(RecordsetTest, AutoNumbersAreGivenOnce) {
  Recordset table = db.openTable("info");
  const auto add = [&] {
    table.addNew();
    table.set("テーブル名", std::string("x"));
    table.update();
    return table.lastId();
  };
  EXPECT_EQ(add(), 3);
  EXPECT_EQ(add(), 4);
  db.execute("DELETE FROM INFO WHERE ID >= 3");
  EXPECT_EQ(add(), 5);
  db.execute("DELETE FROM INFO");
  Database other = Database::open(path());
  other.execute("INSERT INTO INFO (テーブル名) VALUES ('y')");
  EXPECT_EQ(number("SELECT ID FROM INFO"), 6);
}

TEST_F(RecordsetTest, SeekFindsByKeyWithoutCase) {
  Recordset table = db.openTable("DET");
  EXPECT_TRUE(table.eof());
  EXPECT_TRUE(table.seek({std::int64_t{1}, std::int64_t{2}}));
  EXPECT_EQ(table.text("項目名"), "日付");
  table.edit();
  table.set("項目名", std::string("受注日"));
  table.update();
  EXPECT_EQ(table.text("項目名"), "受注日");
  EXPECT_FALSE(table.seek({std::int64_t{1}, std::int64_t{3}}));
  EXPECT_TRUE(table.eof());
  EXPECT_EQ(number("SELECT Count(*) FROM DET WHERE 項目名 = '受注日'"), 1);
  EXPECT_EQ(faultNumber([&] { table.seek({std::int64_t{1}}); }), engine_error::kNoSuchTableDef);

  db.execute("INSERT INTO SYS (システム名) VALUES ('Sales')");
  Recordset systems = db.openTable("SYS");
  EXPECT_TRUE(systems.seek({std::string("SALES")}));
  EXPECT_EQ(systems.text("システム名"), "Sales");
  EXPECT_FALSE(systems.seek({std::string("x' OR 1=1")}));
  EXPECT_FALSE(systems.seek({Value{}}));
  systems.addNew();
  systems.set("システム名", std::string("在庫"));
  systems.update();
  EXPECT_EQ(systems.lastId(), 2);
  EXPECT_EQ(faultNumber([&] { db.openTable("NONE"); }), engine_error::kNoSuchTable);
}

TEST_F(RecordsetTest, LongSetsStayWhole) {
  std::vector<std::vector<Value>> rows;
  for (std::int64_t i = 1; i <= 20000; ++i) {
    rows.push_back({std::int64_t{7}, i, std::string("項目") + std::to_string(i)});
  }
  db.insertRows("DET", {"ID", "ROWNO", "項目名"}, rows);
  Recordset set = db.openRecordset("SELECT * FROM DET WHERE ID = 7 ORDER BY ROWNO");
  ASSERT_EQ(set.recordCount(), 20000);
  const int name = set.fieldIndex("項目名");
  std::int64_t expected = 0;
  for (; !set.eof(); set.moveNext()) {
    ++expected;
    ASSERT_EQ(set.text(name), "項目" + std::to_string(expected));
  }
  EXPECT_EQ(expected, 20000);
}

TEST_F(RecordsetTest, ASetOutlivesTheHandleItCameFrom) {
  auto set = [&] {
    Database other = Database::open(path());
    return other.openRecordset("SELECT * FROM DET ORDER BY ID, ROWNO");
  }();
  set.edit();
  set.set("項目名", std::string("後から"));
  set.update();
  EXPECT_EQ(number("SELECT Count(*) FROM DET WHERE 項目名 = '後から'"), 1);
}

}  // namespace
}  // namespace quillmarden
