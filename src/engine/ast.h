#pragma once

#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "engine/query_def.h"
#include "engine/table_def.h"

namespace quillmarden {

// The data statements. Their nodes are known to the parser and the writer alone.
struct SelectStatement;
struct InsertStatement;
struct UpdateStatement;
struct DeleteStatement;

// The definition statements, which the database runs by itself.
struct CreateTableStatement {
  TableDef table;
};
struct AlterTableStatement {
  enum class Action { AddColumn, AlterColumn, DropColumn };
  std::string table;
  Action action;
  FieldDef field;  ///< for DropColumn the name alone
};
struct DropTableStatement {
  std::string table;
};
struct CreateIndexStatement {
  std::string table;
  IndexDef index;
};
struct DropIndexStatement {
  std::string table;
  std::string index;
};

struct Statement {
  std::vector<QueryParameter> parameters;  ///< of a PARAMETERS clause in front
  int literalCount = 0;                    ///< literals of the text, as statementKey() counts them
  std::variant<std::shared_ptr<const SelectStatement>, std::shared_ptr<const InsertStatement>,
               std::shared_ptr<const UpdateStatement>, std::shared_ptr<const DeleteStatement>, CreateTableStatement,
               AlterTableStatement, DropTableStatement, CreateIndexStatement, DropIndexStatement>
      body;
};

}  // namespace quillmarden
