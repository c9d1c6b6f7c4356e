// SPDX-License-Identifier: GPL-3.0-or-later
#include "otherformats/Mapping.hpp"

#include <algorithm>
#include <functional>
#include <numeric>
#include <optional>
#include <ranges>
#include <span>
#include <string_view>
#include <utility>

#include "analysis/EventBox.hpp"
#include "midi/MessageLength.hpp"
#include "midi/Status.hpp"
#include "platform/AtomicFile.hpp"
#include "platform/InStableOrder.hpp"
#include "platform/QuotedText.hpp"

namespace quillo {

namespace {

using Voice = VoiceCategoryTriggerVariantsV2;
using Message = MessageBasedTriggerVariantsV2;
using Output = RuleOutputVariantsV2;
using Policy = PassThroughV2;

constexpr std::size_t mostRulesOfALine = 2048;
/// Bytes: half of what is read of a preset, for the last rule may be there twice.
constexpr std::size_t roomOfAPreset = usualSizeLimit / 2;
/// Bytes of a rule in a preset, rather more than fewer, but for its name and what it sends.
constexpr std::size_t bytesOfARule = 420;

/// Messages that no rule waits for, by their status bytes.
struct Others {
    unsigned first;
    unsigned last;
    std::string_view words;
};
constexpr std::array others{Others{0xA0, 0xAF, "key pressure"}, Others{0xD0, 0xDF, "channel pressure"},
                            Others{0xE0, 0xEF, "pitch bend"}, Others{0xF0, 0xF9, "system messages"},
                            Others{0xFD, 0xFF, "system messages"}};

/// One place of an incoming message: the values that a rule waits for, or any.
struct Place {
    std::vector<std::uint8_t> values;
    bool isWhole = false;  ///< every value that a message can have
    bool isExact = false;  ///< a rule for each value
};

Place placeOf(const ByteFilter& filter, unsigned above, unsigned count) {
    Place place;
    for (unsigned value = 0; value < count; ++value) {
        if (filter.matches(above | value)) {
            place.values.push_back(static_cast<std::uint8_t>(value));
        }
    }
    place.isWhole = place.values.size() == count;
    place.isExact = !place.isWhole;
    return place;
}

/// What rules can wait for among the messages of one kind.
struct Waiting {
    std::uint8_t status;  ///< on channel value 0
    std::array<Place, 3> places;

    [[nodiscard]] bool isNote() const { return status <= midi::noteOn; }
};

Waiting waitingFor(const Mapping& mapping, std::uint8_t status) {
    Waiting waiting{status,
                    {placeOf(mapping.filter[0], status, 16), placeOf(mapping.filter[1], 0, 128),
                     placeOf(mapping.filter[2], 0, 128)}};
    waiting.places[1].isExact = waiting.places[1].isExact || status == midi::controlChange;
    return waiting;
}

/// Whether one rule can send this byte of a message with such a status: it is the same for every incoming
/// byte, or always that byte itself, which no rule of the editor copies into pitch or pressure.
bool isPlain(const ByteMaker& maker, std::size_t place, std::uint8_t status) {
    const unsigned bits = place == 0 ? midi::channelMask : 0x7F;
    const auto kind = status & midi::kindMask;
    const bool isFixed = (maker.mask & bits) == 0;
    const auto added = place == 0 ? maker.value & bits : maker.value;
    const bool isCopy = maker.from == place && (maker.mask & bits) == bits && added == 0;
    const bool isCopied = place == 0 || (kind != midi::pitchWheel && kind != midi::channelPressure);
    return isFixed || (isCopy && isCopied);
}

/// One value of each place, nothing where a rule waits for any.
using Values = std::array<std::optional<std::uint8_t>, 3>;

TriggerValueV2 compared(const std::optional<std::uint8_t>& value) {
    return value ? TriggerValueV2(TriggerValueV2::Value{*value}) : TriggerValueV2(TriggerValueV2::AnyValue{});
}

Voice voiceOf(std::uint8_t status, const Values& values) {
    switch (status) {
    case midi::noteOff: return Voice::NoteOff{compared(values[1])};
    case midi::noteOn: return Voice::NoteOn{compared(values[1])};
    case midi::programChange: return Voice::ProgramChange{compared(values[1])};
    default: return Voice::ControlChange{values[1].value(), compared(values[2])};
    }
}

Message triggerOf(std::uint8_t status, const Values& values) {
    switch (status) {
    case midi::startCommand: return Message::Start{};
    case midi::continueCommand: return Message::Continue{};
    case midi::stopCommand: return Message::Stop{};
    default: return Message::VoiceCategory{{voiceOf(status, values), compared(values[0])}};
    }
}

/// The data byte that goes out, or nothing for the incoming byte in the same place.
std::optional<std::uint8_t> sentByte(const ByteMaker& maker, const Values& values) {
    if (values[maker.from]) {
        return maker.make(*values[maker.from]);
    }
    return (maker.mask & midi::greatestDataByte) == 0 ? std::optional(maker.value) : std::nullopt;
}

GenericByteV2 dataByte(const std::optional<std::uint8_t>& byte) {
    return byte ? GenericByteV2(GenericByteV2::Value{*byte})
                : GenericByteV2(GenericByteV2::RespectiveTriggerByte{});
}

/// Makes the rules of one mapping, and notes what it loses.
class LineRules {
public:
    /// `room`: how many bytes of a preset they may take; less by what they do take.
    LineRules(const Mapping& mapping, std::size_t& room) : mapping_(mapping), room_(room) {
        for (const auto status : {midi::noteOff, midi::noteOn, midi::controlChange, midi::programChange}) {
            wait(waitingFor(mapping, status));
        }
        for (const auto status : {midi::startCommand, midi::continueCommand, midi::stopCommand}) {
            if (mapping.filter[0].matches(status) && mapping.length == 1 &&
                hasRoomFor(mapping.messages.size())) {
                send(status, {status, std::nullopt, std::nullopt});
            }
        }
        noteOthers();
        if (isTooLarge_) {
            rules.clear();
            lost = {"with its rules the preset would be too large to be read again"};
        } else if (rules.empty() && lost.empty()) {
            lose("no message matches it");
        } else {
            room = room_;
        }
    }

    std::vector<Rule> rules;
    std::vector<std::string> lost;

private:
    void lose(std::string reason) {
        if (std::ranges::find(lost, reason) == lost.end()) {
            lost.push_back(std::move(reason));
        }
    }

    /// Messages that the mapping matches and no rule waits for.
    void noteOthers() {
        const auto isMatched = [&](unsigned first, unsigned last) {
            for (auto status = first; status <= last; ++status) {
                const auto length = messageLength(static_cast<std::uint8_t>(status));
                if (mapping_.filter[0].matches(status) && length == mapping_.length) {
                    return true;
                }
            }
            return false;
        };
        for (const auto& [first, last, words] : others) {
            if (isMatched(first, last)) {
                lose("no rule can wait for " + std::string(words));
            }
        }
    }

    void wait(Waiting waiting) {
        const bool isMatched =
            std::ranges::none_of(waiting.places, [](const Place& place) { return place.values.empty(); });
        if (!isMatched || messageLength(waiting.status) != mapping_.length) {
            return;
        }
        for (const auto& message : mapping_.messages) {
            const auto status = message.front().make(waiting.status);
            for (std::size_t at = 0; at < message.size(); ++at) {
                auto& place = waiting.places[message[at].from];
                place.isExact = place.isExact || !isPlain(message[at], at, status);
            }
        }
        if (waiting.isNote() && waiting.places[2].isExact) {
            lose("it looks at the velocity of a note, or calculates with it, which no rule does");
        } else {
            makeEach(waiting);
        }
    }

    void makeEach(const Waiting& waiting) {
        const auto count = std::transform_reduce(
            waiting.places.begin(), waiting.places.end(), mapping_.messages.size(), std::multiplies{},
            [](const Place& place) { return place.isExact ? place.values.size() : 1; });
        if (hasRoomFor(count)) {
            Values values;
            make(waiting, 0, values);
        }
    }

    /// Says so where there is none.
    bool hasRoomFor(std::size_t count) {
        if (count > mostRulesOfALine) {
            lose("it would take " + std::to_string(count) + " rules");
            return false;
        }
        std::size_t longest = 0;
        for (const auto& message : mapping_.messages) {
            longest = std::max(longest, message.size());
        }
        constexpr std::size_t digitsAndComma = 4;
        const auto bytes = count * (bytesOfARule + 2 * name_.size() + digitsAndComma * longest);
        isTooLarge_ = isTooLarge_ || bytes > room_;
        room_ -= isTooLarge_ ? 0 : bytes;
        return !isTooLarge_;
    }

    /// Goes through the values of the places from `at` on.
    void make(const Waiting& waiting, std::size_t at, Values& values) {
        if (at == values.size()) {
            send(waiting.status, values);
            return;
        }
        const auto& place = waiting.places[at];
        values[at].reset();
        if (!place.isExact) {
            make(waiting, at + 1, values);
            return;
        }
        for (const auto value : place.values) {
            values[at] = value;
            make(waiting, at + 1, values);
        }
    }

    void send(std::uint8_t status, const Values& values) {
        const RuleTriggerV2 trigger =
            RuleTriggerV2::MessageBased{{triggerOf(status, values), Policy::PassThrough}};
        for (const auto& message : mapping_.messages) {
            const auto first = message.front().make(status | values[0].value_or(0));
            const auto kind = std::ranges::find(statusNibbles, first & midi::kindMask);
            if (first == midi::systemExclusive) {
                sendExclusive(trigger, message);
            } else if (kind == statusNibbles.end()) {
                lose("it sends what no rule sends: key pressure, or a system message");
            } else if (messageLength(first) != message.size() || isCut(message, status)) {
                lose("it makes a message that is not complete");
            } else {
                const StatusByteV2 begin = StatusByteV2::WithChannel{
                    static_cast<StatusV2>(kind - statusNibbles.begin()), channelOf(message, first, values)};
                sendChannelMessage(trigger, begin, message, values);
            }
        }
    }

    /// Whether it takes a byte from behind the end of the incoming message.
    static bool isCut(const std::vector<ByteMaker>& message, std::uint8_t status) {
        return std::ranges::any_of(message, [&](const ByteMaker& maker) {
            return maker.mask != 0 && maker.from >= messageLength(status);
        });
    }

    static RuleOutputChannelV2 channelOf(const std::vector<ByteMaker>& message, std::uint8_t first,
                                         const Values& values) {
        if (!values[0] && (message.front().mask & midi::channelMask) != 0) {
            return RuleOutputChannelV2::TriggerChannel{};
        }
        return RuleOutputChannelV2::Value{static_cast<std::uint8_t>(first & midi::channelMask)};
    }

    void sendChannelMessage(const RuleTriggerV2& trigger, const StatusByteV2& status,
                            const std::vector<ByteMaker>& message, const Values& values) {
        std::vector<GenericByteV2> bytes;
        for (const auto& maker : std::span(message).subspan(1)) {
            const auto byte = sentByte(maker, values);
            if (byte && !midi::isData(*byte)) {
                lose("it makes numbers above 127");
                return;
            }
            bytes.push_back(dataByte(byte));
        }
        if (bytes.size() == 1) {
            add(trigger, {Output::Protocol{status, bytes[0], std::nullopt}, {}});
        } else {
            add(trigger, {Output::Protocol{status, bytes[0], bytes[1]}, {}});
        }
    }

    void sendExclusive(const RuleTriggerV2& trigger, const std::vector<ByteMaker>& message) {
        std::vector<std::uint8_t> body;
        for (const auto& maker : std::span(message).subspan(1)) {
            if (maker.mask != 0) {
                lose("it puts a variable into system exclusive");
                return;
            }
            body.push_back(maker.value);
        }
        if (body.empty() || body.back() != midi::endOfExclusive) {
            lose("its system exclusive has no end");
            return;
        }
        body.pop_back();
        add(trigger, {Output::SystemExclusive{std::move(body)}, {}});
    }

    void add(const RuleTriggerV2& trigger, const RuleOutputV2& output) {
        const auto bank = bankFor(trigger, output);
        if (!bank) {
            rules.push_back({output, trigger, name_});
            return;
        }
        const auto& program = *output.message.getIf<Output::Protocol>();
        const auto channel = program.status.getIf<StatusByteV2::WithChannel>()->channel;
        rules.back().output.message = Output::ProgramChange{channel, *bank, program.byte1};
    }

    /// The bank that the rule above selects for the program that this output is: one rule sends both.
    [[nodiscard]] std::optional<std::uint8_t> bankFor(const RuleTriggerV2& trigger,
                                                      const RuleOutputV2& output) const {
        const auto* program = output.message.getIf<Output::Protocol>();
        const auto* bank = rules.empty() || rules.back().trigger != trigger
                               ? nullptr
                               : rules.back().output.message.getIf<Output::Protocol>();
        if (program == nullptr || bank == nullptr || !bank->byte2) {
            return std::nullopt;
        }
        const auto& status = *program->status.getIf<StatusByteV2::WithChannel>();
        const bool isBank =
            bank->status == StatusByteV2(StatusByteV2::WithChannel{StatusV2::CC, status.channel}) &&
            bank->byte1 == GenericByteV2(GenericByteV2::Value{0});
        const auto* number = bank->byte2->getIf<GenericByteV2::Value>();
        return status.status == StatusV2::programChange && isBank && number != nullptr
                   ? std::optional(number->value)
                   : std::nullopt;
    }

    const Mapping& mapping_;
    std::size_t room_;
    bool isTooLarge_ = false;
    std::string name_ = escaped(mapping_.name);
};

void setPolicy(Rule& rule, Policy policy) {
    auto message = *rule.trigger.getIf<RuleTriggerV2::MessageBased>();
    message.trigger.passTrough = policy;
    rule.trigger = message;
}

/// Sets what each rule consumes: what it matches, where no rule below that the event must reach does so. A
/// line loses something where the rules below consume some of the events only: the others pass.
class Consumption {
public:
    /// `restPasses`: what no rule consumes is forwarded.
    Consumption(std::vector<Rule>& rules, bool restPasses) : rules_(rules), restPasses_(restPasses) {}

    /// For the rules of a line, after those of all lines below. Where it is the last, they look at each other
    /// only.
    void settle(TakenLine& line, bool isLast) {
        for (auto rule = line.firstRule + line.count; rule-- > line.firstRule;) {
            setPolicy(rules_[rule],
                      isTakenBelow(line, rule, isLast) ? Policy::PassThrough : Policy::EatMatching);
        }
    }

private:
    /// Whether rules below take any of the events. Now this rule takes them.
    bool isTakenBelow(TakenLine& line, std::size_t rule, bool isLast) {
        std::size_t all = 0;
        std::size_t taken = 0;
        EventBox(rules_[rule].trigger).any([&](const Event& event) {
            auto& taker = takers_[EventBox::numberOf(event)];
            ++all;
            const bool isTaken = isLast ? taker == line.line : taker > 0;
            taken += isTaken ? 1 : 0;
            taker = line.line;
            return false;
        });
        if (taken > 0 && taken < all && restPasses_) {
            const std::string reason = "of what only some lines below match, the rest passes as well";
            if (std::ranges::find(line.lost, reason) == line.lost.end()) {
                line.lost.push_back(reason);
            }
        }
        return taken > 0;
    }

    std::vector<Rule>& rules_;
    bool restPasses_;
    /// By an event's number: the line that took it last, or 0.
    std::vector<std::size_t> takers_ = std::vector<std::size_t>(EventBox::eventCount);
};

/// A rule that drops everything: what it waits for is consumed above it, and it consumes all else.
Rule dropTheRest(const Rule& last) {
    auto rule = last;
    setPolicy(rule, Policy::EatNonMatching);
    rule.name = "Drop the rest";
    return rule;
}

/// Takes the rules of a mapping as far as there is room for them, and returns what became of its line.
TakenLine take(const Mapping& mapping, std::size_t& room, OtherRules& taken) {
    LineRules made(mapping, room);
    const auto first = mapping.isOff ? taken.shelf.size() : taken.rules.size();
    for (auto& rule : made.rules) {
        if (mapping.isOff) {
            setPolicy(rule, Policy::EatMatching);
            taken.shelf.push_back({static_cast<std::uint32_t>(taken.rules.size()), std::move(rule)});
        } else {
            taken.rules.push_back(std::move(rule));
        }
    }
    return {mapping.line, first, made.rules.size(), mapping.isOff, std::move(made.lost)};
}

/// `lines` are those of the mappings.
void settlePolicies(const MappingFile& file, std::vector<TakenLine>& lines, std::vector<Rule>& rules) {
    Consumption consumption(rules, file.passesUnmatched);
    for (auto at = lines.size(); at-- > 0;) {
        if (!lines[at].isOff) {
            consumption.settle(lines[at], file.mappings[at].isLast);
        }
    }
}

/// Where each line was left out or is switched off: says so under the last that was left out.
void tellThatNothingDrops(std::vector<TakenLine>& lines) {
    const auto upwards = lines | std::views::reverse;
    const auto leftOut = std::ranges::find(upwards, 0U, &TakenLine::count);
    const auto line = leftOut == upwards.end() ? upwards.begin() : leftOut;
    if (line != upwards.end()) {
        line->lost.emplace_back("no rule is left that could drop what no line matches");
    }
}

}  // namespace

OtherRules rulesFrom(const MappingFile& file) {
    OtherRules taken;
    auto room = roomOfAPreset;
    for (const auto& mapping : file.mappings) {
        taken.lines.push_back(take(mapping, room, taken));
    }
    settlePolicies(file, taken.lines, taken.rules);
    for (const auto& omission : file.omissions) {
        taken.lines.push_back({omission.line, 0, 0, false, {omission.reason}});
    }
    taken.lines = inStableOrder(std::move(taken.lines), &TakenLine::line);
    if (!file.passesUnmatched && taken.rules.empty()) {
        tellThatNothingDrops(taken.lines);
    } else if (!file.passesUnmatched) {
        taken.rules.push_back(dropTheRest(taken.rules.back()));
    }
    return taken;
}

}  // namespace quillo
