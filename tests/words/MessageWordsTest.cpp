// SPDX-License-Identifier: GPL-3.0-or-later
#include "words/MessageWords.hpp"

#include <gtest/gtest.h>

#include "support/OutputRecorder.hpp"

namespace quillo {
namespace {

using test::Bytes;

TEST(MessageWords, AChannelMessageIsNamedWithItsPartsAndItsChannelFromOne) {
    EXPECT_EQ(messageWords(Bytes{0x80, 60, 0}), "note-off 60 (C3), velocity 0, channel 1");
    EXPECT_EQ(messageWords(Bytes{0x9F, 61, 100}), "note-on 61 (C\u266F3), velocity 100, channel 16");
    EXPECT_EQ(messageWords(Bytes{0xA1, 0, 5}), "pressure on note 0 (C-2), 5, channel 2");
    EXPECT_EQ(messageWords(Bytes{0xB9, 64, 127}), "controller 64 (Sustain), value 127, channel 10");
    EXPECT_EQ(messageWords(Bytes{0xC0, 5}), "program 5, channel 1");
    EXPECT_EQ(messageWords(Bytes{0xD0, 99}), "channel pressure 99, channel 1");
    EXPECT_EQ(messageWords(Bytes{0xE0, 0, 64}), "pitch bend 8192, channel 1");
    EXPECT_EQ(messageWords(Bytes{0xE0, 127, 127}), "pitch bend 16383, channel 1");
}

TEST(MessageWords, ASystemMessageHasItsName) {
    EXPECT_EQ(messageWords(Bytes{0xF0, 1, 2, 0xF7}), "system exclusive");
    EXPECT_EQ(messageWords(Bytes{0xF1, 5}), "MIDI time code");
    EXPECT_EQ(messageWords(Bytes{0xF2, 1, 2}), "song position");
    EXPECT_EQ(messageWords(Bytes{0xF3, 1}), "song select");
    EXPECT_EQ(messageWords(Bytes{0xF6}), "tune request");
    EXPECT_EQ(messageWords(Bytes{0xF8}), "timing clock");
    EXPECT_EQ(messageWords(Bytes{0xFA}), "MIDI Start");
    EXPECT_EQ(messageWords(Bytes{0xFB}), "MIDI Continue");
    EXPECT_EQ(messageWords(Bytes{0xFC}), "MIDI Stop");
    EXPECT_EQ(messageWords(Bytes{0xFE}), "active sensing");
    EXPECT_EQ(messageWords(Bytes{0xFF}), "system reset");
}

TEST(MessageWords, WhatIsNoCompleteMessageHasNone) {
    for (const auto& bytes : {Bytes{}, Bytes{60}, Bytes{0x90, 60}, Bytes{0x90, 60, 200}, Bytes{0xC0, 1, 2},
                              Bytes{0xF4}, Bytes{0xF7}, Bytes{0xF8, 1}}) {
        EXPECT_EQ(messageWords(bytes), "");
    }
}

TEST(MessageWords, ATraceLineIsTheLogsTextAndThenTheWords) {
    using Variants = EventLogEntryVariants;
    EXPECT_EQ(traceLine({10, Variants::MIDI{{0xF8}}}), "[10] f8                 timing clock");
    EXPECT_EQ(traceLine({123456789012345, Variants::MIDI{{0xC0, 5}}}),
              "[123456789012345] c0 05  program 5, channel 1");
    EXPECT_EQ(traceLine({0, Variants::MIDI{{0x90}}}), "[0] 90");
    EXPECT_EQ(traceLine({0, Variants::Host{HostTransportTriggerVariantsV2::Start}}), "[0] AU Host Start");
}

}  // namespace
}  // namespace quillo
