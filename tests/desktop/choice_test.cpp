#include "desktop/choice.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include "desktop/binder.h"

namespace quillmarden {
namespace {

template <typename Act>
int chosenWay(Act act) {
  QTimer::singleShot(0, [&] {
    auto* dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
    ASSERT_NE(dialog, nullptr);
    act(*dialog);
  });
  return showChoice("<b>受注</b>は更新されています.", "- A\n+ B", {"読み込む", "上書きする"}, "確認");
}

QPushButton* wayButton(QDialog& dialog, const char* caption) {
  for (QPushButton* found : dialog.findChildren<QPushButton*>())
    if (fromQt(found->text()) == caption) return found;
  ADD_FAILURE() << caption;
  return nullptr;
}

TEST(ChoiceTest, GivesTheWayAndNothingThatIsPressedInHasteIsOne) {
  EXPECT_EQ(chosenWay([](QDialog& dialog) { QTest::mouseClick(wayButton(dialog, "読み込む"), Qt::LeftButton); }), 0);
  EXPECT_EQ(chosenWay([](QDialog& dialog) { QTest::mouseClick(wayButton(dialog, "上書きする"), Qt::LeftButton); }), 1);
  EXPECT_EQ(chosenWay([](QDialog& dialog) { QTest::mouseClick(wayButton(dialog, "キャンセル"), Qt::LeftButton); }), -1);
  EXPECT_EQ(chosenWay([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Escape); }), -1);
  EXPECT_EQ(chosenWay([](QDialog& dialog) { QTest::keyClick(&dialog, Qt::Key_Return); }), -1);
  EXPECT_EQ(chosenWay([](QDialog& dialog) { dialog.close(); }), -1);
}

TEST(ChoiceTest, ShowsTextAndDetailsAsTheyAre) {
  chosenWay([](QDialog& dialog) {
    EXPECT_EQ(fromQt(dialog.windowTitle()), "確認");
    EXPECT_EQ(fromQt(dialog.findChild<QLabel*>()->text()), "<b>受注</b>は更新されています.");
    EXPECT_EQ(dialog.findChild<QLabel*>()->textFormat(), Qt::PlainText);
    auto* details = dialog.findChild<QPlainTextEdit*>();
    ASSERT_NE(details, nullptr);
    EXPECT_EQ(fromQt(details->toPlainText()), "- A\n+ B");
    EXPECT_TRUE(details->isReadOnly());
    dialog.reject();
  });
}

}  // namespace
}  // namespace quillmarden
