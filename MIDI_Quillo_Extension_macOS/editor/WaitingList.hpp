// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/LogList.hpp"
#include "session/QuilloModel.hpp"

namespace quillo {

/// What waits to be sent, a row each: the time to go, the bytes, the name of the rule, and a cross that
/// cancels it. The next to leave stands at the top. With the keyboard focus
/// the arrows choose a row, Delete or Backspace cancels it and goes on to the next; one that leaves by itself
/// is no longer chosen. A click leaves the keyboard where it is. [main] only.
class WaitingList final : public LogList {
public:
    /// `onCancel` gets the number of an output.
    WaitingList(const QuilloModel& model, std::function<void(std::uint64_t number)> onCancel);

    /// What waits has changed.
    void refresh();

    [[nodiscard]] int rows() const;
    /// What a row says to those who do not see it, and as its tooltip where it is cut.
    [[nodiscard]] juce::String text(int row) const;
    [[nodiscard]] juce::String tooltip(int row) const;
    /// Where the cross of a row is drawn, in this view.
    [[nodiscard]] juce::Rectangle<int> crossArea(int row) const;
    /// The number of the output that is chosen.
    [[nodiscard]] std::optional<std::uint64_t> chosen() const { return chosen_; }

private:
    class Row;
    struct Columns {
        juce::Rectangle<int> time;
        juce::Rectangle<int> bytes;
        juce::Rectangle<int> name;
        juce::Rectangle<int> cross;
    };

    int getNumRows() override { return rows(); }
    void paintListBoxItem(int, juce::Graphics&, int, int, bool) override {}
    juce::Component* refreshComponentForRow(int row, bool selected, juce::Component* existing) override;
    juce::String getNameForRow(int row) override;
    void selectedRowsChanged(int last) override;
    void deleteKeyPressed(int last) override;
    using juce::Component::keyPressed;
    bool keyPressed(const juce::KeyPress& key, juce::Component* origin) override;

    [[nodiscard]] const WaitingOutput* output(int row) const;
    [[nodiscard]] Columns columns(int row, juce::Rectangle<int> area) const;
    void showChosen();

    const QuilloModel& model_;
    std::function<void(std::uint64_t)> onCancel_;
    std::optional<std::uint64_t> chosen_;
    bool updating_ = false;
};

}  // namespace quillo
