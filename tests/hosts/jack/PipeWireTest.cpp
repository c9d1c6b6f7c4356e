// SPDX-License-Identifier: GPL-3.0-or-later
// The program on the other server of this kind.
#include <gtest/gtest.h>

#include "hosts/jack/JackProgramFixture.hpp"
#include "midifile/MIDIFile.hpp"

namespace quillo {
namespace {

using namespace test;

class PipeWire : public testing::Test, public JackProgramFixture {
protected:
    /// This server's library keeps the storage of its ports for good: no business of a leak detector's.
    [[nodiscard]] std::map<std::string, std::string> environment() const {
        return {{"ASAN_OPTIONS", "detect_leaks=0"},
                {"HOME", folder.path().string()},
                {"XDG_CONFIG_HOME", ""},
                {"NSM_URL", ""},
                {"XDG_RUNTIME_DIR", folder.path().string()},
                {"XDG_STATE_HOME", (folder / "state").string()},
                {"PIPEWIRE_RUNTIME_DIR", ""},
                {"PIPEWIRE_REMOTE", ""},
                {"JACK_DEFAULT_SERVER", ""}};
    }

    std::unique_ptr<ChildProcess> runThere(const Words& words) const {
        return std::make_unique<ChildProcess>(words, environment());
    }

    std::unique_ptr<ChildProcess> startServer() const { return runThere({"pipewire"}); }

    std::unique_ptr<ChildProcess> startProgram() {
        writePreset(PluginData{controllerForNote(20, 50)}.write());
        return runThere({"pw-jack", QUILLO_JACK_PROGRAM, "--no-window", "--wait", "--log", "--preset",
                         preset().string()});
    }

    /// A file with one note again and again, half a second long. This server runs on when a client is late,
    /// which then hears nothing of that cycle.
    [[nodiscard]] std::string song() const {
        constexpr std::uint16_t ticks = 480;
        MIDIFile file{0, TicksPerQuarter{ticks}, {{{}, ticks}}};
        for (std::int64_t tick = ticks / 2; tick < ticks; tick += ticks / 24) {
            file.tracks[0].events.push_back({tick, MIDIFileEvent::Kind::channel, {0x90, 60, 100}});
        }
        writeWholeFile(folder / "song.mid", writeMIDIFile(file), Existing::replace);
        return (folder / "song.mid").string();
    }

    void playSong() const {
        const auto signal = runThere({"pw-jack", QUILLO_JACK_SIGNAL, "default", "midi-quillo", song()});
        EXPECT_EQ(signal->wait(), 0) << signal->err().whole();
    }
};

TEST_F(PipeWire, CarriesMIDIAndItsTransportIsTheHosts) {
    const auto server = startServer();
    const auto program = startProgram();
    program->err().waitFor("on the JACK server \"default\" as \"midi-quillo\"");
    playSong();
    program->out().waitFor("AU Host ");
    program->out().waitFor("90 3c 64");
    program->out().waitFor("b0 14 01");
    program->out().waitFor("AU Host Stop");
    EXPECT_EQ(end(*program), 0) << program->err().whole();
}

TEST_F(PipeWire, IsTakenUpAgainWhenItIsBack) {
    auto server = startServer();
    const auto program = startProgram();
    program->err().waitFor("on the JACK server");
    EXPECT_EQ(end(*server), 0);
    program->err().waitFor("The JACK server has ended");
    server = startServer();
    program->err().waitFor("back on the JACK server");
    playSong();
    program->out().waitFor("b0 14 01");
    EXPECT_EQ(end(*program), 0) << program->err().whole();
}

}  // namespace
}  // namespace quillo
