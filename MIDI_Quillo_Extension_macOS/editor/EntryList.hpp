// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "session/QuilloModel.hpp"

namespace quillo {

/// What the entries of the logs are drawn with.
[[nodiscard]] juce::Font entryFont();

/// All kept entries of one log, the oldest at the top, a row each. Only the rows in sight are drawn. While
/// the newest is in sight, it stays in sight.
///
/// For those who scroll up to read, or select rows, the list is held: its rows stay as they are while the log
/// goes on. End, or scrolling down to the end with nothing selected, shows the newest again, and so does
/// Escape where rows are selected; an emptied log is shown at once. Ctrl+C copies the selected rows, all
/// without a selection. [main] only.
class EntryList final : public juce::Component, private juce::ListBoxModel, private juce::KeyListener {
public:
    using Log = std::function<const QuilloModel::Log&()>;

    /// `onHold` runs when the list begins or ends to be held.
    EntryList(const juce::String& title, Log entries, std::function<void()> onHold);
    ~EntryList() override;

    /// The log has changed.
    void refresh();
    /// Shows the log as it is now, held or not.
    void showNewest();

    [[nodiscard]] bool isHeld() const { return held_; }
    [[nodiscard]] int rows() const { return static_cast<int>(shown_.size()); }
    [[nodiscard]] juce::String text(int row) const;
    /// The whole of a row that is cut; empty for one that is not.
    [[nodiscard]] juce::String tooltip(int row) const;
    /// What Ctrl+C copies, a line for each row.
    [[nodiscard]] juce::String textToCopy() const;
    /// Where a row is drawn, in this view.
    [[nodiscard]] juce::Rectangle<int> rowArea(int row) const;

    void resized() override;
    void paint(juce::Graphics& graphics) override;
    void paintOverChildren(juce::Graphics& graphics) override;
    void focusOfChildComponentChanged(FocusChangeType cause) override;

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

    [[nodiscard]] bool showsEnd() const;
    void hold();

    Log entries_;
    std::function<void()> onHold_;
    std::vector<EventLogEntry> shown_;  ///< the log as it was when it was last shown
    bool held_ = false;
    bool updating_ = false;
    juce::ListBox list_;
};

}  // namespace quillo
