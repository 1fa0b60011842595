#pragma once

#include "desktop/view.h"

class QLineEdit;

namespace quillmarden {

struct frmKENSU;

/// "件数定義情報": the row-count definitions of a System.
class FrmKensuView : public View {
 public:
  FrmKensuView(Front& front, std::string screen);

 private:
  QWidget* makeDefinitions();
  QWidget* makeFields();
  QWidget* makeTableNames();
  QWidget* makeTables();
  QWidget* makeFoot();

  frmKENSU& record_;
};

}  // namespace quillmarden
