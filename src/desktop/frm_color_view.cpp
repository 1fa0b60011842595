#include "desktop/frm_color_view.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QFrame>
#include <QGridLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <functional>
#include <utility>

#include "desktop/theme.h"
#include "shell/frm_color.h"
#include "shell/screen_buttons.h"

namespace quillmarden {

namespace {

constexpr int kColumns = 8;
constexpr int kSide = 38;

QString swatchName(int index) { return QStringLiteral("lblCOL:%1").arg(index); }

/// A colour as it is, in a light look and a dark one alike. A press chooses it.
class Swatch : public QAbstractButton {
 public:
  std::function<void()> taken;

  explicit Swatch(int index) {
    setObjectName(swatchName(index));
    setCheckable(true);
    setFixedSize(kSide, kSide);
    setFocusPolicy(Qt::StrongFocus);
    setToolTip(QStringLiteral("色 %1").arg(index));
    setAccessibleName(toolTip());
  }

  void show(QColor colour) {
    if (std::exchange(colour_, colour) != colour) update();
  }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const quillmarden::Palette& colours = quillmarden::palette();
    painter.setPen(QPen(colours.line, 1));
    painter.setBrush(colour_);
    painter.drawRoundedRect(QRectF(rect()).adjusted(5.5, 5.5, -5.5, -5.5), 5, 5);
    if (!isChecked() && !hasFocus()) return;
    painter.setPen(QPen(isChecked() ? colours.accent : colours.faint, isChecked() ? 2.5 : 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(2, 2, -2, -2), 7, 7);
  }

  void mouseDoubleClickEvent(QMouseEvent* event) override {
    QAbstractButton::mouseDoubleClickEvent(event);
    if (taken) taken();
  }

 private:
  QColor colour_;
};

}  // namespace

FrmColorView::FrmColorView(Front& front, std::string screen) : View(front, std::move(screen)), record_(app().color) {
  setWindowModality(Qt::ApplicationModal);
  binder().bindTitle(this, record_.caption);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(16, 16, 16, 16);
  rows->setSpacing(14);
  rows->addWidget(makePalette(), 1);
  auto* buttons = new QHBoxLayout;
  buttons->addStretch(1);
  auto* select = new QPushButton(QStringLiteral("選択"));
  buttons->addWidget(binder().bind("CmdSelect", select, record_.CmdSelect, [this] { CmdSelect_Click(app()); }));
  buttons->addWidget(binder().bind("CmdClose", new QPushButton(QStringLiteral("閉じる")), record_.CmdClose,
                                   [this] { CmdClose_Click(app().session, app().host, record_); }));
  rows->addLayout(buttons);
  rows->setSizeConstraint(QLayout::SetFixedSize);
  answerEnter(select);
  closeOnEscape();
}

QWidget* FrmColorView::makePalette() {
  binder().unseen({"lblCOL"});
  auto* card = new QFrame;
  card->setObjectName("card");
  auto* grid = new QGridLayout(card);
  grid->setContentsMargins(10, 10, 10, 10);
  grid->setSpacing(2);
  auto* group = new QButtonGroup(card);
  for (int index = 1; index <= frmCOLOR::kColours; ++index) {
    auto* swatch = new Swatch(index);
    swatch->taken = binder().act([this] { CmdSelect_Click(app()); });
    connect(swatch, &QAbstractButton::clicked, this,
            binder().act([this, index] { lblCOL_Click(app().session, app().host, record_, index); }));
    group->addButton(swatch, index);
    grid->addWidget(swatch, (index - 1) / kColumns, (index - 1) % kColumns);
    binder().onRefresh([this, swatch, index] {
      swatch->show(toColour(record_.lblCOL[static_cast<std::size_t>(index - 1)].backColour.value_or(0)));
      if (record_.selected == index) swatch->setChecked(true);
    });
  }
  return card;
}

void FrmColorView::aboutToShow() {
  if (auto* chosen = findChild<QWidget*>(swatchName(record_.selected))) chosen->setFocus();
}

}  // namespace quillmarden
