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

TEST(FatalError, NamesNoSourceFileToAMusicianButWhatItIsAboutAndWhatToDo) {
    const FatalError plain("a delay is negative: -1 ms", std::source_location::current());
    EXPECT_EQ(plain.inWords(), "A delay is negative: -1 ms.");
    const FatalError helpful("a delay is negative: -1 ms", std::source_location::current(),
                             "Type 0 or more.");
    EXPECT_EQ(helpful.inWords(), "A delay is negative: -1 ms. Type 0 or more.");
    EXPECT_EQ(helpful.about("Rule 2 \"Echo\"").inWords(),
              "Rule 2 \"Echo\": a delay is negative: -1 ms. Type 0 or more.");
    EXPECT_STREQ(helpful.about("Rule 2").what(), helpful.what());
}

TEST(FatalError, IsAmongTheExceptionsThatHaveWords) {
    EXPECT_EQ(wordsOf(FatalError("no bus", std::source_location::current())), "No bus.");
    EXPECT_EQ(wordsOf(std::runtime_error("no room")), "no room");
}

TEST(FatalError, IsCaughtAsARuntimeError) {
    EXPECT_THROW(fatalError("any"), std::runtime_error);
}

}  // namespace
}  // namespace quillo
