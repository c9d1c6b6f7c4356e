// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <utility>
#include <vector>

#include "simulation/Scenario.hpp"
#include "support/ReferenceEngine.hpp"

namespace quillo::test {

/// What is counted on both sides.
struct Counts {
    std::size_t waiting = 0;              ///< delayed outputs
    std::optional<std::int64_t> nextDue;  ///< of the first of them
    std::size_t byHand = 0;               ///< messages sent by hand that wait
    std::uint64_t refused = 0;
    std::uint64_t leftOut = 0;
    std::uint64_t heard = 0;  ///< events that the rules saw
    std::uint64_t told = 0;   ///< messages that left

    bool operator==(const Counts&) const = default;
};

/// What leaves in one block, with its frame in the block.
using Sent = std::vector<std::pair<std::int64_t, Bytes>>;

/// The meaning of everything written down as plainly as possible: a list that is walked rule by rule, and a
/// sorted map of what waits. It shares the stored rules with the engine, and nothing else.
class SlowModel {
public:
    SlowModel(const Scenario& scenario, double rate)
        : format_(scenario.format),
          stopsAsleep_(scenario.stopsAsleep),
          rate_(static_cast<std::uint64_t>(rate)),
          tolerance_(format_ == Format::clap  ? 96
                     : format_ == Format::lv2 ? 1
                                              : 0) {
        transport_.isKnown = format_ != Format::lv2 && format_ != Format::clap;
    }

    void edit(std::vector<Rule> rules) { rules_ = std::move(rules); }
    [[nodiscard]] const std::vector<Rule>& rules() const { return rules_; }
    void send(const RuleOutputVariantsV2& message);
    void setRate(double rate) { rate_ = static_cast<std::uint64_t>(rate); }
    /// Frames have passed in between. A server's clock goes on, and its transport with it; the unit does not
    /// ask for jumps. What sounds ends, but on a server, which hears of no restart. A plug-in that slept
    /// before may have missed changes.
    void restart(std::uint32_t frames) {
        transport_.isKnown = format_ == Format::jack;
        if (format_ == Format::jack) {
            transport_.position += transport_.rolls ? frames : 0.0;
            passOnServer(frames, transport_.onTime);
        }
        transport_.isForgotten = transport_.isForgotten || sleeps_;
        endsNotes_ = endsNotes_ || (format_ != Format::jack && format_ != Format::unit);
    }
    void panic() { panics_ = true; }

    /// What leaves in this block.
    Sent block(std::uint32_t frames, const std::vector<Incoming>& events, std::optional<RoomLimit> room);

    [[nodiscard]] Counts counts() const;

    /// Whether a CLAP that has played the last block may sleep.
    [[nodiscard]] bool maySleep() const { return sleeps_; }

    /// The newest of what the rules heard and of what they sent, with its time. A transport change is its
    /// number.
    static constexpr std::size_t logLength = 100;
    using Log = std::deque<std::pair<std::int64_t, Bytes>>;
    [[nodiscard]] const Log& heard() const { return heardLog_; }
    [[nodiscard]] const Log& told() const { return toldLog_; }
    /// An editor is opened for the first time: what was before is not in its logs.
    void clearLogs() {
        heardLog_.clear();
        toldLog_.clear();
    }

    /// Every message that a rule sent is where it must be: gone out, waiting, pushed out by others, refused.
    [[nodiscard]] bool addsUp() const;

    /// Whether a note sounds that the last block was to end and had the room to, and that nobody has struck
    /// since.
    [[nodiscard]] bool hasLeftNotesSounding() const { return leftSounding_; }

private:
    using Messages = std::vector<Bytes>;

    /// The transport as the host reports it.
    struct Transport {
        bool moves = false;
        bool records = false;
        bool cycles = false;
        double position = 0.0;
        double pace = 1.0;  ///< of the position, in each frame while it moves
        // Of a server.
        bool rolls = false;
        double frame = 0.0;
        double onTime = 0.0;  ///< where it is if it has gone on with the clock since the last block
        bool isKnown = true;
        bool isForgotten = false;  ///< what was before the next report
        // While a report has not been judged: what was before the first one.
        bool isReported = false;
        bool moved = false;
        bool recorded = false;
        bool cycled = false;
        double expected = 0.0;
        bool wasKnown = true;
        bool jumped = false;

        void pass(std::int64_t frames) {
            const auto passed = moves ? static_cast<double>(frames) * pace : 0.0;
            position += passed;
            expected += passed;
        }
    };

    /// What receivers make of what has left: notes that sound, as channel and key, pedals that are down, as
    /// channel and controller, and the channels that were used.
    struct Receivers {
        std::set<std::pair<unsigned, std::uint8_t>> notes;
        std::set<std::pair<unsigned, std::uint8_t>> pedals;
        std::set<unsigned> channels;

        void hear(const Bytes& bytes);
    };

    static void note(Log& log, std::int64_t time, const Bytes& bytes);

    void begin();
    void passOnServer(std::uint32_t frames, double before);
    void oweWhatWasAskedFor();
    void sendOwed();
    void settle(const Bytes& bytes);
    [[nodiscard]] bool hasRoomFor(const Bytes& bytes) const;
    void come(const Incoming& event);
    void goTo(std::uint32_t offset);
    void report(const TransportReport& report);
    void ask(const std::vector<Incoming>& events);
    void judgeTransport();
    void fireTransport();
    void hear(std::uint32_t offset, const Bytes& bytes);
    bool fireAll(const ChainOutcome& outcome, const Bytes& bytes);
    bool schedule(const Rule& rule, const Bytes& trigger);
    void keep(std::int64_t due, Messages messages);
    bool leave(std::int64_t time, const Messages& messages);
    bool leaveOne(std::int64_t time, const Bytes& bytes);
    [[nodiscard]] bool leavesLater(std::int64_t offset) const;

    // A CLAP host's list.
    [[nodiscard]] bool hostTakes(const Bytes& bytes);
    void offerAgain();
    void offer();
    [[nodiscard]] bool hasNothingToDo() const;

    Format format_;
    bool stopsAsleep_;
    std::uint64_t rate_;
    double tolerance_;  ///< within which a position is no jump, in frames
    std::vector<Rule> rules_;
    std::multimap<std::int64_t, Messages> waiting_;
    Messages byHand_;
    bool loaded_ = false;
    Transport transport_;
    std::array<bool, 3> asked_{};  ///< what the unit was answered last
    std::int64_t start_ = 0;       ///< of the block

    Receivers receivers_;
    bool endsNotes_ = false;  ///< in the next block
    bool panics_ = false;     ///< the same
    std::set<std::pair<unsigned, std::uint8_t>> owedNotes_;
    std::set<std::pair<unsigned, std::size_t>> owedControllers_;  ///< by their places in the order of sending
    bool leftSounding_ = false;

    // Of the block.
    std::int64_t frames_ = 0;
    std::int64_t offset_ = 0;
    bool failed_ = false;
    std::optional<RoomLimit> room_;
    std::size_t used_ = 0;
    std::multiset<std::int64_t> later_;  ///< the frames of what leaves later in the block
    std::size_t kept_ = 0;               ///< for later, since nothing was
    Sent sent_;

    // Of a CLAP host.
    std::optional<RoomLimit> hostRoom_;
    std::size_t hostTook_ = 0;  ///< in this block
    std::deque<Bytes> owed_;    ///< what it had no room for
    bool isHeldUp_ = false;     ///< since an earlier block
    Sent taken_;
    bool sleeps_ = false;  ///< the plug-in, in such a host, since the last block

    // Messages, in all.
    std::uint64_t born_ = 0;  ///< fired by rules, forwarded or sent by hand
    std::uint64_t pushedOut_ = 0;
    std::uint64_t cancelled_ = 0;
    std::uint64_t cutOff_ = 0;  ///< behind one that was refused
    std::uint64_t refused_ = 0;
    std::uint64_t leftOut_ = 0;
    std::uint64_t heard_ = 0;
    std::uint64_t told_ = 0;

    Log heardLog_;
    Log toldLog_;
};

}  // namespace quillo::test
