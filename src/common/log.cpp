#include "common/log.h"

#include <fmt/format.h>
#include <sys/stat.h>

#include <cstdio>
#include <optional>
#include <system_error>
#include <vector>

#include "common/message.h"
#include "common/paths.h"
#include "common/text.h"

namespace quillmarden {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kMoment = "yyyy/mm/dd hh:nn:ss";
constexpr std::int64_t kKeptSeconds = 14 * 24 * 3600;

/// The text in CP932, with line ends of its own turned to CR LF and no character lost.
std::string logBytes(std::string_view text) {
  std::string readable = gReplaceAll(gReplaceAll(text, "\r\n", "\n"), "\n", "\r\n");
  std::u32string lost;
  std::string bytes = toCp932(readable, &lost);
  if (lost.empty()) return bytes;
  for (const char32_t character : lost)
    readable = gReplaceAll(readable, toUtf8(character), fmt::format("<U+{:04X}>", static_cast<unsigned>(character)));
  return toCp932(readable);
}

std::optional<DateTime> fileTime(const fs::path& file) {
  struct stat state {};
  if (::stat(file.c_str(), &state) != 0) return std::nullopt;
  return localDateTime(state.st_mtime);
}

/// A place in the history for a log of this time that no other log has taken.
fs::path historyPlace(const fs::path& history, const DateTime& time) {
  const std::string stem = "quillmarden" + formatDateTime(time, "yyyymmddhhnnss");
  fs::path place = history / (stem + ".log");
  std::error_code ignored;
  for (int i = 2; fs::exists(place, ignored) && i < 1000; ++i) place = history / fmt::format("{}_{}.log", stem, i);
  return place;
}

/// Another process of the same user may move the same log: what is gone is gone.
void moveToHistory(const Machine& machine) {
  const fs::path log = Log::file(machine);
  const auto time = fileTime(log);
  if (!time) return;
  const fs::path history = Log::historyFolder(machine);
  std::error_code error;
  fs::create_directories(history, error);
  fs::rename(log, historyPlace(history, *time), error);
}

}  // namespace

std::string gGetVersion() {
  int major = 0;
  int minor = 0;
  int revision = 0;
  std::sscanf(QM_VERSION, "%d.%d.%d", &major, &minor, &revision);
  return fmt::format("{}.{:02}.{:02}", major, minor, revision);
}

fs::path Log::file(const Machine& machine) {
  return machine.appDataFolder / "quillmarden" / "quillmarden" / "quillmarden.log";
}

fs::path Log::historyFolder(const Machine& machine) { return machine.appDataFolder / "Logs_History"; }

void Log::open(Host& host) {
  if (off_ || stream_.is_open()) return;
  const fs::path log = file(host.machine);
  std::error_code ignored;
  fs::create_directories(log.parent_path(), ignored);
  moveToHistory(host.machine);
  stream_.open(log, std::ios::binary | std::ios::app);
  if (!stream_) {
    off_ = true;
    gMsgBox(host, joinLines({"ログファイルの初期化に失敗しました.", "ログを記録できない状態です."}));
    return;
  }
  gPutLog(host, "ログ記録開始");
  gPutLog(host, "バージョン:" + gGetVersion());
}

void Log::put(std::string_view text) {
  // Each line reaches the file at once: it is read after a crash.
  stream_ << logBytes(text) << "\r\n" << std::flush;
}

void Log::gPutLog(Host& host, std::string_view text, bool withDate) {
  open(host);
  if (off_) return;
  std::string line(text);
  if (withDate) line += '\t' + formatDateTime(host.clock.now(), kMoment);
  put(line);
}

void Log::putError(Host& host, std::string_view text, int number, std::string_view description) {
  gPutLog(host, "Error :------------------------------", false);
  gPutLog(host, "ErrNo :" + std::to_string(number), false);
  gPutLog(host, std::string("ErrMsg:").append(description), false);
  gPutLog(host, text);
}

void Log::finish(Host& host, bool keep) {
  if (!stream_.is_open()) return;
  stream_.close();
  stream_.clear();
  std::error_code ignored;
  if (keep)
    moveToHistory(host.machine);
  else
    fs::remove(file(host.machine), ignored);
}

void Log::prune(Host& host) {
  const DateTime now = host.clock.now();
  std::error_code error;
  std::vector<fs::path> old;
  for (fs::directory_iterator entry(historyFolder(host.machine), error), end; !error && entry != end;
       entry.increment(error)) {
    if (!equalsNoCase(entry->path().extension().string(), ".log")) continue;
    const auto time = fileTime(entry->path());
    if (time && secondsBetween(*time, now) > kKeptSeconds) old.push_back(entry->path());
  }
  for (const fs::path& log : old) fs::remove(log, error);
}

void putErrAddField(Host& host, const fs::path& infoFolder, std::string_view repository) {
  constexpr std::string_view kRule = "#------------------------------------------\r\n";
  const fs::path file = infoFolder / "logErrAddField.log";
  const std::string now = formatDateTime(host.clock.now(), kMoment);
  std::error_code ignored;
  std::string text;
  if (!fs::exists(file, ignored)) {
    fs::create_directories(infoFolder, ignored);
    text.append(kRule).append("#フィールド追加失敗ファイルリスト\r\n");
    text.append("#ファイル作成日:").append(now).append("\r\n");
    text.append("#ログ規約\r\n# ファイル名 <tab> 失敗日\r\n").append(kRule);
  }
  text.append(repository).append("\t").append(now).append("\r\n");
  std::ofstream(file, std::ios::binary | std::ios::app) << logBytes(text);
}

}  // namespace quillmarden
