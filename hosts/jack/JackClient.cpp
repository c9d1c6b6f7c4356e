// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/JackClient.hpp"

#include <jack/jack.h>
#include <jack/metadata.h>
#include <jack/uuid.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <utility>

#include "hosts/jack/Icon.hpp"
#include "hosts/jack/JackMIDIPorts.hpp"
#include "hosts/jack/LibraryMessages.hpp"
#include "hosts/jack/WithoutCancellation.hpp"
#include "platform/Base64.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

/// A text or a list that the library has allocated.
struct FreeByLibrary {
    void operator()(const void* memory) const { ::jack_free(const_cast<void*>(memory)); }
};
template <class Element>
using LibraryOwned = std::unique_ptr<Element, FreeByLibrary>;

std::vector<std::string> copyOfNames(const char** names) {
    const LibraryOwned<const char*> owner(names);
    std::vector<std::string> copy;
    for (; names != nullptr && *names != nullptr; ++names) {
        copy.emplace_back(*names);
    }
    return copy;
}

std::vector<std::string> aliasesOf(const jack_port_t* port) {
    const auto room = static_cast<std::size_t>(::jack_port_name_size());
    std::array<std::string, 2> texts{std::string(room, '\0'), std::string(room, '\0')};
    std::array<char*, 2> pointers{texts[0].data(), texts[1].data()};
    const auto count = ::jack_port_get_aliases(port, pointers.data());
    std::vector<std::string> aliases;
    for (int index = 0; index < count; ++index) {
        std::string alias = pointers[static_cast<std::size_t>(index)];
        if (!alias.empty()) {
            aliases.push_back(std::move(alias));
        }
    }
    return aliases;
}

bool carriesMIDI(const jack_port_t* port) {
    const auto* type = ::jack_port_type(port);
    return type != nullptr && std::string(type) == JACK_DEFAULT_MIDI_TYPE;
}

jack_client_t* openClient(const JackClient::Request& request, jack_status_t& status) {
    const auto start = request.startServer ? JackNullOption : JackNoStartServer;
    if (request.server) {
        return ::jack_client_open(request.name.c_str(), static_cast<jack_options_t>(start | JackServerName),
                                  &status, request.server->c_str());
    }
    return ::jack_client_open(request.name.c_str(), start, &status);
}

}  // namespace

std::string JackClient::serverName(const Request& request) {
    const auto* fromEnvironment = std::getenv("JACK_DEFAULT_SERVER");
    return request.server.value_or(fromEnvironment != nullptr ? fromEnvironment : "default");
}

ServerFailure JackClient::failureToOpen(const Request& request, jack_status_t status,
                                        std::string_view words) {
    const auto server = "JACK server " + inQuotes(serverName(request));
    const auto said = " JACK says:\n" + std::string(words.substr(0, words.find_last_not_of('\n') + 1));
    if ((status & JackServerFailed) == 0) {
        return {"The " + server + " does not take this program." + said, false};
    }
    if (request.startServer) {
        return {"The " + server + " is not running and cannot be started." + said, true};
    }
    return {"There is no " + server + " to connect to.", true};
}

void JackClient::Close::operator()(jack_client_t* client) const {
    ::jack_client_close(client);
}

JackClient::JackClient(const Request& request, ProcessCycle& cycle, ServerNews& news)
    : cycle_(cycle), news_(news) {
    const LibraryMessages messages;
    jack_status_t status = JackFailure;
    client_.reset(openClient(request, status));
    if (!client_) {
        throw failureToOpen(request, status, messages.lines("    "));
    }
    cycle_.hold();
    in_ = makePort(inputName, JackPortIsInput);
    out_ = makePort(outputName, JackPortIsOutput);
    setCallbacks();
}

JackClient::~JackClient() {
    ::jack_deactivate(client_.get());
    for (const auto subject : described_) {
        ::jack_remove_properties(client_.get(), subject);
    }
}

jack_port_t* JackClient::makePort(const char* name, unsigned long flags) {
    auto* port = ::jack_port_register(client_.get(), name, JACK_DEFAULT_MIDI_TYPE, flags, 0);
    if (port == nullptr) {
        throw ServerFailure(std::string("The JACK server has no room for the port ") + inQuotes(name) + ".",
                            false);
    }
    return port;
}

/// The callbacks run on the library's threads: they leave word and return.
void JackClient::setCallbacks() {
    auto* client = client_.get();
    ::jack_set_process_callback(client, &process, this);
    ::jack_on_info_shutdown(
        client,
        [](jack_status_t, const char*, void* news) {
            withoutCancellation([&] { static_cast<ServerNews*>(news)->serverIsGone(); });
        },
        &news_);
    const auto formatChanged = [](jack_nframes_t, void* news) {
        withoutCancellation([&] { static_cast<ServerNews*>(news)->formatHasChanged(); });
        return 0;
    };
    ::jack_set_sample_rate_callback(client, formatChanged, &news_);
    ::jack_set_buffer_size_callback(client, formatChanged, &news_);
    ::jack_set_port_registration_callback(
        client,
        [](jack_port_id_t number, int isThere, void* news) {
            withoutCancellation([&] {
                auto& told = *static_cast<ServerNews*>(news);
                isThere != 0 ? told.portHasAppeared(number) : told.portsHaveChanged();
            });
        },
        &news_);
    ::jack_set_port_connect_callback(
        client,
        [](jack_port_id_t, jack_port_id_t, int, void* news) {
            withoutCancellation([&] { static_cast<ServerNews*>(news)->portsHaveChanged(); });
        },
        &news_);
    // The server tells of a connection when it is made, and shows it, from a later cycle on, when it is in
    // force; then this comes.
    ::jack_set_graph_order_callback(
        client,
        [](void* news) {
            withoutCancellation([&] { static_cast<ServerNews*>(news)->portsHaveChanged(); });
            return 0;
        },
        &news_);
}

void JackClient::activate() {
    if (::jack_activate(client_.get()) != 0) {
        throw ServerFailure("The JACK server does not let this program run.", false);
    }
}

std::string JackClient::name() const {
    return ::jack_get_client_name(client_.get());
}

std::uint32_t JackClient::sampleRate() const {
    return ::jack_get_sample_rate(client_.get());
}

std::uint32_t JackClient::bufferSize() const {
    return ::jack_get_buffer_size(client_.get());
}

std::vector<PortDescription> JackClient::ports() const {
    std::vector<PortDescription> found;
    for (const auto& name :
         copyOfNames(::jack_get_ports(client_.get(), nullptr, JACK_DEFAULT_MIDI_TYPE, 0))) {
        if (auto* port = ::jack_port_by_name(client_.get(), name.c_str())) {
            found.push_back(describe(port));
        }
    }
    return found;
}

std::optional<PortDescription> JackClient::port(std::uint32_t number) const {
    auto* port = ::jack_port_by_id(client_.get(), number);
    if (port == nullptr || !carriesMIDI(port)) {
        return std::nullopt;
    }
    return describe(port);
}

bool JackClient::hasPort(const std::string& name) const {
    return ::jack_port_by_name(client_.get(), name.c_str()) != nullptr;
}

PortDescription JackClient::describe(jack_port_t* port) const {
    return {::jack_port_name(port), aliasesOf(port), (::jack_port_flags(port) & JackPortIsOutput) != 0,
            ::jack_port_is_mine(client_.get(), port) != 0};
}

JackClient::Connecting JackClient::connect(const PortDescription& port) {
    const auto result = port.givesMIDI
                            ? ::jack_connect(client_.get(), port.name.c_str(), ::jack_port_name(in_))
                            : ::jack_connect(client_.get(), ::jack_port_name(out_), port.name.c_str());
    if (result == 0) {
        return Connecting::done;
    }
    return result == EEXIST ? Connecting::wasDone : Connecting::refused;
}

bool JackClient::disconnect(const PortDescription& port) {
    if (port.givesMIDI) {
        return ::jack_disconnect(client_.get(), port.name.c_str(), ::jack_port_name(in_)) == 0;
    }
    return ::jack_disconnect(client_.get(), ::jack_port_name(out_), port.name.c_str()) == 0;
}

JackClient::Connections JackClient::connections() const {
    return {copyOfNames(::jack_port_get_all_connections(client_.get(), in_)),
            copyOfNames(::jack_port_get_all_connections(client_.get(), out_))};
}

jack_uuid_t JackClient::uuid() const {
    const LibraryOwned<char> text(::jack_get_uuid_for_client_name(client_.get(), name().c_str()));
    jack_uuid_t uuid = JACK_UUID_EMPTY_INITIALIZER;
    if (text) {
        ::jack_uuid_parse(text.get(), &uuid);
    }
    return uuid;
}

void JackClient::describe() {
    constexpr const char* plainText = "text/plain";
    constexpr const char* picture = "image/png;base64";
    const auto client = uuid();
    setProperty(client, JACK_METADATA_PRETTY_NAME, "MIDI Quillo", plainText);
    setProperty(client, JACK_METADATA_ICON_NAME, "midi-quillo-jack", plainText);
    setProperty(client, JACK_METADATA_ICON_SMALL, encodeBase64(smallIcon()), picture);
    setProperty(client, JACK_METADATA_ICON_LARGE, encodeBase64(largeIcon()), picture);
    setProperty(::jack_port_uuid(in_), JACK_METADATA_PRETTY_NAME, "MIDI In", plainText);
    setProperty(::jack_port_uuid(out_), JACK_METADATA_PRETTY_NAME, "MIDI Out", plainText);
}

void JackClient::setProperty(jack_uuid_t subject, const char* key, const std::string& value,
                             const char* type) {
    if (::jack_uuid_empty(subject) != 0 ||
        ::jack_set_property(client_.get(), subject, key, value.c_str(), type) != 0) {
        return;
    }
    if (described_.empty() || described_.back() != subject) {
        described_.push_back(subject);
    }
}

int JackClient::process(jack_nframes_t frames, void* self) {
    withoutCancellation([&] { static_cast<JackClient*>(self)->runCycle(frames); });
    return 0;
}

void JackClient::runCycle(jack_nframes_t frames) QUILLO_REALTIME {
    ServerTransport transport;
    void* in = nullptr;
    void* out = nullptr;
    QUILLO_REALTIME_EXEMPT("the server's library made these calls for the process thread")
    jack_position_t position;
    const auto state = ::jack_transport_query(client_.get(), &position);
    transport.isRolling = state == JackTransportRolling;
    transport.isStarting = isStarting(state);
    transport.frame = position.frame;
    transport.clock = ::jack_last_frame_time(client_.get());
    in = ::jack_port_get_buffer(in_, frames);
    out = ::jack_port_get_buffer(out_, frames);
    QUILLO_REALTIME_EXEMPT_END
    JackMIDIOutputPort output(out);
    cycle_.run(frames, transport, JackMIDIInputPort(in), output);
}

}  // namespace quillo
