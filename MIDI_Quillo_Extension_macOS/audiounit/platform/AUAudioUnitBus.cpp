// SPDX-License-Identifier: GPL-3.0-or-later
#include "audiounit/platform/AUAudioUnitBus.hpp"

#include <utility>

namespace quillo {

namespace {

bool isPossible(const AVAudioFormat& format) {
    return format.commonFormat == AVAudioCommonFormat::pcmFormatFloat32 && format.channelCount > 0;
}

}  // namespace

std::shared_ptr<AUAudioUnitBus> AUAudioUnitBus::withFormat(const AVAudioFormat& format) {
    if (!isPossible(format)) {
        return nullptr;
    }
    return std::shared_ptr<AUAudioUnitBus>(new AUAudioUnitBus(format));
}

OSStatus AUAudioUnitBus::setFormat(const AVAudioFormat& format) {
    if (!isPossible(format) || format.channelCount > maximumChannelCount_) {
        return kAudioUnitErr_FormatNotSupported;
    }
    format_ = format;
    return noErr;
}

AUAudioUnitBusArray::AUAudioUnitBusArray(AUAudioUnit& owner, AUAudioUnitBusType type,
                                         std::vector<std::shared_ptr<AUAudioUnitBus>> busses)
    : owner_(owner), type_(type), busses_(std::move(busses)) {}

}  // namespace quillo
