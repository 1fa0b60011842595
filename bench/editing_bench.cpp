// The costs that a person feels at the table list and the detail screen, on a System of 5,000 tables x 30 fields.

#include <benchmark/benchmark.h>

#include <memory>

#include "editing/frm_tb_detail.h"
#include "editing/frm_tb_list.h"
#include "repository/login.h"
#include "repository/schema.h"
#include "support/scripted_host.h"

namespace quillmarden {
namespace {

constexpr int kTables = 5000;
constexpr int kFields = 30;

struct Fixture {
  ScriptedHost scripted;
  Session session;
  frmTBList list;
  frmTBDetail detail;

  Fixture() {
    scripted.answerAll(kYes);
    const std::string file = scripted.folder.file("bench.mdb");
    {
      Database database = createRepository(file);
      inTransaction(database, [&] { fill(database); });
    }
    openUserData(session, scripted.host);
    std::string message;
    bool isAdmin = false;
    gConnectRepository(session, scripted.host, true, scripted.folder.path().string(), "bench.mdb", "admin", message,
                       isAdmin);
    beginSession(session, scripted.host, "admin", scripted.folder.path().string(), "bench.mdb");
    selectSystem(session, scripted.host, "大規模");
    list.CmbSystem.text = "大規模";
    list.CmbTitle.text = "日本語名";
    list.CmbWhere.text = "を含む";
    list.OptAll.value = true;
  }

  static void fill(Database& database) {
    database.execute(
        "INSERT INTO MAS_SYSTEM (システム名, 概要, 修正許可, ユーザー制限, 出力しない, databasetype) "
        "VALUES ('大規模', '計測用', -1, 0, 0, 'PostgreSQL')");
    std::vector<std::vector<Value>> tables;
    std::vector<std::vector<Value>> fields;
    for (std::int64_t table = 1; table <= kTables; ++table) {
      const std::string number = std::to_string(table);
      tables.push_back({table, "大規模", "T" + number, "業務表" + number, "マスタ", "PostgreSQL", std::int64_t{-1},
                        std::int64_t{0}, std::int64_t{0}, std::int64_t{0}});
      for (std::int64_t field = 1; field <= kFields; ++field)
        fields.push_back({table, field, field, "項目" + std::to_string(field), "f" + std::to_string(field),
                          std::int64_t{field == 1 ? -1 : 0}, "varchar", std::int64_t{20}, std::int64_t{0},
                          field == 1 ? "NOT NULL" : "NULL", "項目の備考です"});
    }
    database.insertRows("MAS_TABLEINFO",
                        {"ID", "システム名", "テーブル名", "日本語名", "分類", "ファイル種別", "修正許可", "削除フラグ",
                         "全システム共通", "REVERSE_DB"},
                        tables);
    database.insertRows(
        "MAS_TABLEDETAILES",
        {"ID", "ROWNO", "表示順", "日本語名", "項目名", "KEY", "型", "整数桁数", "少数桁数", "Null値", "備考"}, fields);
  }
};

Fixture& fixture() {
  static auto made = std::make_unique<Fixture>();
  return *made;
}

void tableList(benchmark::State& state) {
  Fixture& f = fixture();
  f.list.CmbWhereMoji.text = state.range(0) != 0 ? "表12" : "";
  const long before = f.session.gDB->statementCount();
  for (auto _ : state) pGetTableList(f.session, f.scripted.host, f.list);
  state.counters["statements"] =
      static_cast<double>(f.session.gDB->statementCount() - before) / static_cast<double>(state.iterations());
  state.counters["rows"] = f.list.rowCount;
}
BENCHMARK(tableList)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

void loadTable(benchmark::State& state) {
  Fixture& f = fixture();
  f.detail.batch = state.range(0) != 0;
  const long before = f.session.gDB->statementCount();
  int id = 0;
  for (auto _ : state)
    pGet_TableID2TableDetails(f.session, f.scripted.host, f.detail, std::to_string(id++ % kTables + 1));
  state.counters["statements"] =
      static_cast<double>(f.session.gDB->statementCount() - before) / static_cast<double>(state.iterations());
}
BENCHMARK(loadTable)->Arg(0)->Arg(1)->Unit(benchmark::kMicrosecond);

void saveTable(benchmark::State& state) {
  Fixture& f = fixture();
  f.detail.batch = false;
  pGet_TableID2TableDetails(f.session, f.scripted.host, f.detail, "1");
  const long before = f.session.gDB->statementCount();
  for (auto _ : state) pPutTableDetails(f.session, f.scripted.host, f.detail);
  state.counters["statements"] =
      static_cast<double>(f.session.gDB->statementCount() - before) / static_cast<double>(state.iterations());
}
BENCHMARK(saveTable)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace quillmarden

BENCHMARK_MAIN();
