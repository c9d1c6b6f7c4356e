// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include <juce_gui_basics/juce_gui_basics.h>

namespace quillo {

/// What a card says of its rule: how often it fired, or why it did or did not.
struct RuleRemark {
    /// A dot before the words: a full one for a rule that fired, an empty one for a rule that did not.
    enum class Mark { none, fired, passedOver };

    juce::String words;
    Mark mark = Mark::none;

    bool operator==(const RuleRemark&) const = default;
};

/// Shows a remark: in one line, or in as many as there is height for. What is cut is the tooltip. [main]
/// only.
class RuleStatus final : public juce::Component, public juce::TooltipClient {
public:
    static constexpr int lineHeight = 14;

    RuleStatus();

    void show(RuleRemark remark);
    [[nodiscard]] const RuleRemark& remark() const { return remark_; }

    /// How wide a remark is in one line.
    [[nodiscard]] static int widthFor(const RuleRemark& remark);
    /// How high it is in this width.
    [[nodiscard]] static int heightFor(const RuleRemark& remark, int width);

    juce::String getTooltip() override;
    void paint(juce::Graphics& graphics) override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    [[nodiscard]] bool isOneLine() const;
    [[nodiscard]] juce::Colour colour() const;

    RuleRemark remark_;
};

}  // namespace quillo
