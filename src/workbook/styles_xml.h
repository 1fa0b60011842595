#pragma once

#include <pugixml.hpp>

#include "workbook/styles.h"

namespace quillmarden {

// Records from the elements of a styles part. Missing and unknown attributes give the defaults.

CellFont fontOf(const pugi::xml_node& node);
CellFill fillOf(const pugi::xml_node& node);
CellBorder borderOf(const pugi::xml_node& node);
StoredFormat formatOf(const pugi::xml_node& node);

}  // namespace quillmarden
