// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/Environment.hpp"
#include "editor/MyTextButton.hpp"
#include "rules/MIDIRuleType.hpp"

namespace quillo {

/// "Add new": opens the menu of output types; picking one adds a rule of that type. [main] only.
class NewRuleSelector final : public juce::Component, public EnvironmentScope {
public:
    explicit NewRuleSelector(std::function<void(const MIDIRuleType&)> onAdd);

    [[nodiscard]] MyTextButton& button() { return button_; }
    [[nodiscard]] static int preferredHeight();

    void resized() override;

private:
    void openMenu();

    std::function<void(const MIDIRuleType&)> onAdd_;
    MyTextButton button_;
};

}  // namespace quillo
