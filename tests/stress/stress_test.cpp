// Many users on one file, a process that dies, a disk that is full. Each process works through the same routines as
// the program: login, load, save, script.

#include <gtest/gtest.h>
#include <sched.h>
#include <signal.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdio>
#include <fstream>
#include <functional>
#include <iostream>
#include <random>
#include <set>
#include <thread>

#include "common/replace_file.h"
#include "editing/frm_tb_detail.h"
#include "editing/frm_tb_list.h"
#include "repository/login.h"
#include "repository/schema.h"
#include "repository/session.h"
#include "sqlgen/frame.h"
#include "support/scripted_host.h"

namespace quillmarden {
namespace {

constexpr int kFields = 30;

/// A process's own view of the Repository: its login, its host, the tables it works on.
struct Worker {
  ScriptedHost scripted;
  Session session;
  frmTBDetail detail;
  frmTBList list;

  explicit Worker(const std::string& repository) {
    scripted.answerAll(kYes);
    openUserData(session, scripted.host);
    const std::filesystem::path file(repository);
    std::string message;
    bool isAdmin = false;
    if (!gConnectRepository(session, scripted.host, true, file.parent_path().string(), file.filename().string(),
                            "admin", message, isAdmin))
      throw std::runtime_error("login: " + message);
    beginSession(session, scripted.host, "admin", file.parent_path().string(), file.filename().string());
    if (!selectSystem(session, scripted.host, "販売")) throw std::runtime_error("no System");
    scripted.messages.clear();
  }

  bool load(const std::string& id) { return !pGet_TableID2TableDetails(session, scripted.host, detail, id); }

  /// Writes `mark` into every row's remark and saves.
  bool save(const std::string& mark) {
    for (int row = 1; row <= kFields; ++row) {
      detail.Spread.setText(field_col::kRemark, row, mark);
      detail.Spread.setText(field_col::kChanged, row, std::string(kChangedMark));
    }
    detail.leave.over = true;  // several save one table, and the last one wins
    return !pPutTableDetails(session, scripted.host, detail);
  }

  RunResult script(const std::filesystem::path& target) {
    list.CmbSystem.text = "販売";
    list.CmbTitle.text = "テーブル名";
    list.OptAll.value = true;
    if (list.LstTable.count() == 0 && pGetTableList(session, scripted.host, list)) throw std::runtime_error("list");
    return mnuCreateSql_Click(session, scripted.host, list, detail, SqlRows::All, SqlClauses::AsOptions,
                              {target, TextEncoding::Utf8});
  }

  std::string said() const {
    std::string all;
    for (const std::string& message : scripted.messages)
      if (!message.starts_with("確認|Sql文を作成します.") && !message.starts_with("確認|作成結果を表示しますか?"))
        all += message + "\n";
    return all;
  }
};

/// A Repository with one System and `tables` tables of 30 fields; the ids are 1 to `tables`.
std::string makeRepository(const TempFolder& folder, int tables) {
  const std::string file = folder.file("stress.mdb");
  Database database = createRepository(file);
  database.execute(
      "INSERT INTO MAS_SYSTEM (システム名, 概要, 修正許可, ユーザー制限, 出力しない, databasetype) "
      "VALUES ('販売', '負荷試験', -1, 0, 0, 'PostgreSQL')");
  for (int table = 1; table <= tables; ++table) {
    const std::string id = std::to_string(table);
    database.execute(
        "INSERT INTO MAS_TABLEINFO (システム名, テーブル名, 日本語名, 分類, ファイル種別, 修正許可, 削除フラグ, "
        "全システム共通, REVERSE_DB) VALUES ('販売', 'T" +
        id + "', '表" + id + "', 'マスタ', 'PostgreSQL', -1, 0, 0, 0)");
    std::vector<std::vector<Value>> rows;
    for (std::int64_t field = 1; field <= kFields; ++field)
      rows.push_back({std::int64_t{table}, field, field, "項目" + std::to_string(field), "f" + std::to_string(field),
                      std::int64_t{field == 1 ? -1 : 0}, "varchar", std::int64_t{20}, std::int64_t{0},
                      field == 1 ? "NOT NULL" : "NULL", "old"});
    database.insertRows(
        "MAS_TABLEDETAILES",
        {"ID", "ROWNO", "表示順", "日本語名", "項目名", "KEY", "型", "整数桁数", "少数桁数", "Null値", "備考"}, rows);
  }
  return file;
}

/// The distinct remarks and the row count of a table as they stand in the file.
std::pair<std::set<std::string>, int> stored(Database& database, int table) {
  Recordset rows = database.openRecordset("SELECT 備考 FROM MAS_TABLEDETAILES WHERE ID = " + std::to_string(table));
  std::set<std::string> marks;
  for (; !rows.eof(); rows.moveNext()) marks.emplace(rows.text(0));
  return {marks, rows.recordCount()};
}

/// Runs the body in a child process; its text, if any, is what went wrong.
pid_t inChild(const std::function<std::string()>& body) {
  std::fflush(nullptr);
  const pid_t child = fork();
  if (child != 0) return child;
  std::string fault;
  try {
    fault = body();
  } catch (const std::exception& error) {
    fault = error.what();
  }
  if (!fault.empty()) std::cerr << "[process " << getpid() << "] " << fault << std::endl;
  _exit(fault.empty() ? 0 : 1);
}

int waitFor(pid_t child) {
  int status = 0;
  waitpid(child, &status, 0);
  return status;
}

TEST(Stress, EightProcessesSaveAndGenerateWithoutLosingOrMixing) {
  constexpr int kProcesses = 8;
  constexpr int kRounds = 100;
  constexpr int kShared = kProcesses + 1;
  TempFolder folder;
  const std::string file = makeRepository(folder, kShared);

  std::vector<pid_t> children;
  for (int process = 1; process <= kProcesses; ++process) {
    children.push_back(inChild([&, process]() -> std::string {
      Worker worker(file);
      const std::string own = std::to_string(process);
      for (int round = 1; round <= kRounds; ++round) {
        const std::string mark = "p" + own + "r" + std::to_string(round);
        for (int table : {process, kShared}) {
          if (!worker.load(std::to_string(table))) return mark + ": not loaded";
          if (!worker.save(mark)) return mark + ": not saved\n" + worker.said();
          const auto [marks, rows] = stored(*worker.session.gDB, table);
          if (rows != kFields || marks.size() != 1) return mark + ": mixed rows in table " + std::to_string(table);
          if (table == process && !marks.contains(mark)) return mark + ": a save of the own table is lost";
        }
        const RunResult result = worker.script(folder.file("s" + own + ".sql"));
        if (result.failed || result.tables != kShared) return mark + ": script failed\n" + worker.said();
      }
      return worker.said();
    }));
  }
  for (const pid_t child : children) EXPECT_EQ(waitFor(child), 0);

  Database database = Database::open(file);
  for (int process = 1; process <= kProcesses; ++process)
    EXPECT_TRUE(
        stored(database, process).first.contains("p" + std::to_string(process) + "r" + std::to_string(kRounds)));
  // Every script run stamped every table: no count is lost.
  Recordset counts = database.openRecordset("SELECT 作成回数 FROM MAS_TABLEINFO ORDER BY ID");
  for (; !counts.eof(); counts.moveNext()) EXPECT_EQ(counts.integer(0), kProcesses * kRounds);
}

TEST(Stress, AKilledSaveLeavesAllOldOrAllNewRows) {
  constexpr int kKills = 200;
  TempFolder folder;
  const std::string file = makeRepository(folder, 1);
  std::mt19937 random(20261124);
  int survived = 0;
  for (int kill = 1; kill <= kKills; ++kill) {
    const std::filesystem::path ready = folder.path() / "ready";
    const pid_t child = inChild([&]() -> std::string {
      Worker worker(file);
      if (!worker.load("1")) return "not loaded";
      std::ofstream(ready).put('!');
      for (int save = 1;; ++save)
        if (!worker.save("k" + std::to_string(kill) + "s" + std::to_string(save))) return worker.said();
    });
    while (!std::filesystem::exists(ready)) {
      ASSERT_EQ(waitpid(child, nullptr, WNOHANG), 0) << "the saving process ended by itself";
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    std::this_thread::sleep_for(std::chrono::microseconds(random() % 25000));
    ::kill(child, SIGKILL);
    ASSERT_TRUE(WIFSIGNALED(waitFor(child)));
    std::filesystem::remove(ready);

    Worker next(file);  // the next login works
    const auto [marks, rows] = stored(*next.session.gDB, 1);
    ASSERT_EQ(rows, kFields) << "after kill " << kill;
    ASSERT_EQ(marks.size(), 1u) << "after kill " << kill;
    survived += marks.contains("old") ? 0 : 1;
    ASSERT_EQ(next.said(), "");
  }
  EXPECT_GT(survived, 0) << "no save ever came through: the test kills too early to mean anything";
}

/// In the calling (child) process, no file grows beyond this size: what a full disk is to a writer.
void limitFileSize(rlim_t bytes) {
  signal(SIGXFSZ, SIG_IGN);
  rlimit limit{bytes, bytes};
  setrlimit(RLIMIT_FSIZE, &limit);
}

/// Mounts a disk of this size that the calling (child) process alone sees.
void mountSmallDisk(const std::filesystem::path& folder, const char* size) {
  std::filesystem::create_directory(folder);
  const std::string uid = std::to_string(getuid());
  if (unshare(CLONE_NEWNS) != 0) {
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) throw std::runtime_error("no namespace of its own");
    std::ofstream("/proc/self/uid_map") << "0 " << uid << " 1";
  }
  mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr);
  if (mount("tmpfs", folder.c_str(), "tmpfs", 0, size) != 0) throw std::runtime_error("no small disk");
}

TEST(Stress, AFullDiskIsToldAndLeavesTheFormerDataWhole) {
  TempFolder folder;
  const std::string file = makeRepository(folder, 3);
  const auto size = std::filesystem::file_size(file);

  // The file may not grow, and the new rows need more room than the old ones.
  EXPECT_EQ(0, waitFor(inChild([&]() -> std::string {
              Worker worker(file);
              if (!worker.load("1")) return "not loaded";
              limitFileSize(size);
              if (worker.save(std::string(250, 'x'))) return "a save onto a full disk said it worked";
              const std::string said = worker.said();
              if (!said.starts_with("こまった|エラーです.\n  ")) return "unexpected message: " + said;
              const auto [marks, rows] = stored(*worker.session.gDB, 1);
              if (rows != kFields || marks != std::set<std::string>{"old"}) return "former rows are gone";
              return "";
            })));

  // The script's disk has room for its first tables alone: told, complete tables stay, and they alone are stamped.
  EXPECT_EQ(0, waitFor(inChild([&]() -> std::string {
              Worker worker(file);
              const std::filesystem::path disk = folder.path() / "disk";
              mountSmallDisk(disk, "size=8k");
              const RunResult result = worker.script(disk / "full.sql");
              if (!result.failed) return "a script onto a full disk said it worked";
              if (!worker.said().starts_with("確認|出力エラーがありました.\n")) return "unexpected: " + worker.said();
              std::ifstream stream(partialFile(disk / "full.sql"));
              const std::string text{std::istreambuf_iterator<char>(stream), {}};
              if (result.tables == 0 || !text.ends_with("\r\n")) return "no complete tables in the file:\n" + text;
              Recordset stamps = worker.session.gDB->openRecordset("SELECT ID FROM MAS_TABLEINFO WHERE 作成回数 = 1");
              if (stamps.recordCount() != result.tables) return "stamped tables are not those that were written";
              return "";
            })));

  Database database = Database::open(file);
  for (int table = 1; table <= 3; ++table)
    EXPECT_EQ(stored(database, table), std::make_pair(std::set<std::string>{"old"}, kFields));
}

}  // namespace
}  // namespace quillmarden
