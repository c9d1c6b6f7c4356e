// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/JackPlayer.hpp"

#include <algorithm>
#include <cerrno>
#include <stdexcept>
#include <utility>

#include "hosts/jack/WithoutCancellation.hpp"

namespace quillo::test {

namespace {

/// A message that no rule of a test waits for.
const Bytes probe{0xBF, 119, 99};

}  // namespace

JackPlayer::Client JackPlayer::open(const std::string& server, const char* name) {
    Client client(::jack_client_open(name, static_cast<jack_options_t>(JackNoStartServer | JackServerName),
                                     nullptr, server.c_str()));
    if (!client) {
        throw std::runtime_error("the server \"" + server + "\" does not take the test's client");
    }
    return client;
}

JackPlayer::JackPlayer(const std::string& server)
    : sender_(open(server, "test-sender")), listener_(open(server, "test-listener")) {
    out_ = ::jack_port_register(sender_.get(), "out", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
    in_ = ::jack_port_register(listener_.get(), "in", JACK_DEFAULT_MIDI_TYPE, JackPortIsInput, 0);
    ::jack_set_process_callback(sender_.get(), &speak, this);
    ::jack_set_process_callback(listener_.get(), &listen, this);
    ::jack_set_xrun_callback(
        listener_.get(),
        [](void* self) {
            ++static_cast<JackPlayer*>(self)->xruns_;
            return 0;
        },
        this);
    ::jack_activate(sender_.get());
    ::jack_activate(listener_.get());
}

JackPlayer::~JackPlayer() {
    ::jack_deactivate(listener_.get());
    ::jack_deactivate(sender_.get());
}

void JackPlayer::require(const std::string& source, const std::string& target) {
    const auto error = ::jack_connect(sender_.get(), source.c_str(), target.c_str());
    if (error != 0 && error != EEXIST) {
        throw std::runtime_error(source + " cannot be connected to " + target);
    }
}

void JackPlayer::connectTo(const std::string& client) {
    require(outputName(), client + ":in");
    require(client + ":MIDIQuillo", inputName());
    waitForConnection();
}

void JackPlayer::waitForConnection() {
    forget();
    {
        const std::lock_guard lock(mutex_);
        probing_ = true;
    }
    waitFor(probe);
    {
        const std::lock_guard lock(mutex_);
        probing_ = false;
    }
    letPass(2);
    forget();
}

void JackPlayer::letPass(int cycles) {
    std::unique_lock lock(mutex_);
    const auto until = cycles_ + static_cast<std::uint64_t>(cycles);
    cyclePassed_.wait(lock, [&] { return cycles_ >= until; });
}

void JackPlayer::send(const std::vector<ScriptMessage>& messages) {
    const std::lock_guard lock(mutex_);
    schedule(messages);
}

/// The cycle under way may have been served already, and the next one may be under way before this thread
/// goes on.
SampleTime JackPlayer::schedule(const std::vector<ScriptMessage>& messages) {
    const auto start = end_ + 4 * (end_ - now_);
    for (const auto& message : messages) {
        toSend_.push_back({start + message.time, message.bytes});
    }
    return start;
}

std::vector<ScriptMessage> JackPlayer::play(const std::vector<ScriptMessage>& messages, SampleTime length) {
    setFreewheel(true);
    letPass(2);
    auto result = playNow(messages, length);
    setFreewheel(false);
    return result;
}

std::vector<ScriptMessage> JackPlayer::playNow(const std::vector<ScriptMessage>& messages,
                                               SampleTime length) {
    std::unique_lock lock(mutex_);
    arrived_.clear();
    const auto start = schedule(messages);
    cyclePassed_.wait(lock, [&] { return now_ >= start + length; });
    std::vector<ScriptMessage> result;
    for (const auto& message : arrived_) {
        if (message.time < start + length) {
            result.push_back({message.time - start, message.bytes});
        }
    }
    return result;
}

std::vector<Bytes> JackPlayer::arrived() {
    const std::lock_guard lock(mutex_);
    std::vector<Bytes> messages;
    for (const auto& message : arrived_) {
        messages.push_back(message.bytes);
    }
    return messages;
}

void JackPlayer::waitFor(const Bytes& message) {
    std::unique_lock lock(mutex_);
    cyclePassed_.wait(lock, [&] { return std::ranges::count(arrived_, message, &ScriptMessage::bytes) > 0; });
}

void JackPlayer::forget() {
    const std::lock_guard lock(mutex_);
    arrived_.clear();
}

int JackPlayer::speak(jack_nframes_t frames, void* self) {
    withoutCancellation([&] { static_cast<JackPlayer*>(self)->speakCycle(frames); });
    return 0;
}

void JackPlayer::speakCycle(jack_nframes_t frames) {
    auto* buffer = ::jack_port_get_buffer(out_, frames);
    ::jack_midi_clear_buffer(buffer);
    const std::lock_guard lock(mutex_);
    now_ = end_;
    end_ = now_ + frames;
    if (probing_) {
        ::jack_midi_event_write(buffer, 0, probe.data(), probe.size());
    }
    for (; !toSend_.empty() && toSend_.front().time < end_; toSend_.pop_front()) {
        const auto& message = toSend_.front();
        ::jack_midi_event_write(buffer, static_cast<jack_nframes_t>(message.time - now_),
                                message.bytes.data(), message.bytes.size());
    }
}

int JackPlayer::listen(jack_nframes_t frames, void* self) {
    withoutCancellation([&] { static_cast<JackPlayer*>(self)->listenCycle(frames); });
    return 0;
}

void JackPlayer::listenCycle(jack_nframes_t frames) {
    auto* buffer = ::jack_port_get_buffer(in_, frames);
    const std::lock_guard lock(mutex_);
    for (std::uint32_t index = 0; index < ::jack_midi_get_event_count(buffer); ++index) {
        jack_midi_event_t event;
        ::jack_midi_event_get(&event, buffer, index);
        arrived_.push_back({now_ + event.time, {event.buffer, event.buffer + event.size}});
    }
    ++cycles_;
    cyclePassed_.notify_all();
}

}  // namespace quillo::test
