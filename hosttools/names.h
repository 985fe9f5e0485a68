// Service names as the tools print them: one line each, and no two alike.
#pragma once

#include <string>
#include <vector>

namespace corvane::hosttools {

/// The names in the same order: control characters become blanks, leading asterisks (the mark of a disabled
/// service) and outer blanks are dropped, an empty name becomes "Service", and repeated ones get " 2", " 3"
/// ….
std::vector<std::string> printableNames(const std::vector<std::string>& names);

} // namespace corvane::hosttools
