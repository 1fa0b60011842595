#pragma once

#include "desktop/view.h"

namespace quillmarden {

// The small screens around a session, which show a text and a button.

class FrmAboutView : public View {
 public:
  FrmAboutView(Front& front, std::string screen);
};

class FrmMsgView : public View {
 public:
  FrmMsgView(Front& front, std::string screen);
};

class FrmMessageCloseView : public View {
 public:
  FrmMessageCloseView(Front& front, std::string screen);
};

class FrmDetailsListView : public View {
 public:
  FrmDetailsListView(Front& front, std::string screen);
};

}  // namespace quillmarden
