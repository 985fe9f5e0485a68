// One line a measurement: what was measured, its goal, the reference it stands beside and the figure.
#pragma once

#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

namespace corvane::bench {

inline double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values.empty() ? 0 : values[values.size() / 2];
}

inline void reportRatio(const std::string& what, double goal, double reference, double figure, const char* unit) {
    const double ratio = reference > 0 ? figure / reference : 0;
    std::printf("%-52s goal at most %.2f x | reference %.2f %s | figure %.2f %s | %.2f x | %s\n", what.c_str(), goal,
                reference, unit, figure, unit, ratio, ratio <= goal ? "met" : "MISSED");
    std::fflush(stdout);
}

inline void reportLimit(const std::string& what, double goal, double figure, const char* unit) {
    std::printf("%-52s goal at most %.2f %s | figure %.2f %s | %s\n", what.c_str(), goal, unit, figure, unit,
                figure <= goal ? "met" : "MISSED");
    std::fflush(stdout);
}

} // namespace corvane::bench
