// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <vector>

#include "hosts/jack/WakeDescriptor.hpp"

namespace quillo {

/// What the server's threads have to tell the main thread. They may call nothing of the server's library, and
/// one of them must not even take a lock, so each leaves its news here and wakes the main thread.
class ServerNews {
public:
    /// What has come in since the last look.
    struct Contents {
        bool isGone = false;                  ///< the server has ended or dropped this client
        bool formatChanged = false;           ///< sample rate or length of a cycle
        bool portsChanged = false;            ///< they, their connections or the order of clients
        std::vector<std::uint32_t> newPorts;  ///< by number, in the order in which they appeared
    };

    /// [any] The server's notices.
    void serverIsGone() noexcept;
    void formatHasChanged() noexcept;
    void portsHaveChanged() noexcept;
    void portHasAppeared(std::uint32_t number);

    /// Can be read when there is news.
    [[nodiscard]] int descriptor() const { return wake_.number(); }

    /// [main]
    [[nodiscard]] Contents take();

private:
    WakeDescriptor wake_;
    std::atomic<bool> isGone_{false};
    std::atomic<bool> formatChanged_{false};
    std::atomic<bool> portsChanged_{false};
    std::mutex newPortsMutex_;  ///< the render thread never takes it
    std::vector<std::uint32_t> newPorts_;
};

}  // namespace quillo
