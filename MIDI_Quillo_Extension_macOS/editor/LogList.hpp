// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace quillo {

/// What the lists of the logs have in common: a row for each entry, on a ground of their own, with a ring
/// while they have the keyboard focus. Only the rows in sight are drawn. A list gets keys before its rows do.
/// The deriving class is the model, and sets itself as such once it is made. [main] only.
class LogList : public juce::Component, protected juce::ListBoxModel, private juce::KeyListener {
public:
    explicit LogList(const juce::String& title);
    ~LogList() override;

    /// Where a row is drawn, in this view.
    [[nodiscard]] juce::Rectangle<int> rowArea(int row) const;

    void resized() override;
    void paint(juce::Graphics& graphics) override;
    void paintOverChildren(juce::Graphics& graphics) override;
    void focusOfChildComponentChanged(FocusChangeType cause) override;

protected:
    using juce::Component::keyPressed;
    bool keyPressed(const juce::KeyPress& key, juce::Component* origin) override = 0;

    /// Where the rows lie, off the border and the focus ring.
    [[nodiscard]] juce::Rectangle<int> rowsArea() const;

    juce::ListBox list_;
};

}  // namespace quillo
