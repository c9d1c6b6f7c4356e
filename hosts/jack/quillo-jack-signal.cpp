// SPDX-License-Identifier: GPL-3.0-or-later
// A signal to try the stand-alone program with: plays a MIDI file to it and lets the server's transport roll
// from the file's beginning to its end. Waits for the server and the program, and ends behind the last
// delayed output.
#include <jack/jack.h>
#include <jack/midiport.h>
#include <jack/transport.h>
#include <poll.h>

#include <algorithm>
#include <chrono>
#include <exception>
#include <iostream>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "commandline/Files.hpp"
#include "hosts/jack/LibraryMessages.hpp"
#include "hosts/jack/WakeDescriptor.hpp"
#include "hosts/jack/WithoutCancellation.hpp"
#include "offline/Score.hpp"
#include "platform/QuotedText.hpp"
#include "platform/RealTime.hpp"

namespace {

using namespace quillo;
using namespace std::chrono_literals;

constexpr int exitUsage = 64;
constexpr int exitUnavailable = 69;
constexpr auto patience = 10s;
constexpr SampleTime tailSeconds = 1;

/// Tries again and again, for a while.
template <class Attempt>
auto sooner(const std::string& otherwise, Attempt attempt) {
    const auto end = std::chrono::steady_clock::now() + patience;
    for (;;) {
        if (auto result = attempt()) {
            return result;
        }
        if (std::chrono::steady_clock::now() > end) {
            throw std::runtime_error(otherwise);
        }
        std::this_thread::sleep_for(50ms);
    }
}

class Signal {
public:
    explicit Signal(const std::string& server)
        : client_(sooner("there is no JACK server \"" + server + "\"",
                         [&] {
                             return ::jack_client_open(
                                 "signal", static_cast<jack_options_t>(JackNoStartServer | JackServerName),
                                 nullptr, server.c_str());
                         })),
          port_(::jack_port_register(client_.get(), "out", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0)) {}
    ~Signal() { ::jack_deactivate(client_.get()); }
    Signal(const Signal&) = delete;
    Signal& operator=(const Signal&) = delete;

    /// Plays the file to this client's port "in".
    void play(const std::string& file, const std::string& target) {
        const Score score(readMIDIInput(file), ::jack_get_sample_rate(client_.get()));
        messages_ = score.messages();
        stop_ = score.end();
        end_ = stop_ + tailSeconds * static_cast<SampleTime>(::jack_get_sample_rate(client_.get()));
        ::jack_set_process_callback(client_.get(), &process, this);
        ::jack_on_shutdown(client_.get(), [](void* self) { static_cast<Signal*>(self)->done_.wake(); }, this);
        if (::jack_activate(client_.get()) != 0) {
            throw std::runtime_error("the server does not let the signal run");
        }
        const auto in = target + ":in";
        sooner("there is no port " + in, [&] { return ::jack_port_by_name(client_.get(), in.c_str()); });
        ::jack_connect(client_.get(), ::jack_port_name(port_), in.c_str());
        ::jack_transport_locate(client_.get(), 0);
        ::jack_transport_start(client_.get());
        pollfd watched{done_.number(), POLLIN, 0};
        ::poll(&watched, 1, -1);
    }

private:
    struct Close {
        void operator()(jack_client_t* client) const { ::jack_client_close(client); }
    };

    static int process(jack_nframes_t frames, void* self) {
        withoutCancellation([&] { static_cast<Signal*>(self)->playCycle(frames); });
        return 0;
    }

    /// The file follows the transport; behind its end only time passes.
    void playCycle(jack_nframes_t frames) QUILLO_REALTIME {
        QUILLO_REALTIME_EXEMPT("the server's library made these calls for the process thread")
        auto* buffer = ::jack_port_get_buffer(port_, frames);
        ::jack_midi_clear_buffer(buffer);
        if (!stopped_ && ::jack_transport_query(client_.get(), nullptr) != JackTransportRolling) {
            return;
        }
        for (; next_ < messages_.size() && messages_[next_].time < now_ + frames; ++next_) {
            const auto bytes = messages_[next_].message.bytes();
            ::jack_midi_event_write(buffer, static_cast<jack_nframes_t>(messages_[next_].time - now_),
                                    bytes.data(), bytes.size());
        }
        now_ += frames;
        if (!stopped_ && now_ >= stop_) {
            stopped_ = true;
            ::jack_transport_stop(client_.get());
        }
        if (now_ >= end_) {
            done_.wake();
        }
        QUILLO_REALTIME_EXEMPT_END
    }

    WakeDescriptor done_;
    std::vector<TimedMessage> messages_;
    SampleTime stop_ = 0;  ///< when the transport stops
    SampleTime end_ = 0;   ///< when the program ends
    // Of the process thread alone.
    std::size_t next_ = 0;
    SampleTime now_ = 0;
    bool stopped_ = false;

    std::unique_ptr<jack_client_t, Close> client_;
    jack_port_t* port_;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "Usage: quillo-jack-signal SERVER CLIENT FILE.mid\n";
        return exitUsage;
    }
    try {
        LibraryMessages::silenceLibrary();
        Signal(argv[1]).play(argv[3], argv[2]);
        return 0;
    } catch (const std::exception& error) {
        std::cerr << "quillo-jack-signal: " << escapedLines(error.what()) << '\n';
        return exitUnavailable;
    }
}
