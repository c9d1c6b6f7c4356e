// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/ListFooter.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

#include "QuilloAssets.h"
#include "editor/Fonts.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr auto whatARuleIs =
    "A rule waits for something: a note, a controller, a program change, or the transport. When it comes, "
    "the rule sends a message of its own, at once or after a delay. What no rule consumes passes through, "
    "SysEx excepted.";
constexpr auto orAnExample = "Or begin with an example:";

constexpr int greatestTextWidth = 460;
constexpr int textMargin = 4;
constexpr int captionHeight = 20;
constexpr int footerButtonHeight = 24;
constexpr int footerGap = 8;

juce::TextLayout textLayout(int width, juce::Colour colour = {}) {
    return inLines(whatARuleIs, std::min(width, greatestTextWidth), style::valueText, colour,
                   juce::Justification::centred);
}

int textHeight(int width) {
    return static_cast<int>(std::ceil(textLayout(width).getHeight())) + 2 * textMargin;
}

std::span<const std::uint8_t> asset(const char* bytes, int size) {
    return {reinterpret_cast<const std::uint8_t*>(bytes), static_cast<std::size_t>(size)};
}

}  // namespace

std::span<const Example> examples() {
    static const std::array<Example, 3> all{
        Example{"Call strings by pedal",
                "The sustain pedal brings strings on its way down, the piano on its way up.",
                "pedal-to-strings.json", asset(assets::pedaltostrings_json, assets::pedaltostrings_jsonSize)},
        Example{"Split off a bass", "The keys from C1 to B1 play a bass on channel 2.", "bass-split.json",
                asset(assets::basssplit_json, assets::basssplit_jsonSize)},
        Example{"Repeat notes as an echo", "Each note is repeated after 300 and 600 ms, softer each time.",
                "echo.json", asset(assets::echo_json, assets::echo_jsonSize)}};
    return all;
}

ListFooter::ListFooter(NewRuleSelector::Actions actions, const std::function<void(const Example&)>& onExample)
    : selector_(std::move(actions)) {
    addAndMakeVisible(selector_);
    for (std::size_t index = 0; index < examples_.size(); ++index) {
        const auto& example = examples()[index];
        examples_[index] =
            std::make_unique<MyTextButton>(example.label, [onExample, &example] { onExample(example); });
        examples_[index]->setTooltip(example.sentence);
        addChildComponent(*examples_[index]);
    }
}

void ListFooter::showEmpty(bool isEmpty) {
    isEmpty_ = isEmpty;
    setTitle(isEmpty ? whatARuleIs : "");
    for (const auto& button : examples_) {
        button->setVisible(isEmpty);
    }
    repaint();
}

ListFooter::Places ListFooter::exampleAreas(int width) const {
    constexpr float margin = footerGap / 2.0F;
    juce::FlexBox box(juce::FlexBox::Direction::row, juce::FlexBox::Wrap::wrap,
                      juce::FlexBox::AlignContent::flexStart, juce::FlexBox::AlignItems::flexStart,
                      juce::FlexBox::JustifyContent::center);
    for (const auto& button : examples_) {
        const auto wanted = std::min(button->preferredWidth(), width - footerGap);
        box.items.add(juce::FlexItem(static_cast<float>(wanted), footerButtonHeight).withMargin(margin));
    }
    box.performLayout(juce::Rectangle<int>(width, 3 * (footerButtonHeight + footerGap)));
    Places areas;
    for (int index = 0; index < box.items.size(); ++index) {
        areas[static_cast<std::size_t>(index)] = box.items[index].currentBounds.toNearestInt();
    }
    return areas;
}

int ListFooter::heightFor(int width) const {
    const auto selector = NewRuleSelector::preferredHeight();
    return isEmpty_ ? textHeight(width) + selector + captionHeight + exampleAreas(width).back().getBottom()
                    : selector;
}

void ListFooter::resized() {
    auto area = getLocalBounds();
    area.removeFromTop(isEmpty_ ? textHeight(getWidth()) : 0);
    selector_.setBounds(area.removeFromTop(NewRuleSelector::preferredHeight()));
    area.removeFromTop(captionHeight);
    const auto places = exampleAreas(getWidth());
    for (std::size_t index = 0; index < examples_.size(); ++index) {
        examples_[index]->setBounds(places[index] + area.getPosition());
    }
}

void ListFooter::paint(juce::Graphics& graphics) {
    if (!isEmpty_) {
        return;
    }
    const auto palette = environment<PaletteKey>(*this);
    auto area = getLocalBounds();
    const auto text = textLayout(getWidth(), displayColour(palette.primaryText));
    text.draw(graphics, area.removeFromTop(textHeight(getWidth()))
                            .toFloat()
                            .withSizeKeepingCentre(text.getWidth(), text.getHeight()));
    area.removeFromTop(NewRuleSelector::preferredHeight());
    graphics.setColour(displayColour(palette.secondaryText));
    graphics.setFont(textFont(style::valueText));
    graphics.drawText(orAnExample, area.removeFromTop(captionHeight), juce::Justification::centred, true);
}

std::unique_ptr<juce::AccessibilityHandler> ListFooter::createAccessibilityHandler() {
    return std::make_unique<juce::AccessibilityHandler>(*this, juce::AccessibilityRole::group);
}

}  // namespace quillo
