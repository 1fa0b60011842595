#pragma once

#include <optional>

#include "cli/options.h"
#include "cli/run.h"

namespace quillmarden {

/// What a command line asks for.
struct CommandLine {
  Options options;
  CommandRoutine routine = nullptr;
  bool logsIn = true;  ///< the command works on a Repository that is already there
};

/// Takes a command line apart into `commandLine`, which the parser fills in place. Gives a status when that is all
/// there is to do: after help or version text, and after the message about a wrong command line.
std::optional<ExitStatus> parseCommandLine(int argc, char** argv, CommandLine& commandLine);

}  // namespace quillmarden
