// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/JackWindow.hpp"

#include <utility>
#include <vector>

#include "hosts/jack/Icon.hpp"

namespace quillo {

JackWindow::JackWindow(HostedUnit& hosted, std::function<void()> onClose)
    : DocumentWindow("MIDI Quillo", juce::Colours::black, DocumentWindow::allButtons),
      view_(
          hosted.controller().model(),
          [&hosted](std::vector<Rule> rules) { hosted.onRulesChanged(std::move(rules)); },
          [&hosted](const RuleOutputVariantsV2& message) {
              hosted.controller().onInstantMessageClick(message);
          }),
      onClose_(std::move(onClose)) {
    constexpr int least = 200;
    constexpr int unlimited = 10000;
    const auto icon = largeIcon();
    hosted.controller().viewDidLoad();
    setUsingNativeTitleBar(true);
    setIcon(juce::ImageFileFormat::loadFrom(icon.data(), icon.size()));
    setContentNonOwned(&view_, true);
    setResizable(true, false);
    setResizeLimits(least, least, unlimited, unlimited);
    centreWithSize(AudioUnitViewController::preferredWidth, AudioUnitViewController::preferredHeight);
    setVisible(true);
}

JackWindow::~JackWindow() {
    clearContentComponent();
}

bool JackWindow::keyPressed(const juce::KeyPress& key) {
    return view_.keyPressed(key) || DocumentWindow::keyPressed(key);
}

}  // namespace quillo
