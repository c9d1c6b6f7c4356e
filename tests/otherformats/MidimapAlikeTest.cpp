// SPDX-License-Identifier: GPL-3.0-or-later
/// The plug-in midimap.lv2 itself, beside the rules that are read from its configurations.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <random>
#include <string>
#include <vector>

#include "benchmarks/LV2Player.hpp"
#include "midi/MessageLength.hpp"
#include "otherformats/OtherFormat.hpp"
#include "support/EndlessProcessor.hpp"

namespace quillo {
namespace {

using namespace test;

constexpr const char* bundle = "/usr/lib/lv2/midimap.lv2";
constexpr const char* uri = "http://gareus.org/oss/lv2/midimap";
constexpr const char* stateKey = "http://gareus.org/oss/lv2/midimap#state";

/// Configurations out of so few different fields that lines often meet.
class RandomConfiguration {
public:
    explicit RandomConfiguration(unsigned seed) : random_(seed) {}

    std::string text() {
        std::string text = "midimap v1\n";
        text += below(2) == 0 ? "forward-unmatched\n" : "";
        text += below(3) == 0 ? "match-all\n" : "";
        for (auto count = 1 + below(6); count > 0; --count) {
            text += line();
        }
        return text;
    }

private:
    unsigned below(unsigned limit) { return static_cast<unsigned>(random_() % limit); }

    std::string oneOf(const std::vector<std::string>& words) {
        return words[below(static_cast<unsigned>(words.size()))];
    }

    /// Names of notes are for the first data byte.
    std::string line() {
        const auto status = oneOf({"ANY", "Note", "NoteOff", "NoteOn", "CC", "NOTEC0", "NOTEC1", "0x90/0xff",
                                   "0xb1/0xff", "0x80/0xe0", "Pitch", "KeyPressure"});
        const auto first = oneOf({"ANY", "ANY", "0", "60", "C4", "0x40/0x40", "60/0xff"});
        const auto second = oneOf({"ANY", "ANY", "ANY", "1", "0x40/0x40"});
        const auto sentStatus = oneOf({"SAME", "SAME", "CHN0", "CHN1", "0xb1", "0x90", "0x90/0x0f"});
        const auto sentFirst = oneOf({"SAME", "SAME", "1", "C5", "0/0x0f", "0x40/0x3f", "60/0x80"});
        const auto sentSecond = oneOf({"SAME", "SAME", "SAME", "60", "0x40/0x3f"});
        if (below(5) == 0) {
            return oneOf({"0xc0/0xf0 ", "ANY ", "0xc1 "}) + first + " | " +
                   oneOf({"SAME ", "CHN3 ", "0xc2 "}) + sentFirst + "\n";
        }
        return status + " " + first + " " + second + " | " + sentStatus + " " + sentFirst + " " + sentSecond +
               "\n";
    }

    std::mt19937 random_;
};

std::vector<Bytes> someMessages() {
    std::vector<Bytes> messages;
    for (const std::uint8_t status : Bytes{0x80, 0x81, 0x90, 0x91, 0x92, 0xB0, 0xB1, 0xC0, 0xC1}) {
        for (const std::uint8_t data1 : Bytes{0, 1, 59, 60, 64, 127}) {
            for (const std::uint8_t data2 : Bytes{0, 1, 60, 64, 127}) {
                Bytes message{status, data1, data2};
                message.resize(messageLength(status));
                messages.push_back(message);
            }
        }
    }
    return messages;
}

std::vector<Bytes> playedByRules(EndlessProcessor& processor, const Bytes& message) {
    std::vector<Bytes> sent;
    for (const auto& emission : processor.run(MIDIMessage::copyOf(message))) {
        sent.insert(sent.end(), emission.messages.begin(), emission.messages.end());
    }
    return sent;
}

std::string words(const std::vector<Bytes>& messages) {
    std::string words;
    for (const auto& message : messages) {
        for (const auto byte : message) {
            words += std::to_string(byte) + " ";
        }
        words += "| ";
    }
    return words;
}

/// Whether the messages that are played here lose nothing.
bool isTaken(const OtherRules& taken) {
    return std::ranges::all_of(taken.lines, [](const TakenLine& line) {
        return std::ranges::all_of(line.lost, [](const std::string& reason) {
            return reason.starts_with("no rule can wait for") || reason.starts_with("no message matches");
        });
    });
}

TEST(MidimapAlike, RulesDoWhatThePlugInDoesWithRandomConfigurations) {
    std::size_t whole = 0;
    for (unsigned seed = 0; seed < 3000; ++seed) {
        const auto text = RandomConfiguration(seed).text();
        const auto taken = readOtherFormat(text);
        if (!isTaken(taken)) {
            continue;  // it says what is lost
        }
        ++whole;
        bench::LV2Player plugIn(bundle, uri);
        plugIn.restore(stateKey, text);
        EndlessProcessor rules(taken.rules);
        for (const auto& message : someMessages()) {
            plugIn.setEvents(LV2Sequence().addMIDI(0, message));
            plugIn.run();
            ASSERT_EQ(words(plugIn.sent()), words(playedByRules(rules, message)))
                << "seed " << seed << ", " << words({message}) << "\n"
                << text;
        }
    }
    EXPECT_GT(whole, 500U);
    RecordProperty("configurations", static_cast<int>(whole));
}

}  // namespace
}  // namespace quillo
