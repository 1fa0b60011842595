#include "engine/parser_state.h"

namespace quillmarden {

namespace {

struct TypeWord {
  std::string_view word;
  FieldType type;
  std::string_view parameter;  ///< its name as the type of a parameter
};

// In Access INTEGER is the 32-bit Long; SHORT and SMALLINT are the 16 bits.
constexpr TypeWord kTypeWords[] = {
    {"TEXT", FieldType::Text, "text"},           {"CHAR", FieldType::Text, "text"},
    {"CHARACTER", FieldType::Text, "text"},      {"VARCHAR", FieldType::Text, "text"},
    {"STRING", FieldType::Text, "text"},         {"ALPHANUMERIC", FieldType::Text, "text"},
    {"MEMO", FieldType::Memo, "memo"},           {"LONGTEXT", FieldType::Memo, "memo"},
    {"LONGCHAR", FieldType::Memo, "memo"},       {"NOTE", FieldType::Memo, "memo"},
    {"SHORT", FieldType::Integer, "integer"},    {"SMALLINT", FieldType::Integer, "integer"},
    {"INTEGER2", FieldType::Integer, "integer"}, {"BYTE", FieldType::Integer, "byte"},
    {"TINYINT", FieldType::Integer, "byte"},     {"LONG", FieldType::Long, "long"},
    {"INTEGER", FieldType::Long, "long"},        {"INT", FieldType::Long, "long"},
    {"INTEGER4", FieldType::Long, "long"},       {"COUNTER", FieldType::Auto, "long"},
    {"AUTOINCREMENT", FieldType::Auto, "long"},  {"DOUBLE", FieldType::Double, "double"},
    {"FLOAT", FieldType::Double, "double"},      {"IEEEDOUBLE", FieldType::Double, "double"},
    {"NUMBER", FieldType::Double, "double"},     {"NUMERIC", FieldType::Double, "numeric"},
    {"DECIMAL", FieldType::Double, "decimal"},   {"SINGLE", FieldType::Double, "single"},
    {"REAL", FieldType::Double, "single"},       {"IEEESINGLE", FieldType::Double, "single"},
    {"CURRENCY", FieldType::Double, "currency"}, {"MONEY", FieldType::Double, "currency"},
    {"YESNO", FieldType::Flag, "boolean"},       {"BIT", FieldType::Flag, "boolean"},
    {"BOOLEAN", FieldType::Flag, "boolean"},     {"LOGICAL", FieldType::Flag, "boolean"},
    {"DATETIME", FieldType::Date, "date"},       {"DATE", FieldType::Date, "date"},
    {"TIMESTAMP", FieldType::Date, "date"},      {"TIME", FieldType::Date, "time"}};

const TypeWord* typeWord(std::string_view word) {
  for (const TypeWord& candidate : kTypeWords) {
    if (isUpperOf(word, candidate.word)) return &candidate;
  }
  return nullptr;
}

}  // namespace

std::string parameterType(std::string_view word) {
  if (const TypeWord* found = typeWord(word)) return std::string(found->parameter);
  // These are no types of columns here, a parameter may have them.
  if (isUpperOf(word, "BINARY")) return "binary";
  if (isUpperOf(word, "LONGBINARY") || isUpperOf(word, "OLEOBJECT")) return "longbinary";
  if (isUpperOf(word, "BIGINT")) return "bigint";
  if (isUpperOf(word, "GUID")) return "guid";
  if (isUpperOf(word, "VALUE")) return "text";
  return {};
}

void Parser::definition(Statement& statement) {
  const Token& first = here();
  if (takeWord("CREATE")) {
    if (takeWord("TABLE")) {
      statement.body = createTable();
      return;
    }
    const bool unique = takeWord("UNIQUE");
    if (!takeWord("INDEX")) fail(unique ? "INDEX が必要です" : "TABLE または INDEX が必要です");
    statement.body = createIndex(unique);
  } else if (takeWord("ALTER")) {
    expectWord("TABLE");
    statement.body = alterTable();
  } else if (takeWord("DROP")) {
    if (takeWord("TABLE")) {
      statement.body = DropTableStatement{name("テーブル名が必要です")};
      return;
    }
    if (!takeWord("INDEX")) fail("TABLE または INDEX が必要です");
    DropIndexStatement result;
    result.index = name("インデックス名が必要です");
    expectWord("ON");
    result.table = name("テーブル名が必要です");
    statement.body = std::move(result);
  } else {
    failAt(first, "SELECT, INSERT, UPDATE, DELETE, CREATE, ALTER, DROP のどれかで始まる文が必要です");
  }
}

CreateTableStatement Parser::createTable() {
  CreateTableStatement result;
  result.table.name = name("テーブル名が必要です");
  expectSymbol("(");
  do {
    const bool key = (here().isWord("PRIMARY") && ahead(1).isWord("KEY")) ||
                     (here().isWord("UNIQUE") && ahead(1).isSymbol("(")) ||
                     (here().isWord("CONSTRAINT") && (ahead(2).isWord("PRIMARY") || ahead(2).isWord("UNIQUE")));
    if (key) {
      tableConstraint(result.table);
    } else {
      result.table.fields.push_back(fieldDefinition(&result.table.indexes));
    }
  } while (takeSymbol(","));
  expectSymbol(")");
  return result;
}

void Parser::tableConstraint(TableDef& table) {
  IndexDef index;
  if (takeWord("CONSTRAINT")) index.name = name("制約名が必要です");
  if (takeWord("PRIMARY")) {
    expectWord("KEY");
    index.primary = true;
    if (index.name.empty()) index.name = "PrimaryKey";
  } else {
    expectWord("UNIQUE");
  }
  index.unique = true;
  index.fields = nameList("項目名が必要です");
  if (index.name.empty()) index.name = index.fields.front();
  table.indexes.push_back(std::move(index));
}

FieldDef Parser::fieldDefinition(std::vector<IndexDef>* indexes) {
  FieldDef field;
  field.name = name("項目名が必要です");
  field.type = fieldType(field.size);
  while (true) {
    if (here().isWord("NOT") && ahead(1).isWord("NULL")) {
      at_ += 2;
      field.required = true;
    } else if (takeWord("NULL")) {
      field.required = false;
    } else if (indexes != nullptr &&
               (here().isWord("PRIMARY") || here().isWord("UNIQUE") || here().isWord("CONSTRAINT"))) {
      IndexDef index;
      if (takeWord("CONSTRAINT")) index.name = name("制約名が必要です");
      index.primary = takeWord("PRIMARY");
      expectWord(index.primary ? "KEY" : "UNIQUE");
      index.unique = true;
      index.fields.push_back(field.name);
      if (index.name.empty()) index.name = index.primary ? "PrimaryKey" : field.name;
      indexes->push_back(std::move(index));
    } else {
      return field;
    }
  }
}

FieldType Parser::fieldType(int& size) {
  if (here().kind != TokenKind::Word) fail("項目の型が必要です");
  const TypeWord* found = typeWord(here().text);
  if (found == nullptr) fail("項目の型ではありません");
  advance();
  if (found->word == "DOUBLE") takeWord("PRECISION");
  if (found->word == "CHARACTER" || found->word == "CHAR") takeWord("VARYING");
  if (takeSymbol("(")) {
    constexpr std::int64_t kWidestText = 255;
    do {
      if (here().kind != TokenKind::Whole) fail("桁数が必要です");
      const std::int64_t digits = std::get<std::int64_t>(here().value);
      if (found->type == FieldType::Text) {
        if (digits < 1 || digits > kWidestText) fail("文字数は 1 から 255 です");
        size = static_cast<int>(digits);
      }
      advance();
    } while (takeSymbol(","));
    expectSymbol(")");
  }
  return found->type;
}

AlterTableStatement Parser::alterTable() {
  AlterTableStatement result;
  result.table = name("テーブル名が必要です");
  if (takeWord("ADD")) {
    result.action = AlterTableStatement::Action::AddColumn;
  } else if (takeWord("ALTER")) {
    result.action = AlterTableStatement::Action::AlterColumn;
  } else if (takeWord("DROP")) {
    result.action = AlterTableStatement::Action::DropColumn;
  } else {
    fail("ADD, ALTER, DROP のどれかが必要です");
  }
  if (here().isWord("CONSTRAINT")) fail("CONSTRAINT には対応していません");
  takeWord("COLUMN");
  if (result.action == AlterTableStatement::Action::DropColumn) {
    result.field.name = name("項目名が必要です");
  } else {
    result.field = fieldDefinition(nullptr);
  }
  return result;
}

CreateIndexStatement Parser::createIndex(bool unique) {
  CreateIndexStatement result;
  result.index.unique = unique;
  result.index.name = name("インデックス名が必要です");
  expectWord("ON");
  result.table = name("テーブル名が必要です");
  result.index.fields = nameList("項目名が必要です");
  if (takeWord("WITH")) {
    if (takeWord("PRIMARY")) {
      result.index.primary = true;
      result.index.unique = true;
    } else {
      fail("WITH の後ろには PRIMARY だけが使えます");
    }
  }
  return result;
}

}  // namespace quillmarden
