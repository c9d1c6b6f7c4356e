// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "hosts/lv2/LV2InstanceAccess.hpp"
#include "hosts/lv2/LV2Renderer.hpp"
#include "hosts/lv2/LV2URIDs.hpp"
#include "platform/RealTime.hpp"
#include "session/Session.hpp"

namespace quillo {

/// The audio ports of the stereo variant: two in, then two out. What comes in goes out, also where a host
/// uses one buffer for an input and an output, of the same channel or not. [render]
class LV2AudioPorts {
public:
    static constexpr std::size_t channels = 2;

    /// A port by its number among the audio ports. Unknown numbers are ignored.
    void connect(std::uint32_t port, float* samples) QUILLO_REALTIME;

    /// Copies so many frames; an output whose input is not connected gets silence.
    void copy(std::uint32_t frames) const QUILLO_REALTIME;

private:
    void copyPiece(std::size_t start, std::size_t frames) const QUILLO_REALTIME;

    std::array<float*, 2 * channels> ports_{};
};

/// An instance of the plug-in, from the host's `instantiate` to its `cleanup`. The host's handle points to
/// the part that the editor's binary knows.
class LV2Instance : private LV2InstanceAccess {
public:
    /// [main] Throws what `Session` and `LV2URIDs` throw.
    LV2Instance(double sampleRate, LV2_URID_Map& map);
    LV2Instance(const LV2Instance&) = delete;
    LV2Instance& operator=(const LV2Instance&) = delete;

    [[nodiscard]] LV2_Handle handle() { return static_cast<LV2InstanceAccess*>(this); }

    /// The instance of a handle; null when the handle is. [any]
    [[nodiscard]] static LV2Instance* of(LV2_Handle handle) QUILLO_REALTIME {
        return static_cast<LV2Instance*>(static_cast<LV2InstanceAccess*>(handle));
    }

    /// [render] Null takes the port away. Unknown ports are ignored.
    void connect(std::uint32_t port, void* data) QUILLO_REALTIME;

    /// [main] What waits to be sent still does after the plug-in was inactive, and the on-load rules do not
    /// fire again.
    void activate();
    /// The notes that sound end when the next block comes: a host takes nothing before.
    void deactivate();

    /// [render]
    void run(std::uint32_t frames) QUILLO_REALTIME;

    [[nodiscard]] Session& session() { return session_; }
    [[nodiscard]] const LV2URIDs& ids() const { return ids_; }

private:
    double sampleRate_;
    LV2URIDs ids_;
    Session session_;
    LV2Renderer renderer_;
    LV2AudioPorts audio_;
    const LV2_Atom_Sequence* in_ = nullptr;
    LV2_Atom_Sequence* out_ = nullptr;
    bool active_ = false;
};

}  // namespace quillo
