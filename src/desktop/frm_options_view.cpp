#include "desktop/frm_options_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTabWidget>
#include <QVBoxLayout>
#include <algorithm>
#include <array>
#include <utility>
#include <vector>

#include "desktop/forms.h"
#include "shell/frm_options.h"
#include "shell/screen_buttons.h"

namespace quillmarden {

namespace {

constexpr int kOptionsMargin = 16;

/// The name of one control of an array.
std::string indexed(std::string_view name, std::size_t index) {
  return std::string(name).append(":").append(std::to_string(index));
}

/// A page of a tab with one or two columns of groups.
struct Page {
  QWidget* widget = new QWidget;
  std::vector<QVBoxLayout*> columns;

  explicit Page(int count) {
    auto* row = new QHBoxLayout(widget);
    row->setContentsMargins(kOptionsMargin, kOptionsMargin, kOptionsMargin, kOptionsMargin);
    row->setSpacing(14);
    for (int column = 0; column < count; ++column) {
      columns.push_back(new QVBoxLayout);
      columns.back()->setSpacing(10);
      row->addLayout(columns.back(), 1);
    }
  }
  /// The groups keep their height at the top.
  QWidget* closed() {
    for (QVBoxLayout* column : columns) column->addStretch(1);
    return widget;
  }
};

}  // namespace

FrmOptionsView::FrmOptionsView(Front& front, std::string screen)
    : View(front, std::move(screen)), record_(app().options) {
  setWindowModality(Qt::ApplicationModal);
  binder().bindTitle(this, record_.caption);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(kOptionsMargin, kOptionsMargin, kOptionsMargin, kOptionsMargin);
  rows->setSpacing(12);
  rows->addWidget(makePages(), 1);
  rows->addWidget(makeButtons());
  closeOnEscape();
  resize(820, 560);
}

QWidget* FrmOptionsView::makePages() {
  auto* tabs = new QTabWidget;
  Page screens(2), output(2);
  screens.columns[0]->addWidget(makeLetters());
  screens.columns[1]->addWidget(makeColours());
  addSwitches(std::array{screens.columns[0], screens.columns[1], output.columns[0], output.columns[1]});
  output.columns[1]->addWidget(
      makeChecks("Excelに出力するメンバーの列", "ChkPutMemberInfo", memberCaptions(), record_.ChkPutMemberInfo, 2));
  tabs->addTab(screens.closed(), QStringLiteral("画面"));
  tabs->addTab(output.closed(), QStringLiteral("出力"));
  tabs->addTab(makeCopyPage(), QStringLiteral("行のコピー"));
  binder().onRefresh([this, tabs] {
    // All boxes that a message can be about stand on the first page.
    if (!record_.focus.empty()) tabs->setCurrentIndex(0);
    takeFocus(record_.focus);
  });
  return tabs;
}

void FrmOptionsView::addNumber(QFormLayout* form, const char* caption, const char* unit, const char* name,
                               TextBox& control) {
  QLineEdit* field = narrow(binder().bind(name, new QLineEdit, control), 6);
  auto* label = new QLabel(QString::fromUtf8(caption));
  label->setBuddy(field);
  form->addRow(label, fromTheLeft({field, new QLabel(QString::fromUtf8(unit))}));
}

QWidget* FrmOptionsView::makeLetters() {
  QGroupBox* group = fieldGroup("文字と画面");
  QFormLayout* fields = fieldsOf(group);
  addNumber(fields, "テーブルリストの文字", "ポイント", "TxtFontSize2TableList", record_.TxtFontSize2TableList);
  addNumber(fields, "項目の画面の文字", "ポイント", "TxtFontSize2Spread", record_.TxtFontSize2Spread);
  addNumber(fields, "行の高さ", "倍(文字の大きさに対して)", "TxtSpreadRowHeightScale", record_.TxtSpreadRowHeightScale);
  fields->addRow(QStringLiteral("画面のテーマ"),
                 binder().bind("CmbDisplayTema", new QComboBox, record_.CmbDisplayTema));
  return group;
}

QWidget* FrmOptionsView::makeColours() {
  QGroupBox* group = fieldGroup("項目の画面の色");
  for (std::size_t which = 0; which < record_.lblBackColor.size(); ++which) {
    auto* colour = new QLabel;
    colour->setMinimumWidth(120);
    colour->setStyleSheet(QStringLiteral("border-radius:4px;"));
    binder().bind(indexed("lblBackColor", which), colour, record_.lblBackColor[which]);
    auto* change = new QPushButton(QStringLiteral("選択..."));
    change->setToolTip(QStringLiteral("色を一覧から選択します."));
    binder().bind(indexed("CmdBackColor", which), change, record_.CmdBackColor[which],
                  [this, which] { CmdBackColor_Click(app(), static_cast<int>(which)); });
    fieldsOf(group)->addRow(toQt(optionColourCaptions()[which]), sideBySide({colour, change}));
  }
  return group;
}

void FrmOptionsView::addSwitches(std::span<QVBoxLayout* const> columns) {
  const auto lines = optionLines();
  QVBoxLayout* checks = nullptr;
  std::string_view title;
  std::size_t groups = 0;
  for (std::size_t place = 0; place < lines.size() && place < record_.ChkOption.size(); ++place) {
    if (std::exchange(title, lines[place].group) != lines[place].group) {
      auto* group = new QGroupBox(toQt(title));
      checks = new QVBoxLayout(group);
      checks->setContentsMargins(12, 8, 12, 12);
      checks->setSpacing(6);
      columns[std::min(groups++, columns.size() - 1)]->addWidget(group);
    }
    checks->addWidget(binder().bind(indexed("ChkOption", place), new QCheckBox(toQt(lines[place].caption)),
                                    record_.ChkOption[place]));
  }
}

QWidget* FrmOptionsView::makeChecks(const char* title, const char* name, std::span<const std::string_view> captions,
                                    std::span<CheckBox> controls, int columns) {
  auto* group = new QGroupBox(QString::fromUtf8(title));
  auto* grid = new QGridLayout(group);
  grid->setContentsMargins(12, 8, 12, 12);
  grid->setHorizontalSpacing(18);
  grid->setVerticalSpacing(6);
  const auto perColumn = (static_cast<int>(controls.size()) + columns - 1) / columns;
  for (std::size_t place = 0; place < controls.size(); ++place) {
    auto* box = new QCheckBox(toQt(captions[place]));
    const int at = static_cast<int>(place);
    grid->addWidget(binder().bind(indexed(name, place), box, controls[place]), at % perColumn, at / perColumn);
  }
  grid->setColumnStretch(columns, 1);
  return group;
}

QWidget* FrmOptionsView::makeCopyPage() {
  Page page(1);
  page.columns[0]->addWidget(
      makeChecks("行のコピーの対象とする列", "ChkSpreadCopy", spreadCopyCaptions(), record_.ChkSpreadCopy, 3));
  return page.closed();
}

QWidget* FrmOptionsView::makeButtons() {
  auto* around = new QWidget;
  auto* row = new QHBoxLayout(around);
  row->setContentsMargins(0, 0, 0, 0);
  row->addStretch(1);
  auto* ok = new QPushButton(QStringLiteral("OK"));
  ok->setShortcut(QKeySequence::Save);
  ok->setToolTip(QStringLiteral("設定を保存します. (Ctrl+S)"));
  row->addWidget(
      binder().bind("cmdOK", ok, record_.cmdOK, [this] { cmdOK_Click(app().session, app().host, record_); }));
  row->addWidget(binder().bind("cmdCancel", new QPushButton(QStringLiteral("キャンセル")), record_.cmdCancel,
                               [this] { cmdCancel_Click(app().session, app().host, record_); }));
  answerEnter(ok);
  return around;
}

}  // namespace quillmarden
