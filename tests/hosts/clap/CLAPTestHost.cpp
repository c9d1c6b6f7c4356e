// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/clap/CLAPTestHost.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <span>
#include <utility>

#include "midi/MessageLength.hpp"
#include "persistence/PluginData.hpp"

namespace quillo::test {

namespace {

/// A stream that hands over, or takes, at most so many bytes at a time.
struct Stream {
    Bytes bytes;
    std::size_t longestPiece;
    std::size_t position = 0;

    static std::int64_t read(const clap_istream_t* stream, void* buffer, std::uint64_t size) {
        auto& self = *static_cast<Stream*>(stream->ctx);
        const auto left = std::span(self.bytes).subspan(self.position);
        const auto count = std::min({static_cast<std::size_t>(size), self.longestPiece, left.size()});
        std::ranges::copy(left.first(count), static_cast<std::uint8_t*>(buffer));
        self.position += count;
        return static_cast<std::int64_t>(count);
    }

    static std::int64_t write(const clap_ostream_t* stream, const void* buffer, std::uint64_t size) {
        auto& self = *static_cast<Stream*>(stream->ctx);
        const auto* bytes = static_cast<const std::uint8_t*>(buffer);
        const auto count = std::min(static_cast<std::size_t>(size), self.longestPiece);
        self.bytes.insert(self.bytes.end(), bytes, bytes + count);
        return static_cast<std::int64_t>(count);
    }
};

}  // namespace

CLAPTestHost::CLAPTestHost(Offers offers)
    : offers_(offers),
      host_{CLAP_VERSION,
            this,
            "test",
            "",
            "",
            "1",
            [](const clap_host_t* host, const char* name) { return of(host).offer(name); },
            [](const clap_host_t*) { ADD_FAILURE() << "it asks for a restart"; },
            [](const clap_host_t* host) { ++of(host).processRequests; },
            [](const clap_host_t* host) { ++of(host).callbackRequests; }},
      state_{[](const clap_host_t* host) { ++of(host).dirtyMarks; }},
      timerSupport_{[](const clap_host_t* host, std::uint32_t milliseconds, clap_id* timer) {
                        *timer = of(host).nextTimer_++;
                        of(host).timers[*timer] = milliseconds;
                        return true;
                    },
                    [](const clap_host_t* host, clap_id timer) { return of(host).timers.erase(timer) == 1; }},
      output_{this, [](const clap_output_events_t* list, const clap_event_header_t* event) {
                  return of(list).tryPush(*event);
              }} {
    plugin = binary_.factory().create_plugin(&binary_.factory(), &host_, clapId);
    if (plugin == nullptr || !plugin->init(plugin)) {
        throw std::runtime_error("the factory makes no instance");
    }
}

CLAPTestHost::~CLAPTestHost() {
    plugin->destroy(plugin);
}

const void* CLAPTestHost::offer(const std::string& name) const {
    if (name == CLAP_EXT_STATE && offers_.state) {
        return &state_;
    }
    return name == CLAP_EXT_TIMER_SUPPORT && offers_.timers ? &timerSupport_ : nullptr;
}

CLAPTestHost& CLAPTestHost::start(std::uint32_t longestBlock) {
    EXPECT_TRUE(plugin->activate(plugin, clapSampleRate, 1, longestBlock));
    startProcessing();
    return *this;
}

void CLAPTestHost::stop() {
    if (isProcessing_) {
        stopProcessing();
    }
    plugin->deactivate(plugin);
}

void CLAPTestHost::startProcessing() {
    EXPECT_TRUE(plugin->start_processing(plugin));
    isProcessing_ = true;
}

void CLAPTestHost::stopProcessing() {
    plugin->stop_processing(plugin);
    isProcessing_ = false;
}

void CLAPTestHost::loadRules(std::vector<Rule> rules) {
    ASSERT_TRUE(load(PluginData{std::move(rules)}.write()));
}

bool CLAPTestHost::load(const Bytes& document, std::size_t longestPiece) {
    Stream stream{document, longestPiece};
    const clap_istream_t list{&stream, &Stream::read};
    return extension<clap_plugin_state_t>(CLAP_EXT_STATE).load(plugin, &list);
}

Bytes CLAPTestHost::save(std::size_t longestPiece) {
    Stream stream{{}, longestPiece};
    const clap_ostream_t list{&stream, &Stream::write};
    EXPECT_TRUE(extension<clap_plugin_state_t>(CLAP_EXT_STATE).save(plugin, &list));
    return stream.bytes;
}

clap_process_status CLAPTestHost::process(std::uint32_t frames, const CLAPEvents& events,
                                          const clap_event_transport_t* transport) {
    if (stopsWhenAsleep && !isProcessing_) {
        startProcessing();
    }
    frames_ = frames;
    lastOffset_ = 0;
    clap_process_t process{};
    process.steady_time = steadyTime;
    process.frames_count = frames;
    process.transport = transport;
    process.in_events = events.list();
    process.out_events = &output_;
    const CallCounter::Scope scope;
    const auto status = plugin->process(plugin, &process);
    calls += scope.counts();
    now += frames;
    steadyTime += steadyTime < 0 ? 0 : frames;
    if (stopsWhenAsleep && status == CLAP_PROCESS_SLEEP) {
        stopProcessing();
    }
    return status;
}

clap_process_status CLAPTestHost::process(std::uint32_t frames, const clap_event_transport_t* transport) {
    return process(frames, CLAPEvents(), transport);
}

clap_process_status CLAPTestHost::process(std::uint32_t frames, const Bytes& message) {
    CLAPEvents events;
    events.addMIDI(0, message);
    return process(frames, events);
}

bool CLAPTestHost::tryPush(const clap_event_header_t& event) {
    const CallCounter::Scope ours;
    check(event);
    if (room == 0 || (event.type == CLAP_EVENT_MIDI_SYSEX && !takesSystemExclusive)) {
        return false;
    }
    --room;
    lastOffset_ = event.time;
    if (event.type == CLAP_EVENT_MIDI_SYSEX) {
        const auto& sysEx = reinterpret_cast<const clap_event_midi_sysex_t&>(event);
        EXPECT_EQ(sysEx.port_index, 0);
        sent_.push_back({now + event.time, {sysEx.buffer, sysEx.buffer + sysEx.size}});
    } else {
        const auto& midi = reinterpret_cast<const clap_event_midi_t&>(event);
        EXPECT_EQ(midi.port_index, 0);
        sent_.push_back({now + event.time, {midi.data, midi.data + messageLength(midi.data[0])}});
    }
    return true;
}

void CLAPTestHost::check(const clap_event_header_t& event) const {
    EXPECT_EQ(event.space_id, CLAP_CORE_EVENT_SPACE_ID);
    EXPECT_EQ(event.flags, 0U);
    EXPECT_TRUE(event.time < frames_ || (frames_ == 0 && event.time == 0)) << event.time;
    EXPECT_GE(event.time, lastOffset_);
    const bool isSysEx = event.type == CLAP_EVENT_MIDI_SYSEX;
    EXPECT_TRUE(isSysEx || event.type == CLAP_EVENT_MIDI) << event.type;
    EXPECT_EQ(event.size, isSysEx ? sizeof(clap_event_midi_sysex_t) : sizeof(clap_event_midi_t));
}

}  // namespace quillo::test
