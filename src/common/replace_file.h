#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace quillmarden {

// All files that the program writes for people come about here: beside their target, which they take at the end. So a
// reader sees the former file or the new one, whole, and a full disk costs nobody the former one. Whatever fails is
// thrown as std::system_error with the file's name.

/// Whether a link at the target is followed to the file that it names, or refused as anything else that is no plain
/// file.
enum class TargetLinks { Refused, Followed };

/// A file that is written in one go. Without commit nothing of it is left.
class FileReplacement {
 public:
  explicit FileReplacement(const std::filesystem::path& target, TargetLinks links = TargetLinks::Refused);
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;
  ~FileReplacement();

  void write(std::string_view bytes);
  /// Waits for the disk and puts the file in its target's place; the rights of the former file stay.
  void commit();

 private:
  std::filesystem::path target_;
  std::filesystem::path beside_;
  int handle_ = -1;
};

/// The name under which a file stands until it is whole: "a.途中.txt" for "a.txt".
std::filesystem::path partialFile(const std::filesystem::path& target);

/// A file that grows piece by piece. Until commit it stands under its partial name, and there it stays when the run
/// ends before its end. One process at a time writes to a target.
class GrowingFile {
 public:
  /// Takes the partial file for this process (ETXTBSY when another one has it) and empties it.
  explicit GrowingFile(const std::filesystem::path& target);
  GrowingFile(const GrowingFile&) = delete;
  GrowingFile& operator=(const GrowingFile&) = delete;
  ~GrowingFile();

  /// Writes the piece through to the file. One that fails is taken off again: what stands is whole pieces.
  void write(std::string_view piece);
  /// Waits for the disk and puts the file in its target's place.
  void commit();

 private:
  void take();

  std::filesystem::path target_;
  std::filesystem::path partial_;
  int handle_ = -1;
};

/// Whether a process is writing this very file at the moment.
bool beingWritten(const std::filesystem::path& file);

/// The file that tells that another office program holds this one ("~$name", ".~lock.name#"); nothing when none does.
std::optional<std::filesystem::path> heldBy(const std::filesystem::path& file);

/// What stands in the way of a file at this place.
enum class TargetFault {
  None,
  NotPlain,  ///< a folder, link, device or pipe
  InUse,     ///< held by an office program, or not ours to replace
};
TargetFault targetFault(const std::filesystem::path& target);

/// stem + ending as file systems take it: from 256 bytes on the stem is cut and gets a number of its own, so that
/// different stems stay different names. An ending keeps its letters.
std::string fitFileName(std::string_view stem, std::string_view ending);

}  // namespace quillmarden
