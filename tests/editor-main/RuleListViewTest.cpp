// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "audiounit/MIDIQuilloAUAudioUnit.hpp"
#include "editor-main/EditorStage.hpp"
#include "editor/AlertView.hpp"
#include "editor/NewRuleSelector.hpp"
#include "editor/Style.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Names = std::vector<std::string>;
using Messages = std::vector<std::vector<std::uint8_t>>;

const juce::KeyPress undoKey{'z', juce::ModifierKeys(juce::ModifierKeys::ctrlModifier), 0};
const juce::KeyPress redoKey{
    'z', juce::ModifierKeys(juce::ModifierKeys::ctrlModifier | juce::ModifierKeys::shiftModifier), 0};

Rule loadRule(const std::string& name) {
    return rule(onLoad(), send(noteOn(0, 60, 100)), name);
}

class RuleListView : public testing::Test {
protected:
    void open(const Names& names, juce::Point<int> size = {820, 640}) {
        std::vector<Rule> rules;
        for (const auto& name : names) {
            rules.push_back(loadRule(name));
        }
        stage = std::make_unique<EditorStage>(std::move(rules), size);
    }

    void addNew(const juce::String& label) {
        click(findBelow<NewRuleSelector>(stage->view())->button());
        stage->pickInMenu(label);
    }

    /// The names on the cards, from top to bottom.
    Names namesOnCards() {
        std::vector<std::pair<int, std::string>> cards;
        for (const auto& element : stage->editor().rules()) {
            auto* card = stage->view().card(element.id);
            cards.emplace_back(stage->view().list().getLocalPoint(card, juce::Point(0, 0)).y,
                               card->header().shownText().toStdString());
        }
        std::ranges::sort(cards);
        Names names;
        for (const auto& [top, name] : cards) {
            names.push_back(name);
        }
        return names;
    }

    void expectNames(const Names& names) {
        EXPECT_EQ(stage->names(), names);
        EXPECT_EQ(namesOnCards(), names);
    }

    std::unique_ptr<EditorStage> stage;
};

TEST_F(RuleListView, AddNewAddsARuleOfThePickedTypeUnderTheNextNumber) {
    open({});
    addNew("Note On");
    addNew("Pitch Wheel");
    EXPECT_EQ(stage->installed(), (std::vector{ruleFromEntry(defaultEntry(OutputEntryType::NoteOn, 1)),
                                               ruleFromEntry(defaultEntry(OutputEntryType::PitchWheel, 2))}));
    EXPECT_EQ(namesOnCards(), (Names{"Message #1", "Message #2"}));
}

TEST_F(RuleListView, AddNewCountsOnFromTheGreatestNumber) {
    open({"Message #1", "Message #7", "Intro"});
    addNew("All Notes Off");
    expectNames({"Message #1", "Message #7", "Intro", "Message #8"});
    EXPECT_EQ(stage->installed().back(), rule(onLoad(), send(controlChange(0, 123, 0)), "Message #8"));
}

TEST_F(RuleListView, ADoubleClickOnDeleteRemovesOneRuleAndASecondClickLaterTheNext) {
    open({"a", "b", "c", "d"});
    auto& view = stage->view();
    const auto place = view.getLocalPoint(&stage->card().buttons().deleteButton(), juce::Point(5, 5));
    click(view, place, 2);
    expectNames({"b", "c", "d"});
    click(view, place);
    expectNames({"c", "d"});
}

TEST_F(RuleListView, EachOfSeveralQuickClicksOnDuplicateMakesACopy) {
    open({"a"});
    click(stage->card().buttons().duplicateButton(), {5, 5}, 6);
    EXPECT_EQ(stage->names().size(), 7U);
}

TEST_F(RuleListView, AClickOnTheBorderOfAMenuLeavesItTheKeyboard) {
    open({"a"});
    EditorStage::openMenu(field(stage->card(0).trigger(), "Type"));
    click(stage->menu(), stage->menu().panelArea().getTopLeft().translated(30, 1));
    EXPECT_TRUE(stage->menu().hasKeyboardFocus(true));
    stage->pickInMenu("CC");
    EXPECT_EQ(stage->entry(0).trigger.type, TriggerEntryType::ControlChange);
}

TEST_F(RuleListView, AMenuThatIsLeftAddsNothing) {
    open({});
    click(findBelow<NewRuleSelector>(stage->view())->button());
    EXPECT_EQ(stage->menu().shownRows().size(), 11U)
        << "Nine kinds of messages, notes as played, and learning.";
    key(stage->window, juce::KeyPress::escapeKey);
    EXPECT_EQ(stage->view().overlay(), nullptr);
    EXPECT_TRUE(stage->installed().empty());
}

TEST_F(RuleListView, ARuleThatIsNotTakenScrollsNothing) {
    open({"Message #9223372036854775807", "b", "c", "d", "e", "f", "g", "h", "i"});
    stage->view().list().setScrollPosition(100'000);
    click(findBelow<NewRuleSelector>(stage->view())->button());
    stage->view().list().scrollTo(stage->id(0));
    stage->pickInMenu("CC");
    EXPECT_EQ(stage->names().size(), 9U);
    EXPECT_NE(stage->view().card(stage->id(0)), nullptr);
}

TEST_F(RuleListView, ANewRuleIsScrolledIntoSight) {
    open({"a", "b", "c", "d"}, {500, 250});
    stage->view().list().setScrollPosition(100'000);
    addNew("SysEx");
    auto& list = stage->view().list();
    auto* card = stage->view().card(stage->id(4));
    ASSERT_NE(card, nullptr);
    EXPECT_TRUE(list.getLocalBounds().contains(
        list.getLocalArea(card, card->getLocalBounds()).withHeight(style::cardHeaderHeight)));
}

TEST_F(RuleListView, DuplicatePutsACopyRightAfterTheRule) {
    open({"a", "b"});
    click(stage->card(0).buttons().duplicateButton());
    expectNames({"a", "a", "b"});
    EXPECT_NE(stage->id(0), stage->id(1));
    EXPECT_EQ(stage->entry(0), stage->entry(1));
}

TEST_F(RuleListView, DeleteTakesTheRuleAndItsCardAway) {
    open({"a", "b", "c"});
    const auto gone = stage->id(1);
    click(stage->card(1).buttons().deleteButton());
    expectNames({"a", "c"});
    EXPECT_EQ(stage->view().card(gone), nullptr);
}

TEST_F(RuleListView, DeleteWorksByKeysWhileItsButtonHasTheFocus) {
    open({"a", "b"});
    stage->card(0).buttons().deleteButton().grabKeyboardFocus();
    EXPECT_TRUE(key(stage->window, juce::KeyPress::spaceKey));
    expectNames({"b"});
}

TEST_F(RuleListView, DeletingTheRuleThatIsTypedIntoLeavesTheOthersAlone) {
    open({"a", "b"});
    stage->beginTyping(stage->card(0).header(), "typed");
    stage->editor().remove({stage->id(0)});
    expectNames({"b"});
}

TEST_F(RuleListView, SendPutsTheMessageOutInTheNextCycleAndIntoTheLog) {
    open({"a"});
    stage->render();
    stage->sent.clear();
    click(stage->card(0).buttons().sendButton());
    EXPECT_TRUE(stage->sent.empty());
    stage->render();
    EXPECT_EQ(stage->sent, (Messages{{0x90, 60, 100}}));
    EXPECT_EQ(stage->view().logger().collapsedForm().outText(), "[512] 90 3c 64");
    EXPECT_EQ(stage->editor().undoName(), std::nullopt);
}

TEST_F(RuleListView, ARuleIsDraggedToAnotherPlaceByItsHandle) {
    open({"a", "b", "c"}, {820, 900});
    auto& handle = handleOf(stage->card(0));
    auto& last = handleOf(stage->card(2));
    const auto target = handle.getLocalPoint(&last, juce::Point(5, last.getHeight() - 5));
    drag(handle, {5, 20}, target);
    expectNames({"b", "c", "a"});
    EXPECT_EQ(stage->editor().undoName(), "Move a");
    stage->editor().undo();
    expectNames({"a", "b", "c"});
}

TEST_F(RuleListView, EscapeGivesADragUp) {
    open({"a", "b", "c"}, {820, 900});
    auto& handle = handleOf(stage->card(0));
    const auto target = handle.getLocalPoint(&handleOf(stage->card(2)), juce::Point(5, 100));
    dragAlong(handle, {{5, 20}, target});
    EXPECT_TRUE(stage->view().list().isDragging());
    EXPECT_TRUE(key(stage->window, juce::KeyPress::escapeKey));
    release(stage->window, {5, 5});
    expectNames({"a", "b", "c"});
    EXPECT_EQ(stage->editor().undoName(), std::nullopt);
}

TEST_F(RuleListView, AltAndArrowsMoveTheRuleWhoseHandleHasTheFocus) {
    open({"a", "b", "c"}, {820, 900});
    auto& handle = handleOf(stage->card(0));
    handle.grabKeyboardFocus();
    EXPECT_TRUE(key(stage->window, juce::KeyPress::downKey, juce::ModifierKeys::altModifier));
    expectNames({"b", "a", "c"});
    EXPECT_TRUE(key(stage->window, juce::KeyPress::downKey, juce::ModifierKeys::ctrlModifier));
    expectNames({"b", "c", "a"});
    EXPECT_TRUE(key(stage->window, juce::KeyPress::upKey, juce::ModifierKeys::altModifier));
    expectNames({"b", "a", "c"});
    EXPECT_TRUE(handle.hasKeyboardFocus(false)) << "The row keeps its view and its focus.";
}

TEST_F(RuleListView, KeysUndoAndRedoWhileAnythingInTheEditorHasTheFocus) {
    open({"a"});
    stage->typeInto(stage->card(0).header(), "b");
    stage->card(0).header().grabKeyboardFocus();
    EXPECT_TRUE(key(stage->window, undoKey));
    expectNames({"a"});
    EXPECT_TRUE(key(stage->window, redoKey));
    expectNames({"b"});
}

TEST_F(RuleListView, BehindAMenuKeysNeitherUndoNorRedoNorChangeTheForm) {
    open({"a"});
    stage->typeInto(stage->card(0).header(), "b");
    stage->typeInto(stage->card(0).header(), "c");
    stage->editor().undo();
    EditorStage::openMenu(field(stage->card(0).trigger(), "Type"));
    juce::Component::unfocusAllComponents();
    for (const auto& key : {undoKey, redoKey, juce::KeyPress('y', ctrl, 0), juce::KeyPress('-', ctrl, 0)}) {
        EXPECT_FALSE(stage->view().keyPressed(key)) << key.getTextDescription();
        expectNames({"b"});
        EXPECT_FALSE(stage->card(0).isInOneLine());
    }
    stage->view().closeOverlay();
    EXPECT_TRUE(stage->view().keyPressed(redoKey));
    expectNames({"c"});
}

TEST_F(RuleListView, ButtonsUndoAndRedoAndSayWhat) {
    open({"a"});
    auto& header = stage->view().header();
    EXPECT_FALSE(header.undoButton().isEnabled());
    EXPECT_FALSE(header.redoButton().isEnabled());
    click(stage->card(0).buttons().duplicateButton());
    EXPECT_TRUE(header.undoButton().isEnabled());
    EXPECT_EQ(header.undoButton().getTooltip(), "Undo: Duplicate a");
    click(header.undoButton());
    expectNames({"a"});
    EXPECT_FALSE(header.undoButton().isEnabled());
    EXPECT_EQ(header.redoButton().getTooltip(), "Redo: Duplicate a");
    click(header.redoButton());
    expectNames({"a", "a"});
}

TEST_F(RuleListView, WhatCannotBeSeenInANameIsEscapedWhereItCanBeUndone) {
    open({"a\n\u202E"});
    click(stage->card(0).buttons().deleteButton());
    EXPECT_EQ(stage->view().header().undoButton().getTooltip(), "Undo: Delete a\\n\\u202e");
}

TEST_F(RuleListView, AStateRestoredByTheHostReplacesTheCards) {
    open({"a", "b"});
    const auto state = stage->desk.session().save();
    click(stage->card(0).buttons().deleteButton());
    expectNames({"b"});
    ASSERT_EQ(stage->desk.session().restore(state), std::nullopt);
    stage->desk.drain();
    expectNames({"a", "b"});
    EXPECT_FALSE(stage->view().header().undoButton().isEnabled())
        << "What was done to another list cannot be undone in this one.";
}

/// A channel pressure that is copied from its trigger: no card can show it.
Rule uneditable() {
    return rule(onNoteOn(), send(protocol(StatusV2::channelPressure, channel(0), triggerByte)), "odd");
}

TEST_F(RuleListView, RulesThatCannotBeEditedShowWhyAndNothingCanBeAdded) {
    const std::vector rules{loadRule("a"), uneditable()};
    stage = std::make_unique<EditorStage>(rules);
    EXPECT_FALSE(stage->view().list().isVisible());
    ASSERT_TRUE(stage->editor().whyNotEditable().has_value());
    stage->editor().add(MIDIRuleType::OutputType{OutputEntryType::NoteOn});
    EXPECT_NE(dynamic_cast<AlertView*>(stage->view().overlay()), nullptr);
    EXPECT_EQ(stage->installed(), rules);
}

/// Whether anything but the ground is drawn in the list's place.
bool showsANotice(QuilloView& view) {
    const auto place = view.list().getBounds();
    const auto picture = view.createComponentSnapshot(place, true, 1);
    for (int y = 0; y < picture.getHeight(); ++y) {
        for (int x = 0; x < picture.getWidth(); ++x) {
            if (picture.getPixelAt(x, y) != picture.getPixelAt(0, 0)) {
                return true;
            }
        }
    }
    return false;
}

TEST_F(RuleListView, ANoticeStandsInThePlaceOfRulesThatCannotBeEdited) {
    stage = std::make_unique<EditorStage>(std::vector{uneditable()});
    EXPECT_TRUE(showsANotice(stage->view()));
    open({});
    stage->view().list().setVisible(false);
    EXPECT_FALSE(showsANotice(stage->view()));
}

TEST_F(RuleListView, RulesThatCannotBeEditedAreNotTouchedByUndoAndRedo) {
    const std::vector rules{loadRule("a"), uneditable()};
    stage = std::make_unique<EditorStage>(rules);
    EXPECT_FALSE(stage->view().header().undoButton().isEnabled());
    stage->view().header().importButton().grabKeyboardFocus();
    key(stage->window, undoKey);
    key(stage->window, redoKey);
    EXPECT_EQ(stage->installed(), rules);
    EXPECT_TRUE(stage->editor().whyNotEditable().has_value());
}

TEST_F(RuleListView, RulesThatCannotBeEditedComeBackWhenTheImportThatReplacedThemIsUndone) {
    const std::vector rules{loadRule("a"), uneditable()};
    stage = std::make_unique<EditorStage>(rules);
    const auto reason = stage->editor().whyNotEditable();
    stage->editor().replaceAll({elementFromRule(loadRule("imported"))}, "Import");
    EXPECT_TRUE(stage->view().list().isVisible());
    click(stage->view().header().undoButton());
    EXPECT_FALSE(stage->view().list().isVisible());
    EXPECT_EQ(stage->editor().whyNotEditable(), reason);
    EXPECT_EQ(stage->installed(), rules);
    EXPECT_FALSE(stage->view().header().undoButton().isEnabled());
    click(stage->view().header().redoButton());
    expectNames({"imported"});
}

TEST_F(RuleListView, RulesThatCanBeEditedAgainComeBack) {
    open({"a"});
    const auto state = stage->desk.session().save();
    EditorStage other({uneditable()});
    ASSERT_EQ(other.desk.session().restore(state), std::nullopt);
    other.desk.drain();
    EXPECT_TRUE(other.view().list().isVisible());
    EXPECT_EQ(other.card(0).header().shownText(), "a");
}

TEST_F(RuleListView, AListThatTheEngineRefusesIsNotKept) {
    open({"a"});
    stage->typeInto(field(stage->card(0).output(), "Delay (ms)"), "9223372036854775807");
    auto* alert = dynamic_cast<AlertView*>(stage->view().overlay());
    ASSERT_NE(alert, nullptr);
    EXPECT_EQ(alert->getTitle(), "Error");
    EXPECT_EQ(stage->installed(), std::vector{loadRule("a")});
    EXPECT_EQ(field(stage->card(0).output(), "Delay (ms)").shownText(), "0");
}

TEST_F(RuleListView, TheTextOfAnAlertOpensNoMenuOfTheWindowSystem) {
    open({"a"});
    stage->editor().alert("something");
    EXPECT_FALSE(findBelow<juce::TextEditor>(*stage->view().overlay())->isPopupMenuEnabled());
}

TEST_F(RuleListView, WhatIsSelectedInAnAlertIsMarkedInTheEditorsColours) {
    open({"a"});
    stage->editor().alert("something");
    const auto* text = findBelow<juce::TextEditor>(*stage->view().overlay());
    const auto primary = displayColour(Palette().primaryText);
    EXPECT_EQ(text->findColour(juce::TextEditor::highlightColourId), primary.withAlpha(0.3F));
    EXPECT_EQ(text->findColour(juce::TextEditor::highlightedTextColourId), primary);
}

TEST_F(RuleListView, KeysThatNobodyWantsGoOnToTheHost) {
    open({"a"});
    EXPECT_FALSE(key(stage->window, juce::KeyPress::spaceKey));
    EXPECT_FALSE(key(stage->window, 'q'));
    field(stage->card(0).output(), "Velocity").grabKeyboardFocus();
    EXPECT_FALSE(key(stage->window, juce::KeyPress::spaceKey));
    EXPECT_FALSE(key(stage->window, 'q'));
    EXPECT_FALSE(key(stage->window, juce::KeyPress::F1Key));
    EXPECT_EQ(stage->installed(), std::vector{loadRule("a")});
}

TEST_F(RuleListView, ClicksOnButtonsLeaveTheKeyboardWithTheHost) {
    open({"a"});
    click(stage->card(0).buttons().sendButton());
    click(stage->view().logger().collapsedForm().arrow());
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr);
    EXPECT_FALSE(key(stage->window, juce::KeyPress::spaceKey));
}

/// A card whose bank is being typed: 77 in the place of 0.
class WhileABankIsTyped : public RuleListView {
protected:
    WhileABankIsTyped() {
        stage = std::make_unique<EditorStage>(std::vector{ruleWith([](RuleEntry& entry) {
            entry.name = "a";
            entry.output.type = OutputEntryType::ProgramChange;
        })});
        stage->render();
        stage->sent.clear();
        stage->beginTyping(field(stage->card(0).output(), "Bank"), "77");
    }

    void expectTaken() {
        EXPECT_EQ(stage->entry(0).output.bank, 77);
        EXPECT_EQ(stage->editor().undoName(), "Edit a");
        EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr)
            << "The host has the keyboard again.";
    }
};

TEST_F(WhileABankIsTyped, SendSendsWhatIsSeen) {
    click(stage->card(0).buttons().sendButton());
    expectTaken();
    stage->render();
    EXPECT_EQ(stage->sent, (Messages{{0xB0, 0, 77}, {0xC0, 0}}));
}

TEST_F(WhileABankIsTyped, DuplicateCopiesWhatIsSeen) {
    click(stage->card(0).buttons().duplicateButton());
    EXPECT_EQ(stage->entry(1).output.bank, 77);
}

TEST_F(WhileABankIsTyped, TheHostSavesTheRulesThatRun) {
    const auto running = stage->installed();
    EXPECT_EQ(PluginData::read(stage->desk.session().save()).rules, running);
    key(stage->window, juce::KeyPress::returnKey);
    EXPECT_EQ(PluginData::read(stage->desk.session().save()).rules, stage->installed());
    EXPECT_NE(stage->installed(), running);
}

TEST_F(WhileABankIsTyped, UndoTakesBackWhatIsSeen) {
    click(stage->view().header().undoButton());
    expectTaken();
    click(stage->view().header().undoButton());
    EXPECT_EQ(stage->entry(0).output.bank, 0);
}

TEST_F(WhileABankIsTyped, AClickOnAnyOtherPartTakesIt) {
    key(stage->window, juce::KeyPress::escapeKey);
    for (juce::Component* part : std::initializer_list<juce::Component*>{
             &stage->view().header(), &stage->view().logger().collapsedForm().arrow(), &stage->view().list(),
             &stage->card(0), &field(stage->card(0).trigger(), "Type")}) {
        stage->beginTyping(field(stage->card(0).output(), "Bank"), "77");
        click(*part, {4, part->getHeight() - 4});
        EXPECT_EQ(stage->entry(0).output.bank, 77);
        stage->view().closeOverlay();
        stage->editor().undo();
        EXPECT_EQ(stage->entry(0).output.bank, 0);
    }
}

TEST_F(WhileABankIsTyped, AClickIntoTheSameFieldGoesOnTyping) {
    auto& bank = field(stage->card(0).output(), "Bank");
    click(bank, bank.textArea().getCentre());
    EXPECT_EQ(stage->entry(0).output.bank, 0);
    EXPECT_NE(juce::Component::getCurrentlyFocusedComponent(), nullptr);
}

TEST_F(RuleListView, AKeyForAFieldOutOfSightBringsItIntoSightAndDoesNoMore) {
    open({"a", "b", "c", "d"}, {500, 250});
    auto& list = stage->view().list();
    auto& velocity = field(stage->card(0).output(), "Velocity");
    velocity.grabKeyboardFocus();
    settle();
    for (const auto code :
         {juce::KeyPress::upKey, juce::KeyPress::pageDownKey, juce::KeyPress::returnKey, int{'5'}}) {
        list.setScrollPosition(100'000);
        EXPECT_TRUE(key(stage->window, code));
        EXPECT_TRUE(list.getLocalBounds().contains(list.getLocalArea(&velocity, velocity.getLocalBounds())));
        EXPECT_EQ(velocity.shownText(), "100");
        EXPECT_TRUE(velocity.hasKeyboardFocus(false)) << "It is not typed into.";
    }
    EXPECT_TRUE(key(stage->window, juce::KeyPress::upKey));
    EXPECT_EQ(velocity.shownText(), "101");
    list.setScrollPosition(100'000);
    EXPECT_FALSE(key(stage->window, juce::KeyPress::spaceKey))
        << "A key that it has no use for is the host's.";
    EXPECT_GT(list.scrollPosition(), 0);
}

TEST_F(RuleListView, AKeyForAFieldThatIsTypedIntoOutOfSightBringsItIntoSightAndDoesNoMore) {
    open({"a", "b", "c", "d"}, {500, 250});
    auto& list = stage->view().list();
    auto& delay = field(stage->card(0).output(), "Delay (ms)");
    list.scrollTo(stage->id(0));
    delay.grabKeyboardFocus();
    settle();
    stage->beginTyping(delay, "4");
    for (const auto code : {juce::KeyPress::upKey, juce::KeyPress::returnKey, int{'5'}}) {
        list.setScrollPosition(100'000);
        EXPECT_TRUE(key(stage->window, code));
        EXPECT_LT(list.scrollPosition(), 200);
        EXPECT_EQ(stage->entry(0).output.delay.ms, 0);
    }
    key(stage->window, '2');
    key(stage->window, juce::KeyPress::returnKey);
    EXPECT_EQ(stage->entry(0).output.delay.ms, 42);
}

TEST_F(RuleListView, AKeyForAButtonOrAMenuOutOfSightDoesNoMoreThanToBringItIntoSight) {
    open({"a", "b", "c", "d"}, {500, 250});
    auto& list = stage->view().list();
    for (juce::Component* part : std::initializer_list<juce::Component*>{
             &stage->card(0).buttons().deleteButton(), &field(stage->card(0).trigger(), "Type"),
             &handleOf(stage->card(0))}) {
        part->grabKeyboardFocus();
        settle();
        list.setScrollPosition(100'000);
        EXPECT_TRUE(key(stage->window, juce::KeyPress::downKey, juce::ModifierKeys::altModifier) ||
                    key(stage->window, juce::KeyPress::returnKey));
        EXPECT_LT(list.scrollPosition(), 200);
        EXPECT_EQ(stage->view().overlay(), nullptr);
        expectNames({"a", "b", "c", "d"});
    }
}

TEST_F(RuleListView, UndoAndRedoScrollToTheRuleThatTheyChange) {
    Names names(30, "x");
    open(names, {500, 250});
    auto& list = stage->view().list();
    const auto inSight = [&](std::size_t position) {
        auto* card = stage->view().card(stage->id(position));
        return card != nullptr &&
               list.getLocalBounds().intersects(list.getLocalArea(card, card->getLocalBounds()));
    };
    stage->typeInto(field(stage->card(20).output(), "Velocity"), "5");
    list.setScrollPosition(0);
    stage->editor().undo();
    EXPECT_TRUE(inSight(20));
    list.setScrollPosition(0);
    stage->editor().redo();
    EXPECT_TRUE(inSight(20));
    stage->editor().remove({stage->id(12)});
    list.setScrollPosition(0);
    stage->editor().undo();
    EXPECT_TRUE(inSight(12));
}

TEST_F(RuleListView, UndoAndRedoScrollToThePartThatTheyChangeOfACardHigherThanTheList) {
    open({"a", "b"}, {200, 200});
    auto& list = stage->view().list();
    auto& velocity = field(stage->card(1).output(), "Velocity");
    ASSERT_GT(stage->card(1).getHeight(), list.getHeight());
    auto changed = stage->entry(1);
    changed.output.velocity = GenericByteV2::Value{5};
    stage->editor().edit({stage->id(1)}, changed);
    for (const bool undoes : {true, false}) {
        list.setScrollPosition(0);
        undoes ? stage->editor().undo() : stage->editor().redo();
        EXPECT_TRUE(
            list.getLocalBounds().intersects(list.getLocalArea(&velocity, velocity.getLocalBounds())));
    }
}

TEST_F(RuleListView, KeysWalkFromGripToGrip) {
    open(Names(40, "x"), {820, 640});
    stage->press('-', juce::ModifierKeys::ctrlModifier);
    const auto at = [this] {
        const auto* focused = juce::Component::getCurrentlyFocusedComponent();
        for (std::size_t position = 0; position < 40; ++position) {
            auto* card = stage->view().card(stage->id(position));
            if (card != nullptr && &handleOf(*card) == focused) {
                return static_cast<int>(position);
            }
        }
        return -1;
    };
    handleOf(stage->card(0)).grabKeyboardFocus();
    EXPECT_TRUE(stage->press(juce::KeyPress::endKey));
    EXPECT_EQ(at(), 39);
    EXPECT_TRUE(stage->press(juce::KeyPress::pageUpKey));
    EXPECT_EQ(at(), 23);
    EXPECT_TRUE(stage->press(juce::KeyPress::homeKey));
    EXPECT_EQ(at(), 0);
    EXPECT_TRUE(stage->press(juce::KeyPress::pageUpKey));
    EXPECT_EQ(at(), 0);
    EXPECT_TRUE(stage->press(juce::KeyPress::pageDownKey));
    EXPECT_EQ(at(), 16);
    stage->press(juce::KeyPress::pageDownKey);
    EXPECT_TRUE(stage->press(juce::KeyPress::pageDownKey));
    EXPECT_EQ(at(), 39);
}

TEST_F(RuleListView, APageIsACardAtLeast) {
    open({"a", "b", "c"}, {200, 200});
    handleOf(stage->card(0)).grabKeyboardFocus();
    stage->press(juce::KeyPress::pageDownKey);
    EXPECT_TRUE(handleOf(stage->card(1)).hasKeyboardFocus(false));
    stage->press(juce::KeyPress::pageUpKey);
    EXPECT_TRUE(handleOf(stage->card(0)).hasKeyboardFocus(false));
}

TEST_F(RuleListView, AFieldThatIsHalfInSightStaysUnderThePointerWhileItIsClicked) {
    open({"a", "b", "c"}, {500, 250});
    auto& note = field(stage->card(0).output(), "Note");
    auto& list = stage->view().list();
    const auto bottom = list.getLocalArea(&note, note.boxArea()).getBottom();
    list.setScrollPosition(list.scrollPosition() + bottom - 6);
    const auto point = list.getLocalPoint(&note, note.boxArea().getCentre()).withY(3);
    const auto inWindow = stage->window.getLocalPoint(&list, point);
    mouse(stage->window, inWindow, {});
    mouse(stage->window, inWindow, juce::ModifierKeys::leftButtonModifier);
    settle();
    mouse(stage->window, inWindow, {});
    EXPECT_EQ(stage->menu().shownRows().size(), 128U);
}

TEST_F(RuleListView, WhatGetsTheFocusByKeysIsScrolledIntoSight) {
    open({"a", "b", "c"}, {500, 250});
    auto& list = stage->view().list();
    auto& send = stage->view().card(stage->id(1))->buttons().sendButton();
    EXPECT_FALSE(list.getLocalBounds().contains(list.getLocalArea(&send, send.getLocalBounds())));
    send.grabKeyboardFocus();
    settle();
    EXPECT_TRUE(list.getLocalBounds().contains(list.getLocalArea(&send, send.getLocalBounds())));
}

TEST_F(RuleListView, TabWalksThroughACardInOrder) {
    open({"a"});
    handleOf(stage->card(0)).grabKeyboardFocus();
    Names walked;
    for (int step = 0; step < 12; ++step) {
        key(stage->window, juce::KeyPress::tabKey);
        walked.push_back(juce::Component::getCurrentlyFocusedComponent()->getTitle().toStdString());
    }
    EXPECT_EQ(walked, (Names{"Message name", "On", "Learn the trigger", "Type", "Type", "Ch", "Note",
                             "Velocity", "Delay (ms)", "Duplicate", "Delete", "Send"}));
}

}  // namespace
}  // namespace quillo
