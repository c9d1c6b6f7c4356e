// SPDX-License-Identifier: GPL-3.0-or-later
#include <gtest/gtest.h>

#include "hosts/jack/FakePorts.hpp"
#include "hosts/jack/ProcessCycle.hpp"
#include "simulation/SessionPlayer.hpp"

namespace quillo::test {

namespace {

/// A port whose buffer has so many bytes, in pieces of 8, and takes messages in ascending order only.
class LimitedPort final : public MIDIOutputPort {
public:
    explicit LimitedPort(std::optional<RoomLimit> limit)
        : size_(limit ? limit->bytes : std::numeric_limits<std::size_t>::max()) {}

    Sent sent;

    void clear() QUILLO_REALTIME override { used_ = 0; }
    [[nodiscard]] std::size_t room() const QUILLO_REALTIME override {
        const auto head = used_ + costOf(0);
        return size_ > head ? (size_ - head) / 8 * 8 : 0;
    }
    [[nodiscard]] bool tryWrite(std::uint32_t offset,
                                std::span<const std::uint8_t> bytes) QUILLO_REALTIME override {
        QUILLO_REALTIME_EXEMPT("a test has no deadline")
        const CallCounter::Scope hosts;
        if (bytes.size() > room() || (!sent.empty() && sent.back().first > offset)) {
            return false;
        }
        used_ += costOf(bytes.size());
        sent.emplace_back(offset, copyOf(bytes));
        QUILLO_REALTIME_EXEMPT_END
        return true;
    }

private:
    std::size_t size_;
    std::size_t used_ = 0;
};

/// A server's cycles with ports of its own. It reports its transport in every cycle.
class SimulatedJackPlayer final : public SessionPlayer {
public:
    explicit SimulatedJackPlayer(double rate) : SessionPlayer(rate) { release(); }

    void restart(const RestartStep& step) override {
        if (step.isReset) {
            pass(step.frames);
            return;
        }
        cycle_.hold();
        runHeld(step.frames);
        release();
    }

    Sent block(std::uint32_t frames, const std::vector<Incoming>& events,
               std::optional<RoomLimit> room) override {
        Timed input;
        for (const auto& event : events) {
            take(event, input);
        }
        const FakeInput port(std::move(input));
        LimitedPort output(room);
        render([&] { cycle_.run(frames, transport_, port, output); });
        pass(frames);
        return std::move(output.sent);
    }

private:
    void release() {
        cycle_.release();
        for (int cycles = 0; cycles < 2; ++cycles) {
            runHeld(0);
        }
    }

    /// A cycle in which a note comes that nobody hears.
    void runHeld(std::uint32_t frames) {
        FakeOutput nothing;
        cycle_.run(frames, transport_, FakeInput({{0, {0x90, 1, 1}}}), nothing);
        EXPECT_TRUE(nothing.written.empty());
        pass(frames);
    }

    void pass(std::uint32_t frames) {
        transport_.clock += frames;
        transport_.frame += transport_.isRolling ? frames : 0;
    }

    void take(const Incoming& event, Timed& input) {
        if (const auto* report = std::get_if<TransportReport>(&event.what)) {
            transport_.isRolling = report->moves;
            transport_.isStarting = report->starts;
            transport_.frame = static_cast<std::uint32_t>(report->position.value());
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
