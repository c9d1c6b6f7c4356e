// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RunEdit.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <iterator>
#include <numeric>
#include <random>

#include "support/EditorDesk.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

/// A rule that waits for a note, consumes it, and sends Note On on channel 2.
RuleEntry split(std::uint8_t note, const GenericByteV2& sends) {
    RuleEntry entry;
    entry.name = "split";
    entry.trigger = {.type = TriggerEntryType::NoteOn,
                     .channel = exactly(0),
                     .note = exactly(note),
                     .passThrough = PassThroughV2::EatMatching};
    entry.output.channel = channel(1);
    entry.output.note = sends;
    entry.output.velocity = triggerByte;
    return entry;
}

RuleList alike(std::uint8_t from, std::uint8_t to) {
    return withRange({{UUID(), split(from, triggerByte)}}, from, to);
}

RuleList rising(std::uint8_t from, std::uint8_t to, int offset) {
    return transposed(alike(from, to), offset);
}

std::vector<UUID> idsOf(const RuleList& list) {
    std::vector<UUID> ids;
    std::ranges::transform(list, std::back_inserter(ids), &RuleEntryIdentifiable::id);
    return ids;
}

TEST(RunEdit, ARangeIsOneRuleForEachValueAndKeepsWhatWasThere) {
    const RuleList one{{UUID(), split(60, byte(7))}};
    const auto range = withRange(one, 36, 47);
    ASSERT_EQ(range.size(), 12);
    EXPECT_EQ(range[0].id, one[0].id);
    for (std::uint8_t rule = 0; rule < 12; ++rule) {
        EXPECT_EQ(range[rule].rule, split(static_cast<std::uint8_t>(36 + rule), byte(7)));
    }
    const auto shorter = withRange(range, 50, 48);
    EXPECT_EQ(idsOf(shorter), (std::vector{range[0].id, range[1].id, range[2].id}));
    EXPECT_EQ(shorter[2].rule, split(50, byte(7)));
    EXPECT_EQ(withRange(range, 40, 40), (RuleList{{one[0].id, split(40, byte(7))}}));
}

TEST(RunEdit, ARangeCoversControllerValuesAndProgramsToo) {
    for (const auto type : {TriggerEntryType::ControlChange, TriggerEntryType::ProgramChange}) {
        RuleEntry entry;
        entry.trigger.type = type;
        const auto range = withRange({{UUID(), entry}}, 0, 127);
        ASSERT_EQ(range.size(), 128);
        EXPECT_EQ(comparedValue(range[0].rule), 0);
        EXPECT_EQ(comparedValue(range[127].rule), 127);
    }
}

TEST(RunEdit, WhatCannotWaitForARangeStaysAsItIs) {
    auto consumesOthers = split(60, triggerByte);
    consumesOthers.trigger.passThrough = PassThroughV2::EatNonMatching;
    for (const auto& entry : {consumesOthers, RuleEntry{}}) {
        const RuleList one{{UUID(), entry}};
        EXPECT_EQ(withRange(one, 1, 5), one);
        EXPECT_FALSE(canWaitFor(entry, false, 1, 5));
    }
}

TEST(RunEdit, ATranspositionRisesFromRuleToRule) {
    const auto run = rising(36, 47, 12);
    EXPECT_EQ(run[0].rule, split(36, byte(48)));
    EXPECT_EQ(run[11].rule, split(47, byte(59)));
    EXPECT_TRUE(isRising(run));
    EXPECT_FALSE(isRising(alike(36, 47)));
    EXPECT_EQ(sentValue(transposed(run, -36)[11].rule), 11);
}

TEST(RunEdit, ATranspositionKeepsToTheDataBytes) {
    const auto run = alike(36, 47);
    EXPECT_TRUE(canTranspose(run[0].rule, 12, 80));
    EXPECT_FALSE(canTranspose(run[0].rule, 12, 81));
    EXPECT_TRUE(canTranspose(run[0].rule, 12, -36));
    EXPECT_FALSE(canTranspose(run[0].rule, 12, -37));
    EXPECT_EQ(transposed(run, 81), run);
    EXPECT_TRUE(canWaitFor(run[0].rule, false, 0, 127));
    EXPECT_TRUE(canWaitFor(rising(36, 47, 12)[0].rule, true, 0, 115));
    EXPECT_FALSE(canWaitFor(rising(36, 47, 12)[0].rule, true, 0, 116));
    EXPECT_FALSE(canWaitFor(rising(36, 47, -12)[0].rule, true, 11, 20));
    const auto low = rising(36, 47, -12);
    EXPECT_EQ(withRange(low, 11, 20), low);
}

TEST(RunEdit, ANewRangeKeepsTheTransposition) {
    const auto moved = withRange(rising(36, 47, 12), 60, 62);
    EXPECT_EQ(moved[2].rule, split(62, byte(74)));
}

TEST(RunEdit, OneMessageForAllEndsATransposition) {
    const auto run = sendingAlike(rising(36, 38, 12), byte(48));
    EXPECT_EQ(run[2].rule, split(38, byte(48)));
    EXPECT_FALSE(isRising(run));
}

TEST(RunEdit, AControllerWithTheValueZeroForAllEndsATransposition) {
    auto through = withOutputType(withTriggerType(alike(0, 2), TriggerEntryType::ControlChange),
                                  OutputEntryType::ControlChange);
    through = transposed(through, 0);
    ASSERT_TRUE(isRising(through));
    for (const auto& element : sendingZero(through, 123)) {
        EXPECT_EQ(ruleFromEntry(element.rule).output, send(controlChange(1, 123, 0)));
    }
}

TEST(RunEdit, ARunThatIsToWaitForOneValueOrAnyBecomesOneRule) {
    const auto run = rising(36, 47, 12);
    for (const auto& value : {exactly(50), any}) {
        auto first = run[0].rule;
        first.trigger.note = value;
        EXPECT_EQ(edited(run, first), (RuleList{{run[0].id, first}}));
    }
    EXPECT_EQ(withTriggerType(run, TriggerEntryType::HostStart).size(), 1);
}

TEST(RunEdit, WhatARunWaitsForGoesAlongToAnotherKindOfTrigger) {
    const auto run = withTriggerType(alike(36, 47), TriggerEntryType::ControlChange);
    ASSERT_EQ(run.size(), 12);
    EXPECT_EQ(comparedValue(run[11].rule), 47);
    EXPECT_EQ(run[11].rule.output.note, byte(60)) << "what the new trigger cannot feed falls back";
}

TEST(RunEdit, ATranspositionComesBackWithItsKindOfMessage) {
    const auto run = rising(36, 47, 12);
    const auto other = withOutputType(run, OutputEntryType::PitchWheel);
    EXPECT_FALSE(isRising(other));
    EXPECT_EQ(withOutputType(other, OutputEntryType::NoteOn), run);
}

/// A change of one field of an entry, to something else each time.
using Change = std::function<void(RuleEntry&)>;

Change randomChange(std::mt19937& random) {
    const auto value = static_cast<std::uint8_t>(random() % 128);
    switch (random() % 8) {
    case 0: return [value](RuleEntry& entry) { entry.name = std::to_string(value); };
    case 1: return [value](RuleEntry& entry) { entry.trigger.channel = exactly(value % 16); };
    case 2:
        return [value](RuleEntry& entry) {
            entry.trigger.passThrough =
                value % 2 == 0 ? PassThroughV2::PassThrough : PassThroughV2::EatMatching;
        };
    case 3: return [value](RuleEntry& entry) { entry.output.channel = channel(value % 16); };
    case 4: return [value](RuleEntry& entry) { entry.output.velocity = byte(value); };
    case 5: return [value](RuleEntry& entry) { entry.output.delay.ms = value; };
    case 6: return [](RuleEntry& entry) { entry.output.channel = triggerChannel; };
    default: return [value](RuleEntry& entry) { entry.trigger.controller = value; };
    }
}

TEST(RunEdit, AnEditOfARunIsTheSameEditOfEachRule) {
    std::mt19937 random(3);
    for (auto run : {alike(36, 47), rising(36, 47, 12), alike(0, 127), rising(64, 127, -64)}) {
        for (int edit = 0; edit < 200; ++edit) {
            const auto change = randomChange(random);
            auto first = run.front().rule;
            change(first);
            auto each = run;
            for (auto& element : each) {
                change(element.rule);
            }
            run = edited(run, first);
            EXPECT_EQ(run, each);
            EXPECT_EQ(runsOf(rulesOf(run)).size(), 1);
        }
    }
}

TEST(RunEdit, AnotherKindForARunIsTheSameForEachRule) {
    for (const auto& run : {alike(36, 47), rising(36, 47, 12)}) {
        for (int type = 0; type <= static_cast<int>(OutputEntryType::SystemExclusive); ++type) {
            RuleList each;
            for (const auto& element : run) {
                each.push_back(withOutputType({element}, static_cast<OutputEntryType>(type)).front());
            }
            EXPECT_EQ(withOutputType(run, static_cast<OutputEntryType>(type)), each);
        }
    }
}

/// The editor with one card: a run of 12 notes.
class CardOfARun : public testing::Test {
protected:
    CardOfARun() {
        desk.editor.add(MIDIRuleType::OutputType{OutputEntryType::NoteOn});
        desk.editor.edit(card(), split(36, triggerByte));
        desk.editor.setRange(card(), 36, 47);
    }

    [[nodiscard]] RuleIds card() { return desk.editor.cardOf(desk.idOf(0)); }
    [[nodiscard]] std::vector<std::size_t> counts() {
        std::vector<std::size_t> counts;
        std::ranges::transform(desk.editor.cards(), std::back_inserter(counts), &RuleRun::count);
        return counts;
    }
    void expectInstalled() { EXPECT_EQ(desk.installed, rulesOf(desk.editor.rules())); }

    EditorDesk desk;
    RuleListEditor& editor = desk.editor;
};

using Counts = std::vector<std::size_t>;

TEST_F(CardOfARun, IsMadeAndUndoneInOneStep) {
    EXPECT_EQ(counts(), (Counts{12}));
    EXPECT_EQ(desk.installed.size(), 12);
    EXPECT_EQ(editor.undoName(), "Edit split");
    editor.undo();
    EXPECT_EQ(counts(), (Counts{1}));
    editor.redo();
    EXPECT_EQ(counts(), (Counts{12}));
    expectInstalled();
}

TEST_F(CardOfARun, IsDuplicatedMovedAndDeletedAsOne) {
    editor.duplicate(card());
    EXPECT_EQ(counts(), (Counts{12, 12}));
    EXPECT_EQ(editor.undoName(), "Duplicate split (12 rules)");
    const auto first = card();
    editor.move(first, 12);
    EXPECT_EQ(counts(), (Counts{12, 12}));
    EXPECT_EQ(editor.cardOf(first.front()).front(), desk.idOf(12));
    editor.remove(first);
    EXPECT_EQ(counts(), (Counts{12}));
    editor.undo();
    EXPECT_EQ(counts(), (Counts{12, 12}));
    expectInstalled();
}

TEST_F(CardOfARun, GetsATwinForNoteOff) {
    editor.duplicateAsNoteOff(card());
    EXPECT_EQ(counts(), (Counts{12, 12}));
    EXPECT_EQ(editor.undoName(), "Make the Note Off of split (12 rules)");
    auto twin = split(36, triggerByte);
    twin.trigger.type = TriggerEntryType::NoteOff;
    twin.output.type = OutputEntryType::NoteOff;
    EXPECT_EQ(editor.rules()[12].rule, twin);
    expectInstalled();
}

TEST_F(CardOfARun, LearnsToWaitForOneThing) {
    editor.learn(card(), {{.type = TriggerEntryType::NoteOn, .channel = exactly(3), .note = exactly(60)}});
    EXPECT_EQ(counts(), (Counts{1}));
    EXPECT_EQ(editor.undoName(), "Learn split (12 rules)");
    EXPECT_EQ(comparedValue(editor.rules()[0].rule), 60);
    expectInstalled();
}

TEST_F(CardOfARun, IsSteppedInOneStep) {
    auto entry = editor.rules()[0].rule;
    for (std::int64_t ms = 1; ms <= 3; ++ms) {
        entry.output.delay.ms = ms;
        editor.step(card(), entry, 8);
    }
    EXPECT_EQ(editor.rules()[11].rule.output.delay.ms, 3);
    editor.undo();
    EXPECT_EQ(editor.rules()[11].rule.output.delay.ms, 0);
    EXPECT_EQ(editor.undoName(), "Edit split");
}

TEST_F(CardOfARun, IsUnfoldedAndFoldedWithoutAStep) {
    EXPECT_TRUE(editor.isFolded(desk.idOf(0)));
    EXPECT_FALSE(editor.canFold(desk.idOf(0)));
    editor.unfold(desk.idOf(0));
    EXPECT_EQ(counts(), Counts(12, 1));
    EXPECT_FALSE(editor.isFolded(desk.idOf(0)));
    EXPECT_TRUE(editor.canFold(desk.idOf(5)));
    editor.fold(desk.idOf(5));
    EXPECT_EQ(counts(), (Counts{12}));
    EXPECT_EQ(editor.undoName(), "Edit split");
}

TEST_F(CardOfARun, IsFoldedInAnImportAndFromTheUnit) {
    auto list = editor.rules();
    for (auto& element : list) {
        element.id = UUID();
    }
    ASSERT_TRUE(editor.replaceAll(list, "Import"));
    EXPECT_EQ(counts(), (Counts{12}));
    desk.model->setRules({list[3]});
    desk.model->setRules(list);
    EXPECT_EQ(counts(), (Counts{12}));
}

TEST_F(CardOfARun, IsNotMadeByADuplicateWhoseNoteIsSetOneHigher) {
    editor.unfold(desk.idOf(0));
    editor.remove(card());
    const auto last = editor.rules().back();
    editor.duplicate({last.id});
    auto higher = last.rule;
    higher.trigger.note = exactly(48);
    editor.edit({editor.rules().back().id}, higher);
    EXPECT_EQ(counts(), Counts(12, 1));
}

TEST_F(CardOfARun, AgreesWithTheEngineThroughRandomEditsAndUndo) {
    std::mt19937 random(5);
    const auto someCard = [&] { return editor.cardOf(editor.rules()[random() % editor.rules().size()].id); };
    std::vector<RuleList> before;
    for (int round = 0; round < 300; ++round) {
        const auto rules = editor.rules();
        if (rules.empty()) {
            before.push_back(rules);
            desk.addNoteOn();
            continue;
        }
        const auto ids = someCard();
        auto first = std::ranges::find(rules, ids.front(), &RuleEntryIdentifiable::id)->rule;
        switch (random() % 9) {
        case 0: editor.duplicate(ids); break;
        case 1: editor.remove(ids); break;
        case 2: editor.move(ids, random() % rules.size()); break;
        case 3: editor.setRange(ids, random() % 128, random() % 128); break;
        case 4: editor.transpose(ids, static_cast<int>(random() % 40) - 20); break;
        case 5: editor.changeTriggerType(ids, static_cast<TriggerEntryType>(random() % 11)); break;
        case 6: editor.changeOutputType(ids, static_cast<OutputEntryType>(random() % 7)); break;
        case 7: random() % 2 == 0 ? editor.fold(ids.front()) : editor.unfold(ids.front()); break;
        default: randomChange(random)(first); editor.edit(ids, first);
        }
        expectInstalled();
        editor.dismissAlert();  // what the engine refuses is not kept
        if (editor.rules() != rules) {
            before.push_back(rules);
        }
    }
    while (!before.empty() && editor.undoName()) {
        editor.undo();
        ASSERT_EQ(editor.rules(), before.back());
        before.pop_back();
        expectInstalled();
        const auto sum = [](std::size_t all, const RuleRun& card) { return all + card.count; };
        EXPECT_EQ(std::accumulate(editor.cards().begin(), editor.cards().end(), std::size_t{0}, sum),
                  editor.rules().size());
    }
}

}  // namespace
}  // namespace quillo
