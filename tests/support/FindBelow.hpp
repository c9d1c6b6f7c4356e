// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace quillo::test {

/// The first view of a kind below another one, or null.
template <class View>
View* findBelow(juce::Component& view) {
    for (auto* child : view.getChildren()) {
        if (auto* found = dynamic_cast<View*>(child)) {
            return found;
        }
        if (auto* found = findBelow<View>(*child)) {
            return found;
        }
    }
    return nullptr;
}

}  // namespace quillo::test
