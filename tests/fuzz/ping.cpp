// What ping prints, the way out to a host, and ping groups. The first byte is the tool's status.
#include "fuzz.h"

#include "core/diagnostics/ping.h"
#include "core/diagnostics/ping_group.h"
#include "core/netconfig/ipv4.h"
#include "core/support/text.h"

#include <cmath>

using namespace corvane;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const int status = data[0];
    const std::string output(asText(data + 1, size - 1));
    const PingOutcome outcome = Ping::parse(output, status);
    if (status == Ping::statusNoHost) require(outcome == PingOutcome::unresolved(), "the status comes first");
    if (outcome.isReply()) {
        require(output.find("time=") != output.npos, "a reply has a time");
        require(std::isfinite(outcome.ms()) && outcome.ms() >= 0, "a time is a number");
    } else {
        require(outcome.ms() == 0, "no time without a reply");
    }

    const auto lines = text::nonEmptyLines(output);
    if (lines.size() >= 3) {
        const std::vector<Ping::LocalInterface> interfaces{
            {"a", std::string(lines[1]), std::string(lines[2])},
            {"b", std::string(lines[2]), std::string(lines[1])}};
        const auto found = Ping::localInterface(lines[0], interfaces);
        require(!found || IPv4::isValid(lines[0]), "only an address has a way out");
        require(found != "a" || (IPv4::isValid(lines[1]) && IPv4::isValid(lines[2])),
                "only through an address");
    }

    const auto json = JsonValue::parse(output);
    if (!json.value) return 0;
    if (const auto group = PingGroup::fromJson(*json.value)) {
        const auto kept = PingGroup::fromJson(group->toJson());
        require(kept && *kept == *group, "writing and reading lose nothing");
        for (const auto& target : group->targets)
            require(PingTarget::fromJson(target.toJson()) == target, "nor of a target");
    }
    return 0;
}
