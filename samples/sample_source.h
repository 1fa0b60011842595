#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace quillmarden {

// The texts that the sample is made from. A fault in one throws std::runtime_error with file and line.

/// A table of cells parted by "|", the first line naming the columns.
struct SourceSheet {
  std::string place;  ///< of the first line, for messages
  std::vector<std::string> columns;
  std::vector<std::map<std::string, std::string>> rows;  ///< by column name; a missing cell is ""
};

struct SourceIndex {
  std::string name;
  std::vector<std::string> fields;
  bool unique = false;
  bool brin = false;
  std::string remark;
};

struct SourceTable {
  std::string file;
  std::map<std::string, std::string> head;
  SourceSheet fields;
  std::vector<SourceIndex> indexes;
};

struct SourceValueList {
  std::string name;
  std::string category;
  std::string type;
  std::string remark;
  struct Entry {
    std::string value;
    std::string meaning;
    bool preset = false;
  };
  std::vector<Entry> entries;
};

SourceSheet readSheet(const std::filesystem::path& file);
SourceTable readTable(const std::filesystem::path& file);
/// The tables of a folder by file name.
std::vector<SourceTable> readTables(const std::filesystem::path& folder);
std::vector<SourceValueList> readValueLists(const std::filesystem::path& file);
/// The lines of a list, one entry each.
std::vector<std::string> readLines(const std::filesystem::path& file);

/// The parts of a text, each without blanks at its ends. A text of blanks has none.
std::vector<std::string> splitTrimmed(std::string_view text, char separator);

}  // namespace quillmarden
