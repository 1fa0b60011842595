#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/run.h"
#include "editing/frm_tb_detail.h"
#include "editing/frm_tb_list.h"

namespace quillmarden {

/// The file that `given` stands for: a name without ".mdb" or ".mde" anywhere in it gets ".mdb", as at every login.
std::string repositoryName(const std::string& given);

/// Logs in to the options' Repository as the login screen does. False after its message. With `sweep` the work folders
/// of earlier sessions go, the scripts of earlier runs and of runs under way among them.
bool logIn(Run& run, bool sweep);
/// Ends the session: the log as at the end of the program; work folders stay, what the command has made lies there.
void logOut(Run& run);

/// Makes a System current. False, after a message, when there is none of that name.
bool enterSystem(Run& run, std::string_view system);
/// The list screen with that System chosen and its rows read. False after a message.
bool openTableList(Run& run, std::string_view system, frmTBList& list);

/// The ID of the current System's table that bears this テーブル名 or 日本語名. The exact spelling wins over one that
/// differs in case. Nothing, after a message, when the name fits no table or more than one.
std::optional<std::string> findTable(Run& run, std::string_view name);
/// Loads a table of the current System, named as above, into the detail screen. False after a message.
bool openTable(Run& run, std::string_view name, frmTBDetail& detail);

}  // namespace quillmarden
