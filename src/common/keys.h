#pragma once

#include <string>

namespace quillmarden {

/// The modifier keys that are held, as bits.
enum ShiftMask : int { kShift = 1, kCtrl = 2, kAlt = 4 };

/// The number of a combination of modifiers: "Shift+Ctrl+Alt" 1, "Shift+Alt" 2, "Shift+Ctrl" 3, "Ctrl+Alt" 4,
/// "Shift" 5, "Ctrl" 6, "Alt" 7, none 0. Its name goes to `text` when given, "" for none. Other bits are ignored.
int gShiftState(int shift, std::string* text = nullptr);

/// What gShiftState gives while Ctrl is held alone.
inline constexpr int kCtrlAlone = 6;

}  // namespace quillmarden
