// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyPicker.hpp"

#include <utility>

#include "editor/FieldAccessibility.hpp"
#include "editor/MyDragAndDropForEach.hpp"
#include "editor/MyTextInputImpl.hpp"

namespace quillo {

MyPickerImpl::MyPickerImpl(juce::String label) : FieldView(std::move(label)) {}

void MyPickerImpl::openMenu() {
    if (!isEnabled()) {
        return;
    }
    MyTextInputImpl::finishTypingElsewhere();
    FieldView::openMenu(rowLabels(), currentRow(), [this](std::size_t row) { pickRow(row); });
}

void MyPickerImpl::mouseUp(const juce::MouseEvent& event) {
    if (event.mouseWasClicked() && !event.mods.isPopupMenu() && boxArea().contains(event.getPosition())) {
        openMenu();
    }
}

bool MyPickerImpl::keyPressed(const juce::KeyPress& key) {
    const bool opens = key == juce::KeyPress::spaceKey || key == juce::KeyPress::returnKey ||
                       key == juce::KeyPress::upKey || key == juce::KeyPress::downKey;
    if (!opens || !isEnabled()) {
        return false;
    }
    if (!MyDragAndDropForEach::bringIntoSight(*this)) {
        openMenu();
    }
    return true;
}

std::unique_ptr<juce::AccessibilityHandler> MyPickerImpl::createAccessibilityHandler() {
    juce::AccessibilityActions actions;
    actions.addAction(juce::AccessibilityActionType::press, [this] { openMenu(); });
    actions.addAction(juce::AccessibilityActionType::showMenu, [this] { openMenu(); });
    return fieldAccessibility(*this, juce::AccessibilityRole::comboBox, std::move(actions), nullptr);
}

}  // namespace quillo
