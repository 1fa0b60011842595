#pragma once

#include "desktop/view.h"

namespace quillmarden {

struct frmCOLOR;

/// "色設定": the palette from which a grid colour is chosen. Arrow keys go through it.
class FrmColorView : public View {
 public:
  FrmColorView(Front& front, std::string screen);
  void aboutToShow() override;

 private:
  QWidget* makePalette();

  frmCOLOR& record_;
};

}  // namespace quillmarden
