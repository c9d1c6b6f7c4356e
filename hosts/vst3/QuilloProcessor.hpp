// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include <juce_audio_processors/juce_audio_processors.h>

#include "hosts/vst3/MIDIBufferWriter.hpp"
#include "session/Session.hpp"
#include "window/XErrorShield.hpp"

namespace quillo {

/// A session as JUCE's audio processor, out of which JUCE's wrapper makes the VST3 plug-in. MIDI
/// goes through the rules. Audio comes out as it went in, so that the plug-in is silent by itself and mutes
/// nothing where a host puts it into a track with sound.
///
/// The wrapper lets exceptions through to the host, and JUCE's errors of the X server end the host's process:
/// no operation throws, and from the first editor on an `XErrorShield` is up.
///
/// Threads: `processBlock` and `processBlockBypassed` [render], the state [any but render], everything else
/// [main].
class QuilloProcessor final : public juce::AudioProcessor, public juce::VST3ClientExtensions {
public:
    /// What the wrapper's component answers to this identifier is its `QuilloProcessor`.
    static constexpr Steinberg::TUID interfaceId{'Q', 'u', 'i', 'l', 'l', 'o', 'P', 'r',
                                                 'o', 'c', 'e', 's', 's', 'o', 'r', 0};

    QuilloProcessor();
    ~QuilloProcessor() override;

    [[nodiscard]] Session& session() { return session_; }

    [[nodiscard]] std::int32_t queryIAudioProcessor(const Steinberg::TUID id, void** object) override;

    /// A rate that is rejected is reported to the user. Until there is another one nothing is rendered: no
    /// message leaves, unless the plug-in is bypassed, and audio passes.
    void prepareToPlay(double sampleRate, int longestBlock) override;
    /// The host stops listening: the notes that sound end when its next block comes. It takes nothing before.
    void releaseResources() override;
    void reset() override;

    [[nodiscard]] bool canRender() const { return canRender_; }

    /// As many channels in as out, or none on one side; up to 8.
    [[nodiscard]] bool isBusesLayoutSupported(const BusesLayout& layout) const override;

    void processBlock(juce::AudioBuffer<float>& audio, juce::MidiBuffer& messages) override;
    using AudioProcessor::processBlock;

    /// Messages pass as they came, and no rule sees them. A host that hands system exclusive over with both
    /// of its ends gets both back. What rules have sent before with a delay leaves at its time, and the
    /// notes that sound end in the first block of a bypass and in the first behind it, so that no note hangs.
    void processBlockBypassed(juce::AudioBuffer<float>& audio, juce::MidiBuffer& messages) override;
    using AudioProcessor::processBlockBypassed;

    /// Without end: there is always something to wait for.
    [[nodiscard]] double getTailLengthSeconds() const override;

    [[nodiscard]] const juce::String getName() const override;
    [[nodiscard]] bool acceptsMidi() const override { return true; }
    [[nodiscard]] bool producesMidi() const override { return true; }

    /// False on a machine without typefaces, where nothing could be read.
    [[nodiscard]] bool hasEditor() const override;
    /// Null when it cannot be made.
    [[nodiscard]] juce::AudioProcessorEditor* createEditor() override;

    /// One program, because hosts want one, and a name for it, because validators do: a preset file is the
    /// only preset.
    [[nodiscard]] int getNumPrograms() override { return 1; }
    [[nodiscard]] int getCurrentProgram() override { return 0; }
    void setCurrentProgram(int /*index*/) override {}
    [[nodiscard]] const juce::String getProgramName(int /*index*/) override { return "Rules"; }
    void changeProgramName(int /*index*/, const juce::String& /*name*/) override {}

    /// The bytes of the state document and nothing else. What cannot be saved, the editor's user is told of.
    void getStateInformation(juce::MemoryBlock& destination) override;
    /// `PlugInComponent` restores.
    void setStateInformation(const void* /*data*/, int /*size*/) override {}

    /// Whether the last state that was asked for could be written.
    [[nodiscard]] bool hasSaved() const { return saved_; }

private:
    [[nodiscard]] std::optional<std::string> whyNotReady(double sampleRate);
    void passOn(const juce::MidiBuffer& messages);
    void end(juce::MidiBuffer& messages);
    void noteBypass(bool isBypassed);
    void endNotes();
    void keepAudio(juce::AudioBuffer<float>& audio) const;

    Session session_;
    MIDIBufferWriter output_;  ///< [render]

    /// [render] What goes into the wrapper's place for a buffer, once after each `prepareToPlay`: its own is
    /// small, and would grow on the render thread.
    juce::MidiBuffer roomyBuffer_;
    bool bufferIsToBeSwapped_ = false;

    bool isBypassed_ = false;  ///< [render]

    bool canRender_ = false;
    bool saved_ = true;
    std::optional<XErrorShield> shield_;       ///< from the first editor on
    std::vector<std::uint8_t> bothEndsTwice_;  ///< [render] room for one message
};

}  // namespace quillo
