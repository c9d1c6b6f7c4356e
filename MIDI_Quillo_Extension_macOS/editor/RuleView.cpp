// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RuleView.hpp"

#include <algorithm>
#include <utility>

#include "editor/Fonts.hpp"
#include "editor/HitsText.hpp"
#include "editor/JuceText.hpp"
#include "editor/OutputFields.hpp"
#include "editor/Style.hpp"
#include "editor/TriggerFields.hpp"
#include "rules/MIDIVocabulary.hpp"

namespace quillo {

namespace {

/// A status below the name stands as near to it as its letters allow.
constexpr int statusLift = (style::cardHeaderHeight - style::boxHeight) / 2;

int contentWidth(int cardWidth) {
    return cardWidth - style::dragHandleWidth - 2 * style::cardPadding;
}

/// How much height a status takes below the name; none where it stands beside it.
int heightBelow(const std::string& name, const std::optional<RuleRemark>& reason, int inside) {
    if (!reason) {
        return inside < style::narrowCard ? RuleStatus::lineHeight : 0;
    }
    const auto needed = textWidth(juceText(name.empty() ? nameCaption : name), style::titleText, true) +
                        style::statusGap + RuleStatus::widthFor(*reason);
    const bool beside = inside >= style::narrowCard && needed <= inside;
    return beside ? 0 : RuleStatus::heightFor(*reason, inside);
}

/// Wide enough for what most cards say of their hits: the room for the name stays as it is at a hit.
int roomForHits() {
    return RuleStatus::widthFor({juceText(hitsText({}))});
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
      learn_([this] { actions_.onLearn(learn_); }),
      trigger_(juceText(triggerCaption)),
      output_(juceText(messageCaption)),
      buttons_(fieldBinding(data_, &RuleEntry::output), actions_.onDuplicate, actions_.onDelete,
               actions_.onSend) {
    for (auto* part : std::initializer_list<juce::Component*>{&handle_, &header_, &status_, &trigger_,
                                                              &output_, &buttons_}) {
        addAndMakeVisible(*part);
    }
    trigger_.setLabelButton(learn_, LearnButton::size);
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

void RuleView::showHits(const RuleHits& hits) {
    if (hits_ && hits.count > hits_->count && hits.secondsAgo < 1) {
        light_ = lightTime;
    }
    hits_ = hits;
    showStatus();
}

void RuleView::showReason(std::optional<RuleRemark> reason) {
    reason_ = std::move(reason);
    showStatus();
    resized();
}

bool RuleView::isLit() const {
    return reason_ ? reason_->mark == RuleRemark::Mark::fired : light_ > 0;
}

void RuleView::advance(double seconds) {
    light_ = std::max(0.0, light_ - seconds);
    showStatus();
}

void RuleView::showStatus() {
    auto remark = reason_.value_or(RuleRemark{hits_ ? juceText(hitsText(*hits_)) : juce::String()});
    if (remark != status_.remark()) {
        status_.show(std::move(remark));
        auto area = contentArea();
        layOutTitle(area);
    }
    handle_.setLit(isLit());
    if (std::exchange(wasLit_, isLit()) != isLit()) {
        repaint();
    }
}

int RuleView::heightFor(const RuleEntry& entry, int width, const std::optional<RuleRemark>& reason) {
    const Palette palette;
    const auto inside = contentWidth(width);
    const auto trigger = triggerFields(readOnly(entry.trigger), palette, {});
    const auto output = outputFields(readOnly(entry.output), entry.trigger.type, palette, {});
    return style::cardHeaderHeight + heightBelow(entry.name, reason, inside) +
           FieldSection::heightFor(trigger, inside) + style::sectionGap +
           FieldSection::heightFor(output, inside) + style::buttonsGap + RuleButtons::heightFor(inside) +
           style::cardPadding;
}

juce::Rectangle<int> RuleView::contentArea() const {
    return getLocalBounds().withTrimmedLeft(style::dragHandleWidth).reduced(style::cardPadding, 0);
}

/// Takes the name and the status from the top of the area.
void RuleView::layOutTitle(juce::Rectangle<int>& area) {
    auto title =
        area.removeFromTop(style::cardHeaderHeight).withSizeKeepingCentre(area.getWidth(), style::boxHeight);
    if (const auto below = heightBelow(data_.get().name, reason_, area.getWidth()); below > 0) {
        status_.setBounds(area.removeFromTop(below).translated(0, -statusLift));
    } else {
        const auto wanted = RuleStatus::widthFor(status_.remark());
        const auto room = std::max(wanted, reason_ ? 0 : roomForHits());
        status_.setBounds(title.removeFromRight(room).withTrimmedLeft(room - wanted));
        title.removeFromRight(style::statusGap);
    }
    header_.setBounds(title.withLeft(title.getX() - style::fieldPadding));
}

void RuleView::resized() {
    handle_.setBounds(getLocalBounds().removeFromLeft(style::dragHandleWidth));
    auto area = contentArea();
    layOutTitle(area);
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
    paintGrip(graphics, card);
    graphics.setColour(displayColour(isLit() ? palette.triggerInput : style::edge(palette)));
    graphics.drawRoundedRectangle(card, style::cardCorner, 1);
}

/// The strip below the grip: parted from the content by a line, or filled while the card is lit.
void RuleView::paintGrip(juce::Graphics& graphics, juce::Rectangle<float> card) const {
    const auto palette = environment<PaletteKey>(*this);
    if (!isLit()) {
        graphics.setColour(displayColour(style::lifted(palette.background, style::separatorLift)));
        graphics.fillRect(style::dragHandleWidth, 1, 1, getHeight() - 2);
        return;
    }
    const auto strip = card.withRight(static_cast<float>(style::dragHandleWidth));
    juce::Path path;
    path.addRoundedRectangle(strip.getX(), strip.getY(), strip.getWidth(), strip.getHeight(),
                             style::cardCorner, style::cardCorner, true, false, true, false);
    graphics.setColour(displayColour(palette.triggerInput));
    graphics.fillPath(path);
}

}  // namespace quillo
