#include "desktop/frm_memo_view.h"

#include <QAction>
#include <QMenu>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "desktop/elided_label.h"
#include "desktop/plain_grid.h"
#include "operations/memo.h"

namespace quillmarden {

FrmMemoView::FrmMemoView(Front& front, std::string screen)
    : View(front, std::move(screen)),
      record_(app().memo),
      grid_(new PlainGrid(*this, record_.Spread, record_.block,
                          [this](int col, int row) { Spread_Change(record_, col, row); })) {
  binder().bindTitle(this, record_.caption);
  binder().unseen({"Spread"});
  binder().onRefresh([this] { grid_->showRecord(record_.changed); });
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(12, 12, 12, 12);
  rows->setSpacing(8);
  rows->addWidget(makeHead());
  rows->addWidget(grid_, 1);
  rows->addLayout(makeFoot());
  resize(760, 460);
  grid_->goTo(memo_col::kSymbol, 1);
  grid_->setFocus();
}

/// The table's name as a detail screen has it; "" when none shows the table any more.
std::string FrmMemoView::tableName() {
  for (const auto& [name, detail] : app().details)
    if (detail.lblID.caption == record_.tableId) return detail.txtTableNameJPN.text;
  return "";
}

QWidget* FrmMemoView::makeHead() {
  auto* around = new QWidget;
  auto* row = new QHBoxLayout(around);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(8);
  auto* title = new ElidedLabel;
  title->setProperty("role", "title");
  title->setText(toQt(tableName()));
  row->addWidget(title, 1);
  auto* changed = new QLabel;
  changed->setProperty("role", "mark");
  changed->setToolTip(QStringLiteral("画面の内容は、まだ保存されていません."));
  row->addWidget(binder().bind("lblEdit", changed, record_.lblEdit), 0, Qt::AlignVCenter);

  auto* clear = new QAction(QStringLiteral("選択範囲のクリア"), this);
  clear->setShortcut(QKeySequence(QStringLiteral("Alt+Backspace")));
  clear->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  clear->setToolTip(QStringLiteral("選択範囲のクリア (Alt+Backspace)"));
  grid_->addAction(clear);
  binder().bind("mnuClear", clear, record_.mnuClear, grid_->asStep([this] { mnuClear_Click(app().host, record_); }));
  auto* menu = new QMenu(this);
  menu->addAction(clear);
  grid_->setPopUp(menu);
  auto* tool = new QToolButton;
  tool->setDefaultAction(clear);
  tool->setFocusPolicy(Qt::TabFocus);
  connect(tool, &QToolButton::pressed, grid_, [this] { grid_->endEdit(); });
  row->addWidget(tool);
  return around;
}

QLayout* FrmMemoView::makeFoot() {
  auto* row = new QHBoxLayout;
  row->setSpacing(8);
  row->addStretch(1);
  auto* save = new QPushButton(QStringLiteral("更新"));
  save->setDefault(true);
  save->setShortcut(QKeySequence::Save);
  save->setToolTip(QStringLiteral("付帯メモを更新します. (Ctrl+S)"));
  connect(save, &QPushButton::clicked, grid_, [this] { grid_->endEdit(); });
  row->addWidget(binder().bind("CmdUpDate", save, record_.CmdUpDate,
                               [this] { CmdUpDate_Click(app().session, app().host, record_); }));
  auto* close = binder().bind("CmdClose", new QPushButton(QStringLiteral("閉じる")), record_.CmdClose);
  connect(close, &QPushButton::clicked, this, &QWidget::close);
  row->addWidget(close);
  return row;
}

void FrmMemoView::closeEvent(QCloseEvent* event) {
  if (grid_->model()) grid_->endEdit();
  View::closeEvent(event);
}

void FrmMemoView::aboutToRelease() { grid_->setModel(nullptr); }

}  // namespace quillmarden
