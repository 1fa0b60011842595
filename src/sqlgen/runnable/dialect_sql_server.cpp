#include "common/text.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/names.h"

namespace quillmarden {

namespace {

std::string type(const ScriptColumn& column) {
  if (column.type->text == "@AUTO_NO") return "int identity(1,1)";
  const std::string& lower = column.type->lower;
  if (lower.ends_with(" identity")) {
    const ScriptType numbers{lower.substr(0, lower.size() - 9), lower.substr(0, lower.size() - 9), TypeClass::Number};
    ScriptColumn base = column;
    base.type = &numbers;
    return type(base) + " identity(1,1)";
  }
  const bool text = lower == "varchar" || lower == "nvarchar" || lower == "varbinary";
  const double longest = lower == "nvarchar" ? 4000 : 8000;
  if (text && column.type->text.find('(') == std::string::npos &&
      (column.wholeDigits <= 0 || column.wholeDigits > longest))
    return lower + "(max)";
  return typeWithDigits(column, {"char", "varchar", "nchar", "nvarchar", "binary", "varbinary", "decimal", "numeric"});
}

TypeClass typeClass(std::string_view lowerType) {
  if (lowerType == "timestamp") return TypeClass::Binary;
  if (lowerType == "bit") return TypeClass::Boolean;
  return commonTypeClass(lowerType);
}

std::string computed(std::string_view expression) { return " AS (" + std::string(expression) + ")"; }

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
                               .type = type,
                               .typeClass = typeClass,
                               .computed = computed,
                               .drop = drop,
                               .comment = comment,
                               .createSchema = createSchema};
  return dialect;
}

}  // namespace quillmarden
