#include <gtest/gtest.h>

#include "common/text.h"
#include "editing_fixture.h"

namespace quillmarden {
namespace {

TEST(TableListSql, EachFilterAddsItsClause) {
  const std::string head =
      "SELECT a.テーブル名  , a.日本語名  , a.ID  , a.システム名  , a.ファイル種別  FROM MAS_TABLEINFO As a "
      " Where a.削除フラグ = 0 ";
  frmTBList screen;
  screen.CmbSystem.text = "販売";
  screen.CmbTitle.text = "日本語名";
  EXPECT_EQ(tableListSql(screen), head + " And a.システム名 = '販売'  Order by a.システム名,a.日本語名 ");

  screen.CmbTitle.text = "テーブル名";
  screen.ChkAllSys.value = true;
  screen.OptTb.value = true;
  screen.CmbHost.text = "HOST1";
  screen.CmbBunrui.text = "マスタ";
  screen.CmbWhere.text = "から始まる";
  screen.CmbWhereMoji.text = "ORD";
  screen.CmbDataBunrui.text = "A";
  EXPECT_EQ(tableListSql(screen), head +
                                      " And 全システム共通 = true "
                                      " And (    a.REVERSE_DB = false  Or    a.REVERSE_DB IS NULL Or    a.作成者 = "
                                      "'@@昇格@@UpDateDBInfo2Quillmarden'  ) "
                                      " And a.システム名 = '販売'  And a.格納先 = 'HOST1'  And a.分類 = 'マスタ' "
                                      " And テーブル名  Like('ORD*') "
                                      " And (   a.データ分類 = 'A'  or a.データ分類2 = 'A'  )"
                                      " Order by a.システム名,a.テーブル名 ");

  frmTBList all;
  all.CmbSystem.text = kAllSystems;
  all.OptReverse.value = true;
  all.CmbWhere.text = "を含む";
  all.CmbWhereMoji.text = "x";
  all.CmbDataBunrui.text = all.CmbDataBunrui2.text = "A";
  EXPECT_EQ(tableListSql(all),
            head +
                " And a.REVERSE_DB = True  And a.全システム共通 = True  And テーブル名  Like('*x*') "
                " And (   a.データ分類 = 'A'  or a.データ分類2 = 'A'  or a.データ分類 = 'A'  or a.データ分類2 = 'A'  )"
                " Order by a.システム名,a.テーブル名 ");
}

TEST(TableListRow, PadsCutsAndFindsTheIdAgain) {
  frmTBList screen;
  screen.CmbTitle.text = "日本語名";
  const std::string row = tableListRow({"T\tX ", " 受\t注 ", "12", "販売", "Oracle"}, screen);
  EXPECT_EQ(row, "受注" + std::string(46, ' ') + "\tTX\t12");
  EXPECT_EQ(tableListId(row), "12");
  EXPECT_EQ(tableListName(row), "受注");
  EXPECT_EQ(tableListId("no tab"), "");

  screen.CmbTitle.text = "テーブル名";
  screen.ChkSosikiNm.value = true;
  const std::string longName(60, 'n');
  EXPECT_EQ(tableListRow({longName, "日", "3", "販売", "メンバー"}, screen),
            "販売@" + longName.substr(0, 45) + "\t日\t3");
  EXPECT_EQ(tableListRow({"T", "日", "3", "販売", "Oracle"}, screen), "T" + std::string(49, ' ') + "\t日\t3");
}

class TableListTest : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    session.gCurrentSystemName.clear();
    frmTBList_Load(session, scripted.host, list);
    list.CmbTitle.text = "テーブル名";
  }
  void choose(const std::string& system) {
    list.CmbSystem.text = system;
    CmbSystem_Click(session, scripted.host, windows, list);
  }
  Lines names() const {
    Lines all;
    for (const std::string& row : list.LstTable.rows) all.emplace_back(tableListName(row));
    return all;
  }
  void refresh() { ASSERT_FALSE(pGetTableList(session, scripted.host, list)); }

  frmTBList list;
  Windows windows;
};

TEST_F(TableListTest, RowsFollowDeletionReverseStateAndSharing) {
  const std::string plain = addTable("販売", "Oracle", "A_PLAIN", "普通");
  const std::string reverse = addTable("販売", "Oracle", "B_REVERSE", "読込");
  const std::string promoted = addTable("販売", "Oracle", "C_PROMOTED", "昇格");
  const std::string deleted = addTable("販売", "Oracle", "D_DELETED", "削除");
  const std::string hidden = addTable("販売", "Oracle", "E_HIDDEN", "削除2");
  addTable("人事", "Oracle", "F_OTHER", "他");
  database().execute("UPDATE MAS_TABLEINFO SET REVERSE_DB = -1 WHERE ID In (" + reverse + "," + promoted + ")");
  database().execute("UPDATE MAS_TABLEINFO SET 作成者 = '@@昇格@@UpDateDBInfo2Quillmarden' WHERE ID = " + promoted);
  database().execute("UPDATE MAS_TABLEINFO SET 削除フラグ = 1 WHERE ID = " + deleted);
  database().execute("UPDATE MAS_TABLEINFO SET 削除フラグ = -1 WHERE ID = " + hidden);
  database().execute("UPDATE MAS_TABLEINFO SET 全システム共通 = -1 WHERE ID = " + plain);

  choose("販売");
  EXPECT_EQ(names(), (Lines{"A_PLAIN", "B_REVERSE", "C_PROMOTED"}));
  EXPECT_EQ(list.rowCount, 3);
  list.OptAll.value = false;
  list.OptTb.value = true;
  refresh();
  EXPECT_EQ(names(), (Lines{"A_PLAIN", "C_PROMOTED"}));
  list.OptTb.value = false;
  list.OptReverse.value = true;
  refresh();
  EXPECT_EQ(names(), (Lines{"B_REVERSE", "C_PROMOTED"}));
  list.OptReverse.value = false;
  list.ChkAllSys.value = true;
  refresh();
  EXPECT_EQ(names(), (Lines{"A_PLAIN"}));
  list.ChkAllSys.value = false;
  list.CmbWhere.text = "を含む";
  list.CmbWhereMoji.text = "rev";
  refresh();
  EXPECT_EQ(names(), (Lines{"B_REVERSE"}));
  list.CmbSystem.text = "";
  refresh();
  EXPECT_TRUE(list.LstTable.rows.empty());
}

TEST_F(TableListTest, TablesOfOtherSystemsStandBetweenMarks) {
  addTable("販売", "Oracle", "OWN", "自");
  const std::string used = addTable("人事", "メンバー", "EMP", "社員");
  database().execute("UPDATE MAS_TABLEINFO SET 全システム共通 = -1 WHERE ID = " + used);
  database().execute("INSERT INTO DAT_TABLEREF (システム名, ID, 検索) VALUES ('販売', " + used + ", -1)");
  list.ChkRefTb.value = true;
  choose("販売");
  EXPECT_EQ(names(), (Lines{"OWN", "[EMP]"}));
  EXPECT_EQ(list.rowCount, 1);
  session.settings.tableRefMark = true;
  list.ChkSosikiNm.value = true;
  refresh();
  EXPECT_EQ(names(), (Lines{"OWN", "<人事@EMP>"}));
  EXPECT_EQ(tableListId(list.LstTable.rows[1]), used);

  list.LstTable.selected[1] = true;
  scripted.expect("確認",
                  "人事\nのシステムで定義されたものです.\nこのシステムで修正する権限がありません.\n テーブル名 : EMP");
  mnuDelete_Click(session, scripted.host, list);
  EXPECT_EQ(cell("SELECT 削除フラグ FROM MAS_TABLEINFO WHERE ID = " + used), "0") << "not this System's to delete";
}

TEST_F(TableListTest, ChoosingASystemFillsFiltersAndRights) {
  database().execute("UPDATE MAS_SYSTEM SET username = 'scott', connectdatabsse = 'c', password = 'tiger'");
  const std::string id = addTable("販売", "Oracle", "A", "ア");
  database().execute("UPDATE MAS_TABLEINFO SET 格納先 = 'HOST1', データ分類 = 'x', データ分類2 = 'y' WHERE ID = " + id);
  addTable("販売", "Oracle", "B", "イ");
  EXPECT_EQ(list.CmbSystem.entries, (Lines{"<新しいシステム>", "<全システム共通>", "販売"}));
  std::string told;
  windows.systemChanged = [&](std::string_view name) { told = name; };
  choose("販売");
  EXPECT_EQ(told, "販売");
  EXPECT_EQ(list.TxtUserName.text + list.TxtConnect.text + list.TxtPassword.text, "scottctiger");
  EXPECT_EQ(list.CmbHost.entries, (Lines{"", "HOST1"}));
  EXPECT_EQ(list.CmbDataBunrui.entries, (Lines{"", "x", "y"}));
  EXPECT_EQ(list.CmbDataBunrui2.entries, list.CmbDataBunrui.entries);
  EXPECT_TRUE(list.mnuDelete.enabled && list.CmdSystem.enabled);

  list.CmbHost.text = "HOST1";
  choose(std::string(kAllSystems));
  EXPECT_EQ(session.gCurrentSystemName, kAllSystems);
  EXPECT_EQ(list.TxtUserName.text + list.CmbHost.text, "");
  EXPECT_FALSE(list.mnuDelete.enabled || list.CmdSystem.enabled);
  choose(std::string(kNewSystem));
  EXPECT_TRUE(list.CmdSystem.enabled);
  told.clear();
  choose(std::string(kNewSystem));
  EXPECT_EQ(told, "") << "the same System again does nothing";
}

TEST_F(TableListTest, TheSelectionSurvivesARebuild) {
  addTable("販売", "Oracle", "A", "ア");
  const std::string second = addTable("販売", "Oracle", "B", "イ");
  addTable("販売", "Oracle", "C", "ウ");
  choose("販売");
  list.LstTable.selected[0] = list.LstTable.selected[2] = true;
  list.LstTable.listIndex = 2;
  addTable("販売", "Oracle", "AA", "エ");
  refresh();
  EXPECT_EQ(list.LstTable.selected, (std::vector<bool>{true, false, false, true}));
  EXPECT_EQ(list.LstTable.listIndex, 3);
  ASSERT_FALSE(pGetTableList(session, scripted.host, list, second));
  EXPECT_EQ(list.LstTable.selected, (std::vector<bool>{false, false, true, false}));
  EXPECT_EQ(tableListId(list.LstTable.text()), second);
}

TEST_F(TableListTest, AQuoteIsToldAndTheListStays) {
  addTable("販売", "Oracle", "A", "ア");
  choose("販売");
  list.CmbWhereMoji.text = "it's";
  scripted.answerAll(kOk);
  EXPECT_TRUE(pGetTableList(session, scripted.host, list));
  ASSERT_EQ(scripted.messages.size(), 1U);
  EXPECT_TRUE(scripted.messages[0].starts_with("こまった|エラーです.\n  「it's」の「'」が対になっていません."));
  EXPECT_EQ(names(), (Lines{"A"}));
  list.CmbWhereMoji.text = "";
  addTable("経理", "Oracle", "IT'S", "イ");
  list.OptReverse.value = false;
  list.CmbTitle.text = "テーブル名";
  for (const auto& [system, text, found] : std::vector<std::tuple<std::string, std::string, Lines>>{
           {"経理", "it''s", {"IT'S"}}, {"経理", "x') Or ('1' = '1", {"IT'S"}}, {"x' Or '1' = '1", "", {}}}) {
    list.CmbWhereMoji.text = text;
    choose(system);
    pGetTableList(session, scripted.host, list);
    EXPECT_EQ(names(), found) << system << " " << text;
  }
  EXPECT_FALSE(list.mnuDelete.enabled);
}

TEST_F(TableListTest, SearchTextsAreRememberedAndCleared) {
  addTable("販売", "Oracle", "A", "ア");
  choose("販売");
  list.CmbWhereMoji.text = "B";
  CmdFind_Click(session, scripted.host, list);
  CmdFind_Click(session, scripted.host, list);
  EXPECT_TRUE(names().empty());
  frmTBList again;
  frmTBList_Load(session, scripted.host, again);
  EXPECT_EQ(again.CmbWhereMoji.entries, (Lines{"B"}));

  scripted.expect("確認", "検索条件をクリアします.", kNo);
  CmdClearWherMoji_Click(session, scripted.host, list);
  EXPECT_EQ(list.CmbWhereMoji.text, "B");
  list.CmbBunrui.text = "マスタ";
  scripted.expect("確認", "検索条件をクリアします.", kYes);
  CmdClearWherMoji_Click(session, scripted.host, list);
  EXPECT_EQ(list.CmbWhereMoji.text + list.CmbBunrui.text, "");
  EXPECT_EQ(names(), (Lines{"A"}));
}

TEST_F(TableListTest, RowCommandsAskAndWrite) {
  const std::string a = addTable("販売", "Oracle", "A", "ア");
  const std::string b = addTable("販売", "Oracle", "B", "イ");
  addTable("販売", "Oracle", "C", "ウ");
  choose("販売");
  const auto select = [&] { list.LstTable.selected[0] = list.LstTable.selected[1] = true; };

  scripted.expect("確認", "変更対象のテーブル名を選択して下さい.");
  EXPECT_EQ(mnuUpDate_Click(scripted.host, list), "");
  list.LstTable.listIndex = 1;
  EXPECT_EQ(mnuUpDate_Click(scripted.host, list), b);
  list.LstTable.rows[1] = "B\tイ\t?";
  scripted.expect("確認", "選択された行が有効な行ではないようです.");
  EXPECT_EQ(mnuUpDate_Click(scripted.host, list), "");
  refresh();

  select();
  scripted.expect("確認", "編集不可にします.", kYes);
  mnutbEdit_Click(session, scripted.host, list, false);
  EXPECT_EQ(cell("SELECT 修正許可, 作成者, 更新年月日, COMPNAME FROM MAS_TABLEINFO WHERE ID = " + a),
            "0|admin|2026/11/24 09:05:00|TESTPC");
  scripted.expect("確認", "編集可にします.", kNo);
  mnutbEdit_Click(session, scripted.host, list, true);
  EXPECT_EQ(cell("SELECT 修正許可 FROM MAS_TABLEINFO WHERE ID = " + b), "0");
  scripted.expect("確認", "このテーブルは編集不可に設定されています.\n テーブル名 : A");
  mnuDelete_Click(session, scripted.host, list);
  scripted.expect("確認", "編集可にします.", kYes);
  mnutbEdit_Click(session, scripted.host, list, true);
  scripted.expect("確認", "全システム共通とします.\n解除する場合は、[変更]で行ってください.", kYes);
  mnuUpDateAllSystem_Click(session, scripted.host, list);
  scripted.expect("確認", "このテーブルに対してチェックポイントを設定します.", kYes);
  mnuCheckPoint_Click(session, scripted.host, list);
  EXPECT_EQ(cell("SELECT 全システム共通, チェックポイント日付 FROM MAS_TABLEINFO WHERE ID = " + b),
            "-1|2026/11/24 09:05:00");

  scripted.expect("削除確認", "選択された\n  [A]\n  [B]\nを削除します.", kByEnter);
  mnuDelete_Click(session, scripted.host, list);
  EXPECT_EQ(cell("SELECT Count(*) AS n FROM MAS_TABLEINFO WHERE 削除フラグ <> 0"), "0")
      << "[Enter] alone deletes nothing";
  scripted.expect("削除確認", "選択された\n  [A]\n  [B]\nを削除します.", kYes);
  mnuDelete_Click(session, scripted.host, list);
  EXPECT_EQ(names(), (Lines{"C"}));
  EXPECT_EQ(cell("SELECT 削除フラグ FROM MAS_TABLEINFO WHERE ID = " + a), "1");
}

TEST_F(TableListTest, ClipboardTakesNamesInTheirRoles) {
  addTable("販売", "メンバー", "A", "ア");
  addTable("販売", "Oracle", "B", "イ");
  list.ChkSosikiNm.value = true;
  for (const char* title : {"テーブル名", "日本語名"}) {
    list.CmbTitle.text = title;
    session.gCurrentSystemName.clear();
    choose("販売");
    list.LstTable.selected[0] = true;
    mnuClipBordJPN_Click(scripted.host, list);
    EXPECT_EQ(scripted.clipboard, "ア") << title;
    mnuClipBordUS_Click(scripted.host, list);
    EXPECT_EQ(scripted.clipboard, "A") << title;
    mnuClipBord_Click(scripted.host, list, 0);
    EXPECT_EQ(scripted.clipboard, "ア/A") << title;
    mnuClipBord_Click(scripted.host, list, 1);
    EXPECT_EQ(scripted.clipboard, "ア/A\r\nイ/B") << title;
    mnuCopyClipBord_Click(scripted.host, list);
    EXPECT_EQ(scripted.clipboard, list.LstTable.rows[0]) << title;
  }
  mnuCopyAllClipBord_Click(scripted.host, list);
  EXPECT_EQ(scripted.clipboard, list.LstTable.rows[0] + "\r\n" + list.LstTable.rows[1]);
}

TEST_F(TableListTest, CopiesHaveLongNamesWhole) {
  const std::string name = "受注明細履歴の月次集計の途中経過を残すための作業テーブル";
  const std::string id = addTable("販売", "Oracle", "W", name);
  list.CmbTitle.text = "日本語名";
  choose("販売");
  list.LstTable.selected[0] = true;
  EXPECT_EQ(gLenB(tableListName(list.LstTable.rows[0])), 50U);
  mnuClipBordJPN_Click(scripted.host, list);
  EXPECT_EQ(scripted.clipboard, name);
  mnuClipBord_Click(scripted.host, list, 2);
  EXPECT_EQ(scripted.clipboard, "■" + name + "/W");
  mnuCopyClipBord_Click(scripted.host, list);
  EXPECT_EQ(scripted.clipboard, name + "\tW\t" + id);
}

TEST_F(TableListTest, AClickLoadsTheRowUnlessEditingGoesOn) {
  const std::string a = addTable("販売", "Oracle", "A", "ア");
  addTable("販売", "Oracle", "B", "イ");
  choose("販売");
  EXPECT_TRUE(pReadTbDetailsData(session, scripted.host, list, detail)) << "no current row";
  list.LstTable.listIndex = 0;
  EXPECT_FALSE(pReadTbDetailsData(session, scripted.host, list, detail));
  EXPECT_EQ(detail.lblID.caption, a);
  detail.changed = true;
  list.LstTable.listIndex = 1;
  scripted.expect("確認", "内容が変更されています.\n    ア\nの編集を続けますか?", kYes);
  EXPECT_TRUE(pReadTbDetailsData(session, scripted.host, list, detail));
  EXPECT_EQ(detail.lblID.caption, a);
  scripted.expect("確認", "内容が変更されています.\n    ア\nの編集を続けますか?", kNo);
  EXPECT_FALSE(pReadTbDetailsData(session, scripted.host, list, detail));
  EXPECT_EQ(detail.txtTableNameENG.text, "B");
}

TEST_F(TableListTest, ALongListIsOneStatement) {
  std::vector<std::vector<Value>> tables;
  for (int i = 0; i < 2000; ++i)
    tables.push_back({std::string("販売"), "T" + std::to_string(i), std::string("表"), std::int64_t{0}});
  database().insertRows("MAS_TABLEINFO", {"システム名", "テーブル名", "日本語名", "削除フラグ"}, tables);
  choose("販売");
  EXPECT_EQ(list.LstTable.count(), 2000);
  list.CmbWhereMoji.text = "T1";
  const long before = database().statementCount();
  refresh();
  EXPECT_EQ(database().statementCount() - before, 1);
  EXPECT_EQ(list.LstTable.count(), 1111);
}

}  // namespace
}  // namespace quillmarden
