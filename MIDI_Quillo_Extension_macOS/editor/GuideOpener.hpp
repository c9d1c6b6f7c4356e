// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <utility>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/BrowserLaunch.hpp"

namespace quillo {

/// Opens the guide in the user's browser, or the makers' page where no guide is installed. What keeps it from
/// that is handed to `onProblem`, as a sentence for the user, at once or some moments later. [main]
class GuideOpener : private juce::Timer {
public:
    using OnProblem = std::function<void(const std::string& problem)>;
    explicit GuideOpener(OnProblem onProblem) : onProblem_(std::move(onProblem)) {}

    void open();

private:
    void timerCallback() override;

    OnProblem onProblem_;
    std::string page_;
    std::optional<BrowserLaunch> launch_;
    int looksLeft_ = 0;  ///< a browser that ends later was there
};

}  // namespace quillo
