// Lines of a router, and names that a person may type.
#include "fuzz.h"

#include "core/devices/videohub.h"
#include "core/support/text.h"

using namespace corvane;

namespace {

void checkBounds(const Videohub::State& state) {
    const auto inRange = [](const auto& entries) {
        return entries.empty() ||
               (entries.begin()->first >= 0 && entries.rbegin()->first < Videohub::maxPorts);
    };
    require(inRange(state.inputLabels) && inRange(state.outputLabels) && inRange(state.routing) &&
                inRange(state.locks),
            "ports are a router's");
    require(state.inputs().size() <= Videohub::maxPorts && state.outputs().size() <= Videohub::maxPorts,
            "lists are bounded");
    for (const auto& [output, input] : state.routing)
        require(input >= 0 && input < Videohub::maxPorts, "sources are a router's");
    for (const auto& [input, label] : state.inputLabels) {
        require(label.size() <= Videohub::maxTextBytes, "labels are bounded");
        require(!state.inputName(input).empty(), "every input has a name");
    }
}

/// What a request says when a router's parser reads it.
void checkRequest(const std::string& request, const std::string& header, const std::string& line) {
    Videohub::Parser parser;
    int blocks = 0;
    auto lines = text::split(request, "\n");
    lines.pop_back();
    for (const auto piece : lines) {
        const auto block = parser.feed(piece);
        if (!block) continue;
        ++blocks;
        require(block->header == header && block->lines == std::vector<std::string>{line},
                "a request says one thing");
    }
    require(blocks == 1 && !parser.header, "a request is one block");
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto input = asText(data, size);
    Videohub::Parser parser;
    Videohub::State state;
    std::size_t bytes = 0;
    for (const auto line : text::split(input, "\n")) {
        const auto block = parser.feed(line);
        if (!block) continue;
        for (const auto& kept : block->lines) bytes += kept.size();
        const auto before = state;
        if (!state.apply(block->header, block->lines)) require(state == before, "every change is told");
    }
    require(bytes <= size, "lines are of the input");
    checkBounds(state);

    const int port = size > 0 ? data[0] : 0;
    const auto start = std::to_string(port) + " ";
    auto name = text::replaced(text::replaced(input, "\n", " "), "\r", " ");
    checkRequest(Videohub::labelInput(port, input), "INPUT LABELS", start + name);
    checkRequest(Videohub::labelOutput(port, input), "OUTPUT LABELS", start + name);
    checkRequest(Videohub::route(port, 7), "VIDEO OUTPUT ROUTING", start + "7");
    checkRequest(Videohub::lock(port, 'O'), "VIDEO OUTPUT LOCKS", start + "O");
    if (name.size() <= Videohub::maxTextBytes) {
        Videohub::State named;
        named.apply("INPUT LABELS", {start + name});
        require(named.inputLabels.at(port) == name, "a label comes back as it was sent");
    }
    return 0;
}
