// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/Binding.hpp"
#include "editor/Environment.hpp"
#include "editor/MyTextButton.hpp"
#include "editor/MyWrappingHStack.hpp"
#include "rules/RuleEntry.hpp"

namespace quillo {

/// The buttons of a card. "Send" is there for messages of fixed bytes; a message that takes something from its
/// trigger cannot be sent by hand. [main] only.
class RuleButtons final : public juce::Component, public EnvironmentScope {
public:
    RuleButtons(Binding<RuleOutputEntry> ruleOutput, std::function<void()> onDuplicate,
                std::function<void()> onDelete, std::function<void()> onSend);

    /// The output may have changed.
    void refresh();

    [[nodiscard]] static int heightFor(int width);
    /// Their width beside one another.
    [[nodiscard]] static int widthInALine();

    [[nodiscard]] MyTextButton& duplicateButton() { return duplicate_; }
    [[nodiscard]] MyTextButton& deleteButton() { return delete_; }
    [[nodiscard]] MyTextButton& sendButton() { return send_; }

    void resized() override;
    void parentHierarchyChanged() override;

private:
    Binding<RuleOutputEntry> ruleOutput_;
    MyTextButton duplicate_;
    MyTextButton delete_;
    MyTextButton send_;
    MyWrappingHStack stack_;
};

}  // namespace quillo
