// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <set>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/Environment.hpp"
#include "editor/MenuExtras.hpp"

namespace quillo {

/// What a menu offers.
struct MenuContents {
    juce::String title;
    std::vector<juce::String> labels;
    /// The row that is chosen now, if any is.
    std::optional<std::size_t> current;
    /// The rows that cannot be picked now. They are drawn grey.
    std::set<std::size_t> disabled{};
    /// What a typed text means beyond the rows; nothing where it means nothing.
    std::function<std::optional<TypedChoice>(const juce::String& typed)> typed{};
    /// The rows that are marked as being so.
    std::set<std::size_t> ticked{};
    /// Picking a row leaves the menu open: several are for being picked.
    bool staysOpen = false;
};

/// A menu inside the editor's window, under or over the field that opened it, as large as there is room for.
/// It opens at the current row. Typing shows only the rows that hold the typed text, and before them what the
/// text means by itself; "#" also finds a sharp. The arrows, Page Up, Page Down, Home, End and the wheel walk
/// through the rows; Return and, before anything is typed, Space pick; Escape, Tab and a click outside close.
/// [main] only.
class PopupMenuOverlay final : public juce::Component, public EnvironmentScope, private juce::ListBoxModel {
public:
    using OnPick = std::function<void(std::size_t row)>;

    /// Opens a menu in the host around `field`, next to `box` of that field and in its colours. Without a
    /// host nothing opens. `onPick`, or the choice that was typed, is called once at most, after the menu has
    /// closed; each time where it stays open. Returns the menu that is open now, or null.
    static PopupMenuOverlay* open(juce::Component& field, juce::Rectangle<int> box, MenuContents contents,
                                  OnPick onPick);

    PopupMenuOverlay(MenuContents contents, juce::Rectangle<int> anchor, OnPick onPick);
    ~PopupMenuOverlay() override;

    /// Offers this from now on; what was typed stays, and the row that is highlighted where it still is one.
    void refresh(MenuContents contents);

    /// Where a menu of `wanted` size goes beside `anchor` inside `window`: below it where there is room, else
    /// above, else where there is more room; never outside of the window.
    [[nodiscard]] static juce::Rectangle<int> place(juce::Rectangle<int> anchor, juce::Point<int> wanted,
                                                    juce::Rectangle<int> window);

    /// What has been typed, the rows that it leaves, and the highlighted one among all; behind the last row
    /// of all comes what was typed.
    [[nodiscard]] const juce::String& typed() const { return typed_; }
    [[nodiscard]] const std::vector<std::size_t>& shownRows() const { return shown_; }
    [[nodiscard]] std::optional<std::size_t> highlightedRow() const;
    [[nodiscard]] juce::Rectangle<int> panelArea() const { return panel_; }
    /// Where a row is drawn, in this view; empty when it is out of sight.
    [[nodiscard]] juce::Rectangle<int> rowArea(std::size_t row) const;

    void paint(juce::Graphics& graphics) override;
    void resized() override;
    void mouseDown(const juce::MouseEvent& event) override;
    bool keyPressed(const juce::KeyPress& key) override;
    void focusGained(FocusChangeType cause) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    int getNumRows() override;
    void paintListBoxItem(int row, juce::Graphics& graphics, int width, int height,
                          bool highlighted) override;
    void listBoxItemClicked(int row, const juce::MouseEvent& event) override;
    void returnKeyPressed(int row) override;
    void deleteKeyPressed(int row) override;
    juce::String getNameForRow(int row) override;
    juce::String getTooltipForRow(int row) override;

    [[nodiscard]] const juce::String& labelOf(std::size_t row) const;
    [[nodiscard]] const juce::String& label(int row) const;
    [[nodiscard]] std::size_t typedRow() const { return contents_.labels.size(); }
    [[nodiscard]] bool isTicked(int row) const;
    [[nodiscard]] bool canPick(int row) const;
    void setContents(MenuContents contents);
    [[nodiscard]] int wantedWidth() const;
    /// The height of a panel around so many rows and the line with what is typed.
    [[nodiscard]] int heightFor(std::size_t rows) const;
    [[nodiscard]] juce::Rectangle<int> panelForShownRows() const;
    [[nodiscard]] int searchHeight() const;
    void search(const juce::String& typed);
    void highlight(std::optional<std::size_t> row);
    [[nodiscard]] std::optional<std::size_t> bestMatch() const;
    void pick(int row);
    void close();

    MenuContents contents_;
    juce::Rectangle<int> anchor_;
    OnPick onPick_;
    juce::String typed_;
    std::optional<TypedChoice> typedChoice_;
    std::vector<std::size_t> shown_;
    int widestLabel_ = 0;
    juce::Rectangle<int> panel_;
    juce::ListBox list_;
};

}  // namespace quillo
