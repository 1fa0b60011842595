#pragma once

namespace quillmarden {

/// Screens are measured in pixels of 1/96 inch, sheets in points of 1/72.
inline constexpr double kPixelsPerPoint = 96.0 / 72.0;

}  // namespace quillmarden
