// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>

#include <juce_gui_basics/juce_gui_basics.h>

namespace quillo {

/// A view above whose content menus and alerts open, inside its own window: applications that embed an editor
/// handle windows of its own badly. One overlay is open at a time, covers the whole view and follows its
/// size. While it is open it has the keyboard; afterwards the focus is where it was before. [main] only.
///
///     class MainView : public juce::Component, public OverlayHost {
///         MainView() : OverlayHost(*this) {}
///         ...
///     };
class OverlayHost : private juce::ComponentListener {
public:
    explicit OverlayHost(juce::Component& view);
    ~OverlayHost() override;
    OverlayHost(const OverlayHost&) = delete;
    OverlayHost& operator=(const OverlayHost&) = delete;

    /// Whether the user opens an overlay, or something that has happened.
    enum class Opens { asked, unasked };

    /// Opens `overlay` and closes the one that was open. What opens unasked takes the keyboard only when the
    /// window has it, and not from the host.
    void showOverlay(std::unique_ptr<juce::Component> overlay, Opens opens = Opens::asked);

    /// Called when a view under the overlay has got the keyboard: what opened while the window had none takes
    /// it.
    void takeKeyboardFromBelow();

    /// Deletes what is open. An overlay may close itself, and touches nothing of its own afterwards.
    void closeOverlay();

    /// Called after an overlay was closed and no other one has taken its place.
    std::function<void()> onOverlayClosed;

    /// What is open, or null.
    [[nodiscard]] juce::Component* overlay() const { return overlay_.get(); }

    [[nodiscard]] juce::Component& overlayView() const { return view_; }

    /// The nearest host around `view`, or null.
    [[nodiscard]] static OverlayHost* find(juce::Component& view);

private:
    void componentMovedOrResized(juce::Component& view, bool moved, bool resized) override;
    void componentBeingDeleted(juce::Component& view) override;
    void removeOverlay();
    void giveFocusBack();

    juce::Component& view_;
    std::unique_ptr<juce::Component> overlay_;
    bool awaitsWindow_ = false;  ///< what is open has the keyboard as soon as the window has it
    juce::Component::SafePointer<juce::Component> focusBefore_;
};

}  // namespace quillo
