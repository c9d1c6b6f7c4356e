// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/PresetExchange.hpp"

namespace quillo {

/// Lies over the list of rules while files are dragged over the editor, and says what dropping them does: in
/// a frame in colour where they can be dropped, in a grey one where they cannot. Clicks and drags pass
/// through it. [main] only.
class FileDropHint final : public juce::Component {
public:
    FileDropHint();

    /// Appears with this effect.
    void show(const DropEffect& drop);
    [[nodiscard]] const juce::String& words() const { return words_; }

    void paint(juce::Graphics& graphics) override;

private:
    juce::String words_;
    bool works_ = false;
};

}  // namespace quillo
