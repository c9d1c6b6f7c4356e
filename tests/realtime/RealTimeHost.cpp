// SPDX-License-Identifier: GPL-3.0-or-later
#include "realtime/RealTimeHost.hpp"

#include <algorithm>

#include "support/TestHost.hpp"

namespace quillo::test {

RealTimeHost::RealTimeHost() : unit(makeUnit()), block_(unit->internalRenderBlock()) {
    unit->MIDIOutputEventBlock = [this](AUEventSampleTime, std::uint8_t,
                                        std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
        return receive(bytes);
    };
    unit->transportStateBlock = [this](AUHostTransportStateFlags* flags, double* position, double*,
                                       double*) QUILLO_REALTIME {
        *flags = flags_;
        *position = position_;
        return true;
    };
    unit->logInput = [this](const EventLogEntry& entry) QUILLO_REALTIME { log(entry); };
    unit->logOutput = [this](const EventLogEntry& entry) QUILLO_REALTIME { log(entry); };
}

void RealTimeHost::moveTransport(AUHostTransportStateFlags flags, double position) QUILLO_REALTIME {
    flags_ = flags;
    position_ = position;
}

void RealTimeHost::push(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    const auto offset = static_cast<SampleTime>(events_.size() * cycleLength / mostEvents);
    static_cast<void>(events_.tryPushMIDI(now_ + offset, bytes));
}

OSStatus RealTimeHost::render() QUILLO_REALTIME {
    const CallCounter::Scope scope;
    const auto status = block_({static_cast<double>(now_)}, cycleLength, events_.head());
    events_.clear();
    now_ += cycleLength;
    calls_ += scope.counts();
    return status;
}

OSStatus RealTimeHost::receive(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    ++received_[bytes.front()];
    longestReceived_ = std::max(longestReceived_, bytes.size());
    return noErr;
}

void RealTimeHost::log(const EventLogEntry& entry) QUILLO_REALTIME {
    if (const auto* host = entry.variants.host()) {
        ++logged_[static_cast<std::size_t>(host->trigger)];
    } else {
        lastLogged_[nextLogged_++ % lastLogged_.size()] = entry.variants.midi()->message;
    }
}

}  // namespace quillo::test
