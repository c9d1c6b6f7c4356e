// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/EntryList.hpp"

#include <algorithm>
#include <utility>

#include "editor/Environment.hpp"
#include "editor/Fonts.hpp"
#include "editor/JuceText.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int entryIndent = 6;
constexpr int entryButtonGap = 4;

using Mark = MarkedEntry::Mark;

juce::Colour colourOf(Mark mark, const Palette& palette) {
    switch (mark) {
    case Mark::gone: return displayColour(palette.secondaryText);
    case Mark::added: return displayColour(palette.midi2dByteInput);
    case Mark::none: break;
    }
    return displayColour(palette.primaryText);
}

const char* signOf(Mark mark) {
    switch (mark) {
    case Mark::gone: return "- ";
    case Mark::added: return "+ ";
    case Mark::none: break;
    }
    return "";
}

}  // namespace

juce::Font entryFont() {
    return monospacedFont(style::logText);
}

EntryList::EntryList(const juce::String& title, Log entries, std::function<void()> onHold)
    : LogList(title), entries_(std::move(entries)), onHold_(std::move(onHold)) {
    list_.setModel(this);
    list_.setMultipleSelectionEnabled(true);
    refresh();
}

void EntryList::setActions(std::vector<EntryAction> actions) {
    actions_ = std::move(actions);
    buttons_.clear();
    for (const auto& action : actions_) {
        buttons_.push_back(std::make_unique<EntryButton>(action.label, [this, act = action.act] {
            if (const auto event = chosen_) {
                act(*event);
            }
        }));
        addChildComponent(*buttons_.back());
    }
    layOutButtons();
}

void EntryList::setActionLabel(std::size_t action, const juce::String& label) {
    buttons_[action]->setLabel(label);
    layOutButtons();
}

const EventLogEntryVariants* EntryList::chosen() const {
    return chosen_ ? &*chosen_ : nullptr;
}

int EntryList::buttonsWidth() const {
    int width = 0;
    for (const auto& button : buttons_) {
        width += button->preferredWidth() + entryButtonGap;
    }
    return width;
}

/// At the end of the chosen row, while that is in sight. The keyboard stays in the list when they go.
void EntryList::layOutButtons() {
    const auto row = rowArea(list_.getSelectedRow());
    const auto area = rowsArea();
    const bool seen = chosen_ && area.getY() <= row.getCentreY() && row.getCentreY() < area.getBottom();
    auto place = row.withWidth(list_.getVisibleRowWidth()).withTrimmedRight(entryButtonGap / 2);
    place.removeFromLeft(place.getWidth() - buttonsWidth());
    for (std::size_t action = 0; action < buttons_.size(); ++action) {
        auto& button = *buttons_[action];
        if (!seen && button.hasKeyboardFocus(false)) {
            list_.grabKeyboardFocus();
        }
        button.setVisible(seen);
        button.setEnabled(chosen_ && actions_[action].works(*chosen_));
        button.setBounds(place.removeFromLeft(button.preferredWidth()));
        place.removeFromLeft(entryButtonGap);
    }
}

void EntryList::chosenChanged() {
    const bool one = list_.getNumSelectedRows() == 1;
    auto now = one ? std::optional(entry(list_.getSelectedRow()).entry.variants) : std::nullopt;
    const bool changed = now != chosen_;
    chosen_ = std::move(now);
    layOutButtons();
    if (changed) {
        onChoose();
    }
}

void EntryList::refresh() {
    if (!held_ || (entries_().empty() && !marked_)) {
        showNewest();
    }
}

void EntryList::showNewest() {
    {
        const juce::ScopedValueSetter<bool> updating(updating_, true);
        showEntries();
        list_.deselectAllRows();
        list_.updateContent();
        if (rows() > 0) {
            list_.scrollToEnsureRowIsOnscreen(rows() - 1);
        }
    }
    list_.repaint();
    hold();
    chosenChanged();
}

void EntryList::showEntries() {
    shown_.clear();
    if (marked_) {
        shown_ = *marked_;
        return;
    }
    for (const auto& entry : entries_()) {
        shown_.push_back({entry});
    }
}

void EntryList::showMarked(std::optional<std::vector<MarkedEntry>> entries) {
    marked_ = std::move(entries);
    showNewest();
    const auto isMarked = [](const MarkedEntry& entry) { return entry.mark != Mark::none; };
    if (const auto first = std::ranges::find_if(shown_, isMarked); first != shown_.end()) {
        list_.scrollToEnsureRowIsOnscreen(static_cast<int>(first - shown_.begin()));
    }
}

bool EntryList::showsEnd() const {
    const auto& bar = list_.getVerticalScrollBar();
    return bar.getCurrentRange().getEnd() >= bar.getMaximumRangeLimit() - style::logRowHeight;
}

/// Holds the list if it is being read, and lets it go on otherwise.
void EntryList::hold() {
    const bool held = !showsEnd() || list_.getNumSelectedRows() > 0;
    if (!updating_ && std::exchange(held_, held) != held) {
        refresh();
        onHold_();
    }
}

juce::String EntryList::text(int row) const {
    return row >= 0 && row < rows() ? juceText(markedText(entry(row))) : juce::String();
}

juce::String EntryList::paintedText(int row) const {
    return signOf(entry(row).mark) + juceText(quillo::text(entry(row).entry));
}

juce::String EntryList::tooltip(int row) const {
    const auto room = list_.getVisibleRowWidth() - 2 * entryIndent;
    const bool isCut = row >= 0 && row < rows() && entryFont().getStringWidth(paintedText(row)) > room;
    return isCut ? text(row) : juce::String();
}

juce::String EntryList::textToCopy() const {
    juce::StringArray lines;
    for (int row = 0; row < rows(); ++row) {
        if (list_.getNumSelectedRows() == 0 || list_.isRowSelected(row)) {
            lines.add(text(row));
        }
    }
    return lines.joinIntoString("\n");
}

void EntryList::backgroundClicked(const juce::MouseEvent& /*event*/) {
    list_.deselectAllRows();
}

void EntryList::selectedRowsChanged(int /*last*/) {
    hold();
    if (!updating_) {
        chosenChanged();
    }
}

void EntryList::listWasScrolled() {
    hold();
    layOutButtons();
}

void EntryList::chooseOrUse() {
    if (list_.getNumSelectedRows() == 0) {
        choose(rows() - 1);
    } else if (const auto event = chosen_) {
        onReturn(*event);
    }
}

bool EntryList::keyPressed(const juce::KeyPress& key, juce::Component* /*origin*/) {
    const bool selected = list_.getNumSelectedRows() > 0;
    if (key == juce::KeyPress('c', juce::ModifierKeys::commandModifier, 0)) {
        juce::SystemClipboard::copyTextToClipboard(textToCopy());
    } else if (key == juce::KeyPress::endKey || (key == juce::KeyPress::escapeKey && selected)) {
        showNewest();
    } else if (key == juce::KeyPress::upKey && !selected && rows() > 0) {
        list_.selectRow(rows() - 1);
    } else if (key == juce::KeyPress::returnKey) {
        chooseOrUse();
    } else {
        return false;
    }
    return true;
}

void EntryList::resized() {
    {
        const juce::ScopedValueSetter<bool> updating(updating_, true);
        LogList::resized();
        if (list_.getLastRowSelected() >= 0) {
            list_.scrollToEnsureRowIsOnscreen(list_.getLastRowSelected());
        }
    }
    refresh();
    layOutButtons();
}

/// Where there is too little room, the time goes first.
juce::String EntryList::shownText(int row, int room) const {
    const auto whole = paintedText(row);
    const auto sign = juce::String(signOf(entry(row).mark));
    return entryFont().getStringWidth(whole) > room ? sign + whole.fromFirstOccurrenceOf("] ", false, false)
                                                    : whole;
}

void EntryList::paintListBoxItem(int row, juce::Graphics& graphics, int width, int height, bool selected) {
    const auto palette = environment<PaletteKey>(*this);
    if (selected) {
        graphics.setColour(displayColour(style::chosen(palette)));
        graphics.fillRect(0, 0, width, height);
    }
    const bool hasButtons = selected && chosen_;
    const auto room = width - entryIndent - (hasButtons ? buttonsWidth() + entryButtonGap : entryIndent);
    const auto words = hasButtons ? shownText(row, room) : paintedText(row);
    const auto mark = entry(row).mark;
    graphics.setColour(colourOf(mark, palette));
    graphics.setFont(entryFont());
    graphics.drawText(words, entryIndent, 0, room, height, juce::Justification::centredLeft, true);
    if (mark == Mark::gone) {
        const auto sign = entryFont().getStringWidth(signOf(mark));
        const auto end = std::min(entryFont().getStringWidth(words), room);
        graphics.fillRect(entryIndent + sign, height / 2, end - sign, 1);
    }
}

}  // namespace quillo
