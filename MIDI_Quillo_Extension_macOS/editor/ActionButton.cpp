// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/ActionButton.hpp"

#include <utility>

#include "editor/Environment.hpp"
#include "editor/MyDragAndDropForEach.hpp"
#include "editor/MyTextInputImpl.hpp"
#include "editor/Style.hpp"

namespace quillo {

ActionButton::ActionButton(const juce::String& title, std::function<void()> action)
    : juce::Button(title), action_(std::move(action)) {
    setTitle(title);
    setWantsKeyboardFocus(true);
    setMouseClickGrabsKeyboardFocus(false);
}

bool ActionButton::keyPressed(const juce::KeyPress& key) {
    const bool acts =
        key == juce::KeyPress(juce::KeyPress::returnKey) || key == juce::KeyPress(juce::KeyPress::spaceKey);
    if (!acts || !isEnabled()) {
        return false;
    }
    if (!MyDragAndDropForEach::bringIntoSight(*this)) {
        clicked();
    }
    return true;
}

void ActionButton::clicked() {
    const auto action = action_;
    MyTextInputImpl::finishTypingElsewhere();
    if (action) {
        action();
    }
}

void ActionButton::paintFocusRing(juce::Graphics& graphics, float corner) {
    if (hasKeyboardFocus(false)) {
        graphics.setColour(displayColour(environment<MyPrimaryColor>(*this)));
        graphics.drawRoundedRectangle(getLocalBounds().toFloat().reduced(style::focusRing / 2), corner,
                                      style::focusRing);
    }
}

}  // namespace quillo
