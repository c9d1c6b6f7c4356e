// SPDX-License-Identifier: GPL-3.0-or-later
#include "audiounit/platform/AUAudioUnitBus.hpp"

#include <gtest/gtest.h>

#include <limits>

namespace quillo {
namespace {

constexpr AVAudioFormat stereoFormat{AVAudioCommonFormat::pcmFormatFloat32, 44100.0, 2, false};

AVAudioFormat withChannels(std::uint32_t count) {
    auto format = stereoFormat;
    format.channelCount = count;
    return format;
}

AVAudioFormat ofUnknownSamples() {
    auto format = stereoFormat;
    format.commonFormat = AVAudioCommonFormat::otherFormat;
    return format;
}

TEST(AUAudioUnitBus, HasTheFormatThatItIsMadeWith) {
    const auto bus = AUAudioUnitBus::withFormat(stereoFormat);
    ASSERT_NE(bus, nullptr);
    EXPECT_EQ(bus->format(), stereoFormat);
    EXPECT_EQ(bus->maximumChannelCount(), std::numeric_limits<std::uint32_t>::max());
}

TEST(AUAudioUnitBus, IsNotMadeWithoutChannelsOrOfUnknownSamples) {
    EXPECT_EQ(AUAudioUnitBus::withFormat(withChannels(0)), nullptr);
    EXPECT_EQ(AUAudioUnitBus::withFormat(ofUnknownSamples()), nullptr);
    EXPECT_EQ(AUAudioUnitBus::withFormat({}), nullptr);
}

TEST(AUAudioUnitBus, TakesFormatsUpToItsMaximumOfChannels) {
    const auto bus = AUAudioUnitBus::withFormat(stereoFormat);
    bus->setMaximumChannelCount(8);
    EXPECT_EQ(bus->maximumChannelCount(), 8U);
    EXPECT_EQ(bus->setFormat(withChannels(1)), noErr);
    EXPECT_EQ(bus->setFormat(withChannels(8)), noErr);
    EXPECT_EQ(bus->format(), withChannels(8));
}

TEST(AUAudioUnitBus, RejectsAFormatAndKeepsItsOwn) {
    const auto bus = AUAudioUnitBus::withFormat(stereoFormat);
    bus->setMaximumChannelCount(8);
    for (const auto& format : {withChannels(0), withChannels(9), ofUnknownSamples()}) {
        EXPECT_EQ(bus->setFormat(format), kAudioUnitErr_FormatNotSupported);
        EXPECT_EQ(bus->format(), stereoFormat);
    }
}

TEST(AUAudioUnitBus, TakesAnySampleRateAndLayout) {
    const auto bus = AUAudioUnitBus::withFormat(stereoFormat);
    for (const auto rate : {0.0, -1.0, 192000.0, std::numeric_limits<double>::infinity()}) {
        const AVAudioFormat format{AVAudioCommonFormat::pcmFormatFloat32, rate, 2, true};
        EXPECT_EQ(bus->setFormat(format), noErr);
        EXPECT_EQ(bus->format(), format);
    }
}

}  // namespace
}  // namespace quillo
