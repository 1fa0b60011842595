#pragma once

#include <optional>

#include "cli/command.h"

namespace quillmarden {

/// What a command line asks for.
struct CommandLine {
  Options options;
  Entry entry = Entry::None;
  CommandRoutine routine;
};

/// Takes a command line apart into `commandLine`. Gives a status when that is all there is to do: after help or version
/// text, and after the message about a wrong command line.
std::optional<ExitStatus> parseCommandLine(int argc, char** argv, CommandLine& commandLine);

}  // namespace quillmarden
