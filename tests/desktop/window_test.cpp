#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QScreen>
#include <QTabWidget>
#include <QWindow>

#include "desktop_fixture.h"
#include "shell/list_commands.h"
#include "shell/screens.h"

namespace quillmarden {
namespace {

/// Windows as a person goes through them: with the mouse, with the keyboard, from one to the next.
class WindowTest : public DesktopTest {
 protected:
  void openHeader(int row) {
    turn.run([&] { openTableInfo(app, tableListId(app.list.LstTable.rows[static_cast<std::size_t>(row)])); });
    settle();
    activate("frmTBInfo");
  }
  bool sees(std::string_view screen) { return front->find(screen) && view(screen).isVisible(); }
  void closeDetail() {
    view("frmTBDetail").close();
    settle();
    ASSERT_FALSE(sees("frmTBDetail"));
  }
  /// Presses and releases before the event loop comes round, as a display hands over what came while it was busy.
  void clickAtOnce(QAbstractItemView& list, int row) {
    const QPoint place = list.visualRect(list.model()->index(row, 0)).center();
    QTest::mousePress(list.viewport(), Qt::LeftButton, {}, place);
    QTest::mouseRelease(list.viewport(), Qt::LeftButton, {}, place);
  }
};

TEST_F(WindowTest, TheChosenRowOpensByClickEnterAndDoubleClick) {
  logInTo("販売管理_Oracle");
  auto& list = control<QAbstractItemView>("frmTBList", "LstTable");
  // As a rebuilt list leaves it: the first row is chosen, and no press has told so.
  app.list.LstTable.selected[0] = true;
  app.list.LstTable.listIndex = 0;
  turn.refresh();
  ASSERT_EQ(list.currentIndex().row(), 0);

  chooseRow("frmTBList", "LstTable", 0);
  ASSERT_TRUE(sees("frmTBDetail"));
  const std::string first = app.detail().lblID.caption;
  closeDetail();
  chooseRow("frmTBList", "LstTable", 0);
  ASSERT_TRUE(sees("frmTBDetail"));

  closeDetail();
  activate("frmTBList");
  list.setFocus();
  QTest::keyClick(&list, Qt::Key_Return);
  settle();
  ASSERT_TRUE(sees("frmTBDetail"));
  EXPECT_TRUE(view("frmTBDetail").isActiveWindow()) << "the keyboard goes on in the table";
  EXPECT_EQ(QApplication::focusWidget(), &control("frmTBDetail", "Spread"));

  closeDetail();
  app.session.settings.tableListBoxDblClick = false;
  const QPoint place = list.visualRect(list.model()->index(0, 0)).center();
  QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, place);
  QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, place);
  settle();
  EXPECT_TRUE(sees("frmTBDetail"));
  EXPECT_EQ(app.detail().lblID.caption, first);
  EXPECT_EQ(app.details.size(), 1U);
}

TEST_F(WindowTest, OnePressIsOneQuestion) {
  logInTo("販売管理_Oracle");
  chooseRow("frmTBList", "LstTable", 0);
  app.detail().changed = true;
  auto& list = control<QAbstractItemView>("frmTBList", "LstTable");
  const std::string question =
      "内容が変更されています.\n    " + app.detail().txtTableNameJPN.text + "\nの編集を続けますか?";
  scripted.expect("確認", question, kYes);
  clickAtOnce(list, 1);
  settle();
  scripted.expect("確認", question, kYes);
  QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, list.visualRect(list.model()->index(2, 0)).center());
  settle();
  EXPECT_TRUE(app.detail().changed);
  // The row that was refused is the chosen one now; a press on it asks again.
  scripted.expect("確認", question, kNo);
  chooseRow("frmTBList", "LstTable", 2);
  EXPECT_EQ(app.detail().lblID.caption, tableListId(app.list.LstTable.rows[2]));
}

TEST_F(WindowTest, AnOpenDropDownKeepsItsEscapeAndEnter) {
  logInTo("販売管理_Oracle");
  openHeader(0);
  view("frmTBInfo").findChild<QTabWidget*>()->setCurrentIndex(0);
  auto& stat = control<QComboBox>("frmTBInfo", "CmbBunrui");
  const std::string former = app.tbInfo.CmbBunrui.text;
  const auto dropDown = [&] {
    stat.setFocus();
    stat.showPopup();
    EXPECT_TRUE(QTest::qWaitFor([] { return QApplication::activePopupWidget() != nullptr; }, 1000));
    return QApplication::activePopupWidget()->findChild<QAbstractItemView*>();
  };
  QTest::keyClick(dropDown(), Qt::Key_Escape);
  settle();
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  ASSERT_TRUE(sees("frmTBInfo")) << "the screen went with its list";
  EXPECT_EQ(app.tbInfo.CmbBunrui.text, former);

  auto* list = dropDown();
  QTest::keyClick(list, Qt::Key_Down);
  QTest::keyClick(list, Qt::Key_Return);
  settle();
  EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
  EXPECT_NE(app.tbInfo.CmbBunrui.text, former) << "[Enter] takes the entry and saves nothing";
  ASSERT_TRUE(sees("frmTBInfo"));
  QTest::keyClick(dropDown(), Qt::Key_S, Qt::ControlModifier);
  settle();
  ASSERT_TRUE(sees("frmTBInfo")) << "no key of the window behind works meanwhile";
  stat.hidePopup();
  activate("frmTBInfo");
  scripted.expect("確認", "内容が変更されています.\n    " + app.tbInfo.TxtJPN.text + "\nの編集を続けますか?",
                  kByClosing);
  QTest::keyClick(&stat, Qt::Key_Escape);
  settle();
  EXPECT_TRUE(sees("frmTBInfo"));
}

TEST_F(WindowTest, AHeaderMarksAllThatIsMissingAndSavesByItsKey) {
  logInTo("販売管理_Oracle");
  turn.run([this] { openTableInfo(app, ""); });
  settle();
  activate("frmTBInfo");
  EXPECT_EQ(QApplication::focusWidget(), &control("frmTBInfo", "TxtJPN"));
  const auto marked = [this] {
    QStringList names;
    for (const QWidget* box : view("frmTBInfo").findChildren<QWidget*>())
      if (box->property("fault").toBool()) names << box->objectName();
    names.sort();
    return fromQt(names.join(' '));
  };
  EXPECT_EQ(marked(), "");
  view("frmTBInfo").findChild<QTabWidget*>()->setCurrentIndex(1);
  type(control("frmTBInfo", "TxtJPN"), "新しい表");
  type(control("frmTBInfo", "TxtTableName"), "T_NEW");
  scripted.expect("入力確認", "目的分類が未設定です.");
  QTest::keyClick(&view("frmTBInfo"), Qt::Key_S, Qt::ControlModifier);
  ASSERT_TRUE(QTest::qWaitFor([&] { return !marked().empty(); }, 2000)) << "a pressed button shows that first";
  EXPECT_EQ(marked(), "CmbBunrui CmbKanKaku TxtMemo TxtRyaku");
  EXPECT_EQ(view("frmTBInfo").findChild<QTabWidget*>()->currentIndex(), 0) << "the page of the first of them";
  EXPECT_TRUE(control("frmTBInfo", "CmbBunrui").hasFocus());
  type(control("frmTBInfo", "TxtMemo"), "概要");
  type(*control<QComboBox>("frmTBInfo", "CmbBunrui").lineEdit(), "マスタ");
  EXPECT_EQ(marked(), "CmbKanKaku TxtRyaku") << "a mark goes as its box is filled";
}

TEST_F(WindowTest, ShiftF10OpensTheMenuOfWhatHasTheFocus) {
  logInTo("販売管理_Oracle");
  chooseRow("frmTBList", "LstTable", 0);
  for (const auto& [screen, name, menu] :
       {std::tuple("frmTBList", "LstTable", "mnutEdit"), {"frmTBDetail", "Spread", ""}}) {
    SCOPED_TRACE(name);
    activate(screen);
    control(screen, name).setFocus();
    QTest::keyClick(&control(screen, name), Qt::Key_F10, Qt::ShiftModifier);
    auto* popup = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    ASSERT_NE(popup, nullptr);
    EXPECT_EQ(popup->objectName(), menu);
    popup->close();
  }
}

TEST_F(WindowTest, AWindowBelongsToTheOneItWasOpenedFrom) {
  logInTo("販売管理_Oracle");
  chooseRow("frmTBList", "LstTable", 0);
  activate("frmTBDetail");
  press("frmTBDetail", "cmdTBInfo");
  activate("frmTBInfo");
  EXPECT_EQ(view("frmTBInfo").windowHandle()->transientParent(), view("frmTBDetail").windowHandle());
  EXPECT_EQ(view("frmTBDetail").windowHandle()->transientParent(), nullptr) << "list and grid stand side by side";
  press("frmTBInfo", "cmdCancel");
  EXPECT_TRUE(QTest::qWaitFor([this] { return view("frmTBDetail").isActiveWindow(); }, 1000))
      << "the keyboard goes back to where it came from";
  activate("frmTBList");
  press("frmTBList", "CmdSystem");
  EXPECT_EQ(view("frmSystemInf").windowHandle()->transientParent(), view("frmTBList").windowHandle());
}

TEST_F(WindowTest, TheBarLiesOnTheScreenWhateverThePath) {
  logInTo();
  app.bar.lblLogin.caption = "yamada (server) " + std::string(400, 'x') + ".mdb";
  turn.refresh();
  settle();
  View& bar = view("frmAppBar");
  const QRect room = bar.QWidget::screen()->availableGeometry();
  EXPECT_LE(bar.width(), room.width());
  EXPECT_TRUE(QTest::qWaitFor([&] { return room.contains(bar.geometry()); }, 2000)) << bar.x() << " " << bar.width();
  EXPECT_TRUE(bar.rect().contains(control("frmAppBar", "CmdClose").geometry()));
  bar.move(room.right() - 40, room.bottom() - 10);
  turn.run([this] { app.windows.close("frmAppBar"); });
  turn.run([this] { openScreen(app, "frmAppBar"); });
  settle();
  EXPECT_TRUE(QTest::qWaitFor([&] { return room.contains(view("frmAppBar").geometry()); }, 2000))
      << "a place kept from a bigger screen";
}

}  // namespace
}  // namespace quillmarden
