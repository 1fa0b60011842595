#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include "common/keys.h"
#include "shell_fixture.h"
#include "support/files.h"

namespace quillmarden {
namespace {

/// Every line of every menu, as a person reads them.
void write(std::ostream& out, const std::vector<MenuEntry>& entries, const std::string& indent) {
  for (const MenuEntry& entry : entries) {
    out << indent;
    if (entry.separator) {
      out << "--\n";
      continue;
    }
    out << entry.name;
    if (entry.index >= 0) out << "(" << entry.index << ")";
    out << " \"" << entry.caption << "\"";
    if (!entry.keys.empty()) out << " " << entry.keys;
    out << "\n";
    write(out, entry.entries, indent + "  ");
  }
}

template <typename Visit>
void forEach(const std::vector<MenuEntry>& entries, Visit visit) {
  for (const MenuEntry& entry : entries) {
    if (!entry.separator) visit(entry);
    forEach(entry.entries, visit);
  }
}

class MenuMapTest : public ShellTest {
 protected:
  bool enabled(std::string_view name, int index = -1) {
    return isEnabled(app, "frmTBList", *findEntry("frmTBList", name, index));
  }
  bool visible(std::string_view name, int index = -1) {
    return isVisible(app, "frmTBList", *findEntry("frmTBList", name, index));
  }
  void chooseAll() {
    app.list.CmbSystem.text = "<全システム共通>";
    chooseSystem(app);
  }
};

TEST_F(MenuMapTest, ReadsAsWritten) {
  std::ostringstream map;
  for (const Menu& menu : menuMap()) {
    map << menu.screen << "." << menu.name << " \"" << menu.caption << "\"";
    map << (menu.onBar ? " bar" : "") << (menu.popupOf.empty() ? "" : " popup of " + menu.popupOf) << "\n";
    write(map, menu.entries, "  ");
  }
  EXPECT_EQ(map.str(), readFile(std::string(QM_TEST_DATA) + "/menu_map.txt"));
}

TEST_F(MenuMapTest, EveryEntryDoesSomethingAndNamesAreUnique) {
  std::set<std::string> seen;
  for (const Menu& menu : menuMap()) {
    forEach(menu.entries, [&](const MenuEntry& entry) {
      EXPECT_TRUE(entry.press || !entry.entries.empty()) << menu.screen << " " << entry.name;
      EXPECT_TRUE(seen.insert(menu.screen + entry.name + std::to_string(entry.index)).second) << entry.name;
    });
  }
  EXPECT_EQ(findEntry("frmTBList", "mnuNothing"), nullptr);
  EXPECT_FALSE(pressMenu(app, "frmTBList", "mnuNothing"));
}

TEST_F(MenuMapTest, EntriesThatWaitForTheirScreenSaySo) {
  enter();
  app.list.popupKind.clear();
  // Each screen that comes takes its line out of the table; none may be put in unnoticed.
  EXPECT_EQ(laterScreens().size(), 13U);
  for (const LaterScreen& later : laterScreens()) {
    if (later.screen == "frmSystemInf") continue;  // a button
    bool found = false;
    for (const Menu& menu : menuMap()) {
      if (menu.screen != later.screen) continue;
      forEach(menu.entries, [&](const MenuEntry& entry) {
        if (entry.name != later.entry) return;
        found = true;
        const Lines before = app.open.names();
        scripted.expect("確認", "[" + entry.caption + "] は、\nこの版ではまだ利用できません.");
        entry.press(app, later.screen);
        EXPECT_EQ(app.open.names(), before);
      });
    }
    EXPECT_TRUE(found) << later.entry;
  }
}

TEST_F(MenuMapTest, SharedTablesRefuseTheScreensOfOneSystem) {
  enter();
  const Lines ofOneSystem = {"mnuDomain", "mnuClass", "mnuForeign", "mnuCommTb", "mnuKenSu", "mnuFind", "mnuReference"};
  for (const std::string& name : ofOneSystem) EXPECT_TRUE(enabled(name)) << name;
  chooseAll();
  for (const std::string& name : ofOneSystem) {
    EXPECT_FALSE(enabled(name)) << name;
    EXPECT_FALSE(pressMenu(app, "frmTBList", name)) << name;
  }
  EXPECT_FALSE(enabled("mnuAdd") || enabled("mnuDelete") || enabled("mnutsSetting"));
  EXPECT_TRUE(enabled("mnuCreateIndex") && enabled("mnuOpenDB"));
}

TEST_F(MenuMapTest, NothingStartsWhileARunGoesThroughTheTables) {
  enter();
  app.list.running = true;
  EXPECT_FALSE(enabled("mnuCreateSql", 1));
  EXPECT_FALSE(pressMenu(app, "frmTBList", "mnuVersion"));
  EXPECT_FALSE(pressMenu(app, "frmTASK", "Mnu_End"));
  app.list.running = false;
  EXPECT_TRUE(pressMenu(app, "frmTBList", "mnuVersion"));
  EXPECT_TRUE(app.open.has("frmAbout"));
}

TEST_F(MenuMapTest, ThePopupFollowsTheKindOfTheRow) {
  enter();
  std::string popped;
  app.display.popUp = [&](std::string_view screen, std::string_view menu) {
    popped = std::string(screen) + "." + std::string(menu);
  };
  struct Case {
    const char* kind;
    bool statements, scripts, access, members, drawings;
  };
  for (const Case& one :
       {Case{"PostgreSQL", true, true, false, false, true}, Case{"Access", true, false, true, false, true},
        Case{"メンバー", false, false, false, true, false}, Case{"PG管理", false, false, false, false, false},
        Case{"Text", false, false, false, false, true}}) {
    app.session.gDB->execute(std::string("UPDATE MAS_TABLEINFO SET ファイル種別 = '") + one.kind + "' WHERE ID = 1");
    app.list.LstTable.listIndex = 0;
    LstTable_PopUp(app);
    EXPECT_EQ(popped, "frmTBList.mnutEdit");
    EXPECT_EQ(visible("mnutsCreateSQL"), one.statements) << one.kind;
    EXPECT_EQ(visible("mnuCreateSql", 0), one.scripts) << one.kind;
    EXPECT_EQ(visible("mnuCreateAccess", 0), one.access) << one.kind;
    EXPECT_EQ(visible("mnuSosiki"), one.members) << one.kind;
    EXPECT_EQ(visible("mnuExcelDisk"), one.drawings) << one.kind;
    EXPECT_TRUE(visible("mnuUpDate") && visible("mnuExcel", 0)) << one.kind;
  }
  app.list.LstTable.listIndex = -1;
  LstTable_PopUp(app);
  EXPECT_TRUE(visible("mnutsCreateSQL")) << "no row: nothing is hidden";
}

TEST_F(MenuMapTest, KeysOnTheListPressTheirEntries) {
  enter();
  app.list.LstTable.selected[1] = true;
  EXPECT_TRUE(LstTable_Key(app, 'c', kCtrlAlone));
  EXPECT_EQ(scripted.clipboard, "表B/B");
  EXPECT_TRUE(LstTable_Key(app, 'A', kCtrlAlone));
  EXPECT_EQ(scripted.clipboard, "表A/A\r\n表B/B");
  EXPECT_TRUE(LstTable_Key(app, 'd', kCtrlAlone));
  EXPECT_EQ(scripted.clipboard, "表B");
  EXPECT_TRUE(LstTable_Key(app, 'S', kCtrlAlone));
  EXPECT_EQ(scripted.clipboard, app.list.LstTable.rows[1]);
  EXPECT_FALSE(LstTable_Key(app, 'c', gShiftState(kShift | kCtrl)));
  EXPECT_FALSE(LstTable_Key(app, 'x', kCtrlAlone));
}

TEST_F(MenuMapTest, AScriptIsMadeFromTheMenu) {
  enter();
  app.list.LstTable.listIndex = 0;
  scripted.expect("確認", "Sql文を作成します.", kYes);
  scripted.expect("確認", "作成結果を表示しますか?", kYes);
  told();
  ASSERT_TRUE(pressMenu(app, "frmTBList", "mnuCreateSql", 1));
  ASSERT_EQ(scripted.opened.size(), 1U);
  const std::string text = readFile(scripted.opened[0]);
  EXPECT_NE(text.find("CREATE TABLE public.A"), std::string::npos) << text;
  EXPECT_NE(text.find("CREATE TABLE public.B"), std::string::npos);
  EXPECT_EQ(told(), Lines{}) << "the tables pass unseen";
  EXPECT_FALSE(app.list.running);

  ASSERT_TRUE(pressMenu(app, "frmTBList", "mnuCreateSQLBack"));
  EXPECT_TRUE(isChecked(app, "frmTBList", *findEntry("frmTBList", "mnuCreateSQLBack")));
}

TEST_F(MenuMapTest, RowsAreChosenForOutput) {
  enter();
  scripted.expect("ちゃんと確認して", "選択出力する内容がありません.");
  ASSERT_TRUE(pressMenu(app, "frmTBList", "mnuSelectPut"));
  EXPECT_FALSE(enabled("mnuSelAll", 0));
  app.list.LstTable.selected[0] = true;
  std::string popped;
  app.display.popUp = [&](std::string_view, std::string_view menu) { popped = menu; };
  ASSERT_TRUE(pressMenu(app, "frmTBList", "mnuSelectPut"));
  EXPECT_EQ(popped, "mnutExcel");
  EXPECT_EQ(app.list.LstTableSel.count(), 1);
  scripted.expect("確認", "Sql文を作成します.", kYes);
  scripted.expect("確認", "出力結果を表示しますか?", kNo);
  ASSERT_TRUE(pressMenu(app, "frmTBList", "mnuCreateSQLSel", 0));
  ASSERT_TRUE(pressMenu(app, "frmTBList", "mnuExcelSelCancel"));
  EXPECT_EQ(app.list.LstTableSel.count(), 0);
}

TEST_F(MenuMapTest, ADetailScreensMenuWorksOnThatScreen) {
  enter();
  chooseRow(0);
  const std::string further = openDetail(app, "2");
  ASSERT_TRUE(pressMenu(app, further, "mnuAddLine"));
  EXPECT_TRUE(app.detail(further).changed);
  EXPECT_FALSE(app.detail().changed);
  ASSERT_TRUE(pressMenu(app, further, "mnuUndo"));
  EXPECT_EQ(app.detail(further).Spread.maxRows(), app.detail().Spread.maxRows());
  EXPECT_TRUE(isVisible(app, further, *findEntry(further, "mnuPartition")));
  app.detail(further).readOnly = true;
  EXPECT_FALSE(pressMenu(app, further, "mnuAddLine"));
}

TEST_F(MenuMapTest, HeadersAndSystemsOpenForTheirRow) {
  enter();
  scripted.expect("確認", "変更対象のテーブル名を選択して下さい.");
  ASSERT_TRUE(pressMenu(app, "frmTBList", "mnuUpDate"));
  EXPECT_FALSE(app.open.has("frmTBInfo"));
  app.list.LstTable.listIndex = 1;
  ASSERT_TRUE(pressMenu(app, "frmTBList", "mnuUpDate"));
  ASSERT_TRUE(app.open.has("frmTBInfo"));
  EXPECT_EQ(app.tbInfo.TxtTableName.text, "B");
  closeScreen(app, "frmTBInfo");
  ASSERT_TRUE(pressMenu(app, "frmTBList", "mnuAdd"));
  EXPECT_EQ(app.tbInfo.TxtTableName.text, "");

  CmdSystem_Click(app);
  EXPECT_EQ(app.systemInf.TxtSystemName.text, "販売");
}

TEST_F(MenuMapTest, TheReverseToolEndsThisProgram) {
  enter();
  const auto program = scripted.host.machine.programFolder / "Halvorn";
  scripted.expect("確認", "指定のプログラムが存在しません.\n" + program.string());
  ASSERT_TRUE(pressMenu(app, "frmTBList", "mnuRev"));
  std::ofstream(program) << "x";
  scripted.expect("確認", "リバースエンジニアリングの\nプログラムを起動します.\nQuillmardenは終了します.", kYes);
  ASSERT_TRUE(pressMenu(app, "frmTBList", "mnuRev"));
  EXPECT_EQ(scripted.opened, (Lines{program.string()}));
  EXPECT_TRUE(app.ended);
}

}  // namespace
}  // namespace quillmarden
