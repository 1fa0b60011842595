#include "desktop/frm_tb_list_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFrame>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QSplitter>
#include <QToolButton>
#include <QVBoxLayout>
#include <algorithm>
#include <utility>

#include "desktop/list_model.h"
#include "desktop/list_table.h"
#include "desktop/menus.h"
#include "editing/frm_tb_list.h"
#include "shell/list_commands.h"

namespace quillmarden {
namespace {

constexpr int kNarrowWidth = 500;
constexpr int kSelectionWidth = 320;

template <typename Layout>
QWidget* row(Layout** layout) {
  auto* made = new QWidget;
  *layout = new Layout(made);
  (*layout)->setContentsMargins(0, 0, 0, 0);
  (*layout)->setSpacing(6);
  return made;
}

template <typename Widget>
Widget* tipped(Widget* widget, const char* toolTip) {
  widget->setToolTip(QString::fromUtf8(toolTip));
  widget->setAccessibleName(QString::fromUtf8(toolTip));
  return widget;
}

QToolButton* menuButton(const char* caption) {
  auto* button = new QToolButton;
  button->setText(QString::fromUtf8(caption) + QStringLiteral(" ▾"));
  button->setFocusPolicy(Qt::TabFocus);
  return button;
}

/// Both names in the order of the rows.
QStringList headings(const frmTBList& record) {
  QStringList names{QStringLiteral("日本語名"), QStringLiteral("テーブル名")};
  if (toQt(record.CmbTitle.text) == names[1]) std::swap(names[0], names[1]);
  return names;
}

QPoint below(const QWidget* widget) { return widget->mapToGlobal(QPoint(0, widget->height())); }

}  // namespace

FrmTbListView::FrmTbListView(Front& front, std::string screen) : View(front, std::move(screen)) {
  frmTBList& record = app().list;
  resize(kNarrowWidth + (record.narrow ? 0 : kSelectionWidth), 700);
  binder().bindTitle(this, record.caption);
  // Held for other screens, and menus that ask the record themselves.
  binder().unseen({"TxtConnect", "TxtUserName", "TxtPassword", "lstTableWK", "mnuAdd", "mnuUpDate", "mnuDelete",
                   "mnutsSetting", "mnuCreateSQLBack", "mnuCreateSQLRunnable"});

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->setMenuBar(makeMenuBar(*this));
  auto* body = new QVBoxLayout;
  body->setContentsMargins(12, 10, 12, 8);
  body->setSpacing(6);
  for (QWidget* part : {makeSystem(), makeSearch(), makeFilters(), makeSwitches(), makeCommands()})
    body->addWidget(part);
  body->addWidget(makeLists(), 1);
  layout->addLayout(body, 1);
  layout->addWidget(makeStatus());
  binder().onRefresh([this] { showPanes(); });
  binder().onRefresh([this] { showStatus(); });
  const auto* find = new QShortcut(Qt::Key_F5, this);
  connect(find, &QShortcut::activated, this, binder().act(onList(CmdFind_Click)));
  tables_->setFocus();
}

Handler FrmTbListView::onList(void (*handler)(Session&, Host&, frmTBList&)) {
  return [this, handler] { handler(app().session, app().host, app().list); };
}

Handler FrmTbListView::rebuild() {
  return [this] { pGetTableList(app().session, app().host, app().list); };
}

QWidget* FrmTbListView::makeSystem() {
  frmTBList& record = app().list;
  QHBoxLayout* layout = nullptr;
  QWidget* made = row(&layout);
  auto* system = tipped(new QComboBox, "システム名");
  system->setPlaceholderText(QStringLiteral("システム名"));
  layout->addWidget(binder().bind("CmbSystem", system, record.CmbSystem, [this] { chooseSystem(app()); }), 1);
  layout->addWidget(binder().bind("CmdSystem", glyphButton(Glyph::Gear, "システム情報の追加・変更"), record.CmdSystem,
                                  [this] { CmdSystem_Click(app()); }));
  return made;
}

QWidget* FrmTbListView::makeSearch() {
  frmTBList& record = app().list;
  QHBoxLayout* layout = nullptr;
  QWidget* made = row(&layout);
  auto* title = tipped(new QComboBox, "日本語名/テーブル名での切替が行えます.");
  layout->addWidget(binder().bind("CmbTitle", title, record.CmbTitle, rebuild()));
  auto* text = tipped(new QComboBox, "テーブル検索条件を入力してください.[F5]で検索");
  text->setEditable(true);
  text->setInsertPolicy(QComboBox::NoInsert);
  text->setCompleter(nullptr);  // a search for a part of an earlier one is no mistake
  text->lineEdit()->setPlaceholderText(QStringLiteral("検索条件"));
  binder().bind("CmbWhereMoji", text, record.CmbWhereMoji, onList(CmdFind_Click));
  connect(text->lineEdit(), &QLineEdit::returnPressed, this, binder().act(onList(CmdFind_Click)));
  layout->addWidget(text, 1);
  layout->addWidget(binder().bind("CmbWhere", tipped(new QComboBox, "検索一致条件"), record.CmbWhere));
  auto* find = new QPushButton(icon(Glyph::Search), QStringLiteral("検索"));
  find->setObjectName("CmdFind");
  connect(find, &QPushButton::clicked, this, binder().act(onList(CmdFind_Click)));
  layout->addWidget(find);
  QToolButton* clear = glyphButton(Glyph::Clear, "検索条件のクリア");
  clear->setObjectName("CmdClearWherMoji");
  connect(clear, &QToolButton::clicked, this, binder().act(onList(CmdClearWherMoji_Click)));
  layout->addWidget(clear);
  return made;
}

QComboBox* FrmTbListView::makeFilter(const char* name, const char* caption, ComboBox& control) {
  auto* box = tipped(new QComboBox, caption);
  box->setPlaceholderText(QString::fromUtf8(caption));
  box->setMinimumContentsLength(8);
  box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  return binder().bind(name, box, control, rebuild());
}

QWidget* FrmTbListView::makeFilters() {
  frmTBList& record = app().list;
  QGridLayout* layout = nullptr;
  QWidget* made = row(&layout);
  layout->addWidget(makeFilter("CmbHost", "システム格納先", record.CmbHost), 0, 0);
  layout->addWidget(makeFilter("CmbBunrui", "データの種別", record.CmbBunrui), 0, 1);
  layout->addWidget(makeFilter("CmbDataBunrui", "データ分類", record.CmbDataBunrui), 1, 0);
  layout->addWidget(makeFilter("CmbDataBunrui2", "データ分類2", record.CmbDataBunrui2), 1, 1);
  return made;
}

QWidget* FrmTbListView::makeSwitches() {
  frmTBList& record = app().list;
  QGridLayout* layout = nullptr;
  QWidget* made = row(&layout);
  QHBoxLayout* kinds = nullptr;
  QWidget* options = row(&kinds);
  const auto option = [&](const char* name, const char* caption, OptionButton& control) {
    kinds->addWidget(binder().bind(name, new QRadioButton(QString::fromUtf8(caption)), control, rebuild()));
  };
  option("OptAll", "全て", record.OptAll);
  option("OptTb", "Editor", record.OptTb);
  option("OptReverse", "Reverse", record.OptReverse);
  kinds->addStretch();
  const auto box = [&](const char* name, const char* caption, CheckBox& control) {
    return binder().bind(name, new QCheckBox(QString::fromUtf8(caption)), control, rebuild());
  };
  layout->addWidget(options, 0, 0);
  layout->addWidget(box("ChkAllSys", "全システム共通", record.ChkAllSys), 0, 1);
  layout->addWidget(box("ChkRefTb", "全システム共通のテーブルも表示する.", record.ChkRefTb), 1, 0);
  // It changes how rows are written, not which: the next run shows it.
  layout->addWidget(binder().bind("ChkSosikiNm", new QCheckBox(QStringLiteral("全システム共通時、システム名を表示")),
                                  record.ChkSosikiNm),
                    1, 1);
  layout->setColumnStretch(1, 1);
  return made;
}

QWidget* FrmTbListView::makeCommands() {
  QHBoxLayout* layout = nullptr;
  QWidget* made = row(&layout);
  QToolButton* edit = menuButton("編集");
  edit->setObjectName("mnutEdit");
  connect(edit, &QToolButton::clicked, this, [this, edit] { openPopUp(-1, below(edit)); });
  layout->addWidget(edit);
  layout->addStretch();
  layout->addWidget(binder().bind("lblDbServer", new QLabel, app().list.lblDbServer));
  QToolButton* forms = glyphButton(Glyph::List, "詳細画面リストの表示");
  forms->setObjectName("CmdFormList");
  connect(forms, &QToolButton::clicked, this, binder().act([this] { CmdFormList_Click(app().session, app().list); }));
  layout->addWidget(forms);
  QToolButton* width = glyphButton(Glyph::Pane, "画面サイズの変更");
  width->setObjectName("CmdWidth");
  connect(width, &QToolButton::clicked, this, binder().act([this] { CmdWidth_Click(app().list); }));
  layout->addWidget(width);
  return made;
}

QWidget* FrmTbListView::makeLists() {
  auto* stack = new QSplitter(Qt::Vertical);
  divider_ = new QSplitter(Qt::Horizontal);
  divider_->setObjectName("ImageMove");
  divider_->setChildrenCollapsible(false);
  divider_->addWidget(makeTables());
  divider_->addWidget(makeSelection());
  divider_->setStretchFactor(0, 1);
  connect(divider_, &QSplitter::splitterMoved, this, [this](int place) { ImageMove_Drag(app().list, place); });
  stack->addWidget(divider_);
  stack->addWidget(makeForms());
  stack->setStretchFactor(0, 1);
  stack->setChildrenCollapsible(false);
  stack->setSizes({600, 110});
  return stack;
}

QWidget* FrmTbListView::makeTables() {
  tables_ = new ListTable(app().list.LstTable, headings(app().list));
  binder().bind("LstTable", tables_, app().list.LstTable, [this] { tableChosen(); });
  tables_->setColumnWidth(0, 230);
  connect(tables_, &QAbstractItemView::doubleClicked, this,
          [this] { binder().later([this] { LstTable_DblClick(app()); }); });
  tables_->entered = [this] {
    binder().later([this] {
      LstTable_Click(app());
      if (app().display.focus) app().display.focus("frmTBDetail");
    });
  };
  tables_->popUp = [this](int row, const QPoint& place) { openPopUp(row, place); };
  addMenuKeys(*this, tables_, "mnutEdit");
  return tables_;
}

QWidget* FrmTbListView::makeSelection() {
  frmTBList& record = app().list;
  selection_ = new QWidget;
  auto* layout = new QVBoxLayout(selection_);
  layout->setContentsMargins(0, 0, 0, 0);
  QToolButton* output = menuButton("出力");
  output->setObjectName("mnutExcel");
  connect(output, &QToolButton::clicked, this, [this, output] { popUpMenu(*this, "mnutExcel", below(output)); });
  layout->addWidget(output, 0, Qt::AlignLeft);
  chosen_ = new ListTable(record.LstTableSel, headings(record));
  binder().bind("LstTableSel", chosen_, record.LstTableSel);
  chosen_->popUp = [this](int row, const QPoint& place) {
    front().turn().run([this, row] { chooseForPopUp(app().list.LstTableSel, row); });
    popUpMenu(*this, "mnutExcel", place);
  };
  addMenuKeys(*this, chosen_, "mnutExcel");
  layout->addWidget(chosen_, 1);
  return selection_;
}

QWidget* FrmTbListView::makeForms() {
  auto* list = new ListTable(app().list.lstForm, {QStringLiteral("詳細画面リスト")});
  list->setSelectionMode(QAbstractItemView::SingleSelection);
  binder().bind("lstForm", list, app().list.lstForm);
  connect(list, &QAbstractItemView::activated, this, [this] { binder().later([this] { lstForm_DblClick(app()); }); });
  list->popUp = [this](int row, const QPoint& place) {
    front().turn().run([this, row] { chooseForPopUp(app().list.lstForm, row); });
    popUpMenu(*this, "mnutFormList", place);
  };
  list->setMinimumHeight(90);
  forms_ = list;
  return list;
}

QWidget* FrmTbListView::makeStatus() {
  auto* bar = new QFrame;
  bar->setObjectName("status");
  auto* layout = new QHBoxLayout(bar);
  layout->setContentsMargins(12, 4, 12, 6);
  count_ = new QLabel;
  session_ = new QLabel;
  for (QLabel* label : {count_, session_}) {
    label->setProperty("role", "faint");
    label->setTextFormat(Qt::PlainText);
  }
  layout->addWidget(count_);
  layout->addStretch();
  layout->addWidget(session_);
  return bar;
}

void FrmTbListView::tableChosen() {
  const bool active = isActiveWindow();
  LstTable_Click(app());
  // The table shows in its own window, and the keyboard goes on walking through the list.
  if (active) activateWindow();
}

void FrmTbListView::openPopUp(int row, const QPoint& place) {
  setPopUpPlace(place);
  front().turn().run([this, row] {
    chooseForPopUp(app().list.LstTable, row);
    LstTable_PopUp(app());
  });
}

void FrmTbListView::showPanes() {
  const frmTBList& record = app().list;
  if (forms_->isHidden() == record.lstFormVisible) forms_->setVisible(record.lstFormVisible);
  if (selection_->isHidden() != record.narrow) {
    selection_->setVisible(!record.narrow);
    if (isVisible() && !isMaximized()) resize(width() + (record.narrow ? -kSelectionWidth : kSelectionWidth), height());
  }
  const QList<int> sizes = divider_->sizes();
  if (!record.narrow && record.dividerAt > 0 && sizes[0] != record.dividerAt && !divider_->isAncestorOf(mouseGrabber()))
    divider_->setSizes({record.dividerAt, std::max(60, sizes[0] + sizes[1] - record.dividerAt)});
  tables_->rows().setHeadings(headings(record));
  chosen_->rows().setHeadings(headings(record));
  const double points = app().session.settings.fontSize2TableList;
  if (points > 0 && tables_->font().pointSizeF() != points)
    for (ListTable* list : {tables_, chosen_}) list->setPointSize(points);
}

void FrmTbListView::showStatus() {
  const frmTBList& record = app().list;
  const auto selected = std::count(record.LstTable.selected.begin(), record.LstTable.selected.end(), true);
  const QString count = QStringLiteral("%1 件 / 選択 %2 件").arg(record.LstTable.count()).arg(selected);
  if (count_->text() != count) count_->setText(count);
  const Session& session = app().session;
  QStringList parts{toQt(session.gLoginUser), toQt(session.gCurrentDbType)};
  if (!session.gCurrentSystemName.empty() && !session.gCanEdit) parts << QStringLiteral("参照のみ");
  parts.removeAll(QString());
  const QString text = parts.join(QStringLiteral("   "));
  if (session_->text() != text) session_->setText(text);
}

}  // namespace quillmarden
