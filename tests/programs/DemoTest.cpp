// SPDX-License-Identifier: GPL-3.0-or-later
// The example presets and the demo's song, as they stand in the repository.
#include <random>
#include <set>

#include "analysis/RuleAdvice.hpp"
#include "midifile/MIDIFile.hpp"
#include "offline/OfflineHost.hpp"
#include "offline/Score.hpp"
#include "persistence/PluginData.hpp"
#include "presets/DemoSong.hpp"
#include "programs/CommandLineFixture.hpp"
#include "support/MIDIFileBytes.hpp"

namespace quillo {
namespace {

using namespace fixture;
using testing::HasSubstr;
using testing::MatchesRegex;

const std::string presets = QUILLO_PRESETS;
const std::vector<std::string> examples{"bass-split.json",
                                        "demo.json",
                                        "echo.json",
                                        "octave-doubled.json",
                                        "pads-an-octave-up.json",
                                        "pedal-to-strings.json",
                                        "reset-then-sound.json",
                                        "sounds-at-start.json"};

std::string exampleNamed(const std::string& name) {
    return presets + "/" + name;
}

Bytes demoBytes() {
    return readWholeFile(exampleNamed("demo.mid"));
}

class DemoTest : public CommandLineTest {
protected:
    Bytes rendered(const std::string& preset, const std::string& block) {
        const auto result = run({"render", exampleNamed("demo.mid"), folder / "out.mid", "--preset",
                                 exampleNamed(preset), "--force", "--block", block});
        EXPECT_EQ(result.status, exitSuccess);
        return folder.read("out.mid");
    }
};

TEST_F(DemoTest, SongIsWhatItsProgramWrites) {
    EXPECT_EQ(writeMIDIFile(demoSong()), demoBytes());
}

TEST_F(DemoTest, SongHasSeveralChannelsAndKindsOfMessages) {
    std::set<unsigned> kinds;
    std::set<unsigned> channels;
    for (const auto& event : merged(demoSong().tracks).events) {
        if (event.kind == MIDIFileEvent::Kind::channel) {
            kinds.insert(event.bytes[0] & 0xF0u);
            channels.insert(event.bytes[0] & 0x0Fu);
        }
    }
    EXPECT_THAT(kinds, testing::ElementsAre(0x80, 0x90, 0xB0, 0xC0, 0xE0));
    EXPECT_THAT(channels, testing::ElementsAre(0, 1, 2, 9));
}

TEST_F(DemoTest, PresetStandsAsTheWriterWritesIt) {
    const auto bytes = readWholeFile(exampleNamed("demo.json"));
    EXPECT_EQ(PluginData::read(bytes).write(), bytes);
}

TEST_F(DemoTest, PresetsPassTheCheck) {
    for (const auto& name : examples) {
        const auto result = run({"check", exampleNamed(name)});
        EXPECT_EQ(result.status, exitSuccess) << name;
        EXPECT_THAT(result.out, testing::Not(HasSubstr("out of range"))) << name;
    }
}

TEST_F(DemoTest, PresetHasNoDeadRulesAndLeavesNoNoteSounding) {
    for (const auto& advice : adviseOn(PluginData::read(readWholeFile(exampleNamed("demo.json"))).rules)) {
        EXPECT_EQ(advice.kind, Advice::Kind::notInVST3) << "rule " << advice.rule + 1;
    }
}

TEST_F(DemoTest, RendersToTheSameBytesWithEveryBlock) {
    const auto expected = rendered("demo.json", "1");
    for (const std::string block : {"64", "512", "4096", "1048576"}) {
        EXPECT_EQ(rendered("demo.json", block), expected) << block;
    }
}

TEST_F(DemoTest, EveryPresetChangesTheSong) {
    const auto untouched = [] {
        OfflineHost host({}, std::vector<Rule>());
        const Score score(demoSong(), 48000);
        return writeMIDIFile(score.fileWith(host.play(score.messages(), score.end()).outputs));
    }();
    for (const auto& name : examples) {
        EXPECT_NE(rendered(name, "512"), untouched) << name;
    }
}

TEST(DamagedDemo, SaysAtWhichByteItIsCutOff) {
    const auto whole = demoBytes();
    for (std::size_t size = 0; size < whole.size(); ++size) {
        const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        try {
            static_cast<void>(readMIDIFile(cut));
            ADD_FAILURE() << "read although cut off at byte " << size;
        } catch (const MIDIFileError& error) {
            ASSERT_THAT(error.what(), MatchesRegex("byte [0-9]+: .+"));
            ASSERT_LE(std::stoul(std::string(error.what()).substr(5)), size);
        }
    }
}

/// The demo with one to four bytes changed.
Bytes mutated(std::mt19937& random) {
    auto bytes = demoBytes();
    std::uniform_int_distribution<std::size_t> position(0, bytes.size() - 1);
    std::uniform_int_distribution<int> value(0, 255);
    std::uniform_int_distribution<int> count(1, 4);
    for (int i = count(random); i > 0; --i) {
        bytes[position(random)] = static_cast<std::uint8_t>(value(random));
    }
    return bytes;
}

TEST(DamagedDemo, IsReadAsItStandsOrRejectedWithAPosition) {
    std::mt19937 random(20);
    int refused = 0;
    for (int round = 0; round < 10000; ++round) {
        try {
            const auto file = readMIDIFile(mutated(random));
            ASSERT_EQ(readMIDIFile(writeMIDIFile(file)), file);
        } catch (const MIDIFileError& error) {
            ASSERT_THAT(error.what(), MatchesRegex("byte [0-9]+: .+"));
            ++refused;
        }
    }
    EXPECT_GT(refused, 1000);
    EXPECT_LT(refused, 9000);
}

TEST(DamagedDemo, IsPlayedToItsEndIfItCanBeRead) {
    const auto rules = PluginData::read(readWholeFile(exampleNamed("demo.json"))).rules;
    std::mt19937 random(21);
    int played = 0;
    for (int round = 0; round < 1000; ++round) {
        try {
            const Score score(readMIDIFile(mutated(random)), 48000);
            OfflineHost host({}, rules);
            const auto outputs = host.play(score.messages(), score.end()).outputs;
            static_cast<void>(readMIDIFile(writeMIDIFile(score.fileWith(outputs))));
            ++played;
        } catch (const MIDIFileError& error) {
            ASSERT_STRNE(error.what(), "");
        }
    }
    EXPECT_GT(played, 100);
}

}  // namespace
}  // namespace quillo
