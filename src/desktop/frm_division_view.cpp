#include "desktop/frm_division_view.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMenu>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <QToolButton>

#include "common/text.h"
#include "desktop/elided_label.h"
#include "desktop/list_table.h"
#include "desktop/plain_grid.h"
#include "dictionary/frm_division.h"
#include "excel/value_list_book.h"

namespace quillmarden {

namespace {

constexpr int kDivisionMargin = 12;
constexpr int kMemoHeight = 58;
constexpr int kNameWidth = 140;
constexpr int kListsWidth = 390;
constexpr int kGridWidth = 974;  ///< of all columns, a date and its time seen whole

template <typename Layout>
Layout* tight(QWidget* around, int spacing = 6) {
  auto* layout = new Layout(around);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(spacing);
  return layout;
}

template <typename Widget>
Widget* inRole(Widget* widget, const char* role) {
  widget->setProperty("role", role);
  return widget;
}

QLabel* words(const char* text, const char* role) { return inRole(new QLabel(QString::fromUtf8(text)), role); }

QToolButton* toolFor(QAction* action) {
  auto* tool = new QToolButton;
  tool->setDefaultAction(action);
  tool->setFocusPolicy(Qt::TabFocus);
  return tool;
}

}  // namespace

FrmDivisionView::FrmDivisionView(Front& front, std::string screen)
    : View(front, std::move(screen)), record_(app().division) {
  binder().bindTitle(this, record_.caption);
  auto* halves = new QSplitter(Qt::Horizontal);
  halves->setChildrenCollapsible(false);
  halves->setHandleWidth(kDivisionMargin);
  halves->addWidget(makeLists());
  halves->addWidget(makeShown());
  halves->setStretchFactor(1, 1);
  halves->setSizes({kListsWidth, kGridWidth});
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(kDivisionMargin, kDivisionMargin, kDivisionMargin, kDivisionMargin);
  rows->setSpacing(10);
  rows->addWidget(halves, 1);
  rows->addWidget(makeFoot());
  resize(kListsWidth + kGridWidth + 3 * kDivisionMargin, 660);
}

QAction* FrmDivisionView::action(const char* name, const char* caption, const char* key, QWidget* owner,
                                 MenuItem& control, Handler handler) {
  auto* made = new QAction(QString::fromUtf8(caption), this);
  made->setShortcut(QKeySequence(QString::fromLatin1(key)));
  made->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  made->setToolTip(QStringLiteral("%1 (%2)").arg(QString::fromUtf8(caption), QString::fromLatin1(key)));
  owner->addAction(made);
  return binder().bind(name, made, control, std::move(handler));
}

QPushButton* FrmDivisionView::button(const char* name, const char* caption, Button& control, Handler handler) {
  return binder().bind(name, new QPushButton(QString::fromUtf8(caption)), control, std::move(handler));
}

// --- the lists

QWidget* FrmDivisionView::makeLists() {
  auto* around = new QWidget;
  auto* rows = tight<QVBoxLayout>(around);
  rows->addWidget(makeFilters());
  rows->addWidget(makeList(), 1);
  around->setMinimumWidth(300);
  return around;
}

QWidget* FrmDivisionView::makeFilters() {
  auto* around = new QWidget;
  auto* rows = tight<QVBoxLayout>(around);
  auto* row = tight<QHBoxLayout>(nullptr);
  const Handler find = [this] { CmdFind_Click(app().session, app().host, record_); };
  row->addWidget(headed("種別", binder().bind("CmbClass", new QComboBox, record_.CmbClass, find)), 1);
  row->addWidget(headed("型", binder().bind("CmbKata", new QComboBox, record_.CmbKata, find)), 1);
  auto* search =
      binder().bind("CmdFind", new QPushButton(icon(Glyph::Search), QStringLiteral("検索")), record_.CmdFind, find);
  search->setShortcut(Qt::Key_F5);
  search->setToolTip(QStringLiteral("値リストを検索します. (F5)"));
  row->addWidget(search, 0, Qt::AlignBottom);
  rows->addLayout(row);
  rows->addWidget(binder().bind("ChkAllSystem", new QCheckBox(QStringLiteral("全システム共通も表示する.")),
                                record_.ChkAllSystem, find));
  return around;
}

QWidget* FrmDivisionView::makeList() {
  auto* around = new QWidget;
  auto* rows = tight<QVBoxLayout>(around);
  auto* list =
      new ListTable(record_.lstDivision, {QStringLiteral("値リスト名"), QStringLiteral("システム"),
                                          QStringLiteral("種別"), QStringLiteral("型"), QStringLiteral("値の説明")});
  list->setSelectionMode(QAbstractItemView::SingleSelection);
  // Letters as in the grid beside it.
  list->setPointSize(app().session.settings.fontSize2Spread);
  list->setColumnWidth(0, 150);
  list->setColumnWidth(2, 70);
  list->setColumnWidth(3, 70);
  list->setColumnWidth(4, 60);
  list->horizontalHeader()->moveSection(1, 4);
  binder().onRefresh([this, list] { list->setColumnHidden(1, !record_.ChkAllSystem.value); });
  binder().bind("lstDivision", list, record_.lstDivision,
                [this] { lstDivision_Click(app().session, app().host, record_); });

  Application& app = this->app();
  auto* menu = new QMenu(this);
  menu->setObjectName(QStringLiteral("mnutPOPUP"));
  auto* tools = tight<QHBoxLayout>(nullptr, 2);
  for (QAction* entry :
       {action("mnuAdd", "新規作成", "Ctrl+N", this, record_.mnuAdd,
               [&app] { mnuAdd_Click(app.session, app.windows, app.diviInfo); }),
        action("mnuEdit", "編集", "F2", list, record_.mnuEdit,
               [this, &app] { mnuEdit_Click(app.session, app.host, app.windows, record_, app.diviInfo); }),
        action("mnuDelete", "削除", "Delete", list, record_.mnuDelete,
               [this, &app] { mnuDelete_Click(app.session, app.host, record_); })}) {
    menu->addAction(entry);
    tools->addWidget(toolFor(entry));
  }
  tools->addStretch(1);
  tools->addWidget(inRole(binder().bind("lblNum", new QLabel, record_.lblNum), "faint"));
  tools->addWidget(words("件", "faint"));
  list->popUp = [this, menu](int row, const QPoint& place) {
    if (row != record_.lstDivision.listIndex)
      front().turn().run([this, row] {
        chooseForPopUp(record_.lstDivision, row);
        lstDivision_Click(this->app().session, this->app().host, record_);
      });
    menu->popup(place);
  };
  rows->addLayout(tools);
  rows->addWidget(list, 1);
  return around;
}

// --- the list on show

QWidget* FrmDivisionView::makeShown() {
  auto* card = new QFrame;
  card->setObjectName(QStringLiteral("card"));
  // The frame around the list on show is this card.
  binder().unseen({"fraKIHON"});
  auto* rows = new QVBoxLayout(card);
  rows->setContentsMargins(kDivisionMargin, 10, kDivisionMargin, 10);
  rows->setSpacing(8);
  rows->addWidget(makeTitle());
  auto* memo = binder().bind("TxtMemo", new QPlainTextEdit, record_.TxtMemo);
  memo->setTabChangesFocus(true);
  memo->setFixedHeight(kMemoHeight);
  memo->setPlaceholderText(QStringLiteral("値の説明"));
  rows->addWidget(memo);
  rows->addWidget(makeGrid(), 1);
  auto* range = inRole(binder().bind("lblRange", new QLabel, record_.lblRange), "faint");
  range->setWordWrap(true);
  rows->addWidget(range);
  return card;
}

QWidget* FrmDivisionView::makeTitle() {
  auto* around = new QWidget;
  auto* row = tight<QHBoxLayout>(around, 8);
  auto* name = inRole(binder().bind("lblAtai", new ElidedLabel, record_.lblAtai), "title");
  name->setMinimumWidth(kNameWidth);
  row->addWidget(name, 1);
  auto* owner = words("", "faint");
  binder().onRefresh([this, owner] {
    // Another System's list can only be read here.
    const bool other = !record_.owner.empty() && !equalsNoCase(record_.owner, app().session.gCurrentSystemName);
    owner->setText(other ? QStringLiteral("システム: %1").arg(toQt(record_.owner)) : QString());
  });
  row->addWidget(owner);
  auto* changed = inRole(new QLabel(QStringLiteral("変更あり")), "mark");
  changed->setToolTip(QStringLiteral("画面の内容は、まだ保存されていません."));
  row->addWidget(binder().bind("picRen", changed, record_.picRen), 0, Qt::AlignVCenter);
  row->addWidget(words("種別", "faint"));
  row->addWidget(binder().bind("lblClass", new QLabel, record_.lblClass));
  row->addWidget(words("型", "faint"));
  row->addWidget(binder().bind("lblKata", new QLabel, record_.lblKata));
  return around;
}

QWidget* FrmDivisionView::makeGrid() {
  auto* around = new QWidget;
  auto* rows = tight<QVBoxLayout>(around, 4);
  grid_ = new PlainGrid(*this, record_.Spread, record_.block,
                        [this](int col, int row) { Spread_Change(record_, col, row); });
  binder().unseen({"Spread"});
  binder().onRefresh([this] { grid_->showRecord(record_.changed); });
  auto* menu = new QMenu(this);
  menu->setObjectName(QStringLiteral("mnutSpread"));
  auto* tools = tight<QHBoxLayout>(nullptr, 2);
  Host& host = app().host;
  for (QAction* entry : {action("mnuSpreadAdd", "行挿入", "Alt+Ins", grid_, record_.mnuSpreadAdd,
                                grid_->asStep([this, &host] { mnuSpreadAdd_Click(host, record_); })),
                         action("mnuSpreadDel", "行削除", "Alt+Del", grid_, record_.mnuSpreadDel,
                                grid_->asStep([this, &host] { mnuSpreadDel_Click(host, record_); })),
                         action("mnuSpreadClear", "選択範囲の初期化", "Alt+Backspace", grid_, record_.mnuSpreadClear,
                                grid_->asStep([this, &host] { mnuSpreadClear_Click(host, record_); }))}) {
    menu->addAction(entry);
    QToolButton* tool = toolFor(entry);
    // What is being typed belongs to the rows that the command works on.
    connect(tool, &QToolButton::pressed, grid_, [this] { grid_->endEdit(); });
    tools->addWidget(tool);
  }
  tools->addStretch(1);
  grid_->setPopUp(menu);
  rows->addLayout(tools);
  rows->addWidget(grid_, 1);
  return around;
}

QWidget* FrmDivisionView::makeFoot() {
  auto* around = new QWidget;
  auto* row = tight<QHBoxLayout>(around, 8);
  auto* readOnly = binder().bind("picEdit", new QWidget, record_.picEdit);
  tight<QHBoxLayout>(readOnly)->addWidget(inRole(binder().bind("lblEdit", new QLabel, record_.lblEdit), "mark"));
  row->addWidget(readOnly, 0, Qt::AlignVCenter);
  auto* wait = binder().bind("PicMsg", new QWidget, record_.PicMsg);
  tight<QHBoxLayout>(wait)->addWidget(binder().bind("lblMsg", new QLabel, record_.lblMsg));
  row->addWidget(wait);
  row->addStretch(1);
  row->addWidget(button("CmdExcel", "Excel出力", record_.CmdExcel, [this] {
    BookRun run;
    CmdExcel_Click(app().session, app().host, run, record_, true);
  }));
  auto* save = new QPushButton(QStringLiteral("更新"));
  save->setDefault(true);
  save->setShortcut(QKeySequence::Save);
  save->setToolTip(QStringLiteral("登録内容を更新します. (Ctrl+S)"));
  connect(save, &QPushButton::clicked, grid_, [this] { grid_->endEdit(); });
  row->addWidget(binder().bind("CmdUpDate", save, record_.CmdUpDate,
                               [this] { CmdUpDate_Click(app().session, app().host, record_); }));
  auto* close = button("CmdClose", "閉じる", record_.CmdClose, {});
  connect(close, &QPushButton::clicked, this, &QWidget::close);
  row->addWidget(close);
  return around;
}

void FrmDivisionView::closeEvent(QCloseEvent* event) {
  if (grid_->model()) grid_->endEdit();
  View::closeEvent(event);
}

void FrmDivisionView::aboutToRelease() { grid_->setModel(nullptr); }

}  // namespace quillmarden
