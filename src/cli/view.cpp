#include "cli/view.h"

#include "cli/generate.h"

namespace quillmarden {

ExitStatus runView(Run& run) {
  return generate(run, {.current = mnuCreateView_Click,
                        .currentIndex = 0,
                        .selection = mnuCreateViewSel_Click,
                        .selectionIndex = 0,
                        .all = nullptr,
                        .allIndex = 0});
}

}  // namespace quillmarden
