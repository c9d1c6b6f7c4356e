// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "editor-main/EditorStage.hpp"
#include "editor/Style.hpp"
#include "support/Pictures.hpp"

namespace quillo {
namespace {

using namespace test;
using Mark = RuleRemark::Mark;

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

TEST_F(StatusOfACard, AReasonStandsAtTheRightOfAShortName) {
    show("Pedal", 600);
    const auto height = card.getHeight();
    say(passed);
    EXPECT_EQ(card.getHeight(), height);
    EXPECT_EQ(card.status().getRight(), card.getWidth() - style::cardPadding);
    EXPECT_EQ(card.status().getBounds().getCentreY(), card.header().getBounds().getCentreY());
    EXPECT_EQ(card.status().getTooltip(), "") << "It is not cut.";
    EXPECT_EQ(card.header().getTooltip(), "") << "Neither is the name.";
    say(std::nullopt);
    EXPECT_EQ(card.status().remark(), RuleRemark());
}

TEST_F(StatusOfACard, AReasonThatDoesNotFitBesideTheNameStandsBelowItInAsManyLinesAsItNeeds) {
    for (const auto width : {600, 320, 200}) {
        show("A name that takes nearly as much room as there is beside the grip and the edges of the card",
             width);
        const auto height = card.getHeight();
        say(passed);
        EXPECT_EQ(card.getHeight(), height + card.status().getHeight()) << width;
        EXPECT_EQ(card.status().getHeight(), width == 200 ? 28 : 14);
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

}  // namespace
}  // namespace quillo
