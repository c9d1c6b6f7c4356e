// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/EntryButton.hpp"
#include "editor/LogList.hpp"
#include "session/MarkedLog.hpp"
#include "session/QuilloModel.hpp"

namespace quillo {

/// What the entries of the logs are drawn with.
[[nodiscard]] juce::Font entryFont();

/// What can be done with one entry: a button at the end of its row.
struct EntryAction {
    juce::String label;
    std::function<void(const EventLogEntryVariants& event)> act;
    /// Whether there is anything to do; else the button is grey.
    std::function<bool(const EventLogEntryVariants& event)> works;
};

/// All kept entries of one log, the oldest at the top, a row each. While
/// the newest is in sight, it stays in sight.
///
/// For those who scroll up to read, or select rows, the list is held: its rows stay as they are while the log
/// goes on. End, or scrolling down to the end with nothing selected, shows the newest again, and so does
/// Escape where rows are selected; an emptied log is shown at once. Ctrl+C copies the selected rows, all
/// without a selection.
///
/// An entry whose row is the only one that is selected is chosen: a click does so, the arrows, and Return
/// where nothing is. It has buttons for what can be done with it.
///
/// It can show marked entries in the place of the log: a plus and a minus sign stand before what would be
/// sent and what would not, which is struck out. Those who do not see it are told in words. [main] only.
class EntryList final : public LogList {
public:
    using Log = std::function<const QuilloModel::Log&()>;

    /// `onHold` runs when the list begins or ends to be held.
    EntryList(const juce::String& title, Log entries, std::function<void()> onHold);

    /// The buttons of the chosen entry, the first one on the left.
    void setActions(std::vector<EntryAction> actions);
    /// What an action is called from now on.
    void setActionLabel(std::size_t action, const juce::String& label);
    [[nodiscard]] juce::Button& actionButton(std::size_t action) { return *buttons_[action]; }
    /// Runs when another entry was chosen, or none is any more.
    std::function<void()> onChoose = [] {};
    /// What Return does for the chosen entry.
    std::function<void(const EventLogEntryVariants& event)> onReturn = [](const EventLogEntryVariants&) {};

    /// Chooses the entry of a row, as a click on it does.
    void choose(int row) { list_.selectRow(row); }
    /// The chosen entry's event, or null. It lives until another one is chosen.
    [[nodiscard]] const EventLogEntryVariants* chosen() const;

    /// The log has changed.
    void refresh();
    /// Shows the log as it is now, held or not.
    void showNewest();
    /// Shows these in the place of the log, the first mark in sight; nothing shows the log again.
    void showMarked(std::optional<std::vector<MarkedEntry>> entries);

    [[nodiscard]] bool isHeld() const { return held_; }
    [[nodiscard]] int rows() const { return static_cast<int>(shown_.size()); }
    [[nodiscard]] juce::String text(int row) const;
    /// The whole of a row that is cut; empty for one that is not.
    [[nodiscard]] juce::String tooltip(int row) const;
    /// What Ctrl+C copies, a line for each row.
    [[nodiscard]] juce::String textToCopy() const;

    void resized() override;

private:
    int getNumRows() override { return rows(); }
    void paintListBoxItem(int row, juce::Graphics& graphics, int width, int height, bool selected) override;
    juce::String getNameForRow(int row) override { return text(row); }
    juce::String getTooltipForRow(int row) override { return tooltip(row); }
    void backgroundClicked(const juce::MouseEvent& event) override;
    void selectedRowsChanged(int last) override;
    void listWasScrolled() override;
    using juce::Component::keyPressed;
    bool keyPressed(const juce::KeyPress& key, juce::Component* origin) override;

    [[nodiscard]] const MarkedEntry& entry(int row) const { return shown_[static_cast<std::size_t>(row)]; }
    [[nodiscard]] juce::String paintedText(int row) const;
    [[nodiscard]] juce::String shownText(int row, int room) const;
    [[nodiscard]] int buttonsWidth() const;
    void showEntries();
    void layOutButtons();
    void chosenChanged();
    void chooseOrUse();
    [[nodiscard]] bool showsEnd() const;
    void hold();

    Log entries_;
    std::function<void()> onHold_;
    std::optional<std::vector<MarkedEntry>> marked_;  ///< what is shown in the log's place
    std::vector<MarkedEntry> shown_;                  ///< the log as it was when it was last shown
    std::vector<EntryAction> actions_;
    std::vector<std::unique_ptr<EntryButton>> buttons_;
    std::optional<EventLogEntryVariants> chosen_;
    bool held_ = false;
    bool updating_ = false;
};

}  // namespace quillo
