// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/EventExplanation.hpp"

#include <gtest/gtest.h>

#include <algorithm>

#include "platform/FatalError.hpp"
#include "support/EndlessProcessor.hpp"
#include "support/RandomRules.hpp"
#include "support/ReferenceEngine.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Transport = HostTransportTriggerVariantsV2;
using Verdict = RuleAccount::Verdict;

/// What goes out according to the explanation, as a processor would emit it.
std::vector<Emission> emissionsOf(const EventExplanation& explanation, const AskedEvent& event) {
    std::vector<Emission> emissions;
    const auto emit = [&](SampleTime milliseconds, std::span<const MIDIMessage> messages) {
        auto& emission = emissions.emplace_back(milliseconds * EndlessProcessor::samplesPerMillisecond);
        for (const auto& message : messages) {
            emission.messages.push_back(copyOf(message.bytes()));
        }
    };
    for (const auto& account : explanation.rules) {
        if (account.verdict == Verdict::fires) {
            emit(account.delay, account.messages);
        }
    }
    if (explanation.forwarded) {
        emit(0, {&std::get<MIDIMessage>(event), 1});
    }
    return emissions;
}

TriggerBytes bytesOf(const MIDIMessage& message) {
    return {message.bytes()[0], message.bytes()[1], message.bytes()[2]};
}

ChainEvent chainEvent(const AskedEvent& event) {
    if (const auto* message = std::get_if<MIDIMessage>(&event)) {
        return bytesOf(*message);
    }
    return std::get<Transport>(event);
}

/// The failure of a rule that did not fire, by looking at rule and event.
TriggerCondition failureOf(const Rule& rule, const AskedEvent& event) {
    const auto* based = rule.trigger.getIf<RuleTriggerV2::MessageBased>();
    const auto* message = std::get_if<MIDIMessage>(&event);
    if (based == nullptr || message == nullptr) {
        return TriggerCondition::kind;
    }
    return firstFailure(based->trigger.variants, bytesOf(*message)).value();
}

/// The verdict on a rule of the list, by looking at each rule in turn.
Verdict verdictOn(const Rule& rule, std::size_t position, const ChainOutcome& outcome) {
    if (rule.trigger.is<RuleTriggerV2::OnLoad>()) {
        return Verdict::standsAside;
    }
    if (outcome.consumer && position > *outcome.consumer) {
        return Verdict::neverTried;
    }
    return std::ranges::count(outcome.fired, position) > 0 ? Verdict::fires : Verdict::fails;
}

void expectTrueAccount(const std::vector<Rule>& rules, const AskedEvent& event,
                       const EventExplanation& explanation) {
    const auto outcome = runReference(rules, chainEvent(event));
    ASSERT_EQ(explanation.consumer, outcome.consumer);
    ASSERT_EQ(explanation.forwarded, std::holds_alternative<MIDIMessage>(event) && !outcome.consumer);
    ASSERT_EQ(explanation.rules.size(), rules.size());
    for (std::size_t position = 0; position < rules.size(); ++position) {
        const auto& account = explanation.rules[position];
        ASSERT_EQ(account.verdict, verdictOn(rules[position], position, outcome)) << position;
        if (account.verdict == Verdict::fails) {
            ASSERT_EQ(account.failure, failureOf(rules[position], event)) << position;
        }
    }
}

TEST(EventExplanation, AgreesWithTheEngineAndWithLookingAtEachRule) {
    for (unsigned seed = 0; seed < 400; ++seed) {
        RandomRules random(seed);
        const auto rules = random.list();
        EngineProbe probe(rules);
        EndlessProcessor processor(rules);
        for (int count = 0; count < 30; ++count) {
            const auto bytes = random.message();
            const MIDIMessage message{bytes.status, bytes.data1, bytes.data2};
            const auto explanation = explain(probe, message);
            ASSERT_EQ(emissionsOf(explanation, message), processor.run(message)) << "seed " << seed;
            ASSERT_NO_FATAL_FAILURE(expectTrueAccount(rules, message, explanation)) << "seed " << seed;
        }
        const auto change = random.transport();
        const auto explanation = explain(probe, change);
        ASSERT_EQ(emissionsOf(explanation, change), processor.run(change)) << "seed " << seed;
        ASSERT_NO_FATAL_FAILURE(expectTrueAccount(rules, change, explanation)) << "seed " << seed;
    }
}

TEST(EventExplanation, OfLoadingAgreesWithTheEngine) {
    for (unsigned seed = 0; seed < 200; ++seed) {
        const auto rules = RandomRules(seed).list();
        EngineProbe probe(rules);
        const auto explanation = explain(probe, PluginLoad{});
        ASSERT_EQ(emissionsOf(explanation, PluginLoad{}), EndlessProcessor(rules).load()) << "seed " << seed;
        for (std::size_t position = 0; position < rules.size(); ++position) {
            const bool waitsForLoading = rules[position].trigger.is<RuleTriggerV2::OnLoad>();
            ASSERT_EQ(explanation.rules[position].verdict,
                      waitsForLoading ? Verdict::fires : Verdict::standsAside);
        }
        EXPECT_FALSE(explanation.forwarded);
        EXPECT_EQ(explanation.consumer, std::nullopt);
    }
}

TEST(EventExplanation, LoadingFiresEachTimeItIsAskedAbout) {
    EngineProbe probe({rule(onLoad(), send(noteOn(0, 1, 1)))});
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(explain(probe, PluginLoad{}).rules[0].verdict, Verdict::fires);
    }
}

TEST(EventExplanation, ADelayedOutputKeepsItsMillisecondsAndIsNotMixedUpWithLaterEvents) {
    EngineProbe probe(
        {rule(onNoteOn(), send(noteOn(1, 1, 1), 100'000'000)), rule(onNoteOn(), send(noteOn(2, 2, 2), 1))});
    for (int time = 0; time < 2; ++time) {
        const auto explanation = explain(probe, MIDIMessage{0x90, 60, 100});
        EXPECT_EQ(explanation.rules[0].delay, 100'000'000);
        EXPECT_EQ(explanation.rules[1].delay, 1);
        EXPECT_EQ(explanation.rules[1].messages, std::vector({MIDIMessage{0x92, 2, 2}}));
        EXPECT_TRUE(explanation.forwarded);
    }
}

TEST(EventExplanation, SystemExclusiveComesToNoRuleAndIsNotForwarded) {
    EngineProbe probe({rule(onNoteOn(any, any, PassThroughV2::EatNonMatching), send(noteOn(0, 1, 1))),
                       rule(onLoad(), send(noteOn(0, 1, 1)))});
    const auto explanation = explain(probe, MIDIMessage{0xF0, 0x7E, 0xF7});
    EXPECT_EQ(explanation.rules[0].verdict, Verdict::standsAside);
    EXPECT_EQ(explanation.rules[1].verdict, Verdict::standsAside);
    EXPECT_EQ(explanation.consumer, std::nullopt);
    EXPECT_FALSE(explanation.forwarded);
}

TEST(EventExplanation, AMessageOfFewerBytesIsForwardedAsItIs) {
    EngineProbe probe({});
    for (const auto& message : {MIDIMessage{0xFA}, MIDIMessage{0xC0, 5}}) {
        EXPECT_TRUE(explain(probe, message).forwarded);
    }
}

TEST(EngineProbe, RejectsRulesThatNoUnitInstalls) {
    EXPECT_THROW(EngineProbe({rule(onLoad(), send(noteOn(0, 1, 1), -5))}), FatalError);
}

}  // namespace
}  // namespace quillo
