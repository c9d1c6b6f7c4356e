// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/Binding.hpp"

#include <gtest/gtest.h>

namespace quillo {
namespace {

/// Says how often it was copied.
class CountedGetter {
public:
    explicit CountedGetter(int& copies) : copies_(&copies) {}
    CountedGetter(const CountedGetter& other) : copies_(other.copies_) { ++*copies_; }
    CountedGetter& operator=(const CountedGetter&) = delete;

    int operator()() const { return 5; }

private:
    int* copies_;
};

/// Else a field deep in an entry would copy what leads to it many thousand times.
TEST(Binding, CopiesNothingOfWhatLeadsToItsValue) {
    int copies = 0;
    const Binding<int> binding(CountedGetter(copies), [](int) {});
    const int before = copies;
    const auto copy = binding;
    EXPECT_EQ(copies, before);
    EXPECT_EQ(copy.get(), 5);
}

TEST(Binding, StepsAsItSetsWhereNothingElseIsSaid) {
    int value = 0;
    const Binding<int> binding([&] { return value; }, [&](int changed) { value = changed; });
    binding.step(7, 3);
    EXPECT_EQ(value, 7);
}

TEST(Binding, SaysInWhichFieldAStepWasMade) {
    FieldPlace stepped = 0;
    int value = 0;
    const Binding<int> binding([] { return 0; }, [](int) { FAIL() << "A step is no change like any other."; },
                               [&](int changed, FieldPlace field) {
                                   value = changed;
                                   stepped = field;
                               });
    binding.step(7, 3);
    EXPECT_EQ(value, 7);
    EXPECT_EQ(stepped, 3U);
}

}  // namespace
}  // namespace quillo
