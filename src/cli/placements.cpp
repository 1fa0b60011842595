#include "cli/placements.h"

#include "repository/placements.h"

namespace quillmarden {

namespace {

struct PlacementsOptions {
  std::string add;
  std::string remove;
};

void addPlacementsOptions(OptionSet& set, PlacementsOptions& options) {
  set.text("--add", options.add, "TEXT", "格納先を追加する").filled();
  set.text("--remove", options.remove, "TEXT", "格納先を削除する。テーブルの格納先は変わらない").filled();
}

ExitStatus runPlacements(Run& run, const PlacementsOptions& options) {
  if (!options.add.empty() || !options.remove.empty()) {
    return inOneTransaction(run, [&] {
      return (options.remove.empty() || removePlacement(run.session, run.host, options.remove) == Outcome::Done) &&
             (options.add.empty() || addPlacement(run.session, run.host, options.add) == Outcome::Done);
    });
  }
  for (const std::string& text : readPlacements(*run.session.gDB)) {
    putCell(run.output, text);
    run.output += '\n';
  }
  return kDone;
}

}  // namespace

constinit const Command kPlacementsCommand{
    .name = "placements",
    .group = CommandGroup::Repository,
    .help = "格納先の一覧を表示する。追加、削除もする",
    .prepare = prepareCommand<PlacementsOptions, addPlacementsOptions, runPlacements>};

}  // namespace quillmarden
