// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <exception>
#include <memory>
#include <utility>

#include "hosts/clap/CLAPHeaders.hpp"
#include "hosts/clap/CLAPInstance.hpp"
#include "platform/RealTime.hpp"

namespace quillo {

/// What the factory says of the plug-in.
[[nodiscard]] const clap_plugin_descriptor_t& clapDescriptor();

/// The table that a host has of one instance, and the instance behind it, once the host has called `init`.
///
/// No exception leaves a function of the table, whatever a host calls and when: before `init`, and with a
/// null plug-in, each does nothing and answers as when it fails.
class CLAPPlugin {
public:
    /// [any] Null when the host is, speaks a version of the interface that is not ours, or there is no
    /// memory. The table's `destroy` ends its life.
    [[nodiscard]] static const clap_plugin_t* create(const clap_host_t* host) noexcept;

    /// Null before `init`.
    [[nodiscard]] static CLAPInstance* instanceOf(const clap_plugin_t* plugin) QUILLO_REALTIME;

    /// What `action` makes of the instance; `otherwise` when there is none or it throws.
    template <class Result, class Action>
    static Result with(const clap_plugin_t* plugin, Result otherwise, Action&& action) noexcept {
        try {
            auto* instance = instanceOf(plugin);
            return instance == nullptr ? otherwise : std::forward<Action>(action)(*instance);
        } catch (...) {
            return otherwise;
        }
    }

private:
    explicit CLAPPlugin(const clap_host_t& host);

    [[nodiscard]] static CLAPPlugin* of(const clap_plugin_t* plugin) QUILLO_REALTIME;

    static bool init(const clap_plugin_t* plugin) noexcept;
    static void destroy(const clap_plugin_t* plugin) noexcept;
    static bool activate(const clap_plugin_t* plugin, double sampleRate, std::uint32_t shortestBlock,
                         std::uint32_t longestBlock) noexcept;
    static void deactivate(const clap_plugin_t* plugin) noexcept;
    static bool startProcessing(const clap_plugin_t* plugin) QUILLO_REALTIME;
    static void stopProcessing(const clap_plugin_t* plugin) QUILLO_REALTIME;
    static void reset(const clap_plugin_t* plugin) QUILLO_REALTIME;
    static clap_process_status process(const clap_plugin_t* plugin,
                                       const clap_process_t* process) QUILLO_REALTIME;
    static const void* extension(const clap_plugin_t* plugin, const char* name) noexcept;
    static void onMainThread(const clap_plugin_t* plugin) noexcept;

    const clap_plugin_t table_;
    const clap_host_t& host_;
    std::unique_ptr<CLAPInstance> instance_;
    std::atomic<bool> active_{false};
};

}  // namespace quillo
