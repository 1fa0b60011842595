#pragma once

#include <utility>

namespace quillmarden {

/// Calls a function of a seam, where somebody listens.
template <typename Function, typename... Arguments>
void tell(const Function& function, Arguments&&... arguments) {
  if (function) function(std::forward<Arguments>(arguments)...);
}

}  // namespace quillmarden
