#include "desktop/wait_panel.h"

#include <QApplication>
#include <QEvent>
#include <QFrame>
#include <QLabel>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <limits>

#include "desktop/binder.h"
#include "desktop/theme.h"

namespace quillmarden {
namespace {

// Runs below this stay without a panel; milliseconds.
constexpr qint64 kLongRun = 250;
// A run may yield for each of thousands of tables; the screen needs it this often, in milliseconds.
constexpr qint64 kBreath = 40;
constexpr int kCardWidth = 380;

/// Lies over a window, shades it and keeps the card in the middle.
class Shade : public QWidget {
 public:
  explicit Shade(QWidget* window) : QWidget(window) {
    if (!window) {
      setWindowFlags(Qt::Tool | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint);
      resize(kCardWidth + 80, 200);
      return;
    }
    setGeometry(window->rect());
    window->installEventFilter(this);
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    if (parentWidget()) QPainter(this).fillRect(rect(), palette().scrim);
  }
  bool eventFilter(QObject* watched, QEvent* event) override {
    if (watched == parentWidget() && event->type() == QEvent::Resize) setGeometry(parentWidget()->rect());
    return false;
  }

 private:
  static const Palette& palette() { return quillmarden::palette(); }
};

/// The window that people look at. The bar is too small to lie on.
QWidget* windowInFront() {
  const auto area = [](const QWidget* window) { return window->width() * window->height(); };
  QWidget* front = QApplication::activeWindow();
  if (front && front->height() >= 240) return front;
  for (QWidget* window : QApplication::topLevelWidgets())
    if (window->isVisible() && window->isWindow() && window->height() >= 240 && window->windowType() == Qt::Window &&
        (!front || area(window) > area(front)))
      front = window;
  return front && front->height() >= 240 ? front : nullptr;
}

bool isInput(QEvent::Type type) {
  switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::Close:
    case QEvent::Drop:
      return true;
    default:
      return false;
  }
}

}  // namespace

WaitPanel::WaitPanel(Turn& turn) : turn_(turn) {}

WaitPanel::~WaitPanel() { delete panel_; }

void WaitPanel::begin() {
  since_.invalidate();
  breath_.invalidate();
  wanted_.clear();
  done_ = total_ = 0;
  stop_ = false;
}

void WaitPanel::end() {
  if (panel_) qApp->removeEventFilter(this);
  delete panel_;
}

void WaitPanel::setText(std::string_view text) {
  if (text.empty()) return;
  wanted_ = toQt(text);
  appearWhenLong();
  showState();
}

void WaitPanel::setProgress(long done, long total) {
  done_ = done;
  total_ = total;
  appearWhenLong();
  showState();
  yield();
}

void WaitPanel::offerStop() {
  appear();
  yield();
}

bool WaitPanel::stopRequested() {
  yield();
  return stop_;
}

void WaitPanel::yield() {
  if (breath_.isValid() && breath_.elapsed() < kBreath) return;
  appearWhenLong();
  turn_.refresh();
  showState();
  // Without the panel no input is taken: a click in the middle of a handler would be lost, and so it waits.
  if (panel_)
    QCoreApplication::processEvents(QEventLoop::AllEvents, static_cast<int>(kBreath));
  else
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, static_cast<int>(kBreath));
  breath_.start();
}

void WaitPanel::appearWhenLong() {
  if (!since_.isValid()) since_.start();
  const bool tells = !wanted_.isEmpty() || total_ > 1;
  if (tells && since_.elapsed() >= kLongRun) appear();
}

void WaitPanel::appear() {
  if (panel_) return;
  panel_ = new Shade(windowInFront());
  auto* card = new QFrame(panel_);
  card->setObjectName("card");
  card->setFixedWidth(kCardWidth);
  text_ = new QLabel(card);
  text_->setTextFormat(Qt::PlainText);
  text_->setWordWrap(true);
  bar_ = new QProgressBar(card);
  auto* stop = new QPushButton(QStringLiteral("中止"), card);
  stop->setObjectName("CmdStop");
  connect(stop, &QPushButton::clicked, this, [this, stop] {
    stop_ = true;
    stop->setEnabled(false);
    if (stopPressed) stopPressed();
  });

  auto* inner = new QVBoxLayout(card);
  inner->setContentsMargins(20, 18, 20, 16);
  inner->setSpacing(12);
  inner->addWidget(text_);
  inner->addWidget(bar_);
  inner->addWidget(stop, 0, Qt::AlignRight);
  auto* outer = new QVBoxLayout(panel_);
  outer->addWidget(card, 0, Qt::AlignCenter);
  showState();
  panel_->show();
  panel_->raise();
  stop->setFocus();
  qApp->installEventFilter(this);
}

void WaitPanel::showState() {
  if (!panel_) return;
  const QString text = wanted_.isEmpty() ? QStringLiteral("処理中です...") : wanted_;
  if (text_->text() != text) text_->setText(text);
  // Qt counts in int; a run of more steps than that still shows its share.
  const long scale = 1 + total_ / std::numeric_limits<int>::max();
  bar_->setRange(0, static_cast<int>(total_ / scale));
  bar_->setValue(static_cast<int>(done_ / scale));
  bar_->setFormat(total_ > 0 ? QStringLiteral("%1 / %2").arg(done_).arg(total_) : QString());
}

bool WaitPanel::eventFilter(QObject* watched, QEvent* event) {
  if (!panel_ || !isInput(event->type()) || QApplication::activeModalWidget()) return false;
  const auto* widget = qobject_cast<QWidget*>(watched);
  // Window objects hand on to the widget below the pointer, where this filter looks again.
  if (!widget) return event->type() == QEvent::Shortcut;
  return widget != panel_ && !panel_->isAncestorOf(widget);
}

}  // namespace quillmarden
