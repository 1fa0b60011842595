#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "cli/options.h"
#include "repository/session.h"
#include "screen/host.h"

namespace quillmarden {

/// The exit status of the program.
enum ExitStatus : int { kDone = 0, kFailed = 1, kUsage = 2 };

/// One run of a command, from the parsed command line to the text for standard output.
struct Run {
  const Options& options;
  Host host;
  Session session{};
  bool isAdmin = false;
  std::string output{};  ///< UTF-8 with LF; goes out when the command has ended
};

/// Adds a cell or line to the output with its line ends and tabs turned into blanks.
void putCell(std::string& output, std::string_view text);
/// Adds a text of lines, with LF.
void putText(std::string& output, std::string_view text);
/// Adds the row on which a set stands, a column a line: name, tab, value.
void putRecord(std::string& output, const Recordset& row);
/// One box with a failure's text, and the status that follows from it.
ExitStatus failure(Run& run, std::string_view text);
/// Runs steps that write, each of which ends with true, or false after its message. One that fails leaves nothing of
/// those before it.
ExitStatus inOneTransaction(Run& run, const std::function<bool()>& steps);

}  // namespace quillmarden
