#include "sqlgen/alter.h"

#include <algorithm>

#include "common/message.h"
#include "common/text.h"
#include "sqlgen/alter_statements.h"
#include "sqlgen/clauses.h"

namespace quillmarden {

namespace {

using Routine = void (*)(const Generation&, const std::vector<Field>&, AlterMode, ScriptText&);

/// The routine of a kind; nullptr for one that no text can be made for.
Routine routineOf(std::string_view kind) {
  if (kind == "Oracle") return putAlter4Oracle;
  if (kind == "SQL Server") return putAlter4SQLServer;
  if (kind == "PostgreSQL") return putAlter4PostgreSQL;
  if (kind == "MySQL") return putAlter4MySQL;
  return nullptr;
}

void putAlterHead(const frmTBDetail& table, ScriptText& text) {
  const std::string_view kind = trim(table.lblFileType.caption);
  const bool block = kind == "MySQL";
  const auto put = [&](std::string_view label, std::string_view value) {
    std::string line = oneLine(value);
    if (block) line = gReplaceAll(line, "*/", "* /");
    text.print(block ? "/* " : "-- ", label, line, block ? "*/" : "");
  };
  text.print();
  put("System     : ", table.lblSystemName.caption);
  put("Data Base  : ", kind);
  put("Table Name : ", table.txtTableNameENG.text);
  text.print();
}

/// Whether a block takes in the whole grid.
bool coversAll(const frmTBDetail& screen, const GridBlock& block) {
  return screen.Spread.maxRows() > 1 && block.firstRow <= 1 && block.lastRow >= screen.Spread.maxRows();
}

}  // namespace

std::string alterText(const Generation& generation, const std::vector<int>& rows, AlterMode mode) {
  const Routine routine = routineOf(trim(generation.table.lblFileType.caption));
  if (!routine) return {};
  std::vector<Field> fields;
  for (const int row : rows)
    if (Field field = readField(generation.table, row); !field.name.empty()) fields.push_back(field);
  ScriptText text;
  putAlterHead(generation.table, text);
  if (!fields.empty()) routine(generation, fields, mode, text);
  return text.text;
}

std::optional<std::string> alterTextOfRows(Session& session, Host& host, const frmTBDetail& screen,
                                           const GridSelection& selection, AlterMode mode) {
  if (!routineOf(trim(screen.lblFileType.caption))) {
    gMsgBox(host, joinLines({"このデータベースは", "対応していません."}), kOkOnly | kStopIcon);
    return std::nullopt;
  }
  if (std::any_of(selection.begin(), selection.end(),
                  [&](const GridBlock& block) { return coversAll(screen, block); })) {
    gMsgBox(host, "全選択ではできません.");
    return std::nullopt;
  }
  SystemRecord system;
  if (!gMDB_GetSystemInfo(session, host, session.gCurrentSystemName, system)) return std::nullopt;
  CheckListCache noLists;
  const Generation generation{session, host, screen, system, noLists};
  return alterText(generation, selectedRows(screen, selection), mode);
}

bool mnuAlterTable_Click(Session& session, Host& host, const frmTBDetail& screen, const GridSelection& selection,
                         AlterMode mode) {
  const std::optional<std::string> text = alterTextOfRows(session, host, screen, selection, mode);
  if (text) host.machine.setClipboard(*text);
  return !text;
}

}  // namespace quillmarden
