// JSON text: a value or a sentence; what was read and written is read as the same value again.
#include "fuzz.h"

#include "core/support/json.h"
#include "core/support/text.h"

using namespace corvane;

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto first = JsonValue::parse(asText(data, size));
    require(first.value.has_value() == first.error.empty(), "a value or a sentence");
    if (!first.value) return 0;
    const auto printed = first.value->prettyPrinted();
    require(text::validUtf8Prefix(printed) == printed.size(), "the output is UTF-8");
    const auto second = JsonValue::parse(printed);
    require(second.value == first.value, "the same value again");
    require(second.value->prettyPrinted() == printed, "the same text again");
    return 0;
}
