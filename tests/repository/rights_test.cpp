#include "repository/rights.h"

#include <gtest/gtest.h>

#include "repository_fixture.h"

namespace quillmarden {
namespace {

class Rights : public RepositoryTest {
 protected:
  void SetUp() override {
    createRepository(file(), {"admin", "sato"});
    logIn("sato");
    session.gLoginUser = "sato";
    system("販売", "suzuki", -1, 0);
    system("在庫", "suzuki", -1, 0);
    ASSERT_TRUE(selectSystem(session, scripted.host, "販売"));
  }

  void system(const std::string& name, const std::string& owner, int open, int limit) {
    session.gDB->execute("DELETE * FROM MAS_SYSTEM WHERE システム名 = '" + name + "'");
    session.gDB->execute("INSERT INTO MAS_SYSTEM (システム名, 作成者, 修正許可, ユーザー制限) VALUES ('" + name +
                         "', '" + owner + "', " + std::to_string(open) + ", " + std::to_string(limit) + ")");
  }

  /// A table; its ID.
  std::string table(const std::string& system, const std::string& kind, const std::string& open, int deleted) {
    session.gDB->execute(
        "INSERT INTO MAS_TABLEINFO (システム名, テーブル名, ファイル種別, 修正許可, 削除フラグ) VALUES ('" + system +
        "', 'T', '" + kind + "', " + open + ", " + std::to_string(deleted) + ")");
    return cell("SELECT Max(ID) FROM MAS_TABLEINFO");
  }

  static std::string refusal(const Right& right) { return right ? "allowed" : right.reason; }
};

TEST_F(Rights, OfASystemFollowItsLockAndItsLimit) {
  const auto both = [&](int open, int limit) {
    system("在庫", "Suzuki", open, limit);
    return std::pair(static_cast<bool>(mayChangeSystem(session, "在庫")),
                     static_cast<bool>(mayChangeSystemRecord(session, "在庫")));
  };
  EXPECT_EQ(both(-1, 0), std::pair(true, true));
  EXPECT_EQ(both(-1, 1), std::pair(true, true));
  EXPECT_EQ(both(0, 0), std::pair(false, true)) << "the lock is taken off in the record";
  EXPECT_EQ(both(-1, 2), std::pair(false, false)) << "the limit is not the shut-out user's to lift";
  EXPECT_EQ(refusal(mayChangeSystem(session, "在庫")),
            "ユーザー制限のため、変更できません.\n システム名 : 在庫\n 作成者 : Suzuki");
  session.gLoginUser = "suzuki";
  EXPECT_EQ(both(-1, 2), std::pair(true, true));
  EXPECT_EQ(both(0, 2), std::pair(false, true));

  EXPECT_FALSE(mayChangeSystem(session, kAllSystems));
  EXPECT_FALSE(mayChangeSystem(session, "なし"));
  EXPECT_FALSE(mayChangeSystem(session, "在庫' OR '1'='1")) << "a name is a value";
}

TEST_F(Rights, OfATableFollowItsOwnSystem) {
  const auto refusedFor = [&](const std::string& id, TableChange change = TableChange::kDefinition) {
    return refusal(mayChangeTable(session, id, change));
  };
  const std::string own = table("販売", "Oracle", "Null", 0);
  const std::string others = table("在庫", "Oracle", "-1", 0);
  const std::string locked = table("販売", "Oracle", "0", 0);
  const std::string deleted = table("販売", "Oracle", "-1", 1);
  const std::string member = table("在庫", "メンバー", "-1", 0);

  EXPECT_EQ(refusedFor(own), "allowed") << "a lock that was never set";
  EXPECT_EQ(refusedFor(own, TableChange::kRestore), "このテーブルは削除されていません.\n テーブル名 : T");
  EXPECT_EQ(refusedFor(others),
            "在庫\nのシステムで定義されたものです.\nこのシステムで修正する権限がありません.\n テーブル名 : T");
  EXPECT_EQ(refusedFor(locked), "このテーブルは編集不可に設定されています.\n テーブル名 : T");
  EXPECT_EQ(refusedFor(locked, TableChange::kLock), "allowed");
  EXPECT_EQ(refusedFor(deleted), "このテーブルは削除されています.\n テーブル名 : T");
  EXPECT_EQ(refusedFor(deleted, TableChange::kLock), "このテーブルは削除されています.\n テーブル名 : T");
  EXPECT_EQ(refusedFor(deleted, TableChange::kRestore), "allowed");
  EXPECT_EQ(refusedFor("99"), "指定のテーブルが存在しません.\n ID : 99");
  EXPECT_EQ(refusedFor(own + " OR 1=1"), "指定のテーブルが存在しません.\n ID : " + own + " OR 1=1");

  EXPECT_EQ(refusedFor(member, TableChange::kFields), "allowed") << "members are kept in common";
  EXPECT_EQ(refusedFor(member), refusedFor(others)) << "but not what they are filed under";
  system("在庫", "suzuki", 0, 0);
  EXPECT_EQ(refusedFor(member, TableChange::kFields),
            "システム全体が編集できないように設定されています.\n システム名 : 在庫");
  system("販売", "suzuki", 0, 0);
  EXPECT_FALSE(mayChangeTable(session, own)) << "as the Repository is now, not as at the choice of the System";
  EXPECT_FALSE(mayChangeTable(session, locked, TableChange::kLock));
}

TEST_F(Rights, OfAGuestAndOfAReaderAreNone) {
  const std::string own = table("販売", "Oracle", "-1", 0);
  const auto allowed = [&] {
    return std::vector<bool>{static_cast<bool>(mayWrite(session)), static_cast<bool>(mayChangeSystem(session, "販売")),
                             static_cast<bool>(mayChangeSystemRecord(session, "販売")),
                             static_cast<bool>(mayChangeTable(session, own))};
  };
  EXPECT_EQ(allowed(), std::vector<bool>(4, true));
  session.gIsGuest = true;
  EXPECT_EQ(allowed(), std::vector<bool>(4, false));
  session.gIsGuest = false;
  EXPECT_FALSE(mayAdministerUsers(session));
  session.gLoginUser = "admin";
  EXPECT_TRUE(mayAdministerUsers(session));

  scripted.expect("確認", "guestでは、変更できません.");
  session.gIsGuest = true;
  EXPECT_TRUE(refused(scripted.host, mayWrite(session)));
  EXPECT_FALSE(refused(scripted.host, {}));
}

}  // namespace
}  // namespace quillmarden
