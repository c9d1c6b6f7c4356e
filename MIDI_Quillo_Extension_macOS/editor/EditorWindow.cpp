// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/EditorWindow.hpp"

#include <algorithm>
#include <utility>

#include "editor/EditorShell.hpp"

namespace quillo {

EditorWindow::EditorWindow(QuilloView& view, std::function<void()> onClose)
    : DocumentWindow("MIDI Quillo", juce::Colours::black, DocumentWindow::allButtons),
      view_(view),
      onClose_(std::move(onClose)) {
    constexpr int unlimited = 10000;
    const auto* screen = juce::Desktop::getInstance().getDisplays().getPrimaryDisplay();
    const auto room = screen != nullptr ? screen->userArea : juce::Rectangle<int>(width, height);
    view_.setSize(std::min(width, room.getWidth()), std::min(height, room.getHeight()));
    setUsingNativeTitleBar(true);
    setContentNonOwned(&view_, true);
    setResizable(true, false);
    setResizeLimits(EditorShell::leastLength, EditorShell::leastLength, unlimited, unlimited);
    centreWithSize(view_.getWidth(), view_.getHeight());
    setVisible(true);
}

EditorWindow::~EditorWindow() {
    clearContentComponent();
}

bool EditorWindow::keyPressed(const juce::KeyPress& key) {
    return view_.keyPressed(key) || DocumentWindow::keyPressed(key);
}

}  // namespace quillo
