#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace quillmarden {

struct Relationship {
  std::string id;
  std::string type;
  std::string target;  ///< as in the file: relative to the part, absolute, or an address of the outside
  bool external = false;

  /// Whether the type ends in this word: "worksheet", "sharedStrings". So both forms of the standard are met.
  bool is(std::string_view word) const;
};

/// A part's relationships in the order of the file.
struct Relationships {
  std::vector<Relationship> items;

  /// Throws WorkbookError (Damaged) that names `part`.
  static Relationships parse(std::string_view xml, std::string_view part);
  std::string xml() const;

  const Relationship* byId(std::string_view id) const;
  /// The first inner one whose type ends in the word.
  const Relationship* byType(std::string_view word) const;
  std::string freeId() const;
};

/// The beginning of the types that belong to office documents.
inline constexpr std::string_view kOfficeRelation =
    "http://schemas.openxmlformats.org/officeDocument/2006/relationships/";
inline constexpr std::string_view kPackageRelation = "http://schemas.openxmlformats.org/package/2006/relationships/";

/// "xl/_rels/workbook.xml.rels" for "xl/workbook.xml"; "_rels/.rels" for "".
std::string relationshipsPart(std::string_view part);
/// The part that a target means, seen from a part. Throws WorkbookError (Damaged) for one outside the package.
std::string resolveTarget(std::string_view part, std::string_view target);
/// The shortest way from a part's folder to another part: "../media/image1.png".
std::string relativeTarget(std::string_view part, std::string_view target);

}  // namespace quillmarden
