// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/JackApplication.hpp"

#include <array>
#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <ostream>
#include <utility>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "commandline/CommandFailure.hpp"
#include "editor/EditorShell.hpp"
#include "editor/EditorWindow.hpp"
#include "editor/Fonts.hpp"
#include "editor/PresetBrowser.hpp"
#include "hosts/jack/HostWindow.hpp"
#include "hosts/jack/Icon.hpp"
#include "hosts/jack/JackHost.hpp"
#include "hosts/jack/ServerBar.hpp"
#include "platform/FatalError.hpp"
#include "platform/QuotedText.hpp"
#include "window/WindowScale.hpp"

namespace quillo {

namespace {

/// JUCE's own message loop.
class WindowLoop final : public EventLoop, private juce::Timer {
public:
    ~WindowLoop() override {
        for (const auto descriptor : watched_) {
            juce::LinuxEventLoop::unregisterFdCallback(descriptor);
        }
    }

    void watch(int descriptor, std::function<void()> callback) override {
        watched_.push_back(descriptor);
        juce::LinuxEventLoop::registerFdCallback(descriptor,
                                                 [callback = std::move(callback)](int) { callback(); });
    }

    void unwatch(int descriptor) override {
        juce::LinuxEventLoop::unregisterFdCallback(descriptor);
        std::erase(watched_, descriptor);
    }

    void setTick(std::function<void()> tick) override {
        tick_ = std::move(tick);
        startTimerHz(ticksPerSecond);
    }

    void quit(int status) override {
        auto* application = juce::JUCEApplicationBase::getInstance();
        application->setApplicationReturnValue(status);
        application->systemRequestedQuit();
    }

private:
    void timerCallback() override { tick_(); }

    std::vector<int> watched_;
    std::function<void()> tick_;
};

/// What the application object, which JUCE makes, is to do.
struct Order {
    const JackOptions& options;
    const Console& console;
    SignalDescriptor& signals;
};
const Order* order = nullptr;

class JackApplication final : public juce::JUCEApplication, private HostWindow {
public:
    const juce::String getApplicationName() override { return "MIDI Quillo"; }
    const juce::String getApplicationVersion() override { return QUILLO_VERSION; }
    bool moreThanOneInstanceAllowed() override { return true; }

    void initialise(const juce::String& /*commandLine*/) override {
        try {
            requireDisplay();
            useWindowScale(order->options.scale);
            open();
        } catch (const CommandFailure& failure) {
            fail(failure.what(), failure.status());
        } catch (const std::exception& error) {
            fail(wordsOf(error), exitFatal);
        }
    }

    void shutdown() override {
        finishTyping();
        if (host_) {
            setApplicationReturnValue(host_->finish(getApplicationReturnValue()));
        }
        window_.reset();
        shell_.reset();
        host_.reset();
        loop_.reset();
    }

private:
    static void requireDisplay() {
        if (juce::Desktop::getInstance().getDisplays().displays.isEmpty()) {
            throw CommandFailure(exitUnavailable,
                                 "there is no display to open a window on; --no-window runs without");
        }
        if (const auto problem = requireTypefaces(); problem.isNotEmpty()) {
            throw CommandFailure(exitUnavailable, problem.toStdString());
        }
    }

    void open() {
        loop_.emplace();
        host_.emplace(order->options, order->console, *loop_, order->signals);
        host_->loadRules();
        shell_.emplace(host_->session());
        shell_->view().editor().setOnReplaced([this] { host_->endNotes(); });
        addServerBar();
        host_->setOnChange([this] {
            nameWindow();
            bar_->refresh();
        });
        host_->setWindow(*this);
        host_->start();
        nameWindow();
    }

    void show(bool isShown) override {
        if (window_) {
            window_->setVisible(isShown);
        } else if (isShown) {
            openWindow();
        }
    }

    void openWindow() {
        window_.emplace(shell_->view(), [this] { host_->windowClosed(); });
        window_->restoreWindowStateFromString(juce::String(settings_.place));
        const auto icon = largeIcon();
        window_->getPeer()->setIcon(juce::ImageFileFormat::loadFrom(icon.data(), icon.size()));
        nameWindow();
    }

    void nameWindow() {
        if (window_) {
            window_->setName(host_->title());
        }
    }

    [[nodiscard]] WindowSettings settings() override {
        return {window_ && window_->isVisible(),
                window_ ? window_->getWindowStateAsString().toStdString() : settings_.place,
                lastPresetFolder().string()};
    }

    void remember(const WindowSettings& settings) override {
        settings_ = settings;
        lastPresetFolder() = settings.presetFolder;
        if (window_) {
            window_->restoreWindowStateFromString(juce::String(settings.place));
        }
    }

    /// A field that is typed into hands over its text when it loses the keyboard.
    void finishTyping() override { juce::Component::unfocusAllComponents(); }

    void addServerBar() {
        auto bar = std::make_unique<ServerBar>(ServerBar::Actions{
            [this] { return host_->link().status(); },
            [this](const PortDescription& port, bool connected) { host_->setConnected(port, connected); },
            [this] { return host_->link().isWanted(); }});
        bar_ = bar.get();
        shell_->view().setStatusBar(std::move(bar));
    }

    void fail(const std::string& reason, int status) {
        order->console.err << "midi-quillo-jack: " << escapedLines(reason) << '\n';
        setApplicationReturnValue(status);
        quit();
    }

    std::optional<WindowLoop> loop_;
    std::optional<JackHost> host_;
    std::optional<EditorShell> shell_;
    ServerBar* bar_ = nullptr;  ///< in the view, which owns it
    std::optional<EditorWindow> window_;
    WindowSettings settings_;  ///< that a window begins with
};

}  // namespace

int runWithWindow(const JackOptions& options, const Console& console) {
    SignalDescriptor signals(JackHost::ownSignals);
    const Order given{options, console, signals};
    order = &given;
    juce::JUCEApplicationBase::createInstance = []() -> juce::JUCEApplicationBase* {
        return new JackApplication();
    };
    std::array<const char*, 1> words{"midi-quillo-jack"};
    return juce::JUCEApplicationBase::main(static_cast<int>(words.size()), words.data());
}

}  // namespace quillo
