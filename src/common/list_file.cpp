#include "common/list_file.h"

#include <algorithm>
#include <system_error>

#include "common/text.h"
#include "common/text_file.h"

namespace quillmarden {

namespace {

/// A thousand entries of paths and search texts, with room to spare.
constexpr std::size_t kMostListBytes = std::size_t{1} << 20;

std::string withoutControls(std::string_view text) {
  std::string clean(text);
  std::erase_if(clean, [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; });
  return clean;
}

}  // namespace

std::vector<std::string> listEntries(std::string_view bytes) {
  const std::string text = decodeText(bytes);
  std::vector<std::string> entries;
  for (const std::string_view line : splitLines(text)) {
    if (entries.size() == kMaxListEntries) break;
    std::string entry = withoutControls(line);
    if (!trim(entry).empty()) entries.push_back(std::move(entry));
  }
  return entries;
}

std::vector<std::string> readListFile(const std::filesystem::path& file) {
  std::error_code ignored;
  return listEntries(readBeginning(file, ignored, kMostListBytes).value_or(""));
}

bool writeListFile(const std::filesystem::path& file, const std::vector<std::string>& entries) {
  std::string text;
  for (const std::string& entry : entries) text.append(withoutControls(entry)).append("\r\n");
  std::error_code ignored;
  std::filesystem::create_directories(file.parent_path(), ignored);
  return replaceFile(file, encodeText(text));
}

void gAddList(ListBox& list, std::string_view text, bool select) {
  text = trim(text);
  auto place = std::find(list.rows.begin(), list.rows.end(), text);
  const auto index = static_cast<int>(place - list.rows.begin());
  if (place == list.rows.end()) list.add(std::string(text));
  if (select) list.listIndex = index;
}

void gAddList(ComboBox& list, std::string_view text, bool select) {
  text = trim(text);
  if (std::find(list.entries.begin(), list.entries.end(), text) == list.entries.end()) list.entries.emplace_back(text);
  if (select) list.text = text;
}

void gListHistory(ComboBox& list, std::string_view text) {
  // A copy, since callers pass the box's own text.
  const std::string entry(trim(text));
  if (entry.empty()) return;
  if (std::find(list.entries.begin(), list.entries.end(), entry) == list.entries.end())
    list.entries.insert(list.entries.begin(), entry);
  if (list.entries.size() > kMaxListEntries) list.entries.resize(kMaxListEntries);
  list.text = entry;
}

}  // namespace quillmarden
