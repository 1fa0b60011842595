#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include "common/keys.h"
#include "editing_fixture.h"

namespace quillmarden {
namespace {

/// A list of the System 販売 with its tables A, B and C.
class ListViewTest : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    session.gCurrentSystemName.clear();
    for (const char* name : {"A", "B", "C"}) addTable("販売", "PostgreSQL", name, std::string("表") + name);
    frmTBList_Load(session, scripted.host, list);
    list.CmbSystem.text = "販売";
    CmbSystem_Click(session, scripted.host, windows, list);
  }
  Lines chosen() const {
    Lines names;
    for (const std::string& row : list.LstTableSel.rows) names.emplace_back(tableListName(row));
    return names;
  }

  frmTBList list;
  Windows windows;
};

TEST_F(ListViewTest, RowsMoveOverOnceInWhicheverFormTheyStand) {
  list.LstTable.selected[0] = list.LstTable.selected[2] = true;
  EXPECT_EQ(addToSelection(list), 2);
  EXPECT_EQ(chosen(), (Lines{"表A", "表C"}));
  EXPECT_EQ(list.LstTableSel.selected, (std::vector<bool>{true, true}));

  list.CmbTitle.text = "テーブル名";
  ASSERT_FALSE(pGetTableList(session, scripted.host, list));
  list.LstTable.selected.assign(3, true);
  EXPECT_EQ(addToSelection(list), 1) << "the others are there under their Japanese names";
  EXPECT_EQ(chosen(), (Lines{"表A", "表C", "B"}));

  mnuSelAll_Click(list, 1);
  EXPECT_EQ(list.LstTableSel.selected, (std::vector<bool>{false, false, false}));
  list.LstTableSel.selected[1] = true;
  list.LstTableSel.listIndex = 2;
  removeFromSelection(list);
  EXPECT_EQ(chosen(), (Lines{"表A", "B"}));
  EXPECT_EQ(list.LstTableSel.listIndex, -1);
  EXPECT_EQ(list.LstTableSel.selected.size(), 2U);
  mnuExcelSelCancel_Click(list);
  EXPECT_TRUE(chosen().empty());
}

TEST_F(ListViewTest, SelectiveOutputNeedsRowsAndShowsThem) {
  scripted.expect("ちゃんと確認して", "選択出力する内容がありません.");
  EXPECT_TRUE(mnuSelectPut_Click(scripted.host, list));
  EXPECT_TRUE(list.narrow);
  list.LstTable.selected[1] = true;
  EXPECT_FALSE(mnuSelectPut_Click(scripted.host, list));
  EXPECT_FALSE(list.narrow);
  list.LstTable.selected[1] = false;
  EXPECT_FALSE(mnuSelectPut_Click(scripted.host, list)) << "rows taken over before are enough";
}

TEST_F(ListViewTest, TheFormListHoldsTheScreensThatItKnows) {
  pRefrashListForm(
      list, {{"表\tA", "frmTBDetail"}, {"リスト", "frmTBList"}, {"値", "frmDivision"}, {"表B", "frmTBDetail:2"}});
  EXPECT_EQ(list.lstForm.rows, (Lines{"表A\tfrmTBDetail", "値\tfrmDivision", "表B\tfrmTBDetail:2"}));
  list.lstForm.listIndex = 2;
  pRefrashListForm(list, {{"値", "frmDivision"}, {"表B", "frmTBDetail:2"}});
  EXPECT_EQ(list.lstForm.listIndex, 1) << "the current row follows its screen";
  pRefrashListForm(list, {});
  EXPECT_EQ(list.lstForm.listIndex, -1);
}

TEST_F(ListViewTest, FiltersAndLayoutComeBack) {
  database().execute("UPDATE MAS_TABLEINFO SET 格納先 = 'HOST1', データ分類 = 'x' WHERE テーブル名 = 'B'");
  list.CmbTitle.text = "テーブル名";
  list.CmbWhere.text = "を含む";
  list.CmbHost.text = "HOST1";
  list.CmbDataBunrui.text = "x";
  list.CmbWhereMoji.text = "C";
  list.OptAll.value = false;
  list.OptTb.value = true;
  list.ChkSosikiNm.value = true;
  CmdFormList_Click(session, list);
  CmdWidth_Click(list);
  ImageMove_Drag(list, -5);
  EXPECT_EQ(list.dividerAt, 0);
  ImageMove_Drag(list, 240);
  keepListScreen(session, list);

  openUserData(session, scripted.host);
  session.gCurrentSystemName.clear();
  frmTBList again;
  frmTBList_Load(session, scripted.host, again);
  restoreListScreen(session, scripted.host, windows, again);
  EXPECT_EQ(again.CmbSystem.text + again.CmbTitle.text + again.CmbWhere.text + again.CmbHost.text +
                again.CmbDataBunrui.text + again.CmbWhereMoji.text,
            "販売テーブル名を含むHOST1x");
  EXPECT_TRUE(again.OptTb.value && !again.OptAll.value && !again.OptReverse.value && again.ChkSosikiNm.value);
  EXPECT_TRUE(again.lstFormVisible && !again.narrow);
  EXPECT_EQ(again.dividerAt, 240);
  ASSERT_EQ(again.LstTable.count(), 1);
  EXPECT_EQ(tableListName(again.LstTable.rows[0]), "B");
}

TEST_F(ListViewTest, AKeptSystemThatIsGoneOpensAnEmptyList) {
  keepListScreen(session, list);
  database().execute("UPDATE MAS_SYSTEM SET 出力しない = -1");
  frmTBList again;
  session.gCurrentSystemName.clear();
  frmTBList_Load(session, scripted.host, again);
  restoreListScreen(session, scripted.host, windows, again);
  EXPECT_EQ(again.CmbSystem.text, "");
  EXPECT_EQ(again.LstTable.count(), 0);
  EXPECT_TRUE(again.OptAll.value);
}

TEST_F(ListViewTest, OnlyCtrlAloneMakesACommandOfALetter) {
  for (const char* pair : {"sS", "aA", "cC", "dD"}) {
    const auto lower = LstTable_KeyDown(pair[0], kCtrlAlone);
    const auto upper = LstTable_KeyDown(pair[1], kCtrlAlone);
    ASSERT_TRUE(lower && upper) << pair;
    EXPECT_EQ(lower->menu, upper->menu);
    EXPECT_EQ(lower->index, upper->index);
    EXPECT_FALSE(LstTable_KeyDown(pair[0], gShiftState(kCtrl | kAlt)));
    EXPECT_FALSE(LstTable_KeyDown(pair[0], gShiftState(0)));
  }
  EXPECT_EQ(LstTable_KeyDown('a', kCtrlAlone)->index, 1) << "all rows";
}

TEST_F(ListViewTest, DatabasesOpenWithTheDesktopsProgram) {
  mnuOpenDB_Click(session, scripted.host);
  EXPECT_EQ(scripted.opened, (Lines{database().path()}));
  const std::string file = scripted.folder.file("live.mdb");
  session.gCurrentSystem.accessFile = file;
  scripted.expect("確認", "接続先のデータベースを開きます.", kNo);
  mnuOpenDBConnect_Click(session, scripted.host);
  scripted.expect("確認", "接続先のデータベースを開きます.", kYes);
  scripted.expect("確認", "指定のファイルが存在しません.\nlive.mdb\n" + scripted.folder.path().string());
  mnuOpenDBConnect_Click(session, scripted.host);
  EXPECT_EQ(scripted.opened.size(), 1U);
  std::ofstream(file) << "x";
  scripted.expect("確認", "接続先のデータベースを開きます.", kYes);
  mnuOpenDBConnect_Click(session, scripted.host);
  EXPECT_EQ(scripted.opened.back(), file);
}

TEST_F(ListViewTest, TheRowsKindIsReadWhereThereIsARow) {
  list.LstTable.listIndex = 0;
  LstTable_RightClick(session, scripted.host, list);
  EXPECT_EQ(list.popupKind, "PostgreSQL");
  list.LstTable.rows[0] = "group line";
  LstTable_RightClick(session, scripted.host, list);
  EXPECT_EQ(list.popupKind, "");
}

}  // namespace
}  // namespace quillmarden
