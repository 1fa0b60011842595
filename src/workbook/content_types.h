#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillmarden {

/// The part's name in the package.
inline constexpr std::string_view kTypesPart = "[Content_Types].xml";

/// [Content_Types].xml. Extensions and part names compare without case.
struct ContentTypes {
  std::vector<std::pair<std::string, std::string>> defaults;   ///< extension, type
  std::vector<std::pair<std::string, std::string>> overrides;  ///< part name without the leading "/", type

  /// Throws WorkbookError (Damaged).
  static ContentTypes parse(std::string_view xml);
  std::string xml() const;

  /// "" for a part of unknown type.
  std::string_view typeOf(std::string_view part) const;
  void setType(std::string_view part, std::string_view type);
  /// Makes sure of the extension's type; false when it has another one already.
  bool setDefault(std::string_view extension, std::string_view type);
  void removePart(std::string_view part);
};

/// The usual type for the extension of a picture or an embedded book ("png", "jpeg", "bmp", "emf", "vml", "xlsx"...);
/// "" for others.
std::string_view usualContentType(std::string_view extension);

}  // namespace quillmarden
