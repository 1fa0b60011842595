#include "desktop/views.h"

#include <QRegularExpression>
#include <filesystem>
#include <set>

#include "common/text.h"
#include "desktop_fixture.h"
#include "shell/menu_map.h"
#include "shell/screen_table.h"
#include "shell/screens.h"
#include "support/files.h"

namespace quillmarden {
namespace {

/// The source of a record, from its opening brace to the closing one; "" when no header declares it.
std::string recordSource(std::string_view screen) {
  const std::string wanted = toLower(screen);
  static const QRegularExpression kRecord(
      "^struct (frm\\w+) \\{(.*?)^\\};",
      QRegularExpression::MultilineOption | QRegularExpression::DotMatchesEverythingOption);
  for (const auto& entry : std::filesystem::recursive_directory_iterator(QM_SOURCES)) {
    if (entry.path().extension() != ".h") continue;
    auto matches = kRecord.globalMatch(toQt(readFile(entry.path())));
    while (matches.hasNext()) {
      const auto match = matches.next();
      if (toLower(fromQt(match.captured(1))) == wanted) return fromQt(match.captured(2));
    }
  }
  return "";
}

/// The names of the controls that a record declares.
std::set<std::string> controlsOf(const std::string& source) {
  static const QRegularExpression kControl(
      "^\\s+(?:std::(?:array|vector)<)?(?:quillmarden::)?"
      "(?:Label|Picture|TextBox|CheckBox|OptionButton|Button|MenuItem|ComboBox|ListBox|Spread)(?:(?:, \\w+)?>)? "
      "([^;=({]+)",
      QRegularExpression::MultilineOption);
  std::set<std::string> names;
  auto matches = kControl.globalMatch(toQt(source));
  while (matches.hasNext())
    for (const QString& name : matches.next().captured(1).split(',')) names.insert(fromQt(name.trimmed()));
  return names;
}

/// What a view binds, and what its menus ask the record for.
std::set<std::string> boundBy(const View& view) {
  std::set<std::string> names;
  for (const std::string& name : view.binder().bound()) names.insert(name.substr(0, name.find(':')));
  return names;
}

class ViewsTest : public DesktopTest {};

TEST_F(ViewsTest, EveryScreenOpensWithEveryControlOfItsRecordBound) {
  scripted.answerAll(kYes);
  logInTo("販売管理_Oracle");
  chooseRow("frmTBList", "LstTable", 0);
  for (const ViewMaker& maker : viewMakers()) {
    SCOPED_TRACE(maker.screen);
    if (maker.screen == "frmLogInNew" || maker.screen == "frmSplash") continue;  // gone by now; below
    if (!app.open.has(maker.screen)) turn.run([&] { openScreen(app, maker.screen); });
    View* opened = front->find(maker.screen);
    ASSERT_NE(opened, nullptr);
    EXPECT_TRUE(opened->isVisible());
    opened->grab();
    // A small display, its panel and the window's frame.
    EXPECT_LE(opened->minimumSizeHint().width(), 1366);
    EXPECT_LE(opened->minimumSizeHint().height(), 700);
    const std::set<std::string> bound = boundBy(*opened);
    for (const std::string& control : controlsOf(recordSource(maker.screen)))
      EXPECT_TRUE(bound.contains(control)) << control << " is not bound";
  }
}

TEST_F(ViewsTest, SplashAndLogInAreBound) {
  turn.run([this] { openScreen(app, "frmSplash"); });
  turn.run([this] { openScreen(app, "frmLogInNew"); });
  for (const char* screen : {"frmSplash", "frmLogInNew"})
    for (const std::string& control : controlsOf(recordSource(screen)))
      EXPECT_TRUE(boundBy(view(screen)).contains(control)) << screen << " " << control;
}

TEST(ScreensTest, TheRecordsThatTheTestReadsHaveControls) {
  // Were the pattern to find nothing, the tests above could not fail.
  EXPECT_TRUE(controlsOf(recordSource("frmTBList")).contains("CmbWhereMoji"));
  EXPECT_TRUE(controlsOf(recordSource("frmdetailslist")).contains("lstDetails"));
  EXPECT_GE(controlsOf(recordSource("frmTBDetail")).size(), 40U);
  EXPECT_TRUE(controlsOf(recordSource("frmOptions")).contains("ChkOption"));
  EXPECT_TRUE(controlsOf(recordSource("frmCOLOR")).contains("lblCOL"));
}

TEST(ScreensTest, EveryScreenHasAWindow) {
  for (const ScreenKind& kind : screenTable()) {
    // The icon is no window, and the stop button stands on the wait panel.
    if (kind.name == "frmTASK" || kind.name == "frmSTOP") continue;
    EXPECT_NE(findViewMaker(kind.name), nullptr) << kind.name;
  }
}

TEST_F(ViewsTest, AWindowComesBackWhereItWasLeftAndNeverOffTheDisplay) {
  logInTo();
  view("frmTBList").setGeometry(40, 30, 620, 640);
  turn.run([this] { app.windows.close("frmTBList"); });
  turn.run([this] { openScreen(app, "frmTBList"); });
  EXPECT_EQ(view("frmTBList").geometry(), QRect(40, 30, 620, 640));
  view("frmTBList").move(90'000, -90'000);
  turn.run([this] { app.windows.close("frmTBList"); });
  turn.run([this] { openScreen(app, "frmTBList"); });
  const QRect room = view("frmTBList").QWidget::screen()->geometry();
  EXPECT_TRUE(room.contains(view("frmTBList").geometry()));
}

}  // namespace
}  // namespace quillmarden
