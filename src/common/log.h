#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

#include "screen/host.h"

namespace quillmarden {

/// "1.00.00": major, minor and revision of this program, for the log and captions.
std::string gGetVersion();

/// The running session's log, plain text in CP932; a character that CP932 cannot hold stands as <U+1F600>. A log that
/// cannot be opened is told once and stays off.
class Log {
 public:
  /// Makes the folder, moves a log that an earlier run left to the history under its file time, opens the file
  /// and writes the opening lines. Does nothing when the log is open.
  void open(Host& host);
  /// One line, with the time behind a tab when `withDate`. Opens the log when that has not been done.
  void gPutLog(Host& host, std::string_view text, bool withDate = true);
  /// The same after three lines that tell the error.
  void putError(Host& host, std::string_view text, int number, std::string_view description);
  /// Closes; deletes the file unless `keep`, then moves it to the history. A log that was never opened stays as it is.
  void finish(Host& host, bool keep);

  static std::filesystem::path file(const Machine& machine);
  static std::filesystem::path historyFolder(const Machine& machine);
  /// Deletes the logs in the history that are older than 14 days by the host's clock.
  static void prune(Host& host);

 private:
  void put(std::string_view text);

  std::ofstream stream_;
  bool off_ = false;
};

/// Notes a Repository in which a field addition failed in logErrAddField.log below `infoFolder`.
void putErrAddField(Host& host, const std::filesystem::path& infoFolder, std::string_view repository);

}  // namespace quillmarden
