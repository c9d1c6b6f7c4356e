// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/vst3/QuilloProcessorEditor.hpp"

#include <exception>
#include <utility>
#include <vector>

#include "hosts/adapter/HostKeyboard.hpp"
#include "platform/FatalError.hpp"

namespace quillo {

QuilloProcessorEditor::QuilloProcessorEditor(QuilloProcessor& quillo)
    : AudioProcessorEditor(quillo),
      hosted_(quillo.hosted()),
      view_(
          hosted_.controller().model(),
          [this](std::vector<Rule> rules) { hosted_.onRulesChanged(std::move(rules)); },
          [this](const RuleOutputVariantsV2& message) {
              hosted_.controller().onInstantMessageClick(message);
          }) {
    constexpr int greatest = 16384;
    constexpr int drainsPerSecond = 30;
    addAndMakeVisible(view_);
    setResizable(true, false);
    setResizeLimits(leastWidth, leastHeight, greatest, greatest);
    setSize(AudioUnitViewController::preferredWidth, AudioUnitViewController::preferredHeight);
    hosted_.controller().viewDidLoad();
    timerCallback();
    startTimerHz(drainsPerSecond);
}

QuilloProcessorEditor::~QuilloProcessorEditor() {
    if (window_ != nullptr) {
        window_->removeKeyListener(this);
    }
}

void QuilloProcessorEditor::resized() {
    view_.setBounds(getLocalBounds());
}

void QuilloProcessorEditor::parentHierarchyChanged() {
    if (window_ != nullptr) {
        window_->removeKeyListener(this);
    }
    window_ = getTopLevelComponent();
    window_->addKeyListener(this);
}

bool QuilloProcessorEditor::keyPressed(const juce::KeyPress& key, juce::Component* window) {
    return HostKeyboard::mayUse(*window->getPeer(), key) && view_.keyPressed(key);
}

void QuilloProcessorEditor::timerCallback() {
    try {
        hosted_.drain();
    } catch (const std::exception& error) {
        hosted_.tellUser(wordsOf(error));
    }
}

}  // namespace quillo
