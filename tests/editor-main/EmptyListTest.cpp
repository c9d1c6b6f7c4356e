// SPDX-License-Identifier: GPL-3.0-or-later
// What an editor without rules says and offers.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "editor-main/EditorStage.hpp"
#include "persistence/PluginData.hpp"
#include "support/Pictures.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using testing::HasSubstr;

class EmptyList : public testing::Test {
protected:
    ListFooter& footer() { return stage.view().footer(); }

    /// What an example's file holds in the preset library.
    static std::vector<Rule> rulesOf(std::size_t example) {
        return PluginData::read(examples()[example].document).rules;
    }

    EditorStage stage;
};

TEST_F(EmptyList, SaysWhatARuleIs) {
    EXPECT_THAT(footer().getTitle().toStdString(), HasSubstr("A rule waits for something: a note"));
    EXPECT_TRUE(footer().isShowing());
}

TEST_F(EmptyList, EachExampleBringsItsRulesInOneStep) {
    for (std::size_t example = 0; example < examples().size(); ++example) {
        ASSERT_TRUE(footer().exampleButton(example).isShowing());
        click(footer().exampleButton(example));
        EXPECT_EQ(stage.installed(), rulesOf(example));
        EXPECT_FALSE(stage.installed().empty());
        EXPECT_EQ(stage.editor().undoName(), "Import " + examples()[example].file);
        EXPECT_FALSE(footer().exampleButton(example).isShowing());
        EXPECT_EQ(footer().getTitle(), "");
        stage.editor().undo();
        EXPECT_TRUE(stage.installed().empty());
        EXPECT_EQ(stage.editor().undoName(), std::nullopt);
    }
}

TEST_F(EmptyList, OffersNothingWhileThereIsARuleEvenOneThatIsSwitchedOff) {
    click(footer().exampleButton(0));
    stage.editor().setOff({stage.id(0), stage.id(1)}, true);
    EXPECT_TRUE(stage.installed().empty());
    EXPECT_FALSE(footer().showsEmpty());
    stage.editor().remove({stage.id(0), stage.id(1)});
    EXPECT_TRUE(footer().showsEmpty());
}

TEST_F(EmptyList, PlayingHidesRulesButDoesNotMakeTheListEmpty) {
    click(stage.view().header().playingButton());
    EXPECT_TRUE(footer().showsEmpty());
    click(footer().exampleButton(0));
    click(stage.view().header().playingButton());
    EXPECT_TRUE(stage.view().list().items().empty());
    EXPECT_FALSE(footer().showsEmpty());
}

TEST_F(EmptyList, IsLeftByKeysFromAWindowThatWasJustOpenedAndTheFirstRuleHasTheKeyboard) {
    ASSERT_TRUE(stage.tabTo("Call strings by pedal"));
    stage.press(juce::KeyPress::returnKey);
    EXPECT_EQ(stage.installed(), rulesOf(0));
    EXPECT_TRUE(stage.card(0).getParentComponent()->hasKeyboardFocus(true));
}

TEST_F(EmptyList, AClickLeavesTheKeyboardToTheHost) {
    click(footer().exampleButton(1));
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr);
}

TEST_F(EmptyList, IsWholeInEveryWidth) {
    for (int width = 200; width <= 1000; width += 20) {
        stage.view().setSize(width, 640);
        EXPECT_EQ(footer().getHeight(), footer().heightFor(footer().getWidth())) << width;
        auto above = findBelow<NewRuleSelector>(footer())->getBottom();
        for (std::size_t example = 0; example < examples().size(); ++example) {
            const auto& button = footer().exampleButton(example);
            EXPECT_TRUE(footer().getLocalBounds().contains(button.getBounds())) << width;
            EXPECT_GT(button.getY(), above) << width;
            EXPECT_GE(button.getWidth(), std::min(button.preferredWidth(), footer().getWidth() - 8)) << width;
            for (std::size_t other = 0; other < example; ++other) {
                EXPECT_FALSE(button.getBounds().intersects(footer().exampleButton(other).getBounds()))
                    << width;
            }
        }
    }
}

TEST_F(EmptyList, IsInSightAsAWholeInThePreferredSizeOfPlugIns) {
    stage.view().setSize(500, 250);
    stage.view().list().setScrollPosition(1000);
    EXPECT_EQ(stage.view().list().scrollPosition(), 0);
}

TEST_F(EmptyList, TheSentencesAndTheCaptionAreDrawnAboveTheirButtons) {
    const auto image = picture(footer(), 2);
    const auto selector = findBelow<NewRuleSelector>(footer())->getBounds();
    const auto whole = footer().getLocalBounds();
    const auto sentences = whole.withBottom(selector.getY()) * 2;
    const auto caption = whole.withTop(selector.getBottom()).withBottom(footer().exampleButton(0).getY()) * 2;
    EXPECT_GT(boundsOfPixelsLike(image, Palette().primaryText, sentences).getHeight(), 2 * 2 * 11);
    EXPECT_FALSE(boundsOfPixelsLike(image, Palette().secondaryText, caption).isEmpty());
}

TEST(EmptyListOfARestoredSession, IsSaidAgainWhenTheHostTakesTheRulesAway) {
    EditorStage stage({rule(onLoad(), send(noteOn(0, 60, 1)))});
    EXPECT_FALSE(stage.view().footer().showsEmpty());
    stage.desk.session().install({});
    stage.render();
    EXPECT_TRUE(stage.view().footer().showsEmpty());
    EXPECT_TRUE(stage.view().footer().exampleButton(0).isShowing());
}

}  // namespace
}  // namespace quillo
