#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QPointer>
#include <string_view>

#include "desktop/turn.h"

class QLabel;
class QProgressBar;
class QWidget;

namespace quillmarden {

/// What a long run shows of itself: a text, a bar and a stop button over the window in front. A run that ends soon
/// never shows it. While it stands, input reaches nothing but its button and a message box.
class WaitPanel : public QObject {
 public:
  explicit WaitPanel(Turn& turn);
  ~WaitPanel() override;

  /// A handler begins; what the former one asked for is forgotten.
  void begin();
  /// The handler has ended, the panel goes.
  void end();
  /// The empty text changes nothing: the next table of a run brings the next text.
  void setText(std::string_view text);
  void setProgress(long done, long total);
  /// Shows the panel now: the run has asked for a stop button.
  void offerStop();
  /// True once the stop button has been pressed, until the handler ends.
  bool stopRequested();
  /// Repaints, and takes input for the stop button. Other input waits until the handler has ended.
  void yield();

  std::function<void()> stopPressed;
  bool visible() const { return !panel_.isNull(); }

  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void appear();
  void appearWhenLong();
  void showState();

  Turn& turn_;
  QPointer<QWidget> panel_;  ///< dies with the window that it lies on
  QPointer<QLabel> text_;
  QPointer<QProgressBar> bar_;
  QElapsedTimer since_;   ///< the handler's first sign of a long run
  QElapsedTimer breath_;  ///< the last yield
  QString wanted_;
  long done_ = 0;
  long total_ = 0;
  bool stop_ = false;
};

}  // namespace quillmarden
