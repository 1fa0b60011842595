#include "engine/database.h"

#include <sys/resource.h>
#include <sys/stat.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <thread>

#include "engine_fixture.h"

namespace quillmarden {
namespace {

// --- opening

TEST(OpenTest, WhatIsNoDatabaseIsToldApartAndLeftAlone) {
  const TempFolder folder;
  const auto number = [&](const std::string& name, std::string* text = nullptr) {
    return faultNumber([&] { Database::open(folder.file(name)); }, text);
  };
  std::string text;
  EXPECT_EQ(number("missing.mdb", &text), engine_error::kCannotOpen);
  EXPECT_NE(text.find("missing.mdb"), std::string::npos) << text;
  EXPECT_FALSE(std::filesystem::exists(folder.file("missing.mdb"))) << "opening must not make a file";
  EXPECT_EQ(number("missing/file.mdb"), engine_error::kCannotOpen);
  std::filesystem::create_directory(folder.path() / "folder.mdb");
  EXPECT_EQ(number("folder.mdb"), engine_error::kCannotOpen);
  ASSERT_EQ(::mkfifo(folder.file("fifo.mdb").c_str(), 0666), 0);
  EXPECT_EQ(number("fifo.mdb"), engine_error::kCannotOpen) << "and does not wait for a writer";
  EXPECT_EQ(faultNumber([] { Database::open(""); }), engine_error::kCannotOpen);

  const std::string jet = std::string("\0\1\0\0Standard Jet DB\0", 20) + std::string(4000, '\x42');
  const std::string ace = std::string("\0\1\0\0Standard ACE DB\0", 20) + std::string(4000, '\x42');
  writeBytes(folder.file("jet.mdb"), jet);
  writeBytes(folder.file("ace.accdb"), ace);
  EXPECT_EQ(number("jet.mdb", &text), engine_error::kAccessFile);
  EXPECT_NE(text.find("Access"), std::string::npos) << text;
  EXPECT_EQ(number("ace.accdb"), engine_error::kAccessFile);
  EXPECT_EQ(fileBytes(folder.file("jet.mdb")), jet);

  writeBytes(folder.file("text.mdb"), "これは文章です。\n");
  writeBytes(folder.file("zip.mdb"), "PK\3\4" + std::string(5000, '\0'));
  writeBytes(folder.file("one.mdb"), "S");
  for (const char* name : {"text.mdb", "zip.mdb", "one.mdb"}) {
    EXPECT_EQ(number(name), engine_error::kUnrecognisedFormat) << name;
  }
}

TEST(OpenTest, AnEmptyFileIsADatabaseWithoutTables) {
  const TempFolder folder;
  writeBytes(folder.file("empty.mdb"), "");
  Database db = Database::open(folder.file("empty.mdb"));
  EXPECT_TRUE(db.tableDefs().empty());
  EXPECT_TRUE(db.queryDefs().empty());
  db.createTable({"T", {field("A", FieldType::Long)}, {}});
  EXPECT_EQ(Database::open(db.path()).tableDefs().size(), 1U);
}

TEST(OpenTest, CreateLeavesAnExistingFileAlone) {
  const TempFolder folder;
  writeBytes(folder.file("a.mdb"), "mine");
  EXPECT_EQ(faultNumber([&] { Database::create(folder.file("a.mdb")); }), engine_error::kCannotOpen);
  EXPECT_EQ(fileBytes(folder.file("a.mdb")), "mine");
  EXPECT_EQ(faultNumber([&] { Database::create(folder.file("none/a.mdb")); }), engine_error::kCannotOpen);
}

TEST_F(EngineTest, DamageIsFoundAtOpening) {
  db.execute("INSERT INTO INFO (概要) VALUES ('" + std::string(20000, 'x') + "')");
  const std::string whole = fileBytes(path());
  const auto openDamaged = [&](const std::string& bytes) {
    writeBytes(folder.file("damaged.mdb"), bytes);
    std::string text;
    const int number = faultNumber([&] { Database::open(folder.file("damaged.mdb")).tableDefs(); }, &text);
    EXPECT_NE(text.find("damaged.mdb"), std::string::npos) << text;
    return number;
  };
  EXPECT_EQ(openDamaged(whole.substr(0, whole.size() / 2)), engine_error::kDamaged) << "cut off";
  EXPECT_EQ(openDamaged(whole.substr(0, 50)), engine_error::kDamaged) << "the header alone, and not all of it";
  std::string garbage = whole;
  for (std::size_t i = 100; i < 4096; ++i) garbage[i] = static_cast<char>(i * 7);
  EXPECT_EQ(openDamaged(garbage), engine_error::kDamaged) << "the schema overwritten";
}

TEST_F(EngineTest, FilesThatCannotBeWrittenOpenForReading) {
  const std::string file = path();
  const auto asOther = [&] {
    return inChild([&] {
      if (::geteuid() == 0 && ::setuid(65534) != 0) return 97;
      bool readOnly = false;
      const int opening = faultNumber([&] {
        Database own = Database::open(file);
        readOnly = own.readOnly();
        own.openRecordset("SELECT * FROM INFO");
        const int writing = faultNumber([&] { own.execute("DELETE * FROM SYS"); });
        if (writing != (readOnly ? engine_error::kReadOnly : 0)) ::_exit(95);
      });
      return opening == engine_error::kCannotOpen ? 2 : opening != 0 ? 96 : readOnly ? 1 : 0;
    });
  };
  const auto folderMode = [&](mode_t mode) { ASSERT_EQ(::chmod(folder.path().c_str(), mode), 0); };
  folderMode(0777);
  ::chmod(file.c_str(), 0666);
  EXPECT_EQ(asOther(), 0);
  ::chmod(file.c_str(), 0444);
  EXPECT_EQ(asOther(), 1);
  ::chmod(file.c_str(), 0000);
  EXPECT_EQ(asOther(), 2);
  ::chmod(file.c_str(), 0666);
  folderMode(0555);
  EXPECT_EQ(asOther(), 1) << "the journal has no place";
  folderMode(0700);
  if (::geteuid() == 0) {
    EXPECT_EQ(asOther(), 2) << "the folder cannot be entered";
  }
  // A log that another tool left makes no difference to a reader, and nobody else's file is changed for him.
  ASSERT_EQ(::system(("sqlite3 '" + file + "' 'PRAGMA journal_mode = WAL' > /dev/null").c_str()), 0);
  const std::string bytes = fileBytes(file);
  folderMode(0555);
  EXPECT_EQ(asOther(), 1);
  EXPECT_EQ(fileBytes(file), bytes);
  folderMode(0700);
}

TEST_F(EngineTest, WhatADiedWriterLeftIsNoReadersToTakeBack) {
  const std::string file = path();
  db.execute("INSERT INTO INFO (概要) VALUES ('" + std::string(100'000, 'x') + "')");
  const std::string died = "sqlite3 '" + file +
                           "' 'PRAGMA cache_size = 1; BEGIN; UPDATE INFO SET 概要 = replace(概要, \"x\", \"yy\");' "
                           "'.shell kill -9 $PPID' > /dev/null 2>&1";
  ASSERT_NE(::system(died.c_str()), 0);
  ::chmod(folder.path().c_str(), 0777);
  ::chmod(file.c_str(), 0444);
  const int found = inChild([&] {
    if (::geteuid() == 0 && ::setuid(65534) != 0) return 97;
    std::string text;
    if (faultNumber([&] { Database::open(file); }, &text) != engine_error::kReadOnly) return 96;
    return text.find("中断された更新") == std::string::npos ? 95 : 0;
  });
  EXPECT_EQ(found, 0);
  ::chmod(file.c_str(), 0666);
  EXPECT_EQ(db.openRecordset("SELECT Len(概要) FROM INFO WHERE Not 概要 Is Null").integer(0), 100'000);
}

// --- definitions

TEST_F(EngineTest, DefinitionsComeBackAsTheyWereMade) {
  Database other = Database::open(path());
  ASSERT_EQ(other.tableDefs().size(), 3U);
  const TableDef* info = other.tableDef("info");
  ASSERT_NE(info, nullptr);
  const FieldType types[] = {FieldType::Auto,    FieldType::Text,   FieldType::Text, FieldType::Memo,
                             FieldType::Integer, FieldType::Double, FieldType::Flag, FieldType::Date};
  ASSERT_EQ(info->fields.size(), std::size(types));
  for (std::size_t i = 0; i < std::size(types); ++i) EXPECT_EQ(info->fields[i].type, types[i]) << i;
  EXPECT_EQ(info->field("略名")->size, 5);
  EXPECT_EQ(info->primaryKey()->fields, std::vector<std::string>{"ID"});
  EXPECT_EQ(other.tableDef("DET")->primaryKey()->fields, (std::vector<std::string>{"ID", "ROWNO"}));
  EXPECT_EQ(other.tableDef("SYS")->primaryKey()->fields, std::vector<std::string>{"システム名"});
  EXPECT_EQ(other.tableDef("SYS")->field("ID")->type, FieldType::Auto);
  EXPECT_EQ(other.tableDef("sqlite_sequence"), nullptr);
}

TEST_F(EngineTest, ASingleLongKeyGivesNoNumberByItself) {
  db.createTable({"K", {field("ID", FieldType::Long), field("A", FieldType::Text)}, {{"PrimaryKey", {"ID"}, true}}});
  EXPECT_EQ(db.tableDef("K")->field("ID")->type, FieldType::Long);
  EXPECT_EQ(faultNumber([&] { db.execute("INSERT INTO K (A) VALUES ('x')"); }), engine_error::kNullNotAllowed);
}

TEST_F(EngineTest, FieldsAreAddedOnceAndSeenByOthers) {
  Database other = Database::open(path());
  other.tableDefs();
  EXPECT_EQ(other.execute("INSERT INTO DET (ID, ROWNO) VALUES (1, 1)"), 1);
  FieldDef added = field("pmark", FieldType::Integer);
  db.addField("det", added);
  EXPECT_EQ(faultNumber([&] { db.addField("DET", added); }), engine_error::kFieldExists);
  std::string text;
  EXPECT_EQ(faultNumber([&] { other.addField("DET", added); }, &text), engine_error::kFieldExists)
      << "the other process does not know yet: " << text;
  EXPECT_EQ(other.execute("UPDATE DET SET PMARK = -1"), 1);
  EXPECT_EQ(other.openRecordset("SELECT * FROM DET").integer("pmark"), -1);

  FieldDef narrow = field("index_space", FieldType::Text, 5);
  narrow.allowZeroLength = false;
  db.addField("SYS", narrow);
  EXPECT_FALSE(db.tableDef("SYS")->field("index_space")->allowZeroLength);
  FieldDef required = field("必須", FieldType::Text, 5);
  required.required = true;
  db.addField("DET", required);
  EXPECT_TRUE(db.tableDef("DET")->field("必須")->required);
  EXPECT_EQ(faultNumber([&] { db.addField("NONE", added); }), engine_error::kNoSuchTable);
}

TEST_F(EngineTest, AKeptSelectOfAllColumnsSeesWhatAnotherProcessAdds) {
  Database other = Database::open(path());
  db.execute("INSERT INTO DET (ID, ROWNO, 項目名) VALUES (1, 1, 'a')");
  EXPECT_EQ(db.openRecordset("SELECT * FROM DET").fieldCount(), 4);
  other.addField("DET", field("新", FieldType::Text, 9));
  other.execute("UPDATE DET SET 新 = 'x'");
  Recordset set = db.openRecordset("SELECT * FROM DET");
  ASSERT_EQ(set.fieldCount(), 5);
  set.edit();
  set.set("新", std::string("y"));
  set.update();
  EXPECT_EQ(set.text("新"), "y");
  other.createTable({"LATER", {field("A", FieldType::Long)}, {}});
  EXPECT_NE(db.tableDef("LATER"), nullptr);
  EXPECT_EQ(db.openRecordset("LATER").recordCount(), 0);
}

TEST_F(EngineTest, AlterColumnKeepsRowsIndexesAndNumbers) {
  db.execute("INSERT INTO INFO (テーブル名, 略名, 容量, 日付) VALUES ('A', '略', 0.5, #2026/11/24 09:05:00#)");
  db.execute("INSERT INTO INFO (テーブル名) VALUES ('B')");
  db.execute("INSERT INTO INFO (テーブル名) VALUES ('C')");
  db.execute("DELETE FROM INFO WHERE テーブル名 = 'C'");
  db.ensureIndex("INFO", "byName", {"テーブル名"});

  EXPECT_EQ(db.execute("ALTER TABLE INFO ALTER COLUMN 略名 TEXT(50)"), 0);
  const TableDef* info = db.tableDef("INFO");
  EXPECT_EQ(info->field("略名")->size, 50);
  EXPECT_EQ(info->field("ID")->type, FieldType::Auto);
  ASSERT_EQ(info->indexes.size(), 2U);
  EXPECT_EQ(info->indexes[1].name, "byName");
  Recordset set = db.openRecordset("SELECT * FROM INFO ORDER BY ID");
  ASSERT_EQ(set.recordCount(), 2);
  EXPECT_EQ(set.text("略名"), "略");
  EXPECT_EQ(set.number("容量"), 0.5);
  EXPECT_EQ(set.text("日付"), "2026/11/24 09:05:00");
  db.execute("INSERT INTO INFO (テーブル名) VALUES ('D')");
  EXPECT_EQ(number("SELECT ID FROM INFO WHERE テーブル名 = 'd'"), 4) << "3 was given before and is not given again";

  // A text that is too long, a text that is no number: refused, all as before.
  std::string text;
  EXPECT_EQ(db.execute("UPDATE INFO SET 略名 = '長い略名です' WHERE ID = 1"), 1);
  EXPECT_EQ(faultNumber([&] { db.execute("ALTER TABLE INFO ALTER COLUMN 略名 TEXT(5)"); }, &text),
            engine_error::kTextTooLong);
  EXPECT_NE(text.find("略名"), std::string::npos) << text;
  EXPECT_EQ(faultNumber([&] { db.execute("ALTER TABLE INFO ALTER COLUMN 略名 LONG"); }), engine_error::kConversion);
  EXPECT_FALSE(db.inTransaction());
  EXPECT_EQ(db.tableDef("INFO")->field("略名")->size, 50);
  EXPECT_EQ(number("SELECT Count(*) FROM INFO"), 3);
  EXPECT_EQ(db.tableDefs().size(), 3U);
}

TEST_F(EngineTest, AlterColumnThatChangesNothingTakesNoLock) {
  db.tableDefs();
  Database other = Database::open(path());
  other.beginTrans();
  const long before = db.statementCount();
  EXPECT_EQ(db.execute("ALTER TABLE INFO ALTER COLUMN 略名 TEXT(5)"), 0);
  EXPECT_EQ(db.statementCount(), before);
  other.rollback();
}

TEST_F(EngineTest, FilesOfOtherToolsKeepTheirDeclarations) {
  ASSERT_EQ(std::system(("sqlite3 '" + folder.file("o.mdb") +
                         "' \"CREATE TABLE T (ID INTEGER PRIMARY KEY AUTOINCREMENT, 略名 TEXT, 数 INTEGER DEFAULT 7, "
                         "名 TEXT NOT NULL); CREATE INDEX もの ON T (名); INSERT INTO T (略名, 名) VALUES (NULL, 'x'), "
                         "('あ', 'Y');\"")
                            .c_str()),
            0);
  Database other = Database::open(folder.file("o.mdb"));
  EXPECT_EQ(other.tableDef("T")->field("略名")->type, FieldType::Memo);
  EXPECT_EQ(other.tableDef("T")->field("数")->type, FieldType::Long);
  other.execute("ALTER TABLE T ALTER COLUMN 略名 TEXT(50)");
  EXPECT_EQ(other.tableDef("T")->field("略名")->size, 50);
  EXPECT_TRUE(other.tableDef("T")->field("名")->required);
  EXPECT_EQ(other.tableDef("T")->indexes.back().name, "もの");
  other.execute("INSERT INTO T (名) VALUES ('z')");
  EXPECT_EQ(other.openRecordset("SELECT 数 FROM T WHERE 名 = 'z'").integer(0), 7);
  EXPECT_EQ(other.openRecordset("SELECT * FROM T WHERE 名 = 'y'").recordCount(), 1);
}

// --- statements

TEST_F(EngineTest, OneCallRunsOneStatement) {
  db.execute("INSERT INTO SYS (システム名) VALUES ('a')");
  const std::string name = "x'; DELETE FROM SYS; --";
  for (const std::string& sql :
       {"UPDATE SYS SET システム名 = '" + name + "'", std::string("SELECT * FROM SYS; DELETE FROM SYS"),
        std::string("DELETE FROM DET; DELETE FROM SYS")}) {
    EXPECT_EQ(faultNumber([&] { db.execute(sql); }), engine_error::kSyntax) << sql;
    EXPECT_EQ(faultNumber([&] { db.openRecordset(sql); }), engine_error::kSyntax) << sql;
  }
  EXPECT_EQ(number("SELECT Count(*) FROM SYS"), 1);
  EXPECT_EQ(faultNumber([&] { db.execute("SELECT * FROM SYS"); }), engine_error::kNotAnAction);
  EXPECT_EQ(faultNumber([&] { db.openRecordset("DELETE FROM SYS"); }), engine_error::kNotAnAction);
}

TEST_F(EngineTest, OddTextComesBackAsItWent) {
  const std::string nul("a\0b", 3);
  const std::string texts[] = {"'", "\"", "\t\r\n", nul, "", std::string(10000, 'x'), "𠮷野家😀", "\xff\xfe"};
  for (const std::string& text : texts) {
    db.execute("DELETE FROM INFO");
    db.insertRows("INFO", {"概要"}, {{text}});
    EXPECT_EQ(db.openRecordset("SELECT 概要 FROM INFO").text(0), text);
  }
}

TEST_F(EngineTest, ParametersAreFoundByNameAndMissedByName) {
  db.execute("INSERT INTO SYS (システム名) VALUES ('販売')");
  const std::string sql = "PARAMETERS SystemName Text; SELECT * FROM SYS WHERE システム名 = SystemName";
  EXPECT_EQ(db.openRecordset(sql, {{"SYSTEMNAME", std::string("販売")}}).recordCount(), 1);
  EXPECT_EQ(db.openRecordset(sql, {{"SystemName", std::string("x' OR 'a'='a")}}).recordCount(), 0);
  std::string text;
  EXPECT_EQ(faultNumber(
                [&] {
                  db.openRecordset(sql, {{"Other", std::string("販売")}});
                },
                &text),
            engine_error::kMissingParameter);
  EXPECT_NE(text.find("SystemName"), std::string::npos) << text;
}

TEST_F(EngineTest, StoredQueriesAreRunByName) {
  db.execute("INSERT INTO SYS (システム名) VALUES ('販売')");
  db.putQueryDef({"出力_システム", "PARAMETERS p Text; SELECT システム名 FROM SYS WHERE システム名 = p AND ID < q"});
  EXPECT_EQ(faultNumber([&] { db.putQueryDef({"出力_システム", "SELEC 1"}); }), engine_error::kSyntax);
  const std::vector<QueryParameter> parameters = db.queryParameters("出力_システム");
  ASSERT_EQ(parameters.size(), 2U);
  EXPECT_EQ(parameters[0].name, "p");
  EXPECT_EQ(parameters[1].name, "q");
  const std::vector<ParameterValue> values = {{"p", std::string("販売")}, {"q", std::int64_t{10}}};
  EXPECT_EQ(db.openRecordset("[出力_システム]", values).recordCount(), 1);
}

TEST_F(EngineTest, AReplacedStoredQueryAnswersWithItsNewText) {
  db.putQueryDef({"Q", "SELECT 1 AS x FROM SYS"});
  db.execute("INSERT INTO SYS (システム名) VALUES ('a')");
  EXPECT_EQ(number("SELECT x FROM Q"), 1);
  Database other = Database::open(path());
  other.putQueryDef({"q", "SELECT 2 AS x FROM SYS"});
  EXPECT_EQ(number("SELECT x FROM Q"), 2);
  EXPECT_EQ(db.queryDefs().size(), 1U);
  EXPECT_EQ(db.tableDef("MSysQueryDefs"), nullptr);
  EXPECT_EQ(faultNumber([&] { db.openRecordset("Q2"); }), engine_error::kNoSuchTable);
  EXPECT_EQ(faultNumber([&] { db.queryParameters("Q2"); }), engine_error::kNoSuchTableDef);
}

TEST_F(EngineTest, DuplicateKeysAreRefusedWithoutCaseAndNamed) {
  db.execute("INSERT INTO SYS (システム名) VALUES ('Sales')");
  std::string text;
  EXPECT_EQ(faultNumber([&] { db.execute("INSERT INTO SYS (システム名) VALUES ('SALES')"); }, &text),
            engine_error::kDuplicateKey);
  EXPECT_NE(text.find("SYS"), std::string::npos) << text;
  EXPECT_NE(text.find("システム名"), std::string::npos) << text;
}

TEST_F(EngineTest, RowsAreInsertedAllOrNone) {
  const std::vector<std::string> columns = {"ID", "rowno", "項目名"};
  std::vector<std::vector<Value>> rows;
  for (std::int64_t i = 1; i <= 30; ++i) rows.push_back({std::int64_t{1}, i, std::string("項目")});
  db.tableDefs();
  const long before = db.statementCount();
  db.insertRows("det", columns, rows);
  EXPECT_EQ(db.statementCount() - before, 1);

  // Beyond one statement, and with a fault in the last row: a wide text, a key that is there, a missing value.
  std::vector<std::vector<Value>> many;
  for (std::int64_t i = 1; i <= 25000; ++i) many.push_back({std::int64_t{2}, i, Value{}});
  const std::vector<Value> faults[] = {{std::int64_t{2}, std::int64_t{30000}, std::string(21, 'x')},
                                       {std::int64_t{1}, std::int64_t{1}, Value{}},
                                       {std::int64_t{2}, std::int64_t{30000}}};
  for (const std::vector<Value>& fault : faults) {
    many.push_back(fault);
    EXPECT_NE(faultNumber([&] { db.insertRows("DET", columns, many); }), 0);
    EXPECT_FALSE(db.inTransaction());
    EXPECT_EQ(number("SELECT Count(*) FROM DET"), 30);
    db.beginTrans();
    EXPECT_NE(faultNumber([&] { db.insertRows("DET", columns, many); }), 0);
    EXPECT_TRUE(db.inTransaction());
    EXPECT_EQ(number("SELECT Count(*) FROM DET"), 30);
    db.commitTrans();
    many.pop_back();
  }
  db.insertRows("DET", columns, many);
  EXPECT_EQ(number("SELECT Count(*) FROM DET"), 25030);
  EXPECT_EQ(faultNumber([&] { db.insertRows("DET", {"無い"}, {{std::int64_t{1}}}); }), engine_error::kNoSuchTableDef);
}

// --- transactions and other processes

TEST_F(EngineTest, TransactionsStandOrFallAsAWhole) {
  db.beginTrans();
  EXPECT_EQ(faultNumber([&] { db.beginTrans(); }), engine_error::kTransaction);
  db.execute("INSERT INTO SYS (システム名) VALUES ('a')");
  db.createTable({"NEW", {field("A", FieldType::Long)}, {}});
  EXPECT_NE(db.tableDef("NEW"), nullptr);
  db.rollback();
  EXPECT_EQ(db.tableDef("NEW"), nullptr);
  EXPECT_EQ(number("SELECT Count(*) FROM SYS"), 0);
  EXPECT_EQ(faultNumber([&] { db.commitTrans(); }), engine_error::kTransaction);
  EXPECT_EQ(faultNumber([&] { db.rollback(); }), engine_error::kTransaction);
  EXPECT_THROW(inTransaction(db,
                             [&] {
                               db.execute("INSERT INTO SYS (システム名) VALUES ('b')");
                               throw std::runtime_error("stop");
                             }),
               std::runtime_error);
  EXPECT_FALSE(db.inTransaction());
  EXPECT_EQ(number("SELECT Count(*) FROM SYS"), 0);
}

TEST_F(EngineTest, AWriterWaitsForAnotherAndThenGoesOn) {
  Database other = Database::open(path());
  other.beginTrans();
  other.execute("INSERT INTO SYS (システム名) VALUES ('first')");
  std::thread release([&] {
    std::this_thread::sleep_for(std::chrono::milliseconds(300));
    other.commitTrans();
  });
  const auto begin = std::chrono::steady_clock::now();
  EXPECT_EQ(db.execute("INSERT INTO SYS (システム名) VALUES ('second')"), 1);
  EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(250));
  release.join();
  EXPECT_EQ(number("SELECT Count(*) FROM SYS"), 2);
}

TEST_F(EngineTest, AnOpenSetHoldsNobodyUp) {
  db.execute("INSERT INTO SYS (システム名) VALUES ('a')");
  db.execute("INSERT INTO SYS (システム名) VALUES ('b')");
  Recordset set = db.openRecordset("SELECT * FROM SYS ORDER BY システム名");
  Database other = Database::open(path());
  EXPECT_EQ(other.execute("DELETE FROM SYS"), 2);
  set.moveNext();
  EXPECT_EQ(set.text("システム名"), "b");
}

TEST_F(EngineTest, ManyProcessesLoseNothing) {
  constexpr int kProcesses = 6;
  constexpr int kRounds = 25;
  pid_t children[kProcesses];
  const std::string file = path();
  for (pid_t& child : children) {
    child = ::fork();
    if (child != 0) continue;
    int status = 1;
    try {
      Database own = Database::open(file);
      for (int i = 0; i < kRounds; ++i) {
        inTransaction(own, [&] {
          own.execute("INSERT INTO INFO (テーブル名, 数) VALUES ('t', 1)");
          own.execute("UPDATE INFO SET 数 = 数 + 1 WHERE ID = 1");
        });
        own.openRecordset("SELECT * FROM INFO");
      }
      status = 0;
    } catch (...) {
    }
    ::_exit(status);
  }
  for (const pid_t child : children) {
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
  }
  EXPECT_EQ(number("SELECT Count(*) FROM INFO"), kProcesses * kRounds);
  EXPECT_EQ(number("SELECT 数 FROM INFO WHERE ID = 1"), kProcesses * kRounds + 1);
}

TEST_F(EngineTest, AFullDiskLeavesTheFormerDataWhole) {
  db.execute("INSERT INTO INFO (テーブル名) VALUES ('before')");
  const std::string file = path();
  const auto size = static_cast<rlim_t>(std::filesystem::file_size(file));
  const int status = inChild([&] {
    std::signal(SIGXFSZ, SIG_IGN);
    Database own = Database::open(file);
    const rlimit limit = {size + 8192, size + 8192};
    ::setrlimit(RLIMIT_FSIZE, &limit);
    own.beginTrans();
    std::string text;
    const int number = faultNumber(
        [&] {
          own.execute("UPDATE INFO SET テーブル名 = 'half'");
          for (int i = 0; i < 100; ++i) {
            own.insertRows("INFO", {"概要"}, {{std::string(500000, 'x')}});
          }
          own.commitTrans();
        },
        &text);
    if (number != engine_error::kDiskFull) return 1;
    if (text.find(file) == std::string::npos) return 2;
    if (own.inTransaction()) own.rollback();
    // The process can still read, and sees what was there.
    return own.openRecordset("SELECT テーブル名 FROM INFO").text(0) == "before" ? 0 : 3;
  });
  EXPECT_EQ(status, 0);
  Recordset set = Database::open(file).openRecordset("SELECT * FROM INFO");
  ASSERT_EQ(set.recordCount(), 1);
  EXPECT_EQ(set.text("テーブル名"), "before");
}

TEST_F(EngineTest, AKilledWriterLeavesTheFormerRows) {
  db.execute("INSERT INTO INFO (テーブル名) VALUES ('before')");
  const std::string file = path();
  const pid_t child = ::fork();
  if (child == 0) {
    Database own = Database::open(file);
    own.beginTrans();
    own.execute("UPDATE INFO SET テーブル名 = 'half'");
    // More than the cache holds, so that pages of the running transaction reach the file.
    for (int i = 0; i < 40; ++i) own.insertRows("INFO", {"概要"}, {{std::string(1000000, 'x')}});
    ::raise(SIGKILL);
  }
  ::waitpid(child, nullptr, 0);
  Database other = Database::open(file);
  Recordset set = other.openRecordset("SELECT * FROM INFO");
  ASSERT_EQ(set.recordCount(), 1);
  EXPECT_EQ(set.text("テーブル名"), "before");
}

}  // namespace
}  // namespace quillmarden
