#include "shell/frm_options.h"

#include <set>

#include "shell/frm_color.h"
#include "support/open_repository.h"

namespace quillmarden {
namespace {

class Options : public OpenRepositoryTest {
 protected:
  void SetUp() override {
    OpenRepositoryTest::SetUp();
    load();
  }
  void load() { frmOptions_Load(session, scripted.host, screen); }
  bool press() { return cmdOK_Click(session, scripted.host, screen); }
  CheckBox& option(std::string_view key) {
    for (std::size_t i = 0; i < optionLines().size(); ++i)
      if (optionLines()[i].key == key) return screen.ChkOption[i];
    throw std::out_of_range(std::string(key));
  }

  frmOptions screen;
};

TEST_F(Options, EverySwitchHasOneLineAndEveryLineASwitch) {
  std::set<std::string_view> keys, lines;
  for (const SwitchKey& key : optionSwitches()) keys.insert(key.key);
  for (const OptionLine& line : optionLines()) EXPECT_TRUE(lines.insert(line.key).second) << line.key;
  EXPECT_EQ(keys, lines);
  EXPECT_EQ(spreadCopyCaptions().size(), screen.ChkSpreadCopy.size());
  EXPECT_EQ(memberCaptions().size(), screen.ChkPutMemberInfo.size());
}

TEST_F(Options, SavedOptionsHoldForTheSessionAndTheNext) {
  EXPECT_EQ(screen.TxtFontSize2TableList.text, "12");
  EXPECT_EQ(screen.TxtSpreadRowHeightScale.text, "1.3");
  EXPECT_EQ(screen.CmbDisplayTema.text, "Windows 10/11");
  EXPECT_TRUE(option("CreateSql2DropSQL").value);
  EXPECT_TRUE(option("TableListBoxDblClick").value) << "written at the start, so on from now on";
  screen.TxtFontSize2TableList.text = " 14.5 ";
  screen.CmbDisplayTema.text = "クラシック";
  option("CreateSql2DropSQL").value = false;
  option("TableRefMark").value = true;
  screen.ChkSpreadCopy[3].value = screen.ChkPutMemberInfo[5].value = false;
  ASSERT_TRUE(press());
  EXPECT_TRUE(screen.saved && screen.unloaded);
  EXPECT_EQ(session.settings.fontSize2TableList, 14.5);
  EXPECT_TRUE(session.settings.tableRefMark);

  openUserData(session, scripted.host);
  load();
  EXPECT_EQ(screen.TxtFontSize2TableList.text, "14.5");
  EXPECT_EQ(screen.CmbDisplayTema.text, "クラシック");
  EXPECT_FALSE(option("CreateSql2DropSQL").value || screen.ChkSpreadCopy[3].value || screen.ChkPutMemberInfo[5].value);
  EXPECT_TRUE(option("TableRefMark").value && screen.ChkSpreadCopy[4].value);
}

TEST_F(Options, NumbersOutOfRangeAreRefused) {
  const std::string font = "文字の大きさは、6 から 72 までの数値で指定して下さい.";
  for (const char* text : {"", "abc", "5.9", "73"}) {
    screen.TxtFontSize2Spread.text = text;
    scripted.expect("入力確認", font);
    EXPECT_FALSE(press()) << text;
    EXPECT_EQ(screen.focus, "TxtFontSize2Spread");
  }
  screen.TxtFontSize2Spread.text = "72";
  screen.TxtSpreadRowHeightScale.text = "0.5";
  scripted.expect("入力確認", "行の高さの倍率は、1 から 5 までの数値で指定して下さい.");
  EXPECT_FALSE(press());
  EXPECT_EQ(gGetAppSetting(*session.ini, "FontSize2Spread"), "") << "nothing is written before all is right";
  EXPECT_FALSE(screen.unloaded);
}

TEST_F(Options, OddThemeOfTheFileOpensAsTheDefault) {
  putAppSetting(*session.ini, "DisplayTema", "-1");
  load();
  EXPECT_EQ(screen.CmbDisplayTema.text, "Windows 10/11");
}

TEST_F(Options, ColourGoesThroughThePalette) {
  frmCOLOR palette;
  frmCOLOR_Load(session, scripted.host, palette, screen, 2);
  EXPECT_EQ(palette.selected, 6);
  EXPECT_EQ(palette.lblCOL[2].backColour, 0x0000FFU) << "index 3 is red, blue first in the settings";
  EXPECT_EQ(palette.lblCOL[37].backColour, 0xCC99FFU);
  for (int outside : {0, 57, -1}) lblCOL_Click(session, scripted.host, palette, outside);
  EXPECT_EQ(palette.selected, 6);
  lblCOL_Click(session, scripted.host, palette, 38);
  CmdSelect_Click(session, scripted.host, palette, screen);
  EXPECT_TRUE(palette.unloaded);
  EXPECT_EQ(screen.lblBackColor[2].backColour, 0xCC99FFU);

  frmCOLOR_Load(session, scripted.host, palette, screen, 0);
  lblCOL_Click(session, scripted.host, palette, 3);
  CmdClose_Click(session, scripted.host, palette);
  ASSERT_TRUE(press());
  EXPECT_EQ(gGetAppSetting(*session.ini, "BackColorTABLENAME"), "13408767");
  EXPECT_EQ(gGetAppSetting(*session.ini, "BackColorTABLENAME_INDEX"), "38");
  EXPECT_EQ(session.settings.backColorTableName, 0xCC99FFU);
  EXPECT_EQ(gGetAppSetting(*session.ini, "BackColorKEY"), "12632319") << "what was not chosen stays";
}

}  // namespace
}  // namespace quillmarden
