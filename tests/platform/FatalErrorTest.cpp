// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/FatalError.hpp"

#include <gtest/gtest.h>

#include <string>

namespace quillo {
namespace {

/// The text of the fatal error that `action` stops with; empty when it does not stop.
template <class Action>
std::string textOf(Action&& action) {
    try {
        action();
    } catch (const FatalError& error) {
        return error.what();
    }
    return {};
}

TEST(FatalError, NamesTheFileWithoutItsFolderAndTheLine) {
    const auto line = std::to_string(__LINE__ + 1);
    const auto text = textOf([] { fatalError("negative delay"); });
    EXPECT_EQ(text, "Fatal error: negative delay (FatalErrorTest.cpp:" + line + ")");
}

TEST(FatalError, NamesThePlaceThatItIsGiven) {
    const auto elsewhere = std::source_location::current();
    const auto text = textOf([&] { fatalError("no bus", elsewhere); });
    EXPECT_EQ(text, "Fatal error: no bus (FatalErrorTest.cpp:" + std::to_string(elsewhere.line()) + ")");
}

TEST(FatalError, KeepsAnEmptyMessageReadable) {
    EXPECT_TRUE(textOf([] { fatalError(""); }).starts_with("Fatal error:  (FatalErrorTest.cpp:"));
}

TEST(FatalError, IsCaughtAsARuntimeError) {
    EXPECT_THROW(fatalError("any"), std::runtime_error);
}

}  // namespace
}  // namespace quillo
