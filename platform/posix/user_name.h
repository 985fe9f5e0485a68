#pragma once

#include <string>

namespace corvane::posix {

/// The short name of the user who runs the program, from the user database; the number as text when the
/// database doesn't know it.
std::string userName();

} // namespace corvane::posix
