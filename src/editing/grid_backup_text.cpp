#include "editing/grid_backup_text.h"

#include <charconv>

#include "common/text_file.h"

namespace quillmarden {

namespace {

constexpr std::string_view kCopyForm = "1";
constexpr std::string_view kEnd = "#end";

void appendEscaped(std::string& text, std::string_view value) {
  for (const char c : value) {
    switch (c) {
      case '\t':
        text += "\\t";
        break;
      case '\n':
        text += "\\n";
        break;
      case '\r':
        text += "\\r";
        break;
      case '\\':
        text += "\\\\";
        break;
      default:
        text += c;
    }
  }
}

std::string unescaped(std::string_view text) {
  std::string value;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '\\' || i + 1 == text.size()) {
      value += text[i];
      continue;
    }
    const char c = text[++i];
    value += c == 't' ? '\t' : c == 'n' ? '\n' : c == 'r' ? '\r' : c;
  }
  return value;
}

void line(std::string& text, std::string_view name, std::string_view value) {
  text.append("#").append(name).append("\t");
  appendEscaped(text, value);
  text += "\n";
}

std::string tagList(const std::vector<SpreadRow>& rows) {
  std::string tags;
  for (const SpreadRow& row : rows) tags += (tags.empty() ? "" : ",") + std::to_string(row.tag);
  return tags;
}

/// The numbers of a list "1,0,3"; nothing when one is none.
std::optional<std::vector<long>> parseTags(std::string_view list) {
  std::vector<long> tags;
  while (!list.empty()) {
    const std::size_t comma = std::min(list.find(','), list.size());
    long tag = 0;
    const auto read = std::from_chars(list.data(), list.data() + comma, tag);
    if (read.ec != std::errc() || read.ptr != list.data() + comma) return std::nullopt;
    tags.push_back(tag);
    list.remove_prefix(std::min(comma + 1, list.size()));
  }
  return tags;
}

SpreadRow parseRow(std::string_view text, long tag) {
  SpreadRow row;
  row.tag = tag;
  for (;;) {
    const std::size_t tab = text.find('\t');
    row.cells.emplace_back().text = unescaped(text.substr(0, tab));
    if (tab == std::string_view::npos) return row;
    text.remove_prefix(tab + 1);
  }
}

/// Takes a head line. False for a name that is none of the head's.
bool takeHead(GridCopy& copy, std::string& form, std::string& tags, std::string_view name, const std::string& value) {
  if (name == "grid")
    form = value;
  else if (name == "repository")
    copy.head.repository = value;
  else if (name == "system")
    copy.head.system = value;
  else if (name == "table")
    copy.head.tableId = value;
  else if (name == "name")
    copy.head.tableName = value;
  else if (name == "japanese")
    copy.head.japaneseName = value;
  else if (name == "kind")
    copy.head.kind = value;
  else if (name == "time")
    copy.head.time = value;
  else if (name == "user")
    copy.head.user = value;
  else if (name == "personal")
    copy.personal = value == "1";
  else if (name == "loaded")
    copy.loaded = parseLoadedRows(value).value_or(LoadedRows{});
  else if (name == "tags")
    tags = value;
  else
    return false;
  return true;
}

}  // namespace

std::string gridCopyText(const GridCopy& copy) {
  std::string text;
  line(text, "grid", kCopyForm);
  line(text, "repository", copy.head.repository);
  line(text, "system", copy.head.system);
  line(text, "table", copy.head.tableId);
  line(text, "name", copy.head.tableName);
  line(text, "japanese", copy.head.japaneseName);
  line(text, "kind", copy.head.kind);
  line(text, "time", copy.head.time);
  line(text, "user", copy.head.user);
  line(text, "personal", copy.personal ? "1" : "0");
  if (copy.loaded.known) line(text, "loaded", loadedRowsText(copy.loaded));
  line(text, "tags", tagList(copy.rows));
  for (const SpreadRow& row : copy.rows) {
    for (std::size_t i = 0; i < row.cells.size(); ++i) {
      if (i > 0) text += "\t";
      appendEscaped(text, row.cells[i].text);
    }
    text += "\n";
  }
  return text.append(kEnd).append("\n");
}

std::optional<GridCopy> parseGridCopy(std::string_view text) {
  std::vector<std::string_view> lines = splitLines(text);
  if (lines.empty() || lines.back() != kEnd) return std::nullopt;
  lines.pop_back();
  GridCopy copy;
  std::string form;
  std::string tagText;
  std::size_t at = 0;
  // The tags end the head: a row may well begin with "#".
  for (bool head = true; head && at < lines.size(); ++at) {
    const std::size_t tab = lines[at].find('\t');
    if (!lines[at].starts_with('#') || tab == std::string_view::npos) return std::nullopt;
    const std::string_view name = lines[at].substr(1, tab - 1);
    if (!takeHead(copy, form, tagText, name, unescaped(lines[at].substr(tab + 1)))) return std::nullopt;
    head = name != "tags";
  }
  const auto tags = parseTags(tagText);
  if (form != kCopyForm || copy.head.tableId.empty() || !tags || tags->size() != lines.size() - at) return std::nullopt;
  for (std::size_t i = 0; i < tags->size(); ++i) copy.rows.push_back(parseRow(lines[at + i], (*tags)[i]));
  copy.head.rows = static_cast<int>(copy.rows.size());
  return copy;
}

}  // namespace quillmarden
