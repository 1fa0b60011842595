#pragma once

#include <string>

#include "editing/frm_tb_detail.h"
#include "editing/frm_tb_list.h"
#include "excel/book_run.h"
#include "support/open_repository.h"
#include "workbook/workbook.h"

namespace quillmarden {

/// A Repository with the System "販売", and a blank form of a few rows in the program's folder.
class ExcelTest : public OpenRepositoryTest {
 protected:
  void SetUp() override {
    OpenRepositoryTest::SetUp();
    addSystem("販売", "PostgreSQL");
    selectSystem(session, scripted.host, "販売");
    std::filesystem::create_directories(scripted.host.machine.programFolder);
  }

  void addField(const std::string& id, int rowNo, const std::string& columns, const std::string& values) {
    const std::string number = std::to_string(rowNo);
    database().execute("INSERT INTO MAS_TABLEDETAILES (ID, ROWNO, 表示順, " + columns + ") VALUES (" + id + ", " +
                       number + ", " + number + ", " + values + ")");
  }

  /// The list's row of a table, chosen for output.
  void choose(const std::string& id, const std::string& name = "t") {
    list.LstTableSel.add(name + "\t" + name + "\t" + id);
  }

  std::string programFile(const std::string& name) const {
    return (scripted.host.machine.programFolder / name).string();
  }

  BookRun run;
  frmTBList list;
  frmTBDetail detail;
};

/// A cell as its text.
inline std::string cellText(const Worksheet& sheet, std::string_view cell) { return sheet.text(cellAt(cell)); }

}  // namespace quillmarden
