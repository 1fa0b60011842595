#include "excel/er_tables.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "common/numbers.h"
#include "common/text.h"
#include "excel/book_run.h"
#include "excel/list_book.h"
#include "excel/member_book.h"

namespace quillmarden {
namespace {

bool readTable(Session& session, Host& host, frmTBDetail& detail, const std::string& id, ErTable& table) {
  if (pGet_TableID2TableDetails(session, host, detail, id)) return false;
  table.id = id;
  table.name = trim(detail.txtTableNameJPN.text);
  if (table.name.empty()) table.name = trim(detail.txtTableNameENG.text);
  const Spread& grid = detail.Spread;
  for (int row = 1; row <= grid.maxRows(); ++row) {
    ErField field;
    field.name = trim(grid.text(field_col::kJapaneseName, row));
    if (field.name.empty()) field.name = trim(grid.text(field_col::kFieldName, row));
    if (field.name.empty()) continue;
    field.second = trim(grid.text(field_col::kRemark, row));
    if (detail.mode == DetailMode::Member &&
        !isMemberKindShown(session.settings, trim(grid.text(field_col::kType, row)))) {
      continue;
    }
    // The columns of members and programs have other meanings from the key on.
    if (detail.mode == DetailMode::Table) {
      field.key = isKey(grid.text(field_col::kKey, row));
      const std::string target = plainNumber(gVal(grid.text(field_col::kForeignTableId, row)));
      field.foreign = target != "0" || !trim(grid.text(field_col::kForeign, row)).empty();
      if (target != "0" && std::ranges::find(table.targets, target) == table.targets.end()) {
        table.targets.push_back(target);
      }
    }
    table.fields.push_back(std::move(field));
  }
  return true;
}

/// A table by its ID, and how a message names it.
struct WantedTable {
  std::string id;
  std::string name;
};

std::vector<WantedTable> chosenTables(const frmTBList& list) {
  std::vector<WantedTable> tables;
  for (const std::string& row : chosenRows(list)) {
    if (const std::string id(tableListId(row)); !id.empty()) tables.push_back({id, std::string(tableListName(row))});
  }
  return tables;
}

}  // namespace

std::vector<ErTable> readErTables(Session& session, Host& host, const frmTBList& list, frmTBDetail& detail,
                                  const std::function<void(ErTable&)>& reduce, bool& stopped) {
  std::vector<WantedTable> wanted = chosenTables(list);
  const std::size_t chosen = wanted.size();
  std::set<std::string, std::less<>> known;
  for (const WantedTable& table : wanted) known.insert(table.id);
  std::vector<ErTable> tables;
  stopped = false;
  for (std::size_t i = 0; i < wanted.size(); ++i) {
    if (host.dialogs.stopRequested()) {
      stopped = true;
      break;
    }
    ErTable table;
    table.extra = i >= chosen;
    const bool read = forTable(wanted[i].name, [&] { return readTable(session, host, detail, wanted[i].id, table); });
    if (!read) continue;
    // What only an added table names is left out: the sheet shows the chosen ones and their neighbours.
    if (!table.extra) {
      for (const std::string& target : table.targets) {
        if (known.insert(target).second) wanted.push_back({target, "ID " + target});
      }
    }
    reduce(table);
    tables.push_back(std::move(table));
    host.dialogs.progress(static_cast<long>(i + 1), static_cast<long>(wanted.size()));
    host.dialogs.yield();
  }
  return tables;
}

std::vector<Box> placeErBoxes(const std::vector<Box>& sizes, std::size_t chosen, double unit) {
  const auto columns = static_cast<std::size_t>(std::sqrt(static_cast<double>(chosen))) + 1;
  constexpr double kGap = 5;
  constexpr double kStagger = 2;
  struct Slot {
    std::size_t column;
    Box box;
  };
  std::vector<Slot> slots;
  std::vector<double> widths(columns, 0);
  std::vector<double> tops(columns, 0);
  std::size_t column = 0;
  for (std::size_t i = 0; i < sizes.size(); ++i) {
    Box box = sizes[i];
    box.top = tops[column] + (column % 2 == 1 ? kStagger * unit : 0);
    tops[column] += box.height + kGap * unit;
    widths[column] = std::max(widths[column], box.width);
    slots.push_back({column, box});
    // Rows of tables that were not chosen themselves stand one column in.
    if (++column == columns) column = i + 1 >= chosen && columns > 1 ? 1 : 0;
  }
  // Only now are the columns as wide as their widest box.
  std::vector<double> lefts(columns, 0);
  for (std::size_t i = 1; i < columns; ++i) lefts[i] = lefts[i - 1] + widths[i - 1] + kGap * unit;
  std::vector<Box> boxes;
  for (Slot& slot : slots) {
    slot.box.left = lefts[slot.column];
    boxes.push_back(slot.box);
  }
  return boxes;
}

double erGapUnit(FontBook& fonts, const SizedFont& font) { return textWidth(fonts, font, "あ") / 1.5; }

}  // namespace quillmarden
