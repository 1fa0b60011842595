#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/sql_text.h"
#include "repository/schema.h"
#include "repository/session.h"
#include "support/scripted_host.h"

namespace quillmarden {

/// A session of "admin" on a new Repository, and short ways to fill and read it.
class OpenRepositoryTest : public testing::Test {
 protected:
  void SetUp() override {
    session.gDB = std::make_unique<Database>(createRepository(scripted.folder.file("tableinf.mdb")));
    session.gLoginUser = "admin";
    openUserData(session, scripted.host);
  }

  Database& database() { return *session.gDB; }

  void addSystem(const std::string& name, const std::string& kind) {
    database().execute("INSERT INTO MAS_SYSTEM (システム名, databasetype, 修正許可, 出力しない, 作成者) VALUES (" +
                       sqlText(name) + ", " + sqlText(kind) + ", -1, 0, 'admin')");
  }

  /// A live, editable table; its ID.
  std::string addTable(const std::string& system, const std::string& kind, const std::string& name,
                       const std::string& japanese) {
    database().execute(
        "INSERT INTO MAS_TABLEINFO (システム名, ファイル種別, テーブル名, 日本語名, 削除フラグ, 修正許可) "
        "VALUES (" +
        sqlText(system) + ", " + sqlText(kind) + ", " + sqlText(name) + ", " + sqlText(japanese) + ", 0, -1)");
    return cell("SELECT Max(ID) AS newest FROM MAS_TABLEINFO");
  }

  /// The rows of a statement: cells parted by "|", Null as "-".
  std::vector<std::string> rows(std::string_view sql) {
    std::vector<std::string> found;
    for (Recordset set = database().openRecordset(sql); !set.eof(); set.moveNext()) {
      std::string line;
      for (int column = 0; column < set.fieldCount(); ++column) {
        if (column > 0) line += "|";
        line += set.isNull(column) ? "-" : std::string(set.text(column));
      }
      found.push_back(line);
    }
    return found;
  }
  std::string cell(std::string_view sql) {
    const std::vector<std::string> found = rows(sql);
    return found.empty() ? "no row" : found.front();
  }

  ScriptedHost scripted;
  Session session;
};

}  // namespace quillmarden
