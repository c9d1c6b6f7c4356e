// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>

#include <juce_gui_basics/juce_gui_basics.h>

#include "audiounit/QuilloModel.hpp"

namespace quillo {

/// All kept entries of one log, the oldest at the top, a row each. Only the rows in sight are drawn. While the
/// newest is in sight, it stays in sight. [main] only.
class EntryList final : public juce::Component, private juce::ListBoxModel {
public:
    using Log = std::function<const QuilloModel::Log&()>;

    EntryList(const juce::String& title, Log entries);
    ~EntryList() override;

    /// The log has changed.
    void refresh();

    [[nodiscard]] int rows() const { return shownRows_; }
    [[nodiscard]] juce::String text(int row) const;

    void resized() override;
    void paint(juce::Graphics& graphics) override;

private:
    int getNumRows() override { return shownRows_; }
    void paintListBoxItem(int row, juce::Graphics& graphics, int width, int height, bool selected) override;
    juce::String getNameForRow(int row) override { return text(row); }
    juce::String getTooltipForRow(int row) override { return text(row); }

    Log entries_;
    int shownRows_ = 0;
    juce::ListBox list_;
};

}  // namespace quillo
