#include "desktop/frm_divi_info_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

#include "desktop/elided_label.h"
#include "desktop/list_table.h"
#include "dictionary/frm_divi_info.h"
#include "dictionary/frm_divi_ref.h"

namespace quillmarden {

namespace {

constexpr int kDiviInfoMargin = 20;

QHBoxLayout* buttonRow(std::initializer_list<QPushButton*> left, std::initializer_list<QPushButton*> right) {
  auto* row = new QHBoxLayout;
  row->setSpacing(8);
  for (QPushButton* button : left) row->addWidget(button);
  row->addStretch(1);
  for (QPushButton* button : right) row->addWidget(button);
  return row;
}

}  // namespace

FrmDiviInfoView::FrmDiviInfoView(Front& front, std::string screen) : View(front, std::move(screen)) {
  setWindowModality(Qt::ApplicationModal);
  frmDiviInfo& record = app().diviInfo;
  binder().bindTitle(this, record.caption);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(kDiviInfoMargin, kDiviInfoMargin, kDiviInfoMargin, 16);
  rows->setSpacing(14);
  auto* fields = new QFormLayout;
  fields->setHorizontalSpacing(12);
  fields->setVerticalSpacing(10);
  fields->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
  fields->addRow(QStringLiteral("システム名"), binder().bind("lblSystemName", new ElidedLabel, record.lblSystemName));
  fields->addRow(QStringLiteral("値名称"), binder().bind("TxtDivName", new QLineEdit, record.TxtDivName));
  auto* old = new ElidedLabel;
  old->setProperty("role", "faint");
  fields->addRow(QStringLiteral("読み込み時の値"), binder().bind("lblOld", old, record.lblOld));
  fields->addRow(QStringLiteral("種別"), binder().bind("CmbClass", new QComboBox, record.CmbClass));
  fields->addRow(QStringLiteral("型"), binder().bind("CmbKata", new QComboBox, record.CmbKata));
  auto* memo = binder().bind("Txtbiko", new QPlainTextEdit, record.Txtbiko);
  memo->setTabChangesFocus(true);
  memo->setMinimumHeight(80);
  fields->addRow(QStringLiteral("値の説明"), memo);
  fields->addRow(QString(),
                 binder().bind("ChkAllSystem", new QCheckBox(QStringLiteral("全システム共通")), record.ChkAllSystem));
  rows->addLayout(fields, 1);

  auto* ok = new QPushButton(QStringLiteral("OK"));
  ok->setDefault(true);
  ok->setShortcut(QKeySequence(QStringLiteral("Ctrl+Return")));
  ok->setToolTip(QStringLiteral("登録します. (Ctrl+Enter)"));
  binder().bind("cmdOK", ok, record.cmdOK, [this, &record] {
    cmdOK_Click(app().session, app().host, record);
    std::string_view faulty = record.focus;
    takeFocus(faulty);
    record.focus.clear();
  });
  auto* cancel = binder().bind("cmdCancel", new QPushButton(QStringLiteral("キャンセル")), record.cmdCancel);
  connect(cancel, &QPushButton::clicked, this, &QWidget::close);
  rows->addLayout(buttonRow({}, {ok, cancel}));
  closeOnEscape();
  resize(520, 400);
}

void FrmDiviInfoView::aboutToShow() { findChild<QWidget*>(QStringLiteral("TxtDivName"))->setFocus(); }

FrmDiviRefView::FrmDiviRefView(Front& front, std::string screen) : View(front, std::move(screen)) {
  frmDiviRef& record = app().diviRef;
  binder().bindTitle(this, record.caption);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(kDiviInfoMargin, kDiviInfoMargin, kDiviInfoMargin, 16);
  rows->setSpacing(10);

  auto* kind = new QHBoxLayout;
  auto* kindWord = new QLabel(QStringLiteral("種別"));
  kindWord->setProperty("role", "faint");
  kind->addWidget(kindWord);
  auto* kindShown = new QLabel;
  kindShown->setProperty("role", "title");
  kind->addWidget(binder().bind("lblKbn", kindShown, record.lblKbn));
  kind->addStretch(1);
  kind->addWidget(
      binder().bind("ChkAllSystem", new QCheckBox(QStringLiteral("全システム共通も表示する.")), record.ChkAllSystem));
  rows->addLayout(kind);

  const Handler find = [this, &record] { CmdFind_Click(app().session, app().host, record); };
  const Handler take = [this, &record] { cmdOK_Click(app().host, record); };
  auto* search = new QHBoxLayout;
  search->setSpacing(6);
  auto* text = binder().bind("TxtWhere", new QLineEdit, record.TxtWhere);
  text->setToolTip(QStringLiteral("検索一致条件"));
  text->setPlaceholderText(QStringLiteral("検索一致条件"));
  connect(text, &QLineEdit::returnPressed, this, binder().act(find));
  search->addWidget(text, 1);
  auto* where = binder().bind("CmbWhere", new QComboBox, record.CmbWhere);
  where->setMinimumContentsLength(6);
  where->setToolTip(QStringLiteral("検索一致条件"));
  search->addWidget(where);
  auto* go =
      binder().bind("CmdFind", new QPushButton(icon(Glyph::Search), QStringLiteral("検索")), record.CmdFind, find);
  go->setShortcut(Qt::Key_F5);
  go->setToolTip(QStringLiteral("値リストを検索します. (F5)"));
  search->addWidget(go);
  rows->addLayout(search);

  auto* list = new ListTable(record.lstDivName, {QStringLiteral("値リスト名")});
  list->setSelectionMode(QAbstractItemView::SingleSelection);
  binder().bind("lstDivName", list, record.lstDivName);
  connect(list, &QAbstractItemView::activated, this, [this, take] { binder().later(take); });
  rows->addWidget(list, 1);

  auto* make = binder().bind("CmdMake", new QPushButton(QStringLiteral("新規作成")), record.CmdMake,
                             [this] { CmdMake_Click(app().windows); });
  make->setToolTip(QStringLiteral("値リストの画面を開きます."));
  auto* ok = binder().bind("cmdOK", new QPushButton(QStringLiteral("OK")), record.cmdOK, take);
  auto* cancel = binder().bind("cmdCancel", new QPushButton(QStringLiteral("キャンセル")), record.cmdCancel,
                               [&record] { cmdCancel_Click(record); });
  rows->addLayout(buttonRow({make}, {ok, cancel}));
  ok->setDefault(true);
  closeOnEscape();
  resize(520, 460);
  text->setFocus();
}

}  // namespace quillmarden
