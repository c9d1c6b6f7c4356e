// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/NSMClient.hpp"

#include <lo/lo.h>
#include <unistd.h>

#include <exception>
#include <stdexcept>
#include <utility>

#include "platform/FatalError.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

constexpr const char* open = "/nsm/client/open";
constexpr const char* save = "/nsm/client/save";

/// OSC's time tag for what is to be done as soon as it is received. The library's own name for it is no C++.
constexpr lo_timetag immediately{0, 1};

/// The library aligns arguments to four bytes, and `lo_arg` asks for eight: none of its members may be named.
std::string textOf(const lo_arg* argument) {
    return reinterpret_cast<const char*>(argument);
}

NSMClient::Outcome outcomeOf(const std::function<NSMClient::Outcome()>& operation) try {
    return operation();
} catch (const std::exception& error) {
    return NSMClient::Failure{NSMClient::Failure::general, wordsOf(error)};
}

}  // namespace

void NSMClient::CloseServer::operator()(void* server) const {
    ::lo_server_free(server);
}

void NSMClient::FreeAddress::operator()(void* address) const {
    ::lo_address_free(address);
}

NSMClient::NSMClient(const std::string& url, Program& program) : program_(program), url_(url) {
    if (url.starts_with("osc.udp://")) {
        manager_.reset(::lo_address_new_from_url(url.c_str()));
    }
    if (!manager_) {
        throw std::runtime_error("NSM_URL is " + inQuotes(url) +
                                 ", which is not the address of a session manager: \"osc.udp://HOST:PORT/\"");
    }
    server_.reset(::lo_server_new_with_proto(nullptr, LO_UDP, nullptr));
    if (!server_) {
        throw std::runtime_error("The system gives no port to talk to a session manager.");
    }
    on("/reply", "ssss", [](NSMClient& self, lo_arg** words) { self.joined(textOf(words[0])); });
    on("/error", "sis", [](NSMClient& self, lo_arg** words) {
        self.refusal_ = "The session manager refuses this program: " + escaped(textOf(words[2]));
    });
    on(open, "sss", [](NSMClient& self, lo_arg** words) {
        const Project project{textOf(words[0]), textOf(words[2])};
        self.answer(open, [&] { return self.program_.openProject(project); });
    });
    on(save, "",
       [](NSMClient& self, lo_arg**) { self.answer(save, [&] { return self.program_.saveProject(); }); });
    on("/nsm/client/show_optional_gui", "",
       [](NSMClient& self, lo_arg**) { self.program_.showWindow(true); });
    on("/nsm/client/hide_optional_gui", "",
       [](NSMClient& self, lo_arg**) { self.program_.showWindow(false); });
}

template <class Handler>
void NSMClient::on(const char* path, const char* types, Handler /*handler*/) {
    const auto call = [](const char*, const char*, lo_arg** arguments, int, lo_message, void* self) {
        auto& client = *static_cast<NSMClient*>(self);
        if (!client.refusal_) {
            Handler()(client, arguments);
        }
        return 0;
    };
    ::lo_server_add_method(server_.get(), path, types, call, this);
}

void NSMClient::announce(const Announcement& announcement) {
    constexpr int major = 1;
    constexpr int minor = 1;
    hasWindow_ = announcement.hasWindow;
    ::lo_send_from(manager_.get(), server_.get(), immediately, "/nsm/server/announce", "sssiii",
                   announcement.name.c_str(), hasWindow_ ? ":switch:dirty:optional-gui:" : ":switch:dirty:",
                   announcement.executable.c_str(), major, minor, static_cast<int>(::getpid()));
}

void NSMClient::joined(const std::string& path) {
    if (path == "/nsm/server/announce") {
        hasJoined_ = true;
        sendWindowShown();
    }
}

int NSMClient::descriptor() const {
    return ::lo_server_get_socket_fd(server_.get());
}

void NSMClient::receive() {
    while (::lo_server_recv_noblock(server_.get(), 0) > 0) {
    }
}

void NSMClient::tick() {
    if (!hasJoined_ && ++ticks_ == secondsToAnswer * EventLoop::ticksPerSecond) {
        refusal_ = "No session manager answers at " + escaped(url_) + ", as NSM_URL says.";
    }
}

void NSMClient::answer(const char* path, const std::function<Outcome()>& operation) {
    if (const auto failure = outcomeOf(operation)) {
        ::lo_send_from(manager_.get(), server_.get(), immediately, "/error", "sis", path,
                       static_cast<int>(failure->code), failure->words.c_str());
    } else {
        ::lo_send_from(manager_.get(), server_.get(), immediately, "/reply", "ss", path, "OK");
    }
}

void NSMClient::setDirty(bool isDirty) {
    if (std::exchange(isDirty_, isDirty) != isDirty) {
        send(isDirty ? "/nsm/client/is_dirty" : "/nsm/client/is_clean");
    }
}

void NSMClient::setWindowShown(bool isShown) {
    if (std::exchange(isShown_, isShown) != isShown) {
        sendWindowShown();
    }
}

void NSMClient::sendWindowShown() {
    if (hasWindow_) {
        send(isShown_ ? "/nsm/client/gui_is_shown" : "/nsm/client/gui_is_hidden");
    }
}

void NSMClient::send(const char* path) {
    ::lo_send_from(manager_.get(), server_.get(), immediately, path, "");
}

}  // namespace quillo
