#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillmarden {

/// Asks which of some ways to go: a text, the details in a field of their own to scroll through, a button for each way
/// and one to take none. Gives the way's place, -1 for none, which is what Esc and the window's own closing mean.
int showChoice(std::string_view text, std::string_view details, const std::vector<std::string>& ways,
               std::string_view title);

}  // namespace quillmarden
