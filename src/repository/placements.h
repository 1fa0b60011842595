#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/outcome.h"
#include "repository/session.h"
#include "screen/host.h"

namespace quillmarden {

/// The placement targets of MAS_HOST that table headers offer, by their text; blank ones are left out.
std::vector<std::string> readPlacements(Database& database);

// Each asks first. A text is trimmed and met without regard to case.

Outcome addPlacement(Session& session, Host& host, std::string_view text);
/// Tables that bear the text keep it, and the question says how many they are.
Outcome removePlacement(Session& session, Host& host, std::string_view text);

}  // namespace quillmarden
