#include "common/ini_file.h"

#include <algorithm>
#include <system_error>

#include "common/text.h"
#include "common/text_file.h"

namespace quillmarden {

namespace {

std::string_view strip(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

bool isHeading(std::string_view line) { return strip(line).starts_with('['); }

std::string_view headingName(std::string_view line) {
  line = strip(line).substr(1);
  return strip(line.substr(0, line.rfind(']')));
}

/// The key of a line, "" for a line that sets none.
std::string_view keyOf(std::string_view line) {
  const std::string_view text = strip(line);
  if (text.starts_with(';') || text.starts_with('[')) return {};
  const std::size_t sign = text.find('=');
  return sign == std::string_view::npos ? std::string_view() : strip(text.substr(0, sign));
}

bool isQuoted(std::string_view value) {
  return value.size() >= 2 && (value.front() == '"' || value.front() == '\'') && value.back() == value.front();
}

std::string_view valueOf(std::string_view line) {
  std::string_view value = strip(line.substr(line.find('=') + 1));
  if (isQuoted(value)) value = strip(value.substr(1, value.size() - 2));
  return value;
}

bool isControl(char c) { return static_cast<unsigned char>(c) < 0x20; }

bool isUsableName(std::string_view name, std::string_view forbidden) {
  return !name.empty() && strip(name) == name && std::none_of(name.begin(), name.end(), isControl) &&
         name.find_first_of(forbidden) == std::string_view::npos;
}

}  // namespace

IniText::IniText(std::string_view bytes) {
  utf8_ = bytes.starts_with(kUtf8Mark);
  if (utf8_) bytes.remove_prefix(kUtf8Mark.size());
  std::string clean(bytes);
  std::erase(clean, '\0');
  for (const std::string_view raw : splitLines(clean)) {
    if (utf8_) {
      lines_.push_back({std::string(raw), {}});
      continue;
    }
    Line line{fromCp932(raw), {}};
    if (toCp932(line.text) != raw) line.raw = raw;
    lines_.push_back(std::move(line));
  }
}

bool IniText::nextSection(std::string_view section, std::size_t start, std::size_t& first, std::size_t& last) const {
  const auto heads = [&](const Line& line) {
    return isHeading(line.text) && equalsNoCase(headingName(line.text), section);
  };
  const auto begin = lines_.begin();
  const auto heading = std::find_if(begin + static_cast<std::ptrdiff_t>(start), lines_.end(), heads);
  if (heading == lines_.end()) return false;
  const auto end = std::find_if(heading + 1, lines_.end(), [](const Line& line) { return isHeading(line.text); });
  first = static_cast<std::size_t>(heading + 1 - begin);
  last = static_cast<std::size_t>(end - begin);
  return true;
}

std::size_t IniText::find(std::string_view section, std::string_view key) const {
  std::size_t first = 0;
  std::size_t last = 0;
  while (nextSection(section, last, first, last))
    for (std::size_t i = first; i < last; ++i)
      if (const std::string_view name = keyOf(lines_[i].text); !name.empty() && equalsNoCase(name, key)) return i;
  return lines_.size();
}

std::string IniText::get(std::string_view section, std::string_view key) const {
  const std::size_t line = find(strip(section), strip(key));
  return line == lines_.size() ? std::string() : std::string(valueOf(lines_[line].text));
}

bool IniText::put(std::string_view section, std::string_view key, std::string_view value) {
  if (!isUsableName(section, "[]") || !isUsableName(key, "=") || key.find_first_of(";[") == 0) return false;
  std::string clean(value);
  std::replace_if(clean.begin(), clean.end(), isControl, ' ');
  const std::string_view stripped = strip(clean);
  // Reading takes a pair of quotes off, so a value's own pair needs a second one around it.
  const std::string quote = isQuoted(stripped) ? "\"" : "";
  std::string text = std::string(key) + '=' + quote + std::string(stripped) + quote;

  if (const std::size_t line = find(section, key); line < lines_.size()) {
    if (valueOf(lines_[line].text) == valueOf(text)) return false;
    lines_[line] = {std::move(text), {}};
    return true;
  }
  std::size_t first = 0;
  std::size_t last = 0;
  if (!nextSection(section, 0, first, last)) {
    lines_.push_back({'[' + std::string(section) + ']', {}});
    lines_.push_back({std::move(text), {}});
    return true;
  }
  while (last > first && strip(lines_[last - 1].text).empty()) --last;
  lines_.insert(lines_.begin() + static_cast<std::ptrdiff_t>(last), Line{std::move(text), {}});
  return true;
}

std::string IniText::bytes() const {
  std::string cp932;
  std::string utf8(kUtf8Mark);
  std::u32string lost;
  for (const Line& line : lines_) {
    cp932.append(line.raw.empty() ? toCp932(line.text, &lost) : line.raw).append("\r\n");
    utf8.append(line.text).append("\r\n");
  }
  return utf8_ || !lost.empty() ? utf8 : cp932;
}

IniFile::IniFile(std::filesystem::path file) : file_(std::move(file)) {
  std::error_code ignored;
  text_ = IniText(readFile(file_, ignored).value_or(""));
}

void IniFile::put(std::string_view section, std::string_view key, std::string_view value) {
  putAll(section, {{std::string(key), std::string(value)}});
}

void IniFile::putAll(std::string_view section, const std::vector<std::pair<std::string, std::string>>& values) {
  // Another screen or process may have written since: only these keys are ours.
  std::error_code error;
  if (const auto bytes = readFile(file_, error))
    text_ = IniText(*bytes);
  else if (error == std::errc::no_such_file_or_directory)
    text_ = IniText();
  bool changed = false;
  for (const auto& [key, value] : values) changed = text_.put(section, key, value) || changed;
  // A file that is there and cannot be read holds settings that a rewrite would drop.
  const bool unreadable = error && error != std::errc::no_such_file_or_directory;
  if (!changed || unreadable) return;
  std::filesystem::create_directories(file_.parent_path(), error);
  replaceFile(file_, text_.bytes());
}

}  // namespace quillmarden
