// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>

#include <juce_gui_basics/juce_gui_basics.h>

#include "platform/UUID.hpp"

namespace quillo {

class MyDragAndDropForEach;

/// The grip by which a row is dragged: it stands anywhere in the row's content and finds the list along its
/// parents. Escape gives a drag up. A click chooses the row alone, and the focus comes here: it is asked for
/// on purpose; with Ctrl the row is chosen as well or no longer, with Shift all as far as it. A double click
/// and Return ask for the row's other form.
///
/// With the keyboard focus, Up and Down together with Alt or Ctrl move the rows that are chosen, or else this
/// one; together with Shift they choose one more or less. Ctrl+A chooses all, Escape none. Home, End, Page Up
/// and Page Down go to another row. [main] only.
class MyDragAndDropForEachDragHandle final : public juce::Component {
public:
    explicit MyDragAndDropForEachDragHandle(std::function<void()> onOtherForm = {});

    /// Whether the keyboard focus lies on one, of whichever list.
    [[nodiscard]] static bool isOneFocused();

    [[nodiscard]] bool dragged() const { return dragged_; }

    /// It lies on a ground in colour, or no longer.
    void setLit(bool lit);

    void paint(juce::Graphics& graphics) override;
    void mouseEnter(const juce::MouseEvent& event) override;
    void mouseExit(const juce::MouseEvent& event) override;
    void mouseDrag(const juce::MouseEvent& event) override;
    void mouseUp(const juce::MouseEvent& event) override;
    void mouseDoubleClick(const juce::MouseEvent& event) override;
    bool keyPressed(const juce::KeyPress& key) override;
    void focusGained(FocusChangeType cause) override;
    void focusLost(FocusChangeType cause) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    [[nodiscard]] MyDragAndDropForEach* list() const;
    [[nodiscard]] juce::Colour ink(bool strong) const;
    void begin(const juce::MouseEvent& event);
    void end();
    [[nodiscard]] std::function<void()> actionFor(const juce::KeyPress& key, const UUID& item);

    bool askForOtherForm();

    std::function<void()> onOtherForm_;
    bool lit_ = false;
    bool dragged_ = false;
    bool givenUp_ = false;
};

}  // namespace quillo
