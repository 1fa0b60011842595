#include "repository/schema.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "repository/type_catalogue.h"
#include "repository_fixture.h"

namespace quillmarden {
namespace {

class Schema : public RepositoryTest {};

TEST_F(Schema, NewRepositoryHoldsTablesCatalogueAndUsers) {
  Database database = createRepository(file(), {"tanaka", "ADMIN", " ", "Tanaka", "o'hara"});
  EXPECT_EQ(database.tableDefs().size(), 30u);
  EXPECT_EQ(rows(database, "Select ユーザー名, グループ, ログオン日付 From MAS_USER Order By ユーザー名"),
            (std::vector<std::string>{"admin|ADMIN|-", "o'hara|-|-", "tanaka|-|-"}));
  EXPECT_EQ(
      rows(database, "Select ファイル種別, Count(*) From MAS_FILETYPE Group By ファイル種別 Order By Count(*) DESC"),
      (std::vector<std::string>{"SQL Server|32", "MySQL|29", "PostgreSQL|29", "Access|21", "Oracle|14",
                                "TeraDatabase|11", "メンバー|11", "Text|3", "PG管理|1", "固定値|1"}));
  EXPECT_EQ(rows(database, "Select * From MAS_FILETYPE Where ファイル種別 = 'oracle' And 型 In ('number', 'date')"),
            (std::vector<std::string>{"Oracle|date|0|7|0|-", "Oracle|number|-1|0|-1|-"}));
  EXPECT_EQ(rows(database,
                 "Select 型, 型_変換 From MAS_FILETYPE Where ファイル種別 = 'Access' And 型 Like '*ﾄ*' "
                 "Or 型 = '10進型' Order By 型"),
            (std::vector<std::string>{"10進型|-", "oldｵﾌﾞｼﾞｪｸﾄ型|binary", "ｵｰﾄﾅﾝﾊﾞｰ型|@AUTO_NO", "ﾃｷｽﾄ型|varchar",
                                      "ﾊﾞｲﾄ型|int"}));
  EXPECT_EQ(rows(database, "Select 元ファイル種別, Count(*) From MAS_FILECONV Group By 元ファイル種別"),
            (std::vector<std::string>{"Access|24", "PostgreSQL|30"}));
  EXPECT_EQ(rows(database, "Select * From MAS_FILECONV Where 元型 = 'money'"),
            (std::vector<std::string>{"PostgreSQL|money|Oracle|number|-1|0|-1|19|4"}));
  EXPECT_EQ(gGetFileKindList(database),
            (std::vector<std::string>{"", "Oracle", "SQL Server", "TeraDatabase", "MySQL", "PostgreSQL", "Access",
                                      "Text", "メンバー", "PG管理", "固定値"}));
}

TEST_F(Schema, KeysAndAutoNumbersHold) {
  Database database = createRepository(file());
  database.execute("INSERT INTO MAS_SYSTEM (システム名) VALUES ('販売')");
  database.execute("INSERT INTO MAS_SYSTEM (システム名) VALUES ('在庫')");
  EXPECT_EQ(rows(database, "Select ID, システム名 From MAS_SYSTEM Order By ID"),
            (std::vector<std::string>{"1|販売", "2|在庫"}));
  EXPECT_THROW(database.execute("INSERT INTO MAS_SYSTEM (システム名) VALUES ('販売')"), EngineError);

  database.execute("INSERT INTO MAS_TABLEINFO (テーブル名) VALUES ('a')");
  database.execute("DELETE FROM MAS_TABLEINFO");
  database.execute("INSERT INTO MAS_TABLEINFO (テーブル名) VALUES ('b')");
  EXPECT_EQ(rows(database, "Select ID From MAS_TABLEINFO"), std::vector<std::string>{"2"});

  // Every table that a screen opens for seek() has its key.
  for (const char* name :
       {"MAS_SYSTEM", "MAS_TABLEINFO", "MAS_TABLEDETAILES", "MAS_PRJINFO", "MAS_INDEX", "MAS_DOMAIN", "MAS_DIVISION",
        "MAS_KENSU", "MAS_TABLEBIKO", "MAS_FILETYPE", "MAS_FILECONV", "MAS_USER", "DAT_REFERENCE", "DAT_TABLEREF"})
    EXPECT_TRUE(database.tableDef(name)->primaryKey()) << name;
  Recordset index = database.openTable("MAS_INDEX");
  index.addNew();
  index.set("INDEX_NAME", "IX1");
  index.set("ID", std::int64_t{2});
  index.set("ROWNO", std::int64_t{1});
  index.set("bolunique", std::int64_t{-1});
  index.update();
  ASSERT_TRUE(index.seek({std::string("ix1"), std::int64_t{2}, std::int64_t{1}}));
  EXPECT_EQ(index.integer("bolUNIQUE"), -1);
}

TEST_F(Schema, ExistingFileIsLeftAlone) {
  std::ofstream(file()) << "not ours";
  EXPECT_THROW(createRepository(file()), EngineError);
  std::ostringstream text;
  text << std::ifstream(file()).rdbuf();
  EXPECT_EQ(text.str(), "not ours");
}

TEST_F(Schema, HalfMadeFileIsRemoved) {
  // No Text column takes a name of 300 characters, so the last step of the making fails.
  EXPECT_THROW(createRepository(file(), {std::string(300, 'x')}), EngineError);
  EXPECT_TRUE(std::filesystem::is_empty(scripted.host.machine.programFolder));
}

TEST_F(Schema, IndexesAreMadeOnceAndServeTheLookUps) {
  Database database = createRepository(file());
  const long before = database.statementCount();
  ensureRepositoryIndexes(database);
  EXPECT_LE(database.statementCount() - before, 1);
}

/// The stored queries on two live tables, a deleted one and one of another System.
class StoredQueries : public RepositoryTest {
 protected:
  void SetUp() override {
    database.emplace(createRepository(file()));
    inTransaction(*database, [&] { fill(); });
  }

  void fill() {
    for (const char* statement :
         {"INSERT INTO MAS_SYSTEM (システム名) VALUES ('販売')",
          "INSERT INTO MAS_KENSU (システム名, 定義名, 概要, 件数, 削除フラグ) VALUES ('販売', '年間受注', '一年分', "
          "5000, 0)",
          "INSERT INTO MAS_TABLEINFO (システム名, テーブル名, 日本語名, 分類, 概要, ファイル種別, 現在数, 現在保持, "
          "想定数, "
          "想定保持, 件数定義ID, 削除フラグ, チェックポイント日付) VALUES ('販売', 'T_JUCHU', '受注', "
          "'トランザクション', "
          "'受注の記録', 'Oracle', 10, 1, 1000, 12, 1, 0, #2026/04/01 00:00:00#)",
          "INSERT INTO MAS_TABLEINFO (システム名, テーブル名, 日本語名, 分類, ファイル種別, 想定数, 想定保持, "
          "件数定義ID, "
          "削除フラグ, チェックポイント日付) VALUES ('販売', 'M_TOKUI', '得意先', 'マスタ', 'Oracle', 200, 1, 0, 0, "
          "#2026/05/01 00:00:00#)",
          "INSERT INTO MAS_TABLEINFO (システム名, テーブル名, 日本語名, 削除フラグ, チェックポイント日付) "
          "VALUES ('販売', 'T_OLD', '旧受注', 1, #2020/01/01 00:00:00#)",
          "INSERT INTO MAS_TABLEINFO (システム名, テーブル名, 日本語名, 想定数, 想定保持, 削除フラグ) "
          "VALUES ('在庫', 'T_JUCHU', '受注写し', 7, 7, 0)"})
      database->execute(statement);
    const auto field = [](std::int64_t id, std::int64_t row, const char* name, std::int64_t key, std::int64_t length,
                          const char* created) -> std::vector<Value> {
      return {id, row, row, std::string(name) + "名", name, key, "char", length, std::int64_t{0}, length, created};
    };
    database->insertRows(
        "MAS_TABLEDETAILES",
        {"ID", "ROWNO", "表示順", "日本語名", "項目名", "KEY", "型", "整数桁数", "少数桁数", "長さ", "作成年月日"},
        {field(1, 1, "NO", -1, 10, "2026/03/01 00:00:00"), field(1, 2, "EDA", -1, 2, "2026/04/02 00:00:00"),
         field(1, 3, "TOKUI", 0, 8, "2026/03/01 00:00:00"), field(2, 1, "TOKUI", -1, 8, "2026/03/31 23:59:59"),
         field(2, 2, "MEI", 0, 40, "2026/06/01 00:00:00"), field(3, 1, "NO", -1, 10, "2026/06/01 00:00:00"),
         field(4, 1, "NO", -1, 10, "2026/06/01 00:00:00")});
    database->execute("INSERT INTO MAS_INDEX (INDEX_NAME, ID, ROWNO, 順序) VALUES ('IX_TOKUI', 1, 3, 1)");
    database->execute("INSERT INTO MAS_INDEX (INDEX_NAME, ID, ROWNO, 順序) VALUES ('IX_TOKUI', 1, 1, 2)");
    database->execute(
        "INSERT INTO DAT_REFERENCE (システム名, ID, ROWNO, ID_REF, ROWNO_REF, 記号, 参照区分, FK) "
        "VALUES ('販売', 2, 1, 1, 3, '←', 'される(←FK)', 'FK')");
    database->execute(
        "INSERT INTO DAT_REFERENCE (システム名, ID, ROWNO, ID_REF, ROWNO_REF, 記号, 参照区分, FK) "
        "VALUES ('在庫', 2, 1, 4, 1, '←', 'される(←)', ' ')");
  }

  /// Some columns of a stored query, opened as the report opens it.
  std::vector<std::string> report(const std::string& query, const std::vector<std::string>& columns,
                                  const std::vector<ParameterValue>& parameters) {
    std::vector<std::string> found;
    for (Recordset set = database->openRecordset(query, parameters); !set.eof(); set.moveNext()) {
      std::string line;
      for (const std::string& column : columns) {
        if (!line.empty()) line += "|";
        line += set.isNull(column) ? "-" : std::string(set.text(column));
      }
      found.push_back(line);
    }
    return found;
  }

  std::optional<Database> database;
};

TEST_F(StoredQueries, CapacityOfTablesKeysAndIndexes) {
  EXPECT_EQ(report("出力_容量計算",
                   {"テーブル名", "日本語名", "種別", "長さの合計", "DB設定数", "DB保持履歴", "容量", "定義名", "件数"},
                   {{"SystemName", "販売"}}),
            (std::vector<std::string>{
                "M_TOKUI|得意先|Table|48|200|1|11600|-|-",     // 200 * 1 * (48 + 10)
                "M_TOKUI|得意先|PrimaryKey|8|200|1|1600|-|-",  // 200 * 1 * 8
                "T_JUCHU|受注|Table|20|1000|12|360000|年間受注|5000",
                "T_JUCHU|受注|PrimaryKey|12|1000|12|144000|年間受注|5000",
                "T_JUCHU|IX_TOKUI|Index|18|1000|12|216000|年間受注|5000",
            }));
}

TEST_F(StoredQueries, RowCounts) {
  EXPECT_EQ(rows(*database, "出力_件数", {{"paraSystem", "販売"}}),
            (std::vector<std::string>{"販売|M_TOKUI|得意先|マスタ|48|200|1|-",
                                      "販売|T_JUCHU|受注|トランザクション|20|1000|12|年間受注"}));
}

TEST_F(StoredQueries, TableLists) {
  EXPECT_EQ(
      rows(*database, "出力_テーブル一覧", {{"SystemName", "販売"}}),
      (std::vector<std::string>{"受注|T_JUCHU|トランザクション|受注の記録|Oracle", "得意先|M_TOKUI|マスタ|-|Oracle"}));
  EXPECT_EQ(report("出力_テーブル一覧(項目あり)", {"テーブル名", "ROWNO", "項目名", "型", "整数桁数"},
                   {{"SystemName", "販売"}}),
            (std::vector<std::string>{"T_JUCHU|1|NO|char|10", "T_JUCHU|2|EDA|char|2", "T_JUCHU|3|TOKUI|char|8",
                                      "M_TOKUI|1|TOKUI|char|8", "M_TOKUI|2|MEI|char|40"}));
}

TEST_F(StoredQueries, References) {
  EXPECT_EQ(database->queryParameters("出力_テーブル参照一覧").size(), 1u);
  EXPECT_EQ(report("出力_テーブル参照一覧",
                   {"参照先システム名", "参照先テーブル名", "参照先項目名", "参照先桁数", "参照区分", "FK",
                    "参照元テーブル名", "参照元項目名", "参照元桁数"},
                   {{"システム名", "販売"}}),
            (std::vector<std::string>{"販売|M_TOKUI|TOKUI|(8,0)|される(←FK)|FK|T_JUCHU|TOKUI|(8,0)"}));
}

TEST_F(StoredQueries, ChangesSinceTheEarliestCheckpointOfLiveTables) {
  EXPECT_EQ(rows(*database, "Q_最小チェックポイント"),
            (std::vector<std::string>{"在庫|-", "販売|2026/04/01 00:00:00"}));
  EXPECT_EQ(report("出力_チェックポイント後の変更", {"テーブル名", "項目名", "作成年月日"}, {{"SystemName", "販売"}}),
            (std::vector<std::string>{"T_JUCHU|EDA|2026/04/02 00:00:00", "M_TOKUI|MEI|2026/06/01 00:00:00"}));
}

TEST_F(StoredQueries, NewestSnapshot) {
  database->execute("INSERT INTO ORA_SERCH_INFO (システム名, 日付) VALUES ('販売', #2026/01/01 10:00:00#)");
  database->execute("INSERT INTO ORA_SERCH_INFO (システム名, 日付) VALUES ('販売', #2026/02/01 10:00:00#)");
  EXPECT_EQ(rows(*database, "Q_SERCH_INFO"), (std::vector<std::string>{"2026/02/01 10:00:00|販売"}));
}

/// The report offers queries that begin with 出力_ and takes at most two parameters.
TEST_F(StoredQueries, EachReportTakesOneTextParameter) {
  int reports = 0;
  for (const QueryDef& query : database->queryDefs()) {
    if (!query.name.starts_with("出力_")) continue;
    ++reports;
    const std::vector<QueryParameter> parameters = database->queryParameters(query.name);
    ASSERT_EQ(parameters.size(), 1u) << query.name;
    EXPECT_EQ(parameters[0].type, "text") << query.name;
  }
  EXPECT_EQ(reports, 6);
}

}  // namespace
}  // namespace quillmarden
