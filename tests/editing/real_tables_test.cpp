// What real schemas hold comes through a save of every row: names in their letters, types that the catalogue lacks,
// types without the digits that it asks for.

#include <filesystem>

#include "editing_fixture.h"
#include "repository/upgrade.h"

namespace quillmarden {
namespace {

namespace fs = std::filesystem;

class RealTablesTest : public EditingTest {
 protected:
  void SetUp() override {
    EditingTest::SetUp();
    const std::string file = scripted.folder.file("real.mdb");
    fs::copy_file(fs::path(QM_TEST_DATA).parent_path() / "real" / "applications.mdb", file);
    session.gDB = std::make_unique<Database>(Database::open(file));
    session.catalogue = {};
    scripted.answerAll(kYes);
    upgradeRepository(session, scripted.host);
    database().execute("UPDATE MAS_SYSTEM SET field_name_astyped = -1");
  }

  Lines stored(const std::string& id) {
    return fields(id,
                  "ROWNO, 日本語名, 項目名, [KEY], 型, 整数桁数, 少数桁数, Null値, 項目分類, 備考 & '', 初期値 & '', "
                  "外部参照TABLEID, 外部参照ROWNO");
  }

  void saveAll(const std::string& system) {
    ASSERT_TRUE(selectSystem(session, scripted.host, system));
    const Lines tables = rows("SELECT ID FROM MAS_TABLEINFO WHERE システム名 = '" + system + "'");
    ASSERT_FALSE(tables.empty());
    for (const std::string& id : tables) {
      const Lines before = stored(id);
      ASSERT_FALSE(load(id));
      for (int row = 1; row <= detail.Spread.maxRows(); ++row) put(row, {});
      EXPECT_FALSE(CmdUpDate_Click(session, scripted.host, detail)) << scripted.messages.back();
      EXPECT_EQ(stored(id), before) << detail.caption;
    }
  }
};

TEST_F(RealTablesTest, AllRowsAreSavedAsTheyWere) {
  for (const char* system : {"MY_backup", "MY_webmail", "PG_webmail"}) saveAll(system);
}

}  // namespace
}  // namespace quillmarden
