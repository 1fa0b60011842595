#pragma once

namespace quillmarden {

/// How a routine that changes something has ended. Whoever calls one has to look.
enum class [[nodiscard]] Outcome{
    Done,
    Refused,  ///< nothing was changed: declined, or not allowed, which a message has told
    Failed    ///< nothing was changed, and a message has told why
};

}  // namespace quillmarden
