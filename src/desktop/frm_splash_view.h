#pragma once

#include "desktop/view.h"

namespace quillmarden {

/// The first picture of the program, with its version.
class FrmSplashView : public View {
 public:
  FrmSplashView(Front& front, std::string screen);

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace quillmarden
