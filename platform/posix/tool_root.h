// The tool root: the folder in which a host's tools stand under the Mac's absolute paths. Empty on a Mac.
#pragma once

#include "core/netconfig/privileged_script.h"

#include <string>

namespace corvane::posix {

/// The root before an absolute path; any other path, and an empty root, leave it as it is.
std::string underRoot(const std::string& root, const std::string& path);

/// The request with the root before the program of each command that stands there. A ready-made script is
/// left as given: its text can't be told apart into programs and arguments, so whoever writes one names real
/// paths.
PrivilegedRequest underRoot(const std::string& root, PrivilegedRequest request);

} // namespace corvane::posix
