#include "repository/users.h"

#include "repository/placements.h"
#include "repository_fixture.h"

namespace quillmarden {
namespace {

using Rows = std::vector<std::string>;

class Users : public RepositoryTest {
 protected:
  void SetUp() override {
    createRepository(file(), {"sato", "O'Neil"});
    logIn();
  }
  Rows users() { return rows("SELECT ユーザー名, グループ FROM MAS_USER ORDER BY ユーザー名"); }
  void expectQuestion(const std::string& text, int answer = kYes) { scripted.expect("確認", text, answer); }
};

TEST_F(Users, AreAddedInAGroupOrNone) {
  expectQuestion("ユーザーを追加します.\n ユーザー名 : 鈴木 一");
  EXPECT_EQ(addUser(session, scripted.host, " 鈴木 一 ", ""), Outcome::Done);
  expectQuestion("ユーザーを追加します.\n ユーザー名 : chief");
  EXPECT_EQ(addUser(session, scripted.host, "chief", "admin"), Outcome::Done);
  expectQuestion("ユーザーを追加します.\n ユーザー名 : nobody", kNo);
  EXPECT_EQ(addUser(session, scripted.host, "nobody", ""), Outcome::Refused);
  EXPECT_EQ(users(), (Rows{"admin|ADMIN", "chief|admin", "O'Neil|-", "sato|-", "鈴木 一|-"}));
  EXPECT_TRUE(isAdministrator(readUsers(*session.gDB)[1]));

  scripted.expect("確認", "このユーザー名は既に登録されています.\n ユーザー名 : SATO");
  EXPECT_EQ(addUser(session, scripted.host, "SATO", ""), Outcome::Refused);
  scripted.expect("確認", "ユーザー名が未入力です.\n ユーザー名 : ");
  EXPECT_EQ(addUser(session, scripted.host, "  ", ""), Outcome::Refused);
  for (const std::string_view name : {"a\tb", "a\u0085b", "a\x9b", "d'arc"}) {
    scripted.answerAll(kYes);
    EXPECT_EQ(addUser(session, scripted.host, name, ""), Outcome::Refused) << name;
  }
  EXPECT_EQ(users().size(), 5u);
}

TEST_F(Users, OfTheGroupAdminAreAnAdministratorsMatter) {
  session.gLoginUser = "sato";
  const std::string refusal = "管理者でないため、ユーザーを変更できません.\n ユーザー名 : sato";
  for (int i = 0; i < 3; ++i) scripted.expect("確認", refusal);
  EXPECT_EQ(addUser(session, scripted.host, "mine", "ADMIN"), Outcome::Refused);
  EXPECT_EQ(setUserGroup(session, scripted.host, "sato", "ADMIN"), Outcome::Refused);
  EXPECT_EQ(removeUser(session, scripted.host, "O'Neil"), Outcome::Refused);
  EXPECT_EQ(users(), (Rows{"admin|ADMIN", "O'Neil|-", "sato|-"}));

  // Another tool's Repository may know no administrator: anybody can name the first.
  session.gDB->execute("UPDATE MAS_USER SET グループ = Null");
  expectQuestion("ユーザーのグループを変更します.\n ユーザー名 : sato");
  EXPECT_EQ(setUserGroup(session, scripted.host, "SATO", "ADMIN"), Outcome::Done);
  scripted.expect("確認", "管理者がいなくなるため、変更できません.\n ユーザー名 : sato");
  EXPECT_EQ(setUserGroup(session, scripted.host, "sato", ""), Outcome::Refused);
  EXPECT_EQ(users(), (Rows{"admin|-", "O'Neil|-", "sato|ADMIN"}));
}

TEST_F(Users, GoButForTheLastAdministratorAndTheLastOfAll) {
  expectQuestion("ユーザーを削除します.\n ユーザー名 : O'Neil");
  EXPECT_EQ(removeUser(session, scripted.host, "o'neil"), Outcome::Done);
  expectQuestion("ユーザーを削除します.\n ユーザー名 : sato", kNo);
  EXPECT_EQ(removeUser(session, scripted.host, "sato"), Outcome::Refused);
  scripted.expect("確認", "管理者がいなくなるため、削除できません.\n ユーザー名 : admin");
  EXPECT_EQ(removeUser(session, scripted.host, "admin"), Outcome::Refused);
  scripted.expect("確認", "ユーザー名が未登録です.\n ユーザー名 : x' OR '1'='1");
  EXPECT_EQ(removeUser(session, scripted.host, "x' OR '1'='1"), Outcome::Refused);
  EXPECT_EQ(users(), (Rows{"admin|ADMIN", "sato|-"}));

  session.gDB->execute("DELETE * FROM MAS_USER WHERE ユーザー名 = 'sato'");
  scripted.expect("確認", "最後のユーザーは削除できません.\n ユーザー名 : admin");
  EXPECT_EQ(removeUser(session, scripted.host, "admin"), Outcome::Refused);
}

TEST_F(Users, AndPlacementsAreNotAGuestsToChange) {
  session.gIsGuest = true;
  for (int i = 0; i < 5; ++i) scripted.expect("確認", "guestでは、変更できません.");
  EXPECT_EQ(addUser(session, scripted.host, "x", ""), Outcome::Refused);
  EXPECT_EQ(setUserGroup(session, scripted.host, "sato", "x"), Outcome::Refused);
  EXPECT_EQ(removeUser(session, scripted.host, "sato"), Outcome::Refused);
  EXPECT_EQ(addPlacement(session, scripted.host, "x"), Outcome::Refused);
  EXPECT_EQ(removePlacement(session, scripted.host, "x"), Outcome::Refused);
}

TEST_F(Users, FindPlacementsAddedOnceAndRemovedWithAWordOnTheirTables) {
  session.gDB->execute("INSERT INTO MAS_HOST (格納先) VALUES ('本社 ')");
  session.gDB->execute("INSERT INTO MAS_HOST (格納先) VALUES (Null)");
  expectQuestion("格納先を追加します.\n 格納先 : 支社's");
  EXPECT_EQ(addPlacement(session, scripted.host, " 支社's "), Outcome::Done);
  scripted.expect("確認", "この格納先は既に登録されています.\n 格納先 : 本社");
  EXPECT_EQ(addPlacement(session, scripted.host, "本社"), Outcome::Refused);
  scripted.expect("確認", "格納先が未入力です.\n 格納先 : ");
  EXPECT_EQ(addPlacement(session, scripted.host, " "), Outcome::Refused);
  EXPECT_EQ(readPlacements(*session.gDB), (Rows{"支社's", "本社"}));

  session.gDB->execute("INSERT INTO MAS_TABLEINFO (テーブル名, 格納先, 削除フラグ) VALUES ('t', '本社', 0)");
  expectQuestion("格納先を削除します.\n 格納先 : 本社\n 1件のテーブルで使用されています.");
  EXPECT_EQ(removePlacement(session, scripted.host, "本社"), Outcome::Done);
  scripted.expect("確認", "指定の格納先が存在しません.\n 格納先 : 本社");
  EXPECT_EQ(removePlacement(session, scripted.host, "本社"), Outcome::Refused);
  EXPECT_EQ(readPlacements(*session.gDB), (Rows{"支社's"}));
  EXPECT_EQ(cell("SELECT 格納先 FROM MAS_TABLEINFO"), "本社");
}

}  // namespace
}  // namespace quillmarden
