// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/MyDragAndDropForEach.hpp"
#include "editor/RuleListEditor.hpp"

namespace quillo {

/// What is done to cards that are chosen together. What a card's buttons, its switch and its channels do,
/// they do to all that are chosen if the card is one of them; so do the keys: Ctrl+X, Ctrl+C and Ctrl+V while
/// the keyboard focus lies in a card, Delete while it lies on a grip. Where that is scrolled out of sight,
/// the keys that delete bring it into sight and do no more. The clipboard holds a preset. [main] only.
class ChosenCards {
public:
    /// Where texts are kept between programs.
    struct Clipboard {
        std::function<void(const juce::String& text)> set = juce::SystemClipboard::copyTextToClipboard;
        std::function<juce::String()> get = juce::SystemClipboard::getTextFromClipboard;
    };

    /// Both must outlive it.
    ChosenCards(RuleListEditor& editor, MyDragAndDropForEach& list) : editor_(editor), list_(list) {}

    /// Uses another clipboard than the system's.
    void setClipboard(Clipboard clipboard) { clipboard_ = std::move(clipboard); }

    /// The rules that are handled together with those of this card.
    [[nodiscard]] RuleIds rulesWith(const UUID& card) const;
    /// Whether this card is one of several that are chosen.
    [[nodiscard]] bool areSeveral(const UUID& card) const;

    /// The cards have been moved together, as the list shows it.
    void moved(const std::vector<UUID>& cards, std::size_t newPosition);

    /// False for a key that is for none of them.
    bool keyPressed(const juce::KeyPress& key);

private:
    [[nodiscard]] RuleIds rulesOf(const std::vector<UUID>& cards) const;
    bool copy(const RuleIds& rules);
    void remove(const UUID& card, const std::string& verb);
    void paste(const std::optional<UUID>& behind);
    void giveKeyboardTo(std::size_t position);

    RuleListEditor& editor_;
    MyDragAndDropForEach& list_;
    Clipboard clipboard_;
};

}  // namespace quillo
