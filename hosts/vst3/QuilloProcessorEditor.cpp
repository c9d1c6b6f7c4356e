// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/vst3/QuilloProcessorEditor.hpp"

#include "window/HostKeyboard.hpp"

namespace quillo {

QuilloProcessorEditor::QuilloProcessorEditor(QuilloProcessor& quillo)
    : AudioProcessorEditor(quillo), shell_(quillo.session()) {
    constexpr int greatest = 16384;
    setSize(view().getWidth(), view().getHeight());
    addAndMakeVisible(view());
    setResizable(true, false);
    setResizeLimits(EditorShell::leastLength, EditorShell::leastLength, greatest, greatest);
}

QuilloProcessorEditor::~QuilloProcessorEditor() {
    if (window_ != nullptr) {
        window_->removeKeyListener(this);
    }
}

void QuilloProcessorEditor::resized() {
    view().setBounds(getLocalBounds());
}

void QuilloProcessorEditor::parentHierarchyChanged() {
    if (window_ != nullptr) {
        window_->removeKeyListener(this);
    }
    window_ = getTopLevelComponent();
    window_->addKeyListener(this);
}

bool QuilloProcessorEditor::keyPressed(const juce::KeyPress& key, juce::Component* window) {
    return HostKeyboard::mayUse(*window->getPeer(), key) && view().keyPressed(key);
}

}  // namespace quillo
