// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <iterator>
#include <limits>

#include "editor-main/EditorStage.hpp"
#include "editor/CardLayout.hpp"
#include "editor/FieldSection.hpp"
#include "editor/SectionLabel.hpp"
#include "editor/Style.hpp"
#include "programs/editor/DemoRules.hpp"
#include "support/EveryEntry.hpp"
#include "support/Pictures.hpp"

namespace quillo {
namespace {

using namespace test;

std::string described(const juce::Component& view) {
    return view.getTitle().toStdString() + " " + view.getBounds().toString().toStdString();
}

/// Lists hold more than they show, and JUCE's buttons scale their pictures.
bool isLeaf(const juce::Component& view) {
    return dynamic_cast<const juce::Viewport*>(&view) != nullptr ||
           dynamic_cast<const juce::ListBox*>(&view) != nullptr ||
           dynamic_cast<const juce::Button*>(&view) != nullptr;
}

std::vector<juce::Component*> shownChildren(const juce::Component& view) {
    std::vector<juce::Component*> shown;
    for (auto* child : view.getChildren()) {
        if (child->isVisible() && !child->getBounds().isEmpty()) {
            shown.push_back(child);
        }
    }
    return shown;
}

/// Nothing below a view lies outside of it or on what stands beside it.
void expectTidy(const juce::Component& view) {
    const auto shown = shownChildren(view);
    for (std::size_t child = 0; child < shown.size(); ++child) {
        EXPECT_TRUE(view.getLocalBounds().contains(shown[child]->getBounds()))
            << described(*shown[child]) << " is outside of " << described(view);
        for (std::size_t other = child + 1; other < shown.size(); ++other) {
            EXPECT_FALSE(shown[child]->getBounds().intersects(shown[other]->getBounds()))
                << described(*shown[child]) << " overlaps " << described(*shown[other]);
        }
        if (!isLeaf(*shown[child])) {
            expectTidy(*shown[child]);
        }
    }
}

/// The lowest edge of what a card shows.
int contentBottom(RuleView& card) {
    return std::max({card.trigger().getBottom(), card.output().getBottom(), card.buttons().getBottom()});
}

/// A card of every trigger with every output, with long values in their fields.
std::vector<RuleEntry> cardKinds() {
    std::vector<RuleEntry> entries;
    for (const auto trigger : everyTriggerType()) {
        for (const auto output : everyOutputType()) {
            RuleEntry entry;
            entry.name = "A name that is longer than a narrow card is wide";
            entry.trigger.type = trigger;
            entry.trigger.controller = 100;
            entry.output.type = output;
            entry.output.controller = GenericByteV2::Value{127};
            entry.output.pitch.value = 16383;
            entry.output.systemExclusive.assign(40, 0x7F);
            entry.output.delay.ms = 123'456'789;
            entries.push_back(entry);
        }
    }
    return entries;
}

TEST(CardLayout, ACardIsExactlyAsHighAsItsContentNeeds) {
    for (const auto& entry : cardKinds()) {
        auto shown = entry;
        RuleView card(
            {[&shown] { return shown; }, [&shown](RuleEntry changed) { shown = std::move(changed); }}, {});
        for (int width = 176; width <= 1200; width += 32) {
            SCOPED_TRACE(width);
            card.setBounds(0, 0, width, RuleView::heightFor(entry, width));
            expectTidy(card);
            EXPECT_EQ(contentBottom(card), card.getHeight() - style::cardBottom);
        }
        if (HasFailure()) {
            break;
        }
    }
}

TEST(CardLayout, AFieldIsNeverWiderThanItsSection) {
    RuleEntry entry;
    entry.output.type = OutputEntryType::SystemExclusive;
    entry.output.systemExclusive.assign(400, 0x11);
    RuleView card({[&entry] { return entry; }, [](const RuleEntry&) {}}, {});
    card.setBounds(0, 0, 300, RuleView::heightFor(entry, 300));
    auto& bytes = field(card.output(), "Bytes (hex)");
    EXPECT_EQ(bytes.getWidth(), card.output().getWidth());
    EXPECT_EQ(bytes.getTooltip(), bytes.shownText()) << "What is cut is shown whole as a tooltip.";
}

class EachSize : public testing::TestWithParam<juce::Point<int>> {};

TEST_P(EachSize, NothingOverlapsAndNothingIsOutside) {
    std::vector<Rule> rules;
    for (const auto& entry : cardKinds()) {
        rules.push_back(ruleFromEntry(entry));
    }
    EditorStage stage(rules, GetParam());
    for (const bool opened : {false, true}) {
        if (opened) {
            click(stage.view().logger().collapsedForm().arrow());
            stage.view().logger().advance(InOutLogger::movement);
        }
        SCOPED_TRACE(opened ? "with the logs opened" : "with the logs collapsed");
        expectTidy(stage.view().header());
        expectTidy(stage.view().logger());
        const auto bars = shownChildren(stage.view());
        EXPECT_EQ(bars.size(), 3U);
        EXPECT_EQ(stage.view().header().getBottom(), stage.view().list().getY());
        EXPECT_EQ(stage.view().list().getBottom(), stage.view().logger().getY());
        EXPECT_EQ(stage.view().logger().getBottom(), GetParam().y);
        for (std::size_t position = 0; position < rules.size(); position += 11) {
            auto& card = stage.card(position);
            expectTidy(card);
            EXPECT_EQ(contentBottom(card), card.getHeight() - style::cardBottom);
        }
    }
}

TEST_P(EachSize, WhatWaitsHasItsPlaceAndItsTitle) {
    EditorStage stage({}, GetParam());
    auto& model = *stage.desk.session().model();
    const auto last = std::numeric_limits<std::uint64_t>::max();
    model.setWaiting({{last, 0.29, MessageList(MIDIMessage{0x93, 0x4A, 0x50}), "A name that is long"}}, 9999);
    expectTidy(stage.view().logger());
    auto& opened = stage.view().logger().openedForm();
    click(stage.view().logger().collapsedForm().arrow());
    stage.view().logger().advance(InOutLogger::movement);
    expectTidy(stage.view().logger());
    if (opened.waitingTitle().isVisible()) {
        click(opened.waitingTitle());
        expectTidy(stage.view().logger());
        EXPECT_LE(opened.waitingTitle().preferredWidth(), opened.waitingTitle().getWidth());
    }
    ASSERT_TRUE(opened.waitingList().isVisible());
    EXPECT_TRUE(opened.cancelAllButton().isVisible());
    EXPECT_GE(opened.waitingList().getHeight(), 15);
    EXPECT_TRUE(opened.waitingList().getLocalBounds().contains(opened.waitingList().crossArea(0)));
}

TEST_P(EachSize, ThePanicsAnswerIsTidyAndWithin) {
    EditorStage stage({}, GetParam());
    stage.desk.session().model()->setPanicAnswer(
        "Stopped 128 notes, let go of 16 pedals, cancelled 10000 waiting messages");
    auto& answer = stage.view().panicAnswer();
    EXPECT_TRUE(stage.view().getLocalBounds().contains(answer.getBounds()));
    expectTidy(answer);
    EXPECT_EQ(answer.notesEnd().getHeight(), answer.notesEnd().heightFor(answer.notesEnd().getWidth()))
        << "No line of it is cut.";
}

TEST_P(EachSize, MenusAndAlertsStayInside) {
    EditorStage stage({ruleFromEntry(RuleEntry())}, GetParam());
    auto& note = field(stage.card().output(), "Note");
    note.grabKeyboardFocus();
    settle();
    EditorStage::openMenu(note);
    EXPECT_TRUE(stage.view().getLocalBounds().contains(stage.menu().panelArea()));
    EXPECT_GE(stage.menu().rowArea(67).getHeight(), 1) << "The current note is in sight.";
    key(stage.window, juce::KeyPress::escapeKey);
    stage.editor().alert(std::string(500, 'x'));
    expectTidy(*stage.view().overlay());
    stage.editor().dismissAlert();
    stage.view().showExporter();
    expectTidy(*stage.view().overlay());
}

INSTANTIATE_TEST_SUITE_P(CardLayout, EachSize,
                         testing::Values(juce::Point(200, 200), juce::Point(320, 480), juce::Point(410, 300),
                                         juce::Point(460, 300), juce::Point(500, 250), juce::Point(820, 640),
                                         juce::Point(1600, 1000)),
                         [](const auto& size) {
                             return std::to_string(size.param.x) + "x" + std::to_string(size.param.y);
                         });

TEST(CardLayout, ANarrowEditorMovesItsCommandsIntoAMenuThatWorks) {
    EditorStage stage({}, {200, 200});
    EXPECT_FALSE(stage.view().header().undoButton().isVisible());
    EXPECT_FALSE(stage.view().header().docsButton().isVisible());
    click(stage.view().header().moreButton());
    EXPECT_EQ(stage.menu().highlightedRow(), 2U)
        << "Nothing can be undone or redone, so the guide comes first.";
    for (const auto* step : {"Undo", "Redo", "v"}) {
        stage.pickInMenu(step);
        ASSERT_NE(stage.view().overlay(), nullptr) << step;
        key(stage.window, juce::KeyPress::escapeKey);
        click(stage.view().header().moreButton());
    }
    key(stage.window, juce::KeyPress::escapeKey);
    stage.editor().add(MIDIRuleType::OutputType{OutputEntryType::NoteOn});
    click(stage.view().header().moreButton());
    stage.pickInMenu("Undo");
    EXPECT_TRUE(stage.installed().empty());
    click(stage.view().header().moreButton());
    stage.pickInMenu("Redo");
    EXPECT_EQ(stage.names(), std::vector<std::string>{"Message #1"});
}

TEST(CardLayout, ALabelStandsOnTheBaselineOfTheValuesBesideIt) {
    constexpr int scale = 4;
    const Palette palette;
    const auto plans = FieldPlans{pickerPlan<int>("Type", {palette.delayInput, palette.background},
                                                  {{1, "EEE"}}, {[] { return 1; }, [](int) {}})};
    const CardLayout layout({.trigger = sizesOf(plans)}, 600);
    OffscreenWindow window(600, 200);
    FieldSection section("EEE");
    section.setFields(plans);
    window.show(section, layout.trigger);
    const auto value = boundsOfPixelsLike(
        picture(section, scale), palette.delayInput,
        section.getLocalArea(&section.fields()[0]->field(), section.fields()[0]->field().textArea()) * scale);
    SectionLabel label("EEE");
    window.show(label, layout.triggerLabel);
    const auto name =
        boundsOfPixelsLike(picture(label, scale), palette.secondaryText, label.getLocalBounds() * scale);
    EXPECT_EQ(name.getBottom() + scale * label.getY(), value.getBottom() + scale * section.getY());
}

/// The layout of a card with a row of fields of these widths in each section.
CardLayout layoutOf(const std::vector<int>& trigger, const std::vector<int>& output, int width) {
    CardContent content{.status = {"never fired since load"}};
    for (const auto field : trigger) {
        content.trigger.emplace_back(field, 38);
    }
    for (const auto field : output) {
        content.output.emplace_back(field, 38);
    }
    return {content, width};
}

TEST(CardLayout, AWideCardHasItsSectionsSideBySideAndItsButtonsInTheTitleLine) {
    const auto card = layoutOf({100, 44}, {100, 44}, 788);
    EXPECT_EQ(card.trigger.getY(), card.output.getY());
    EXPECT_EQ(card.triggerLabel.getY(), card.outputLabel.getY());
    EXPECT_EQ(card.triggerLabel.getBottom(), card.trigger.getY());
    EXPECT_NEAR(card.buttons.getCentreY(), card.name.getCentreY(), 1);
    EXPECT_EQ(card.status.getCentreY(), card.name.getCentreY());
    EXPECT_EQ(card.buttons.getX(), card.output.getX());
    EXPECT_EQ(card.height, 90);
}

TEST(CardLayout, CardsOfAnEditorOf760PointsHaveTheirSectionsSideBySide) {
    EditorStage stage({ruleFromEntry(RuleEntry())}, {760, 640});
    EXPECT_EQ(stage.card().trigger().getY(), stage.card().output().getY());
    stage.view().setSize(740, 640);
    EXPECT_LT(stage.card().trigger().getBottom(), stage.card().output().getY());
}

TEST(CardLayout, ASectionTakesOfTheOthersHalfWhatItNeedsForASingleRow) {
    EXPECT_EQ(layoutOf({100, 255}, {100, 255}, 788).trigger.getWidth(), 365);
    EXPECT_EQ(layoutOf({100, 280}, {100, 240}, 788).trigger.getWidth(), 385);
    EXPECT_EQ(layoutOf({100, 200}, {100, 280}, 788).output.getWidth(), 730 - 305);
    EXPECT_EQ(layoutOf({100, 200}, {100, 280}, 788).height, 90);
    EXPECT_EQ(layoutOf({100, 280}, {100, 280}, 788).trigger.getWidth(), 365) << "It would be no lower.";
}

TEST(CardLayout, TheButtonsOfATitleLineStandOffTheCardsEdge) {
    for (const auto width : {788, 600, 400}) {
        const auto buttons = layoutOf({100}, {100}, width).buttons;
        EXPECT_GE(buttons.getY(), style::fieldGap) << width;
        EXPECT_EQ(buttons.getHeight(), style::buttonHeight) << width;
    }
}

TEST(CardLayout, TheButtonsStandAtOnePlaceInCardsOfOneWidth) {
    const auto place = layoutOf({100}, {100}, 788).buttons;
    EXPECT_EQ(layoutOf({100, 280}, {100, 240}, 788).buttons, place);
    EXPECT_EQ(layoutOf({400, 400}, {400, 400}, 788).buttons, place);
}

/// How many cards are wholly in sight.
int wholeCards(QuilloView& view) {
    int count = 0;
    view.list().forEachRow([&](std::size_t /*position*/, juce::Component& card) {
        const auto area = view.list().getLocalArea(&card, card.getLocalBounds());
        count += view.list().getLocalBounds().contains(area) ? 1 : 0;
    });
    return count;
}

TEST(CardLayout, FiveWholeCardsAreInSightInAMediumEditorAndOneInTheSmallest) {
    auto rules = performanceRules();
    std::ranges::copy(demoRules(), std::back_inserter(rules));
    EditorStage stage(rules);
    EXPECT_EQ(wholeCards(stage.view()), 5);
    for (const auto& rule : rules) {
        EditorStage small({rule}, {500, 250});
        EXPECT_EQ(wholeCards(small.view()), 1) << rule.name;
    }
}

TEST(CardLayout, TheTextOfAnAlertBeginsWhereItsTitleDoes) {
    EditorStage stage({}, {500, 300});
    stage.editor().alert("E");
    auto& alert = *stage.view().overlay();
    const auto image = picture(alert, 2);
    const auto found = boundsOfPixelsLike(image, Palette().primaryText, image.getBounds());
    const auto half = found.withHeight(found.getHeight() / 4);
    const auto title = boundsOfPixelsLike(image, Palette().primaryText, half);
    const auto* text = findBelow<juce::TextEditor>(alert);
    const auto message = boundsOfPixelsLike(image, Palette().primaryText,
                                            alert.getLocalArea(text, text->getLocalBounds()) * 2);
    EXPECT_NEAR(message.getX(), title.getX(), 2);
}

TEST(CardLayout, AWideEditorHasButtonsForItsCommands) {
    EditorStage stage;
    EXPECT_TRUE(stage.view().header().undoButton().isVisible());
    EXPECT_TRUE(stage.view().header().docsButton().isVisible());
}

}  // namespace
}  // namespace quillo
