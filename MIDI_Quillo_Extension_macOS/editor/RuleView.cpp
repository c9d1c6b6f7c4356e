// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RuleView.hpp"

#include <algorithm>
#include <utility>

#include "editor/OutputFields.hpp"
#include "editor/Style.hpp"
#include "editor/TriggerFields.hpp"
#include "rules/MIDIVocabulary.hpp"

namespace quillo {

namespace {

int contentWidth(int cardWidth) {
    return cardWidth - style::dragHandleWidth - 2 * style::cardPadding;
}

/// A binding that is only read, to plan fields that are never made.
template <class Entry>
Binding<Entry> readOnly(const Entry& entry) {
    return {[&entry] { return entry; }, [](const Entry&) {}};
}

}  // namespace

RuleView::RuleView(Binding<RuleEntry> data, RuleViewActions actions)
    : data_(std::move(data)),
      actions_(std::move(actions)),
      shape_(shape()),
      header_(fieldBinding(data_, &RuleEntry::name)),
      trigger_(juceText(triggerCaption)),
      output_(juceText(messageCaption)),
      buttons_(fieldBinding(data_, &RuleEntry::output), actions_.onDuplicate, actions_.onDelete,
               actions_.onSend) {
    for (auto* part :
         std::initializer_list<juce::Component*>{&handle_, &header_, &trigger_, &output_, &buttons_}) {
        addAndMakeVisible(*part);
    }
    setTitle(juceText(data_.get().name));
    setFocusContainerType(FocusContainerType::none);
    makeFields();
}

RuleView::Shape RuleView::shape() const {
    const auto entry = data_.get();
    return {entry.trigger.type, entry.output.type};
}

void RuleView::makeFields() {
    const auto palette = environment<PaletteKey>(*this);
    trigger_.setFields(
        triggerFields(fieldBinding(data_, &RuleEntry::trigger), palette, actions_.onTriggerTypeChange));
    output_.setFields(outputFields(fieldBinding(data_, &RuleEntry::output), shape_.trigger, palette,
                                   actions_.onOutputTypeChange));
}

void RuleView::refresh() {
    setTitle(juceText(data_.get().name));
    header_.refresh();
    buttons_.refresh();
    if (shape_ == shape()) {
        trigger_.refresh();
        output_.refresh();
    } else {
        shape_ = shape();
        makeFields();
    }
    resized();
}

int RuleView::heightFor(const RuleEntry& entry, int width) {
    const Palette palette;
    const auto inside = contentWidth(width);
    const auto trigger = triggerFields(readOnly(entry.trigger), palette, {});
    const auto output = outputFields(readOnly(entry.output), entry.trigger.type, palette, {});
    return style::cardHeaderHeight + FieldSection::heightFor(trigger, inside) + style::sectionGap +
           FieldSection::heightFor(output, inside) + style::buttonsGap + RuleButtons::heightFor(inside) +
           style::cardPadding;
}

void RuleView::resized() {
    auto area = getLocalBounds();
    handle_.setBounds(area.removeFromLeft(style::dragHandleWidth));
    area = area.reduced(style::cardPadding, 0);
    header_.setBounds(area.removeFromTop(style::cardHeaderHeight)
                          .withSizeKeepingCentre(area.getWidth(), style::boxHeight)
                          .withLeft(area.getX() - style::fieldPadding));
    const auto entry = data_.get();
    const Palette palette;
    const auto width = area.getWidth();
    const auto heightOf = [width](const FieldPlans& plans) { return FieldSection::heightFor(plans, width); };
    trigger_.setBounds(area.removeFromTop(heightOf(triggerFields(readOnly(entry.trigger), palette, {}))));
    area.removeFromTop(style::sectionGap);
    output_.setBounds(
        area.removeFromTop(heightOf(outputFields(readOnly(entry.output), entry.trigger.type, palette, {}))));
    area.removeFromTop(style::buttonsGap);
    buttons_.setBounds(area.removeFromTop(RuleButtons::heightFor(width)));
}

void RuleView::parentHierarchyChanged() {
    const auto palette = environment<PaletteKey>(*this);
    set<MyBackground>(style::lifted(palette.background, style::cardLift));
}

void RuleView::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    const auto card = getLocalBounds().toFloat().reduced(0.5F);
    graphics.setColour(displayColour(environment<MyBackground>(*this)));
    graphics.fillRoundedRectangle(card, style::cardCorner);
    graphics.setColour(displayColour(style::lifted(palette.background, style::separatorLift)));
    graphics.fillRect(style::dragHandleWidth, 1, 1, getHeight() - 2);
    graphics.setColour(displayColour(style::edge(palette)));
    graphics.drawRoundedRectangle(card, style::cardCorner, 1);
}

}  // namespace quillo
