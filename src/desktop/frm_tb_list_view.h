#pragma once

#include <QString>

#include "desktop/view.h"

class QComboBox;
class QLabel;
class QSplitter;

namespace quillmarden {

class ListTable;

/// The table list: filters above, the list with its selection beside it, the open screens below.
class FrmTbListView : public View {
 public:
  FrmTbListView(Front& front, std::string screen);

 private:
  QWidget* makeSystem();
  QWidget* makeSearch();
  QWidget* makeFilters();
  QWidget* makeSwitches();
  QWidget* makeCommands();
  QWidget* makeLists();
  QWidget* makeTables();
  QWidget* makeSelection();
  QWidget* makeForms();
  QWidget* makeStatus();
  QComboBox* makeFilter(const char* name, const char* caption, ComboBox& control);

  Handler onList(void (*handler)(Session&, Host&, frmTBList&));
  Handler rebuild();
  void tableChosen();
  void openPopUp(int row, const QPoint& place);
  void showPanes();
  void showStatus();

  ListTable* tables_ = nullptr;
  ListTable* chosen_ = nullptr;
  QWidget* selection_ = nullptr;
  QWidget* forms_ = nullptr;
  QSplitter* divider_ = nullptr;
  QLabel* count_ = nullptr;
  QLabel* session_ = nullptr;
};

}  // namespace quillmarden
