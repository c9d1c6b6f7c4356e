// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/CardFinder.hpp"
#include "editor/Header.hpp"
#include "editor/MyDragAndDropForEach.hpp"
#include "editor/RuleView.hpp"
#include "editor/ShownCards.hpp"

namespace quillo {

/// The search among the cards of a list: finds are marked, other cards fade, and the header says how many
/// they are. [main] only.
class CardSearch {
public:
    /// All must outlive it. The list's rows are cards.
    CardSearch(Header& header, MyDragAndDropForEach& list, const ShownCards& cards)
        : header_(header), list_(list), cards_(cards) {}

    /// What the header's field asks for.
    [[nodiscard]] SearchActions actions();

    /// Gives the field the keyboard, with this text in it if there is one.
    void begin(const juce::String& text = {});
    /// Ends "Playing" as well, and gives the keyboard back to what in the view had it before, or to the host.
    void end();
    [[nodiscard]] bool isOn() const { return finder_.isLooking(); }

    /// What is found on a card; all of it while nothing is looked for.
    [[nodiscard]] RuleView::Found foundOn(const UUID& id);
    /// What cards say has changed.
    void follow(const ShownCards::Changes& changes);
    /// Marks the finds on the cards that there are.
    void show();

private:
    void look(const juce::String& typed);
    void goToNext(bool forward);

    Header& header_;
    MyDragAndDropForEach& list_;
    const ShownCards& cards_;
    CardFinder finder_{[this](const UUID& id) {
        const auto* shown = cards_.find(id);
        return shown != nullptr ? RuleView::textsOf(shown->rule, cards_.run(id))
                                : std::vector<SearchedText>();
    }};
    juce::Component::SafePointer<juce::Component> focusBefore_;
};

}  // namespace quillo
