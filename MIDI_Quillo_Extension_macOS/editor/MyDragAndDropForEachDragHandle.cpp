// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyDragAndDropForEachDragHandle.hpp"

#include <utility>

#include "editor/Environment.hpp"
#include "editor/FocusRing.hpp"
#include "editor/Icons.hpp"
#include "editor/MyDragAndDropForEach.hpp"
#include "editor/MyDragAndDropForEachItem.hpp"
#include "editor/Style.hpp"

namespace quillo {

MyDragAndDropForEachDragHandle::MyDragAndDropForEachDragHandle(std::function<void()> onOtherForm)
    : onOtherForm_(std::move(onOtherForm)) {
    setTitle("Move");
    setWantsKeyboardFocus(true);
    setMouseClickGrabsKeyboardFocus(false);
    setMouseCursor(juce::MouseCursor::DraggingHandCursor);
}

bool MyDragAndDropForEachDragHandle::isOneFocused() {
    return dynamic_cast<MyDragAndDropForEachDragHandle*>(getCurrentlyFocusedComponent()) != nullptr;
}

MyDragAndDropForEach* MyDragAndDropForEachDragHandle::list() const {
    return findParentComponentOfClass<MyDragAndDropForEach>();
}

void MyDragAndDropForEachDragHandle::setLit(bool lit) {
    if (std::exchange(lit_, lit) != lit) {
        repaint();
    }
}

/// The dark one on a ground in colour.
juce::Colour MyDragAndDropForEachDragHandle::ink(bool strong) const {
    const auto palette = environment<PaletteKey>(*this);
    if (lit_) {
        return displayColour(palette.background);
    }
    return displayColour(strong ? palette.primaryText : palette.secondaryText);
}

void MyDragAndDropForEachDragHandle::paint(juce::Graphics& graphics) {
    const auto area = getLocalBounds().toFloat();
    drawIcon(graphics, IconName::dragHandle, area.withSizeKeepingCentre(style::iconSize, style::iconSize),
             ink(dragged_ || isMouseOver()));
    if (hasKeyboardFocus(false) && !dragged_) {
        drawFocusRing(graphics, getLocalBounds(), style::cardCorner, ink(true));
    }
}

void MyDragAndDropForEachDragHandle::mouseEnter(const juce::MouseEvent& /*event*/) {
    repaint();
}

void MyDragAndDropForEachDragHandle::mouseExit(const juce::MouseEvent& /*event*/) {
    repaint();
}

void MyDragAndDropForEachDragHandle::focusGained(FocusChangeType /*cause*/) {
    repaint();
}

void MyDragAndDropForEachDragHandle::focusLost(FocusChangeType /*cause*/) {
    repaint();
}

void MyDragAndDropForEachDragHandle::begin(const juce::MouseEvent& event) {
    const auto* row = findParentComponentOfClass<MyDragAndDropForEachItem>();
    if (row == nullptr || givenUp_ || !event.mouseWasDraggedSinceMouseDown()) {
        return;
    }
    dragged_ = true;
    grabKeyboardFocus();
    list()->startDrag(row->item(), event.getEventRelativeTo(list()).getMouseDownPosition());
}

void MyDragAndDropForEachDragHandle::mouseDrag(const juce::MouseEvent& event) {
    if (list() == nullptr) {
        return;
    }
    if (!dragged_) {
        begin(event);
    }
    if (dragged_) {
        list()->dragTo(event.getEventRelativeTo(list()).getPosition());
    }
}

void MyDragAndDropForEachDragHandle::mouseUp(const juce::MouseEvent& event) {
    const bool wasGivenUp = std::exchange(givenUp_, false);
    if (dragged_) {
        end();
        list()->drop();
    } else if (const auto* row = findParentComponentOfClass<MyDragAndDropForEachItem>();
               row != nullptr && list() != nullptr && !wasGivenUp && !event.mouseWasDraggedSinceMouseDown()) {
        grabKeyboardFocus();
        list()->click(row->item(), event.mods);
    }
}

void MyDragAndDropForEachDragHandle::end() {
    dragged_ = false;
    repaint();
}

void MyDragAndDropForEachDragHandle::mouseDoubleClick(const juce::MouseEvent& /*event*/) {
    askForOtherForm();
}

bool MyDragAndDropForEachDragHandle::askForOtherForm() {
    if (onOtherForm_ && !dragged_) {
        onOtherForm_();
    }
    return static_cast<bool>(onOtherForm_);
}

bool MyDragAndDropForEachDragHandle::keyPressed(const juce::KeyPress& key) {
    if (dragged_ && key == juce::KeyPress::escapeKey) {
        givenUp_ = true;
        end();
        list()->cancelDrag();
        return true;
    }
    if (key == juce::KeyPress(juce::KeyPress::returnKey)) {
        return MyDragAndDropForEach::bringIntoSight(*this) || askForOtherForm();
    }
    const auto* row = findParentComponentOfClass<MyDragAndDropForEachItem>();
    if (list() == nullptr || row == nullptr) {
        return false;
    }
    const UUID item = row->item();
    if (list()->walk(item, key)) {
        return true;
    }
    const auto action = actionFor(key, item);
    if (action && !MyDragAndDropForEach::bringIntoSight(*this)) {
        action();
    }
    return action != nullptr;
}

/// What a key does to the item; null for a key that does nothing.
std::function<void()> MyDragAndDropForEachDragHandle::actionFor(const juce::KeyPress& key, const UUID& item) {
    const auto modifiers = key.getModifiers();
    const bool up = key.isKeyCode(juce::KeyPress::upKey);
    const int places = up ? -1 : 1;
    auto& items = *list();
    if (up || key.isKeyCode(juce::KeyPress::downKey)) {
        if (modifiers.isAltDown() || modifiers.isCtrlDown()) {
            return [&items, item, places] { items.moveBy(item, places); };
        }
        if (modifiers.isShiftDown()) {
            return [&items, item, places] { items.extendSelection(item, places); };
        }
    }
    if (key == juce::KeyPress('a', juce::ModifierKeys::commandModifier, 0)) {
        return [&items] { items.selectAll(); };
    }
    if (key == juce::KeyPress::escapeKey && !items.selection().isEmpty()) {
        return [&items] { items.clearSelection(); };
    }
    return nullptr;
}

std::unique_ptr<juce::AccessibilityHandler> MyDragAndDropForEachDragHandle::createAccessibilityHandler() {
    return std::make_unique<juce::AccessibilityHandler>(*this, juce::AccessibilityRole::button);
}

}  // namespace quillo
