#include "desktop/frm_kensu_view.h"

#include <QCheckBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSplitter>
#include <algorithm>
#include <array>
#include <functional>

#include "common/text.h"
#include "desktop/elided_label.h"
#include "desktop/list_model.h"
#include "desktop/list_table.h"
#include "operations/rows.h"

namespace quillmarden {

namespace {

constexpr int kKensuMargin = 12;
constexpr int kTableWidth = 140;

/// The names of the definitions, without the IDs behind them.
class DefinitionModel : public ListModel {
 public:
  DefinitionModel(const ListBox& list, QObject* parent) : ListModel(list, {QStringLiteral("定義名")}, parent) {}

  QVariant data(const QModelIndex& index, int role) const override {
    const QVariant row = ListModel::data(index, role);
    if (!row.isValid()) return row;
    const std::string text = fromQt(row.toString());
    const std::string_view id = kenSuRowId(text);
    return toQt(trim(std::string_view(text).substr(0, text.size() - id.size())));
  }
};

/// Tells when it gets the focus.
class TableBox : public QLineEdit {
 public:
  explicit TableBox(std::function<void()> focused) : focused_(std::move(focused)) {}

 protected:
  void focusInEvent(QFocusEvent* event) override {
    QLineEdit::focusInEvent(event);
    focused_();
  }

 private:
  std::function<void()> focused_;
};

}  // namespace

FrmKensuView::FrmKensuView(Front& front, std::string screen) : View(front, std::move(screen)), record_(app().kenSu) {
  binder().bindTitle(this, record_.caption);
  auto* parts = new QSplitter(Qt::Horizontal);
  parts->setChildrenCollapsible(false);
  parts->setHandleWidth(kKensuMargin);
  parts->addWidget(makeDefinitions());
  parts->addWidget(makeFields());
  parts->addWidget(makeTables());
  parts->setStretchFactor(1, 1);
  parts->setSizes({240, 460, 220});
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(kKensuMargin, kKensuMargin, kKensuMargin, kKensuMargin);
  rows->setSpacing(10);
  rows->addWidget(parts, 1);
  rows->addWidget(makeFoot());
  resize(860, 480);
}

QWidget* FrmKensuView::makeDefinitions() {
  auto* list = new ListTable(record_.LstTeigi, {});
  list->setModel(new DefinitionModel(record_.LstTeigi, list));
  list->setSelectionMode(QAbstractItemView::SingleSelection);
  list->setMinimumWidth(180);
  return binder().bind("LstTeigi", list, record_.LstTeigi,
                       [this] { LstTeigi_Click(app().session, app().host, record_); });
}

QWidget* FrmKensuView::makeFields() {
  auto* card = new QFrame;
  card->setObjectName(QStringLiteral("card"));
  auto* fields = new QFormLayout(card);
  fields->setContentsMargins(16, 14, 16, 14);
  fields->setHorizontalSpacing(12);
  fields->setVerticalSpacing(10);
  fields->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  auto* owner = new QWidget;
  auto* ownerRow = new QHBoxLayout(owner);
  ownerRow->setContentsMargins(0, 0, 0, 0);
  ownerRow->addWidget(binder().bind("lblEditSystem", new ElidedLabel, record_.lblEditSystem), 1);
  auto* id = new QLabel;
  id->setProperty("role", "faint");
  id->setToolTip(QStringLiteral("ID"));
  ownerRow->addWidget(binder().bind("lblID", id, record_.lblID));
  fields->addRow(QStringLiteral("システム名"), owner);
  fields->addRow(QStringLiteral("定義名"), binder().bind("TxtName", new QLineEdit, record_.TxtName));
  auto* outline = binder().bind("Txtbiko", new QPlainTextEdit, record_.Txtbiko);
  outline->setTabChangesFocus(true);
  outline->setMinimumHeight(60);
  fields->addRow(QStringLiteral("概要"), outline);
  auto* count = binder().bind("TxtSu", new QLineEdit, record_.TxtSu);
  count->setAlignment(Qt::AlignRight);
  fields->addRow(QStringLiteral("件数"), count);
  fields->addRow(QStringLiteral("テーブル"), makeTableNames());
  fields->addRow(QString(),
                 binder().bind("ChkAllSystem", new QCheckBox(QStringLiteral("全システム共通")), record_.ChkAllSystem));
  return card;
}

QWidget* FrmKensuView::makeTableNames() {
  auto* around = new QWidget;
  auto* rows = new QGridLayout(around);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(6);
  const std::array<std::pair<const char*, TextBox*>, 3> boxes = {
      {{"TxtTb1", &record_.TxtTb1}, {"TxtTb2", &record_.TxtTb2}, {"TxtTb3", &record_.TxtTb3}}};
  int place = 0;
  for (const auto& [name, control] : boxes) {
    auto* box = new TableBox([this, place] { record_.activeTb = place + 1; });
    box->setPlaceholderText(QStringLiteral("テーブル%1").arg(place + 1));
    box->setMinimumWidth(kTableWidth);
    rows->addWidget(binder().bind(name, box, *control), place++, 0);
  }
  auto* reference = binder().bind("CmdRef", new QPushButton(QStringLiteral("参照")), record_.CmdRef,
                                  [this] { CmdRef_Click(record_); });
  reference->setToolTip(QStringLiteral("テーブル名の一覧の表示／非表示"));
  // Which box takes the name is told by the focus.
  reference->setFocusPolicy(Qt::TabFocus);
  rows->addWidget(reference, 0, 1);
  return around;
}

QWidget* FrmKensuView::makeTables() {
  auto* list = new ListTable(record_.lstTb, {QStringLiteral("区分・マスタ")});
  list->setSelectionMode(QAbstractItemView::SingleSelection);
  list->setToolTip(QStringLiteral("ダブルクリックで、テーブル名を取り込みます."));
  list->setMinimumWidth(160);
  binder().bind("lstTb", list, record_.lstTb);
  connect(list, &QAbstractItemView::activated, this, [this] { binder().later([this] { lstTb_DblClick(record_); }); });
  binder().onRefresh([this, list] {
    if (list->isHidden() == record_.lstTbVisible) list->setVisible(record_.lstTbVisible);
  });
  return list;
}

QWidget* FrmKensuView::makeFoot() {
  auto* around = new QWidget;
  auto* row = new QHBoxLayout(around);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(8);
  Application& app = this->app();
  row->addWidget(binder().bind("CmdAddNew", new QPushButton(QStringLiteral("新規作成")), record_.CmdAddNew,
                               [this, &app] { CmdAddNew_Click(app.session, app.host, record_); }));
  row->addWidget(binder().bind("CmdClear", new QPushButton(QStringLiteral("クリア")), record_.CmdClear,
                               [this, &app] { CmdClear_Click(app.session, app.host, record_); }));
  row->addStretch(1);
  auto* save = new QPushButton(QStringLiteral("更新"));
  save->setDefault(true);
  save->setShortcut(QKeySequence::Save);
  save->setToolTip(QStringLiteral("件数定義を更新します. (Ctrl+S)"));
  row->addWidget(binder().bind("CmdUpDate", save, record_.CmdUpDate,
                               [this, &app] { CmdUpDate_Click(app.session, app.host, record_); }));
  auto* close = binder().bind("CmdClose", new QPushButton(QStringLiteral("閉じる")), record_.CmdClose);
  connect(close, &QPushButton::clicked, this, &QWidget::close);
  row->addWidget(close);
  return around;
}

}  // namespace quillmarden
