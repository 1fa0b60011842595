#pragma once

#include <pugixml.hpp>
#include <string>

#include "workbook/formula_shift.h"

namespace quillmarden {

/// Moves the anchors of a drawing's shapes, and those of objects within a sheet: a shape that moves with its cells
/// moves, and one that is sized with them grows or shrinks. True when something changed.
bool shiftAnchors(pugi::xml_node root, const RowChange& change);

/// The same for a legacy (VML) drawing, which need not be good XML. The places of notes move along.
std::string shiftLegacyAnchors(std::string vml, const RowChange& change);

}  // namespace quillmarden
