#include "engine/sqlite_writer.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <memory>
#include <string>

#include "engine/convert.h"
#include "engine/parser.h"
#include "engine_fixture.h"

namespace quillmarden {
namespace {

// Tables as the Repository has them, in a schema that SQLite knows too, so that the written text can be asked for its
// plan. `old` declares its text without NOCASE, as other tools do.
class WriterTest : public ::testing::Test {
 protected:
  WriterTest() {
    sqlite3_open(":memory:", &connection_);
    registerFunctions(connection_);
    sqlite3_exec(connection_,
                 "CREATE TABLE inf (ID INTEGER PRIMARY KEY, システム名 TEXT COLLATE NOCASE, 削除フラグ INTEGER);"
                 "CREATE INDEX i1 ON inf (システム名);"
                 "CREATE TABLE det (ID INTEGER, ROWNO INTEGER, 型 TEXT COLLATE NOCASE, 日付 TEXT, 長さ INTEGER,"
                 "                  PRIMARY KEY (ID, ROWNO));"
                 "CREATE TABLE sys (システム名 TEXT COLLATE NOCASE PRIMARY KEY, username TEXT);"
                 "CREATE TABLE old (システム名 TEXT PRIMARY KEY)",
                 nullptr, nullptr, nullptr);
    tables_ = {{"inf",
                {field("ID", FieldType::Auto), field("システム名", FieldType::Text, 255),
                 field("削除フラグ", FieldType::Flag)},
                {}},
               {"det",
                {field("ID", FieldType::Long), field("ROWNO", FieldType::Long), field("型", FieldType::Text, 20),
                 field("日付", FieldType::Date), field("長さ", FieldType::Long)},
                {}},
               {"sys", {field("システム名", FieldType::Text, 255), field("username", FieldType::Text, 50)}, {}},
               {"old", {field("システム名", FieldType::Text)}, {}}};
  }
  ~WriterTest() override { sqlite3_close(connection_); }

  SqliteStatement write(std::string_view sql) {
    SchemaView view;
    view.table = [this](std::string_view name) -> const TableDef* {
      for (const TableDef& table : tables_) {
        if (sameName(table.name, name)) return &table;
      }
      return nullptr;
    };
    view.query = [this](std::string_view name) -> const QueryDef* {
      for (const QueryDef& query : queries_) {
        if (sameName(query.name, name)) return &query;
      }
      return nullptr;
    };
    return writeSqlite(parseStatement(sql), view);
  }

  // The steps of SQLite's plan, one a line.
  std::string plan(std::string_view sql) {
    const std::string text = "EXPLAIN QUERY PLAN " + write(sql).sql;
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(connection_, text.c_str(), -1, &statement, nullptr), SQLITE_OK)
        << sqlite3_errmsg(connection_) << "\n"
        << text;
    std::string result;
    while (sqlite3_step(statement) == SQLITE_ROW) {
      result += std::string(reinterpret_cast<const char*>(sqlite3_column_text(statement, 3))) + "\n";
    }
    sqlite3_finalize(statement);
    return result;
  }

  sqlite3* connection_ = nullptr;
  std::vector<TableDef> tables_;
  std::vector<QueryDef> queries_;
};

TEST_F(WriterTest, KeysAndIndexesAreUsed) {
  const auto uses = [&](std::string_view sql, std::string_view step) {
    const std::string steps = plan(sql);
    EXPECT_NE(steps.find(step), std::string::npos) << sql << "\n" << steps;
  };
  uses("SELECT * FROM det WHERE (((det.ID)=5)) ORDER BY ROWNO", "SEARCH det USING INDEX sqlite_autoindex_det_1 (ID=?)");
  uses("SELECT * FROM det WHERE ID = '5'", "(ID=?)");
  uses("SELECT * FROM inf WHERE システム名 = 'a' AND 削除フラグ = False", "USING INDEX i1 (システム名=?)");
  uses("SELECT * FROM inf INNER JOIN sys ON inf.システム名 = sys.システム名 WHERE inf.ID IN (1,2)", "SEARCH sys USING");
  uses("SELECT i.ID FROM (inf AS i INNER JOIN det AS d ON i.ID = d.ID) LEFT JOIN sys ON i.システム名 = sys.システム名",
       "SEARCH i USING INTEGER PRIMARY KEY");
  uses("UPDATE inf AS i INNER JOIN det AS d ON i.ID = d.ID SET d.長さ = 7 WHERE i.ID = 1",
       "SEARCH d USING COVERING INDEX sqlite_autoindex_det_1 (ID=?)");
  uses("DELETE d.* FROM inf AS i INNER JOIN det AS d ON i.ID = d.ID WHERE i.ID = 1",
       "SEARCH i USING INTEGER PRIMARY KEY");
  uses("DELETE * FROM det WHERE ID = 1", "(ID=?)");
}

TEST_F(WriterTest, TextComparesWithoutCaseWhateverTheColumnDeclares) {
  sqlite3_exec(connection_, "INSERT INTO old VALUES ('ABC'), ('abc'), ('x')", nullptr, nullptr, nullptr);
  const auto rows = [&](const std::string& sql) {
    SqliteStatement written = write(sql);
    const StatementKey key = statementKey(sql);
    sqlite3_stmt* statement = nullptr;
    EXPECT_EQ(sqlite3_prepare_v2(connection_, written.sql.c_str(), -1, &statement, nullptr), SQLITE_OK) << written.sql;
    for (std::size_t i = 0; i < key.literals.size(); ++i) {
      const std::string& text = std::get<std::string>(key.literals[i]);
      sqlite3_bind_text(statement, static_cast<int>(i) + 1, text.c_str(), -1, SQLITE_TRANSIENT);
    }
    int count = 0;
    while (sqlite3_step(statement) == SQLITE_ROW) ++count;
    sqlite3_finalize(statement);
    return count;
  };
  EXPECT_EQ(rows("SELECT * FROM old WHERE システム名 = 'aBc'"), 2);
  EXPECT_EQ(rows("SELECT * FROM old WHERE システム名 IN ('aBc', 'X')"), 3);
  EXPECT_EQ(rows("SELECT * FROM old WHERE システム名 Between 'AB' And 'aBd'"), 2);
  EXPECT_EQ(rows("SELECT * FROM old WHERE Trim$(システム名) IN (SELECT システム名 FROM old)"), 3);
  EXPECT_EQ(rows("SELECT DISTINCT システム名 FROM old"), 2);
  EXPECT_EQ(rows("SELECT システム名 FROM old GROUP BY システム名"), 2);
  EXPECT_EQ(rows("SELECT システム名 FROM old UNION SELECT システム名 FROM old"), 2);
  EXPECT_EQ(rows("SELECT a.システム名 FROM old a INNER JOIN old b ON a.システム名 = b.システム名"), 5);
}

TEST_F(WriterTest, StatementsThatDifferInLiteralsShareTheirKey) {
  const auto key = [](std::string_view sql) { return statementKey(sql).key; };
  EXPECT_EQ(key("SELECT a FROM t WHERE b = 'x'' y' AND c = 1"), key("SELECT a FROM t WHERE b = '' AND c = 23"));
  // Text and number are compared in different ways, so they are not the same statement.
  EXPECT_NE(key("SELECT a FROM t WHERE b = '1'"), key("SELECT a FROM t WHERE b = 1"));
  EXPECT_NE(key("SELECT a FROM t WHERE b = 1"), key("SELECT a FROM t WHERE b = 1.5"));
  EXPECT_NE(key("SELECT a FROM t WHERE b = '2026/11/24 00:00:00'"), key("SELECT a FROM t WHERE b = #2026/11/24#"));
  EXPECT_NE(key("SELECT a FROM t WHERE b IN (1,2)"), key("SELECT a FROM t WHERE b IN (1,2,3)"));
  const StatementKey parts = statementKey("VALUES ('a''b', \"c\", 12, .5, #11/24/2026 9:05:00#)");
  EXPECT_EQ(parts.literals, (std::vector<Value>{std::string("a'b"), std::string("c"), std::int64_t{12}, 0.5,
                                                std::string("2026/11/24 09:05:00")}));
}

TEST_F(WriterTest, WhatIsWrittenIntoTheTextIsNotKept) {
  EXPECT_TRUE(write("SELECT ID FROM inf WHERE ID = 3").cacheable);
  EXPECT_FALSE(write("SELECT TOP 3 ID FROM inf").cacheable);
  EXPECT_FALSE(write("SELECT ID FROM inf ORDER BY 1").cacheable);
  // More literals than SQLite has slots.
  std::string many = "SELECT ID FROM inf WHERE ID IN (0";
  for (int i = 1; i < 40000; ++i) many += "," + std::to_string(i);
  const SqliteStatement written = write(many + ")");
  EXPECT_FALSE(written.cacheable);
  EXPECT_EQ(written.literalCount, 0);
}

TEST_F(WriterTest, ParametersStandBehindTheLiteralsOnceEach) {
  const SqliteStatement written =
      write("SELECT [入力], ID FROM inf WHERE ID = 1 AND システム名 = [入力] AND x.y = 'a'");
  EXPECT_EQ(written.literalCount, 2);
  EXPECT_EQ(written.parameters, (std::vector<std::string>{"入力", "x.y"}));
  EXPECT_NE(written.sql.find("= ?3"), std::string::npos) << written.sql;
  EXPECT_NE(written.sql.find("?4 = ?2"), std::string::npos) << written.sql;
}

TEST_F(WriterTest, EditingGoesToTheTablesThatAreShown) {
  const auto shown = [&](std::string_view sql) {
    std::string result;
    const SqliteStatement written = write(sql);
    for (const ShownTable& table : written.shownTables) {
      result += table.alias + "@" + std::to_string(table.rowIdColumn) + " ";
    }
    return result;
  };
  EXPECT_EQ(shown("SELECT * FROM det"), "det@5 ");
  EXPECT_EQ(shown("SELECT a.ID, b.型 FROM inf AS a LEFT JOIN det AS b ON a.ID = b.ID"), "a@2 b@3 ");
  EXPECT_EQ(shown("SELECT b.型 FROM inf AS a INNER JOIN det AS b ON a.ID = b.ID"), "b@1 ");
  EXPECT_EQ(shown("SELECT a.ID, c.username FROM inf a LEFT JOIN (det b INNER JOIN sys c ON b.型 = c.username) "
                  "ON a.ID = b.ID"),
            "a@2 ");
  for (const std::string_view closed :
       {"SELECT DISTINCT ID FROM inf", "SELECT ID FROM inf GROUP BY ID", "SELECT Count(ID) FROM inf",
        "SELECT ID FROM inf UNION SELECT ID FROM det", "SELECT ID FROM (SELECT ID FROM inf) AS q"}) {
    EXPECT_EQ(shown(closed), "") << closed;
  }
}

TEST_F(WriterTest, ColumnsAreNamedAsAccessNamesThem) {
  const auto names = [&](std::string_view sql) {
    std::string result;
    const SqliteStatement written = write(sql);
    for (const ResultColumn& column : written.columns) result += column.name + " ";
    EXPECT_EQ(written.columnCount, static_cast<int>(written.columns.size()));
    return result;
  };
  EXPECT_EQ(names("SELECT a.id, b.ID, b.rowno FROM inf a INNER JOIN det b ON a.ID = b.ID"), "a.ID b.ID ROWNO ");
  EXPECT_EQ(names("SELECT a.*, b.username AS システム名 FROM inf a, sys b"), "ID a.システム名 削除フラグ システム名 ");
  EXPECT_EQ(names("SELECT ID, ID, Count(*) FROM inf GROUP BY ID"), "ID Expr1001 Expr1002 ");
}

TEST_F(WriterTest, AssignmentsAreCheckedWhereTheValueIsNotKnownToFit) {
  const auto checked = [&](std::string_view sql) { return write(sql).sql.find("qm_store(") != std::string::npos; };
  EXPECT_TRUE(checked("UPDATE det SET 型 = 'a'"));
  EXPECT_TRUE(checked("UPDATE det SET 長さ = 1"));
  EXPECT_TRUE(checked("UPDATE det, sys SET det.型 = sys.username"));
  EXPECT_FALSE(checked("UPDATE det, sys SET sys.username = det.型"));
  EXPECT_FALSE(checked("UPDATE inf SET 削除フラグ = True, システム名 = Null"));
  EXPECT_FALSE(checked("UPDATE inf SET 削除フラグ = (ID = 3)"));
}

TEST_F(WriterTest, StoredQueriesDoNotRunInCircles) {
  queries_ = {
      {"q1", "SELECT ID FROM q2"}, {"q2", "SELECT ID FROM q1"}, {"live", "SELECT ID FROM inf WHERE 削除フラグ = 0"}};
  EXPECT_EQ(faultNumber([&] { write("SELECT * FROM q1"); }), engine_error::kSyntax);
  const SqliteStatement written = write("SELECT ID FROM live WHERE ID = 7");
  EXPECT_EQ(written.literalCount, 1);
  EXPECT_NE(written.sql.find("\"削除フラグ\" = 0"), std::string::npos) << written.sql;
  // Twice as many at each level.
  for (int i = 0; i < 9; ++i) {
    const std::string below = i == 0 ? "inf" : "d" + std::to_string(i - 1);
    queries_.push_back({"d" + std::to_string(i), "SELECT a.ID FROM " + below + " a, " + below + " b"});
  }
  EXPECT_EQ(faultNumber([&] { write("SELECT * FROM d8"); }), engine_error::kSyntax);
}

}  // namespace
}  // namespace quillmarden
