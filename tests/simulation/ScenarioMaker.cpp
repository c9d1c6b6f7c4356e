// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulation/ScenarioMaker.hpp"

#include <algorithm>
#include <array>
#include <random>

#include "midi/MessageLength.hpp"
#include "simulation/Player.hpp"
#include "support/RandomRules.hpp"

namespace quillo::test {

namespace {

/// How long the blocks of a host are.
enum class Lengths : std::uint8_t { one, fixed, random, extreme };

class Maker {
public:
    explicit Maker(std::uint64_t seed) : random_(seed), rules_(static_cast<unsigned>(random_())) {}

    Scenario make() {
        scenario_.format =
            oneOf(std::array{Format::renderer, Format::unit, Format::lv2, Format::clap, Format::jack});
        limits_ = limitsOf(scenario_.format);
        scenario_.rate = oneOf(limits_.rates);
        scenario_.stopsAsleep = scenario_.format == Format::clap && chance(2);
        lengths_ = static_cast<Lengths>(below(4));
        fixedLength_ = 1U << below(14);
        density_ = 1 + below(12);
        isTight_ = chance(3);
        add(EditStep{rules()});
        for (auto left = 4 + below(40); left > 0; --left) {
            addStep();
        }
        return std::move(scenario_);
    }

private:
    std::uint32_t below(std::uint64_t limit) { return static_cast<std::uint32_t>(random_() % limit); }
    bool chance(std::uint32_t oneIn) { return below(oneIn) == 0; }

    template <class Values>
    Values::value_type oneOf(const Values& values) {
        return values[below(values.size())];
    }

    void add(Step step) { scenario_.steps.push_back(std::move(step)); }

    void addStep() {
        switch (below(limits_.hasEditor ? 31 : 25)) {
        case 0: add(EditStep{rules()}); break;
        case 1: addSend(); break;
        case 2: addRate(); break;
        case 3: add(SaveStep{}); break;
        case 4: addRestored(); break;
        case 5: addMove(); break;
        case 6: addRestart(); break;
        case 7: addFlood(); break;
        case 8:
        case 9: addSilence(); break;
        case 10: addPanic(); break;
        case 25:
        case 26: add(UserStep{UserStep::Action::open}); break;
        case 27:
        case 28:
        case 29:
        case 30: addUser(); break;
        default: addBlock(); break;
        }
    }

    /// Rarely does a user close the editor.
    void addUser() {
        const auto action = static_cast<UserStep::Action>(2 + below(7));
        add(UserStep{chance(8) ? UserStep::Action::close : action, below(1000)});
    }

    void addSend() {
        if (limits_.sendsByHand) {
            add(SendStep{oneOf(std::vector{noteOn(1, 60, 100), programChange(channel(2), 1, byte(3)),
                                           systemExclusive({1, 2, 3})})});
        }
    }

    void addPanic() {
        if (limits_.panics) {
            add(PanicStep{});
        }
    }

    void addRate() {
        if (limits_.setsRate) {
            add(RateStep{chance(4) ? oneOf(std::array{0.0, -48000.0, 0.5, 2e9}) : oneOf(limits_.rates)});
        }
    }

    void addRestored() {
        if (chance(3)) {
            add(DamagedStep{below(10000)});
        } else {
            add(RestoreStep{});
        }
    }

    void addMove() {
        add(MoveStep{});
        position_ = 0;
        moves_ = false;
    }

    void addRestart() {
        const RestartStep step{limits_.resets && chance(2), chance(2) ? 0 : below(20000)};
        add(step);
        pass(step.frames);
    }

    /// Notes without end, each with an output that waits.
    void addFlood() {
        if (!chance(6)) {
            return addBlock();
        }
        if (chance(2)) {
            return addFullBlock();
        }
        const auto echo = rule(
            onNoteOn(), send(protocol(StatusV2::noteOn, channel(2), triggerByte, byte(5)), 1 + below(2000)));
        add(EditStep{std::vector(1 + below(6), echo)});
        for (auto left = 2 + below(24); left > 0; --left) {
            addNotes(length());
        }
    }

    void addNotes(std::uint32_t frames) {
        add(BlockStep{frames, 1, {{0, Bytes{0x90, 1, 1}, 300}, {0, Bytes{0x90, 2, 1}, 200}}, std::nullopt});
    }

    /// As many outputs as can wait, each of two messages, and all are due in one block: more messages than
    /// are kept in one.
    void addFullBlock() {
        const auto change = programChange(channel(2), 1, triggerByte);
        add(EditStep{std::vector(6, rule(onNoteOn(), send(change, 1 + below(40))))});
        for (auto left = 2 + below(4); left > 0; --left) {
            addNotes(1);
        }
        add(BlockStep{8192, 1 + below(3), {}, std::nullopt});
    }

    /// Up to some hours.
    void addSilence() {
        const auto frames = chance(4) ? length() : 8192U;
        const auto most =
            scenario_.format == Format::renderer || scenario_.format == Format::unit ? 40000U : 2000U;
        add(BlockStep{frames, 1 + below(chance(4) ? most : 100), {}, std::nullopt});
        pass(frames * std::get<BlockStep>(scenario_.steps.back()).count);
    }

    void addBlock() {
        BlockStep step{length(), 1, {}, std::nullopt};
        auto left = chance(3) ? 0U : below(density_);
        if (limits_.reportsForBlocks && chance(4)) {
            auto first = report(0);
            first.isOfBlock = true;
            step.events.push_back({0, first, 1});
        }
        for (std::uint32_t offset = 0; left > 0; --left) {
            offset = nextOffset(offset, step.frames);
            step.events.push_back({offset, what(offset), 1});
        }
        step.room = room();
        pass(step.frames);
        add(std::move(step));
    }

    std::optional<RoomLimit> room() {
        if (!limits_.limitsRoom || !chance(isTight_ ? 2 : 5)) {
            return std::nullopt;
        }
        return RoomLimit{below(160), !chance(isTight_ ? 2 : 4)};
    }

    std::uint32_t nextOffset(std::uint32_t offset, std::uint32_t frames) {
        const bool strict = scenario_.format == Format::unit || scenario_.format == Format::clap;
        if (!strict && chance(20)) {
            return below(2 * std::uint64_t{frames} + 2);
        }
        const auto room = frames > offset ? frames - offset : 1U;
        return chance(3) ? offset : offset + below(room);
    }

    std::variant<Bytes, TransportReport> what(std::uint32_t offset) {
        if (limits_.reportsInBlocks && chance(4)) {
            return report(offset);
        }
        return message();
    }

    TransportReport report(std::uint32_t offset) {
        const auto expected = position_ + framesIn(offset);
        if (chance(2)) {
            moves_ = !moves_;
        }
        speed_ = limits_.changesSpeed && chance(3) ? oneOf(std::array{-1.0, 0.5, 2.0}) : 1.0;
        TransportReport report{.moves = moves_,
                               .records = limits_.records && chance(4),
                               .position = std::nullopt,
                               .cycles = limits_.cycles && chance(4),
                               .speed = speed_,
                               .starts = limits_.startsSlowly && !moves_ && chance(2)};
        switch (below(limits_.reportsInBlocks ? 4 : 3)) {
        case 0: report.position = expected; break;
        case 1: report.position = 0; break;
        case 2: report.position = 5000 * std::int64_t{below(1000)}; break;
        default: break;
        }
        if (limits_.reportsInBlocks && report.position && chance(8)) {
            report.position = -1000 * std::int64_t{below(100)};
        }
        position_ = report.position.value_or(expected) - framesIn(offset);
        return report;
    }

    /// How far the position goes on in so many.
    [[nodiscard]] std::int64_t framesIn(std::uint32_t frames) const {
        return moves_ ? static_cast<std::int64_t>(frames * speed_) : 0;
    }
    void pass(std::uint32_t frames) { position_ += framesIn(frames); }

    Bytes message() {
        if (scenario_.format != Format::unit && chance(12)) {
            return pieceOfSystemExclusive();
        }
        const auto trigger = rules_.message();
        Bytes bytes{trigger.status, trigger.data1, trigger.data2};
        if (limits_.takesGarbage && chance(10)) {
            bytes.resize(below(4));
            return bytes;
        }
        bytes.resize(messageLength(bytes[0]));
        std::for_each(bytes.begin() + 1, bytes.end(), [](auto& byte) { byte &= 0x7F; });
        return bytes;
    }

    /// Whole, or a part of a message whose others come sooner, later or never; perhaps with real-time bytes
    /// in it.
    Bytes pieceOfSystemExclusive() {
        auto piece = oneOf(std::vector<Bytes>{
            {0xF0, 1, 2, 0xF7}, {0xF0, 1, 2}, {0xF0}, {1, 2}, {2, 0xF7}, {0xF7}, {1, 0xF0}, {0xF0, 1, 0x90}});
        if (piece.size() < 3 && chance(3)) {
            piece.push_back(oneOf(std::array<std::uint8_t, 3>{0xF8, 0xFA, 0xFC}));
        }
        return piece;
    }

    std::vector<Rule> rules() {
        auto list = rules_.list();
        for (auto& rule : list) {
            if (rule.output.delay.ms > 0) {
                rule.output.delay.ms *= oneOf(std::array{0, 1, 1, 1, 7, 1800});
            }
            if (isTight_ && chance(3)) {
                rule.output.message = systemExclusive({4});
            }
        }
        return list;
    }

    std::uint32_t length() {
        switch (lengths_) {
        case Lengths::one: return 1 + below(4);
        case Lengths::fixed: return fixedLength_;
        case Lengths::random: return 1 + below(4096);
        default: return oneOf(std::array{0U, 1U, 8192U, 64U});
        }
    }

    std::mt19937_64 random_;
    RandomRules rules_;
    Scenario scenario_;
    FormatLimits limits_;
    Lengths lengths_ = Lengths::fixed;
    std::uint32_t fixedLength_ = 64;
    std::uint32_t density_ = 1;
    bool isTight_ = false;  ///< the host is often short of room, and much of what is sent is system exclusive
    bool moves_ = false;
    double speed_ = 1.0;
    std::int64_t position_ = 0;
};

}  // namespace

Scenario makeScenario(std::uint64_t seed) {
    return Maker(seed).make();
}

}  // namespace quillo::test
