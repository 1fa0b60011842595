#include "excel/format_file.h"

#include "common/text.h"
#include "common/text_file.h"
#include "support/files.h"
#include "support/open_repository.h"

namespace quillmarden {
namespace {

class FormatFileTest : public OpenRepositoryTest {
 protected:
  std::string path() { return layoutFormatPath(session, "layout.xls"); }
  void put(std::string_view utf8) { replaceFile(path(), toCp932(utf8)); }
  int get(bool check) { return gGetLayoutFormat(session, scripted.host, "layout.xls", format, errorText, check); }

  LayoutFormat format;
  std::string errorText;
};

TEST_F(FormatFileTest, KeysCountWhereverTheyStandAndNothingElseDoes) {
  put("KEY_開始行:8\r\n"
      "[BASE SECTION]\r\n"
      "#KEY_日本語名:A2\r\n"
      "  KEY_TABLE_NAME: B2:C3  \r\n"
      "KEY_システム名:\r\n"
      "key_作成日:A9\r\n"
      "KEY_備考:first\r\n"
      "KEY_備考:second\r\n"
      "KEY_備考\r\n"
      "KEY_備考:");
  EXPECT_EQ(get(false), 0);
  EXPECT_EQ(format[LayoutKey::StartRow], "8");
  EXPECT_EQ(format[LayoutKey::JapaneseName], "");
  EXPECT_EQ(format[LayoutKey::TableName], " B2:C3");
  EXPECT_EQ(format[LayoutKey::SystemName], "");
  EXPECT_EQ(format[LayoutKey::CreatedAt], "");
  EXPECT_EQ(format[LayoutKey::Remark], "second");
}

TEST_F(FormatFileTest, ChecksNameEachFaultInOrder) {
  put("KEY_1ページの行数:many\r\nKEY_1ページ記入項目数:1,000\r\nKEY_開始行:x\r\nKEY_概要1行文字数:y\r\n"
      "KEY_日本語名:A1\r\nKEY_TABLE_NAME:A2\r\nKEY_項目名:B\r\nKEY_KEY表示:C\r\nKEY_型:D\r\nKEY_桁数整数:E\r\n");
  EXPECT_EQ(get(true), -1);
  EXPECT_EQ(errorText,
            "KEY_1ページの行数\nに数字以外が設定されています.\n"
            "KEY_システム名\nが未設定です.\nKEY_作成日\nが未設定です.\n"
            "KEY_開始行に数字以外\nが設定されています.\n"
            "KEY_項目名日本語\nが未設定です.\nKEY_桁数少数\nが未設定です.\n"
            "KEY_概要1行文字数以外\nが設定されています.");
}

TEST_F(FormatFileTest, AMissingFileIsToldAndLeavesAnEmptyFormat) {
  const std::string told = "指定のファイルが存在しません.\nlayout.xls.inf\n" + session.gDataFolder;
  scripted.expect("確認", told);
  EXPECT_EQ(get(false), 0);
  EXPECT_EQ(errorText, "書式ファイルが存在しない");
  scripted.expect("確認", told);
  EXPECT_EQ(get(true), -1);
  EXPECT_TRUE(errorText.starts_with("書式ファイルが存在しない\nKEY_h1ページの行数が未設定です.\n"));
}

TEST_F(FormatFileTest, TheDefaultFileIsWrittenOnceAndOpenedEachTime) {
  gPutLayoutFormatDefault(session, scripted.host, "layout.xls");
  const std::string bytes = readFile(std::filesystem::path(path()));
  const std::string text = fromCp932(bytes);
  const auto lines = splitLines(text);
  ASSERT_EQ(lines.size(), 70U);
  EXPECT_EQ(lines[2], "# 書式ファイル:layout.xls");
  EXPECT_EQ(lines[3], "# 作成日      :2026/11/24 09:05:00");
  EXPECT_EQ(lines[13], "KEY_1ページ記入項目数:40");
  EXPECT_EQ(lines[28], "KEY_概要1行文字数:");
  EXPECT_EQ(lines[43], "■■■■■省略不可■■■■■");
  EXPECT_EQ(lines[63], "-------------------------------------");
  EXPECT_EQ(lines[69], "KEY_コメント日付:");
  EXPECT_NE(bytes.find("\r\n"), std::string::npos);

  put("KEY_型:E");
  gPutLayoutFormatDefault(session, scripted.host, "layout.xls");
  EXPECT_EQ(readFile(std::filesystem::path(path())), toCp932("KEY_型:E"));
  EXPECT_EQ(scripted.opened.size(), 2U);
}

TEST_F(FormatFileTest, TheDefaultFileNeedsOnlyItsMandatoryPlaces) {
  writeDefaultLayoutFormat(session, scripted.host, "layout.xls");
  EXPECT_EQ(get(true), -1);
  EXPECT_EQ(errorText.find("ページ"), std::string::npos);
  EXPECT_NE(errorText.find("KEY_開始行\nが未設定です."), std::string::npos);
}

}  // namespace
}  // namespace quillmarden
