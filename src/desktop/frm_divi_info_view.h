#pragma once

#include "desktop/view.h"

namespace quillmarden {

/// "値リスト基本情報": the record of a value list, new or to be changed. Other windows wait for it.
class FrmDiviInfoView : public View {
 public:
  FrmDiviInfoView(Front& front, std::string screen);

  void aboutToShow() override;
};

/// "値リスト一覧": chooses a value list for a field.
class FrmDiviRefView : public View {
 public:
  FrmDiviRefView(Front& front, std::string screen);
};

}  // namespace quillmarden
