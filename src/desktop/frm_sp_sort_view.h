#pragma once

#include "desktop/view.h"

namespace quillmarden {

/// "並び替え設定": the keys by which a detail screen sorts its rows.
class FrmSpSortView : public View {
 public:
  FrmSpSortView(Front& front, std::string screen);
};

}  // namespace quillmarden
