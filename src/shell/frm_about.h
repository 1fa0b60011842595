#pragma once

#include <string>

#include "screen/controls.h"

namespace quillmarden {

struct Application;

struct frmAbout {
  std::string caption;
  Label lblVersion;
};

void frmAbout_Load(frmAbout& screen);
/// Shows what the machine tells of itself, or says that it tells nothing.
void cmdSysInfo_Click(Application& app);

}  // namespace quillmarden
