#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "repository/schema.h"
#include "shell/application.h"
#include "shell/list_commands.h"
#include "shell/menu_map.h"
#include "shell/screens.h"
#include "shell/session_life.h"
#include "support/scripted_host.h"

namespace quillmarden {

using Lines = std::vector<std::string>;

/// The program on a display that writes down what it is told, with a Repository in its folder that has the System
/// 販売 and its tables A and B.
class ShellTest : public testing::Test {
 protected:
  void SetUp() override {
    Database made = createRepository((scripted.host.machine.programFolder / "tableinf.mdb").string());
    made.execute(
        "INSERT INTO MAS_SYSTEM (システム名, databasetype, 修正許可, 出力しない, 作成者) VALUES ('販売', 'PostgreSQL', "
        "-1, 0, 'admin')");
    for (const char* name : {"A", "B"}) {
      made.execute(std::string("INSERT INTO MAS_TABLEINFO (システム名, ファイル種別, テーブル名, 日本語名, 削除フラグ, "
                               "修正許可) VALUES ('販売', 'PostgreSQL', '") +
                   name + "', '表" + name + "', 0, -1)");
    }
    attach(app);
  }

  void attach(Application& program) {
    Display& display = program.display;
    const auto note = [this](std::string verb) {
      return [this, verb](std::string_view screen) { events.push_back(verb + " " + std::string(screen)); };
    };
    display.show = note("show");
    display.hide = note("hide");
    display.close = note("close");
    display.minimise = note("minimise");
    display.focus = [this](std::string_view screen) {
      events.push_back("focus " + std::string(screen));
      return focusWorks;
    };
    display.quit = [this] { events.emplace_back("quit"); };
  }

  /// What the display was told since the last call.
  Lines told() { return std::exchange(events, {}); }

  /// From the start to the list of 販売.
  void enter() { enter(app); }
  void enter(Application& program) {
    startProgram(program);
    frmSplash_Timer(program);
    frmSplash_Timer(program);
    logIn(program);
    program.list.CmbSystem.text = "販売";
    program.list.CmbTitle.text = "テーブル名";
    chooseSystem(program);
    told();
  }

  void chooseRow(int row) {
    app.list.LstTable.listIndex = row;
    LstTable_Click(app);
  }

  /// Types into the detail screen.
  void edit(std::string_view screen = "frmTBDetail") {
    app.detail(screen).Spread.setText(field_col::kFieldName, 1, "typed");
    app.detail(screen).changed = true;
  }

  void expectKeepEditing(const std::string& name, int answer) {
    scripted.expect("確認", "内容が変更されています.\n    " + name + "\nの編集を続けますか?", answer);
  }

  bool focusWorks = true;
  Lines events;
  ScriptedHost scripted;
  Application app{scripted.host};
};

}  // namespace quillmarden
