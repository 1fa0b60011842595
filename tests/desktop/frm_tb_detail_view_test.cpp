#include "desktop/frm_tb_detail_view.h"

#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <algorithm>
#include <filesystem>

#include "desktop/detail_grid.h"
#include "desktop_fixture.h"
#include "shell/screens.h"

namespace quillmarden {
namespace {

namespace fieldCol = field_col;

constexpr const char* kMain = "frmTBDetail";

class DetailViewTest : public DesktopTest {
 protected:
  /// Logs in and opens the table of this name by a click in the list, with the keyboard on its grid.
  void openTable(const char* system, std::string_view table) {
    logInTo(system);
    clickTable(table);
    focusGrid(kMain);
  }
  void clickTable(std::string_view table) {
    const auto& rows = app.list.LstTable.rows;
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&](const std::string& row) { return tableListName(row) == table; });
    ASSERT_NE(found, rows.end()) << table;
    chooseRow("frmTBList", "LstTable", static_cast<int>(found - rows.begin()));
  }
  void focusGrid(std::string_view screen) {
    activate(screen);
    grid(screen).setFocus();
  }
  DetailGrid& grid(std::string_view screen = kMain) { return static_cast<FrmTbDetailView&>(view(screen)).grid(); }
  frmTBDetail& record(std::string_view screen = kMain) { return app.detail(screen); }
  std::string cell(int column, int row) { return std::string(record().Spread.text(column, row)); }
  void goTo(int column, int row) { grid().goTo(column, row); }
  void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
    settle();
  }
  using DesktopTest::press;
  void typeKeys(const char* text) {
    for (const char* c = text; *c; ++c) QTest::keyClick(QApplication::focusWidget(), *c);
    settle();
  }
  void selectRows(int first, int last) {
    grid().selectRow(first - 1);
    QItemSelection rows(grid().model()->index(first - 1, 0),
                        grid().model()->index(last - 1, grid().model()->columnCount() - 1));
    grid().selectionModel()->select(rows, QItemSelectionModel::ClearAndSelect);
  }
  bool shows(const char* mark) { return !control(kMain, mark).isHidden(); }
  std::string stored(const std::string& column, int rowNo) {
    const Recordset row = app.session.gDB->openRecordset(
        "SELECT a.[" + column + "] FROM MAS_TABLEDETAILES AS a WHERE a.ID = " + record().lblID.caption +
        " AND a.ROWNO = " + std::to_string(rowNo) + ";");
    return row.eof() ? "" : std::string(row.text(0));
  }
};

TEST_F(DetailViewTest, APersonEditsAndSavesAndTheRepositoryHoldsIt) {
  openTable("販売管理_Oracle", "顧客マスタ");
  const int last = record().Spread.maxRows();
  EXPECT_FALSE(shows("picRen"));
  // A new field in the row that waits below the last one: names by keyboard and input method, type by its list.
  goTo(fieldCol::kJapaneseName, last + 1);
  type(grid(), "紹介元番号");
  press(Qt::Key_Tab);
  typeKeys("referrer_no");
  press(Qt::Key_Tab);
  press(Qt::Key_Tab);
  typeKeys("NUM");
  press(Qt::Key_Tab);
  typeKeys("12");
  press(Qt::Key_Tab);
  EXPECT_TRUE(shows("picRen"));
  EXPECT_TRUE(record().changed);
  EXPECT_EQ(cell(fieldCol::kChanged, last + 1), "変更");
  // What is still being typed belongs to what is saved.
  typeKeys("2");
  scripted.expect("確認", "登録内容を更新します.", kYes);
  press(Qt::Key_S, Qt::ControlModifier);
  EXPECT_FALSE(shows("picRen"));
  EXPECT_EQ(stored("日本語名", last + 1), "紹介元番号");
  EXPECT_EQ(stored("項目名", last + 1), "REFERRER_NO");
  EXPECT_EQ(stored("型", last + 1), "number");
  EXPECT_EQ(stored("整数桁数", last + 1), "12");
  EXPECT_EQ(stored("少数桁数", last + 1), "2");
  EXPECT_EQ(stored("Null値", last + 1), "NULL");
}

TEST_F(DetailViewTest, ARefusedCheckLeadsToItsRedCell) {
  openTable("販売管理_Oracle", "顧客マスタ");
  const std::string first = cell(fieldCol::kJapaneseName, 1);
  goTo(fieldCol::kJapaneseName, 3);
  type(grid(), first.c_str());
  press(Qt::Key_Return);
  goTo(fieldCol::kRemark, 2);
  scripted.expect("入力エラー", "日本語/項目名に重複があります.");
  press(kMain, "CmdUpDate");
  EXPECT_EQ(record().Spread.backColour(fieldCol::kJapaneseName, 3), 0x0000FFU);
  EXPECT_EQ(grid().currentCol(), fieldCol::kJapaneseName);
  EXPECT_EQ(grid().currentRow(), 1);
  EXPECT_TRUE(record().changed) << "nothing was saved";
}

TEST_F(DetailViewTest, UndoAndRedoFollowTheGrid) {
  openTable("販売管理_Oracle", "顧客マスタ");
  const std::string former = cell(fieldCol::kRemark, 2);
  goTo(fieldCol::kRemark, 2);
  typeKeys("note");
  press(Qt::Key_Return);
  goTo(fieldCol::kJapaneseName, 1);
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(cell(fieldCol::kRemark, 2), former);
  EXPECT_FALSE(shows("picRen")) << "the grid is as the Repository has it";
  EXPECT_EQ(grid().currentRow(), 2) << "the place of the step is shown";
  press(Qt::Key_Y, Qt::ControlModifier);
  EXPECT_EQ(cell(fieldCol::kRemark, 2), "note");
  press(kMain, "mnuUndoTool");
  EXPECT_EQ(cell(fieldCol::kRemark, 2), former);
}

TEST_F(DetailViewTest, TheRemarkBoxAndTheCellAreOne) {
  openTable("販売管理_Oracle", "顧客マスタ");
  goTo(fieldCol::kFieldName, 2);
  EXPECT_EQ(control<QLabel>(kMain, "lblBiko").text(), toQt("備考 [ " + cell(fieldCol::kJapaneseName, 2) + " ]"));
  EXPECT_EQ(control<QLabel>(kMain, "lblColRow").text(), "002 : 002");
  auto& box = control<QPlainTextEdit>(kMain, "Txtbiko");
  box.setFocus();
  box.selectAll();
  typeKeys("two");
  press(Qt::Key_Return);
  typeKeys("lines");
  EXPECT_EQ(cell(fieldCol::kRemark, 2), "two\nlines");
  press(Qt::Key_Z, Qt::ControlModifier);
  goTo(fieldCol::kRemark, 3);
  grid().setFocus();
  typeKeys("cell");
  press(Qt::Key_Return);
  goTo(fieldCol::kFieldName, 3);
  EXPECT_EQ(box.toPlainText(), "cell");
}

TEST_F(DetailViewTest, BlocksTravelBetweenProgramsAndTables) {
  openTable("販売管理_Oracle", "顧客マスタ");
  const int last = record().Spread.maxRows();
  scripted.clipboard = "甲\tKOU\r\n\"乙\"\tOTSU\r\n";
  goTo(fieldCol::kJapaneseName, last + 1);
  press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(record().Spread.maxRows(), last + 2);
  EXPECT_EQ(cell(fieldCol::kJapaneseName, last + 2), "乙");
  EXPECT_EQ(cell(fieldCol::kFieldName, last + 2), "OTSU");
  goTo(fieldCol::kJapaneseName, last + 1);
  press(Qt::Key_Right, Qt::ShiftModifier);
  press(Qt::Key_Down, Qt::ShiftModifier);
  ASSERT_EQ(record().selection.size(), 1U);
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(scripted.clipboard, "甲\tKOU\r\n乙\tOTSU");
  press(Qt::Key_Delete);
  EXPECT_EQ(cell(fieldCol::kFieldName, last + 2), "");
  // Ctrl+D fills, as in a spreadsheet.
  goTo(fieldCol::kRemark, 1);
  typeKeys("all");
  press(Qt::Key_Return);
  grid().selectionModel()->select(
      QItemSelection(grid().model()->index(0, fieldCol::kRemark - 1), grid().model()->index(3, fieldCol::kRemark - 1)),
      QItemSelectionModel::ClearAndSelect);
  press(Qt::Key_D, Qt::ControlModifier);
  EXPECT_EQ(cell(fieldCol::kRemark, 4), "all");
  EXPECT_EQ(cell(fieldCol::kChanged, 4), "変更");
}

TEST_F(DetailViewTest, RowToolsWorkOnTheSelectedRows) {
  openTable("販売管理_Oracle", "顧客マスタ");
  const int rows = record().Spread.maxRows();
  const std::string third = cell(fieldCol::kJapaneseName, 3);
  const std::string fifth = cell(fieldCol::kJapaneseName, 5);
  selectRows(3, 4);
  ASSERT_EQ(record().selection.size(), 1U);
  EXPECT_TRUE(record().selection[0].wholeRows);
  scripted.answerAll(kYes);
  press(kMain, "mnuDeleteTool");
  EXPECT_EQ(record().Spread.maxRows(), rows - 2);
  EXPECT_EQ(cell(fieldCol::kJapaneseName, 3), fifth);
  press(kMain, "mnuUndoTool");
  EXPECT_EQ(record().Spread.maxRows(), rows);
  EXPECT_EQ(cell(fieldCol::kJapaneseName, 3), third);
  press(kMain, "mnuAddLineTool");
  EXPECT_EQ(grid().currentRow(), rows + 1);
}

TEST_F(DetailViewTest, UnsavedWorkIsAskedAboutOnCloseAndOnANewTable) {
  openTable("販売管理_Oracle", "顧客マスタ");
  const std::string question = "内容が変更されています.\n    顧客マスタ\nの編集を続けますか?";
  goTo(fieldCol::kRemark, 1);
  typeKeys("half");
  scripted.expect("確認", question, kYes);
  view(kMain).close();
  settle();
  EXPECT_TRUE(view(kMain).isVisible());
  EXPECT_EQ(cell(fieldCol::kRemark, 1), "half") << "the open edit was taken first";
  scripted.expect("確認", question, kYes);
  clickTable("受注");
  EXPECT_EQ(record().txtTableNameJPN.text, "顧客マスタ");
  scripted.expect("確認", question, kNo);
  clickTable("受注明細");
  EXPECT_EQ(record().txtTableNameJPN.text, "受注明細");
  EXPECT_FALSE(shows("picRen"));
}

TEST_F(DetailViewTest, NextAndPreviousFollowTheList) {
  openTable("販売管理_Oracle", "顧客マスタ");
  const int row = app.list.LstTable.listIndex;
  press(Qt::Key_PageUp, Qt::AltModifier);
  EXPECT_EQ(app.list.LstTable.listIndex, row - 1);
  EXPECT_EQ(record().txtTableNameJPN.text, tableListName(app.list.LstTable.text()));
  press(Qt::Key_PageDown, Qt::AltModifier);
  EXPECT_EQ(record().txtTableNameJPN.text, "顧客マスタ");
}

TEST_F(DetailViewTest, ATableOfAnotherSystemIsLookedAtOnly) {
  openTable("販売管理_Oracle", "顧客マスタ");
  const std::string id = record().lblID.caption;
  pick("frmTBList", "CmbSystem", "販売管理_PostgreSQL");
  turn.run([&] { openDetail(app, id); });
  settle();
  const char* further = "frmTBDetail:2";
  focusGrid(further);
  grid(further).goTo(fieldCol::kRemark, 1);
  const std::string former(record(further).Spread.text(fieldCol::kRemark, 1));
  typeKeys("x");
  press(Qt::Key_Delete);
  EXPECT_EQ(record(further).Spread.text(fieldCol::kRemark, 1), former);
  EXPECT_FALSE(control(further, "CmdUpDate").isEnabled());
  EXPECT_FALSE(control(further, "picEdit").isHidden());
  EXPECT_FALSE(control(further, "mnuDeleteTool").isEnabled());
  EXPECT_TRUE(control<QPlainTextEdit>(further, "Txtbiko").isReadOnly());
  EXPECT_EQ(grid(further).model()->rowCount(), record(further).Spread.maxRows()) << "no row waits for a new field";
}

TEST_F(DetailViewTest, SeveralDetailScreensStandSideBySide) {
  openTable("販売管理_Oracle", "顧客マスタ");
  const std::string id = record().lblID.caption;
  turn.run([&] { openDetail(app, id); });
  turn.run([&] { openDetail(app, id); });
  turn.run([&] { mnuDetailsArrange_Click(app); });
  settle();
  // The display of the test is smaller than any other; what it has no room for stays out of the comparison.
  const QRect first = view(kMain).frameGeometry();
  const QRect third = view("frmTBDetail:3").frameGeometry();
  EXPECT_FALSE(first.intersects(third));
  EXPECT_NE(first.topLeft(), view("frmTBDetail:2").frameGeometry().topLeft());
  // Each has its own grid; one that shows the same table follows a save of the other.
  focusGrid("frmTBDetail:2");
  grid("frmTBDetail:2").goTo(fieldCol::kRemark, 1);
  typeKeys("second");
  press(Qt::Key_Return);
  EXPECT_NE(cell(fieldCol::kRemark, 1), "second");
  scripted.expect("確認", "登録内容を更新します.", kYes);
  press("frmTBDetail:2", "CmdUpDate");
  EXPECT_EQ(cell(fieldCol::kRemark, 1), "second");
}

TEST_F(DetailViewTest, TypedWorkIsKeptUntilItIsSaved) {
  openTable("販売管理_Oracle", "顧客マスタ");
  goTo(fieldCol::kRemark, 1);
  typeKeys("precious");
  press(Qt::Key_Return);
  ASSERT_TRUE(QTest::qWaitFor([this] { return app.backups[kMain].holds(); }, 3000));
  const std::filesystem::path copy = app.backups[kMain].file();
  EXPECT_TRUE(std::filesystem::exists(copy));
  scripted.expect("確認", "登録内容を更新します.", kYes);
  press(kMain, "CmdUpDate");
  EXPECT_TRUE(QTest::qWaitFor([&] { return !std::filesystem::exists(copy); }, 3000));
  // Given up on close: no copy is left to be offered.
  typeKeys("again");
  press(Qt::Key_Return);
  ASSERT_TRUE(QTest::qWaitFor([this] { return app.backups[kMain].holds(); }, 3000));
  scripted.answerAll(kNo);
  view(kMain).close();
  settle();
  EXPECT_FALSE(app.backups.contains(kMain) && app.backups[kMain].holds());
}

TEST_F(DetailViewTest, EveryModeShowsItsOwnColumns) {
  struct Mode {
    const char* system;
    const char* firstTitle;
    std::vector<int> hidden;
  };
  const std::vector<Mode> modes = {
      {"販売管理_Oracle", "日本語項目名 (論理)", {fieldCol::kChanged, fieldCol::kAuthor}},
      {"販売管理_連携ファイル", "日本語項目名 (論理)", {fieldCol::kChanged}},
      {"販売管理_メンバー", "内　　　　容", {fieldCol::kFieldName, fieldCol::kKey, fieldCol::kDefault}},
      {"販売管理_固定値", "対象(テーブル名/項目名など)", {fieldCol::kKey, fieldCol::kDefault}},
      {"販売管理_PG管理", "管理No", {fieldCol::kPmark, fieldCol::kDomainName}}};
  logInTo();
  for (const Mode& mode : modes) {
    SCOPED_TRACE(mode.system);
    pick("frmTBList", "CmbSystem", mode.system);
    chooseRow("frmTBList", "LstTable", 0);
    const auto* model = grid().model();
    EXPECT_EQ(model->headerData(0, Qt::Horizontal, Qt::DisplayRole).toString(), mode.firstTitle);
    for (const int hidden : mode.hidden) EXPECT_TRUE(grid().isColumnHidden(hidden - 1)) << hidden;
    EXPECT_GT(model->rowCount(), 1);
    EXPECT_EQ(view(kMain).windowTitle(), toQt(record().caption));
  }
}

TEST_F(DetailViewTest, AnOpenSortWindowSortsTheGridItWasOpenedFrom) {
  openTable("販売管理_Oracle", "顧客マスタ");
  press(kMain, "mnuSortTool");
  ASSERT_NE(front->find("frmSpSort"), nullptr);
  scripted.expect("確認", "最優先のキーが未設定です.");
  press("frmSpSort", "cmdOK");
  ASSERT_NE(front->find("frmSpSort"), nullptr) << "a fault keeps it open";
  pick("frmSpSort", "CmbKey:0", "項目名 (物理)");
  press("frmSpSort", "ChkDescending:0");
  press("frmSpSort", "cmdOK");
  EXPECT_EQ(front->find("frmSpSort"), nullptr);
  std::vector<std::string> names;
  for (int row = 1; row <= record().Spread.maxRows(); ++row) names.push_back(cell(fieldCol::kFieldName, row));
  EXPECT_TRUE(std::is_sorted(names.rbegin(), names.rend()));
}

TEST_F(DetailViewTest, FontSizeAndWidthsAreKeptForTheNextTime) {
  openTable("販売管理_Oracle", "顧客マスタ");
  const int height = grid().rowHeight(0);
  press(Qt::Key_Minus, Qt::ControlModifier);
  press(Qt::Key_Minus, Qt::ControlModifier);
  EXPECT_EQ(app.session.settings.fontSize2Spread, 10);
  EXPECT_LT(grid().rowHeight(0), height);
  grid().setColumnWidth(fieldCol::kRemark - 1, 345);
  clickTable("受注");
  EXPECT_NEAR(grid().columnWidth(fieldCol::kRemark - 1), 345, 2);
  pick("frmTBList", "CmbSystem", "販売管理_メンバー");
  chooseRow("frmTBList", "LstTable", 0);
  pick("frmTBList", "CmbSystem", "販売管理_Oracle");
  clickTable("顧客マスタ");
  EXPECT_NEAR(grid().columnWidth(fieldCol::kRemark - 1), 345, 2) << "other modes have their own widths";
}

}  // namespace
}  // namespace quillmarden
