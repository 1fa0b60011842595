// Runs the files of tests/engine/sql: statements with the rows or the error that they must give.
//
// A file is a list of blocks, parted by blank lines; lines that begin with "#" between blocks are comments.
//
//   setup NAME                runs sql/setup/NAME.test first
//   statement                 SQL; after "----" an optional "changes N"
//   query [unordered]         SQL or the name of a table or stored query; after "----" the column names, then the rows.
//                             A last column name "..." leaves the further columns out.
//   error NUMBER              SQL that must fail so; after "----" texts that the message must hold
//   rows TABLE                column names, then rows to insert
//   store NAME                SQL of a stored query
//   columns TABLE             after "----" the columns as name | type | size, then indexes as name | kind | columns
//   wants NAME                after "----" the parameters of a stored query as name | type
//   parameters A=1; B='x'     in front of a statement, query or error
//
// Cells are parted by "|" and trimmed; NULL is Null, quotes keep blanks and take \" \\ \n \r \t. In SQL and in cells
// {NUL} is a zero byte and {あ*10000} a text of 10,000 characters.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "engine/database.h"
#include "support/scripted_host.h"

namespace quillmarden {
namespace {

namespace fs = std::filesystem;

const fs::path kFolder = fs::path(QM_TEST_DATA) / "sql";

struct Block {
  int line = 0;  ///< of its first line, from 1
  std::string kind;
  std::string argument;
  std::vector<std::string> body;      ///< the lines up to "----"
  std::vector<std::string> expected;  ///< the lines behind it
  bool hasExpected = false;
};

std::string_view trimmed(std::string_view text) {
  const auto first = text.find_first_not_of(" \t");
  if (first == std::string_view::npos) return {};
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::vector<Block> readBlocks(const fs::path& path) {
  std::ifstream file(path);
  if (!file) throw std::runtime_error("cannot read " + path.string());
  std::vector<Block> blocks;
  std::string line;
  bool inBlock = false;
  for (int number = 1; std::getline(file, line); ++number) {
    if (trimmed(line).empty()) {
      inBlock = false;
    } else if (inBlock) {
      Block& block = blocks.back();
      if (line == "----") {
        block.hasExpected = true;
      } else {
        (block.hasExpected ? block.expected : block.body).push_back(line);
      }
    } else if (line.front() != '#') {
      const auto blank = line.find(' ');
      blocks.push_back({number, line.substr(0, blank), "", {}, {}, false});
      if (blank != std::string::npos) blocks.back().argument = trimmed(std::string_view(line).substr(blank));
      inBlock = blocks.back().kind != "parameters" && blocks.back().kind != "setup";
    }
  }
  return blocks;
}

/// {NUL} and {あ*10000} written out.
std::string expanded(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const auto open = text.find('{');
    const auto close = open == std::string_view::npos ? open : text.find('}', open);
    if (close == std::string_view::npos) break;
    result += text.substr(0, open);
    const std::string_view inside = text.substr(open + 1, close - open - 1);
    if (inside == "NUL") {
      result += '\0';
    } else {
      const auto star = inside.find('*');
      for (int i = std::stoi(std::string(inside.substr(star + 1))); i > 0; --i) result += inside.substr(0, star);
    }
    text.remove_prefix(close + 1);
  }
  result += text;
  return result;
}

std::vector<std::string> cellsOf(std::string_view line) {
  std::vector<std::string> cells;
  std::string cell;
  bool quoted = false;
  for (std::size_t i = 0; i < line.size(); ++i) {
    if (quoted && line[i] == '\\' && i + 1 < line.size()) {
      cell += line[i++];
    } else if (line[i] == '"') {
      quoted = !quoted;
    } else if (line[i] == '|' && !quoted) {
      cells.emplace_back(trimmed(cell));
      cell.clear();
      continue;
    }
    cell += line[i];
  }
  cells.emplace_back(trimmed(cell));
  return cells;
}

Value cellValue(std::string_view cell) {
  if (cell == "NULL") return std::monostate{};
  if (cell.size() < 2 || cell.front() != '"') return expanded(cell);
  std::string text;
  for (std::size_t i = 1; i + 1 < cell.size(); ++i) {
    if (cell[i] != '\\') {
      text += cell[i];
      continue;
    }
    ++i;
    text += cell[i] == 'n' ? '\n' : cell[i] == 'r' ? '\r' : cell[i] == 't' ? '\t' : cell[i];
  }
  return expanded(text);
}

/// The cell as the files write it.
std::string cellText(const Value& value) {
  if (isNull(value)) return "NULL";
  const std::string text = toText(value);
  const bool plain = !text.empty() && text != "NULL" && trimmed(text).size() == text.size() && text.front() != '"' &&
                     text.find_first_of(std::string_view("|\n\r\t\0", 5)) == std::string::npos;
  if (plain) return text;
  std::string quoted = "\"";
  for (const char c : text) {
    switch (c) {
      case '\n':
        quoted += "\\n";
        break;
      case '\r':
        quoted += "\\r";
        break;
      case '\t':
        quoted += "\\t";
        break;
      case '\0':
        quoted += "{NUL}";
        break;
      case '"':
      case '\\':
        quoted += '\\';
        [[fallthrough]];
      default:
        quoted += c;
    }
  }
  return quoted + '"';
}

std::string joined(const std::vector<std::string>& parts, std::string_view between) {
  std::string text;
  for (const auto& part : parts) {
    if (&part != parts.data()) text += between;
    text += part;
  }
  return text;
}

/// The expected line in the form that the actual rows are written in.
std::string normalised(std::string_view line) {
  std::vector<std::string> cells = cellsOf(line);
  for (auto& cell : cells) cell = cellText(cellValue(cell));
  return joined(cells, " | ");
}

std::string lowered(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(), [](char c) { return c >= 'A' && c <= 'Z' ? c + 32 : c; });
  return text;
}

const char* typeName(FieldType type) {
  switch (type) {
    case FieldType::Text:
      return "Text";
    case FieldType::Memo:
      return "Memo";
    case FieldType::Integer:
      return "Integer";
    case FieldType::Long:
      return "Long";
    case FieldType::Double:
      return "Double";
    case FieldType::Flag:
      return "Flag";
    case FieldType::Date:
      return "Date";
    case FieldType::Auto:
      return "Auto";
  }
  return "?";
}

class SqlFile {
 public:
  SqlFile(Database& database, const fs::path& path) : database_(database), path_(path) {}

  void run() {
    for (const Block& block : readBlocks(path_)) {
      SCOPED_TRACE(path_.string() + ":" + std::to_string(block.line));
      try {
        runBlock(block);
      } catch (const EngineError& error) {
        ADD_FAILURE() << joined(block.body, "\n") << "\nfailed with " << error.number() << ": " << error.what();
      }
    }
  }

 private:
  void runBlock(const Block& block) {
    const std::string sql = expanded(joined(block.body, "\n"));
    if (block.kind == "parameters") {
      readParameters(block.argument);
      return;
    }
    if (block.kind == "setup") {
      inTransaction(database_, [&] { SqlFile(database_, kFolder / "setup" / (block.argument + ".test")).run(); });
    } else if (block.kind == "statement") {
      const int changes = database_.execute(sql, parameters_);
      if (block.hasExpected) {
        EXPECT_EQ("changes " + std::to_string(changes), joined(block.expected, "\n")) << sql;
      }
    } else if (block.kind == "query") {
      checkQuery(block, sql);
    } else if (block.kind == "error") {
      checkError(block, sql);
    } else if (block.kind == "rows") {
      insertRows(block);
    } else if (block.kind == "store") {
      database_.putQueryDef({block.argument, sql});
    } else if (block.kind == "columns") {
      checkColumns(block);
    } else if (block.kind == "wants") {
      std::vector<std::string> lines;
      for (const auto& p : database_.queryParameters(block.argument)) lines.push_back(p.name + " | " + p.type);
      compare(block, lines);
    } else {
      ADD_FAILURE() << "no such block: " << block.kind;
    }
    parameters_.clear();
  }

  void readParameters(std::string_view text) {
    parameters_.clear();
    while (!text.empty()) {
      const auto end = std::min(text.find(';'), text.size());
      const std::string_view part = text.substr(0, end);
      const auto equals = part.find('=');
      const std::string_view value = trimmed(part.substr(equals + 1));
      ParameterValue parameter{std::string(trimmed(part.substr(0, equals))), std::monostate{}};
      if (value.front() == '\'') {
        parameter.value = expanded(value.substr(1, value.size() - 2));
      } else if (value != "NULL") {
        parameter.value = std::int64_t{std::stoll(std::string(value))};
      }
      parameters_.push_back(std::move(parameter));
      text.remove_prefix(std::min(end + 1, text.size()));
    }
  }

  void checkQuery(const Block& block, const std::string& sql) {
    Recordset rows = database_.openRecordset(sql, parameters_);
    ASSERT_FALSE(block.expected.empty()) << "a query needs its columns";
    std::vector<std::string> names = cellsOf(block.expected.front());
    const bool openEnd = names.back() == "...";
    if (openEnd) names.pop_back();
    std::vector<int> columns;
    std::vector<std::string> all;
    for (int i = 0; i < rows.fieldCount(); ++i) all.push_back(rows.fieldName(i));
    for (const auto& name : names) {
      const int index = rows.fieldIndex(name);
      ASSERT_GE(index, 0) << sql << "\nhas no column " << name << " but " << joined(all, " | ");
      columns.push_back(index);
      if (!openEnd) {
        ASSERT_EQ(index, static_cast<int>(columns.size()) - 1) << sql << "\nhas the columns " << joined(all, " | ");
      }
    }
    if (!openEnd) {
      ASSERT_EQ(columns.size(), all.size()) << sql << "\nhas the columns " << joined(all, " | ");
    }

    std::vector<std::string> lines;
    for (; !rows.eof(); rows.moveNext()) {
      std::vector<std::string> cells;
      for (const int column : columns) cells.push_back(cellText(rows.value(column)));
      lines.push_back(joined(cells, " | "));
    }
    EXPECT_EQ(rows.recordCount(), static_cast<int>(lines.size())) << sql;
    compare(block, lines, 1, block.argument == "unordered");
  }

  void checkError(const Block& block, const std::string& sql) {
    try {
      const std::string start = lowered(sql.substr(0, 10));
      if (start.starts_with("select") || start.starts_with("parameters")) {
        database_.openRecordset(sql, parameters_);
      } else {
        database_.execute(sql, parameters_);
      }
      ADD_FAILURE() << sql.substr(0, 500) << "\nwent through";
    } catch (const EngineError& error) {
      EXPECT_EQ(std::to_string(error.number()), block.argument) << sql.substr(0, 500) << '\n' << error.what();
      for (const auto& part : block.expected) {
        EXPECT_NE(std::string_view(error.what()).find(part), std::string_view::npos)
            << sql.substr(0, 500) << "\ngave: " << error.what() << "\nwithout: " << part;
      }
    }
  }

  void insertRows(const Block& block) {
    const std::vector<std::string> columns = cellsOf(block.body.front());
    std::vector<std::vector<Value>> rows;
    for (std::size_t i = 1; i < block.body.size(); ++i) {
      std::vector<Value>& row = rows.emplace_back();
      for (const auto& cell : cellsOf(block.body[i])) row.push_back(cellValue(cell));
      ASSERT_EQ(row.size(), columns.size()) << block.body[i];
    }
    database_.insertRows(block.argument, columns, rows);
  }

  void checkColumns(const Block& block) {
    const TableDef* table = database_.tableDef(block.argument);
    ASSERT_NE(table, nullptr) << block.argument;
    std::vector<std::string> lines;
    for (const auto& field : table->fields) {
      lines.push_back(field.name + " | " + typeName(field.type) + " | " + std::to_string(field.size));
    }
    for (const auto& index : table->indexes) {
      const char* kind = index.primary ? "primary" : index.unique ? "unique" : "index";
      lines.push_back(index.name + " | " + kind + " | " + joined(index.fields, ", "));
    }
    compare(block, lines);
  }

  static void compare(const Block& block, std::vector<std::string> got, std::size_t skip = 0, bool unordered = false) {
    std::vector<std::string> expected;
    for (std::size_t i = skip; i < block.expected.size(); ++i) expected.push_back(normalised(block.expected[i]));
    if (unordered) {
      std::sort(got.begin(), got.end());
      std::sort(expected.begin(), expected.end());
    }
    if (got == expected) return;
    ADD_FAILURE() << joined(block.body, "\n") << "\nexpected:\n  " << joined(expected, "\n  ") << "\ngot:\n  "
                  << joined(got, "\n  ");
  }

  Database& database_;
  fs::path path_;
  std::vector<ParameterValue> parameters_;
};

std::vector<std::string> fileNames() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(kFolder)) {
    if (entry.path().extension() == ".test") names.push_back(entry.path().stem().string());
  }
  std::sort(names.begin(), names.end());
  return names;
}

class Sql : public testing::TestWithParam<std::string> {};

TEST_P(Sql, GivesWhatItsFileSays) {
  TempFolder folder;
  Database database = Database::create(folder.file("sql.mdb"));
  SqlFile(database, kFolder / (GetParam() + ".test")).run();
}

INSTANTIATE_TEST_SUITE_P(Files, Sql, testing::ValuesIn(fileNames()),
                         [](const testing::TestParamInfo<std::string>& info) { return info.param; });

}  // namespace
}  // namespace quillmarden
