#include "desktop/small_views.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>
#include <utility>

#include "desktop/cover.h"
#include "desktop/list_table.h"
#include "desktop/menus.h"
#include "shell/screens.h"

namespace quillmarden {
namespace {

QPushButton* closeButton(View& view, const char* caption) {
  auto* button = new QPushButton(QString::fromUtf8(caption));
  button->setObjectName("CmdClose");
  QObject::connect(button, &QPushButton::clicked, &view, &QWidget::close);
  return button;
}

class Band : public QWidget {
 public:
  Band() { setFixedHeight(110); }

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    paintCover(painter, rect());
  }
};

}  // namespace

FrmAboutView::FrmAboutView(Front& front, std::string screen) : View(front, std::move(screen)) {
  binder().bindTitle(this, app().about.caption);
  setFixedSize(420, 260);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 16);
  auto* band = new Band;
  auto* title = new QVBoxLayout(band);
  title->setContentsMargins(20, 0, 20, 12);
  title->addStretch();
  title->addWidget(coverLabel("Quillmarden", 18, true));
  layout->addWidget(band);
  auto* text = new QVBoxLayout;
  text->setContentsMargins(20, 12, 20, 0);
  text->addWidget(new QLabel(QStringLiteral("データベース定義管理")));
  text->addWidget(binder().bind("lblVersion", new QLabel, app().about.lblVersion));
  layout->addLayout(text);
  layout->addStretch();
  auto* buttons = new QHBoxLayout;
  buttons->setContentsMargins(20, 0, 20, 0);
  auto* system = new QPushButton(QStringLiteral("ｼｽﾃﾑ情報"));
  system->setObjectName("cmdSysInfo");
  connect(system, &QPushButton::clicked, this, binder().act([this] { cmdSysInfo_Click(app()); }));
  buttons->addWidget(system);
  buttons->addStretch();
  QPushButton* ok = closeButton(*this, "OK");
  buttons->addWidget(ok);
  layout->addLayout(buttons);
  answerEnter(ok);
  closeOnEscape();
}

FrmMsgView::FrmMsgView(Front& front, std::string screen) : View(front, std::move(screen)) {
  setWindowTitle(toQt(screenCaption(app(), this->screen())));
  resize(560, 360);
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(binder().bind("TxtMSG", new QPlainTextEdit, app().msg.TxtMSG), 1);
  layout->addWidget(closeButton(*this, "閉じる"), 0, Qt::AlignRight);
  closeOnEscape();
}

FrmMessageCloseView::FrmMessageCloseView(Front& front, std::string screen) : View(front, std::move(screen)) {
  setWindowFlags(Qt::SplashScreen | Qt::FramelessWindowHint);
  setFixedSize(340, 90);
  move(QGuiApplication::primaryScreen()->availableGeometry().center() - rect().center());
  auto* layout = new QVBoxLayout(this);
  auto* mark = new QLabel;
  mark->setPixmap(icon(Glyph::Quill).pixmap(QSize(32, 32), devicePixelRatio()));
  auto* row = new QHBoxLayout;
  row->setContentsMargins(16, 0, 16, 0);
  row->setSpacing(14);
  row->addWidget(mark);
  row->addWidget(binder().bind("lblMessage", new QLabel, app().messageClose.lblMessage), 1);
  layout->addLayout(row);
}

FrmDetailsListView::FrmDetailsListView(Front& front, std::string screen) : View(front, std::move(screen)) {
  setWindowTitle(toQt(screenCaption(app(), this->screen())));
  resize(420, 260);
  auto* layout = new QVBoxLayout(this);
  auto* list = new ListTable(app().detailsList.lstDetails, {QStringLiteral("詳細画面")});
  layout->addWidget(binder().bind("lstDetails", list, app().detailsList.lstDetails));
  list->setSelectionMode(QAbstractItemView::SingleSelection);
  connect(list, &QAbstractItemView::activated, this,
          [this] { binder().later([this] { lstDetails_DblClick(app()); }); });
  list->popUp = [this](int row, const QPoint& place) {
    this->front().turn().run([this, row] { chooseForPopUp(app().detailsList.lstDetails, row); });
    popUpMenu(*this, "mnutPopUpDetails", place);
  };
  closeOnEscape();
}

}  // namespace quillmarden
