#include "common/work_folders.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>

#include "common/replace_file.h"
#include "support/scripted_host.h"

namespace quillmarden {
namespace {

namespace fs = std::filesystem;

class WorkFoldersTest : public testing::Test {
 protected:
  fs::path touch(const fs::path& file) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << "x";
    return file;
  }
  void sweep() { removeWorkFolders(scripted.host); }

  ScriptedHost scripted;
  const fs::path data = scripted.host.machine.appDataFolder;
  const fs::path temp = scripted.host.machine.tempFolder;
  const std::string own = "quillmarden-" + std::to_string(::geteuid());
};

TEST_F(WorkFoldersTest, WorkFoldersGoAndNothingElse) {
  const fs::path precious = touch(scripted.folder.path() / "precious" / "keep");
  for (const fs::path& work : {data / "x_-_-", data / "quillmarden" / "TempTemp_-_-" / "sub", temp / "表_-_-"})
    touch(work / "file");
  fs::create_directory_symlink(precious.parent_path(), temp / "表_-_-" / "link");
  fs::create_directory_symlink(precious.parent_path(), temp / "linked_-_-");
  fs::create_directories(temp / "_-_-System");
  touch(temp / "file_-_-");
  sweep();
  EXPECT_FALSE(fs::exists(data / "x_-_-") || fs::exists(data / "quillmarden" / "TempTemp_-_-"));
  EXPECT_FALSE(fs::exists(temp / "表_-_-"));
  EXPECT_TRUE(fs::exists(precious) && fs::is_symlink(temp / "linked_-_-"));
  EXPECT_TRUE(fs::exists(temp / "_-_-System") && fs::exists(temp / "file_-_-"));
}

TEST_F(WorkFoldersTest, ResultsStayTheDayThatTheyWereMade) {
  const fs::path work = data / "quillmarden" / "販売_-_-";
  fs::create_directories(work);
  noteResult(work / "shown.xlsx", scripted.now, false);
  noteResult(work / "printed.xlsx", scripted.now, true);
  noteResult(work / "coming.xlsx", scripted.now, false);
  noteResult(work / "open.xlsx", scripted.now, false);
  for (const char* name : {"shown.xlsx", "printed.xlsx", "open.xlsx", "left.emf"}) touch(work / name);
  sweep();
  EXPECT_TRUE(fs::exists(work / "shown.xlsx") && fs::exists(work / "printed.xlsx"));
  EXPECT_FALSE(fs::exists(work / "left.emf"));
  EXPECT_TRUE(isKeptResult(work / "coming.xlsx", scripted.now)) << "the run that has told of it is under way";

  scripted.now.day += 1;
  touch(work / ".~lock.open.xlsx#");
  sweep();
  EXPECT_FALSE(fs::exists(work / "shown.xlsx"));
  EXPECT_TRUE(fs::exists(work / "printed.xlsx")) << "of the command line";
  EXPECT_TRUE(fs::exists(work / "open.xlsx") && fs::exists(work / ".~lock.open.xlsx#"));

  fs::remove(work / ".~lock.open.xlsx#");
  noteResult(work / "printed.xlsx", scripted.now, false);  // made anew by the desktop
  scripted.now.day += 1;
  sweep();
  EXPECT_FALSE(fs::exists(work)) << "with its last result the folder goes";
}

TEST_F(WorkFoldersTest, WhatIsBeingWrittenStays) {
  const fs::path work = temp / "販売_-_-";
  fs::create_directories(work);
  GrowingFile script(work / "Sql_販売.txt");
  script.write("x");
  FileReplacement book(work / "販売.xlsx");
  touch(work / "of a run that was killed.0000.tmp");
  sweep();
  script.commit();
  book.commit();
  EXPECT_EQ(std::distance(fs::directory_iterator(work), {}), 2);
}

TEST_F(WorkFoldersTest, ASharedTemporaryFolderHasAFolderForEachUser) {
  EXPECT_EQ(userTempFolder(scripted.host.machine), temp) << "nobody else gets in there";
  fs::permissions(temp, fs::perms::all | fs::perms::sticky_bit);
  const fs::path made = userTempFolder(scripted.host.machine);
  EXPECT_EQ(made, temp / own);
  EXPECT_EQ(fs::status(made).permissions(), fs::perms::owner_all);
  fs::permissions(made, fs::perms::all);
  EXPECT_EQ(userTempFolder(scripted.host.machine), made);
  EXPECT_EQ(fs::status(made).permissions(), fs::perms::owner_all) << "closed again";
  touch(made / "販売_-_-" / "Sql_販売.txt");
  sweep();
  EXPECT_FALSE(fs::exists(made));
}

TEST_F(WorkFoldersTest, ALinkInThePlaceOfTheUsersFolderIsNotFollowed) {
  fs::permissions(temp, fs::perms::all | fs::perms::sticky_bit);
  const fs::path third = scripted.folder.path() / "third";
  touch(third / "販売_-_-" / "theirs");
  fs::create_directory_symlink(third, temp / own);
  EXPECT_EQ(userTempFolder(scripted.host.machine), temp / (own + "-1"));
  sweep();
  EXPECT_TRUE(fs::exists(third / "販売_-_-" / "theirs"));
}

TEST_F(WorkFoldersTest, AnotherUsersFoldersAreLeftAlone) {
  constexpr uid_t kOther = 54321;
  if (::geteuid() != 0) GTEST_SKIP() << "only root can make folders of other users";
  fs::permissions(temp, fs::perms::all | fs::perms::sticky_bit);
  const fs::path squatted = temp / own;
  const fs::path theirs = temp / "販売_-_-";
  for (const fs::path& folder : {squatted, theirs, squatted / "販売_-_-"}) {
    touch(folder / "file");
    ASSERT_EQ(::chown(folder.c_str(), kOther, kOther), 0);
  }
  EXPECT_EQ(userTempFolder(scripted.host.machine), temp / (own + "-1"));
  sweep();
  for (const fs::path& folder : {squatted, theirs, squatted / "販売_-_-"}) EXPECT_TRUE(fs::exists(folder / "file"));
  for (int number = 0; number < 10; ++number) {
    const fs::path taken = number == 0 ? squatted : temp / (own + "-" + std::to_string(number));
    fs::create_directories(taken);
    ASSERT_EQ(::chown(taken.c_str(), kOther, kOther), 0);
  }
  EXPECT_EQ(userTempFolder(scripted.host.machine), data / "quillmarden") << "never one of another user";
}

}  // namespace
}  // namespace quillmarden
