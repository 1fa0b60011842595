#include "excel/format_buttons.h"

#include "common/text.h"
#include "common/text_file.h"
#include "excel/format_file.h"
#include "repository/frm_system_inf.h"
#include "support/open_repository.h"

namespace quillmarden {
namespace {

class FormatButtonsTest : public OpenRepositoryTest {
 protected:
  void name(std::string_view file) { screen.TxtLayoutFile.text = file; }
  std::string path() { return layoutFormatPath(session, "layout.xls"); }
  void check() { CmdLayoutCheck_Click(session, scripted.host, screen); }
  void info() { CmdLayoutInfo_Click(session, scripted.host, screen); }

  frmSystemInf screen;
};

TEST_F(FormatButtonsTest, NeitherWorksWithoutAName) {
  for (const char* blank : {"", "  "}) {
    name(blank);
    scripted.expect("確認", "書式ファイル名が未設定です.");
    check();
    scripted.expect("確認", "書式ファイル名が未設定です.");
    info();
  }
  EXPECT_TRUE(scripted.opened.empty());
}

TEST_F(FormatButtonsTest, TheFormatFileOpensUnderTheNameThatASaveWouldKeep) {
  name(" layout.xls ");
  info();
  EXPECT_TRUE(std::filesystem::exists(path()));
  ASSERT_EQ(scripted.opened.size(), 1U);
  EXPECT_TRUE(scripted.opened[0].ends_with("layout.xls.inf")) << scripted.opened[0];
}

TEST_F(FormatButtonsTest, TheCheckGoesFromTheTemplateToTheFormatFileToItsContent) {
  name("layout.xls");
  const std::string folder = scripted.host.machine.programFolder.string();
  scripted.expect("確認", "指定の書式ファイル名が\n " + folder + "\nに存在しません.");
  check();

  replaceFile(session.gDataFolder + "/layout.xls", "a book of the user's own");
  scripted.expect("確認", "指定のファイルが存在しません.\nlayout.xls.inf\n" + session.gDataFolder);
  LayoutFormat none;
  std::string faults = "書式ファイルが存在しない";
  pChkLayoutFormat(none, faults);
  scripted.expect("確認", faults);
  check();

  const std::string body =
      "KEY_1ページの行数:60\r\nKEY_1ページ記入項目数:40\r\nKEY_日本語名:A1\r\nKEY_TABLE_NAME:A2\r\n"
      "KEY_システム名:A3\r\nKEY_作成日:A4\r\nKEY_開始行:8\r\nKEY_項目名(日本語):A\r\nKEY_項目名:B\r\n"
      "KEY_KEY表示:C\r\nKEY_型:D\r\nKEY_桁数整数:E\r\n";
  replaceFile(path(), toCp932(body));
  scripted.expect("確認", "KEY_桁数少数\nが未設定です.");
  check();
  replaceFile(path(), toCp932(body + "KEY_桁数少数:F\r\n"));
  scripted.expect("確認", "書式ファイルに定義エラーはありませんでした.");
  check();
}

}  // namespace
}  // namespace quillmarden
