// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/WaitingList.hpp"

#include <algorithm>
#include <string>
#include <utility>

#include "editor/EntryList.hpp"
#include "editor/Environment.hpp"
#include "editor/Fonts.hpp"
#include "editor/Icons.hpp"
#include "editor/JuceText.hpp"
#include "editor/LiveTexts.hpp"
#include "editor/Style.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

constexpr int waitingIndent = 6;
constexpr int waitingGap = 6;
constexpr int crossWidth = 18;
constexpr int crossSize = 9;
/// A name with less room than this says nothing.
constexpr int leastName = 18;

int entryWidth(const juce::String& text) {
    return entryFont().getStringWidth(text) + 1;
}

/// At the right of its column; what fills its column begins at the left all the same.
void paintText(juce::Graphics& graphics, const std::string& text, juce::Rectangle<int> area,
               juce::Colour colour) {
    graphics.setColour(colour);
    graphics.drawText(juceText(text), area, juce::Justification::centredRight, true);
}

}  // namespace

/// One row. It gets the mouse before the list does, which would take the keyboard with each click.
class WaitingList::Row final : public juce::Component, public juce::TooltipClient {
public:
    explicit Row(WaitingList& list) : list_(list) {
        setMouseClickGrabsKeyboardFocus(false);
        setRepaintsOnMouseActivity(true);
        setAccessible(false);
    }

    void show(int row, bool selected) {
        row_ = row;
        selected_ = selected;
        repaint();
    }

    juce::String getTooltip() override { return list_.tooltip(row_); }
    void mouseMove(const juce::MouseEvent& /*event*/) override { repaint(); }

    /// At once, and not when the button is let go: another output may stand here by then. For the same reason
    /// the second click of two is not meant.
    void mouseDown(const juce::MouseEvent& event) override {
        const auto* output = list_.output(row_);
        if (output == nullptr) {
            return;
        }
        if (!columns().cross.contains(event.getPosition())) {
            list_.list_.selectRow(row_);
        } else if (event.getNumberOfClicks() == 1) {
            list_.onCancel_(output->number);
        }
    }

    void paint(juce::Graphics& graphics) override {
        const auto* output = list_.output(row_);
        if (output == nullptr) {
            return;
        }
        const auto palette = environment<PaletteKey>(*this);
        const auto places = columns();
        if (selected_) {
            graphics.fillAll(displayColour(palette.primaryText));
        }
        graphics.setFont(entryFont());
        paintText(graphics, timeToGo(output->secondsToGo), places.time, ink(palette.delayInput));
        paintText(graphics, waitingBytes(*output), places.bytes, ink(palette.primaryText));
        graphics.setFont(textFont(style::captionText));
        paintText(graphics, escaped(output->ruleName), places.name, ink(palette.secondaryText));
        const bool lit = isMouseOver() && places.cross.contains(getMouseXYRelative());
        drawIcon(graphics, IconName::clear,
                 places.cross.toFloat().withSizeKeepingCentre(crossSize, crossSize),
                 ink(lit ? style::alarmText : palette.secondaryText));
    }

private:
    [[nodiscard]] Columns columns() const { return list_.columns(row_, getLocalBounds()); }
    [[nodiscard]] juce::Colour ink(MyRGB colour) const {
        return displayColour(selected_ ? environment<PaletteKey>(*this).background : colour);
    }

    WaitingList& list_;
    int row_ = 0;
    bool selected_ = false;
};

WaitingList::WaitingList(const QuilloModel& model, std::function<void(std::uint64_t)> onCancel)
    : LogList("Waiting"), model_(model), onCancel_(std::move(onCancel)) {
    list_.setModel(this);
}

int WaitingList::rows() const {
    return static_cast<int>(model_.waiting().size());
}

const WaitingOutput* WaitingList::output(int row) const {
    return row >= 0 && row < rows() ? &model_.waiting()[static_cast<std::size_t>(row)] : nullptr;
}

void WaitingList::refresh() {
    {
        const juce::ScopedValueSetter<bool> updating(updating_, true);
        list_.updateContent();
    }
    showChosen();
    list_.repaint();
}

/// The chosen output may stand in another row now, or have left.
void WaitingList::showChosen() {
    const juce::ScopedValueSetter<bool> updating(updating_, true);
    const auto& waiting = model_.waiting();
    const auto found = chosen_ ? std::ranges::find(waiting, *chosen_, &WaitingOutput::number) : waiting.end();
    if (found == waiting.end()) {
        chosen_.reset();
        list_.deselectAllRows();
    } else {
        list_.selectRow(static_cast<int>(found - waiting.begin()), true);
    }
}

void WaitingList::selectedRowsChanged(int last) {
    if (updating_) {
        return;
    }
    const auto* chosen = output(last);
    chosen_ = chosen != nullptr ? std::optional(chosen->number) : std::nullopt;
    list_.repaint();
}

void WaitingList::deleteKeyPressed(int last) {
    const auto* chosen = output(last);
    if (chosen == nullptr) {
        return;
    }
    const auto number = chosen->number;
    const auto* next = output(last + 1 < rows() ? last + 1 : last - 1);
    chosen_ = next != nullptr ? std::optional(next->number) : std::nullopt;
    showChosen();
    onCancel_(number);
}

/// The arrows begin at the next to leave; Escape lets the chosen row go.
bool WaitingList::keyPressed(const juce::KeyPress& key, juce::Component* /*origin*/) {
    if (key == juce::KeyPress::downKey && !chosen_ && rows() > 0) {
        list_.selectRow(0);
    } else if (key == juce::KeyPress::escapeKey && chosen_) {
        list_.deselectAllRows();
    } else {
        return false;
    }
    return true;
}

juce::String WaitingList::text(int row) const {
    const auto* waiting = output(row);
    return waiting != nullptr ? juceText(waitingText(*waiting)) : juce::String();
}

juce::Component* WaitingList::refreshComponentForRow(int row, bool selected, juce::Component* existing) {
    auto* shown = existing != nullptr ? existing : new Row(*this);
    static_cast<Row*>(shown)->show(row, selected);
    return shown;
}

juce::String WaitingList::getNameForRow(int row) {
    return text(row) + "; Delete cancels it";
}

juce::String WaitingList::tooltip(int row) const {
    const auto* waiting = output(row);
    if (waiting == nullptr) {
        return {};
    }
    const auto places = columns(row, {list_.getVisibleRowWidth(), style::logRowHeight});
    const bool cut =
        textWidth(juceText(escaped(waiting->ruleName)), style::captionText) > places.name.getWidth() ||
        entryWidth(juceText(waitingBytes(*waiting))) > places.bytes.getWidth();
    return cut ? text(row) : juce::String();
}

/// The bytes come before the name, and the cross is always there.
WaitingList::Columns WaitingList::columns(int row, juce::Rectangle<int> area) const {
    area.removeFromLeft(waitingIndent);
    Columns places;
    places.cross = area.removeFromRight(crossWidth);
    places.time = area.removeFromLeft(entryWidth("00.0 s"));
    area.removeFromLeft(waitingGap);
    const auto* waiting = output(row);
    const auto bytes = waiting != nullptr ? entryWidth(juceText(waitingBytes(*waiting))) : 0;
    places.bytes = area.removeFromLeft(bytes);
    area.removeFromLeft(waitingGap);
    if (area.getWidth() >= leastName) {
        places.name = area;
    }
    return places;
}

juce::Rectangle<int> WaitingList::crossArea(int row) const {
    return columns(row, rowArea(row)).cross;
}

}  // namespace quillo
