#pragma once

#include <string>
#include <string_view>

#include "sqlgen/generation.h"

namespace quillmarden {

/// " IN (v1,v2) " with the values of the System's list, never quoted; "" for a list without entries. Valid as long
/// as the cache.
const std::string& pGetCheckList(const Generation& generation, std::string_view listName);

}  // namespace quillmarden
