// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/Environment.hpp"
#include "editor/MyTextButton.hpp"
#include "rules/MIDIRuleType.hpp"

namespace quillo {

/// "Add new": opens the menu of output types; picking one adds a rule of that type. The last row of the menu
/// learns the trigger of a new rule instead. [main] only.
class NewRuleSelector final : public juce::Component, public EnvironmentScope {
public:
    /// `onLearn` gets what the learning is to open beside.
    NewRuleSelector(std::function<void(const MIDIRuleType&)> onAdd,
                    std::function<void(juce::Component& button)> onLearn);

    [[nodiscard]] MyTextButton& button() { return button_; }
    [[nodiscard]] static int preferredHeight();

    void resized() override;

private:
    void openMenu();

    void pick(std::size_t row);

    std::function<void(const MIDIRuleType&)> onAdd_;
    std::function<void(juce::Component&)> onLearn_;
    MyTextButton button_;
};

}  // namespace quillo
