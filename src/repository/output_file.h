#pragma once

#include <filesystem>
#include <string>

#include "repository/session.h"
#include "screen/host.h"

namespace quillmarden {

/// Why an output must not take this file's place, as lines for the person; "" when it may. The open Repository with
/// what its engine keeps beside it, templates with their Format files, the user's settings, and whatever is no plain
/// file are not an output's to replace.
std::string outputFault(Session& session, const Host& host, const std::filesystem::path& file);

/// Notes an output's file, before it is written, as one that the person is told of: see common/work_folders.h.
void noteOutput(const Session& session, const Host& host, const std::filesystem::path& file);

}  // namespace quillmarden
