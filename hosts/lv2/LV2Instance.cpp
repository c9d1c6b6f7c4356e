// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/LV2Instance.hpp"

#include <algorithm>
#include <utility>

namespace quillo {

namespace {

constexpr std::size_t longestPiece = 64;

constexpr std::uint32_t inPort = 0;
constexpr std::uint32_t outPort = 1;
constexpr std::uint32_t firstAudioPort = 2;

}  // namespace

void LV2AudioPorts::connect(std::uint32_t port, float* samples) QUILLO_REALTIME {
    if (port < ports_.size()) {
        ports_[port] = samples;
    }
}

void LV2AudioPorts::copy(std::uint32_t frames) const QUILLO_REALTIME {
    if (ports_[channels] == nullptr && ports_[channels + 1] == nullptr) {
        return;
    }
    for (std::size_t start = 0; start < frames; start += longestPiece) {
        copyPiece(start, std::min(longestPiece, frames - start));
    }
}

/// Every input is read before an output is written: the buffers may be crossed.
void LV2AudioPorts::copyPiece(std::size_t start, std::size_t frames) const QUILLO_REALTIME {
    std::array<std::array<float, longestPiece>, channels> piece{};
    for (std::size_t channel = 0; channel < channels; ++channel) {
        if (const auto* from = ports_[channel]) {
            std::copy_n(from + start, frames, piece[channel].begin());
        }
    }
    for (std::size_t channel = 0; channel < channels; ++channel) {
        if (auto* to = ports_[channels + channel]) {
            std::copy_n(piece[channel].begin(), frames, to + start);
        }
    }
}

LV2Instance::LV2Instance(double sampleRate, LV2_URID_Map& map)
    : sampleRate_(sampleRate),
      ids_(map),
      session_(HostTransport(LV2Renderer::tolerance)),
      renderer_(session_.renderer(), ids_) {
    unit = &session_;
    session_.setOnEdit([this] { renderer_.announceEdit(); });
}

void LV2Instance::connect(std::uint32_t port, void* data) QUILLO_REALTIME {
    if (port == inPort) {
        in_ = static_cast<const LV2_Atom_Sequence*>(data);
    } else if (port == outPort) {
        out_ = static_cast<LV2_Atom_Sequence*>(data);
    } else {
        audio_.connect(port - firstAudioPort, static_cast<float*>(data));
    }
}

void LV2Instance::activate() {
    if (auto reason = session_.setSampleRate(sampleRate_)) {
        session_.tellUser(*std::move(reason));
        return;
    }
    renderer_.interrupt();
    active_ = true;
}

void LV2Instance::deactivate() {
    active_ = false;
    session_.renderer().requests().ask(RenderRequests::Kind::endOfNotes);
}

void LV2Instance::run(std::uint32_t frames) QUILLO_REALTIME {
    if (active_) {
        renderer_.render(in_, out_, frames);
    } else {
        renderer_.renderNothing(out_);
    }
    audio_.copy(frames);
}

}  // namespace quillo
