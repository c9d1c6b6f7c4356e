// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/PreferredSize.hpp"

namespace quillo {

/// What the editor's buttons have in common. A click, or Space or Return while the button has the keyboard
/// focus, acts at once; the action may delete the button. A click leaves the focus where it is, so that the
/// keyboard stays where it was; but what is being typed into a field is taken first, and the field let go. A
/// key for a button that is scrolled out of sight brings it into sight and does no more. [main] only.
class ActionButton : public juce::Button, public PreferredSize {
public:
    /// `title` is what the button is called for those who do not see it.
    ActionButton(const juce::String& title, std::function<void()> action);

    bool keyPressed(const juce::KeyPress& key) override;

protected:
    void clicked() override;

    /// The ring around a button with the keyboard focus.
    void paintFocusRing(juce::Graphics& graphics, float corner);

private:
    std::function<void()> action_;
};

}  // namespace quillo
