// Each folder <kind>/<case> holds a table (grid.tsv: header values, an empty line, grid rows) and the script that it
// must give (expected.sql, LF for readability). setup.sql fills the Repository, options.txt sets switch and System.

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <map>
#include <sstream>

#include "common/text.h"
#include "repository/schema.h"
#include "sqlgen/generators.h"
#include "support/files.h"
#include "support/scripted_host.h"

namespace quillmarden {
namespace {

namespace fs = std::filesystem;

std::vector<std::string> split(std::string_view text, char separator) {
  std::vector<std::string> parts;
  while (true) {
    const std::size_t end = text.find(separator);
    parts.emplace_back(text.substr(0, end));
    if (end == std::string_view::npos) return parts;
    text.remove_prefix(end + 1);
  }
}

/// The file's lines; none for a missing file.
std::vector<std::string> lines(const fs::path& file) {
  std::vector<std::string> all = split(readFile(file), '\n');
  if (all.back().empty()) all.pop_back();
  return all;
}

std::string unescaped(std::string_view text) { return gReplaceAll(gReplaceAll(text, "\\r", "\r"), "\\n", "\n"); }

std::string& headerField(frmTBDetail& table, const std::string& name) {
  const std::map<std::string, std::string*> fields = {
      {"テーブル名", &table.txtTableNameENG.text},
      {"日本語名", &table.txtTableNameJPN.text},
      {"ID", &table.lblID.caption},
      {"システム名", &table.lblSystemName.caption},
      {"略名", &table.lblRyaku.caption},
      {"分類", &table.lblBunrui.caption},
      {"格納先", &table.lblHost.caption},
      {"ファイル種別", &table.lblFileType.caption},
      {"SQL文初回作成日", &table.lblFirstSQL.caption},
      {"SQL文最新作成日", &table.lblNewSQL.caption},
      {"作成回数", &table.lblNumSQL.caption},
      {"概要", &table.TxtMemo.text},
      {"ORA_INITIAL", &table.lblNum[0].caption},
      {"ORA_NEXT", &table.lblNum[1].caption},
      {"ORA_MINEXTENTS", &table.lblNum[2].caption},
      {"ORA_MAXEXTENTS", &table.lblNum[3].caption},
      {"ORA_PCTINCREASE", &table.lblNum[4].caption},
      {"ORA_PCTFREE", &table.lblNum[5].caption},
      {"ORA_PCTUSED", &table.lblNum[6].caption},
      {"ORA_TABLESPASE", &table.lblTbSpace.caption},
      {"partition_field", &table.txtPartitionRead.text},
  };
  return *fields.at(name);
}

frmTBDetail readTable(const fs::path& file) {
  frmTBDetail table;
  table.lblBRIN.visible = false;
  table.Spread.setColumns(std::vector<SpreadColumn>(field_col::kCount));
  bool inGrid = false;
  int row = 0;
  for (const std::string& line : lines(file)) {
    std::vector<std::string> cells = split(line, '\t');
    if (inGrid) {
      ++row;
      for (std::size_t i = 0; i < cells.size(); ++i)
        table.Spread.setText(static_cast<int>(i) + 1, row, unescaped(cells[i]));
    } else if (line.empty()) {
      inGrid = true;
    } else if (cells.at(0) == "brinindex") {
      table.lblBRIN.visible = cells.at(1) != "0";
    } else {
      headerField(table, cells.at(0)) = unescaped(cells.at(1));
    }
  }
  return table;
}

struct Case {
  std::string kind;
  std::string name;
};

std::vector<Case> allCases() {
  std::vector<Case> cases;
  for (const auto& entry : fs::recursive_directory_iterator(QM_TEST_DATA))
    if (entry.path().filename() == "grid.tsv")
      cases.push_back({entry.path().parent_path().parent_path().filename(), entry.path().parent_path().filename()});
  return cases;
}

const std::map<std::string, void (*)(const Generation&, ScriptText&)> kGenerators = {
    {"oracle", pCreateCurrentTable2Sql4Oracle},         {"teradata", pCreateCurrentTable2Sql4Tera},
    {"sql_server", pCreateCurrentTable2Sql4SQLServer},  {"mysql", pCreateCurrentTable2Sql4MySQL},
    {"postgresql", pCreateCurrentTable2Sql4PostgreSQL}, {"view", pCreateCurrentTable2SqlView},
};

class GeneratorTest : public testing::TestWithParam<Case> {};

TEST_P(GeneratorTest, WritesTheExpectedScript) {
  const fs::path folder = fs::path(QM_TEST_DATA) / GetParam().kind / GetParam().name;
  ScriptedHost host;
  Session session;
  session.gDB = std::make_unique<Database>(createRepository(host.folder.file("r.mdb")));
  for (const std::string& statement : lines(folder / "setup.sql")) session.gDB->execute(statement);

  const frmTBDetail table = readTable(folder / "grid.tsv");
  SystemRecord system;
  system.name = table.lblSystemName.caption;
  CheckListCache checkLists;
  Generation generation{session, host.host, table, system, checkLists};
  AppSettings& settings = session.settings;
  for (const std::string& line : lines(folder / "options.txt")) {
    const std::string name = line.substr(0, line.find('='));
    const std::string value = line.substr(name.size() + 1);
    const std::map<std::string, std::function<void()>> options = {
        {"switch", [&] { generation.optionSwitch = value == "on"; }},
        {"backup", [&] { generation.backup = value == "1"; }},
        {"TableSpace", [&] { system.tableSpace = value; }},
        {"IndexSpace", [&] { system.indexSpace = value; }},
        {"ODBCSouce", [&] { system.odbcSource = value; }},
        {"databasetype", [&] { system.databaseType = value; }},
        {"CreateSql2DropSQL", [&] { settings.createSql2DropSQL = value == "1"; }},
        {"CreateSql2FkIsPut", [&] { settings.createSql2FkIsPut = value == "1"; }},
        {"CreateSql2CommentIsPut", [&] { settings.createSql2CommentIsPut = value == "1"; }},
        {"CreateSql2CheckIsPut", [&] { settings.createSql2CheckIsPut = value == "1"; }},
        {"CreateSql2StrageIsPut", [&] { settings.createSql2StrageIsPut = value == "1"; }},
        {"CreateSql2DefaultIsPut", [&] { settings.createSql2DefaultIsPut = value == "1"; }},
    };
    options.at(name)();
  }

  ScriptText script;
  kGenerators.at(GetParam().kind)(generation, script);
  EXPECT_EQ(script.text, gReplaceAll(readFile(folder / "expected.sql"), "\n", "\r\n"));
}

INSTANTIATE_TEST_SUITE_P(Cases, GeneratorTest, testing::ValuesIn(allCases()),
                         [](const auto& info) { return info.param.kind + "_" + info.param.name; });

}  // namespace
}  // namespace quillmarden
