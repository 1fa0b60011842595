#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/database.h"

namespace quillmarden {

// Value lists, as field grids and generators ask for them.

/// All entries of a list, a shared list of another System included: "value:meaning", with "[初期値]" in front of the
/// default entry.
std::vector<std::string> pGetDivisionDetails2Text(Database& database, std::string_view system, std::string_view name);

enum class ValueListType { Number, Text };
/// " IN (v1,v2) " with the values of a list in their order, texts in single quotes; "" for a list without entries.
std::string pGetDivisionIn2Text(Database& database, std::string_view system, std::string_view name, ValueListType type);

/// Whether a live shared list of that name stands in another System; gives that System, "他のシステム" for Null.
bool gGetOtherSystem2DivName(Database& database, std::string_view system, std::string_view name,
                             std::string& otherSystem);

}  // namespace quillmarden
