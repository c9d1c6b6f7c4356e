// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/FakePorts.hpp"
#include "hosts/jack/ProcessCycle.hpp"
#include "simulation/SessionPlayer.hpp"

namespace quillo::test {

namespace {

/// A server's cycles with ports of its own. It reports its transport in every cycle.
class SimulatedJackPlayer final : public SessionPlayer {
public:
    explicit SimulatedJackPlayer(double rate) : SessionPlayer(rate) {
        cycle_.release();
        for (int i = 0; i < 2; ++i) {
            FakeOutput nothing;
            cycle_.run(1, transport_, FakeInput(), nothing);
        }
    }

    void restart() override {}

    Sent block(std::uint32_t frames, const std::vector<Incoming>& events,
               std::optional<RoomLimit> /*room*/) override {
        Timed input;
        for (const auto& event : events) {
            take(event, input);
        }
        FakeOutput output;
        cycle_.run(frames, transport_, FakeInput(std::move(input)), output);
        transport_.clock += frames;
        transport_.frame += transport_.isRolling ? frames : 0;
        return {output.written.begin(), output.written.end()};
    }

private:
    void take(const Incoming& event, Timed& input) {
        if (const auto* report = std::get_if<TransportReport>(&event.what)) {
            transport_.isRolling = report->moves;
            transport_.frame = static_cast<std::uint32_t>(
                report->position.value_or(static_cast<std::int64_t>(transport_.frame)));
            return;
        }
        for (auto left = event.times; left > 0; --left) {
            input.emplace_back(event.offset, std::get<Bytes>(event.what));
        }
    }

    ProcessCycle cycle_{session_.renderer()};
    ServerTransport transport_;
};

}  // namespace

std::unique_ptr<Player> makeJackPlayer(double rate) {
    return std::make_unique<SimulatedJackPlayer>(rate);
}

}  // namespace quillo::test
