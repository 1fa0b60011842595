#include <QComboBox>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QTabWidget>
#include <QUrl>
#include <fstream>

#include "desktop_fixture.h"
#include "editing/frm_tb_info.h"

namespace quillmarden {
namespace {

class TableInfoViewTest : public DesktopTest {
 protected:
  static constexpr const char* kScreen = "frmTBInfo";

  /// Opens the header of the list's first table from its detail screen.
  void openFirst() {
    logInTo("販売管理_Oracle");
    chooseRow("frmTBList", "LstTable", 0);
    press("frmTBDetail", "cmdTBInfo");
    ASSERT_NE(front->find(kScreen), nullptr);
  }
};

TEST_F(TableInfoViewTest, APersonChangesAHeaderAndTheDetailScreenFollows) {
  openFirst();
  EXPECT_EQ(control<QLineEdit>(kScreen, "TxtTableName").text(), toQt(app.detail().txtTableNameENG.text));
  control<QLineEdit>(kScreen, "TxtMakeDate").clear();
  app.tbInfo.TxtMakeDate.text.clear();
  pick(kScreen, "CmbStat", "開発中");
  EXPECT_EQ(control<QLineEdit>(kScreen, "TxtMakeDate").text(), "2026/11/24") << "the status sets its date";
  auto& memo = control<QPlainTextEdit>(kScreen, "TxtMemo");
  memo.setFocus();
  memo.selectAll();
  type(memo, "新しい概要");
  EXPECT_EQ(app.tbInfo.TxtMemo.text, "新しい概要");
  scripted.answerAll(kYes);
  press(kScreen, "cmdOK");
  EXPECT_EQ(front->find(kScreen), nullptr);
  EXPECT_EQ(control<QPlainTextEdit>("frmTBDetail", "TxtMemo").toPlainText(), "新しい概要");
}

TEST_F(TableInfoViewTest, AFaultKeepsItOpen) {
  openFirst();
  auto& name = control<QLineEdit>(kScreen, "TxtJPN");
  name.selectAll();
  QTest::keyClick(&name, Qt::Key_Delete);
  scripted.expect("入力確認", "日本語名が未設定です.");
  press(kScreen, "cmdOK");
  EXPECT_NE(front->find(kScreen), nullptr);
}

TEST_F(TableInfoViewTest, MembersHaveDatesOfTheirOwn) {
  logInTo("販売管理_メンバー");
  chooseRow("frmTBList", "LstTable", 0);
  press("frmTBDetail", "cmdTBInfo");
  QStringList captions;
  for (const QLabel* label : view(kScreen).findChildren<QLabel*>()) captions << label->text();
  for (const char* wanted : {"参加日", "終了予定日", "終了日"}) EXPECT_TRUE(captions.contains(wanted)) << wanted;
  EXPECT_FALSE(captions.contains("完了日"));
}

TEST_F(TableInfoViewTest, ADroppedFileBecomesTheReferenceFile) {
  openFirst();
  const std::string file = scripted.folder.file("layout.txt");
  std::ofstream(file) << "x";
  QMimeData data;
  data.setUrls({QUrl::fromLocalFile(toQt(file))});
  view(kScreen).findChild<QTabWidget*>()->setCurrentIndex(2);
  QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
  scripted.answerAll(kYes);
  auto& field = control<QLineEdit>(kScreen, "TxtRefFileName");
  QApplication::sendEvent(&field, &enter);
  QApplication::sendEvent(&field, &drop);
  EXPECT_EQ(field.text(), "layout.txt");
  press(kScreen, "cmdRefFileOpen");
  ASSERT_EQ(scripted.opened.size(), 1U);
  EXPECT_TRUE(scripted.opened[0].ends_with("layout.txt"));
}

}  // namespace
}  // namespace quillmarden
