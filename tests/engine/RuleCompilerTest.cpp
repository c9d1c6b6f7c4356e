// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/RuleCompiler.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

#include "platform/FatalError.hpp"
#include "rules/RuleLabel.hpp"
#include "support/OutputRecorder.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Part = RuleInternalPartVariants;
constexpr auto longest = std::numeric_limits<std::int64_t>::max();

TEST(RuleCompiler, ADelayIsTruncatedToWholeSamples) {
    EXPECT_EQ(delayInSamples({0}, 44100), 0);
    EXPECT_EQ(delayInSamples({1}, 44100), 44);
    EXPECT_EQ(delayInSamples({1000}, 48000), 48000);
    EXPECT_EQ(delayInSamples({999}, 1), 0);
    EXPECT_EQ(delayInSamples({5}, 0), 0);
}

TEST(RuleCompiler, ANegativeDelayIsFatal) {
    EXPECT_THROW(static_cast<void>(delayInSamples({-1}, 44100)), FatalError);
}

TEST(RuleCompiler, ADelayThatOverflows64BitsIsFatal) {
    constexpr std::uint64_t rate = 44100;
    constexpr auto longestProduct = std::numeric_limits<std::uint64_t>::max() / rate;
    EXPECT_EQ(delayInSamples({static_cast<std::int64_t>(longestProduct)}, rate),
              static_cast<SampleTime>(longestProduct * rate / 1000));
    EXPECT_THROW(static_cast<void>(delayInSamples({static_cast<std::int64_t>(longestProduct) + 1}, rate)),
                 FatalError);
    EXPECT_EQ(delayInSamples({longest}, 2), static_cast<SampleTime>(std::uint64_t{longest} * 2 / 1000));
    EXPECT_THROW(static_cast<void>(delayInSamples({longest}, 3)), FatalError);
}

TEST(RuleCompiler, AnEmptyListCompilesToNothing) {
    const auto compiled = compileRules({}, 44100);
    EXPECT_TRUE(compiled.rules.empty());
    EXPECT_TRUE(compiled.rulesOnLoad.empty());
    EXPECT_TRUE(compiled.rulesInternal.empty());
}

TEST(RuleCompiler, OnLoadRulesAndTheOthersKeepTheirOrderInTwoLists) {
    const std::vector rules{
        rule(onLoad(), send(noteOn(0, 1, 1), 10)),
        rule(onNoteOn(), send(noteOn(0, 2, 2))),
        rule(onLoad(), send(programChange(channel(1), 2, byte(3)))),
        rule(onHost(HostTransportTriggerVariantsV2::Stop, PassThroughV2::EatMatching),
             send(noteOn(0, 4, 4), 1000)),
    };
    const auto compiled = compileRules(rules, 48000);
    EXPECT_EQ(compiled.rules, rules);
    EXPECT_EQ(compiled.rulesOnLoad, (std::vector<MIDIOnLoadRuleInternal>{
                                        {MessageList(MIDIMessage{0x90, 1, 1}), 0, 480},
                                        {MessageList(MIDIMessage{0xB1, 0, 2}, MIDIMessage{0xC1, 3}), 2, 0},
                                    }));
    ASSERT_EQ(compiled.rulesInternal.size(), 2U);
    EXPECT_TRUE(compiled.rulesInternal[0].variants.is<Part::WithMessageBasedTrigger>());
    const auto& host = compiled.rulesInternal[1];
    EXPECT_EQ(host.passThrough, PassThroughV2::EatMatching);
    EXPECT_EQ(host.delay, 48000);
    ASSERT_TRUE(host.variants.is<Part::WithHostBasedTrigger>());
    EXPECT_EQ(host.variants.getIf<Part::WithHostBasedTrigger>()->part,
              (RulePartWithHostBasedTrigger{MessageList(MIDIMessage{0x90, 4, 4}),
                                            HostTransportTriggerVariantsV2::Stop}));
}

TEST(RuleCompiler, AMessageBasedRuleKeepsItsTriggerPolicyAndDelay) {
    const auto trigger = onControlChange(7, exactly(3), exactly(2), PassThroughV2::EatNonMatching);
    const auto compiled = compileRules({rule(trigger, send(noteOn(0, 1, 1), 2))}, 1000);
    ASSERT_EQ(compiled.rulesInternal.size(), 1U);
    const auto& message = compiled.rulesInternal[0];
    EXPECT_EQ(message.passThrough, PassThroughV2::EatNonMatching);
    EXPECT_EQ(message.delay, 2);
    EXPECT_EQ(message.variants.getIf<Part::WithMessageBasedTrigger>()->part.variants,
              trigger.getIf<RuleTriggerV2::MessageBased>()->trigger.variants);
}

class TriggerReferringOutput : public testing::TestWithParam<RuleOutputVariantsV2> {};

TEST_P(TriggerReferringOutput, IsFatalOnLoad) {
    EXPECT_THROW(static_cast<void>(compileRules({rule(onLoad(), send(GetParam()))}, 44100)), FatalError);
}

TEST_P(TriggerReferringOutput, IsFatalAtAHostTransportEvent) {
    const auto trigger = onHost(HostTransportTriggerVariantsV2::Start);
    EXPECT_THROW(static_cast<void>(compileRules({rule(trigger, send(GetParam()))}, 44100)), FatalError);
}

TEST_P(TriggerReferringOutput, IsReportedWithTheNameOnce) {
    const std::string lengthy(1000, 'a');
    for (const auto& [trigger, kind] :
         {std::pair{onLoad(), "an on-load rule"},
          std::pair{onHost(HostTransportTriggerVariantsV2::Start), "a host-transport rule"}}) {
        try {
            static_cast<void>(compileRules({rule(trigger, send(GetParam()), lengthy)}, 44100));
            FAIL() << kind;
        } catch (const FatalError& error) {
            EXPECT_EQ(error.inWords(), ruleLabel(0, lengthy) + ": " + kind +
                                           " copies from a triggering message, and there is none. "
                                           "Choose values of its own for what it sends.");
        }
    }
}

TEST_P(TriggerReferringOutput, IsFineAtAMessage) {
    EXPECT_EQ(compileRules({rule(onNoteOn(), send(GetParam()))}, 44100).rulesInternal.size(), 1U);
}

INSTANTIATE_TEST_SUITE_P(Every, TriggerReferringOutput,
                         testing::Values(protocol(StatusV2::CC, triggerChannel, byte(1), byte(2)),
                                         protocol(StatusV2::CC, channel(0), triggerByte, byte(2)),
                                         protocol(StatusV2::CC, channel(0), byte(1), triggerByte),
                                         programChange(triggerChannel, 0, byte(1)),
                                         programChange(channel(0), 0, triggerByte)));

}  // namespace
}  // namespace quillo
