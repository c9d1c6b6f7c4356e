// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/Environment.hpp"

namespace quillo {

/// Hands down how much room there is, by its own width. The content stays the caller's and fills this view;
/// it is laid out after the category is set. [main] only.
class MySizeCategoryView final : public juce::Component, public EnvironmentScope {
public:
    explicit MySizeCategoryView(juce::Component& content);

    void resized() override;

private:
    juce::Component& content_;
};

}  // namespace quillo
