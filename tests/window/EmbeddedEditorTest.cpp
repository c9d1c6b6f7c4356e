// SPDX-License-Identifier: GPL-3.0-or-later
// The editor in the window of a host on a display of its own, used by the events of that display.
#include "window/EmbeddedEditor.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <malloc.h>

#include <array>
#include <atomic>
#include <bit>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include "editor/MyTextInputImpl.hpp"
#include "editor/NewRuleSelector.hpp"
#include "editor/PopupMenuOverlay.hpp"
#include "editor/QuilloView.hpp"
#include "persistence/PluginData.hpp"
#include "rules/RuleEntry.hpp"
#include "session/Session.hpp"
#include "support/FindBelow.hpp"
#include "support/HostWindow.hpp"
#include "support/TestOutput.hpp"

#ifdef __SANITIZE_ADDRESS__
/// The sanitizer's allocator has taken the place of the one that `mallinfo2` knows. No header of g++ declares
/// it.
extern "C" std::size_t sanitizerBytes() __asm__("__sanitizer_get_current_allocated_bytes");
#endif

namespace quillo {
namespace {

using namespace test;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

constexpr unsigned long spaceKey = 0x20;
constexpr unsigned long letterZ = 0x7A;
constexpr unsigned long tabKey = 0xFF09;

Rule pitchRule() {
    return ruleFromEntry(defaultEntry(OutputEntryType::PitchWheel, 1));
}

class EmbeddedEditorTest : public testing::Test {
protected:
    void open(double scale = 1.0) {
        editor = std::make_unique<EmbeddedEditor>(session, scale);
        editor->attachTo(host.handle());
        editor->setVisible(true);
        idleUntil([this] { return isPainted(); });
    }

    template <class Condition>
    void idleUntil(Condition condition) {
        do {
            editor->idle();
        } while (!condition());
    }

    /// Whether the editor's colours are where the host's were.
    bool isPainted() const {
        const auto [width, height] = editor->size();
        return host.colourAt(editor->window(), static_cast<int>(width) / 2, static_cast<int>(height) / 2) !=
               HostWindow::colour;
    }

    /// Lets the display act, and the editor take what comes of it until it has had its effect.
    template <class Effect>
    void act(const std::string& deed, Effect effect) {
        ASSERT_EQ(std::system(("xdotool " + deed).c_str()), 0);
        idleUntil(effect);
    }

    /// The editor's view, as JUCE knows it.
    static QuilloView& view() {
        return *findBelow<QuilloView>(*juce::Desktop::getInstance().getComponent(0));
    }

    static bool isButtonDown() { return juce::ModifierKeys::currentModifiers.isLeftButtonDown(); }

    static std::string moveTo(const juce::Component& target) {
        const auto point = target.getScreenBounds().getCentre();
        return "mousemove " + std::to_string(point.x) + " " + std::to_string(point.y);
    }

    /// To a place of the header where nothing lies.
    static std::string moveToHeader(QuilloView& editorView) {
        const auto corner = editorView.header().getScreenBounds().getPosition();
        return "mousemove " + std::to_string(corner.x + 4) + " " + std::to_string(corner.y + 4);
    }

    /// To the beginning of what a field shows.
    static std::string moveToText(const FieldView& field) {
        const auto text = field.localAreaToGlobal(field.textArea());
        return "mousemove " + std::to_string(text.getX() + 4) + " " + std::to_string(text.getCentreY());
    }

    /// Again when nothing has come of it: a slow display takes two clicks for single ones.
    void openByTwoClicks(MyTextInputImpl& field) {
        constexpr auto patience = std::chrono::seconds(5);
        while (field.typist() == nullptr) {
            const auto end = std::chrono::steady_clock::now() + patience;
            act(moveToText(field) + " click --repeat 2 --delay 60 1",
                [&] { return field.typist() != nullptr || std::chrono::steady_clock::now() > end; });
        }
    }

    /// Types over the name of the only rule, and leaves it so.
    void beginTypingAName(const std::string& words) {
        open();
        addPitchRule();
        editor->setSize({800, 500});
        idleUntil([this] { return host.geometryOf(editor->window()).width == 800 && isPainted(); });
        auto& name = view().card(view().editor().rules()[0].id)->header();
        openByTwoClicks(name);
        act("type '" + words + "'", [&] { return name.typist()->getText() == juce::String(words); });
    }

    void addPitchRule() {
        act(moveTo(findBelow<NewRuleSelector>(view())->button()) + " click 1",
            [] { return view().overlay() != nullptr; });
        pickInMenu("pitch");
    }

    void pickInMenu(const std::string& text) {
        act("type " + text, [&text] {
            const auto* menu = dynamic_cast<PopupMenuOverlay*>(view().overlay());
            return menu != nullptr && menu->typed().toStdString() == text;
        });
        act("key Return", [this] { return !installed().empty(); });
    }

    std::vector<Rule> installed() { return session.processor().rules(); }

    HostWindow host{60, 40, 1100, 700};
    Session session;
    std::unique_ptr<EmbeddedEditor> editor;
};

TEST_F(EmbeddedEditorTest, OpensInTheHostsWindowAtItsPreferredSize) {
    EXPECT_EQ(EmbeddedEditor::whyNot(), std::nullopt);
    open();
    EXPECT_THAT(host.children(), ElementsAre(editor->window()));
    EXPECT_EQ(host.geometryOf(editor->window()), (HostWindow::Geometry{0, 0, 500, 250}));
    EXPECT_EQ(editor->size(), (EmbeddedEditor::Size{500, 250}));
}

TEST_F(EmbeddedEditorTest, HasNoWindowBeforeItIsAttached) {
    editor = std::make_unique<EmbeddedEditor>(session);
    EXPECT_EQ(editor->window(), 0U);
    EXPECT_EQ(editor->size(), (EmbeddedEditor::Size{500, 250}));
    editor->setSize({640, 480});
    editor->attachTo(host.handle());
    editor->setVisible(true);
    idleUntil([this] { return isPainted(); });
    EXPECT_EQ(host.geometryOf(editor->window()), (HostWindow::Geometry{0, 0, 640, 480}));
}

class EmbeddedEditorAtScale : public EmbeddedEditorTest, public testing::WithParamInterface<double> {};

INSTANTIATE_TEST_SUITE_P(Scales, EmbeddedEditorAtScale, testing::Values(1.0, 1.5, 2.0),
                         [](const auto& scale) {
                             return "Percent" + std::to_string(static_cast<int>(scale.param * 100));
                         });

TEST_P(EmbeddedEditorAtScale, ARuleIsAddedAndUndoneByMouseAndKeyboard) {
    int edits = 0;
    session.setOnEdit([&edits] { ++edits; });
    open(GetParam());
    const auto width = static_cast<unsigned>(500 * GetParam());
    EXPECT_EQ(host.geometryOf(editor->window()), (HostWindow::Geometry{0, 0, width, width / 2}));
    EXPECT_EQ(view().getWidth(), 500);

    addPitchRule();
    EXPECT_EQ(installed(), std::vector{pitchRule()});
    EXPECT_EQ(edits, 1);

    act("key ctrl+z", [this] { return installed().empty(); });
    EXPECT_EQ(edits, 2);
}

TEST_P(EmbeddedEditorAtScale, AnOpenEditorTakesTheScaleWithAllItsPoints) {
    open();
    editor->setScale(GetParam());
    const auto width = static_cast<std::uint32_t>(500 * GetParam());
    EXPECT_EQ(editor->size(), (EmbeddedEditor::Size{width, width / 2}));
    EXPECT_EQ(view().getWidth(), 500);
    idleUntil([&] { return host.geometryOf(editor->window()).width == width; });
    addPitchRule();
    EXPECT_EQ(installed(), std::vector{pitchRule()});
}

TEST_P(EmbeddedEditorAtScale, NoSizeLiesBelowTwoHundredPoints) {
    editor = std::make_unique<EmbeddedEditor>(session, GetParam());
    const auto least = static_cast<std::uint32_t>(200 * GetParam());
    EXPECT_EQ(editor->nearestTo({1, 1}), (EmbeddedEditor::Size{least, least}));
    EXPECT_EQ(editor->nearestTo({3000, 1}), (EmbeddedEditor::Size{3000, least}));
    EXPECT_EQ(editor->nearestTo({1, 2000}), (EmbeddedEditor::Size{least, 2000}));
}

TEST_P(EmbeddedEditorAtScale, NoSizeLiesAboveTheWindowSystemsGreatest) {
    open(GetParam());
    constexpr std::uint32_t greatest = 32767;
    EXPECT_EQ(editor->nearestTo({greatest, 500}), (EmbeddedEditor::Size{greatest, 500}));
    EXPECT_EQ(editor->nearestTo({32768, 0xFFFFFFFF}), (EmbeddedEditor::Size{greatest, greatest}));
    editor->setSize(editor->nearestTo({0xFFFFFFFF, 500}));
    EXPECT_EQ(editor->size(), (EmbeddedEditor::Size{greatest, 500}));
    editor->setScale(16.0);
    EXPECT_LE(editor->size().width, greatest);
}

TEST_P(EmbeddedEditorAtScale, FillsEverySizeToTheLastPixel) {
    open(GetParam());
    for (const auto& [width, height] : {std::pair{701U, 499U}, std::pair{403U, 401U}}) {
        editor->setSize({width, height});
        EXPECT_EQ(editor->size(), (EmbeddedEditor::Size{width, height}));
        idleUntil([&] {
            return host.geometryOf(editor->window()) == HostWindow::Geometry{0, 0, width, height} &&
                   isPainted();
        });
        const auto points = view().getLocalBounds().toDouble() * GetParam();
        EXPECT_GE(points.getWidth(), width);
        EXPECT_GE(points.getHeight(), height);
        EXPECT_LT(points.getWidth(), width + GetParam());
        EXPECT_LT(points.getHeight(), height + GetParam());
    }
}

TEST_F(EmbeddedEditorTest, FollowsAHostThatResizesItsWindow) {
    open();
    host.resize(editor->window(), 777, 333);
    idleUntil([this] { return editor->size() == EmbeddedEditor::Size{777, 333}; });
    EXPECT_EQ(view().getWidth(), 777);
    EXPECT_EQ(view().getHeight(), 333);
}

TEST_F(EmbeddedEditorTest, AClickBesideTheFieldsLeavesTheKeyboardToTheHost) {
    open();
    act(moveToHeader(view()) + " mousedown 1", isButtonDown);
    act("mouseup 1", [] { return !isButtonDown(); });
    EXPECT_EQ(host.keyboardOwner(), host.handle());
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr);
}

/// A second editor in the process, in the window of a host of its own.
class TwoEmbeddedEditors : public EmbeddedEditorTest {
protected:
    TwoEmbeddedEditors() {
        open();
        second.attachTo(secondHost.handle());
        second.setVisible(true);
        idleUntil([this] {
            second.idle();
            return secondHost.colourAt(second.window(), 250, 125) != HostWindow::colour;
        });
    }

    QuilloView& secondView() const {
        const auto& desktop = juce::Desktop::getInstance();
        for (int i = 0; i < desktop.getNumComponents(); ++i) {
            auto& component = *desktop.getComponent(i);
            if (component.getPeer()->getNativeHandle() == std::bit_cast<void*>(second.window())) {
                return *findBelow<QuilloView>(component);
            }
        }
        throw std::logic_error("the second editor has no window");
    }

    /// Both editors' turns come, the first one's first.
    template <class Effect>
    void actOnBoth(const std::string& deed, Effect effect) {
        act(deed, [&] {
            second.idle();
            return effect();
        });
    }

    HostWindow secondHost{60, 760, 600, 260};
    Session secondSession;
    EmbeddedEditor second{secondSession};
};

TEST_F(TwoEmbeddedEditors, EitherGivesBackTheKeyboardThatWasTakenInTheOthersTurn) {
    act(moveToHeader(secondView()) + " mousedown 1", isButtonDown);
    second.idle();
    EXPECT_EQ(secondHost.keyboardOwner(), secondHost.handle());
    act("mouseup 1", [] { return !isButtonDown(); });
    secondHost.giveKeyboardTo(host.handle());
    ASSERT_EQ(std::system(("xdotool " + moveToHeader(view()) + " mousedown 1").c_str()), 0);
    do {
        second.idle();
    } while (!isButtonDown());
    editor->idle();
    EXPECT_EQ(host.keyboardOwner(), host.handle());
    act("mouseup 1", [] { return !isButtonDown(); });
}

TEST_F(TwoEmbeddedEditors, AMenuInOneHasTheKeyboardUntilTheOtherIsClicked) {
    actOnBoth(moveTo(findBelow<NewRuleSelector>(secondView())->button()) + " click 1",
              [this] { return secondHost.keyboardOwner() == second.window(); });
    actOnBoth("type pitch", [this] {
        const auto* menu = dynamic_cast<PopupMenuOverlay*>(secondView().overlay());
        return menu != nullptr && menu->typed() == "pitch";
    });
    actOnBoth(moveToHeader(view()) + " click 1",
              [this] { return secondHost.keyboardOwner() == secondHost.handle(); });
}

TEST_F(EmbeddedEditorTest, NoButtonHasTheKeyboardWhenTheHostGivesItToTheEditor) {
    open();
    host.giveKeyboardTo(editor->window());
    act(moveToHeader(view()) + " key space", [this] { return !host.takeKeys().empty(); });
    EXPECT_EQ(juce::Component::getCurrentlyFocusedComponent(), nullptr);
    EXPECT_EQ(host.keyboardOwner(), editor->window());
}

TEST_F(EmbeddedEditorTest, KeysThatNothingInTheEditorUsesAreTheHosts) {
    open();
    std::vector<unsigned long> keys;
    const auto keysCome = [&] {
        const auto taken = host.takeKeys();
        keys.insert(keys.end(), taken.begin(), taken.end());
        return !keys.empty();
    };
    act(moveToHeader(view()) + " key space", keysCome);
    EXPECT_THAT(keys, ElementsAre(spaceKey));
}

TEST_F(EmbeddedEditorTest, KeysOfTheNumberPadAreTheHostsAsSuch) {
    constexpr unsigned long padSymbols = 0xFF80;
    open();
    for (const auto& [name, sign] : {std::pair{"KP_Add", '+'}, {"KP_Subtract", '-'}, {"KP_Multiply", '*'}}) {
        std::vector<unsigned long> keys;
        act(moveToHeader(view()) + " key " + name, [&] {
            keys = host.takeKeys();
            return !keys.empty();
        });
        EXPECT_THAT(keys, ElementsAre(padSymbols + static_cast<unsigned long>(sign)));
    }
}

TEST_F(EmbeddedEditorTest, ASignWithItsOwnKeyIsTheHostsByThatKey) {
    open();
    std::vector<unsigned long> keys;
    act(moveToHeader(view()) + " key minus", [&] {
        keys = host.takeKeys();
        return !keys.empty();
    });
    EXPECT_THAT(keys, ElementsAre(static_cast<unsigned long>('-')));
}

TEST_F(EmbeddedEditorTest, TabEntersOnlyOnceTheEditorsWindowHasTheKeyboard) {
    open();
    std::vector<unsigned long> keys;
    act(moveToHeader(view()) + " key Tab", [&] {
        keys = host.takeKeys();
        return !keys.empty();
    });
    EXPECT_THAT(keys, ElementsAre(tabKey)) << "The host has the keyboard.";
    EXPECT_FALSE(view().hasKeyboardFocus(true));
    host.giveKeyboardTo(editor->window());
    act("key Tab", [] { return view().hasKeyboardFocus(true); });
    EXPECT_EQ(host.keyboardOwner(), editor->window());
    EXPECT_THAT(host.takeKeys(), IsEmpty());
}

TEST_F(EmbeddedEditorTest, TheSpaceBarIsTheHostsWhileANumberIsTypedInto) {
    open();
    addPitchRule();
    editor->setSize({800, 500});
    idleUntil([this] { return host.geometryOf(editor->window()).width == 800 && isPainted(); });
    auto* pitch = dynamic_cast<MyTextInputImpl*>(
        &view().card(view().editor().rules()[0].id)->output().fields()[2]->field());
    act(moveToText(*pitch) + " click 1", [&] { return pitch->isEditable(); });
    std::vector<unsigned long> keys;
    act("key space", [&] {
        keys = host.takeKeys();
        return !keys.empty();
    });
    EXPECT_THAT(keys, ElementsAre(spaceKey));
    act(moveToHeader(view()) + " click 1", [&] { return !pitch->isEditable(); });
    EXPECT_EQ(installed(), std::vector{pitchRule()});
}

TEST_F(EmbeddedEditorTest, KeysThatTheEditorUsesAreItsOwn) {
    open();
    addPitchRule();
    ASSERT_THAT(host.takeKeys(), IsEmpty());
    act(moveToHeader(view()) + " key ctrl+z", [this] { return installed().empty(); });
    EXPECT_THAT(host.takeKeys(), testing::Not(Contains(letterZ)));
}

TEST_F(EmbeddedEditorTest, AMenuOpenedByASlowClickHasTheKeyboard) {
    open();
    act(moveTo(findBelow<NewRuleSelector>(view())->button()) + " mousedown 1",
        [this] { return host.keyboardOwner() == host.handle() && isButtonDown(); });
    act("mouseup 1", [] { return view().overlay() != nullptr; });
    idleUntil([this] { return host.keyboardOwner() == editor->window(); });
    pickInMenu("pitch");
    EXPECT_THAT(host.takeKeys(), IsEmpty());
}

TEST_F(EmbeddedEditorTest, AFieldHasTheKeyboardWhileItIsTypedInto) {
    beginTypingAName("My name");
    EXPECT_EQ(host.keyboardOwner(), editor->window());
    EXPECT_THAT(host.takeKeys(), IsEmpty());
    act("key Return", [this] { return installed()[0].name == "My name"; });
}

TEST_F(EmbeddedEditorTest, ThatIsClosedTakesWhatIsBeingTyped) {
    beginTypingAName("last");
    editor.reset();
    EXPECT_EQ(installed()[0].name, "last");
}

TEST_F(EmbeddedEditorTest, AClickBesideTheFieldsTakesWhatWasTypedAndGivesTheKeyboardBack) {
    beginTypingAName("other");
    act(moveTo(view().list()) + " click 1", [this] { return installed()[0].name == "other"; });
    idleUntil([this] { return host.keyboardOwner() == host.handle(); });
}

TEST_F(EmbeddedEditorTest, TheHostHearsOfItsOwnErrorsWhileAnEditorIsOpenAndAfterwards) {
    open();
    host.offend();
    EXPECT_EQ(HostWindow::refusals(), 1);
    editor.reset();
    host.offend();
    EXPECT_EQ(HostWindow::refusals(), 2);
}

TEST_F(EmbeddedEditorTest, OutlivesItsWindowWhenTheHostDestroysTheParent) {
    open();
    host.destroy();
    editor->idle();
    editor->setSize({600, 400});
    editor->setVisible(false);
    editor->setVisible(true);
    editor->idle();
    editor.reset();
    EXPECT_EQ(HostWindow::refusals(), 0);
}

TEST_F(EmbeddedEditorTest, LivesWithAParentThatIsNoWindow) {
    editor = std::make_unique<EmbeddedEditor>(session);
    editor->attachTo(1);
    editor->setVisible(true);
    editor->idle();
    editor.reset();
    EXPECT_EQ(HostWindow::refusals(), 0);
}

TEST_F(EmbeddedEditorTest, ABrokenConnectionEndsTheEditorAndNotTheHost) {
    open();
    host.killOwnerOf(editor->window());
    editor->idle();
    editor->setSize({600, 400});
    editor->idle();
    editor.reset();
    open();
    EXPECT_EQ(editor->size(), (EmbeddedEditor::Size{500, 250}));
}

TEST_F(EmbeddedEditorTest, SaysWhatIsMissingWhereThereIsNoDisplay) {
    const std::string display = std::getenv("DISPLAY");
    ASSERT_EQ(setenv("DISPLAY", ":9999", 1), 0);
    const auto reason = EmbeddedEditor::whyNot();
    ASSERT_EQ(setenv("DISPLAY", display.c_str(), 1), 0);
    EXPECT_EQ(reason, "There is no display to open the editor on.");
    EXPECT_EQ(EmbeddedEditor::whyNot(), std::nullopt);
}

TEST_F(EmbeddedEditorTest, AnEditorOpenedLaterShowsTheRulesAndWhatWentWrong) {
    ASSERT_EQ(session.restore(PluginData{{pitchRule()}}.write()), std::nullopt);
    ASSERT_NE(session.restore(Bytes{'x'}), std::nullopt);
    open();
    ASSERT_EQ(view().editor().rules().size(), 1U);
    EXPECT_THAT(view().editor().alertErrorMessage(),
                testing::Optional(testing::HasSubstr("cannot be restored")));
    editor.reset();
    open();
    EXPECT_EQ(view().editor().rules().size(), 1U);
}

/// Renders blocks until it is told to stop, each with a note that comes back.
class Renderer {
public:
    explicit Renderer(Session& session)
        : session_(session), thread_([this](const std::stop_token& stop) { run(stop); }) {}
    ~Renderer() {
        thread_.request_stop();
        thread_.join();
    }

    std::atomic<std::uint64_t> blocks{0};
    std::atomic<std::uint64_t> lost{0};

private:
    void run(const std::stop_token& stop) {
        constexpr std::array<std::uint8_t, 3> note{0x90, 60, 100};
        auto& renderer = session_.renderer();
        while (!stop.stop_requested()) {
            TestOutput output;
            renderer.begin(64, output);
            renderer.receive(7, note);
            const bool came = renderer.end() == noErr && output.sent.size() == 1;
            lost += came ? 0 : 1;
            ++blocks;
            std::this_thread::yield();
        }
    }

    Session& session_;
    std::jthread thread_;
};

/// What this process holds of the machine.
struct Holdings {
    std::size_t bytes = allocatedBytes();
    std::ptrdiff_t handles = entries("/proc/self/fd");
    std::ptrdiff_t threads = entries("/proc/self/task");

    static std::ptrdiff_t entries(const char* folder) {
        return std::distance(std::filesystem::directory_iterator(folder), {});
    }
    static std::size_t allocatedBytes() {
#ifdef __SANITIZE_ADDRESS__
        return sanitizerBytes();
#else
        return mallinfo2().uordblks;
#endif
    }
};

/// AddressSanitizer sees of its own accord what a single opening leaves behind.
#ifdef __SANITIZE_ADDRESS__
constexpr std::size_t openings = 300;
#else
constexpr std::size_t openings = 1000;
#endif

TEST_F(EmbeddedEditorTest, LeavesNothingBehindHoweverOftenItIsOpenedWhileAnotherThreadRenders) {
    const auto openAndClose = [this](const Renderer& renderer) {
        const auto before = renderer.blocks.load();
        open();
        idleUntil([&] { return renderer.blocks > before; });
        editor.reset();
    };
    Renderer renderer(session);
    for (std::size_t warmUp = 0; warmUp < openings / 10; ++warmUp) {
        openAndClose(renderer);
    }
    const Holdings before;
    for (std::size_t opening = 0; opening < openings; ++opening) {
        openAndClose(renderer);
    }
    Holdings after;
    // A thread that JUCE has ended may be among them for a moment, before as well as after.
    for (int look = 0; look < 100'000 && after.threads > before.threads; ++look) {
        std::this_thread::yield();
        after = Holdings();
    }
    EXPECT_EQ(renderer.lost, 0U);
    EXPECT_EQ(after.handles, before.handles);
    EXPECT_LE(after.threads, before.threads);
    // The logs and the queues hold now more, now less; a block that each opening left behind would be this
    // much.
    constexpr std::size_t smallestBlock = 16;
    EXPECT_LT(after.bytes, before.bytes + openings * smallestBlock);
}

}  // namespace
}  // namespace quillo
