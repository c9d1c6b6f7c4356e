// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/Environment.hpp"
#include "editor/MyIconButton.hpp"
#include "editor/MyTextButton.hpp"
#include "editor/MyWrappingHStack.hpp"

namespace quillo {

/// The buttons of a card. "Send" is there for messages of fixed bytes; "More" opens the card's menu. [main]
/// only.
class RuleButtons final : public juce::Component, public EnvironmentScope {
public:
    struct Actions {
        std::function<void()> onDuplicate;
        std::function<void()> onDelete;
        std::function<void()> onSend;
        std::function<void(juce::Component& button)> onMore;
    };

    /// `whyNotSent` says why the message cannot be sent by hand; an empty text where it can.
    RuleButtons(std::function<juce::String()> whyNotSent, Actions actions);

    /// The message may have changed.
    void refresh();

    [[nodiscard]] static int heightFor(int width);
    /// Their width beside one another.
    [[nodiscard]] static int widthInALine();

    [[nodiscard]] MyTextButton& duplicateButton() { return duplicate_; }
    [[nodiscard]] MyTextButton& deleteButton() { return delete_; }
    [[nodiscard]] MyTextButton& sendButton() { return send_; }
    [[nodiscard]] MyIconButton& moreButton() { return more_; }

    void resized() override;
    void parentHierarchyChanged() override;

private:
    std::function<juce::String()> whyNotSent_;
    Actions actions_;
    MyTextButton duplicate_;
    MyTextButton delete_;
    MyTextButton send_;
    MyIconButton more_;
    MyWrappingHStack stack_;
};

}  // namespace quillo
