#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <string_view>

#include "workbook/workbook.h"

namespace quillmarden {
namespace {

std::string fileBytes(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

/// The template of the workbook tests, with one part's bytes in place of its own.
std::string templateWith(const std::string& part, std::string_view bytes) {
  static const Package base = [] {
    Package package;
    const std::filesystem::path root(QM_TEMPLATE);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(root))
      if (entry.is_regular_file()) package.set(entry.path().lexically_relative(root).string(), fileBytes(entry.path()));
    package.editContentTypes() = ContentTypes::parse(package.bytes("[Content_Types].xml"));
    return package;
  }();
  Package package = base;
  package.set(part, std::string(bytes));
  return package.zip();
}

void touch(Workbook& book) {
  Worksheet& sheet = book.sheet(0);
  sheet.setText({5, 3}, "x");
  sheet.setEntered({6, 3}, sheet.text({1, 1}));
  sheet.changeStyle(rangeAt("A1:C3"), [](CellStyle& style) { style.fill = CellFill::solid(CellColor::index(38)); });
  sheet.insertRows(7, 2);
  sheet.deleteRows(10, 14);
  sheet.copyRow(5, 6);
  sheet.setColumnWidth(2, 3, 10);
  PageSetup setup = sheet.pageSetup();
  setup.header.left = "&A";
  sheet.setPageSetup(setup);
  sheet.select({1, 1});
  book.renameSheet(0, "new name");
  book.copySheetFrom(book, 0, 0);
  book.setActiveSheet(0);
  book.drawingPart(0);
  book.setProperties({.title = "t"});
}

void readAll(const Workbook& book) {
  for (int index = 0; index < book.sheetCount(); ++index) {
    if (!book.isWorksheet(index)) continue;
    const Worksheet& sheet = book.sheet(index);
    for (int row = 1; row <= 10; ++row)
      for (int column = 1; column <= 5; ++column) sheet.text({row, column});
    sheet.pageSetup();
  }
}

}  // namespace
}  // namespace quillmarden

// A zip file of any bytes, or, behind a line with a part's name, any bytes as that part of a good book. A book that
// can be opened and changed is one that can be opened again after it was written.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace quillmarden;
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::size_t line = input.substr(0, 60).find('\n');
  const bool part = line != std::string_view::npos && input.starts_with("xl/");
  const PackageLimits limits{1U << 24, 1U << 26, 1000, 400};
  std::string written;
  try {
    Workbook book = Workbook::fromBytes(
        part ? templateWith(std::string(input.substr(0, line)), input.substr(line + 1)) : std::string(input), limits);
    readAll(book);
    touch(book);
    written = book.bytes();
  } catch (const WorkbookError&) {
    return 0;
  }
  try {
    readAll(Workbook::fromBytes(written));
  } catch (const WorkbookError&) {
    std::abort();
  }
  return 0;
}
