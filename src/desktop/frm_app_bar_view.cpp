#include "desktop/frm_app_bar_view.h"

#include <QContextMenuEvent>
#include <QFrame>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QScreen>
#include <QToolButton>
#include <utility>

#include "desktop/look_menu.h"
#include "desktop/menus.h"
#include "shell/frm_app_bar.h"
#include "shell/session_life.h"

namespace quillmarden {

FrmAppBarView::FrmAppBarView(Front& front, std::string screen) : View(front, std::move(screen)) {
  binder().bindTitle(this, app().bar.caption);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(10, 6, 10, 6);
  layout->setSpacing(4);
  layout->setSizeConstraint(QLayout::SetFixedSize);
  auto* mark = new QLabel;
  mark->setPixmap(icon(Glyph::Quill).pixmap(QSize(26, 26), devicePixelRatio()));
  layout->addWidget(mark);
  auto* login = binder().bind("lblLogin", new QLabel, app().bar.lblLogin);
  login->setProperty("role", "faint");
  layout->addWidget(login);
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

  setContextMenuPolicy(Qt::CustomContextMenu);
  connect(this, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& place) { popUpMenu(*this, "mnutPOPUP", mapToGlobal(place)); });
  const QRect room = QGuiApplication::primaryScreen()->availableGeometry();
  move(room.left() + (room.width() - sizeHint().width()) / 2, room.top());
}

QToolButton* FrmAppBarView::addButton(const char* name, Glyph glyph, const std::string& caption, Handler handler) {
  QToolButton* button = glyphButton(glyph, "");
  button->setObjectName(name);
  button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  connect(button, &QToolButton::clicked, this, binder().act(std::move(handler)));
  binder().onRefresh([button, &caption] {
    if (const QString text = toQt(caption); button->text() != text) button->setText(text);
  });
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
