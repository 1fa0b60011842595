#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillmarden {

/// The text of a profile file: sections in brackets, key=value lines. Names are compared without case, the first hit
/// wins. Comments, lines of other forms and lines with bytes that are no text are kept as they came.
class IniText {
 public:
  IniText() = default;
  /// From a file's bytes: CP932, or UTF-8 behind a byte order mark; any line ends; NULs are dropped.
  explicit IniText(std::string_view bytes);

  /// The trimmed value without the quotes around it, "" for a key that is absent.
  std::string get(std::string_view section, std::string_view key) const;
  /// Sets a key; line ends and NULs in the value become blanks. True when that changed the text. A section or key
  /// that could not be found again, such as one with "=" in it, is left out.
  bool put(std::string_view section, std::string_view key, std::string_view value);
  /// The file's bytes, lines ended by CR LF: CP932, or UTF-8 when it was that or holds what CP932 cannot.
  std::string bytes() const;

 private:
  struct Line {
    std::string text;  ///< UTF-8
    std::string raw;   ///< the bytes of a line that is no clean text, else ""
  };
  /// The lines of a section: from the one behind its heading to the next heading, from `start` on. False at the end.
  bool nextSection(std::string_view section, std::size_t start, std::size_t& first, std::size_t& last) const;
  /// The line of a key, or lines_.size().
  std::size_t find(std::string_view section, std::string_view key) const;

  std::vector<Line> lines_;
  bool utf8_ = false;
};

/// A profile file. A missing or unreadable one has no keys. Read at construction; every put reads it anew, changes its
/// keys alone and rewrites it beside itself. A missing folder is made. Errors in writing are ignored, a value that is
/// there already is not written again.
class IniFile {
 public:
  explicit IniFile(std::filesystem::path file);
  std::string get(std::string_view section, std::string_view key) const { return text_.get(section, key); }
  void put(std::string_view section, std::string_view key, std::string_view value);
  /// Several keys of one section with one rewrite.
  void putAll(std::string_view section, const std::vector<std::pair<std::string, std::string>>& values);
  const std::filesystem::path& path() const { return file_; }

 private:
  std::filesystem::path file_;
  IniText text_;
};

}  // namespace quillmarden
