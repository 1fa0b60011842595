#pragma once

#include <string_view>
#include <utility>

#include "common/outcome.h"
#include "repository/session.h"
#include "repository/tell_error.h"
#include "screen/host.h"

namespace quillmarden {

/// Runs a change, which gives its Outcome, in one transaction. An engine's fault is told under the routine's name and
/// leaves nothing. The right to it is for the caller to ask.
template <typename Change>
Outcome changeRows(Session& session, Host& host, std::string_view routine, Change&& change) {
  try {
    Outcome outcome = Outcome::Refused;
    inTransaction(*session.gDB, [&] { outcome = std::forward<Change>(change)(); });
    return outcome;
  } catch (const EngineError& error) {
    tellError(session, host, routine, error);
    return Outcome::Failed;
  }
}

}  // namespace quillmarden
