// SPDX-License-Identifier: GPL-3.0-or-later
// The editor in a window, on a unit that renders by itself.
#include <exception>
#include <iostream>
#include <optional>
#include <string>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "commandline/Arguments.hpp"
#include "commandline/CommandFailure.hpp"
#include "editor/EditorWindow.hpp"
#include "editor/Fonts.hpp"
#include "platform/FatalError.hpp"
#include "platform/QuotedText.hpp"
#include "programs/editor/DemoRules.hpp"
#include "programs/editor/Desk.hpp"
#include "window/WindowScale.hpp"

namespace {

using namespace quillo;

/// The clock that runs the unit in real time: 30 cycles a second.
class Clock final : private juce::Timer {
public:
    explicit Clock(Desk& desk) : desk_(desk) { startTimerHz(cyclesPerSecond); }

private:
    static constexpr int cyclesPerSecond = 30;

    void timerCallback() override {
        const bool beat = ++cycle_ % (cyclesPerSecond / 2) == 0;
        desk_.render(static_cast<std::uint32_t>(defaultSampleRate) / cyclesPerSecond,
                     beat ? std::vector<std::vector<std::uint8_t>>{{0x92, 60, 100}, {0xB0, 1, 64}}
                          : std::vector<std::vector<std::uint8_t>>{});
    }

    Desk& desk_;
    int cycle_ = 0;
};

/// A JUCE application object, for what comes with it: it lives with X servers that refuse
/// a request, as they do where no window manager runs.
class EditorApplication final : public juce::JUCEApplication {
public:
    const juce::String getApplicationName() override { return "MIDI Quillo"; }
    const juce::String getApplicationVersion() override { return QUILLO_VERSION; }
    bool moreThanOneInstanceAllowed() override { return true; }

    void initialise(const juce::String& /*commandLine*/) override {
        if (const auto problem = whyNotToStart(); problem.isNotEmpty()) {
            fail(problem.toStdString(), exitUnavailable);
            return;
        }
        try {
            useWindowScale(askedScale());
            desk_.emplace(demoRules());
            window_.emplace(desk_->view(), [this] { systemRequestedQuit(); });
            clock_.emplace(*desk_);
        } catch (const UsageError& error) {
            fail(std::string(error.what()) + "\nUsage: midi-quillo-editor [--scale N]", exitUsage);
        } catch (const std::exception& error) {
            fail(wordsOf(error), exitFatal);
        }
    }

    void shutdown() override {
        clock_.reset();
        window_.reset();
        desk_.reset();
    }

private:
    static juce::String whyNotToStart() {
        if (juce::Desktop::getInstance().getDisplays().displays.isEmpty()) {
            return "there is no display; set DISPLAY, or draw the editor with ./dev shots";
        }
        return requireTypefaces();
    }

    /// `--scale N` draws the window N times as large.
    static std::optional<double> askedScale() {
        std::vector<std::string> words;
        for (const auto& word : getCommandLineParameterArray()) {
            words.push_back(word.toStdString());
        }
        const std::vector<Option> known{{"--scale", true}};
        const Arguments arguments(words, known);
        return arguments.has("--scale") ? std::optional(arguments.number("--scale", 0.5, 4, 1))
                                        : std::nullopt;
    }

    void fail(const std::string& reason, int status) {
        std::cerr << "midi-quillo-editor: " << escapedLines(reason) << '\n';
        setApplicationReturnValue(status);
        quit();
    }

    std::optional<Desk> desk_;
    std::optional<EditorWindow> window_;
    std::optional<Clock> clock_;
};

}  // namespace

int main(int argc, const char** argv) {
    juce::JUCEApplicationBase::createInstance = []() -> juce::JUCEApplicationBase* {
        return new EditorApplication();
    };
    return juce::JUCEApplicationBase::main(argc, argv);
}
