#include "common/form_settings.h"

#include <gtest/gtest.h>

#include <fstream>

#include "common/keys.h"
#include "support/scripted_host.h"

namespace quillmarden {
namespace {

class FormSettings : public testing::Test {
 protected:
  void write(const std::string& text) {
    std::ofstream(folder.file("t.ini")) << text;
    ini = IniFile(folder.path() / "t.ini");
  }

  TempFolder folder;
  IniFile ini{folder.path() / "t.ini"};
};

TEST_F(FormSettings, PositionOfANormalWindow) {
  putFormPosition(ini, "frmA", {.top = -10, .left = 20, .width = 300, .height = 200}, true);
  putFormPosition(ini, "frmFixed", {.top = 1, .left = 2, .width = 3, .height = 4}, false);
  FormPosition kept = gFormPosition(ini, "frmA");
  EXPECT_EQ(kept.top, -10);
  EXPECT_EQ(kept.left, 20);
  EXPECT_EQ(kept.width, 300);
  EXPECT_EQ(kept.height, 200);
  EXPECT_FALSE(gFormPosition(ini, "frmFixed").width);
  EXPECT_FALSE(gFormPosition(ini, "frmOther").top);

  // A maximised window keeps the place that it had.
  putFormPosition(ini, "frmA", {.windowState = FormPosition::kMaximised, .top = 0, .left = 0}, true);
  kept = gFormPosition(ini, "frmA");
  EXPECT_EQ(kept.windowState, FormPosition::kMaximised);
  EXPECT_EQ(kept.left, 20);
  putFormPosition(ini, "frmA", {.windowState = FormPosition::kMinimised}, true);
  EXPECT_EQ(gFormPosition(ini, "frmA").windowState, FormPosition::kNormal);
}

TEST_F(FormSettings, OddPositionsAreLeftOut) {
  write("[Form_Setting]\nfrmA_WindowState=9\nfrmA_TOP=abc\nfrmA_LEFT=1e99\nfrmA_WIDTH=-5\nfrmA_HEIGHT= 40.7\n");
  const FormPosition kept = gFormPosition(ini, "frmA");
  EXPECT_EQ(kept.windowState, FormPosition::kNormal);
  EXPECT_FALSE(kept.top || kept.left || kept.width);
  EXPECT_EQ(kept.height, 40);
}

TEST_F(FormSettings, ControlsComeBackByTheirKind) {
  TextBox text{"値"};
  Label label;
  label.caption = "  説明 ";
  CheckBox check{true};
  OptionButton option{true};
  MenuItem menu;
  menu.checked = true;
  ComboBox combo;
  combo.text = "を含む";
  const std::vector<std::pair<std::string, ControlRef>> controls = {{"txt", &text},  {"lbl", &label},
                                                                    {"chk", &check}, {controlKey("opt", 2), &option},
                                                                    {"mnu", &menu},  {"cmb", &combo}};
  for (const auto& [key, control] : controls) putControlSetting(ini, "frmA", key, control);
  EXPECT_EQ(ini.get("frmA_APP_SETTING", "opt:2"), "1");

  text = {}, label = {}, check = {}, option = {}, menu = {}, combo = {};
  for (const auto& [key, control] : controls) gControlSetting(ini, "frmA", key, control);
  EXPECT_EQ(text.text, "値");
  EXPECT_EQ(label.caption, " 説明 ");
  EXPECT_TRUE(check.value && option.value && menu.checked);
  EXPECT_EQ(combo.text, "を含む");
  gControlSetting(ini, "frmA", "other", &text);
  EXPECT_EQ(text.text, "値") << "nothing kept, nothing changed";
}

TEST_F(FormSettings, ListsTakeOnlyWhatTheyHold) {
  write("[frmA_APP_SETTING]\nlst=b\ngone=x\n");
  ListBox list;
  for (const char* row : {"a", "b"}) list.add(row);
  list.selected[0] = true;
  gControlSetting(ini, "frmA", "lst", &list);
  EXPECT_EQ(list.text(), "b");
  EXPECT_EQ(list.selected, (std::vector<bool>{false, true}));
  gControlSetting(ini, "frmA", "gone", &list);
  EXPECT_EQ(list.text(), "b");

  ComboBox combo{"a", {"a", "b"}};
  gControlSetting(ini, "frmA", "gone", &combo, true);
  EXPECT_EQ(combo.text, "a");
  gControlSetting(ini, "frmA", "lst", &combo, true);
  EXPECT_EQ(combo.text, "b");
  EXPECT_EQ(combo.entries.size(), 2u);
}

TEST(Keys, EachCombinationHasItsNumberAndName) {
  const std::pair<int, const char*> expected[] = {{0, ""},    {5, "Shift"},     {6, "Ctrl"},     {3, "Shift+Ctrl"},
                                                  {7, "Alt"}, {2, "Shift+Alt"}, {4, "Ctrl+Alt"}, {1, "Shift+Ctrl+Alt"}};
  for (int mask = 0; mask < 8; ++mask) {
    std::string text;
    EXPECT_EQ(gShiftState(mask | 16, &text), expected[mask].first) << mask;
    EXPECT_EQ(text, expected[mask].second);
  }
  EXPECT_EQ(gShiftState(kCtrl), kCtrlAlone);
}

}  // namespace
}  // namespace quillmarden
