#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QDropEvent>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QRadioButton>
#include <QUrl>
#include <filesystem>

#include "desktop/binder.h"
#include "desktop_fixture.h"
#include "editing/frm_tb_list.h"
#include "shell/frm_app_bar.h"
#include "shell/screens.h"

namespace quillmarden {
namespace {

class SessionTest : public DesktopTest {
 protected:
  std::vector<std::string> names() const {
    std::vector<std::string> found;
    for (const std::string& row : app.list.LstTable.rows) found.emplace_back(tableListName(row));
    return found;
  }
  QMenu* openMenu() {
    const auto popup = [] { return qobject_cast<QMenu*>(QApplication::activePopupWidget()); };
    return QTest::qWaitFor([&] { return popup() != nullptr; }, 1000) ? popup() : nullptr;
  }
};

TEST_F(SessionTest, APersonLogsInFiltersLooksAtATableAndLogsOff) {
  startToLogIn();
  auto& files = control<QListView>("frmLogInNew", "LstDb");
  EXPECT_EQ(files.model()->rowCount(), 1);
  EXPECT_EQ(files.currentIndex().data().toString(), "hanbai.mdb");
  auto& user = control<QLineEdit>("frmLogInNew", "txtUserName");
  EXPECT_EQ(user.text(), "admin");

  scripted.expect("確認", "ユーザー名が未登録です.\n管理者に確認してください.");
  user.selectAll();
  QTest::keyClicks(&user, "nobody");
  press("frmLogInNew", "cmdOK");
  EXPECT_TRUE(control("frmLogInNew", "cmdOK").isEnabled());
  EXPECT_TRUE(control("frmLogInNew", "PicMsg").isHidden());
  user.selectAll();
  QTest::keyClicks(&user, "yamada");
  press("frmLogInNew", "cmdOK");
  EXPECT_EQ(front->find("frmLogInNew"), nullptr);
  ASSERT_NE(front->find("frmAppBar"), nullptr);

  pick("frmTBList", "CmbSystem", "販売管理_Oracle");
  const std::size_t all = names().size();
  ASSERT_GT(all, 10U);
  auto& search = control<QComboBox>("frmTBList", "CmbWhereMoji");
  type(*search.lineEdit(), "受注");
  EXPECT_EQ(names().size(), all) << "typing alone does not search";
  QTest::keyClick(&view("frmTBList"), Qt::Key_F5);
  settle();
  ASSERT_LT(names().size(), all);
  for (const std::string& name : names()) EXPECT_TRUE(name.starts_with("受注")) << name;
  EXPECT_EQ(fromQt(search.itemText(0)), "受注") << "the search is in the history";

  pick("frmTBList", "CmbTitle", "テーブル名");
  EXPECT_TRUE(names().empty()) << "a filter's change searches at once, and no table is named so";
  scripted.expect("確認", "検索条件をクリアします.", kYes);
  press("frmTBList", "CmdClearWherMoji");
  EXPECT_EQ(names().size(), all);
  EXPECT_EQ(search.currentText(), "");
  press("frmTBList", "OptReverse");
  EXPECT_TRUE(names().empty());
  press("frmTBList", "OptAll");

  chooseRow("frmTBList", "LstTable", 1);
  EXPECT_EQ(app.detail().txtTableNameENG.text, names()[1]);
  ASSERT_NE(front->find("frmTBDetail"), nullptr);
  EXPECT_TRUE(view("frmTBDetail").isVisible());

  scripted.expect("確認", "ログオフしますか?", kNo);
  press("frmAppBar", "CmdLogOff");
  EXPECT_TRUE(app.session.gDB);
  scripted.expect("確認", "ログオフしますか?", kYes);
  press("frmAppBar", "CmdLogOff");
  EXPECT_FALSE(app.session.gDB);
  EXPECT_EQ(front->find("frmTBList"), nullptr);
  EXPECT_EQ(front->find("frmTBDetail"), nullptr);
  ASSERT_TRUE(QTest::qWaitFor([this] { return front->find("frmLogInNew") != nullptr; }, 3000));
  EXPECT_EQ(control<QLineEdit>("frmLogInNew", "txtUserName").text(), "yamada") << "the choice is remembered";
}

TEST_F(SessionTest, TheLogInTakesDroppedFoldersAndRefusesTheRest) {
  startToLogIn();
  auto& box = control<QAbstractButton>("frmLogInNew", "ChkDataBase");
  if (!box.isChecked()) press("frmLogInNew", "ChkDataBase");
  std::filesystem::create_directory(scripted.folder.path() / "shared");
  std::filesystem::copy_file(QM_SAMPLE_FILE, scripted.folder.path() / "shared" / "honsha.mdb");
  auto& folders = control<QListView>("frmLogInNew", "LstFolder");
  const auto drop = [&](const std::vector<std::string>& paths) {
    QMimeData data;
    QList<QUrl> urls;
    for (const std::string& path : paths) urls << QUrl::fromLocalFile(toQt(path));
    data.setUrls(urls);
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(folders.viewport(), &enter);
    QDropEvent event(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(folders.viewport(), &event);
    settle();
  };
  scripted.expect("確認", "複数は追加できません..");
  drop({scripted.folder.file("shared"), scripted.folder.file("program")});
  drop({scripted.folder.file("shared")});
  EXPECT_EQ(fromQt(folders.currentIndex().data().toString()), scripted.folder.file("shared"));
  EXPECT_EQ(control<QListView>("frmLogInNew", "LstDb").currentIndex().data().toString(), "honsha.mdb");
}

TEST_F(SessionTest, AFileGivenAtTheStartIsChosen) {
  std::filesystem::create_directory(scripted.folder.path() / "shared");
  std::filesystem::copy_file(QM_SAMPLE_FILE, scripted.folder.path() / "shared" / "Honsha.sqlite");
  front->prefill(scripted.folder.file("shared/Honsha.sqlite"), "suzuki");
  startToLogIn();
  EXPECT_EQ(control<QLineEdit>("frmLogInNew", "txtUserName").text(), "suzuki");
  EXPECT_EQ(control<QListView>("frmLogInNew", "LstDb").currentIndex().data().toString(), "honsha.sqlite");
  press("frmLogInNew", "cmdOK");
  EXPECT_EQ(app.session.gLoginUser, "suzuki");
}

TEST_F(SessionTest, KeysAndMenusOfTheListActOnTheChosenRows) {
  logInTo("販売管理_Oracle");
  chooseRow("frmTBList", "LstTable", 0);
  chooseRow("frmTBList", "LstTable", 2, Qt::ControlModifier);
  auto& table = control<QAbstractItemView>("frmTBList", "LstTable");
  activate("frmTBList");
  table.setFocus();
  QTest::keyClick(&table, Qt::Key_D, Qt::ControlModifier);
  EXPECT_EQ(scripted.clipboard, names()[0] + "\r\n" + names()[2]);
  QTest::keyClick(&table, Qt::Key_A, Qt::ControlModifier);
  EXPECT_EQ(std::count(scripted.clipboard.begin(), scripted.clipboard.end(), '/'), app.list.LstTable.count());
  EXPECT_EQ(std::count(app.list.LstTable.selected.begin(), app.list.LstTable.selected.end(), true), 2)
      << "Ctrl+A copies here and selects nothing";

  press("frmTBList", "mnutEdit");
  QMenu* menu = openMenu();
  ASSERT_NE(menu, nullptr);
  QStringList shown;
  for (const QAction* action : menu->actions())
    if (action->isVisible() && !action->isSeparator()) shown << action->text().section('\t', 0, 0);
  EXPECT_TRUE(shown.contains(toQt("テーブル情報の作成"))) << fromQt(shown.join('/'));
  EXPECT_TRUE(shown.contains(toQt("Create SQL文の作成")));
  QAction* editable = nullptr;
  for (QAction* action : menu->findChildren<QAction*>())
    if (action->objectName() == "mnutbEdit:0") editable = action;
  ASSERT_NE(editable, nullptr);
  scripted.expect("確認", "編集不可にします.", kNo);
  editable->trigger();
  settle();
  menu->close();
}

TEST_F(SessionTest, TheMenuBarFollowsTheSystem) {
  logInTo();
  auto* bar = view("frmTBList").findChild<QMenuBar*>();
  ASSERT_NE(bar, nullptr);
  QStringList captions;
  for (const QAction* action : bar->actions()) captions << action->text();
  EXPECT_EQ(fromQt(captions.join('/')), "編集/レポート/出力/画面一覧/ヘルプ");
  const auto enabled = [&](const char* name) {
    for (const QAction* top : bar->actions()) {
      Q_EMIT top->menu()->aboutToShow();
      for (const QAction* action : top->menu()->actions())
        if (action->objectName() == name) return action->isEnabled();
    }
    ADD_FAILURE() << "no entry " << name;
    return false;
  };
  pick("frmTBList", "CmbSystem", "<全システム共通>");
  EXPECT_FALSE(enabled("mnuClass"));
  pick("frmTBList", "CmbSystem", "販売管理_Oracle");
  EXPECT_TRUE(enabled("mnuClass"));
}

TEST_F(SessionTest, WindowsCloseAsTheShellDecides) {
  logInTo("販売管理_Oracle");
  turn.run([this] { openScreen(app, "frmAbout"); });
  activate("frmAbout");
  QTest::keyClick(&view("frmAbout"), Qt::Key_Escape);
  settle();
  EXPECT_EQ(front->find("frmAbout"), nullptr);

  scripted.expect("終了確認", app.list.caption + " を終了します.", kNo);
  view("frmTBList").close();
  EXPECT_TRUE(view("frmTBList").isVisible());

  chooseRow("frmTBList", "LstTable", 0);
  turn.run([this] { hideOrShowAll(app); });
  EXPECT_FALSE(view("frmTBList").isVisible());
  EXPECT_FALSE(view("frmTBDetail").isVisible());
  EXPECT_TRUE(view("frmAppBar").isVisible());
  EXPECT_EQ(fromQt(control<QAbstractButton>("frmAppBar", "CmdMin").text()), "画面の表示");
  press("frmAppBar", "CmdMin");
  EXPECT_TRUE(view("frmTBList").isVisible());

  scripted.expect("終了確認", "終了します.", kYes);
  press("frmAppBar", "CmdClose");
  EXPECT_TRUE(app.ended);
  EXPECT_EQ(front->find("frmAppBar"), nullptr);
}

TEST_F(SessionTest, TheListShowsItsSelectionInTheWideForm) {
  logInTo("販売管理_Oracle");
  if (!app.list.narrow) press("frmTBList", "CmdWidth");
  EXPECT_FALSE(control("frmTBList", "LstTableSel").isVisible());
  const int width = view("frmTBList").width();
  chooseRow("frmTBList", "LstTable", 1);
  press("frmTBList", "CmdWidth");
  EXPECT_TRUE(control("frmTBList", "LstTableSel").isVisible());
  EXPECT_GT(view("frmTBList").width(), width);
  turn.run([this] { mnuExcelSel_Click(app.list); });
  EXPECT_EQ(control<QAbstractItemView>("frmTBList", "LstTableSel").model()->rowCount(), 1);
  const bool forms = app.list.lstFormVisible;
  press("frmTBList", "CmdFormList");
  EXPECT_EQ(control("frmTBList", "lstForm").isVisible(), !forms);
}

TEST_F(SessionTest, DetailScreensAreLaidSideBySide) {
  logInTo("販売管理_Oracle");
  std::vector<std::string> screens = {"frmTBDetail"};
  chooseRow("frmTBList", "LstTable", 0);
  for (const int row : {1, 2})
    turn.run([&] {
      screens.push_back(openDetail(app, tableListId(app.list.LstTable.rows[static_cast<std::size_t>(row)])));
    });
  turn.run([this] { mnuDetailsArrange_Click(app); });
  settle();
  for (std::size_t one = 0; one < screens.size(); ++one)
    for (std::size_t other = one + 1; other < screens.size(); ++other)
      EXPECT_NE(view(screens[one]).pos(), view(screens[other]).pos()) << screens[one] << " hides " << screens[other];
  EXPECT_NE(view(screens[1]).windowTitle(), view(screens[2]).windowTitle());

  turn.run([&] { closeScreen(app, screens[1]); });
  EXPECT_EQ(front->find(screens[1]), nullptr);
  EXPECT_TRUE(view(screens[2]).isVisible());
}

TEST_F(SessionTest, TheBarStaysInFrontWhenAskedTo) {
  logInTo();
  EXPECT_FALSE(view("frmAppBar").windowFlags().testFlag(Qt::WindowStaysOnTopHint));
  turn.run([this] { mnuWindowTop_Click(app); });
  EXPECT_TRUE(view("frmAppBar").windowFlags().testFlag(Qt::WindowStaysOnTopHint));
  EXPECT_TRUE(view("frmAppBar").isVisible());
}

TEST_F(SessionTest, WithoutANotificationAreaTheBarDoesItAll) {
  logInTo();
  // The display of the tests has none.
  EXPECT_FALSE(app.task.iconShown);
  press("frmAppBar", "CmdMin");
  EXPECT_FALSE(view("frmTBList").isVisible());
  EXPECT_TRUE(view("frmAppBar").isVisible());
}

}  // namespace
}  // namespace quillmarden
