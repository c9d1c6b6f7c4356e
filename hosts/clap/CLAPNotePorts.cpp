// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/clap/CLAPNotePorts.hpp"

#include <algorithm>
#include <string_view>

namespace quillo {

namespace {

/// Hosts store these.
constexpr clap_id inputPort = 0;
constexpr clap_id outputPort = 1;

clap_note_port_info_t describe(clap_id id, std::uint32_t dialects, std::string_view name) {
    clap_note_port_info_t info{id, dialects, CLAP_NOTE_DIALECT_MIDI, {}};
    std::ranges::copy(name, info.name);
    return info;
}

std::uint32_t count(const clap_plugin_t* /*plugin*/, bool /*isInput*/) noexcept {
    return 1;
}

bool get(const clap_plugin_t* /*plugin*/, std::uint32_t index, bool isInput,
         clap_note_port_info_t* info) noexcept {
    if (index > 0 || info == nullptr) {
        return false;
    }
    *info = isInput ? describe(inputPort, CLAP_NOTE_DIALECT_MIDI | CLAP_NOTE_DIALECT_CLAP, "MIDI In")
                    : describe(outputPort, CLAP_NOTE_DIALECT_MIDI, "MIDIQuillo");
    return true;
}

constexpr clap_plugin_note_ports_t table{.count = &count, .get = &get};

}  // namespace

const clap_plugin_note_ports_t& clapNotePorts() {
    return table;
}

}  // namespace quillo
