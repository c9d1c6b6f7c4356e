// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <atomic>
#include <cstdint>

#include "hosts/clap/CLAPHeaders.hpp"
#include "hosts/clap/CLAPNotes.hpp"
#include "hosts/clap/CLAPOutput.hpp"
#include "hosts/clap/CLAPTransport.hpp"
#include "platform/RealTime.hpp"
#include "session/Session.hpp"

namespace quillo {

/// What the host's audio thread runs: a block of CLAP events through the rules.
///
/// An event that is shorter than its kind, of a space or a port that is not ours, no message, or system
/// exclusive, is left out; one whose time lies behind the block or before that of the one before is moved
/// to the nearest that does not. [render] unless an operation says otherwise.
class CLAPRenderer {
public:
    /// [main] The session must outlive it.
    explicit CLAPRenderer(Session& session);

    /// [main, while nothing renders] Blocks come at this rate from now on.
    void activate(double sampleRate);

    /// [main, while nothing renders] No blocks come before the next activation, which is the host's affair.
    void deactivate() {
        asleep_ = 0;
        endNotes();
    }

    /// [render; main, while nothing renders] The host stops listening. The notes that sound end in the next
    /// block, for it takes nothing before. A host makes the same call before it puts the plug-in to sleep:
    /// then no note sounds, and nothing is asked for.
    void endNotes() QUILLO_REALTIME {
        if (!maySleep_) {
            renderer_.requests().ask(RenderRequests::Kind::endOfNotes);
        }
    }

    /// The blocks that follow do not join those before, whatever the host's steady time says.
    void interrupt() QUILLO_REALTIME {
        interrupted_ = true;
        nextSteadyTime_ = -1;
    }

    /// One block. `CLAP_PROCESS_SLEEP` when nothing is left to do before something happens: nothing waits or
    /// is owed to be sent, nothing sounds that a host that stops listening would leave hanging, and no rule
    /// waits for the transport, of which a sleeping plug-in hears nothing.
    clap_process_status process(const clap_process_t& process) QUILLO_REALTIME;

    /// [main] Whether there is something to do that the host cannot know of, and the last block said that
    /// there is nothing: a message was sent by hand, something was asked of the renderer, or rules were
    /// installed that wait for the transport.
    [[nodiscard]] bool mustBeWoken();

private:
    void follow(std::int64_t steadyTime, std::uint32_t frames) QUILLO_REALTIME;
    void takeAll(const clap_input_events_t* events) QUILLO_REALTIME;
    void take(const clap_event_header_t& event) QUILLO_REALTIME;
    void takeNote(const clap_event_note_t& event) QUILLO_REALTIME;
    void takeExpression(const clap_event_note_expression_t& event) QUILLO_REALTIME;
    void takeMIDI(const clap_event_midi_t& event) QUILLO_REALTIME;
    clap_process_status nextStatus() QUILLO_REALTIME;

    BlockRenderer& renderer_;
    RuleProcessor& processor_;
    CLAPNotes notes_;
    CLAPOutput output_;
    CLAPTransport transport_;
    bool maySleep_ = false;             ///< the last block said that the host may let the plug-in sleep
    bool interrupted_ = true;           ///< frames may pass before the next block
    std::int64_t nextSteadyTime_ = -1;  ///< of the block that would follow the last one; below 0 when unknown
    std::atomic<unsigned> asleep_{0};  ///< 1 as `maySleep_`, while the plug-in is active; for the main thread
};

}  // namespace quillo
