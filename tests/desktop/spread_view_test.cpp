#include "desktop/spread_view.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QApplication>
#include <QClipboard>
#include <QComboBox>
#include <QElapsedTimer>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QTest>
#include <QToolTip>

#include "spread_samples.h"

namespace quillmarden {
namespace {

/// A shown grid that a person has the keyboard on.
class SpreadViewTest : public testing::Test {
 protected:
  void open(int rows, SpreadActions actions = {}) {
    spread = sampleSpread(rows);
    view = std::make_unique<SpreadView>(spread, std::move(actions));
    view->resize(900, 400);
    view->show();
    view->activateWindow();
    view->setFocus();
    ASSERT_TRUE(QTest::qWaitForWindowActive(view.get()));
    view->goTo(1, 1);
  }
  QWidget* focus() const { return QApplication::focusWidget(); }
  /// Keys go to whatever has the focus, as they do for a person.
  void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
    QTest::keyClick(focus(), static_cast<Qt::Key>(key), modifiers);
  }
  void type(const char* text) {
    for (const char* c = text; *c; ++c) QTest::keyClick(focus(), *c);
  }
  void select(int firstCol, int firstRow, int lastCol, int lastRow) {
    view->goTo(firstCol, firstRow);
    const QItemSelection block(view->model()->index(firstRow - 1, firstCol - 1),
                               view->model()->index(lastRow - 1, lastCol - 1));
    view->selectionModel()->select(block, QItemSelectionModel::ClearAndSelect);
  }
  std::pair<int, int> place() const { return {view->currentCol(), view->currentRow()}; }

  Spread spread;
  std::unique_ptr<SpreadView> view;
};

using Place = std::pair<int, int>;

TEST_F(SpreadViewTest, TypingReplacesAndEnterGoesOn) {
  open(3);
  spread.setText(1, 1, "old");
  view->refresh();
  type("new");
  press(Qt::Key_Return);
  EXPECT_EQ(spread.text(1, 1), "new");
  EXPECT_EQ(place(), Place(1, 2));
  type("x");
  press(Qt::Key_Return, Qt::ShiftModifier);
  EXPECT_EQ(spread.text(1, 2), "x");
  EXPECT_EQ(place(), Place(1, 1));
}

TEST_F(SpreadViewTest, F2GoesOnWithTheTextAndEscapeLeavesIt) {
  open(2);
  spread.setText(1, 1, "abc");
  view->refresh();
  press(Qt::Key_F2);
  press(Qt::Key_Left);
  type("X");
  press(Qt::Key_Return);
  EXPECT_EQ(spread.text(1, 1), "abXc");
  type("lost");
  press(Qt::Key_Escape);
  EXPECT_EQ(spread.text(1, 2), "");
}

TEST_F(SpreadViewTest, TabsGoAcrossAndEnterComesBackBelow) {
  open(3);
  type("a");
  press(Qt::Key_Tab);
  EXPECT_EQ(place(), Place(2, 1));
  press(Qt::Key_Tab);
  press(Qt::Key_Tab);
  type("7");
  press(Qt::Key_Tab);
  EXPECT_EQ(spread.text(4, 1), "7");
  EXPECT_EQ(place(), Place(5, 1));
  press(Qt::Key_Return);
  EXPECT_EQ(place(), Place(1, 2));
  view->goTo(5, 1);
  press(Qt::Key_Tab);
  EXPECT_EQ(place(), Place(7, 1)) << "the hidden column is passed over";
  press(Qt::Key_Tab);
  EXPECT_EQ(place(), Place(1, 2));
  press(Qt::Key_Backtab, Qt::ShiftModifier);
  EXPECT_EQ(place(), Place(7, 1));
}

TEST_F(SpreadViewTest, AnArrowEndsWhatWasBegunByTyping) {
  open(3);
  type("a");
  press(Qt::Key_Down);
  EXPECT_EQ(spread.text(1, 1), "a");
  EXPECT_EQ(place(), Place(1, 2));
}

TEST_F(SpreadViewTest, EnterStaysWithinASelectedBlock) {
  open(4);
  select(1, 2, 2, 3);
  press(Qt::Key_Return);
  EXPECT_EQ(place(), Place(1, 3));
  press(Qt::Key_Return);
  EXPECT_EQ(place(), Place(2, 2));
  press(Qt::Key_Tab);
  EXPECT_EQ(place(), Place(1, 3));
  EXPECT_EQ(view->blocks().size(), 1U);
}

TEST_F(SpreadViewTest, NumbersTakeNumbersWithinTheirLimits) {
  open(3);
  view->goTo(4, 1);
  type("1a2");
  press(Qt::Key_Return);
  EXPECT_EQ(spread.text(4, 1), "12");
  type("200");
  press(Qt::Key_Return);
  EXPECT_EQ(spread.text(4, 2), "20") << "a third digit would be too much";
  view->goTo(1, 1);
  type("123456789");
  press(Qt::Key_Return);
  EXPECT_EQ(spread.text(1, 1), "12345678") << "at most 8 bytes";
}

TEST_F(SpreadViewTest, ALimitCountsFullWidthCharactersTwice) {
  open(3);
  const auto commit = [&](const char* text) {
    QInputMethodEvent event;
    event.setCommitString(text);
    QApplication::sendEvent(focus(), &event);
  };
  commit("漢");
  commit("字と仮名も");
  EXPECT_EQ(QToolTip::text(), "8バイト(全角4文字)までです.");
  press(Qt::Key_Return);
  EXPECT_EQ(spread.text(1, 1), "漢字と仮");
  view->goTo(1, 1);
  press(Qt::Key_F2);
  press(Qt::Key_Home);
  type("a");
  press(Qt::Key_Return);
  EXPECT_EQ(spread.text(1, 1), "漢字と仮") << "what was there stays, what came too much does not";
  // A text that was stored longer can become shorter, and a plain look leaves it.
  spread.setText(1, 2, "漢字と仮名");
  view->refresh();
  view->goTo(1, 2);
  press(Qt::Key_F2);
  press(Qt::Key_Return);
  EXPECT_EQ(spread.text(1, 2), "漢字と仮名");
  view->goTo(1, 2);
  press(Qt::Key_F2);
  type("a");
  press(Qt::Key_Backspace);
  press(Qt::Key_Return);
  EXPECT_EQ(spread.text(1, 2), "漢字と仮");
}

TEST_F(SpreadViewTest, SpaceSetsChecksOfTheWholeSelection) {
  open(3);
  select(1, 1, 3, 2);
  view->selectionModel()->setCurrentIndex(view->model()->index(0, 1), QItemSelectionModel::NoUpdate);
  press(Qt::Key_Space);
  EXPECT_EQ(spread.text(2, 1), "-1");
  EXPECT_EQ(spread.text(2, 2), "-1");
  EXPECT_EQ(spread.text(1, 1), "");
  press(Qt::Key_Space);
  EXPECT_EQ(spread.text(2, 2), "0");
  // The mouse sets the box itself, not the space around it.
  const QRect cell = view->visualRect(view->model()->index(2, 1));
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, cell.topLeft() + QPoint(2, 2));
  EXPECT_EQ(spread.text(2, 3), "");
  QTest::mouseClick(view->viewport(), Qt::LeftButton, {}, cell.center());
  EXPECT_EQ(spread.text(2, 3), "-1");
}

TEST_F(SpreadViewTest, AListTakesItsEntriesByTypingAndFromTheOpenList) {
  open(3);
  view->goTo(3, 1);
  type("var");
  press(Qt::Key_Return);
  EXPECT_EQ(spread.text(3, 1), "VARCHAR2");
  type("nothing");
  press(Qt::Key_Return);
  EXPECT_EQ(spread.text(3, 2), "") << "no entry of the list";
  EXPECT_EQ(place(), Place(3, 2)) << "it can be put right";
  EXPECT_EQ(QToolTip::text(), "[型]が一覧にありません.");
  press(Qt::Key_Escape);
  view->goTo(3, 3);
  press(Qt::Key_Down, Qt::AltModifier);
  auto* list = qobject_cast<QComboBox*>(view->indexWidget(view->currentIndex()));
  ASSERT_TRUE(list);
  ASSERT_TRUE(list->view()->isVisible());
  QTest::keyClick(list->view(), Qt::Key_Down);
  QTest::keyClick(list->view(), Qt::Key_Return);
  EXPECT_EQ(spread.text(3, 3), "文字");
}

TEST_F(SpreadViewTest, TypingInAListReplacesItsText) {
  open(3);
  for (int row = 1; row <= 3; ++row) spread.setText(3, row, "文字");
  view->refresh();
  view->goTo(3, 1);
  type("var");
  press(Qt::Key_Return);
  EXPECT_EQ(spread.text(3, 1), "VARCHAR2");
  press(Qt::Key_F2);
  type("v");
  press(Qt::Key_Return);
  EXPECT_EQ(spread.text(3, 2), "VARCHAR2");
  press(Qt::Key_Backspace);
  press(Qt::Key_Return);
  EXPECT_EQ(spread.text(3, 3), "");
  spread.column(3).open = true;
  view->refresh();
  view->goTo(3, 1);
  type("COBOL");
  press(Qt::Key_Return);
  EXPECT_EQ(spread.text(3, 1), "COBOL") << "an open list takes what it does not hold";
}

TEST_F(SpreadViewTest, JapaneseInputBeginsAnEdit) {
  open(2);
  spread.setText(1, 1, "前");
  view->refresh();
  QInputMethodEvent preedit("にほん", {});
  QApplication::sendEvent(view.get(), &preedit);
  QInputMethodEvent commit;
  commit.setCommitString("日本");
  QApplication::sendEvent(focus(), &commit);
  press(Qt::Key_Return);
  EXPECT_EQ(spread.text(1, 1), "日本");
  QInputMethodEvent atOnce;
  atOnce.setCommitString("（");
  QApplication::sendEvent(view.get(), &atOnce);
  press(Qt::Key_Return);
  EXPECT_EQ(spread.text(1, 2), "（") << "a sign that needs no composing";
}

TEST_F(SpreadViewTest, BlocksGoThroughTheClipboardAsASpreadsheetHasThem) {
  open(4);
  spread.setText(1, 1, "二行\n目");
  spread.setText(3, 1, "文字");
  spread.setText(1, 2, "b");
  view->refresh();
  select(1, 1, 3, 2);
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), "\"二行\n目\"\t\t文字\r\nb\t\t\r\n");
  view->goTo(1, 3);
  press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(spread.text(1, 3), "二行\n目");
  EXPECT_EQ(spread.text(3, 3), "文字");
  EXPECT_EQ(spread.text(1, 4), "b");
  select(1, 3, 3, 3);
  press(Qt::Key_X, Qt::ControlModifier);
  EXPECT_EQ(spread.text(1, 3), "");
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(spread.text(1, 3), "二行\n目");
  EXPECT_EQ(spread.text(3, 3), "文字");
  press(Qt::Key_Y, Qt::ControlModifier);
  EXPECT_EQ(spread.text(3, 3), "");
}

TEST_F(SpreadViewTest, APasteGrowsRowsOnlyWhereTheGridMay) {
  open(2);
  QApplication::clipboard()->setText("a\t1\tVARCHAR2\t12\t1,000.5\tuser\r\nb\tx\tUnknown\t999x\r\nc");
  view->goTo(1, 2);
  press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(spread.maxRows(), 2);
  EXPECT_EQ(spread.text(1, 2), "a");
  EXPECT_EQ(spread.text(2, 2), "-1");
  EXPECT_EQ(spread.text(5, 2), "1000.5");
  EXPECT_EQ(spread.text(7, 2), "") << "a static column takes nothing";
  EXPECT_EQ(spread.text(6, 2), "") << "a hidden one neither";
  view->spreadModel().setGrows(true);
  press(Qt::Key_V, Qt::ControlModifier);
  EXPECT_EQ(spread.maxRows(), 4);
  EXPECT_EQ(spread.text(3, 3), "");
  EXPECT_EQ(spread.text(4, 3), "");
  EXPECT_EQ(spread.text(1, 4), "c");
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(spread.maxRows(), 2) << "one step takes the whole paste back";
}

TEST_F(SpreadViewTest, StepsEndWhereTheScreenPutsOtherRowsThere) {
  open(2);
  type("mine");
  press(Qt::Key_Return);
  spread.setMaxRows(0);
  spread.setText(1, 1, "other");
  view->refresh();
  press(Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(spread.text(1, 1), "other");
}

TEST_F(SpreadViewTest, FillsDownAndRightAndDeletesBlocks) {
  open(3);
  spread.setText(1, 1, "v");
  spread.setText(4, 1, "5");
  view->refresh();
  select(1, 1, 4, 3);
  press(Qt::Key_D, Qt::ControlModifier);
  EXPECT_EQ(spread.text(1, 3), "v");
  EXPECT_EQ(spread.text(4, 3), "5");
  select(4, 2, 5, 2);
  press(Qt::Key_R, Qt::ControlModifier);
  EXPECT_EQ(spread.text(5, 2), "5");
  select(1, 2, 5, 3);
  press(Qt::Key_Delete);
  EXPECT_EQ(spread.text(1, 2), "");
  EXPECT_EQ(spread.text(5, 2), "");
  EXPECT_EQ(spread.text(1, 1), "v");
}

TEST_F(SpreadViewTest, ControlAndArrowGoToTheEdgesOfWhatIsFilled) {
  open(9);
  for (const int row : {1, 2, 3, 6}) spread.setText(1, row, "x");
  view->refresh();
  press(Qt::Key_Down, Qt::ControlModifier);
  EXPECT_EQ(place(), Place(1, 3));
  press(Qt::Key_Down, Qt::ControlModifier);
  EXPECT_EQ(place(), Place(1, 6));
  press(Qt::Key_Down, Qt::ControlModifier);
  EXPECT_EQ(place(), Place(1, 9));
}

TEST_F(SpreadViewTest, ALockedGridCopiesAndTakesNothing) {
  open(2);
  spread.setText(1, 1, "fest");
  spread.lockAll();
  view->refresh();
  view->goTo(1, 1);
  type("x");
  press(Qt::Key_Delete);
  press(Qt::Key_C, Qt::ControlModifier);
  EXPECT_EQ(QApplication::clipboard()->text(), "fest\r\n");
  EXPECT_EQ(spread.text(1, 1), "fest");
}

TEST_F(SpreadViewTest, AnOpenEditIsTakenWhenTheScreenAsksForIt) {
  open(2);
  type("halb");
  EXPECT_EQ(spread.text(1, 1), "");
  view->endEdit();
  EXPECT_EQ(spread.text(1, 1), "halb");
}

TEST_F(SpreadViewTest, WidthsComeFromTheRecordAndGoBackWhenDragged) {
  std::vector<std::pair<int, double>> set;
  SpreadActions actions;
  actions.widthSet = [&set](int col, double width) { set.emplace_back(col, width); };
  open(2, std::move(actions));
  EXPECT_TRUE(view->isColumnHidden(5));
  const int letters = view->columnWidth(0);
  EXPECT_TRUE(set.empty()) << "the record's own widths are no person's";
  spread.column(1).width = 20;
  view->refresh();
  EXPECT_NEAR(view->columnWidth(0), 2 * letters, 2);
  view->setColumnWidth(0, letters / 2);
  ASSERT_EQ(set.size(), 1U);
  EXPECT_EQ(set[0].first, 1);
  EXPECT_NEAR(set[0].second, 5, 0.2);
}

TEST_F(SpreadViewTest, TenThousandRowsScrollWithoutWaiting) {
  open(10'000);
  for (int row = 1; row <= 10'000; ++row) spread.setText(1, row, std::to_string(row));
  QElapsedTimer clock;
  clock.start();
  view->refresh();
  for (int row = 1; row <= 10'000; row += 500) {
    view->goTo(1, row);
    view->repaint();
  }
  EXPECT_LT(clock.elapsed(), 1000) << "twenty screens of rows";
}

}  // namespace
}  // namespace quillmarden
