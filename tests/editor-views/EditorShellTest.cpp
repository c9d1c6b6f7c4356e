// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/EditorShell.hpp"

#include <gtest/gtest.h>

#include <stdexcept>

#include "support/JuceEvents.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

const std::vector oneRule{rule(onNoteOn(), send(noteOn(1, 2, 3)), "one")};

/// A unit that keeps what it is asked.
class RecordingUnit final : public EditorUnit {
public:
    [[nodiscard]] const std::shared_ptr<QuilloModel>& model() const override { return model_; }
    void viewDidLoad() override { model_->showRules(installed); }
    void onRulesChanged(std::vector<Rule> rules, RuleShelf /*shelf*/) override {
        installed = std::move(rules);
    }
    void onInstantMessageClick(const RuleOutputVariantsV2& message) override { sent.push_back(message); }
    void tellUser(std::string message) override { model_->alert(std::move(message)); }
    void drain() override {
        ++drains;
        if (fails) {
            throw std::runtime_error("the disk is full");
        }
    }

    std::vector<Rule> installed = oneRule;
    std::vector<RuleOutputVariantsV2> sent;
    int drains = 0;
    bool fails = false;

private:
    std::shared_ptr<QuilloModel> model_ = std::make_shared<QuilloModel>();
};

class EditorShellTest : public testing::Test {
protected:
    RecordingUnit unit;
    EditorShell shell{unit};
};

TEST_F(EditorShellTest, ShowsTheUnitAsItIsWhenItIsMade) {
    EXPECT_EQ(rulesOf(shell.view().editor().rules()), oneRule);
    EXPECT_EQ(unit.drains, 1);
}

TEST_F(EditorShellTest, HandsEditsAndMessagesSentByHandToTheUnit) {
    auto& editor = shell.view().editor();
    editor.duplicate({editor.rules()[0].id});
    EXPECT_EQ(unit.installed, (std::vector{oneRule[0], oneRule[0]}));
    editor.send(editor.rules()[0].id);
    EXPECT_EQ(unit.sent, std::vector{oneRule[0].output.message});
}

TEST_F(EditorShellTest, DrainsTheUnitByItself) {
    const auto before = unit.drains;
    while (unit.drains < before + 3) {
        settle();
    }
}

TEST_F(EditorShellTest, LetsTheTimeOfTheViewPassByItself) {
    auto& card = *shell.view().card(shell.view().editor().rules()[0].id);
    unit.model()->setHits({{1, 0}});
    while (card.status().remark().words.isEmpty()) {
        settle();
    }
    unit.model()->setHits({{2, 0}});
    while (!card.isLit()) {
        settle();
    }
    while (card.isLit()) {
        settle();
    }
}

TEST_F(EditorShellTest, OfAUnitThatDoesNotTellWhatItDoesNothingIsAsked) {
    EXPECT_FALSE(shell.view().header().panicButton().isVisible());
    EXPECT_FALSE(shell.view().keyPressed(juce::KeyPress(
        'p', juce::ModifierKeys(juce::ModifierKeys::commandModifier | juce::ModifierKeys::shiftModifier),
        0)));
    auto& opened = shell.view().logger().openedForm();
    for (const auto width : {300, 500, 820}) {
        shell.view().setSize(width, 640);
        EXPECT_FALSE(opened.waitingList().isVisible());
        EXPECT_FALSE(opened.waitingTitle().isVisible());
        EXPECT_FALSE(opened.cancelAllButton().isVisible());
        EXPECT_TRUE(opened.outList().isVisible());
    }
}

TEST_F(EditorShellTest, ShowsWhatADrainThrowsAndGoesOn) {
    unit.fails = true;
    shell.drain();
    EXPECT_EQ(shell.view().editor().alertErrorMessage(), "the disk is full");
    unit.fails = false;
    shell.drain();
    EXPECT_EQ(unit.drains, 3);
}

TEST_F(EditorShellTest, ShowsWhatAnOperationThrows) {
    shell.attempt([] { throw std::runtime_error("lost"); });
    EXPECT_EQ(shell.view().editor().alertErrorMessage(), "lost");
}

}  // namespace
}  // namespace quillo
