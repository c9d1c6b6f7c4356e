// SPDX-License-Identifier: GPL-3.0-or-later
#include "benchmarks/LV2Player.hpp"

#include <stdexcept>

namespace quillo::bench {

namespace {

constexpr std::uint32_t inPort = 0;
constexpr std::uint32_t outPort = 1;
constexpr std::uint32_t firstControl = 2;

/// The one property of a state.
struct Kept {
    LV2_URID key;
    const std::string& value;

    static const void* retrieve(LV2_State_Handle handle, std::uint32_t key, std::size_t* size,
                                std::uint32_t* type, std::uint32_t* flags) {
        const auto& kept = *static_cast<const Kept*>(handle);
        if (key != kept.key) {
            return nullptr;
        }
        *size = kept.value.size() + 1;
        *type = test::lv2Id(LV2_ATOM__String);
        *flags = LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE;
        return kept.value.c_str();
    }
};

}  // namespace

LV2Player::LV2Player(const std::string& bundle, const char* uri) {
    auto* folder = ::lilv_new_file_uri(world_.get(), nullptr, (bundle + "/").c_str());
    auto* name = ::lilv_new_uri(world_.get(), uri);
    ::lilv_world_load_bundle(world_.get(), folder);
    const auto* plugin = ::lilv_plugins_get_by_uri(::lilv_world_get_all_plugins(world_.get()), name);
    ::lilv_node_free(folder);
    ::lilv_node_free(name);
    if (plugin != nullptr) {
        instance_.reset(::lilv_plugin_instantiate(plugin, 48000.0, features_.data()));
    }
    if (!instance_) {
        throw std::runtime_error(std::string(uri) + " cannot be played");
    }
    const auto* descriptor = ::lilv_instance_get_descriptor(instance_.get());
    run_ = descriptor->run;
    handle_ = ::lilv_instance_get_handle(instance_.get());
    worker_ = static_cast<const LV2_Worker_Interface*>(
        ::lilv_instance_get_extension_data(instance_.get(), LV2_WORKER__interface));
    connectControls(::lilv_plugin_get_num_ports(plugin));
    ::lilv_instance_connect_port(instance_.get(), outPort, out_.data());
    ::lilv_instance_connect_port(instance_.get(), inPort, &in_.atom());
    ::lilv_instance_activate(instance_.get());
}

LV2Player::~LV2Player() {
    ::lilv_instance_deactivate(instance_.get());
}

void LV2Player::connectControls(std::uint32_t ports) {
    controls_.resize(ports);
    for (auto port = firstControl; port < ports; ++port) {
        ::lilv_instance_connect_port(instance_.get(), port, &controls_[port]);
    }
}

void LV2Player::restore(const char* key, const std::string& value) {
    const auto* state = static_cast<const LV2_State_Interface*>(
        ::lilv_instance_get_extension_data(instance_.get(), LV2_STATE__interface));
    Kept kept{test::lv2Id(key), value};
    if (state == nullptr ||
        state->restore(handle_, &Kept::retrieve, &kept, 0, features_.data()) != LV2_STATE_SUCCESS) {
        throw std::runtime_error(std::string("the state ") + key + " is refused");
    }
}

void LV2Player::setEvents(const test::LV2Sequence& events) {
    in_ = events;
    ::lilv_instance_connect_port(instance_.get(), inPort, &in_.atom());
}

void LV2Player::setEvents(const test::LV2Sequence& events, std::size_t count) {
    setEvents(events);
    run();
    if (const auto number = sent().size(); number != count) {
        throw std::runtime_error("a plug-in sends " + std::to_string(number) + " events, not " +
                                 std::to_string(count));
    }
}

std::vector<test::Bytes> LV2Player::sent() {
    std::vector<test::Bytes> messages;
    LV2_ATOM_SEQUENCE_FOREACH(&out(), event) {
        const auto* body = static_cast<const std::uint8_t*>(LV2_ATOM_BODY_CONST(&event->body));
        if (event->body.type == test::lv2Id(LV2_MIDI__MidiEvent)) {
            messages.emplace_back(body, body + event->body.size);
        }
    }
    return messages;
}

/// The work is done at once.
LV2_Worker_Status LV2Player::schedule(LV2_Worker_Schedule_Handle handle, std::uint32_t size,
                                      const void* data) {
    auto& self = *static_cast<LV2Player*>(handle);
    return self.worker_->work(self.handle_, &respond, &self, size, data);
}

LV2_Worker_Status LV2Player::respond(LV2_Worker_Respond_Handle handle, std::uint32_t size, const void* data) {
    auto& self = *static_cast<LV2Player*>(handle);
    return self.worker_->work_response(self.handle_, size, data);
}

}  // namespace quillo::bench
