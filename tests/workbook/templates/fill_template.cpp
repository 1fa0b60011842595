// Changes a workbook as a script tells, line by line on standard input, for tests that then look at the file with other
// programs' eyes. Words of a line are parted by tabs.
//   fill_template TEMPLATE RESULT

#include <functional>
#include <iostream>
#include <map>
#include <string>
#include <vector>

#include "workbook/workbook.h"

namespace quillmarden {
namespace {

using Words = std::vector<std::string>;

Words split(const std::string& line) {
  Words words;
  std::size_t at = 0;
  for (std::size_t tab; (tab = line.find('\t', at)) != std::string::npos; at = tab + 1) {
    words.push_back(line.substr(at, tab - at));
  }
  words.push_back(line.substr(at));
  return words;
}

int fill(const std::string& from, const std::string& to) {
  Workbook book = Workbook::open(from);
  Worksheet* sheet = &book.sheet(book.activeSheet());
  const std::map<std::string, std::function<void(const Words&)>> commands = {
      {"sheet", [&](const Words& words) { sheet = &book.sheet(book.findSheet(words.at(1))); }},
      {"text", [&](const Words& words) { sheet->setText(cellAt(words.at(1)), words.at(2)); }},
      {"number", [&](const Words& words) { sheet->setNumber(cellAt(words.at(1)), std::stod(words.at(2))); }},
      {"insert", [&](const Words& words) { sheet->insertRows(std::stoi(words.at(1)), std::stoi(words.at(2))); }},
      {"delete", [&](const Words& words) { sheet->deleteRows(std::stoi(words.at(1)), std::stoi(words.at(2))); }},
      {"copy", [&](const Words& words) { sheet->copyRow(std::stoi(words.at(1)), std::stoi(words.at(2))); }},
      {"rename", [&](const Words& words) { book.renameSheet(sheet->index(), words.at(1)); }},
  };
  for (std::string line; std::getline(std::cin, line);) {
    const Words words = split(line);
    commands.at(words.front())(words);
  }
  book.save(to);
  return 0;
}

}  // namespace
}  // namespace quillmarden

int main(int argc, char** argv) {
  if (argc != 3) {
    std::cerr << "usage: fill_template TEMPLATE RESULT\n";
    return 2;
  }
  try {
    return quillmarden::fill(argv[1], argv[2]);
  } catch (const std::exception& error) {
    std::cerr << error.what() << "\n";
    return 1;
  }
}
