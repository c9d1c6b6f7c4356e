// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/StuckNoteAnalysis.hpp"

#include <gmock/gmock.h>

#include <algorithm>
#include <map>
#include <optional>
#include <ostream>
#include <random>
#include <set>
#include <string>
#include <tuple>
#include <utility>

#include "analysis/EngineProbe.hpp"
#include "midi/MessageLength.hpp"
#include "support/OutputRecorder.hpp"
#include "support/RandomRules.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::ElementsAre;
using Transport = HostTransportTriggerVariantsV2;

/// What becomes of the notes that a rule starts.
struct Fate {
    std::optional<StuckNoteAnalysis::Note> neverEnded;
    std::optional<StuckNoteAnalysis::Note> endedByChance;
    bool needsNoteOn = true;

    bool operator==(const Fate&) const = default;

    friend void PrintTo(const Fate& fate, std::ostream* out) {
        for (const auto& note : {fate.neverEnded, fate.endedByChance}) {
            *out << (note ? std::to_string(note->channel) + ":" + std::to_string(note->number) : "none")
                 << " ";
        }
    }
};

const Fate ended{};

Fate never(std::uint8_t onChannel, std::uint8_t note) {
    return {StuckNoteAnalysis::Note{onChannel, note}, {}, true};
}

Fate byChance(std::uint8_t onChannel, std::uint8_t note) {
    return {{}, StuckNoteAnalysis::Note{onChannel, note}, true};
}

Fate byChanceOfARelease(std::uint8_t onChannel, std::uint8_t note) {
    return {{}, StuckNoteAnalysis::Note{onChannel, note}, false};
}

std::vector<Fate> fates(const std::vector<Rule>& rules) {
    const RuleReach reach(rules);
    const StuckNoteAnalysis ledger(rules, reach);
    std::vector<Fate> fates;
    for (std::size_t rule = 0; rule < rules.size(); ++rule) {
        const auto found = ledger.findings(rule);
        const auto& chance = found.endedByChance;
        fates.push_back({found.neverEnded, chance ? std::optional(chance->note) : std::nullopt,
                         !chance || chance->needsNoteOn});
    }
    return fates;
}

/// Of the list's first rule.
std::optional<StuckNoteAnalysis::EarlyEnd> endedTooSoon(const std::vector<Rule>& rules) {
    const RuleReach reach(rules);
    return StuckNoteAnalysis(rules, reach).findings(0).endedTooSoon;
}

/// By the list's last rule.
std::optional<StuckNoteAnalysis::Note> endSwallowed(const std::vector<Rule>& rules) {
    const RuleReach reach(rules);
    return StuckNoteAnalysis(rules, reach).endSwallowed(rules.size() - 1);
}

/// A note, or its end, with the note and velocity of the trigger.
RuleOutputV2 copied(StatusV2 status, RuleOutputChannelV2 onChannel) {
    return send(protocol(status, onChannel, triggerByte, triggerByte));
}

const auto startCopy = copied(StatusV2::noteOn, channel(3));
const auto endCopy = copied(StatusV2::noteOff, channel(3));
const auto pedalNote = rule(onControlChange(64, exactly(127)), send(noteOn(0, 36, 100)));

TEST(StuckNoteAnalysis, FindsTheNoteThatNoRuleEnds) {
    EXPECT_THAT(fates({pedalNote}), ElementsAre(never(0, 36)));
    EXPECT_THAT(fates({rule(onLoad(), send(noteOn(4, 36, 100)))}), ElementsAre(never(4, 36)));
    EXPECT_THAT(fates({rule(onHost(Transport::Start), send(noteOn(0, 0, 1)))}), ElementsAre(never(0, 0)));
}

TEST(StuckNoteAnalysis, DrumsOnChannel10RingOutByThemselves) {
    EXPECT_THAT(fates({rule(onLoad(), send(noteOn(9, 36, 100)))}), ElementsAre(ended));
    EXPECT_EQ(endSwallowed({rule(onNoteOff(any, exactly(9), eatMatching), send(controlChange(0, 7, 1)))}),
              std::nullopt);
}

TEST(StuckNoteAnalysis, LooksAtRulesThatStartNotesOnly) {
    EXPECT_THAT(fates({rule(onNoteOn(), send(controlChange(0, 7, 1))), rule(onNoteOn(), endCopy),
                       rule(onMIDIStart(), send(noteOn(0, 1, 0))),
                       rule(onNoteOn(), send(protocol(StatusV2::noteOn, channel(0), byte(60))))}),
                ElementsAre(ended, ended, ended, ended));
}

TEST(StuckNoteAnalysis, ANoteOffOnTheSameChannelEndsTheNote) {
    const auto fate = [](RuleOutputVariantsV2 output) {
        return fates({pedalNote, rule(onControlChange(64, exactly(0)), send(std::move(output)))})[0];
    };
    EXPECT_EQ(fate(protocol(StatusV2::noteOff, channel(0), byte(36), byte(0))), ended);
    EXPECT_EQ(fate(protocol(StatusV2::noteOff, channel(1), byte(36), byte(0))), never(0, 36));
    EXPECT_EQ(fate(protocol(StatusV2::noteOff, channel(0), byte(37), byte(0))), never(0, 36));
    EXPECT_EQ(fate(protocol(StatusV2::noteOff, triggerChannel, byte(36), byte(0))), ended);
    EXPECT_EQ(fate(noteOn(0, 36, 0)), ended);
    EXPECT_EQ(fate(noteOn(0, 36, 1)), never(0, 36));
}

TEST(StuckNoteAnalysis, SilencingTheChannelEndsTheNote) {
    const auto fate = [](std::uint8_t onChannel, std::uint8_t controller) {
        return fates(
            {pedalNote, rule(onHost(Transport::Stop), send(controlChange(onChannel, controller, 0)))})[0];
    };
    for (const std::uint8_t controller : Bytes{120, 123, 124, 125, 126, 127}) {
        EXPECT_EQ(fate(0, controller), ended) << int{controller};
        EXPECT_EQ(fate(1, controller), never(0, 36)) << int{controller};
    }
    for (const std::uint8_t controller : Bytes{7, 119, 121, 122}) {
        EXPECT_EQ(fate(0, controller), never(0, 36)) << int{controller};
    }
}

TEST(StuckNoteAnalysis, CopiedNotesAreEndedByCopiedEnds) {
    EXPECT_EQ(fates({rule(onNoteOn(), startCopy), rule(onNoteOff(), endCopy)})[0], ended);
    EXPECT_EQ(fates({rule(onNoteOn(exactly(61)), startCopy), rule(onNoteOff(exactly(61)), endCopy)})[0],
              ended);
    EXPECT_EQ(fates({rule(onNoteOn(exactly(61)), startCopy), rule(onNoteOff(exactly(62)), endCopy)})[0],
              byChance(3, 61));
}

TEST(StuckNoteAnalysis, OfCopiedNotesEveryOneMustBeEnded) {
    EXPECT_EQ(fates({rule(onNoteOn(), startCopy), rule(onNoteOff(exactly(0)), endCopy)})[0], byChance(3, 60));
    EXPECT_EQ(fates({rule(onNoteOn(), startCopy), rule(onNoteOff(exactly(60)), endCopy)})[0],
              byChance(3, 61));
    const auto copyOf = [](StatusV2 status) {
        return send(protocol(status, triggerChannel, triggerByte, byte(1)));
    };
    EXPECT_EQ(fates({rule(onProgramChange(), copyOf(StatusV2::noteOn)),
                     rule(onNoteOff(any, exactly(0)), copyOf(StatusV2::noteOff))})[0],
              never(1, 60));
}

TEST(StuckNoteAnalysis, AFixedNoteCanBeEndedByOneThatIsCopied) {
    EXPECT_EQ(fates({pedalNote, rule(onNoteOff(), send(protocol(StatusV2::noteOff, channel(0), triggerByte,
                                                                byte(0))))})[0],
              ended);
    EXPECT_EQ(fates({pedalNote, rule(onProgramChange(),
                                     send(protocol(StatusV2::CC, channel(0), triggerByte, byte(0))))})[0],
              ended);
}

TEST(StuckNoteAnalysis, ACopiedVelocityOfZeroIsAnEndByChance) {
    EXPECT_THAT(fates({rule(onNoteOn(), startCopy)}), ElementsAre(byChance(3, 60)));
    EXPECT_EQ(fates({rule(onNoteOn(), startCopy), rule(onNoteOff(), startCopy)})[0],
              byChanceOfARelease(3, 60));
}

TEST(StuckNoteAnalysis, AVelocityThatIsAlwaysZeroIsNoChance) {
    const auto silent = send(protocol(StatusV2::noteOn, channel(3), triggerByte, byte(0)));
    EXPECT_EQ(fates({rule(onNoteOn(), startCopy), rule(onNoteOff(), silent)})[0], ended);
}

TEST(StuckNoteAnalysis, AControllersValueOfZeroIsAnEnd) {
    const auto value = send(protocol(StatusV2::noteOn, channel(0), byte(36), triggerByte));
    EXPECT_THAT(fates({rule(onControlChange(64), value)}), ElementsAre(ended));
    EXPECT_THAT(fates({rule(onControlChange(64, exactly(127)), value)}), ElementsAre(never(0, 36)));
}

TEST(StuckNoteAnalysis, TheReleaseOfTheKeyEndsItsOwnNoteWhereItIsForwarded) {
    const auto louder = send(protocol(StatusV2::noteOn, triggerChannel, triggerByte, byte(127)));
    EXPECT_THAT(fates({rule(onNoteOn(any, any, eatMatching), louder)}), ElementsAre(ended));
    EXPECT_THAT(fates({rule(onNoteOn(exactly(60), exactly(0)), send(noteOn(0, 60, 127)))}),
                ElementsAre(ended));
    EXPECT_EQ(fates({rule(onNoteOn(any, any, eatMatching), louder),
                     rule(onNoteOff(any, exactly(2), eatMatching), send(systemExclusive({})))})[0],
              never(2, 60));
    EXPECT_THAT(fates({rule(onNoteOn(exactly(60)), send(noteOn(3, 60, 127)))}), ElementsAre(never(3, 60)));
    EXPECT_THAT(fates({rule(onNoteOn(any, exactly(3)), send(noteOn(3, 60, 127)))}),
                ElementsAre(never(3, 60)));
}

TEST(StuckNoteAnalysis, AnEndThatIsNeverSentDoesNotCount) {
    EXPECT_EQ(fates({pedalNote, rule(onNoteOff(any, any, eatMatching), send(controlChange(0, 7, 1))),
                     rule(onNoteOff(), send(protocol(StatusV2::noteOff, channel(0), byte(36), byte(0))))})[0],
              never(0, 36));
}

RuleOutputV2 after(std::int64_t milliseconds, const RuleOutputV2& output) {
    return send(output.message, milliseconds);
}

TEST(StuckNoteAnalysis, AnEndThatLeavesBeforeItsNoteIsFound) {
    const auto early = endedTooSoon;
    const auto own = copied(StatusV2::noteOn, triggerChannel);
    using EarlyEnd = StuckNoteAnalysis::EarlyEnd;
    EXPECT_EQ(early({rule(onNoteOn(), own)}), std::nullopt);
    EXPECT_EQ(early({rule(onNoteOn(), after(300, own))}), (EarlyEnd{{0, 60}, 300, 0}));
    EXPECT_EQ(early({rule(onNoteOn(), after(500, startCopy)), rule(onNoteOff(), endCopy)}),
              (EarlyEnd{{3, 60}, 500, 0}));
    EXPECT_EQ(early({rule(onNoteOn(), after(500, startCopy)), rule(onNoteOff(), after(499, endCopy))}),
              (EarlyEnd{{3, 60}, 500, 499}));
    EXPECT_EQ(early({rule(onNoteOn(), after(500, startCopy)), rule(onNoteOff(), after(500, endCopy))}),
              std::nullopt);
    EXPECT_EQ(early({rule(onNoteOn(), after(500, startCopy)), rule(onNoteOff(), endCopy),
                     rule(onNoteOff(), after(700, endCopy))}),
              std::nullopt);
}

TEST(StuckNoteAnalysis, ASilenceThatLeavesBeforeTheNoteIsFound) {
    const auto silence = [](std::int64_t delay) {
        return endedTooSoon({rule(onNoteOn(), after(500, startCopy)),
                             rule(onNoteOff(), after(delay, send(controlChange(3, 123, 0))))});
    };
    EXPECT_EQ(silence(20), (StuckNoteAnalysis::EarlyEnd{{3, 60}, 500, 20}));
    EXPECT_EQ(silence(500), std::nullopt);
}

TEST(StuckNoteAnalysis, OnlyTheReleaseOfTheSameKeyCanComeTooSoon) {
    const auto early = [](const Rule& end) {
        return endedTooSoon({rule(onNoteOn(exactly(61)), send(noteOn(3, 36, 1), 500)), end});
    };
    const auto end = send(protocol(StatusV2::noteOff, channel(3), byte(36), byte(0)));
    EXPECT_EQ(early(rule(onNoteOff(exactly(61)), end)), (StuckNoteAnalysis::EarlyEnd{{3, 36}, 500, 0}));
    EXPECT_EQ(early(rule(onNoteOff(exactly(62)), end)), std::nullopt);
    EXPECT_EQ(early(rule(onNoteOn(exactly(61)), end)), std::nullopt);
    EXPECT_EQ(early(rule(onHost(Transport::Stop), end)), std::nullopt);
}

TEST(StuckNoteAnalysis, AnEndThatIsSwallowedIsFoundWhereItsNotePasses) {
    const auto swallowed = endSwallowed;
    const auto eatEnds = rule(onNoteOff(any, any, eatMatching), volume);
    const StuckNoteAnalysis::Note middleC{0, 60};
    EXPECT_EQ(swallowed({eatEnds}), middleC);
    EXPECT_EQ(swallowed({rule(onNoteOn(any, any, PassThroughV2::EatNonMatching), volume)}), middleC);
    EXPECT_EQ(swallowed({rule(onNoteOff(exactly(60), exactly(2), eatMatching), volume)}),
              (StuckNoteAnalysis::Note{2, 60}));
    EXPECT_EQ(swallowed({rule(onNoteOn(any, any, eatMatching), volume), eatEnds}), std::nullopt);
    EXPECT_EQ(swallowed({rule(onNoteOff(), volume)}), std::nullopt);
}

TEST(StuckNoteAnalysis, AnEndThatARuleSendsInPlaceOfTheOneItSwallowsIsEnough) {
    const auto swallowed = [](const RuleOutputV2& output) {
        return endSwallowed({rule(onNoteOff(any, any, eatMatching), output)});
    };
    EXPECT_EQ(swallowed(copied(StatusV2::noteOff, triggerChannel)), std::nullopt);
    EXPECT_EQ(swallowed(after(20, copied(StatusV2::noteOff, triggerChannel))), std::nullopt);
    EXPECT_EQ(swallowed(send(protocol(StatusV2::CC, triggerChannel, byte(123), byte(0)))), std::nullopt);
    EXPECT_EQ(swallowed(endCopy), (StuckNoteAnalysis::Note{0, 60}));
    EXPECT_EQ(swallowed(copied(StatusV2::noteOn, triggerChannel)), (StuckNoteAnalysis::Note{0, 60}));
}

using Note = std::pair<unsigned, unsigned>;

/// What happens to notes when the engine is given every status byte with all data bytes that random rules
/// know, and others; zeros where a message has none.
class Performance {
public:
    explicit Performance(const std::vector<Rule>& rules) : probe_(rules), started_(rules.size()) {
        for (unsigned status = 0x80; status < 0x100; ++status) {
            for (const std::uint8_t data1 : Bytes{0, 1, 2, 60, 100, 120, 123, 124, 127}) {
                for (const std::uint8_t data2 : Bytes{0, 1, 2, 60, 127}) {
                    Bytes message{static_cast<std::uint8_t>(status), data1, data2};
                    message.resize(messageLength(message[0]));
                    message.resize(3);
                    play(message);
                }
            }
        }
        for (const auto change : {Transport::Start, Transport::Continue, Transport::Stop}) {
            see(probe_.put(change), {});
        }
        see(probe_.putLoading(), {});
    }

    /// Whether some note that the rule starts, and that is no drum, is ended by no rule, nor by a release
    /// that is forwarded.
    [[nodiscard]] bool leavesANote(std::size_t rule) const {
        return std::ranges::any_of(started_[rule], [this](const auto& start) {
            const auto& [note, isTriggers] = start;
            return note.first != drumChannel && !ended_.contains(note) &&
                   !(isTriggers && released_.contains(note));
        });
    }

    /// Whether the release of a key ends some note that the key's press starts by this rule, but ends it
    /// before.
    [[nodiscard]] bool endsTooSoon(std::size_t rule) const {
        return std::ranges::any_of(pressed_[rule], [this](const auto& start) {
            const auto& [note, key, delay] = start;
            const auto end = releasedAfter_.find({note, key});
            return !endedOtherwise_.contains(note) && end != releasedAfter_.end() && end->second < delay;
        });
    }

    /// Whether the rule starts this note, and no rule ends it.
    [[nodiscard]] bool leaves(std::size_t rule, const StuckNoteAnalysis::Note& note) const {
        const Note key{note.channel, note.number};
        return !ended_.contains(key) &&
               (started_[rule].contains({key, false}) || started_[rule].contains({key, true}));
    }

private:
    static constexpr unsigned drumChannel = 9;

    void play(const Bytes& message) {
        const auto outcome = probe_.put(message);
        if (outcome.forwarded && (message[0] & 0xF0U) == 0x80) {
            released_.insert(noteOf(message));
            if (message[1] < 128 && message[2] < 128) {
                seeEnd(noteOf(message), true, message, 0);
            }
        }
        see(outcome, message);
    }

    void see(const EngineProbe::Outcome& outcome, const Bytes& trigger) {
        for (const auto& firing : outcome.firings) {
            for (const auto& message : firing.messages) {
                see(firing.rule, message.bytes(), trigger);
                seeTimes(firing, message.bytes(), trigger);
            }
        }
    }

    /// The same, with the key that is pressed or released and the delay.
    void seeTimes(const EngineProbe::Firing& firing, std::span<const std::uint8_t> sent,
                  const Bytes& trigger) {
        const unsigned kind = trigger.empty() ? 0 : trigger[0] & 0xF0U;
        const bool byPress = kind == 0x90;
        const bool byRelease = kind == 0x80;
        const bool isPossible = trigger.empty() || (trigger[1] < 128 && trigger[2] < 128);
        if (!isPossible || sent.size() != 3 || sent[1] > 127 || sent[2] > 127) {
            return;
        }
        const bool isChance = (byPress || byRelease) && trigger[2] == 0;
        if ((sent[0] & 0xF0U) == 0x90 && sent[2] > 0) {
            if (byPress) {
                pressed_[firing.rule].insert({noteOf(sent), noteOf(trigger), firing.delay});
            }
        } else if ((sent[0] & 0xE0U) == 0x80 && ((sent[0] & 0x10U) == 0 || !isChance)) {
            seeEnd(noteOf(sent), byRelease, trigger, firing.delay);
        } else if ((sent[0] & 0xF0U) == 0xB0 && (sent[1] == 120 || sent[1] >= 123)) {
            for (unsigned note = 0; note < 128; ++note) {
                seeEnd({sent[0] & 0x0FU, note}, byRelease, trigger, firing.delay);
            }
        }
    }

    void seeEnd(const Note& note, bool byRelease, const Bytes& trigger, SampleTime delay) {
        if (!byRelease) {
            endedOtherwise_.insert(note);
            return;
        }
        auto& last = releasedAfter_.try_emplace({note, noteOf(trigger)}, delay).first->second;
        last = std::max(last, delay);
    }

    void see(std::size_t rule, std::span<const std::uint8_t> sent, const Bytes& trigger) {
        if (sent.size() != 3 || sent[1] > 127 || sent[2] > 127) {
            return;
        }
        const unsigned kind = sent[0] & 0xF0U;
        if (kind == 0x90 && sent[2] > 0) {
            const bool isTriggers =
                !trigger.empty() && trigger[2] < 128 && trigger[0] == sent[0] && trigger[1] == sent[1];
            started_[rule].insert({noteOf(sent), isTriggers});
        } else if (kind == 0x90 || kind == 0x80) {
            ended_.insert(noteOf(sent));
        } else if (kind == 0xB0 && (sent[1] == 120 || sent[1] >= 123)) {
            for (unsigned note = 0; note < 128; ++note) {
                ended_.insert({sent[0] & 0x0FU, note});
            }
        }
    }

    static Note noteOf(std::span<const std::uint8_t> message) { return {message[0] & 0x0FU, message[1]}; }

    EngineProbe probe_;
    std::vector<std::set<std::pair<Note, bool>>> started_;
    std::set<Note> ended_;
    std::set<Note> released_;
    std::vector<std::set<std::tuple<Note, Note, SampleTime>>> pressed_ =
        std::vector<std::set<std::tuple<Note, Note, SampleTime>>>(started_.size());
    std::set<Note> endedOtherwise_;
    std::map<std::pair<Note, Note>, SampleTime> releasedAfter_;
};

/// Rules that wait for two keys on one channel, and start and end two notes with two delays.
std::vector<Rule> rulesOnFewNotes(std::mt19937& random) {
    const auto either = [&](auto first, auto second) { return random() % 2 == 0 ? first : second; };
    std::vector<Rule> rules;
    for (auto count = random() % 6; count > 0; --count) {
        const auto key = exactly(either(std::uint8_t{1}, std::uint8_t{2}));
        const auto policy = either(PassThroughV2::PassThrough, eatMatching);
        const bool isStart = random() % 2 == 0;
        const auto sent = send(protocol(isStart ? StatusV2::noteOn : StatusV2::noteOff, channel(0),
                                        either(triggerByte, byte(1)), either(triggerByte, byte(1))),
                               either(0, 5));
        rules.push_back(
            rule(isStart ? onNoteOn(key, exactly(0), policy) : onNoteOff(key, exactly(0), policy), sent));
    }
    return rules;
}

TEST(StuckNoteAnalysis, KnowsExactlyWhichRulesOfTheEngineStartANoteLaterThanItEnds) {
    std::size_t early = 0;
    std::mt19937 random(1);
    for (unsigned turn = 0; turn < 100; ++turn) {
        const auto rules = rulesOnFewNotes(random);
        const RuleReach reach(rules);
        const StuckNoteAnalysis ledger(rules, reach);
        const Performance performance(rules);
        for (std::size_t rule = 0; rule < rules.size(); ++rule) {
            const bool found = ledger.findings(rule).endedTooSoon.has_value();
            ASSERT_EQ(found, performance.endsTooSoon(rule)) << "turn " << turn << ", rule " << rule;
            early += found ? 1 : 0;
        }
    }
    EXPECT_GT(early, 20u);
}

TEST(StuckNoteAnalysis, KnowsExactlyWhichRulesOfTheEngineLeaveANote) {
    std::size_t left = 0;
    for (unsigned seed = 0; seed < 150; ++seed) {
        const auto rules = RandomRules(seed).list();
        const auto found = fates(rules);
        const Performance performance(rules);
        for (std::size_t rule = 0; rule < rules.size(); ++rule) {
            const auto& note = found[rule].neverEnded;
            ASSERT_EQ(note.has_value(), performance.leavesANote(rule))
                << "seed " << seed << ", rule " << rule;
            if (note) {
                ASSERT_TRUE(performance.leaves(rule, *note)) << "seed " << seed << ", rule " << rule;
                ++left;
            }
        }
    }
    EXPECT_GT(left, 20u);
}

}  // namespace
}  // namespace quillo
