// What an office program makes of our books. LibreOffice starts anew for each conversion, so there are few of these.

#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

#include "packages.h"
#include "workbook/convert.h"

namespace quillmarden {
namespace {

class OfficeTest : public testing::Test {
 protected:
  void SetUp() override {
    file = std::filesystem::temp_directory_path() / ("qm_office_" + std::to_string(::getpid()) + ".xlsx");
  }
  void TearDown() override { std::filesystem::remove(file); }

  std::filesystem::path file;
};

TEST_F(OfficeTest, readsWhatWasChanged) {
  Workbook book = templateBook();
  Worksheet& sheet = book.sheet(0);
  sheet.deleteRows(10, 12);
  sheet.setText(cellAt("A1"), "a _x0041_ b\nc");
  sheet.setFormula(cellAt("G5"), "SUM(C5:C9)+C17");
  book.renameSheet(0, "改 & 名");
  book.copySheetFrom(book, 0, 1);
  book.save(file);
  try {
    const Workbook read = Workbook::fromBytes(convertToPackage(file));
    EXPECT_EQ(read.sheet(0).name(), "改 & 名");
    EXPECT_EQ(read.sheet(1).name(), "改 & 名 (2)");
    EXPECT_EQ(read.sheet(0).text(cellAt("A1")), "a _x0041_ b\nc");
    EXPECT_EQ(read.sheet(0).formula(cellAt("G5")), "SUM(C5:C9)+C17");
    EXPECT_EQ(read.sheet(0).value(cellAt("C17")), CellValue(7.0));
    EXPECT_EQ(read.sheet(1).mergedRange(cellAt("D22")), rangeAt("D22:E22"));
  } catch (const WorkbookError& error) {
    if (error.fault() == WorkbookFault::ConverterMissing) GTEST_SKIP() << error.what();
    throw;
  }
}

TEST_F(OfficeTest, theOldBinaryFormIsConverted) {
  const auto folder = std::filesystem::temp_directory_path() / ("qm_old_" + std::to_string(::getpid()));
  Workbook book = templateBook();
  book.save(file);
  const std::string command = "soffice -env:UserInstallation=file://" + (folder / "profile").string() +
                              " --headless --convert-to xls --outdir " + folder.string() + " " + file.string() +
                              " >/dev/null 2>&1";
  const bool made = std::system(command.c_str()) == 0;
  const auto old = folder / file.filename().replace_extension(".xls");
  if (made) {
    EXPECT_EQ(errorOf([&] { Workbook::open(old); }).fault(), WorkbookFault::OldBinaryForm);
    const Workbook read = Workbook::fromBytes(convertToPackage(old));
    EXPECT_EQ(read.sheet(0).name(), "表紙");
    EXPECT_EQ(read.sheet(0).text(cellAt("A1")), "題名");
    EXPECT_EQ(read.sheet(0).mergedRange(cellAt("B10")), rangeAt("B10:C12"));
  }
  std::filesystem::remove_all(folder);
  if (!made) GTEST_SKIP() << "LibreOffice is not installed";
}

TEST_F(OfficeTest, conversionsThatFail) {
  EXPECT_EQ(errorOf([&] { convertToPackage(file); }).fault(), WorkbookFault::NotFound);
  const char* path = std::getenv("PATH");
  const std::string before = path == nullptr ? "" : path;
  std::ofstream(file) << "x";
  ::setenv("PATH", "/nowhere", 1);
  const WorkbookError missing = errorOf([&] { convertToPackage(file); });
  ::setenv("PATH", before.c_str(), 1);
  // A program that never ends is ended at the limit, with the folder that it was given.
  const auto folder = std::filesystem::temp_directory_path() / ("qm_slow_" + std::to_string(::getpid()));
  std::filesystem::create_directory(folder);
  std::ofstream(folder / "soffice") << "#!/bin/sh\nsleep 30\n";
  std::filesystem::permissions(folder / "soffice", std::filesystem::perms::owner_all);
  ::setenv("PATH", (folder.string() + ":" + before).c_str(), 1);
  const WorkbookError slow = errorOf([&] { convertToPackage(file, std::chrono::seconds(1)); });
  ::setenv("PATH", before.c_str(), 1);
  std::filesystem::remove_all(folder);
  EXPECT_EQ(missing.fault(), WorkbookFault::ConverterMissing);
  EXPECT_EQ(slow.fault(), WorkbookFault::ConversionFailed);
}

}  // namespace
}  // namespace quillmarden
