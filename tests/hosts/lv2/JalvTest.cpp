// SPDX-License-Identifier: GPL-3.0-or-later
// The bundle that was built in a host of the world: jalv, under a JACK server without hardware.
#include <gtest/gtest.h>

#include <fcntl.h>
#include <jack/jack.h>
#include <sys/stat.h>

#include <algorithm>
#include <stdexcept>
#include <string>

#include "hosts/jack/JackPlayer.hpp"
#include "hosts/jack/JackServer.hpp"
#include "hosts/lv2/LV2TestHost.hpp"
#include "platform/Descriptor.hpp"
#include "support/ChildProcess.hpp"
#include "support/TemporaryFolder.hpp"
#include "support/TestRules.hpp"

namespace quillo {
namespace {

using namespace test;

/// Writes these rules as a state that jalv can load.
void writeState(const std::string& folder, const char* uri, std::vector<Rule> rules) {
    LV2TestHost host(uri);
    host.loadRules(std::move(rules));
    auto* state = ::lilv_state_new_from_instance(host.world().plugin(uri), host.instance(), &lv2Map(),
                                                 nullptr, nullptr, nullptr, nullptr, nullptr, nullptr,
                                                 LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE, nullptr);
    EXPECT_EQ(::lilv_state_save(host.world().get(), &lv2Map(), &lv2Unmap(), state, nullptr, folder.c_str(),
                                "state.ttl"),
              0);
    ::lilv_state_free(state);
}

/// The plug-in in jalv, on a JACK server of the test's own, between two clients.
class JalvHost {
public:
    static constexpr std::uint32_t period = 1024;

    /// Restores the state in this folder. Throws when the plug-in cannot be run.
    JalvHost(const char* uri, const std::string& folder)
        : input_(openPipe(folder)),
          jalv_({"sh", "-c", "exec jalv \"$@\" <\"$0\"", pipeIn(folder), "-n", "quillo", "-l", folder, uri},
                {{"JACK_DEFAULT_SERVER", server_.name()}, {"LV2_PATH", QUILLO_LV2_PATH}}) {
        connect(player_.outputName(), "quillo:in");
        connect("quillo:out", player_.inputName());
        player_.waitForConnection();
    }
    /// jalv ends with its input. The server would wait for one that is killed.
    ~JalvHost() {
        input_ = Descriptor();
        EXPECT_EQ(jalv_.wait(), 0);
    }

    [[nodiscard]] JackPlayer& player() { return player_; }

private:
    static std::string pipeIn(const std::string& folder) { return folder + "/input"; }

    static Descriptor openPipe(const std::string& folder) {
        ::mkfifo(pipeIn(folder).c_str(), 0600);
        return Descriptor(::open(pipeIn(folder).c_str(), O_RDWR | O_CLOEXEC));
    }

    void connect(const std::string& from, const std::string& to) {
        constexpr int shortWhile = 10;  // milliseconds
        while (::jack_connect(player_.client(), from.c_str(), to.c_str()) != 0) {
            if (jalv_.endsWithin(shortWhile)) {
                throw std::runtime_error("jalv does not run the plug-in: " + jalv_.err().whole());
            }
        }
    }

    JackServer server_{{scriptSampleRate, period}};
    JackPlayer player_{server_.name()};
    Descriptor input_;
    ChildProcess jalv_;
};

class Jalv : public testing::TestWithParam<const char*> {};

INSTANTIATE_TEST_SUITE_P(Both, Jalv, testing::Values(lv2Plain, lv2Stereo),
                         [](const auto& uri) { return uri.param == lv2Plain ? "Plain" : "Stereo"; });

TEST_P(Jalv, EveryMessageComesBackAtItsFrameAndAnEchoAtIts) {
    const TemporaryFolder folder;
    writeState(folder.path().string(), GetParam(),
               {rule(onNoteOn(exactly(60)), send(noteOn(3, 61, 5), 100)),
                rule(onNoteOn(exactly(62), any, PassThroughV2::EatMatching),
                     send(systemExclusive(Bytes(1000, 0x11)), 7))});
    JalvHost host(GetParam(), folder.path().string());

    std::vector<ScriptMessage> sent;
    SampleTime time = 3;
    for (const auto& bytes :
         {Bytes{0x90, 60, 100}, Bytes{0x80, 60, 0}, Bytes{0xA1, 60, 7}, Bytes{0xB2, 1, 64}, Bytes{0xC3, 12},
          Bytes{0xD4, 55}, Bytes{0xE5, 1, 2}, Bytes{0xF8}, Bytes{0xFA}, Bytes{0xF2, 1, 2}, Bytes{0xFE}}) {
        sent.push_back({time, bytes});
        time += 501;
    }
    auto expected = sent;
    expected.push_back({3 + 4800, {0x93, 61, 5}});
    sent.push_back({7000, {0x90, 62, 1}});
    Bytes longMessage(1002, 0x11);
    longMessage.front() = 0xF0;
    longMessage.back() = 0xF7;
    expected.push_back({7000 + 336, longMessage});
    std::ranges::sort(expected, {}, &ScriptMessage::time);

    EXPECT_EQ(host.player().play(sent, SampleTime{12} * JalvHost::period), expected);
}

}  // namespace
}  // namespace quillo
