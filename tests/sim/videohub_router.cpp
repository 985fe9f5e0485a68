#include "tests/sim/videohub_router.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <utility>

namespace corvane::sim {

namespace {

using Section = VideohubRouter::Section;
using Outcome = VideohubRouter::Outcome;

constexpr std::size_t maxLabelBytes = 255;

struct Name {
    Section section;
    const char* header;
};
// In the order in which a router sends them.
constexpr Name sections[] = {
    {Section::device, "VIDEOHUB DEVICE:"},       {Section::inputLabels, "INPUT LABELS:"},
    {Section::outputLabels, "OUTPUT LABELS:"},   {Section::locks, "VIDEO OUTPUT LOCKS:"},
    {Section::routing, "VIDEO OUTPUT ROUTING:"}, {Section::configuration, "CONFIGURATION:"}};

const char* headerOf(Section section) {
    return std::find_if(std::begin(sections), std::end(sections),
                        [&](const Name& name) { return name.section == section; })
        ->header;
}

struct Entry {
    int index;
    std::string value;
};

std::optional<int> numberFrom(std::string_view text, int count) {
    int number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size() || number < 0 || number >= count)
        return std::nullopt;
    return number;
}

/// "<port> <value>" lines; none when a port isn't the router's.
std::optional<std::vector<Entry>> entriesFrom(const std::vector<std::string>& lines, int count) {
    std::vector<Entry> entries;
    for (const auto& line : lines) {
        const auto blank = line.find(' ');
        const auto index = numberFrom(std::string_view(line).substr(0, blank), count);
        if (!index) return std::nullopt;
        entries.push_back({*index, blank == std::string::npos ? std::string() : line.substr(blank + 1)});
    }
    return entries;
}

Outcome refused(std::string note) {
    return {.kind = Outcome::Kind::refused, .note = std::move(note)};
}

/// People count from one.
std::string port(const char* what, int index) {
    return what + (' ' + std::to_string(index + 1));
}

void note(Outcome& outcome, int index, const std::string& what) {
    outcome.entries.push_back(index);
    if (!outcome.note.empty()) outcome.note += ", ";
    outcome.note += what;
}

std::string yesOrNo(bool value) {
    return value ? "true" : "false";
}

} // namespace

VideohubRouter::VideohubRouter(Setup setup) : setup_(std::move(setup)) {
    for (int i = 0; i < setup_.inputs; ++i) inputLabels_.push_back("Camera " + std::to_string(i + 1));
    for (int i = 0; i < setup_.outputs; ++i) {
        outputLabels_.push_back("Monitor " + std::to_string(i + 1));
        routing_.push_back(setup_.inputs > 0 ? i % setup_.inputs : 0);
    }
    locks_.resize(outputLabels_.size());
}

std::string VideohubRouter::prelude(const Holder& client) const {
    return "PROTOCOL PREAMBLE:\nVersion: 2.8\n\n" + everything(client);
}

std::string VideohubRouter::everything(const Holder& client) const {
    if (setup_.present != "true") return block(Section::device, client);
    std::string text;
    for (const auto& [section, header] : sections) text += block(section, client);
    return text += "END PRELUDE:\n\n";
}

std::string VideohubRouter::block(Section section, const Holder& client) const {
    std::string text = headerOf(section);
    text += '\n';
    if (section == Section::device) {
        text += "Device present: " + setup_.present + '\n';
        if (setup_.present == "true") {
            text += "Model name: " + setup_.model + "\nFriendly name: " + setup_.model;
            text += "\nUnique ID: 00005E005301\nVideo inputs: " + std::to_string(setup_.inputs);
            text += "\nVideo processing units: 0\nVideo outputs: " + std::to_string(setup_.outputs);
            text += "\nVideo monitoring outputs: 0\nSerial ports: 0\n";
        }
    } else if (section == Section::configuration) {
        text += "Take Mode: " + yesOrNo(takeMode_) + '\n';
    }
    for (int i = 0; i < countOf(section); ++i) text += entryText(section, i, client);
    return text += '\n';
}

std::string VideohubRouter::block(Section section, const std::vector<int>& entries,
                                  const Holder& client) const {
    if (countOf(section) == 0) return block(section, client);
    std::string text = headerOf(section);
    text += '\n';
    for (const int i : entries) text += entryText(section, i, client);
    return text += '\n';
}

Outcome VideohubRouter::take(std::string_view header, const std::vector<std::string>& lines,
                             const Holder& client) {
    if (header == "PING:") return {.kind = Outcome::Kind::acknowledged};
    // Hardware status goes one way only.
    if (header.ends_with(" STATUS:")) return {.kind = Outcome::Kind::ignored};
    const auto* const known = std::find_if(std::begin(sections), std::end(sections),
                                           [&](const Name& name) { return header == name.header; });
    if (known == std::end(sections)) return refused("unknown block " + std::string(header.substr(0, 80)));
    if (lines.empty()) {
        return {.kind = Outcome::Kind::whole,
                .section = known->section,
                .note = "asks for " + std::string(header)};
    }
    if (setup_.present != "true") return refused("no router to change");
    switch (known->section) {
    case Section::device:
        return refused("the device describes itself");
    case Section::inputLabels:
    case Section::outputLabels:
        return takeLabels(known->section, lines);
    case Section::routing:
        return takeRoutes(lines, client);
    case Section::locks:
        return takeLocks(lines, client);
    case Section::configuration:
        return takeConfiguration(lines);
    }
    return refused("");
}

Outcome VideohubRouter::takeLabels(Section section, const std::vector<std::string>& lines) {
    const auto entries = entriesFrom(lines, countOf(section));
    if (!entries) return refused("label of a port that isn't there");
    Outcome outcome{.kind = Outcome::Kind::changed, .section = section};
    const bool input = section == Section::inputLabels;
    for (const auto& [index, value] : *entries) {
        const auto label = value.substr(0, maxLabelBytes);
        (input ? inputLabels_ : outputLabels_)[static_cast<std::size_t>(index)] = label;
        note(outcome, index, port(input ? "input" : "output", index) + " is named \"" + label + '"');
    }
    return outcome;
}

Outcome VideohubRouter::takeRoutes(const std::vector<std::string>& lines, const Holder& client) {
    const auto entries = entriesFrom(lines, setup_.outputs);
    if (!entries) return refused("route of an output that isn't there");
    for (const auto& [output, value] : *entries) {
        if (!numberFrom(value, setup_.inputs)) return refused("route from an input that isn't there");
        const auto& holder = locks_[static_cast<std::size_t>(output)];
        if (!holder.empty() && holder != client)
            return refused(port("output", output) + " is locked by " + holder);
    }
    Outcome outcome{.kind = Outcome::Kind::changed, .section = Section::routing};
    for (const auto& [output, value] : *entries) {
        const int input = *numberFrom(value, setup_.inputs);
        routing_[static_cast<std::size_t>(output)] = input;
        note(outcome, output, port("output", output) + " shows " + port("input", input));
    }
    return outcome;
}

Outcome VideohubRouter::takeLocks(const std::vector<std::string>& lines, const Holder& client) {
    const auto entries = entriesFrom(lines, setup_.outputs);
    if (!entries) return refused("lock of an output that isn't there");
    for (const auto& [output, value] : *entries) {
        if (value != "O" && value != "U" && value != "F")
            return refused("unknown lock " + value.substr(0, 80));
        const auto& holder = locks_[static_cast<std::size_t>(output)];
        if (value != "F" && !holder.empty() && holder != client)
            return refused(port("output", output) + " is locked by " + holder);
    }
    Outcome outcome{.kind = Outcome::Kind::changed, .section = Section::locks};
    for (const auto& [output, value] : *entries) {
        locks_[static_cast<std::size_t>(output)] = value == "O" ? client : Holder();
        note(outcome, output,
             port("output", output) + (value == "O"   ? " is locked"
                                       : value == "U" ? " is unlocked"
                                                      : " is unlocked by force"));
    }
    return outcome;
}

Outcome VideohubRouter::takeConfiguration(const std::vector<std::string>& lines) {
    for (const auto& line : lines) {
        if (line != "Take Mode: true" && line != "Take Mode: false") return refused("unknown setting");
    }
    takeMode_ = lines.back().ends_with("true");
    return {.kind = Outcome::Kind::changed,
            .section = Section::configuration,
            .note = "take mode is " + yesOrNo(takeMode_)};
}

std::string VideohubRouter::entryText(Section section, int index, const Holder& client) const {
    const auto at = static_cast<std::size_t>(index);
    std::string text = std::to_string(index) + ' ';
    switch (section) {
    case Section::inputLabels:
        text += inputLabels_[at];
        break;
    case Section::outputLabels:
        text += outputLabels_[at];
        break;
    case Section::routing:
        text += std::to_string(routing_[at]);
        break;
    case Section::locks:
        text += locks_[at].empty() ? 'U' : locks_[at] == client ? 'O' : 'L';
        break;
    case Section::device:
    case Section::configuration:
        break;
    }
    return text += '\n';
}

int VideohubRouter::countOf(Section section) const {
    switch (section) {
    case Section::inputLabels:
        return setup_.inputs;
    case Section::outputLabels:
    case Section::routing:
    case Section::locks:
        return setup_.outputs;
    case Section::device:
    case Section::configuration:
        return 0;
    }
    return 0;
}

} // namespace corvane::sim
