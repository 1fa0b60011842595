#pragma once

#include <QLabel>
#include <functional>

namespace quillmarden {

/// A text of one line that takes the room there is and cuts with an ellipsis; what was cut stands in its tool tip.
class ElidedLabel : public QLabel {
 public:
  explicit ElidedLabel(QWidget* parent = nullptr);

  /// Makes it a control: a click, or Enter or Space on it, calls this.
  void setPress(std::function<void()> press);

  QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  bool event(QEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  bool isCut() const;

  std::function<void()> press_;
};

}  // namespace quillmarden
