#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "editing/frm_tb_detail.h"
#include "editing/frm_tb_list.h"
#include "support/open_repository.h"

namespace quillmarden {

namespace col = field_col;

/// A current System 販売 and a detail screen.
class EditingTest : public OpenRepositoryTest {
 protected:
  void SetUp() override {
    OpenRepositoryTest::SetUp();
    addSystem("販売", "PostgreSQL");
    ASSERT_TRUE(selectSystem(session, scripted.host, "販売"));
  }

  /// A field row: ROWNO and 表示順 are the number, the rest is one column list with its values.
  void addField(const std::string& id, int number, const std::string& columns, const std::string& values) {
    database().execute("INSERT INTO MAS_TABLEDETAILES (ID, ROWNO, 表示順, " + columns + ") VALUES (" + id + ", " +
                       std::to_string(number) + ", " + std::to_string(number) + ", " + values + ")");
  }

  bool load(const std::string& id) { return pGet_TableID2TableDetails(session, scripted.host, detail, id); }

  /// Cells of a grid row, parted by "|".
  std::string cells(int row, std::initializer_list<int> columns) const {
    std::string line;
    for (int column : columns) {
      if (!line.empty() || column != *columns.begin()) line += "|";
      line += detail.Spread.text(column, row);
    }
    return line;
  }

  void put(int row, std::initializer_list<std::pair<int, std::string_view>> texts) {
    for (const auto& [column, text] : texts) detail.Spread.setText(column, row, text);
    detail.Spread.setText(col::kChanged, row, kChangedMark);
  }

  std::vector<std::string> fields(const std::string& id, const std::string& columns) {
    return rows("SELECT " + columns + " FROM MAS_TABLEDETAILES WHERE ID = " + id + " ORDER BY ROWNO");
  }

  frmTBDetail detail;
};

using Lines = std::vector<std::string>;

}  // namespace quillmarden
