#pragma once

#include <gtest/gtest.h>
#include <zip.h>

#include <algorithm>
#include <filesystem>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "support/files.h"
#include "workbook/workbook.h"

namespace quillmarden {

using Parts = std::vector<std::pair<std::string, std::string>>;

/// A zip file of these entries under any names, whether a reader should like them or not.
inline std::string zipOf(const Parts& parts) {
  zip_error_t error;
  zip_source_t* target = zip_source_buffer_create(nullptr, 0, 0, &error);
  zip_source_keep(target);
  zip_t* zip = zip_open_from_source(target, ZIP_TRUNCATE, &error);
  for (const auto& [name, bytes] : parts)
    zip_file_add(zip, name.c_str(), zip_source_buffer(zip, bytes.data(), bytes.size(), 0), ZIP_FL_ENC_UTF_8);
  zip_close(zip);
  zip_source_open(target);
  zip_stat_t state;
  zip_source_stat(target, &state);
  std::string bytes(static_cast<std::size_t>(state.size), '\0');
  zip_source_read(target, bytes.data(), bytes.size());
  zip_source_close(target);
  zip_source_free(target);
  return bytes;
}

/// The files below a folder of the test data as parts, in the order of their names.
inline Parts partsIn(const std::string& folder) {
  const std::filesystem::path root = std::filesystem::path(QM_TEST_DATA) / folder;
  Parts parts;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(root))
    if (entry.is_regular_file())
      parts.emplace_back(entry.path().lexically_relative(root).string(), readFile(entry.path()));
  std::sort(parts.begin(), parts.end());
  return parts;
}

/// The book that the files below tests/workbook/template are the parts of.
inline Workbook templateBook() { return Workbook::fromBytes(zipOf(partsIn("template"))); }

inline std::map<std::string, std::string> partsOf(const std::string& bytes) {
  const Package package = Package::fromBytes(bytes);
  std::map<std::string, std::string> parts;
  for (const std::string& name : package.names()) parts[name] = package.bytes(name);
  return parts;
}

/// Compares a changed template part by part: those in the expected folder are as there, a part named in `gone` is not
/// there, and all others are as in the template.
inline void expectParts(const Workbook& book, const std::string& expectedFolder, const std::vector<std::string>& gone) {
  std::map<std::string, std::string> expected;
  for (auto& [name, bytes] : partsIn("template")) expected[name] = bytes;
  for (auto& [name, bytes] : partsIn(expectedFolder)) expected[name] = bytes;
  for (const std::string& name : gone) expected.erase(name);
  const auto actual = partsOf(book.bytes());
  for (const auto& [name, bytes] : actual) {
    EXPECT_TRUE(expected.contains(name)) << "unexpected part " << name;
    EXPECT_EQ(bytes, expected[name]) << name;
  }
  for (const auto& [name, bytes] : expected) EXPECT_TRUE(actual.contains(name)) << "missing part " << name;
}

/// What the call throws; a failure of the test when it throws nothing.
template <class Call>
WorkbookError errorOf(const Call& call) {
  try {
    call();
  } catch (const WorkbookError& error) {
    return error;
  }
  ADD_FAILURE() << "nothing was thrown";
  return WorkbookError(WorkbookFault::BadValue, "", "");
}

}  // namespace quillmarden
