// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>

#include "rules/TaggedUnion.hpp"

namespace quillo {

/// Whether a rule consumes an event. A consumed event reaches no later rule, and an incoming message that was
/// consumed is not forwarded.
enum class PassThroughV2 : std::uint8_t {
    PassThrough,     ///< never consumes
    EatMatching,     ///< consumes an event that the rule matched
    EatNonMatching,  ///< consumes an event that the rule did not match
};

struct TriggerValueV2Cases {
    /// Must equal the byte compared.
    struct Value {
        std::uint8_t value;
        bool operator==(const Value&) const = default;
    };
    /// Matches every byte.
    struct AnyValue {
        bool operator==(const AnyValue&) const = default;
    };
};

/// What a byte of an incoming message (or its zero-based channel) is compared with.
struct TriggerValueV2 : TriggerValueV2Cases,
                        TaggedUnion<TriggerValueV2Cases::Value, TriggerValueV2Cases::AnyValue> {
    using TaggedUnion::TaggedUnion;
};

struct VoiceCategoryTriggerVariantsV2Cases {
    /// Velocity is never examined: a note-on with velocity 0 is a note-on.
    struct NoteOn {
        TriggerValueV2 note;
        bool operator==(const NoteOn&) const = default;
    };
    struct NoteOff {
        TriggerValueV2 note;
        bool operator==(const NoteOff&) const = default;
    };
    /// The controller is always exact.
    struct ControlChange {
        std::uint8_t controller;
        TriggerValueV2 value;
        bool operator==(const ControlChange&) const = default;
    };
    struct ProgramChange {
        TriggerValueV2 program;
        bool operator==(const ProgramChange&) const = default;
    };
};

/// Which kind of channel voice message fires a rule.
struct VoiceCategoryTriggerVariantsV2
    : VoiceCategoryTriggerVariantsV2Cases,
      TaggedUnion<VoiceCategoryTriggerVariantsV2Cases::NoteOn, VoiceCategoryTriggerVariantsV2Cases::NoteOff,
                  VoiceCategoryTriggerVariantsV2Cases::ControlChange,
                  VoiceCategoryTriggerVariantsV2Cases::ProgramChange> {
    using TaggedUnion::TaggedUnion;
};

struct VoiceCategoryTriggerV2 {
    VoiceCategoryTriggerVariantsV2 variants;
    TriggerValueV2 channel;  ///< zero-based

    bool operator==(const VoiceCategoryTriggerV2&) const = default;
};

struct MessageBasedTriggerVariantsV2Cases {
    struct VoiceCategory {
        VoiceCategoryTriggerV2 voice;
        bool operator==(const VoiceCategory&) const = default;
    };
    /// MIDI Start, 0xFA.
    struct Start {
        bool operator==(const Start&) const = default;
    };
    /// MIDI Stop, 0xFC.
    struct Stop {
        bool operator==(const Stop&) const = default;
    };
    /// MIDI Continue, 0xFB.
    struct Continue {
        bool operator==(const Continue&) const = default;
    };
};

/// Which incoming message fires a rule.
struct MessageBasedTriggerVariantsV2
    : MessageBasedTriggerVariantsV2Cases,
      TaggedUnion<MessageBasedTriggerVariantsV2Cases::VoiceCategory,
                  MessageBasedTriggerVariantsV2Cases::Start, MessageBasedTriggerVariantsV2Cases::Stop,
                  MessageBasedTriggerVariantsV2Cases::Continue> {
    using TaggedUnion::TaggedUnion;
};

/// The field name `passTrough` is part of every stored document and stays as it is.
struct MessageBasedTriggerV2 {
    MessageBasedTriggerVariantsV2 variants;
    PassThroughV2 passTrough = PassThroughV2::PassThrough;

    bool operator==(const MessageBasedTriggerV2&) const = default;
};

/// Changes of the host's transport, in the order of their event codes 0, 1, 2.
enum class HostTransportTriggerVariantsV2 : std::uint8_t {
    Start,     ///< began moving from position zero or before
    Continue,  ///< began moving from a position after zero
    Stop,      ///< stopped
};

struct HostTransportTriggerV2 {
    HostTransportTriggerVariantsV2 variants = HostTransportTriggerVariantsV2::Start;
    PassThroughV2 passThrough = PassThroughV2::PassThrough;

    bool operator==(const HostTransportTriggerV2&) const = default;
};

struct RuleTriggerV2Cases {
    struct MessageBased {
        MessageBasedTriggerV2 trigger;
        bool operator==(const MessageBased&) const = default;
    };
    struct HostTransport {
        HostTransportTriggerV2 trigger;
        bool operator==(const HostTransport&) const = default;
    };
    /// The first render cycle after the plug-in was loaded.
    struct OnLoad {
        bool operator==(const OnLoad&) const = default;
    };
};

/// What makes a rule fire.
struct RuleTriggerV2 : RuleTriggerV2Cases,
                       TaggedUnion<RuleTriggerV2Cases::MessageBased, RuleTriggerV2Cases::HostTransport,
                                   RuleTriggerV2Cases::OnLoad> {
    using TaggedUnion::TaggedUnion;
};

}  // namespace quillo
