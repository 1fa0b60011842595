#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "common/script_file.h"
#include "sqlgen/fields.h"
#include "sqlgen/generation.h"

namespace quillmarden {

// The pieces that the kinds share. Each kind's own file says in which order they come.

/// How the head block of a kind differs from the plain one.
struct HeadStyle {
  std::string_view ruler = "--------------------------------------------------------";
  std::string_view open = "-- \t";  ///< in front of every line
  std::string_view close;           ///< behind every line
  std::string_view japaneseLabel = "論理名(日本語)   = ";
  std::string_view tableLabel = "物理名(テーブル) = ";
  std::string_view ryakuLabel = "テーブル略名     = ";
  std::string_view tableText;              ///< shown instead of the table's name when not empty
  std::optional<std::string_view> schema;  ///< a line of its own in front of the names
  std::string_view indexSpace;             ///< two lines of their own when not empty
};
/// The form of a kind that takes "--" for a comment only where a blank follows: block comments.
HeadStyle blockHeadStyle();
/// The comment block in front of a table's statements.
void putHead(const Generation& generation, const HeadStyle& style, ScriptText& script);

/// The number in a free text; text without digits gives 0.
double numberIn(std::string_view text);

/// The digits between the brackets of a type: "12,2", or the whole digits as they stand.
std::string digitsText(const Field& field);

/// "NOT NULL" for a key and for a field with a default, unless the cell is empty; blanks around it.
std::string nullClause(const Field& field, bool hasDefault);

/// Column 8 as it stands, " NULL " for an empty cell; blanks around it.
std::string cellNull(const Field& field);

/// " DEFAULT …" for a call and a number, " DEFAULT '…'" for a text; "" without a default.
std::string bareDefault(const Field& field, bool numeric);

/// " DEFAULT (…)" for a call, " DEFAULT ((…))" for a number, " DEFAULT ('…')" for a text; "" without a default.
std::string bracketedDefault(const Field& field, bool numeric);

/// The names of the key fields joined by ","; "" for a table without a key.
std::string keyList(const std::vector<Field>& fields);

/// The comparison sign of a range kind that is no interval.
std::string rangeOperator(const Field& field);

/// How a kind words the statements that add a check to an existing table.
struct AlterStyle {
  std::string table;              ///< the table's name as the statements have it
  std::string_view end;           ///< the terminator
  bool dropsRange = true;         ///< a range check is dropped before it is added
  bool bracketedColumns = false;  ///< "[" and "]" around the field of a range check
};
std::string alterRange(const AlterStyle& style, const Field& field);
std::string alterValueCheck(const AlterStyle& style, const Field& field, std::string_view check);
/// All value-list checks of a table, one print each.
void putAlterValueChecks(const Generation& generation, const AlterStyle& style, const std::vector<Field>& fields,
                         ScriptText& script);

/// A remark as a comment's text: line ends become ".", blanks around it go.
std::string cleanComment(std::string_view remark);
/// The table's memo without blanks around it and without CR LF.
std::string memoText(const frmTBDetail& table);
/// A text for the inside of a line comment: a line end in it would turn its rest into a statement.
std::string oneLine(std::string_view text);

/// The schema of a PostgreSQL System.
std::string_view schemaOf(const SystemRecord& system);

}  // namespace quillmarden
