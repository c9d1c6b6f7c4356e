// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/Environment.hpp"
#include "editor/MyTextButton.hpp"
#include "rules/MIDIRuleType.hpp"

namespace quillo {

/// "Add new": opens the menu of output types; picking one adds a rule of that type. Behind them come a rule
/// that sends notes as they are played, and one whose trigger is learned. [main] only.
class NewRuleSelector final : public juce::Component, public EnvironmentScope {
public:
    struct Actions {
        std::function<void(const MIDIRuleType&)> onAdd;
        std::function<void()> onNotesAsPlayed;
        /// Gets what the learning is to open beside.
        std::function<void(juce::Component& button)> onLearn;
    };

    explicit NewRuleSelector(Actions actions);

    [[nodiscard]] MyTextButton& button() { return button_; }
    [[nodiscard]] static int preferredHeight();

    void resized() override;

private:
    void openMenu();
    void pick(std::size_t row);

    Actions actions_;
    MyTextButton button_;
};

}  // namespace quillo
