#include "cli/users.h"

#include <algorithm>
#include <optional>

#include "common/text.h"
#include "repository/users.h"

namespace quillmarden {

namespace {

struct UsersOptions {
  std::string add;
  std::string remove;
  std::optional<std::string> group;
};

void addUsersOptions(OptionSet& set, UsersOptions& options) {
  set.text("--add", options.add, "NAME", "ユーザーを追加する。登録済みのユーザーは、--group でグループを変更する")
      .filled();
  set.text("--group", options.group, "GROUP", "グループ。ADMIN は管理者、空白はなし").needs("--add");
  set.text("--remove", options.remove, "NAME", "ユーザーを削除する。管理者だけができる").filled();
}

bool isKnown(Run& run, const std::string& name) {
  const std::vector<UserRow> users = readUsers(*run.session.gDB);
  return std::any_of(users.begin(), users.end(),
                     [&](const UserRow& user) { return equalsNoCase(user.name, trim(name)); });
}

Outcome changeUsers(Run& run, const UsersOptions& options) {
  if (!options.remove.empty()) {
    const Outcome removed = removeUser(run.session, run.host, options.remove);
    if (removed != Outcome::Done || options.add.empty()) return removed;
  }
  if (options.group && isKnown(run, options.add))
    return setUserGroup(run.session, run.host, options.add, *options.group);
  return addUser(run.session, run.host, options.add, options.group.value_or(""));
}

ExitStatus runUsers(Run& run, const UsersOptions& options) {
  if (!options.add.empty() || !options.remove.empty())
    return inOneTransaction(run, [&] { return changeUsers(run, options) == Outcome::Done; });
  for (const UserRow& user : readUsers(*run.session.gDB)) {
    for (const std::string* cell : {&user.name, &user.group, &user.lastLogin}) {
      if (cell != &user.name) run.output += '\t';
      putCell(run.output, *cell);
    }
    run.output += '\n';
  }
  return kDone;
}

}  // namespace

constinit const Command kUsersCommand{
    .name = "users",
    .group = CommandGroup::Repository,
    .help = "ユーザーの一覧を表示する。1行に、ユーザー名、グループ、ログオン日付。追加、削除もする",
    .prepare = prepareCommand<UsersOptions, addUsersOptions, runUsers>};

}  // namespace quillmarden
