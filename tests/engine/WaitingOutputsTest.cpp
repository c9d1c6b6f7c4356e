// SPDX-License-Identifier: GPL-3.0-or-later
// What a processor says of the outputs that wait, and how they are discarded.
#include <gtest/gtest.h>

#include <functional>
#include <map>
#include <string>

#include "engine/RuleProcessor.hpp"
#include "support/OutputRecorder.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

class WaitingOutputs : public testing::Test {
protected:
    WaitingOutputs() { processor.sampleRate = 1000; }

    /// Tries a note on the rules.
    void play(std::uint8_t key, SampleTime at) {
        processor.processMIDIEvent(output, at, {0x90, key, 1}, 3, at + 1);
    }

    std::vector<Emission> sentUntil(SampleTime end) {
        recorder.take();
        processor.flushDelayedMessages(output, end);
        return recorder.take();
    }

    /// The names of the rules of what waits, by the numbers, looked for in so many slots at a time.
    std::multimap<std::uint64_t, std::string> waiting(std::size_t slots) {
        std::multimap<std::uint64_t, std::string> found;
        const auto visit = [&](std::uint64_t number, const DelayedMessage& waiting) {
            found.emplace(number, waiting.ruleName.text());
        };
        std::size_t slot = 0;
        do {
            slot = processor.visitWaiting(slot, slots, visit);
        } while (slot != 0);
        return found;
    }

    RuleProcessor processor;
    OutputRecorder recorder;
    WithoutDeadline<std::reference_wrapper<OutputRecorder>> target{recorder};
    OutputFunction output{target};
    const Rule one = rule(onNoteOn(exactly(1), any, PassThroughV2::EatMatching), send(noteOn(0, 61, 5), 100),
                          "one hundred milliseconds");
    const Rule two =
        rule(onNoteOn(exactly(2), any, PassThroughV2::EatMatching), send(noteOn(0, 62, 5), 100), "two");
};

TEST_F(WaitingOutputs, AreFoundByTheirNumbersWithTheNamesOfTheirRules) {
    processor.setRules({one, two});
    EXPECT_TRUE(waiting(1).empty());
    play(1, 0);
    play(2, 1);
    play(1, 2);
    for (const std::size_t slots : {1U, 2U, 3U, 100U}) {
        EXPECT_EQ(waiting(slots),
                  (std::multimap<std::uint64_t, std::string>{{1, one.name}, {2, two.name}, {3, one.name}}));
    }
    EXPECT_EQ(sentUntil(101).size(), 1U);
    EXPECT_EQ(waiting(1).size(), 2U);
}

TEST_F(WaitingOutputs, OfARuleThatIsOnLoadHaveItsNameToo) {
    processor.setRules({rule(onLoad(), send(noteOn(0, 1, 1), 100), "at first")});
    processor.onLoad(output, 0, 10);
    EXPECT_EQ(waiting(1), (std::multimap<std::uint64_t, std::string>{{1, "at first"}}));
}

TEST_F(WaitingOutputs, KeepTheNamesOfRulesThatAreGone) {
    processor.setRules({one});
    play(1, 0);
    processor.setRules({});
    EXPECT_EQ(waiting(1), (std::multimap<std::uint64_t, std::string>{{1, one.name}}));
}

TEST_F(WaitingOutputs, AreDiscardedOneByOne) {
    processor.setRules({one});
    play(1, 0);
    play(1, 0);
    EXPECT_TRUE(processor.cancel(1));
    EXPECT_FALSE(processor.cancel(1));
    EXPECT_FALSE(processor.cancel(3));
    EXPECT_EQ(sentUntil(1000), (std::vector<Emission>{{100, {{0x90, 61, 5}}}}));
}

TEST_F(WaitingOutputs, AreDiscardedAllAtOnceWithoutWhatIsSentByHand) {
    processor.setRules({one});
    play(1, 0);
    play(1, 0);
    processor.send(programChange(channel(0), 1, byte(2)));
    EXPECT_EQ(processor.cancelDelayed(), 2U);
    EXPECT_EQ(processor.cancelDelayed(), 0U);
    EXPECT_EQ(sentUntil(1000), std::vector<Emission>());
    EXPECT_EQ(processor.cancelInstantMessages(), 2U);
    EXPECT_EQ(processor.pendingInstantMessages(), 0U);
    play(1, 0);
    EXPECT_EQ(waiting(1), (std::multimap<std::uint64_t, std::string>{{3, one.name}}));
}

TEST_F(WaitingOutputs, FiringIsCountedInTheListThatRuns) {
    processor.setRules({one, two});
    play(2, 5);
    play(2, 7);
    const auto before = processor.setRules({two});
    EXPECT_EQ(before->rules, (std::vector{one, two}));
    EXPECT_EQ(before->counts[0].times, 0U);
    EXPECT_EQ(before->counts[1].times, 2U);
    EXPECT_EQ(before->counts[1].last, 7);
    EXPECT_EQ(processor.compiledRules()->counts[0].times, 0U);
    play(2, 9);
    EXPECT_EQ(processor.compiledRules()->counts[0].times, 1U);
    EXPECT_EQ(before->counts[1].times, 2U);
}

}  // namespace
}  // namespace quillo
