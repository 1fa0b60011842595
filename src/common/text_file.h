#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace quillmarden {

// The small per-user files: settings and lists. They are CP932; one that holds what CP932 cannot is UTF-8 behind a
// byte order mark, so that nothing is lost.

/// More than any file that a person has written or copied holds: what is larger is not read to its end.
inline constexpr std::size_t kMostFileBytes = std::size_t{16} << 20;

/// The whole file. Nothing, with the reason in `error`, when it is missing, no plain file, unreadable, or larger than
/// `most` bytes.
std::optional<std::string> readFile(const std::filesystem::path& file, std::error_code& error,
                                    std::size_t most = kMostFileBytes);
/// The same, of a larger file its first `most` bytes.
std::optional<std::string> readBeginning(const std::filesystem::path& file, std::error_code& error, std::size_t most);

/// Replaces one of the user's own files, which may be a link. False when that fails; the former file is then untouched.
bool replaceFile(const std::filesystem::path& file, std::string_view bytes);

/// The byte order mark that tells a UTF-8 file.
inline constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";

/// The bytes as UTF-8.
std::string decodeText(std::string_view bytes);
/// The text in CP932 or, when that cannot hold it, as UTF-8 behind the mark.
std::string encodeText(std::string_view utf8);

/// The lines of a text with CR LF, LF or CR between them. A line end at the very end opens no further line.
std::vector<std::string_view> splitLines(std::string_view text);

}  // namespace quillmarden
