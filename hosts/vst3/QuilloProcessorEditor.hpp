// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <juce_audio_processors/juce_audio_processors.h>

#include "editor/QuilloView.hpp"
#include "hosts/vst3/QuilloProcessor.hpp"

namespace quillo {

/// The editor as JUCE's wrapper puts it into the host's window: the view, and the clock that does what waits
/// for the main thread. The host scales it. [main]
class QuilloProcessorEditor final : public juce::AudioProcessorEditor,
                                    private juce::KeyListener,
                                    private juce::Timer {
public:
    static constexpr int leastWidth = 200;
    static constexpr int leastHeight = 200;

    explicit QuilloProcessorEditor(QuilloProcessor& processor);
    ~QuilloProcessorEditor() override;

    [[nodiscard]] QuilloView& view() { return view_; }

    using juce::AudioProcessorEditor::keyPressed;

    void resized() override;
    void parentHierarchyChanged() override;

private:
    /// A key that came to the window around the editor and that nothing in it has used.
    bool keyPressed(const juce::KeyPress& key, juce::Component* window) override;
    /// Lets no exception out: behind it is the host's event loop.
    void timerCallback() override;

    HostedUnit& hosted_;
    QuilloView view_;
    SafePointer<juce::Component> window_;  ///< whose keys are listened to
};

}  // namespace quillo
