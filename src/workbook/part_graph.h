#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "workbook/package.h"

namespace quillmarden {

/// Removes the parts that no chain of relationships from the package's root reaches.
void removeUnreached(Package& package);

/// Copies what a part relates to from one package to another, under free names, with all that hangs on it. What `keep`
/// refuses is left out. Pictures that the target has already under the same name are shared. The relationships of `to`
/// keep the ids that those of `from` have.
/// Gives the names of the new parts.
std::vector<std::string> copyRelated(const Package& source, std::string_view from, Package& target, std::string_view to,
                                     const std::function<bool(const Relationship&)>& keep);

}  // namespace quillmarden
