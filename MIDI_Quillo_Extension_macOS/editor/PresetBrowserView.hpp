// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/EditorText.hpp"
#include "editor/Environment.hpp"
#include "editor/MyIconButton.hpp"
#include "editor/MyTextButton.hpp"
#include "editor/PresetBrowser.hpp"
#include "platform/AtomicFile.hpp"

namespace quillo {

/// Lets the user choose a preset file inside the editor's window, as `PresetBrowser` decides. The field for
/// the name has the keyboard when it opens and whenever the folder has changed; the arrows pick entries from
/// there as well as in the list, Return confirms, Alt+Up and, in the list, Backspace lead to the folder
/// around, Tab goes round, Escape gives up. A file in the way is replaced by the button "Replace" alone, and
/// not by a second Return. [main] only.
class PresetBrowserView final : public juce::Component,
                                public EnvironmentScope,
                                private juce::ListBoxModel,
                                private juce::KeyListener {
public:
    /// A file that appears after it was chosen is replaced only where the user has answered so.
    using OnChosen = std::function<void(const std::filesystem::path& file, Existing existing)>;

    /// One of both is called once at most, and may delete this.
    PresetBrowserView(PresetBrowser browser, OnChosen onChosen, std::function<void()> onCancel);
    ~PresetBrowserView() override;

    [[nodiscard]] const PresetBrowser& browser() const { return browser_; }
    [[nodiscard]] juce::TextEditor& nameField() { return name_; }
    [[nodiscard]] juce::ListBox& list() { return list_; }
    [[nodiscard]] MyIconButton& leaveButton() { return leave_; }
    [[nodiscard]] MyTextButton& confirmButton() { return confirm_; }
    [[nodiscard]] MyTextButton& cancelButton() { return cancel_; }
    /// The button of one of the browser's places.
    [[nodiscard]] MyTextButton& placeButton(std::size_t place) { return *places_[place]; }

    void resized() override;
    void paint(juce::Graphics& graphics) override;
    void paintOverChildren(juce::Graphics& graphics) override;
    bool keyPressed(const juce::KeyPress& key) override;
    void mouseUp(const juce::MouseEvent& event) override;
    void focusGained(FocusChangeType cause) override;
    void focusOfChildComponentChanged(FocusChangeType cause) override;
    void parentHierarchyChanged() override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    int getNumRows() override;
    bool isRow(int row);
    void paintListBoxItem(int row, juce::Graphics& graphics, int width, int height, bool selected) override;
    void selectedRowsChanged(int lastRow) override;
    void listBoxItemDoubleClicked(int row, const juce::MouseEvent& event) override;
    juce::String getNameForRow(int row) override;
    juce::String getTooltipForRow(int row) override;
    bool keyPressed(const juce::KeyPress& key, juce::Component* origin) override;

    void dressName();
    void takeName();
    void enter(const std::filesystem::path& folder);
    void leave();
    void folderChanged();
    void confirm();
    void confirmOrReplace();
    void choose(const std::filesystem::path& file, Existing existing);
    void cancel();
    bool stepBy(const juce::KeyPress& key);
    bool typeFromList(const juce::KeyPress& key);
    /// Shows what the browser has become.
    void refresh();
    [[nodiscard]] int widthOfTop() const;
    void layOutTop(juce::Rectangle<int>& area);
    void layOutBottom(juce::Rectangle<int>& area);

    PresetBrowser browser_;
    OnChosen onChosen_;
    std::function<void()> onCancel_;
    std::vector<std::unique_ptr<MyTextButton>> places_;
    MyIconButton leave_;
    juce::ListBox list_;
    EditorText name_;
    MyTextButton cancel_;
    MyTextButton confirm_;
    juce::Rectangle<int> titleArea_;
    juce::Rectangle<int> folderArea_;
    juce::Rectangle<int> messageArea_;
};

}  // namespace quillo
