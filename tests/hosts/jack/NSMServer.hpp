// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <lo/lo.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <deque>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace quillo::test {

/// A session manager of the test's own: it keeps what clients send until the test looks for it, and sends
/// what the test says.
class NSMServer {
public:
    /// A message that a client has sent.
    struct Message {
        std::string client;  ///< the sender's address
        std::string path;
        std::vector<std::string> arguments;  ///< in words
    };

    NSMServer() : server_(::lo_server_new_with_proto(nullptr, LO_UDP, nullptr)) {
        ::lo_server_add_method(server_.get(), nullptr, nullptr, &keep, this);
    }

    /// What NSM_URL should be.
    [[nodiscard]] std::string url() const { return owned(::lo_server_get_url(server_.get())); }

    /// Takes the first message with this path, of this client if one is named; waits for it if need be. Those
    /// before it stay. Throws `std::runtime_error` with what there is when it does not come.
    Message waitFor(const std::string& path, const std::string& client = "") {
        return waitFor(path, [&](const Message& message) {
            return message.path == path && (client.empty() || message.client == client);
        });
    }

    /// The paths of what has come by now and was not looked for.
    [[nodiscard]] std::string whatIsThere() {
        while (::lo_server_recv_noblock(server_.get(), 0) > 0) {
        }
        std::string text;
        for (const auto& message : messages_) {
            text += " " + message.path;
        }
        return text;
    }

    void send(const std::string& client, const std::string& path,
              const std::vector<std::string>& words = {}) {
        const std::unique_ptr<void, Free> message(::lo_message_new());
        for (const auto& word : words) {
            ::lo_message_add_string(message.get(), word.c_str());
        }
        sendMessage(client, path, message.get());
    }

    void sendError(const std::string& client, const std::string& path, int code, const std::string& words) {
        const std::unique_ptr<void, Free> message(::lo_message_new());
        ::lo_message_add(message.get(), "sis", path.c_str(), code, words.c_str());
        sendMessage(client, "/error", message.get());
    }

    /// Waits for a client's announcement and takes the client into the session. Its address.
    std::string takeClient() {
        const auto announcement = waitFor("/nsm/server/announce");
        send(announcement.client, "/reply", {"/nsm/server/announce", "welcome", "a test", ":optional-gui:"});
        return announcement.client;
    }

    /// Asks a client for something, and waits until it has answered. "OK", or the number of the error.
    std::string ask(const std::string& client, const std::string& path,
                    const std::vector<std::string>& words = {}) {
        send(client, path, words);
        return answer(client, path);
    }
    std::string open(const std::string& client, const std::string& folder, const std::string& clientID) {
        return ask(client, "/nsm/client/open", {folder, "a song", clientID});
    }

    /// The answer to what was asked.
    std::string answer(const std::string& client, const std::string& path) {
        return waitFor("the answer to " + path,
                       [&](const Message& message) {
                           return message.client == client && !message.arguments.empty() &&
                                  message.arguments.front() == path;
                       })
            .arguments[1];
    }

private:
    struct Close {
        void operator()(void* server) const { ::lo_server_free(server); }
    };
    struct Free {
        void operator()(void* message) const { ::lo_message_free(message); }
    };

    template <class Wanted>
    Message waitFor(const std::string& what, Wanted isWanted) {
        constexpr int patience = 60'000;  ///< in milliseconds
        auto found = std::ranges::find_if(messages_, isWanted);
        while (found == messages_.end()) {
            if (::lo_server_recv_noblock(server_.get(), patience) == 0) {
                throw std::runtime_error(what + " was never sent; what was:" + whatIsThere());
            }
            found = std::ranges::find_if(messages_, isWanted);
        }
        auto message = *found;
        messages_.erase(found);
        return message;
    }

    static std::string owned(char* text) {
        const std::string copy = text;
        std::free(text);
        return copy;
    }

    static int keep(const char* path, const char* types, lo_arg** arguments, int count, lo_message message,
                    void* self) {
        Message kept{owned(::lo_address_get_url(::lo_message_get_source(message))), path, {}};
        for (int index = 0; index < count; ++index) {
            // They lie in units of four bytes, less than `lo_arg` asks for.
            const void* argument = arguments[index];
            kept.arguments.push_back(types[index] == 's'
                                         ? std::string(static_cast<const char*>(argument))
                                         : std::to_string(*static_cast<const std::int32_t*>(argument)));
        }
        static_cast<NSMServer*>(self)->messages_.push_back(std::move(kept));
        return 0;
    }

    void sendMessage(const std::string& client, const std::string& path, void* message) {
        auto* address = ::lo_address_new_from_url(client.c_str());
        ::lo_send_message_from(address, server_.get(), path.c_str(), message);
        ::lo_address_free(address);
    }

    std::unique_ptr<void, Close> server_;
    std::deque<Message> messages_;
};

}  // namespace quillo::test
