// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/FieldSection.hpp"
#include "editor/RuleStatus.hpp"

namespace quillo {

/// What decides where the parts of a card lie.
struct CardContent {
    FieldSizes trigger{};
    FieldSizes output{};
    RuleRemark status{};    ///< how often the rule fired, or why it fires or does not
    bool isReason = false;  ///< a reason may want more height; hits never do
};

/// Where the parts of a card lie. With its fields, by its width it has one of four forms:
///
/// - columns: trigger and message side by side, each below its label; the buttons in the title line
/// - rows: the fields beside their labels; the buttons in the title line
/// - paragraphs: the fields below their labels; the buttons in the title line
/// - narrow: the fields below their labels; the buttons at the bottom
///
/// The switch stands at the right end of the title line, the status before it, in the last two forms in the
/// line of the trigger's label. Where it does not fit it stands below the title: hits in a line, a reason in
/// as many as it takes.
struct CardLayout {
    CardLayout() = default;
    /// For a card of this width.
    CardLayout(const CardContent& content, int width);
    /// For one in one line: the name, what the rule does, and the status where it fits. Where it does not,
    /// hits are left out, and a reason replaces what the rule does. The area of what is left out is empty.
    [[nodiscard]] static CardLayout inOneLine(const CardContent& content, int width);

    juce::Rectangle<int> name;
    juce::Rectangle<int> onOff;  ///< the switch, at the right end of the title line
    juce::Rectangle<int> status;
    juce::Rectangle<int> line;
    juce::Rectangle<int> buttons;
    juce::Rectangle<int> triggerLabel;
    juce::Rectangle<int> trigger;
    juce::Rectangle<int> outputLabel;
    juce::Rectangle<int> output;
    int height = 0;  ///< of the whole card
};

}  // namespace quillo
