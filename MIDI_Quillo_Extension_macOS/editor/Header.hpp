// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/Environment.hpp"
#include "editor/MyIconButton.hpp"
#include "editor/MyTextButton.hpp"
#include "editor/RuleListEditor.hpp"
#include "editor/SearchField.hpp"

namespace quillo {

/// What the header's buttons do.
struct HeaderActions {
    std::function<void()> onImport;
    std::function<void()> onExport;
    std::function<void()> onOpenURL;
    std::function<void()> onPanic;          ///< without one there is no button for it
    std::function<void()> onSendAllOnLoad;  ///< without one it cannot be picked
    std::function<void()> onForm;           ///< of the cards: in one line, or with their fields
    SearchActions search;
    std::function<void(bool playing)> onPlaying;  ///< only the rules that are played are to be shown, or all
};

/// The bar at the top: the logo, import and export, undo and redo, the form of the cards, the search with
/// "Playing", "Panic", "Docs / Donate", a menu and the version. Without room for the search's field there is
/// an icon, which opens it in the place of the buttons, where both stay while "Playing" is on. The menu has a
/// row for each button that a narrow editor has no room for, and "Send All On Load", grey while no such rule
/// runs. [main] only.
class Header final : public juce::Component, public EnvironmentScope {
public:
    Header(RuleListEditor& editor, HeaderActions actions);

    /// What can be undone and redone may have changed.
    void refresh();
    /// Gives the search field the keyboard, in the place of the buttons where there is no other; what is in
    /// it is selected, or replaced by this text.
    void openSearch(const juce::String& text = {});
    /// Empties the search field, ends "Playing", and puts the buttons back.
    void closeSearch();
    /// All rules are to be shown again.
    void endPlaying() { setPlaying(false); }
    /// Whether the cards are shown in one line.
    void showForm(bool inOneLine);

    [[nodiscard]] MyIconButton& importButton() { return import_; }
    [[nodiscard]] MyIconButton& exportButton() { return export_; }
    [[nodiscard]] MyIconButton& undoButton() { return undo_; }
    [[nodiscard]] MyIconButton& redoButton() { return redo_; }
    [[nodiscard]] MyIconButton& formButton() { return form_; }
    [[nodiscard]] MyIconButton& searchButton() { return searchButton_; }
    [[nodiscard]] SearchField& searchField() { return search_; }
    [[nodiscard]] MyTextButton& playingButton() { return playing_; }
    [[nodiscard]] MyTextButton& panicButton() { return panic_; }
    [[nodiscard]] MyTextButton& docsButton() { return docs_; }
    [[nodiscard]] MyIconButton& moreButton() { return more_; }

    void resized() override;
    void paint(juce::Graphics& graphics) override;
    void parentHierarchyChanged() override;

private:
    void openMore();
    void doRow(std::size_t row);
    void setPlaying(bool playing);
    [[nodiscard]] bool isNarrow() const;
    [[nodiscard]] bool hasRoomForSearch() const;
    void layOutButtons(juce::Rectangle<int> area);
    void layOutSearch(juce::Rectangle<int> area, bool withPlaying);
    juce::Rectangle<int> layOutRight(juce::Rectangle<int> area);
    [[nodiscard]] juce::Rectangle<int> versionArea() const;

    RuleListEditor& editor_;
    HeaderActions actions_;
    MyIconButton import_;
    MyIconButton export_;
    MyIconButton undo_;
    MyIconButton redo_;
    MyIconButton form_;
    MyIconButton searchButton_;
    SearchField search_;
    MyTextButton playing_;
    MyTextButton panic_;
    MyTextButton docs_;
    MyIconButton more_;
    bool showsVersion_ = true;
    bool searching_ = false;  ///< in the place of the buttons
    bool isPlaying_ = false;
};

}  // namespace quillo
