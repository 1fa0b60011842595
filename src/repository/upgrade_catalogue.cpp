#include <algorithm>
#include <unordered_set>

#include "common/message.h"
#include "common/text.h"
#include "engine/sql_text.h"
#include "repository/login.h"
#include "repository/schema.h"
#include "repository/upgrade.h"

namespace quillmarden {
namespace {

constexpr std::string_view kOldNumberType = "数値型";
constexpr std::string_view kDecimalType = "10進型";

/// What the catalogue of a file holds, in lower case. Read as a whole: one statement for a hundred look-ups.
struct CatalogueRows {
  std::unordered_set<std::string> kinds;         ///< of MAS_FILE
  std::unordered_set<std::string> kindsOfTypes;  ///< kinds with rows in MAS_FILETYPE
  std::unordered_set<std::string> types;         ///< catalogueKey of MAS_FILETYPE
  bool oldNumberFields = false;                  ///< fields of the type 数値型

  bool hasType(std::string_view kind, std::string_view type) const { return types.contains(catalogueKey(kind, type)); }
};

std::unordered_set<std::string> readKinds(Database& database) {
  std::unordered_set<std::string> kinds;
  for (Recordset rows = database.openRecordset("Select ファイル種別 From MAS_FILE;"); !rows.eof(); rows.moveNext())
    kinds.insert(toLower(rows.text(0)));
  return kinds;
}

long count(Database& database, std::string_view condition) {
  return static_cast<long>(
      database.openRecordset(std::string("Select Count(*) As cnt From ").append(condition)).integer(0));
}

CatalogueRows readCatalogue(Database& database) {
  CatalogueRows have;
  have.kinds = readKinds(database);
  for (Recordset rows = database.openRecordset("Select ファイル種別, 型 From MAS_FILETYPE;"); !rows.eof();
       rows.moveNext()) {
    have.kindsOfTypes.insert(toLower(rows.text(0)));
    have.types.insert(catalogueKey(rows.text(0), rows.text(1)));
  }
  have.oldNumberFields = count(database, "MAS_TABLEDETAILES Where 型 = '数値型' ") > 0;
  return have;
}

/// Adds rows, without the columns that a file could not take.
void insertSeeds(Database& database, std::string_view table, const std::vector<std::string>& columns,
                 const std::vector<std::vector<Value>>& rows) {
  if (rows.empty()) return;
  const TableDef* def = database.tableDef(table);
  const auto known = [&](const std::string& column) { return def && def->field(column); };
  if (std::all_of(columns.begin(), columns.end(), known)) {
    database.insertRows(table, columns, rows);
    return;
  }
  std::vector<std::string> kept;
  std::vector<std::vector<Value>> keptRows(rows.size());
  for (std::size_t column = 0; column < columns.size(); ++column) {
    if (!known(columns[column])) continue;
    kept.push_back(columns[column]);
    for (std::size_t row = 0; row < rows.size(); ++row) keptRows[row].push_back(rows[row][column]);
  }
  database.insertRows(table, kept, keptRows);
}

std::vector<std::vector<Value>> missingTypes(const CatalogueRows& have, std::string_view kind) {
  std::vector<std::vector<Value>> rows;
  for (const SeedType& seed : seedKind(kind).types)
    if (!have.hasType(kind, seed.type)) rows.push_back(fileTypeRow(kind, seed));
  return rows;
}

std::vector<std::string_view> outdatedTypes(std::string_view kind) {
  if (kind == "Access") return {kOldNumberType};
  if (kind == "SQL Server") return {"integer", "long"};
  return {};
}

bool isUpToDate(const CatalogueRows& have, std::string_view kind) {
  const std::vector<std::string_view> outdated = outdatedTypes(kind);
  return have.kinds.contains(toLower(kind)) && missingTypes(have, kind).empty() &&
         std::none_of(outdated.begin(), outdated.end(),
                      [&](std::string_view type) { return have.hasType(kind, type); }) &&
         !(kind == "Access" && have.oldNumberFields);
}

void seedKindInto(Database& database, const CatalogueRows& have, std::string_view kind) {
  if (!have.kinds.contains(toLower(kind))) database.insertRows("MAS_FILE", {"ファイル種別"}, {{std::string(kind)}});
  insertSeeds(database, "MAS_FILETYPE", fileTypeColumns(), missingTypes(have, kind));
  for (const std::string_view type : outdatedTypes(kind)) {
    if (!have.hasType(kind, type)) continue;
    database.execute(std::string("Delete From MAS_FILETYPE Where ファイル種別 = ")
                         .append(sqlText(kind))
                         .append(" And 型 = ")
                         .append(sqlText(type))
                         .append(" "));
  }
  if (kind == "Access" && have.oldNumberFields)
    database.execute("UpDate MAS_TABLEDETAILES Set 型 = '長整数型'  Where 型 = '数値型' ");
}

void showSeedError(Host& host, std::string_view kind, std::string_view error) {
  gMsgBox(host, joinLines({std::string(kind).append(".追加エラーが発生しました."), error, "のエラーでした."}),
          kStopIcon);
}

/// A failed step after which the file can still be used.
bool failedStep(Host& host, std::string_view text, std::string_view error, std::string_view routine) {
  gMsgBox(host,
          joinLines({text, "継続利用できます.", "エラーは、", error, "です.", std::string("関数:").append(routine)}),
          kStopIcon);
  return true;
}

/// Whether the row is the one that the seeds would put in its place.
bool isSeedOfDecimal(const Recordset& row) {
  const std::vector<SeedType>& seeds = seedKind("Access").types;
  const auto seed =
      std::find_if(seeds.begin(), seeds.end(), [](const SeedType& type) { return type.type == kDecimalType; });
  return seed != seeds.end() && (row.integer("桁数チェック") != 0) == seed->takesDigits &&
         row.integer("桁数") == seed->digits && (row.integer("数値項目") != 0) == seed->numeric &&
         !row.isNull("桁数チェック") && !row.isNull("桁数") && !row.isNull("数値項目");
}

std::vector<std::vector<Value>> missingConversions(Database& database) {
  std::unordered_set<std::string> have;
  for (Recordset rows = database.openRecordset("Select 元ファイル種別, 元型 From MAS_FILECONV;"); !rows.eof();
       rows.moveNext())
    have.insert(catalogueKey(rows.text(0), rows.text(1)));
  std::vector<std::vector<Value>> missing;
  for (const SeedConversion& seed : seedConversions())
    if (!have.contains(catalogueKey(seed.fromKind, seed.fromType))) missing.push_back(fileConvRow(seed));
  return missing;
}

}  // namespace

bool ChkApUpDate2FileTypeAccess型変換(Session& session, Host& host) {
  Database& database = *session.gDB;
  try {
    std::vector<std::string> statements;
    Recordset rows = database.openRecordset("SELECT   a.*  FROM MAS_FILETYPE AS a WHERE a.ファイル種別 = 'Access' ");
    for (; !rows.eof(); rows.moveNext()) {
      if (!rows.text("型_変換").empty()) continue;
      const std::string type(rows.text("型"));
      const std::string where = " WHERE ファイル種別 = 'Access'  AND   型           = " + sqlText(type);
      const std::string_view conversion = accessTypeConversion(toLower(type));
      // 10進型 goes, and the seeds bring it back: where that would change nothing, nothing is written.
      if (type == kDecimalType && !isSeedOfDecimal(rows)) statements.push_back(" DELETE  FROM MAS_FILETYPE" + where);
      if (!conversion.empty())
        statements.push_back(
            std::string(" UPDATE MAS_FILETYPE  SET  型_変換 = ").append(sqlText(conversion)).append(where));
    }
    if (statements.empty()) return false;
    inTransaction(database, [&] {
      for (const std::string& statement : statements) database.execute(statement);
    });
    return false;
  } catch (const EngineError& error) {
    return failedStep(host, "ファイルタイプ.型変換追加に失敗しました.", error.what(),
                      "ChkApUpDate2FileTypeAccess型変換");
  }
}

bool ChkApUpDate2FileType(Session& session, Host& host) {
  static constexpr std::string_view kAsked[] = {"Text",       "TeraDatabase", "メンバー", "MySQL",
                                                "PostgreSQL", "PG管理",       "固定値"};
  Database& database = *session.gDB;
  CatalogueRows have = readCatalogue(database);

  std::string missing;
  for (const std::string_view kind : kAsked)
    if (!have.kindsOfTypes.contains(toLower(kind))) missing.append("   ").append(kind);
  std::vector<std::string_view> kinds;
  if (!missing.empty()) {
    gMsgBox(host, joinLines({"DB種類が追加されました.", missing, "情報を追加します."}), kInformationIcon);
    kinds = {"TeraDatabase", "Text", "メンバー", "固定値", "MySQL"};
  }
  kinds.insert(kinds.end(), {"Oracle", "PostgreSQL", "SQL Server", "Access", "PG管理"});
  std::erase_if(kinds, [&](std::string_view kind) { return isUpToDate(have, kind); });
  if (kinds.empty()) return false;

  // The messages wait until the write lock is given back.
  std::vector<std::pair<std::string_view, std::string>> failures;
  try {
    inTransaction(database, [&] {
      have = readCatalogue(database);  // another login may have been at the same work
      for (const std::string_view kind : kinds) {
        try {
          seedKindInto(database, have, kind);
        } catch (const EngineError& error) {
          failures.emplace_back(kind, error.what());
          if (!database.inTransaction()) break;  // all is taken back, and the next seed would stand alone
        }
      }
    });
  } catch (const EngineError& error) {
    if (failures.empty()) failures.emplace_back(kinds.front(), error.what());
  }
  for (const auto& [kind, error] : failures) showSeedError(host, kind, error);
  return !failures.empty();
}

bool ChkApUpDate2FileTypeConv(Session& session, Host& host) {
  Database& database = *session.gDB;
  try {
    const auto outdated = [&] {
      const std::unordered_set<std::string> kinds = readKinds(database);
      return std::pair(!kinds.contains("メンバー"), kinds.contains("組織"));
    };
    if (outdated() != std::pair(false, false)) {
      inTransaction(database, [&] {
        const auto [lacksNew, hasOld] = outdated();
        if (lacksNew) database.insertRows("MAS_FILE", {"ファイル種別"}, {{std::string("メンバー")}});
        if (hasOld) database.execute("Delete From MAS_FILE  Where ファイル種別 = '組織'");
      });
    }
    const long rows = count(database, "MAS_TABLEINFO Where ファイル種別 = '組織' ") +
                      count(database, "MAS_SYSTEM Where databasetype = '組織' ");
    if (rows == 0) return false;
    gMsgBox(host, "対象データベース名の変更をします.", kInformationIcon);
  } catch (const EngineError& error) {
    return failedStep(host, "ファイルタイプの変更に失敗しました.", error.what(), "ChkApUpDate2FileTypeConv");
  }
  return ConvFileType組織2メンバ(session, host);
}

bool ConvFileType組織2メンバ(Session& session, Host& host) {
  Database& database = *session.gDB;
  int rows = 0;
  try {
    inTransaction(database, [&] {
      rows = database.execute(" UPDATE MAS_SYSTEM  SET databasetype = 'メンバー'  Where databasetype = '組織' ");
      rows += database.execute(" UPDATE MAS_TABLEINFO  SET ファイル種別 = 'メンバー'  Where ファイル種別 = '組織' ");
    });
  } catch (const EngineError& error) {
    return failedStep(host, "ファイルタイプの変換に失敗しました.", error.what(), "ConvFileType組織2メンバ");
  }
  gMsgBox(host, "データ変換 " + std::to_string(rows) + " 件行いました.", kInformationIcon);
  return false;
}

bool ensureFileConversions(Session& session, Host& host) {
  Database& database = *session.gDB;
  try {
    if (database.tableDef("MAS_FILECONV") && missingConversions(database).empty()) return false;
    inTransaction(database, [&] {
      if (!database.tableDef("MAS_FILECONV")) {
        const auto& tables = repositoryTables();
        database.createTable(*std::find_if(tables.begin(), tables.end(),
                                           [](const TableDef& table) { return table.name == "MAS_FILECONV"; }));
      }
      insertSeeds(database, "MAS_FILECONV", fileConvColumns(), missingConversions(database));
    });
    return false;
  } catch (const EngineError& error) {
    showDatabaseError(host, session.gDbFileName, error.what());
    return true;
  }
}

}  // namespace quillmarden
