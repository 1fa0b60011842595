#pragma once

#include <string_view>

#include "screen/controls.h"

namespace quillmarden {

struct Application;

/// A long result in a box that does not stop the program.
struct frmMSG {
  TextBox TxtMSG;
  int secondsLeft = 0;  ///< until it closes by itself; 0: it stays
};

/// Shows the text; with `seconds` above 0 the screen closes by itself after that time.
void showMSG(Application& app, std::string_view text, int seconds = 0);
/// One second of its timer.
void frmMSG_Timer(Application& app);

}  // namespace quillmarden
