// Texts that look like statements in every text control of every screen: what reaches the Repository is what an honest
// name would have changed there, or nothing.

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <filesystem>
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

/// Rows as texts without the name, so that runs that differ in the name alone can be compared.
using Contents = std::multiset<std::string>;

class InjectionTest : public DesktopTest {
 protected:
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

  /// Types the name into all text controls and into the first rows of all grids.
  void fill(View& view) {
    for (auto* edit : view.findChildren<QLineEdit*>()) {
      if (!edit->isEnabled() || edit->isReadOnly()) continue;
      edit->selectAll();
      type(*edit, name.c_str());
    }
    for (auto* edit : view.findChildren<QPlainTextEdit*>()) {
      if (!edit->isEnabled() || edit->isReadOnly()) continue;
      edit->selectAll();
      type(*edit, name.c_str());
    }
    for (auto* grid : view.findChildren<QAbstractItemView*>()) {
      for (int row = 0; grid->model() && row < std::min(2, grid->model()->rowCount()); ++row)
        for (int column = 0; column < grid->model()->columnCount(); ++column)
          if (const QModelIndex cell = grid->model()->index(row, column); cell.flags().testFlag(Qt::ItemIsEditable))
            grid->model()->setData(cell, toQt(name));
    }
    settle();
  }
  View* reopen(const std::string& screen) {
    if (!app.session.gDB) return nullptr;
    if (!app.open.has(screen)) turn.run([&] { openScreen(app, screen); });
    settle();
    return front->find(screen);
  }

  /// What each button of each screen does with the name in all controls, by "screen.button".
  void drive(const std::function<bool(const std::string&)>& chosen, std::map<std::string, Contents>& done) {
    for (const ViewMaker& maker : viewMakers()) {
      const std::string screen(maker.screen);
      if (screen == "frmSplash" || screen == "frmLogInNew" || screen == "frmAppBar" || screen == "frmMessageClose")
        continue;
      View* first = reopen(screen);
      ASSERT_NE(first, nullptr) << screen;
      std::set<std::string> buttons;
      for (auto* button : first->findChildren<QAbstractButton*>())
        if (!button->objectName().isEmpty() && !isLeftOut(fromQt(button->objectName())))
          buttons.insert(fromQt(button->objectName()));
      for (const std::string& button : buttons) {
        const std::string key = screen + "." + button;
        if (!chosen(key)) continue;
        restore();
        View* view = reopen(screen);
        ASSERT_NE(view, nullptr) << key;
        fill(*view);
        if (auto* found = view->findChild<QAbstractButton*>(toQt(button)); found && found->isEnabled()) found->click();
        settle();
        ASSERT_TRUE(app.session.gDB) << key << " ends the session";
        done.emplace(key, contents());
      }
      restore();
      if (app.open.has(screen) && screen != "frmTBList" && screen != "frmTBDetail")
        turn.run([&] { closeScreen(app, screen); });
      settle();
    }
  }

  std::string name;
};

TEST_F(InjectionTest, Trial) {
  name = kHonest;
  begin();
  std::map<std::string, Contents> done;
  const Contents before = contents();
  drive([](const std::string&) { return true; }, done);
  for (const auto& [key, after] : done) {
    Contents gone;
    std::set_difference(after.begin(), after.end(), before.begin(), before.end(), std::inserter(gone, gone.end()));
    std::printf("%s %zu %s\n", key.c_str(), gone.size(), gone.empty() ? "" : gone.begin()->c_str());
  }
}

}  // namespace
}  // namespace quillmarden
