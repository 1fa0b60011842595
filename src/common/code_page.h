#pragma once

#include <array>
#include <cstdint>

namespace quillmarden {

/// The double-byte cells of CP932 in both directions.
struct CodePage {
  std::array<std::uint16_t, 0x10000> toCell;  ///< by character of the basic plane; 0 where there is no cell
  std::array<char16_t, 0x10000> toCharacter;  ///< by cell, lead byte first; 0 where there is no character

  /// The table, which the build takes from ICU: a command that writes one Japanese line has no time to ask it.
  static const CodePage& get();
};

}  // namespace quillmarden
