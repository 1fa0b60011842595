#pragma once

#include <array>

#include "desktop/view.h"

class QLineEdit;

namespace quillmarden {

class SpreadView;
struct frmReport;

/// "レポート": the stored queries of the Repository, run into a grid.
class FrmReportView : public View {
 public:
  FrmReportView(Front& front, std::string screen);

 protected:
  void aboutToRelease() override;

 private:
  QWidget* makeQuery();
  QWidget* makeParameter(std::size_t place);
  QWidget* makeFoot();
  void find();
  void showResult();
  int neededWidth(int column) const;

  frmReport& record_;
  SpreadView* grid_;
  std::array<QLineEdit*, 2> parameters_{};
  long shownRevision_ = 0;
};

}  // namespace quillmarden
