// SPDX-License-Identifier: GPL-3.0-or-later
// What the host's render thread runs.
#include <algorithm>
#include <cmath>
#include <memory>
#include <optional>
#include <utility>

#include "audiounit/MIDIQuilloAUAudioUnit.hpp"
#include "engine/Cycle.hpp"

namespace quillo {

namespace {

/// `time` truncated to whole samples; nothing when it does not fit.
std::optional<SampleTime> wholeSamples(double time) QUILLO_REALTIME {
    constexpr double limit = 9223372036854775808.0;  // 2^63
    if (!std::isfinite(time) || time < -limit || time >= limit) {
        return std::nullopt;
    }
    return static_cast<SampleTime>(time);
}

HostTransportTriggerVariantsV2 transportTrigger(AUHostTransportStateFlags flags,
                                                double position) QUILLO_REALTIME {
    if ((flags & AUHostTransportStateMoving) == 0) {
        return HostTransportTriggerVariantsV2::Stop;
    }
    return position > 0.0 ? HostTransportTriggerVariantsV2::Continue : HostTransportTriggerVariantsV2::Start;
}

/// What a render block holds in place of the unit, and in a cycle the unit too.
class RenderLink {
public:
    explicit RenderLink(std::weak_ptr<MIDIQuilloAUAudioUnit> unit) : unit_(std::move(unit)) {}

    /// The unit, until `letGo`; null when it is gone.
    MIDIQuilloAUAudioUnit* hold() QUILLO_REALTIME {
        QUILLO_REALTIME_EXEMPT("counts a reference: neither locks nor allocates")
        held_ = unit_.lock();
        QUILLO_REALTIME_EXEMPT_END
        return held_.get();
    }

    void letGo() QUILLO_REALTIME {
        QUILLO_REALTIME_EXEMPT(
            "whose last reference goes in its own cycle takes the unit with it, on this thread")
        held_.reset();
        QUILLO_REALTIME_EXEMPT_END
    }

private:
    std::weak_ptr<MIDIQuilloAUAudioUnit> unit_;
    std::shared_ptr<MIDIQuilloAUAudioUnit> held_;
};

}  // namespace

AUInternalRenderBlock MIDIQuilloAUAudioUnit::internalRenderBlock() {
    return [link = std::make_shared<RenderLink>(weak_from_this())](const AudioTimeStamp& timestamp,
                                                                   AUAudioFrameCount frameCount,
                                                                   const AURenderEvent* events)
               QUILLO_REALTIME {
        auto* unit = link->hold();
        const auto status = unit != nullptr ? unit->render(timestamp, frameCount, events) : noErr;
        link->letGo();
        return status;
    };
}

OSStatus MIDIQuilloAUAudioUnit::render(const AudioTimeStamp& timestamp, AUAudioFrameCount frameCount,
                                       const AURenderEvent* events) QUILLO_REALTIME {
    const auto status = renderCycle(timestamp, frameCount, events);
    logInput.endBlock();
    logOutput.endBlock();
    return status;
}

OSStatus MIDIQuilloAUAudioUnit::renderCycle(const AudioTimeStamp& timestamp, AUAudioFrameCount frameCount,
                                            const AURenderEvent* events) QUILLO_REALTIME {
    const auto first = wholeSamples(timestamp.mSampleTime);
    SampleTime end = 0;
    if (!first) {
        return processor->fatalErrors.set("the cycle's sample time is not a whole number of samples");
    }
    if (!tryAdd(*first, frameCount, end)) {
        return processor->fatalErrors.set("the cycle ends beyond the render timeline");
    }
    const auto host = MIDIOutputEventBlock.use();
    auto send = [&](SampleTime time, std::uint8_t cable, std::span<const MIDIMessage> messages)
                    QUILLO_REALTIME {
        return sendMessages(host.get(), time, cable, messages);
    };
    const OutputFunction output(send);

    if (const auto status = Cycle(*processor, output, *first, end).status(); status != noErr) {
        return status;
    }
    if (const auto status = renderTransport(output, *first, end); status != noErr) {
        return status;
    }
    return renderEvents(output, events, end);
}

OSStatus MIDIQuilloAUAudioUnit::renderTransport(const OutputFunction& output, SampleTime first,
                                                SampleTime end) QUILLO_REALTIME {
    const auto transport = transportStateBlock.use();
    if (transport.get() == nullptr) {
        return noErr;
    }
    AUHostTransportStateFlags flags = 0;
    double position = 0.0;
    (*transport.get())(&flags, &position, nullptr, nullptr);
    // Any bit counts as a change: the trigger follows from the new flags, not from which bit changed.
    if (std::exchange(previousTransportState_, flags) == flags) {
        return noErr;
    }
    const auto trigger = transportTrigger(flags, position);
    logInput({first, EventLogEntryVariants::Host{trigger}});
    return processor->processHostTransport(output, trigger, first, end);
}

OSStatus MIDIQuilloAUAudioUnit::renderEvents(const OutputFunction& output, const AURenderEvent* events,
                                             SampleTime end) QUILLO_REALTIME {
    for (const auto* event = events; event != nullptr; event = event->next) {
        if (event->eventType != AURenderEventType::midi) {
            continue;
        }
        const auto& midi = *static_cast<const AUMIDIEvent*>(event);
        if (logInput) {
            const auto length = std::min<std::size_t>(midi.length, midi.data.size());
            const auto message = MIDIMessage::inlineCopyOf({midi.data.data(), length});
            logInput({midi.eventSampleTime, EventLogEntryVariants::MIDI{message}});
        }
        const auto status =
            processor->processMIDIEvent(output, midi.eventSampleTime, midi.data, midi.length, end);
        if (status != noErr) {
            return status;
        }
    }
    return noErr;
}

OSStatus MIDIQuilloAUAudioUnit::sendMessages(const AUMIDIOutputEventBlock* host, SampleTime sampleTime,
                                             std::uint8_t cable,
                                             std::span<const MIDIMessage> messages) QUILLO_REALTIME {
    if (host == nullptr) {
        return noErr;
    }
    for (const auto& message : messages) {
        const auto status = (*host)(sampleTime, cable, message.bytes());
        if (status != noErr) {
            return status;
        }
        if (logOutput) {
            logOutput({sampleTime, EventLogEntryVariants::MIDI{message}});
        }
    }
    return noErr;
}

}  // namespace quillo
