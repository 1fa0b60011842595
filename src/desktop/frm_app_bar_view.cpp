#include "desktop/frm_app_bar_view.h"

#include <QContextMenuEvent>
#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QTimer>
#include <QToolButton>
#include <utility>

#include "desktop/elided_label.h"
#include "desktop/look_menu.h"
#include "desktop/menus.h"
#include "desktop/window_place.h"
#include "shell/frm_app_bar.h"
#include "shell/session_life.h"

namespace quillmarden {
namespace {

constexpr int kLogInWidth = 320;
constexpr int kFrameComesMs = 200;

}  // namespace

FrmAppBarView::FrmAppBarView(Front& front, std::string screen)
    : View(front, std::move(screen)), comeIn_(new QTimer(this)) {
  // A window manager puts its frame around the window a moment later.
  comeIn_->setSingleShot(true);
  comeIn_->setInterval(kFrameComesMs);
  connect(comeIn_, &QTimer::timeout, this, [this] { bringIn(*this); });
  binder().bindTitle(this, app().bar.caption);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(10, 6, 10, 6);
  layout->setSpacing(4);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  auto* mark = new QLabel;
  mark->setPixmap(icon(Glyph::Quill).pixmap(QSize(26, 26), devicePixelRatio()));
  layout->addWidget(mark);
  // A Repository may lie deep in folders with long names: its text gives way, the buttons stay.
  auto* login = new ElidedLabel;
  login->setProperty("role", "faint");
  login->setMaximumWidth(kLogInWidth);
  layout->addWidget(binder().bind("lblLogin", login, app().bar.lblLogin));
  layout->addSpacing(12);

  const frmAppBar& bar = app().bar;
  layout->addWidget(addButton("CmdMin", Glyph::Hide, bar.CmdMinCaption, [this] { CmdMin_Click(app()); }));
  layout->addWidget(addButton("CmdSQL", Glyph::Sql, bar.CmdSQLCaption, [this] { CmdSQL_Click(app()); }));
  layout->addWidget(addButton("CmdRep", Glyph::Replica, bar.CmdRepCaption, [this] { CmdRep_Click(app()); }));
  static const std::string kOptions = "オプション", kHelp = "ヘルプ", kClose = "終了";
  layout->addWidget(addButton("CmdInfo", Glyph::Gear, kOptions, [this] { CmdInfo_Click(app()); }));
  layout->addWidget(addButton("CmdHelp", Glyph::Help, kHelp, [this] { CmdHelp_Click(app()); }));
  layout->addWidget(addButton("CmdLogOff", Glyph::LogOff, bar.CmdLogOffCaption, [this] { CmdLogOff_Click(app()); }));
  layout->addWidget(addButton("CmdClose", Glyph::Close, kClose, [this] { CmdClose_Click(app()); }));
  layout->addWidget(makeMenuButton());
  binder().onRefresh([this] { fit(); });

  setContextMenuPolicy(Qt::CustomContextMenu);
  connect(this, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& place) { popUpMenu(*this, "mnutPOPUP", mapToGlobal(place)); });
  const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
  move(room.left() + (room.width() - sizeHint().width()) / 2, room.top());
}

void FrmAppBarView::fit() {
  int captions = 0;
  for (const QToolButton* button : buttons_) captions += button->fontMetrics().horizontalAdvance(button->text());
  if (std::exchange(captionsWidth_, captions) == captions) return;
  const auto show = [this](Qt::ToolButtonStyle style) {
    for (QToolButton* button : buttons_) button->setToolButtonStyle(style);
    layout()->invalidate();
  };
  show(Qt::ToolButtonTextBesideIcon);
  if (layout()->sizeHint().width() > screenRoom().width()) show(Qt::ToolButtonIconOnly);
}

QRect FrmAppBarView::screenRoom() const { return QWidget::screen()->availableGeometry(); }

void FrmAppBarView::resizeEvent(QResizeEvent* event) {
  View::resizeEvent(event);
  comeIn_->start();
}

void FrmAppBarView::showEvent(QShowEvent* event) {
  View::showEvent(event);
  comeIn_->start();
}

QToolButton* FrmAppBarView::addButton(const char* name, Glyph glyph, const std::string& caption, Handler handler) {
  QToolButton* button = glyphButton(glyph, "");
  button->setObjectName(name);
  button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  connect(button, &QToolButton::clicked, this, binder().act(std::move(handler)));
  binder().onRefresh([button, &caption] {
    if (const QString text = toQt(caption); button->text() != text) {
      button->setText(text);
      button->setToolTip(text);
    }
  });
  buttons_.push_back(button);
  return button;
}

QToolButton* FrmAppBarView::makeMenuButton() {
  QToolButton* button = glyphButton(Glyph::Menu, "メニュー");
  button->setPopupMode(QToolButton::InstantPopup);
  if (const Menu* menu = findMenu(screen(), "mnutPOPUP")) {
    QMenu* made = makeMenu(*this, *menu);
    made->addSeparator();
    made->addMenu(makeLookMenu(*this));
    button->setMenu(made);
  }
  return button;
}

}  // namespace quillmarden
