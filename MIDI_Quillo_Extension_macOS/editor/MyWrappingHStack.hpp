// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/PreferredSize.hpp"

namespace quillo {

/// Lays views in a row and goes on in further rows where the width does not suffice, like words of a text.
/// Each view gets its preferred size, but no more than the whole width; the views of a row stand on one
/// ground line. With `maxContent` the views of each row grow evenly until they fill it. [main] only.
class MyWrappingHStack final : public juce::Component, public PreferredSize {
public:
    /// The gaps between views of a row and between rows.
    struct Spacing {
        int horizontal = 0;
        int vertical = 0;
    };

    explicit MyWrappingHStack(Spacing spacing, bool maxContent = false);

    /// Lays these views from now on, and takes out those that are not among them. They stay the caller's and
    /// must stay alive until they are taken out. A view without a `PreferredSize` keeps the size that it has
    /// now. Invisible views take no room.
    void setViews(const std::vector<juce::Component*>& views);

    /// The size of all views in a single row.
    [[nodiscard]] int preferredWidth() const override;
    [[nodiscard]] int preferredHeight() const override;

    void resized() override;

    /// Where views of these sizes go, in a stack of this width.
    [[nodiscard]] static std::vector<juce::Rectangle<int>> place(const std::vector<juce::Point<int>>& sizes,
                                                                 Spacing spacing, bool maxContent, int width);
    /// The height that views of these sizes take.
    [[nodiscard]] static int height(const std::vector<juce::Point<int>>& sizes, Spacing spacing, int width);
    /// The width that they take in a single row.
    [[nodiscard]] static int widthInARow(const std::vector<juce::Point<int>>& sizes, Spacing spacing);

private:
    struct Entry {
        juce::Component* view;
        juce::Point<int> ownSize;
    };

    [[nodiscard]] std::vector<Entry> shownEntries() const;
    [[nodiscard]] std::vector<juce::Point<int>> shownSizes() const;

    Spacing spacing_;
    bool maxContent_;
    std::vector<Entry> entries_;
};

}  // namespace quillo
