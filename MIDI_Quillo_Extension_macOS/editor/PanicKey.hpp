// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

namespace quillo {

/// Whether this is Ctrl+Shift+P. Whatever is open inside the editor leaves that key to it.
[[nodiscard]] inline bool isPanicKey(const juce::KeyPress& key) {
    return key ==
           juce::KeyPress('p', juce::ModifierKeys::commandModifier | juce::ModifierKeys::shiftModifier, 0);
}

}  // namespace quillo
