#include "operations/memo.h"

#include "support/open_repository.h"

namespace quillmarden {
namespace {

namespace col = memo_col;
using Lines = std::vector<std::string>;

class MemoTest : public OpenRepositoryTest {
 protected:
  void SetUp() override {
    OpenRepositoryTest::SetUp();
    addLine("5", 2, "'※'", "'二行目'");
    addLine("5", 1, "'注'", "'一行目'");
    addLine("5", 3, "Null", "'他の道具が書いた行'");
    addLine("5", 4, "' '", "Null");
    addLine("6", 1, "'別'", "'別の表'");
    ASSERT_FALSE(load(true));
    database().execute("INSERT INTO MAS_SYSTEM (システム名, 修正許可, ユーザー制限) VALUES ('販売', -1, 0)");
    database().execute("INSERT INTO MAS_TABLEINFO (ID, システム名, テーブル名, 削除フラグ) VALUES (5, '販売', 'T', 0)");
    session.gCurrentSystemName = "販売";
  }

  void addLine(const std::string& id, int number, const std::string& symbol, const std::string& text) {
    database().execute("INSERT INTO MAS_TABLEBIKO (ID, NUM, 日本語名, 備考, ファイル名) VALUES (" + id + ", " +
                       std::to_string(number) + ", " + symbol + ", " + text + ", '2020/01/02 03:04:05')");
  }
  bool load(bool editable) { return gGetMasTableMemo(session, scripted.host, screen, "5", "販売", editable); }
  void type(int column, int row, std::string_view text) {
    screen.Spread.setText(column, row, text);
    Spread_Change(screen, column, row);
  }
  bool save() { return CmdUpDate_Click(session, scripted.host, screen); }
  Lines stored() { return rows("SELECT NUM, 日本語名, 備考, ファイル名 FROM MAS_TABLEBIKO WHERE ID = 5 ORDER BY NUM"); }

  frmMemo screen;
};

TEST_F(MemoTest, LinesComeInOrderAndThoseWithoutTextDoNot) {
  EXPECT_EQ(screen.caption, "付帯メモ");
  EXPECT_EQ(screen.Spread.text(col::kText, 1), "一行目");
  EXPECT_EQ(screen.Spread.text(col::kCreated, 2), "2020/01/02 03:04:05");
  const std::vector<MemoLine> lines = readTableMemo(database(), "5");
  ASSERT_EQ(lines.size(), 3U);
  EXPECT_EQ(lines[1].symbol + lines[1].text, "※二行目");
  EXPECT_EQ(lines[2].symbol, " ") << "a line with a text alone is printed too";
}

TEST_F(MemoTest, ASaveWritesTheLinesAnew) {
  EXPECT_FALSE(screen.lblEdit.visible);
  type(col::kText, 2, "");
  type(col::kSymbol, 2, " ");
  type(col::kText, 5, "新しい行");
  EXPECT_TRUE(screen.lblEdit.visible);
  EXPECT_FALSE(save());
  EXPECT_EQ(stored(), (Lines{"1|注|一行目|2020/01/02 03:04:05", "3| |他の道具が書いた行|2020/01/02 03:04:05",
                             "5| |新しい行|2026/11/24 09:05:00"}));
  EXPECT_EQ(cell("SELECT システム名, 作成年月日, 更新年月日, make_server FROM MAS_TABLEBIKO WHERE ID = 5 AND NUM = 1"),
            "販売|2020/01/02 03:04:05|2026/11/24 09:05:00|False");
  EXPECT_EQ(cell("SELECT 備考 FROM MAS_TABLEBIKO WHERE ID = 6"), "別の表");
  EXPECT_FALSE(screen.lblEdit.visible);
  scripted.now = {2027, 1, 1, 0, 0, 0};
  EXPECT_FALSE(save());
  EXPECT_EQ(stored().back(), "5| |新しい行|2026/11/24 09:05:00") << "a line keeps its day";
}

TEST_F(MemoTest, AnEmptiedGridEmptiesTheMemo) {
  screen.block = {1, 1, 3, 100};
  scripted.expect("確認", "選択された範囲をクリアします.", kNo);
  mnuClear_Click(scripted.host, screen);
  EXPECT_FALSE(screen.changed);
  scripted.expect("確認", "選択された範囲をクリアします.", kYes);
  mnuClear_Click(scripted.host, screen);
  scripted.expect("確認", "画面を閉じます.", kNo);
  EXPECT_TRUE(CmdClose_Click(scripted.host, screen));
  EXPECT_FALSE(save());
  EXPECT_TRUE(stored().empty());
  EXPECT_FALSE(CmdClose_Click(scripted.host, screen));
}

TEST_F(MemoTest, FaultsLeaveTheFormerMemo) {
  const Lines before = stored();
  type(col::kText, 1, "x");
  type(col::kSymbol, 2, std::string(256, 'x'));
  scripted.answerAll(kOk);
  EXPECT_TRUE(save());
  EXPECT_EQ(scripted.messages.back().find("確認|付帯メモ更新に失敗しました.\n "), 0U);
  EXPECT_EQ(stored(), before);
  EXPECT_TRUE(screen.changed);

  ASSERT_FALSE(load(false));
  EXPECT_EQ(screen.Spread.kind(col::kText, 1), CellKind::Static);
  EXPECT_TRUE(save()) << "a table that may not be changed";

  database().execute("DROP TABLE MAS_TABLEBIKO");
  EXPECT_TRUE(load(true));
  EXPECT_EQ(scripted.messages.back().find("確認|付帯メモ読込みに失敗しました.\n "), 0U);
  EXPECT_FALSE(screen.CmdUpDate.enabled);
}

}  // namespace
}  // namespace quillmarden
