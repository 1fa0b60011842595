#include "desktop/frm_log_in_new_view.h"

#include <QCheckBox>
#include <QDragEnterEvent>
#include <QFrame>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QMimeData>
#include <QPainter>
#include <QProgressBar>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>
#include <utility>

#include "desktop/cover.h"
#include "desktop/menus.h"
#include "repository/login.h"
#include "shell/session_life.h"

namespace quillmarden {
namespace {

constexpr int kCoverWidth = 190;

class CoverPanel : public QWidget {
 public:
  using QWidget::QWidget;

 protected:
  void paintEvent(QPaintEvent*) override {
    QPainter painter(this);
    paintCover(painter, rect());
  }
};

QWidget* makeCover() {
  auto* cover = new CoverPanel;
  cover->setFixedWidth(kCoverWidth);
  auto* layout = new QVBoxLayout(cover);
  layout->setContentsMargins(20, 20, 12, 22);
  layout->addStretch();
  layout->addWidget(coverLabel("Quillmarden", 17, true));
  layout->addWidget(coverLabel("データベース定義管理", 10, false));
  return cover;
}

std::vector<std::string> pathsOf(const QMimeData& data) {
  std::vector<std::string> paths;
  for (const QUrl& url : data.urls()) paths.push_back(fromQt(url.toLocalFile()));
  return paths;
}

QVBoxLayout* tight(QWidget* widget) {
  auto* layout = new QVBoxLayout(widget);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  return layout;
}

}  // namespace

FrmLogInNewView::FrmLogInNewView(Front& front, std::string screen) : View(front, std::move(screen)) {
  resize(720, 500);
  setMinimumSize(600, 430);
  binder().bindTitle(this, app().logIn.caption);
  auto* layout = new QHBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(makeCover());
  layout->addWidget(makeForm(), 1);
  binder().onRefresh([this] { takeFocus(app().logIn.focus); });
  closeOnEscape();
}

QWidget* FrmLogInNewView::makeForm() {
  auto* form = new QWidget;
  auto* layout = new QVBoxLayout(form);
  layout->setContentsMargins(22, 18, 22, 18);
  layout->setSpacing(10);
  layout->addWidget(makeFolders(), 3);
  layout->addWidget(makeFiles(), 4);
  layout->addWidget(makeUser());
  layout->addWidget(makeProgress());
  layout->addWidget(makeButtons());
  return form;
}

QWidget* FrmLogInNewView::makeFolders() {
  frmLogInNew& record = app().logIn;
  auto* part = new QWidget;
  auto* layout = tight(part);
  auto* top = new QHBoxLayout;
  top->addWidget(binder().bind("ChkDataBase", new QCheckBox(QStringLiteral("他のフォルダを参照")), record.ChkDataBase,
                               [this] { ChkDataBase_Click(app().session, app().host, app().logIn); }));
  top->addStretch();
  auto* browse = new QPushButton(QStringLiteral("参照"));
  browse->setToolTip(QStringLiteral("参照画面を開き、フォルダを追加する"));
  top->addWidget(binder().bind("CmdRef", browse, record.CmdRef, [this] {
    const auto& ask = app().host.dialogs.browseFolder;
    CmdRef_Click(app().session, app().host, app().logIn, ask ? ask("フォルダを指定して下さい。") : std::string());
  }));
  layout->addLayout(top);

  folders_ = binder().bind("LstFolder", new QListView, record.LstFolder,
                           [this] { LstFolder_Click(app().session, app().host, app().logIn); });
  folders_->setEditTriggers(QAbstractItemView::NoEditTriggers);
  folders_->setTextElideMode(Qt::ElideMiddle);
  folders_->viewport()->setAcceptDrops(true);
  folders_->viewport()->installEventFilter(this);
  folders_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(folders_, &QWidget::customContextMenuRequested, this,
          [this](const QPoint& place) { popUpMenu(*this, "objMenuDel", folders_->viewport()->mapToGlobal(place)); });
  addMenuKeys(*this, folders_, "objMenuDel");
  layout->addWidget(headed("フォルダ ( ドラッグ && ドロップにて追加 )", folders_), 1);
  return part;
}

QWidget* FrmLogInNewView::makeFiles() {
  frmLogInNew& record = app().logIn;
  auto* part = new QWidget;
  auto* layout = tight(part);
  auto* files = binder().bind("LstDb", new QListView, record.LstDb);
  files->setEditTriggers(QAbstractItemView::NoEditTriggers);
  connect(files, &QAbstractItemView::doubleClicked, this, [this] { binder().later([this] { logIn(app()); }); });
  layout->addWidget(headed("接続先", files), 1);
  auto* nothing = new QLabel;
  nothing->setProperty("role", "faint");
  layout->addWidget(binder().bind("lblNoRepository", nothing, record.lblNoRepository));
  auto* below = new QHBoxLayout;
  below->addWidget(binder().bind("chkAllFile", new QCheckBox(QStringLiteral("All files")), record.chkAllFile,
                                 [this] { chkAllFile_Click(app().session, app().host, app().logIn); }));
  below->addStretch();
  auto* made = new QPushButton(QStringLiteral("新規作成"));
  made->setToolTip(QStringLiteral("新しいデータベースを作成します."));
  below->addWidget(binder().bind("CmdNewRepository", made, record.CmdNewRepository,
                                 [this] { CmdNewRepository_Click(app().session, app().host, app().logIn); }));
  layout->addLayout(below);
  return part;
}

QWidget* FrmLogInNewView::makeUser() {
  return headed("ユーザー名", binder().bind("txtUserName", new QLineEdit, app().logIn.txtUserName));
}

QWidget* FrmLogInNewView::makeProgress() {
  frmLogInNew& record = app().logIn;
  // The place is kept while the panel is hidden, so that nothing jumps.
  auto* place = new QWidget;
  place->setFixedHeight(44);
  auto* outer = tight(place);
  auto* panel = binder().bind("PicMsg", new QFrame, record.PicMsg);
  auto* layout = tight(panel);
  layout->addWidget(binder().bind("lblMsg", new QLabel, record.lblMsg));
  auto* bar = new QProgressBar;
  bar->setRange(0, 0);
  bar->setTextVisible(false);
  layout->addWidget(bar);
  outer->addWidget(panel);
  return place;
}

QWidget* FrmLogInNewView::makeButtons() {
  frmLogInNew& record = app().logIn;
  auto* row = new QWidget;
  auto* layout = new QHBoxLayout(row);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(binder().bind("CmdReplica", new QPushButton(QStringLiteral("初期データベース作成")),
                                  record.CmdReplica, [this] { startReplicaMaker(app()); }));
  layout->addStretch();
  auto* ok = binder().bind("cmdOK", new QPushButton("OK"), record.cmdOK, [this] { logIn(app()); });
  ok->setMinimumWidth(96);
  layout->addWidget(ok);
  auto* cancel = binder().bind("cmdCancel", new QPushButton(QStringLiteral("ｷｬﾝｾﾙ")), record.cmdCancel,
                               [this] { cancelLogIn(app()); });
  cancel->setMinimumWidth(96);
  layout->addWidget(cancel);
  answerEnter(ok);
  return row;
}

bool FrmLogInNewView::eventFilter(QObject* watched, QEvent* event) {
  if (!folders_ || watched != folders_->viewport()) return View::eventFilter(watched, event);
  if (event->type() == QEvent::DragEnter || event->type() == QEvent::DragMove) {
    auto* drag = static_cast<QDropEvent*>(event);
    if (drag->mimeData()->hasUrls()) drag->acceptProposedAction();
    return true;
  }
  if (event->type() == QEvent::Drop) {
    auto* drop = static_cast<QDropEvent*>(event);
    drop->acceptProposedAction();
    binder().later(
        [this, paths = pathsOf(*drop->mimeData())] { LstFolder_Drop(app().session, app().host, app().logIn, paths); });
    return true;
  }
  return View::eventFilter(watched, event);
}

}  // namespace quillmarden
