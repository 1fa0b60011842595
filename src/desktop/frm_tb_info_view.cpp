#include "desktop/frm_tb_info_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDropEvent>
#include <QFormLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTabWidget>
#include <algorithm>
#include <array>
#include <functional>
#include <utility>

#include "desktop/elided_label.h"
#include "desktop/forms.h"
#include "desktop/list_table.h"
#include "editing/frm_tb_info.h"

namespace quillmarden {

namespace {

constexpr int kTbInfoMargin = 16;
/// The boxes that one sort of table or another wants filled.
constexpr std::array kRequiredBoxes = {"TxtJPN",  "TxtTableName", "CmbFileType", "CmbBunrui",
                                       "TxtMemo", "TxtRyaku",     "CmbKanKaku"};

/// A page of two forms side by side.
struct TwoForms {
  QWidget* page = new QWidget;
  QFormLayout* left = nullptr;
  QFormLayout* right = nullptr;

  TwoForms() {
    auto* row = new QHBoxLayout(page);
    row->setContentsMargins(kTbInfoMargin, kTbInfoMargin, kTbInfoMargin, kTbInfoMargin);
    row->setSpacing(24);
    for (QFormLayout** side : {&left, &right}) {
      auto* half = new QWidget;
      *side = fieldForm(half);
      row->addWidget(half, 1);
    }
  }
};

/// The field of the reference file: files are dropped on it, its text is not typed.
class FileField : public QLineEdit {
 public:
  std::function<void(std::vector<std::string> files)> dropped;

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override {
    if (event->mimeData()->hasUrls()) event->acceptProposedAction();
  }
  void dropEvent(QDropEvent* event) override {
    std::vector<std::string> files;
    for (const QUrl& url : event->mimeData()->urls())
      if (url.isLocalFile()) files.push_back(fromQt(url.toLocalFile()));
    event->acceptProposedAction();
    if (dropped && !files.empty()) dropped(std::move(files));
  }
};

/// Words behind a field, which take no room where there are none.
QLabel* hint(Binder& binder, const char* name, const Label& control) {
  auto* label = new QLabel;
  label->setObjectName(QString::fromUtf8(name));
  label->setProperty("role", "faint");
  binder.unseen({name});
  binder.onRefresh([label, &control] {
    label->setText(toQt(control.caption));
    label->setVisible(!control.caption.empty());
  });
  return label;
}

/// A field, and what stands behind it in the same line.
QWidget* inRow(QWidget* field, std::initializer_list<QWidget*> behind) {
  auto* around = new QWidget;
  // The line takes no room that a list beside the form needs.
  around->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  auto* row = new QHBoxLayout(around);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(6);
  row->addWidget(field, 1);
  for (QWidget* widget : behind) row->addWidget(widget);
  return around;
}

}  // namespace

FrmTbInfoView::FrmTbInfoView(Front& front, std::string screen) : View(front, std::move(screen)), record_(app().tbInfo) {
  binder().bindTitle(this, record_.caption);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(kTbInfoMargin, kTbInfoMargin, kTbInfoMargin, kTbInfoMargin);
  rows->setSpacing(12);
  rows->addWidget(makeNames());
  auto* tabs = new QTabWidget;
  tabs->addTab(makeBasics(), QStringLiteral("基本"));
  tabs->addTab(makeFigures(), QStringLiteral("件数・容量"));
  tabs->addTab(makeFiles(), QStringLiteral("参照ファイル・所属"));
  rows->addWidget(tabs, 1);
  rows->addWidget(makeFlags());
  rows->addWidget(makeButtons());
  resize(900, 640);
  watchRequired();
  binder().onRefresh([this] { takeFocus(record_.focus); });
  findChild<QWidget*>("TxtJPN")->setFocus();
  closeOnEscape();
}

void FrmTbInfoView::markMissing() {
  const auto missing = record_.refused ? missingBoxes(record_) : std::vector<std::string_view>();
  for (const char* name : kRequiredBoxes)
    markFault(findChild<QWidget*>(name), std::find(missing.begin(), missing.end(), name) != missing.end());
}

/// A mark goes as its box is filled.
void FrmTbInfoView::watchRequired() {
  for (const char* name : kRequiredBoxes) {
    const auto* box = findChild<QWidget*>(name);
    if (const auto* line = qobject_cast<const QLineEdit*>(box))
      connect(line, &QLineEdit::textChanged, this, [this] { markMissing(); });
    else if (const auto* lines = qobject_cast<const QPlainTextEdit*>(box))
      connect(lines, &QPlainTextEdit::textChanged, this, [this] { markMissing(); });
    else if (const auto* list = qobject_cast<const QComboBox*>(box))
      connect(list, &QComboBox::currentTextChanged, this, [this] { markMissing(); });
  }
  binder().onRefresh([this] { markMissing(); });
}

QComboBox* FrmTbInfoView::combo(const char* name, ComboBox& control, bool editable, Handler handler) {
  auto* box = new QComboBox;
  box->setEditable(editable);
  box->setInsertPolicy(QComboBox::NoInsert);
  box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  box->setMinimumContentsLength(8);
  return binder().bind(name, box, control, std::move(handler));
}

QLineEdit* FrmTbInfoView::line(const std::string& name, TextBox& control, Handler handler) {
  return binder().bind(name, new QLineEdit, control, std::move(handler));
}

QWidget* FrmTbInfoView::makeNames() {
  auto* around = new QWidget;
  auto* columns = new QHBoxLayout(around);
  columns->setContentsMargins(0, 0, 0, 0);
  columns->setSpacing(24);
  auto* names = new QWidget;
  QFormLayout* fields = fieldForm(names);
  auto* owner = new QWidget;
  auto* ownerRow = new QHBoxLayout(owner);
  ownerRow->setContentsMargins(0, 0, 0, 0);
  auto* id = binder().bind("lblID", new QLabel, record_.lblID);
  id->setProperty("role", "faint");
  ownerRow->addWidget(binder().bind("lblSystemName", new ElidedLabel, record_.lblSystemName), 1);
  ownerRow->addWidget(id);
  fields->addRow(QStringLiteral("システム"), owner);
  fields->addRow(QStringLiteral("日本語名"), line("TxtJPN", record_.TxtJPN));
  fields->addRow(QStringLiteral("テーブル名"), inRow(line("TxtTableName", record_.TxtTableName),
                                                     {hint(binder(), "lblTableNameForm", record_.lblTableNameForm)}));
  fields->addRow(QStringLiteral("略名"), inRow(line("TxtRyaku", record_.TxtRyaku,
                                                    [this] { TxtRyaku_Change(app().session, app().host, record_); }),
                                               {hint(binder(), "lblRyakuForm", record_.lblRyakuForm)}));
  columns->addWidget(names, 3);

  auto* inUse = new QWidget;
  auto* inUseRows = new QVBoxLayout(inUse);
  inUseRows->setContentsMargins(0, 0, 0, 0);
  inUseRows->setSpacing(4);
  auto* heading = new QLabel(QStringLiteral("略名の一覧"));
  heading->setProperty("role", "heading");
  auto* list = new ListTable(record_.lstRyaku, {});
  list->horizontalHeader()->hide();
  list->setMinimumHeight(60);
  inUseRows->addWidget(heading);
  inUseRows->addWidget(binder().bind("lstRyaku", list, record_.lstRyaku), 1);
  columns->addWidget(inUse, 1);
  return around;
}

QWidget* FrmTbInfoView::makeBasics() {
  TwoForms forms;
  forms.left->addRow(QStringLiteral("データベース"), combo("CmbFileType", record_.CmbFileType, false, [this] {
                       CmbFileType_Change(app().session, app().host, record_);
                     }));
  forms.left->addRow(QStringLiteral("目的分類"), combo("CmbBunrui", record_.CmbBunrui, true));
  forms.left->addRow(QStringLiteral("格納先"), combo("CmbHost", record_.CmbHost, true));
  forms.left->addRow(QStringLiteral("作成間隔"), combo("CmbKanKaku", record_.CmbKanKaku, true));
  forms.left->addRow(QStringLiteral("データ分類"), combo("CmbDataBunrui", record_.CmbDataBunrui, true));
  forms.left->addRow(QStringLiteral("データ分類2"), combo("CmbDataBunrui2", record_.CmbDataBunrui2, true));
  forms.left->addRow(QStringLiteral("データ入力元"), combo("CmbInpData", record_.CmbInpData, true));
  forms.left->addRow(QStringLiteral("画面名等"), line("TxtInpForm", record_.TxtInpForm));

  forms.right->addRow(QStringLiteral("進捗状況"),
                      combo("CmbStat", record_.CmbStat, false, [this] { CmbStat_Change(app().host, record_); }));
  forms.right->addRow(QStringLiteral("担当者名"), line("TxtTanto", record_.TxtTanto));
  const std::array<std::tuple<const char*, TextBox*, const char*, const char*>, 3> dates = {
      {{"TxtMakeDate", &record_.TxtMakeDate, "作成日", "参加日"},
       {"TxtEndDate", &record_.TxtEndDate, "完了日", "終了予定日"},
       {"TxtChgDate", &record_.TxtChgDate, "変更日", "終了日"}}};
  for (const auto& [name, control, plain, ofMember] : dates) {
    auto* caption = new QLabel;
    auto* field = line(name, *control);
    field->setPlaceholderText(QStringLiteral("yyyy/mm/dd"));
    caption->setBuddy(field);
    forms.right->addRow(caption, field);
    binder().onRefresh([this, caption, plain = plain, ofMember = ofMember] {
      caption->setText(QString::fromUtf8(record_.CmbFileType.text == "メンバー" ? ofMember : plain));
    });
  }
  auto* memo = new QPlainTextEdit;
  memo->setTabChangesFocus(true);
  memo->setMinimumHeight(60);
  forms.right->addRow(QStringLiteral("概要"), binder().bind("TxtMemo", memo, record_.TxtMemo));
  return forms.page;
}

QWidget* FrmTbInfoView::makeFigures() {
  TwoForms forms;
  forms.left->addRow(QStringLiteral("件数定義"), combo("CmbKensu", record_.CmbKensu, false));
  constexpr std::array kCounts = {"現在数", "想定数", "現在保持", "想定保持"};
  for (std::size_t i = 0; i < kCounts.size(); ++i)
    forms.left->addRow(QString::fromUtf8(kCounts[i]), line("TxtKensu:" + std::to_string(i), record_.TxtKensu[i]));
  constexpr std::array<std::pair<const char*, OraValue>, 7> kStorage = {{{"初期(INITIAL)", kOraInitial},
                                                                         {"増分(NEXT)", kOraNext},
                                                                         {"最小数(MINEXTENTS)", kOraMinExtents},
                                                                         {"最大数(MAXEXTENTS)", kOraMaxExtents},
                                                                         {"増加率(PCTINCREASE)", kOraPctIncrease},
                                                                         {"空き率(PCTFREE)", kOraPctFree},
                                                                         {"使用率(PCTUSED)", kOraPctUsed}}};
  for (const auto& [caption, value] : kStorage)
    forms.right->addRow(QString::fromUtf8(caption), line("TxtOra:" + std::to_string(value), record_.TxtOra[value]));
  forms.right->addRow(QStringLiteral("表領域"), line("TxtTbSpace", record_.TxtTbSpace));
  forms.right->addRow(QStringLiteral("索引の表領域"), line("TxtIndexSpace", record_.TxtIndexSpace));
  return forms.page;
}

QWidget* FrmTbInfoView::makeFiles() {
  auto* page = new QWidget;
  QFormLayout* fields = fieldForm(page);
  fields->setContentsMargins(kTbInfoMargin, kTbInfoMargin, kTbInfoMargin, kTbInfoMargin);
  Application& app = this->app();
  const auto button = [this](const char* name, const char* caption, Button& control, Handler handler) {
    return binder().bind(name, new QPushButton(QString::fromUtf8(caption)), control, std::move(handler));
  };
  auto* file = binder().bind("TxtRefFileName", new FileField, record_.TxtRefFileName);
  file->setPlaceholderText(QStringLiteral("ここにファイルをドロップしてください."));
  file->dropped = [this, &app](const std::vector<std::string>& files) {
    this->front().turn().run([&] { TxtRefFileName_Drop(app.session, app.host, record_, files); });
  };
  fields->addRow(QStringLiteral("参照ファイル"),
                 inRow(file, {button("cmdRefFileOpen", "開く", record_.cmdRefFileOpen,
                                     [this, &app] { cmdRefFileOpen_Click(app.session, app.host, record_); }),
                              button("cmdClearRefFile", "解除", record_.cmdClearRefFile,
                                     [this, &app] { cmdClearRefFile_Click(app.session, app.host, record_); }),
                              button("cmdFileMemo", "メモファイル", record_.cmdFileMemo,
                                     [this, &app] { cmdFileMemo_Click(app.session, app.host, record_); })}));
  fields->addRow(QStringLiteral("所属システム"),
                 inRow(combo("CmbMoveSystem", record_.CmbMoveSystem, false),
                       {button("cmdMoveSystem", "所属システム変更", record_.cmdMoveSystem,
                               [this, &app] { cmdMoveSystem_Click(app.session, app.host, app.windows, record_); })}));
  return page;
}

QWidget* FrmTbInfoView::makeFlags() {
  auto* around = new QWidget;
  auto* row = new QHBoxLayout(around);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(14);
  const std::array<std::tuple<const char*, const char*, CheckBox*>, 7> flags = {
      {{"ChkEditOK", "修正許可", &record_.ChkEditOK},
       {"ChkAllSystem", "全システム共通", &record_.ChkAllSystem},
       {"ChkRecUpdate", "レコード更新削除", &record_.ChkRecUpdate},
       {"ChkReverse", "リバース", &record_.ChkReverse},
       {"ChkPmark", "個人情報", &record_.ChkPmark},
       {"ChkBRIN", "BRINインデックス", &record_.ChkBRIN},
       {"ChkTrigger", "トリガー", &record_.ChkTrigger}}};
  for (const auto& [name, caption, control] : flags)
    row->addWidget(binder().bind(name, new QCheckBox(QString::fromUtf8(caption)), *control));
  row->addStretch(1);
  return around;
}

QWidget* FrmTbInfoView::makeButtons() {
  auto* around = new QWidget;
  auto* row = new QHBoxLayout(around);
  row->setContentsMargins(0, 0, 0, 0);
  row->addStretch(1);
  auto* ok = new QPushButton(QStringLiteral("更新"));
  ok->setDefault(true);
  ok->setShortcut(QKeySequence::Save);
  ok->setToolTip(QStringLiteral("登録内容を更新します. (Ctrl+S)"));
  row->addWidget(binder().bind("cmdOK", ok, record_.cmdOK, [this] {
    Application& app = this->app();
    if (!cmdOK_Click(app.session, app.host, app.windows, record_)) app.windows.close(this->screen());
  }));
  auto* cancel = new QPushButton(QStringLiteral("キャンセル"));
  cancel->setObjectName(QStringLiteral("cmdCancel"));
  connect(cancel, &QPushButton::clicked, this, &QWidget::close);
  row->addWidget(cancel);
  return around;
}

}  // namespace quillmarden
