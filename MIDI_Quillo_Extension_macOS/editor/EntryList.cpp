// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/EntryList.hpp"

#include <utility>

#include "editor/Environment.hpp"
#include "editor/FieldPlan.hpp"
#include "editor/Fonts.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int rowHeight = 15;
constexpr int indent = 6;
constexpr int groundLift = -5;

}  // namespace

EntryList::EntryList(const juce::String& title, Log entries) : entries_(std::move(entries)) {
    list_.setTitle(title);
    list_.setModel(this);
    list_.setRowHeight(rowHeight);
    list_.setColour(juce::ListBox::backgroundColourId, juce::Colours::transparentBlack);
    addAndMakeVisible(list_);
    refresh();
}

EntryList::~EntryList() {
    list_.setModel(nullptr);
}

void EntryList::refresh() {
    const auto& bar = list_.getVerticalScrollBar();
    const bool atEnd = bar.getCurrentRange().getEnd() >= bar.getMaximumRangeLimit() - rowHeight;
    shownRows_ = static_cast<int>(entries_().size());
    list_.updateContent();
    if (atEnd && shownRows_ > 0) {
        list_.scrollToEnsureRowIsOnscreen(shownRows_ - 1);
    }
    list_.repaint();
}

juce::String EntryList::text(int row) const {
    const auto& log = entries_();
    return row >= 0 && row < static_cast<int>(log.size())
               ? juceText(quillo::text(log[static_cast<std::size_t>(row)]))
               : juce::String();
}

void EntryList::resized() {
    list_.setBounds(getLocalBounds().reduced(2));
}

void EntryList::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    const auto area = getLocalBounds().toFloat().reduced(0.5F);
    graphics.setColour(displayColour(style::lifted(palette.background, groundLift)));
    graphics.fillRoundedRectangle(area, style::fieldCorner);
    graphics.setColour(displayColour(palette.borders));
    graphics.drawRoundedRectangle(area, style::fieldCorner, 1);
}

void EntryList::paintListBoxItem(int row, juce::Graphics& graphics, int width, int height,
                                 bool /*selected*/) {
    graphics.setColour(displayColour(environment<PaletteKey>(*this).primaryText));
    graphics.setFont(monospacedFont(style::valueText - 1));
    graphics.drawText(text(row), indent, 0, width - 2 * indent, height, juce::Justification::centredLeft,
                      true);
}

}  // namespace quillo
