#include "desktop/detail_header.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QToolButton>
#include <array>
#include <functional>

#include "desktop/elided_label.h"
#include "desktop/theme.h"
#include "desktop/view.h"
#include "editing/frm_partition.h"
#include "editing/frm_tb_detail_edit.h"

namespace quillmarden {

namespace {

/// Facts stand in this many columns, each from top to bottom.
constexpr int kFactRows = 4;
constexpr int kFactHeight = 22;

/// A text box that only shows: its name is the record's, its text a label.
ElidedLabel* shown(Binder& binder, const char* name, ElidedLabel* label, const TextBox& control) {
  label->setObjectName(QString::fromUtf8(name));
  binder.unseen({name});
  binder.onRefresh([label, &control] {
    const QString text = toQt(control.text);
    if (label->text() != text) label->setText(text);
  });
  return label;
}

/// A mark: its words stand there while the record says so and a table is on show.
QLabel* addMark(View& view, QHBoxLayout* row, const char* name, const char* words, const char* toolTip,
                const frmTBDetail& record, const bool& visible) {
  auto* mark = new QLabel(QString::fromUtf8(words));
  mark->setObjectName(QString::fromUtf8(name));
  mark->setProperty("role", "mark");
  mark->setToolTip(QString::fromUtf8(toolTip));
  row->addWidget(mark);
  view.binder().unseen({name});
  view.binder().onRefresh([mark, &visible, &record] {
    const bool wanted = visible && !record.lblID.caption.empty();
    if (mark->isHidden() == wanted) mark->setVisible(wanted);
  });
  return mark;
}

void addMarks(View& view, QHBoxLayout* row, const frmTBDetail& record) {
  const auto mark = [&](const char* name, const char* words, const char* toolTip, const bool& visible) {
    return addMark(view, row, name, words, toolTip, record, visible);
  };
  mark("picRen", "変更あり", "画面の内容は、まだ保存されていません.", record.picRen.visible);
  QLabel* locked = mark("picEdit", "編集不可", "このテーブルは、参照のみ行えます.", record.picEdit.visible);
  view.binder().onRefresh([locked, &record] {
    locked->setToolTip(QStringLiteral("このテーブルは、参照のみ行えます.\n") + toQt(record.whyReadOnly));
  });
  mark("lblAllSystem", "全システム共通", "全システム共通のテーブルです.", record.lblAllSystem.visible);
  mark("PicReverse", "リバース", "データベースから読み込まれた定義です.", record.PicReverse.visible);
  mark("PicPmark", "個人情報", "個人情報を含むテーブルです.", record.PicPmark.visible);
  mark("lblBRIN", "BRIN", "BRINインデックスを使用します.", record.lblBRIN.visible);
  mark("picTrigger", "トリガー", "トリガーが設定されています.", record.picTrigger.visible);
  mark("lblIndex", "インデックス", "インデックスが作成されています.", record.lblIndex.visible);
}

/// A grid of captions and values, filled column by column.
class Facts {
 public:
  explicit Facts(QWidget* around) : layout_(new QGridLayout(around)) {
    layout_->setContentsMargins(0, 0, 0, 0);
    layout_->setHorizontalSpacing(6);
    layout_->setVerticalSpacing(0);
    for (int row = 0; row < kFactRows; ++row) layout_->setRowMinimumHeight(row, kFactHeight);
  }

  void add(const char* caption, QWidget* value, QWidget* button = nullptr) {
    auto* label = new QLabel(QString::fromUtf8(caption));
    label->setProperty("role", "faint");
    const int row = count_ % kFactRows;
    const int column = count_ / kFactRows * 3;
    layout_->addWidget(label, row, column);
    layout_->addWidget(value, row, column + 1);
    if (button) layout_->addWidget(button, row, column + 2);
    layout_->setColumnMinimumWidth(column + 2, 16);
    ++count_;
  }

 private:
  QGridLayout* layout_;
  int count_ = 0;
};

QToolButton* factButton(const char* caption, const char* toolTip) {
  auto* button = new QToolButton;
  button->setText(QString::fromUtf8(caption));
  button->setToolTip(QString::fromUtf8(toolTip));
  // No higher than the line of facts that it stands in.
  button->setStyleSheet(QStringLiteral("padding: 0 6px;"));
  button->setMaximumHeight(kFactHeight);
  return button;
}

}  // namespace

QWidget* makeDetailTitle(View& view, frmTBDetail& record) {
  auto* title = new QWidget;
  auto* rows = new QVBoxLayout(title);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(2);
  title->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  auto* names = new QHBoxLayout;
  names->setSpacing(12);
  auto* name = shown(view.binder(), "txtTableNameJPN", new ElidedLabel, record.txtTableNameJPN);
  name->setProperty("role", "title");
  name->setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
  names->addWidget(name);
  auto* english = shown(view.binder(), "txtTableNameENG", new ElidedLabel, record.txtTableNameENG);
  english->setAlignment(Qt::AlignLeft | Qt::AlignBottom);
  english->setTextInteractionFlags(Qt::TextSelectableByMouse);
  names->addWidget(english, 1, Qt::AlignBottom);
  rows->addLayout(names);
  auto* below = new QHBoxLayout;
  below->setSpacing(6);
  addMarks(view, below, record);
  below->addStretch(1);
  rows->addLayout(below);
  return title;
}

QWidget* makeDetailFacts(View& view, frmTBDetail& record) {
  auto* around = new QWidget;
  Facts facts(around);
  Binder& binder = view.binder();
  const auto label = [&](const char* caption, const std::string& name, const Label& control, const char* tip = "") {
    auto* value = new ElidedLabel;
    value->setToolTip(QString::fromUtf8(tip));
    facts.add(caption, binder.bind(name, value, control));
  };
  label("ID", "lblID", record.lblID);
  label("システム", "lblSystemName", record.lblSystemName);
  label("略名", "lblRyaku", record.lblRyaku);
  label("分類", "lblBunrui", record.lblBunrui);

  label("データベース", "lblFileType", record.lblFileType);
  label("格納先", "lblHost", record.lblHost);
  label("データ分類", "lblDataBunrui", record.lblDataBunrui);
  label("作成間隔", "lblKanKaku", record.lblKanKaku);

  label("初回SQL", "lblFirstSQL", record.lblFirstSQL, "SQL文の初回作成日");
  label("最新SQL", "lblNewSQL", record.lblNewSQL, "SQL文の最新作成日");
  label("作成回数", "lblNumSQL", record.lblNumSQL, "SQL文の作成回数");
  label("確認点", "lblCheckPoint", record.lblCheckPoint, "チェックポイントの日付");

  constexpr std::array kCounts = {"現在数", "想定数", "現在保持", "想定保持"};
  for (std::size_t i = 0; i < kCounts.size(); ++i)
    label(kCounts[i], "lblKensu:" + std::to_string(i), record.lblKensu[i]);

  constexpr std::array kStorage = {"初期", "増分", "最小数", "最大数", "増加率", "空き率", "使用率"};
  constexpr std::array kStorageTips = {"INITIAL",     "NEXT",    "MINEXTENTS", "MAXEXTENTS",
                                       "PCTINCREASE", "PCTFREE", "PCTUSED"};
  for (std::size_t i = 0; i < kStorage.size(); ++i)
    label(kStorage[i], "lblNum:" + std::to_string(i), record.lblNum[i], kStorageTips[i]);
  label("表領域", "lblTbSpace", record.lblTbSpace);

  label("入力元", "lblInpData", record.lblInpData, "データ入力元");
  label("画面名等", "lblInpForm", record.lblInpForm);
  auto* open = factButton("開く", "参照ファイルを開きます.");
  binder.bind("cmdRefFile", open, record.cmdRefFile,
              [&view, &record] { cmdRefFile_Click(view.app().session, view.app().host, record); });
  facts.add("参照ファイル", shown(binder, "txtRefFileNameRead", new ElidedLabel, record.txtRefFileNameRead), open);
  auto* release = factButton("解除", "パーティションの設定を解除します.");
  binder.bind("cmdPartition", release, record.cmdPartition,
              [&view, &record] { cmdPartition_Click(view.app().session, view.app().host, record); });
  facts.add("パーティション", shown(binder, "txtPartitionRead", new ElidedLabel, record.txtPartitionRead), release);
  return around;
}

}  // namespace quillmarden
