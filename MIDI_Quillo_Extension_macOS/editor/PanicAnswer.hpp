// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/Environment.hpp"
#include "editor/MyCheckBox.hpp"
#include "editor/MyIconButton.hpp"

namespace quillo {

/// Says over the list of rules what a panic did, and asks whether notes are to end by themselves when rules
/// change. It takes the keyboard from nobody, and goes after a while, unless the pointer is over it or it has
/// the keyboard focus; or by its cross. [main] only.
class PanicAnswer final : public juce::Component, public EnvironmentScope {
public:
    /// After how many seconds it goes.
    static constexpr double time = 12;

    struct Actions {
        std::function<void(bool notesEnd)> onNotesEnd;
        std::function<void()> onClose;
    };

    PanicAnswer(bool notesEnd, Actions actions);

    /// Appears with these words, or announces them again.
    void show(const juce::String& words);
    [[nodiscard]] const juce::String& words() const { return words_; }
    /// Lets so many seconds pass.
    void advance(double seconds);

    /// Takes its place at the top of this area, as large as its words need.
    void placeIn(juce::Rectangle<int> area);

    [[nodiscard]] MyCheckBox& notesEnd() { return notesEnd_; }
    [[nodiscard]] MyIconButton& closeButton() { return close_; }

    void resized() override;
    void paint(juce::Graphics& graphics) override;
    void parentHierarchyChanged() override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    Actions actions_;
    juce::String words_;
    double left_ = 0;  ///< seconds
    MyCheckBox notesEnd_;
    MyIconButton close_;
};

}  // namespace quillo
