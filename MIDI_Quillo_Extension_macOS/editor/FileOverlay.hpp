// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/Environment.hpp"
#include "editor/MyTextButton.hpp"

namespace quillo {

/// Lets the user choose a preset file inside the editor's window: a folder's JSON files and folders, and a field
/// for the name. Escape and "Cancel" choose nothing. [main] only.
class FileOverlay final : public juce::Component, public EnvironmentScope, private juce::FileBrowserListener {
public:
    enum class Mode { open, save };
    using OnChosen = std::function<void(const juce::File& file)>;

    /// Starts at `start`: a folder, or a file in it that need not exist. In `save` mode the file gets the
    /// extension of presets if it has none, and a file that is there is replaced only after a second press of
    /// the button, which then says "Replace". `onChosen` or `onCancel` is called once, and may delete this.
    FileOverlay(Mode mode, const juce::File& start, OnChosen onChosen, std::function<void()> onCancel);
    ~FileOverlay() override;

    [[nodiscard]] juce::FileBrowserComponent& browser() { return *browser_; }
    [[nodiscard]] MyTextButton& confirmButton() { return confirm_; }
    [[nodiscard]] MyTextButton& cancelButton() { return cancel_; }

    void resized() override;
    void paint(juce::Graphics& graphics) override;
    bool keyPressed(const juce::KeyPress& key) override;
    void parentHierarchyChanged() override;

private:
    void selectionChanged() override;
    void fileClicked(const juce::File& /*file*/, const juce::MouseEvent& /*event*/) override {}
    void fileDoubleClicked(const juce::File& file) override;
    void browserRootChanged(const juce::File& /*folder*/) override {}

    void leavePathAlone();
    [[nodiscard]] juce::File chosenFile() const;
    void confirm();

    Mode mode_;
    OnChosen onChosen_;
    std::function<void()> onCancel_;
    juce::File replacing_;  ///< the file that the next press of the button replaces
    juce::WildcardFileFilter filter_;
    std::unique_ptr<juce::FileBrowserComponent> browser_;
    MyTextButton confirm_;
    MyTextButton cancel_;
};

}  // namespace quillo
