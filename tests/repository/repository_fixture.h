#pragma once

#include <gtest/gtest.h>

#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "repository/login.h"
#include "repository/schema.h"
#include "repository/session.h"
#include "support/scripted_host.h"

namespace quillmarden {

/// A host, a session and a Repository "tableinf.mdb" in the program's folder.
class RepositoryTest : public testing::Test {
 protected:
  std::string file() const { return (scripted.host.machine.programFolder / "tableinf.mdb").string(); }
  std::string programFolder() const { return scripted.host.machine.programFolder.string(); }

  /// Runs the statements of tests/repository/old/<name>, one a line, on a new file.
  void loadOld(const std::string& name) {
    Database database = Database::create(file());
    std::ifstream lines(std::string(QM_TEST_DATA) + "/old/" + name);
    ASSERT_TRUE(lines) << name;
    inTransaction(database, [&] {
      for (std::string line; std::getline(lines, line);)
        if (!line.empty() && !line.starts_with("--")) database.execute(line);
    });
  }

  /// Connects as the login screen does, up to the upgrade steps.
  ::testing::AssertionResult connect(std::string_view user = "admin") {
    openUserData(session, scripted.host);
    std::string message;
    bool isAdmin = false;
    if (gConnectRepository(session, scripted.host, false, "", "tableinf.mdb", user, message, isAdmin))
      return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << message;
  }

  void logIn(std::string_view user = "admin") {
    ASSERT_TRUE(connect(user));
    beginSession(session, scripted.host, user, programFolder(), "tableinf.mdb");
  }

  /// The rows of a statement: cells parted by "|", Null as "-".
  static std::vector<std::string> rows(Database& database, std::string_view sql,
                                       const std::vector<ParameterValue>& parameters = {}) {
    std::vector<std::string> found;
    for (Recordset set = database.openRecordset(sql, parameters); !set.eof(); set.moveNext()) {
      std::string line;
      for (int column = 0; column < set.fieldCount(); ++column) {
        if (column > 0) line += "|";
        line += set.isNull(column) ? "-" : std::string(set.text(column));
      }
      found.push_back(line);
    }
    return found;
  }
  std::vector<std::string> rows(std::string_view sql) { return rows(*session.gDB, sql); }
  std::string cell(std::string_view sql) {
    const std::vector<std::string> found = rows(sql);
    return found.empty() ? "no row" : found.front();
  }

  /// All that a file holds: definitions, rows and queries, to tell whether a step changed anything.
  static std::vector<std::string> contents(Database& database) {
    std::vector<std::string> all;
    const std::vector<TableDef> tables = database.tableDefs();
    for (const TableDef& table : tables) {
      for (const FieldDef& field : table.fields)
        all.push_back(table.name + "." + field.name + " " + std::to_string(static_cast<int>(field.type)) + " " +
                      std::to_string(field.size));
      for (const std::string& row : rows(database, "Select * From [" + table.name + "]"))
        all.push_back(table.name + ": " + row);
    }
    for (const QueryDef& query : database.queryDefs()) all.push_back(query.name + " = " + query.sql);
    return all;
  }

  ScriptedHost scripted;
  Session session;
};

}  // namespace quillmarden
