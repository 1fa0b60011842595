#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "engine/value.h"

// The tree of a data statement, between parser and writer.
namespace quillmarden {

struct SelectStatement;

/// Most levels of a tree. What walks it may recurse; SQLite itself takes 1,000.
inline constexpr int kMostLevels = 300;

enum class ExpressionKind {
  Literal,   ///< value, slot
  Constant,  ///< value: Null, True or False, which are words of the statement and no literals
  Name,      ///< qualifier, name
  Unary,     ///< name: "-", "+" or "NOT"
  Binary,    ///< name: the operator in upper case
  Chain,     ///< name: "AND", "OR" or "&" between two or more operands
  Like,      ///< operands: text, pattern
  Between,   ///< operands: value, low, high
  InList,    ///< operands: value, then the list
  InQuery,   ///< operands: value; query
  IsNull,    ///< one operand
  Exists,    ///< query
  Call,      ///< name in upper case, operands; Count(*) has none
  Query,     ///< query: its first column of its first row
};

struct Expression {
  ExpressionKind kind;
  std::string name;
  std::string qualifier;
  Value value;
  bool isDate = false;   ///< of a literal
  int slot = 0;          ///< of a literal: its place among the literals of the statement, from 1
  bool negated = false;  ///< NOT LIKE, NOT IN, NOT BETWEEN, IS NOT NULL
  std::vector<std::unique_ptr<Expression>> operands;
  std::shared_ptr<const SelectStatement> query;
  int height = 1;  ///< levels below it and its own
};
using ExpressionPtr = std::unique_ptr<Expression>;

enum class JoinKind { Inner, Left, Right };

struct FromNode {
  enum class Kind { Table, Query, Join };
  Kind kind = Kind::Table;
  std::string table;  ///< of a Table: also a stored query's name
  std::string alias;  ///< of a Table without one: its own name; a Query without one is given a name
  std::shared_ptr<const SelectStatement> query;  ///< of a Query
  JoinKind join = JoinKind::Inner;
  std::unique_ptr<FromNode> left;
  std::unique_ptr<FromNode> right;
  ExpressionPtr on;  ///< none between tables that are separated by commas
  int height = 1;
};
using FromPtr = std::unique_ptr<FromNode>;

struct SelectItem {
  ExpressionPtr expression;  ///< none for "*"
  std::string starOf;        ///< of "a.*": the table
  std::string alias;
};

struct OrderItem {
  ExpressionPtr expression;
  bool descending = false;
};

enum class Distinct { No, Values, Rows };

struct SelectStatement {
  Distinct distinct = Distinct::No;
  std::optional<std::int64_t> top;
  std::vector<SelectItem> items;
  FromPtr from;
  ExpressionPtr where;
  std::vector<ExpressionPtr> groupBy;
  ExpressionPtr having;
  std::vector<OrderItem> orderBy;  ///< of the whole union

  /// A further SELECT behind UNION; its own unions and order are empty.
  struct Union {
    bool all = false;
    std::shared_ptr<const SelectStatement> select;
  };
  std::vector<Union> unions;
  int height = 1;
};

struct Assignment {
  std::string qualifier;
  std::string column;
  ExpressionPtr value;
};

struct InsertStatement {
  std::string table;
  std::vector<std::string> columns;               ///< none: all of the table's, in order
  std::vector<ExpressionPtr> values;              ///< of VALUES
  std::shared_ptr<const SelectStatement> select;  ///< or the query that gives the rows
};

struct UpdateStatement {
  FromPtr from;
  std::vector<Assignment> assignments;
  ExpressionPtr where;
};

struct DeleteStatement {
  std::string target;  ///< of "DELETE a.*": the table; empty for "*" and none
  FromPtr from;
  ExpressionPtr where;
};

}  // namespace quillmarden
