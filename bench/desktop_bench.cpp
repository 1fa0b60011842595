// What a person waits for at the desktop, on a System of 10,000 tables, with windows that paint onto nothing.

#include <benchmark/benchmark.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QTest>
#include <memory>

#include "desktop/front.h"
#include "desktop/theme.h"
#include "desktop/view.h"
#include "repository/schema.h"
#include "shell/application.h"
#include "shell/list_commands.h"
#include "shell/session_life.h"
#include "support/scripted_host.h"

namespace quillmarden {
namespace {

constexpr std::int64_t kTables = 10'000;
constexpr std::int64_t kFields = 50;  ///< of each of the first hundred tables

void fill(Database& database) {
  for (const char* system : {"大規模", "空"})
    database.execute(
        std::string("INSERT INTO MAS_SYSTEM (システム名, 修正許可, ユーザー制限, 出力しない, databasetype) "
                    "VALUES ('") +
        system + "', -1, 0, 0, 'PostgreSQL')");
  std::vector<std::vector<Value>> tables;
  std::vector<std::vector<Value>> fields;
  for (std::int64_t table = 1; table <= kTables; ++table) {
    const std::string number = std::to_string(table);
    tables.push_back({table, "大規模", "T" + number, "業務表" + number, "PostgreSQL", std::int64_t{-1}, std::int64_t{0},
                      std::int64_t{0}, std::int64_t{0}});
    for (std::int64_t field = 1; table <= 100 && field <= kFields; ++field)
      fields.push_back({table, field, field, "項目" + std::to_string(field), "f" + std::to_string(field), "varchar",
                        std::int64_t{20}});
  }
  database.insertRows("MAS_TABLEINFO",
                      {"ID", "システム名", "テーブル名", "日本語名", "ファイル種別", "修正許可", "削除フラグ",
                       "全システム共通", "REVERSE_DB"},
                      tables);
  database.insertRows("MAS_TABLEDETAILES", {"ID", "ROWNO", "表示順", "日本語名", "項目名", "型", "整数桁数"}, fields);
}

/// The program with its Repository, up to the login screen.
struct Program {
  explicit Program(bool filled) {
    scripted.answerAll(kYes);
    Database database = createRepository((scripted.host.machine.programFolder / "bench.mdb").string());
    if (filled) inTransaction(database, [&] { fill(database); });
  }
  bool start() {
    front.start();
    return QTest::qWaitFor([this] { return front.find("frmLogInNew") != nullptr; }, 10'000);
  }
  QAbstractItemView& list() { return *front.find("frmTBList")->findChild<QAbstractItemView*>("LstTable"); }
  void choose(const char* system) {
    turn.run([&] {
      app.list.CmbSystem.text = system;
      chooseSystem(app);
    });
    front.find("frmTBList")->repaint();
    QCoreApplication::processEvents();
  }

  ScriptedHost scripted;
  Turn turn;
  Application app{scripted.host};
  Front front{app, turn};
};

Program& loggedIn() {
  static const auto program = [] {
    auto made = std::make_unique<Program>(true);
    made->start();
    made->turn.run([&] { logIn(made->app); });
    made->choose("大規模");
    return made;
  }();
  return *program;
}

void startToLogIn(benchmark::State& state) {
  for (auto _ : state) {
    state.PauseTiming();
    auto program = std::make_unique<Program>(false);
    state.ResumeTiming();
    if (!program->start()) state.SkipWithError("no login screen");
    program->front.find("frmLogInNew")->repaint();
    state.PauseTiming();
    program.reset();
    state.ResumeTiming();
  }
}

void fillList(benchmark::State& state) {
  Program& program = loggedIn();
  for (auto _ : state) {
    state.PauseTiming();
    program.choose("空");
    state.ResumeTiming();
    program.choose("大規模");
  }
  if (program.app.list.LstTable.count() != kTables) state.SkipWithError("the list is not filled");
}

void scrollList(benchmark::State& state) {
  QAbstractItemView& list = loggedIn().list();
  int row = 0;
  for (auto _ : state) {
    row = (row + 3'333) % static_cast<int>(kTables);
    list.scrollTo(list.model()->index(row, 0), QAbstractItemView::PositionAtCenter);
    list.viewport()->repaint();
  }
}

void openTable(benchmark::State& state) {
  Program& program = loggedIn();
  int row = 0;
  for (auto _ : state) {
    program.turn.run([&] {
      program.app.list.LstTable.listIndex = row;
      LstTable_Click(program.app);
    });
    if (View* detail = program.front.find("frmTBDetail")) detail->repaint();
    QCoreApplication::processEvents();
    row = (row + 1) % 100;
  }
}

BENCHMARK(startToLogIn)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(fillList)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(scrollList)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(openTable)->Unit(benchmark::kMillisecond)->UseRealTime();

}  // namespace
}  // namespace quillmarden

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  QApplication::setQuitOnLastWindowClosed(false);
  quillmarden::applyTheme(application, quillmarden::Look::Light);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
}
