// SPDX-License-Identifier: GPL-3.0-or-later
// The plug-in's editor in the window of a host that knows nothing of JUCE, on a display of its own, used by
// the events of that display.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>
#include <thread>

#include "editor/NewRuleSelector.hpp"
#include "hosts/clap/CLAPTestHost.hpp"
#include "persistence/PluginData.hpp"
#include "programs/editor/Desk.hpp"
#include "rules/RuleEntry.hpp"
#include "support/FindBelow.hpp"
#include "support/HostWindow.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;
using Messages = std::vector<ScriptMessage>;
using Geometry = HostWindow::Geometry;

constexpr int left = 60;
constexpr int top = 40;

Rule pitchRule() {
    return ruleFromEntry(defaultEntry(OutputEntryType::PitchWheel, 1));
}

struct Point {
    int x = 0;
    int y = 0;
};

/// Where a view of the editor lies, in an editor of this size with these rules: `find` has it in one like it.
template <class Find>
Point placeOf(std::vector<Rule> rules, Point size, Find find) {
    const juce::ScopedJuceInitialiser_GUI juceRuntime;
    Desk desk(std::move(rules));
    desk.view().setSize(size.x, size.y);
    const juce::Component& found = find(desk.view());
    const auto centre = desk.view().getLocalPoint(&found, found.getLocalBounds().getCentre());
    return {centre.x, centre.y};
}

/// Lets the display act.
void act(const std::string& deed) {
    ASSERT_EQ(std::system(("xdotool " + deed).c_str()), 0);
}

/// A click at a place in the host's window.
void click(Point place) {
    act("mousemove " + std::to_string(left + place.x) + " " + std::to_string(top + place.y) + " click 1");
}

clap_window_t x11Window(HostWindow::Handle handle) {
    clap_window_t window{};
    window.api = CLAP_WINDOW_API_X11;
    window.x11 = handle;
    return window;
}

/// A host with the editor of its instance in a window.
class CLAPEditorHost : public CLAPTestHost {
public:
    using CLAPTestHost::CLAPTestHost;

    const clap_plugin_gui_t& gui = extension<clap_plugin_gui_t>(CLAP_EXT_GUI);
    HostWindow window{left, top, 1100, 700};

    void open() {
        ASSERT_TRUE(gui.create(plugin, CLAP_WINDOW_API_X11, false));
        attach();
    }

    /// Puts an editor that was made into the window, and waits until it is seen.
    void attach() {
        const auto parent = x11Window(window.handle());
        ASSERT_TRUE(gui.set_parent(plugin, &parent));
        ASSERT_TRUE(gui.show(plugin));
        idleUntil([this] { return colour() != HostWindow::colour; });
    }

    void close() const { gui.destroy(plugin); }

    /// A turn of the host's own loop: its timers, or the callback that was asked for.
    void turn() {
        for (const auto& [timer, milliseconds] : timers) {
            extension<clap_plugin_timer_support_t>(CLAP_EXT_TIMER_SUPPORT).on_timer(plugin, timer);
        }
        if (callbackRequests.exchange(0) > 0) {
            plugin->on_main_thread(plugin);
        }
    }

    template <class Condition>
    void idleUntil(Condition condition) {
        do {
            turn();
        } while (!condition());
    }

    [[nodiscard]] Point size() const {
        std::uint32_t width = 0;
        std::uint32_t height = 0;
        EXPECT_TRUE(gui.get_size(plugin, &width, &height));
        return {static_cast<int>(width), static_cast<int>(height)};
    }

    /// In the editor's middle.
    [[nodiscard]] HostWindow::Colour colour() const {
        const auto [width, height] = size();
        return window.colourAt(window.handle(), width / 2, height / 2);
    }

    [[nodiscard]] Geometry geometry() const { return window.geometryOf(window.children().at(0)); }

    [[nodiscard]] std::vector<Rule> rules() { return PluginData::read(save()).rules; }
};

class CLAPEditor : public testing::Test {
protected:
    CLAPEditorHost host;
};

TEST_F(CLAPEditor, IsForWindowsOfX11ThatTheHostGives) {
    const auto& gui = host.gui;
    EXPECT_TRUE(gui.is_api_supported(host.plugin, CLAP_WINDOW_API_X11, false));
    EXPECT_FALSE(gui.is_api_supported(host.plugin, CLAP_WINDOW_API_X11, true));
    EXPECT_FALSE(gui.is_api_supported(host.plugin, CLAP_WINDOW_API_WAYLAND, false));
    EXPECT_FALSE(gui.is_api_supported(host.plugin, nullptr, false));
    const char* api = nullptr;
    bool isFloating = true;
    EXPECT_TRUE(gui.get_preferred_api(host.plugin, &api, &isFloating));
    EXPECT_STREQ(api, CLAP_WINDOW_API_X11);
    EXPECT_FALSE(isFloating);
    EXPECT_FALSE(gui.create(host.plugin, CLAP_WINDOW_API_X11, true));
    EXPECT_FALSE(gui.create(host.plugin, CLAP_WINDOW_API_WIN32, false));
    EXPECT_TRUE(host.timers.empty());
}

TEST_F(CLAPEditor, OpensInTheHostsWindowAtItsPreferredSize) {
    host.open();
    EXPECT_EQ(host.window.children().size(), 1U);
    EXPECT_EQ(host.geometry(), (Geometry{0, 0, 500, 250}));
    EXPECT_FALSE(host.gui.create(host.plugin, CLAP_WINDOW_API_X11, false));
    host.close();
    EXPECT_TRUE(host.window.children().empty());
}

TEST_F(CLAPEditor, ThatCannotBeOpenedSaysWhyOnTheErrorStream) {
    const std::string display = std::getenv("DISPLAY");
    ASSERT_EQ(setenv("DISPLAY", ":9999", 1), 0);
    testing::internal::CaptureStderr();
    EXPECT_FALSE(host.gui.create(host.plugin, CLAP_WINDOW_API_X11, false));
    const auto told = testing::internal::GetCapturedStderr();
    ASSERT_EQ(setenv("DISPLAY", display.c_str(), 1), 0);
    EXPECT_EQ(told, "MIDI Quillo: the editor cannot be opened: There is no display to open the editor on.\n");
    host.open();
}

TEST_F(CLAPEditor, AsksForATimerOfThirtyTimesASecondWhileItIsOpen) {
    host.open();
    ASSERT_EQ(host.timers.size(), 1U);
    EXPECT_EQ(host.timers.begin()->second, 33U);
    EXPECT_EQ(host.callbackRequests, 0);
    host.close();
    EXPECT_TRUE(host.timers.empty());
}

TEST_F(CLAPEditor, ARuleIsAddedByMouseAndKeyboardAndTheProjectIsDirty) {
    host.open();
    click(placeOf({}, {500, 250}, [](QuilloView& view) -> juce::Component& {
        return findBelow<NewRuleSelector>(view)->button();
    }));
    const auto before = host.colour();
    host.idleUntil([&] { return host.colour() != before; });
    act("type pitch");
    act("key Return");
    host.idleUntil([this] { return !host.rules().empty(); });
    EXPECT_EQ(host.rules(), std::vector{pitchRule()});
    EXPECT_EQ(host.dirtyMarks, 1);
}

TEST_F(CLAPEditor, AMessageSentByHandWakesASleepingPlugin) {
    host.loadRules({pitchRule()});
    host.start();
    EXPECT_EQ(host.process(64), CLAP_PROCESS_SLEEP);
    host.take();
    host.open();
    ASSERT_TRUE(host.gui.set_size(host.plugin, 800, 500));
    host.idleUntil([this] { return host.geometry().width == 800; });
    click(placeOf({pitchRule()}, {800, 500}, [](QuilloView& view) -> juce::Component& {
        return view.card(view.editor().rules()[0].id)->buttons().sendButton();
    }));
    host.idleUntil([this] { return host.processRequests > 0; });
    EXPECT_EQ(host.dirtyMarks, 0);
    EXPECT_EQ(host.process(64), CLAP_PROCESS_SLEEP);
    EXPECT_EQ(host.take(), (Messages{{64, {0xE0, 0x00, 0x40}}}));
    const int requests = host.processRequests;
    host.turn();
    EXPECT_EQ(host.processRequests, requests);
}

TEST_F(CLAPEditor, TakesTheSizesThatItIsAskedToTake) {
    const auto& gui = host.gui;
    ASSERT_TRUE(gui.create(host.plugin, CLAP_WINDOW_API_X11, false));
    EXPECT_TRUE(gui.can_resize(host.plugin));
    clap_gui_resize_hints_t hints{};
    EXPECT_TRUE(gui.get_resize_hints(host.plugin, &hints));
    EXPECT_TRUE(hints.can_resize_horizontally && hints.can_resize_vertically);
    EXPECT_FALSE(hints.preserve_aspect_ratio);
    std::uint32_t width = 10;
    std::uint32_t height = 3000;
    EXPECT_TRUE(gui.adjust_size(host.plugin, &width, &height));
    EXPECT_EQ(width, 200U);
    EXPECT_EQ(height, 3000U);
    EXPECT_FALSE(gui.set_size(host.plugin, 10, 300));
    EXPECT_TRUE(gui.set_size(host.plugin, 640, 480));
    host.attach();
    EXPECT_EQ(host.geometry(), (Geometry{0, 0, 640, 480}));
    EXPECT_TRUE(gui.set_size(host.plugin, 701, 333));
    host.idleUntil([this] { return host.geometry() == Geometry{0, 0, 701, 333}; });
}

TEST_F(CLAPEditor, GrowsWithTheScale) {
    ASSERT_TRUE(host.gui.create(host.plugin, CLAP_WINDOW_API_X11, false));
    EXPECT_TRUE(host.gui.set_scale(host.plugin, 2.0));
    for (const auto scale : {0.0, -1.0, 1e9, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_FALSE(host.gui.set_scale(host.plugin, scale));
    }
    host.attach();
    EXPECT_EQ(host.geometry(), (Geometry{0, 0, 1000, 500}));
    std::uint32_t width = 10;
    std::uint32_t height = 10;
    EXPECT_TRUE(host.gui.adjust_size(host.plugin, &width, &height));
    EXPECT_EQ(width, 400U);
    EXPECT_EQ(height, 400U);
}

TEST_F(CLAPEditor, IsHiddenAndShownAgain) {
    host.open();
    EXPECT_TRUE(host.gui.hide(host.plugin));
    host.idleUntil([this] { return host.colour() == HostWindow::colour; });
    EXPECT_TRUE(host.gui.show(host.plugin));
    host.idleUntil([this] { return host.colour() != HostWindow::colour; });
}

TEST_F(CLAPEditor, ShowsWhyAStateWasRefused) {
    host.open();
    const auto before = host.colour();
    EXPECT_FALSE(host.load(Bytes{'x'}));
    host.idleUntil([&] { return host.colour() != before; });
}

TEST_F(CLAPEditor, DoesNothingBeforeItIsMade) {
    const auto& gui = host.gui;
    std::uint32_t length = 0;
    const auto parent = x11Window(host.window.handle());
    EXPECT_FALSE(gui.get_size(host.plugin, &length, &length));
    EXPECT_FALSE(gui.adjust_size(host.plugin, &length, &length));
    EXPECT_FALSE(gui.set_size(host.plugin, 500, 500));
    EXPECT_FALSE(gui.set_scale(host.plugin, 1.0));
    EXPECT_FALSE(gui.set_parent(host.plugin, &parent));
    EXPECT_FALSE(gui.show(host.plugin));
    EXPECT_FALSE(gui.hide(host.plugin));
    gui.destroy(host.plugin);
}

TEST_F(CLAPEditor, RefusesWhatIsNotThere) {
    const auto& gui = host.gui;
    ASSERT_TRUE(gui.create(host.plugin, CLAP_WINDOW_API_X11, false));
    EXPECT_FALSE(gui.get_size(host.plugin, nullptr, nullptr));
    EXPECT_FALSE(gui.adjust_size(host.plugin, nullptr, nullptr));
    EXPECT_FALSE(gui.get_resize_hints(host.plugin, nullptr));
    EXPECT_FALSE(gui.get_preferred_api(host.plugin, nullptr, nullptr));
    EXPECT_FALSE(gui.set_parent(host.plugin, nullptr));
    clap_window_t parent{};
    EXPECT_FALSE(gui.set_parent(host.plugin, &parent));
    parent.api = CLAP_WINDOW_API_X11;
    EXPECT_FALSE(gui.set_parent(host.plugin, &parent));
    EXPECT_FALSE(gui.set_transient(host.plugin, &parent));
    EXPECT_FALSE(gui.show(nullptr));
}

TEST_F(CLAPEditor, LivesWithAParentThatIsNoWindow) {
    ASSERT_TRUE(host.gui.create(host.plugin, CLAP_WINDOW_API_X11, false));
    const auto parent = x11Window(1);
    host.gui.set_parent(host.plugin, &parent);
    host.gui.show(host.plugin);
    host.turn();
    host.close();
    EXPECT_EQ(HostWindow::refusals(), 0);
    host.open();
}

TEST_F(CLAPEditor, IsRefusedWhereThereIsNoDisplay) {
    const std::string display = std::getenv("DISPLAY");
    ASSERT_EQ(setenv("DISPLAY", ":9999", 1), 0);
    EXPECT_FALSE(host.gui.create(host.plugin, CLAP_WINDOW_API_X11, false));
    ASSERT_EQ(setenv("DISPLAY", display.c_str(), 1), 0);
    host.open();
}

/// How many threads this process has; one that has ended may be among them for a moment.
std::ptrdiff_t threadCount() {
    return std::distance(std::filesystem::directory_iterator("/proc/self/task"), {});
}

TEST(CLAPEditorWithoutTimers, AThreadAsksForCallbacksWhileItIsOpen) {
    CLAPEditorHost host({.timers = false});
    const auto threads = threadCount();
    host.open();
    for (int callbacks = 0; callbacks < 3; ++callbacks) {
        while (host.callbackRequests == 0) {
            std::this_thread::yield();
        }
        host.turn();
    }
    host.close();
    while (threadCount() > threads) {
        std::this_thread::yield();
    }
    host.plugin->on_main_thread(host.plugin);
}

TEST_F(CLAPEditor, OpensAndClosesManyTimesWhileBlocksAreProcessed) {
    host.start();
    std::atomic<bool> done{false};
    std::atomic<int> blocks{0};
    std::thread audio([&] {
        while (!done) {
            const auto now = host.now;
            EXPECT_EQ(host.process(64, Bytes{0xC0, 60}), CLAP_PROCESS_SLEEP);
            EXPECT_EQ(host.take(), (Messages{{now, {0xC0, 60}}}));
            ++blocks;
            std::this_thread::yield();
        }
    });
    for (int i = 0; i < 100; ++i) {
        const int before = blocks;
        host.open();
        host.idleUntil([&] { return blocks > before; });
        host.close();
    }
    done = true;
    audio.join();
}

TEST(CLAPEditors, OfSeveralInstancesAreOpenAtOnce) {
    CLAPEditorHost one;
    CLAPEditorHost other;
    one.loadRules({pitchRule()});
    one.open();
    other.open();
    one.close();
    other.turn();
    EXPECT_EQ(other.window.children().size(), 1U);
}

TEST(CLAPEditors, GoWithTheirInstances) {
    const HostWindow window(left, top, 1100, 700);
    const auto parent = x11Window(window.handle());
    for (int i = 0; i < 5; ++i) {
        {
            CLAPTestHost host;
            host.start();
            const auto& gui = host.extension<clap_plugin_gui_t>(CLAP_EXT_GUI);
            ASSERT_TRUE(gui.create(host.plugin, CLAP_WINDOW_API_X11, false));
            ASSERT_TRUE(gui.set_parent(host.plugin, &parent));
            ASSERT_TRUE(gui.show(host.plugin));
            host.process(64);
            EXPECT_EQ(window.children().size(), 1U);
        }
        EXPECT_TRUE(window.children().empty());
    }
}

TEST(CLAPEditors, LeaveTheBinaryFitToBeUnloadedAndLoadedAgain) {
    for (int i = 0; i < 5; ++i) {
        CLAPEditorHost host;
        host.open();
        host.close();
    }
}

}  // namespace
}  // namespace quillo
