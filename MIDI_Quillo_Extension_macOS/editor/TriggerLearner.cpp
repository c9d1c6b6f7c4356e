// SPDX-License-Identifier: GPL-3.0-or-later
#include "editor/TriggerLearner.hpp"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <span>
#include <tuple>
#include <utility>

#include "editor/EntryRules.hpp"
#include "midi/Status.hpp"
#include "rules/MIDIVocabulary.hpp"

namespace quillo {

namespace {

using Row = TriggerOffer::Row;

/// A key that is struck counts as much as a quarter of a fader's way.
constexpr double press = 32;
/// What is no movement.
constexpr int trembling = 1;

constexpr unsigned bitsPerByte = 8;

/// Of what was played: note-on and note-off are the same note. Changes of the transport lie behind all
/// messages.
std::uint16_t nameOf(const EventLogEntryVariants& event) {
    if (const auto* host = event.host()) {
        return static_cast<std::uint16_t>(0xFF00U | static_cast<unsigned>(host->trigger));
    }
    const auto bytes = event.midi()->message.bytes();
    const bool isNoteOff = (bytes[0] & midi::kindMask) == midi::noteOff;
    const unsigned status = isNoteOff ? midi::noteOn | (bytes[0] & midi::channelMask) : bytes[0];
    return static_cast<std::uint16_t>(status << bitsPerByte | (bytes.size() > 1 ? bytes[1] : 0U));
}

std::string_view typeLabel(TriggerEntryType type) {
    return std::ranges::find(triggerTypeMenu(), type, &MenuItem<TriggerEntryType>::value)->label;
}

unsigned exactly(const TriggerValueV2& value) {
    return value.getIf<TriggerValueV2::Value>()->value;
}

std::string onChannel(const RuleTriggerEntry& trigger) {
    return ", channel " + channelLabel(static_cast<std::uint8_t>(exactly(trigger.channel)));
}

std::string noteOf(const RuleTriggerEntry& trigger) {
    return noteName(static_cast<std::uint8_t>(exactly(trigger.note)));
}

std::string timesWords(unsigned times) {
    return times == 1 ? "once" : times == 2 ? "twice" : std::to_string(times) + " times";
}

std::string rangeWords(unsigned least, unsigned greatest) {
    return std::to_string(least) + " – " + std::to_string(greatest);
}

/// "CC 64 : Sustain, value 127, channel 1", "Note On C3, channel 1", "MIDI Transport Start".
std::string wordsOf(const RuleTriggerEntry& trigger) {
    auto type = std::string(typeLabel(trigger.type));
    switch (trigger.type) {
    case TriggerEntryType::NoteOn:
    case TriggerEntryType::NoteOff: return type + " " + noteOf(trigger) + onChannel(trigger);
    case TriggerEntryType::ControlChange: {
        const auto value = trigger.controllerValue.is<TriggerValueV2::AnyValue>()
                               ? ""
                               : ", value " + std::to_string(exactly(trigger.controllerValue));
        return type + " " + controllerMenu()[trigger.controller].label + value + onChannel(trigger);
    }
    case TriggerEntryType::ProgramChange:
        return type + " " + std::to_string(exactly(trigger.program)) + onChannel(trigger);
    default: return type;
    }
}

}  // namespace

std::vector<TriggerOffer> inShownOrder(const std::vector<TriggerOffer>& shown,
                                       std::vector<TriggerOffer> fresh) {
    auto next = fresh.begin();
    for (const auto& offer : shown) {
        const auto found =
            std::find_if(next, fresh.end(), [&](const auto& other) { return other.key == offer.key; });
        if (found != fresh.end()) {
            std::rotate(next, found, found + 1);
            ++next;
        }
    }
    return fresh;
}

const TriggerLearner::Source* TriggerLearner::find(std::uint16_t played) const {
    const auto found = std::ranges::find(sources_, played, &Source::played);
    return found != sources_.end() ? &*found : nullptr;
}

TriggerLearner::Source& TriggerLearner::source(std::uint16_t played) {
    const auto found = std::ranges::find(sources_, played, &Source::played);
    if (found != sources_.end()) {
        return *found;
    }
    sources_.emplace_back().played = played;
    return sources_.back();
}

void TriggerLearner::hear(const EventLogEntryVariants& event, Time now) {
    const auto trigger = triggerFor(event);
    if (!trigger) {
        return;
    }
    auto& heard = source(nameOf(event));
    heard.trigger = *trigger;
    if (trigger->type == TriggerEntryType::ControlChange) {
        hearControl(heard, static_cast<std::uint8_t>(exactly(trigger->controllerValue)), now);
    } else if (trigger->type == TriggerEntryType::NoteOn) {
        hearNoteOn(heard, event.midi()->message.bytes()[2], now);
    } else if (trigger->type == TriggerEntryType::NoteOff) {
        heard.sounds = false;
    } else {
        count(heard, press, now);
    }
}

/// What moved before counts less by as much as time has passed.
void TriggerLearner::count(Source& source, double movement, Time now) {
    const std::chrono::duration<double> passed = now - std::exchange(source.moved, now);
    source.movement = movement + source.movement * std::exp2(-passed / halfLife);
    ++source.times;
}

void TriggerLearner::hearControl(Source& control, std::uint8_t value, Time now) {
    if (control.times == 0) {
        control.last = control.least = control.greatest = control.rest = value;
        count(control, press, now);
    } else {
        const auto way = std::abs(value - control.rest);
        control.rest = way > trembling ? value : control.rest;
        count(control, way > trembling ? way : 0, now);
    }
    if (value != control.last) {
        control.isSwitch = control.isSwitch && (!control.before || control.before == value);
        control.before = std::exchange(control.last, value);
    }
    control.least = std::min(control.least, value);
    control.greatest = std::max(control.greatest, value);
    for (auto& note : sources_) {
        if (note.sounds) {
            note.touches = control.played;
        }
    }
}

/// Some instruments end a note by a note-on of velocity 0. To the rules that is a note-on.
void TriggerLearner::hearNoteOn(Source& note, std::uint8_t velocity, Time now) {
    note.sounds = velocity > 0;
    if (note.sounds) {
        note.wasPressed = true;
        count(note, press, now);
    } else {
        note.endsBySilence = true;
    }
}

/// Movements of different times on one scale: a half-life ago, it takes twice as much.
double TriggerLearner::rank(const Source& source) const {
    const std::chrono::duration<double> moved = source.moved.time_since_epoch();
    const auto own = std::log2(source.movement) + moved / halfLife;
    const auto* control = source.touches ? find(*source.touches) : nullptr;
    return control != nullptr ? std::min(own, rank(*control)) : own;
}

/// Of equal ones the control stands before the note that touches it, then what was heard first.
std::vector<TriggerOffer> TriggerLearner::offers() const {
    std::vector<std::tuple<double, bool, std::size_t>> ranked;
    ranked.reserve(sources_.size());
    for (std::size_t place = 0; place < sources_.size(); ++place) {
        ranked.emplace_back(-rank(sources_[place]), sources_[place].touches.has_value(), place);
    }
    std::ranges::sort(ranked);
    std::vector<TriggerOffer> offers;
    for (const auto& [order, touches, place] : ranked) {
        offer(sources_[place], offers);
    }
    return offers;
}

void TriggerLearner::offer(const Source& source, std::vector<TriggerOffer>& offers) {
    if (source.trigger.type == TriggerEntryType::ControlChange) {
        offerControl(source, offers);
    } else if (source.wasPressed) {
        offerNote(source, offers);
    } else {
        offers.push_back({{source.played, Row::any},
                          wordsOf(source.trigger),
                          timesWords(std::max(source.times, 1U)),
                          {source.trigger}});
    }
}

/// The control with any value, and with its last one; a switch has another one that may be meant.
void TriggerLearner::offerControl(const Source& control, std::vector<TriggerOffer>& offers) {
    const auto with = [&control](TriggerValueV2 value) {
        auto trigger = control.trigger;
        trigger.controllerValue = value;
        return trigger;
    };
    const bool moved = control.greatest - control.least > trembling;
    const auto any = with(TriggerValueV2::AnyValue{});
    const auto last = with(TriggerValueV2::Value{control.last});
    offers.push_back(
        {{control.played, Row::any},
         wordsOf(any),
         moved ? (offers.empty() ? "most moved, " : "moved, ") + rangeWords(control.least, control.greatest)
               : timesWords(control.times),
         {any}});
    offers.push_back({{control.played, Row::last}, wordsOf(last), "last value", {last}});
    if (control.isSwitch && control.before) {
        const auto other = with(TriggerValueV2::Value{*control.before});
        offers.push_back({{control.played, Row::other}, wordsOf(other), "value before", {other}});
    }
}

void TriggerLearner::offerNote(const Source& note, std::vector<TriggerOffer>& offers) {
    auto on = note.trigger;
    on.type = TriggerEntryType::NoteOn;
    auto off = note.trigger;
    off.type = TriggerEntryType::NoteOff;
    offers.push_back({{note.played, Row::any}, wordsOf(on), timesWords(note.times), {on}});
    if (!note.endsBySilence) {
        offers.push_back({{note.played, Row::pair},
                          "Note On and Note Off " + noteOf(on) + onChannel(on),
                          "makes both rules",
                          {on, off}});
    }
}

}  // namespace quillo
