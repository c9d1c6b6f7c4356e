// SPDX-License-Identifier: GPL-3.0-or-later
// The built plug-in's editor in the window of a host, on a real display.
#include <gtest/gtest.h>

#include <atomic>

#include "editor-main/EditorStage.hpp"
#include "editor/NewRuleSelector.hpp"
#include "hosts/vst3/VST3View.hpp"
#include "persistence/PluginData.hpp"
#include "support/TestRules.hpp"
#include "support/Threads.hpp"

// Behind JUCE, whose names it takes.
#include <X11/Xlib.h>

namespace quillo {
namespace {

using namespace test;
using Size = std::pair<unsigned, unsigned>;

class VST3OnScreen : public testing::Test {
protected:
    ~VST3OnScreen() override { EXPECT_TRUE(loop.isEmpty()); }

    static Size sizeOf(VST3View& view) {
        const auto size = view.size();
        return {static_cast<unsigned>(size.getWidth()), static_cast<unsigned>(size.getHeight())};
    }

    /// Lets the display act, and the plug-in take what comes of it.
    void act(VST3View& view, const std::string& deed) {
        juce::ChildProcess hand;
        ASSERT_TRUE(hand.start("xdotool " + deed));
        ASSERT_TRUE(hand.waitForProcessToFinish(-1));
        ASSERT_EQ(hand.getExitCode(), 0U);
        view.settle();
    }

    /// The middle of the button that adds rules, while there is none.
    static std::string placeOfNewRule() {
        Desk sameEditor{{}};
        const auto place =
            findBelow<NewRuleSelector>(sameEditor.view())->button().getScreenBounds().getCentre();
        return std::to_string(place.x) + " " + std::to_string(place.y);
    }

    /// Waits until the plug-in has marked the project changed that often; false when it has more often.
    bool isMarkedChanged(int times) {
        while (plugIn.handler().timesMarkedChanged < times) {
            loop.turn(10);
        }
        return plugIn.handler().timesMarkedChanged == times;
    }

    /// Whether a project saved now has these rules.
    bool saves(const std::vector<Rule>& rules) {
        const auto expected = PluginData{rules}.write();
        const auto chunk = plugIn.state();
        return chunk.size() >= expected.size() && std::equal(expected.begin(), expected.end(), chunk.begin());
    }

    const Rule pitchRule = ruleFromEntry(defaultEntry(OutputEntryType::PitchWheel, 1));
    VST3RunLoop loop;
    VST3Instance plugIn;
};

TEST_F(VST3OnScreen, TheEditorOpensAtItsPreferredSizeAndIsResizedAndScaledByItsHost) {
    VST3View view(plugIn, loop);
    EXPECT_EQ(sizeOf(view), Size(500, 250));
    EXPECT_EQ(view.sizeOfThePlugInsWindow(), Size(500, 250));
    EXPECT_EQ(view.view().canResize(), Steinberg::kResultOk);
    view.resize(820, 640);
    EXPECT_EQ(view.sizeOfThePlugInsWindow(), Size(820, 640));
    view.resize(100, 100);
    EXPECT_EQ(view.sizeOfThePlugInsWindow(), Size(200, 200));
    view.setScale(2.0F);
    EXPECT_EQ(sizeOf(view), Size(400, 400));
    EXPECT_EQ(view.sizeOfThePlugInsWindow(), Size(400, 400));
}

TEST_F(VST3OnScreen, ARuleThatTheUserAddsIsSavedAndMarksTheProjectChanged) {
    VST3View view(plugIn, loop);
    act(view, "mousemove " + placeOfNewRule() + " click 1");
    act(view, "type pitch");
    act(view, "key Return");
    EXPECT_TRUE(isMarkedChanged(1));
    EXPECT_TRUE(saves({pitchRule}));
}

TEST_F(VST3OnScreen, TabEntersOnceTheEditorsWindowHasTheKeyboard) {
    VST3View view(plugIn, loop);
    view.giveKeyboardToTheEditor();
    act(view, "key Tab Tab Tab Tab Tab Tab Tab Tab");
    act(view, "key Return");
    act(view, "type pitch");
    act(view, "key Return");
    EXPECT_TRUE(isMarkedChanged(1));
    EXPECT_TRUE(saves({pitchRule}));
}

TEST_F(VST3OnScreen, UndoNeedsNoFocus) {
    VST3View view(plugIn, loop);
    act(view, "mousemove " + placeOfNewRule() + " click 1");
    act(view, "type pitch");
    act(view, "key Return");
    EXPECT_TRUE(isMarkedChanged(1));
    act(view, "mousemove 4 4 click 1");
    act(view, "key ctrl+z");
    EXPECT_TRUE(isMarkedChanged(2));
    EXPECT_TRUE(saves({}));
}

TEST_F(VST3OnScreen, EditorsComeAndGoWhileAnotherThreadProcesses) {
    ASSERT_EQ(plugIn.setState(PluginData{{rule(onNoteOn(), send(noteOn(0, 61, 5)))}}.write()),
              Steinberg::kResultOk);
    plugIn.activate();
    std::atomic<bool> done{false};
    std::atomic<std::size_t> blocks{0};
    const auto process = [&](std::size_t) {
        VST3Input input;
        plugIn.give(input, 3, Bytes{0x90, 60, 1});
        for (; !done; ++blocks) {
            ASSERT_EQ(plugIn.process(512, input, nullptr), Steinberg::kResultOk);
            ASSERT_EQ(plugIn.sentEvents().size(), 2U);
        }
    };
    const Threads render(1, process);
    for (int round = 0; round < 100; ++round) {
        const auto before = blocks.load();
        VST3View view(plugIn, loop);
        EXPECT_EQ(view.sizeOfThePlugInsWindow(), Size(500, 250));
        while (blocks < before + 100 && !HasFailure()) {
            loop.turn(1);
        }
    }
    done = true;
}

TEST_F(VST3OnScreen, EditorsOfSeveralInstancesStandSideBySideAndOneOfThemCloses) {
    VST3Instance other;
    VST3View view(plugIn, loop);
    {
        VST3View otherView(other, loop, 600, 0);
        otherView.resize(300, 300);
        EXPECT_EQ(otherView.sizeOfThePlugInsWindow(), Size(300, 300));
    }
    view.resize(400, 400);
    EXPECT_EQ(view.sizeOfThePlugInsWindow(), Size(400, 400));
}

/// What the X server then says of windows that are gone would end the process.
TEST_F(VST3OnScreen, AHostMayDestroyItsWindowBeforeTheEditorInIt) {
    for (int round = 0; round < 3; ++round) {
        VST3View view(plugIn, loop);
        view.destroyWindow();
        if (round > 0) {
            Steinberg::ViewRect size(0, 0, 400, 300);
            EXPECT_EQ(view.view().onSize(&size), Steinberg::kResultOk);
        }
        for (int turn = 0; turn < 5 * round; ++turn) {
            loop.turn(20);
        }
    }
    VST3View view(plugIn, loop);
    EXPECT_EQ(view.sizeOfThePlugInsWindow(), Size(500, 250));
}

/// For the time after the editor too: a host's own errors are the host's own affair.
TEST_F(VST3OnScreen, TheHostsErrorsReachTheHostsHandler) {
    static int errors = 0;
    const auto before = XSetErrorHandler([](Display*, XErrorEvent*) { return ++errors, 0; });
    auto* const display = XOpenDisplay(nullptr);
    ASSERT_NE(display, nullptr);
    {
        VST3Instance other;
        for (int opened = 0; opened < 2; ++opened) {
            const VST3View view(other, loop);
            XMapWindow(display, 1);
            XSync(display, False);
        }
        XMapWindow(display, 1);
        XSync(display, False);
    }
    EXPECT_EQ(errors, 3);
    XMapWindow(display, 1);
    XSync(display, False);
    EXPECT_EQ(errors, 4);
    XCloseDisplay(display);
    XSetErrorHandler(before);
}

TEST_F(VST3OnScreen, AHandlerThatTheHostSetsWhileAnEditorIsOpenStays) {
    const auto before = XSetErrorHandler(nullptr);
    const auto hosts = [](Display*, XErrorEvent*) { return 0; };
    {
        VST3Instance other;
        const VST3View view(other, loop);
        XSetErrorHandler(hosts);
    }
    EXPECT_EQ(XSetErrorHandler(before), static_cast<XErrorHandler>(hosts));
}

TEST_F(VST3OnScreen, TheHostsErrorsReachTheHostsHandlerThoughSomebodyPutsOursBack) {
    static int errors = 0;
    const auto before = XSetErrorHandler([](Display*, XErrorEvent*) { return ++errors, 0; });
    auto* const display = XOpenDisplay(nullptr);
    ASSERT_NE(display, nullptr);
    XErrorHandler ours = nullptr;
    {
        VST3Instance other;
        const VST3View view(other, loop);
        ours = XSetErrorHandler([](Display*, XErrorEvent*) { return 0; });
    }
    XSetErrorHandler(ours);
    {
        VST3Instance other;
        const VST3View view(other, loop);
        XMapWindow(display, 1);
        XSync(display, False);
    }
    EXPECT_EQ(errors, 1);
    XCloseDisplay(display);
    XSetErrorHandler(before);
}

}  // namespace
}  // namespace quillo
