#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillmarden {

class Front;
class View;

/// How the window of a screen is made.
struct ViewMaker {
  std::string_view screen;
  View* (*make)(Front& front, const std::string& screen);
  bool child = false;  ///< it belongs to the window that it was opened from and stays in front of that
};

/// One line a screen. "frmTBDetail" also stands for the further detail screens, "frmTBDetail:2" and on.
const std::vector<ViewMaker>& viewMakers();
const ViewMaker* findViewMaker(std::string_view screen);

}  // namespace quillmarden
