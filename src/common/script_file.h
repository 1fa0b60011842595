#pragma once

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>

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

/// A script file that is written piece by piece. A partial file stays when a piece fails: the pieces before it
/// are complete in it, the failed one is taken off again.
class ScriptFile {
 public:
  /// Opens for writing from the start or, with `append`, behind what is there, and holds the file for this process.
  /// Throws std::system_error, also when another process is writing the same file.
  ScriptFile(std::filesystem::path file, TextEncoding encoding, bool append);
  ~ScriptFile();
  ScriptFile(const ScriptFile&) = delete;
  ScriptFile& operator=(const ScriptFile&) = delete;

  /// Writes the text through to the file. Throws std::system_error, for a full disk among others. Gives the
  /// characters that the encoding cannot hold, each once; they stand as "?" in the file.
  std::u32string write(std::string_view utf8);
  /// Closes; throws std::system_error when the last bytes do not reach the file.
  void close();

 private:
  std::filesystem::path file_;
  TextEncoding encoding_;
  int descriptor_;
};

/// Whether a process is writing this script at the moment.
bool scriptInUse(const std::filesystem::path& file);

}  // namespace quillmarden
