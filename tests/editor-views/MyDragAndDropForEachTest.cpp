// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyDragAndDropForEach.hpp"

#include <gtest/gtest.h>

#include <set>

#include "editor/MyDragAndDropForEachDragHandle.hpp"
#include "support/FindBelow.hpp"
#include "support/JuceEvents.hpp"
#include "support/OffscreenWindow.hpp"
#include "support/Pictures.hpp"

namespace quillo {
namespace {

using namespace test;

/// A row with a handle and something that takes the focus.
struct TestRow : juce::Component {
    explicit TestRow(int number) {
        setTitle("Row " + juce::String(number));
        field.setWantsKeyboardFocus(true);
        addAndMakeVisible(handle);
        addAndMakeVisible(field);
    }
    void resized() override {
        handle.setBounds(0, 0, 22, getHeight());
        field.setBounds(30, 5, 100, 20);
    }
    void paint(juce::Graphics& graphics) override { graphics.fillAll(juce::Colour(0xff303040)); }

    MyDragAndDropForEachDragHandle handle;
    juce::Component field;
};

struct ListDesk {
    OffscreenWindow window{300, 400};
    MyDragAndDropForEach list;
    std::vector<UUID> model;
    std::map<UUID, int> heights;
    int made = 0;
    int measured = 0;
    std::vector<std::size_t> moves;

    explicit ListDesk(std::size_t count) {
        while (model.size() < count) {
            heights[model.emplace_back()] = 60 + 20 * static_cast<int>(model.size() % 3);
        }
        list.makeRow = [this](const UUID&) { return std::make_unique<TestRow>(made++); };
        list.heightOfRow = [this](const UUID& id, int) {
            ++measured;
            return heights.at(id);
        };
        list.onMove = [this](const std::vector<UUID>& items, std::size_t position) {
            std::erase_if(model, [&items](const UUID& id) { return std::ranges::count(items, id) > 0; });
            model.insert(model.begin() + static_cast<std::ptrdiff_t>(position), items.begin(), items.end());
            moves.push_back(position);
            list.setItems(model);
        };
        window.show(list, {0, 0, 300, 400});
        list.setItems(model);
    }

    [[nodiscard]] TestRow* row(std::size_t position) const {
        return dynamic_cast<TestRow*>(list.row(model[position]));
    }
    /// Where a row is in the window.
    [[nodiscard]] juce::Rectangle<int> place(std::size_t position) const {
        return window.getLocalArea(row(position), row(position)->getLocalBounds());
    }
    [[nodiscard]] std::size_t rowsThatExist() const {
        return static_cast<std::size_t>(std::count_if(
            model.begin(), model.end(), [this](const UUID& id) { return list.row(id) != nullptr; }));
    }
    void remove(std::size_t position) {
        model.erase(model.begin() + static_cast<std::ptrdiff_t>(position));
        list.setItems(model);
    }
    juce::Point<int> grip(std::size_t position) const {
        return place(position).getTopLeft() + juce::Point<int>(10, 30);
    }
};

TEST(MyDragAndDropForEach, LaysItsRowsUnderOneAnother) {
    ListDesk desk(3);
    EXPECT_EQ(desk.place(0), juce::Rectangle<int>(12, 10, 268, 60));
    EXPECT_EQ(desk.place(1), juce::Rectangle<int>(12, 77, 268, 80));
    EXPECT_EQ(desk.place(2), juce::Rectangle<int>(12, 164, 268, 100));
    EXPECT_EQ(desk.list.rowWidth(), 268);
}

TEST(MyDragAndDropForEach, BuildsOnlyTheRowsInSightOfAThousand) {
    ListDesk desk(1000);
    EXPECT_LE(desk.made, 10);
    EXPECT_EQ(desk.measured, 1000);
    desk.list.scrollTo(desk.model[500]);
    EXPECT_NE(desk.row(500), nullptr);
    EXPECT_LE(desk.rowsThatExist(), 10U);
    EXPECT_EQ(desk.measured, 1000) << "Heights are remembered.";
    EXPECT_TRUE(desk.window.getLocalBounds().contains(desk.place(500)));
}

TEST(MyDragAndDropForEach, ScrollsByTheWheelAndStopsAtTheEnds) {
    ListDesk desk(20);
    wheel(desk.list, 0.5F);
    EXPECT_EQ(desk.list.scrollPosition(), 0);
    wheel(desk.list, -0.5F);
    EXPECT_EQ(desk.list.scrollPosition(), 120);
    desk.list.setScrollPosition(1'000'000);
    EXPECT_EQ(desk.place(19).getBottom(), 390);
    wheel(desk.list, -0.5F);
    EXPECT_EQ(desk.place(19).getBottom(), 390);
}

TEST(MyDragAndDropForEach, AClickOnItsScrollBarMovesNeitherTheKeyboardNorTheRows) {
    ListDesk desk(50);
    desk.list.setScrollPosition(1000);
    auto& bar = *findBelow<juce::ScrollBar>(desk.list);
    const auto thumb = bar.getCurrentRange();
    const auto middle = (thumb.getStart() + thumb.getEnd()) / 2 / bar.getMaximumRangeLimit();
    click(bar, {bar.getWidth() / 2, static_cast<int>(middle * bar.getHeight())});
    settle();
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr);
    EXPECT_EQ(desk.list.scrollPosition(), 1000);
}

TEST(MyDragAndDropForEach, ARowStaysTheSameViewWhileItsItemStays) {
    ListDesk desk(6);
    const auto* third = desk.row(2);
    desk.remove(0);
    EXPECT_EQ(desk.row(1), third);
    std::swap(desk.model[0], desk.model[1]);
    desk.list.setItems(desk.model);
    EXPECT_EQ(desk.row(0), third);
}

TEST(MyDragAndDropForEach, KeepsWhatIsInSightWhereItIs) {
    ListDesk desk(100);
    desk.list.setScrollPosition(1500);
    std::size_t seen = 0;
    while (desk.row(seen) == nullptr || desk.place(seen).getY() < 0) {
        ++seen;
    }
    const auto place = desk.place(seen);
    desk.remove(0);
    EXPECT_EQ(desk.place(seen - 1), place);
    desk.heights[desk.model[1]] += 200;
    desk.list.refreshRows({desk.model[1]});
    EXPECT_EQ(desk.place(seen - 1), place);
}

TEST(MyDragAndDropForEach, StaysAtTheTopWhenSomethingIsPutThere) {
    ListDesk desk(10);
    desk.heights[*desk.model.emplace(desk.model.begin())] = 50;
    desk.list.setItems(desk.model);
    EXPECT_EQ(desk.list.scrollPosition(), 0);
    EXPECT_EQ(desk.place(0).getY(), 10);
}

TEST(MyDragAndDropForEach, MeasuresARowAnewAndKeepsItsView) {
    ListDesk desk(4);
    const auto* first = desk.row(0);
    desk.heights[desk.model[0]] = 150;
    desk.list.refreshRows({desk.model[0]});
    EXPECT_EQ(desk.row(0), first);
    EXPECT_EQ(desk.place(0).getHeight(), 150);
    EXPECT_EQ(desk.place(1).getY(), 167);
}

TEST(MyDragAndDropForEach, MeasuresAnewForAnotherWidth) {
    ListDesk desk(50);
    desk.list.setSize(300, 300);
    EXPECT_EQ(desk.measured, 50);
    desk.list.setSize(200, 300);
    EXPECT_EQ(desk.measured, 100);
    EXPECT_EQ(desk.place(0).getWidth(), 168);
}

TEST(MyDragAndDropForEach, DraggingByTheHandleMovesARow) {
    ListDesk desk(4);
    const auto dragged = desk.model[0];
    drag(desk.window, desk.grip(0), {20, desk.place(1).getBottom()});
    EXPECT_EQ(desk.model[1], dragged);
    EXPECT_EQ(desk.moves, std::vector<std::size_t>{1});
    EXPECT_EQ(desk.list.items(), desk.model);
    drag(desk.window, desk.grip(1), {20, 0});
    EXPECT_EQ(desk.model[0], dragged);
}

TEST(MyDragAndDropForEach, ADropWhereTheRowWasMovesNothing) {
    ListDesk desk(4);
    const auto before = desk.model;
    drag(desk.window, desk.grip(1), desk.grip(1) + juce::Point<int>(5, 12));
    EXPECT_EQ(desk.model, before);
    EXPECT_TRUE(desk.moves.empty());
    EXPECT_FALSE(desk.list.isDragging());
}

TEST(MyDragAndDropForEach, ShowsWhereTheRowWouldGo) {
    ListDesk desk(4);
    dragAlong(desk.window, {desk.grip(0), {20, 150}, {20, desk.place(1).getBottom()}});
    ASSERT_TRUE(desk.list.isDragging());
    EXPECT_TRUE(desk.row(0)->handle.dragged());
    EXPECT_GT(pixelsLike(picture(desk.window), Palette().channelInput), 200);
    release(desk.window, {20, 200});
    EXPECT_EQ(pixelsLike(picture(desk.window), Palette().channelInput), 0);
}

TEST(MyDragAndDropForEach, EscapeGivesADragUp) {
    ListDesk desk(4);
    const auto before = desk.model;
    const auto end = juce::Point<int>(20, desk.place(2).getBottom());
    dragAlong(desk.window, {desk.grip(0), {20, 150}, end});
    key(desk.window, juce::KeyPress::escapeKey);
    EXPECT_FALSE(desk.list.isDragging());
    mouse(desk.window, end + juce::Point<int>(0, 5), juce::ModifierKeys::leftButtonModifier);
    EXPECT_FALSE(desk.list.isDragging()) << "The button is still down.";
    release(desk.window, end);
    EXPECT_EQ(desk.model, before);
}

TEST(MyDragAndDropForEach, ScrollsWhileSomethingIsDraggedAtAnEdge) {
    ListDesk desk(50);
    const auto dragged = desk.model[0];
    dragAlong(desk.window, {desk.grip(0), {20, 200}, {20, 398}});
    for (int frame = 0; frame < 100; ++frame) {
        desk.list.scrollWhileDragging();
    }
    EXPECT_GT(desk.list.scrollPosition(), 500);
    EXPECT_NE(desk.list.row(dragged), nullptr) << "What is dragged stays.";
    release(desk.window, {20, 398});
    EXPECT_GT(desk.moves.front(), 5U);
    EXPECT_EQ(std::set<UUID>(desk.model.begin(), desk.model.end()).size(), 50U);
}

TEST(MyDragAndDropForEach, ADragEndsWhenItsItemGoes) {
    ListDesk desk(4);
    dragAlong(desk.window, {desk.grip(0), {20, 150}, {20, 200}});
    desk.remove(0);
    EXPECT_FALSE(desk.list.isDragging());
    release(desk.window, {20, 200});
    EXPECT_EQ(desk.model.size(), 3U);
}

TEST(MyDragAndDropForEach, TheHandleMovesItsRowByKeys) {
    ListDesk desk(20);
    const auto moved = desk.model[0];
    const auto ctrl = juce::ModifierKeys::ctrlModifier;
    auto& handle = desk.row(0)->handle;
    handle.grabKeyboardFocus();
    EXPECT_FALSE(key(desk.window, juce::KeyPress::downKey));
    EXPECT_TRUE(key(desk.window, juce::KeyPress::upKey, ctrl));
    EXPECT_EQ(desk.model[0], moved) << "It is the first one.";
    for (int press = 0; press < 30; ++press) {
        key(desk.window, juce::KeyPress::downKey, press % 2 == 0 ? ctrl : juce::ModifierKeys::altModifier);
    }
    EXPECT_EQ(desk.model[19], moved);
    EXPECT_EQ(desk.moves.size(), 19U);
    EXPECT_TRUE(handle.hasKeyboardFocus(false));
    EXPECT_TRUE(desk.window.getLocalBounds().contains(desk.place(19)));
}

TEST(MyDragAndDropForEach, ARowWithTheFocusStaysOutOfSight) {
    ListDesk desk(200);
    auto* row = desk.row(0);
    row->field.grabKeyboardFocus();
    desk.list.setScrollPosition(8000);
    EXPECT_EQ(desk.row(0), row);
    EXPECT_TRUE(row->field.hasKeyboardFocus(false));
}

TEST(MyDragAndDropForEach, TabWalksThroughAllRowsAndScrollsToThem) {
    ListDesk desk(40);
    desk.row(0)->handle.grabKeyboardFocus();
    for (std::size_t row = 0; row < 40; ++row) {
        ASSERT_TRUE(desk.row(row)->handle.hasKeyboardFocus(false)) << row;
        key(desk.window, juce::KeyPress::tabKey);
        ASSERT_TRUE(desk.row(row)->field.hasKeyboardFocus(false)) << row;
        settle();
        EXPECT_TRUE(desk.window.getLocalBounds().intersects(desk.place(row)));
        key(desk.window, juce::KeyPress::tabKey);
    }
}

TEST(MyDragAndDropForEach, AFooterStandsBelowTheLastRow) {
    juce::Component footer;
    ListDesk desk(3);
    const auto* view = &footer;
    int height = 30;
    desk.list.setFooter(footer, [&height](int) { return height; });
    EXPECT_EQ(desk.window.getLocalArea(view, view->getLocalBounds()), juce::Rectangle<int>(12, 271, 268, 30));
    height = 300;
    desk.list.refreshRows();
    desk.list.setScrollPosition(1'000'000);
    EXPECT_EQ(desk.window.getLocalArea(view, view->getLocalBounds()).getBottom(), 390);
    desk.model.clear();
    desk.list.setItems({});
    EXPECT_EQ(desk.window.getLocalArea(view, view->getLocalBounds()).getY(), 10);
}

TEST(MyDragAndDropForEach, IsAListOfItemsToThoseWhoDoNotSeeIt) {
    ListDesk desk(3);
    EXPECT_EQ(desk.list.getAccessibilityHandler()->getRole(), juce::AccessibilityRole::list);
    auto* item = desk.row(0)->getParentComponent()->getAccessibilityHandler();
    EXPECT_EQ(item->getRole(), juce::AccessibilityRole::listItem);
    EXPECT_EQ(item->getTitle(), "Row 0");
    EXPECT_EQ(desk.row(0)->handle.getAccessibilityHandler()->getRole(), juce::AccessibilityRole::button);
    EXPECT_EQ(desk.row(0)->handle.getAccessibilityHandler()->getTitle(), "Move");
}

TEST(MyDragAndDropForEach, AnEmptyListIsFineAtEverySize) {
    ListDesk desk(0);
    for (const int size : {0, 1, 200, 1000}) {
        desk.list.setSize(size, size);
        EXPECT_EQ(desk.list.scrollPosition(), 0);
    }
}

/// A list of rows whose handles are clicked.
struct Clicks : ListDesk {
    Clicks() : ListDesk(4) {
        list.onSelection = [this] { ++changes; };
    }

    void click(std::size_t position, int modifiers = 0) {
        test::click(row(position)->handle, {5, 20}, 1, juce::ModifierKeys(modifiers));
    }
    void expectChosen(std::initializer_list<std::size_t> positions) const {
        std::vector<UUID> expected;
        for (const auto position : positions) {
            expected.push_back(model[position]);
        }
        EXPECT_EQ(list.selection().chosen(), expected);
    }
    bool press(int code, int modifiers = 0) { return key(window, code, juce::ModifierKeys(modifiers)); }

    int changes = 0;
};

constexpr int shift = juce::ModifierKeys::shiftModifier;
constexpr int ctrl = juce::ModifierKeys::ctrlModifier;

TEST(ChosenRows, AClickOnAHandleChoosesItsRowAloneAndGivesItTheFocus) {
    Clicks desk;
    desk.click(2);
    desk.expectChosen({2});
    EXPECT_TRUE(desk.row(2)->handle.hasKeyboardFocus(false));
    EXPECT_EQ(desk.list.itemWithFocus(), desk.model[2]);
    desk.click(0);
    desk.expectChosen({0});
    desk.click(0);
    EXPECT_EQ(desk.changes, 2);
}

TEST(ChosenRows, ShiftChoosesARangeAndCtrlOneMoreOrLess) {
    Clicks desk;
    desk.click(1);
    desk.click(3, shift);
    desk.expectChosen({1, 2, 3});
    desk.click(2, ctrl);
    desk.expectChosen({1, 3});
    desk.click(0, ctrl);
    desk.expectChosen({0, 1, 3});
}

TEST(ChosenRows, KeysExtendChooseAllAndNone) {
    Clicks desk;
    desk.row(1)->handle.grabKeyboardFocus();
    EXPECT_TRUE(desk.press(juce::KeyPress::downKey, shift));
    desk.expectChosen({1, 2});
    EXPECT_TRUE(desk.row(2)->handle.hasKeyboardFocus(false));
    EXPECT_TRUE(desk.press(juce::KeyPress::upKey, shift));
    EXPECT_TRUE(desk.press(juce::KeyPress::upKey, shift));
    desk.expectChosen({0, 1});
    EXPECT_TRUE(desk.press('a', ctrl));
    desk.expectChosen({0, 1, 2, 3});
    EXPECT_TRUE(desk.press(juce::KeyPress::escapeKey));
    desk.expectChosen({});
    EXPECT_FALSE(desk.press(juce::KeyPress::escapeKey)) << "It is for somebody else.";
}

TEST(ChosenRows, AreMovedTogetherByKeys) {
    Clicks desk;
    const auto items = desk.model;
    desk.click(1);
    desk.click(2, shift);
    EXPECT_TRUE(desk.press(juce::KeyPress::downKey, ctrl));
    EXPECT_EQ(desk.model, (std::vector<UUID>{items[0], items[3], items[1], items[2]}));
    EXPECT_TRUE(desk.press(juce::KeyPress::downKey, ctrl));
    EXPECT_EQ(desk.moves.size(), 1U) << "They are at the end.";
    EXPECT_TRUE(desk.press(juce::KeyPress::upKey, ctrl));
    EXPECT_TRUE(desk.press(juce::KeyPress::upKey, ctrl));
    EXPECT_EQ(desk.model, (std::vector<UUID>{items[1], items[2], items[0], items[3]}));
    desk.expectChosen({0, 1});
}

TEST(ChosenRows, AreDraggedTogetherByAnyOfTheirHandles) {
    Clicks desk;
    const auto items = desk.model;
    desk.click(0);
    desk.click(2, ctrl);
    desk.list.startDrag(items[2], {5, 180});
    desk.list.dragTo({5, 390});
    EXPECT_LT(desk.row(0)->getParentComponent()->getAlpha(), 1.0F);
    desk.list.drop();
    EXPECT_EQ(desk.model, (std::vector<UUID>{items[1], items[3], items[0], items[2]}));
    EXPECT_EQ(desk.row(2)->getParentComponent()->getAlpha(), 1.0F);
}

TEST(ChosenRows, OfRowsThatGoWhileTheyAreDraggedOnlyTheOthersAreMoved) {
    Clicks desk;
    const auto items = desk.model;
    desk.click(0);
    desk.click(1, ctrl);
    desk.list.startDrag(items[0], {5, 20});
    desk.list.dragTo({5, 390});
    std::vector<UUID> moved;
    desk.list.onMove = [&moved](const std::vector<UUID>& ids, std::size_t) { moved = ids; };
    desk.list.setItems({items[0], items[2], items[3]});
    desk.list.drop();
    EXPECT_EQ(moved, std::vector{items[0]});
    EXPECT_EQ(desk.list.items(), (std::vector<UUID>{items[2], items[3], items[0]}));
}

TEST(ChosenRows, ARowThatIsNotChosenIsDraggedAlone) {
    Clicks desk;
    const auto items = desk.model;
    desk.click(0);
    desk.list.startDrag(items[1], {5, 100});
    desk.list.dragTo({5, 390});
    desk.list.drop();
    EXPECT_EQ(desk.model, (std::vector<UUID>{items[0], items[2], items[3], items[1]}));
}

TEST(ChosenRows, AClickBesideAllRowsChoosesNone) {
    Clicks desk;
    desk.click(1);
    click(desk.list, {4, 395});
    desk.expectChosen({});
}

}  // namespace
}  // namespace quillo
