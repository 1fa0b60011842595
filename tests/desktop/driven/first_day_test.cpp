#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>
#include <QTimer>

#include "driver.h"
#include "editing/frm_tb_list.h"

namespace quillmarden {
namespace {

/// What somebody does who has just installed the program, with the mouse and the keyboard of a real display.
class FirstDay : public testing::Test {
 protected:
  void makeRepository() {
    person.awaitScreen("frmLogInNew");
    person.press("frmLogInNew", "CmdNewRepository");
    person.await("the dialog of a new file", [] {
      const QWidget* dialog = QApplication::activeModalWidget();
      return dialog && dialog->inherits("QFileDialog") && dialog->isActiveWindow();
    });
    person.key("Return");
    person.answer("データベースを作成しました.", "Return");
    person.press("frmLogInNew", "txtUserName");
    person.key("Return");
    person.awaitScreen("frmTBList");
  }

  void makeSystem() {
    person.pick("frmTBList", "CmbSystem", "<新しいシステム>");
    person.press("frmTBList", "CmdSystem");
    person.awaitScreen("frmSystemInf");
    person.type("Trial");
    person.press("frmSystemInf", "TxtMemo");
    person.type("first steps");
    person.pick("frmSystemInf", "CmbDBType", "PostgreSQL");
    // A drop-down's [Esc] is its own.
    person.press("frmSystemInf", "CmbEdit");
    person.await("the drop-down", [] { return QApplication::activePopupWidget() != nullptr; });
    person.key("Escape");
    person.await("its end", [] { return QApplication::activePopupWidget() == nullptr; });
    ASSERT_TRUE(person.sees("frmSystemInf"));
    person.key("Escape");
    person.answer("の編集を続けますか?", "Escape");
    ASSERT_TRUE(person.sees("frmSystemInf")) << "what was typed is gone";
    person.key("ctrl+s");
    person.answer("登録内容を更新します.", "Return");
    person.awaitGone("frmSystemInf");
    EXPECT_EQ(person.look([this] { return person.app().session.gCurrentSystemName; }), "Trial");
  }

  void makeTable() {
    person.click(person.at("frmTBList", "LstTable"), 3);
    person.choose({"テーブル情報の作成"});
    person.awaitScreen("frmTBInfo");
    person.type("Order");
    person.key("Tab");
    person.type("orders");
    person.key("Tab");
    person.type("ord");
    person.key("ctrl+s");
    person.answer("目的分類が未設定です.", "Return");
    person.type("Master");
    person.press("frmTBInfo", "TxtMemo");
    person.type("orders of customers");
    person.press("frmTBInfo", "CmbKanKaku");
    person.type("daily");
    person.key("ctrl+s");
    person.answer("更新します.", "Return");
    person.awaitScreen("frmTBDetail");
  }

  void typeFields() {
    person.type("order number");
    person.key("Tab");
    person.type("order_no");
    person.key("Tab");
    person.key("space");
    person.key("Tab");
    person.type("integer");
    person.key("Return");
    person.key("ctrl+s");
    person.answer("登録内容を更新します.", "Return");
    person.await("the saved field", [this] { return !person.app().detail().changed; });
    EXPECT_EQ(person.stored("SELECT 型 FROM MAS_TABLEDETAILES"), "integer");
  }

  Driver person;
};

TEST_F(FirstDay, FromNothingToAScript) {
  person.run([this] {
    makeRepository();
    makeSystem();
    makeTable();
    if (HasFailure()) return;
    typeFields();

    // The window's × on an edit, and [Esc] on its question.
    person.key("Up");
    person.key("Home");
    person.type("number of the order");
    person.key("Return");
    person.key("alt+F4");
    person.answer("の編集を続けますか?", "Escape");
    ASSERT_TRUE(person.sees("frmTBDetail"));
    person.key("alt+F4");
    person.answer("の編集を続けますか?", "alt+n");
    person.awaitGone("frmTBDetail");

    // The one row is the chosen one; it opens by each way.
    person.click(person.at("frmTBList", "LstTable", 0));
    person.await("the grid", [this] { return person.front().find("frmTBDetail")->isVisible(); });
    person.press("frmTBList", "CmbTitle");
    person.key("Escape");
    person.click(person.at("frmTBList", "LstTable", 0));
    person.key("Return");
    person.awaitScreen("frmTBDetail");
    person.key("alt+F4");
    person.awaitGone("frmTBDetail");
    person.click(person.at("frmTBList", "LstTable", 0), 1, 2);
    person.await("the grid", [this] { return person.front().find("frmTBDetail")->isVisible(); });
    person.press("frmTBList", "CmbTitle");
    person.key("Escape");

    for (int run = 0; run < 5; ++run) {
      person.click(person.at("frmTBList", "LstTable", 0), 3);
      person.choose({"Create SQL文の作成", "選択行のSQL文"});
      person.answer("Sql文を作成します.", "Return");
      person.answer("表示しますか?", "Escape");
    }
    EXPECT_EQ(person.stored("SELECT 作成回数 FROM MAS_TABLEINFO"), "5");

    person.click(person.at("frmTBList", "LstTable", 0));
    person.key("shift+F10");
    person.choose({"テーブル情報の削除"});
    person.answer("を削除します.", "Return");
    EXPECT_EQ(person.stored("SELECT 削除フラグ FROM MAS_TABLEINFO"), "0") << "[Enter] alone deletes nothing";

    person.press("frmAppBar", "CmdLogOff");
    person.answer("ログオフしますか?", "Return");
    person.awaitScreen("frmLogInNew");
  });
}

}  // namespace
}  // namespace quillmarden
