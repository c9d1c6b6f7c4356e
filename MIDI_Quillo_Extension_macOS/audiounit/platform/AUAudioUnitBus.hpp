// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/OSStatus.hpp"

namespace quillo {

/// Sample formats, with the platform's values.
enum class AVAudioCommonFormat : std::uint32_t { otherFormat = 0, pcmFormatFloat32 = 1 };

/// How the samples of a bus are laid out.
struct AVAudioFormat {
    AVAudioCommonFormat commonFormat = AVAudioCommonFormat::otherFormat;
    double sampleRate = 0.0;         ///< samples per second
    std::uint32_t channelCount = 0;  ///< channels
    bool interleaved = false;        ///< whether the channels share one buffer

    bool operator==(const AVAudioFormat&) const = default;
};

class AUAudioUnit;

/// One audio connection point of a unit. [main] only.
class AUAudioUnitBus {
public:
    /// Null for a format that no bus can have: one without channels or of an unknown sample format.
    [[nodiscard]] static std::shared_ptr<AUAudioUnitBus> withFormat(const AVAudioFormat& format);

    [[nodiscard]] const AVAudioFormat& format() const { return format_; }

    /// The host's choice of format. `kAudioUnitErr_FormatNotSupported`, and nothing changed, for a format
    /// without channels, of an unknown sample format, or of more channels than the maximum. Any sample rate
    /// is taken: what it means is the unit's to judge.
    [[nodiscard]] OSStatus setFormat(const AVAudioFormat& format);

    [[nodiscard]] std::uint32_t maximumChannelCount() const { return maximumChannelCount_; }
    void setMaximumChannelCount(std::uint32_t count) { maximumChannelCount_ = count; }

private:
    explicit AUAudioUnitBus(const AVAudioFormat& format) : format_(format) {}

    AVAudioFormat format_;
    std::uint32_t maximumChannelCount_ = UINT32_MAX;
};

enum class AUAudioUnitBusType { input = 1, output = 2 };

/// The busses of one side of a unit, in order.
class AUAudioUnitBusArray {
public:
    AUAudioUnitBusArray(AUAudioUnit& owner, AUAudioUnitBusType type,
                        std::vector<std::shared_ptr<AUAudioUnitBus>> busses);

    [[nodiscard]] AUAudioUnit& owner() const { return owner_; }
    [[nodiscard]] AUAudioUnitBusType type() const { return type_; }
    [[nodiscard]] std::size_t count() const { return busses_.size(); }

    /// `index` must be below `count()`.
    [[nodiscard]] AUAudioUnitBus& operator[](std::size_t index) const { return *busses_[index]; }

private:
    AUAudioUnit& owner_;
    AUAudioUnitBusType type_;
    std::vector<std::shared_ptr<AUAudioUnitBus>> busses_;
};

}  // namespace quillo
