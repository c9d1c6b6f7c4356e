// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyDragAndDropForEach.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "editor/Environment.hpp"
#include "editor/Style.hpp"

namespace quillo {
namespace {

/// Rows that exist above and below those in sight: Tab must find the next one.
constexpr std::size_t rowsAround = 2;

/// Points that a wheel turned by one unit scrolls.
constexpr float wheelDistance = 240;

/// Dragging this close to an edge scrolls, the faster the closer.
constexpr int edge = 40;
constexpr int framesPerSecond = 60;

/// The dragged row lets a little of what lies below it through.
constexpr float liftedAlpha = 0.9F;

/// Points to scroll in a frame while the pointer is at `y`.
int edgeSpeed(int y, int height) {
    const auto zone = std::min(edge, height / 4);
    if (y < zone) {
        return -(std::min(zone - y, 2 * zone) / 3 + 1);
    }
    return y > height - zone ? std::min(y - (height - zone), 2 * zone) / 3 + 1 : 0;
}

void focusFirstPart(juce::Component& view) {
    view.createKeyboardFocusTraverser()->getDefaultComponent(&view)->grabKeyboardFocus();
}

}  // namespace

MyDragAndDropForEach::MyDragAndDropForEach() {
    addAndMakeVisible(content_);
    content_.setInterceptsMouseClicks(false, true);
    addAndMakeVisible(scrollBar_);
    scrollBar_.setAutoHide(true);
    scrollBar_.setMouseClickGrabsKeyboardFocus(false);
    scrollBar_.addListener(this);
    juce::Desktop::getInstance().addFocusChangeListener(this);
}

MyDragAndDropForEach::~MyDragAndDropForEach() {
    juce::Desktop::getInstance().removeFocusChangeListener(this);
}

void MyDragAndDropForEach::setItems(std::vector<UUID> items) {
    if (items == items_) {
        return;
    }
    const auto before = items_;
    const auto place = anchor();
    items_ = std::move(items);
    positions_.clear();
    for (std::size_t position = 0; position < items_.size(); ++position) {
        positions_[items_[position]] = position;
    }
    std::erase_if(heights_, [this](const auto& entry) { return !positions_.contains(entry.first); });
    selection_.follow(items_);
    if (drag_ && !positions_.contains(drag_->item)) {
        endDrag();
    }
    measure();
    if (place) {
        scrollBack(*place, before);
    }
    layOut();
    if (drag_) {
        std::erase_if(drag_->delegate.draggedItems,
                      [this](const UUID& id) { return !positions_.contains(id); });
        dragTo(drag_->point);
    }
}

void MyDragAndDropForEach::keepingPlace(const std::function<void()>& change) {
    const auto place = anchor();
    change();
    measure();
    if (place) {
        scrollBack(*place, items_);
    }
    layOut();
}

void MyDragAndDropForEach::refreshRows(const std::vector<UUID>& items) {
    keepingPlace([&] { std::ranges::for_each(items, [this](const UUID& item) { heights_.erase(item); }); });
}

void MyDragAndDropForEach::refreshRows() {
    keepingPlace([&] { heights_.clear(); });
}

juce::Component* MyDragAndDropForEach::row(const UUID& item) const {
    const auto found = rows_.find(item);
    return found != rows_.end() ? &found->second->content() : nullptr;
}

void MyDragAndDropForEach::forEachRow(
    const std::function<void(std::size_t position, juce::Component& row)>& use) const {
    for (const auto& [item, row] : rows_) {
        if (const auto position = positionOf(item)) {
            use(*position, row->content());
        }
    }
}

std::optional<std::size_t> MyDragAndDropForEach::positionOf(const UUID& item) const {
    const auto found = positions_.find(item);
    return found != positions_.end() ? std::optional(found->second) : std::nullopt;
}

std::optional<MyDragAndDropForEach::Anchor> MyDragAndDropForEach::anchor() const {
    const auto first = geometry_.firstBelow(scroll_);
    if (scroll_ == 0 || first >= items_.size()) {
        return std::nullopt;
    }
    return Anchor{first, items_[first], scroll_ - geometry_.top(first)};
}

void MyDragAndDropForEach::scrollBack(const Anchor& anchor, const std::vector<UUID>& itemsBefore) {
    for (auto position = anchor.position; position < itemsBefore.size(); ++position) {
        if (const auto now = positionOf(itemsBefore[position])) {
            scroll_ = geometry_.top(*now) + (position == anchor.position ? anchor.offset : 0);
            return;
        }
    }
}

int MyDragAndDropForEach::rowWidth() const {
    return std::max(0, getWidth() - 2 * style::listMargin - style::scrollBarWidth);
}

void MyDragAndDropForEach::measure() {
    if (measuredWidth_ != rowWidth()) {
        measuredWidth_ = rowWidth();
        heights_.clear();
    }
    std::vector<int> heights;
    heights.reserve(items_.size());
    for (const auto& item : items_) {
        auto known = heights_.find(item);
        if (known == heights_.end()) {
            known = heights_.emplace(item, heightOfRow(item, measuredWidth_)).first;
        }
        heights.push_back(known->second);
    }
    geometry_ = RowGeometry(heights, style::listTopMargin, style::cardGap);
}

int MyDragAndDropForEach::contentHeight() const {
    const auto footer = footer_ != nullptr ? style::cardGap + footerHeight_(rowWidth()) : 0;
    return geometry_.bottom() + footer + style::listTopMargin;
}

int MyDragAndDropForEach::greatestScroll() const {
    return std::max(0, contentHeight() - getHeight());
}

void MyDragAndDropForEach::layOut() {
    const auto height = contentHeight();
    scroll_ = std::clamp(scroll_, 0, greatestScroll());
    content_.setBounds(0, -scroll_, getWidth() - style::scrollBarWidth, std::max(height, getHeight()));
    scrollBar_.setRangeLimits(0, height, juce::dontSendNotification);
    scrollBar_.setCurrentRange(scroll_, getHeight(), juce::dontSendNotification);
    showRowsInSight();
    layOutFooter();
    repaint();
}

void MyDragAndDropForEach::layOutFooter() {
    if (footer_ != nullptr) {
        const auto width = rowWidth();
        const auto gap = items_.empty() ? 0 : style::cardGap;
        footer_->setBounds(style::listMargin, geometry_.bottom() + gap, width, footerHeight_(width));
    }
}

void MyDragAndDropForEach::showRowsInSight() {
    if (getHeight() == 0) {
        return;
    }
    const auto firstInSight = geometry_.firstBelow(scroll_);
    const auto lastInSight = geometry_.firstBelow(scroll_ + getHeight());
    const auto first = firstInSight - std::min(firstInSight, rowsAround);
    const auto end = std::min(lastInSight + rowsAround + 1, items_.size());
    forgetRowsOutside(first, end);
    for (auto position = first; position < end; ++position) {
        showRow(position);
    }
}

/// JUCE would give the keyboard of a row that goes to another one.
void MyDragAndDropForEach::forgetRowsOutside(std::size_t first, std::size_t end) {
    std::vector<std::unique_ptr<MyDragAndDropForEachItem>> forgotten;
    for (auto entry = rows_.begin(); entry != rows_.end();) {
        const auto position = positionOf(entry->first);
        const bool inSight = position && *position >= first && *position < end;
        const bool inUse =
            position && (entry->second->hasKeyboardFocus(true) || (drag_ && drag_->item == entry->first));
        if (inSight || inUse) {
            ++entry;
            continue;
        }
        forgotten.push_back(std::move(entry->second));
        entry = rows_.erase(entry);
    }
    if (std::ranges::any_of(forgotten, [](const auto& row) { return row->hasKeyboardFocus(true); })) {
        unfocusAllComponents();
    }
}

void MyDragAndDropForEach::showRow(std::size_t position) {
    auto& row = rows_[items_[position]];
    if (row == nullptr) {
        row = std::make_unique<MyDragAndDropForEachItem>(items_[position], makeRow(items_[position]));
        content_.addAndMakeVisible(*row);
    }
    const auto top = geometry_.top(position);
    row->setBounds(style::listMargin, top, rowWidth(), geometry_.bottom(position) - top);
}

void MyDragAndDropForEach::setScrollPosition(int position) {
    const auto allowed = std::clamp(position, 0, greatestScroll());
    if (allowed != scroll_) {
        scroll_ = allowed;
        layOut();
    }
}

void MyDragAndDropForEach::scrollToSee(int top, int bottom) {
    const auto lowest = bottom + style::listTopMargin - getHeight();
    const auto highest = top - style::listTopMargin;
    setScrollPosition(std::min(std::max(scroll_, lowest), highest));
}

void MyDragAndDropForEach::scrollTo(const UUID& item) {
    if (const auto position = positionOf(item)) {
        scrollToSee(geometry_.top(*position), geometry_.bottom(*position));
    }
}

void MyDragAndDropForEach::focus(const UUID& item) {
    scrollTo(item);
    if (auto* view = row(item)) {
        focusFirstPart(*view);
    }
}

void MyDragAndDropForEach::focus(std::size_t position) {
    if (!items_.empty()) {
        focus(items_[std::min(position, items_.size() - 1)]);
    } else if (footer_ != nullptr) {
        focusFirstPart(*footer_);
    }
}

bool MyDragAndDropForEach::walk(const UUID& from, const juce::KeyPress& key) {
    const auto position = positionOf(from);
    const auto target = position ? placeFrom(*position, key) : std::nullopt;
    if (target) {
        focus(items_[*target]);
    }
    return target.has_value();
}

/// A page is as much as is in sight, but a row at least.
std::optional<std::size_t> MyDragAndDropForEach::placeFrom(std::size_t position,
                                                           const juce::KeyPress& key) const {
    const auto last = items_.size() - 1;
    if (key == juce::KeyPress(juce::KeyPress::homeKey)) {
        return 0;
    }
    if (key == juce::KeyPress(juce::KeyPress::endKey)) {
        return last;
    }
    if (key == juce::KeyPress(juce::KeyPress::pageDownKey)) {
        const auto below = geometry_.firstBelow(geometry_.top(position) + getHeight());
        return std::min(last, std::max(below - std::min<std::size_t>(below, 1), position + 1));
    }
    if (key == juce::KeyPress(juce::KeyPress::pageUpKey)) {
        const auto above = geometry_.firstBelow(geometry_.bottom(position) - getHeight()) + 1;
        return std::min(above, position - std::min<std::size_t>(position, 1));
    }
    return std::nullopt;
}

void MyDragAndDropForEach::scrollToSee(const juce::Component& view) {
    const auto area = content_.getLocalArea(&view, view.getLocalBounds());
    scrollToSee(area.getY(), area.getBottom());
}

bool MyDragAndDropForEach::bringIntoSight(juce::Component& view) {
    auto* list = view.findParentComponentOfClass<MyDragAndDropForEach>();
    if (list == nullptr) {
        return false;
    }
    const auto centre = list->getLocalPoint(&view, view.getLocalBounds().getCentre());
    if (list->getLocalBounds().contains(centre)) {
        return false;
    }
    const auto before = list->scroll_;
    list->scrollToSee(view);
    return list->scroll_ != before;
}

void MyDragAndDropForEach::setFooter(juce::Component& footer, std::function<int(int)> height) {
    footer_ = &footer;
    footerHeight_ = std::move(height);
    content_.addAndMakeVisible(footer);
    layOut();
}

void MyDragAndDropForEach::resized() {
    scrollBar_.setBounds(getLocalBounds().removeFromRight(style::scrollBarWidth));
    if (measuredWidth_ != rowWidth()) {
        keepingPlace([] {});
    } else {
        layOut();
    }
}

/// Beside all rows.
void MyDragAndDropForEach::mouseDown(const juce::MouseEvent& /*event*/) {
    clearSelection();
}

void MyDragAndDropForEach::mouseWheelMove(const juce::MouseEvent& event,
                                          const juce::MouseWheelDetails& wheel) {
    if (greatestScroll() == 0 || event.mods.isCommandDown()) {
        juce::Component::mouseWheelMove(event, wheel);
        return;
    }
    setScrollPosition(scroll_ - static_cast<int>(std::lround(wheel.deltaY * wheelDistance)));
}

void MyDragAndDropForEach::scrollBarMoved(juce::ScrollBar* /*bar*/, double start) {
    setScrollPosition(static_cast<int>(std::lround(start)));
}

void MyDragAndDropForEach::globalFocusChanged(juce::Component* focused) {
    if (focused != nullptr && content_.isParentOf(focused) && !isDragging()) {
        scrollToSee(*focused);
    }
}

void MyDragAndDropForEach::startDrag(const UUID& item, juce::Point<int> point) {
    const auto position = positionOf(item);
    const auto row = rows_.find(item);
    if (!position || row == rows_.end()) {
        return;
    }
    const auto scale = juce::Component::getApproximateScaleFactorForComponent(this);
    auto picture = row->second->createComponentSnapshot(row->second->getLocalBounds(), true, 2 * scale);
    const auto together = selection_.togetherWith(item);
    drag_ = Drag{item,
                 {{together.begin(), together.end()}, *position},
                 point,
                 point.y + scroll_ - geometry_.top(*position),
                 std::move(picture)};
    showDragged(true);
    startTimerHz(framesPerSecond);
    repaint();
}

void MyDragAndDropForEach::dragTo(juce::Point<int> point) {
    if (drag_) {
        drag_->point = point;
        drag_->delegate.gap = geometry_.gapAt(point.y + scroll_);
        repaint();
    }
}

void MyDragAndDropForEach::scrollWhileDragging() {
    if (drag_) {
        if (const auto speed = edgeSpeed(drag_->point.y, getHeight()); speed != 0) {
            setScrollPosition(scroll_ + speed);
            dragTo(drag_->point);
        }
    }
}

void MyDragAndDropForEach::drop() {
    if (drag_) {
        const auto delegate = drag_->delegate;
        endDrag();
        move(delegate);
    }
}

void MyDragAndDropForEach::cancelDrag() {
    endDrag();
    layOut();
}

void MyDragAndDropForEach::endDrag() {
    stopTimer();
    if (drag_) {
        showDragged(false);
        drag_.reset();
    }
    repaint();
}

void MyDragAndDropForEach::showDragged(bool dragged) {
    for (const auto& item : drag_->delegate.draggedItems) {
        if (const auto row = rows_.find(item); row != rows_.end()) {
            row->second->setDragged(dragged);
        }
    }
}

void MyDragAndDropForEach::changeSelection(const std::function<void()>& change) {
    const auto before = selection_.chosen();
    change();
    if (selection_.chosen() != before && onSelection) {
        onSelection();
    }
}

void MyDragAndDropForEach::select(const std::vector<UUID>& items) {
    changeSelection([&] { selection_.chooseAll(items); });
}

void MyDragAndDropForEach::selectAll() {
    changeSelection([this] { selection_.chooseAll(); });
}

bool MyDragAndDropForEach::clearSelection() {
    const bool wasEmpty = selection_.isEmpty();
    changeSelection([this] { selection_.clear(); });
    return !wasEmpty;
}

void MyDragAndDropForEach::click(const UUID& item, juce::ModifierKeys modifiers) {
    changeSelection([&] {
        if (modifiers.isShiftDown()) {
            selection_.extendTo(item);
        } else if (modifiers.isCommandDown()) {
            selection_.toggle(item);
        } else {
            selection_.choose(item);
        }
    });
}

void MyDragAndDropForEach::extendSelection(const UUID& item, int places) {
    const auto position = positionOf(item);
    if (!position) {
        return;
    }
    const auto wanted = static_cast<std::ptrdiff_t>(*position) + places;
    const auto next =
        items_[static_cast<std::size_t>(std::clamp<std::ptrdiff_t>(wanted, 0, std::ssize(items_) - 1))];
    changeSelection([&] {
        if (!selection_.contains(item)) {
            selection_.choose(item);
        }
        selection_.extendTo(next);
    });
    focus(next);
}

std::optional<UUID> MyDragAndDropForEach::itemWithFocus() const {
    const auto* focused = juce::Component::getCurrentlyFocusedComponent();
    const auto* row =
        focused != nullptr ? focused->findParentComponentOfClass<MyDragAndDropForEachItem>() : nullptr;
    return row != nullptr && isParentOf(row) ? std::optional(row->item()) : std::nullopt;
}

/// `item` may be one of the list's own, which are others after the move.
void MyDragAndDropForEach::moveBy(const UUID& item, int places) {
    const auto moved = item;
    const auto together = selection_.togetherWith(item);
    const auto first = positionOf(together.front());
    const auto last = positionOf(together.back());
    if (!first || !last) {
        return;
    }
    const auto wanted = static_cast<std::ptrdiff_t>(places > 0 ? *last + 1 : *first) + places;
    const auto gap = std::clamp<std::ptrdiff_t>(wanted, 0, std::ssize(items_));
    move({{together.begin(), together.end()}, static_cast<std::size_t>(gap)});
    scrollTo(moved);
}

void MyDragAndDropForEach::move(const MyDragAndDropDropDelegate& delegate) {
    if (const auto position = delegate.newPosition(items_)) {
        const auto place = scroll_;
        setItems(delegate.itemsAfterDrop(items_));
        setScrollPosition(place);
        if (onMove) {
            const auto first = items_.begin() + static_cast<std::ptrdiff_t>(*position);
            onMove({first, first + std::ssize(delegate.draggedItems)}, *position);
        }
    }
}

void MyDragAndDropForEach::paintOverChildren(juce::Graphics& graphics) {
    if (drag_) {
        paintLiftedRow(graphics);
        paintInsertionLine(graphics);
    }
}

void MyDragAndDropForEach::paintLiftedRow(juce::Graphics& graphics) {
    const auto position = positionOf(drag_->item);
    const auto height = geometry_.bottom(*position) - geometry_.top(*position);
    const juce::Rectangle<int> lifted(style::listMargin, drag_->point.y - drag_->grip, rowWidth(), height);
    juce::DropShadow(juce::Colours::black.withAlpha(0.5F), 12, {0, 3}).drawForRectangle(graphics, lifted);
    graphics.setOpacity(liftedAlpha);
    graphics.drawImage(drag_->picture, lifted.toFloat());
}

void MyDragAndDropForEach::paintInsertionLine(juce::Graphics& graphics) {
    if (drag_->delegate.newPosition(items_)) {
        const auto y = static_cast<float>(geometry_.gapCentre(drag_->delegate.gap) - scroll_);
        const auto left = static_cast<float>(style::listMargin);
        graphics.setColour(displayColour(environment<PaletteKey>(*this).channelInput));
        graphics.fillRoundedRectangle(left, y - 1.5F, static_cast<float>(rowWidth()), 3, 1.5F);
    }
}

std::unique_ptr<juce::AccessibilityHandler> MyDragAndDropForEach::createAccessibilityHandler() {
    return std::make_unique<juce::AccessibilityHandler>(*this, juce::AccessibilityRole::list);
}

}  // namespace quillo
