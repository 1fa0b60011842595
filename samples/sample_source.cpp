#include "sample_source.h"

#include <fmt/format.h>

#include <algorithm>
#include <fstream>
#include <stdexcept>

#include "common/text.h"

namespace quillmarden {

namespace {

struct Line {
  int number = 0;
  std::string text;
};

/// All lines without remarks; blank lines stay, they part sections.
std::vector<Line> linesOf(const std::filesystem::path& file) {
  std::ifstream stream(file);
  if (!stream) throw std::runtime_error(fmt::format("{}: cannot be read", file.string()));
  std::vector<Line> lines;
  Line line;
  while (std::getline(stream, line.text)) {
    ++line.number;
    if (!line.text.starts_with('#')) lines.push_back(line);
  }
  return lines;
}

[[noreturn]] void fault(const std::filesystem::path& file, int line, std::string_view text) {
  throw std::runtime_error(fmt::format("{}:{}: {}", file.string(), line, text));
}

using LineIterator = std::vector<Line>::const_iterator;

/// Reads a sheet up to the next blank line.
SourceSheet sheetFrom(const std::filesystem::path& file, LineIterator& line, LineIterator end) {
  SourceSheet sheet;
  if (line == end) return sheet;
  sheet.place = fmt::format("{}:{}", file.string(), line->number);
  sheet.columns = splitTrimmed(line->text, '|');
  for (++line; line != end && !trim(line->text).empty(); ++line) {
    std::vector<std::string> cells = splitTrimmed(line->text, '|');
    if (cells.size() > sheet.columns.size()) fault(file, line->number, "more cells than headings");
    cells.resize(sheet.columns.size());
    auto& row = sheet.rows.emplace_back();
    for (std::size_t i = 0; i < cells.size(); ++i) row[sheet.columns[i]] = gReplaceAll(cells[i], "\\n", "\r\n");
  }
  return sheet;
}

SourceIndex indexFrom(const std::filesystem::path& file, const Line& line) {
  std::vector<std::string> cells = splitTrimmed(line.text, '|');
  if (cells.size() != 5 || cells[0] != "索引") fault(file, line.number, "no index line");
  return {cells[1], splitTrimmed(cells[2], ','), cells[3] == "UNIQUE", cells[3] == "BRIN", cells[4]};
}

}  // namespace

std::vector<std::string> splitTrimmed(std::string_view text, char separator) {
  std::vector<std::string> parts;
  if (trim(text).empty()) return parts;
  for (;;) {
    std::size_t end = text.find(separator);
    parts.emplace_back(trim(text.substr(0, end)));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

SourceSheet readSheet(const std::filesystem::path& file) {
  const std::vector<Line> lines = linesOf(file);
  LineIterator line = lines.begin();
  return sheetFrom(file, line, lines.end());
}

SourceTable readTable(const std::filesystem::path& file) {
  const std::vector<Line> lines = linesOf(file);
  SourceTable table;
  table.file = file.string();
  LineIterator line = lines.begin();
  for (; line != lines.end() && !trim(line->text).empty(); ++line) {
    std::size_t colon = line->text.find(':');
    if (colon == std::string::npos) fault(file, line->number, "a head line is \"column: value\"");
    std::string value(trim(std::string_view(line->text).substr(colon + 1)));
    table.head[std::string(trim(std::string_view(line->text).substr(0, colon)))] = gReplaceAll(value, "\\n", "\r\n");
  }
  if (line != lines.end()) ++line;
  table.fields = sheetFrom(file, line, lines.end());
  for (; line != lines.end(); ++line)
    if (!trim(line->text).empty()) table.indexes.push_back(indexFrom(file, *line));
  return table;
}

std::vector<SourceTable> readTables(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::directory_iterator(folder))
    if (entry.path().extension() == ".txt") files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  std::vector<SourceTable> tables;
  for (const auto& file : files) tables.push_back(readTable(file));
  return tables;
}

std::vector<SourceValueList> readValueLists(const std::filesystem::path& file) {
  std::vector<SourceValueList> lists;
  for (const Line& line : linesOf(file)) {
    std::vector<std::string> cells = splitTrimmed(line.text, '|');
    if (cells.empty()) continue;
    cells.resize(4);
    if (!line.text.starts_with(' ')) {
      lists.push_back({cells[0], cells[1], cells[2], cells[3], {}});
    } else if (lists.empty()) {
      fault(file, line.number, "an entry without a list");
    } else {
      lists.back().entries.push_back({cells[0], cells[1], cells[2] == "○"});
    }
  }
  return lists;
}

std::vector<std::string> readLines(const std::filesystem::path& file) {
  std::vector<std::string> entries;
  for (const Line& line : linesOf(file))
    if (!trim(line.text).empty()) entries.emplace_back(trim(line.text));
  return entries;
}

}  // namespace quillmarden
