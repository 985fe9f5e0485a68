// The text protocol of Videohub routers, TCP port 9990. Source: the maker's public "Videohub Ethernet
// Protocol" (Videohub Developer Information). Blocks of lines end with an empty line; the router sends all of
// its state when a client connects, then every change. Indices are 0-based on the wire.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace corvane::Videohub {

inline constexpr std::uint16_t port = 9990;
/// The router answers "ACK".
inline constexpr const char* ping = "PING:\n\n";
/// The largest routers have 288 inputs and outputs. Lines of ports beyond this are skipped as malformed ones
/// are: each port is a row on the page, and what a hostile host names should not hold it up.
inline constexpr long maxPorts = 1024;
/// Of a label, a model's name and the like; the rest is cut off. More than a row has room for, and with all
/// ports little enough to be laid out at once.
inline constexpr std::size_t maxTextBytes = 255;

/// An output's lock; the values are the protocol's letters.
enum class Lock : char { unlocked = 'U', owned = 'O', lockedByOther = 'L' };
std::optional<Lock> lockFrom(char letter);

/// Releases an output that another client holds; sent in place of a lock's letter.
inline constexpr char forceUnlock = 'F';

// Command builders: each gives the whole block.
std::string route(int output, int input);
/// `letter` is "O", "U" or forceUnlock.
std::string lock(int output, char letter);
/// Line breaks in the name become blanks, so that a label never breaks its block.
std::string labelInput(int input, std::string_view name);
std::string labelOutput(int output, std::string_view name);

/// What a router has said about itself.
struct State {
    std::string model;
    /// The value of "Device present": "true", "false" or, say, "needs_update".
    std::optional<std::string> present;
    int inputCount = 0;
    int outputCount = 0;
    std::map<int, std::string> inputLabels;
    std::map<int, std::string> outputLabels;
    /// Output to input.
    std::map<int, int> routing;
    std::map<int, Lock> locks;
    /// "ACK" or "NAK", whichever came last.
    std::optional<std::string> lastReply;

    /// The label, or "Input 1" for input 0.
    std::string inputName(int input) const;
    std::string outputName(int output) const;
    /// 0, 1, … up to the count or the last label, whichever is larger.
    std::vector<int> inputs() const;
    std::vector<int> outputs() const;

    /// Folds one block in: only what it mentions changes; unknown blocks and malformed lines are skipped.
    /// False when nothing changed.
    bool apply(std::string_view header, const std::vector<std::string>& lines);

    friend bool operator==(const State&, const State&) = default;
};

/// A block as it came: its header without the colon, and its lines.
struct Block {
    std::string header;
    std::vector<std::string> lines;
    friend bool operator==(const Block&, const Block&) = default;
};

/// Puts received lines together to blocks.
struct Parser {
    /// Lines kept of one block, and their bytes; more than any router sends, the rest is dropped.
    static constexpr std::size_t maxLines = 3 * static_cast<std::size_t>(maxPorts);
    static constexpr std::size_t maxBytes = 4 << 20;

    std::optional<std::string> header;
    std::vector<std::string> lines;

    /// One line without its line feed; the block that it ends, if it ends one.
    std::optional<Block> feed(std::string_view line);

  private:
    std::size_t bytes_ = 0;
};

} // namespace corvane::Videohub
