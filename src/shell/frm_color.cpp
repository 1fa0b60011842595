#include "shell/frm_color.h"

#include "workbook/style.h"

namespace quillmarden {
namespace {

/// The workbook's 0xRRGGBB in the settings' order.
Colour colourOfIndex(int index) {
  const std::uint32_t rgb = paletteRgb(index);
  return (rgb & 0xFF) << 16 | (rgb & 0xFF00) | (rgb >> 16 & 0xFF);
}

}  // namespace

void frmCOLOR_Load(Session& session, Host& host, frmCOLOR& screen, const frmOptions& options, int which) {
  screen = {};
  screen.which = which;
  for (int index = 1; index <= frmCOLOR::kColours; ++index)
    screen.lblCOL[static_cast<std::size_t>(index - 1)].backColour = colourOfIndex(index);
  screen.CmdSelect.enabled = false;
  lblCOL_Click(session, host, screen, optionColourIndex(options, which));
}

void lblCOL_Click(Session& /*session*/, Host& /*host*/, frmCOLOR& screen, int index) {
  if (index < 1 || index > frmCOLOR::kColours) return;
  screen.selected = index;
  screen.CmdSelect.enabled = true;
}

void CmdSelect_Click(Session& /*session*/, Host& /*host*/, frmCOLOR& screen, frmOptions& options) {
  if (screen.selected == 0) return;
  setOptionColour(options, screen.which, screen.selected, colourOfIndex(screen.selected));
  screen.unloaded = true;
}

void CmdClose_Click(Session& /*session*/, Host& /*host*/, frmCOLOR& screen) { screen.unloaded = true; }

}  // namespace quillmarden
