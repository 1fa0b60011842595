#pragma once

#include <string_view>

#include "shell/application.h"

namespace quillmarden {

/// Offers the edited grids that a program left behind when it died: each is taken up in a detail screen, dropped, or
/// kept for later. One of another System makes that System current, unless something is being edited already; it is
/// then offered when its System is chosen.
void offerLeftOvers(Application& app);
/// The unsaved rows of a detail screen were given up: their copy goes, too.
void dropUnsavedWork(Application& app, std::string_view screen);

}  // namespace quillmarden
