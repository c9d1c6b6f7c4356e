// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <juce_audio_processors/juce_audio_processors.h>

#include "editor/EditorShell.hpp"
#include "hosts/vst3/QuilloProcessor.hpp"

namespace quillo {

/// The editor as JUCE's wrapper puts it into the host's window. The host scales it. [main]
class QuilloProcessorEditor final : public juce::AudioProcessorEditor, private juce::KeyListener {
public:
    explicit QuilloProcessorEditor(QuilloProcessor& processor);
    ~QuilloProcessorEditor() override;

    [[nodiscard]] QuilloView& view() { return shell_.view(); }

    using juce::AudioProcessorEditor::keyPressed;

    void resized() override;
    void parentHierarchyChanged() override;

private:
    /// A key that came to the window around the editor and that nothing in it has used.
    bool keyPressed(const juce::KeyPress& key, juce::Component* window) override;

    EditorShell shell_;
    SafePointer<juce::Component> window_;  ///< whose keys are listened to
};

}  // namespace quillo
