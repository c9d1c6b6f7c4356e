// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/RuleChain.hpp"

#include <gtest/gtest.h>

#include <array>
#include <random>
#include <utility>
#include <vector>

#include "engine/RuleCompiler.hpp"
#include "support/ReferenceEngine.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Transport = HostTransportTriggerVariantsV2;

constexpr std::array policies{PassThroughV2::PassThrough, PassThroughV2::EatMatching,
                              PassThroughV2::EatNonMatching};

/// Runs the engine's chain; fired rules are told by their delay, which is their position in the list.
template <class Event>
ChainOutcome runEngine(const CompiledRules& rules, const Event& event) {
    RuleChain chain(rules, event);
    ChainOutcome outcome;
    while (const auto* rule = chain.next()) {
        outcome.fired.push_back(static_cast<std::size_t>(rule->delay));
    }
    outcome.consumed = chain.consumed();
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
    EXPECT_EQ(runEngine(compileNumbered(rules), TriggerBytes{0x90, 60, 100}), (ChainOutcome{{0}, true}));
    EXPECT_EQ(runEngine(compileNumbered(rules), TriggerBytes{0xF8, 0, 0}), (ChainOutcome{{}, true}));
}

TEST(RuleChain, AMessageRuleThatEatsNonMatchingStopsEveryHostEvent) {
    auto rules = triggers({onHost(Transport::Stop), onNoteOn(any, any, PassThroughV2::EatNonMatching),
                           onHost(Transport::Stop)});
    EXPECT_EQ(runEngine(compileNumbered(rules), Transport::Stop), (ChainOutcome{{0}, true}));
}

TEST(RuleChain, OnLoadRulesStandOutsideOfIt) {
    auto rules = triggers({onLoad(), onNoteOn(), onLoad()});
    EXPECT_EQ(runEngine(compileNumbered(rules), TriggerBytes{0x90, 60, 100}), (ChainOutcome{{1}, false}));
}

class RandomRules {
public:
    explicit RandomRules(unsigned seed) : random_(seed) {}

    std::vector<Rule> list() {
        std::vector<Rule> rules;
        for (auto count = below(12); count > 0; --count) {
            rules.push_back(rule(trigger(), send(noteOn(0, 1, 1))));
        }
        return rules;
    }

    TriggerBytes message() {
        constexpr std::array<std::uint8_t, 12> statuses{0x80, 0x81, 0x90, 0x91, 0x92, 0xB0,
                                                        0xB1, 0xC0, 0xC1, 0xFA, 0xFB, 0xFC};
        return {statuses[below(statuses.size())], data(), data()};
    }

    Transport transport() { return static_cast<Transport>(below(3)); }

private:
    unsigned below(std::size_t limit) { return static_cast<unsigned>(random_() % limit); }
    std::uint8_t data() { return std::array<std::uint8_t, 4>{0, 1, 2, 129}[below(4)]; }
    TriggerValueV2 value() { return below(2) == 0 ? any : exactly(data()); }
    TriggerValueV2 onChannel() {
        return below(2) == 0 ? any : exactly(std::array<std::uint8_t, 3>{0, 1, 17}[below(3)]);
    }
    PassThroughV2 policy() { return below(2) == 0 ? PassThroughV2::PassThrough : policies[below(3)]; }

    RuleTriggerV2 trigger() {
        switch (below(9)) {
        case 0: return onLoad();
        case 1: return onHost(transport(), policy());
        case 2: return onMIDIStart(policy());
        case 3: return onMIDIStop(policy());
        case 4: return onMIDIContinue(policy());
        case 5: return onNoteOff(value(), onChannel(), policy());
        case 6: return onControlChange(data(), value(), onChannel(), policy());
        case 7: return onProgramChange(value(), onChannel(), policy());
        default: return onNoteOn(value(), onChannel(), policy());
        }
    }

    std::mt19937 random_;
};

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
