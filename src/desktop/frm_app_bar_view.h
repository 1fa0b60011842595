#pragma once

#include "desktop/view.h"

namespace quillmarden {

/// The bar that is there as long as the session.
class FrmAppBarView : public View {
 public:
  FrmAppBarView(Front& front, std::string screen);

 private:
  QToolButton* addButton(const char* name, Glyph glyph, const std::string& caption, Handler handler);
  QToolButton* makeMenuButton();
};

}  // namespace quillmarden
