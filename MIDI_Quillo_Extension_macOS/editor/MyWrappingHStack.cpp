// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MyWrappingHStack.hpp"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <limits>
#include <utility>

namespace quillo {
namespace {

using Sizes = std::vector<juce::Point<int>>;

/// One past the last view of the row that begins with view `first`. A row holds one view at least.
std::size_t endOfRow(const Sizes& sizes, std::size_t first, int gap, int width) {
    int right = std::min(sizes[first].x, width);
    std::size_t end = first + 1;
    while (end < sizes.size() && right + gap + sizes[end].x <= width) {
        right += gap + sizes[end].x;
        ++end;
    }
    return end;
}

int rowHeight(const Sizes& sizes, std::size_t first, std::size_t end) {
    int height = 0;
    for (std::size_t view = first; view < end; ++view) {
        height = std::max(height, sizes[view].y);
    }
    return height;
}

int rowWidth(const Sizes& sizes, std::size_t first, std::size_t end, int gap, int width) {
    int sum = -gap;
    for (std::size_t view = first; view < end; ++view) {
        sum += gap + std::min(sizes[view].x, width);
    }
    return sum;
}

}  // namespace

MyWrappingHStack::MyWrappingHStack(Spacing spacing, bool maxContent)
    : spacing_(spacing), maxContent_(maxContent) {
    setInterceptsMouseClicks(false, true);
}

void MyWrappingHStack::setViews(const std::vector<juce::Component*>& views) {
    const auto before = std::exchange(entries_, {});
    for (auto* view : views) {
        entries_.push_back({view, {view->getWidth(), view->getHeight()}});
        addChildComponent(view);
    }
    for (const auto& entry : before) {
        if (std::ranges::find(views, entry.view) == views.end()) {
            removeChildComponent(entry.view);
        }
    }
}

int MyWrappingHStack::preferredWidth() const {
    return widthInARow(shownSizes(), spacing_);
}

int MyWrappingHStack::preferredHeight() const {
    const auto sizes = shownSizes();
    return rowHeight(sizes, 0, sizes.size());
}

void MyWrappingHStack::resized() {
    const auto shown = shownEntries();
    const auto places = place(shownSizes(), spacing_, maxContent_, getWidth());
    for (std::size_t view = 0; view < shown.size(); ++view) {
        shown[view].view->setBounds(places[view]);
    }
}

std::vector<MyWrappingHStack::Entry> MyWrappingHStack::shownEntries() const {
    std::vector<Entry> shown;
    std::copy_if(entries_.begin(), entries_.end(), std::back_inserter(shown),
                 [](const Entry& entry) { return entry.view->isVisible(); });
    return shown;
}

Sizes MyWrappingHStack::shownSizes() const {
    Sizes sizes;
    for (const auto& [view, ownSize] : shownEntries()) {
        const auto* preferred = dynamic_cast<const PreferredSize*>(view);
        sizes.push_back(preferred != nullptr
                            ? juce::Point<int>(preferred->preferredWidth(), preferred->preferredHeight())
                            : ownSize);
    }
    return sizes;
}

std::vector<juce::Rectangle<int>> MyWrappingHStack::place(const Sizes& sizes, Spacing spacing,
                                                          bool maxContent, int width) {
    std::vector<juce::Rectangle<int>> places;
    int top = 0;
    for (std::size_t first = 0; first < sizes.size();) {
        const auto end = endOfRow(sizes, first, spacing.horizontal, width);
        const auto height = rowHeight(sizes, first, end);
        int spare =
            maxContent ? std::max(0, width - rowWidth(sizes, first, end, spacing.horizontal, width)) : 0;
        int left = 0;
        for (std::size_t view = first; view < end; ++view) {
            const auto share = spare / static_cast<int>(end - view);
            const auto viewWidth = std::min(sizes[view].x, width) + share;
            places.emplace_back(left, top + height - sizes[view].y, viewWidth, sizes[view].y);
            left += viewWidth + spacing.horizontal;
            spare -= share;
        }
        top += height + spacing.vertical;
        first = end;
    }
    return places;
}

int MyWrappingHStack::height(const Sizes& sizes, Spacing spacing, int width) {
    int bottom = 0;
    for (const auto& place : place(sizes, spacing, false, width)) {
        bottom = std::max(bottom, place.getBottom());
    }
    return bottom;
}

int MyWrappingHStack::widthInARow(const Sizes& sizes, Spacing spacing) {
    return sizes.empty()
               ? 0
               : rowWidth(sizes, 0, sizes.size(), spacing.horizontal, std::numeric_limits<int>::max());
}

}  // namespace quillo
