#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "screen/controls.h"

namespace quillmarden {

/// Entries that a list file is read for and a search history keeps.
inline constexpr std::size_t kMaxListEntries = 1000;

/// The entries of a list file: one a line, CP932 (or UTF-8 behind a byte order mark), blank lines and control
/// characters dropped, at most kMaxListEntries. A missing file has none.
std::vector<std::string> readListFile(const std::filesystem::path& file);
/// Rewrites the file beside itself and renames it; makes its folder. A list that CP932 cannot hold is written as UTF-8
/// behind a byte order mark. False when that fails; the former file is then whole.
bool writeListFile(const std::filesystem::path& file, const std::vector<std::string>& entries);
/// The entries of a list file's bytes, as readListFile takes them apart.
std::vector<std::string> listEntries(std::string_view bytes);

/// Adds a trimmed text to a list unless it is there, and makes it current when `select` is set.
void gAddList(ListBox& list, std::string_view text, bool select);
void gAddList(ComboBox& list, std::string_view text, bool select);
/// Puts a trimmed text at the head of a search box's entries unless it is among them, and makes it current. A blank
/// text changes nothing; the oldest entry goes when there are kMaxListEntries.
void gListHistory(ComboBox& list, std::string_view text);

}  // namespace quillmarden
