#include "repository/type_catalogue.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "common/text.h"

namespace quillmarden {
namespace {

Value seedFlag(bool flag) { return std::int64_t{flag ? -1 : 0}; }

}  // namespace

std::string catalogueKey(std::string_view kind, std::string_view type) {
  return toLower(std::string(kind).append("\t").append(type));
}

std::vector<std::string> gGetFileKindList(Database& database) {
  std::vector<std::string> kinds = {""};
  for (Recordset rows = database.openRecordset("Select ファイル種別 From MAS_FILE;"); !rows.eof(); rows.moveNext())
    kinds.emplace_back(rows.text(0));
  return kinds;
}

const std::vector<FileType>& gGetFileTypeList(Database& database, TypeCatalogue& catalogue) {
  if (catalogue.loaded) return catalogue.types;
  Recordset rows = database.openRecordset("Select * From MAS_FILETYPE Order By ファイル種別;");
  const int kind = rows.fieldIndex("ファイル種別"), type = rows.fieldIndex("型"),
            takesDigits = rows.fieldIndex("桁数チェック"), digits = rows.fieldIndex("桁数"),
            numeric = rows.fieldIndex("数値項目");
  TypeCatalogue read;
  read.loaded = true;
  for (; !rows.eof(); rows.moveNext()) {
    read.byName.emplace(catalogueKey(rows.text(kind), rows.text(type)), read.types.size());
    read.types.push_back({.kind = std::string(rows.text(kind)),
                          .type = std::string(rows.text(type)),
                          .takesDigits = rows.integer(takesDigits) != 0,
                          .digits = static_cast<long>(rows.integer(digits)),
                          .numeric = rows.integer(numeric) != 0});
  }
  catalogue = std::move(read);
  return catalogue.types;
}

const FileType* gChkFileType(Database& database, TypeCatalogue& catalogue, std::string_view kind,
                             std::string_view type) {
  gGetFileTypeList(database, catalogue);
  const auto found = catalogue.byName.find(catalogueKey(kind, type));
  return found == catalogue.byName.end() ? nullptr : &catalogue.types[found->second];
}

DigitRule gFileType_NoDigits(Database& database, TypeCatalogue& catalogue, std::string_view kind,
                             std::string_view type) {
  const FileType* known = gChkFileType(database, catalogue, kind, type);
  if (!known) return {};
  return {.noDigits = !known->takesDigits, .numeric = known->numeric};
}

bool takesNoDigitsEither(std::string_view kind, std::string_view type) {
  constexpr std::pair<std::string_view, std::string_view> kTypes[] = {
      {"MySQL", "TINYTEXT"},    {"MySQL", "TINYBLOB"},       {"MySQL", "TEXT"},         {"MySQL", "BLOB"},
      {"MySQL", "MEDIUMTEXT"},  {"MySQL", "MEDIUMBLOB"},     {"MySQL", "LONGTEXT"},     {"MySQL", "LONGBLOB"},
      {"Access", "ﾒﾓ型"},       {"Access", "oldｵﾌﾞｼﾞｪｸﾄ型"}, {"PostgreSQL", "varchar"}, {"PostgreSQL", "numeric"},
      {"PostgreSQL", "decimal"}};
  return std::any_of(std::begin(kTypes), std::end(kTypes), [&](const auto& known) {
    return equalsNoCase(known.first, kind) && equalsNoCase(known.second, type);
  });
}

const std::vector<std::string>& fileTypeColumns() {
  static const std::vector<std::string> columns = {"ファイル種別", "型", "桁数チェック", "桁数", "数値項目", "型_変換"};
  return columns;
}

std::vector<Value> fileTypeRow(std::string_view kind, const SeedType& seed) {
  std::string_view conversion;
  if (kind == "Access") conversion = accessTypeConversion(toLower(seed.type));
  return {std::string(kind),          std::string(seed.type),
          seedFlag(seed.takesDigits), std::int64_t{seed.digits},
          seedFlag(seed.numeric),     conversion.empty() ? Value() : Value(std::string(conversion))};
}

const std::vector<std::string>& fileConvColumns() {
  static const std::vector<std::string> columns = {"元ファイル種別", "元型",           "先ファイル種別",
                                                   "先型",           "先桁数チェック", "先桁数",
                                                   "先数値項目",     "整数_桁数",      "少数_桁数"};
  return columns;
}

std::vector<Value> fileConvRow(const SeedConversion& seed) {
  return {std::string(seed.fromKind), std::string(seed.fromType),     std::string(seed.toKind),
          std::string(seed.toType),   seedFlag(seed.takesDigits),     std::int64_t{0},
          seedFlag(seed.numeric),     std::int64_t{seed.wholeDigits}, std::int64_t{seed.fractionDigits}};
}

}  // namespace quillmarden
