#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "engine/nodes.h"
#include "engine/sqlite_writer.h"

namespace quillmarden {

/// What is known of a value while a statement is written. It decides whether a comparison is one of texts.
enum class ValueType {
  Unknown,
  Null,
  Text,
  Whole,
  Real,
  Date,
  Condition,  ///< SQLite's 0 and 1; as a value it has to become 0 and -1
};

/// Whether a comparison with the value is one of numbers, or of dates, which have no case.
constexpr bool hasNoCase(ValueType type) {
  return type == ValueType::Whole || type == ValueType::Real || type == ValueType::Date || type == ValueType::Condition;
}

/// A written expression.
struct Written {
  std::string sql;
  ValueType type = ValueType::Unknown;
  bool atomic = true;               ///< needs no parentheses as an operand
  int source = -1;                  ///< of a bare column of this SELECT: its table in FROM
  const FieldDef* field = nullptr;  ///< of a bare column of a base table
};

/// A result column of a SELECT.
struct Output {
  std::string name;
  Written value;
  std::string qualifier;  ///< of a bare column: its table in FROM
  bool named = false;     ///< by AS
};

/// A table or a derived table in FROM.
struct Source {
  std::string alias;
  const TableDef* table = nullptr;
  std::string sql;              ///< of a derived table
  std::vector<Output> columns;  ///< of a derived table
  bool nested = false;          ///< inside of parentheses, where SQLite does not see row ids
};

/// The names that can be seen at a place.
struct Scope {
  std::vector<Source> sources;
  const Scope* outer = nullptr;
  const SelectStatement* select = nullptr;     ///< where the names that AS gives can be used: the SELECT that has them
  std::vector<const SelectItem*> substituted;  ///< of these names, the ones that are being written
};

struct WrittenSelect {
  std::string sql;
  std::vector<Output> outputs;
};

/// Writes one statement. The parts that need each other are members; the files are divided by statement.
class StatementWriter {
 public:
  StatementWriter(const Statement& statement, const SchemaView& schema);
  SqliteStatement write();

 private:
  enum class Use { Result, Rows, Columns };  ///< of a SELECT: shown to the caller, a subquery, one with columns c1, c2…

  // --- SELECT (sqlite_writer.cpp)
  WrittenSelect select(const SelectStatement& select, const Scope* outer, Use use);
  WrittenSelect selectCore(const SelectStatement& select, const Scope* outer, Use use, bool inUnion);
  std::vector<Output> outputs(const SelectStatement& select, Scope& scope);
  void addStar(const SelectItem& item, const Scope& scope, std::vector<Output>& result) const;
  std::string orderBy(const SelectStatement& select, Scope& scope, const std::vector<Output>& outputs);
  std::string unionOrderBy(const SelectStatement& select, const std::vector<Output>& outputs);
  std::string ordinal(const Expression& literal, const std::vector<Output>& outputs);
  static std::vector<std::size_t> shownSources(const Scope& scope, const std::vector<Output>& outputs);
  void show(const Scope& scope, const std::vector<Output>& outputs, const std::vector<std::size_t>& shown);

  // --- FROM (sqlite_writer_from.cpp)
  void addSources(const FromNode& node, Scope& scope, bool nested);
  Source storedQuery(const std::string& name, const std::string& alias);
  std::string from(const FromNode& node, Scope& scope);
  void flatten(const FromNode& node, Scope& scope, std::vector<std::string>& tables,
               std::vector<std::string>& conditions);
  std::string fromSource(const FromNode& node, const Scope& scope) const;
  static bool isInner(const FromNode& node);
  const TableDef& baseTable(const std::string& name) const;

  // --- changes (sqlite_writer_changes.cpp)
  void insert(const InsertStatement& insert);
  void update(const UpdateStatement& update);
  void deletion(const DeleteStatement& deletion);
  std::string store(const Written& value, const FieldDef& field, const TableDef& table) const;

  // --- expressions (sqlite_writer_expression.cpp)
  Written expression(const Expression& node, Scope& scope);
  /// As a value: conditions become 0 and -1.
  Written value(const Expression& node, Scope& scope);
  std::string condition(const Expression& node, Scope& scope);
  std::string truth(const Expression& node, Scope& scope);
  Written literal(const Expression& node);
  Written name(const Expression& node, Scope& scope);
  Written parameter(const std::string& name);
  Written unary(const Expression& node, Scope& scope);
  Written binary(const Expression& node, Scope& scope);
  Written comparison(const Expression& node, Scope& scope);
  Written arithmetic(const Expression& node, const Written& left, const Written& right) const;
  Written chain(const Expression& node, Scope& scope);
  Written inList(const Expression& node, Scope& scope);
  Written inQuery(const Expression& node, Scope& scope);
  Written between(const Expression& node, Scope& scope);

  // --- functions (sqlite_writer_call.cpp)
  Written call(const Expression& node, Scope& scope);
  Written aggregate(const Expression& node, Scope& scope);
  Written choice(const Expression& node, Scope& scope);

  const Statement& statement_;
  const SchemaView& schema_;
  SqliteStatement result_;
  const std::vector<QueryParameter>* declared_;  ///< of the query that is being written
  bool inlineLiterals_ = false;                  ///< the literals of a stored query are none of the statement's own
  std::vector<std::string> storedQueries_;       ///< those that are being written, the outermost first
  int storedQueryCount_ = 0;
  int depth_ = 0;  ///< SELECT statements that are being written
};

/// Reports a column name that more than one table of the statement has.
[[noreturn]] void throwAmbiguous(const std::string& column);
/// SQL text of an operand, in parentheses where it needs them.
std::string operand(const Written& value);
/// COLLATE NOCASE, with a blank in front, for what is compared or sorted as text; empty for all else.
std::string_view collation(ValueType type);
std::string_view collation(ValueType left, ValueType right);
/// A text as SQL has it between quotes.
std::string quotedText(std::string_view text);
/// Whether the function is one over the rows of a group.
bool isAggregate(std::string_view upperName);
/// Whether the tree calls one, subqueries left out.
bool hasAggregate(const Expression& node);
ValueType typeOf(const FieldDef& field);
/// The name by which a table's row ids are reached.
std::string_view rowIdName(const TableDef& table);
/// Joins texts by " AND ", " OR " or " || ", in halves where there are many, since SQLite limits depth.
std::string joined(const std::vector<std::string>& parts, std::string_view separator);

}  // namespace quillmarden
