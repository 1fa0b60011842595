#pragma once

#include "desktop/view.h"

class QAbstractButton;
class QTimer;
class QToolButton;

namespace quillmarden {

class DetailGrid;
struct frmTBDetail;

/// "詳細画面": the names and facts of a table, its field grid, and what belongs to the grid's current row.
class FrmTbDetailView : public View {
 public:
  FrmTbDetailView(Front& front, std::string screen);
  ~FrmTbDetailView() override;

  void aboutToShow() override;
  DetailGrid& grid() { return *grid_; }

 protected:
  void closeEvent(QCloseEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void aboutToRelease() override;

 private:
  QWidget* makeHead();
  QWidget* makeCommands();
  QWidget* makeGridTools();
  QWidget* makeRowHelpers();
  QWidget* makeFoot();
  QToolButton* tool(const char* caption, const char* toolTip, const char* menuEntry);
  void addKey(const char* key, QAbstractButton* button);
  void update();
  void keepBackup();
  bool factsHidden();
  void layOut();
  void showFacts(bool on);

  frmTBDetail& record_;
  DetailGrid* grid_;
  QWidget* facts_ = nullptr;
  QWidget* helpers_ = nullptr;
  QToolButton* factsButton_ = nullptr;
  QTimer* backupTimer_;
  long seenRevision_ = -1;
  bool shownBefore_ = false;
};

}  // namespace quillmarden
