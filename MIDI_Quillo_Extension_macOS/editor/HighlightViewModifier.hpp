// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "editor/Environment.hpp"

/// Views that light up under the pointer. Their content stays the caller's, fills them and takes its colour
/// from the environment. [main] only.
namespace quillo {

/// The colour as usual and under the pointer.
struct HighlightStyle {
    MyRGB colorDefault;
    MyRGB colorHover;

    bool operator==(const HighlightStyle&) const = default;
};

/// Knows whether the pointer is over a view or anything in it.
class HoverView : public juce::Component, public EnvironmentScope {
public:
    HoverView(juce::Component& content, HighlightStyle style);
    ~HoverView() override;

    [[nodiscard]] bool hover() const { return hover_; }
    [[nodiscard]] MyRGB colour() const { return hover_ ? style_.colorHover : style_.colorDefault; }

    void resized() override;
    void mouseEnter(const juce::MouseEvent& event) override;
    void mouseExit(const juce::MouseEvent& event) override;

protected:
    /// Hands the current colour on.
    virtual void publish() = 0;

private:
    void setHover(bool hover);

    juce::Component& content_;
    HighlightStyle style_;
    bool hover_ = false;
};

/// Draws its content in `colorHover` while the pointer is over it and in `colorDefault` otherwise: this is
/// the primary colour below it.
class HighlightViewModifier final : public HoverView {
public:
    HighlightViewModifier(juce::Component& content, HighlightStyle style);

private:
    void publish() override;
};

/// The same for what lies behind the content, which is the background below it.
class HighlightBackgroundViewModifier final : public HoverView {
public:
    HighlightBackgroundViewModifier(juce::Component& content, HighlightStyle style, float corner = 0);

    void paint(juce::Graphics& graphics) override;

private:
    void publish() override;

    float corner_;
};

}  // namespace quillo
