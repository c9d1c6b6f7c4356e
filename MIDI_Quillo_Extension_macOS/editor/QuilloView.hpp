// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/CardForms.hpp"
#include "editor/CardSearch.hpp"
#include "editor/ChosenCards.hpp"
#include "editor/ClickReleasesKeyboard.hpp"
#include "editor/EditorLookAndFeel.hpp"
#include "editor/Environment.hpp"
#include "editor/FileDropHint.hpp"
#include "editor/GuideOpener.hpp"
#include "editor/Header.hpp"
#include "editor/InOutLogger.hpp"
#include "editor/ListFooter.hpp"
#include "editor/MyDragAndDropForEach.hpp"
#include "editor/OpenQuestion.hpp"
#include "editor/OverlayHost.hpp"
#include "editor/PanicAnswer.hpp"
#include "editor/PresetBrowserView.hpp"
#include "editor/RuleListEditor.hpp"
#include "editor/RuleView.hpp"
#include "editor/ShownCards.hpp"
#include "session/EditorUnit.hpp"

namespace quillo {

/// How the user finds a preset file on a platform whose own panels must be used for that.
struct FilePanels {
    std::function<void()> onImport;
    std::function<void()> onExport;
};

/// The editor: a header, the list of rule cards with the way to add rules, and the logs. It observes the
/// unit's model, and hands every change of the list and what is sent by hand to the unit. Menus, the alert
/// and the file browser open inside it; nothing opens over an alert, and an alert waits until the menu or the
/// file browser that is open is closed. Ctrl+Z and Ctrl+Shift+Z or Ctrl+Y undo and redo, and scroll to the
/// rule that they change; what is done to a card is done to all that are chosen with it; Ctrl+Shift+P is
/// "Panic", also while something is open, and what that did is shown over the list for a while. Ctrl+- shows
/// each rule in one line, or with its fields again; the unit's model keeps that for the next editor. Ctrl+F
/// searches, as does what is typed while a grip has the keyboard focus: finds are marked, other cards fade,
/// Return goes to the next find, Down to its grip, and Escape ends it and gives the keyboard back. "Playing"
/// leaves only the cards of rules that fire. While the question is open why an event did what it did, each
/// card says what it did there; Escape closes it, and ends the marks on what went out. Tab enters while
/// nothing in it has the keyboard focus, beside what had it last. A preset file dropped on it is imported;
/// while it is dragged over the editor, a hint says so. The owner of the window hands it the keys that
/// nothing in it has used. [main] only.
class QuilloView final : public juce::Component,
                         public EnvironmentScope,
                         public OverlayHost,
                         public juce::FileDragAndDropTarget,
                         private juce::FocusChangeListener {
public:
    /// The unit must outlive the view.
    explicit QuilloView(EditorUnit& unit);
    ~QuilloView() override;

    [[nodiscard]] RuleListEditor& editor() { return editor_; }
    [[nodiscard]] Header& header() { return header_; }
    [[nodiscard]] MyDragAndDropForEach& list() { return list_; }
    [[nodiscard]] ListFooter& footer() { return footer_; }
    [[nodiscard]] InOutLogger& logger() { return logger_; }
    [[nodiscard]] ChosenCards& chosenCards() { return chosen_; }
    [[nodiscard]] FileDropHint& dropHint() { return dropHint_; }
    [[nodiscard]] PanicAnswer& panicAnswer() { return panicAnswer_; }
    /// The card that begins with a rule, or null while it is out of sight.
    [[nodiscard]] RuleView* card(const UUID& id) const;

    /// From now on these open in the place of the file browser inside the editor.
    void setFilePanels(FilePanels panels) { filePanels_ = std::move(panels); }

    /// What the owner of the window has to say, in a line below the header that is as high as it is now.
    void setStatusBar(std::unique_ptr<juce::Component> bar);

    void showImporter();
    void showExporter();
    /// Lets so many seconds pass for what is seen for a time: the light of a hit, the answer of a panic.
    /// Shows the hits of the rules in sight as the model has them now.
    void advance(double seconds);
    /// Opens the guide in a browser.
    void showGuide();

    void resized() override;
    void paint(juce::Graphics& graphics) override;
    bool keyPressed(const juce::KeyPress& key) override;
    bool isInterestedInFileDrag(const juce::StringArray& files) override;
    void fileDragEnter(const juce::StringArray& files, int x, int y) override;
    void fileDragExit(const juce::StringArray& files) override;
    void filesDropped(const juce::StringArray& files, int x, int y) override;

private:
    std::unique_ptr<RuleView> makeCard(const UUID& id);
    [[nodiscard]] RunBinding runBinding(const UUID& id);
    void edit(const UUID& id, const RuleEntry& rule, std::optional<FieldPlace> stepped = std::nullopt);
    void showChosen();
    void openCardMenu(const UUID& id, juce::Component& button);
    void foldOrUnfold(const UUID& id);
    void setForm(const UUID& id, bool inOneLine);
    void setFormOfAll();
    void showPlaying(bool onlyPlayed);
    void showItems();
    void followPlaying();
    [[nodiscard]] std::set<UUID> playedNow() const;
    [[nodiscard]] bool isLeftOut(const UUID& id) const;
    [[nodiscard]] std::vector<UUID> shownIds() const;
    void changeOutputType(const UUID& id, const MIDIRuleType& type);
    void addRule(const std::function<void()>& add);
    void removeRule(const UUID& id);
    void focusDeleteButton(std::size_t position);
    void rulesChanged();
    void refreshCards(const ShownCards::Changes& changes);
    void setUpLogs();
    void askWhy(const EventLogEntryVariants& event);
    void endWhy();
    void followChosenEntry();
    void showReasons();
    void showChange(const UUID& rule);
    void learnTrigger(const UUID& id, LearnButton& button);
    void learnNewRule(juce::Component& opener);
    void showAlert();
    void showPanicAnswer();
    void dismissPanicAnswer();
    bool takeKey(const juce::KeyPress& key);
    void enterByKeyboard(bool forward);
    void globalFocusChanged(juce::Component* focused) override;
    void browse(PresetBrowser::Mode mode, PresetBrowserView::OnChosen onChosen);
    void importFile(const std::filesystem::path& file);
    void importExample(const Example& example);

    EditorLookAndFeel lookAndFeel_;
    EditorUnit& unit_;
    std::shared_ptr<QuilloModel> model_;
    RuleListEditor editor_;
    OpenQuestion why_{unit_, editor_};
    ShownCards shown_;
    CardSearch search_{header_, list_, shown_};
    Header header_;
    std::unique_ptr<juce::Component> statusBar_;  ///< of the window's owner; may be null
    ListFooter footer_;
    MyDragAndDropForEach list_;
    ChosenCards chosen_{editor_, list_};
    InOutLogger logger_;
    FileDropHint dropHint_;
    PanicAnswer panicAnswer_;
    FilePanels filePanels_;
    CardForms forms_;
    std::optional<std::set<UUID>> played_;    ///< the cards that "Playing" leaves; nothing where it is off
    std::optional<UUID> outputChanged_;       ///< the rule of which only that changed last
    SafePointer<juce::Component> lastFocus_;  ///< what in the editor had the keyboard focus last
    GuideOpener guide_{[this](const std::string& problem) { editor_.alert(problem); }};
    Observation rulesObservation_;
    Observation alertObservation_;
    Observation panicObservation_;
    juce::TooltipWindow tooltips_;
    ClickReleasesKeyboard clickReleasesKeyboard_{*this};
};

}  // namespace quillo
