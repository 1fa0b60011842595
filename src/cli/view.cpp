#include "cli/view.h"

#include "cli/generate.h"

namespace quillmarden {

namespace {

struct ViewOptions {
  ScriptChoice choice;
};

void addViewOptions(OptionSet& set, ViewOptions& options) { addScriptChoice(set, options.choice); }

ExitStatus runView(Run& run, const ViewOptions& options) {
  return generate(run, options.choice,
                  {.current = mnuCreateView_Click, .selection = mnuCreateViewSel_Click, .all = {}});
}

}  // namespace

constinit const Command kViewCommand{.name = "view",
                                     .group = CommandGroup::Scripts,
                                     .help = "VIEW文のファイルを作成し、ファイル名を表示する",
                                     .prepare = prepareCommand<ViewOptions, addViewOptions, runView>};

}  // namespace quillmarden
