#include "common/names.h"
#include "common/text.h"
#include "editing/frm_tb_list.h"

namespace quillmarden {

namespace {

/// Both names of a list row, whichever of them stands first.
struct RowNames {
  std::string japanese;
  std::string physical;
};

RowNames namesOf(std::string_view row, const frmTBList& screen) {
  std::string first = gSplitTableName(tableListName(row));
  const std::size_t tab = row.find('\t');
  const std::string_view rest = tab == std::string_view::npos ? std::string_view() : row.substr(tab + 1);
  std::string second(trim(rest.substr(0, rest.find('\t'))));
  if (screen.CmbTitle.text == "日本語名") return {std::move(first), std::move(second)};
  return {std::move(second), std::move(first)};
}

/// The list's row with its names whole.
std::string wholeRow(const frmTBList& screen, std::size_t place) {
  const std::string& row = screen.LstTable.rows[place];
  const bool known = place < screen.tables.size() && screen.tables[place].id == tableListId(row);
  return known ? tableListRow(screen.tables[place], screen, true) : row;
}

/// One line a row, selected ones or all, in the words that `line` finds for it.
template <typename Line>
void copyRows(Host& host, const frmTBList& screen, bool all, Line line) {
  const ListBox& list = screen.LstTable;
  std::string text;
  for (int row = 0; row < list.count(); ++row) {
    const auto place = static_cast<std::size_t>(row);
    if (!all && !list.selected[place]) continue;
    if (!text.empty()) text += "\r\n";
    text += line(wholeRow(screen, place));
  }
  host.machine.setClipboard(text);
}

}  // namespace

void mnuCopyClipBord_Click(Host& host, const frmTBList& screen) {
  copyRows(host, screen, false, [](const std::string& row) { return row; });
}

void mnuCopyAllClipBord_Click(Host& host, const frmTBList& screen) {
  copyRows(host, screen, true, [](const std::string& row) { return row; });
}

void mnuClipBordJPN_Click(Host& host, const frmTBList& screen) {
  copyRows(host, screen, false, [&](const std::string& row) { return namesOf(row, screen).japanese; });
}

void mnuClipBordUS_Click(Host& host, const frmTBList& screen) {
  copyRows(host, screen, false, [&](const std::string& row) { return namesOf(row, screen).physical; });
}

void mnuClipBord_Click(Host& host, const frmTBList& screen, int index) {
  copyRows(host, screen, index == 1, [&](const std::string& row) {
    const RowNames names = namesOf(row, screen);
    return (index == 2 ? "■" : "") + names.japanese + "/" + names.physical;
  });
}

}  // namespace quillmarden
