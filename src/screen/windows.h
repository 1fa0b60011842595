#pragma once

#include <functional>
#include <string_view>

namespace quillmarden {

/// What screens need of each other, filled by the shell. An empty function means: nobody listens.
struct Windows {
  std::function<void(std::string_view screen)> show;  ///< opens or raises a screen by its name, such as "frmTBInfo"
  std::function<void(std::string_view systemName)> systemChanged;
  std::function<void(std::string_view tableId)> tableChosen;
};

}  // namespace quillmarden
