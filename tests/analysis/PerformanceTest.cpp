// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/Performance.hpp"

#include <gmock/gmock.h>

#include <limits>

#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;

const MIDIMessage noteMessage{0x90, 0x3C, 0x64};
const MIDIMessage echoMessage{0x91, 0x3C, 0x64};
const MIDIMessage bankMessage{0xB0, 0, 2};
const MIDIMessage programMessage{0xC0, 5};

std::vector<Departure> playedTo(const std::vector<Rule>& rules, const std::vector<TimedEvent>& events) {
    EngineProbe probe(rules);
    return played(probe, events);
}

Rule echoAfter(std::int64_t milliseconds, PassThroughV2 policy = PassThroughV2::PassThrough) {
    return rule(onNoteOn(any, any, policy), send(noteOn(1, 0x3C, 0x64), milliseconds), "echo");
}

TEST(Performance, SaysOfEachMessageWhichRuleSendsItAndWhichEventItAnswers) {
    const std::vector<Rule> rules{rule(onLoad(), send(programChange(channel(0), 2, byte(5)))),
                                  echoAfter(300)};
    EXPECT_THAT(playedTo(rules, {{0, PluginLoad{}}, {100, noteMessage}}),
                ElementsAre(Departure{0, bankMessage, 0, 0}, Departure{0, programMessage, 0, 0},
                            Departure{100, noteMessage, std::nullopt, 1}, Departure{400, echoMessage, 1, 1}));
}

TEST(Performance, SendsAtOnceBeforeTheEventIsForwarded) {
    EXPECT_THAT(playedTo({echoAfter(0)}, {{7, noteMessage}}),
                ElementsAre(Departure{7, echoMessage, 0, 0}, Departure{7, noteMessage, std::nullopt, 0}));
}

TEST(Performance, LetsWhatWasQueuedFirstLeaveFirstAtOneTime) {
    EXPECT_THAT(playedTo({echoAfter(10)}, {{0, noteMessage}, {10, noteMessage}}),
                ElementsAre(Departure{0, noteMessage, std::nullopt, 0}, Departure{10, echoMessage, 0, 0},
                            Departure{10, noteMessage, std::nullopt, 1}, Departure{20, echoMessage, 0, 1}));
}

TEST(Performance, EndsATimelineWhereTimesWouldNotFit) {
    constexpr auto last = std::numeric_limits<SampleTime>::max();
    EXPECT_THAT(playedTo({echoAfter(5, PassThroughV2::EatMatching)}, {{last - 1, noteMessage}}),
                ElementsAre(Departure{last, echoMessage, 0, 0}));
}

TEST(Performance, DropsSystemExclusiveAndForwardsNoTransport) {
    EXPECT_THAT(
        playedTo({}, {{0, MIDIMessage{0xF0, 0x7E, 0xF7}}, {1, HostTransportTriggerVariantsV2::Start}}),
        IsEmpty());
}

}  // namespace
}  // namespace quillo
