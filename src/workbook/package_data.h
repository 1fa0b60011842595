#pragma once

#include <memory>
#include <optional>
#include <unordered_map>

#include "workbook/package.h"

struct zip;

namespace quillmarden {

/// The zip file that parts come from; copies of a package share it. Bytes first: the handle reads from them.
struct ZipArchive {
  std::string bytes;
  zip* handle = nullptr;

  ZipArchive() = default;
  ZipArchive(const ZipArchive&) = delete;
  ZipArchive& operator=(const ZipArchive&) = delete;
  ~ZipArchive();
};

/// A part in one of four forms: an entry of the archive, bytes, a source that is asked when the package is written, or
/// relationships. Those of the first two forms are kept once they were read.
struct PackagePart {
  std::string name;
  std::shared_ptr<const ZipArchive> archive;
  std::uint64_t entry = 0;
  std::uint64_t size = 0;
  std::shared_ptr<const std::string> bytes;
  std::function<PartSource()> make;
  mutable std::shared_ptr<Relationships> relations;
};

struct Package::Data {
  std::vector<PackagePart> parts;
  std::unordered_map<std::string, std::size_t> places;  ///< partKey to index in parts
  ContentTypes types;
  bool typesChanged = false;
  std::unordered_map<std::string, int> lastNumbers;  ///< by what stands before the number in a name

  PackagePart* find(std::string_view name);
  PackagePart& make(std::string_view name);
  /// The part's relationships, `present` so far, as a list that no copy of the package shares.
  Relationships& ownRelationships(std::string_view part, const Relationships& present);
};

/// The bytes of an archive's entry. Throws WorkbookError (Damaged).
std::string readEntry(const ZipArchive& archive, const PackagePart& part);

}  // namespace quillmarden
