#include "common/text.h"
#include "sqlgen/runnable/literals.h"
#include "sqlgen/runnable/names.h"

namespace quillmarden {

namespace {

std::string type(const ScriptColumn& column) {
  if (trim(column.type) == "@AUTO_NO") return "int identity(1,1)";
  const std::string lower = lowerType(column);
  if (lower.ends_with(" identity")) {
    ScriptColumn base = column;
    base.type = lower.substr(0, lower.size() - 9);
    return type(base) + " identity(1,1)";
  }
  const bool text = lower == "varchar" || lower == "nvarchar" || lower == "varbinary";
  const double longest = lower == "nvarchar" ? 4000 : 8000;
  if (text && column.type.find('(') == std::string::npos && (column.wholeDigits <= 0 || column.wholeDigits > longest))
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

std::string comment(const Dialect& dialect, const TableNames& table, std::string_view column, std::string_view text) {
  std::string statement = "EXEC sp_addextendedproperty N'MS_Description', " + textLiteral(dialect, text) +
                          ", N'SCHEMA', " + textLiteral(dialect, table.schema.empty() ? "dbo" : table.schema) +
                          ", N'TABLE', " + textLiteral(dialect, table.name);
  if (!column.empty()) statement += ", N'COLUMN', " + textLiteral(dialect, column);
  return statement + "\r\ngo\r\n";
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
                               .comment = comment};
  return dialect;
}

}  // namespace quillmarden
