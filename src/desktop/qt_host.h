#pragma once

#include <string>
#include <string_view>

#include "desktop/turn.h"
#include "desktop/wait_panel.h"
#include "screen/host.h"

namespace quillmarden {

/// The folders that a person may set from outside; "" for the platform's own place.
struct Places {
  std::string dataFolder;
  std::string tempFolder;
  std::string programFolder;
};

/// The outside as the desktop gives it. The host's functions hold on to this record: it lives as long as the program.
class QtHost {
 public:
  QtHost(Turn& turn, const Places& places);
  QtHost(const QtHost&) = delete;
  QtHost& operator=(const QtHost&) = delete;

  WaitPanel wait;
  Host host;
};

/// A message with its Japanese buttons over the window in front; the code of the pressed button. Closing it by [Esc] or
/// the window's button answers as closingAnswer says.
int showMessage(std::string_view text, int style, std::string_view title);

}  // namespace quillmarden
