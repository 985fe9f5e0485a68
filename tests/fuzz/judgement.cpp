// The judgement of a privileged run.
#include "fuzz.h"

#include "core/netconfig/privileged_script.h"

#include <cstring>

using namespace corvane;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 5) return 0;
    int number = 0;
    std::memcpy(&number, data, sizeof number);
    const bool credentials = data[4] & 1;
    const std::string message(asText(data + 5, size - 5));

    using Kind = ApplyResult::Kind;
    const PrivilegedScript::Outcome failure{PrivilegedScript::Outcome::Error{number, message}, {}};
    const auto failed = PrivilegedScript::judge(failure, credentials);
    require(failed.kind() != Kind::success, "an error is no success");
    require(credentials || failed.kind() != Kind::passwordRejected, "only a given password can be rejected");
    require((failed.kind() == Kind::cancelled) == (number == -128 || number == -60006),
            "only the user cancels");

    const auto printed = PrivilegedScript::judge({std::nullopt, message}, credentials);
    require(printed.kind() == Kind::success || printed.kind() == Kind::failed, "a text fails or not");
    require((printed.kind() == Kind::failed) == NetworkSetup::outputIndicatesError(message),
            "the text decides");
    return 0;
}
