#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace quillmarden {

/// What screens need of each other, filled by the shell. An empty function means: nobody listens.
struct Windows {
  std::function<void(std::string_view screen)> show;   ///< opens or raises a screen by its name, such as "frmTBInfo"
  std::function<void(std::string_view screen)> close;  ///< closes it; its own question has been answered by then
  std::function<void(std::string_view systemName)> systemChanged;
  std::function<void(std::string_view tableId)> tableChosen;
  std::function<void(std::string_view tableId)> openDetail;   ///< shows a table in a further detail screen
  std::function<void(std::string_view tableId)> listChanged;  ///< rebuilds the table list and selects the table, if any
  std::function<void()> logOff;                               ///< ends the session without a question
};

/// What the shell needs of the display, filled by the front. A screen is named as in Windows; a further detail screen
/// has a number behind its name, such as "frmTBDetail:2". An empty function means: there is no display for it.
struct Display {
  std::function<void(std::string_view screen)> show;  ///< makes the window when needed, shows and raises it
  std::function<void(std::string_view screen)> hide;
  std::function<void(std::string_view screen)> close;
  std::function<void(std::string_view screen)> minimise;
  std::function<bool(std::string_view screen)> focus;  ///< false when the window cannot take the focus
  std::function<void(const std::vector<std::string>& screens)> arrange;  ///< lays these windows side by side
  std::function<void(bool onTop)> keepBarOnTop;
  std::function<void(std::string_view screen, std::string_view menu)> popUp;  ///< opens a menu of a screen
  std::function<void()> help;
  std::function<void()> systemInformation;  ///< what the machine tells of itself; empty when it tells nothing
  std::function<void()> settingsChanged;    ///< fonts, colours and theme are to be applied anew
  std::function<void()> quit;               ///< leaves the event loop
};

}  // namespace quillmarden
