#pragma once

#include "screen/controls.h"

namespace quillmarden {

struct Application;

/// The list of the open detail screens.
struct frmDetailsList {
  ListBox lstDetails;  ///< "caption<TAB>name of the screen"
};

void refreshDetailsList(Application& app);
/// Raises the detail screen of the current row.
void lstDetails_DblClick(Application& app);

}  // namespace quillmarden
