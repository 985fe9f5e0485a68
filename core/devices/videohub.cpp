#include "core/devices/videohub.h"

#include "core/support/text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace corvane::Videohub {

namespace {

struct Pair {
    int index;
    std::string_view value;
};

/// "<index> <value>"; the value is empty where the line has no blank.
std::optional<Pair> pairFrom(std::string_view line) {
    const auto blank = line.find(' ');
    long index = 0;
    if (!text::parseInteger(line.substr(0, blank), 0, maxPorts - 1, index)) return std::nullopt;
    return Pair{static_cast<int>(index),
                blank == std::string_view::npos ? std::string_view() : line.substr(blank + 1)};
}

/// What is kept of a text from the wire: whole characters.
std::string_view kept(std::string_view value) {
    if (value.size() <= maxTextBytes) return value;
    auto end = maxTextBytes;
    const auto continues = [&](std::size_t at) {
        return (static_cast<unsigned char>(value[at]) & 0xC0) == 0x80;
    };
    for (int back = 0; back < 3 && continues(end); ++back) --end;
    return value.substr(0, end);
}

template <typename Kept, typename Value>
bool assign(Kept& field, const Value& value) {
    if (field == value) return false;
    field = value;
    return true;
}

template <typename Value>
bool assign(std::map<int, Value>& entries, int index, const Value& value) {
    const auto [entry, added] = entries.try_emplace(index, value);
    return added || assign(entry->second, value);
}

bool assignCount(int& count, std::string_view value) {
    long number = 0;
    return text::parseInteger(value, 0, maxPorts, number) && assign(count, static_cast<int>(number));
}

bool applyDevice(State& state, const std::vector<std::string>& lines) {
    // Of several lines with one key the last counts, even if it can't be read.
    std::map<std::string_view, std::string_view> fields;
    for (const std::string_view line : lines) {
        if (const auto colon = line.find(": "); colon != std::string_view::npos)
            fields[line.substr(0, colon)] = line.substr(colon + 2);
    }
    bool changed = false;
    for (const auto& [key, value] : fields) {
        if (key == "Device present") changed |= assign(state.present, std::string(kept(value)));
        if (key == "Model name") changed |= assign(state.model, std::string(kept(value)));
        if (key == "Video inputs") changed |= assignCount(state.inputCount, value);
        if (key == "Video outputs") changed |= assignCount(state.outputCount, value);
    }
    return changed;
}

bool applyLabel(std::map<int, std::string>& labels, std::string_view line) {
    const auto pair = pairFrom(line);
    return pair && assign(labels, pair->index, std::string(kept(pair->value)));
}

bool applyRoute(State& state, std::string_view line) {
    const auto pair = pairFrom(line);
    long input = 0;
    if (!pair || !text::parseInteger(pair->value, 0, maxPorts - 1, input)) return false;
    return assign(state.routing, pair->index, static_cast<int>(input));
}

bool applyLock(State& state, std::string_view line) {
    const auto pair = pairFrom(line);
    if (!pair || pair->value.empty()) return false;
    const auto lock = lockFrom(pair->value.front());
    return lock && assign(state.locks, pair->index, *lock);
}

bool applyLine(State& state, std::string_view header, std::string_view line) {
    if (header == "INPUT LABELS") return applyLabel(state.inputLabels, line);
    if (header == "OUTPUT LABELS") return applyLabel(state.outputLabels, line);
    if (header == "VIDEO OUTPUT ROUTING") return applyRoute(state, line);
    if (header == "VIDEO OUTPUT LOCKS") return applyLock(state, line);
    return false;
}

std::string entry(const char* header, int index, std::string_view value) {
    std::string block = header;
    block += ":\n";
    block += std::to_string(index);
    block += ' ';
    block += value;
    block += "\n\n";
    return block;
}

std::string label(const char* header, int index, std::string_view name) {
    std::string line(name);
    std::replace_if(
        line.begin(), line.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return entry(header, index, line);
}

std::string nameOf(const std::map<int, std::string>& labels, int index, std::string name) {
    const auto found = labels.find(index);
    if (found != labels.end() && !found->second.empty()) return found->second;
    return name += std::to_string(index + 1);
}

std::vector<int> listed(int count, const std::map<int, std::string>& labels) {
    const int lastLabel = labels.empty() ? 0 : labels.rbegin()->first + 1;
    std::vector<int> indices(static_cast<std::size_t>(std::max(count, lastLabel)));
    for (std::size_t i = 0; i < indices.size(); ++i) indices[i] = static_cast<int>(i);
    return indices;
}

} // namespace

std::optional<Lock> lockFrom(char letter) {
    constexpr std::array all = {Lock::unlocked, Lock::owned, Lock::lockedByOther};
    const auto* found = std::find(all.begin(), all.end(), static_cast<Lock>(letter));
    return found == all.end() ? std::nullopt : std::optional(*found);
}

std::string route(int output, int input) {
    return entry("VIDEO OUTPUT ROUTING", output, std::to_string(input));
}

std::string lock(int output, char letter) {
    return entry("VIDEO OUTPUT LOCKS", output, {&letter, 1});
}

std::string labelInput(int input, std::string_view name) {
    return label("INPUT LABELS", input, name);
}

std::string labelOutput(int output, std::string_view name) {
    return label("OUTPUT LABELS", output, name);
}

std::string State::inputName(int input) const {
    return nameOf(inputLabels, input, "Input ");
}

std::string State::outputName(int output) const {
    return nameOf(outputLabels, output, "Output ");
}

std::vector<int> State::inputs() const {
    return listed(inputCount, inputLabels);
}

std::vector<int> State::outputs() const {
    return listed(outputCount, outputLabels);
}

bool State::apply(std::string_view header, const std::vector<std::string>& lines) {
    if (header == "ACK" || header == "NAK") return assign(lastReply, std::string(header));
    if (header == "VIDEOHUB DEVICE") return applyDevice(*this, lines);
    bool changed = false;
    for (const auto& line : lines) changed |= applyLine(*this, header, line);
    return changed;
}

std::optional<Block> Parser::feed(std::string_view line) {
    while (line.starts_with('\r')) line.remove_prefix(1);
    while (line.ends_with('\r')) line.remove_suffix(1);
    if (line.empty()) {
        bytes_ = 0;
        auto ended = std::exchange(lines, {});
        const auto name = std::exchange(header, std::nullopt);
        if (!name) return std::nullopt;
        return Block{*name, std::move(ended)};
    }
    if (!header) {
        if (line.ends_with(':')) line.remove_suffix(1);
        header = line.substr(0, maxBytes);
        bytes_ = header->size();
    } else if (lines.size() < maxLines && line.size() <= maxBytes - bytes_) {
        lines.emplace_back(line);
        bytes_ += line.size();
    }
    return std::nullopt;
}

} // namespace corvane::Videohub
