#include "common/text.h"
#include "editing/detail_parts.h"
#include "editing/frm_tb_detail_edit.h"
#include "editing/grid_operations.h"
#include "editing_fixture.h"

namespace quillmarden {
namespace {

class GridClipboardTest : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    database().execute(
        "INSERT INTO MAS_DOMAIN (システム名, 日本語名, 項目名, 型, 整数桁数, 削除フラグ) VALUES ('販売', '語', 'word', "
        "'text', 4, 0)");
    id = addTable("販売", "PostgreSQL", "T", "表");
    addField(id, 1, "日本語名, 項目名, [KEY], 型, 整数桁数, 備考, DomainID",
             "'番号', 'A', -1, 'varchar', 5, '一' & Chr(10) & '二', 0");
    addField(id, 2, "日本語名, 項目名, 型, DomainID", "'名前', 'B', 'text', 1");
    ASSERT_FALSE(load(id));
  }

  void copy(const GridSelection& selection) { mnuCopy_Click(session, scripted.host, detail, selection, history); }
  void paste(int column, int row, const GridSelection& selection = {}) {
    activeCellChanged(session, scripted.host, detail, column, row);
    mnuPaste_Click(session, scripted.host, detail, selection, history);
  }
  static GridSelection rowsOf(int first, int last) { return {{1, first, col::kCount, last, true}}; }

  CopyHistory history;
  std::string id;
};

TEST_F(GridClipboardTest, ABlockTravelsAsASpreadsheetsText) {
  copy({{8, 1, 12, 2, false}});
  EXPECT_EQ(scripted.clipboard, "\t\t\t一二\r\n\t\t\t") << "hidden columns are no cells, and line ends no text";
  EXPECT_TRUE(history.entries.empty());
  copy({});
  EXPECT_EQ(scripted.clipboard, "番号") << "the active cell";

  scripted.clipboard = "\"品 \"\"名\"\"\nの\"\tname\t1\tvarchar\t20\n数量\tqty\t0\tinteger\t\r\n";
  paste(1, 3);
  EXPECT_EQ(cells(3, {1, 2, 3, 4, 5, 7, 20, 24}), "品 \"名\"の|name|-1|varchar|20|20|変更|003");
  EXPECT_EQ(cells(4, {1, 2, 3, 4, 5, 20}), "数量|qty||integer||変更");
  EXPECT_EQ(scripted.waitTexts, (Lines{"検索中です....", "", "Copy...", ""}));
  mnuUndo_Click(session, scripted.host, detail);
  EXPECT_EQ(detail.Spread.maxRows(), 2) << "a paste is one step";

  scripted.clipboard = "NOT NULL\tコード\t\tr";
  paste(8, 1);
  EXPECT_EQ(cells(1, {8, 9, 10, 12}), "NOT NULL||コード|r") << "a hidden column takes nothing";
  scripted.clipboard = "a\tb\tc\td";
  paste(26, 1);
  EXPECT_EQ(cells(1, {26}), "") << "what passes the last column is dropped";
  scripted.clipboard = " ";
  paste(1, 1);
  EXPECT_EQ(cells(1, {1}), "番号");
}

TEST_F(GridClipboardTest, WhatACellDoesNotTakeIsTold) {
  scripted.clipboard = "小数\tx\t\tdate\tabc\r\n別\ty\t\tdayt";
  scripted.expect("確認", "貼り付けできない内容がありました.\n[003] 整数桁数 : abc\n[004] 型 : dayt");
  paste(1, 3);
  EXPECT_EQ(cells(3, {1, 4, 5}), "小数|date|");
  scripted.clipboard.clear();
  for (int i = 0; i < 12; ++i) scripted.clipboard += "x\n";
  scripted.expect("確認",
                  "貼り付けできない内容がありました.\n[001] 整数桁数 : x\n[003] 整数桁数 : x\n[004] 整数桁数 : x\n"
                  "[005] 整数桁数 : x\n[006] 整数桁数 : x\n[007] 整数桁数 : x\n[008] 整数桁数 : x\n[009] 整数桁数 : x\n"
                  "[010] 整数桁数 : x\n[011] 整数桁数 : x\n他 1件");
  paste(5, 1);  // the second row's domain owns the cell: what comes for it passes by
}

TEST_F(GridClipboardTest, ALongTextIsToldWithItsLimitAndAFillWithWhatItCannot) {
  scripted.clipboard = std::string(51, 'x');
  scripted.expect("確認",
                  "貼り付けできない内容がありました.\n[003] 項目名 (物理)が長すぎます. 50バイト(全角25文字)までです.");
  paste(2, 3);
  detail.Spread.setText(col::kChanged, 1, "");
  scripted.expect("確認", "貼り付けできない内容がありました.\n[003] 整数桁数 : x");
  putBlock(session, scripted.host, detail, 1, 1, {{"番号"}, {"塗り"}, {"塗り", "c", "", "", "x"}});
  EXPECT_EQ(cells(2, {1, 20}) + cells(3, {1, 2, 5}), "塗り|変更塗り|c|");
  EXPECT_EQ(cells(1, {20}), "") << "what a fill leaves as it is waits for no save";
}

TEST_F(GridClipboardTest, CopiesOfProgramsAreWhole) {
  ASSERT_FALSE(load(addTable("販売", "PG管理", "P", "一覧")));
  put(1, {{1, "7"}, {4, "COBOL"}, {5, "2026/04/01"}, {19, "伊藤"}, {23, "仕様.docx"}});
  copy(rowsOf(1, 1));
  paste(1, 2);
  EXPECT_EQ(cells(2, {1, 4, 5, 19, 23}), "7|COBOL|2026/04/01|伊藤|仕様.docx");
}

TEST_F(GridClipboardTest, RowsBelowTheLastOneAreTheOptionsMatter) {
  session.settings.spreadCopy2AddRow = false;
  scripted.clipboard = "一\n二\n三";
  scripted.expect("確認", "最終行を超える2行は貼り付けていません.");
  paste(1, 2);
  EXPECT_EQ(cells(2, {1}), "一");
  EXPECT_EQ(detail.Spread.maxRows(), 2);
}

TEST_F(GridClipboardTest, OneCellFillsTheSelection) {
  scripted.clipboard = "コード\r\n";
  paste(10, 1, {{10, 1, 10, 1, false}, {1, 2, 2, 2, false}});
  EXPECT_EQ(cells(1, {10}) + " " + cells(2, {1, 2}), "コード コード|コード");
}

TEST_F(GridClipboardTest, CopiedRowsKeepTheirLinkAndTheOptionsChooseTheColumns) {
  copy(rowsOf(1, 2));
  ASSERT_EQ(history.entries.size(), 1U);
  EXPECT_EQ(history.entries[0].caption, "表 : 番号 (2)");
  EXPECT_EQ(scripted.clipboard,
            "番号\tA\t-1\tvarchar\t5\t\t\t\t\t\t一二\t\t\t0\t\t\t\r\n名前\tB\t\ttext\t\t\t\t\t\t\t\t\t語\t1\t\t\t");
  scripted.clipboard = gReplaceAll(scripted.clipboard, "\r", "") + "\n";  // as another program hands it on
  paste(3, 3);
  EXPECT_EQ(cells(3, {1, 3, 12, 20}), "番号|-1|一\n二|変更") << "rows go in from their first column";
  EXPECT_EQ(cells(4, {1, 14, 15}), "名前|語|1");
  EXPECT_EQ(detail.Spread.kind(col::kType, 4), CellKind::Static);
  EXPECT_EQ(detail.Spread.rowTag(3), 0);

  session.settings.spreadCopy[0] = session.settings.spreadCopy[14] = session.settings.spreadCopy[13] = false;
  copy(rowsOf(1, 1));
  paste(1, 2);
  EXPECT_EQ(cells(2, {1, 2, 14, 15}), "名前|A|語|1") << "columns that are switched off stay as they were";
  EXPECT_EQ(detail.Spread.rowTag(2), 2) << "the row is still that field";
  mnuPasteHistory_Click(session, scripted.host, detail, history, 1);
  EXPECT_EQ(cells(2, {2}) + cells(3, {2}), "AB");
  for (int i = 0; i < 30; ++i) {
    detail.Spread.setText(1, 1, std::to_string(i));
    session.settings.spreadCopy[0] = true;
    copy(rowsOf(1, 1));
    copy(rowsOf(1, 1));
  }
  EXPECT_EQ(history.entries.size(), CopyHistory::kMaxEntries);
  EXPECT_EQ(history.entries[1].caption, "表 : 28 (1)") << "the same rows are noted once";
}

TEST_F(GridClipboardTest, WordsOfTheDictionaryBecomeLinkedFields) {
  scripted.clipboard =
      "CopyClipBord2DomainText\r\n語\tword\t\ttext\t4\t\t\t\t\t\t\t備\t0001\r\n新語\tnew\t\tvarchar\t9\t\t\t\t\tコード"
      "\t\t\t";
  paste(5, 3);
  EXPECT_EQ(cells(3, {1, 2, 4, 5, 12, 14, 15, 20}), "語|word|text|4|備|語|1|変更");
  EXPECT_EQ(cells(4, {1, 2, 4, 5, 10, 14, 15}), "新語|new|varchar|9|コード||");
  scripted.clipboard = "0001";
  paste(col::kDomainId, 1);
  EXPECT_EQ(cells(1, {4, 14, 15}), "text|語|1") << "a domain's number alone links the row";
  scripted.clipboard = "77";
  scripted.expect("確認", "貼り付けできない内容がありました.\n[001] DomainID : 77");
  paste(col::kDomainId, 1);
}

TEST_F(GridClipboardTest, TheGridsKeysDoTheSame) {
  const auto press = [&](std::string_view key, int shift) {
    return Spread_KeyDown(session, scripted.host, detail, {{2, 1, 2, 1, false}}, history, key, shift);
  };
  EXPECT_TRUE(press("c", 6));
  EXPECT_EQ(scripted.clipboard, "A");
  EXPECT_TRUE(press("Delete", 0));
  EXPECT_EQ(cells(1, {2, 20}), "|変更");
  EXPECT_TRUE(press("Z", 6));
  EXPECT_EQ(cells(1, {2, 20}), "A|");
  EXPECT_FALSE(press("c", 0) || press("q", 6) || press("v", 3) || press("Delete", 6));
}

}  // namespace
}  // namespace quillmarden
