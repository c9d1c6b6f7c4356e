// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/Environment.hpp"
#include "editor/LearnButton.hpp"
#include "editor/TriggerLearner.hpp"
#include "session/QuilloModel.hpp"

namespace quillo {

/// Listens to what comes in and offers it as triggers, beside what opened it: "Play, or move a controller …".
/// The likeliest stands first and is highlighted. From when the user reaches for a row, by the pointer or the
/// arrows, rows keep their places and new ones come below them; that ends when the pointer leaves or the
/// first row is highlighted again. A click, Return and Space pick; Escape, Tab and a click outside close.
/// [main] only.
class LearnOverlay final : public juce::Component, public EnvironmentScope, private juce::ListBoxModel {
public:
    using OnPick = std::function<void(const std::vector<RuleTriggerEntry>& triggers)>;

    /// Opens it in the host around `opener`, which is a `LearnButton` or something else. Without a host, and
    /// over an alert, nothing opens. `onPick` is called once at most, after it has closed.
    static void open(juce::Component& opener, std::shared_ptr<QuilloModel> model, OnPick onPick);

    LearnOverlay(std::shared_ptr<QuilloModel> model, juce::Rectangle<int> anchor, LearnButton* button,
                 OnPick onPick);
    ~LearnOverlay() override;

    /// What is offered, as it is shown.
    [[nodiscard]] const std::vector<TriggerOffer>& offers() const { return offers_; }
    /// Picks an offer, as a click on it does; nothing happens for a row that does not exist.
    void pick(int row);
    [[nodiscard]] int highlightedRow() const { return list_.getSelectedRow(); }
    [[nodiscard]] juce::Rectangle<int> panelArea() const { return panel_; }
    /// Where a row is drawn, in this view.
    [[nodiscard]] juce::Rectangle<int> rowArea(int row) const;

    void paint(juce::Graphics& graphics) override;
    void resized() override;
    void mouseDown(const juce::MouseEvent& event) override;
    void mouseMove(const juce::MouseEvent& event) override;
    void mouseExit(const juce::MouseEvent& event) override;
    bool keyPressed(const juce::KeyPress& key) override;
    void focusGained(FocusChangeType cause) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    int getNumRows() override { return static_cast<int>(offers_.size()); }
    void paintListBoxItem(int row, juce::Graphics& graphics, int width, int height,
                          bool highlighted) override;
    void listBoxItemClicked(int row, const juce::MouseEvent& event) override;
    void returnKeyPressed(int row) override { pick(row); }
    juce::String getNameForRow(int row) override;
    juce::String getTooltipForRow(int row) override;

    void hearNews();
    void showOffers();
    [[nodiscard]] bool isReachedFor() const;
    [[nodiscard]] juce::Rectangle<int> panelForOffers() const;
    [[nodiscard]] static int heightFor(int rows);
    void close();

    std::shared_ptr<QuilloModel> model_;
    juce::Rectangle<int> anchor_;
    SafePointer<LearnButton> button_;
    OnPick onPick_;
    std::uint64_t heard_;  ///< how many entries of the log were there or have been heard
    TriggerLearner learner_;
    std::vector<TriggerOffer> offers_;
    bool pointed_ = false;  ///< the pointer has moved over the rows
    juce::Rectangle<int> panel_;
    juce::ListBox list_;
    Observation observation_;
};

}  // namespace quillo
