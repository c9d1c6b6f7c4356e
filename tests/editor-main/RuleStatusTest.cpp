// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "editor-main/EditorStage.hpp"
#include "editor/JuceText.hpp"
#include "editor/Style.hpp"
#include "support/Pictures.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Mark = RuleRemark::Mark;

/// A text with letters beyond ASCII.
juce::String operator""_u8(const char* text, std::size_t size) {
    return juceText({text, size});
}

/// A card alone, on the ground of the list.
class StatusOfACard : public testing::Test {
protected:
    RuleView& show(const std::string& name, int width) {
        entry.name = name;
        card.refresh();
        fit(width);
        return card;
    }

    void fit(int width) { card.setBounds(0, 0, width, RuleView::heightFor(entry, width, reason)); }

    void say(std::optional<RuleRemark> remark) {
        reason = std::move(remark);
        card.showReason(reason);
        fit(card.getWidth());
    }

    /// How many pixels of the card's grip have the colour of its light.
    int litPixels() {
        const auto grip = card.getLocalBounds().removeFromLeft(style::dragHandleWidth);
        return pixelsLike(picture(card), Palette().triggerInput, grip);
    }

    RuleEntry entry;
    std::optional<RuleRemark> reason;
    RuleView card{{[this] { return entry; }, [](const RuleEntry&) {}}, {}};
    const RuleRemark fired{"fired: sent b0 00 00, c0 30 at once", Mark::fired};
    const RuleRemark passed{"passed over: it waits for Note On, this is a CC", Mark::passedOver};
};

TEST_F(StatusOfACard, AReasonStandsAtTheRightOfTheTitleLine) {
    show("Pedal", 1200);
    const auto height = card.getHeight();
    say(passed);
    EXPECT_EQ(card.getHeight(), height);
    EXPECT_EQ(card.status().getRight(), card.onOffSwitch().getX() - style::titleGap);
    EXPECT_EQ(card.status().getBounds().getCentreY(), card.header().getBounds().getCentreY());
    EXPECT_EQ(card.status().getTooltip(), "") << "It is not cut.";
    EXPECT_EQ(card.header().getTooltip(), "") << "Neither is the name.";
    say(std::nullopt);
    EXPECT_EQ(card.status().remark(), RuleRemark());
}

TEST_F(StatusOfACard, AReasonThatDoesNotFitStandsBelowTheTitleInAsManyLinesAsItNeeds) {
    for (const auto width : {800, 600, 320, 200}) {
        show("Pedal", width);
        const auto height = card.getHeight();
        say(passed);
        const auto lines = width == 200 ? 2 : 1;
        EXPECT_EQ(card.status().getHeight(), lines * RuleStatus::lineHeight);
        EXPECT_EQ(card.status().getY(), style::cardTop + style::cardHeaderHeight);
        const auto hadForHits = width == 200 ? 1 : 0;
        EXPECT_EQ(card.getHeight(), height + (lines - hadForHits) * RuleStatus::lineHeight) << width;
        EXPECT_EQ(card.status().getTooltip(), "");
        say(std::nullopt);
        EXPECT_EQ(card.getHeight(), height);
    }
}

TEST_F(StatusOfACard, OneThatFiredIsLitAsLongAsItSaysSo) {
    show("Pedal", 600);
    EXPECT_EQ(litPixels(), 0);
    say(fired);
    EXPECT_TRUE(card.isLit());
    EXPECT_GT(litPixels(), (style::dragHandleWidth - 2) * (card.getHeight() - 30));
    EXPECT_GT(pixelsLike(picture(card), Palette().triggerInput, {100, 0, 400, 2}), 390) << "the frame";
    EXPECT_GT(pixelsLike(picture(card), Palette().background, {6, 40, 10, card.getHeight() - 80}), 5)
        << "the grip's dots";
    EXPECT_GT(pixelsLike(picture(card), Palette().delayInput, card.status().getBounds()), 40);
    say(passed);
    EXPECT_FALSE(card.isLit());
    EXPECT_EQ(litPixels(), 0);
    EXPECT_GT(pixelsLike(picture(card), style::passedOver, card.status().getBounds()), 40);
}

TEST_F(StatusOfACard, IsReadToThoseWhoDoNotSeeIt) {
    show("Pedal", 600);
    say(passed);
    EXPECT_EQ(card.status().getTitle(), passed.words);
    const auto handler = card.status().createAccessibilityHandler();
    EXPECT_EQ(handler->getRole(), juce::AccessibilityRole::staticText);
}

TEST_F(StatusOfACard, AHitIsSeenForAMoment) {
    show("Pedal", 600);
    card.showHits({36, 7});
    EXPECT_FALSE(card.isLit()) << "What was there before is no hit.";
    EXPECT_EQ(card.status().remark().words, "36 × · 7 s ago"_u8);
    card.showHits({37, 0.01});
    EXPECT_EQ(card.status().remark().words, "37 × · now"_u8);
    card.advance(RuleView::lightTime / 2);
    EXPECT_TRUE(card.isLit());
    EXPECT_GT(litPixels(), 1000);
    card.advance(RuleView::lightTime / 2);
    EXPECT_FALSE(card.isLit());
    EXPECT_EQ(litPixels(), 0);
    card.showHits({37, 0.2});
    EXPECT_FALSE(card.isLit());
}

TEST_F(StatusOfACard, HitsThatFollowEachOtherKeepItLit) {
    show("Pedal", 600);
    for (std::uint64_t count = 0; count < 10; ++count) {
        card.showHits({count, 0.01});
        EXPECT_EQ(card.isLit(), count > 0);
        card.advance(RuleView::lightTime / 2);
    }
    EXPECT_TRUE(card.isLit());
}

TEST_F(StatusOfACard, WhatIsHeardOfLateIsNoLight) {
    show("Pedal", 600);
    card.showHits({1, 9});
    card.showHits({2, 1});
    EXPECT_FALSE(card.isLit());
}

TEST_F(StatusOfACard, AReasonTakesThePlaceOfTheHitsAndGivesItBack) {
    show("Pedal", 600);
    card.showHits({});
    say(passed);
    card.showHits({1, 0});
    EXPECT_EQ(card.status().remark(), passed);
    EXPECT_FALSE(card.isLit());
    say(std::nullopt);
    EXPECT_EQ(card.status().remark().words, "1 × · now"_u8);
}

TEST_F(StatusOfACard, TheNameKeepsItsRoomWhileTheHitsChange) {
    show("Pedal", 600);
    card.showHits({});
    const auto name = card.header().getBounds();
    for (const std::uint64_t count : {1U, 99U, 12'345U}) {
        card.showHits({count, 59});
        EXPECT_EQ(card.header().getBounds(), name);
        EXPECT_EQ(card.status().getRight(), card.onOffSwitch().getX() - style::titleGap);
    }
}

TEST_F(StatusOfACard, InANarrowCardTheHitsStandInTheLineOfTheFirstLabel) {
    for (const auto width : {468, 320}) {
        show("A name that is longer than the card is wide", width);
        card.showHits({12'345, 59});
        EXPECT_GE(card.status().getY(), card.header().getBottom());
        EXPECT_LE(card.status().getBottom(), card.trigger().getY());
        EXPECT_EQ(card.status().getRight(), card.getWidth() - style::cardPadding);
        EXPECT_EQ(card.status().getTooltip(), "");
    }
}

TEST_F(StatusOfACard, InTheNarrowestCardTheHitsHaveALineOfTheirOwn) {
    show("Pedal", 176);
    card.showHits({12'345, 59});
    EXPECT_EQ(card.status().getY(), style::cardTop + style::cardHeaderHeight);
    EXPECT_EQ(card.header().getRight(), card.onOffSwitch().getX() - style::titleGap);
    EXPECT_EQ(card.trigger().getY(),
              style::cardTop + style::cardHeaderHeight + RuleStatus::lineHeight + style::sectionLabelHeight);
}

class HitsOfTheList : public testing::Test {
protected:
    static Rule on(std::uint8_t note, const std::string& name) {
        return rule(onNoteOn(exactly(note)), send(noteOn(0, 1, 1)), name);
    }

    void play(std::uint8_t note) {
        stage.render({{0x90, note, 80}});
        stage.view().advance(0);
    }

    juce::String words(std::size_t position) { return stage.card(position).status().remark().words; }

    EditorStage stage{{on(60, "a"), on(61, "b"), on(62, "c")}};
};

TEST_F(HitsOfTheList, AreThoseOfEachRule) {
    EXPECT_EQ(words(0), "never fired since load");
    play(61);
    play(61);
    EXPECT_EQ(words(0), "never fired since load");
    EXPECT_EQ(words(1), "2 × · now"_u8);
    EXPECT_TRUE(stage.card(1).isLit());
    EXPECT_FALSE(stage.card(2).isLit());
    stage.view().advance(RuleView::lightTime);
    EXPECT_FALSE(stage.card(1).isLit());
    stage.desk.render(3 * static_cast<std::uint32_t>(defaultSampleRate));
    stage.desk.drain();
    stage.view().advance(0);
    EXPECT_EQ(words(1), "2 × · 3 s ago"_u8);
}

TEST_F(HitsOfTheList, AClickOnThemLeavesTheKeyboardToTheHost) {
    click(stage.card(1).status());
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr) << EditorStage::focus();
}

TEST_F(HitsOfTheList, StayWithTheirRulesInAnEdit) {
    play(61);
    stage.view().advance(1);
    stage.editor().move({stage.id(1)}, 0);
    stage.view().advance(0);
    EXPECT_EQ(words(0), "1 × · now"_u8);
    EXPECT_EQ(words(1), "never fired since load");
    stage.editor().remove({stage.id(1)});
    stage.editor().duplicate({stage.id(0)});
    stage.view().advance(0);
    EXPECT_EQ(words(0), "1 × · now"_u8);
    for (std::size_t position = 0; position < 3; ++position) {
        EXPECT_FALSE(stage.card(position).isLit()) << "No edit is a hit.";
    }
}

TEST_F(HitsOfTheList, AreSeenInAnEditorThatOpensLaterWithoutALight) {
    play(60);
    QuilloView later(stage.desk.session());
    later.setSize(820, 640);
    auto& card = *later.card(stage.id(0));
    EXPECT_EQ(card.status().remark().words, "1 × · now"_u8);
    EXPECT_FALSE(card.isLit());
}

TEST_F(HitsOfTheList, AreThereOnACardThatIsScrolledIntoSight) {
    play(62);
    stage.view().setSize(500, 250);
    stage.view().list().setScrollPosition(0);
    EXPECT_EQ(words(2), "1 × · now"_u8);
}

}  // namespace
}  // namespace quillo
