// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/RuleChain.hpp"

#include <gtest/gtest.h>

#include <utility>
#include <vector>

#include "engine/RuleCompiler.hpp"
#include "support/RandomRules.hpp"
#include "support/ReferenceEngine.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Transport = HostTransportTriggerVariantsV2;

/// Runs the engine's chain; rules are told by their delay, which is their position in the list.
template <class Event>
ChainOutcome runEngine(const CompiledRules& rules, const Event& event) {
    RuleChain chain(rules, event);
    ChainOutcome outcome;
    const MIDIRuleInternal* last = nullptr;
    while (const auto* rule = chain.next()) {
        outcome.fired.push_back(static_cast<std::size_t>(rule->delay));
        last = rule;
    }
    const auto consumer = chain.consumer(last);
    EXPECT_EQ(chain.consumed(), consumer != noRule);
    if (chain.consumed()) {
        outcome.consumer = static_cast<std::size_t>(rules.rulesInternal[consumer].delay);
    }
    return outcome;
}

/// Rules whose position in the list is their delay, at a rate of one sample a millisecond.
CompiledRules compileNumbered(std::vector<Rule>& rules) {
    for (std::size_t index = 0; index < rules.size(); ++index) {
        rules[index].output.delay.ms = static_cast<std::int64_t>(index);
    }
    return compileRules(rules, 1000);
}

std::vector<Rule> triggers(std::initializer_list<RuleTriggerV2> list) {
    std::vector<Rule> rules;
    for (const auto& trigger : list) {
        rules.push_back(rule(trigger, send(noteOn(0, 1, 1))));
    }
    return rules;
}

TEST(RuleChain, EveryPolicyOfEveryPairOfKindsActsAsOnTheOther) {
    for (const auto first : policies) {
        for (const auto second : policies) {
            for (const auto& [a, b] :
                 {std::pair{onNoteOn(any, any, first), onHost(Transport::Start, second)},
                  std::pair{onHost(Transport::Start, first), onNoteOn(any, any, second)},
                  std::pair{onMIDIStart(first), onNoteOn(any, any, second)},
                  std::pair{onHost(Transport::Stop, first), onHost(Transport::Start, second)}}) {
                auto rules = triggers({a, b, onNoteOn(), onHost(Transport::Start)});
                const auto compiled = compileNumbered(rules);
                for (const TriggerBytes message : {TriggerBytes{0x90, 60, 100}, TriggerBytes{0xFA, 0, 0},
                                                   TriggerBytes{0xF8, 0, 0}, TriggerBytes{0xE0, 0, 64}}) {
                    EXPECT_EQ(runEngine(compiled, message), runReference(rules, message));
                }
                for (const auto event : {Transport::Start, Transport::Continue, Transport::Stop}) {
                    EXPECT_EQ(runEngine(compiled, event), runReference(rules, event));
                }
            }
        }
    }
}

TEST(RuleChain, AHostRuleThatEatsNonMatchingSwallowsEveryMessage) {
    auto rules = triggers({onNoteOn(), onHost(Transport::Start, PassThroughV2::EatNonMatching), onNoteOn()});
    EXPECT_EQ(runEngine(compileNumbered(rules), TriggerBytes{0x90, 60, 100}), (ChainOutcome{{0}, 1}));
    EXPECT_EQ(runEngine(compileNumbered(rules), TriggerBytes{0xF8, 0, 0}), (ChainOutcome{{}, 1}));
}

TEST(RuleChain, AMessageRuleThatEatsNonMatchingStopsEveryHostEvent) {
    auto rules = triggers({onHost(Transport::Stop), onNoteOn(any, any, PassThroughV2::EatNonMatching),
                           onHost(Transport::Stop)});
    EXPECT_EQ(runEngine(compileNumbered(rules), Transport::Stop), (ChainOutcome{{0}, 1}));
}

TEST(RuleChain, SaysWhichRuleConsumedTheEvent) {
    auto rules = triggers({onLoad(), onNoteOn(exactly(61)), onNoteOn(any, any, PassThroughV2::EatMatching),
                           onNoteOn(any, any, PassThroughV2::EatMatching)});
    EXPECT_EQ(runEngine(compileNumbered(rules), TriggerBytes{0x90, 60, 100}), (ChainOutcome{{2}, 2}));
    EXPECT_EQ(runEngine(compileNumbered(rules), TriggerBytes{0x80, 60, 0}), (ChainOutcome{{}, {}}));
}

TEST(RuleChain, OnLoadRulesStandOutsideOfIt) {
    auto rules = triggers({onLoad(), onNoteOn(), onLoad()});
    EXPECT_EQ(runEngine(compileNumbered(rules), TriggerBytes{0x90, 60, 100}), (ChainOutcome{{1}, {}}));
}

TEST(RuleChain, FiresTheSameRulesInTheSameOrderAsLookingAtEachOne) {
    for (unsigned seed = 0; seed < 3000; ++seed) {
        RandomRules random(seed);
        auto rules = random.list();
        const auto compiled = compileNumbered(rules);
        for (int event = 0; event < 20; ++event) {
            const auto message = random.message();
            ASSERT_EQ(runEngine(compiled, message), runReference(rules, message)) << "seed " << seed;
        }
        const auto transport = random.transport();
        ASSERT_EQ(runEngine(compiled, transport), runReference(rules, transport)) << "seed " << seed;
    }
}

}  // namespace
}  // namespace quillo
