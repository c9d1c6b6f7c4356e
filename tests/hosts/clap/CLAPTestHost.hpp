// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "hosts/clap/CLAPBinary.hpp"
#include "hosts/clap/CLAPEvents.hpp"
#include "hosts/formats/FormatScript.hpp"
#include "realtime/CallCounter.hpp"
#include "rules/Rule.hpp"
#include "support/OutputRecorder.hpp"

namespace quillo::test {

/// A host with one instance of the plug-in that was built, driven by the C interface alone. What the instance
/// sends is kept with its time since the first frame; an event that a host may not be given fails the test.
class CLAPTestHost {
public:
    /// What the host offers besides the bare interface.
    struct Offers {
        bool state = true;
        bool timers = true;
    };

    /// Makes the instance and calls its `init`.
    explicit CLAPTestHost(Offers offers);
    CLAPTestHost() : CLAPTestHost(Offers{}) {}
    ~CLAPTestHost();
    CLAPTestHost(const CLAPTestHost&) = delete;
    CLAPTestHost& operator=(const CLAPTestHost&) = delete;

    /// The same instance, ready to process at 48000 frames a second.
    CLAPTestHost& start(std::uint32_t longestBlock = 8192);
    void stop();

    /// Loads these rules as the state; it must succeed.
    void loadRules(std::vector<Rule> rules);
    [[nodiscard]] bool load(const Bytes& document, std::size_t longestPiece = 1U << 20U);
    [[nodiscard]] Bytes save(std::size_t longestPiece = 1U << 20U);

    /// Processes a block with these events. Null is for a host without a transport.
    clap_process_status process(std::uint32_t frames, const CLAPEvents& events,
                                const clap_event_transport_t* transport = nullptr);
    clap_process_status process(std::uint32_t frames, const clap_event_transport_t* transport = nullptr);
    /// A block with this one message at its start.
    clap_process_status process(std::uint32_t frames, const Bytes& message);

    /// What has come since the last `take`.
    std::vector<ScriptMessage> take() { return std::exchange(sent_, {}); }

    template <class Extension>
    [[nodiscard]] const Extension& extension(const char* name) const {
        return *static_cast<const Extension*>(plugin->get_extension(plugin, name));
    }

    const clap_plugin_t* plugin = nullptr;

    /// How many messages there is still room for.
    std::size_t room = std::numeric_limits<std::size_t>::max();

    /// Whether there is room for system exclusive at all.
    bool takesSystemExclusive = true;

    /// Whether it stops processing behind a block that lets it, and starts again for the next one.
    bool stopsWhenAsleep = false;

    /// Of the next block; without one when below 0.
    std::int64_t steadyTime = 0;

    /// The frames processed so far.
    SampleTime now = 0;

    /// What it has called in blocks so far that a render thread must not.
    CallCounts calls;

    // What the instance asked for.
    int dirtyMarks = 0;
    std::atomic<int> processRequests{0};
    std::atomic<int> callbackRequests{0};
    std::map<clap_id, std::uint32_t> timers;  ///< by their number, the milliseconds

private:
    static CLAPTestHost& of(const clap_host_t* host) { return *static_cast<CLAPTestHost*>(host->host_data); }
    static CLAPTestHost& of(const clap_output_events_t* list) {
        return *static_cast<CLAPTestHost*>(list->ctx);
    }

    [[nodiscard]] const void* offer(const std::string& name) const;
    void startProcessing();
    void stopProcessing();
    bool tryPush(const clap_event_header_t& event);
    void check(const clap_event_header_t& event) const;

    CLAPBinary binary_;
    Offers offers_;
    clap_host_t host_;
    clap_host_state_t state_;
    clap_host_timer_support_t timerSupport_;
    clap_output_events_t output_;
    clap_id nextTimer_ = 7;
    bool isProcessing_ = false;
    std::uint32_t frames_ = 0;      ///< of the block
    std::uint32_t lastOffset_ = 0;  ///< of what the instance has sent in the block
    std::vector<ScriptMessage> sent_;
};

}  // namespace quillo::test
