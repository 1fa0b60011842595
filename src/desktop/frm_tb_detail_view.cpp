#include "desktop/frm_tb_detail_view.h"

#include <QBoxLayout>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QShortcut>
#include <QSplitter>
#include <QTimer>
#include <QToolButton>

#include "common/settings.h"
#include "desktop/detail_grid.h"
#include "desktop/detail_header.h"
#include "desktop/elided_label.h"
#include "desktop/list_table.h"
#include "desktop/menus.h"
#include "editing/detail_navigation.h"
#include "editing/frm_tb_detail_edit.h"
#include "shell/detail_commands.h"

namespace quillmarden {

namespace {

constexpr int kTbDetailMargin = 12;
/// How long an edit may stand before it is kept for the case of a crash.
constexpr int kBackupDelayMs = 1000;
constexpr QSize kSize(1180, 700);
/// A further detail screen, where the options ask for one size for all of them.
constexpr QSize kFurtherSize(1000, 600);
/// A window below this size, as when several stand side by side, leaves its room to the grid.
constexpr QSize kRoomForFacts(900, 480);
constexpr QSize kSmallest(640, 300);
constexpr int kSmallestHelper = 24;
constexpr const char* kFactsHidden = "factsHidden";

QWidget* panel(QLabel* heading, QWidget* body) {
  auto* around = new QWidget;
  auto* layout = new QVBoxLayout(around);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(2);
  layout->addWidget(heading);
  layout->addWidget(body, 1);
  return around;
}

QLabel* heading(const char* words) {
  auto* label = new ElidedLabel;
  label->setText(QString::fromUtf8(words));
  label->setProperty("role", "heading");
  return label;
}

ListTable* plainList(const ListBox& list) {
  auto* table = new ListTable(list, {});
  table->horizontalHeader()->hide();
  return table;
}

}  // namespace

FrmTbDetailView::FrmTbDetailView(Front& front, std::string screen)
    : View(front, std::move(screen)),
      record_(app().detail(this->screen())),
      grid_(new DetailGrid(*this, record_)),
      backupTimer_(new QTimer(this)) {
  binder().bindTitle(this, record_.caption);
  setFocusProxy(grid_);
  binder().unseen({"Spread", "mnuEditing", "mnuPartition"});

  auto* below = new QSplitter(Qt::Vertical);
  below->setChildrenCollapsible(false);
  auto* sheet = new QWidget;
  auto* sheetRows = new QVBoxLayout(sheet);
  sheetRows->setContentsMargins(0, 0, 0, 0);
  sheetRows->setSpacing(4);
  sheetRows->addWidget(makeGridTools());
  sheetRows->addWidget(grid_, 1);
  below->addWidget(sheet);
  helpers_ = makeRowHelpers();
  below->addWidget(helpers_);
  below->setStretchFactor(0, 1);
  below->setSizes({500, 120});

  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(0);
  QMenuBar* bar = makeMenuBar(*this);
  for (QAction* action : bar->actions())
    if (QMenu* menu = action->menu()) connect(menu, &QMenu::aboutToShow, this, [this] { grid_->endEdit(); });
  rows->addWidget(bar);
  auto* body = new QVBoxLayout;
  body->setContentsMargins(kTbDetailMargin, kTbDetailMargin, kTbDetailMargin, 4);
  body->setSpacing(8);
  body->addWidget(makeHead());
  body->addWidget(below, 1);
  body->addWidget(makeFoot());
  rows->addLayout(body, 1);
  // The layout's own smallest size would keep windows from standing side by side.
  rows->setSizeConstraint(QLayout::SetNoConstraint);
  setMinimumSize(kSmallest);
  resize(kSize);

  backupTimer_->setSingleShot(true);
  backupTimer_->setInterval(kBackupDelayMs);
  connect(backupTimer_, &QTimer::timeout, this, [this] { keepBackup(); });
  binder().onRefresh([this] { grid_->showRecord(); });
  binder().onRefresh([this] {
    if (seenRevision_ == record_.Spread.revision()) return;
    seenRevision_ = record_.Spread.revision();
    // Not put off by the next change: someone may type without a pause.
    if (!backupTimer_->isActive()) backupTimer_->start();
  });
}

FrmTbDetailView::~FrmTbDetailView() = default;

void FrmTbDetailView::aboutToShow() {
  if (std::exchange(shownBefore_, true)) return;
  const bool further = screen().find(':') != std::string::npos;
  if (further && app().session.settings.detailsFormOpenSize) resize(kFurtherSize);
  grid_->setFocus();
}

QWidget* FrmTbDetailView::makeHead() {
  auto* card = new QFrame;
  card->setObjectName(QStringLiteral("card"));
  auto* rows = new QVBoxLayout(card);
  rows->setContentsMargins(kTbDetailMargin, 8, kTbDetailMargin, 8);
  rows->setSpacing(8);
  auto* top = new QHBoxLayout;
  top->setSpacing(12);
  top->addWidget(makeDetailTitle(*this, record_), 1);
  top->addWidget(makeCommands());
  rows->addLayout(top);
  facts_ = makeDetailFacts(*this, record_);
  rows->addWidget(facts_);
  return card;
}

bool FrmTbDetailView::factsHidden() {
  const auto& ini = app().session.ini;
  return ini && gGetFormSetting(*ini, "frmTBDetail", kFactsHidden) == "1";
}

void FrmTbDetailView::resizeEvent(QResizeEvent* event) {
  View::resizeEvent(event);
  layOut();
}

void FrmTbDetailView::layOut() {
  const bool room = width() >= kRoomForFacts.width() && height() >= kRoomForFacts.height();
  factsButton_->setEnabled(room);
  facts_->setVisible(room && factsButton_->isChecked());
  helpers_->setVisible(height() >= kRoomForFacts.height());
}

void FrmTbDetailView::showFacts(bool on) {
  layOut();
  if (auto& ini = app().session.ini) putFormSetting(*ini, "frmTBDetail", kFactsHidden, on ? "0" : "1");
}

QWidget* FrmTbDetailView::makeCommands() {
  auto* around = new QWidget;
  auto* row = new QHBoxLayout(around);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(6);
  around->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
  Application& app = this->app();
  const auto step = [this, &app](int rows) {
    grid_->endEdit();
    front().turn().run([&] { showNeighbour(app.session, app.host, app.list, record_, rows); });
  };
  const auto plain = [&](const char* caption, const char* tip, const char* key, const std::function<void()>& press) {
    auto* button = new QPushButton(QString::fromUtf8(caption));
    button->setToolTip(QString::fromUtf8(tip));
    if (*key) addKey(key, button);
    connect(button, &QPushButton::clicked, this, press);
    row->addWidget(button);
    return button;
  };
  plain("前へ", "一覧の前のテーブルを表示します. (Alt+PageUp)", "Alt+PgUp", [step] { step(-1); });
  plain("次へ", "一覧の次のテーブルを表示します. (Alt+PageDown)", "Alt+PgDown", [step] { step(1); });
  plain("再表示", "データベースから読み直します. (F5)", "F5", [this, &app] {
    grid_->endEdit();
    front().turn().run([&] { CmdReGet_Click(app.session, app.host, record_); });
  })->setObjectName(QStringLiteral("CmdReGet"));
  plain("基本情報", "テーブル基本情報を変更します.", "", [this, &app] {
    front().turn().run([&] { openHeader(app, screen()); });
  })->setObjectName(QStringLiteral("cmdTBInfo"));

  QToolButton* facts = factsButton_ = new QToolButton;
  facts->setIcon(icon(Glyph::Information));
  facts->setToolTip(QStringLiteral("テーブルの情報の表示／非表示"));
  facts->setAccessibleName(facts->toolTip());
  facts->setCheckable(true);
  facts->setChecked(!factsHidden());
  connect(facts, &QToolButton::toggled, this, [this](bool on) { showFacts(on); });
  row->addWidget(facts);

  auto* save = new QPushButton(QStringLiteral("更新"));
  save->setDefault(true);
  save->setToolTip(QStringLiteral("登録内容を更新します. (Ctrl+S)"));
  addKey("Ctrl+S", save);
  // Before the handler, which runs behind it: what is being typed belongs to what is saved.
  connect(save, &QPushButton::clicked, this, [this] { grid_->endEdit(); });
  row->addWidget(binder().bind("CmdUpDate", save, record_.CmdUpDate, [this] { update(); }));
  return around;
}

void FrmTbDetailView::addKey(const char* key, QAbstractButton* button) {
  // A button's own shortcut would press it with a delay, for the look of it.
  const auto* shortcut = new QShortcut(QKeySequence(QString::fromLatin1(key)), this);
  connect(shortcut, &QShortcut::activated, button, &QAbstractButton::click);
}

void FrmTbDetailView::update() {
  updateDetail(app(), screen());
  grid_->setFocus();
  if (record_.changed) grid_->goToFault();
}

QToolButton* FrmTbDetailView::tool(const char* caption, const char* toolTip, const char* menuEntry) {
  auto* button = new QToolButton;
  button->setText(QString::fromUtf8(caption));
  button->setToolTip(QString::fromUtf8(toolTip));
  const std::string name = menuEntry;
  button->setObjectName(toQt(name + "Tool"));
  connect(button, &QToolButton::clicked, this, [this, name] {
    grid_->endEdit();
    front().turn().run([&] { pressMenu(app(), screen(), name); });
    grid_->setFocus();
  });
  binder().onRefresh([this, button, name] {
    const MenuEntry* entry = findEntry(screen(), name);
    button->setVisible(entry && quillmarden::isVisible(app(), screen(), *entry));
    button->setEnabled(entry && quillmarden::isEnabled(app(), screen(), *entry));
  });
  return button;
}

QWidget* FrmTbDetailView::makeGridTools() {
  auto* around = new QWidget;
  auto* row = new QHBoxLayout(around);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(2);
  row->addWidget(tool("行挿入", "選択した行の上に行を挿入します.", "mnuInSert"));
  row->addWidget(tool("行削除", "選択した行を削除します.", "mnuDelete"));
  row->addWidget(tool("行追加", "最後に行を追加します.", "mnuAddLine"));
  row->addSpacing(12);
  row->addWidget(tool("元に戻す", "編集を元に戻します. (Ctrl+Z)", "mnuUndo"));
  row->addWidget(tool("やり直し", "元に戻した編集をやり直します. (Ctrl+Y)", "mnuRedo"));
  row->addSpacing(12);
  row->addWidget(tool("並び替え", "並び替えの設定を行います.", "mnuSort"));
  row->addStretch(1);
  auto* diagram = new QToolButton;
  diagram->setText(QStringLiteral("ER図"));
  diagram->setToolTip(QStringLiteral("このテーブルのER図を作成します."));
  row->addWidget(binder().bind("CmdER", diagram, record_.CmdER, [this] { CmdER_Click(app(), this->screen()); }));
  auto* file = new QToolButton;
  file->setText(QStringLiteral("MDBを開く"));
  file->setToolTip(QStringLiteral("接続先のデータベースを開きます."));
  row->addWidget(binder().bind("cmdOpenMDBFile", file, record_.cmdOpenMDBFile,
                               [this] { mnuOpenDBConnect_Click(app().session, app().host); }));
  auto* folder = new QToolButton;
  folder->setText(QStringLiteral("MDBのフォルダ"));
  folder->setToolTip(QStringLiteral("接続先のフォルダを開きます."));
  row->addWidget(binder().bind("cmdOpenMDBFolder", folder, record_.cmdOpenMDBFolder,
                               [this] { cmdOpenMDBFolder_Click(app().session, app().host); }));
  return around;
}

QWidget* FrmTbDetailView::makeRowHelpers() {
  auto* helpers = new QSplitter(Qt::Horizontal);
  helpers->setChildrenCollapsible(false);
  auto* remark = new QPlainTextEdit;
  remark->setTabChangesFocus(true);
  binder().bind("Txtbiko", remark, record_.Txtbiko,
                [this] { Txtbiko_Change(app().session, app().host, record_, std::string(record_.Txtbiko.text)); });
  auto* remarkHeading = new ElidedLabel;
  remarkHeading->setProperty("role", "heading");
  helpers->addWidget(panel(binder().bind("lblBiko", remarkHeading, record_.lblBiko), remark));
  helpers->addWidget(panel(heading("値リスト"), binder().bind("lstAtai", plainList(record_.lstAtai), record_.lstAtai)));
  helpers->addWidget(
      panel(heading("インデックス"), binder().bind("lstIndex", plainList(record_.lstIndex), record_.lstIndex)));
  auto* memo = new QPlainTextEdit;
  memo->setReadOnly(true);
  memo->setTabChangesFocus(true);
  memo->setObjectName(QStringLiteral("TxtMemo"));
  binder().unseen({"TxtMemo"});
  binder().onRefresh([this, memo] {
    const QString text = toQt(record_.TxtMemo.text).replace("\r\n", "\n");
    if (memo->toPlainText() != text) memo->setPlainText(text);
  });
  helpers->addWidget(panel(heading("概要"), memo));
  for (auto* helper : helpers->findChildren<QAbstractScrollArea*>()) helper->setMinimumHeight(kSmallestHelper);
  helpers->setSizes({460, 240, 200, 280});
  return helpers;
}

QWidget* FrmTbDetailView::makeFoot() {
  auto* around = new QWidget;
  auto* row = new QHBoxLayout(around);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(16);
  auto* place = new ElidedLabel;
  place->setToolTip(QStringLiteral("列 : 行"));
  place->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
  place->setPress(binder().act([this] { lblColRow_Click(app().host, app().list); }));
  row->addWidget(binder().bind("lblColRow", place, record_.lblColRow));
  auto* addedWord = new QLabel(QStringLiteral("追加"));
  addedWord->setProperty("role", "faint");
  auto* added = new QLabel;
  added->setToolTip(QStringLiteral("チェックポイントより後に追加された項目の数"));
  row->addWidget(addedWord);
  row->addWidget(binder().bind("lblAddNum", added, record_.lblAddNum));
  row->addWidget(binder().bind("lblMsg", new ElidedLabel, record_.lblMsg), 1);
  row->addStretch(1);
  return around;
}

void FrmTbDetailView::keepBackup() {
  // A handler that runs may be half way through the rows.
  if (front().turn().running()) return backupTimer_->start();
  app().backups[screen()].keep(app().session, app().host, record_);
}

void FrmTbDetailView::closeEvent(QCloseEvent* event) {
  grid_->endEdit();
  View::closeEvent(event);
}

void FrmTbDetailView::aboutToRelease() {
  backupTimer_->stop();
  grid_->setModel(nullptr);
}

}  // namespace quillmarden
