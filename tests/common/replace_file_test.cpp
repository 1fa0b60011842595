#include "common/replace_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <fstream>
#include <functional>
#include <iterator>
#include <system_error>

#include "support/files.h"
#include "support/scripted_host.h"

namespace quillmarden {
namespace {

namespace fs = std::filesystem;

class ReplaceFileTest : public testing::Test {
 protected:
  void put(const fs::path& file, std::string_view text) { std::ofstream(file) << text; }
  std::string content(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  long entries() const { return std::distance(fs::directory_iterator(folder.path()), {}); }
  std::error_code errorOf(const std::function<void()>& run) {
    try {
      run();
    } catch (const std::system_error& error) {
      EXPECT_NE(std::string(error.what()).find(folder.path().string()), std::string::npos) << error.what();
      return error.code();
    }
    return {};
  }
  /// The ways in which an output comes about.
  void replace(const fs::path& file, std::string_view text) {
    FileReplacement replacement(file);
    replacement.write(text);
    replacement.commit();
  }
  void grow(const fs::path& file, std::string_view text) {
    GrowingFile growing(file);
    growing.write(text);
    growing.commit();
  }

  TempFolder folder;
  const fs::path target = folder.path() / "本.txt";
  const fs::path partial = folder.path() / "本.途中.txt";
};

TEST_F(ReplaceFileTest, TheFormerFileStandsUntilTheNewOneIsWhole) {
  put(target, "former");
  fs::permissions(target, fs::perms::owner_read);
  {
    FileReplacement replacement(target);
    replacement.write("new");
    EXPECT_EQ(content(target), "former");
    EXPECT_EQ(entries(), 2);
  }
  EXPECT_EQ(content(target), "former");
  EXPECT_EQ(entries(), 1) << "nothing half written stays";
  replace(target, "new");
  EXPECT_EQ(content(target), "new");
  EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read) << "the rights are the former file's";
  grow(target, "grown");
  EXPECT_EQ(content(target), "grown");
  EXPECT_EQ(fs::status(target).permissions(), fs::perms::owner_read);
  EXPECT_EQ(entries(), 1);
  const fs::path longest = folder.path() / (std::string(251, 'x') + ".txt");
  replace(longest, "1");
  grow(longest, "2");
  EXPECT_EQ(content(longest), "2") << "names beside it are no longer than file systems take";
}

TEST_F(ReplaceFileTest, WhatIsNoPlainFileIsRefusedAndStays) {
  const fs::path other = folder.path() / "other";
  put(other, "other");
  const fs::path link = folder.path() / "link";
  const fs::path dangling = folder.path() / "dangling";
  const fs::path pipe = folder.path() / "pipe";
  const fs::path sub = folder.path() / "sub";
  fs::create_symlink(other, link);
  fs::create_symlink(folder.path() / "nowhere", dangling);
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  fs::create_directory(sub);
  const long before = entries();
  for (const fs::path& file : {link, dangling, pipe, sub}) {
    const auto type = fs::symlink_status(file).type();
    EXPECT_EQ(errorOf([&] { replace(file, "new"); }), std::errc::not_supported) << file;
    EXPECT_EQ(errorOf([&] { grow(file, "new"); }), std::errc::not_supported) << file;
    EXPECT_EQ(targetFault(file), TargetFault::NotPlain) << file;
    EXPECT_EQ(fs::symlink_status(file).type(), type) << file;
  }
  EXPECT_EQ(content(other), "other");
  EXPECT_EQ(entries(), before);
  FileReplacement followed(link, TargetLinks::Followed);
  followed.write("settings");
  followed.commit();
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_EQ(content(other), "settings");
  EXPECT_EQ(errorOf([&] { replace(folder.path() / "no" / "a", "x"); }), std::errc::no_such_file_or_directory);
}

TEST_F(ReplaceFileTest, APlantedPartialFileIsNotFollowed) {
  const fs::path other = folder.path() / "other";
  put(other, "other");
  fs::create_symlink(other, partial);
  EXPECT_EQ(errorOf([&] { grow(target, "new"); }), std::errc::not_supported);
  fs::remove(partial);
  fs::create_hard_link(other, partial);
  EXPECT_EQ(errorOf([&] { grow(target, "new"); }), std::errc::not_supported);
  EXPECT_EQ(content(other), "other");
}

TEST_F(ReplaceFileTest, TwoRunsToOneTargetThroughALinkedFolderDoNotCutEachOther) {
  fs::create_directory(folder.path() / "real");
  fs::create_directory_symlink(folder.path() / "real", folder.path() / "way");
  const fs::path real = folder.path() / "real" / "a.sql";
  {
    GrowingFile first(real);
    first.write("first ");
    EXPECT_TRUE(beingWritten(partialFile(real)));
    EXPECT_EQ(errorOf([&] { GrowingFile second(folder.path() / "way" / "a.sql"); }), std::errc::text_file_busy);
    first.write("whole");
    EXPECT_FALSE(fs::exists(real));
    first.commit();
  }
  EXPECT_EQ(content(real), "first whole");
  EXPECT_FALSE(beingWritten(real));
}

TEST_F(ReplaceFileTest, APartialFileStaysUntilTheNextRun) {
  put(target, "former");
  { GrowingFile stopped(target); }
  EXPECT_FALSE(fs::exists(partial)) << "nothing is not worth a file";
  {
    GrowingFile stopped(target);
    stopped.write("a long beginning");
  }
  EXPECT_EQ(content(partial), "a long beginning");
  EXPECT_EQ(content(target), "former");
  grow(target, "new");
  EXPECT_EQ(content(target), "new");
  EXPECT_FALSE(fs::exists(partial));
}

TEST_F(ReplaceFileTest, FilesInUseAreKnownByTheirMarks) {
  put(target, "");
  EXPECT_EQ(targetFault(target), TargetFault::None);
  EXPECT_EQ(targetFault(folder.path() / "missing"), TargetFault::None);
  for (const char* mark : {".~lock.本.txt#", "~$本.txt"}) {
    put(folder.path() / mark, "");
    EXPECT_EQ(heldBy(target), folder.path() / mark);
    EXPECT_EQ(targetFault(target), TargetFault::InUse);
    fs::remove(folder.path() / mark);
  }
}

}  // namespace
}  // namespace quillmarden
