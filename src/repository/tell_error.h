#pragma once

#include <string_view>

#include "repository/session.h"
#include "screen/host.h"

namespace quillmarden {

/// Logs and shows an engine's fault where a screen has no words of its own for it.
void tellError(Session& session, Host& host, std::string_view routine, const EngineError& error);

}  // namespace quillmarden
