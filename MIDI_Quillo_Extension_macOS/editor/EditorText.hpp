// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/PanicKey.hpp"

namespace quillo {

/// A text inside the editor. It has no menu, which would be a native window, and no use for shortcuts that
/// the editor or the host may know. [main] only.
class EditorText : public juce::TextEditor {
public:
    explicit EditorText(const juce::String& name = {}) : juce::TextEditor(name) {
        setPopupMenuEnabled(false);
    }

    /// Whether this is Ctrl+Shift+P, or Ctrl with a digit or a sign: X says what these would type.
    [[nodiscard]] static bool isShortcut(const juce::KeyPress& key) {
        constexpr int lastCharacter = 0xFF;
        const auto code = key.getKeyCode();
        const bool isDigitOrSign = code >= ' ' && code <= lastCharacter &&
                                   code != juce::KeyPress::backspaceKey &&
                                   !juce::CharacterFunctions::isLetter(static_cast<juce::juce_wchar>(code));
        return isPanicKey(key) || (key.getModifiers().isCommandDown() && isDigitOrSign);
    }

    bool keyPressed(const juce::KeyPress& key) override {
        return !isShortcut(key) && juce::TextEditor::keyPressed(key);
    }
};

}  // namespace quillo
