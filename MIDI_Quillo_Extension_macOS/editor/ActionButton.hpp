// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/PreferredSize.hpp"

namespace quillo {

/// What the editor's buttons have in common. A click, or Space or Return while the button has the keyboard
/// focus, acts at once; the action may delete the button. A click leaves the focus where it is, so that the
/// keyboard stays where it was; but what is being typed into a field is taken first, and the field let go. A
/// key for a button that is scrolled out of sight brings it into sight and does no more.
///
/// The later clicks of a double click act only where the first one fell: after *Delete* the button of the
/// next card lies under the pointer, and is not meant. [main] only.
class ActionButton : public juce::Button, public PreferredSize {
public:
    /// `title` is what the button is called for those who do not see it.
    ActionButton(const juce::String& title, std::function<void()> action);

    /// What it says, and is called, from now on.
    void setLabel(const juce::String& label);

    bool keyPressed(const juce::KeyPress& key) override;
    void mouseDown(const juce::MouseEvent& event) override;
    void mouseDrag(const juce::MouseEvent& event) override;
    void mouseUp(const juce::MouseEvent& event) override;
    void mouseExit(const juce::MouseEvent& event) override;

protected:
    void clicked() override;

    /// The ring around a button with the keyboard focus.
    void paintFocusRing(juce::Graphics& graphics, float corner);

private:
    std::function<void()> action_;
    bool meant_ = false;  ///< the clicks that follow each other began on this button
};

}  // namespace quillo
