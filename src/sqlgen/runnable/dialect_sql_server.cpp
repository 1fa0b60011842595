#include "common/text.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/names.h"
#include "sqlgen/runnable/types.h"
#include "sqlgen/runnable/values.h"

namespace quillmarden {

namespace {

constexpr std::string_view kIdentity = " identity";

ScriptType type(const TypeCell& cell) {
  const std::string lower = toLower(trim(cell.text));
  if (trim(cell.text) == "@AUTO_NO" || lower.ends_with(kIdentity)) {
    TypeCell numbers = cell;
    const std::string base = lower.ends_with(kIdentity) ? lower.substr(0, lower.size() - kIdentity.size()) : "int";
    numbers.text = base;
    ScriptType found = type(numbers);
    found.sql += " identity(1,1)";
    found.numbersItself = true;
    return found;
  }
  ScriptType found =
      looseType(ScriptKind::SqlServer, cell,
                {"char", "varchar", "nchar", "nvarchar", "binary", "varbinary", "decimal", "numeric"}, "nvarchar");
  const bool varies = found.base == "varchar" || found.base == "nvarchar" || found.base == "varbinary";
  const double longest = found.base == "nvarchar" ? 4000 : 8000;
  if (varies && cell.text.find('(') == std::string_view::npos && found.fault.empty() &&
      (cell.wholeDigits <= 0 || cell.wholeDigits > longest))
    found.sql = found.base + "(max)";
  if (found.base == "timestamp") found.family = TypeFamily::Bytes;
  if (found.base == "bit") found.family = TypeFamily::Boolean;
  return found;
}

std::optional<std::string> constant(const ScriptType& type, std::string_view text, ConstantUse) {
  return looseConstant(ScriptKind::SqlServer, type, text);
}

std::string computed(std::string_view expression, std::string_view) { return " AS (" + std::string(expression) + ")"; }

std::string drop(const TableNames& table) {
  const Dialect& dialect = sqlServerDialect();
  // Keys of other tables hold the table: they go first.
  return "DECLARE @sql nvarchar(max) = N''\r\n"
         "SELECT @sql = @sql + N'ALTER TABLE ' + QUOTENAME(OBJECT_SCHEMA_NAME(parent_object_id)) + N'.' + "
         "QUOTENAME(OBJECT_NAME(parent_object_id)) + N' DROP CONSTRAINT ' + QUOTENAME(name) + N';' "
         "FROM sys.foreign_keys WHERE referenced_object_id = OBJECT_ID(" +
         textLiteral(dialect, table.qualified) + ")\r\nEXEC sp_executesql @sql\r\nDROP TABLE IF EXISTS " +
         table.qualified + "\r\ngo\r\n";
}

void comment(const Dialect& dialect, const TableNames& table, std::string_view column, std::string_view text,
             std::string& script) {
  const auto put = [&](std::string_view words, std::string_view value) {
    script += words;
    appendTextLiteral(dialect, value, script);
  };
  if (text.find(kToolVariable) == std::string_view::npos) {
    put("EXEC sp_addextendedproperty N'MS_Description', ", text);
  } else {  // a procedure takes no text in pieces
    put("DECLARE @text nvarchar(4000) = ", text);
    script += "\r\nEXEC sp_addextendedproperty N'MS_Description', @text";
  }
  put(", N'SCHEMA', ", table.schema.empty() ? "dbo" : table.schema);
  put(", N'TABLE', ", table.name);
  if (!column.empty()) put(", N'COLUMN', ", column);
  script += "\r\ngo\r\n";
}

std::string createSchema(std::string_view schema) {
  if (equalsNoCase(schema, "dbo")) return {};
  const Dialect& dialect = sqlServerDialect();
  return "IF SCHEMA_ID(" + textLiteral(dialect, schema) + ") IS NULL\r\nEXEC sp_executesql " +
         textLiteral(dialect, "CREATE SCHEMA " + quotedName(dialect, schema)) + "\r\ngo\r\n";
}

}  // namespace

const Dialect& sqlServerDialect() {
  static const Dialect dialect{.kind = ScriptKind::SqlServer,
                               .open = "[",
                               .close = "]",
                               .bareCase = Dialect::BareCase::Kept,
                               .nameLimit = 128,
                               .limitInBytes = false,
                               .end = "go",
                               .tableComment = 3750,
                               .columnComment = 3750,
                               .defaultBeforeNull = false,
                               .indexNamesInSchema = false,
                               .clustered = " CLUSTERED",
                               .knowsTypes = false,
                               .mostColumns = 1024,
                               .type = type,
                               .constant = constant,
                               .computed = computed,
                               .drop = drop,
                               .comment = comment,
                               .createSchema = createSchema};
  return dialect;
}

}  // namespace quillmarden
