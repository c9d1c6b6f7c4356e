// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

#include <juce_gui_basics/juce_gui_basics.h>

#include "editor/MenuExtras.hpp"
#include "editor/PreferredSize.hpp"

namespace quillo {

/// What pickers and text inputs look like: a caption in the secondary colour above a box that holds a value
/// in the primary colour, with a line in the secondary colour under it and, where there is a menu, a chevron
/// at its end. A value that is too long for the box ends with an ellipsis and is shown whole as a tooltip.
///
/// A field keeps no copy of its value and reads it whenever it draws. What changes the value elsewhere
/// calls `refresh`; what lays fields out asks for their preferred sizes again, as they follow the value.
/// [main] only.
class FieldView : public juce::Component, public juce::TooltipClient, public PreferredSize {
public:
    /// Without a caption the box stands alone.
    explicit FieldView(juce::String caption);

    /// The value may have changed.
    void refresh();

    /// What it offers beyond its values from now on.
    void setExtras(MenuExtras extras) { extras_ = std::move(extras); }

    /// The value as it is shown.
    [[nodiscard]] virtual juce::String shownText() const = 0;
    [[nodiscard]] virtual bool hasChevron() const = 0;

    [[nodiscard]] const juce::String& caption() const { return caption_; }

    [[nodiscard]] int preferredWidth() const override;
    [[nodiscard]] int preferredHeight() const override;

    /// The preferred size of a field, for those who must know it before there is one.
    [[nodiscard]] static int preferredWidth(const juce::String& caption, const juce::String& text,
                                            bool chevron);
    [[nodiscard]] static int preferredHeight(bool captioned);

    juce::String getTooltip() override;

    void paint(juce::Graphics& graphics) override;
    void mouseEnter(const juce::MouseEvent& event) override;
    void mouseExit(const juce::MouseEvent& event) override;
    void focusGained(FocusChangeType cause) override;
    void focusLost(FocusChangeType cause) override;
    void enablementChanged() override;

    /// The height of a box in which its value stands, for what is written beside it.
    [[nodiscard]] static juce::Rectangle<int> valueArea(juce::Rectangle<int> box);

    /// The parts of the field.
    [[nodiscard]] juce::Rectangle<int> boxArea() const;
    [[nodiscard]] juce::Rectangle<int> textArea() const;
    [[nodiscard]] juce::Rectangle<int> chevronArea() const;

protected:
    /// The value is drawn unless something else stands in its place.
    virtual void paintValue(juce::Graphics& graphics);
    /// Whether the box is lit up as the one that is being changed.
    [[nodiscard]] virtual bool isActive() const;
    void paintText(juce::Graphics& graphics, const juce::String& text, juce::Colour colour);

    [[nodiscard]] const MenuExtras& extras() const { return extras_; }
    /// What stands in the place of the value; empty where the value is shown.
    [[nodiscard]] juce::String shownInstead() const {
        return extras_.shown ? extras_.shown() : juce::String();
    }
    /// Opens a menu of values, and of what is offered beyond them. `pick` gets the row of a value; the field
    /// is refreshed afterwards, if there still is one.
    void openMenu(std::vector<juce::String> labels, std::optional<std::size_t> current,
                  std::function<void(std::size_t value)> pick);

private:
    void paintBox(juce::Graphics& graphics);
    void paintUnderline(juce::Graphics& graphics);

    juce::String caption_;
    MenuExtras extras_;
};

}  // namespace quillo
