// Saves a picture of every screen, filled from the sample: the last two arguments are the folder and "light" or "dark".
// QT_SCALE_FACTOR=2 makes them at 200 %. scripts/guide-screenshots takes the pictures of the users' guide from here.

#include <gtest/gtest.h>

#include <QApplication>
#include <QHash>
#include <QImage>
#include <QMenu>
#include <QPixmap>
#include <QTabWidget>
#include <QTimer>
#include <algorithm>

#include "desktop/theme.h"
#include "desktop/views.h"
#include "desktop/wait_panel.h"
#include "desktop_fixture.h"
#include "editing/frm_tb_detail_edit.h"
#include "editing/grid_backup.h"
#include "shell/detail_commands.h"
#include "shell/frm_message_close.h"
#include "shell/frm_msg.h"
#include "shell/screens.h"

namespace quillmarden {
namespace {

/// A picture of a screen needs few colours, and its file then a third of the room: the most frequent ones, and for all
/// others the nearest of them.
QImage inFewColours(const QImage& picture) {
  constexpr int kMost = 256;
  const QImage plain = picture.convertToFormat(QImage::Format_RGB32);
  QHash<QRgb, int> uses;
  for (int y = 0; y < plain.height(); ++y) {
    const auto* line = reinterpret_cast<const QRgb*>(plain.constScanLine(y));
    for (int x = 0; x < plain.width(); ++x) ++uses[line[x]];
  }
  QList<QRgb> colours = uses.keys();
  std::sort(colours.begin(), colours.end(),
            [&](QRgb a, QRgb b) { return std::pair(uses[a], a) > std::pair(uses[b], b); });
  return plain.convertToFormat(QImage::Format_Indexed8, colours.mid(0, kMost), Qt::ThresholdDither | Qt::AvoidDither);
}

class Screenshots : public DesktopTest {
 protected:
  void SetUp() override {
    const QStringList arguments = QCoreApplication::arguments();
    ASSERT_GE(arguments.size(), 3) << "desktop_screenshots FOLDER light|dark";
    folder = arguments[arguments.size() - 2];
    look = arguments.last();
    scripted.answerAll(kYes);
  }

  void save(QWidget& widget, const QString& name) {
    applyTheme(*qApp, lookOf(fromQt(look)));
    settle();
    const QImage picture = inFewColours(widget.grab().toImage());
    EXPECT_TRUE(picture.save(QStringLiteral("%1/%2-%3.png").arg(folder, name, look))) << fromQt(name);
  }

  QString folder;
  QString look;
};

TEST_F(Screenshots, LogIn) {
  startToLogIn();
  // The test's own folder has another name in every run.
  app.logIn.LstFolder.rows = {"/mnt/design"};
  turn.refresh();
  save(view("frmLogInNew"), "frmLogInNew");
  app.logIn.lblMsg.caption = "初期化中です...";
  app.logIn.PicMsg.visible = true;
  turn.refresh();
  save(view("frmLogInNew"), "frmLogInNew-busy");
}

TEST_F(Screenshots, Session) {
  frmSplash_Load(app.splash);
  openScreen(app, "frmSplash");
  save(view("frmSplash"), "frmSplash");
  app.windows.close("frmSplash");
  logInTo("販売管理_Oracle");
  save(view("frmTBList"), "frmTBList-start");
  save(view("frmAppBar"), "frmAppBar");
  chooseRow("frmTBList", "LstTable", 2);
  chooseRow("frmTBList", "LstTable", 4, Qt::ControlModifier);
  turn.run([this] {
    mnuExcelSel_Click(app.list);
    CmdFormList_Click(app.session, app.list);
  });
  save(view("frmTBList"), "frmTBList-wide");
  for (auto* menu : view("frmTBList").findChildren<QMenu*>()) {
    if (menu->objectName().isEmpty()) continue;
    menu->popup(QPoint(0, 0));
    save(*menu, "frmTBList-" + menu->objectName());
    menu->close();
  }
  press("frmTBList", "mnutEdit");
  if (QWidget* popup = QApplication::activePopupWidget()) {
    save(*popup, "frmTBList-mnutEdit");
    popup->close();
  }
  turn.run([this] { showMSG(app, "1 行目\n2 行目\n長い結果はここに表示されます."); });
  turn.run([this] { showMessageClose(app, "ログオフ処理中です..."); });
  for (const ViewMaker& maker : viewMakers()) {
    if (maker.screen == "frmSplash" || maker.screen == "frmLogInNew" || maker.screen == "frmTBList") continue;
    turn.run([&] { openScreen(app, maker.screen); });
    if (View* opened = front->find(maker.screen)) save(*opened, toQt(maker.screen));
  }
}

/// The grid after a save that was refused, its menu, and the question after a crash.
TEST_F(Screenshots, Details) {
  logInTo("販売管理_Oracle");
  chooseRow("frmTBList", "LstTable", 4);
  frmTBDetail& detail = app.detail();
  turn.run([&] {
    cellEdited(app.session, app.host, detail, field_col::kJapaneseName, 6, "受注日");
    cellEdited(app.session, app.host, detail, field_col::kType, 5, "");
  });
  press("frmTBDetail", "CmdUpDate");
  save(view("frmTBDetail"), "frmTBDetail-faults");
  auto* menu = view("frmTBDetail").findChild<QMenu*>("mnutPOPUP");
  ASSERT_NE(menu, nullptr);
  menu->popup(QPoint(0, 0));
  save(*menu, "frmTBDetail-mnutPOPUP");
  menu->close();

  GridLeftOver leftOver;
  leftOver.system = "販売管理_Oracle";
  leftOver.japaneseName = "受注";
  leftOver.time = formatDateTime(scripted.now, "yyyy/mm/dd hh:nn:ss");
  leftOver.user = "yamada";
  leftOver.rows = detail.Spread.maxRows();
  Host asking = app.host;
  asking.dialogs.message = showMessage;
  QTimer::singleShot(200, [this] {
    QWidget* box = QApplication::activeModalWidget();
    save(*box, "message-left-over");
    QTest::keyClick(box, Qt::Key_Return);
  });
  askLeftOver(asking, leftOver);
}

TEST_F(Screenshots, DetailModes) {
  logInTo();
  const std::vector<std::pair<const char*, const char*>> modes = {{"販売管理_Oracle", "table"},
                                                                  {"販売管理_連携ファイル", "text"},
                                                                  {"販売管理_メンバー", "member"},
                                                                  {"販売管理_固定値", "fixed"},
                                                                  {"販売管理_PG管理", "program"}};
  for (const auto& [system, name] : modes) {
    pick("frmTBList", "CmbSystem", system);
    chooseRow("frmTBList", "LstTable", 1);
    view("frmTBDetail").resize(1366, 700);
    save(view("frmTBDetail"), QStringLiteral("frmTBDetail-") + name);
  }
  view("frmTBDetail").resize(683, 360);
  save(view("frmTBDetail"), "frmTBDetail-arranged");
}

TEST_F(Screenshots, Settings) {
  logInTo("販売管理_Oracle");
  press("frmTBList", "CmdSystem");
  press("frmSystemInf", "CmdOracleSetting");
  press("frmSystemInf", "CmdOther");
  view("frmSystemInf").resize(980, 860);
  save(view("frmSystemInf"), "frmSystemInf-open");
  press("frmSystemInf", "cmdCancel");
  press("frmAppBar", "CmdInfo");
  auto* pages = view("frmOptions").findChild<QTabWidget*>();
  for (int page = 0; page < pages->count(); ++page) {
    pages->setCurrentIndex(page);
    save(view("frmOptions"), QStringLiteral("frmOptions-%1").arg(page + 1));
  }
  pages->setCurrentIndex(0);
  press("frmOptions", "CmdBackColor:0");
  save(view("frmCOLOR"), "frmCOLOR-chosen");
}

TEST_F(Screenshots, Messages) {
  for (const auto& [name, style] : {std::pair("information", int{kOkOnly}),
                                    {"question", kYesNo | kQuestionIcon},
                                    {"warning", kOkCancel | kWarningIcon},
                                    {"stop", kOkOnly | kStopIcon}}) {
    QTimer::singleShot(200, [this, name = name] {
      QWidget* box = QApplication::activeModalWidget();
      save(*box, QStringLiteral("message-%1").arg(name));
      box->close();
    });
    showMessage("検索条件をクリアします.\nよろしいですか?", style, "確認");
  }
}

TEST_F(Screenshots, Wait) {
  logInTo("販売管理_Oracle");
  WaitPanel panel(turn);
  panel.setText("受注明細 出力中です....");
  panel.setProgress(3, 12);
  panel.offerStop();
  save(view("frmTBList"), "wait");
}

/// The screens of value lists, memos, counts and reports with something in them.
TEST_F(Screenshots, Lists) {
  logInTo("販売管理_Oracle");
  chooseRow("frmTBList", "LstTable", 0);
  const auto opened = [this](const char* screen) {
    turn.run([&] { openScreen(app, screen); });
    settle();
  };
  opened("frmDivision");
  chooseRow("frmDivision", "lstDivision", 0);
  turn.run([this] {
    app.division.Spread.setText(division_col::kOutline, 2, "現金払い");
    Spread_Change(app.division, division_col::kOutline, 2);
  });
  save(view("frmDivision"), "frmDivision-filled");
  turn.run([this] { mnuEdit_Click(app.session, app.host, app.windows, app.division, app.diviInfo); });
  save(view("frmDiviInfo"), "frmDiviInfo-filled");
  app.windows.close("frmDiviInfo");

  turn.run([this] { openDivisionRef(app, "frmTBDetail"); });
  press("frmDiviRef", "CmdFind");
  chooseRow("frmDiviRef", "lstDivName", 1);
  save(view("frmDiviRef"), "frmDiviRef-filled");

  opened("frmMemo");
  turn.run([this] {
    for (const auto& [row, symbol, text] : {std::tuple(1, "※1", "締め日の翌営業日に、前日分までをまとめて取り込む."),
                                            std::tuple(2, "", "取り込みに失敗した行は、受注エラーへ退避する.")}) {
      app.memo.Spread.setText(memo_col::kSymbol, row, symbol);
      app.memo.Spread.setText(memo_col::kText, row, text);
      Spread_Change(app.memo, memo_col::kText, row);
    }
  });
  save(view("frmMemo"), "frmMemo-filled");

  app.session.gDB->execute("UPDATE MAS_TABLEINFO SET 分類 = 'マスタ' WHERE 日本語名 Like '*マスタ'");
  opened("frmKENSU");
  turn.run([this] {
    app.kenSu.TxtName.text = "店舗数";
    app.kenSu.Txtbiko.text = "商品を扱う店舗の数";
    app.kenSu.TxtSu.text = "120";
    CmdUpDate_Click(app.session, app.host, app.kenSu);
    CmdRef_Click(app.kenSu);
  });
  save(view("frmKENSU"), "frmKENSU-filled");

  opened("frmReport");
  pick("frmReport", "CmbDataSource", "出力_テーブル一覧");
  turn.run([this] { app.report.TxtPara[0].text = app.session.gCurrentSystemName; });
  press("frmReport", "CmdFind");
  save(view("frmReport"), "frmReport-filled");
}

}  // namespace
}  // namespace quillmarden
