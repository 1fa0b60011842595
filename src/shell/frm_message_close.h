#pragma once

#include <string_view>

#include "screen/controls.h"

namespace quillmarden {

struct Application;

/// What is seen while the session closes.
struct frmMessageClose {
  Label lblMessage;
};

void showMessageClose(Application& app, std::string_view text);
void closeMessageClose(Application& app);

}  // namespace quillmarden
