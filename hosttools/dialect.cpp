#include "hosttools/dialect_parts.h"

namespace corvane::hosttools {

Printed runTool(const std::string& tool, const std::vector<std::string>& arguments, Engine& engine) {
    using Entry = Printed (*)(const Arguments&, Engine&);
    Entry entry = nullptr;
    if (tool == "networksetup") entry = networksetup;
    if (tool == "ifconfig") entry = ifconfig;
    if (tool == "route") entry = route;
    if (tool == "ping") entry = [](const Arguments& words, Engine& of) { return ping(words, of); };
    if (!entry) return {{}, "usage: networksetup | ifconfig | route | ping\n", 64};
    if (const Failure failure = engine.unavailable(tool)) return {*failure + "\n", {}, 1};
    return entry(arguments, engine);
}

Printed invalid(const std::string& sentence) {
    return {sentence + "\n" + invalidParameters, {}, invalidStatus};
}

Printed unknownService(const std::string& name) {
    return invalid(name + " is not a recognized network service.");
}

Printed outcome(const Failure& failure) {
    if (!failure) return {};
    return {*failure + "\n", {}, *failure == adminRequired ? adminStatus : invalidStatus};
}

} // namespace corvane::hosttools
