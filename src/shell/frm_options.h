#pragma once

#include <array>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "common/settings.h"
#include "repository/session.h"
#include "screen/controls.h"
#include "screen/host.h"

namespace quillmarden {

/// A check box of the options screen: the key that it stands for, the group that it is shown in, its text.
struct OptionLine {
  std::string_view key;
  std::string_view group;
  std::string_view caption;
};
/// All switches in the order of the screen, a group's lines together.
std::span<const OptionLine> optionLines();
/// The texts of the numbered switches.
std::span<const std::string_view> spreadCopyCaptions();
std::span<const std::string_view> memberCaptions();

/// The grid colours that a person may choose, in the order of optionColours().
inline constexpr int kOptionColours = 3;
std::span<const std::string_view> optionColourCaptions();

/// The options of this user.
struct frmOptions {
  std::string caption = "オプション設定";
  AppSettings settings;    ///< as read; OK writes them with what stands in the controls
  std::string_view focus;  ///< the control that the last message was about; the view goes there and clears it
  bool saved = false;      ///< done with new settings: fonts and colours are to be applied anew
  bool unloaded = false;

  TextBox TxtFontSize2TableList;
  TextBox TxtFontSize2Spread;
  TextBox TxtSpreadRowHeightScale;
  ComboBox CmbDisplayTema;
  std::vector<CheckBox> ChkOption;  ///< one an option line
  std::array<CheckBox, 17> ChkSpreadCopy;
  std::array<CheckBox, 8> ChkPutMemberInfo;
  std::array<Label, kOptionColours> lblBackColor;  ///< each shows its colour
  std::array<Button, kOptionColours> CmdBackColor;
  Button cmdOK;
  Button cmdCancel;
};

/// Reads the settings anew from the ini file.
void frmOptions_Load(Session& session, Host& host, frmOptions& screen);
/// The palette index of one of the colours; 0 when `which` is none.
int optionColourIndex(const frmOptions& screen, int which);
/// Takes a colour that frmCOLOR gave: its index in the workbook palette and the colour itself.
void setOptionColour(frmOptions& screen, int which, int index, Colour colour);
/// Checks and writes all options, and makes them those of the session. True when that is done.
bool cmdOK_Click(Session& session, Host& host, frmOptions& screen);
void cmdCancel_Click(Session& session, Host& host, frmOptions& screen);

}  // namespace quillmarden
