// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulation/SlowModel.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "platform/InStableOrder.hpp"

namespace quillo::test {

namespace {

using Trigger = HostTransportTriggerVariantsV2;

constexpr std::size_t mostWaiting = 10000;
constexpr std::size_t mostInABlock = 16384;

/// What silences a channel, in the order of sending.
constexpr std::array<std::uint8_t, 5> silencing{64, 66, 67, 123, 120};

std::uint8_t byteAt(const Bytes& bytes, std::size_t index) {
    return index < bytes.size() ? bytes[index] : std::uint8_t{0};
}

std::uint8_t valueOf(const GenericByteV2& byte, const Bytes& trigger, std::size_t index) {
    const auto* value = byte.getIf<GenericByteV2::Value>();
    return value != nullptr ? value->value : byteAt(trigger, index);
}

std::uint8_t onChannel(unsigned status, const RuleOutputChannelV2& channel, const Bytes& trigger) {
    const auto* value = channel.getIf<RuleOutputChannelV2::Value>();
    return static_cast<std::uint8_t>(status | (value != nullptr ? value->value : byteAt(trigger, 0) & 0x0FU));
}

std::uint8_t statusOf(const StatusByteV2& status, const Bytes& trigger) {
    constexpr std::array<std::uint8_t, 6> nibbles{0x90, 0x80, 0xB0, 0xC0, 0xD0, 0xE0};
    if (const auto* plain = status.getIf<StatusByteV2::JustStatus>()) {
        return nibbles[static_cast<std::size_t>(plain->status)];
    }
    const auto& with = *status.getIf<StatusByteV2::WithChannel>();
    return onChannel(nibbles[static_cast<std::size_t>(with.status)], with.channel, trigger);
}

/// What an output sends when this message triggers it.
std::vector<Bytes> messagesOf(const RuleOutputVariantsV2& output, const Bytes& trigger) {
    using Output = RuleOutputVariantsV2;
    if (const auto* protocol = output.getIf<Output::Protocol>()) {
        Bytes bytes{statusOf(protocol->status, trigger), valueOf(protocol->byte1, trigger, 1)};
        if (protocol->byte2) {
            bytes.push_back(valueOf(*protocol->byte2, trigger, 2));
        }
        return {bytes};
    }
    if (const auto* change = output.getIf<Output::ProgramChange>()) {
        return {{onChannel(0xB0, change->channel, trigger), 0, change->bank},
                {onChannel(0xC0, change->channel, trigger), valueOf(change->program, trigger, 1)}};
    }
    Bytes framed = output.getIf<Output::SystemExclusive>()->body;
    framed.insert(framed.begin(), 0xF0);
    framed.push_back(0xF7);
    return {framed};
}

bool isSystemExclusive(const Bytes& bytes) {
    return bytes[0] == 0xF0;
}

/// What of an event is put before the rules. A JACK server hands over whole messages but for system
/// exclusive, which comes in pieces with real-time messages among its bytes.
std::vector<Bytes> heardIn(const Bytes& event, Format format) {
    if (format != Format::jack) {
        return {event};
    }
    std::vector<Bytes> heard;
    for (std::size_t i = 0; i < event.size(); ++i) {
        if (event[i] >= 0xF8) {
            heard.push_back({event[i]});
        } else if (event[i] >= 0x80 && event[i] != 0xF0 && event[i] != 0xF7) {
            heard.emplace_back(event.begin() + static_cast<std::ptrdiff_t>(i), event.end());
            break;
        }
    }
    return heard;
}

/// Whether it is one whole message, and not system exclusive.
bool isMessage(const Bytes& bytes) {
    if (bytes.empty() || bytes[0] < 0x80 || bytes[0] == 0xF0) {
        return false;
    }
    constexpr std::array<std::size_t, 8> voice{3, 3, 3, 3, 2, 2, 3, 0};
    constexpr std::array<std::size_t, 16> system{0, 2, 3, 2, 0, 0, 1, 0, 1, 0, 1, 1, 1, 0, 1, 1};
    const auto length = bytes[0] < 0xF0 ? voice[(bytes[0] >> 4U) - 8U] : system[bytes[0] & 0x0FU];
    return bytes.size() == length &&
           std::all_of(bytes.begin() + 1, bytes.end(), [](auto byte) { return byte < 0x80; });
}

}  // namespace

void SlowModel::send(const RuleOutputVariantsV2& message) {
    for (auto& bytes : messagesOf(message, {})) {
        byHand_.push_back(std::move(bytes));
        ++born_;
    }
}

Sent SlowModel::block(std::uint32_t frames, const std::vector<Incoming>& events,
                      std::optional<RoomLimit> room) {
    frames_ = frames;
    room_ = format_ == Format::clap ? std::nullopt : room;
    hostRoom_ = room;
    offerAgain();
    begin();
    if (format_ == Format::unit) {
        ask(events);
    }
    for (const auto& event : events) {
        come(event);
    }
    if (format_ != Format::unit) {
        judgeTransport();
        transport_.pass(frames_ - offset_);
        passOnServer(frames, transport_.frame);
        sent_ = inStableOrder(std::move(sent_), &Sent::value_type::first);
    }
    start_ += frames_;
    for (const auto& [offset, bytes] : sent_) {
        receivers_.hear(bytes);
    }
    if (format_ == Format::clap) {
        offer();
        sleeps_ = hasNothingToDo();
        if (sleeps_ && stopsAsleep_) {
            transport_.isKnown = false;
            transport_.isForgotten = true;
        }
        return std::move(taken_);
    }
    return std::move(sent_);
}

bool SlowModel::hostTakes(const Bytes& bytes) {
    const bool takes = !hostRoom_ || (hostTook_ < hostRoom_->messages() &&
                                      (hostRoom_->takesSystemExclusive || !isSystemExclusive(bytes)));
    hostTook_ += takes ? 1 : 0;
    return takes;
}

/// What waits comes first. System exclusive that is refused first of all is lost when the host takes
/// something behind it, or when nothing but system exclusive waits.
void SlowModel::offerAgain() {
    hostTook_ = 0;
    taken_.clear();
    const auto before = owed_.size();
    const auto takeAll = [this] {
        while (!owed_.empty() && hostTakes(owed_.front())) {
            taken_.emplace_back(0, owed_.front());
            owed_.pop_front();
        }
    };
    takeAll();
    if (owed_.size() == before) {
        std::size_t exclusive = 0;
        while (exclusive < owed_.size() && isSystemExclusive(owed_[exclusive])) {
            ++exclusive;
            const bool isLast = exclusive == owed_.size();
            if (isLast || hostTakes(owed_[exclusive])) {
                owed_.erase(owed_.begin(), owed_.begin() + static_cast<std::ptrdiff_t>(exclusive));
                if (!isLast) {
                    taken_.emplace_back(0, owed_.front());
                    owed_.pop_front();
                }
                takeAll();
                break;
            }
        }
    }
    isHeldUp_ = !owed_.empty();
}

/// What was sent in this block; what the host has no room for waits, and everything behind it.
void SlowModel::offer() {
    for (auto& message : sent_) {
        if (owed_.empty() && hostTakes(message.second)) {
            taken_.push_back(std::move(message));
        } else {
            owed_.push_back(std::move(message.second));
        }
    }
}

/// Nothing is left to be sent, nothing sounds, and no rule waits for the transport. A rule behind one that
/// consumes what does not match never hears of a change.
bool SlowModel::hasNothingToDo() const {
    const bool hearsTransport =
        std::ranges::any_of(std::array{Trigger::Start, Trigger::Continue, Trigger::Stop},
                            [&](Trigger change) { return !runReference(rules_, change).fired.empty(); });
    return !hearsTransport && owed_.empty() && waiting_.empty() && owedNotes_.empty() &&
           owedControllers_.empty() && receivers_.notes.empty() && receivers_.pedals.empty();
}

void SlowModel::note(Log& log, std::int64_t time, const Bytes& bytes) {
    log.emplace_back(time, bytes);
    if (log.size() > logLength) {
        log.pop_front();
    }
}

/// What leaves by itself.
void SlowModel::begin() {
    sent_.clear();
    later_.clear();
    offset_ = 0;
    kept_ = 0;
    used_ = 0;
    failed_ = false;
    oweWhatWasAskedFor();
    sendOwed();
    if (!std::exchange(loaded_, true)) {
        for (const auto& rule : rules_) {
            failed_ = failed_ || (rule.trigger.is<RuleTriggerV2::OnLoad>() && !schedule(rule, {}));
        }
    }
    if (!failed_) {
        failed_ = !leave(start_, std::exchange(byHand_, {}));
    }
    const auto end = start_ + (format_ == Format::unit ? frames_ : std::max<std::int64_t>(frames_, 1));
    while (!failed_ && !waiting_.empty() && waiting_.begin()->first < end) {
        const auto [time, messages] = *waiting_.begin();
        waiting_.erase(waiting_.begin());
        failed_ = !leave(time, messages);
    }
}

void SlowModel::oweWhatWasAskedFor() {
    const bool panics = std::exchange(panics_, false);
    if (!std::exchange(endsNotes_, false) && !panics) {
        return;
    }
    owedNotes_.insert(receivers_.notes.begin(), receivers_.notes.end());
    for (const auto& [channel, controller] : receivers_.pedals) {
        const auto place = std::ranges::find(silencing, controller) - silencing.begin();
        owedControllers_.emplace(channel, static_cast<std::size_t>(place));
    }
    if (!panics) {
        return;
    }
    for (const auto channel : receivers_.channels) {
        for (std::size_t place = 0; place < silencing.size(); ++place) {
            owedControllers_.emplace(channel, place);
        }
    }
    for (const auto& [time, messages] : waiting_) {
        cancelled_ += messages.size();
    }
    waiting_.clear();
    cancelled_ += std::exchange(byHand_, {}).size();
}

/// What finds no room stays owed. It is never refused.
void SlowModel::sendOwed() {
    const bool owesAny = !owedNotes_.empty() || !owedControllers_.empty();
    auto receivers = receivers_;
    const auto trySend = [&](const Bytes& bytes) {
        if (!hasRoomFor(bytes)) {
            return false;
        }
        ++born_;
        leaveOne(start_, bytes);
        receivers.hear(bytes);
        return true;
    };
    bool goesOn = true;
    while (goesOn && !owedNotes_.empty()) {
        const auto [channel, key] = *owedNotes_.begin();
        goesOn = trySend({static_cast<std::uint8_t>(0x80 + channel), key, 64});
    }
    while (goesOn && !owedControllers_.empty()) {
        const auto [channel, place] = *owedControllers_.begin();
        goesOn = trySend({static_cast<std::uint8_t>(0xB0 + channel), silencing[place], 0});
    }
    leftSounding_ = owesAny && goesOn && !(receivers.notes.empty() && receivers.pedals.empty());
}

bool SlowModel::hasRoomFor(const Bytes& bytes) const {
    return !isHeldUp_ && (!room_ || used_ + costOf(bytes.size()) <= room_->bytes);
}

/// What has left is owed no more. A note that is struck anew is ended by its own end.
void SlowModel::settle(const Bytes& bytes) {
    if (bytes.size() < 3 || bytes[0] >= 0xF0) {
        return;
    }
    const auto channel = bytes[0] & 0x0FU;
    if (bytes[0] < 0xA0) {
        owedNotes_.erase({channel, bytes[1]});
    } else if ((bytes[0] & 0xF0U) == 0xB0 && bytes[2] == 0) {
        const auto place = std::ranges::find(silencing, bytes[1]) - silencing.begin();
        owedControllers_.erase({channel, static_cast<std::size_t>(place)});
    }
}

void SlowModel::Receivers::hear(const Bytes& bytes) {
    if (bytes.empty() || bytes[0] < 0x80 || bytes[0] >= 0xF0) {
        return;
    }
    const auto channel = bytes[0] & 0x0FU;
    channels.insert(channel);
    if (bytes.size() < 3) {
        return;
    }
    const std::pair key(channel, bytes[1]);
    const bool isPedal = bytes[1] == 64 || bytes[1] == 66 || bytes[1] == 67;
    const auto change = [&](auto& set, bool isIn) { isIn ? void(set.insert(key)) : void(set.erase(key)); };
    if (bytes[0] < 0xA0 && bytes[1] < 0x80) {
        change(notes, bytes[0] >= 0x90 && bytes[2] != 0);
    } else if ((bytes[0] & 0xF0U) == 0xB0 && isPedal) {
        change(pedals, bytes[2] >= 64);
    }
}

void SlowModel::come(const Incoming& event) {
    for (auto left = event.times; left > 0; --left) {
        if (const auto* bytes = std::get_if<Bytes>(&event.what)) {
            for (const auto& message : heardIn(*bytes, format_)) {
                hear(event.offset, message);
            }
        } else if (format_ != Format::unit) {
            goTo(event.offset);
            report(std::get<TransportReport>(event.what));
        }
    }
}

void SlowModel::goTo(std::uint32_t offset) {
    if (format_ == Format::unit) {
        offset_ = offset;
        return;
    }
    const auto reached = std::min<std::int64_t>(offset, std::max<std::int64_t>(frames_, 1) - 1);
    if (reached <= offset_) {
        return;
    }
    judgeTransport();
    transport_.pass(reached - offset_);
    offset_ = reached;
    later_.erase(later_.begin(), later_.upper_bound(reached));
    kept_ = later_.empty() ? 0 : kept_;
}

void SlowModel::passOnServer(std::uint32_t frames, double before) {
    transport_.onTime = before + frames;
    transport_.frame += transport_.rolls ? frames : 0.0;
}

/// A server that is about to start while it moves is not heard.
void SlowModel::report(const TransportReport& report) {
    auto& now = transport_;
    now.rolls = report.moves;
    now.frame = static_cast<double>(report.position.value_or(0));
    if (report.starts && now.moves) {
        return;
    }
    if (!now.isReported) {
        now.moved = now.moves;
        now.recorded = now.records;
        now.cycled = now.cycles;
        now.expected = now.position;
        now.wasKnown = now.isKnown;
        now.jumped = false;
        now.isReported = true;
    }
    now.moves = report.moves;
    now.records = report.records;
    now.cycles = report.cycles;
    if (report.position) {
        const auto position = static_cast<double>(*report.position);
        if (now.wasKnown && (format_ != Format::jack || position != now.onTime)) {
            now.jumped = std::fabs(position - now.expected) > tolerance_;
        }
        now.position = position;
        now.isKnown = true;
        now.pace = now.moves ? report.speed : 1.0;
    } else if (now.moves && report.speed != now.pace) {
        now.isKnown = now.wasKnown = false;
    }
}

/// The unit asks for the transport at the start of a block.
void SlowModel::ask(const std::vector<Incoming>& events) {
    for (const auto& event : events) {
        if (const auto* told = std::get_if<TransportReport>(&event.what)) {
            transport_.moves = told->moves;
            transport_.records = told->records;
            transport_.cycles = told->cycles;
            transport_.position = static_cast<double>(told->position.value());
        }
    }
    if (failed_) {
        return;
    }
    const std::array now{transport_.moves, transport_.records, transport_.cycles};
    if (std::exchange(asked_, now) != now) {
        fireTransport();
    }
}

void SlowModel::judgeTransport() {
    auto& now = transport_;
    if (failed_ || !std::exchange(now.isReported, false)) {
        return;
    }
    if (std::exchange(now.isForgotten, false)) {
        return;
    }
    if (now.moves != now.moved || now.records != now.recorded || now.cycles != now.cycled ||
        (now.jumped && now.moves)) {
        fireTransport();
    }
}

void SlowModel::fireTransport() {
    const auto rolling = transport_.position > 0 ? Trigger::Continue : Trigger::Start;
    const auto change = transport_.moves ? rolling : Trigger::Stop;
    ++heard_;
    note(heardLog_, start_ + offset_, {static_cast<std::uint8_t>(change)});
    failed_ = !fireAll(runReference(rules_, change), {});
}

void SlowModel::hear(std::uint32_t offset, const Bytes& bytes) {
    if (!isMessage(bytes)) {
        return;
    }
    goTo(offset);
    judgeTransport();
    if (failed_) {
        return;
    }
    ++heard_;
    note(heardLog_, start_ + offset_, bytes);
    const auto outcome = runReference(rules_, TriggerBytes{bytes[0], byteAt(bytes, 1), byteAt(bytes, 2)});
    failed_ = !fireAll(outcome, bytes);
    if (!failed_ && !outcome.consumer) {
        ++born_;
        failed_ = !leave(start_ + offset_, {bytes});
    }
}

bool SlowModel::fireAll(const ChainOutcome& outcome, const Bytes& bytes) {
    return std::ranges::all_of(outcome.fired, [&](auto index) { return schedule(rules_[index], bytes); });
}

bool SlowModel::schedule(const Rule& rule, const Bytes& trigger) {
    const auto delay = static_cast<std::uint64_t>(rule.output.delay.ms) * rate_ / 1000;
    const auto due = start_ + offset_ + static_cast<std::int64_t>(delay);
    const auto end = start_ + (format_ == Format::unit ? frames_ : std::max<std::int64_t>(frames_, 1));
    auto messages = messagesOf(rule.output.message, trigger);
    born_ += messages.size();
    if (due < end) {
        return leave(due, messages);
    }
    keep(due, std::move(messages));
    return true;
}

/// Where there is no room, what is due first makes some.
void SlowModel::keep(std::int64_t due, Messages messages) {
    if (waiting_.size() == mostWaiting) {
        pushedOut_ += waiting_.begin()->second.size();
        waiting_.erase(waiting_.begin());
    }
    waiting_.emplace(due, std::move(messages));
}

bool SlowModel::leave(std::int64_t time, const Messages& messages) {
    for (std::size_t i = 0; i < messages.size(); ++i) {
        if (!leaveOne(time, messages[i])) {
            cutOff_ += messages.size() - i - 1;
            return false;
        }
    }
    return true;
}

bool SlowModel::leaveOne(std::int64_t time, const Bytes& bytes) {
    const auto last = std::max<std::int64_t>(frames_, 1) - 1;
    const auto offset =
        format_ == Format::unit ? time - start_ : std::clamp<std::int64_t>(time - start_, 0, last);
    const auto cost = costOf(bytes.size());
    if (isHeldUp_) {
        ++refused_;
        return false;
    }
    const bool isKept = !leavesLater(offset) || kept_ < mostInABlock;
    if (isKept && (!room_ || used_ + cost <= room_->bytes)) {
        used_ += cost;
        ++told_;
        settle(bytes);
        note(toldLog_, time, bytes);
        sent_.emplace_back(offset, bytes);
        if (leavesLater(offset)) {
            ++kept_;
            later_.insert(offset);
        }
        return true;
    }
    const bool isTooLong = isKept && cost > room_->bytes;
    const bool isLeftOut = format_ != Format::unit && isTooLong && isSystemExclusive(bytes);
    ++(isLeftOut ? leftOut_ : refused_);
    return isLeftOut;
}

/// Whether it waits for its frame in the block. What is due leaves at once.
bool SlowModel::leavesLater(std::int64_t offset) const {
    return format_ != Format::unit && offset > offset_;
}

Counts SlowModel::counts() const {
    const auto next = waiting_.empty() ? std::nullopt : std::optional(waiting_.begin()->first);
    return {waiting_.size(), next, byHand_.size(), refused_, leftOut_, heard_, told_};
}

bool SlowModel::addsUp() const {
    std::uint64_t there = byHand_.size() + told_ + refused_ + leftOut_ + pushedOut_ + cutOff_ + cancelled_;
    for (const auto& [time, messages] : waiting_) {
        there += messages.size();
    }
    return there == born_;
}

}  // namespace quillo::test
