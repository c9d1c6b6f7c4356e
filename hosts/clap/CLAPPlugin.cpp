// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/clap/CLAPPlugin.hpp"

#include <algorithm>
#include <array>
#include <new>
#include <string_view>

#include "hosts/clap/CLAPExtensions.hpp"

namespace quillo {

namespace {

std::array<const char*, 3> features{CLAP_PLUGIN_FEATURE_NOTE_EFFECT, CLAP_PLUGIN_FEATURE_UTILITY, nullptr};

const clap_plugin_descriptor_t descriptor{.clap_version = CLAP_VERSION,
                                          .id = "midi-quillo.midi-quillo",
                                          .name = "MIDI Quillo",
                                          .vendor = "MIDI Quillo",
                                          .url = QUILLO_HOMEPAGE,
                                          .manual_url = "",
                                          .support_url = "",
                                          .version = QUILLO_VERSION,
                                          .description = "Rewrites MIDI events by an ordered list of rules",
                                          .features = features.data()};

/// Hosts store these.
constexpr clap_id inputPort = 0;
constexpr clap_id outputPort = 1;

clap_note_port_info_t describePort(clap_id id, std::uint32_t dialects, std::string_view name) {
    clap_note_port_info_t info{id, dialects, CLAP_NOTE_DIALECT_MIDI, {}};
    std::ranges::copy(name, info.name);
    return info;
}

std::uint32_t countPorts(const clap_plugin_t* /*plugin*/, bool /*isInput*/) noexcept {
    return 1;
}

bool getPort(const clap_plugin_t* /*plugin*/, std::uint32_t index, bool isInput,
             clap_note_port_info_t* info) noexcept {
    if (index > 0 || info == nullptr) {
        return false;
    }
    *info = isInput ? describePort(inputPort, CLAP_NOTE_DIALECT_MIDI | CLAP_NOTE_DIALECT_CLAP, "MIDI In")
                    : describePort(outputPort, CLAP_NOTE_DIALECT_MIDI, "MIDIQuillo");
    return true;
}

/// One port each way, both for MIDI; the input takes note events as well.
constexpr clap_plugin_note_ports_t notePorts{.count = &countPorts, .get = &getPort};

/// The table of the extension of that name; null when the plug-in has none such.
const void* tableOf(std::string_view name) {
    if (name == CLAP_EXT_NOTE_PORTS) {
        return &notePorts;
    }
    if (name == CLAP_EXT_STATE) {
        return &clapState();
    }
#ifdef QUILLO_HAS_EDITOR
    if (name == CLAP_EXT_GUI) {
        return &clapGUI();
    }
    if (name == CLAP_EXT_TIMER_SUPPORT) {
        return &clapTimerSupport();
    }
#endif
    return nullptr;
}

}  // namespace

const clap_plugin_descriptor_t& clapDescriptor() {
    return descriptor;
}

const clap_plugin_t* CLAPPlugin::create(const clap_host_t* host) noexcept {
    if (host == nullptr || !clap_version_is_compatible(host->clap_version)) {
        return nullptr;
    }
    const auto* plugin = new (std::nothrow) CLAPPlugin(*host);
    return plugin == nullptr ? nullptr : &plugin->table_;
}

CLAPPlugin::CLAPPlugin(const clap_host_t& host)
    : table_{.desc = &descriptor,
             .plugin_data = this,
             .init = &init,
             .destroy = &destroy,
             .activate = &activate,
             .deactivate = &deactivate,
             .start_processing = &startProcessing,
             .stop_processing = &stopProcessing,
             .reset = &reset,
             .process = &process,
             .get_extension = &extension,
             .on_main_thread = &onMainThread},
      host_(host) {}

CLAPPlugin* CLAPPlugin::of(const clap_plugin_t* plugin) QUILLO_REALTIME {
    return plugin == nullptr ? nullptr : static_cast<CLAPPlugin*>(plugin->plugin_data);
}

CLAPInstance* CLAPPlugin::instanceOf(const clap_plugin_t* plugin) QUILLO_REALTIME {
    const auto* self = of(plugin);
    return self == nullptr ? nullptr : self->instance_.get();
}

bool CLAPPlugin::init(const clap_plugin_t* plugin) noexcept try {
    auto* self = of(plugin);
    if (self == nullptr || self->instance_ != nullptr) {
        return false;
    }
    self->instance_ = std::make_unique<CLAPInstance>(self->host_);
    return true;
} catch (...) {
    return false;
}

void CLAPPlugin::destroy(const clap_plugin_t* plugin) noexcept {
    delete of(plugin);
}

bool CLAPPlugin::activate(const clap_plugin_t* plugin, double sampleRate, std::uint32_t /*shortestBlock*/,
                          std::uint32_t /*longestBlock*/) noexcept {
    return with(plugin, false, [&](CLAPInstance& instance) {
        if (auto reason = instance.session.setSampleRate(sampleRate)) {
            instance.session.tellUser(*std::move(reason));
            return false;
        }
        instance.renderer.activate(sampleRate);
        of(plugin)->active_ = true;
        return true;
    });
}

void CLAPPlugin::deactivate(const clap_plugin_t* plugin) noexcept {
    with(plugin, false, [&](CLAPInstance& instance) {
        of(plugin)->active_ = false;
        instance.renderer.deactivate();
        return true;
    });
}

bool CLAPPlugin::startProcessing(const clap_plugin_t* plugin) QUILLO_REALTIME {
    const auto* self = of(plugin);
    if (self == nullptr || !self->active_) {
        return false;
    }
    self->instance_->renderer.interrupt();
    return true;
}

void CLAPPlugin::stopProcessing(const clap_plugin_t* plugin) QUILLO_REALTIME {
    if (auto* instance = instanceOf(plugin)) {
        instance->renderer.endNotes();
    }
}

void CLAPPlugin::reset(const clap_plugin_t* plugin) QUILLO_REALTIME {
    if (auto* instance = instanceOf(plugin)) {
        instance->renderer.interrupt();
        instance->renderer.endNotes();
    }
}

clap_process_status CLAPPlugin::process(const clap_plugin_t* plugin,
                                        const clap_process_t* process) QUILLO_REALTIME {
    const auto* self = of(plugin);
    if (self == nullptr || !self->active_ || process == nullptr) {
        return CLAP_PROCESS_ERROR;
    }
    return self->instance_->renderer.process(*process);
}

const void* CLAPPlugin::extension(const clap_plugin_t* /*plugin*/, const char* name) noexcept {
    return name == nullptr ? nullptr : tableOf(name);
}

void CLAPPlugin::onMainThread(const clap_plugin_t* plugin) noexcept {
    with(plugin, false, [](CLAPInstance& instance) {
        instance.idle();
        return true;
    });
}

}  // namespace quillo
