// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/LibraryMessages.hpp"

#include <gtest/gtest.h>

#include <jack/jack.h>
#include <pthread.h>

#include <atomic>
#include <string>

namespace quillo {
namespace {

TEST(LibraryMessages, AreWhatTheLibrarySaysMeanwhile) {
    LibraryMessages::silenceLibrary();
    ::jack_error_callback("before");
    const LibraryMessages messages;
    ::jack_error_callback("one");
    ::jack_error_callback("another");
    EXPECT_EQ(messages.lines("  "), "  one\n  another\n");
}

/// A thread of the library's that is never silent, and takes its time for each word.
struct Speaker {
    const std::string word = std::string(1'000'000, 'x');
    std::atomic<bool> began{false};

    static void* run(void* self) {
        auto& speaker = *static_cast<Speaker*>(self);
        ::pthread_setcanceltype(PTHREAD_CANCEL_ASYNCHRONOUS, nullptr);
        for (;;) {
            speaker.began = true;
            ::jack_error_callback(speaker.word.c_str());
        }
    }
};

TEST(LibraryMessages, MayBeCutOffWithTheirThreadAndOthersAreHeardAllTheSame) {
    constexpr int rounds = 20;
    for (int round = 0; round < rounds; ++round) {
        const LibraryMessages messages;
        Speaker speaker;
        pthread_t thread{};
        ASSERT_EQ(::pthread_create(&thread, nullptr, &Speaker::run, &speaker), 0);
        while (!speaker.began) {
        }
        ::pthread_cancel(thread);
        ASSERT_EQ(::pthread_join(thread, nullptr), 0);
        ::jack_error_callback("heard");
        EXPECT_TRUE(messages.lines("").ends_with("heard\n"));
    }
}

}  // namespace
}  // namespace quillo
