// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/clap/CLAPState.hpp"

#include "hosts/clap/CLAPPlugin.hpp"
#include "hosts/clap/CLAPStreams.hpp"

namespace quillo {

namespace {

bool save(const clap_plugin_t* plugin, const clap_ostream_t* stream) noexcept {
    return CLAPPlugin::with(
        plugin, false, [&](CLAPInstance& instance) { return writeAll(stream, instance.session.save()); });
}

bool load(const clap_plugin_t* plugin, const clap_istream_t* stream) noexcept {
    return CLAPPlugin::with(plugin, false, [&](CLAPInstance& instance) {
        const auto document = readAll(stream);
        if (!document) {
            instance.session.tellUser("The saved rules cannot be restored: the host cannot read them.");
            return false;
        }
        const bool restored = !instance.session.restore(*document);
        instance.wake();
        return restored;
    });
}

constexpr clap_plugin_state_t table{.save = &save, .load = &load};

}  // namespace

const clap_plugin_state_t& clapState() {
    return table;
}

}  // namespace quillo
