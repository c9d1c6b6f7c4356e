// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/clap/CLAPRenderer.hpp"

#include <span>

#include "midi/MessageLength.hpp"

namespace quillo {

namespace {

constexpr std::int16_t anyPort = -1;

std::uint32_t sizeOf(const clap_input_events_t* events) QUILLO_REALTIME {
    QUILLO_REALTIME_EXEMPT("the host's own list, made for its audio thread")
    return events != nullptr && events->size != nullptr && events->get != nullptr ? events->size(events) : 0;
    QUILLO_REALTIME_EXEMPT_END
}

const clap_event_header_t* eventOf(const clap_input_events_t* events, std::uint32_t index) QUILLO_REALTIME {
    QUILLO_REALTIME_EXEMPT("the host's own list, made for its audio thread")
    return events->get(events, index);
    QUILLO_REALTIME_EXEMPT_END
}

/// The whole event; null when it is too short to be of that kind.
template <class Event>
const Event* as(const clap_event_header_t& header) QUILLO_REALTIME {
    return header.size >= sizeof(Event) ? reinterpret_cast<const Event*>(&header) : nullptr;
}

bool isOurs(std::int16_t portIndex) QUILLO_REALTIME {
    return portIndex == clapMessagePort || portIndex == anyPort;
}

}  // namespace

CLAPRenderer::CLAPRenderer(Session& session)
    : renderer_(session.renderer()),
      processor_(session.processor()),
      output_(renderer_.refused()),
      transport_(renderer_) {}

void CLAPRenderer::activate(double sampleRate) {
    transport_.setSampleRate(sampleRate);
}

clap_process_status CLAPRenderer::process(const clap_process_t& process) QUILLO_REALTIME {
    follow(process.steady_time, process.frames_count);
    output_.begin(process.out_events);
    renderer_.begin(process.frames_count, output_);
    if (process.transport != nullptr) {
        transport_.report(0, *process.transport);
    }
    takeAll(process.in_events);
    const auto status = renderer_.end();
    return status == kQuilloErr_FatalError ? CLAP_PROCESS_ERROR : nextStatus();
}

/// While the plug-in sleeps the transport may go on, or stand, or jump, and nobody reports it. No rule waits
/// for it then, and one that is installed meanwhile is not meant for what has been. Where the host's steady
/// time shows that the plug-in has not slept, it goes on without a gap.
void CLAPRenderer::follow(std::int64_t steadyTime, std::uint32_t frames) QUILLO_REALTIME {
    const bool followsOn = steadyTime >= 0 && steadyTime == nextSteadyTime_;
    if ((maySleep_ || interrupted_) && !followsOn) {
        renderer_.losePosition();
    }
    if (maySleep_ && !followsOn) {
        renderer_.forgetTransport();
    }
    constexpr std::int64_t last = INT64_MAX - UINT32_MAX;
    nextSteadyTime_ = steadyTime >= 0 && steadyTime <= last ? steadyTime + frames : -1;
    maySleep_ = false;
    interrupted_ = false;
}

void CLAPRenderer::takeAll(const clap_input_events_t* events) QUILLO_REALTIME {
    const auto count = sizeOf(events);
    for (std::uint32_t i = 0; i < count; ++i) {
        const auto* event = eventOf(events, i);
        if (event != nullptr && event->space_id == CLAP_CORE_EVENT_SPACE_ID) {
            take(*event);
        }
    }
}

void CLAPRenderer::take(const clap_event_header_t& event) QUILLO_REALTIME {
    switch (event.type) {
    case CLAP_EVENT_NOTE_ON:
    case CLAP_EVENT_NOTE_OFF:
    case CLAP_EVENT_NOTE_CHOKE:
        if (const auto* note = as<clap_event_note_t>(event)) {
            takeNote(*note);
        }
        break;
    case CLAP_EVENT_NOTE_EXPRESSION:
        if (const auto* expression = as<clap_event_note_expression_t>(event)) {
            takeExpression(*expression);
        }
        break;
    case CLAP_EVENT_MIDI:
        if (const auto* midi = as<clap_event_midi_t>(event)) {
            takeMIDI(*midi);
        }
        break;
    case CLAP_EVENT_TRANSPORT:
        if (const auto* transport = as<clap_event_transport_t>(event)) {
            transport_.report(event.time, *transport);
        }
        break;
    default: break;
    }
}

void CLAPRenderer::takeNote(const clap_event_note_t& event) QUILLO_REALTIME {
    if (!isOurs(event.port_index)) {
        return;
    }
    auto receive = [&](std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
        renderer_.receive(event.header.time, bytes);
    };
    switch (event.header.type) {
    case CLAP_EVENT_NOTE_ON: notes_.begin(event, receive); break;
    case CLAP_EVENT_NOTE_OFF: notes_.end(event, receive); break;
    default: notes_.choke(event, receive); break;
    }
}

void CLAPRenderer::takeExpression(const clap_event_note_expression_t& event) QUILLO_REALTIME {
    if (!isOurs(event.port_index)) {
        return;
    }
    auto receive = [&](std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
        renderer_.receive(event.header.time, bytes);
    };
    notes_.express(event, receive);
}

void CLAPRenderer::takeMIDI(const clap_event_midi_t& event) QUILLO_REALTIME {
    if (event.port_index == clapMessagePort) {
        renderer_.receive(event.header.time, std::span(event.data).first(messageLength(event.data[0])));
    }
}

/// The plug-in counts as asleep before it is looked whether it may sleep: what is done on the main thread in
/// between either is seen here, or finds it asleep and wakes it. For that, each thread exchanges `asleep_`
/// between what it did and what it looks at, the main one in `mustBeWoken` for the value that it had: of two
/// exchanges the later one has the earlier one's value, and with it all that was done before. A store and a
/// load of the other's word in its place may pass each other on processors that let loads go first.
clap_process_status CLAPRenderer::nextStatus() QUILLO_REALTIME {
    asleep_.exchange(1, std::memory_order_acq_rel);
    if (output_.isWaiting() || processor_.hasWaitingMessages() || processor_.hearsHostTransport() ||
        renderer_.isSounding() || renderer_.isOwing()) {
        asleep_ = 0;
        return CLAP_PROCESS_CONTINUE;
    }
    maySleep_ = true;
    return CLAP_PROCESS_SLEEP;
}

bool CLAPRenderer::mustBeWoken() {
    return asleep_.fetch_or(0, std::memory_order_acq_rel) != 0 &&
           (processor_.pendingInstantMessages() > 0 || processor_.hearsHostTransport() ||
            renderer_.requests().any());
}

}  // namespace quillo
