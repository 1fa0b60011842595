#pragma once

#include "desktop/view.h"

namespace quillmarden {

class PlainGrid;
struct frmMemo;

/// "付帯メモ": the memo lines of a table.
class FrmMemoView : public View {
 public:
  FrmMemoView(Front& front, std::string screen);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void aboutToRelease() override;

 private:
  QWidget* makeHead();
  QLayout* makeFoot();
  std::string tableName();

  frmMemo& record_;
  PlainGrid* grid_;
};

}  // namespace quillmarden
