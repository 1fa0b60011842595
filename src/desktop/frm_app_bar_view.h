#pragma once

#include "desktop/view.h"

class QTimer;

namespace quillmarden {

/// The bar that is there as long as the session.
class FrmAppBarView : public View {
 public:
  FrmAppBarView(Front& front, std::string screen);

 protected:
  void resizeEvent(QResizeEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  /// Buttons without their captions where the screen is too narrow for those.
  void fit();
  QRect screenRoom() const;
  QToolButton* addButton(const char* name, Glyph glyph, const std::string& caption, Handler handler);
  QToolButton* makeMenuButton();

  QTimer* comeIn_;
  std::vector<QToolButton*> buttons_;
  int captionsWidth_ = 0;
};

}  // namespace quillmarden
