#pragma once

#include <string>

#include "screen/controls.h"

namespace quillmarden {

/// What the program shows first of all.
struct frmSplash {
  Label lblVersion;
  Label lblPlatform;
  int ticks = 0;  ///< of its timer
};

/// "version 1.0.0": major, minor and revision, as labels show them.
std::string versionLabel();
/// The screen as it opens.
void frmSplash_Load(frmSplash& screen);

}  // namespace quillmarden
