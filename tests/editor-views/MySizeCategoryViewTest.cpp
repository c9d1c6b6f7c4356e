// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/MySizeCategoryView.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

/// Notes the category that it is laid out in.
struct CategoryReader : juce::Component {
    MySizeCategory seen{};
    void resized() override { seen = environment<MySizeCategoryKey>(*this); }
};

TEST(MySizeCategoryView, HandsDownHowMuchRoomThereIs) {
    CategoryReader content;
    MySizeCategoryView view(content);
    for (const auto& [width, category] : {std::pair{200, MySizeCategory::small},
                                          {399, MySizeCategory::small},
                                          {400, MySizeCategory::medium},
                                          {640, MySizeCategory::large},
                                          {959, MySizeCategory::large},
                                          {960, MySizeCategory::extraLarge}}) {
        view.setSize(width, 200);
        EXPECT_EQ(content.seen, category) << width;
        EXPECT_EQ(content.getWidth(), width);
    }
}

}  // namespace
}  // namespace quillo
