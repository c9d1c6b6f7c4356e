// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyDragAndDropForEachItem.hpp"

#include <utility>

namespace quillo {
namespace {

constexpr float draggedAlpha = 0.35F;

/// A row is called what its content is called, now and later.
class ItemHandler final : public juce::AccessibilityHandler {
public:
    explicit ItemHandler(MyDragAndDropForEachItem& item)
        : juce::AccessibilityHandler(item, juce::AccessibilityRole::listItem), item_(item) {}

    juce::String getTitle() const override { return item_.content().getTitle(); }

private:
    MyDragAndDropForEachItem& item_;
};

}  // namespace

MyDragAndDropForEachItem::MyDragAndDropForEachItem(const UUID& item, std::unique_ptr<juce::Component> content)
    : item_(item), content_(std::move(content)) {
    setInterceptsMouseClicks(false, true);
    addAndMakeVisible(*content_);
}

void MyDragAndDropForEachItem::setDragged(bool dragged) {
    setAlpha(dragged ? draggedAlpha : 1.0F);
}

void MyDragAndDropForEachItem::resized() {
    content_->setBounds(getLocalBounds());
}

std::unique_ptr<juce::AccessibilityHandler> MyDragAndDropForEachItem::createAccessibilityHandler() {
    return std::make_unique<ItemHandler>(*this);
}

}  // namespace quillo
