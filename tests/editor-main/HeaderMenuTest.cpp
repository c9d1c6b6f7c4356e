// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "editor-main/EditorStage.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Messages = std::vector<std::vector<std::uint8_t>>;

/// An editor whose rules have been loaded.
class HeaderMenu : public testing::Test {
protected:
    HeaderMenu() {
        stage.render();
        stage.sent.clear();
    }

    /// Opens the menu, and picks nothing but what can be picked.
    void pick(const juce::String& row) {
        click(stage.view().header().moreButton());
        stage.pickInMenu(row);
    }

    /// Whether the row cannot be picked; the menu is closed again.
    bool isGrey(const juce::String& row) {
        pick(row);
        const bool stillOpen = stage.view().overlay() != nullptr;
        stage.view().closeOverlay();
        return stillOpen;
    }

    EditorStage stage{{rule(onLoad(), send(controlChange(0, 7, 90))),
                       rule(onNoteOn(), send(controlChange(0, 1, 1))),
                       rule(onLoad(), send(controlChange(1, 10, 64)))}};
};

TEST_F(HeaderMenu, SendsAllOnLoadRulesAgainInEverySize) {
    for (const auto width : {200, 500, 820}) {
        stage.view().setSize(width, 300);
        stage.sent.clear();
        pick("Send All On Load");
        stage.render();
        EXPECT_EQ(stage.sent, (Messages{{0xB0, 7, 90}, {0xB1, 10, 64}})) << width;
    }
}

TEST_F(HeaderMenu, IsReachedByKeys) {
    ASSERT_TRUE(stage.tabTo("More"));
    stage.press(juce::KeyPress::returnKey);
    stage.pickInMenu("on load");
    stage.render();
    EXPECT_EQ(stage.sent.size(), 2U);
}

TEST_F(HeaderMenu, SendAllOnLoadIsGreyWhileNoSuchRuleRuns) {
    EXPECT_FALSE(isGrey("Send All On Load"));
    stage.editor().setOff({stage.id(0), stage.id(2)}, true);
    EXPECT_TRUE(isGrey("Send All On Load"));
    stage.editor().setOff({stage.id(2)}, false);
    EXPECT_FALSE(isGrey("Send All On Load"));
}

TEST_F(HeaderMenu, StandsBesideTheOtherButtonsInEveryWidth) {
    auto& header = stage.view().header();
    for (int width = 200; width <= 1000; ++width) {
        stage.view().setSize(width, 300);
        EXPECT_TRUE(header.moreButton().isVisible()) << width;
        for (const auto* other : std::initializer_list<juce::Component*>{
                 &header.panicButton(), &header.docsButton(), &header.searchField(), &header.playingButton(),
                 &header.searchButton(), &header.formButton(), &header.exportButton()}) {
            EXPECT_FALSE(other->isVisible() && other->getBounds().intersects(header.moreButton().getBounds()))
                << width;
        }
    }
}

}  // namespace
}  // namespace quillo
