// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/PopupMenuOverlay.hpp"

#include <gtest/gtest.h>

#include "rules/MIDIVocabulary.hpp"
#include "support/JuceEvents.hpp"
#include "support/OffscreenWindow.hpp"
#include "support/Pictures.hpp"

namespace quillo {
namespace {

using namespace test;

MenuContents noteContents(std::size_t current) {
    MenuContents contents{"Note", {}, current};
    for (const auto& item : triggerNoteMenu()) {
        contents.labels.push_back(juce::String::fromUTF8(item.label.c_str()));
    }
    return contents;
}

struct MenuDesk {
    OffscreenWindow window;
    juce::Component field;
    std::optional<std::size_t> picked;

    explicit MenuDesk(MenuContents contents, int width = 400, int height = 300) : window(width, height) {
        window.show(field, {20, 20, 80, 24});
        PopupMenuOverlay::open(field, field.getLocalBounds(), std::move(contents),
                               [this](std::size_t row) { picked = row; });
    }

    [[nodiscard]] PopupMenuOverlay& menu() const {
        return dynamic_cast<PopupMenuOverlay&>(*window.overlay());
    }
    [[nodiscard]] bool isOpen() const { return window.overlay() != nullptr; }
    void press(int code) { key(window, code); }
};

TEST(PopupMenuOverlay, OpensAtTheCurrentRowAndShowsIt) {
    for (const std::size_t row : {0U, 1U, 64U, 127U, 128U}) {
        MenuDesk desk(noteContents(row));
        EXPECT_EQ(desk.menu().highlightedRow(), row);
        EXPECT_EQ(desk.menu().rowArea(row).getHeight(), 22) << row;
        EXPECT_TRUE(desk.menu().panelArea().contains(desk.menu().rowArea(row)));
    }
}

TEST(PopupMenuOverlay, ADisabledRowIsGreyAndCannotBePicked) {
    MenuDesk desk({"More", {"Undo", "Redo", "Docs"}, {}, {0}});
    EXPECT_EQ(desk.menu().highlightedRow(), 1U) << "The first one that can be picked.";
    const auto picked = [&desk] {
        return pixelsLike(picture(desk.menu(), 2), Palette().primaryText, desk.menu().rowArea(0) * 2);
    };
    EXPECT_EQ(picked(), 0);
    click(desk.menu(), desk.menu().rowArea(0).getCentre());
    desk.press(juce::KeyPress::homeKey);
    EXPECT_EQ(picked(), 0);
    desk.press(juce::KeyPress::returnKey);
    EXPECT_TRUE(desk.isOpen());
    EXPECT_EQ(desk.picked, std::nullopt);
    click(desk.menu(), desk.menu().rowArea(2).getCentre());
    EXPECT_EQ(desk.picked, 2U);
}

TEST(PopupMenuOverlay, AMenuThatStaysOpenIsPickedFromSeveralTimes) {
    MenuDesk desk({"Ports", {"a", "b"}, {}, {}, {}, {1}, true});
    click(desk.menu(), desk.menu().rowArea(1).getCentre());
    EXPECT_EQ(desk.picked, 1U);
    EXPECT_TRUE(desk.isOpen());
    desk.press(juce::KeyPress::upKey);
    desk.press(juce::KeyPress::returnKey);
    EXPECT_EQ(desk.picked, 0U);
    EXPECT_TRUE(desk.isOpen());
    desk.press(juce::KeyPress::escapeKey);
    EXPECT_FALSE(desk.isOpen());
}

TEST(PopupMenuOverlay, ARefreshedMenuKeepsItsPlaceItsSearchAndTheRowThatIsHighlighted) {
    auto contents = noteContents(0);
    MenuDesk desk(contents);
    desk.press(juce::KeyPress::endKey);
    for (int up = 0; up < 8; ++up) {
        desk.press(juce::KeyPress::upKey);
    }
    const auto row = contents.labels.size() - 9;
    const auto place = desk.menu().rowArea(row);
    desk.menu().refresh(contents);
    EXPECT_EQ(desk.menu().rowArea(row), place);
    contents.labels.insert(contents.labels.begin(), "new");
    desk.menu().refresh(contents);
    EXPECT_EQ(desk.menu().highlightedRow(), row + 1);
    type(desk.window, "new");
    desk.menu().refresh(contents);
    EXPECT_EQ(desk.menu().typed(), "new");
    EXPECT_EQ(desk.menu().shownRows(), std::vector<std::size_t>{0});
    desk.menu().refresh({"Note", {"other"}, {}});
    EXPECT_TRUE(desk.menu().shownRows().empty());
    EXPECT_EQ(desk.menu().highlightedRow(), std::nullopt);
}

TEST(PopupMenuOverlay, OffersFirstWhatTheTypedTextMeansByItself) {
    juce::String chosen;
    auto contents = noteContents(64);
    contents.typed = [&chosen](const juce::String& typed) -> std::optional<TypedChoice> {
        if (!typed.startsWith("c")) {
            return std::nullopt;
        }
        return TypedChoice{"all of " + typed, [&chosen, typed] { chosen = typed; }};
    };
    MenuDesk desk(contents);
    type(desk.window, "c1");
    const auto typedRow = contents.labels.size();
    ASSERT_EQ(desk.menu().shownRows().front(), typedRow);
    EXPECT_GT(desk.menu().shownRows().size(), 1U) << "What holds the text stays below.";
    EXPECT_EQ(desk.menu().highlightedRow(), typedRow);
    desk.press(juce::KeyPress::returnKey);
    EXPECT_EQ(chosen, "c1");
    EXPECT_EQ(desk.picked, std::nullopt);
    EXPECT_FALSE(desk.isOpen());
}

TEST(PopupMenuOverlay, PicksARowBesideWhatTheTypedTextMeans) {
    auto contents = noteContents(64);
    contents.typed = [](const juce::String&) { return std::optional(TypedChoice{"typed", [] { FAIL(); }}); };
    MenuDesk desk(contents);
    type(desk.window, "60 (");
    desk.press(juce::KeyPress::downKey);
    desk.press(juce::KeyPress::returnKey);
    ASSERT_TRUE(desk.picked);
    EXPECT_TRUE(contents.labels[*desk.picked].startsWith("60 ("));
}

TEST(PopupMenuOverlay, WalksWithTheKeys) {
    MenuDesk desk(noteContents(64));
    desk.press(juce::KeyPress::downKey);
    EXPECT_EQ(desk.menu().highlightedRow(), 65U);
    desk.press(juce::KeyPress::upKey);
    desk.press(juce::KeyPress::upKey);
    EXPECT_EQ(desk.menu().highlightedRow(), 63U);
    desk.press(juce::KeyPress::pageDownKey);
    EXPECT_GT(*desk.menu().highlightedRow(), 66U);
    desk.press(juce::KeyPress::pageUpKey);
    EXPECT_EQ(desk.menu().highlightedRow(), 63U);
    desk.press(juce::KeyPress::endKey);
    EXPECT_EQ(desk.menu().highlightedRow(), 128U);
    desk.press(juce::KeyPress::homeKey);
    EXPECT_EQ(desk.menu().highlightedRow(), 0U);
    EXPECT_EQ(desk.menu().rowArea(0).getHeight(), 22);
    desk.press(juce::KeyPress::returnKey);
    EXPECT_EQ(desk.picked, 0U);
    EXPECT_FALSE(desk.isOpen());
}

TEST(PopupMenuOverlay, ClosesByEscapeTabAndAClickOutside) {
    for (const auto code : {juce::KeyPress::escapeKey, juce::KeyPress::tabKey}) {
        MenuDesk desk(noteContents(3));
        desk.press(code);
        EXPECT_FALSE(desk.isOpen());
        EXPECT_EQ(desk.picked, std::nullopt);
    }
    MenuDesk desk(noteContents(3));
    click(desk.window, {390, 290});
    EXPECT_FALSE(desk.isOpen());
    EXPECT_EQ(desk.picked, std::nullopt);
}

TEST(PopupMenuOverlay, FindsWhatIsTyped) {
    MenuDesk desk(noteContents(3));
    type(desk.window, "c#3");
    EXPECT_EQ(desk.menu().typed(), "c#3");
    ASSERT_EQ(desk.menu().shownRows().size(), 1U);
    desk.press(juce::KeyPress::returnKey);
    ASSERT_TRUE(desk.picked);
    EXPECT_EQ(triggerNoteMenu()[*desk.picked].value, TriggerValueV2(TriggerValueV2::Value{61}));
}

TEST(PopupMenuOverlay, PrefersTheRowThatBeginsWithWhatIsTyped) {
    MenuContents contents{"Number", {"17 : a", "70 : b", "7 : c", "x 7"}, 0};
    MenuDesk desk(std::move(contents));
    type(desk.window, "7");
    EXPECT_EQ(desk.menu().shownRows().size(), 4U);
    EXPECT_EQ(desk.menu().highlightedRow(), 2U);
    desk.press(juce::KeyPress::downKey);
    EXPECT_EQ(desk.menu().highlightedRow(), 3U);
}

TEST(PopupMenuOverlay, BackspaceWidensTheSearchAgain) {
    MenuDesk desk(noteContents(3));
    type(desk.window, "anyx");
    EXPECT_TRUE(desk.menu().shownRows().empty());
    desk.press(juce::KeyPress::returnKey);
    EXPECT_TRUE(desk.isOpen()) << "There is nothing to pick.";
    desk.press(juce::KeyPress::backspaceKey);
    EXPECT_EQ(desk.menu().shownRows(), std::vector<std::size_t>{0});
    for (int character = 0; character < 3; ++character) {
        desk.press(juce::KeyPress::backspaceKey);
    }
    EXPECT_EQ(desk.menu().shownRows().size(), 129U);
    EXPECT_EQ(desk.menu().highlightedRow(), 0U) << "What was found stays highlighted.";
}

TEST(PopupMenuOverlay, ASpacePicksUntilSomethingIsTyped) {
    MenuContents contents{"Type", {"Note On", "Note Off"}, 1};
    MenuDesk typing(contents);
    type(typing.window, "note o");
    EXPECT_EQ(typing.menu().typed(), "note o");
    MenuDesk picking(contents);
    picking.press(juce::KeyPress::spaceKey);
    EXPECT_EQ(picking.picked, 1U);
}

TEST(PopupMenuOverlay, KeepsEveryKeyWhileItIsOpen) {
    MenuDesk desk(noteContents(3));
    EXPECT_TRUE(key(desk.window, 'q'));
    EXPECT_TRUE(key(desk.window, juce::KeyPress::F5Key));
    EXPECT_TRUE(desk.window.unusedKeys().empty());
}

TEST(PopupMenuOverlay, ScrollsWithTheWheel) {
    MenuDesk desk(noteContents(64));
    const auto before = desk.menu().rowArea(64);
    wheel(desk.menu(), desk.menu().panelArea().getCentre(), -0.5F);
    EXPECT_LT(desk.menu().rowArea(64).getY(), before.getY());
}

TEST(PopupMenuOverlay, FitsIntoEveryWindow) {
    for (const auto& [width, height] : {std::pair{200, 200}, {500, 250}, {1640, 1280}}) {
        MenuDesk desk(noteContents(64), width, height);
        EXPECT_TRUE(desk.window.getLocalBounds().contains(desk.menu().panelArea())) << width;
        EXPECT_GE(desk.menu().panelArea().getHeight(), 3 * 22);
        desk.window.setSize(200, 200);
        EXPECT_TRUE(desk.window.getLocalBounds().contains(desk.menu().panelArea()));
        EXPECT_EQ(desk.menu().highlightedRow(), 64U);
    }
}

TEST(PopupMenuOverlay, GoesBelowAboveOrWhereThereIsMoreRoom) {
    using Area = juce::Rectangle<int>;
    const Area window(0, 0, 300, 300);
    EXPECT_EQ(PopupMenuOverlay::place({10, 20, 60, 24}, {100, 100}, window), Area(10, 44, 100, 100));
    EXPECT_EQ(PopupMenuOverlay::place({10, 250, 60, 24}, {100, 100}, window), Area(10, 150, 100, 100));
    EXPECT_EQ(PopupMenuOverlay::place({10, 100, 60, 24}, {100, 900}, window), Area(10, 124, 100, 172));
    EXPECT_EQ(PopupMenuOverlay::place({280, 20, 60, 24}, {100, 100}, window), Area(196, 44, 100, 100));
    EXPECT_EQ(PopupMenuOverlay::place({10, 20, 160, 24}, {100, 100}, window).getWidth(), 160);
    EXPECT_EQ(PopupMenuOverlay::place({10, 20, 60, 24}, {900, 100}, window).getWidth(), 292);
    EXPECT_TRUE(window.contains(PopupMenuOverlay::place({10, -400, 60, 24}, {100, 900}, window)));
}

TEST(PopupMenuOverlay, WithoutAHostNothingOpens) {
    juce::Component field;
    PopupMenuOverlay::open(field, {0, 0, 10, 10}, noteContents(0), [](std::size_t) {});
    EXPECT_EQ(field.getNumChildComponents(), 0);
    EXPECT_EQ(juce::Desktop::getInstance().getNumComponents(), 0);
}

TEST(PopupMenuOverlay, IsDrawnInTheColoursOfItsField) {
    struct ColouredField : juce::Component, EnvironmentScope {};
    OffscreenWindow window(300, 300);
    ColouredField field;
    const auto colour = Palette().channelInput;
    field.set<MyPrimaryColor>(colour);
    window.show(field, {20, 20, 80, 24});
    PopupMenuOverlay::open(field, field.getLocalBounds(), noteContents(4), [](std::size_t) {});
    EXPECT_GT(pixelsLike(picture(window, 2), colour), 100);
}

TEST(PopupMenuOverlay, IsAMenuToThoseWhoDoNotSeeIt) {
    MenuDesk desk(noteContents(3));
    EXPECT_EQ(desk.menu().getAccessibilityHandler()->getRole(), juce::AccessibilityRole::popupMenu);
    EXPECT_EQ(desk.menu().getAccessibilityHandler()->getTitle(), "Note");
}

}  // namespace
}  // namespace quillo
