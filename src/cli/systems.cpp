#include "cli/systems.h"

#include <map>

namespace quillmarden {

namespace {

ExitStatus runSystems(Run& run) {
  std::map<std::string, std::string, std::less<>> kinds;
  for (Recordset rows = run.session.gDB->openRecordset("SELECT システム名, databasetype FROM MAS_SYSTEM"); !rows.eof();
       rows.moveNext())
    kinds.emplace(rows.text(0), rows.text(1));
  for (const std::string& system : gGetSystemList(run.session)) {
    putCell(run.output, system);
    run.output += '\t';
    putCell(run.output, kinds[system]);
    run.output += '\n';
  }
  return kDone;
}

}  // namespace

constinit const Command kSystemsCommand{.name = "systems",
                                        .group = CommandGroup::Systems,
                                        .help = "システムの一覧を表示する。1行に、システム名、タブ、データベース種別",
                                        .prepare = prepareCommand<runSystems>};

}  // namespace quillmarden
