#pragma once

class QMenu;

namespace quillmarden {

class View;
struct Application;

/// Lets the person choose between the light and the dark look, or the desktop's own. Kept with the settings.
QMenu* makeLookMenu(View& view);
/// Applies the look that the settings hold.
void applyKeptLook(const Application& app);

}  // namespace quillmarden
