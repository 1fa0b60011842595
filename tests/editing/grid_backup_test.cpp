#include "editing/grid_backup.h"

#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <iterator>

#include "common/text.h"
#include "editing/detail_parts.h"
#include "editing/frm_tb_detail_edit.h"
#include "editing/grid_backup_text.h"
#include "editing_fixture.h"

namespace quillmarden {
namespace {

namespace fs = std::filesystem;

class GridBackupTest : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    database().execute(
        "INSERT INTO MAS_DOMAIN (システム名, 日本語名, 型, 削除フラグ) VALUES ('販売', '語', 'text', 0)");
    id = addTable("販売", "PostgreSQL", "T", "表");
    addField(id, 1, "日本語名, 項目名, 型", "'番号', 'A', 'text'");
    addField(id, 2, "日本語名, 項目名, 型", "'名前', 'B', 'text'");
    ASSERT_FALSE(load(id));
  }

  bool keep() { return backup.keep(session, scripted.host, detail); }
  void edit(int row, std::string_view text) {
    cellEdited(session, scripted.host, detail, col::kJapaneseName, row, text);
  }
  fs::path folder() const { return fs::path(session.gDataFolder) / "EditedGrids"; }
  long files() const {
    std::error_code ignored;
    return fs::exists(folder(), ignored) ? std::distance(fs::directory_iterator(folder()), fs::directory_iterator())
                                         : 0;
  }

  /// Edits and keeps in a process of its own, which dies without another word.
  void crashWith(std::string_view text) {
    const pid_t child = ::fork();
    if (child == 0) {
      edit(2, text);
      ::_exit(keep() ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    ASSERT_EQ(status, 0);
  }

  GridBackup backup;
  std::string id;
};

TEST_F(GridBackupTest, ACopyStandsAsLongAsThereIsSomethingToSave) {
  EXPECT_TRUE(keep());
  EXPECT_EQ(files(), 0) << "an untouched grid needs none";
  edit(1, "変");
  EXPECT_TRUE(keep());
  EXPECT_TRUE(backup.holds() && fs::exists(backup.file()));
  const auto written = fs::last_write_time(backup.file());
  EXPECT_TRUE(keep());
  EXPECT_EQ(fs::last_write_time(backup.file()), written) << "nothing changed since";
  EXPECT_TRUE(leftOverGrids(session).empty()) << "this very program holds it";
  mnuUndo_Click(session, scripted.host, detail);
  EXPECT_TRUE(keep());
  EXPECT_EQ(files(), 0);

  edit(1, "変");
  keep();
  ASSERT_FALSE(pPutTableDetails(session, scripted.host, detail));
  keep();
  EXPECT_EQ(files(), 0) << "saved";
}

TEST_F(GridBackupTest, WhatACrashLeftComesBackAsItWas) {
  const pid_t child = ::fork();
  if (child == 0) {
    setDomain(session, scripted.host, detail, 1, 1);
    detail.Spread.insertRow(2);
    edit(2, "#tags\\新");
    cellEdited(session, scripted.host, detail, col::kType, 2, "date");
    cellEdited(session, scripted.host, detail, col::kRemark, 3, "一\n二\\n三");
    ::_exit(keep() ? 0 : 1);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  ASSERT_EQ(status, 0);

  const auto found = leftOverGrids(session);
  ASSERT_EQ(found.size(), 1U);
  EXPECT_EQ(found[0].title(), "販売 : 表 (2026/11/24 09:05:00)");
  EXPECT_EQ(found[0].tableId + found[0].kind + found[0].user + std::to_string(found[0].rows), id + "PostgreSQLadmin3");
  scripted.expect("確認",
                  "前回、保存されていない編集内容があります.\n  販売 : 表 (2026/11/24 09:05:00)\n  3行 : "
                  "admin\n編集を再開しますか?",
                  kYes);
  EXPECT_EQ(askLeftOver(scripted.host, found[0]), LeftOverAnswer::Restore);

  detail = {};
  ASSERT_FALSE(restoreGrid(session, scripted.host, found[0], detail, backup));
  EXPECT_EQ(cells(1, {1, 2, 14, 15, 20}), "番号|A|語|1|変更");
  EXPECT_EQ(detail.Spread.kind(col::kType, 1), CellKind::Static);
  EXPECT_EQ(cells(2, {1}) + "/" + cells(3, {2, 12}), "#tags\\新/B|一\n二\\n三");
  EXPECT_EQ(detail.Spread.rowTag(3), 2) << "the row is still that field";
  EXPECT_TRUE(detail.changed && detail.picRen.visible);
  EXPECT_TRUE(backup.holds());
  EXPECT_TRUE(leftOverGrids(session).empty()) << "taken over";
  edit(1, "後");
  mnuUndo_Click(session, scripted.host, detail);
  EXPECT_TRUE(detail.changed) << "what came back is not what the Repository holds";
  scripted.answerAll(kYes);
  ASSERT_FALSE(CmdUpDate_Click(session, scripted.host, detail));
  keep();
  EXPECT_EQ(files(), 0);
  EXPECT_EQ(fields(id, "日本語名"), (Lines{"番号", "#tags\\新", "名前"}));
}

TEST_F(GridBackupTest, ARunningProgramsCopyIsItsOwn) {
  int toChild[2];
  int toParent[2];
  ASSERT_EQ(::pipe(toChild) + ::pipe(toParent), 0);
  const pid_t child = ::fork();
  char byte = 0;
  if (child == 0) {
    edit(2, "隣");
    byte = keep() ? 'y' : 'n';
    if (::write(toParent[1], &byte, 1) != 1 || ::read(toChild[0], &byte, 1) != 1) ::_exit(2);
    ::_exit(0);
  }
  ASSERT_EQ(::read(toParent[0], &byte, 1), 1);
  ASSERT_EQ(byte, 'y');
  EXPECT_TRUE(leftOverGrids(session).empty());
  GridLeftOver theirs;
  for (const auto& entry : fs::directory_iterator(folder()))
    if (entry.path().extension() == ".grid") theirs.file = entry.path();
  theirs.tableId = id;
  dropLeftOver(theirs);
  EXPECT_TRUE(fs::exists(theirs.file));
  scripted.answerAll(kOk);
  EXPECT_TRUE(restoreGrid(session, scripted.host, theirs, detail, backup));
  EXPECT_EQ(scripted.messages.back(), "こまった|控えは、他の画面で使用中です.\n   :  ()");
  ASSERT_EQ(::write(toChild[1], &byte, 1), 1);
  ::waitpid(child, nullptr, 0);
  ASSERT_EQ(leftOverGrids(session).size(), 1U) << "it died: the copy is free";
  dropLeftOver(theirs);
  EXPECT_EQ(files(), 0);
  for (int end : {toChild[0], toChild[1], toParent[0], toParent[1]}) ::close(end);
}

TEST_F(GridBackupTest, OtherRepositoriesAndDamagedFilesAreNotOffered) {
  crashWith("前");
  const fs::path whole = leftOverGrids(session).at(0).file;
  std::string text;
  std::getline(std::ifstream(whole), text, '\0');
  ASSERT_TRUE(parseGridCopy(text));
  for (std::size_t cut = 0; cut + 1 < text.size(); ++cut) EXPECT_FALSE(parseGridCopy(text.substr(0, cut))) << cut;
  std::ofstream(whole) << gReplaceAll(text, "tableinf.mdb", "other.mdb");
  EXPECT_TRUE(leftOverGrids(session).empty());
  EXPECT_TRUE(fs::exists(whole));
}

TEST_F(GridBackupTest, ATableThatChangedOrWentIsToldBeforeTheCopyShows) {
  crashWith("前");
  const GridLeftOver leftOver = leftOverGrids(session).at(0);
  database().execute("UPDATE MAS_TABLEDETAILES SET 更新年月日 = #2026/11/25 00:00:00# WHERE ID = " + id);
  scripted.expect(
      "確認",
      "対象のテーブルは、控えの後に更新されています.\n  販売 : 表 (2026/11/24 09:05:00)\n控えの内容を表示しますか?",
      kNo);
  EXPECT_TRUE(restoreGrid(session, scripted.host, leftOver, detail, backup));
  EXPECT_EQ(cells(2, {1}), "名前");
  database().execute("UPDATE MAS_TABLEINFO SET 修正許可 = 0 WHERE ID = " + id);
  scripted.expect("こまった", "対象のテーブルは編集できません.\n  販売 : 表 (2026/11/24 09:05:00)");
  EXPECT_TRUE(restoreGrid(session, scripted.host, leftOver, detail, backup));
  database().execute("DELETE * FROM MAS_TABLEINFO WHERE ID = " + id);
  scripted.expect("こまった", "対象のテーブルが存在しません.\n  販売 : 表 (2026/11/24 09:05:00)");
  EXPECT_TRUE(restoreGrid(session, scripted.host, leftOver, detail, backup));
  EXPECT_EQ(leftOverGrids(session).size(), 1U) << "it stays for another day";
}

TEST_F(GridBackupTest, AnUnwritableFolderIsToldByTheAnswer) {
  std::ofstream(folder()) << "a file in the folder's place";
  edit(1, "変");
  EXPECT_FALSE(keep());
  EXPECT_FALSE(backup.holds());
  fs::remove(folder());
  EXPECT_TRUE(keep()) << "the next call tries again";
}

}  // namespace
}  // namespace quillmarden
