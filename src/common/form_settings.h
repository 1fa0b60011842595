#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "common/ini_file.h"
#include "screen/controls.h"

namespace quillmarden {

// What a screen remembers for its next opening: its place, and the state of its controls.

/// Place and size of a screen, in pixels of the display. What is not set stays as the screen was designed.
struct FormPosition {
  enum State { kNormal = 0, kMinimised = 1, kMaximised = 2 };
  int windowState = kNormal;
  std::optional<int> top{};
  std::optional<int> left{};
  std::optional<int> width{};
  std::optional<int> height{};
};

/// What was kept of a form's position. A minimised form comes back as a normal one; a value that is no number, or a
/// size below 1, is left out. Whether the place is still on a display is for the view to look at.
FormPosition gFormPosition(const IniFile& ini, std::string_view form);
/// Keeps the position; place and size of a normal form alone, so that a maximised one has a place to return to, and
/// the size where `sizable` is set.
void putFormPosition(IniFile& ini, std::string_view form, const FormPosition& position, bool sizable);

/// The key of a control: its name, with ":" and the index behind it in a control array.
std::string controlKey(std::string_view control, int index = -1);

/// A control whose state is kept: the text of a box, the caption of a label, whether a mark is set, the current row.
using ControlRef = std::variant<TextBox*, Label*, CheckBox*, OptionButton*, ComboBox*, MenuItem*, ListBox*>;

/// The state as it is kept, to write several with one rewrite of the file.
std::string controlState(ControlRef control);
/// Gives a control the state that was kept under this key of the form; without one it stays as it is. A label's caption
/// gets a blank on each side. A row of a list, and a text of a box that takes listed texts alone, must be there.
void gControlSetting(const IniFile& ini, std::string_view form, std::string_view key, ControlRef control,
                     bool listedOnly = false);
void putControlSetting(IniFile& ini, std::string_view form, std::string_view key, ControlRef control);

}  // namespace quillmarden
