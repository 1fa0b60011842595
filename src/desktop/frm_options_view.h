#pragma once

#include <span>
#include <string_view>

#include "desktop/view.h"

class QFormLayout;
class QVBoxLayout;

namespace quillmarden {

struct frmOptions;

/// "オプション設定": how screens look, what they do, what is put out.
class FrmOptionsView : public View {
 public:
  FrmOptionsView(Front& front, std::string screen);

 private:
  QWidget* makePages();
  QWidget* makeLetters();
  QWidget* makeColours();
  QWidget* makeCopyPage();
  QWidget* makeButtons();
  /// The groups of optionLines(), each at the end of its column.
  void addSwitches(std::span<QVBoxLayout* const> columns);
  void addNumber(QFormLayout* form, const char* caption, const char* unit, const char* name, TextBox& control);
  QWidget* makeChecks(const char* title, const char* name, std::span<const std::string_view> captions,
                      std::span<CheckBox> controls, int columns);

  frmOptions& record_;
};

}  // namespace quillmarden
