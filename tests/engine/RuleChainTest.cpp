// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/RuleChain.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <span>
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
    while (const auto* rule = chain.next()) {
        outcome.fired.push_back(static_cast<std::size_t>(rule->delay));
    }
    if (chain.consumed()) {
        outcome.consumer = static_cast<std::size_t>(rules.rulesInternal[chain.consumer()].delay);
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

void expectTheSameAsLookingAtEachRule(std::vector<Rule>& rules, std::span<const TriggerBytes> messages) {
    const auto compiled = compileNumbered(rules);
    for (const auto& message : messages) {
        ASSERT_EQ(runEngine(compiled, message), runReference(rules, message))
            << int{message.status} << " " << int{message.data1} << " " << int{message.data2};
    }
    for (const auto event : {Transport::Start, Transport::Continue, Transport::Stop}) {
        ASSERT_EQ(runEngine(compiled, event), runReference(rules, event));
    }
}

/// Every status byte, and data bytes that rules have and have not.
std::vector<TriggerBytes> everyKindOfMessage() {
    constexpr std::array<std::uint8_t, 8> bytes{0, 1, 2, 3, 127, 128, 129, 255};
    std::vector<TriggerBytes> messages;
    for (unsigned status = 0; status < 256; ++status) {
        for (const auto data1 : bytes) {
            for (const auto data2 : bytes) {
                messages.push_back({static_cast<std::uint8_t>(status), data1, data2});
            }
        }
    }
    return messages;
}

TEST(RuleChain, FiresTheSameRulesInTheSameOrderAsLookingAtEachOne) {
    for (unsigned seed = 0; seed < 4000; ++seed) {
        RandomRules random(seed);
        auto rules = random.list(seed % 4 == 0 ? 60 : 12);
        std::vector<TriggerBytes> messages;
        std::generate_n(std::back_inserter(messages), 20, [&] { return random.message(); });
        expectTheSameAsLookingAtEachRule(rules, messages);
        ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed;
    }
}

TEST(RuleChain, AgreesWithLookingAtEachRuleForEveryKindOfMessage) {
    const auto messages = everyKindOfMessage();
    for (unsigned seed = 0; seed < 30; ++seed) {
        auto rules = RandomRules(seed).list(40);
        expectTheSameAsLookingAtEachRule(rules, messages);
        ASSERT_FALSE(testing::Test::HasFailure()) << "seed " << seed;
    }
}

/// Lists of ten thousand: what they fire is exact, and what the table takes grows with them and no faster.
class LongRuleList : public testing::Test {
protected:
    static constexpr std::size_t length = 10000;
    static constexpr std::size_t mostBytesARule = 200;
    static constexpr std::size_t mostBytesOfRows = 4'300'000;

    template <class MakeTrigger>
    static std::vector<Rule> list(const MakeTrigger& trigger) {
        std::vector<Rule> rules;
        for (std::size_t number = 0; number < length; ++number) {
            rules.push_back(rule(trigger(number), send(noteOn(0, 1, 1))));
        }
        return rules;
    }
    static TriggerValueV2 wrapped(std::size_t number, std::size_t limit) {
        return exactly(static_cast<std::uint8_t>(number % limit));
    }
    static void expectExact(std::vector<Rule> rules, const std::vector<TriggerBytes>& messages) {
        expectTheSameAsLookingAtEachRule(rules, messages);
        EXPECT_LE(compileNumbered(rules).table.bytes(), length * mostBytesARule + mostBytesOfRows);
    }
};

TEST_F(LongRuleList, OfNotesAmongRulesForAnyNote) {
    expectExact(list([](std::size_t number) {
                    return number % 10 == 0 ? onNoteOn(wrapped(number / 10, 128), wrapped(number / 1280, 16))
                                            : onNoteOn(any, number % 3 == 0 ? any : wrapped(number, 16));
                }),
                {{0x90, 0, 1}, {0x90, 5, 1}, {0x93, 127, 1}, {0x9F, 200, 1}, {0x80, 0, 0}});
}

TEST_F(LongRuleList, OfSingleValuesOfEveryControllerOfEveryChannel) {
    expectExact(list([](std::size_t number) {
                    return onControlChange(static_cast<std::uint8_t>(number), wrapped(number / 256, 7),
                                           wrapped(number / 3, 16));
                }),
                {{0xB0, 0, 1}, {0xB5, 17, 0}, {0xB5, 17, 3}, {0xBF, 255, 6}, {0xBF, 255, 255}});
}

TEST_F(LongRuleList, OfSingleValuesAmongRulesForAnyValueOfOneController) {
    expectExact(list([](std::size_t number) {
                    return onControlChange(7, number % 2 == 0 ? any : wrapped(number, 256),
                                           number % 5 == 0 ? any : wrapped(number, 16));
                }),
                {{0xB0, 7, 0}, {0xB1, 7, 1}, {0xB2, 7, 255}, {0xB2, 8, 255}});
}

TEST_F(LongRuleList, OfRulesThatConsumeWhatTheyDoNotMatch) {
    expectExact(list([](std::size_t number) {
                    return onNoteOn(number % 2 == 0 ? any : exactly(60), number % 3 == 0 ? any : exactly(3),
                                    PassThroughV2::EatNonMatching);
                }),
                {{0x93, 60, 1}, {0x93, 61, 1}, {0x90, 60, 1}, {0x80, 60, 1}});
}

}  // namespace
}  // namespace quillo
