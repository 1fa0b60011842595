#pragma once

#include "desktop/view.h"

class QFormLayout;
class QLineEdit;

namespace quillmarden {

struct frmTBInfo;

/// "テーブル基本情報": the header of a table, new or to be changed.
class FrmTbInfoView : public View {
 public:
  FrmTbInfoView(Front& front, std::string screen);

 private:
  QWidget* makeNames();
  QWidget* makeBasics();
  QWidget* makeFigures();
  QWidget* makeFiles();
  QWidget* makeFlags();
  QWidget* makeButtons();
  void markMissing();
  void watchRequired();
  class QComboBox* combo(const char* name, ComboBox& control, bool editable, Handler handler = {});
  QLineEdit* line(const std::string& name, TextBox& control, Handler handler = {});

  frmTBInfo& record_;
};

}  // namespace quillmarden
