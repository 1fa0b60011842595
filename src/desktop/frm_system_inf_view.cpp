#include "desktop/frm_system_inf_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>
#include <utility>

#include "desktop/forms.h"
#include "excel/format_buttons.h"
#include "operations/capacity.h"
#include "repository/frm_system_inf.h"
#include "shell/screen_buttons.h"

namespace quillmarden {

namespace {

constexpr int kSystemInfMargin = 16;
constexpr const char* kKindCaption = "デフォルトデータベース";

QVBoxLayout* column(std::initializer_list<QWidget*> groups) {
  auto* rows = new QVBoxLayout;
  rows->setSpacing(10);
  for (QWidget* group : groups) rows->addWidget(group);
  rows->addStretch(1);
  return rows;
}

/// A caption of a panel, whose fields stand below those of its group.
QLabel* panelCaption(const char* text = "") {
  auto* label = new QLabel(QString::fromUtf8(text));
  label->setMinimumWidth(label->fontMetrics().horizontalAdvance(QString::fromUtf8(kKindCaption)));
  return label;
}

QLabel* faint(const char* text) {
  auto* label = new QLabel(QString::fromUtf8(text));
  label->setProperty("role", "faint");
  label->setWordWrap(true);
  return label;
}

}  // namespace

FrmSystemInfView::FrmSystemInfView(Front& front, std::string screen)
    : View(front, std::move(screen)), record_(app().systemInf) {
  binder().bindTitle(this, record_.caption);
  auto* rows = new QVBoxLayout(this);
  rows->setContentsMargins(kSystemInfMargin, kSystemInfMargin, kSystemInfMargin, kSystemInfMargin);
  rows->setSpacing(12);
  auto* page = new QWidget;
  auto* columns = new QHBoxLayout(page);
  columns->setContentsMargins(0, 0, 0, 0);
  columns->setSpacing(14);
  columns->addLayout(column({makeBasics(), makeDatabase(), makeRename()}), 1);
  columns->addLayout(column({makeLayoutFile(), makeNaming(), makeTools()}), 1);
  rows->addWidget(scrolling(page), 1);
  rows->addWidget(makeButtons());
  // As high as what it opens with, where the display has the room; the page scrolls where it has not.
  binder().refresh();
  resize(980, sizeHint().height());
  binder().onRefresh([this] { takeFocus(record_.focus); });
  closeOnEscape();
  findChild<QWidget*>(record_.TxtSystemName.locked ? "TxtMemo" : "TxtSystemName")->setFocus();
}

Handler FrmSystemInfView::handler(Press press) {
  if (!press) return {};
  return [this, press] { press(app().session, app().host, record_); };
}

QLineEdit* FrmSystemInfView::line(const char* name, TextBox& control, Handler handler) {
  return binder().bind(name, new QLineEdit, control, std::move(handler));
}

QWidget* FrmSystemInfView::check(const char* name, const char* caption, CheckBox& control, Press press) {
  return binder().bind(name, new QCheckBox(QString::fromUtf8(caption)), control, handler(press));
}

QPushButton* FrmSystemInfView::button(const char* name, const char* caption, const char* toolTip, Button& control,
                                      Handler handler) {
  auto* made = new QPushButton(QString::fromUtf8(caption));
  made->setToolTip(QString::fromUtf8(toolTip));
  return binder().bind(name, made, control, std::move(handler));
}

QWidget* FrmSystemInfView::makeBasics() {
  QGroupBox* group = fieldGroup("基本情報");
  QFormLayout* fields = fieldsOf(group);
  fields->addRow(QStringLiteral("システム名"), line("TxtSystemName", record_.TxtSystemName));
  auto* memo = new QPlainTextEdit;
  memo->setTabChangesFocus(true);
  memo->setFixedHeight(memo->fontMetrics().lineSpacing() * 3 + 18);
  fields->addRow(QStringLiteral("概要"), binder().bind("TxtMemo", memo, record_.TxtMemo));
  fields->addRow(QStringLiteral("ユーザー制限"), binder().bind("CmbEdit", new QComboBox, record_.CmbEdit));
  fields->addRow(check("ChkChangeData", "システム全体を編集できないように設定します.", record_.ChkChangeData));
  fields->addRow(check("ChkNoPut", "テーブルリストで表示しない", record_.ChkNoPut));
  return group;
}

QWidget* FrmSystemInfView::makeDatabase() {
  QGroupBox* group = fieldGroup("データベース");
  QFormLayout* fields = fieldsOf(group);
  auto* kind = new QComboBox;
  kind->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
  kind->setMinimumContentsLength(10);
  // A kind that the catalogue does not list any more is still seen.
  binder().onRefresh([this, kind] { kind->setPlaceholderText(toQt(record_.CmbDBType.text)); });
  binder().bind("CmbDBType", kind, record_.CmbDBType, handler(CmbDBType_Click));
  auto* setting = button("CmdOracleSetting", "", "データベースの種類ごとの設定を開きます.", record_.CmdOracleSetting,
                         handler(CmdOracleSetting_Click));
  binder().onRefresh([this, setting] {
    if (const QString caption = toQt(record_.settingCaption); setting->text() != caption) setting->setText(caption);
  });
  fields->addRow(QString::fromUtf8(kKindCaption), sideBySide({kind, setting}));
  fields->addRow(makeKindPanel());
  fields->addRow(makeAccessPanel());
  fields->addRow(check("ChkDataBase", "接続するデータベースを定義する", record_.ChkDataBase));
  fields->addRow(QStringLiteral("ODBCデータソース名"), line("TxtDataSource", record_.TxtDataSource));
  fields->addRow(QStringLiteral("ユーザー名"), line("txtUserName", record_.txtUserName));
  QLineEdit* password = line("TxtPassword", record_.TxtPassword);
  password->setEchoMode(QLineEdit::Password);
  fields->addRow(QStringLiteral("パスワード"), password);
  return group;
}

void FrmSystemInfView::addCaptioned(QFormLayout* form, const char* labelName, Label& label, const char* name,
                                    TextBox& control) {
  auto* caption = binder().bind(labelName, panelCaption(), label);
  QLineEdit* field = line(name, control);
  caption->setBuddy(field);
  form->addRow(caption, field);
  binder().onRefresh([field, &label] {
    if (field->isHidden() == label.visible) field->setVisible(label.visible);
  });
}

QWidget* FrmSystemInfView::makeKindPanel() {
  auto* panel = new QFrame;
  QFormLayout* fields = fieldForm(panel);
  auto* heading = new QLabel;
  heading->setProperty("role", "faint");
  fields->addRow(binder().bind("lblSetName", heading, record_.lblSetName));
  addCaptioned(fields, "lblDBBlock", record_.lblDBBlock, "TxtBlockSize", record_.TxtBlockSize);
  addCaptioned(fields, "lblTableSpace", record_.lblTableSpace, "TxtTableSpace", record_.TxtTableSpace);
  addCaptioned(fields, "lblIndex", record_.lblIndex, "TxtIndexSpace", record_.TxtIndexSpace);
  return binder().bind("FraDBSetting", static_cast<QWidget*>(panel), record_.FraDBSetting);
}

QWidget* FrmSystemInfView::makeAccessPanel() {
  auto* panel = new QFrame;
  QFormLayout* fields = fieldForm(panel);
  fields->addRow(faint("デフォルトAccessファイル名"));
  fields->addRow(panelCaption("ファイル名"),
                 line("TxtAccessFileName", record_.TxtAccessFileName, handler(TxtAccessFileName_Change)));
  fields->addRow(panelCaption("設定内容"), line("TxtUserNameAccess", record_.TxtUserNameAccess));
  return binder().bind("FraAccess", static_cast<QWidget*>(panel), record_.FraAccess);
}

QWidget* FrmSystemInfView::makeLayoutFile() {
  QGroupBox* group = fieldGroup("出力書式ファイルの定義");
  QFormLayout* fields = fieldsOf(group);
  QLineEdit* file = line("TxtLayoutFile", record_.TxtLayoutFile);
  fields->addRow(QStringLiteral("書式ファイル名"), file);
  Application& app = this->app();
  fields->addRow(
      fromTheLeft({button("CmdLayoutInfo", "出力書式定義", "出力ルールのファイルを開きます.", record_.CmdLayoutInfo,
                          [this, &app] { CmdLayoutInfo_Click(app.session, app.host, record_); }),
                   button("CmdLayoutCheck", "定義のチェック", "出力ルールの記入を確認します.", record_.CmdLayoutCheck,
                          [this, &app] { CmdLayoutCheck_Click(app.session, app.host, record_); }),
                   button("CmdOpenFolder", "フォルダを開く", "書式ファイルのフォルダを開きます.", record_.CmdOpenFolder,
                          handler(CmdOpenFolder_Click))}));
  return group;
}

QWidget* FrmSystemInfView::makeTools() {
  QGroupBox* group = fieldGroup("すべてのテーブルに対する処理");
  auto* grid = new QGridLayout;
  grid->setSpacing(6);
  const auto put = [&](int row, int column, int span, const char* name, const char* caption, const char* toolTip,
                       Button& control, Handler handler) {
    grid->addWidget(button(name, caption, toolTip, control, std::move(handler)), row, column, 1, span);
  };
  put(0, 0, 6, "CmdProtect", "全てのテープルに対して個別に編集禁止にする", "", record_.CmdProtect,
      handler(CmdProtect_Click));
  put(1, 0, 6, "CmdUnProtect", "全てのテーブルの編集許可を取り消す", "", record_.CmdUnProtect,
      handler(CmdUnProtect_Click));
  put(2, 0, 6, "CmdChk", "このシステムにチェックポイントを設定", "", record_.CmdChk, handler(CmdChk_Click));
  put(3, 0, 2, "CmdNarrow", "全角->半角", "項目名で設定さている全角を半角に変換します.", record_.CmdNarrow,
      handler(CmdNarrow_Click));
  put(3, 2, 2, "CmdLowerCase", "大文字->小文字", "項目名で設定さている大文字を小文字に変換します.",
      record_.CmdLowerCase, handler(CmdLowerCase_Click));
  put(3, 4, 2, "CmdDef0", "数値(値)=0", "Number型で、項目分類=数値(値)に、\n初期値=0(Default 0)を設定する.",
      record_.CmdDef0, handler(CmdDef0_Click));
  put(4, 0, 3, "CmdCalc", "レコード長の再計算", "", record_.CmdCalc, handler(CmdCalc_Click));
  put(4, 3, 3, "CmdDel", "リバーステーブルの削除", "リバーステーブルを削除します.", record_.CmdDel,
      handler(CmdDel_Click));
  put(5, 0, 6, "cmdConvAccessSQLServer", "Access ⇒ SQL Server",
      "Accessのシステムを、SQL Serverのシステムとして複写します.", record_.cmdConvAccessSQLServer,
      [this] { cmdConvAccessSQLServer_Click(app()); });
  fieldsOf(group)->addRow(grid);
  return group;
}

QWidget* FrmSystemInfView::makeRename() {
  QGroupBox* group = fieldGroup("システム名の変更");
  QFormLayout* fields = fieldsOf(group);
  fields->addRow(QStringLiteral("変更前"), line("TxtSystemNameOld", record_.TxtSystemNameOld));
  fields->addRow(QStringLiteral("変更後"),
                 sideBySide({line("TxtSystemNameNew", record_.TxtSystemNameNew),
                             button("cmdChange", "変更", "システム名を変更し、ログオフします.", record_.cmdChange,
                                    [this] { cmdChange_Click(app()); })}));
  return binder().bind("fraSystemChange", static_cast<QWidget*>(group), record_.fraSystemChange);
}

QWidget* FrmSystemInfView::makeNaming() {
  auto* around = new QWidget;
  auto* rows = new QVBoxLayout(around);
  rows->setContentsMargins(0, 0, 0, 0);
  rows->setSpacing(6);
  QPushButton* open =
      button("CmdOther", "その他設定", "名前の登録のしかたを設定します.", record_.CmdOther, handler(CmdOther_Click));
  rows->addWidget(open, 0, Qt::AlignLeft);
  auto* panel = new QFrame;
  auto* checks = new QVBoxLayout(panel);
  checks->setContentsMargins(12, 0, 0, 0);
  checks->setSpacing(0);
  checks->addWidget(check("ChkTableNameUcase", "テーブル名を常に大文字として登録する", record_.ChkTableNameUcase));
  checks->addWidget(check("ChkNarrow", "テーブル名を常に半角として登録する", record_.ChkNarrow));
  checks->addWidget(check("ChkFieldNameLcase", "項目名(物理・フィールド名)を常に小文字として登録する",
                          record_.ChkFieldNameLcase, ChkFieldNameLcase_Click));
  checks->addWidget(check("ChkFieldNameUcase", "項目名(物理・フィールド名)を常に大文字として登録する",
                          record_.ChkFieldNameUcase, ChkFieldNameUcase_Click));
  checks->addWidget(check("ChkFieldNameAsTyped", "項目名(物理)を入力のまま登録する", record_.ChkFieldNameAsTyped,
                          ChkFieldNameAsTyped_Click));
  checks->addWidget(check("ChkFieldNameNarrow", "項目名(物理・フィールド名)の全角英数字を半角として登録する",
                          record_.ChkFieldNameNarrow));
  checks->addWidget(check("ChkRyakuLower", "略名を小文字半角にする", record_.ChkRyakuLower));
  checks->addWidget(check("ChkDelMoji", "略名から 「 - 」「_ (アンダーパー)」 除く", record_.ChkDelMoji));
  checks->addWidget(
      check("chkReplaceJPNSpace", "日本語項目名(論理)の、全角/半角空白をなくす。", record_.chkReplaceJPNSpace));
  checks->addWidget(
      check("chkFileLinkCopy", "ファイルリンクのファイルを、プログラムのフォルダに複写する", record_.chkFileLinkCopy));
  rows->addWidget(binder().bind("FraOther", static_cast<QWidget*>(panel), record_.FraOther));
  return around;
}

QWidget* FrmSystemInfView::makeButtons() {
  auto* around = new QWidget;
  auto* row = new QHBoxLayout(around);
  row->setContentsMargins(0, 0, 0, 0);
  row->addStretch(1);
  QPushButton* ok = button("cmdOK", "更新", "登録内容を更新します. (Ctrl+S)", record_.cmdOK,
                           [this] { cmdOK_Click(app().session, app().host, record_); });
  ok->setShortcut(QKeySequence::Save);
  row->addWidget(ok);
  row->addWidget(button("cmdCancel", "キャンセル", "", record_.cmdCancel, handler(cmdCancel_Click)));
  answerEnter(ok);
  return around;
}

}  // namespace quillmarden
