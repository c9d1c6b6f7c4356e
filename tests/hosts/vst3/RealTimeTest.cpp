// SPDX-License-Identifier: GPL-3.0-or-later
// What the built plug-in does in a block that a render thread must not do. None of it is the unit's: JUCE's
// wrapper enters its callback lock, and for the audio that comes in it copies a list of channels, once a
// block.
#include <gtest/gtest.h>

#include "hosts/vst3/VST3Host.hpp"
#include "persistence/PluginData.hpp"
#include "realtime/CallCounter.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

#ifdef QUILLO_COUNTS_LOCKS
constexpr std::size_t locks = 1;
#else
constexpr std::size_t locks = 0;
#endif
constexpr CallCounts anyBlock{1, 1, locks};

class VST3RealTime : public testing::Test {
protected:
    /// The first block is the only one in which the wrapper's buffer may have to grow.
    void SetUp() override {
        const std::vector<Rule> rules{
            rule(onNoteOn(), send(noteOn(0, 61, 5), 10)), rule(onNoteOn(), send(noteOn(0, 62, 5))),
            rule(onNoteOff(exactly(1)), send(systemExclusive({1}))),
            rule(onNoteOff(exactly(2)), send(systemExclusive(Bytes(1000, 0x11)))),
            rule(onHost(HostTransportTriggerVariantsV2::Start), send(controlChange(0, 1, 2)))};
        ASSERT_EQ(plugIn.setState(PluginData{rules}.write()), Steinberg::kResultOk);
        plugIn.activate();
        context.sampleRate = scriptSampleRate;
        EXPECT_EQ(callsFor({}).locks, locks);
    }

    CallCounts callsFor(const std::vector<Bytes>& messages) {
        input.clear();
        for (const auto& message : messages) {
            plugIn.give(input, 3, message);
        }
        const CallCounter::Scope scope;
        plugIn.process(512, input, &context);
        return scope.counts();
    }

    [[nodiscard]] std::size_t sent() const { return plugIn.sentEvents().size(); }

    VST3Instance plugIn;
    VST3Input input;
    Steinberg::Vst::ProcessContext context{};
};

TEST_F(VST3RealTime, ABlockCostsTheWrappersLockAndItsListOfChannels) {
    EXPECT_EQ(callsFor({}), anyBlock);
}

TEST_F(VST3RealTime, NotesAndControllersAndTheTransportCostNothingMore) {
    EXPECT_EQ(callsFor({{0x90, 60, 1}}), anyBlock);
    EXPECT_EQ(sent(), 3U);
    EXPECT_EQ(callsFor({{0xB0, 1, 2}, {0xE0, 1, 2}, {0xC0, 1}}), anyBlock);
    EXPECT_EQ(sent(), 3U);
    context.state = Steinberg::Vst::ProcessContext::kPlaying;
    EXPECT_EQ(callsFor({}), anyBlock);
    EXPECT_EQ(sent(), 1U);
}

TEST_F(VST3RealTime, AsManyMessagesAsCanLeaveCostNothingMore) {
    EXPECT_EQ(callsFor(std::vector<Bytes>(2000, {0xB0, 1, 2})), anyBlock);
    EXPECT_EQ(sent(), 2000U);
    EXPECT_EQ(callsFor(std::vector<Bytes>(2000, {0x90, 60, 1})), anyBlock);
    EXPECT_EQ(sent(), 2048U);
}

/// The wrapper copies such a message before it hands it over, unless it is as short as a pointer.
TEST_F(VST3RealTime, SystemExclusiveThatLeavesCostsTheWrapperACopy) {
    EXPECT_EQ(callsFor({{0x80, 1, 1}}), anyBlock);
    EXPECT_EQ(sent(), 2U);
    EXPECT_EQ(callsFor({{0x80, 2, 1}}), (CallCounts{2, 2, locks}));
    EXPECT_EQ(sent(), 2U);
}

TEST_F(VST3RealTime, SystemExclusiveThatArrivesCostsTheWrapperTwoCopies) {
    EXPECT_EQ(callsFor({Bytes(1000, 0xF0)}), (CallCounts{3, 3, locks}));
}

}  // namespace
}  // namespace quillo
