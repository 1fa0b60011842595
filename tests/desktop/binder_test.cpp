#include "desktop/binder.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSignalSpy>
#include <QTest>
#include <stdexcept>

#include "desktop/list_model.h"
#include "desktop/list_table.h"

namespace quillmarden {
namespace {

ListBox rowsOf(int count) {
  ListBox list;
  for (int row = 0; row < count; ++row)
    list.add("受注明細" + std::to_string(row) + "      \tT_JUCHU_" + std::to_string(row) + "\t" + std::to_string(row));
  return list;
}

std::vector<int> chosen(const ListBox& list) {
  std::vector<int> rows;
  for (int row = 0; row < list.count(); ++row)
    if (list.selected[static_cast<std::size_t>(row)]) rows.push_back(row);
  return rows;
}

class BinderTest : public testing::Test {
 protected:
  Handler count() {
    return [this] { ++handled; };
  }
  void clickRow(QAbstractItemView& view, int row, Qt::KeyboardModifiers keys = {}) {
    QTest::mouseClick(view.viewport(), Qt::LeftButton, keys, view.visualRect(view.model()->index(row, 0)).center());
    QCoreApplication::processEvents();
  }

  Turn turn;
  Binder binder{turn};
  int handled = 0;
};

TEST_F(BinderTest, WhatAPersonDoesReachesTheRecordBeforeTheHandler) {
  TextBox text;
  CheckBox box;
  ComboBox combo{.text = "", .entries = {"", "日本語名", "テーブル名"}};
  std::string seen;
  QLineEdit line;
  QCheckBox check;
  QComboBox list;
  binder.bind("Txt", &line, text, [&] { seen += text.text + ";"; });
  binder.bind("Chk", &check, box, [&] { seen += box.value ? "on;" : "off;"; });
  binder.bind("Cmb", &list, combo, [&] { seen += combo.text + ";"; });
  QTest::keyClicks(&line, "ab");
  check.click();
  check.click();
  list.show();
  list.setFocus();
  QTest::keyClick(&list, Qt::Key_Down);
  QTest::keyClick(&list, Qt::Key_Down);
  EXPECT_EQ(seen, "a;ab;on;off;;日本語名;");
}

TEST_F(BinderTest, ARefreshShowsTheRecordAndRunsNoHandler) {
  Label label;
  TextBox text, memo;
  CheckBox box;
  OptionButton one{true}, other;
  Button button;
  MenuItem item;
  ComboBox combo, typed;
  ListBox list = rowsOf(3);
  Picture picture;
  QWidget window;
  auto* labelView = binder.bind("lbl", new QLabel(&window), label);
  auto* line = binder.bind("Txt", new QLineEdit(&window), text, count());
  auto* area = binder.bind("Memo", new QPlainTextEdit(&window), memo, count());
  auto* check = binder.bind("Chk", new QCheckBox(&window), box, count());
  auto* radio = binder.bind("OptA", new QRadioButton(&window), one, count());
  auto* radio2 = binder.bind("OptB", new QRadioButton(&window), other, count());
  auto* push = binder.bind("Cmd", new QPushButton(&window), button, count());
  auto* action = binder.bind("mnu", new QAction(&window), item, count());
  auto* box1 = binder.bind("Cmb", new QComboBox(&window), combo, count());
  auto* box2 = new QComboBox(&window);
  box2->setEditable(true);
  binder.bind("CmbTyped", box2, typed, count());
  auto* view = binder.bind("Lst", new QListView(&window), list, count());
  auto* panel = binder.bind("Pic", new QWidget(&window), picture);

  label = {.caption = "<b>受注</b>", .visible = false, .foreColour = 0x0000ff, .backColour = {}};
  text = {.text = "T_JUCHU", .enabled = false, .locked = true};
  memo.text = "一行目\r\n二行目";
  box = {.value = true, .enabled = false};
  one.value = false;
  other.value = true;
  button = {.enabled = false, .visible = false};
  item = {.enabled = false, .visible = true, .checked = true};
  combo = {.text = "b", .entries = {"a", "b"}, .enabled = false};
  typed = {.text = "自由", .entries = {"a"}, .enabled = true};
  list = rowsOf(5);
  list.listIndex = 4;
  picture.visible = true;
  turn.refresh();
  QCoreApplication::processEvents();

  EXPECT_EQ(fromQt(labelView->text()), "<b>受注</b>");
  EXPECT_EQ(labelView->textFormat(), Qt::PlainText);
  EXPECT_TRUE(labelView->isHidden());
  EXPECT_TRUE(labelView->styleSheet().contains("#ff0000"));
  EXPECT_EQ(line->text(), "T_JUCHU");
  EXPECT_FALSE(line->isEnabled());
  EXPECT_TRUE(line->isReadOnly());
  EXPECT_EQ(fromQt(area->toPlainText()), "一行目\n二行目");
  EXPECT_EQ(memo.text, "一行目\r\n二行目") << "showing a text is not editing it";
  EXPECT_TRUE(check->isChecked());
  EXPECT_FALSE(radio->isChecked());
  EXPECT_TRUE(radio2->isChecked());
  EXPECT_TRUE(push->isHidden());
  EXPECT_TRUE(action->isChecked());
  EXPECT_FALSE(action->isEnabled());
  EXPECT_EQ(box1->currentIndex(), 1);
  EXPECT_EQ(fromQt(box2->currentText()), "自由");
  EXPECT_EQ(view->model()->rowCount(), 5);
  EXPECT_EQ(view->currentIndex().row(), 4);
  EXPECT_FALSE(panel->isHidden());
  EXPECT_EQ(handled, 0);
  EXPECT_EQ(binder.bound().size(), 12U);
}

TEST_F(BinderTest, OneOptionOfAGroupIsOnAndOneHandlerRuns) {
  OptionButton all{true}, mine, theirs;
  QWidget group;
  binder.bind("OptAll", new QRadioButton(&group), all, count());
  auto* second = binder.bind("OptTb", new QRadioButton(&group), mine, count());
  binder.bind("OptReverse", new QRadioButton(&group), theirs, count());
  second->click();
  EXPECT_TRUE(mine.value);
  EXPECT_FALSE(all.value);
  EXPECT_EQ(handled, 1);
}

TEST_F(BinderTest, AListTellsOfAPressOnceWithSelectionAndCurrentRow) {
  ListBox list = rowsOf(20);
  ListTable table(list, {"日本語名", "テーブル名"});
  std::vector<int> atHandler;
  binder.bind("LstTable", &table, list, [&] {
    ++handled;
    atHandler = chosen(list);
  });
  table.resize(400, 400);
  table.show();
  clickRow(table, 2);
  clickRow(table, 5, Qt::ShiftModifier);
  clickRow(table, 3, Qt::ControlModifier);
  EXPECT_EQ(handled, 3);
  EXPECT_EQ(atHandler, (std::vector<int>{2, 4, 5}));
  EXPECT_EQ(list.listIndex, 3);

  QTest::mouseClick(table.viewport(), Qt::RightButton, {}, table.visualRect(table.model()->index(9, 0)).center());
  QCoreApplication::processEvents();
  EXPECT_EQ(handled, 3) << "a right press is no click";
  chooseForPopUp(list, 9);
  EXPECT_EQ(chosen(list), std::vector<int>{9});
  chooseForPopUp(list, -1);
  EXPECT_EQ(list.listIndex, 9);
}

TEST_F(BinderTest, RowsThatAHandlerReplacesKeepTheSelectionOfTheRecord) {
  ListBox list = rowsOf(50);
  ListTable table(list, {"日本語名", "テーブル名"});
  binder.bind("LstTable", &table, list, count());
  turn.run([&] {
    list = rowsOf(30);
    list.selected[7] = list.selected[8] = true;
    list.listIndex = 8;
  });
  QCoreApplication::processEvents();
  EXPECT_EQ(table.selectionModel()->selectedRows().size(), 2);
  EXPECT_EQ(table.currentIndex().row(), 8);
  EXPECT_EQ(handled, 0);
}

TEST_F(BinderTest, AHandlerThatIsRunningKeepsOthersOut) {
  CheckBox box;
  QCheckBox check;
  binder.bind("Chk", &check, box, count());
  turn.run([&] { check.click(); });
  EXPECT_EQ(handled, 0);

  std::string told;
  turn.tellFault = [&](std::string_view fault) { told = fault; };
  EXPECT_TRUE(turn.run([] { throw std::runtime_error("no such column"); }));
  EXPECT_EQ(told, "no such column");
  check.click();
  EXPECT_EQ(handled, 1) << "a fault leaves the screens usable";
}

TEST_F(BinderTest, AModalScreenWorksWhileItsHandlerRuns) {
  QPushButton button;
  Button control;
  binder.bind("Cmd", &button, control, count());
  turn.run([&] {
    const Turn::Modal modal(turn);
    button.click();
  });
  EXPECT_EQ(handled, 1);
  EXPECT_FALSE(turn.running());
}

TEST(ListModelTest, PassesTheModelCheckerAsRowsComeAndGo) {
  ListBox list = rowsOf(3);
  ListModel model(list, {"日本語名", "テーブル名"});
  QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
  EXPECT_EQ(fromQt(model.data(model.index(1, 0)).toString()), "受注明細1");
  EXPECT_EQ(fromQt(model.data(model.index(1, 1)).toString()), "T_JUCHU_1");
  list.clear();
  EXPECT_FALSE(model.data(model.index(2, 0)).isValid()) << "a row that the record no longer has";
  EXPECT_TRUE(model.refresh());
  EXPECT_EQ(model.rowCount(), 0);
  list = rowsOf(12);
  EXPECT_TRUE(model.refresh());
  EXPECT_FALSE(model.refresh());
  list.rows[4] = "\t";
  EXPECT_TRUE(model.refresh());
  EXPECT_EQ(model.data(model.index(4, 1)).toString(), "");
}

TEST_F(BinderTest, TenThousandRowsAreShownAndScrolledWithoutWaiting) {
  ListBox list;
  ListTable table(list, {"日本語名", "テーブル名"});
  binder.bind("LstTable", &table, list);
  table.resize(500, 700);
  table.show();
  const ListBox many = rowsOf(10'000);
  QElapsedTimer time;
  time.start();
  turn.run([&] { list = many; });
  table.grab();
  EXPECT_LT(time.elapsed(), 200);
  time.restart();
  for (int step = 0; step < 20; ++step) {
    table.scrollTo(table.model()->index(step * 500, 0));
    table.grab();
  }
  EXPECT_LT(time.elapsed() / 20, 40) << "milliseconds for one step";
  time.restart();
  table.selectAll();
  EXPECT_EQ(chosen(list).size(), 10'000U);
  EXPECT_LT(time.elapsed(), 200);
}

}  // namespace
}  // namespace quillmarden
