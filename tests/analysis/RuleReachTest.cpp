// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/RuleReach.hpp"

#include <gmock/gmock.h>

#include <algorithm>

#include "support/EndlessProcessor.hpp"
#include "support/RandomRules.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using testing::IsEmpty;
using Transport = HostTransportTriggerVariantsV2;

std::vector<bool> firing(const std::vector<Rule>& rules) {
    const RuleReach reach(rules);
    std::vector<bool> firing;
    for (std::size_t rule = 0; rule < rules.size(); ++rule) {
        firing.push_back(reach.canFire(rule));
    }
    return firing;
}

/// Outputs that tell by which rule they were sent.
std::vector<Rule> signedByPosition(std::vector<Rule> rules) {
    for (std::size_t position = 0; position < rules.size(); ++position) {
        rules[position].output = send(systemExclusive({static_cast<std::uint8_t>(position)}));
    }
    return rules;
}

/// The status bytes of all channel messages on the channels 0, 1, 2 and 15, and of all others but SysEx.
Bytes statuses() {
    Bytes statuses;
    for (unsigned status = 0x80; status <= 0xFF; ++status) {
        const auto channel = status & 0x0FU;
        if (status > 0xF0 || (status < 0xF0 && (channel < 3 || channel == 15))) {
            statuses.push_back(static_cast<std::uint8_t>(status));
        }
    }
    return statuses;
}

/// Which rules a processor fires when it is given every kind of message on the channels and with the data
/// bytes that random rules know, and on others, every host event, and loading.
std::vector<bool> firingInAProcessor(const std::vector<Rule>& rules) {
    EndlessProcessor processor(signedByPosition(rules));
    std::vector<bool> firing(rules.size());
    const auto see = [&](const std::vector<Emission>& emissions) {
        for (const auto& emission : emissions) {
            const auto& message = emission.messages.front();
            if (message.front() == 0xF0) {
                firing[message[1]] = true;
            }
        }
    };
    for (const auto status : statuses()) {
        for (const std::uint8_t data1 : Bytes{0, 1, 2, 127}) {
            for (const std::uint8_t data2 : Bytes{0, 1, 2, 127}) {
                see(processor.run(MIDIMessage{status, data1, data2}));
            }
        }
    }
    for (const auto change : {Transport::Start, Transport::Continue, Transport::Stop}) {
        see(processor.run(change));
    }
    see(processor.load());
    return firing;
}

TEST(RuleReach, KnowsExactlyWhichRulesTheEngineEverFires) {
    std::size_t dead = 0;
    for (unsigned seed = 0; seed < 300; ++seed) {
        const auto rules = RandomRules(seed).list();
        const auto fired = firingInAProcessor(rules);
        ASSERT_EQ(firing(rules), fired) << "seed " << seed;
        dead += static_cast<std::size_t>(std::ranges::count(fired, false));
    }
    EXPECT_GT(dead, 100u);
}

TEST(RuleReach, ARuleThatIsMovedAboveTheFirstOfItsBlockersFires) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        const auto rules = RandomRules(seed).list();
        const RuleReach reach(rules);
        for (std::size_t rule = 0; rule < rules.size(); ++rule) {
            const auto blockers = reach.canFire(rule) ? std::vector<std::size_t>() : reach.blockers(rule);
            if (!blockers.empty()) {
                const auto above = static_cast<std::ptrdiff_t>(blockers.front());
                auto moved = rules;
                std::rotate(moved.begin() + above, moved.begin() + static_cast<std::ptrdiff_t>(rule),
                            moved.begin() + static_cast<std::ptrdiff_t>(rule) + 1);
                ASSERT_TRUE(firingInAProcessor(moved)[blockers.front()]) << "seed " << seed;
            }
        }
    }
}

RuleTriggerV2 passing(const RuleTriggerV2& trigger) {
    if (const auto* message = trigger.getIf<RuleTriggerV2::MessageBased>()) {
        return onMessage(message->trigger.variants, PassThroughV2::PassThrough);
    }
    return onHost(trigger.getIf<RuleTriggerV2::HostTransport>()->trigger.variants);
}

TEST(RuleReach, ARuleFiresWhereThoseInItsWayPassThrough) {
    std::size_t opened = 0;
    for (unsigned seed = 0; seed < 300; ++seed) {
        const auto rules = RandomRules(seed).list();
        const RuleReach reach(rules);
        for (std::size_t rule = 0; rule < rules.size(); ++rule) {
            if (reach.canFire(rule) || reach.blockers(rule).empty()) {
                continue;
            }
            auto open = rules;
            for (const auto other : reach.inTheWay(rule, rules.size())) {
                open[other].trigger = passing(open[other].trigger);
            }
            ASSERT_TRUE(firingInAProcessor(open)[rule]) << "seed " << seed << ", rule " << rule;
            ++opened;
        }
    }
    EXPECT_GT(opened, 50u);
}

TEST(RuleReach, ARuleCanMoveAboveItsFirstBlockerWhereEveryRuleStillFiresThatDid) {
    std::size_t refused = 0;
    std::size_t allowed = 0;
    for (unsigned seed = 0; seed < 600; ++seed) {
        const auto rules = RandomRules(seed).list();
        const RuleReach reach(rules);
        auto before = firing(rules);
        for (std::size_t rule = 1; rule < rules.size(); ++rule) {
            if (before[rule] || reach.blockers(rule).empty()) {
                continue;
            }
            const auto moved = [&](auto list) {
                const auto above = static_cast<std::ptrdiff_t>(reach.blockers(rule).front());
                const auto at = static_cast<std::ptrdiff_t>(rule);
                std::rotate(list.begin() + above, list.begin() + at, list.begin() + at + 1);
                return list;
            };
            const bool allStillFire = std::ranges::equal(moved(before), firingInAProcessor(moved(rules)),
                                                         [](bool was, bool is) { return is || !was; });
            ASSERT_EQ(reach.canMove(rule), allStillFire) << "seed " << seed << ", rule " << rule;
            (allStillFire ? allowed : refused) += 1;
        }
    }
    EXPECT_GT(refused, 20U);
    EXPECT_GT(allowed, 100U);
}

TEST(RuleReach, ARuleBehindOneThatConsumesTheSameIsDead) {
    const std::vector rules{rule(onNoteOn(any, exactly(1), eatMatching), send(noteOn(0, 1, 1))),
                            rule(onNoteOn(exactly(60), exactly(1)), send(noteOn(0, 1, 1))),
                            rule(onNoteOn(exactly(60)), send(noteOn(0, 1, 1)))};
    EXPECT_THAT(firing(rules), ElementsAre(true, false, true));
    EXPECT_THAT(RuleReach(rules).blockers(1), ElementsAre(0));
}

TEST(RuleReach, SeveralRulesCanKeepOneFromFiringBetweenThem) {
    std::vector<Rule> rules;
    for (std::uint8_t onChannel = 0; onChannel < 16; ++onChannel) {
        rules.push_back(rule(onNoteOff(exactly(60), exactly(onChannel), eatMatching), send(noteOn(0, 1, 1))));
    }
    rules.push_back(rule(onNoteOff(exactly(60)), send(noteOn(0, 1, 1))));
    EXPECT_FALSE(firing(rules)[16]);
    EXPECT_EQ(RuleReach(rules).blockers(16).size(), 16u);
    rules.erase(rules.begin() + 7);
    EXPECT_TRUE(firing(rules)[15]);
}

TEST(RuleReach, ARuleOfTheOtherKindCanKeepAllOthersFromFiring) {
    const std::vector rules{rule(onHost(Transport::Start, eatNonMatching), send(noteOn(0, 1, 1))),
                            rule(onNoteOn(), send(noteOn(0, 1, 1))),
                            rule(onMIDIStop(), send(noteOn(0, 1, 1))),
                            rule(onHost(Transport::Stop), send(noteOn(0, 1, 1))),
                            rule(onHost(Transport::Start), send(noteOn(0, 1, 1))),
                            rule(onLoad(), send(noteOn(0, 1, 1)))};
    const RuleReach reach(rules);
    EXPECT_THAT(firing(rules), ElementsAre(true, false, false, false, true, true));
    EXPECT_THAT(reach.blockers(1), ElementsAre(0));
    EXPECT_THAT(reach.blockers(3), ElementsAre(0));
}

TEST(RuleReach, TwoRulesThatLetOnlyTheirsThroughLetNothingThrough) {
    EXPECT_THAT(firing({rule(onNoteOn(any, any, eatNonMatching), send(noteOn(0, 1, 1))),
                        rule(onNoteOff(any, any, eatNonMatching), send(noteOn(0, 1, 1)))}),
                ElementsAre(true, false));
}

TEST(RuleReach, AChannelThatNoMessageHasIsBlamedOnNoRule) {
    const std::vector rules{rule(onNoteOn(any, any, eatMatching), send(noteOn(0, 1, 1))),
                            rule(onNoteOn(any, exactly(16)), send(noteOn(0, 1, 1)))};
    EXPECT_FALSE(firing(rules)[1]);
    EXPECT_THAT(RuleReach(rules).blockers(1), IsEmpty());
}

TEST(RuleReach, AllNotesTogetherAreAnyNote) {
    std::vector<Rule> rules;
    for (unsigned note = 0; note < 128; ++note) {
        rules.push_back(rule(onNoteOn(exactly(static_cast<std::uint8_t>(note)), any, eatMatching),
                             send(noteOn(0, 1, 1))));
    }
    rules.push_back(rule(onNoteOn(), send(noteOn(0, 1, 1))));
    EXPECT_FALSE(firing(rules)[128]);
    rules.erase(rules.begin() + 127);
    EXPECT_TRUE(firing(rules)[127]);
}

TEST(RuleReach, KnowsWhichRuleConsumesAnEvent) {
    const std::vector rules{
        rule(onNoteOn(exactly(60), any, eatMatching), send(noteOn(0, 1, 1))),
        rule(onControlChange(7, exactly(5), exactly(2), eatNonMatching), send(noteOn(0, 1, 1)))};
    const RuleReach reach(rules);
    EXPECT_EQ(reach.consumer({EventKind::noteOn, 9, 60}), 0U);
    EXPECT_EQ(reach.consumer({EventKind::noteOn, 9, 61}), 1U);
    EXPECT_EQ(reach.consumer({EventKind::hostStop}), 1U);
    EXPECT_EQ(reach.consumer({EventKind::controlChange, 2, 7, 5}), std::nullopt);
    EXPECT_EQ(reach.consumer({EventKind::controlChange, 2, 7, 6}), 1U);
}

TEST(EventBox, NumbersEveryEventOnce) {
    for (std::size_t number = 0; number < EventBox::eventCount; ++number) {
        ASSERT_EQ(EventBox::numberOf(EventBox::eventAt(number)), number);
    }
}

}  // namespace
}  // namespace quillo
