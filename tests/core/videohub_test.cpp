#include "core/devices/videohub.h"

#include "core/support/text.h"
#include "fixture.h"

#include <gtest/gtest.h>

namespace corvane {

using testing::deviceFixture;
using testing::withCRLF;
using Lines = std::vector<std::string>;
using Videohub::Block;
using Videohub::Lock;
using Videohub::Parser;
using Videohub::State;

/// The blocks that a text ends.
static std::vector<Block> blocksOf(const std::string& bytes) {
    Parser parser;
    std::vector<Block> blocks;
    auto lines = text::split(bytes, "\n");
    lines.pop_back(); // What follows the last line feed is no line yet.
    for (const auto line : lines) {
        if (auto block = parser.feed(line)) blocks.push_back(std::move(*block));
    }
    return blocks;
}

static State stateOf(const std::string& bytes) {
    State state;
    for (const auto& block : blocksOf(bytes)) state.apply(block.header, block.lines);
    return state;
}

TEST(Videohub, ReadsAWholeDump) {
    const auto dump = deviceFixture("videohub-10x10.txt");
    const auto state = stateOf(dump);
    EXPECT_EQ(state.model, "Blackmagic Videohub 10x10 12G");
    EXPECT_EQ(state.present, "true");
    EXPECT_EQ(state.inputCount, 10);
    EXPECT_EQ(state.outputCount, 10);
    EXPECT_EQ(state.inputs().size(), 10U);
    EXPECT_EQ(state.inputName(2), "Kamera Bühne");
    EXPECT_EQ(state.inputName(3), "Graphics: key");
    EXPECT_EQ(state.inputName(5), "Input 6");
    EXPECT_EQ(state.outputName(9), "Monitor");
    EXPECT_EQ(
        state.routing,
        (std::map<int, int>{{0, 8}, {1, 9}, {2, 0}, {3, 1}, {4, 4}, {5, 5}, {6, 6}, {7, 7}, {8, 8}, {9, 0}}));
    EXPECT_EQ(state.locks.at(0), Lock::owned);
    EXPECT_EQ(state.locks.at(1), Lock::lockedByOther);
    EXPECT_EQ(state.locks.at(2), Lock::unlocked);
    EXPECT_EQ(state.lastReply, std::nullopt);
    EXPECT_EQ(stateOf(withCRLF(dump)), state);
}

TEST(Videohub, NamesAndCountsWhatHasNoLabel) {
    State state;
    EXPECT_EQ(state.inputs(), std::vector<int>());
    EXPECT_EQ(state.inputName(0), "Input 1");
    EXPECT_EQ(state.outputName(39), "Output 40");
    state.apply("VIDEOHUB DEVICE", {"Video inputs: 12", "Video outputs: 40"});
    state.apply("INPUT LABELS", {"39 Last", "0 "});
    state.apply("OUTPUT LABELS", {"3 Fourth"});
    EXPECT_EQ(state.inputs().size(), 40U);
    EXPECT_EQ(state.inputs().back(), 39);
    EXPECT_EQ(state.outputs().size(), 40U);
    EXPECT_EQ(state.inputName(0), "Input 1");
}

TEST(Videohub, SkipsMalformedLinesOnly) {
    State state;
    state.apply("VIDEOHUB DEVICE", {"Model name", "Model name: a: b", "Model name:X", "Video inputs: twelve",
                                    "Video inputs: 7", "Video outputs: 8"});
    EXPECT_EQ(state.inputCount, 7);
    EXPECT_EQ(state.outputCount, 8);
    EXPECT_EQ(state.model, "a: b");
    for (const char* count : {"x", "-1", "99999999999999999999", "1025", "4 ", ""}) {
        // The last line of a key counts, and says nothing here.
        EXPECT_FALSE(
            state.apply("VIDEOHUB DEVICE", {"Video outputs: 9", std::string("Video outputs: ") + count}));
    }
    EXPECT_EQ(state.outputCount, 8);
    state.apply("INPUT LABELS",
                {"x y", " 1 One", "-1 Minus", "1024 Far", "2147483648 Farther", "2", "3  Blank"});
    EXPECT_EQ(state.inputLabels, (std::map<int, std::string>{{2, ""}, {3, " Blank"}}));
    state.apply("VIDEO OUTPUT ROUTING", {"0", "1 ", "2 x", "3 -1", "4 1024", "5 1023", "6 1 2", "7 1"});
    EXPECT_EQ(state.routing, (std::map<int, int>{{5, 1023}, {7, 1}}));
    state.apply("VIDEO OUTPUT LOCKS", {"0 O", "1 L", "2 U", "3 O"});
    state.apply("VIDEO OUTPUT LOCKS", {"0 X", "1", "2 ", "3 u", "4 Later"});
    EXPECT_EQ(state.locks, (std::map<int, Lock>{{0, Lock::owned},
                                                {1, Lock::lockedByOther},
                                                {2, Lock::unlocked},
                                                {3, Lock::owned},
                                                {4, Lock::lockedByOther}}));
}

TEST(Videohub, KeepsWhatABlockDoesNotMention) {
    auto state = stateOf(deviceFixture("videohub-10x10.txt"));
    const auto before = state;
    EXPECT_FALSE(state.apply("VIDEO OUTPUT ROUTING", {"0 8", "1 9"}));
    EXPECT_FALSE(state.apply("MONITORING OUTPUT LABELS", {"0 Multiview"}));
    EXPECT_FALSE(state.apply("input labels", {"0 Lower case"}));
    EXPECT_FALSE(state.apply("VIDEO OUTPUT LOCKS", {}));
    EXPECT_EQ(state, before);
    EXPECT_TRUE(state.apply("VIDEO OUTPUT ROUTING", {"1 3"}));
    EXPECT_TRUE(state.apply("VIDEOHUB DEVICE", {"Device present: needs_update"}));
    EXPECT_EQ(state.routing.at(0), 8);
    EXPECT_EQ(state.routing.at(1), 3);
    EXPECT_EQ(state.present, "needs_update");
    EXPECT_EQ(state.model, before.model);
    EXPECT_TRUE(state.apply("NAK", {}));
    EXPECT_FALSE(state.apply("NAK", {}));
    EXPECT_EQ(state.lastReply, "NAK");
    EXPECT_TRUE(state.apply("ACK", {}));
    EXPECT_EQ(state.lastReply, "ACK");
}

TEST(Videohub, PutsLinesTogetherToBlocks) {
    EXPECT_EQ(blocksOf("\n\r\n\nACK\n\nINPUT LABELS::\r\n\r0 A: b \r\r\n\r\nNAK\n\n:\nx\n\nUNENDED:\n0 A\n"),
              (std::vector<Block>{{"ACK", {}}, {"INPUT LABELS:", {"0 A: b "}}, {"NAK", {}}, {"", {"x"}}}));
}

TEST(Videohub, KeepsNoMoreThanARouterCouldSend) {
    Parser parser;
    parser.feed("INPUT LABELS:");
    const std::string large(1 << 20, 'x');
    for (std::size_t i = 0; i < 2 * Parser::maxLines; ++i) parser.feed(i % 2 == 0 ? std::string_view("0 a") : large);
    std::size_t bytes = 0;
    for (const auto& line : parser.lines) bytes += line.size();
    EXPECT_LE(bytes, Parser::maxBytes);
    EXPECT_LE(parser.lines.size(), Parser::maxLines);
    EXPECT_TRUE(parser.feed(""));
    // The next block has all the room again.
    parser.feed("OUTPUT LABELS:");
    parser.feed(large);
    EXPECT_EQ(parser.feed("")->lines, Lines{large});

    State state;
    std::string label = "0 ";
    for (int i = 0; i < 100; ++i) label += "€";
    state.apply("INPUT LABELS", {label});
    EXPECT_EQ(state.inputLabels[0].size(), 255U);
    state.apply("INPUT LABELS", {"0 x" + label.substr(2)});
    EXPECT_EQ(state.inputLabels[0].size(), 253U);
    EXPECT_EQ(text::validUtf8Prefix(state.inputLabels[0]), 253U);
}

TEST(Videohub, BuildsRequests) {
    EXPECT_EQ(Videohub::route(7, 2), "VIDEO OUTPUT ROUTING:\n7 2\n\n");
    EXPECT_EQ(Videohub::lock(0, 'O'), "VIDEO OUTPUT LOCKS:\n0 O\n\n");
    EXPECT_EQ(Videohub::lock(39, Videohub::forceUnlock), "VIDEO OUTPUT LOCKS:\n39 F\n\n");
    EXPECT_EQ(Videohub::labelInput(0, "Camera 1"), "INPUT LABELS:\n0 Camera 1\n\n");
    EXPECT_EQ(Videohub::labelOutput(287, "a\nb\r\n\nVIDEO OUTPUT ROUTING:\n0 0"),
              "OUTPUT LABELS:\n287 a b   VIDEO OUTPUT ROUTING: 0 0\n\n");
    EXPECT_EQ(Videohub::labelOutput(1, ""), "OUTPUT LABELS:\n1 \n\n");
    for (const char letter : {'U', 'O', 'L'})
        EXPECT_EQ(static_cast<char>(*Videohub::lockFrom(letter)), letter);
    for (const char letter : {'F', 'u', '\0', ' '}) EXPECT_EQ(Videohub::lockFrom(letter), std::nullopt);
}

} // namespace corvane
