#pragma once

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <string>

#include "engine/database.h"
#include "support/scripted_host.h"

namespace quillmarden {

/// The number of the fault that the body ends with, 0 for none.
template <typename Body>
int faultNumber(Body&& body, std::string* text = nullptr) {
  try {
    body();
  } catch (const EngineError& fault) {
    if (text != nullptr) *text = fault.what();
    return fault.number();
  }
  return 0;
}

/// Runs the body in a child process and gives its exit status; what the body throws is status 99.
template <typename Body>
int inChild(Body&& body) {
  const pid_t child = ::fork();
  if (child == 0) {
    int status = 99;
    try {
      status = body();
    } catch (...) {
    }
    ::_exit(status);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 98;
}

inline std::string fileBytes(const std::string& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

inline void writeBytes(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

inline FieldDef field(const std::string& name, FieldType type, int size = 0) {
  FieldDef result;
  result.name = name;
  result.type = type;
  result.size = size;
  return result;
}

/// Tables as a Repository has them: an Auto key, a key of two numbers, a text key beside an Auto number.
class EngineTest : public ::testing::Test {
 protected:
  EngineTest() : db(Database::create(folder.file("t.mdb"))) {
    db.createTable({"INFO",
                    {field("ID", FieldType::Auto), field("テーブル名", FieldType::Text, 20),
                     field("略名", FieldType::Text, 5), field("概要", FieldType::Memo), field("数", FieldType::Integer),
                     field("容量", FieldType::Double), field("削除", FieldType::Flag), field("日付", FieldType::Date)},
                    {{"PrimaryKey", {"ID"}, true, true}}});
    db.createTable({"DET",
                    {field("ID", FieldType::Long), field("ROWNO", FieldType::Long),
                     field("項目名", FieldType::Text, 20), field("DomainID", FieldType::Long)},
                    {{"PrimaryKey", {"ID", "ROWNO"}, true, true}}});
    db.createTable({"SYS",
                    {field("ID", FieldType::Auto), field("システム名", FieldType::Text, 20)},
                    {{"PrimaryKey", {"システム名"}, true, true}}});
  }

  std::string path() const { return db.path(); }
  std::int64_t number(const std::string& sql) { return db.openRecordset(sql).integer(0); }

  TempFolder folder;
  Database db;
};

}  // namespace quillmarden
