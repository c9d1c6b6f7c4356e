// SPDX-License-Identifier: GPL-3.0-or-later
#include "scriptedhost/ScriptedHost.hpp"

#include <cmath>
#include <ostream>
#include <string>
#include <utility>

#include <nlohmann/json.hpp>

#include "audiounit/platform/RenderEventList.hpp"
#include "log/EventLogEntry.hpp"
#include "platform/FatalError.hpp"
#include "platform/QuotedText.hpp"
#include "platform/RealTimeFunction.hpp"

namespace quillo {

namespace {

/// Keys stay in the order in which they are written down.
using Answer = nlohmann::ordered_json;

/// What is escaped for a terminal's sake is so as JSON knows it.
void write(std::ostream& out, const Answer& answer) {
    out << escaped(answer.dump()) << '\n';
}

/// An integer where the number is one that 64 bits hold.
Answer number(double value) {
    constexpr double limit = 9223372036854775808.0;  // 2^63
    if (value == std::trunc(value) && value >= -limit && value < limit) {
        return static_cast<std::int64_t>(value);
    }
    return value;
}

Answer describe(const AUAudioUnitBus& bus) {
    const auto& format = bus.format();
    const bool isFloat32 = format.commonFormat == AVAudioCommonFormat::pcmFormatFloat32;
    return {{"format", isFloat32 ? "float32" : "other"},
            {"sampleRate", number(format.sampleRate)},
            {"channels", format.channelCount},
            {"interleaved", format.interleaved},
            {"maximumChannelCount", bus.maximumChannelCount()}};
}

Answer describe(const AUAudioUnitBusArray& busses) {
    auto list = Answer::array();
    for (std::size_t index = 0; index < busses.count(); ++index) {
        list.push_back(describe(busses[index]));
    }
    return list;
}

Answer describe(const AUParameterTree& tree) {
    auto list = Answer::array();
    for (const auto& parameter : tree.allParameters()) {
        list.push_back(parameter.address);
    }
    return list;
}

Answer describe(const NSError& error) {
    return {{"error", error.code}, {"domain", error.domain}};
}

std::optional<NSError> setFormat(AUAudioUnitBus& bus, double sampleRate, std::uint32_t channels) {
    auto format = bus.format();
    format.sampleRate = sampleRate;
    format.channelCount = channels;
    const auto status = bus.setFormat(format);
    return status == noErr ? std::nullopt : std::optional(NSError{NSOSStatusErrorDomain, status});
}

/// The platform's event list of a cycle. System-exclusive bytes stay where they are.
RenderEventList listOf(const std::vector<script::RenderEvent>& events) {
    RenderEventList list(events.size());
    const auto push = Overloaded{
        [&](const script::SysExEvent& event) {
            return list.tryPush(
                AUMIDISysExEvent{{nullptr, event.time, AURenderEventType::midiSysEx}, event.bytes});
        },
        [&](const auto& event) { return list.tryPush(event); },
    };
    for (const auto& event : events) {
        if (!std::visit(push, event)) {
            fatalError("the event list is too small for its events");
        }
    }
    return list;
}

}  // namespace

ScriptedHost::ScriptedHost(std::ostream& out) : out_(out) {
    makeUnit();
}

void ScriptedHost::perform(const ScriptAction& action) {
    std::visit([this](const auto& known) { perform(known); }, action);
    out_.flush();
}

void ScriptedHost::makeUnit() {
    auto made = MIDIQuilloAUAudioUnit::create(midiQuilloComponent);
    if (std::holds_alternative<NSError>(made)) {
        fatalError("the unit cannot be made");
    }
    unit_ = std::get<std::shared_ptr<MIDIQuilloAUAudioUnit>>(std::move(made));
    plannedFailure_.reset();
    offerOutput();
    unit_->logInput =
        WithoutDeadline([this](const EventLogEntry& entry) { write(out_, {{"in", text(entry)}}); });
    unit_->logOutput =
        WithoutDeadline([this](const EventLogEntry& entry) { write(out_, {{"out", text(entry)}}); });
}

void ScriptedHost::offerOutput() {
    unit_->MIDIOutputEventBlock =
        WithoutDeadline([this](AUEventSampleTime time, std::uint8_t cable,
                               std::span<const std::uint8_t> bytes) { return takeMIDI(time, cable, bytes); });
}

OSStatus ScriptedHost::takeMIDI(AUEventSampleTime time, std::uint8_t cable,
                                std::span<const std::uint8_t> bytes) {
    const auto status = answerToMessage();
    const auto* event = status == noErr ? "midi" : "refused";
    write(out_, {{event, {{"time", time}, {"cable", cable}, {"bytes", Answer(bytes)}}}});
    return status;
}

/// Counts the message towards a planned failure, which is forgotten once it was answered.
OSStatus ScriptedHost::answerToMessage() {
    if (!plannedFailure_) {
        return noErr;
    }
    if (plannedFailure_->failAfter > 0) {
        --plannedFailure_->failAfter;
        return noErr;
    }
    return std::exchange(plannedFailure_, std::nullopt)->status;
}

void ScriptedHost::perform(const script::Create&) {
    makeUnit();
    write(out_, {{"created", true}});
}

void ScriptedHost::perform(const script::Restore& action) {
    unit_->setFullState(action.state);
    write(out_, {{"restored", unit_->processor->rules().size()}});
}

void ScriptedHost::perform(const script::Save&) {
    const auto state = unit_->fullState();
    const auto& document = std::get<Data>(state.value().at(stateKey));
    write(out_, {{"state", std::string(document.begin(), document.end())}});
}

void ScriptedHost::perform(const script::Allocate& action) {
    const auto error = allocate(action);
    write(out_, error ? describe(*error) : Answer{{"allocated", true}});
}

std::optional<NSError> ScriptedHost::allocate(const script::Allocate& formats) {
    if (auto error = setFormat(unit_->inputBusses()[0], formats.sampleRate, formats.inputChannels)) {
        return error;
    }
    if (auto error = setFormat(unit_->outputBusses()[0], formats.sampleRate, formats.outputChannels)) {
        return error;
    }
    return unit_->allocateRenderResources();
}

void ScriptedHost::perform(const script::Deallocate&) {
    unit_->deallocateRenderResources();
    write(out_, {{"deallocated", true}});
}

void ScriptedHost::perform(const script::Install& action) {
    unit_->install(action.rules);
    write(out_, {{"installed", unit_->processor->rules().size()}});
}

void ScriptedHost::perform(const script::Send& action) {
    unit_->processor->send(action.output);
    write(out_, {{"queued", unit_->processor->pendingInstantMessages()}});
}

void ScriptedHost::perform(const script::Transport& action) {
    unit_->transportStateBlock = AUHostTransportStateBlock();
    if (action.state) {
        unit_->transportStateBlock = [state = *action.state](AUHostTransportStateFlags* flags,
                                                             double* position, double*,
                                                             double*) QUILLO_REALTIME {
            *flags = state.flags;
            *position = state.position;
            return true;
        };
    }
    write(out_, {{"transport", action.state.has_value()}});
}

void ScriptedHost::perform(const script::Output& action) {
    if (action.failure) {
        plannedFailure_ = action.failure;
    }
    if (action.present) {
        offerOutput();
    } else {
        unit_->MIDIOutputEventBlock = AUMIDIOutputEventBlock();
    }
    write(out_, {{"output", action.present}});
}

void ScriptedHost::perform(const script::Render& action) {
    const auto events = listOf(action.events);
    const auto render = unit_->internalRenderBlock();
    const auto status = render(AudioTimeStamp{action.sampleTime}, action.frames, events.head());
    if (status != noErr) {
        unit_->processor->fatalErrors.raise();
    }
    write(out_, {{"status", status}});
}

void ScriptedHost::perform(const script::Describe&) {
    write(out_, {{"midiOutputNames", unit_->MIDIOutputNames()},
                 {"inputBusses", describe(unit_->inputBusses())},
                 {"outputBusses", describe(unit_->outputBusses())},
                 {"parameters", describe(*unit_->parameterTree())}});
}

void ScriptedHost::perform(const script::Views& action) {
    write(out_, {{"supported", unit_->supportedViewConfigurations(action.sizes)}});
}

void ScriptedHost::perform(const script::Queue&) {
    write(out_, {{"delayed", unit_->processor->pendingDelayedMessages()}});
}

}  // namespace quillo
