// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <set>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/CardWords.hpp"
#include "editor/FieldPlan.hpp"

namespace quillo {

/// A rule in one line, in the colours of its values: "CC 64 : Sustain 127 any channel → Program Change 48
/// channel 1". What does not fit is cut, but for what is found, and the whole line is the tooltip. A click
/// calls `onClick`. [main] only.
class CardLine final : public juce::Component, public juce::TooltipClient {
public:
    /// Around a word that was found, and around the line.
    static constexpr int markMargin = 3;

    explicit CardLine(std::function<void()> onClick);

    void show(const FieldPlans& trigger, const FieldPlans& output);
    /// Draws the words of these fields, by their position in their section, as found, and no others.
    void mark(std::set<std::size_t> trigger, std::set<std::size_t> output);

    /// The whole line.
    [[nodiscard]] juce::String text() const;

    juce::String getTooltip() override;
    void paint(juce::Graphics& graphics) override;
    void mouseUp(const juce::MouseEvent& event) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    struct Word {
        juce::String text;
        juce::Colour colour;
        const std::set<std::size_t>* found = nullptr;  ///< of the word's section
        std::size_t field = 0;

        [[nodiscard]] bool isFound() const { return found != nullptr && found->contains(field); }
    };

    void append(const FieldPlans& section, const std::set<std::size_t>& found);
    void paintWord(juce::Graphics& graphics, const Word& word, juce::Rectangle<int>& area) const;
    /// Of the words from one position to before another one.
    [[nodiscard]] int width(std::size_t from, std::size_t to) const;
    [[nodiscard]] std::size_t firstShown() const;
    [[nodiscard]] juce::Rectangle<int> textArea() const;

    std::function<void()> onClick_;
    std::vector<Word> words_;
    std::set<std::size_t> foundInTrigger_;
    std::set<std::size_t> foundInOutput_;
};

}  // namespace quillo
