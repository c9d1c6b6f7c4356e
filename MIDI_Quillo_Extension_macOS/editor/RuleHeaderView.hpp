// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/Binding.hpp"
#include "editor/MyTextInputImpl.hpp"
#include "editor/ValueFormatters.hpp"

namespace quillo {

/// The name of a rule, as the title of its card. A double click on the text starts typing, else it is like
/// any other field. [main] only.
class RuleHeaderView final : public MyTextInputImpl {
public:
    explicit RuleHeaderView(Binding<std::string> name);

    /// What stands behind a name; "Message name" unless it is set.
    void setRemark(const juce::String& remark);
    [[nodiscard]] const juce::String& remark() const { return remark_; }

    [[nodiscard]] juce::String shownText() const override;
    [[nodiscard]] bool hasChevron() const override { return false; }
    juce::String getTooltip() override;
    juce::MouseCursor getMouseCursor() override;

    void paint(juce::Graphics& graphics) override;

protected:
    void paintValue(juce::Graphics& graphics) override;
    /// A click does nothing, so the pointer does not light it up.
    [[nodiscard]] bool isActive() const override { return isEditable(); }
    [[nodiscard]] Typed typed() const override { return Typed::text; }
    [[nodiscard]] juce::Rectangle<int> typingArea() const override;
    void takeText(const juce::String& text) override;
    [[nodiscard]] bool isValue(const juce::String& text) const override;
    bool takeSteps(int steps) override;
    [[nodiscard]] std::vector<juce::String> optionLabels() const override { return {}; }
    [[nodiscard]] std::optional<std::size_t> currentOption() const override { return std::nullopt; }
    void pickOption(std::size_t /*option*/) override {}

private:
    [[nodiscard]] int nameWidth() const;
    [[nodiscard]] juce::String textBehindName() const;
    [[nodiscard]] int captionWidth() const;

    Binding<std::string> name_;
    juce::String remark_;
    NameFormatter format_;
};

}  // namespace quillo
