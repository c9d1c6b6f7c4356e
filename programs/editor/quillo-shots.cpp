// SPDX-License-Identifier: GPL-3.0-or-later
// Draws the editor's views, and those of the presets that it is given, to PNG files, without a display.
#include <algorithm>
#include <array>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <initializer_list>
#include <iostream>
#include <iterator>
#include <span>
#include <string>
#include <utility>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/Fonts.hpp"
#include "editor/InstalledFiles.hpp"
#include "editor/LearnOverlay.hpp"
#include "editor/PresetBrowserView.hpp"
#include "persistence/PluginData.hpp"
#include "platform/AtomicFile.hpp"
#include "platform/QuotedText.hpp"
#include "programs/editor/DemoRules.hpp"
#include "programs/editor/Desk.hpp"
#include "rules/MIDIRuleType.hpp"
#include "rules/RuleRun.hpp"

namespace {

using namespace quillo;

constexpr int exitUsage = 64;
constexpr int exitSoftware = 70;
constexpr int exitCannotCreate = 73;

/// Writes pictures into a folder and says so.
class Photographer {
public:
    explicit Photographer(const juce::File& folder) : folder_(folder) {}

    void take(juce::Component& view, const juce::String& name, float scale = 2) {
        const auto image = view.createComponentSnapshot(view.getLocalBounds(), true, scale);
        const auto file = folder_.getChildFile(name + ".png");
        juce::FileOutputStream stream(file);
        stream.setPosition(0);
        stream.truncate();
        if (!stream.openedOk() || !juce::PNGImageFormat().writeImageToStream(image, stream)) {
            throw std::runtime_error("cannot write " + file.getFullPathName().toStdString());
        }
        std::cout << file.getFullPathName() << '\n';
    }

private:
    juce::File folder_;
};

/// Lets the editor see what has happened. What waits is copied for it within some blocks.
void look(Desk& desk) {
    for (int block = 0; block < 50; ++block) {
        desk.drain();
        desk.render(1);
    }
    desk.drain();
    desk.view().advance(0);
}

void play(Desk& desk) {
    desk.render(512, {{0x90, 60, 100}, {0x80, 60, 0}});
    desk.render(512, {{0xB0, 1, 64}, {0xF8}});
    look(desk);
    desk.view().advance(RuleView::lightTime);
}

void showSizes(Photographer& photographer) {
    Desk desk(demoRules());
    play(desk);
    desk.view().setSize(500, 250);
    photographer.take(desk.view(), "editor-500x250");
    desk.view().setSize(500, 600);
    photographer.take(desk.view(), "editor-500x600");
    desk.view().setSize(200, 200);
    photographer.take(desk.view(), "editor-200x200");
    desk.view().setSize(320, 480);
    photographer.take(desk.view(), "editor-320x480");
    desk.view().logger().toggle();
    photographer.take(desk.view(), "editor-320x480-logs");
    desk.view().setSize(820, 640);
    look(desk);
    photographer.take(desk.view(), "editor-820x640-logs");
}

/// Plays to the performance's rules: the first has fired often, the second just now, three notes of the third
/// wait, and the last has never fired.
void perform(Desk& desk) {
    constexpr auto rate = static_cast<std::uint32_t>(defaultSampleRate);
    for (int time = 0; time < 36; ++time) {
        desk.render(16, {{0xB0, 64, 127}, {0xB0, 64, 0}});
    }
    for (int note = 0; note < 1204; ++note) {
        desk.render(16, {{0x90, 36, 96}, {0x80, 36, 64}});
    }
    desk.render(2 * rate);
    for (const auto note : std::initializer_list<std::uint8_t>{74, 76, 79}) {
        desk.render(rate * 8 / 100, {{0x91, note, 80}});
    }
    look(desk);
    desk.view().advance(RuleView::lightTime);
    desk.render(16, {{0xB0, 64, 127}});
    look(desk);
}

void pressPanic(Desk& desk) {
    const int modifiers = juce::ModifierKeys::commandModifier | juce::ModifierKeys::shiftModifier;
    desk.view().keyPressed(juce::KeyPress('p', modifiers, 0));
    look(desk);
}

/// "why-500x250".
juce::String sized(const juce::String& name, const juce::Component& view) {
    return name + "-" + juce::String(view.getWidth()) + "x" + juce::String(view.getHeight());
}

void press(juce::Component& button) {
    button.keyPressed(juce::KeyPress(juce::KeyPress::returnKey));
}

void openLogs(QuilloView& view) {
    view.logger().toggle();
    view.logger().advance(InOutLogger::movement);
}

void showLive(Photographer& photographer, juce::Point<int> size) {
    Desk desk(performanceRules());
    auto& view = desk.view();
    const auto take = [&](const juce::String& name) { photographer.take(view, sized(name, view)); };
    view.setSize(size.x, size.y);
    perform(desk);
    take("live");
    openLogs(view);
    press(view.logger().openedForm().waitingTitle());
    look(desk);
    take("waiting");
    pressPanic(desk);
    take("panic");
    pressPanic(desk);
    take("panic-again");
}

void showScales(Photographer& photographer) {
    Desk desk(demoRules());
    play(desk);
    for (const auto scale : {1.0F, 1.25F, 1.5F, 3.0F}) {
        photographer.take(desk.view(), "editor-scale-" + juce::String(scale), scale);
    }
}

void showOverlays(Photographer& photographer) {
    Desk desk(demoRules());
    desk.view().setSize(500, 400);
    desk.view().editor().alert(
        "\"song.json\" cannot be imported. Rule 4 \"Echo\", Incoming: missing key \"passTrough\".\nThe rules "
        "are "
        "as they were. Choose another file, or export this one again where its rules work.");
    photographer.take(desk.view(), "alert");
    desk.view().editor().dismissAlert();
    auto* card = desk.view().card(desk.view().editor().rules()[0].id);
    dynamic_cast<MyPickerImpl&>(card->trigger().fields()[2]->field()).openMenu();
    photographer.take(desk.view(), "picker");
    desk.view().closeOverlay();
}

/// The browser among the example presets: as it opens, after a part of a name was typed, and with a file in
/// the way of an export; and what a dragged file sees.
void showBrowser(Photographer& photographer) {
    const auto program = juce::File::getSpecialLocation(juce::File::currentExecutableFile).getFullPathName();
    const auto presets = firstFolder(examplePlaces(program.toStdString(), {}));
    if (!presets) {
        throw std::runtime_error("the example presets are not where a build puts them");
    }
    Desk desk(demoRules());
    lastPresetFolder() = *presets;
    const auto take = [&](const juce::String& name) {
        for (const auto& [width, height] : {std::pair(500, 250), std::pair(820, 640), std::pair(200, 200)}) {
            desk.view().setSize(width, height);
            photographer.take(desk.view(), name + "-" + juce::String(width) + "x" + juce::String(height));
        }
        desk.view().closeOverlay();
    };
    const auto type = [&desk](const char* name) {
        dynamic_cast<PresetBrowserView&>(*desk.view().overlay()).nameField().setText(name);
        juce::MessageManager::getInstance()->runDispatchLoopUntil(1);
    };
    desk.view().showImporter();
    take("import");
    desk.view().showImporter();
    type("so");
    take("import-typed");
    desk.view().showExporter();
    take("export");
    desk.view().showExporter();
    type("echo");
    dynamic_cast<PresetBrowserView&>(*desk.view().overlay())
        .confirmButton()
        .keyPressed(juce::KeyPress(juce::KeyPress::returnKey));
    take("export-replace");
    desk.view().fileDragEnter({juce::String((*presets / "echo.json").string())}, 1, 1);
    take("drop");
}

/// The sizes in which what an editor shows beside its cards is drawn.
constexpr std::array smallAndLarge{std::pair(500, 250), std::pair(820, 640)};

/// What an editor without rules says, and its header's menu.
void showEmpty(Photographer& photographer) {
    for (const auto& [width, height] : {std::pair(500, 250), std::pair(820, 640), std::pair(200, 200)}) {
        Desk desk({});
        desk.view().setSize(width, height);
        photographer.take(desk.view(), sized("empty", desk.view()));
        press(desk.view().header().moreButton());
        photographer.take(desk.view(), sized("menu", desk.view()));
    }
}

/// Asks why of the newest entry of the In log.
void askWhy(QuilloView& view) {
    auto& in = view.logger().openedForm().inList();
    in.choose(in.rows() - 1);
    press(in.actionButton(0));
}

/// A chosen entry, and the reasons that the cards give when it is asked about.
void showReasons(Photographer& photographer) {
    for (const auto& [width, height] : smallAndLarge) {
        Desk desk(performanceRules());
        auto& view = desk.view();
        view.setSize(width, height);
        perform(desk);
        openLogs(view);
        look(desk);
        auto& in = view.logger().openedForm().inList();
        in.choose(in.rows() - 1);
        photographer.take(view, sized("chosen", view));
        askWhy(view);
        photographer.take(view, sized("why", view));
    }
}

/// What went out, marked after an edit by which the first rule sends something else, and the second nothing.
void showWhatNow(Photographer& photographer) {
    for (const auto& [width, height] : smallAndLarge) {
        Desk desk(performanceRules());
        auto& view = desk.view();
        view.setSize(width, height);
        perform(desk);
        openLogs(view);
        look(desk);
        auto& editor = view.editor();
        editor.changeOutputType({editor.rules()[0].id}, OutputEntryType::NoteOff);
        editor.setOff({editor.rules()[1].id}, true);
        press(view.logger().openedForm().whatNowButton());
        photographer.take(view, sized("what-now", view));
    }
}

/// A long list: with the fields of its rules, and with each rule in one line.
void showLists(Photographer& photographer) {
    for (const auto& [width, height] : smallAndLarge) {
        auto rules = performanceRules();
        std::ranges::copy(demoRules(), std::back_inserter(rules));
        Desk desk(rules);
        auto& view = desk.view();
        view.setSize(width, height);
        perform(desk);
        photographer.take(view, sized("cards", view));
        press(view.header().formButton());
        photographer.take(view, sized("one-line", view));
        view.header().openSearch("channel 2");
        photographer.take(view, sized("search", view));
    }
}

void showLearning(Photographer& photographer) {
    for (const auto& [width, height] : smallAndLarge) {
        Desk desk(performanceRules());
        auto& view = desk.view();
        view.setSize(width, height);
        press(view.card(view.editor().rules()[0].id)->learnButton());
        photographer.take(view, sized("learn-nothing-yet", view));
        desk.render(512, {{0x90, 60, 100}, {0xB0, 64, 0}, {0xB0, 64, 60}, {0xB0, 64, 127}});
        look(desk);
        photographer.take(view, sized("learn", view));
    }
}

/// Notes C1 to B1 on channel 1, which play an octave higher on channel 2.
std::vector<Rule> splitRules(TriggerEntryType from, OutputEntryType to, const std::string& name) {
    std::vector<Rule> rules;
    for (std::uint8_t note = 36; note < 48; ++note) {
        RuleEntry entry;
        entry.name = name;
        entry.trigger = {.type = from,
                         .channel = TriggerValueV2::Value{0},
                         .note = TriggerValueV2::Value{note},
                         .passThrough = PassThroughV2::EatMatching};
        entry.output.type = to;
        entry.output.channel = RuleOutputChannelV2::Value{1};
        entry.output.note = GenericByteV2::Value{static_cast<std::uint8_t>(note + 12)};
        entry.output.velocity = GenericByteV2::RespectiveTriggerByte{};
        rules.push_back(ruleFromEntry(entry));
    }
    return rules;
}

/// Types what is looked for into the open menu, and takes what it finds first.
void pickInMenu(QuilloView& view, const juce::String& words) {
    for (const auto letter : words) {
        view.overlay()->keyPressed(juce::KeyPress(letter, {}, letter));
    }
    press(*view.overlay()->getChildComponent(0));
}

/// Two cards that are chosen, and a rule that is switched off.
void showChosen(Photographer& photographer) {
    for (const auto& [width, height] : smallAndLarge) {
        Desk desk(performanceRules());
        auto& view = desk.view();
        view.setSize(width, height);
        const auto cards = view.list().items();
        view.editor().setOff(view.editor().cardOf(cards[2]), true);
        view.list().select({cards[0], cards[1]});
        photographer.take(view, sized("chosen-cards", view));
        view.list().select({});
        view.list().scrollTo(cards[2]);
        photographer.take(view, sized("switched-off", view));
    }
}

/// A run folded, while its range is asked for, and unfolded.
void showRuns(Photographer& photographer) {
    for (const auto& [width, height] : smallAndLarge) {
        auto rules = splitRules(TriggerEntryType::NoteOn, OutputEntryType::NoteOn, "Bass split");
        const auto ends =
            splitRules(TriggerEntryType::NoteOff, OutputEntryType::NoteOff, "Bass split, release");
        rules.insert(rules.end(), ends.begin(), ends.end());
        Desk desk(rules);
        auto& view = desk.view();
        view.setSize(width, height);
        photographer.take(view, sized("run-folded", view));
        auto& card = *view.card(view.editor().rules()[0].id);
        dynamic_cast<MyPickerImpl&>(card.trigger().fields()[2]->field()).openMenu();
        pickInMenu(view, "range");
        photographer.take(view, sized("run-made", view));
        view.closeOverlay();
        press(card.buttons().moreButton());
        pickInMenu(view, "unfold");
        photographer.take(view, sized("run-unfolded", view));
    }
}

/// A pedal learns to call strings, in six pictures.
class Film {
public:
    explicit Film(Photographer& photographer) : photographer_(photographer) {
        view().setSize(600, 330);
        hear({}, 3 * second);
    }

    void show() {
        take();
        press(view().card(rule())->learnButton());
        take();
        hear(pedalDown_);
        hear(pedalUp_);
        take();
        pick("CC 64 : Sustain, value 127, channel 1");
        hear({}, 1);
        take();
        openLogs(view());
        hear(pedalDown_, 1);
        take();
        hear(pedalUp_);
        view().advance(RuleView::lightTime);
        askWhy(view());
        take();
    }

private:
    using Messages = std::vector<std::vector<std::uint8_t>>;

    static constexpr std::uint32_t second = static_cast<std::uint32_t>(defaultSampleRate);

    static std::vector<Rule> strings() {
        RuleEntry entry;
        entry.name = "Strings";
        entry.output.type = OutputEntryType::ProgramChange;
        entry.output.program = GenericByteV2::Value{48};
        return {ruleFromEntry(entry)};
    }

    QuilloView& view() { return desk_.view(); }
    UUID rule() { return view().editor().rules()[0].id; }

    void hear(const Messages& messages, std::uint32_t frames = second / 2) {
        desk_.render(frames, messages);
        desk_.drain();
        view().advance(0);
    }

    void pick(const std::string& words) {
        auto& learning = dynamic_cast<LearnOverlay&>(*view().overlay());
        const auto offer = std::ranges::find(learning.offers(), words, &TriggerOffer::words);
        learning.pick(static_cast<int>(offer - learning.offers().begin()));
    }

    void take() { photographer_.take(view(), "film-pedal-" + juce::String(++pictures_)); }

    const Messages pedalDown_{{0xB0, 64, 127}};
    const Messages pedalUp_{{0xB0, 64, 0}};
    Photographer& photographer_;
    Desk desk_{strings()};
    int pictures_ = 0;
};

void showCards(Photographer& photographer) {
    std::vector<Rule> rules;
    for (const auto& item : outputTypeMenu()) {
        rules.push_back(ruleFromEntry(defaultEntry(item.value, static_cast<std::int64_t>(rules.size()) + 1)));
    }
    for (const auto& item : triggerTypeMenu()) {
        auto entry = defaultEntry(OutputEntryType::NoteOn, static_cast<std::int64_t>(rules.size()) + 1);
        entry.trigger.type = item.value;
        rules.push_back(ruleFromEntry(entry));
    }
    Desk desk(rules);
    desk.view().setSize(640, 3200);
    photographer.take(desk.view(), "cards", 1);
}

void showMany(Photographer& photographer) {
    Desk desk(manyRules(1000));
    desk.view().setSize(500, 600);
    desk.view().list().scrollTo(desk.view().editor().rules()[500].id);
    photographer.take(desk.view(), "thousand");
}

/// The first three cards of a preset: `recipe-echo.png` of `echo.json`.
void showPreset(Photographer& photographer, const std::string& path) {
    constexpr int surroundings = 131;
    constexpr int card = 122;
    const auto rules = PluginData::read(readWholeFile(path)).rules;
    const auto cards = std::min<std::size_t>(runsOf(rules).size(), 3);
    Desk desk(rules);
    desk.view().setSize(640, surroundings + card * static_cast<int>(cards));
    photographer.take(desk.view(), "recipe-" + juce::File(path).getFileNameWithoutExtension());
}

void showAll(const juce::File& folder, std::span<char*> presets) {
    Photographer photographer(folder);
    showEmpty(photographer);
    showSizes(photographer);
    for (const auto size :
         {juce::Point(820, 640), juce::Point(500, 250), juce::Point(320, 480), juce::Point(200, 200)}) {
        showLive(photographer, size);
    }
    showScales(photographer);
    showOverlays(photographer);
    showBrowser(photographer);
    showReasons(photographer);
    showWhatNow(photographer);
    showLists(photographer);
    showLearning(photographer);
    showRuns(photographer);
    showChosen(photographer);
    Film(photographer).show();
    showCards(photographer);
    showMany(photographer);
    for (const auto* preset : presets) {
        showPreset(photographer, std::filesystem::absolute(preset));
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "Usage: quillo-shots FOLDER [PRESET.json ...]\n";
        return exitUsage;
    }
    const juce::ScopedJuceInitialiser_GUI juce;
    if (const auto problem = requireTypefaces(); problem.isNotEmpty()) {
        std::cerr << problem << '\n';
        return exitSoftware;
    }
    const auto folder = juce::File::getCurrentWorkingDirectory().getChildFile(argv[1]);
    if (!folder.createDirectory()) {
        std::cerr << "cannot make the folder " << folder.getFullPathName() << '\n';
        return exitCannotCreate;
    }
    try {
        showAll(folder, std::span(argv, static_cast<std::size_t>(argc)).subspan(2));
    } catch (const std::exception& error) {
        std::cerr << escapedLines(error.what()) << '\n';
        return exitSoftware;
    }
    return 0;
}
