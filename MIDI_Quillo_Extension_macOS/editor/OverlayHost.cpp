// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/OverlayHost.hpp"

#include <utility>

namespace quillo {

OverlayHost::OverlayHost(juce::Component& view) : view_(view) {
    view_.addComponentListener(this);
}

OverlayHost::~OverlayHost() {
    view_.removeComponentListener(this);
}

void OverlayHost::showOverlay(std::unique_ptr<juce::Component> overlay, Opens opens) {
    removeOverlay();
    focusBefore_ = juce::Component::getCurrentlyFocusedComponent();
    overlay_ = std::move(overlay);
    overlay_->setAlwaysOnTop(true);
    overlay_->setBounds(view_.getLocalBounds());
    view_.addAndMakeVisible(*overlay_);
    const auto* window = view_.getPeer();
    awaitsWindow_ = opens == Opens::unasked && (window == nullptr || !window->isFocused());
    if (!awaitsWindow_) {
        overlay_->grabKeyboardFocus();
    }
}

void OverlayHost::closeOverlay() {
    if (overlay_ == nullptr) {
        return;
    }
    removeOverlay();
    if (onOverlayClosed) {
        onOverlayClosed();
    }
}

void OverlayHost::removeOverlay() {
    if (const auto closing = std::move(overlay_)) {
        const bool hadFocus = closing->hasKeyboardFocus(true);
        view_.removeChildComponent(closing.get());
        if (hadFocus) {
            giveFocusBack();
        }
    }
}

void OverlayHost::giveFocusBack() {
    if (focusBefore_ != nullptr && focusBefore_->isShowing()) {
        focusBefore_->grabKeyboardFocus();
    } else {
        juce::Component::unfocusAllComponents();
    }
}

OverlayHost* OverlayHost::find(juce::Component& view) {
    for (auto* component = &view; component != nullptr; component = component->getParentComponent()) {
        if (auto* host = dynamic_cast<OverlayHost*>(component)) {
            return host;
        }
    }
    return nullptr;
}

void OverlayHost::componentMovedOrResized(juce::Component& view, bool /*moved*/, bool resized) {
    if (resized && overlay_ != nullptr) {
        overlay_->setBounds(view.getLocalBounds());
    }
}

/// A window that gets the keyboard gives it to the view that had it last.
void OverlayHost::takeKeyboardFromBelow() {
    if (overlay_ != nullptr && std::exchange(awaitsWindow_, false)) {
        focusBefore_ = juce::Component::getCurrentlyFocusedComponent();
        overlay_->grabKeyboardFocus();
    }
}

void OverlayHost::componentBeingDeleted(juce::Component& /*view*/) {
    overlay_.reset();
}

}  // namespace quillo
