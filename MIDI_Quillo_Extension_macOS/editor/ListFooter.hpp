// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/MyTextButton.hpp"
#include "editor/NewRuleSelector.hpp"

namespace quillo {

/// A preset that an empty editor offers to begin with. It is compiled in, so it is there in every format and
/// without an installation.
struct Example {
    const char* label;     ///< what it does for a musician
    const char* sentence;  ///< the same in full
    std::string file;      ///< of the preset library
    std::span<const std::uint8_t> document;
};

/// Three, each of another task.
[[nodiscard]] std::span<const Example> examples();

/// What stands below the last rule: the way to add one. While there is no rule it also says what a rule is,
/// and offers examples. [main] only.
class ListFooter final : public juce::Component, public EnvironmentScope {
public:
    ListFooter(NewRuleSelector::Actions actions, const std::function<void(const Example&)>& onExample);

    /// Whether there is no rule. The height may be another one then.
    void showEmpty(bool isEmpty);
    [[nodiscard]] bool showsEmpty() const { return isEmpty_; }
    [[nodiscard]] int heightFor(int width) const;

    [[nodiscard]] MyTextButton& exampleButton(std::size_t example) { return *examples_[example]; }

    void resized() override;
    void paint(juce::Graphics& graphics) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    using Places = std::array<juce::Rectangle<int>, 3>;

    /// Of the buttons, below their caption: beside each other as far as there is room.
    [[nodiscard]] Places exampleAreas(int width) const;

    NewRuleSelector selector_;
    std::array<std::unique_ptr<MyTextButton>, 3> examples_;
    bool isEmpty_ = false;
};

}  // namespace quillo
