// SPDX-License-Identifier: GPL-3.0-or-later
#include "log/LogCallback.hpp"

#include <gtest/gtest.h>

#include <string>

namespace quillo {
namespace {

const EventLogEntry entry{0, EventLogEntryVariants::Host{HostTransportTriggerVariantsV2::Start}};

TEST(LogCallback, DoesNothingUntilAFunctionIsGiven) {
    const LogCallback callback;
    callback(entry);
}

TEST(LogCallback, CallsTheFunctionThatWasGivenLast) {
    LogCallback callback;
    int first = 0;
    int second = 0;
    callback = [&first](const EventLogEntry&) { ++first; };
    callback(entry);
    callback = [&second](const EventLogEntry&) { ++second; };
    callback(entry);
    callback(entry);
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 2);
}

TEST(LogCallback, AnAbsentFunctionEndsTheCalls) {
    LogCallback callback;
    int calls = 0;
    callback = [&calls](const EventLogEntry&) { ++calls; };
    callback = LogCallback::Function();
    callback(entry);
    EXPECT_EQ(calls, 0);
}

TEST(LogCallback, KnowsWhetherAnybodyListens) {
    LogCallback callback;
    EXPECT_FALSE(callback);
    callback = [](const EventLogEntry&) {};
    EXPECT_TRUE(callback);
    callback = LogCallback::Function();
    EXPECT_FALSE(callback);
}

TEST(LogCallback, AnotherFunctionMayListenBesidesTheFirst) {
    LogCallback callback;
    std::string heard;
    callback.also([&heard](const EventLogEntry&) { heard += 'a'; });
    callback(entry);
    callback.also([&heard](const EventLogEntry&) { heard += 'b'; });
    callback(entry);
    callback.also([&heard](const EventLogEntry&) { heard += 'c'; });
    callback(entry);
    EXPECT_EQ(heard, "aababc");
}

TEST(LogCallback, SaysThatABlockHasEndedToAListenerThatAskedForIt) {
    LogCallback callback;
    callback.endBlock();
    std::string heard;
    callback.listen([&heard](const EventLogEntry&) { heard += 'e'; }, [&heard] { heard += '|'; });
    callback(entry);
    callback.endBlock();
    callback.also([&heard](const EventLogEntry&) { heard += 'f'; });
    callback(entry);
    callback.endBlock();
    callback = [&heard](const EventLogEntry&) { heard += 'g'; };
    callback(entry);
    callback.endBlock();
    EXPECT_EQ(heard, "e|ef|g");
}

}  // namespace
}  // namespace quillo
