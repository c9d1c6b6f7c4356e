// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/RuleView.hpp"

#include <algorithm>
#include <utility>

#include "editor/CardFields.hpp"
#include "editor/CardWords.hpp"
#include "editor/Fonts.hpp"
#include "editor/JuceText.hpp"
#include "editor/LiveTexts.hpp"
#include "editor/Style.hpp"
#include "rules/MIDIVocabulary.hpp"
#include "rules/TriggerChoices.hpp"

namespace quillo {

namespace {

/// A binding that is only read, to plan fields that are never made.
template <class Entry>
Binding<Entry> readOnly(const Entry& entry) {
    return {[&entry] { return entry; }, [](const Entry&) {}};
}

struct Plans {
    FieldPlans trigger;
    FieldPlans output;
};

/// What a field of a run shows in the place of its value is its text from now on; nothing is asked any more.
void settleTexts(FieldPlans& fields) {
    for (auto& field : fields) {
        const auto instead = field.extras.shown ? field.extras.shown() : juce::String();
        field.text = instead.isNotEmpty() ? instead : field.text;
        field.extras.shown = {};
    }
}

/// Of fields that are never made. The plans outlive the entry.
Plans plansFor(const RuleEntry& entry, const RuleRun& run) {
    const Palette palette;
    const RunBinding readRun{[run] { return run; }};
    Plans plans{triggerFields(readOnly(entry), readRun, palette, {}),
                outputFields(readOnly(entry), readRun, palette, {})};
    settleTexts(plans.trigger);
    settleTexts(plans.output);
    return plans;
}

CardContent contentOf(const Plans& plans, const RuleRemark& status, bool isReason) {
    return {.trigger = sizesOf(plans.trigger),
            .output = sizesOf(plans.output),
            .status = status,
            .isReason = isReason};
}

}  // namespace

RuleView::RuleView(Binding<RuleEntry> data, RuleViewActions actions)
    : data_(std::move(data)),
      actions_(std::move(actions)),
      handle_([this] { actions_.onForm(!inOneLine_); }),
      header_(fieldBinding(data_, &RuleEntry::name)),
      line_([this] { actions_.onForm(false); }),
      onOff_("On", [this](bool on) { actions_.onSwitch(on); }),
      learn_([this] { actions_.onLearn(learn_); }),
      triggerLabel_(juceText(triggerCaption)),
      trigger_(juceText(triggerCaption)),
      outputLabel_(juceText(messageCaption)),
      output_(juceText(messageCaption)),
      buttons_([this] { return whyNotSent(); },
               {actions_.onDuplicate, actions_.onDelete, actions_.onSend, actions_.onMore}) {
    int order = 0;
    for (auto* part : std::initializer_list<juce::Component*>{&handle_, &header_, &line_, &onOff_, &status_,
                                                              &triggerLabel_, &trigger_, &outputLabel_,
                                                              &output_, &buttons_}) {
        addAndMakeVisible(*part);
        part->setExplicitFocusOrder(++order);
    }
    onOff_.show(true);
    triggerLabel_.setButton(learn_, LearnButton::size);
    setTitle(juceText(data_.get().name));
    setFocusContainerType(FocusContainerType::none);
    line_.setVisible(false);
    showFields();
    showCount();
}

juce::String RuleView::whyNotSent() const {
    if (!isFixed(data_.get().output)) {
        return "This message takes something from its trigger, so it cannot be sent by hand";
    }
    return actions_.run.get().rises
               ? "Each rule of this card sends another message, so they cannot be sent by hand"
               : "";
}

void RuleView::showCount() {
    const auto count = actions_.run.get().count;
    header_.setRemark(count > 1 ? juce::String(count) + " rules" : juceText(nameCaption));
}

void RuleView::showFields() {
    const auto palette = environment<PaletteKey>(*this);
    trigger_.setFields(triggerFields(data_, actions_.run, palette, actions_.onTriggerTypeChange));
    output_.setFields(outputFields(data_, actions_.run, palette, actions_.onOutputTypeChange));
}

void RuleView::refresh() {
    setTitle(juceText(data_.get().name));
    header_.refresh();
    buttons_.refresh();
    showCount();
    showFields();
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

void RuleView::showOff(bool off) {
    if (off == off_) {
        return;
    }
    off_ = off;
    onOff_.show(!off);
    for (auto* part : std::initializer_list<juce::Component*>{&header_, &line_, &triggerLabel_, &trigger_,
                                                              &outputLabel_, &output_, &buttons_}) {
        part->setAlpha(off ? style::offAlpha : 1.0F);
    }
    showStatus();
}

void RuleView::showChosen(bool chosen) {
    if (std::exchange(chosen_, chosen) != chosen) {
        repaint();
    }
}

bool RuleView::isLit() const {
    return reason_ ? reason_->mark == RuleRemark::Mark::fired : !off_ && light_ > 0;
}

void RuleView::advance(double seconds) {
    light_ = std::max(0.0, light_ - seconds);
    showStatus();
}

juce::String RuleView::hitsWords() const {
    if (off_) {
        return "off";
    }
    return hits_ ? juceText(hitsText(*hits_)) : juce::String();
}

void RuleView::showStatus() {
    auto remark = reason_.value_or(RuleRemark{hitsWords()});
    if (remark != status_.remark()) {
        status_.show(std::move(remark));
        content_.status = status_.remark();
        content_.isReason = reason_.has_value();
        layOut();
    }
    handle_.setLit(isLit());
    if (std::exchange(wasLit_, isLit()) != isLit()) {
        repaint();
    }
}

int RuleView::heightFor(const RuleEntry& entry, int width, const std::optional<RuleRemark>& reason,
                        const RuleRun& run) {
    const auto content = contentOf(plansFor(entry, run), reason.value_or(RuleRemark()), reason.has_value());
    return CardLayout(content, width).height;
}

std::vector<SearchedText> RuleView::textsOf(const RuleEntry& entry, const RuleRun& run) {
    const auto plans = plansFor(entry, run);
    std::vector<SearchedText> texts{{{}, juceText(entry.name), {}}};
    for (const auto* section : {&plans.trigger, &plans.output}) {
        std::vector<juce::String> words(section->size());
        for (const auto& word : wordsOf(*section)) {
            words[word.field] = word.text;
        }
        for (std::size_t field = 0; field < section->size(); ++field) {
            texts.emplace_back((*section)[field].caption, (*section)[field].text, words[field]);
        }
    }
    return texts;
}

void RuleView::showFound(const Found& found) {
    found_ = found;
    setAlpha(found.isThere ? 1.0F : style::notFoundAlpha);
    const auto triggerFields = trigger_.fields().size();
    std::set<std::size_t> inTrigger;
    std::set<std::size_t> inOutput;
    for (const auto text : found.texts) {
        if (text > triggerFields) {
            inOutput.insert(text - triggerFields - 1);
        } else if (text > 0) {
            inTrigger.insert(text - 1);
        }
    }
    trigger_.mark(inTrigger);
    output_.mark(inOutput);
    line_.mark(std::move(inTrigger), std::move(inOutput));
    repaint();
}

void RuleView::setInOneLine(bool inOneLine) {
    inOneLine_ = inOneLine;
    for (auto* part : std::initializer_list<juce::Component*>{&triggerLabel_, &trigger_, &outputLabel_,
                                                              &output_, &buttons_}) {
        part->setVisible(!inOneLine);
    }
    line_.setVisible(inOneLine);
    resized();
}

void RuleView::resized() {
    const auto plans = plansFor(data_.get(), actions_.run.get());
    content_ = contentOf(plans, status_.remark(), reason_.has_value());
    line_.show(plans.trigger, plans.output);
    layOut();
}

void RuleView::layOut() {
    const auto layout =
        inOneLine_ ? CardLayout::inOneLine(content_, getWidth()) : CardLayout(content_, getWidth());
    handle_.setBounds(getLocalBounds().removeFromLeft(style::dragHandleWidth));
    header_.setBounds(layout.name.withSizeKeepingCentre(layout.name.getWidth(), style::boxHeight)
                          .withLeft(layout.name.getX() - style::fieldPadding));
    line_.setBounds(layout.line.expanded(CardLine::markMargin, 0));
    status_.setBounds(layout.status);
    onOff_.setBounds(layout.onOff);
    triggerLabel_.setBounds(layout.triggerLabel);
    trigger_.setBounds(layout.trigger);
    outputLabel_.setBounds(layout.outputLabel);
    output_.setBounds(layout.output);
    buttons_.setBounds(layout.buttons);
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
    paintFoundName(graphics);
    if (chosen_) {
        graphics.setColour(displayColour(palette.channelInput));
        graphics.drawRoundedRectangle(card.reduced(0.5F), style::cardCorner, style::focusRing);
        return;
    }
    graphics.setColour(displayColour(isLit()            ? palette.triggerInput
                                     : found_.isCurrent ? style::foundEdge
                                                        : style::edge(palette)));
    graphics.drawRoundedRectangle(card, style::cardCorner, 1);
}

void RuleView::paintFoundName(juce::Graphics& graphics) const {
    if (found_.texts.contains(0)) {
        const auto name = getLocalArea(&header_, header_.textArea());
        const auto width = std::min(name.getWidth(), textWidth(header_.shownText(), style::titleText, true));
        graphics.setColour(displayColour(style::found));
        graphics.fillRoundedRectangle(name.withWidth(width).expanded(3, -2).toFloat(), 3);
    }
}

/// The strip below the grip: parted from the content by a line, or filled while the card is lit or chosen.
void RuleView::paintGrip(juce::Graphics& graphics, juce::Rectangle<float> card) const {
    const auto palette = environment<PaletteKey>(*this);
    if (!isLit() && !chosen_) {
        graphics.setColour(displayColour(style::lifted(palette.background, style::separatorLift)));
        graphics.fillRect(style::dragHandleWidth, 1, 1, getHeight() - 2);
        return;
    }
    const auto strip = card.withRight(static_cast<float>(style::dragHandleWidth));
    juce::Path path;
    path.addRoundedRectangle(strip.getX(), strip.getY(), strip.getWidth(), strip.getHeight(),
                             style::cardCorner, style::cardCorner, true, false, true, false);
    graphics.setColour(displayColour(isLit() ? palette.triggerInput : style::chosenGrip(palette)));
    graphics.fillPath(path);
}

}  // namespace quillo
