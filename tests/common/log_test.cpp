#include "common/log.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <utime.h>

#include <ctime>
#include <fstream>
#include <iterator>

#include "common/text.h"
#include "support/scripted_host.h"

namespace quillmarden {
namespace {

namespace fs = std::filesystem;

std::string logText(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return fromCp932(std::string(std::istreambuf_iterator<char>(stream), {}));
}

/// A file whose time is this many days, and a minute, before the moment.
void oldFile(const fs::path& file, const DateTime& moment, int days) {
  fs::create_directories(file.parent_path());
  std::ofstream(file) << "former";
  std::tm parts{};
  parts.tm_year = moment.year - 1900;
  parts.tm_mon = moment.month - 1;
  parts.tm_mday = moment.day - days;
  parts.tm_hour = moment.hour;
  parts.tm_min = moment.minute - 1;
  parts.tm_isdst = -1;
  const std::time_t time = std::mktime(&parts);
  const utimbuf times{time, time};
  ASSERT_EQ(utime(file.c_str(), &times), 0);
}

std::vector<std::string> history(const ScriptedHost& scripted) {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(Log::historyFolder(scripted.host.machine)))
    names.push_back(entry.path().filename().string());
  std::sort(names.begin(), names.end());
  return names;
}

TEST(Log, LinesOfARun) {
  ScriptedHost scripted;
  const fs::path file = Log::file(scripted.host.machine);
  Log log;
  log.gPutLog(scripted.host, "LOGON:花子/x.db");
  log.putError(scripted.host, "保存\n失敗😀", 3022, "重複");
  log.gPutLog(scripted.host, "plain", false);
  EXPECT_EQ(logText(file), "ログ記録開始\t2026/11/24 09:05:00\r\nバージョン:" + gGetVersion() +
                               "\t2026/11/24 09:05:00\r\nLOGON:花子/x.db\t2026/11/24 09:05:00\r\n"
                               "Error :------------------------------\r\nErrNo :3022\r\nErrMsg:重複\r\n"
                               "保存\r\n失敗<U+1F600>\t2026/11/24 09:05:00\r\nplain\r\n");
  log.finish(scripted.host, false);
  EXPECT_FALSE(fs::exists(file));
  log.finish(scripted.host, false);
  log.open(scripted.host);
  EXPECT_TRUE(fs::exists(file)) << "the next login logs again";
}

TEST(Log, CrashedRunsMoveToTheHistory) {
  ScriptedHost scripted;
  const fs::path file = Log::file(scripted.host.machine);
  for (int run = 0; run < 2; ++run) {
    oldFile(file, scripted.now, 0);
    Log log;
    log.open(scripted.host);
    EXPECT_EQ(logText(file).find("former"), std::string::npos);
    log.finish(scripted.host, false);
  }
  EXPECT_EQ(history(scripted),
            (std::vector<std::string>{"quillmarden20261124090400.log", "quillmarden20261124090400_2.log"}));
  Log kept;
  kept.open(scripted.host);
  kept.finish(scripted.host, true);
  EXPECT_EQ(history(scripted).size(), 3U);
  EXPECT_FALSE(fs::exists(file));
}

TEST(Log, OldLogsGoAfterFourteenDays) {
  ScriptedHost scripted;
  const fs::path folder = Log::historyFolder(scripted.host.machine);
  Log::prune(scripted.host);
  oldFile(folder / "quillmarden1.log", scripted.now, 15);
  oldFile(folder / "OTHER.LOG", scripted.now, 14);
  oldFile(folder / "quillmarden2.log", scripted.now, 13);
  oldFile(folder / "old.txt", scripted.now, 100);
  Log::prune(scripted.host);
  EXPECT_EQ(history(scripted), (std::vector<std::string>{"old.txt", "quillmarden2.log"}));
}

TEST(Log, AnUnusableLogIsToldOnce) {
  ScriptedHost scripted;
  fs::create_directories(Log::file(scripted.host.machine) / "in the way");
  fs::create_directories(scripted.host.machine.appDataFolder);
  std::ofstream(Log::historyFolder(scripted.host.machine)) << "a file";
  scripted.expect("確認", "ログファイルの初期化に失敗しました.\nログを記録できない状態です.");
  Log log;
  log.open(scripted.host);
  log.gPutLog(scripted.host, "x");
  log.finish(scripted.host, false);
  log.open(scripted.host);
}

TEST(Log, FailedFieldAdditions) {
  ScriptedHost scripted;
  const fs::path folder = scripted.folder.path() / "info";
  putErrAddField(scripted.host, folder, "/a/見積.mdb");
  scripted.now.minute = 6;
  putErrAddField(scripted.host, folder, "/b");
  EXPECT_EQ(logText(folder / "logErrAddField.log"),
            "#------------------------------------------\r\n#フィールド追加失敗ファイルリスト\r\n"
            "#ファイル作成日:2026/11/24 09:05:00\r\n#ログ規約\r\n# ファイル名 <tab> 失敗日\r\n"
            "#------------------------------------------\r\n"
            "/a/見積.mdb\t2026/11/24 09:05:00\r\n/b\t2026/11/24 09:06:00\r\n");
}

}  // namespace
}  // namespace quillmarden
