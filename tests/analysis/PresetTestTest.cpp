// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/PresetTest.hpp"

#include <gmock/gmock.h>

#include <string>
#include <utility>
#include <vector>

#include "platform/HexText.hpp"

namespace quillo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using Transport = HostTransportTriggerVariantsV2;

/// Milliseconds and bytes of what a step wants.
using WantedText = std::pair<SampleTime, std::string>;

std::vector<WantedText> wanted(const PresetTest::Step& step) {
    std::vector<WantedText> all;
    for (const auto& each : step.wanted) {
        all.emplace_back(each.time, hexText(each.message.bytes(), HexCase::lower));
    }
    return all;
}

std::string testErrorOf(std::string_view text) {
    try {
        static_cast<void>(PresetTest::read(text));
        return "nothing";
    } catch (const PresetTestError& error) {
        return error.what();
    }
}

const AskedEvent playedNote = MIDIMessage{0x90, 0x3C, 0x64};

TEST(PresetTest, HasAnEventAndWhatLeavesInALine) {
    const auto test = PresetTest::read("at 10 ms: 90 3c 64 \u2192 at 10 ms: 903C64, at 310 ms: 91 3c 64\n");
    ASSERT_EQ(test.steps.size(), 2U);
    EXPECT_EQ(test.steps[1].event.time, 10);
    EXPECT_EQ(test.steps[1].event.event, playedNote);
    EXPECT_THAT(wanted(test.steps[1]), ElementsAre(WantedText{10, "90 3c 64"}, WantedText{310, "91 3c 64"}));
}

TEST(PresetTest, BeginsWithLoadingWhetherTheTextHasItOrNot) {
    for (const auto* text : {"", "at 0 ms: fa", "at 0 ms: fa\non load \u2192 nothing\n"}) {
        EXPECT_EQ(PresetTest::read(text).steps.front().event.event, AskedEvent(PluginLoad{})) << text;
    }
    EXPECT_EQ(PresetTest::read("at 0 ms: fa\non load \u2192 nothing\n").steps.size(), 2U);
    EXPECT_THAT(
        wanted(PresetTest::read("on load -> at 0 ms: c0 05\nat 0 ms: load -> at 9 ms: fa").steps.front()),
        ElementsAre(WantedText{0, "c0 05"}, WantedText{9, "fa"}));
}

TEST(PresetTest, GoesOnWithWhatLeavesInLinesThatBeginWithAnArrow) {
    const auto test =
        PresetTest::read("at 5 ms: 90 3c 64\n\n  # the echo\n  -> at 5 ms: 90 3c 64\r\n\t\u2192at 8ms:fa");
    EXPECT_THAT(wanted(test.steps[1]), ElementsAre(WantedText{5, "90 3c 64"}, WantedText{8, "fa"}));
    EXPECT_EQ(test.steps[1].line, 1U);
    EXPECT_EQ(test.steps[1].wanted[0].line, 4U);
    EXPECT_EQ(test.steps[1].wanted[1].line, 5U);
}

TEST(PresetTest, IsPlayedInOrderOfTimeWhateverTheOrderOfItsLines) {
    const auto test = PresetTest::read("at 9 ms: fc\nat 0 ms: transport start\nat 9 ms: host stop");
    ASSERT_EQ(test.steps.size(), 4U);
    EXPECT_EQ(test.steps[1].event.event, AskedEvent(Transport::Start));
    EXPECT_EQ(test.steps[2].line, 1U);
    EXPECT_EQ(test.steps[3].event.event, AskedEvent(Transport::Stop));
}

TEST(PresetTest, MayExpectNothing) {
    EXPECT_THAT(PresetTest::read("at 0 ms: fa \u2192 nothing").steps[1].wanted, IsEmpty());
    EXPECT_THAT(PresetTest::read("at 0 ms: fa").steps[1].wanted, IsEmpty());
}

TEST(PresetTest, ExpectsAnyBytesForARuleMaySendWhatIsNoMessage) {
    EXPECT_THAT(wanted(PresetTest::read("at 0 ms: fa -> at 0 ms: 90 3c, at 0 ms: c0 81").steps[1]),
                ElementsAre(WantedText{0, "90 3c"}, WantedText{0, "c0 81"}));
}

TEST(PresetTest, PassesOverAByteOrderMark) {
    EXPECT_EQ(PresetTest::read("\uFEFF# A remark\nat 0 ms: fa").steps.size(), 2U);
}

TEST(PresetTest, SaysInWhichLineWhatIsWrong) {
    const std::string time = " does not begin with a time in whole milliseconds, as \"at 300 ms:\" is";
    const std::vector<std::pair<std::string, std::string>> cases{
        {"\n-> at 0 ms: fa", "line 2: nothing has come in yet that this could be the answer to"},
        {"# one\nat 0 ms: 90 3c", "line 2: \"90 3c\": a message that begins with 90 has 3 bytes; here are 2"},
        {"at 0 ms: fa ->", "line 1: behind an arrow stands what leaves, or \"nothing\""},
        {"at 0 ms: fa -> at 0 ms: 9", "line 1: \"9\": \"9\" has an odd number of digits; two make a byte"},
        {"at 0 ms: fa -> at 0 ms:", "line 1: \"\": it is empty"},
        {"at 0 ms: fa -> fa", "line 1: \"fa\"" + time},
        {"at -1 ms: fa", "line 1: \"at -1 ms: fa\"" + time},
        {"at 1.5 ms: fa", "line 1: \"at 1.5 ms: fa\"" + time},
        {"at 1 s: fa", "line 1: \"at 1 s: fa\"" + time},
        {"at 9223372036854775808 ms: fa", "line 1: \"at 9223372036854775808 ms: fa\"" + time},
        {"soon", "line 1: \"soon\"" + time},
        {"at 0 ms: transport pause",
         "line 1: \"transport pause\": the host's transport can start, continue and stop"},
        {"at 5 ms: load", "line 1: loading is the first that happens: write \"on load\""}};
    for (const auto& [text, error] : cases) {
        EXPECT_EQ(testErrorOf(text), error) << text;
    }
}

}  // namespace
}  // namespace quillo
