#include <exception>

#include "cli/command_line.h"
#include "cli/console_host.h"
#include "cli/console_session.h"

namespace {

using namespace quillmarden;

ExitStatus runCommand(const CommandLine& commandLine) {
  Run run{.options = commandLine.options, .host = consoleHost(commandLine.options)};
  const bool logsIn = commandLine.entry != Entry::None;
  if (logsIn && !logIn(run, commandLine.entry == Entry::LogInSweep)) return kFailed;
  ExitStatus status = commandLine.routine(run);
  if (logsIn) logOut(run);
  if (!writeStandardOutput(run.output)) return kFailed;
  return status;
}

}  // namespace

int main(int argc, char** argv) {
  prepareProcess();
  CommandLine commandLine;
  try {
    if (auto status = parseCommandLine(argc, argv, commandLine)) return *status;
    return runCommand(commandLine);
  } catch (const std::exception& error) {
    writeMessage("エラー", error.what());
    return kFailed;
  }
}
