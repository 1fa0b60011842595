#pragma once

#include <functional>
#include <memory>

#include "cli/option_set.h"
#include "cli/run.h"

namespace quillmarden {

/// A command whose options are filled: does its work on run.output and gives the exit status.
using CommandRoutine = std::function<ExitStatus(Run& run)>;

/// The heading under which the help lists a command.
enum class CommandGroup { Repository, Systems, Tables, Scripts, Workbooks };

/// What a command does with the Repository before its own work.
enum class Entry {
  None,       ///< works without a Repository that is already there
  LogIn,      ///< logs in; work folders of earlier commands stay, what they have made lies there
  LogInSweep  ///< logs in as the desktop does, work folders of earlier sessions go
};

/// One command. Its options are its own: `prepare` adds them to the set and gives the routine that they steer. They are
/// asked for only when the command is named, since those of all commands together cost more than a login.
struct Command {
  const char* name;
  CommandGroup group;
  const char* help;
  CommandRoutine (*prepare)(OptionSet& options);
  Entry entry = Entry::LogIn;
};

/// The `prepare` of a command that keeps its options in a record of type Own.
template <typename Own, void (*addOptions)(OptionSet&, Own&), ExitStatus (*routine)(Run&, const Own&)>
CommandRoutine prepareCommand(OptionSet& options) {
  auto own = std::make_shared<Own>();
  addOptions(options, *own);
  return [own](Run& run) { return routine(run, *own); };
}

/// The `prepare` of a command without options of its own.
template <ExitStatus (*routine)(Run&)>
CommandRoutine prepareCommand(OptionSet&) {
  return [](Run& run) { return routine(run); };
}

// Options that many commands share.

/// --system, which must be given.
OptionSpec& addSystem(OptionSet& options, std::string& system);
/// --table: the one table, which must be given.
OptionSpec& addTable(OptionSet& options, std::string& table);
/// --table: the chosen ones, all when none is given.
OptionSpec& addTables(OptionSet& options, std::vector<std::string>& tables);
/// --set NAME=VALUE, once for each column.
OptionSpec& addSettings(OptionSet& options, std::vector<std::string>& settings, std::string help);
/// --output, for a command that else writes into the System's folder.
OptionSpec& addOutput(OptionSet& options, std::string& output);

}  // namespace quillmarden
