// SPDX-License-Identifier: GPL-3.0-or-later
#include "rules/MIDIVocabulary.hpp"

#include <algorithm>
#include <array>

namespace quillo {

namespace {

constexpr int notesPerOctave = 12;
constexpr int octaveOfNoteZero = -2;
constexpr std::uint8_t lastDataByte = 127;
constexpr std::uint8_t channelCount = 16;
constexpr std::uint8_t allSoundOff = 120;
constexpr std::uint8_t allNotesOff = 123;
constexpr std::string_view reserved = "Reserved";

struct NamedController {
    std::uint8_t number;
    std::string_view name;
};

/// Every controller that has a name, in ascending order; all others are reserved.
constexpr std::array namedControllers{
    NamedController{0, "Bank MSB"},
    NamedController{1, "Modulation"},
    NamedController{2, "Breath"},
    NamedController{4, "Foot Control"},
    NamedController{5, "Portamento Time"},
    NamedController{6, "Data MSB"},
    NamedController{7, "Volume"},
    NamedController{8, "Balance"},
    NamedController{10, "Pan"},
    NamedController{11, "Expression"},
    NamedController{12, "Effect #1 MSB"},
    NamedController{13, "Effect #2 MSB"},
    NamedController{16, "General Slider #1"},
    NamedController{17, "General Slider #2"},
    NamedController{18, "General Slider #3"},
    NamedController{19, "General Slider #4"},
    NamedController{32, "Bank LSB"},
    NamedController{33, "Modulation LSB"},
    NamedController{34, "Breath LSB"},
    NamedController{36, "Foot Control LSB"},
    NamedController{37, "Portamento Time LSB"},
    NamedController{38, "Data LSB"},
    NamedController{39, "Volume LSB"},
    NamedController{40, "Balance LSB"},
    NamedController{42, "Pan LSB"},
    NamedController{43, "Expression LSB"},
    NamedController{44, "Effect #1 LSB"},
    NamedController{45, "Effect #2 LSB"},
    NamedController{64, "Sustain"},
    NamedController{65, "Portamento"},
    NamedController{66, "Sostenuto"},
    NamedController{67, "Soft Pedal"},
    NamedController{68, "Legato"},
    NamedController{69, "Hold 2"},
    NamedController{70, "Sound Variation"},
    NamedController{71, "Timbre"},
    NamedController{72, "Release Time"},
    NamedController{73, "Attack Time"},
    NamedController{74, "Brightness"},
    NamedController{75, "SoundControl #6"},
    NamedController{76, "SoundControl #7"},
    NamedController{77, "SoundControl #8"},
    NamedController{78, "SoundControl #9"},
    NamedController{79, "SoundControl #10"},
    NamedController{80, "General Button #1"},
    NamedController{81, "General Button #2"},
    NamedController{82, "General Button #3"},
    NamedController{83, "General Button #4"},
    NamedController{91, "Reverb"},
    NamedController{92, "Tremolo Depth"},
    NamedController{93, "Chorus Send Level"},
    NamedController{94, "Celetste Detune Depth"},
    NamedController{95, "Phaser Depth"},
    NamedController{96, "Data Increment"},
    NamedController{97, "Data Decrement"},
    NamedController{98, "Non-Reg. LSB"},
    NamedController{99, "Non-Reg. MSB"},
    NamedController{100, "Reg.Par. LSB"},
    NamedController{101, "Reg.Par. MSB"},
    NamedController{120, "All Sound Off"},
    NamedController{121, "All Controllers Off"},
    NamedController{122, "Local Control"},
    NamedController{123, "All Notes Off"},
    NamedController{124, "Omni Mode Off"},
    NamedController{125, "Omni Mode On"},
    NamedController{126, "Mono Mode On"},
    NamedController{127, "Poly Mode On"},
};

Menu<std::uint8_t> makeControllerMenu() {
    Menu<std::uint8_t> menu;
    for (std::uint8_t controller = 0; controller <= lastDataByte; ++controller) {
        menu.push_back(
            {controller, std::to_string(controller) + " : " + std::string(controllerName(controller))});
    }
    return menu;
}

Menu<TriggerValueV2> makeTriggerNoteMenu() {
    Menu<TriggerValueV2> menu{{TriggerValueV2::AnyValue{}, std::string(anyLabel)}};
    for (int note = lastDataByte; note >= 0; --note) {
        const auto value = static_cast<std::uint8_t>(note);
        menu.push_back({TriggerValueV2::Value{value}, noteLabel(value)});
    }
    return menu;
}

Menu<TriggerValueV2> makeTriggerChannelMenu() {
    Menu<TriggerValueV2> menu{{TriggerValueV2::AnyValue{}, std::string(anyLabel)}};
    for (std::uint8_t channel = 0; channel < channelCount; ++channel) {
        menu.push_back({TriggerValueV2::Value{channel}, channelLabel(channel)});
    }
    return menu;
}

}  // namespace

std::string_view controllerName(std::uint8_t controller) {
    const auto* found = std::ranges::find(namedControllers, controller, &NamedController::number);
    return found != namedControllers.end() ? found->name : reserved;
}

const Menu<std::uint8_t>& controllerMenu() {
    static const auto menu = makeControllerMenu();
    return menu;
}

std::string noteName(std::uint8_t note) {
    constexpr std::array<std::string_view, notesPerOctave> names{"C",  "C♯", "D",  "D♯", "E",  "F",
                                                                 "F♯", "G",  "G♯", "A",  "A♯", "B"};
    return std::string(names[note % names.size()]) + std::to_string(note / notesPerOctave + octaveOfNoteZero);
}

std::string noteLabel(std::uint8_t note) {
    return std::to_string(note) + " (" + noteName(note) + ")";
}

const Menu<TriggerValueV2>& triggerNoteMenu() {
    static const auto menu = makeTriggerNoteMenu();
    return menu;
}

std::string channelLabel(std::uint8_t zeroBased) {
    return std::to_string(zeroBased + 1);
}

const Menu<TriggerValueV2>& triggerChannelMenu() {
    static const auto menu = makeTriggerChannelMenu();
    return menu;
}

const Menu<MIDIRuleType>& outputTypeMenu() {
    using Output = MIDIRuleType::OutputType;
    using ShortCut = MIDIRuleType::ControlChangeShortCut;
    static const Menu<MIDIRuleType> menu{
        {Output{OutputEntryType::NoteOn}, "Note On"},
        {Output{OutputEntryType::NoteOff}, "Note Off"},
        {Output{OutputEntryType::ControlChange}, "CC"},
        {Output{OutputEntryType::ProgramChange}, "Program Change"},
        {Output{OutputEntryType::ChannelPressure}, "Channel Pressure"},
        {Output{OutputEntryType::PitchWheel}, "Pitch Wheel"},
        {Output{OutputEntryType::SystemExclusive}, "SysEx"},
        {ShortCut{allSoundOff}, "All Sound Off"},
        {ShortCut{allNotesOff}, "All Notes Off"},
    };
    return menu;
}

const Menu<TriggerEntryType>& triggerTypeMenu() {
    static const Menu<TriggerEntryType> menu{
        {TriggerEntryType::OnLoad, "On Load"},
        {TriggerEntryType::NoteOn, "Note On"},
        {TriggerEntryType::NoteOff, "Note Off"},
        {TriggerEntryType::ControlChange, "CC"},
        {TriggerEntryType::ProgramChange, "Program Change"},
        {TriggerEntryType::HostStart, "AU Host Transport Start"},
        {TriggerEntryType::HostContinue, "AU Host Transport Continue"},
        {TriggerEntryType::HostStop, "AU Host Transport Stop"},
        {TriggerEntryType::MIDIStart, "MIDI Transport Start"},
        {TriggerEntryType::MIDIContinue, "MIDI Transport Continue"},
        {TriggerEntryType::MIDIStop, "MIDI Transport Stop"},
    };
    return menu;
}

const Menu<PassThroughV2>& passThroughMenu() {
    static const Menu<PassThroughV2> menu{
        {PassThroughV2::PassThrough, "Pass through"},
        {PassThroughV2::EatMatching, "Consume matching"},
        {PassThroughV2::EatNonMatching, "Consume non-matching"},
    };
    return menu;
}

}  // namespace quillo
