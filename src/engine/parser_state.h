#pragma once

#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/ast.h"
#include "engine/nodes.h"
#include "engine/token.h"

namespace quillmarden {

/// Recursive descent over the tokens of one statement. Keywords are words like any other except where only a keyword
/// can stand, so that columns named KEY or INDEX need no brackets.
class Parser {
 public:
  explicit Parser(std::string_view sql);
  Statement statement();

 private:
  // --- tokens
  const Token& here() const { return tokens_[at_]; }
  const Token& ahead(std::size_t count) const;
  void advance() { ++at_; }
  bool takeWord(std::string_view upper);
  bool takeSymbol(std::string_view symbol);
  void expectWord(std::string_view upper);
  void expectSymbol(std::string_view symbol);
  [[noreturn]] void fail(std::string_view expected) const;
  [[noreturn]] void failAt(const Token& token, std::string_view expected) const;
  /// A name that may stand without brackets; `what` tells what is expected here.
  std::string name(std::string_view what);
  /// A name behind "." or "!", where keywords count as names.
  std::string memberName(std::string_view what);
  bool startsName() const;
  bool startsAlias() const;
  /// Names in parentheses, each perhaps with ASC or DESC behind it.
  std::vector<std::string> nameList(std::string_view what);
  int slot(const Token& literal) const;

  /// Counts nested levels, so that no text can exhaust the stack.
  class Level {
   public:
    explicit Level(Parser& parser);
    ~Level() { --parser_.depth_; }
    Level(const Level&) = delete;
    Level& operator=(const Level&) = delete;

   private:
    Parser& parser_;
  };

  // --- data statements (parser.cpp)
  std::vector<QueryParameter> parameters();
  std::shared_ptr<SelectStatement> select();
  std::shared_ptr<SelectStatement> selectCore();
  SelectItem selectItem();
  std::vector<OrderItem> orderBy();
  std::shared_ptr<InsertStatement> insert();
  std::shared_ptr<UpdateStatement> update();
  std::shared_ptr<DeleteStatement> deletion();
  FromPtr from();
  FromPtr joins();
  FromPtr tableOrBracket();

  // --- expressions (parser_expression.cpp)
  ExpressionPtr expression(int lowestBinding = 0);
  ExpressionPtr prefix();
  ExpressionPtr primary();
  ExpressionPtr nameOrCall();
  ExpressionPtr call(std::string function);
  ExpressionPtr predicate(ExpressionPtr left);
  ExpressionPtr inList(ExpressionPtr left, bool negated);
  /// Sets and checks the height of a tree whose operands are measured.
  ExpressionPtr measured(ExpressionPtr tree) const;
  void checkHeight(int height) const;
  bool startsSelect() const { return here().isWord("SELECT"); }

  // --- definition statements (parser_definition.cpp)
  void definition(Statement& statement);
  CreateTableStatement createTable();
  AlterTableStatement alterTable();
  CreateIndexStatement createIndex(bool unique);
  FieldDef fieldDefinition(std::vector<IndexDef>* indexes);
  void tableConstraint(TableDef& table);
  FieldType fieldType(int& size);

  std::string_view sql_;
  std::vector<Token> tokens_;
  std::vector<int> slots_;  ///< of each token: how many literals stand before it
  std::size_t at_ = 0;
  int depth_ = 0;
  int unnamed_ = 0;  ///< derived tables without a name
};

/// The type that a PARAMETERS clause names, as QueryParameter has it; empty for a word that is no type.
std::string parameterType(std::string_view word);

}  // namespace quillmarden
