#include "repository/upgrade.h"

#include <algorithm>
#include <filesystem>
#include <optional>

#include "common/log.h"
#include "common/message.h"
#include "common/paths.h"
#include "common/text.h"
#include "repository/login.h"
#include "repository/schema.h"

namespace quillmarden {
namespace {

struct AddedField {
  std::string_view table;
  FieldDef field;
};

/// Columns that came with later versions, in the order in which they are looked for.
const std::vector<AddedField>& addedFields() {
  const auto integer = [](const char* name) { return FieldDef{.name = name, .type = FieldType::Integer}; };
  const auto text = [](const char* name, int size) { return FieldDef{.name = name, .size = size}; };
  static const std::vector<AddedField> fields = {
      {"MAS_TABLEINFO", integer("pmark")},
      {"MAS_TABLEINFO", integer("brinindex")},
      {"MAS_TABLEINFO", integer("inttriggerflg")},
      {"MAS_TABLEINFO", text("reffile", 255)},
      {"MAS_TABLEINFO", text("partition_field", 100)},
      {"MAS_SYSTEM", text("accessfilename", 255)},
      {"MAS_SYSTEM", integer("replacejpnspace")},
      {"MAS_SYSTEM", integer("filelinkcopy")},
      {"MAS_SYSTEM", {.name = "index_space", .size = 50, .allowZeroLength = false}},
      {"MAS_FILETYPE", text("型_変換", 50)},
      {"MAS_FILECONV", integer("整数_桁数")},
      {"MAS_FILECONV", integer("少数_桁数")},
      {"MAS_SYSTEM", integer("narrow_flg")},
      {"MAS_SYSTEM", integer("field_name_ucase")},
      {"MAS_DOMAIN", integer("pmark")},
      {"MAS_DOMAIN", integer("sortnum")},
      {"MAS_SYSTEM", integer("table_name_ucase")},
      {"MAS_SYSTEM", integer("field_name_lcase")},
      {"MAS_SYSTEM", integer("boltablenarrow")},
      {"MAS_SYSTEM", integer("bolryakulower")},
      {"MAS_SYSTEM", integer("bolryakudelmoji")},
      {"MAS_TABLEDETAILES", integer("pmark")},
      {"MAS_INDEX", integer("bolunique")},
      {"MAS_INDEX", integer("brinindex")},
  };
  return fields;
}

/// Whether the file has the table, but without the field. A table that is missing as a whole comes with all its
/// fields later.
bool lacks(Database& database, std::string_view table, std::string_view field) {
  const TableDef* def = database.tableDef(table);
  return def && !def->field(field);
}

/// Adds the field unless another login has done so since this one looked. False when there was nothing to add.
bool addMissing(Database& database, std::string_view table, const FieldDef& field) {
  try {
    database.addField(table, field);
    return true;
  } catch (const EngineError& error) {
    if (error.number() != engine_error::kFieldExists) throw;
    return false;
  }
}

/// Adds what is missing in one transaction and gives the tables that grew, each once. Where an addition fails, those
/// before it stay and `failure` tells why.
std::vector<std::string> addFields(Database& database, const std::vector<const AddedField*>& missing,
                                   std::optional<EngineError>& failure) {
  std::vector<std::string> grown;
  try {
    inTransaction(database, [&] {
      try {
        for (const AddedField* added : missing) {
          if (!addMissing(database, added->table, added->field)) continue;
          if (std::find(grown.begin(), grown.end(), added->table) == grown.end()) grown.emplace_back(added->table);
        }
      } catch (const EngineError& error) {
        failure = error;
      }
    });
  } catch (const EngineError& error) {
    grown.clear();
    if (!failure) failure = error;
  }
  return grown;
}

bool failed(Host& host, const EngineError& error) {
  gMsgBox(host,
          joinLines({"追加エラーが発生しました.", "ErrNo: " + std::to_string(error.number()), error.what(),
                     "のエラーが発生しました."}),
          kStopIcon);
  return true;
}

/// The fields of the schema that a table of the file lacks. Auto columns are left out: no table can get one later.
std::vector<const FieldDef*> missingFields(const TableDef& wanted, const TableDef& have) {
  std::vector<const FieldDef*> missing;
  std::size_t next = 0;
  for (const FieldDef& field : wanted.fields) {
    // A file at the current schema has the same fields in the same order.
    if (next < have.fields.size() && have.fields[next].name == field.name) {
      ++next;
      continue;
    }
    if (!have.field(field.name)) {
      if (field.type != FieldType::Auto) missing.push_back(&field);
    } else {
      ++next;
    }
  }
  return missing;
}

bool isComplete(Database& database) {
  return std::all_of(repositoryTables().begin(), repositoryTables().end(), [&](const TableDef& wanted) {
    const TableDef* have = database.tableDef(wanted.name);
    return have && missingFields(wanted, *have).empty();
  });
}

}  // namespace

bool ChkApUpDateField(Session& session, Host& host) {
  Database& database = *session.gDB;
  try {
    std::vector<const AddedField*> missing;
    for (const AddedField& added : addedFields())
      if (lacks(database, added.table, added.field.name)) missing.push_back(&added);
    if (!missing.empty()) {
      std::optional<EngineError> failure;
      const std::vector<std::string> grown = addFields(database, missing, failure);
      if (failure) return failed(host, *failure);
      std::string text;
      for (const std::string& table : grown) text.append(table).append("\n");
      if (!grown.empty()) gMsgBox(host, text + "テーブルに項目追加しました.");
    }
    database.execute("ALTER TABLE MAS_TABLEINFO ALTER COLUMN 略名 TEXT(50)");
  } catch (const EngineError& error) {
    return failed(host, error);
  }
  ChkApUpDate2FileTypeAccess型変換(session, host);
  return false;
}

void completeSchema(Session& session, Host& host) {
  Database& database = *session.gDB;
  try {
    if (!isComplete(database)) {
      std::string added;
      inTransaction(database, [&] {
        for (const TableDef& wanted : repositoryTables()) {
          const TableDef* have = database.tableDef(wanted.name);
          if (!have) {
            database.createTable(wanted);
            added.append(" ").append(wanted.name);
            continue;
          }
          for (const FieldDef* field : missingFields(wanted, *have)) {
            if (addMissing(database, wanted.name, *field))
              added.append(" ").append(wanted.name).append(".").append(field->name);
          }
        }
      });
      if (!added.empty()) session.log.gPutLog(host, "completeSchema:" + added);
    }
    ensureRepositoryIndexes(database);
  } catch (const EngineError& error) {
    session.log.putError(host, "completeSchema", error.number(), error.what());
  }
}

void upgradeRepository(Session& session, Host& host) {
  try {
    if (ChkApUpDateField(session, host)) putErrAddField(host, toPath(session.gInfoFolder), session.gDB->path());
    ChkApUpDate2FileType(session, host);
    ChkApUpDate2FileTypeConv(session, host);
    ensureFileConversions(session, host);
  } catch (const EngineError& error) {
    showDatabaseError(host, session.gDbFileName, error.what());
  }
  completeSchema(session, host);
}

}  // namespace quillmarden
