#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "common/outcome.h"
#include "repository/session.h"
#include "screen/host.h"

namespace quillmarden {

/// A row of MAS_USER: who may log in.
struct UserRow {
  std::string name;
  std::string group;      ///< "ADMIN" for administrators, "" for none
  std::string lastLogin;  ///< as stored; "" before the first login
};

/// All users, by name.
std::vector<UserRow> readUsers(Database& database);
bool isAdministrator(const UserRow& user);

/// What speaks against a name for a new user: nothing to see, control characters, or a quote, with which nobody could
/// log in. "" for nothing.
std::string userNameFault(std::string_view name);

// Each asks first. A name is trimmed and met without regard to case.

/// A new user. Group ADMIN is an administrator's to give, as long as there is one.
Outcome addUser(Session& session, Host& host, std::string_view name, std::string_view group);
/// Gives a user another group, "" for none. For administrators; the last of them stays one.
Outcome setUserGroup(Session& session, Host& host, std::string_view name, std::string_view group);
/// For administrators; the last user and the last administrator stay.
Outcome removeUser(Session& session, Host& host, std::string_view name);

}  // namespace quillmarden
