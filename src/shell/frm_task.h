#pragma once

#include <string>

#include "screen/controls.h"

namespace quillmarden {

/// The owner of the notification icon. Where a desktop has no icons, the bar does all that it does.
struct frmTASK {
  bool iconShown = false;
  std::string toolTip;
  std::string Mnu_OpenCaption = "最小化";  ///< "開く" while all screens are hidden
};

}  // namespace quillmarden
