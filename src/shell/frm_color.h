#pragma once

#include <array>
#include <string>

#include "repository/session.h"
#include "screen/controls.h"
#include "screen/host.h"
#include "shell/frm_options.h"

namespace quillmarden {

/// The palette from which a grid colour of the options is chosen: the colours of a workbook, so that the screens and
/// the books that the program fills look alike.
struct frmCOLOR {
  static constexpr int kColours = 56;

  std::string caption = "色設定";
  std::array<Label, kColours> lblCOL;  ///< colour index 1 first
  int which = 0;                       ///< the grid colour of the options that is being chosen
  int selected = 0;                    ///< colour index; 0 while nothing is chosen
  bool unloaded = false;
  Button CmdSelect;
  Button CmdClose;
};

/// Opens the palette for one of the options' colours, with its index chosen.
void frmCOLOR_Load(Session& session, Host& host, frmCOLOR& screen, const frmOptions& options, int which);
/// A click on a colour; `index` counts from 1, another one is ignored.
void lblCOL_Click(Session& session, Host& host, frmCOLOR& screen, int index);
/// Gives the chosen colour to the options.
void CmdSelect_Click(Session& session, Host& host, frmCOLOR& screen, frmOptions& options);
void CmdClose_Click(Session& session, Host& host, frmCOLOR& screen);

}  // namespace quillmarden
