// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include <iostream>

#include "editor/Fonts.hpp"

/// The tests of the views run in JUCE's world and need letters, but no screen.
int main(int count, char** arguments) {
    testing::InitGoogleTest(&count, arguments);
    const juce::ScopedJuceInitialiser_GUI juceRuntime;
    if (const auto missing = quillo::requireTypefaces(); missing.isNotEmpty()) {
        std::cerr << missing << '\n';
        return 1;
    }
    return RUN_ALL_TESTS();
}
