#include "editing/frm_tb_detail_edit.h"
#include "editing/grid_backup.h"
#include "editing_fixture.h"

namespace quillmarden {
namespace {

/// Two people with one table open: `detail` is the one who saves later. The table has the fields A to D, an index over
/// each, a referring field of another table for each, and D refers to B.
class SaveConflictTest : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    scripted.host.dialogs.choose = [this](std::string_view text, std::string_view details, const Lines& ways,
                                          std::string_view) {
      asked = std::string(text);
      shown = std::string(details);
      EXPECT_EQ(ways.size(), 2U);
      return way;
    };
    id = addTable("販売", "PostgreSQL", "T", "表");
    other = addTable("販売", "PostgreSQL", "U", "別");
    for (int number = 1; number <= 4; ++number) {
      const std::string name(1, static_cast<char>('A' + number - 1));
      addField(
          id, number, "項目名, 日本語名, 型, 整数桁数, 長さ, Null値, DB_DATA_TYPE, 作成者, 作成年月日",
          "'" + name + "', '項" + name + "', 'varchar', 5, 5, 'NULL', 'db" + name + "', 'ito', #2026/01/02 03:04:05#");
      database().execute("INSERT INTO MAS_INDEX (INDEX_NAME, ID, ROWNO, 順序) VALUES ('IX_" + name + "', " + id + ", " +
                         std::to_string(number) + ", 1)");
      addField(other, number, "項目名, 外部参照, 外部参照TABLEID, 外部参照ROWNO",
               "'R_" + name + "', '表', " + id + ", " + std::to_string(number));
    }
    database().execute("UPDATE MAS_TABLEDETAILES SET 外部参照 = '表:項B', 外部参照TABLEID = " + id +
                       ", 外部参照ROWNO = 2 WHERE ID = " + id + " AND ROWNO = 4");
    ASSERT_FALSE(load(id));
    scripted.now.hour = 10;
  }

  /// The other person's work on the table as it is stored now.
  template <typename Work>
  void saveByOther(Work&& work) {
    session.gLoginUser = "suzuki";
    frmTBDetail theirs;
    ASSERT_FALSE(pGet_TableID2TableDetails(session, scripted.host, theirs, id));
    work(theirs.Spread);
    ASSERT_FALSE(pPutTableDetails(session, scripted.host, theirs));
    session.gLoginUser = "admin";
  }
  void deletionByOther(int row) {
    saveByOther([&](Spread& grid) { grid.deleteRow(row); });
  }

  bool save() { return pPutTableDetails(session, scripted.host, detail); }

  /// Each field of the table with what points at it and what it brings along: "A: IX_A R_A dbA".
  Lines pointed() {
    Lines lines;
    for (const std::string& row : fields(id, "ROWNO, 項目名, DB_DATA_TYPE")) {
      const std::string number = row.substr(0, row.find('|'));
      std::string line = row.substr(row.find('|') + 1);
      line.replace(line.find('|'), 1, ":");
      for (const std::string& index :
           rows("SELECT INDEX_NAME FROM MAS_INDEX WHERE ID = " + id + " AND ROWNO = " + number))
        line += " " + index;
      for (const std::string& field : rows("SELECT 項目名 FROM MAS_TABLEDETAILES WHERE 外部参照TABLEID = " + id +
                                           " AND 外部参照ROWNO = " + number + " ORDER BY ID, ROWNO"))
        line += " " + field;
      lines.push_back(line);
    }
    return lines;
  }

  std::string id;
  std::string other;
  std::string asked;
  std::string shown;
  int way = -1;
};

TEST_F(SaveConflictTest, WithoutAnotherSaveNothingIsAsked) {
  detail.Spread.deleteRow(1);
  ASSERT_FALSE(save());
  EXPECT_EQ(asked, "");
  EXPECT_EQ(pointed(), (Lines{"B:dbB IX_B D R_B", "C:dbC IX_C R_C", "D:dbD IX_D R_D"}));
}

TEST_F(SaveConflictTest, ThePersonIsToldAndMayGoOnEditing) {
  saveByOther([](Spread& grid) {
    grid.setText(col::kType, 3, "bigint");
    grid.deleteRow(1);
    grid.setText(col::kFieldName, 4, "E");
  });
  const Lines stored = pointed();
  put(2, {{col::kRemark, "mine"}});
  detail.changed = true;
  EXPECT_TRUE(save());
  EXPECT_EQ(asked,
            "読み込みの後に、このテーブルは他で更新されています.\n 更新者 : suzuki\n 更新年月日 : 2026/11/24 10:05:00");
  EXPECT_EQ(shown, "- A 項A\n* C 項C : 型 [varchar] → [bigint], 長さ [5] → [1]\n+ E");
  EXPECT_EQ(pointed(), stored);
  EXPECT_EQ(detail.Spread.text(col::kRemark, 2), "mine");
  EXPECT_EQ(detail.Spread.text(col::kFieldName, 1), "A");
  EXPECT_TRUE(detail.changed);

  way = 0;
  EXPECT_TRUE(save()) << "theirs is loaded, nothing of this screen is stored";
  EXPECT_EQ(detail.Spread.text(col::kFieldName, 1), "B");
  EXPECT_FALSE(detail.changed);
  EXPECT_EQ(pointed(), stored);
  asked.clear();
  put(1, {{col::kRemark, "again"}});
  EXPECT_FALSE(save());
  EXPECT_EQ(asked, "");
}

TEST_F(SaveConflictTest, WhatPointsAtAFieldFollowsItWhenOneSavesOverTheOther) {
  // The other one takes A away: all others stand one place further up now, and A's index and reference have gone.
  deletionByOther(1);
  ASSERT_EQ(pointed(), (Lines{"B:dbB IX_B D R_B", "C:dbC IX_C R_C", "D:dbD IX_D R_D"}));
  way = 1;
  scripted.expect(
      "確認",
      "他で削除された次の項目は、新しい項目として登録しました. インデックスと外部参照は引き継がれません.\n A 項A");
  EXPECT_FALSE(save());
  EXPECT_EQ(pointed(), (Lines{"A:-", "B:dbB IX_B D R_B", "C:dbC IX_C R_C", "D:dbD IX_D R_D"}));
  EXPECT_EQ(fields(id, "外部参照TABLEID, 外部参照ROWNO")[3], id + "|2");
}

TEST_F(SaveConflictTest, WhatIsLostIsNamed) {
  saveByOther([](Spread& grid) {
    grid.setText(col::kFieldName, 5, "E");
    grid.setText(col::kForeign, 5, "表:項C");
  });
  database().execute("INSERT INTO MAS_INDEX (INDEX_NAME, ID, ROWNO, 順序) VALUES ('IX_E', " + id + ", 5, 1)");
  addField(other, 5, "項目名, 外部参照, 外部参照TABLEID, 外部参照ROWNO", "'R_E', '表', " + id + ", 5");
  // This one has taken B away, at which D points, and does not know E.
  detail.Spread.deleteRow(2);
  way = 1;
  scripted.expect(
      "確認",
      "次の定義は、対象の項目がなくなったため失われました.\n インデックス IX_B : B\n インデックス IX_E : E\n "
      "外部参照 U.R_B : B\n 外部参照 U.R_E : E\n 外部参照 T.D : B");
  EXPECT_FALSE(save());
  EXPECT_EQ(pointed(), (Lines{"A:dbA IX_A R_A", "C:dbC IX_C R_C", "D:dbD IX_D R_D"}));
}

TEST_F(SaveConflictTest, FieldsAreKnownAgainByTheirNames) {
  // Moved, renamed in one name, renamed in both, and a field that both have added.
  saveByOther([](Spread& grid) {
    const auto moved = grid.rows(4, 4);
    grid.deleteRow(4);
    grid.insertRow(1);
    grid.replaceRows(1, 1, moved);
    grid.setText(col::kFieldName, 2, "A2");
    grid.setText(col::kJapaneseName, 3, "乙");
    grid.setText(col::kFieldName, 5, "NEW");
  });
  database().execute("INSERT INTO MAS_INDEX (INDEX_NAME, ID, ROWNO, 順序) VALUES ('IX_NEW', " + id + ", 5, 1)");
  put(5, {{col::kFieldName, "new"}, {col::kType, "int"}});
  way = 1;
  EXPECT_FALSE(save());
  EXPECT_EQ(pointed(),
            (Lines{"A:dbA IX_A R_A", "B:dbB IX_B D R_B", "C:dbC IX_C R_C", "D:dbD IX_D R_D", "NEW:- IX_NEW"}));
}

TEST_F(SaveConflictTest, AFieldWithTwoNewNamesIsKnownByItsPlaceWhereNothingMoved) {
  saveByOther([](Spread& grid) {
    grid.setText(col::kFieldName, 3, "X");
    grid.setText(col::kJapaneseName, 3, "甲");
  });
  way = 1;
  EXPECT_FALSE(save());
  EXPECT_EQ(pointed()[2], "C:dbC IX_C R_C");
  EXPECT_FALSE(load(id));
  // With a field gone, X may be anything: rather a lost index than one that points elsewhere.
  saveByOther([](Spread& grid) {
    grid.setText(col::kFieldName, 3, "X");
    grid.setText(col::kJapaneseName, 3, "甲");
    grid.deleteRow(2);
  });
  scripted.answerAll(kOk);
  EXPECT_FALSE(save());
  EXPECT_EQ(pointed(), (Lines{"A:dbA IX_A R_A", "B:-", "C:-", "D:dbD IX_D R_D"}));
  EXPECT_NE(scripted.messages.back().find(" B 項B\n C 項C\n"), std::string::npos) << scripted.messages.back();
  EXPECT_NE(scripted.messages.back().find(" インデックス IX_C : X\n 外部参照 U.R_C : X"), std::string::npos);
}

TEST_F(SaveConflictTest, AForeignKeyThatFollowedIsNoConflict) {
  const std::string referring = other;
  ASSERT_FALSE(load(referring));
  deletionByOther(1);
  asked.clear();
  // R_A has lost its aim by that save, which is a change of the row; the others have just followed.
  way = 1;
  EXPECT_FALSE(save());
  EXPECT_NE(asked, "");
  EXPECT_EQ(fields(referring, "外部参照ROWNO"), (Lines{"-", "1", "2", "3"}));

  ASSERT_FALSE(load(referring));
  saveByOther([](Spread& grid) {
    grid.insertRow(1);
    grid.setText(col::kFieldName, 1, "FIRST");
  });
  asked.clear();
  put(2, {{col::kRemark, "mine"}});
  EXPECT_FALSE(save());
  EXPECT_EQ(asked, "");
  EXPECT_EQ(fields(referring, "外部参照ROWNO, 備考"), (Lines{"-|", "2|mine", "3|", "4|"}));
}

TEST_F(SaveConflictTest, AnotherSaveDuringTheQuestionIsAskedAboutToo) {
  deletionByOther(1);
  int questions = 0;
  scripted.host.dialogs.choose = [&](std::string_view, std::string_view details, const Lines&, std::string_view) {
    if (++questions == 1) deletionByOther(3);
    shown = std::string(details);
    return questions < 3 ? 1 : -1;
  };
  scripted.answerAll(kOk);
  EXPECT_FALSE(save());
  EXPECT_EQ(questions, 2);
  EXPECT_EQ(shown, "- D 項D");
  EXPECT_EQ(pointed(), (Lines{"A:-", "B:dbB IX_B D R_B", "C:dbC IX_C R_C", "D:-"}));
}

TEST_F(SaveConflictTest, WhereNobodyCanBeAskedTheSaveIsRefused) {
  deletionByOther(1);
  const Lines stored = pointed();
  detail.leave.asks = false;
  way = 1;
  scripted.expect("確認",
                  "読み込みの後に、このテーブルは他で更新されています.\n 更新者 : suzuki\n 更新年月日 : 2026/11/24 "
                  "10:05:00\n- A 項A\n更新していません.");
  EXPECT_TRUE(save());
  EXPECT_EQ(pointed(), stored);
  detail.leave.over = true;
  scripted.answerAll(kOk);
  EXPECT_FALSE(save());
  EXPECT_EQ(asked, "");
}

TEST_F(SaveConflictTest, ASaveThatFailsLeavesTheGridAsItWasTyped) {
  deletionByOther(1);
  way = 1;
  put(2, {{col::kRemark, std::string(300, 'x')}, {col::kFieldName, std::string(300, 'x')}});
  const Lines stored = pointed();
  scripted.answerAll(kOk);
  EXPECT_TRUE(save());
  EXPECT_EQ(pointed(), stored);
  put(2, {{col::kFieldName, "B"}});
  asked.clear();
  EXPECT_FALSE(save());
  EXPECT_NE(asked, "") << "the failed one settled nothing";
  EXPECT_EQ(pointed()[1], "B:dbB IX_B D R_B");
}

TEST_F(SaveConflictTest, RowsOfADiedProgramAreHeldAgainstWhatTheyWereMadeFrom) {
  put(2, {{col::kRemark, "mine"}});
  detail.changed = true;
  {
    GridBackup backup;
    ASSERT_TRUE(backup.keep(session, scripted.host, detail));
  }
  deletionByOther(1);
  const std::vector<GridLeftOver> left = leftOverGrids(session);
  ASSERT_EQ(left.size(), 1U);
  scripted.answerAll(kYes);
  GridBackup backup;
  ASSERT_FALSE(restoreGrid(session, scripted.host, left.front(), detail, backup));
  way = 1;
  EXPECT_FALSE(save());
  EXPECT_EQ(shown, "- A 項A");
  EXPECT_EQ(pointed(), (Lines{"A:-", "B:dbB IX_B D R_B", "C:dbC IX_C R_C", "D:dbD IX_D R_D"}));
  backup.drop();
}

TEST_F(SaveConflictTest, ASaveThatTakesMostRowsAwayAsks) {
  const auto remove = [&](int count) {
    ASSERT_FALSE(load(id));
    for (int row = 0; row < count; ++row) detail.Spread.deleteRow(1);
    if (detail.Spread.maxRows() > 0) put(1, {{col::kRemark, "rest"}});
  };
  remove(3);
  scripted.expect("削除確認", "4件の項目のうち、3件が削除されます.\n削除しますか?", kNo);
  EXPECT_TRUE(CmdUpDate_Click(session, scripted.host, detail));
  detail.leave.asks = false;
  scripted.expect("削除確認", "4件の項目のうち、3件が削除されます.\n更新していません.");
  EXPECT_TRUE(CmdUpDate_Click(session, scripted.host, detail));
  EXPECT_EQ(fields(id, "項目名").size(), 4U);

  remove(2);
  detail.leave = {};
  scripted.expect("確認", "登録内容を更新します.", kYes);
  EXPECT_FALSE(CmdUpDate_Click(session, scripted.host, detail)) << "half of them is not most";
  ASSERT_FALSE(load(id));
  detail.leave.removal = true;
  for (int row = 1; row <= 2; ++row)
    for (int column : {col::kJapaneseName, col::kFieldName}) put(row, {{column, ""}});
  scripted.expect("確認", "登録内容を更新します.", kYes);
  EXPECT_FALSE(CmdUpDate_Click(session, scripted.host, detail));
  EXPECT_TRUE(fields(id, "項目名").empty());
}

TEST_F(SaveConflictTest, TheRowsSurviveTheWayThroughAText) {
  database().execute("UPDATE MAS_TABLEDETAILES SET 備考 = 'a\tb\\c', 整数桁数 = Null WHERE ID = " + id +
                     " AND ROWNO = 2");
  ASSERT_FALSE(load(id));
  const auto back = parseLoadedRows(loadedRowsText(detail.loaded));
  ASSERT_TRUE(back);
  EXPECT_TRUE(sameRows(*back, detail.loaded));
  EXPECT_EQ(back->rows.size(), 4U);
  const std::string text = loadedRowsText(detail.loaded);
  EXPECT_FALSE(parseLoadedRows(text.substr(0, text.size() / 2)));
  EXPECT_FALSE(parseLoadedRows(""));
}

}  // namespace
}  // namespace quillmarden
