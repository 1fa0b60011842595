#include "cli/console_host.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <pwd.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>

#include "common/paths.h"
#include "common/printable.h"

namespace quillmarden {

namespace {

volatile sig_atomic_t stopAsked = 0;

extern "C" void onStop(int) { stopAsked = 1; }

bool writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    ssize_t written = write(descriptor, text.data(), text.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    text.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

DateTime localNow() {
  std::time_t seconds = std::chrono::system_clock::to_time_t(std::chrono::system_clock::now());
  std::tm local{};
  localtime_r(&seconds, &local);
  return {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour, local.tm_min, local.tm_sec};
}

std::string environment(const char* name) {
  const char* value = std::getenv(name);
  return value ? value : "";
}

std::filesystem::path homeFolder() {
  if (std::string home = environment("HOME"); !home.empty()) return home;
  const passwd* user = getpwuid(getuid());
  return user && user->pw_dir ? user->pw_dir : "/";
}

std::filesystem::path absolute(const std::filesystem::path& path) {
  std::error_code ignored;
  std::filesystem::path full = std::filesystem::absolute(path, ignored);
  return ignored ? path : full.lexically_normal();
}

std::filesystem::path appDataFolder(const std::string& given) {
  if (!given.empty()) return absolute(given);
  // A relative XDG_DATA_HOME is to be ignored, or the data would follow the current folder.
  if (std::filesystem::path own = environment("XDG_DATA_HOME"); own.is_absolute()) return own;
  return homeFolder() / ".local" / "share";
}

std::filesystem::path tempFolder(const std::string& given) {
  if (!given.empty()) return absolute(given);
  std::error_code ignored;
  std::filesystem::path own = std::filesystem::temp_directory_path(ignored);
  return ignored ? std::filesystem::path("/tmp") : own;
}

std::string computerName() {
  char name[256] = "";
  if (gethostname(name, sizeof name - 1) != 0) return "";
  return name;
}

/// The progress line of a terminal; a message first takes it away.
struct ProgressLine {
  bool onTerminal = isatty(STDERR_FILENO) == 1;
  bool shown = false;

  void show(long done, long total) {
    if (!onTerminal || total <= 1) return;
    writeAll(STDERR_FILENO, fmt::format("\r\033[K{} / {}", done, total));
    shown = true;
    if (done >= total) hide();
  }
  void hide() {
    if (shown) writeAll(STDERR_FILENO, "\r\033[K");
    shown = false;
  }
};

int answerOf(int style, bool yes) {
  switch (style & 7) {
    case kYesNo:
      return yes ? kYes : kNo;
    case kOkCancel:
      return yes ? kOk : kCancel;
    default:
      return kOk;
  }
}

}  // namespace

void writeMessage(std::string_view title, std::string_view text) {
  std::string line = printable(fmt::format("{}: {}", title, text));
  if (line.back() != '\n') line += '\n';
  writeAll(STDERR_FILENO, line);
}

bool writeStandardOutput(std::string_view text) {
  if (writeAll(STDOUT_FILENO, printable(text))) return true;
  writeMessage("出力エラー", fmt::format("標準出力に書き込めませんでした.\n {}", std::strerror(errno)));
  return false;
}

void prepareProcess() {
  // Open for reading, so that a write to what the caller had closed still fails.
  for (int descriptor = 0; descriptor <= 2; ++descriptor) {
    if (fcntl(descriptor, F_GETFD) == -1 && open("/dev/null", O_RDONLY) == -1) std::_Exit(1);
  }
  // A reader that has gone, and a limit on files, are errors of the write.
  signal(SIGPIPE, SIG_IGN);
  signal(SIGXFSZ, SIG_IGN);
  struct sigaction action {};
  action.sa_handler = onStop;
  action.sa_flags = static_cast<int>(SA_RESETHAND) | SA_RESTART;
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    struct sigaction former {};
    // Whoever started the program so that it outlives its terminal means it.
    if (number == SIGHUP && sigaction(number, nullptr, &former) == 0 && former.sa_handler == SIG_IGN) continue;
    sigaction(number, &action, nullptr);
  }
}

bool interrupted() { return stopAsked != 0; }

Host consoleHost(const Options& options) {
  Host host;
  auto line = std::make_shared<ProgressLine>();
  bool yes = options.answerYes;
  host.dialogs.message = [line, yes](std::string_view text, int style, std::string_view title) {
    line->hide();
    int answer = answerOf(style, yes);
    if ((style & 7) == kOkOnly)
      writeMessage(title, text);
    else
      writeMessage(title, fmt::format("{} [{}]", text, yes ? "はい" : "いいえ"));
    return answer;
  };
  host.dialogs.waitText = [](std::string_view) {};
  host.dialogs.progress = [line](long done, long total) { line->show(done, total); };
  host.dialogs.stopRequested = interrupted;
  host.dialogs.yield = [] {};

  std::optional<DateTime> fixed = parseDateTime(options.now);
  host.clock.now = [fixed] { return fixed ? *fixed : localNow(); };

  host.machine.computerName = options.computer.empty() ? computerName() : options.computer;
  host.machine.appDataFolder = appDataFolder(options.dataFolder);
  host.machine.tempFolder = tempFolder(options.tempFolder);
  host.machine.programFolder =
      options.programFolder.empty() ? assetsFolder(QM_ASSETS) : absolute(options.programFolder);
  host.machine.setClipboard = [](std::string_view) {};
  host.machine.clipboard = [] { return std::string(); };

  auto leaveClosed = [](const std::filesystem::path&) { return true; };
  host.opener = {leaveClosed, leaveClosed, leaveClosed, {}};
  return host;
}

}  // namespace quillmarden
