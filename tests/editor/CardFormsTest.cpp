// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/CardForms.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

const UUID one;
const UUID two;

TEST(CardForms, AllCardsHaveOneForm) {
    EXPECT_FALSE(CardForms(false).isInOneLine(one));
    EXPECT_TRUE(CardForms(true).isInOneLine(one));
}

TEST(CardForms, ACardIsChangedByItself) {
    CardForms forms(false);
    forms.set(one, true);
    EXPECT_TRUE(forms.isInOneLine(one));
    EXPECT_FALSE(forms.isInOneLine(two));
    forms.set(one, false);
    EXPECT_FALSE(forms.isInOneLine(one));
}

TEST(CardForms, ACardThatWasChangedByItselfFollowsAChangeOfAll) {
    CardForms forms(false);
    forms.set(one, true);
    forms.setAllInOneLine(true);
    EXPECT_TRUE(forms.isInOneLine(one));
    EXPECT_TRUE(forms.isInOneLine(two));
    forms.set(two, false);
    forms.setAllInOneLine(true);
    EXPECT_TRUE(forms.isInOneLine(two));
}

TEST(CardForms, ACardThatWasChangedBackIsLikeTheOthers) {
    CardForms forms(true);
    forms.set(one, false);
    forms.set(one, true);
    EXPECT_TRUE(forms.isInOneLine(one));
    forms.setAllInOneLine(false);
    EXPECT_FALSE(forms.isInOneLine(one));
}

}  // namespace
}  // namespace quillo
