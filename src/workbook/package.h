#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "workbook/content_types.h"
#include "workbook/relationships.h"
#include "workbook/workbook_error.h"

namespace quillmarden {

/// What a package may unpack to. The defaults hold any workbook that a person can work with.
struct PackageLimits {
  std::uint64_t partBytes = 512ULL << 20;
  std::uint64_t totalBytes = 1024ULL << 20;
  std::uint64_t entries = 65535;
  /// Unpacked to packed bytes, for parts above a megabyte.
  std::uint64_t ratio = 400;
};

/// Gives a part's bytes piece by piece: appends to the buffer, false when there are no more.
using PartSource = std::function<bool(std::string& buffer)>;

/// Whether a person asked to stop a long work.
using StopCheck = std::function<bool()>;

/// The parts of an OPC package by name, as "xl/workbook.xml". A part that nobody changes keeps its compressed bytes and
/// its place; copies of a package share all parts. Names compare without case.
class Package {
 public:
  Package();
  Package(const Package&);
  Package(Package&&) noexcept;
  Package& operator=(const Package&);
  Package& operator=(Package&&) noexcept;
  ~Package();

  /// The bytes of a zip file. Throws WorkbookError: OldBinaryForm, Encrypted, NotAWorkbook, Damaged, TooLarge.
  static Package fromBytes(std::string bytes, const PackageLimits& limits = {});

  std::vector<std::string> names() const;
  bool has(std::string_view name) const;
  /// The part's bytes, unpacked. Damaged when it is missing or cut.
  std::string bytes(std::string_view name) const;
  /// Whether the part holds exactly these bytes; parts of another size are told apart without unpacking.
  bool sameBytes(std::string_view name, std::string_view bytes) const;
  /// Replaces or appends a part. The content type is the caller's business.
  void set(std::string_view name, std::string bytes);
  /// As set, with bytes that are made while the package is written; each writing asks `make` for a new source.
  /// `about` is the expected number of bytes, rather too high than too low.
  void stream(std::string_view name, std::function<PartSource()> make, std::uint64_t about);
  /// Removes the part, its relationships and its content type.
  void remove(std::string_view name);

  const ContentTypes& contentTypes() const;
  /// Takes effect with the next writing.
  ContentTypes& editContentTypes();
  /// The relationships of a part; of the package for "".
  /// Good until the package changes.
  const Relationships& relationships(std::string_view part) const;
  void setRelationships(std::string_view part, Relationships relationships);
  /// Adds a relationship from one part to another and gives its id; an equal one is used again.
  std::string relate(std::string_view part, std::string_view type, std::string_view target);
  /// As relate, for targets that the part does not name yet. Gives their ids.
  std::vector<std::string> relateAll(std::string_view part, std::string_view type,
                                     const std::vector<std::string>& targets);
  /// Adds a part under the first free name with a number before the extension: "xl/media/image" and "png" give
  /// "xl/media/image1.png". With `contentType` "" the extension's default type must be known. Gives the name.
  std::string add(std::string_view stem, std::string_view extension, std::string_view contentType, std::string bytes);

  /// The package as a zip file; equal parts give equal bytes at any time. Throws CannotWrite.
  std::string zip() const;
  /// Takes the file's place when it is whole. On failure, or (Stopped) when `stop` says yes on the way, the former file
  /// stays and nothing else is left.
  void save(const std::filesystem::path& file, const StopCheck& stop = {}) const;

 private:
  struct Data;
  std::unique_ptr<Data> data_;
};

}  // namespace quillmarden
