#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

#include "common/ini_file.h"
#include "common/list_file.h"
#include "common/paths.h"
#include "common/text.h"
#include "common/text_file.h"
#include "support/scripted_host.h"

namespace quillmarden {
namespace {

namespace fs = std::filesystem;
using namespace std::string_literals;

void spill(const fs::path& file, std::string_view bytes) { std::ofstream(file, std::ios::binary) << bytes; }

std::string slurp(const fs::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(ListFile, OddBytes) {
  EXPECT_EQ(listEntries(""), std::vector<std::string>{});
  EXPECT_EQ(listEntries("a\r\n\r\n  \nb\tc\0d\rlast"s), (std::vector<std::string>{"a", "bcd", "last"}));
  EXPECT_EQ(listEntries("\x95\x5C\n\x82"), (std::vector<std::string>{"表", "\uFFFD"}));
  std::string many;
  for (int i = 0; i < 1500; ++i) many += std::to_string(i) + "\n";
  EXPECT_EQ(listEntries(many).size(), kMaxListEntries);
  EXPECT_EQ(listEntries(std::string(1 << 20, 'x')).at(0).size(), 1U << 20);
}

TEST(ListFile, EntriesComeBack) {
  TempFolder folder;
  const fs::path file = folder.path() / "made" / "Find.lst";
  ASSERT_TRUE(writeListFile(file, {"受注", "two\nlines", "C:\\表"}));
  EXPECT_EQ(slurp(file), toCp932("受注\r\ntwolines\r\nC:\\表\r\n"));
  // A folder's name that CP932 cannot hold would lead nowhere with a "?" in it.
  ASSERT_TRUE(writeListFile(file, {"/data/é", "受注"}));
  EXPECT_EQ(readListFile(file), (std::vector<std::string>{"/data/é", "受注"}));
  EXPECT_EQ(readListFile(folder.path()), std::vector<std::string>{});
  EXPECT_FALSE(writeListFile(folder.path() / "made", {"x"}));
  EXPECT_EQ(readListFile(file).size(), 2U);
}

TEST(ListFile, FilesWithoutAnEndInSightAreNotReadToIt) {
  TempFolder folder;
  const fs::path file = folder.path() / "Find.lst";
  spill(file, toCp932("[a]\r\nk=受注\r\nlast"));
  fs::resize_file(file, 200 << 20);
  EXPECT_EQ(readListFile(file), (std::vector<std::string>{"[a]", "k=受注", "last"}));
  std::error_code error;
  EXPECT_EQ(readBeginning(file, error, 3), "[a]");
  EXPECT_EQ(readFile(file, error), std::nullopt);
  EXPECT_EQ(error, std::errc::file_too_large);
  EXPECT_EQ(readFile(file, error, 200 << 20).value_or("").size(), 200U << 20);
  // Settings that were not read are not written over.
  IniFile ini(file);
  ini.put("a", "k", "v");
  EXPECT_EQ(fs::file_size(file), 200U << 20);
  EXPECT_EQ(readListFile("/dev/zero"), std::vector<std::string>{});
}

TEST(ListFile, ListsAndHistories) {
  ListBox list;
  gAddList(list, " b ", true);
  gAddList(list, "a", false);
  gAddList(list, "b", true);
  EXPECT_EQ(list.rows, (std::vector<std::string>{"b", "a"}));
  EXPECT_EQ(list.listIndex, 0);
  ComboBox box;
  for (const char* text : {"one", " two ", "", "one"}) gListHistory(box, text);
  EXPECT_EQ(box.entries, (std::vector<std::string>{"two", "one"}));
  EXPECT_EQ(box.text, "one");
  for (int i = 0; i < 1100; ++i) gListHistory(box, std::to_string(i));
  EXPECT_EQ(box.entries.size(), kMaxListEntries);
  EXPECT_EQ(box.entries.front(), "1099");
}

TEST(Paths, Joining) {
  EXPECT_EQ(gPathJoin("a\\", "\\b"), "a/b");
  EXPECT_EQ(gPathJoin(" /a/b// ", " c "), "/a/b/c");
  EXPECT_EQ(gPathJoin("/", "c"), "/c");
  EXPECT_EQ(gPathJoin("  ", "b"), "b");
  EXPECT_EQ(gPathJoin("a", " "), "a");
  EXPECT_EQ(gSafePathJoin("a", "x/../y"), "a/x_.._y");
  EXPECT_EQ(gGetServerName("\\\\srv\\share\\x"), "srv");
  EXPECT_EQ(gGetServerName("\\\\srv"), "srv");
  EXPECT_EQ(gGetServerName("/srv/share"), "/srv/share");
}

TEST(Paths, FoldersAtMostTwentyLevels) {
  TempFolder folder;
  const fs::path former = fs::current_path();
  fs::current_path(folder.path());
  std::string path = "1";
  for (int level = 2; level <= 20; ++level) path += (level % 2 ? "/" : "\\") + std::to_string(level);
  std::string error;
  EXPECT_FALSE(gMakeFolder(path + "/21", &error));
  EXPECT_NE(error, "");
  EXPECT_TRUE(gChkFolder(path));
  EXPECT_FALSE(gChkFolder(path + "/21"));
  EXPECT_TRUE(gMakeFolder(path, &error));
  EXPECT_EQ(error, "");
  spill("file", "");
  EXPECT_FALSE(gMakeFolder("file\\below", &error));
  EXPECT_NE(error, "");
  EXPECT_FALSE(gMakeFolder("file", &error));
  fs::current_path(former);
}

TEST(Paths, MissIsToldOnlyWhenAsked) {
  ScriptedHost scripted;
  const std::string folder = scripted.folder.path().string();
  EXPECT_FALSE(gFileExists(scripted.host, folder + "/none.txt", false));
  EXPECT_FALSE(gFileExists(scripted.host, folder, false)) << "a folder is no file";
  scripted.expect("確認", "指定のファイルが存在しません.\nnone.txt\n" + folder);
  EXPECT_FALSE(gFileExists(scripted.host, folder + "\\none.txt", true));
}

TEST(Paths, CopyIsWholeOrNothing) {
  TempFolder folder;
  spill(folder.path() / "a", "new");
  spill(folder.path() / "b", "old");
  std::string message;
  EXPECT_FALSE(gFileCopy(folder.file("a"), folder.file("b"), false, &message));
  EXPECT_EQ(message, "複写先に同じファイルが存在し、ユーザーにより[いいえ]が選択されました.");
  EXPECT_EQ(slurp(folder.path() / "b"), "old");
  fs::permissions(folder.path() / "b", fs::perms::owner_read);
  EXPECT_TRUE(gFileCopy(folder.file("a"), folder.file("b"), true, &message)) << "a write-protected target";
  EXPECT_EQ(slurp(folder.path() / "b"), "new");
  EXPECT_FALSE(gFileCopy(folder.file("a"), folder.file("a"), true, &message));
  EXPECT_EQ(message, "複写元／複写先の指定が不正です.");
  EXPECT_FALSE(gFileCopy(folder.file("none"), folder.file("c"), true, &message));
  EXPECT_FALSE(gFileCopy(folder.file("a"), folder.file("no/such/c"), true, &message));
  fs::create_symlink("b", folder.path() / "link");
  EXPECT_FALSE(gFileCopy(folder.file("a"), folder.file("link"), true, &message)) << "what a link names is another file";
  EXPECT_TRUE(fs::is_symlink(folder.path() / "link"));
  EXPECT_EQ(slurp(folder.path() / "a"), "new");
  EXPECT_EQ(std::distance(fs::directory_iterator(folder.path()), {}), 3);
}

TEST(Paths, LongNamesAreCutAndStayDifferent) {
  std::string name;
  while (name.size() < 300) name += "表";
  const std::string one = fs::path(gSafePathJoin("/a", name + "1.xlsx")).filename().string();
  EXPECT_LE(one.size(), 255U);
  EXPECT_TRUE(one.starts_with("表表表") && one.ends_with(".xlsx")) << one;
  EXPECT_EQ(toCp932(one), toCp932(one.substr(0, one.find('~'))) + one.substr(one.find('~'))) << "no half character";
  EXPECT_NE(one, fs::path(gSafePathJoin("/a", name + "2.xlsx")).filename());
  EXPECT_EQ(gSafePathJoin("/a", name + "1.xlsx"), "/a/" + one) << "the same in every run";
  // All of it may be an ending.
  EXPECT_LE(fs::path(gSafePathJoin("/a", "." + name)).filename().string().size(), 255U);
  const std::string whole(250, 'a');
  EXPECT_EQ(gSafePathJoin("/a", whole + ".xlsx"), "/a/" + whole + ".xlsx");
}

}  // namespace
}  // namespace quillmarden
