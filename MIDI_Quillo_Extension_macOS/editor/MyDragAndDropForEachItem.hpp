// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

#include <juce_gui_basics/juce_gui_basics.h>

#include "platform/UUID.hpp"

namespace quillo {

/// One row of a `MyDragAndDropForEach`: the view of one item, paler while it is being dragged. [main] only.
class MyDragAndDropForEachItem final : public juce::Component {
public:
    MyDragAndDropForEachItem(const UUID& item, std::unique_ptr<juce::Component> content);

    [[nodiscard]] const UUID& item() const { return item_; }
    [[nodiscard]] juce::Component& content() const { return *content_; }

    void setDragged(bool dragged);

    void resized() override;
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

private:
    UUID item_;
    std::unique_ptr<juce::Component> content_;
};

}  // namespace quillo
