#include "common/ini_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <iterator>

#include "common/settings.h"
#include "common/text.h"
#include "support/scripted_host.h"

namespace quillmarden {
namespace {

using namespace std::string_literals;

void spill(const std::string& file, std::string_view bytes) { std::ofstream(file, std::ios::binary) << bytes; }

std::string slurp(const std::string& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(IniText, ReadsAsAProfileFileDoes) {
  const IniText ini(
      "key=outside\r\n"
      "; [app]\n"
      "[ App ] \r"
      "  Key  = \" a b \" \n"
      "KEY=second\n"
      ";hidden=1\n"
      "noise\n"
      "empty=\n"
      "eq=a=b\n"
      "quote='\n"
      "[other]\nkey=o\n"
      "[APP]\nlate='x'");
  EXPECT_EQ(ini.get("app", "key"), "a b");
  EXPECT_EQ(ini.get("APP", "eq"), "a=b");
  EXPECT_EQ(ini.get("app", "late"), "x") << "a section that comes twice";
  EXPECT_EQ(ini.get("app", "quote"), "'");
  EXPECT_EQ(ini.get("other", "KEY"), "o");
  for (const char* absent : {"hidden", ";hidden", "empty", "noise", ""})
    EXPECT_EQ(ini.get("app", absent), "") << absent;
}

TEST(IniText, PutChangesOneLineAndKeepsTheRest) {
  const std::string odd = "\x82\xFF\x01 no text"s;
  IniText ini("; note\r\n[A]\r\nx=1\r\n" + odd + "\r\n\r\n[B]\r\nx=2\r\n");
  EXPECT_TRUE(ini.put("a", "X", "9"));
  EXPECT_TRUE(ini.put("A", "new", "1\r\n2\0 "s));
  EXPECT_TRUE(ini.put("C", "名", "値"));
  EXPECT_FALSE(ini.put("B", "x", " 2 ")) << "nothing new";
  EXPECT_EQ(ini.bytes(),
            "; note\r\n[A]\r\nX=9\r\n" + odd + "\r\nnew=1  2\r\n\r\n[B]\r\nx=2\r\n[C]\r\n" + toCp932("名=値") + "\r\n");
  for (const char* unusable : {"", "a=b", "[x]", ";x", " x", "x\n[B]\ny"}) EXPECT_FALSE(ini.put("A", unusable, "1"));
  EXPECT_FALSE(ini.put("a]\n[b", "x", "1"));
}

TEST(IniText, ValuesComeBackAsTheyWentIn) {
  for (const std::string value : {"\"quoted\"", "'", "''", "[x]", "a;b", "é😀", "表=ソ", "\\\\server\\share"}) {
    IniText ini;
    ini.put("s", "k", value);
    EXPECT_EQ(IniText(ini.bytes()).get("S", "K"), value);
  }
}

TEST(IniText, NulsAndLongLines) {
  const IniText ini("[s]\nk\0e\0y=v\0\n"s + std::string(1 << 20, 'x') + "=" + std::string(1 << 20, 'y') + "\nz=1");
  EXPECT_EQ(ini.get("s", "key"), "v");
  EXPECT_EQ(ini.get("s", "z"), "1");
  EXPECT_EQ(ini.get("s", std::string(1 << 20, 'X')).size(), 1U << 20);
}

TEST(IniFile, WritersDoNotUndoEachOther) {
  TempFolder folder;
  IniFile first(folder.path() / "new" / "folder" / "t.ini");
  IniFile second(first.path());
  first.put("s", "a", "1");
  second.put("s", "b", "2");
  first.put("s", "c", "3");
  const IniFile read(first.path());
  EXPECT_EQ(read.get("s", "a") + read.get("s", "b") + read.get("s", "c"), "123");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(first.path().parent_path()), {}), 1)
      << "nothing is left beside the file";
}

TEST(IniFile, WhatCannotBeWrittenIsIgnored) {
  TempFolder folder;
  std::filesystem::create_directory(folder.path() / "t.ini");
  IniFile directory(folder.path() / "t.ini");
  directory.put("s", "k", "v");
  IniFile below(folder.path() / "t.ini" / "file");
  spill(below.path().string(), "[s]\nk=v");
  IniFile underFile(below.path() / "x.ini");
  underFile.put("s", "k", "v");
  EXPECT_EQ(slurp(below.path().string()), "[s]\nk=v");
  // A pipe must not make anybody wait.
  ASSERT_EQ(mkfifo(folder.file("pipe").c_str(), 0600), 0);
  EXPECT_EQ(IniFile(folder.path() / "pipe").get("s", "k"), "");
}

TEST(IniFile, LinkAndRightsStay) {
  TempFolder folder;
  spill(folder.file("real.ini"), "[s]\nk=1\n");
  std::filesystem::permissions(folder.file("real.ini"), std::filesystem::perms(0640));
  std::filesystem::create_symlink("real.ini", folder.path() / "t.ini");
  IniFile(folder.path() / "t.ini").put("s", "k", "2");
  EXPECT_TRUE(std::filesystem::is_symlink(folder.path() / "t.ini"));
  EXPECT_EQ(slurp(folder.file("real.ini")), "[s]\r\nk=2\r\n");
  EXPECT_EQ(std::filesystem::status(folder.file("real.ini")).permissions(), std::filesystem::perms(0640));
}

TEST(Settings, MissingFileGivesDefaultsAndWritesThreeKeys) {
  TempFolder folder;
  IniFile ini(folder.path() / "tableinf.ini");
  const AppSettings settings = readAppSettings(ini);
  EXPECT_EQ(settings.loninUserName, "admin");
  EXPECT_EQ(settings.spreadRowHeightScale, 1.3);
  EXPECT_FALSE(settings.tableListBoxDblClick) << "off for this run";
  EXPECT_TRUE(settings.spreadCopy[16] && settings.putMemberInfo[7] && settings.createSql2DropSQL);
  EXPECT_FALSE(settings.createSql2BackUpTable || settings.tableRefMark || settings.lowerFieldName);
  EXPECT_EQ(settings.backColorKey, 0xC0C0FFU);
  EXPECT_EQ(settings.backColorAdd, 0xFFC0FFU);
  EXPECT_EQ(slurp(ini.path().string()),
            "[APP_SETTING]\r\nSpreadRowHeightScale=1.3\r\nTableListBoxDblClick=1\r\nDetailsFormOpenSize=1\r\n");
  EXPECT_TRUE(readAppSettings(ini).tableListBoxDblClick) << "on from the next run";
}

TEST(Settings, OddValuesAndTheOtherKeysDefault) {
  TempFolder folder;
  spill(folder.file("t.ini"),
        "[App_Setting]\nFontSize2Spread=abc\nFontSize2TableList= 14 \nDisplayTema=1e99\nBackColorKEY=-5\n"
        "CreateSql2DropSQL=yes\nSpreadCopy3=0\nSpreadCopy4=1.0\nTableRefMark=True\nDetailsFormOpenSize=0\n"
        "LoninUserName='花子'\n[frmFind_APP_SETTING]\nlstFormVisible=1\n");
  IniFile ini(folder.path() / "t.ini");
  const AppSettings settings = readAppSettings(ini);
  EXPECT_EQ(settings.fontSize2Spread, 12);
  EXPECT_EQ(settings.fontSize2TableList, 14);
  EXPECT_EQ(settings.displayTema, 2);
  EXPECT_EQ(settings.backColorKey, 12632319U);
  EXPECT_FALSE(settings.createSql2DropSQL) << "what is not 1 is off";
  EXPECT_FALSE(settings.spreadCopy[3]);
  EXPECT_TRUE(settings.spreadCopy[4] && settings.tableRefMark);
  EXPECT_FALSE(settings.detailsFormOpenSize);
  EXPECT_EQ(gGetAppSetting(ini, "DetailsFormOpenSize"), "1") << "a missing SpreadCopy2AddRow writes this key";
  EXPECT_EQ(gGetFormSetting(ini, "frmFind", "LSTFORMVISIBLE"), "1");
  putAppSetting(ini, "SpreadCopy2AddRow", "0");
  putAppSetting(ini, "DetailsFormOpenSize", "0");
  EXPECT_FALSE(readAppSettings(ini).spreadCopy2AddRow);
  EXPECT_EQ(gGetAppSetting(ini, "DetailsFormOpenSize"), "0");
}

TEST(Settings, OptionsComeBackAsTheyWereWritten) {
  TempFolder folder;
  spill(folder.file("t.ini"), "[APP_SETTING]\nLoninUserName=suzuki\nAllFileSearch=1\nMine=x\n");
  IniFile ini(folder.path() / "t.ini");
  const AppSettings before = readAppSettings(ini);
  AppSettings changed = before;
  changed.loninUserName = "hanako";
  changed.fontSize2Spread = 10.5;
  for (const SwitchKey& key : optionSwitches()) changed.*key.setting = !(before.*key.setting);
  for (const ColourKey& key : optionColours()) changed.*key.colour += 1, changed.*key.index += 1;
  changed.spreadCopy[16] = changed.putMemberInfo[0] = false;
  changed.displayTema = 0;
  putOptions(ini, changed);

  IniFile again(ini.path());
  const AppSettings read = readAppSettings(again);
  EXPECT_EQ(read.loninUserName, "suzuki") << "the login's own";
  EXPECT_TRUE(read.allFileSearch);
  EXPECT_EQ(gGetAppSetting(again, "Mine"), "x");
  EXPECT_EQ(read.fontSize2Spread, 10.5);
  for (const SwitchKey& key : optionSwitches()) EXPECT_NE(read.*key.setting, before.*key.setting) << key.key;
  EXPECT_EQ(read.backColorKey, 12632320U);
  EXPECT_EQ(read.backColorTableNameIndex, 7);
  EXPECT_FALSE(read.spreadCopy[16] || read.putMemberInfo[0]);
  EXPECT_TRUE(read.spreadCopy[0] && read.putMemberInfo[7]);
  EXPECT_EQ(read.displayTema, 0);
}

}  // namespace
}  // namespace quillmarden
