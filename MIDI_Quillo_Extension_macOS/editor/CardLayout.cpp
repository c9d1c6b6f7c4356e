// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/CardLayout.hpp"

#include <algorithm>
#include <initializer_list>
#include <tuple>
#include <utility>

#include "editor/FieldView.hpp"
#include "editor/JuceText.hpp"
#include "editor/LiveTexts.hpp"
#include "editor/MySwitch.hpp"
#include "editor/RuleButtons.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

enum class Form { columns, rows, paragraphs, narrow };

Form formFor(int inside) {
    if (inside >= style::cardOfColumns) {
        return Form::columns;
    }
    if (inside >= style::cardOfRows) {
        return Form::rows;
    }
    return inside >= style::narrowCard ? Form::paragraphs : Form::narrow;
}

/// Wide enough for what most cards say of their hits: what stands beside it keeps its place at a hit.
int roomForHits() {
    static const int room = RuleStatus::widthFor({juceText(hitsText({}))});
    return room;
}

/// The place of the switch, at the right end of the title line.
juce::Rectangle<int> takeSwitch(juce::Rectangle<int>& line) {
    const auto place = line.removeFromRight(MySwitch::width);
    line.removeFromRight(style::titleGap);
    return place.withSizeKeepingCentre(MySwitch::width, MySwitch::height);
}

/// Lays a card out from its top to its bottom.
class CardBuilder {
public:
    CardBuilder(CardLayout& card, const CardContent& content, int width)
        : card_(card),
          content_(content),
          inside_(std::max(0, width - style::dragHandleWidth - 2 * style::cardPadding)),
          form_(formFor(inside_)) {}

    void build() {
        layOutTitle();
        switch (form_) {
        case Form::columns: layOutColumns(); break;
        case Form::rows:
            layOutRow(content_.trigger, card_.triggerLabel, card_.trigger);
            take(style::sectionGap);
            layOutRow(content_.output, card_.outputLabel, card_.output);
            break;
        case Form::paragraphs: layOutParagraphs(); break;
        case Form::narrow:
            layOutParagraphs();
            take(style::buttonsGap);
            card_.buttons = take(RuleButtons::heightFor(inside_));
            break;
        }
        card_.height = y_ + style::cardBottom;
    }

private:
    /// The next so many points from the top.
    juce::Rectangle<int> take(int height) {
        y_ += height;
        return {style::dragHandleWidth + style::cardPadding, y_ - height, inside_, height};
    }

    void layOutTitle() {
        auto title = take(style::cardHeaderHeight);
        card_.onOff = takeSwitch(title);
        switch (form_) {
        case Form::columns:
            card_.name = title.removeFromLeft(halfOfColumns());
            title.removeFromLeft(style::columnGap);
            takeButtons(title);
            placeStatus(title);
            break;
        case Form::rows:
            placeStatus(title.removeFromRight(widthOfHits()));
            title.removeFromRight(style::titleGap);
            card_.name = title.removeFromLeft(title.getWidth() - RuleButtons::widthInALine());
            takeButtons(title);
            break;
        case Form::paragraphs:
            card_.name = title.removeFromLeft(title.getWidth() - RuleButtons::widthInALine());
            takeButtons(title);
            break;
        case Form::narrow: card_.name = title; break;
        }
        card_.name.removeFromRight(form_ == Form::narrow ? 0 : style::titleGap);
    }

    void takeButtons(juce::Rectangle<int>& title) {
        const auto width = RuleButtons::widthInALine();
        card_.buttons = title.removeFromLeft(width).withSizeKeepingCentre(width, style::buttonHeight);
        title.removeFromLeft(style::titleGap);
    }

    [[nodiscard]] int widthOfHits() const {
        return content_.isReason ? roomForHits()
                                 : std::max(roomForHits(), RuleStatus::widthFor(content_.status));
    }

    /// At the right of this room, or below the title. Hits that are long beyond measure are cut.
    void placeStatus(juce::Rectangle<int> room) {
        const auto wanted = RuleStatus::widthFor(content_.status);
        if ((content_.isReason ? wanted : roomForHits()) <= room.getWidth()) {
            const auto width = std::min(wanted, room.getWidth());
            card_.status = room.removeFromRight(width).withSizeKeepingCentre(width, RuleStatus::lineHeight);
        } else {
            card_.status = take(content_.isReason ? RuleStatus::heightFor(content_.status, inside_)
                                                  : RuleStatus::lineHeight);
        }
    }

    void layOutRow(const FieldSizes& fields, juce::Rectangle<int>& label, juce::Rectangle<int>& section) {
        section = take(FieldSection::heightFor(fields, inside_ - style::sectionLabelWidth));
        label = FieldView::valueArea(section.removeFromLeft(style::sectionLabelWidth)
                                         .withTrimmedTop(style::captionHeight)
                                         .withHeight(style::boxHeight));
    }

    /// The status stands in the line of the first label.
    void layOutParagraphs() {
        placeStatus(juce::Rectangle<int>(style::dragHandleWidth + style::cardPadding, y_, inside_,
                                         style::sectionLabelHeight)
                        .withTrimmedLeft(style::sectionLabelWidth));
        card_.triggerLabel = take(style::sectionLabelHeight).withWidth(style::sectionLabelWidth);
        card_.trigger = take(FieldSection::heightFor(content_.trigger, inside_));
        take(style::sectionGap);
        card_.outputLabel = take(style::sectionLabelHeight).withWidth(style::sectionLabelWidth);
        card_.output = take(FieldSection::heightFor(content_.output, inside_));
    }

    void layOutColumns() {
        const auto trigger = triggerColumn();
        const auto split = [trigger](juce::Rectangle<int> area) {
            const auto left = area.removeFromLeft(trigger);
            return std::pair(left, area.withTrimmedLeft(style::columnGap));
        };
        std::tie(card_.triggerLabel, card_.outputLabel) = split(take(style::sectionLabelHeight));
        std::tie(card_.trigger, card_.output) = split(take(heightOfColumns(trigger)));
    }

    [[nodiscard]] int halfOfColumns() const { return (inside_ - style::columnGap) / 2; }

    [[nodiscard]] int heightOfColumns(int trigger) const {
        return std::max(FieldSection::heightFor(content_.trigger, trigger),
                        FieldSection::heightFor(content_.output, inside_ - style::columnGap - trigger));
    }

    /// Half of the width, unless the card is lower when one of the two gets just what it needs for a single
    /// row.
    [[nodiscard]] int triggerColumn() const {
        const auto least = inside_ / 4;
        const auto greatest = inside_ - style::columnGap - least;
        const auto forTrigger = FieldSection::widthInARow(content_.trigger);
        const auto forOutput = inside_ - style::columnGap - FieldSection::widthInARow(content_.output);
        auto best = halfOfColumns();
        for (const auto width : {forTrigger, forOutput}) {
            if (width >= least && width <= greatest && heightOfColumns(width) < heightOfColumns(best)) {
                best = width;
            }
        }
        return best;
    }

    CardLayout& card_;
    const CardContent& content_;
    int inside_;
    Form form_;
    int y_ = style::cardTop;
};

}  // namespace

CardLayout::CardLayout(const CardContent& content, int width) {
    CardBuilder(*this, content, width).build();
}

CardLayout CardLayout::inOneLine(const CardContent& content, int width) {
    CardLayout card;
    card.height = style::cardInOneLine;
    auto area = juce::Rectangle<int>(width, card.height)
                    .withTrimmedLeft(style::dragHandleWidth)
                    .reduced(style::cardPadding, 0);
    const auto inside = area.getWidth();
    card.onOff = takeSwitch(area);
    card.name = area.removeFromLeft(std::min(inside * 3 / 10, style::nameInOneLine));
    area.removeFromLeft(style::titleGap);
    if (inside < style::cardOfRows && content.isReason) {
        card.status = area.withSizeKeepingCentre(area.getWidth(), RuleStatus::lineHeight);
        return card;
    }
    if (inside >= style::cardOfRows) {
        const auto wanted = RuleStatus::widthFor(content.status);
        const auto room = area.removeFromRight(std::clamp(wanted, roomForHits(), area.getWidth() / 2));
        card.status = room.withTrimmedLeft(std::max(0, room.getWidth() - wanted))
                          .withSizeKeepingCentre(std::min(wanted, room.getWidth()), RuleStatus::lineHeight);
        area.removeFromRight(style::titleGap);
    }
    card.line = area;
    return card;
}

}  // namespace quillo
