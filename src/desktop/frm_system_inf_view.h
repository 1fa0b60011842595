#pragma once

#include "desktop/view.h"

class QBoxLayout;
class QFormLayout;
class QLineEdit;
class QPushButton;

namespace quillmarden {

struct frmSystemInf;

/// "システム基本情報": one System, new or to be changed.
class FrmSystemInfView : public View {
 public:
  FrmSystemInfView(Front& front, std::string screen);

 private:
  using Press = void (*)(Session& session, Host& host, frmSystemInf& screen);

  QWidget* makeBasics();
  QWidget* makeDatabase();
  QWidget* makeKindPanel();
  QWidget* makeAccessPanel();
  QWidget* makeLayoutFile();
  QWidget* makeTools();
  QWidget* makeRename();
  QWidget* makeNaming();
  QWidget* makeButtons();
  QLineEdit* line(const char* name, TextBox& control, Handler handler = {});
  QWidget* check(const char* name, const char* caption, CheckBox& control, Press press = nullptr);
  QPushButton* button(const char* name, const char* caption, const char* toolTip, Button& control, Handler handler);
  Handler handler(Press press);
  /// A caption of the record and its field, which is seen where the caption is.
  void addCaptioned(QFormLayout* form, const char* labelName, Label& label, const char* name, TextBox& control);

  frmSystemInf& record_;
};

}  // namespace quillmarden
