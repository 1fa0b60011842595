#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace quillmarden {

/// The Database kinds that scripts are made for.
enum class ScriptKind { Oracle, Teradata, SqlServer, MySql, PostgreSql };

struct ScriptType;
struct ScriptValues;
struct TypeCell;
enum class ConstantUse;

/// The names of a table as a statement needs them.
struct TableNames {
  std::string schema;     ///< without quotes, "" for none
  std::string name;       ///< without quotes
  std::string qualified;  ///< both with quotes
};

/// How a kind writes what all kinds have. Everything else is in the kind's own file.
struct Dialect {
  enum class BareCase { Kept, Lower, Upper };  ///< what a server makes of a name without quotes

  ScriptKind kind;
  std::string_view open;  ///< quote in front of a name
  std::string_view close;
  BareCase bareCase;
  std::size_t nameLimit;      ///< longest name
  bool limitInBytes;          ///< the limit counts bytes of UTF-8, else characters
  std::string_view end;       ///< line behind each statement
  std::size_t tableComment;   ///< longest comment of a table in characters, 0 for no limit
  std::size_t columnComment;  ///< the same for a column
  bool defaultBeforeNull;     ///< DEFAULT stands in front of NOT NULL
  bool indexNamesInSchema;    ///< an index name is unique in the schema, not only in its table

  std::string_view clustered;  ///< behind PRIMARY KEY

  bool knowsTypes;          ///< each type, its values and the server's functions one by one
  std::size_t mostColumns;  ///< of a table

  ScriptType (*type)(const TypeCell& cell);
  /// The text as a constant of the type; nothing where the type has no such value.
  std::optional<std::string> (*constant)(const ScriptType& type, std::string_view text, ConstantUse use);
  /// A computed column behind its name, of a type where the kind knows types; "" where it has none.
  std::string (*computed)(std::string_view expression, std::string_view type);
  /// A statement that takes the table away when it is there, and what refers to it.
  std::string (*drop)(const TableNames& table);
  /// Adds the statement that gives a table or a column its comment; `column` is "" for the table. None where comments
  /// are options of CREATE TABLE.
  void (*comment)(const Dialect& dialect, const TableNames& table, std::string_view column, std::string_view text,
                  std::string& script);

  /// A statement that makes a schema where it is not there yet, "" for one that the server has by itself. None where a
  /// schema is a user or cannot be.
  std::string (*createSchema)(std::string_view schema) = nullptr;

  bool commentsInCreate() const { return comment == nullptr; }
};

/// `comment` of the kinds that have COMMENT ON.
void commentOn(const Dialect& dialect, const TableNames& table, std::string_view column, std::string_view text,
               std::string& script);

const Dialect& dialectOf(ScriptKind kind);

/// A statement of Oracle in a block: for one that its tool would not take in one line.
std::string oracleBlock(std::string_view statement);

/// A statement of Oracle that does nothing when its table is not there.
std::string oracleIfThere(std::string_view statement);

// --- one a kind, in its own file
const Dialect& oracleDialect();
const Dialect& teradataDialect();
const Dialect& sqlServerDialect();
const Dialect& mySqlDialect();
const Dialect& postgreSqlDialect();
ScriptType mySqlType(const TypeCell& cell);
ScriptType postgreSqlType(const TypeCell& cell);
std::optional<std::string> mySqlConstant(const ScriptType& type, std::string_view text, ConstantUse use);
std::optional<std::string> postgreSqlConstant(const ScriptType& type, std::string_view text, ConstantUse use);

}  // namespace quillmarden
