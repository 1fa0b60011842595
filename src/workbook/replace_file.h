#pragma once

#include <filesystem>
#include <string_view>

namespace quillmarden {

/// A file that is written beside its target and takes its place at the end. Without commit nothing is left. Throws
/// WorkbookError (CannotWrite) with the file's name and the reason.
class FileReplacement {
 public:
  explicit FileReplacement(const std::filesystem::path& target);
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;
  ~FileReplacement();

  void write(std::string_view bytes);
  /// Renames. It does not wait for the disk: a book can be made again, and a run makes a thousand of them.
  void commit();

 private:
  [[noreturn]] void fail() const;

  std::filesystem::path target_;
  std::filesystem::path beside_;
  int handle_ = -1;
};

}  // namespace quillmarden
