#include "desktop/frm_sp_sort_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "editing/frm_sp_sort.h"
#include "shell/detail_commands.h"

namespace quillmarden {

FrmSpSortView::FrmSpSortView(Front& front, std::string screen) : View(front, std::move(screen)) {
  setWindowTitle(QStringLiteral("並び替え設定"));
  frmSpSort& record = app().spSort;
  auto* layout = new QGridLayout(this);
  layout->setContentsMargins(20, 20, 20, 16);
  layout->setHorizontalSpacing(12);
  layout->setVerticalSpacing(10);
  constexpr std::array kCaptions = {"最優先のキー", "２番目のキー", "３番目のキー"};
  for (std::size_t i = 0; i < kCaptions.size(); ++i) {
    const int row = static_cast<int>(i);
    const std::string place = ":" + std::to_string(i);
    auto* key = binder().bind("CmbKey" + place, new QComboBox, record.CmbKey[i]);
    key->setMinimumWidth(240);
    auto* caption = new QLabel(QString::fromUtf8(kCaptions[i]));
    caption->setBuddy(key);
    layout->addWidget(caption, row, 0);
    layout->addWidget(key, row, 1);
    layout->addWidget(
        binder().bind("ChkDescending" + place, new QCheckBox(QStringLiteral("降順")), record.ChkDescending[i]), row, 2);
  }
  layout->setColumnStretch(1, 1);
  layout->setRowStretch(static_cast<int>(kCaptions.size()), 1);
  layout->setRowMinimumHeight(static_cast<int>(kCaptions.size()), 8);
  auto* ok = new QPushButton(QStringLiteral("OK"));
  ok->setObjectName(QStringLiteral("cmdOK"));
  connect(ok, &QPushButton::clicked, this, binder().act([this] { sortGrid(app()); }));
  auto* cancel = new QPushButton(QStringLiteral("キャンセル"));
  cancel->setObjectName(QStringLiteral("cmdCancel"));
  connect(cancel, &QPushButton::clicked, this, &QWidget::close);
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(8);
  buttons->setSpacing(6);
  buttons->addStretch(1);
  buttons->addWidget(ok);
  buttons->addWidget(cancel);
  layout->addLayout(buttons, static_cast<int>(kCaptions.size()) + 1, 0, 1, 3);
  resize(sizeHint());
  answerEnter(ok);
  closeOnEscape();
  adjustSize();
}

}  // namespace quillmarden
