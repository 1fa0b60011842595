#include "operations/rows.h"

#include "support/open_repository.h"

namespace quillmarden {
namespace {

using Lines = std::vector<std::string>;

class RowsTest : public OpenRepositoryTest {
 protected:
  void SetUp() override {
    OpenRepositoryTest::SetUp();
    addSystem("販売", "PostgreSQL");
    addDefinition("販売", "顧客数", "0", "0");
    addDefinition("人事", "社員数", "-1", "0");
    addDefinition("人事", "部署数", "0", "0");
    addDefinition("販売", "旧", "0", "1");
    for (const char* name : {"顧客", "商品"}) addTable("販売", "PostgreSQL", "T", name);
    addTable("販売", "PostgreSQL", "U", "受注");
    database().execute("UPDATE MAS_TABLEINFO SET 分類 = 'マスタ' WHERE テーブル名 = 'T'");
    ASSERT_TRUE(selectSystem(session, scripted.host, "販売"));
    frmKENSU_Load(session, scripted.host, screen);
  }

  void addDefinition(const std::string& system, const std::string& name, const std::string& shared,
                     const std::string& deleted) {
    database().execute(
        "INSERT INTO MAS_KENSU (システム名, 定義名, 概要, 件数, テーブル1, 全システム共通, 削除フラグ) "
        "VALUES ('" +
        system + "', '" + name + "', '" + name + "の概要', 500, '顧客', " + shared + ", " + deleted + ")");
  }
  Lines names() const {
    Lines all;
    for (const std::string& row : screen.LstTeigi.rows) all.push_back(row.substr(0, row.find(' ')));
    return all;
  }
  bool choose(int row) {
    screen.LstTeigi.listIndex = row;
    return LstTeigi_Click(session, scripted.host, screen);
  }
  bool save() { return CmdUpDate_Click(session, scripted.host, screen); }
  Lines definitions() {
    return rows(
        "SELECT システム名, 定義名, 概要, 件数, テーブル1, テーブル2, 全システム共通, 更新者 FROM MAS_KENSU "
        "WHERE 更新者 = 'admin' ORDER BY ID");
  }

  frmKENSU screen;
};

TEST_F(RowsTest, OwnAndCommonDefinitionsAreListedAndShown) {
  EXPECT_EQ(screen.caption, "件数定義情報 : システム名: [ 販売 ] ");
  EXPECT_EQ(names(), (Lines{"顧客数", "社員数"}));
  EXPECT_EQ(screen.LstTeigi.rows[1], "社員数" + std::string(51, ' ') + "2");
  EXPECT_EQ(kenSuRowId(kenSuRow("名" + std::string(60, ' ') + "前", "7")), "7");
  ASSERT_FALSE(choose(0));
  EXPECT_EQ(screen.TxtName.text + screen.Txtbiko.text + screen.TxtSu.text + screen.TxtTb1.text + screen.TxtTb2.text,
            "顧客数顧客数の概要500顧客");
  EXPECT_EQ(screen.lblID.caption, "1");
  ASSERT_FALSE(choose(1));
  EXPECT_EQ(screen.lblEditSystem.caption, "人事");
  EXPECT_TRUE(screen.ChkAllSystem.value);
}

TEST_F(RowsTest, TablesAreTakenFromTheMasters) {
  CmdRef_Click(screen);
  EXPECT_TRUE(screen.lstTbVisible);
  ASSERT_EQ(screen.lstTb.rows, (Lines{"顧客", "商品"}));
  ASSERT_FALSE(choose(0));
  lstTb_DblClick(screen);
  screen.lstTb.listIndex = 1;
  lstTb_DblClick(screen);
  EXPECT_EQ(screen.TxtTb1.text + "," + screen.TxtTb2.text, "顧客,商品") << "the first blank box takes it";
  screen.activeTb = 1;
  lstTb_DblClick(screen);
  EXPECT_EQ(screen.TxtTb1.text, "商品");
}

TEST_F(RowsTest, ChecksComeInOrderBeforeTheQuestion) {
  scripted.expect("確認", "変更はありません.");
  EXPECT_TRUE(save());
  const auto faulty = [&](const std::string& text) {
    scripted.expect("確認", text);
    EXPECT_TRUE(save()) << text;
  };
  screen.ChkAllSystem.value = true;
  faulty("定義名が未設定です.");
  screen.TxtName.text = "新";
  faulty("概要が未設定です.");
  screen.Txtbiko.text = "概要";
  faulty("件数が未設定です.");
  screen.TxtSu.text = "0";
  faulty("件数が未設定です.");
  screen.TxtSu.text = "1";
  scripted.expect("確認", "更新します.", kNo);
  EXPECT_TRUE(save());

  scripted.expect("確認", "内容が変更されています.\n    新\nの編集を続けますか?", kNo);
  ASSERT_FALSE(choose(1));
  screen.TxtSu.text = "9";
  faulty("人事\nのシステムで定義されたものです.\nこのシステムで修正する権限がありません.");
  EXPECT_TRUE(definitions().empty());
}

TEST_F(RowsTest, TheNameIsTheKey) {
  ASSERT_FALSE(choose(0));
  screen.TxtSu.text = "1200";
  screen.TxtTb2.text = "商品";
  scripted.expect("確認", "更新します.", kYes);
  EXPECT_FALSE(save());
  EXPECT_EQ(definitions(), Lines{"販売|顧客数|顧客数の概要|1200|顧客|商品|0|admin"});

  screen.TxtName.text = "別の名";
  screen.ChkAllSystem.value = true;
  scripted.expect("確認", "更新します.", kYes);
  EXPECT_FALSE(save());
  EXPECT_EQ(definitions().size(), 2U) << "another name is another definition";
  EXPECT_EQ(names(), (Lines{"顧客数", "社員数", "別の名"}));
  EXPECT_EQ(screen.LstTeigi.listIndex, 2);
  scripted.expect("確認", "変更はありません.");
  EXPECT_TRUE(save());
  EXPECT_EQ(cell("SELECT 作成年月日, 削除フラグ FROM MAS_KENSU WHERE 定義名 = '別の名'"), "2026/11/24 09:05:00|0");
}

TEST_F(RowsTest, AFaultIsToldAndNothingIsLost) {
  ASSERT_FALSE(choose(0));
  screen.TxtSu.text = "99999999999";
  scripted.answerAll(kYes);
  EXPECT_TRUE(save());
  EXPECT_EQ(scripted.messages.back().find("こまった|更新エラー\n "), 0U) << scripted.messages.back();
  EXPECT_EQ(cell("SELECT 件数 FROM MAS_KENSU WHERE 定義名 = '顧客数'"), "500");
  EXPECT_EQ(screen.TxtSu.text, "99999999999");
}

TEST_F(RowsTest, UnsavedChangesAreAskedFor) {
  ASSERT_FALSE(choose(0));
  screen.TxtSu.text = "1";
  scripted.expect("確認", "内容が変更されています.\n変更内容を取り消し新規作成します.", kNo);
  CmdAddNew_Click(session, scripted.host, screen);
  EXPECT_EQ(screen.TxtName.text, "顧客数");
  scripted.expect("確認", "画面を閉じます.", kNo);
  EXPECT_TRUE(CmdClose_Click(scripted.host, screen));
  scripted.expect("確認", "内容が変更されています.\n変更内容を取り消し新規作成します.", kYes);
  CmdClear_Click(session, scripted.host, screen);
  EXPECT_EQ(screen.TxtName.text + screen.lblID.caption, "");
  EXPECT_EQ(screen.lblEditSystem.caption, "販売");
  EXPECT_FALSE(CmdClose_Click(scripted.host, screen));
}

}  // namespace
}  // namespace quillmarden
