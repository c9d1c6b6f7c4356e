// SPDX-License-Identifier: GPL-3.0-or-later
#include "offline/OfflineHost.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <random>
#include <utility>

#include "platform/FatalError.hpp"
#include "platform/InStableOrder.hpp"
#include "support/MIDIFileBytes.hpp"
#include "support/Presets.hpp"

namespace quillo {
namespace {

using namespace fixture;
using testing::ElementsAre;
using Host = HostTransportTriggerVariantsV2;

TimedMessage at(SampleTime time, const std::string& bytes) {
    return {time, MIDIMessage::copyOf(hex(bytes))};
}

OfflineHost::Performance play(const std::vector<Rule>& rules, const std::vector<TimedMessage>& messages,
                              SampleTime end, const OfflineHost::Settings& settings = {}) {
    OfflineHost host(settings, rules);
    return host.play(messages, end);
}

std::vector<TimedMessage> outputsOf(const std::vector<Rule>& rules, const std::vector<TimedMessage>& messages,
                                    SampleTime end, const OfflineHost::Settings& settings = {}) {
    return play(rules, messages, end, settings).outputs;
}

TEST(OfflineHost, PassesEveryMessageAtItsTimeWithoutRules) {
    const std::vector<TimedMessage> messages{at(0, "90 3c 64"), at(0, "c1 05"), at(511, "fa"),
                                             at(512, "e0 00 40"), at(99999, "80 3c 00")};
    EXPECT_EQ(outputsOf({}, messages, 100000), messages);
}

TEST(OfflineHost, LoadsThePresetBeforeTheFirstCycle) {
    EXPECT_THAT(outputsOf({controllerRule(onLoad(), 7)}, {}, 10), ElementsAre(at(0, "b0 07 01")));
}

TEST(OfflineHost, MovesTheTransportFromSampleZero) {
    EXPECT_THAT(outputsOf({controllerRule(onHost(Host::Start), 1), controllerRule(onHost(Host::Continue), 2)},
                          {}, 10000),
                ElementsAre(at(0, "b0 01 01")));
}

TEST(OfflineHost, StopsTheTransportAtExactlyTheEndWhateverTheBlock) {
    for (const std::uint32_t block : {1u, 7u, 512u, 1000u, 4096u}) {
        EXPECT_THAT(outputsOf({controllerRule(onHost(Host::Stop), 3)}, {}, 1000, {48000, block, 60}),
                    ElementsAre(at(1000, "b0 03 01")))
            << block;
    }
}

TEST(OfflineHost, DelaysByItsOwnSampleRate) {
    const std::vector<Rule> rules{controllerRule(onLoad(), 7, 250)};
    EXPECT_THAT(outputsOf(rules, {}, 10, {48000, 512, 60}), ElementsAre(at(12000, "b0 07 01")));
    EXPECT_THAT(outputsOf(rules, {}, 10, {1000, 512, 60}), ElementsAre(at(250, "b0 07 01")));
    EXPECT_THAT(outputsOf(rules, {}, 10, {768000, 512, 60}), ElementsAre(at(192000, "b0 07 01")));
}

TEST(OfflineHost, WaitsForWhatIsDueAtTheEndOfTheTailAndNoLonger) {
    const std::vector<Rule> rules{controllerRule(onHost(Host::Stop), 1, 500),
                                  controllerRule(onHost(Host::Stop), 2, 501),
                                  controllerRule(onHost(Host::Stop), 3, 9000)};
    const auto performance = play(rules, {}, 100, {48000, 512, 0.5});
    EXPECT_THAT(performance.outputs, ElementsAre(at(24100, "b0 01 01")));
    EXPECT_EQ(performance.cutOff, 2u);
}

TEST(OfflineHost, StillStopsTheTransportWithoutATail) {
    const auto performance =
        play({controllerRule(onHost(Host::Stop), 3), controllerRule(onHost(Host::Stop), 4, 1)}, {}, 100,
             {48000, 512, 0});
    EXPECT_THAT(performance.outputs, ElementsAre(at(100, "b0 03 01")));
    EXPECT_EQ(performance.cutOff, 1u);
}

TEST(OfflineHost, CutsNothingOffWhenTheTailIsLongEnough) {
    EXPECT_EQ(play({controllerRule(onHost(Host::Stop), 1, 60000)}, {}, 100).cutOff, 0u);
}

TEST(OfflineHost, CountsTheDelayedOutputsThatFindNoRoomToWait) {
    const std::vector<TimedMessage> messages(RuleProcessor::delayCapacity + 3, at(0, "90 3c 64"));
    const auto performance = play({controllerRule(onAnyNote(), 7, 100)}, messages, 1);
    EXPECT_EQ(performance.lost, 3U);
    EXPECT_EQ(performance.outputs.size(), 2 * messages.size() - 3);
    EXPECT_EQ(play({controllerRule(onAnyNote(), 7, 100)}, {messages.begin() + 3, messages.end()}, 1).lost,
              0U);
}

TEST(OfflineHost, SkipsYearsInWhichNothingHappens) {
    constexpr SampleTime year = 48000LL * 3600 * 24 * 365;
    const std::vector<TimedMessage> messages{at(year, "90 3c 64"), at(90 * year + 1, "80 3c 00")};
    EXPECT_EQ(outputsOf({}, messages, 100 * year, {48000, 1, 60}), messages);
}

TEST(OfflineHost, SkipsYearsInWhichADelayedOutputWaits) {
    constexpr SampleTime hour = 48000LL * 3600;
    constexpr SampleTime year = hour * 24 * 365;
    const std::vector<Rule> rules{controllerRule(onAnyNote(), 5, 50LL * 365 * 24 * 3600 * 1000),
                                  controllerRule(onHost(Host::Stop), 6, 24LL * 3600 * 1000)};
    const auto performance =
        play(rules, {at(year, "90 3c 64"), at(90 * year + 1, "90 3d 64")}, 100 * year, {48000, 1, 24 * 3600});
    EXPECT_THAT(performance.outputs,
                ElementsAre(at(year, "90 3c 64"), at(51 * year, "b0 05 01"), at(90 * year + 1, "90 3d 64"),
                            at(100 * year + 24 * hour, "b0 06 01")));
    EXPECT_EQ(performance.cutOff, 1u);
}

TEST(OfflineHost, SkipsNoCycleInWhichADelayedOutputIsDue) {
    OfflineHost host({48000, 64, 60}, {controllerRule(onAnyNote(), 5, 2000)});
    std::vector<std::string> steps;
    host.setLogs([](const EventLogEntry&) {},
                 [&](const EventLogEntry& entry) { steps.push_back(text(entry)); });
    host.setProgress([&](double done) { steps.push_back(std::to_string(done * 640000)); });
    static_cast<void>(host.play(std::vector<TimedMessage>{at(10, "90 3c 64"), at(500000, "f8")}, 640000));
    EXPECT_THAT(steps,
                ElementsAre("[10] 90 3c 64", std::to_string(96000.0), "[96010] b0 05 01",
                            std::to_string(500000.0 - 500000 % 64), "[500000] f8", std::to_string(640000.0)));
}

TEST(OfflineHost, TakesAnyNumberOfMessagesInOneCycle) {
    const std::vector<TimedMessage> messages(20000, at(5000, "90 3c 64"));
    EXPECT_EQ(outputsOf({}, messages, 10000).size(), messages.size());
}

TEST(OfflineHost, ShowsBothLogsInTheOrderOfEvents) {
    OfflineHost host({}, {controllerRule(onAnyNote(PassThroughV2::EatMatching), 9)});
    std::vector<std::string> lines;
    host.setLogs([&](const EventLogEntry& entry) { lines.push_back("in " + text(entry)); },
                 [&](const EventLogEntry& entry) { lines.push_back("out " + text(entry)); });
    static_cast<void>(host.play(std::vector<TimedMessage>{at(3, "90 3c 64"), at(4, "c0 01")}, 600));
    EXPECT_THAT(lines, ElementsAre("in [0] AU Host Start", "in [3] 90 3c 64", "out [3] b0 09 01",
                                   "in [4] c0 01", "out [4] c0 01", "in [600] AU Host Stop"));
}

TEST(OfflineHost, ReportsProgressUpToTheEnd) {
    OfflineHost host({}, std::vector<Rule>());
    std::vector<double> progress;
    host.setProgress([&](double done) { progress.push_back(done); });
    static_cast<void>(host.play(std::vector<TimedMessage>{at(600, "90 3c 64")}, 2048));
    EXPECT_THAT(progress, ElementsAre(0.25, 1.0));
}

TEST(OfflineHost, RaisesTheFatalErrorOfRulesThatCannotBeInstalled) {
    EXPECT_THROW(OfflineHost({}, {controllerRule(onLoad(), 1, -1)}), FatalError);
}

TEST(OfflineHost, RaisesTheFatalErrorOfACycle) {
    constexpr SampleTime end = std::numeric_limits<SampleTime>::max() - 1000;
    try {
        static_cast<void>(play({controllerRule(onAnyNote(), 1, 10000)}, {at(end - 1, "90 3c 64")}, end));
        FAIL() << "an output beyond the timeline";
    } catch (const FatalError& error) {
        EXPECT_THAT(error.what(), testing::Not(testing::HasSubstr("status")));
    }
}

/// Some hundred events within a few seconds, with notes and Starts that wake the rules below.
std::vector<TimedMessage> randomMessages(std::mt19937& random) {
    std::uniform_int_distribution<int> distance(0, 900);
    std::uniform_int_distribution<int> kind(0, 3);
    std::vector<TimedMessage> messages;
    for (SampleTime time = 0; time < 100000; time += distance(random)) {
        const std::vector<std::string> kinds{"90 3c 64", "80 3c 40", "fa", "b2 07 64"};
        messages.push_back(at(time, kinds[static_cast<std::size_t>(kind(random))]));
    }
    return messages;
}

TEST(OfflineHost, SendsTheSameWhateverTheBlock) {
    const std::vector<Rule> rules{controllerRule(onLoad(), 1, 3),
                                  controllerRule(onHost(Host::Start), 2, 100),
                                  controllerRule(onAnyNote(), 3, 7),
                                  controllerRule(onAnyNote(), 4, 333),
                                  controllerRule(onAnyNote(PassThroughV2::EatMatching), 5),
                                  controllerRule(onMIDIStart(PassThroughV2::EatMatching), 6, 1),
                                  controllerRule(onHost(Host::Stop), 7, 1234)};
    std::mt19937 random(7);
    for (int round = 0; round < 20; ++round) {
        const auto messages = randomMessages(random);
        const auto expected =
            inStableOrder(outputsOf(rules, messages, 100321, {44100, 1, 60}), &TimedMessage::time);
        for (const std::uint32_t block : {2u, 63u, 64u, 512u, 4096u, 1048576u}) {
            ASSERT_EQ(
                inStableOrder(outputsOf(rules, messages, 100321, {44100, block, 60}), &TimedMessage::time),
                expected)
                << block;
        }
    }
}

}  // namespace
}  // namespace quillo
