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

constexpr auto eatMatching = PassThroughV2::EatMatching;
constexpr auto eatNonMatching = PassThroughV2::EatNonMatching;

/// Which rules of a list can fire, and who keeps the others from it.
class Reach {
public:
    explicit Reach(const std::vector<Rule>& rules) : probe_(rules) {
        tryTellingEvents(probe_, [this](const Trial& trial) { reach_.watch(trial); });
    }

    [[nodiscard]] std::vector<bool> firing() const {
        std::vector<bool> firing;
        for (std::size_t rule = 0; rule < probe_.rules().size(); ++rule) {
            firing.push_back(reach_.canFire(rule));
        }
        return firing;
    }
    [[nodiscard]] std::set<std::size_t> blockers(std::size_t rule) const { return reach_.blockers(rule); }
    [[nodiscard]] std::set<std::size_t> inTheWay(std::size_t rule) const { return reach_.inTheWay(rule); }
    [[nodiscard]] bool canMove(std::size_t rule, std::size_t place) const {
        return reach_.canMove(rule, place);
    }

private:
    EngineProbe probe_;
    RuleReach reach_{probe_};
};

/// Outputs that tell by which rule they were sent.
std::vector<Rule> signedByPosition(std::vector<Rule> rules) {
    for (std::size_t position = 0; position < rules.size(); ++position) {
        rules[position].output = send(systemExclusive({static_cast<std::uint8_t>(position)}));
    }
    return rules;
}

/// Which rules a processor fires when it is given every status byte with all numbers that random rules know,
/// and others, every host event, and loading.
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
    for (unsigned status = 0; status < 256; ++status) {
        for (const std::uint8_t data1 : Bytes{0, 1, 2, 3, 127, 129, 255}) {
            for (const std::uint8_t data2 : Bytes{0, 1, 2, 3, 127, 129, 255}) {
                if (status != 0xF0) {
                    see(processor.run(MIDIMessage{static_cast<std::uint8_t>(status), data1, data2}));
                }
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
        const auto firing = firingInAProcessor(rules);
        ASSERT_EQ(Reach(rules).firing(), firing) << "seed " << seed;
        dead += static_cast<std::size_t>(std::ranges::count(firing, false));
    }
    EXPECT_GT(dead, 100u);
}

TEST(RuleReach, ARuleThatIsMovedAboveTheFirstOfItsBlockersFires) {
    for (unsigned seed = 0; seed < 300; ++seed) {
        const auto rules = RandomRules(seed).list();
        const Reach reach(rules);
        const auto firing = reach.firing();
        for (std::size_t rule = 0; rule < rules.size(); ++rule) {
            const auto blockers = firing[rule] ? std::set<std::size_t>() : reach.blockers(rule);
            if (!blockers.empty()) {
                const auto above = static_cast<std::ptrdiff_t>(*blockers.begin());
                auto moved = rules;
                std::rotate(moved.begin() + above, moved.begin() + static_cast<std::ptrdiff_t>(rule),
                            moved.begin() + static_cast<std::ptrdiff_t>(rule) + 1);
                ASSERT_TRUE(firingInAProcessor(moved)[*blockers.begin()]) << "seed " << seed;
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
        const Reach reach(rules);
        for (std::size_t rule = 0; rule < rules.size(); ++rule) {
            if (reach.firing()[rule] || reach.blockers(rule).empty()) {
                continue;
            }
            auto open = rules;
            for (const auto other : reach.inTheWay(rule)) {
                open[other].trigger = passing(open[other].trigger);
            }
            ASSERT_TRUE(firingInAProcessor(open)[rule]) << "seed " << seed << ", rule " << rule;
            ++opened;
        }
    }
    EXPECT_GT(opened, 50u);
}

TEST(RuleReach, ARuleCanMoveWhereEveryRuleStillFiresThatDid) {
    std::size_t refused = 0;
    for (unsigned seed = 0; seed < 100; ++seed) {
        const auto rules = RandomRules(seed).list();
        const Reach reach(rules);
        for (std::size_t rule = 1; rule < rules.size(); ++rule) {
            auto moved = rules;
            std::rotate(moved.begin(), moved.begin() + static_cast<std::ptrdiff_t>(rule),
                        moved.begin() + static_cast<std::ptrdiff_t>(rule) + 1);
            const auto before = reach.firing();
            const auto after = firingInAProcessor(moved);
            bool allFire = !before[rule] || after[0];
            for (std::size_t above = 0; above < rule; ++above) {
                allFire = allFire && (!before[above] || after[above + 1]);
            }
            for (std::size_t below = rule + 1; below < rules.size(); ++below) {
                allFire = allFire && (!before[below] || after[below]);
            }
            ASSERT_EQ(reach.canMove(rule, 0), allFire) << "seed " << seed << ", rule " << rule;
            refused += allFire ? 0 : 1;
        }
    }
    EXPECT_GT(refused, 20u);
}

TEST(RuleReach, ARuleBehindOneThatConsumesTheSameIsDead) {
    const Reach reach({rule(onNoteOn(any, exactly(1), eatMatching), send(noteOn(0, 1, 1))),
                       rule(onNoteOn(exactly(60), exactly(1)), send(noteOn(0, 1, 1))),
                       rule(onNoteOn(exactly(60)), send(noteOn(0, 1, 1)))});
    EXPECT_THAT(reach.firing(), ElementsAre(true, false, true));
    EXPECT_THAT(reach.blockers(1), ElementsAre(0));
}

TEST(RuleReach, SeveralRulesCanKeepOneFromFiringBetweenThem) {
    std::vector<Rule> rules;
    for (std::uint8_t onChannel = 0; onChannel < 16; ++onChannel) {
        rules.push_back(rule(onNoteOff(exactly(60), exactly(onChannel), eatMatching), send(noteOn(0, 1, 1))));
    }
    rules.push_back(rule(onNoteOff(exactly(60)), send(noteOn(0, 1, 1))));
    const Reach reach(rules);
    EXPECT_FALSE(reach.firing()[16]);
    EXPECT_EQ(reach.blockers(16).size(), 16u);
    rules.erase(rules.begin() + 7);
    EXPECT_TRUE(Reach(rules).firing()[15]);
}

TEST(RuleReach, ARuleOfTheOtherKindCanKeepAllOthersFromFiring) {
    const Reach reach({rule(onHost(Transport::Start, eatNonMatching), send(noteOn(0, 1, 1))),
                       rule(onNoteOn(), send(noteOn(0, 1, 1))), rule(onMIDIStop(), send(noteOn(0, 1, 1))),
                       rule(onHost(Transport::Stop), send(noteOn(0, 1, 1))),
                       rule(onHost(Transport::Start), send(noteOn(0, 1, 1))),
                       rule(onLoad(), send(noteOn(0, 1, 1)))});
    EXPECT_THAT(reach.firing(), ElementsAre(true, false, false, false, true, true));
    EXPECT_THAT(reach.blockers(1), ElementsAre(0));
    EXPECT_THAT(reach.blockers(3), ElementsAre(0));
}

TEST(RuleReach, TwoRulesThatLetOnlyTheirsThroughLetNothingThrough) {
    const Reach reach({rule(onNoteOn(any, any, eatNonMatching), send(noteOn(0, 1, 1))),
                       rule(onNoteOff(any, any, eatNonMatching), send(noteOn(0, 1, 1)))});
    EXPECT_THAT(reach.firing(), ElementsAre(true, false));
}

TEST(RuleReach, AChannelThatNoMessageHasIsNobodysFault) {
    const Reach reach({rule(onNoteOn(any, any, eatMatching), send(noteOn(0, 1, 1))),
                       rule(onNoteOn(any, exactly(16)), send(noteOn(0, 1, 1)))});
    EXPECT_FALSE(reach.firing()[1]);
    EXPECT_THAT(reach.blockers(1), IsEmpty());
}

TEST(TellingMessages, HoldEachNumberThatIsNamedAndOneThatIsNot) {
    std::vector<Rule> rules;
    for (unsigned note = 0; note < 256; ++note) {
        rules.push_back(rule(onNoteOn(exactly(static_cast<std::uint8_t>(note)), any, eatMatching),
                             send(noteOn(0, 1, 1))));
    }
    rules.push_back(rule(onNoteOn(), send(noteOn(0, 1, 1))));
    EXPECT_FALSE(Reach(rules).firing()[256]);
    rules.erase(rules.begin() + 255);
    EXPECT_TRUE(Reach(rules).firing()[255]);
}

}  // namespace
}  // namespace quillo
