// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/InOutLogger.hpp"

#include <utility>

#include "editor/Environment.hpp"
#include "editor/FieldPlan.hpp"
#include "editor/Fonts.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int labelWidth = 24;
constexpr int outLabelWidth = 32;
constexpr int titleHeight = 18;
constexpr int gap = 8;

juce::String newest(const QuilloModel::Log& log) {
    return log.empty() ? juce::String() : juceText(text(log[log.size() - 1]));
}

void paintLabel(juce::Graphics& graphics, const Palette& palette, const juce::String& label,
                juce::Rectangle<int> area) {
    graphics.setColour(displayColour(palette.secondaryText));
    graphics.setFont(textFont(style::valueText));
    graphics.drawText(label, area, juce::Justification::centredLeft, false);
}

juce::Font entryFont() {
    return monospacedFont(style::valueText - 1);
}

void paintEntry(juce::Graphics& graphics, const Palette& palette, const juce::String& entry,
                juce::Rectangle<int> area) {
    graphics.setColour(displayColour(palette.primaryText));
    graphics.setFont(entryFont());
    graphics.drawText(entry, area, juce::Justification::centredLeft, true);
}

juce::Rectangle<int> arrowArea(juce::Rectangle<int> bar) {
    return bar.removeFromLeft(style::barPadding + style::iconButtonSize)
        .withTrimmedLeft(style::barPadding / 3);
}

}  // namespace

CollapesedLogger::CollapesedLogger(const QuilloModel& model, std::function<void()> toggle)
    : model_(model), arrow_("Open the logs", IconName::arrowUp, std::move(toggle)) {
    addAndMakeVisible(arrow_);
}

juce::String CollapesedLogger::inText() const {
    return newest(model_.inLog());
}

juce::String CollapesedLogger::outText() const {
    return newest(model_.outLog());
}

void CollapesedLogger::resized() {
    arrow_.setBounds(arrowArea(getLocalBounds()));
}

juce::Rectangle<int> CollapesedLogger::inArea() const {
    const auto area = getLocalBounds().withTrimmedLeft(arrow_.getRight()).withTrimmedRight(style::barPadding);
    return area.withWidth(area.getWidth() / 2).withTrimmedLeft(labelWidth).withTrimmedRight(gap);
}

juce::Rectangle<int> CollapesedLogger::outArea() const {
    const auto area = getLocalBounds().withTrimmedLeft(arrow_.getRight()).withTrimmedRight(style::barPadding);
    return area.withTrimmedLeft(area.getWidth() / 2 + outLabelWidth);
}

juce::String CollapesedLogger::tooltipAt(juce::Point<int> point) const {
    const bool in = point.x < inArea().getRight();
    const auto entry = in ? inText() : outText();
    const auto room = (in ? inArea() : outArea()).getWidth();
    return entryFont().getStringWidth(entry) > room ? entry : juce::String();
}

void CollapesedLogger::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    const auto in = inArea();
    const auto out = outArea();
    paintLabel(graphics, palette, "In:", in.withLeft(in.getX() - labelWidth).withWidth(labelWidth));
    paintEntry(graphics, palette, inText(), in);
    paintLabel(graphics, palette, "Out:", out.withLeft(out.getX() - outLabelWidth).withWidth(outLabelWidth));
    paintEntry(graphics, palette, outText(), out);
}

OpenedLogger::OpenedLogger(QuilloModel& model, std::function<void()> toggle)
    : arrow_("Collapse the logs", IconName::arrowDown, std::move(toggle)),
      clear_("Empty the logs", IconName::clear,
             [&model] {
                 model.clearInLog();
                 model.clearOutLog();
             }),
      in_("In:", [&model]() -> const QuilloModel::Log& { return model.inLog(); }),
      out_("Out:", [&model]() -> const QuilloModel::Log& { return model.outLog(); }) {
    for (auto* part : std::initializer_list<juce::Component*>{&arrow_, &in_, &out_, &clear_}) {
        addAndMakeVisible(*part);
    }
}

void OpenedLogger::refresh() {
    in_.refresh();
    out_.refresh();
}

void OpenedLogger::resized() {
    auto area = getLocalBounds();
    arrow_.setBounds(arrowArea(area).removeFromTop(style::iconButtonSize));
    area.removeFromLeft(arrow_.getRight());
    clear_.setBounds(area.removeFromRight(style::iconButtonSize + gap / 2)
                         .removeFromTop(style::iconButtonSize)
                         .withWidth(style::iconButtonSize));
    area.removeFromTop(titleHeight);
    area.removeFromBottom(gap / 2);
    in_.setBounds(area.removeFromLeft((area.getWidth() - gap) / 2));
    out_.setBounds(area.withTrimmedLeft(gap));
}

void OpenedLogger::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    paintLabel(graphics, palette, "In:", in_.getBounds().withTop(0).withHeight(titleHeight));
    paintLabel(graphics, palette, "Out:", out_.getBounds().withTop(0).withHeight(titleHeight));
}

InOutLogger::InOutLogger(std::shared_ptr<QuilloModel> model, std::function<void()> onToggle)
    : model_(std::move(model)),
      onToggle_(std::move(onToggle)),
      collapsedForm_(*model_, [this] { toggle(); }),
      openedForm_(*model_, [this] { toggle(); }),
      inObservation_(model_->observeInLog([this] { refresh(); })),
      outObservation_(model_->observeOutLog([this] { refresh(); })) {
    addAndMakeVisible(collapsedForm_);
    addChildComponent(openedForm_);
}

void InOutLogger::toggle() {
    collapsed_ = !collapsed_;
    collapsedForm_.setVisible(collapsed_);
    openedForm_.setVisible(!collapsed_);
    refresh();
    onToggle_();
}

int InOutLogger::preferredHeight() const {
    return collapsed_ ? style::logBarHeight : style::openedLogHeight;
}

void InOutLogger::refresh() {
    if (collapsed_) {
        collapsedForm_.repaint();
    } else {
        openedForm_.refresh();
    }
}

void InOutLogger::resized() {
    collapsedForm_.setBounds(getLocalBounds().withTrimmedTop(1));
    openedForm_.setBounds(getLocalBounds().withTrimmedTop(1));
}

void InOutLogger::paint(juce::Graphics& graphics) {
    graphics.setColour(displayColour(environment<PaletteKey>(*this).borders));
    graphics.fillRect(getLocalBounds().removeFromTop(1));
}

}  // namespace quillo
