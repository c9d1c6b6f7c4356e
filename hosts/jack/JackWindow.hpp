// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/QuilloView.hpp"
#include "hosts/adapter/HostedUnit.hpp"

namespace quillo {

/// The editor of a hosted unit in a window of its own. [main]
class JackWindow final : public juce::DocumentWindow {
public:
    /// Shows itself at once. `onClose` runs when the user wants to close it; it stays until it is destroyed.
    JackWindow(HostedUnit& hosted, std::function<void()> onClose);
    ~JackWindow() override;

    [[nodiscard]] QuilloView& view() { return view_; }

    /// Keys that come while nothing in the editor has the focus.
    bool keyPressed(const juce::KeyPress& key) override;
    void closeButtonPressed() override { onClose_(); }

private:
    QuilloView view_;
    std::function<void()> onClose_;
};

}  // namespace quillo
