// SPDX-License-Identifier: GPL-3.0-or-later
#include "engine/RuleName.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

namespace quillo {
namespace {

TEST(RuleName, IsTheTextThatItWasMadeOf) {
    EXPECT_EQ(RuleName("pedal").text(), "pedal");
    EXPECT_EQ(RuleName("").text(), "");
    EXPECT_EQ(RuleName().text(), "");
    const std::string strange("a\0b\xff", 4);
    EXPECT_EQ(RuleName(strange).text(), strange);
}

TEST(RuleName, ACopyOutlivesTheOriginal) {
    std::optional<RuleName> original("an echo of the note");
    const RuleName copy(*original);
    RuleName assigned;
    assigned = *original;
    original.reset();
    const RuleName later("of the same length!");
    EXPECT_EQ(copy.text(), "an echo of the note");
    EXPECT_EQ(assigned.text(), "an echo of the note");
}

TEST(RuleName, MovingItLeavesAnUnnamedOne) {
    RuleName from("from");
    RuleName to(std::move(from));
    EXPECT_EQ(to.text(), "from");
    to = RuleName("other");
    EXPECT_EQ(to.text(), "other");
    to = RuleName();
    EXPECT_EQ(to.text(), "");
}

}  // namespace
}  // namespace quillo
