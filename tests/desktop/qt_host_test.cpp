#include "desktop/qt_host.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <QVBoxLayout>

#include "desktop/binder.h"
#include "support/scripted_host.h"

namespace quillmarden {
namespace {

/// Shows the message, lets `act` use the box, and gives the answer.
template <typename Act>
int answerOf(int style, Act act) {
  QTimer::singleShot(0, [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    act(*box);
  });
  return showMessage("<b>受注</b>を削除します.\n2 行目", style, "削除確認");
}

TEST(MessageTest, GivesTheCodeOfThePressedButton) {
  const auto key = [](Qt::Key pressed) { return [pressed](QMessageBox& box) { QTest::keyClick(&box, pressed); }; };
  EXPECT_EQ(answerOf(kOkOnly, key(Qt::Key_Return)), kOk);
  EXPECT_EQ(answerOf(kOkOnly, key(Qt::Key_Escape)), kOk);
  EXPECT_EQ(answerOf(kYesNo | kQuestionIcon, key(Qt::Key_Return)), kYes);
  EXPECT_EQ(answerOf(kYesNo | kQuestionIcon | kDefaultSecond, key(Qt::Key_Return)), kNo);
  EXPECT_EQ(answerOf(kYesNo, key(Qt::Key_Escape)), kNo);
  EXPECT_EQ(answerOf(kYesNo | kKeepsOnYes, key(Qt::Key_Escape)), kYes) << "what is being edited stays";
  EXPECT_EQ(answerOf(kYesNo | kKeepsOnYes, [](QMessageBox& box) { box.close(); }), kYes);
  EXPECT_EQ(answerOf(kYesNo, [](QMessageBox& box) { box.close(); }), kNo);
  EXPECT_EQ(answerOf(kOkCancel | kWarningIcon, key(Qt::Key_Escape)), kCancel);
  EXPECT_EQ(answerOf(kOkCancel, key(Qt::Key_Return)), kOk);
  EXPECT_EQ(answerOf(kYesNo, [](QMessageBox& box) { box.buttons().constLast()->click(); }), kNo);
}

TEST(MessageTest, ShowsTheTextAsItIsWithJapaneseButtons) {
  answerOf(kYesNo | kStopIcon, [](QMessageBox& box) {
    EXPECT_EQ(fromQt(box.text()), "<b>受注</b>を削除します.\n2 行目");
    EXPECT_EQ(box.textFormat(), Qt::PlainText);
    EXPECT_EQ(fromQt(box.windowTitle()), "削除確認");
    QStringList captions;
    for (const QAbstractButton* button : box.buttons()) captions << button->text();
    EXPECT_EQ(fromQt(captions.join('/')), "はい(&Y)/いいえ(&N)");
    EXPECT_FALSE(box.iconPixmap().isNull());
    box.reject();
  });
}

class WaitPanelTest : public testing::Test {
 protected:
  WaitPanelTest() {
    window.resize(600, 400);
    auto* layout = new QVBoxLayout(&window);
    layout->addWidget(&text);
    window.show();
    window.activateWindow();
    turn.begun = [this] { panel.begin(); };
    turn.ended = [this] { panel.end(); };
  }

  QPushButton* stopButton() { return window.findChild<QPushButton*>("CmdStop"); }

  QWidget window;
  QLineEdit text{&window};
  Turn turn;
  WaitPanel panel{turn};
};

TEST_F(WaitPanelTest, AShortRunNeverShowsIt) {
  turn.run([&] {
    panel.setText("受注 出力中です....");
    panel.setProgress(1, 5);
    panel.yield();
    EXPECT_FALSE(panel.visible());
  });
}

TEST_F(WaitPanelTest, ALongRunShowsTextAndBarAndCanBeStopped) {
  int steps = 0;
  turn.run([&] {
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < 5000 && !panel.stopRequested()) {
      panel.setText("受注 出力中です....");
      panel.setProgress(++steps, 1'000'000'000'000);
      if (!panel.visible()) continue;
      EXPECT_EQ(fromQt(window.findChild<QLabel*>("")->text()), "受注 出力中です....");
      QTest::keyClick(&text, Qt::Key_A);  // what is typed in the middle of a run goes nowhere
      QTest::mouseClick(stopButton(), Qt::LeftButton);
    }
    EXPECT_TRUE(panel.stopRequested());
  });
  EXPECT_GT(steps, 0);
  EXPECT_EQ(text.text(), "");
  EXPECT_FALSE(panel.visible());
  turn.run([&] { EXPECT_FALSE(panel.stopRequested()) << "the next run starts afresh"; });
  QTest::keyClick(&text, Qt::Key_A);
  EXPECT_EQ(text.text(), "a");
}

TEST_F(WaitPanelTest, TheStopButtonOfARunShowsAtOnceAndGoesWithItsWindow) {
  bool told = false;
  panel.stopPressed = [&] { told = true; };
  auto* other = new QWidget;
  other->resize(900, 700);
  other->show();
  other->activateWindow();
  QApplication::setActiveWindow(other);
  turn.run([&] {
    panel.offerStop();
    ASSERT_NE(other->findChild<QPushButton*>("CmdStop"), nullptr);
    other->findChild<QPushButton*>("CmdStop")->click();
    delete other;
    panel.setText("まだ処理中です.");
    panel.yield();
  });
  EXPECT_TRUE(told);
}

TEST(QtHostTest, KnowsTheClockTheFoldersAndTheClipboard) {
  TempFolder folder;
  Turn turn;
  QtHost outside(turn, {folder.file("data"), folder.file("temp"), folder.file("program")});
  const Machine& machine = outside.host.machine;
  EXPECT_EQ(machine.appDataFolder, folder.file("data"));
  EXPECT_EQ(machine.tempFolder, folder.file("temp"));
  EXPECT_EQ(machine.programFolder, folder.file("program"));
  EXPECT_FALSE(machine.computerName.empty());
  machine.setClipboard("論理名\tT_A\r\n");
  EXPECT_EQ(machine.clipboard(), "論理名\tT_A\r\n");
  EXPECT_GE(outside.host.clock.now().year, 2024);
}

}  // namespace
}  // namespace quillmarden
