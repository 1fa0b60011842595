#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quillmarden {

/// The vocabularies of a legacy (VML) drawing.
enum class LegacySpace { Other, Vml, Office, Excel };

/// An element of a legacy drawing as a place in its text.
struct LegacyElement {
  LegacySpace space = LegacySpace::Other;
  std::string_view name;        ///< without the prefix
  std::string_view attributes;  ///< as they stand
  std::size_t parent = 0;       ///< its number in the list; its own for one without
  std::size_t begin = 0;        ///< of the start tag
  std::size_t innerBegin = 0;
  std::size_t innerEnd = 0;
  std::size_t end = 0;  ///< behind the end tag

  bool is(LegacySpace wantedSpace, std::string_view wantedName) const {
    return space == wantedSpace && name == wantedName;
  }
};

/// All elements of the drawing, in the order of their start tags, by their namespaces whatever the prefixes are. The
/// text need not be well-formed: programs write "<br>" in it. Elements that are cut off are left out. The text must
/// outlive the list.
std::vector<LegacyElement> legacyElements(std::string_view vml);

/// The value of an attribute without a prefix, as it stands; "" when it is missing.
std::string_view attributeOf(const LegacyElement& element, std::string_view name);

}  // namespace quillmarden
