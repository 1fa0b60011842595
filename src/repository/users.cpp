#include "repository/users.h"

#include <algorithm>

#include "common/message.h"
#include "common/printable.h"
#include "common/text.h"
#include "repository/change_rows.h"
#include "repository/rights.h"

namespace quillmarden {

namespace {

constexpr std::string_view kAdminGroup = "ADMIN";
constexpr std::string_view kGroupFault = "グループに使用しては\nいけない文字が含まれています.";

std::string userLine(std::string_view name) { return std::string(" ユーザー名 : ").append(name); }

bool namesAdministrators(std::string_view group) { return equalsNoCase(trim(group), kAdminGroup); }

/// Group none is Null, as a Repository of any age has it.
Value groupValue(std::string_view group) { return group.empty() ? Value{} : Value{std::string(group)}; }

Outcome refuse(Host& host, std::initializer_list<std::string_view> lines) {
  gMsgBox(host, joinLines(lines), kOkOnly | kStopIcon);
  return Outcome::Refused;
}

bool declined(Host& host, std::initializer_list<std::string_view> lines) {
  return gMsgBox(host, joinLines(lines), kYesNo | kQuestionIcon) != kYes;
}

const UserRow* findUser(const std::vector<UserRow>& users, std::string_view name) {
  const auto found =
      std::find_if(users.begin(), users.end(), [&](const UserRow& user) { return equalsNoCase(user.name, name); });
  return found == users.end() ? nullptr : &*found;
}

auto countAdministrators(const std::vector<UserRow>& users) {
  return std::count_if(users.begin(), users.end(), isAdministrator);
}

/// Whether the person who is logged in may not do what is an administrator's, which a message then says. Where a
/// Repository of another tool knows no administrator, anybody may name the first.
bool keptFromAdministrating(Session& session, Host& host, const std::vector<UserRow>& users) {
  return countAdministrators(users) > 0 && refused(host, mayAdministerUsers(session));
}

/// Runs one change of MAS_USER in a transaction that has seen the rows as they are; what others did meanwhile counts.
template <typename Change>
Outcome changeUsers(Session& session, Host& host, std::string_view routine, Change&& change) {
  if (refused(host, mayWrite(session))) return Outcome::Refused;
  return changeRows(session, host, routine, [&] { return change(readUsers(*session.gDB)); });
}

}  // namespace

std::vector<UserRow> readUsers(Database& database) {
  std::vector<UserRow> users;
  for (Recordset rows = database.openRecordset("SELECT * FROM MAS_USER ORDER BY ユーザー名"); !rows.eof();
       rows.moveNext()) {
    const int group = rows.fieldIndex("グループ");
    users.push_back({std::string(rows.text("ユーザー名")), group < 0 ? "" : std::string(trim(rows.text(group))),
                     std::string(rows.text("ログオン日付"))});
  }
  return users;
}

std::string userNameFault(std::string_view name) {
  if (trim(name).empty()) return "ユーザー名が未入力です.";
  if (holdsControl(name) || name.find('\'') != std::string_view::npos)
    return "ユーザー名に使用しては\nいけない文字が含まれています.";
  return "";
}

bool isAdministrator(const UserRow& user) { return namesAdministrators(user.group); }

Outcome addUser(Session& session, Host& host, std::string_view name, std::string_view group) {
  name = trim(name);
  group = trim(group);
  return changeUsers(session, host, "addUser", [&](const std::vector<UserRow>& users) {
    if (const std::string fault = userNameFault(name); !fault.empty()) return refuse(host, {fault, userLine(name)});
    if (holdsControl(group)) return refuse(host, {kGroupFault});
    if (findUser(users, name)) return refuse(host, {"このユーザー名は既に登録されています.", userLine(name)});
    if (namesAdministrators(group) && keptFromAdministrating(session, host, users)) return Outcome::Refused;
    if (declined(host, {"ユーザーを追加します.", userLine(name)})) return Outcome::Refused;
    session.gDB->execute("INSERT INTO MAS_USER (ユーザー名, グループ) VALUES (paraName, paraGroup)",
                         {{"paraName", std::string(name)}, {"paraGroup", groupValue(group)}});
    return Outcome::Done;
  });
}

Outcome setUserGroup(Session& session, Host& host, std::string_view name, std::string_view group) {
  name = trim(name);
  group = trim(group);
  return changeUsers(session, host, "setUserGroup", [&](const std::vector<UserRow>& users) {
    const UserRow* user = findUser(users, name);
    if (!user) return refuse(host, {"ユーザー名が未登録です.", userLine(name)});
    if (holdsControl(group)) return refuse(host, {kGroupFault});
    if (keptFromAdministrating(session, host, users)) return Outcome::Refused;
    if (isAdministrator(*user) && !namesAdministrators(group) && countAdministrators(users) == 1)
      return refuse(host, {"管理者がいなくなるため、変更できません.", userLine(user->name)});
    if (declined(host, {"ユーザーのグループを変更します.", userLine(user->name)})) return Outcome::Refused;
    session.gDB->execute("UPDATE MAS_USER SET グループ = paraGroup WHERE ユーザー名 = paraName",
                         {{"paraGroup", groupValue(group)}, {"paraName", user->name}});
    return Outcome::Done;
  });
}

Outcome removeUser(Session& session, Host& host, std::string_view name) {
  name = trim(name);
  return changeUsers(session, host, "removeUser", [&](const std::vector<UserRow>& users) {
    if (refused(host, mayAdministerUsers(session))) return Outcome::Refused;
    const UserRow* user = findUser(users, name);
    if (!user) return refuse(host, {"ユーザー名が未登録です.", userLine(name)});
    if (users.size() == 1) return refuse(host, {"最後のユーザーは削除できません.", userLine(user->name)});
    if (isAdministrator(*user) && countAdministrators(users) == 1)
      return refuse(host, {"管理者がいなくなるため、削除できません.", userLine(user->name)});
    if (declined(host, {"ユーザーを削除します.", userLine(user->name)})) return Outcome::Refused;
    session.gDB->execute("DELETE * FROM MAS_USER WHERE ユーザー名 = paraName", {{"paraName", user->name}});
    return Outcome::Done;
  });
}

}  // namespace quillmarden
