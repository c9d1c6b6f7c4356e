// SPDX-License-Identifier: GPL-3.0-or-later
#include "analysis/AskedEvent.hpp"

#include <gtest/gtest.h>

#include <string>

#include "support/Vandal.hpp"

namespace quillo {
namespace {

using Transport = HostTransportTriggerVariantsV2;

AskedEvent message(std::initializer_list<std::uint8_t> bytes) {
    return MIDIMessage(bytes);
}

/// What is wrong with the text.
std::string errorOf(std::string_view text) {
    try {
        static_cast<void>(parseAskedEvent(text));
        return "nothing";
    } catch (const AskedEventError& error) {
        return error.what();
    }
}

TEST(AskedEventParser, ReadsBytesWithBlanksOrWithout) {
    for (const auto* text : {"90 3c 64", "903c64", "90 3c64", "  90  3C 64 ", "90\t3c\n64"}) {
        EXPECT_EQ(parseAskedEvent(text), message({0x90, 0x3C, 0x64})) << text;
    }
}

TEST(AskedEventParser, ReadsMessagesOfEveryLength) {
    EXPECT_EQ(parseAskedEvent("fa"), message({0xFA}));
    EXPECT_EQ(parseAskedEvent("F8"), message({0xF8}));
    EXPECT_EQ(parseAskedEvent("c0 05"), message({0xC0, 5}));
    EXPECT_EQ(parseAskedEvent("f2 01 02"), message({0xF2, 1, 2}));
}

TEST(AskedEventParser, ReadsHostEventsAndLoading) {
    EXPECT_EQ(parseAskedEvent("host start"), AskedEvent(Transport::Start));
    EXPECT_EQ(parseAskedEvent("host continue"), AskedEvent(Transport::Continue));
    EXPECT_EQ(parseAskedEvent(" Host  STOP"), AskedEvent(Transport::Stop));
    EXPECT_EQ(parseAskedEvent("load"), AskedEvent(PluginLoad{}));
}

TEST(AskedEventParser, ReadsSystemExclusiveOfAnyLength) {
    EXPECT_EQ(parseAskedEvent("f0 7e f7"), message({0xF0, 0x7E, 0xF7}));
    EXPECT_EQ(parseAskedEvent("f0"), message({0xF0}));
    std::string text = "f0";
    text.append(2000, '1');
    EXPECT_EQ(std::get<MIDIMessage>(parseAskedEvent(text + "f7")).size(), 1002u);
}

TEST(AskedEventParser, WantsAnEventThere) {
    EXPECT_EQ(errorOf(""), "it is empty");
    EXPECT_EQ(errorOf("  "), "it is empty");
}

TEST(AskedEventParser, WantsWholeHexadecimalBytes) {
    EXPECT_EQ(errorOf("90 3c 6g"), "\"6g\" is not hexadecimal");
    EXPECT_EQ(errorOf("start"), "\"start\" is not hexadecimal");
    EXPECT_EQ(errorOf("0x90 3c 64"), "\"0x90\" is not hexadecimal");
    EXPECT_EQ(errorOf("90 3 64"), "\"3\" has an odd number of digits; two make a byte");
    EXPECT_EQ(errorOf("load it"), "\"load\" is not hexadecimal");
}

TEST(AskedEventParser, WantsOneCompleteMessage) {
    EXPECT_EQ(errorOf("3c 64"), "3c cannot begin a message: the first byte is 80 to ff");
    EXPECT_EQ(errorOf("f4"), "f4 does not begin a MIDI message");
    EXPECT_EQ(errorOf("f7"), "f7 does not begin a MIDI message");
    EXPECT_EQ(errorOf("90 3c"), "a message that begins with 90 has 3 bytes; here are 2");
    EXPECT_EQ(errorOf("fa 00"), "a message that begins with fa has 1 byte; here are 2");
    EXPECT_EQ(errorOf("90 3c 64 00"), "a message that begins with 90 has 3 bytes; here are 4");
    EXPECT_EQ(errorOf("90 3c 80"), "80 is not a data byte: those are 00 to 7f");
}

TEST(AskedEventParser, KnowsWhatAHostsTransportCanDo) {
    for (const auto* text : {"host", "host pause", "host start now"}) {
        EXPECT_EQ(errorOf(text), "the host's transport can start, continue and stop") << text;
    }
}

TEST(AskedEventParser, FindsEveryTextAnEventOrSaysWhatIsWrong) {
    for (unsigned seed = 0; seed < 5000; ++seed) {
        std::string text = seed % 2 == 0 ? "90 3c 64" : "host start";
        test::Vandal(seed).damage(text);
        try {
            EXPECT_FALSE(eventWords(parseAskedEvent(text)).empty());
        } catch (const AskedEventError& error) {
            EXPECT_STRNE(error.what(), "");
        }
    }
}

TEST(AskedEvent, SaysWhatItIs) {
    EXPECT_EQ(eventWords(parseAskedEvent("90 3c 64")), "90 3c 64: note-on 60 (C3), velocity 100, channel 1");
    EXPECT_EQ(eventWords(parseAskedEvent("host continue")), "host continue: the host's transport continues");
    EXPECT_EQ(eventWords(parseAskedEvent("load")), "load: the plug-in is loaded");
    EXPECT_EQ(eventWords(parseAskedEvent("f07ef7")), "f0 7e f7: system exclusive");
}

TEST(AskedEvent, ShowsTheBeginningOfALongMessage) {
    std::string text = "f0";
    for (int i = 0; i < 15; ++i) {
        text += "01";
    }
    EXPECT_EQ(shownBytes(std::get<MIDIMessage>(parseAskedEvent(text))),
              "f0 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01");
    EXPECT_EQ(shownBytes(std::get<MIDIMessage>(parseAskedEvent(text + "f7"))),
              "f0 01 01 01 01 01 01 01 01 01 01 01 01 01 01 01 ... (17 bytes)");
}

}  // namespace
}  // namespace quillo
