// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/Environment.hpp"
#include "editor/FieldView.hpp"
#include "editor/MyTextButton.hpp"

namespace quillo {

/// What a panel asks for, and what would come of it.
struct RunQuestion {
    struct Text {
        juce::String caption;
        juce::String text;
    };
    struct Outcome {
        juce::String count;  ///< "12 rules"
        juce::String words;
        std::function<void()> set;  ///< empty where the texts cannot be set
    };

    juce::String title;
    std::vector<Text> texts;
    std::function<Outcome(const juce::StringArray& texts)> outcome;
};

/// A small panel beside a field, in its colours: texts to type, what they would come to, and "Set". Return
/// sets, from anywhere in it; Escape and a click outside close. [main] only.
class RunOverlay final : public juce::Component, public EnvironmentScope {
public:
    /// Opens it in the host around `field`. Without a host, and over an alert, nothing opens.
    static void open(FieldView& field, RunQuestion question);

    RunOverlay(RunQuestion question, juce::Rectangle<int> anchor);

    [[nodiscard]] juce::TextEditor& text(std::size_t index) { return *texts_[index]; }
    [[nodiscard]] MyTextButton& setButton() { return set_; }
    [[nodiscard]] const RunQuestion::Outcome& outcome() const { return outcome_; }

    void paint(juce::Graphics& graphics) override;
    void resized() override;
    void mouseDown(const juce::MouseEvent& event) override;
    bool keyPressed(const juce::KeyPress& key) override;
    void focusGained(FocusChangeType cause) override;
    void parentHierarchyChanged() override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    void refresh();
    void dress(juce::TextEditor& text) const;
    void confirm();
    void close();
    [[nodiscard]] juce::Rectangle<int> inside() const { return panel_.reduced(padding); }

    static constexpr int padding = 10;

    RunQuestion question_;
    juce::Rectangle<int> anchor_;
    juce::Rectangle<int> panel_;
    std::vector<std::unique_ptr<juce::TextEditor>> texts_;
    MyTextButton set_;
    RunQuestion::Outcome outcome_;
};

}  // namespace quillo
