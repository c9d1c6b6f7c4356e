// SPDX-License-Identifier: GPL-3.0-or-later
// The editor in a window, on a unit that renders by itself.
#include <iostream>
#include <memory>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/Fonts.hpp"
#include "hosts/editor/DemoRules.hpp"
#include "hosts/editor/Desk.hpp"

namespace {

using namespace quillo;

constexpr int exitSoftware = 70;

/// The window, and the clock that runs the unit in real time: 30 cycles a second.
class EditorWindow final : public juce::DocumentWindow, private juce::Timer {
public:
    explicit EditorWindow(Desk& desk)
        : DocumentWindow("MIDI Quillo", juce::Colours::black, DocumentWindow::allButtons), desk_(desk) {
        setUsingNativeTitleBar(true);
        setContentNonOwned(&desk_.view(), true);
        setResizable(true, false);
        setResizeLimits(200, 200, 10000, 10000);
        centreWithSize(AudioUnitViewController::preferredWidth, AudioUnitViewController::preferredHeight);
        setVisible(true);
        startTimerHz(cyclesPerSecond);
    }

    void closeButtonPressed() override { juce::MessageManager::getInstance()->stopDispatchLoop(); }

private:
    static constexpr int cyclesPerSecond = 30;

    void timerCallback() override {
        const bool beat = ++cycle_ % (cyclesPerSecond / 2) == 0;
        desk_.render(static_cast<std::uint32_t>(defaultSampleRate) / cyclesPerSecond,
                     beat ? std::vector<std::vector<std::uint8_t>>{{0x92, 60, 100}, {0xB0, 1, 64}}
                          : std::vector<std::vector<std::uint8_t>>{});
        desk_.drain();
    }

    Desk& desk_;
    int cycle_ = 0;
};

int run() {
    if (const auto problem = requireTypefaces(); problem.isNotEmpty()) {
        std::cerr << problem << '\n';
        return exitSoftware;
    }
    if (juce::Desktop::getInstance().getDisplays().displays.isEmpty()) {
        std::cerr
            << "midi-quillo-editor: there is no display; set DISPLAY, or draw the editor with quillo-shots\n";
        return exitSoftware;
    }
    Desk desk(demoRules());
    const EditorWindow window(desk);
    juce::MessageManager::getInstance()->runDispatchLoop();
    return 0;
}

}  // namespace

int main() {
    const juce::ScopedJuceInitialiser_GUI juce;
    try {
        return run();
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return exitSoftware;
    }
}
