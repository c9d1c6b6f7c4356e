// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RuleListHistory.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace quillo {
namespace {

RuleEntryIdentifiable element(const std::string& name) {
    RuleEntryIdentifiable made;
    made.rule.name = name;
    return made;
}

RuleList without(RuleList list, std::size_t position) {
    list.erase(list.begin() + static_cast<RuleList::difference_type>(position));
    return list;
}

TEST(RuleListHistory, StartsWithNothingToUndoOrRedo) {
    RuleListHistory history;
    const RuleList list{element("a")};
    EXPECT_EQ(history.undoName(), std::nullopt);
    EXPECT_EQ(history.redoName(), std::nullopt);
    EXPECT_EQ(history.undo(list), list);
    EXPECT_EQ(history.redo(list), list);
}

TEST(RuleListHistory, UndoBringsBackWhatWasThereAndRedoTakesItAgain) {
    RuleListHistory history;
    const RuleList before{element("a"), element("b"), element("c")};
    const auto after = without(before, 1);
    history.note("Delete b", before, after);
    EXPECT_EQ(history.undoName(), "Delete b");
    EXPECT_EQ(history.undo(after), before);
    EXPECT_EQ(history.undoName(), std::nullopt);
    EXPECT_EQ(history.redoName(), "Delete b");
    EXPECT_EQ(history.redo(before), after);
    EXPECT_EQ(history.undoName(), "Delete b");
}

TEST(RuleListHistory, ANewChangeForgetsWhatWasUndone) {
    RuleListHistory history;
    const RuleList first{element("a"), element("b")};
    const auto second = without(first, 0);
    history.note("one", first, second);
    static_cast<void>(history.undo(second));
    history.note("two", first, without(first, 1));
    EXPECT_EQ(history.redoName(), std::nullopt);
    EXPECT_EQ(history.undoName(), "two");
}

TEST(RuleListHistory, AChangeThatChangesNothingIsNoStep) {
    RuleListHistory history;
    const RuleList list{element("a")};
    history.note("nothing", list, list);
    EXPECT_EQ(history.undoName(), std::nullopt);
}

TEST(RuleListHistory, ForgetsTheOldestStepBeyondItsCapacity) {
    RuleListHistory history(2);
    const RuleList three{element("a"), element("b"), element("c")};
    const auto two = without(three, 0);
    const auto one = without(two, 0);
    history.note("1", three, two);
    history.note("2", two, one);
    history.note("3", one, {});
    EXPECT_EQ(history.undo({}), one);
    EXPECT_EQ(history.undo(one), two);
    EXPECT_EQ(history.undoName(), std::nullopt);
}

TEST(RuleListHistory, ChangesUnderTheSameKeyAreOneStep) {
    RuleListHistory history;
    const RuleList before{element("a"), element("b")};
    auto middle = before;
    middle[0].rule.output.delay.ms = 1;
    auto after = middle;
    after[0].rule.output.delay.ms = 2;
    history.note("Edit a", before, middle, "a delay");
    history.note("Edit a", middle, after, "a delay");
    EXPECT_EQ(history.undo(after), before);
    EXPECT_EQ(history.undoName(), std::nullopt);
    EXPECT_EQ(history.redo(before), after);
}

TEST(RuleListHistory, ChangesUnderTheSameKeyThatComeToNothingAreNoStep) {
    RuleListHistory history;
    const RuleList before{element("a"), element("b")};
    auto after = before;
    after[0].rule.output.delay.ms = 1;
    history.note("Add b", {before[0]}, before);
    history.note("Edit a", before, after, "a delay");
    history.note("Edit a", after, before, "a delay");
    EXPECT_EQ(history.undoName(), "Add b");
    history.note("Edit a", before, after, "a delay");
    EXPECT_EQ(history.undo(after), before);
}

TEST(RuleListHistory, ChangesUnderOtherKeysOrNoneAreStepsOfTheirOwn) {
    for (const auto& [first, second] : {std::pair{"a delay", "a bank"}, {"", ""}}) {
        RuleListHistory history;
        const RuleList before{element("a")};
        auto middle = before;
        middle[0].rule.output.delay.ms = 1;
        auto after = middle;
        after[0].rule.output.bank = 2;
        history.note("1", before, middle, first);
        history.note("2", middle, after, second);
        EXPECT_EQ(history.undo(after), middle);
    }
}

TEST(RuleListHistory, AStepThatWasEndedIsNotJoined) {
    RuleListHistory history;
    const RuleList before{element("a")};
    auto middle = before;
    middle[0].rule.output.delay.ms = 1;
    auto after = middle;
    after[0].rule.output.delay.ms = 2;
    history.endStep();
    history.note("1", before, middle, "key");
    history.endStep();
    history.note("2", middle, after, "key");
    EXPECT_EQ(history.undo(after), middle);
}

TEST(RuleListHistory, AListThatReplacesWhatIsNoListIsAStepEvenIfItIsEmpty) {
    for (const auto& after : {RuleList{}, RuleList{element("a")}}) {
        RuleListHistory history;
        history.noteReplacement("Import", {}, after);
        EXPECT_EQ(history.undoName(), "Import");
        EXPECT_EQ(history.undo(after), RuleList{});
        EXPECT_EQ(history.redo({}), after);
    }
}

TEST(RuleListHistory, IsWholeUntilAStepIsForgotten) {
    RuleListHistory history(1);
    history.note("1", {}, {element("a")});
    EXPECT_TRUE(history.isWhole());
    history.note("2", {element("a")}, {});
    EXPECT_FALSE(history.isWhole());
    history.clear();
    EXPECT_TRUE(history.isWhole());
}

TEST(RuleListHistory, AStepThatWasRedoneIsNotJoined) {
    RuleListHistory history;
    const RuleList before{element("a")};
    auto middle = before;
    middle[0].rule.output.delay.ms = 1;
    auto after = middle;
    after[0].rule.output.delay.ms = 2;
    history.note("1", before, middle, "key");
    static_cast<void>(history.undo(middle));
    static_cast<void>(history.redo(before));
    history.note("2", middle, after, "key");
    EXPECT_EQ(history.undo(after), middle);
}

TEST(RuleListHistory, ClearForgetsEverything) {
    RuleListHistory history;
    history.note("1", {element("a")}, {});
    history.note("2", {}, {element("b")});
    static_cast<void>(history.undo({element("b")}));
    history.clear();
    EXPECT_EQ(history.undoName(), std::nullopt);
    EXPECT_EQ(history.redoName(), std::nullopt);
}

TEST(RuleListHistory, AnySequenceOfChangesIsUndoneAndRedoneExactly) {
    std::mt19937 random(7);
    for (int round = 0; round < 200; ++round) {
        RuleListHistory history;
        std::vector<RuleList> states{{}};
        for (int step = 0; step < 20; ++step) {
            auto next = states.back();
            next.push_back(element(std::to_string(step)));
            std::shuffle(next.begin(), next.end(), random);
            if (random() % 3 == 0) {
                next.resize(random() % next.size() + 1);
            }
            history.note("step", states.back(), next);
            if (next != states.back()) {
                states.push_back(next);
            }
        }
        auto list = states.back();
        for (auto state = states.size() - 1; state > 0; --state) {
            list = history.undo(list);
            ASSERT_EQ(list, states[state - 1]);
        }
        for (std::size_t state = 1; state < states.size(); ++state) {
            list = history.redo(list);
            ASSERT_EQ(list, states[state]);
        }
    }
}

}  // namespace
}  // namespace quillo
