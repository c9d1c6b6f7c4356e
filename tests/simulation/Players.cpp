// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <stdexcept>

#include "simulation/SessionPlayer.hpp"
#include "support/TestHost.hpp"

namespace quillo::test {

namespace {

/// As much room as a step gives.
class LimitedOutput final : public HostOutput {
public:
    explicit LimitedOutput(std::optional<RoomLimit> limit) : limit_(limit) {}

    Sent sent;

    [[nodiscard]] Room roomFor(Bytes bytes, const Waiting& waiting) const QUILLO_REALTIME override {
        const auto cost = costOf(bytes.size());
        if (!limit_ || used_ + waiting.messages * costOf(0) + waiting.bytes + cost <= limit_->bytes) {
            return Room::enough;
        }
        return cost <= limit_->bytes ? Room::full : Room::never;
    }
    void write(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME override {
        QUILLO_REALTIME_EXEMPT("a test has no deadline")
        const CallCounter::Scope hosts;
        used_ += costOf(bytes.size());
        sent.emplace_back(offset, copyOf(bytes));
        QUILLO_REALTIME_EXEMPT_END
    }

private:
    std::optional<RoomLimit> limit_;
    std::size_t used_ = 0;
};

class RendererPlayer final : public SessionPlayer {
public:
    using SessionPlayer::SessionPlayer;

    Sent block(std::uint32_t frames, const std::vector<Incoming>& events,
               std::optional<RoomLimit> room) override {
        LimitedOutput output(room);
        render([&] {
            auto& renderer = session_.renderer();
            renderer.begin(frames, output);
            for (const auto& event : events) {
                for (auto left = event.times; left > 0; --left) {
                    take(renderer, event);
                }
            }
            static_cast<void>(renderer.end());
        });
        return std::move(output.sent);
    }

private:
    static void take(BlockRenderer& renderer, const Incoming& event) {
        if (const auto* bytes = std::get_if<Bytes>(&event.what)) {
            renderer.receive(event.offset, *bytes);
            return;
        }
        const auto& report = std::get<TransportReport>(event.what);
        const HostTransport::State state{
            .isMoving = report.moves, .isRecording = report.records, .isCycling = report.cycles};
        if (report.position) {
            renderer.reportTransport(event.offset, state, static_cast<double>(*report.position));
        } else {
            renderer.reportTransport(event.offset, state);
        }
    }
};

class UnitPlayer final : public Player {
public:
    explicit UnitPlayer(double rate) {
        auto& bus = unit_->outputBusses()[0];
        auto format = bus.format();
        format.sampleRate = rate;
        static_cast<void>(bus.setFormat(format));
        restart({});
        unit_->logInput = WithoutDeadline([this](const EventLogEntry&) { ++counts_.heard; });
        unit_->logOutput = WithoutDeadline([this](const EventLogEntry&) { ++counts_.told; });
        unit_->MIDIOutputEventBlock =
            WithoutDeadline([this](AUEventSampleTime time, std::uint8_t,
                                   std::span<const std::uint8_t> bytes) { return send(time, bytes); });
        unit_->transportStateBlock = [this](AUHostTransportStateFlags* flags, double* position, double*,
                                            double*) {
            *flags = flags_;
            *position = position_;
            return true;
        };
    }

    void edit(const std::vector<Rule>& rules) override { unit_->processor->setRules(rules); }
    void send(const RuleOutputVariantsV2& message) override { unit_->processor->send(message); }
    bool setRate(double /*rate*/) override { return false; }
    void restart(const RestartStep& /*step*/) final {
        unit_->deallocateRenderResources();
        if (const auto error = unit_->allocateRenderResources()) {
            throw std::runtime_error("no resources to render");
        }
    }
    [[nodiscard]] Bytes save() override { return std::get<Data>(unit_->fullState()->at(stateKey)); }
    bool restore(const Bytes& document) override {
        unit_->setFullState(StateDictionary{{stateKey, document}});
        return true;
    }

    Sent block(std::uint32_t frames, const std::vector<Incoming>& events,
               std::optional<RoomLimit> room) override {
        RenderEventList list(countOf(events));
        for (const auto& event : events) {
            take(event, list);
        }
        room_ = room;
        used_ = 0;
        const CallCounter::Scope scope;
        static_cast<void>(render_(AudioTimeStamp{static_cast<double>(start_)}, frames, list.head()));
        calls_ += scope.counts();
        start_ += frames;
        return std::exchange(sent_, {});
    }

    [[nodiscard]] std::optional<Counts> counts() override {
        counts_.waiting = unit_->processor->pendingDelayedMessages();
        counts_.nextDue = unit_->processor->nextDelayedMessage();
        counts_.byHand = unit_->processor->pendingInstantMessages();
        return counts_;
    }

    [[nodiscard]] CallCounts calls() const override { return calls_; }

private:
    static std::size_t countOf(const std::vector<Incoming>& events) {
        std::size_t count = 0;
        for (const auto& event : events) {
            count += event.times;
        }
        return count;
    }

    void take(const Incoming& event, RenderEventList& list) {
        if (const auto* report = std::get_if<TransportReport>(&event.what)) {
            flags_ = (report->moves ? AUHostTransportStateMoving : 0U) |
                     (report->records ? AUHostTransportStateRecording : 0U) |
                     (report->cycles ? AUHostTransportStateCycling : 0U);
            position_ = static_cast<double>(report->position.value());
            return;
        }
        for (auto left = event.times; left > 0; --left) {
            static_cast<void>(list.tryPushMIDI(start_ + event.offset, std::get<Bytes>(event.what)));
        }
    }

    OSStatus send(SampleTime time, std::span<const std::uint8_t> bytes) {
        const CallCounter::Scope hosts;
        const auto cost = costOf(bytes.size());
        if (room_ && used_ + cost > room_->bytes) {
            ++counts_.refused;
            return kQuilloErr_OutputFull;
        }
        used_ += cost;
        sent_.emplace_back(time - start_, copyOf(bytes));
        return noErr;
    }

    std::shared_ptr<MIDIQuilloAUAudioUnit> unit_ = makeUnit();
    AUInternalRenderBlock render_ = unit_->internalRenderBlock();
    AUHostTransportStateFlags flags_ = 0;
    double position_ = 0.0;
    SampleTime start_ = 0;
    std::optional<RoomLimit> room_;
    std::size_t used_ = 0;
    Sent sent_;
    Counts counts_;
    CallCounts calls_;
};

}  // namespace

FormatLimits limitsOf(Format format) {
    const std::vector anyRate{8000.0, 22050.0, 44100.0, 44100.7, 48000.0, 96000.0, 192000.0, 768000.0};
    switch (format) {
    case Format::renderer:
        return {.setsRate = true, .records = true, .cycles = true, .limitsRoom = true, .rates = anyRate};
    case Format::unit:
        return {.panics = false,
                .reportsInBlocks = false,
                .reportsForBlocks = true,
                .records = true,
                .cycles = true,
                .limitsRoom = true,
                .takesGarbage = false,
                .hasEditor = false,
                .rates = anyRate};
    case Format::lv2: return {.changesSpeed = true, .limitsRoom = true, .rates = anyRate};
    case Format::clap:
        return {.sendsByHand = false,
                .panics = false,
                .reportsForBlocks = true,
                .resets = true,
                .records = true,
                .cycles = true,
                .limitsRoom = true,
                .takesGarbage = false,
                .hasEditor = false,
                .rates = {48000.0}};
    default:
        return {.setsRate = true,
                .reportsInBlocks = false,
                .reportsForBlocks = true,
                .resets = true,
                .startsSlowly = true,
                .limitsRoom = true,
                .rates = anyRate};
    }
}

bool isBuilt(Format format) {
    std::vector formats{Format::renderer, Format::unit};
#ifdef QUILLO_SIMULATES_LV2
    formats.push_back(Format::lv2);
#endif
#ifdef QUILLO_SIMULATES_CLAP
    formats.push_back(Format::clap);
#endif
#ifdef QUILLO_SIMULATES_JACK
    formats.push_back(Format::jack);
#endif
    return std::ranges::find(formats, format) != formats.end();
}

std::unique_ptr<Player> makePlayer(const Scenario& scenario, double rate) {
    switch (scenario.format) {
    case Format::renderer: return std::make_unique<RendererPlayer>(rate);
    case Format::unit: return std::make_unique<UnitPlayer>(rate);
#ifdef QUILLO_SIMULATES_LV2
    case Format::lv2: return makeLV2Player(rate);
#endif
#ifdef QUILLO_SIMULATES_CLAP
    case Format::clap: return makeCLAPPlayer(scenario.stopsAsleep);
#endif
#ifdef QUILLO_SIMULATES_JACK
    case Format::jack: return makeJackPlayer(rate);
#endif
    default: return nullptr;
    }
}

}  // namespace quillo::test
