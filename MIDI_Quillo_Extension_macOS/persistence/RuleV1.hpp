// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <vector>

#include "rules/TaggedUnion.hpp"

/// The rules of the oldest documents. They are only read, and turned into `RuleV2` at once.
namespace quillo {

struct ChannelV1 {
    std::uint8_t value;  ///< zero-based
};

struct NoteV1 {
    std::uint8_t value;
};

struct VelocityV1 {
    std::uint8_t value;
};

struct ControllerV1 {
    std::uint8_t value;
};

struct ControllerValueV1 {
    std::uint8_t value;
};

struct ProgramV1 {
    std::uint8_t value;
};

struct PressureV1 {
    std::uint8_t value;
};

struct BankV1 {
    std::uint8_t value;
};

/// Stored with 16 bits, though only values up to 255 can be carried over.
struct PitchV1 {
    std::uint16_t value;
};

struct MIDIMessageV1Cases {
    struct NoteOff {
        ChannelV1 channel;
        NoteV1 note;
        VelocityV1 velocity;
    };
    struct NoteOn {
        ChannelV1 channel;
        NoteV1 note;
        VelocityV1 velocity;
    };
    struct ControlChange {
        ChannelV1 channel;
        ControllerV1 controller;
        ControllerValueV1 value;
    };
    struct ProgramChange {
        ChannelV1 channel;
        ProgramV1 program;
    };
    struct ChannelPressure {
        ChannelV1 channel;
        PressureV1 pressure;
    };
    struct PitchWheel {
        ChannelV1 channel;
        PitchV1 pitch;
    };
    /// The body without the framing 0xF0 and 0xF7.
    struct SystemExclusive {
        std::vector<std::uint8_t> body;
    };
};

struct MIDIMessageV1
    : MIDIMessageV1Cases,
      TaggedUnion<MIDIMessageV1Cases::NoteOff, MIDIMessageV1Cases::NoteOn, MIDIMessageV1Cases::ControlChange,
                  MIDIMessageV1Cases::ProgramChange, MIDIMessageV1Cases::ChannelPressure,
                  MIDIMessageV1Cases::PitchWheel, MIDIMessageV1Cases::SystemExclusive> {
    using TaggedUnion::TaggedUnion;
};

struct ShortcutVariantsV1Cases {
    /// A bank select and a program change.
    struct ProgramChange {
        ChannelV1 channel;
        BankV1 bank;
        ProgramV1 program;
    };
};

struct ShortcutVariantsV1 : ShortcutVariantsV1Cases, TaggedUnion<ShortcutVariantsV1Cases::ProgramChange> {
    using TaggedUnion::TaggedUnion;
};

struct RuleOutputVariantsV1Cases {
    struct Prime {
        MIDIMessageV1 message;
    };
    struct Shortcut {
        ShortcutVariantsV1 shortcut;
    };
};

struct RuleOutputVariantsV1
    : RuleOutputVariantsV1Cases,
      TaggedUnion<RuleOutputVariantsV1Cases::Prime, RuleOutputVariantsV1Cases::Shortcut> {
    using TaggedUnion::TaggedUnion;
};

struct DelayV1 {
    std::int64_t ms;  ///< milliseconds
};

struct RuleOutputV1 {
    RuleOutputVariantsV1 message;
    DelayV1 delay;
};

struct TriggerNoteV1Cases {
    struct Note {
        NoteV1 note;
    };
    struct AnyNote {};
};

struct TriggerNoteV1 : TriggerNoteV1Cases,
                       TaggedUnion<TriggerNoteV1Cases::Note, TriggerNoteV1Cases::AnyNote> {
    using TaggedUnion::TaggedUnion;
};

struct TriggerControllerValueV1Cases {
    struct Value {
        ControllerValueV1 value;
    };
    struct AnyValue {};
};

struct TriggerControllerValueV1
    : TriggerControllerValueV1Cases,
      TaggedUnion<TriggerControllerValueV1Cases::Value, TriggerControllerValueV1Cases::AnyValue> {
    using TaggedUnion::TaggedUnion;
};

struct TriggerChannelV1Cases {
    /// Zero-based; the one byte of this form that is stored without a structure of its own.
    struct Channel {
        std::uint8_t channel;
    };
    struct AnyChannel {};
};

struct TriggerChannelV1 : TriggerChannelV1Cases,
                          TaggedUnion<TriggerChannelV1Cases::Channel, TriggerChannelV1Cases::AnyChannel> {
    using TaggedUnion::TaggedUnion;
};

struct VoiceCategoryTriggerVariantsV1Cases {
    struct NoteOn {
        TriggerNoteV1 note;
    };
    struct NoteOff {
        TriggerNoteV1 note;
    };
    struct ControlChange {
        ControllerV1 controller;
        TriggerControllerValueV1 value;
    };
};

struct VoiceCategoryTriggerVariantsV1
    : VoiceCategoryTriggerVariantsV1Cases,
      TaggedUnion<VoiceCategoryTriggerVariantsV1Cases::NoteOn, VoiceCategoryTriggerVariantsV1Cases::NoteOff,
                  VoiceCategoryTriggerVariantsV1Cases::ControlChange> {
    using TaggedUnion::TaggedUnion;
};

struct VoiceCategoryTriggerV1 {
    VoiceCategoryTriggerVariantsV1 variants;
    TriggerChannelV1 channel;
};

struct MesageBasedTriggerVariantsV1Cases {
    struct VoiceCategory {
        VoiceCategoryTriggerV1 voice;
    };
    struct Start {};
    struct Stop {};
    struct Continue {};
};

/// The name lacks a letter, as it always has.
struct MesageBasedTriggerVariantsV1
    : MesageBasedTriggerVariantsV1Cases,
      TaggedUnion<MesageBasedTriggerVariantsV1Cases::VoiceCategory, MesageBasedTriggerVariantsV1Cases::Start,
                  MesageBasedTriggerVariantsV1Cases::Stop, MesageBasedTriggerVariantsV1Cases::Continue> {
    using TaggedUnion::TaggedUnion;
};

enum class PassThroughV1 : std::uint8_t { PassThrough, EatMatching, EatNonMatching };

/// The field name `passTrough` is part of every stored document and stays as it is.
struct MessageBasedTriggerV1 {
    MesageBasedTriggerVariantsV1 variants;
    PassThroughV1 passTrough;
};

struct RuleTriggerV1Cases {
    struct MessageBased {
        MessageBasedTriggerV1 trigger;
    };
    struct OnLoad {};
};

struct RuleTriggerV1 : RuleTriggerV1Cases,
                       TaggedUnion<RuleTriggerV1Cases::MessageBased, RuleTriggerV1Cases::OnLoad> {
    using TaggedUnion::TaggedUnion;
};

struct RuleV1 {
    RuleOutputV1 output;
    RuleTriggerV1 trigger;
};

}  // namespace quillo
