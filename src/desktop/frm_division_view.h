#pragma once

#include "desktop/view.h"

namespace quillmarden {

class PlainGrid;
struct frmDivision;

/// "値リスト": the value lists of a System, and the entries of the one on show.
class FrmDivisionView : public View {
 public:
  FrmDivisionView(Front& front, std::string screen);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void aboutToRelease() override;

 private:
  QWidget* makeLists();
  QWidget* makeFilters();
  QWidget* makeList();
  QWidget* makeShown();
  QWidget* makeTitle();
  QWidget* makeGrid();
  QWidget* makeFoot();
  QAction* action(const char* name, const char* caption, const char* key, QWidget* owner, MenuItem& control,
                  Handler handler);
  QPushButton* button(const char* name, const char* caption, Button& control, Handler handler);

  frmDivision& record_;
  PlainGrid* grid_ = nullptr;
};

}  // namespace quillmarden
