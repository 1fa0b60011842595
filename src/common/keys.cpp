#include "common/keys.h"

#include <array>
#include <string_view>

namespace quillmarden {

int gShiftState(int shift, std::string* text) {
  struct State {
    int number;
    std::string_view name;
  };
  // By the three bits: Shift, Ctrl, Alt.
  static constexpr std::array<State, 8> kStates = {{{0, ""},
                                                    {5, "Shift"},
                                                    {6, "Ctrl"},
                                                    {3, "Shift+Ctrl"},
                                                    {7, "Alt"},
                                                    {2, "Shift+Alt"},
                                                    {4, "Ctrl+Alt"},
                                                    {1, "Shift+Ctrl+Alt"}}};
  const State& state = kStates[static_cast<std::size_t>(shift & (kShift | kCtrl | kAlt))];
  if (text) *text = state.name;
  return state.number;
}

}  // namespace quillmarden
