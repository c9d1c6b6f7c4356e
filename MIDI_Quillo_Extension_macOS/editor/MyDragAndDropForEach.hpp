// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/ItemSelection.hpp"
#include "editor/MyDragAndDropDropDelegate.hpp"
#include "editor/MyDragAndDropForEachItem.hpp"
#include "editor/RowGeometry.hpp"
#include "platform/UUID.hpp"

namespace quillo {

/// A scrolling list of rows of individual heights, which are dragged to new places by their handles. Only the
/// rows in sight and a few around them exist, so that a thousand items open and scroll like ten. A row
/// belongs to its item's identity: it stays the same view while it is moved, and as long as it has the
/// keyboard focus or is dragged it stays even out of sight. The keyboard of a row whose item goes is the
/// host's. Changes leave what is in sight where it is.
///
/// Items can be chosen together: they are dragged and moved together then. What else is done to them together
/// is the owner's.
///
///     list.makeRow = [&](const UUID& id) { return std::make_unique<Card>(id); };
///     list.heightOfRow = [&](const UUID& id, int width) { ... };
///     list.onMove = [&](const std::vector<UUID>& ids, std::size_t position) { editor.move(ids, position); };
///     list.setItems(ids);
///
/// Set the functions before the items. [main] only.
class MyDragAndDropForEach final : public juce::Component,
                                   private juce::ScrollBar::Listener,
                                   private juce::FocusChangeListener,
                                   private juce::Timer {
public:
    MyDragAndDropForEach();
    ~MyDragAndDropForEach() override;

    std::function<std::unique_ptr<juce::Component>(const UUID&)> makeRow;
    /// Asked once for each item, and again when the width or the row changes.
    std::function<int(const UUID&, int width)> heightOfRow;
    /// Items have been moved and now stand together from `newPosition` on. The list shows the new order
    /// already.
    std::function<void(const std::vector<UUID>& items, std::size_t newPosition)> onMove;
    /// Other items are chosen than before.
    std::function<void()> onSelection;

    /// The items from now on, each of them once. Rows of items that stay are kept.
    void setItems(std::vector<UUID> items);
    [[nodiscard]] const std::vector<UUID>& items() const { return items_; }
    /// Nothing for what is not among the items.
    [[nodiscard]] std::optional<std::size_t> positionOf(const UUID& item) const;

    /// The heights of these rows may have changed; their views stay.
    void refreshRows(const std::vector<UUID>& items);
    /// So may those of all rows, and of the footer.
    void refreshRows();
    /// The view made for an item, or null while there is none.
    [[nodiscard]] juce::Component* row(const UUID& item) const;

    /// Calls `use` with each view that there is and its item's position, in any order.
    void forEachRow(const std::function<void(std::size_t position, juce::Component& row)>& use) const;

    /// Scrolls just as far as it takes to see the whole row.
    void scrollTo(const UUID& item);
    /// Gives the keyboard to the first part of the row, and scrolls as far as it takes to see it.
    void focus(const UUID& item);
    /// The same with the row at a position, or the last one; where there are no rows, with what stands below.
    void focus(std::size_t position);
    /// Goes from a row to another one by Home, End, Page Up or Page Down; false for any other key.
    bool walk(const UUID& from, const juce::KeyPress& key);
    /// Scrolls the list in which a view lies, if there is one, as far as it takes to see the view. False when
    /// nothing had to be done: the view's centre is in sight.
    static bool bringIntoSight(juce::Component& view);
    void setScrollPosition(int position);
    [[nodiscard]] int scrollPosition() const { return scroll_; }

    /// What stands below the last row, and its height for a width. It must outlive the list.
    void setFooter(juce::Component& footer, std::function<int(int width)> height);

    /// The width that rows get.
    [[nodiscard]] int rowWidth() const;

    [[nodiscard]] const ItemSelection& selection() const { return selection_; }
    /// Chooses these items alone.
    void select(const std::vector<UUID>& items);

    /// The item in whose row the keyboard focus lies; nothing where it lies elsewhere.
    [[nodiscard]] std::optional<UUID> itemWithFocus() const;

    /// What clicks and keys on an item's handle choose.
    void click(const UUID& item, juce::ModifierKeys modifiers);
    /// Chooses as far as the item that stands `places` behind this one, where the handle has the focus then.
    void extendSelection(const UUID& item, int places);
    void selectAll();
    /// False when nothing was chosen.
    bool clearSelection();

    /// What the handles do; points are in this view.
    void startDrag(const UUID& item, juce::Point<int> point);
    void dragTo(juce::Point<int> point);
    void drop();
    void cancelDrag();
    [[nodiscard]] bool isDragging() const { return drag_.has_value(); }
    /// Moves an item, and those that are chosen with it, by so many places, as far as the list goes.
    void moveBy(const UUID& item, int places);
    /// Scrolls a little while something is dragged at an edge; the list calls this many times a second.
    void scrollWhileDragging();

    void resized() override;
    void paintOverChildren(juce::Graphics& graphics) override;
    void mouseDown(const juce::MouseEvent& event) override;
    void mouseWheelMove(const juce::MouseEvent& event, const juce::MouseWheelDetails& wheel) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    /// The topmost item in sight, and how far its top is scrolled out.
    struct Anchor {
        std::size_t position;
        UUID item;
        int offset;
    };
    struct Drag {
        UUID item;  ///< whose handle is held
        MyDragAndDropDropDelegate delegate;
        juce::Point<int> point;
        int grip;
        juce::Image picture;
    };

    void scrollBarMoved(juce::ScrollBar* bar, double start) override;
    void globalFocusChanged(juce::Component* focused) override;
    void timerCallback() override { scrollWhileDragging(); }

    /// Makes a change and puts what was in sight back to where it was.
    void keepingPlace(const std::function<void()>& change);
    [[nodiscard]] std::optional<Anchor> anchor() const;
    void scrollBack(const Anchor& anchor, const std::vector<UUID>& itemsBefore);
    void measure();
    void layOut();
    void layOutFooter();
    void showRowsInSight();
    void forgetRowsOutside(std::size_t first, std::size_t end);
    void showRow(std::size_t position);
    void move(const MyDragAndDropDropDelegate& delegate);
    void changeSelection(const std::function<void()>& change);
    void showDragged(bool dragged);
    void endDrag();
    void paintLiftedRow(juce::Graphics& graphics);
    void paintInsertionLine(juce::Graphics& graphics);
    void scrollToSee(int top, int bottom);
    void scrollToSee(const juce::Component& view);
    [[nodiscard]] std::optional<std::size_t> placeFrom(std::size_t position, const juce::KeyPress& key) const;
    [[nodiscard]] int contentHeight() const;
    [[nodiscard]] int greatestScroll() const;

    std::vector<UUID> items_;
    std::map<UUID, std::size_t> positions_;
    ItemSelection selection_;
    std::map<UUID, int> heights_;
    RowGeometry geometry_;
    std::map<UUID, std::unique_ptr<MyDragAndDropForEachItem>> rows_;
    juce::Component content_;
    juce::Component* footer_ = nullptr;
    std::function<int(int)> footerHeight_;
    juce::ScrollBar scrollBar_{true};
    int scroll_ = 0;
    int measuredWidth_ = 0;
    std::optional<Drag> drag_;
};

}  // namespace quillo
