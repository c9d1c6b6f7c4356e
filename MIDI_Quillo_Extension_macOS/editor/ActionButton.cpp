// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/ActionButton.hpp"

#include <utility>

#include "editor/Environment.hpp"
#include "editor/FocusRing.hpp"
#include "editor/MyDragAndDropForEach.hpp"
#include "editor/MyTextInputImpl.hpp"

namespace quillo {

ActionButton::ActionButton(const juce::String& title, std::function<void()> action)
    : juce::Button(title), action_(std::move(action)) {
    setTitle(title);
    setWantsKeyboardFocus(true);
    setMouseClickGrabsKeyboardFocus(false);
}

void ActionButton::setLabel(const juce::String& label) {
    setTitle(label);
    setButtonText(label);
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

void ActionButton::mouseDown(const juce::MouseEvent& event) {
    meant_ = meant_ || event.getNumberOfClicks() == 1;
    if (meant_) {
        juce::Button::mouseDown(event);
    }
}

void ActionButton::mouseDrag(const juce::MouseEvent& event) {
    if (meant_) {
        juce::Button::mouseDrag(event);
    }
}

void ActionButton::mouseUp(const juce::MouseEvent& event) {
    if (meant_) {
        juce::Button::mouseUp(event);
    }
}

void ActionButton::mouseExit(const juce::MouseEvent& event) {
    meant_ = false;
    juce::Button::mouseExit(event);
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
        drawFocusRing(graphics, getLocalBounds(), corner, displayColour(environment<MyPrimaryColor>(*this)));
    }
}

}  // namespace quillo
