// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/vst3/MIDIBufferWriter.hpp"

#include <gtest/gtest.h>

#include "support/OutputRecorder.hpp"

namespace quillo {
namespace {

using namespace test;

/// The events of a buffer, as JUCE reads them.
std::vector<Emission> eventsOf(const juce::MidiBuffer& buffer) {
    std::vector<Emission> events;
    for (const auto event : buffer) {
        events.push_back({event.samplePosition, {Bytes(event.data, event.data + event.numBytes)}});
    }
    return events;
}

TEST(MIDIBufferWriter, WritesWhatJUCEItselfWouldHaveWritten) {
    const Bytes longest(MIDIBufferWriter::longestMessage, 0x11);
    Bytes exclusive = longest;
    exclusive.front() = 0xF0;
    exclusive.back() = 0xF7;
    juce::MidiBuffer written;
    juce::MidiBuffer expected;
    MIDIBufferWriter writer;
    writer.open(written);
    std::uint32_t offset = 0;
    for (const auto& message : {Bytes{0x90, 60, 1}, Bytes{0xC0, 1}, Bytes{0xF8}, exclusive, Bytes{0xF0, 0xF7},
                                Bytes{0x80, 60, 0}}) {
        writer.write(offset, message);
        writer.write(offset, message);
        for (int twice = 0; twice < 2; ++twice) {
            ASSERT_TRUE(expected.addEvent(message.data(), static_cast<int>(message.size()),
                                          static_cast<int>(offset)));
        }
        offset += 1000;
    }
    EXPECT_EQ(written.data, expected.data);
    EXPECT_EQ(eventsOf(written), eventsOf(expected));
    EXPECT_EQ(eventsOf(written).size(), 12U);
}

TEST(MIDIBufferWriter, BeginsWithAnEmptyBuffer) {
    juce::MidiBuffer buffer;
    buffer.addEvent(juce::MidiMessage::noteOn(1, 60, 0.5F), 7);
    MIDIBufferWriter writer;
    writer.open(buffer);
    EXPECT_TRUE(buffer.isEmpty());
    writer.write(3, Bytes{0xC0, 1});
    EXPECT_EQ(eventsOf(buffer), (std::vector<Emission>{{3, {{0xC0, 1}}}}));
}

TEST(MIDIBufferWriter, PutsZerosInThePlaceOfDataThatAMessageLacks) {
    juce::MidiBuffer buffer;
    MIDIBufferWriter writer;
    writer.open(buffer);
    for (const auto& message : {Bytes{0x90, 77}, Bytes{0xB0}, Bytes{0xC0}, Bytes{0xF0}, Bytes{0xF4}}) {
        writer.write(1, message);
    }
    EXPECT_EQ(
        eventsOf(buffer),
        (std::vector<Emission>{
            {1, {{0x90, 77, 0}}}, {1, {{0xB0, 0, 0}}}, {1, {{0xC0, 0}}}, {1, {{0xF0}}}, {1, {{0xF4}}}}));
}

TEST(MIDIBufferWriter, NeedsNoMoreStorageThanItSays) {
    constexpr std::size_t messages = 1000;
    juce::MidiBuffer buffer;
    buffer.ensureSize(MIDIBufferWriter::storageFor(messages, messages));
    MIDIBufferWriter writer;
    writer.open(buffer);
    writer.write(0, Bytes{0x90});
    const auto* storage = buffer.data.begin();
    for (std::size_t i = 1; i < messages; ++i) {
        writer.write(0, Bytes{0x90});
    }
    EXPECT_EQ(buffer.data.begin(), storage);
    EXPECT_EQ(static_cast<std::size_t>(buffer.data.size()), MIDIBufferWriter::storageFor(messages, messages));
}

}  // namespace
}  // namespace quillo
