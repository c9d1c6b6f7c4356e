// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/auv3/HostBlocks.hpp"

#include <gtest/gtest.h>

#include <cstddef>
#include <functional>
#include <memory>

#include "support/OutputRecorder.hpp"

namespace quillo {
namespace {

using namespace test;

/// The platform's flags have another type than ours where it is most different.
using HostFlags = unsigned long long;
using HostTransport = std::function<signed char(HostFlags*, double*, double*, double*)>;
using HostOutput = std::function<OSStatus(std::int64_t, std::uint8_t, std::ptrdiff_t, const std::uint8_t*)>;

TEST(HostBlocks, AbsentBlocksStayAbsent) {
    EXPECT_FALSE(transportStateBlock<HostFlags>(HostTransport()));
    EXPECT_FALSE(midiOutputEventBlock(HostOutput()));
}

TEST(HostBlocks, TheTransportsAnswerArrives) {
    const auto block = transportStateBlock<HostFlags>(
        HostTransport([](HostFlags* flags, double* position, double* start, double* end) -> signed char {
            *flags = 0x8000000000000006U;
            *position = 4096.5;
            EXPECT_EQ(start, nullptr);
            *end = 3.0;
            return 1;
        }));
    AUHostTransportStateFlags flags = 1;
    double position = 0.0;
    double end = 0.0;
    EXPECT_TRUE(block(&flags, &position, nullptr, &end));
    EXPECT_EQ(flags, 0x8000000000000006U);
    EXPECT_EQ(position, 4096.5);
    EXPECT_EQ(end, 3.0);
}

TEST(HostBlocks, ATransportThatKnowsNothingSaysSoAndLeavesFlagsOfZero) {
    const auto block = transportStateBlock<HostFlags>(
        HostTransport([](HostFlags*, double*, double*, double*) -> signed char { return 0; }));
    AUHostTransportStateFlags flags = 7;
    EXPECT_FALSE(block(&flags, nullptr, nullptr, nullptr));
    EXPECT_EQ(flags, 0U);
}

TEST(HostBlocks, FlagsThatNobodyAsksForAreNotAskedForEither) {
    HostFlags something = 0;
    HostFlags* given = &something;
    const auto block = transportStateBlock<HostFlags>(
        HostTransport([&given](HostFlags* flags, double*, double*, double*) -> signed char {
            given = flags;
            return 1;
        }));
    EXPECT_TRUE(block(nullptr, nullptr, nullptr, nullptr));
    EXPECT_EQ(given, nullptr);
}

TEST(HostBlocks, AMessageGoesOutWithItsTimeCableAndBytesAndTheStatusComesBack) {
    Emission handed;
    const auto block = midiOutputEventBlock(HostOutput(
        [&](std::int64_t time, std::uint8_t cable, std::ptrdiff_t length, const std::uint8_t* bytes) {
            handed = {time, {Bytes(bytes, bytes + length)}, cable};
            return OSStatus{-4};
        }));
    const Bytes message{0xF0, 1, 2, 3, 0xF7};
    EXPECT_EQ(block(-12, 5, message), -4);
    EXPECT_EQ(handed, (Emission{-12, {message}, 5}));
}

TEST(HostBlocks, TheHostsBlockLivesAsLongAsOurs) {
    const auto owned = std::make_shared<int>(1);
    {
        const auto block = midiOutputEventBlock(HostOutput(
            [owned](std::int64_t, std::uint8_t, std::ptrdiff_t, const std::uint8_t*) { return *owned; }));
        EXPECT_GT(owned.use_count(), 1);
        EXPECT_EQ(block(0, 0, {}), 1);
    }
    EXPECT_EQ(owned.use_count(), 1);
}

}  // namespace
}  // namespace quillo
