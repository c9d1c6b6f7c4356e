// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/EditorText.hpp"
#include "editor/Environment.hpp"
#include "editor/MyTextButton.hpp"
#include "editor/OverlayHost.hpp"

namespace quillo {

/// An alert titled "Error", inside the editor's window. It covers the editor, and goes away by its button
/// "OK" only: clicked, or by Return, Space or Escape. What of its text cannot be seen is escaped; what has no
/// room is scrolled to by Up, Down, Page Up, Page Down, Home and End. [main] only.
class AlertView final : public juce::Component, public EnvironmentScope {
public:
    AlertView(const juce::String& message, std::function<void()> onOK);

    [[nodiscard]] const juce::String& message() const { return message_; }
    [[nodiscard]] MyTextButton& okButton() { return ok_; }

    void paint(juce::Graphics& graphics) override;
    void resized() override;
    bool keyPressed(const juce::KeyPress& key) override;
    void parentHierarchyChanged() override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    [[nodiscard]] juce::Rectangle<int> panel() const;
    [[nodiscard]] juce::Viewport& textsView() const;

    juce::String message_;
    std::function<void()> onOK_;
    MyTextButton ok_;
    EditorText text_;
};

/// Whether an alert is open there. Nothing else opens before it is dismissed.
[[nodiscard]] bool showsAlert(const OverlayHost& host);

}  // namespace quillo
