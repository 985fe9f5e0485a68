// The simulated Mac's administrator, whose password can be wrong. Only a salted hash stands in the state
// file.
#pragma once

#include "hosttools/simulated/state.h"

#include <string>
#include <string_view>

namespace corvane::simulated {

/// The password of a new state file; its user is the login name of whoever made the file.
inline constexpr const char* defaultPassword = "rackside";

/// The login name of the current user, "admin" when there is none.
std::string loginName();
Administrator makeAdministrator(const std::string& user, std::string_view password);
bool matches(const Administrator& administrator, std::string_view user, std::string_view password);

/// Whether that user with that password administers the simulated Mac of this state file (made when missing);
/// false too when the file can't be read.
bool checkPassword(const std::string& stateFile, std::string_view user, std::string_view password);
/// The administrator's user name; empty when the file can't be read.
std::string administratorName(const std::string& stateFile);

} // namespace corvane::simulated
