// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/FileOverlay.hpp"

#include <utility>

#include "editor/Fonts.hpp"
#include "editor/PresetExchange.hpp"
#include "editor/Style.hpp"

namespace quillo {

namespace {

constexpr int margin = 8;
constexpr int titleHeight = 22;

int browserFlags(FileOverlay::Mode mode) {
    using Browser = juce::FileBrowserComponent;
    const int readOnly = mode == FileOverlay::Mode::open ? Browser::filenameBoxIsReadOnly : 0;
    return Browser::canSelectFiles | readOnly |
           (mode == FileOverlay::Mode::open ? Browser::openMode : Browser::saveMode);
}

juce::String title(FileOverlay::Mode mode) {
    return mode == FileOverlay::Mode::open ? "Import a preset" : "Export the preset";
}

}  // namespace

FileOverlay::FileOverlay(Mode mode, const juce::File& start, OnChosen onChosen,
                         std::function<void()> onCancel)
    : mode_(mode),
      onChosen_(std::move(onChosen)),
      onCancel_(std::move(onCancel)),
      filter_("*.json", "*", "Presets"),
      browser_(std::make_unique<juce::FileBrowserComponent>(browserFlags(mode), start, &filter_, nullptr)),
      confirm_(mode == Mode::open ? "Import" : "Export", [this] { confirm(); }),
      cancel_("Cancel", [this] { onCancel_(); }) {
    setTitle(title(mode));
    setWantsKeyboardFocus(true);
    confirm_.setAccented(true);
    browser_->addListener(this);
    leavePathAlone();
    addAndMakeVisible(*browser_);
    addAndMakeVisible(confirm_);
    addAndMakeVisible(cancel_);
    selectionChanged();
}

FileOverlay::~FileOverlay() {
    browser_->removeListener(this);
}

/// The toolkit's box of recent folders opens a window of its own, which applications around an editor handle
/// badly: the path is shown there, and the button beside it and the list lead to other folders.
void FileOverlay::leavePathAlone() {
    for (auto* child : browser_->getChildren()) {
        if (auto* path = dynamic_cast<juce::ComboBox*>(child)) {
            path->setInterceptsMouseClicks(false, false);
            path->setWantsKeyboardFocus(false);
        }
    }
}

juce::File FileOverlay::chosenFile() const {
    auto file = browser_->getSelectedFile(0);
    if (mode_ == Mode::save && file != juce::File() && file.getFileExtension().isEmpty()) {
        return file.withFileExtension(presetFileExtension);
    }
    return file;
}

void FileOverlay::selectionChanged() {
    replacing_ = juce::File();
    confirm_.setButtonText(mode_ == Mode::open ? "Import" : "Export");
    confirm_.setEnabled(mode_ == Mode::save || browser_->currentFileIsValid());
}

void FileOverlay::fileDoubleClicked(const juce::File& file) {
    if (!file.isDirectory()) {
        confirm();
    }
}

void FileOverlay::confirm() {
    const auto file = chosenFile();
    if (file == juce::File() || file.isDirectory()) {
        return;
    }
    if (mode_ == Mode::save && file.exists() && replacing_ != file) {
        replacing_ = file;
        confirm_.setButtonText("Replace");
        resized();
        return;
    }
    const auto onChosen = onChosen_;
    onChosen(file);
}

bool FileOverlay::keyPressed(const juce::KeyPress& key) {
    if (key == juce::KeyPress::escapeKey) {
        const auto onCancel = onCancel_;
        onCancel();
    } else if (key == juce::KeyPress::returnKey) {
        confirm();
    }
    return true;
}

void FileOverlay::parentHierarchyChanged() {
    const auto palette = environment<PaletteKey>(*this);
    set<MyBackground>(palette.background);
    set<MyPrimaryColor>(palette.delayInput);
    set<MySecondaryColor>(palette.delayInputSecondaryColor);
    browser_->sendLookAndFeelChange();  // its boxes take their colours at this moment only
}

void FileOverlay::resized() {
    auto area = getLocalBounds().reduced(margin);
    area.removeFromTop(titleHeight);
    auto buttons = area.removeFromBottom(style::buttonHeight);
    confirm_.setBounds(buttons.removeFromRight(confirm_.preferredWidth()));
    buttons.removeFromRight(style::fieldGap);
    cancel_.setBounds(buttons.removeFromRight(cancel_.preferredWidth()));
    area.removeFromBottom(margin);
    browser_->setBounds(area);
}

void FileOverlay::paint(juce::Graphics& graphics) {
    const auto palette = environment<PaletteKey>(*this);
    graphics.fillAll(displayColour(palette.background));
    graphics.setColour(displayColour(palette.primaryText));
    graphics.setFont(textFont(style::titleText, true));
    graphics.drawText(title(mode_), getLocalBounds().reduced(margin).removeFromTop(titleHeight),
                      juce::Justification::centredLeft, true);
}

}  // namespace quillo
