// SPDX-License-Identifier: GPL-3.0-or-later
// Blocks of a CLAP host: lists of events of any kind and content, each in an allocation of its own.
//
// Of each block: frames (1 byte), how many messages the host takes (1), flags (1: the first event is the
// block's transport; 2: a reset before; 4: stopped and started before), the number of events (1), and of each
// its length (1) and its bytes, of which the first four, the length, are set right. Behind a system-exclusive
// event the length of its message (2) and its bytes.
#include <deque>

#include "FuzzCLAPHost.hpp"
#include "FuzzInput.hpp"
#include "FuzzRules.hpp"
#include "hosts/clap/CLAPPlugin.hpp"

using namespace quillo;
using fuzz::Bytes;
using fuzz::require;

namespace {

/// An instance with rules, by its table, that is processing.
class Plugin {
public:
    Plugin() {
        require(table_->init(table_), "an instance is made");
        CLAPPlugin::instanceOf(table_)->session.processor().setRules(fuzz::fuzzRules());
        start();
    }
    ~Plugin() {
        stop();
        table_->destroy(table_);
    }
    Plugin(const Plugin&) = delete;
    Plugin& operator=(const Plugin&) = delete;

    void start() {
        require(table_->activate(table_, 8000.0, 1, 256), "it is activated");
        require(table_->start_processing(table_), "it processes");
    }
    void stop() {
        table_->stop_processing(table_);
        table_->deactivate(table_);
    }
    void reset() { table_->reset(table_); }
    void process(const clap_process_t& block) {
        require(table_->process(table_, &block) != CLAP_PROCESS_ERROR, "a block is processed");
    }

private:
    const clap_plugin_t* table_ = CLAPPlugin::create(&fuzz::clapHost);
};

/// What the host brings in a block.
struct List {
    std::deque<Bytes> events;
    std::deque<Bytes> messages;
    clap_input_events_t table{
        this,
        [](const clap_input_events_t* list) { return static_cast<std::uint32_t>(of(list).events.size()); },
        [](const clap_input_events_t* list, std::uint32_t index) {
            const auto& event = of(list).events.at(index);
            return event.empty() ? nullptr : reinterpret_cast<const clap_event_header_t*>(event.data());
        }};

    static List& of(const clap_input_events_t* list) { return *static_cast<List*>(list->ctx); }

    /// One event; a piece that is too short for a header is a place in the list without one.
    void add(fuzz::FuzzInput& input) {
        auto event = input.bytes(input.number<std::uint8_t>());
        if (event.size() < sizeof(clap_event_header_t)) {
            event.clear();
        } else {
            complete(event, input);
        }
        events.push_back(std::move(event));
    }

private:
    void complete(Bytes& event, fuzz::FuzzInput& input) {
        auto& header = *reinterpret_cast<clap_event_header_t*>(event.data());
        header.size = static_cast<std::uint32_t>(event.size());
        if (header.type == CLAP_EVENT_MIDI_SYSEX && event.size() >= sizeof(clap_event_midi_sysex_t)) {
            auto& sysEx = reinterpret_cast<clap_event_midi_sysex_t&>(header);
            const auto& message = messages.emplace_back(input.bytes(input.number<std::uint16_t>()));
            sysEx.buffer = message.empty() ? nullptr : message.data();
            sysEx.size = static_cast<std::uint32_t>(message.size());
        }
    }
};

/// What the host takes in a block.
struct Taker {
    std::uint32_t frames;
    std::uint32_t room;
    std::uint32_t last = 0;
    clap_output_events_t table{this, [](const clap_output_events_t* list, const clap_event_header_t* event) {
                                   return static_cast<Taker*>(list->ctx)->tryPush(*event);
                               }};

    bool tryPush(const clap_event_header_t& event) {
        require(event.time >= last && event.time <= std::max(frames, 1U) - 1,
                "what is sent lies in its block, in order");
        if (room == 0) {
            return false;
        }
        --room;
        last = event.time;
        return true;
    }
};

/// The event, if it is as long as a transport.
const clap_event_transport_t* transportOf(const List& list) {
    if (list.events.empty() || list.events.front().size() < sizeof(clap_event_transport_t)) {
        return nullptr;
    }
    return reinterpret_cast<const clap_event_transport_t*>(list.events.front().data());
}

void processBlock(Plugin& plugin, fuzz::FuzzInput& input) {
    const std::uint32_t frames = input.number<std::uint8_t>();
    Taker taker{frames, input.number<std::uint8_t>()};
    const auto flags = input.number<std::uint8_t>();
    if ((flags & 2U) != 0) {
        plugin.reset();
    }
    if ((flags & 4U) != 0) {
        plugin.stop();
        plugin.start();
    }
    List list;
    for (auto events = input.number<std::uint8_t>(); events > 0 && !input.isEmpty(); --events) {
        list.add(input);
    }
    clap_process_t block{};
    block.steady_time = -1;
    block.frames_count = frames;
    block.transport = (flags & 1U) != 0 ? transportOf(list) : nullptr;
    block.in_events = &list.table;
    block.out_events = &taker.table;
    plugin.process(block);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::FuzzInput input(data, size);
    Plugin plugin;
    while (!input.isEmpty()) {
        processBlock(plugin, input);
    }
    return 0;
}
