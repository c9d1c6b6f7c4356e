// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/FoldedRuns.hpp"

#include <gtest/gtest.h>

#include <random>

#include "editor/RuleListEditor.hpp"
#include "support/RandomRules.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

/// Rules that wait for these notes and send the same.
RuleList waitingFor(const std::vector<std::uint8_t>& notes, const std::string& name = "split") {
    RuleList list;
    for (const auto note : notes) {
        list.push_back(elementFromRule(rule(onNoteOn(exactly(note)), send(noteOn(1, 60, 100)), name)));
    }
    return list;
}

/// How many rules each card has.
std::vector<std::size_t> counts(const FoldedRuns& folded) {
    std::vector<std::size_t> counts;
    for (const auto& card : folded.cards()) {
        counts.push_back(card.count);
    }
    return counts;
}

using Counts = std::vector<std::size_t>;

class FoldedRunsTest : public testing::Test {
protected:
    void follow(const RuleList& after) {
        folded.follow(list, after);
        list = after;
    }
    void arrive(const RuleList& after) {
        folded.arrive(after);
        follow(after);
    }

    FoldedRuns folded;
    RuleList list;
};

TEST_F(FoldedRunsTest, TheRulesOfARunAreAllOnOrAllOff) {
    auto rules = waitingFor({36, 37, 38, 39, 40, 41});
    for (std::size_t position = 0; position < 3; ++position) {
        rules[position].off = true;
    }
    arrive(rules);
    EXPECT_EQ(counts(folded), (Counts{3, 3}));
    rules[1].off = false;
    follow(rules);
    EXPECT_EQ(counts(folded), (Counts{1, 1, 1, 3}));
}

TEST_F(FoldedRunsTest, ARunThatIsSwitchedOffStaysFolded) {
    auto rules = waitingFor({36, 37, 38});
    arrive(rules);
    for (auto& element : rules) {
        element.off = true;
    }
    follow(rules);
    EXPECT_EQ(counts(folded), Counts{3});
}

TEST_F(FoldedRunsTest, AListUnderTheUsersHandsStaysUnfolded) {
    auto grown = waitingFor({36});
    follow(grown);
    for (std::uint8_t note = 37; note < 40; ++note) {
        grown.push_back(waitingFor({note}).front());
        follow(grown);
    }
    EXPECT_EQ(counts(folded), (Counts{1, 1, 1, 1}));
}

TEST_F(FoldedRunsTest, RunsOfThreeAndMoreThatArriveAreFolded) {
    arrive(waitingFor({1, 2, 10, 11, 12, 20, 30, 31, 32, 33}));
    EXPECT_EQ(counts(folded), (Counts{1, 1, 3, 1, 4}));
}

TEST_F(FoldedRunsTest, ACardSaysWhetherItsMessageRises) {
    RuleList rising;
    for (std::uint8_t note = 36; note < 39; ++note) {
        rising.push_back(elementFromRule(
            rule(onNoteOn(exactly(note)), send(noteOn(1, static_cast<std::uint8_t>(note + 12), 100)))));
    }
    arrive(rising);
    EXPECT_EQ(folded.cards(), (std::vector<RuleRun>{{0, 3, true}}));
    arrive(waitingFor({36, 37, 38}));
    EXPECT_EQ(folded.cards(), (std::vector<RuleRun>{{0, 3, false}}));
}

TEST_F(FoldedRunsTest, ARunIsUnfoldedAndFoldedByAnyOfItsRules) {
    arrive(waitingFor({1, 10, 11, 12}));
    folded.unfold(list[1].id);
    EXPECT_EQ(counts(folded), (Counts{1, 1, 1, 1}));
    folded.fold(list[3].id);
    EXPECT_EQ(counts(folded), (Counts{1, 3}));
    folded.fold(list[0].id);
    folded.unfold(list[0].id);
    folded.fold(UUID());
    EXPECT_EQ(counts(folded), (Counts{1, 3}));
}

TEST_F(FoldedRunsTest, ARuleThatGoesOnNoMoreHasACardOfItsOwnForGood) {
    const auto run = waitingFor({10, 11, 12});
    arrive(run);
    auto broken = run;
    broken[1].rule.name = "other";
    follow(broken);
    EXPECT_EQ(counts(folded), (Counts{1, 1, 1}));
    follow(run);
    EXPECT_EQ(counts(folded), (Counts{1, 1, 1}));
}

TEST_F(FoldedRunsTest, WhatIsGoneComesBackFolded) {
    const auto run = waitingFor({10, 11, 12});
    arrive(run);
    follow({});
    EXPECT_EQ(counts(folded), Counts{});
    follow(run);
    EXPECT_EQ(counts(folded), (Counts{3}));
}

TEST_F(FoldedRunsTest, WhatIsForgottenIsUnfolded) {
    arrive(waitingFor({10, 11, 12}));
    folded.forget();
    EXPECT_EQ(counts(folded), Counts{});
    folded.follow({}, list);
    EXPECT_EQ(counts(folded), (Counts{1, 1, 1}));
}

TEST_F(FoldedRunsTest, ARuleThatIsJoinedSharesTheCardAboveIt) {
    const auto run = waitingFor({10, 11});
    folded.join(run[1].id);
    follow(run);
    EXPECT_EQ(counts(folded), (Counts{2}));
    EXPECT_EQ(folded.cardOf(run[1].id), (RuleRun{0, 2, false}));
    EXPECT_EQ(folded.cardOf(UUID()), std::nullopt);
}

TEST_F(FoldedRunsTest, ALoadedMessageIsInNoRun) {
    auto run = waitingFor({10, 11, 12});
    run[1].loadedMessage = ruleFromElement(run[1]).output.message;
    arrive(run);
    EXPECT_EQ(counts(folded), (Counts{1, 1, 1}));
}

/// The rules of all cards, in order.
RuleList onCards(const FoldedRuns& folded, const RuleList& list) {
    RuleList rules;
    for (const auto& card : folded.cards()) {
        for (auto rule = card.first; rule < card.first + card.count; ++rule) {
            rules.push_back(list.at(rule));
        }
    }
    return rules;
}

RuleList randomList(unsigned seed) {
    RuleList list;
    for (const auto& rule : RandomRules(seed).list(30)) {
        if (!whyNoEntry(rule)) {
            list.push_back(elementFromRule(rule));
        }
    }
    return list;
}

TEST(FoldedRuns, FoldedAndUnfoldedAnyListIsTheListAgain) {
    for (unsigned seed = 0; seed < 500; ++seed) {
        auto list = randomList(seed);
        const auto run = waitingFor({10, 11, 12, 13}, "seed " + std::to_string(seed));
        list.insert(list.begin() + static_cast<std::ptrdiff_t>(list.size() / 2), run.begin(), run.end());
        FoldedRuns folded;
        folded.arrive(list);
        folded.follow({}, list);
        EXPECT_EQ(folded.cardOf(run[3].id)->count, 4) << "seed " << seed;
        EXPECT_EQ(onCards(folded, list), list) << "seed " << seed;
        for (const auto& element : list) {
            folded.unfold(element.id);
        }
        EXPECT_EQ(folded.cards().size(), list.size()) << "seed " << seed;
        EXPECT_EQ(onCards(folded, list), list) << "seed " << seed;
    }
}

TEST(FoldedRuns, FoldsTheRunsThatTheRulesAre) {
    for (unsigned seed = 0; seed < 500; ++seed) {
        const auto list = randomList(seed);
        FoldedRuns folded;
        folded.follow({}, list);
        for (const auto& element : list) {
            folded.fold(element.id);
        }
        EXPECT_EQ(folded.cards(), runsOf(rulesOf(list))) << "seed " << seed;
    }
}

/// What is worked out only where lists differ is what would be worked out of the whole.
TEST(FoldedRuns, FollowsAnyChange) {
    std::mt19937 random(1);
    for (unsigned seed = 0; seed < 300; ++seed) {
        auto list = waitingFor({1, 2, 3, 4, 5, 6, 7, 8});
        FoldedRuns folded;
        folded.follow({}, list);
        for (int change = 0; change < 10; ++change) {
            auto after = list;
            const auto at = static_cast<std::ptrdiff_t>(random() % 8);
            if (const auto kind = random() % 4; kind == 0 && !after.empty()) {
                after.erase(after.begin() + at % std::ssize(after));
            } else if (kind == 1) {
                after.insert(after.begin() + std::min(at, std::ssize(after)), waitingFor({5}).front());
            } else if (kind == 2 && !after.empty()) {
                after.at(static_cast<std::size_t>(at % std::ssize(after))).rule.trigger.note = exactly(4);
            } else {
                std::ranges::reverse(after);
            }
            folded.follow(list, after);
            FoldedRuns fresh;
            fresh.follow({}, after);
            for (const auto& element : after) {
                EXPECT_EQ(folded.runOf(element.id), fresh.runOf(element.id)) << "seed " << seed;
            }
            list = after;
        }
    }
}

}  // namespace
}  // namespace quillo
