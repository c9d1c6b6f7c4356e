// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/MyTextInputImpl.hpp"
#include "editor/OverlayHost.hpp"
#include "editor/SearchField.hpp"

namespace quillo {

/// A click on a part of the editor that has no use for keys takes them from what lies in that part: JUCE
/// would give them to its first button, which a space bar then presses. What is open above the editor keeps
/// them. A click anywhere but in the field that is typed into finishes typing, after what was clicked has
/// acted; the search field is let go before. The editor, an `OverlayHost`, must outlive it. [main] only.
class ClickReleasesKeyboard final : public juce::MouseListener {
public:
    explicit ClickReleasesKeyboard(juce::Component& editor) : editor_(editor) {
        editor_.addMouseListener(this, true);
    }
    ~ClickReleasesKeyboard() override { editor_.removeMouseListener(this); }
    ClickReleasesKeyboard(const ClickReleasesKeyboard&) = delete;
    ClickReleasesKeyboard& operator=(const ClickReleasesKeyboard&) = delete;

    void mouseDown(const juce::MouseEvent& event) override {
        SearchField::letGoElsewhere(event.originalComponent);
        const auto* overlay = OverlayHost::find(editor_)->overlay();
        const bool isInOverlay = overlay != nullptr && (overlay == event.originalComponent ||
                                                        overlay->isParentOf(event.originalComponent));
        if (!isInOverlay &&
            event.originalComponent->isParentOf(juce::Component::getCurrentlyFocusedComponent())) {
            juce::Component::unfocusAllComponents();
        }
    }

    void mouseUp(const juce::MouseEvent& event) override {
        MyTextInputImpl::finishTypingElsewhere(event.originalComponent);
    }

private:
    juce::Component& editor_;
};

}  // namespace quillo
