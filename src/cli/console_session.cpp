#include "cli/console_session.h"

#include <fmt/format.h>

#include <filesystem>
#include <vector>

#include "cli/console_host.h"
#include "common/message.h"
#include "common/text.h"
#include "repository/login.h"

namespace quillmarden {

namespace {

struct NamedTable {
  std::string id;
  std::string tableName;
  std::string japaneseName;
};

std::vector<NamedTable> tablesOfSystem(Run& run) {
  std::string sql = "SELECT a.ID, a.テーブル名, a.日本語名 FROM MAS_TABLEINFO AS a WHERE a.削除フラグ = 0";
  std::vector<ParameterValue> parameters;
  if (run.session.gCurrentSystemName == kAllSystems) {
    sql += " AND a.全システム共通 = True";
  } else {
    sql += " AND a.システム名 = paraSystem";
    parameters.push_back({"paraSystem", run.session.gCurrentSystemName});
  }
  std::vector<NamedTable> tables;
  for (Recordset rows = run.session.gDB->openRecordset(sql + " ORDER BY a.ID", parameters); !rows.eof();
       rows.moveNext()) {
    tables.push_back({std::string(rows.text(0)), std::string(trim(rows.text(1))), std::string(trim(rows.text(2)))});
  }
  return tables;
}

template <typename Fits>
std::vector<const NamedTable*> matches(const std::vector<NamedTable>& tables, Fits&& fits) {
  std::vector<const NamedTable*> found;
  for (const NamedTable& table : tables)
    if (fits(table.tableName) || fits(table.japaneseName)) found.push_back(&table);
  return found;
}

}  // namespace

std::string repositoryName(const std::string& given) {
  std::string upper = toUpper(std::filesystem::path(given).filename().string());
  bool complete = upper.find(".MDB") != std::string::npos || upper.find(".MDE") != std::string::npos;
  return complete ? given : given + ".mdb";
}

bool logIn(Run& run, bool sweep) {
  std::string user(run.options.users.empty() ? "admin" : trim(run.options.users.back()));
  if (trim(run.options.repository).empty()) return failure(run, "接続先ファイルが未設定です.") == kDone;
  if (user.empty()) return failure(run, "ユーザー名が未入力です.") == kDone;

  std::error_code ignored;
  // The login takes a file that bears just the typed name where none has the ending.
  const std::string& given = run.options.repository;
  if (const std::string made = repositoryName(given);
      made != given && (std::filesystem::exists(made, ignored) || !std::filesystem::is_regular_file(given, ignored)))
    writeMessage("リポジトリ", made);
  std::filesystem::path file = std::filesystem::absolute(given, ignored).lexically_normal();
  std::string folder = file.parent_path().string();
  std::string name = file.filename().string();

  openUserData(run.session, run.host);
  run.session.outputsStay = true;
  std::string message;
  if (!gConnectRepository(run.session, run.host, true, folder, name, user, message, run.isAdmin))
    return failure(run, message) == kDone;
  beginSession(run.session, run.host, user, folder, name, nullptr, sweep);
  return true;
}

void logOut(Run& run) {
  run.session.log.finish(run.host, run.session.gKeepLog);
  Log::prune(run.host);
  run.session.gDB.reset();
}

bool enterSystem(Run& run, std::string_view system) {
  if (system == kAllSystems) {
    run.session.gCurrentSystemName = system;
    return true;
  }
  if (selectSystem(run.session, run.host, system)) return true;
  failure(run, fmt::format("指定のシステムが存在しません.\n システム名 : {}", system));
  return false;
}

bool openTableList(Run& run, std::string_view system, frmTBList& list) {
  frmTBList_Load(run.session, run.host, list);
  if (!enterSystem(run, system)) return false;
  list.CmbSystem.text = run.session.gCurrentSystemName;
  return !pGetTableList(run.session, run.host, list);
}

std::optional<std::string> findTable(Run& run, std::string_view name) {
  std::vector<NamedTable> tables = tablesOfSystem(run);
  std::string_view wanted = trim(name);
  // A blank name is none, though tables of other tools may have one.
  auto found = matches(tables, [&](const std::string& own) { return !own.empty() && own == wanted; });
  if (found.empty() && !wanted.empty())
    found = matches(tables, [&](const std::string& own) { return equalsNoCase(own, wanted); });
  if (found.size() == 1) return found.front()->id;

  std::string text = found.empty() ? "指定のテーブルが存在しません." : "指定の名称は、複数のテーブルに該当します.";
  text += fmt::format("\n 名称 : {}", name);
  for (const NamedTable* table : found)
    text += fmt::format("\n ID = {} : {} : {}", table->id, table->japaneseName, table->tableName);
  failure(run, text);
  return std::nullopt;
}

bool openTable(Run& run, std::string_view name, frmTBDetail& detail) {
  std::optional<std::string> id = findTable(run, name);
  if (!id) return false;
  if (!pGet_TableID2TableDetails(run.session, run.host, detail, *id)) return true;
  return failure(run, fmt::format("テーブルの読み込みに失敗しました.\n ID = {}", *id)) == kDone;
}

}  // namespace quillmarden
