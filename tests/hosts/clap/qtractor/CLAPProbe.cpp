// SPDX-License-Identifier: GPL-3.0-or-later
// A plug-in that writes down what reaches it, for standing behind another one in a host. It writes to the
// file that QUILLO_PROBE names: "ready" when the host first processes, and then a line for each event, the
// frame since the transport started and the message's bytes.
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "hosts/clap/CLAPHeaders.hpp"

namespace quillo::test {

namespace {

class Probe {
public:
    static const clap_plugin_t* create() { return &(new Probe())->table_; }
    static const clap_plugin_descriptor_t descriptor;

private:
    Probe() : table_(tableFor(*this)) {}

    static Probe& of(const clap_plugin_t* plugin) { return *static_cast<Probe*>(plugin->plugin_data); }
    static clap_plugin_t tableFor(Probe& probe);
    static const void* extension(const clap_plugin_t* plugin, const char* name);

    void process(const clap_process_t& process);
    void write(std::int64_t time, const clap_event_header_t& event);
    void writeLine(std::int64_t time, int status, int data1, int data2);

    clap_plugin_t table_;
    std::fstream file_{std::getenv("QUILLO_PROBE"),
                       std::ios::in | std::ios::out};  ///< a pipe, with or without a reader
    bool isReady_ = false;
    bool hasStarted_ = false;
    std::int64_t start_ = 0;  ///< by the host's steady time
};

std::array<const char*, 2> features{CLAP_PLUGIN_FEATURE_NOTE_EFFECT, nullptr};

const clap_plugin_descriptor_t Probe::descriptor{
    CLAP_VERSION, "midi-quillo.probe", "Probe", "", "", "", "", "1", "", features.data()};

std::uint32_t portCount(const clap_plugin_t* /*plugin*/, bool /*isInput*/) {
    return 1;
}

bool describePort(const clap_plugin_t* /*plugin*/, std::uint32_t /*index*/, bool /*isInput*/,
                  clap_note_port_info_t* info) {
    *info = {0, CLAP_NOTE_DIALECT_MIDI | CLAP_NOTE_DIALECT_CLAP, CLAP_NOTE_DIALECT_MIDI, "MIDI"};
    return true;
}

constexpr clap_plugin_note_ports_t ports{&portCount, &describePort};

clap_plugin_t Probe::tableFor(Probe& probe) {
    return {&descriptor,
            &probe,
            [](const clap_plugin_t*) { return true; },
            [](const clap_plugin_t* plugin) { delete &of(plugin); },
            [](const clap_plugin_t*, double, std::uint32_t, std::uint32_t) { return true; },
            [](const clap_plugin_t*) {},
            [](const clap_plugin_t*) { return true; },
            [](const clap_plugin_t*) {},
            [](const clap_plugin_t*) {},
            [](const clap_plugin_t* plugin, const clap_process_t* process) -> clap_process_status {
                of(plugin).process(*process);
                return CLAP_PROCESS_CONTINUE;
            },
            &extension,
            [](const clap_plugin_t*) {}};
}

const void* Probe::extension(const clap_plugin_t* /*plugin*/, const char* name) {
    return std::strcmp(name, CLAP_EXT_NOTE_PORTS) == 0 ? &ports : nullptr;
}

void Probe::process(const clap_process_t& process) {
    if (!isReady_) {
        isReady_ = true;
        file_ << "ready\n";
    }
    if (!hasStarted_ && process.transport != nullptr &&
        (process.transport->flags & CLAP_TRANSPORT_IS_PLAYING) != 0) {
        hasStarted_ = true;
        start_ = process.steady_time;
    }
    const auto count = process.in_events->size(process.in_events);
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto& event = *process.in_events->get(process.in_events, i);
        write(process.steady_time + event.time - start_, event);
    }
    file_.flush();
}

void Probe::write(std::int64_t time, const clap_event_header_t& event) {
    constexpr double loudest = 127.0;
    if (event.type == CLAP_EVENT_MIDI) {
        const auto& midi = reinterpret_cast<const clap_event_midi_t&>(event);
        writeLine(time, midi.data[0], midi.data[1], midi.data[2]);
    } else if (event.type == CLAP_EVENT_NOTE_ON || event.type == CLAP_EVENT_NOTE_OFF) {
        const auto& note = reinterpret_cast<const clap_event_note_t&>(event);
        const int status = event.type == CLAP_EVENT_NOTE_ON ? 0x90 : 0x80;
        writeLine(time, status + note.channel, note.key,
                  static_cast<int>(std::lround(note.velocity * loudest)));
    }
}

void Probe::writeLine(std::int64_t time, int status, int data1, int data2) {
    file_ << time << std::hex << ' ' << status << ' ' << data1 << ' ' << data2 << std::dec << '\n';
}

constexpr clap_plugin_factory_t factory{
    [](const clap_plugin_factory_t*) { return std::uint32_t{1}; },
    [](const clap_plugin_factory_t*, std::uint32_t) { return &Probe::descriptor; },
    [](const clap_plugin_factory_t*, const clap_host_t*, const char*) { return Probe::create(); }};

}  // namespace

}  // namespace quillo::test

extern "C" CLAP_EXPORT const clap_plugin_entry_t clap_entry{
    CLAP_VERSION, [](const char*) { return true; }, [] {},
    [](const char*) -> const void* { return &quillo::test::factory; }};
