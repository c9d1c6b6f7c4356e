// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/QuilloView.hpp"

namespace quillo {

/// The editor in a window of its own, for a program that is no plug-in. [main]
class EditorWindow final : public juce::DocumentWindow {
public:
    /// In which it opens, in points, where the screen has as much room: several cards are seen whole.
    static constexpr int width = 820;
    static constexpr int height = 640;

    /// Shows itself at once, around `view`, which must outlive it. `onClose` runs when the user wants to
    /// close it; it stays until it is destroyed.
    EditorWindow(QuilloView& view, std::function<void()> onClose);
    ~EditorWindow() override;

    /// Keys that come while nothing in the editor has the focus.
    bool keyPressed(const juce::KeyPress& key) override;
    void closeButtonPressed() override { onClose_(); }

private:
    QuilloView& view_;
    std::function<void()> onClose_;
};

}  // namespace quillo
