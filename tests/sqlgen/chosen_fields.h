#pragma once

#include <initializer_list>
#include <memory>
#include <string>

#include "common/text.h"
#include "editing/grid_operations.h"
#include "repository/schema.h"
#include "support/scripted_host.h"

namespace quillmarden {

/// A cell of a field's row: column and text.
struct GivenCell {
  int col;
  std::string_view text;
};

/// A table on show, and the clipboard that menus over its chosen rows fill.
struct ChosenFields {
  ScriptedHost host;
  Session session;
  frmTBDetail detail;

  explicit ChosenFields(std::string_view kind) {
    session.gDB = std::make_unique<Database>(createRepository(host.folder.file("r.mdb")));
    session.gDB->execute("INSERT INTO MAS_SYSTEM (システム名, tablespace, databasetype) VALUES ('販売', 'own', '" +
                         std::string(kind) + "')");
    session.gCurrentSystemName = "販売";
    detail.lblSystemName.caption = "販売";
    detail.lblFileType.caption = kind;
    detail.txtTableNameENG.text = "T_ORDER";
    pSet_Spread4Table(session, detail, false);
  }

  void add(std::initializer_list<GivenCell> cells) {
    const int row = detail.Spread.maxRows() + 1;
    detail.Spread.setMaxRows(row);
    for (const GivenCell& cell : cells) detail.Spread.setText(cell.col, row, cell.text);
  }

  static GridSelection rows(int first, int last) {
    return {{.firstCol = 1, .firstRow = first, .lastCol = field_col::kCount, .lastRow = last, .wholeRows = true}};
  }

  /// The clipboard with LF.
  std::string clipboard() const { return gReplaceAll(host.clipboard, "\r\n", "\n"); }
};

}  // namespace quillmarden
