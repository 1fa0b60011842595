#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "common/replace_file.h"

namespace quillmarden {

enum class TextEncoding { Cp932, Utf8 };

/// The lines of a script in the making, UTF-8 with CR LF.
struct ScriptText {
  std::string text;

  /// One printed line: the parts and one CR LF. Line ends inside a part stay as they are.
  template <typename... Parts>
  void print(const Parts&... parts) {
    (text.append(parts), ...);
    text.append("\r\n");
  }
};

/// A script that is written piece by piece, as GrowingFile tells.
class ScriptFile {
 public:
  ScriptFile(const std::filesystem::path& file, TextEncoding encoding);

  /// Writes the text through to the file. Throws std::system_error, for a full disk among others. Gives the
  /// characters that the encoding cannot hold, each once; they stand as "?" in the file.
  std::u32string write(std::string_view utf8);
  /// Puts the script in its place. Throws std::system_error.
  void commit() { file_.commit(); }

 private:
  GrowingFile file_;
  TextEncoding encoding_;
};

}  // namespace quillmarden
