// Texts that look like statements in every text control of every screen: what reaches the Repository are
// rows that bear the name, and no more of them than an honest name changes.

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QTimer>
#include <algorithm>
#include <filesystem>
#include <functional>
#include <iterator>
#include <map>
#include <set>

#include "common/text.h"
#include "desktop/views.h"
#include "desktop_fixture.h"
#include "engine/sql_text.h"
#include "shell/menu_map.h"
#include "shell/screens.h"

namespace quillmarden {
namespace {

const std::string kHonest = "正直";
const char* const kOddNames[] = {"it's",
                                 "'",
                                 "''",
                                 "x' OR '1'='1",
                                 "x' OR 'a'='a' OR '",
                                 "x'' OR ''1''=''1",
                                 "x') OR ('1'='1",
                                 "x')) OR (('1'='1",
                                 "x' OR True OR '",
                                 "x' OR 1=1 --",
                                 "x'; DELETE * FROM MAS_TABLEINFO; --",
                                 "x' UNION SELECT * FROM MAS_USER WHERE '1'='1",
                                 "x' & '",
                                 "x' OR a.ID > 0 OR '1'='",
                                 "x' OR システム名 Like '*",
                                 "x\\' OR '1'='1",
                                 "\"x\" OR \"1\"=\"1\"",
                                 "[x] OR 1=1",
                                 "paraSystem",
                                 "1 OR 1=1"};

/// Buttons and entries that end the session or the screen without a write, and those that only make workbooks.
bool isLeftOut(const std::string& name) {
  static const std::set<std::string> kLeftOut = {"CmdLogOff", "CmdEnd", "cmdCancel", "CmdCancel", "CmdClose", "mnuRev"};
  return kLeftOut.contains(name) || name.find("Excel") != std::string::npos;
}

bool saves(const std::string& button) { return button == "cmdOK" || button == "CmdOK" || button == "CmdUpDate"; }

/// Rows as texts without the name, so that runs that differ in the name alone can be compared.
using Contents = std::multiset<std::string>;

/// A run of the whole program on a Repository where things bear the name.
class NamedRun : public DesktopTest {
 public:
  explicit NamedRun(std::string given) : name(std::move(given)) {
    // A button that opens a menu waits for a choice.
    QObject::connect(&closer_, &QTimer::timeout, [] {
      if (QWidget* menu = QApplication::activePopupWidget()) menu->close();
    });
    closer_.start(10);
    begin();
  }

  const std::string name;

  void TestBody() override {}

  Contents contents() const {
    Contents all;
    const std::vector<TableDef> tables = app.session.gDB->tableDefs();
    for (const TableDef& table : tables)
      for (Recordset rows = app.session.gDB->openRecordset("Select * From [" + table.name + "]"); !rows.eof();
           rows.moveNext()) {
        std::string line = table.name;
        for (int column = 0; column < rows.fieldCount(); ++column) line.append("|").append(rows.text(column));
        all.insert(gReplaceAll(gReplaceAll(toLower(line), kHonest, "<>"), toLower(name), "<>"));
      }
    return all;
  }

  /// What each button of each screen does with the name in all controls, by "screen.button"; of those that save also
  /// with the name in one control, by "screen.button@place".
  void drive(const std::function<bool(const std::string&)>& chosen, std::map<std::string, Contents>& done) {
    for (const ViewMaker& maker : viewMakers()) {
      const std::string screen(maker.screen);
      if (screen == "frmSplash" || screen == "frmLogInNew" || screen == "frmAppBar" || screen == "frmMessageClose")
        continue;
      View* first = reopen(screen);
      ASSERT_NE(first, nullptr) << screen;
      const std::size_t placeCount = places(*first).size();
      std::set<std::string> buttons;
      for (auto* button : first->findChildren<QAbstractButton*>())
        if (!button->objectName().isEmpty() && !isLeftOut(fromQt(button->objectName())))
          buttons.insert(fromQt(button->objectName()));
      for (const std::string& button : buttons) {
        const auto press = [&](const std::string& key, std::size_t from, std::size_t to) {
          if (!chosen(key)) return;
          restore();
          View* shown = reopen(screen);
          ASSERT_NE(shown, nullptr) << key;
          const std::vector<std::function<void()>> all = places(*shown);
          for (std::size_t place = from; place < std::min(to, all.size()); ++place) all[place]();
          settle();
          if (auto* found = shown->findChild<QAbstractButton*>(toQt(button)); found && found->isEnabled())
            found->click();
          settle();
          ASSERT_TRUE(app.session.gDB) << key << " ends the session";
          done.emplace(key, contents());
        };
        press(screen + "." + button, 0, placeCount);
        // What is checked together is seldom right together: each place by itself as well.
        if (saves(button))
          for (std::size_t place = 0; place < placeCount; ++place)
            press(screen + "." + button + "@" + std::to_string(place), place, place + 1);
      }
      restore();
      if (app.open.has(screen) && screen != "frmTBList" && screen != "frmTBDetail")
        turn.run([&] { closeScreen(app, screen); });
      settle();
    }
  }

 private:
  /// Beside the sample's Systems one of the name, with what a System has under that name.
  void makeRepository() {
    Database database = Database::open(pristine());
    const std::string own = sqlText(name);
    database.execute("INSERT INTO MAS_SYSTEM (システム名, databasetype, 修正許可, 出力しない, 作成者, 概要) VALUES (" +
                     own + ", 'PostgreSQL', -1, 0, 'yamada', '概要')");
    database.execute(
        "INSERT INTO MAS_TABLEINFO (システム名, ファイル種別, テーブル名, 日本語名, 略名, 削除フラグ, 修正許可, "
        "REVERSE_DB) "
        "VALUES (" +
        own + ", 'PostgreSQL', " + own + ", " + own + ", " + own + ", 0, -1, 0)");
    const std::string id =
        std::to_string(database.openRecordset("SELECT Max(ID) AS newest FROM MAS_TABLEINFO").integer(0));
    database.execute(
        "INSERT INTO MAS_TABLEDETAILES (ID, ROWNO, 表示順, 項目名, 日本語名, 型, 整数桁数, 項目参照先) VALUES (" + id +
        ", 1, 1, 'f', " + own + ", 'varchar', 4, " + own + ")");
    database.execute("INSERT INTO MAS_DIVISION (システム名, 値名称, 種別, 型, 全システム共通, 削除フラグ) VALUES (" +
                     own + ", " + own + ", '区分', '文字', 0, 0)");
    database.execute("INSERT INTO MAS_DIVISIONDETAILES (システム名, 値名称, 行番号, 値, 内容) VALUES (" + own + ", " +
                     own + ", 1, 'a', 'b')");
    database.execute("INSERT INTO MAS_KENSU (システム名, 定義名, 件数, 全システム共通, 削除フラグ) VALUES (" + own +
                     ", " + own + ", 1, 0, 0)");
  }
  std::string repository() const { return (scripted.host.machine.programFolder / "hanbai.mdb").string(); }
  std::string pristine() const { return repository() + ".before"; }

  void begin() {
    std::filesystem::rename(repository(), pristine());
    makeRepository();
    std::filesystem::copy_file(pristine(), repository());
    scripted.answerAll(kYes);
    logInTo(name);
    std::filesystem::copy_file(repository(), pristine(), std::filesystem::copy_options::overwrite_existing);
    chooseRow("frmTBList", "LstTable", 0);
  }
  /// The file as it was after the login.
  void restore() {
    app.session.gDB.reset();
    std::filesystem::copy_file(pristine(), repository(), std::filesystem::copy_options::overwrite_existing);
    app.session.gDB = std::make_unique<Database>(Database::open(repository()));
  }

  /// Ways to type the name: into each text control and into each cell of a grid's first row.
  std::vector<std::function<void()>> places(View& view) {
    std::vector<std::function<void()>> all;
    const auto add = [&](auto* edit) {
      if (edit->isEnabled() && !edit->isReadOnly())
        all.push_back([this, edit] {
          edit->selectAll();
          type(*edit, name.c_str());
        });
    };
    for (auto* edit : view.findChildren<QLineEdit*>()) add(edit);
    for (auto* edit : view.findChildren<QPlainTextEdit*>()) add(edit);
    for (auto* grid : view.findChildren<QAbstractItemView*>())
      for (int column = 0; grid->model() && column < grid->model()->columnCount(); ++column)
        if (const QModelIndex cell = grid->model()->index(0, column); cell.flags().testFlag(Qt::ItemIsEditable))
          all.push_back([this, grid, column] { grid->model()->setData(grid->model()->index(0, column), toQt(name)); });
    return all;
  }

  View* reopen(const std::string& screen) {
    if (!app.session.gDB) return nullptr;
    if (!app.open.has(screen)) turn.run([&] { openScreen(app, screen); });
    settle();
    return front->find(screen);
  }

  QTimer closer_;
};

/// The rows that came and those that went.
Contents changes(const Contents& before, const Contents& after) {
  Contents changed;
  std::ranges::set_symmetric_difference(before, after, std::inserter(changed, changed.end()));
  return changed;
}

TEST(InjectionTest, ButtonsReachOnlyWhatBearsTheName) {
  std::set<std::string> writing;
  std::size_t most = 0;
  std::size_t pressed = 0;
  // Each button gets one of the odd names, and each odd name some of the buttons; the honest one gets all.
  for (std::size_t turn = 0; turn <= std::size(kOddNames); ++turn) {
    const bool odd = turn > 0;
    NamedRun run(odd ? kOddNames[turn - 1] : kHonest);
    const Contents before = run.contents();
    std::size_t number = 0;
    std::map<std::string, Contents> done;
    run.drive([&](const std::string&) { return !odd || number++ % std::size(kOddNames) == turn - 1; }, done);
    pressed += done.size();
    for (const auto& [button, after] : done) {
      const Contents changed = changes(before, after);
      if (!changed.empty()) writing.insert(button.substr(0, button.find('@')));
      if (!odd) most = std::max(most, changed.size());
      EXPECT_LE(changed.size(), most) << run.name << " in " << button;
      for (const std::string& row : changed)
        EXPECT_NE(row.find("<>"), std::string::npos) << run.name << " in " << button << " changes " << row;
    }
  }
  EXPECT_GT(pressed, 400U);
  for (const char* button : {"frmMemo.CmdUpDate", "frmTBDetail.CmdUpDate", "frmKENSU.CmdUpDate", "frmSystemInf.CmdChk"})
    EXPECT_TRUE(writing.contains(button)) << button;
}

}  // namespace
}  // namespace quillmarden
