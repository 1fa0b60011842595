#include "dictionary/frm_division.h"

#include "dictionary/frm_divi_ref.h"
#include "support/open_repository.h"

namespace quillmarden {
namespace {

namespace col = division_col;
using Lines = std::vector<std::string>;

class FrmDivisionTest : public OpenRepositoryTest {
 protected:
  void SetUp() override {
    OpenRepositoryTest::SetUp();
    addSystem("販売", "PostgreSQL");
    addSystem("共通", "Oracle");
    addList("販売", "状態", "区分", "数値", "どこまで\t進んだか");
    addList("販売", "有無", "フラグ", "Yes/No", "");
    addList("共通", "性別", "区分", "文字", "共通のもの", "-1");
    addList("共通", "社内", "区分", "文字", "ここだけ");
    addEntry("販売", "状態", 1, "1", "新規", "Null");
    addEntry("販売", "状態", 2, "2", "完了", "-1");
    addEntry("共通", "性別", 1, "m", "男", "0");
    ASSERT_TRUE(selectSystem(session, scripted.host, "販売"));
    frmDivision_Load(session, scripted.host, screen);
  }

  void addList(const std::string& system, const std::string& name, const std::string& kind, const std::string& type,
               const std::string& memo, const std::string& shared = "0") {
    database().execute(
        "INSERT INTO MAS_DIVISION (システム名, 値名称, 種別, 型, 内容, 全システム共通, 削除フラグ, 作成者)"
        " VALUES ('" +
        system + "', '" + name + "', '" + kind + "', '" + type + "', '" + memo + "', " + shared + ", 0, 'maker')");
  }
  void addEntry(const std::string& system, const std::string& name, int row, const std::string& value,
                const std::string& meaning, const std::string& preset) {
    database().execute(
        "INSERT INTO MAS_DIVISIONDETAILES (システム名, 値名称, 行番号, 値, 内容, 初期値, 作成年月日, 作成者) VALUES "
        "('" +
        system + "', '" + name + "', " + std::to_string(row) + ", '" + value + "', '" + meaning + "', " + preset +
        ", '2020/01/02 03:04:05', 'maker')");
  }
  Lines entries(const std::string& name) {
    return rows(
        "SELECT 行番号, 値, 内容, 初期値, 作成者, 作成年月日, 更新者, 更新年月日 FROM MAS_DIVISIONDETAILES "
        "WHERE 値名称 = '" +
        name + "' ORDER BY 行番号");
  }

  bool choose(const std::string& name) {
    for (int row = 0; row < screen.lstDivision.count(); ++row)
      if (splitValueListRow(screen.lstDivision.rows[static_cast<std::size_t>(row)]).name == name)
        screen.lstDivision.listIndex = row;
    return lstDivision_Click(session, scripted.host, screen);
  }
  void type(int column, int row, std::string_view text) {
    screen.Spread.setText(column, row, text);
    Spread_Change(screen, column, row);
  }
  Lines names() const {
    Lines all;
    for (const std::string& row : screen.lstDivision.rows) all.push_back(splitValueListRow(row).name);
    return all;
  }
  std::string cells(int row) const {
    std::string line;
    for (int column = 1; column <= col::kCreated; ++column)
      line += (column == 1 ? "" : "|") + std::string(screen.Spread.text(column, row));
    return line;
  }
  bool save() { return CmdUpDate_Click(session, scripted.host, screen); }

  frmDivision screen;
  frmDiviInfo info;
  Windows windows;
};

TEST_F(FrmDivisionTest, ListsFollowTheFiltersAndKeepTheirParts) {
  EXPECT_EQ(screen.caption, "値リスト : システム名: [ 販売 ] ");
  EXPECT_EQ(names(), (Lines{"有無", "状態"}));
  EXPECT_EQ(screen.lstDivision.rows[1], "状態" + std::string(35, ' ') + "\t販売\t区分\t数値\tどこまで\t進んだか");
  const ValueListItem item = splitValueListRow(screen.lstDivision.rows[1]);
  EXPECT_EQ(item.type + "/" + item.memo, "数値/どこまで\t進んだか");
  EXPECT_EQ(splitValueListRow("名").name, "名");

  screen.ChkAllSystem.value = true;
  screen.CmbClass.text = "区分";
  CmdFind_Click(session, scripted.host, screen);
  EXPECT_EQ(names(), (Lines{"性別", "状態"}));
  screen.CmbKata.text = "文字";
  CmdFind_Click(session, scripted.host, screen);
  EXPECT_EQ(names(), Lines{"性別"});
}

TEST_F(FrmDivisionTest, AListShowsItsEntriesAndWhatMayBeDoneWithIt) {
  EXPECT_FALSE(screen.CmdUpDate.enabled);
  ASSERT_FALSE(choose("状態"));
  EXPECT_EQ(screen.lblAtai.caption + screen.lblClass.caption + screen.lblKata.caption, "状態区分数値");
  EXPECT_EQ(cells(1), "0|1|新規||maker|2020/01/02 03:04:05");
  EXPECT_EQ(cells(2).substr(0, 4), "-1|2");
  EXPECT_EQ(screen.Spread.kind(col::kValue, 1), CellKind::Integer);
  EXPECT_TRUE(screen.CmdUpDate.enabled);

  ASSERT_FALSE(choose("有無"));
  EXPECT_EQ(screen.Spread.maxRows(), 2);
  EXPECT_EQ(cells(1) + cells(2), "0|-1|Yes|||0|0|No|||");
  EXPECT_EQ(screen.Spread.kind(col::kPreset, 1), CellKind::Static);
  scripted.expect("ざんねん!!", "Yes/No型では、追加できません.");
  mnuSpreadAdd_Click(scripted.host, screen);
  scripted.expect("ざんねん!!", "Yes/No型では、初期化できません.");
  mnuSpreadClear_Click(scripted.host, screen);
  scripted.expect("ざんねん!!", "Yes/No型では、削除できません.");
  mnuSpreadDel_Click(scripted.host, screen);
  EXPECT_EQ(screen.Spread.maxRows(), 2);
  EXPECT_TRUE(save());
  EXPECT_TRUE(entries("有無").empty());

  screen.ChkAllSystem.value = true;
  CmdFind_Click(session, scripted.host, screen);
  ASSERT_FALSE(choose("性別"));
  EXPECT_EQ(cells(1).substr(0, 7), "0|m|男");
  const std::string refusal = "共通\nのシステムで定義されたものです.\nこのシステムで修正する権限がありません.";
  scripted.expect("確認", refusal);
  EXPECT_TRUE(save()) << "another System's list is read-only";
  scripted.expect("確認", refusal);
  mnuDelete_Click(session, scripted.host, screen);
  scripted.expect("確認", refusal);
  mnuEdit_Click(session, scripted.host, windows, screen, info);

  session.gCanEdit = false;
  frmDivision_Load(session, scripted.host, screen);
  ASSERT_FALSE(choose("状態"));
  EXPECT_TRUE(screen.picEdit.visible);
  EXPECT_FALSE(screen.CmdUpDate.enabled || screen.mnuEdit.enabled || screen.mnuSpreadAdd.enabled);
  EXPECT_EQ(screen.Spread.kind(col::kValue, 1), CellKind::Static);
}

TEST_F(FrmDivisionTest, EditingMarksRowsAndLetsOneEntryBeTheDefault) {
  ASSERT_FALSE(choose("状態"));
  EXPECT_FALSE(screen.picRen.visible);
  type(col::kPreset, 1, "-1");
  EXPECT_TRUE(screen.picRen.visible);
  EXPECT_EQ(cells(1).substr(0, 4) + "," + cells(2).substr(0, 3), "-1|1,0|2");
  EXPECT_EQ(screen.Spread.text(col::kChanged, 2), "変更") << "the row that lost the mark waits too";

  screen.block = {2, 1, 8, 1};
  scripted.expect("確認", "選択された範囲をクリアします.", kYes);
  mnuSpreadClear_Click(scripted.host, screen);
  EXPECT_EQ(cells(1), "-1|||変更|maker|2020/01/02 03:04:05") << "who made the row is not typed text";
  screen.block = {1, 2, 1, 2};
  mnuSpreadAdd_Click(scripted.host, screen);
  EXPECT_EQ(screen.Spread.text(col::kValue, 3), "2");
  screen.block = {1, 1, 1, 2};
  scripted.expect("削除確認", "行を削除しますか?", kNo);
  mnuSpreadDel_Click(scripted.host, screen);
  scripted.expect("削除確認", "行を削除しますか?", kYes);
  mnuSpreadDel_Click(scripted.host, screen);
  EXPECT_EQ(screen.Spread.text(col::kValue, 1), "2");

  scripted.expect("確認", "内容が変更されています.\n    状態\nの編集を続けますか?", kYes);
  EXPECT_TRUE(choose("有無"));
  EXPECT_EQ(splitValueListRow(screen.lstDivision.text()).name, "状態");
  scripted.expect("確認", "データが修正されていますが閉じますか?", kNo);
  EXPECT_TRUE(CmdClose_Click(scripted.host, screen));
  screen.CmbKata.text = "文字";
  CmdFind_Click(session, scripted.host, screen);
  EXPECT_EQ(screen.Spread.text(col::kValue, 1), "2") << "a search does not drop unsaved work";
  scripted.expect("確認", "データが修正されていますが閉じますか?", kYes);
  EXPECT_FALSE(CmdClose_Click(scripted.host, screen));
  EXPECT_TRUE(screen.unloaded);
}

TEST_F(FrmDivisionTest, EntriesAreCheckedInOrder) {
  ASSERT_FALSE(choose("状態"));
  const auto faulty = [&](const std::string& text) {
    scripted.expect("内容確認", text);
    EXPECT_TRUE(save()) << text;
  };
  type(col::kValue, 2, " ");
  faulty("少なくとも2件以上の\n有効なデータがありませんでした.");
  type(col::kValue, 2, "1");
  type(col::kValue, 4, "abc");
  faulty("値1  が重複しています.");
  for (const char* value : {"abc", "1000", "-1000", "1.5"}) {
    type(col::kValue, 2, "2");
    type(col::kValue, 4, value);
    faulty("※  型が数値のときは、-999≦値≦999の範囲となります.");
  }
  type(col::kValue, 4, "-999");
  scripted.expect("確認", "登録内容を更新します.", kNo);
  EXPECT_TRUE(save());
  EXPECT_EQ(entries("状態").size(), 2U);
}

TEST_F(FrmDivisionTest, ASaveWritesAllEntriesAnewAndRowsKeepTheirMakers) {
  ASSERT_FALSE(choose("状態"));
  type(col::kValue, 1, "");
  type(col::kValue, 5, "9");
  type(col::kOutline, 5, "取消");
  addEntry("共通", "状態", 1, "x", "別のシステム", "0");
  scripted.expect("確認", "登録内容を更新します.", kYes);
  scripted.expect("確認", "登録内容を更新しました.");
  EXPECT_FALSE(save());
  EXPECT_EQ(rows("SELECT 行番号, 値, 内容, 初期値, 作成者, 作成年月日, 更新者 FROM MAS_DIVISIONDETAILES "
                 "WHERE システム名 = '販売' ORDER BY 行番号"),
            (Lines{"1|2|完了|-1|maker|2020/01/02 03:04:05|admin", "2|9|取消|0|admin|2026/11/24 09:05:00|admin"}));
  EXPECT_EQ(cell("SELECT 値 FROM MAS_DIVISIONDETAILES WHERE システム名 = '共通' AND 値名称 = '状態'"), "x");
  EXPECT_FALSE(screen.picRen.visible);
  EXPECT_EQ(cells(2), "0|9|取消||admin|2026/11/24 09:05:00");
}

TEST_F(FrmDivisionTest, AFailedSaveLeavesTheFormerEntriesAndTheTypedOnes) {
  ASSERT_FALSE(choose("状態"));
  type(col::kOutline, 1, std::string(256, 'x'));
  scripted.answerAll(kYes);
  EXPECT_TRUE(save());
  EXPECT_EQ(scripted.messages.back().substr(0, scripted.messages.back().find('\n')), "こまった|更新に失敗しました.");
  EXPECT_EQ(entries("状態").size(), 2U);
  EXPECT_TRUE(screen.picRen.visible);
}

TEST_F(FrmDivisionTest, ADeletedListIsHiddenAndItsEntriesStay) {
  ASSERT_FALSE(choose("状態"));
  type(col::kOutline, 1, "x");
  scripted.expect("削除確認", "値リストを削除します.\n復活は、データベースを直接編集してください.", kYes);
  mnuDelete_Click(session, scripted.host, screen);
  EXPECT_EQ(names(), Lines{"有無"});
  EXPECT_EQ(screen.lblAtai.caption, "");
  EXPECT_EQ(cell("SELECT 削除フラグ FROM MAS_DIVISION WHERE 値名称 = '状態'"), "1");
  EXPECT_EQ(entries("状態").size(), 2U);
}

TEST_F(FrmDivisionTest, TheSheetHoldsWhatIsOnShow) {
  const auto refused = [&] { return pChkDivisionExcel(session, scripted.host, screen); };
  scripted.expect("確認", "出力する内容がありません.");
  EXPECT_TRUE(refused());
  ASSERT_FALSE(choose("状態"));
  scripted.expect("出力確認", "値リストをExcel出力しますか?", kNo);
  EXPECT_TRUE(refused());
  scripted.expect("出力確認", "値リストをExcel出力しますか?", kYes);
  EXPECT_FALSE(refused());

  const ValueListSheet sheet = valueListSheet(screen, "販売");
  ASSERT_EQ(sheet.heading.size(), 5U);
  EXPECT_EQ(sheet.heading[1], (std::array<std::string, 2>{"値リスト名:", "状態"}));
  EXPECT_EQ(sheet.heading[4], (std::array<std::string, 2>{"値の説明:", "どこまで\t進んだか"}));
  EXPECT_EQ(sheet.titles, (Lines{"初期値", "値", "概要", "作成者", "作成日", "更新者", "更新日"}));
  ASSERT_EQ(sheet.rows.size(), 2U);
  EXPECT_EQ(sheet.rows[1], (Lines{"○", "2", "完了", "maker", "2020/01/02 03:04:05", "", ""}));
}

TEST_F(FrmDivisionTest, ARecordIsCheckedInOrder) {
  mnuAdd_Click(session, windows, info);
  const auto faulty = [&](const std::string& text, const std::string& control) {
    scripted.expect("入力確認", text);
    EXPECT_TRUE(cmdOK_Click(session, scripted.host, info)) << text;
    EXPECT_EQ(info.focus, control);
  };
  faulty("値名称が未設定です.", "TxtDivName");
  info.TxtDivName.text = "a[1]";
  faulty("Quillmardenでは使用できない文字が設定されています.", "TxtDivName");
  info.TxtDivName.text = "性別";
  faulty("種別が未設定です.", "CmbClass");
  info.CmbClass.text = "区分";
  faulty("型が未設定です.", "CmbKata");
  info.CmbKata.text = "文字";
  faulty("値の説明が未設定です.\n種別が区分のときは、\n値の説明が必要です.", "Txtbiko");
  info.CmbClass.text = "フラグ";
  faulty("共通でこの値名称は使用されています.", "TxtDivName");
  database().execute("UPDATE MAS_DIVISION SET 削除フラグ = 1 WHERE 値名称 = '有無'");
  info.TxtDivName.text = "有無";
  faulty("この値名称は削除されています.\n復活は、データベースを直接編集してください.", "TxtDivName");
  info.TxtDivName.text = std::string(300, 'x');
  scripted.answerAll(kOk);
  EXPECT_TRUE(cmdOK_Click(session, scripted.host, info));
  EXPECT_EQ(cell("SELECT Count(*) AS n FROM MAS_DIVISION"), "4");
}

TEST_F(FrmDivisionTest, ANewRecordIsAddedAndShown) {
  mnuAdd_Click(session, windows, info);
  EXPECT_FALSE(cmdCancel_Click(scripted.host, info)) << "nothing was typed";
  info.TxtDivName.text = " 新しい ";
  info.CmbClass.text = "区分";
  info.CmbKata.text = "文字";
  info.Txtbiko.text = "説明";
  scripted.expect("確認", "データが修正されていますが閉じますか?", kNo);
  EXPECT_TRUE(cmdCancel_Click(scripted.host, info));
  EXPECT_FALSE(cmdOK_Click(session, scripted.host, info));
  EXPECT_EQ(cell("SELECT システム名, 種別, 型, 内容, 全システム共通, 削除フラグ, 作成者, 更新年月日 FROM MAS_DIVISION "
                 "WHERE 値名称 = '新しい'"),
            "販売|区分|文字|説明|0|0|admin|2026/11/24 09:05:00");
  frmDiviInfo_Unload(session, scripted.host, screen, info);
  EXPECT_EQ(screen.lblAtai.caption, "新しい");
  EXPECT_TRUE(screen.CmdUpDate.enabled);
}

TEST_F(FrmDivisionTest, ANameThatIsUsedCannotBeChanged) {
  std::string opened;
  windows.show = [&](std::string_view name) { opened = name; };
  const auto rename = [&](const std::string& from, const std::string& to) {
    ASSERT_FALSE(choose(from));
    mnuEdit_Click(session, scripted.host, windows, screen, info);
    EXPECT_EQ(info.lblOld.caption, from);
    info.TxtDivName.text = to;
  };
  const std::string refusal =
      "値名称がシステム内で使用さています.\n値名称の一括変更後、\n再度更新処理が必要となります.";
  rename("状態", "進み");
  EXPECT_EQ(opened, "frmDiviInfo");
  scripted.expect("入力確認", refusal);
  EXPECT_TRUE(cmdOK_Click(session, scripted.host, info));

  const std::string table = addTable("販売", "PostgreSQL", "T", "表");
  database().execute("INSERT INTO MAS_TABLEDETAILES (ID, ROWNO, 項目参照先) VALUES (" + table + ", 1, '有無')");
  rename("有無", "ありなし");
  scripted.expect("入力確認", refusal);
  EXPECT_TRUE(cmdOK_Click(session, scripted.host, info));
  database().execute("DELETE * FROM MAS_TABLEDETAILES");
  EXPECT_FALSE(cmdOK_Click(session, scripted.host, info));
  EXPECT_EQ(rows("SELECT 値名称, 型 FROM MAS_DIVISION WHERE システム名 = '販売' ORDER BY 値名称"),
            (Lines{"ありなし|Yes/No", "状態|数値"}));
  frmDiviInfo_Unload(session, scripted.host, screen, info);
  EXPECT_EQ(screen.lblAtai.caption, "ありなし");
}

TEST_F(FrmDivisionTest, AQuoteInANameReachesNoOtherList) {
  const Lines lists = rows("SELECT * FROM MAS_DIVISION");
  const Lines entriesBefore = rows("SELECT * FROM MAS_DIVISIONDETAILES");
  scripted.answerAll(kYes);
  for (const std::string name : {"it's", "x' OR '1'='1"}) {
    mnuAdd_Click(session, windows, info);
    info.TxtDivName.text = name;
    info.CmbClass.text = "フラグ";
    info.CmbKata.text = "文字";
    ASSERT_FALSE(cmdOK_Click(session, scripted.host, info));
    frmDiviInfo_Unload(session, scripted.host, screen, info);
    ASSERT_EQ(screen.lblAtai.caption, name);
    type(col::kValue, 1, "a");
    type(col::kValue, 2, "b'");
    EXPECT_FALSE(save());
    EXPECT_EQ(rows("SELECT 値 FROM MAS_DIVISIONDETAILES WHERE 作成者 = 'admin' ORDER BY 行番号"), (Lines{"a", "b'"}));
    database().execute("DELETE * FROM MAS_DIVISIONDETAILES WHERE 作成者 = 'admin'");
    mnuEdit_Click(session, scripted.host, windows, screen, info);
    info.TxtDivName.text = name + "2";
    EXPECT_FALSE(cmdOK_Click(session, scripted.host, info));
    frmDiviInfo_Unload(session, scripted.host, screen, info);
    mnuDelete_Click(session, scripted.host, screen);
    EXPECT_EQ(rows("SELECT 値名称 FROM MAS_DIVISION WHERE 削除フラグ = 1"), (Lines{name + "2"}));
    database().execute("DELETE * FROM MAS_DIVISION WHERE 削除フラグ = 1");
  }
  EXPECT_EQ(rows("SELECT * FROM MAS_DIVISION"), lists);
  EXPECT_EQ(rows("SELECT * FROM MAS_DIVISIONDETAILES"), entriesBefore);
  frmDiviRef ref;
  frmDiviRef_Load(ref, "区分");
  ref.CmbWhere.text = "を含む";
  ref.TxtWhere.text = "x') OR ('1'='1";
  EXPECT_FALSE(CmdFind_Click(session, scripted.host, ref));
  EXPECT_TRUE(ref.lstDivName.rows.empty());
}

TEST_F(FrmDivisionTest, TheFieldGridChoosesByKindAndName) {
  frmDiviRef ref;
  frmDiviRef_Load(ref, "区分");
  const auto find = [&] {
    scripted.expect("確認", "検索を開始します.", kYes);
    EXPECT_FALSE(CmdFind_Click(session, scripted.host, ref));
    return ref.lstDivName.rows;
  };
  EXPECT_EQ(find(), Lines{"状態"});
  ref.ChkAllSystem.value = true;
  EXPECT_EQ(find().size(), 2U);
  ref.TxtWhere.text = "別";
  EXPECT_EQ(find().size(), 2U) << "a text without a condition does not filter";
  ref.CmbWhere.text = "から始まる";
  EXPECT_TRUE(find().empty());
  ref.CmbWhere.text = "を含む";
  EXPECT_EQ(find(), Lines{"性別"});

  scripted.expect("確認?", "内容が選択されていません.\n再度選択しますか?", kYes);
  EXPECT_TRUE(cmdOK_Click(scripted.host, ref));
  ref.lstDivName.listIndex = 0;
  EXPECT_FALSE(cmdOK_Click(scripted.host, ref));
  EXPECT_TRUE(ref.unloaded);
  EXPECT_EQ(ref.chosen, "性別");

  session.settings.findMsgOff = true;
  ref.TxtWhere.text.clear();
  EXPECT_FALSE(CmdFind_Click(session, scripted.host, ref));
  EXPECT_EQ(ref.lstDivName.count(), 2);
  frmDiviRef_Load(ref, "フラグ");
  scripted.expect("確認?", "内容が選択されていません.\n再度選択しますか?", kNo);
  EXPECT_FALSE(cmdOK_Click(scripted.host, ref));
  EXPECT_EQ(ref.chosen, "");
}

}  // namespace
}  // namespace quillmarden
