#include "editing/table_copy.h"

#include <functional>
#include <map>
#include <set>
#include <utility>
#include <vector>

#include "common/numbers.h"
#include "common/text.h"
#include "editing/detail_parts.h"
#include "editing/tb_info_parts.h"

namespace quillmarden {

namespace {

constexpr std::size_t kIndexNameWidth = 30;

/// Texts that are in use, without regard to case.
class TakenNames {
 public:
  void add(std::string_view name) { names_.insert(toLower(trim(name))); }
  bool has(std::string_view name) const { return names_.contains(toLower(trim(name))); }

  /// The first text of the row of proposals that is free.
  std::string free(const std::function<std::string(int number)>& proposal) const {
    for (int number = 1;; ++number)
      if (std::string name = proposal(number); !has(name)) return name;
  }

 private:
  std::set<std::string> names_;
};

std::string numbered(const std::string& stem, int number) { return number == 1 ? stem : stem + std::to_string(number); }

/// Names of the copy that no live table of its System bears.
void proposeNames(Session& session, frmTBInfo& screen) {
  TakenNames tables;
  TakenNames japanese;
  TakenNames shortNames;
  for (Recordset rows = session.gDB->openRecordset(
           "SELECT テーブル名, 日本語名, 略名 FROM MAS_TABLEINFO WHERE 削除フラグ = 0 AND システム名 = paraSystem",
           {{"paraSystem", screen.lblSystemName.caption}});
       !rows.eof(); rows.moveNext()) {
    tables.add(rows.text(0));
    japanese.add(rows.text(1));
    shortNames.add(rows.text(2));
  }
  std::string name = screen.TxtTableName.text;
  if (name.ends_with('@')) name.pop_back();
  screen.TxtTableName.text =
      tables.free([&](int number) { return storedTableName(session, name + "_" + std::to_string(number + 1)); });
  const std::string stem = screen.TxtJPN.text + "のコピー";
  screen.TxtJPN.text = japanese.free([&](int number) { return numbered(stem, number); });
  const std::string shortName = screen.TxtRyaku.text;
  if (!shortName.empty())
    screen.TxtRyaku.text =
        shortNames.free([&](int number) { return storedRyaku(session, shortName + std::to_string(number + 1)); });
}

/// What a copy begins with, not goes on with.
void clearHistory(frmTBInfo& screen) {
  screen.CmbStat.text = kNotBegun;
  screen.TxtMakeDate.text.clear();
  screen.TxtEndDate.text.clear();
  screen.TxtChgDate.text.clear();
  screen.TxtRefFileName.text.clear();
  screen.ChkReverse.value = screen.loadedReverse = false;
  screen.ChkEditOK.value = true;
}

/// What takes a row's cells on its way into the copy.
using RowChange = std::function<void(const Recordset& row, std::map<std::string, Value>& cells)>;

/// The rows of a table that belong to `from`, once more for `to`.
void copyRows(Database& database, const std::string& table, const std::string& from, const std::string& to,
              const RowChange& change) {
  if (!database.tableDef(table)) return;  // other tools' Repositories have no more than they need
  std::vector<std::string> columns;
  std::vector<std::vector<Value>> copies;
  Recordset rows = database.openRecordset("SELECT * FROM " + table + " WHERE ID = paraId",
                                          {{"paraId", static_cast<std::int64_t>(gVal(from))}});
  for (int i = 0; i < rows.fieldCount(); ++i) columns.push_back(rows.fieldName(i));
  for (; !rows.eof(); rows.moveNext()) {
    std::map<std::string, Value> changed;
    changed["ID"] = static_cast<std::int64_t>(gVal(to));
    change(rows, changed);
    std::vector<Value> copy;
    for (int i = 0; i < rows.fieldCount(); ++i) {
      const auto own = changed.find(columns[static_cast<std::size_t>(i)]);
      copy.push_back(own == changed.end() ? rows.value(i) : own->second);
    }
    copies.push_back(std::move(copy));
  }
  if (!copies.empty()) database.insertRows(table, columns, copies);
}

std::vector<std::string> allIndexNames(Database& database) {
  std::vector<std::string> names;
  if (!database.tableDef("MAS_INDEX")) return names;
  for (Recordset rows = database.openRecordset("SELECT INDEX_NAME FROM MAS_INDEX GROUP BY INDEX_NAME"); !rows.eof();
       rows.moveNext())
    names.emplace_back(rows.text(0));
  return names;
}

/// The name for a copied index: the short name or name of the table in it follows, and a number makes it unlike all
/// others, within the width that index names may have.
std::string indexName(const Session& session, std::string_view former, const frmTBInfo& source, const frmTBInfo& copy,
                      const TakenNames& taken) {
  std::string stem(trim(former));
  const std::pair<std::string, std::string> words[] = {
      {source.TxtRyaku.text, storedRyaku(session, copy.TxtRyaku.text)},
      {source.TxtTableName.text, storedTableName(session, copy.TxtTableName.text)}};
  for (const auto& [word, instead] : words) {
    if (word.empty() || stem.find(word) == std::string::npos) continue;
    stem = gReplaceAll(stem, word, instead);
    break;
  }
  return taken.free([&](int number) {
    const std::string mark = number == 1 ? "" : "_" + std::to_string(number);
    return gMidB(stem, 1, kIndexNameWidth - mark.size()) + mark;
  });
}

/// The figures of the source's header that no box of the screen shows.
void copyFigures(Database& database, const std::string& from, const std::string& to) {
  Recordset source = database.openTable("MAS_TABLEINFO");
  Recordset copy = database.openTable("MAS_TABLEINFO");
  if (!source.seek({static_cast<std::int64_t>(gVal(from))}) || !copy.seek({static_cast<std::int64_t>(gVal(to))}))
    throw EngineError(engine_error::kNoCurrentRecord, "ID " + from);
  copy.edit();
  for (const std::string_view column : {"レコード長", "ブロック格納件数", "必要容量", "項目数", "partition_field"})
    if (source.fieldIndex(column) >= 0 && copy.fieldIndex(column) >= 0) copy.set(column, source.value(column));
  copy.update();
}

}  // namespace

bool frmTBInfo_LoadCopy(Session& session, Host& host, frmTBInfo& screen, std::string_view tableId) {
  if (frmTBInfo_Load(session, host, screen, tableId)) return true;
  screen.copyOf = screen.lblID.caption;
  screen.lblID.caption.clear();
  screen.lblSystemName.caption = session.gCurrentSystemName;
  screen.cmdMoveSystem.enabled = false;
  clearHistory(screen);
  try {
    proposeNames(session, screen);
  } catch (const EngineError& error) {
    tellError(session, host, "frmTBInfo_LoadCopy", error);
    return true;
  }
  screen.loadedJPN.clear();
  screen.loadedTableName.clear();
  TxtRyaku_Change(session, host, screen);
  return false;
}

void copyTableContents(Session& session, Host& host, const frmTBInfo& screen, const std::string& tableId) {
  Database& database = *session.gDB;
  const std::string& from = screen.copyOf;
  const std::string now = formatDateTime(host.clock.now(), kSecondForm);
  const auto stamp = [&](std::map<std::string, Value>& cells) {
    cells["作成年月日"] = cells["更新年月日"] = now;
    cells["作成者"] = cells["更新者"] = session.gLoginUser;
    cells["make_server"] = cells["COMPNAME"] = host.machine.computerName;
  };
  for (const char* table : {"MAS_TABLEDETAILES", "MAS_PRJINFO"}) {
    copyRows(database, table, from, tableId, [&](const Recordset& row, std::map<std::string, Value>& cells) {
      stamp(cells);
      if (row.fieldIndex("外部参照TABLEID") >= 0 && row.text("外部参照TABLEID") == from)
        cells["外部参照TABLEID"] = static_cast<std::int64_t>(gVal(tableId));
    });
  }
  copyRows(database, "MAS_TABLEBIKO", from, tableId, [&](const Recordset&, std::map<std::string, Value>& cells) {
    cells["システム名"] = screen.lblSystemName.caption;
  });

  frmTBInfo source;
  if (frmTBInfo_Load(session, host, source, from)) throw EngineError(engine_error::kNoCurrentRecord, "ID " + from);
  TakenNames taken;
  for (const std::string& name : allIndexNames(database)) taken.add(name);
  std::map<std::string, std::string> names;
  copyRows(database, "MAS_INDEX", from, tableId, [&](const Recordset& row, std::map<std::string, Value>& cells) {
    stamp(cells);
    std::string& name = names[std::string(row.text("INDEX_NAME"))];
    if (name.empty()) taken.add(name = indexName(session, row.text("INDEX_NAME"), source, screen, taken));
    cells["INDEX_NAME"] = name;
  });
  copyFigures(database, from, tableId);
}

}  // namespace quillmarden
