// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MySizeCategoryView.hpp"

namespace quillo {

MySizeCategoryView::MySizeCategoryView(juce::Component& content) : content_(content) {
    addAndMakeVisible(content_);
}

void MySizeCategoryView::resized() {
    set<MySizeCategoryKey>(sizeCategory(getWidth()));
    content_.setBounds(getLocalBounds());
}

}  // namespace quillo
