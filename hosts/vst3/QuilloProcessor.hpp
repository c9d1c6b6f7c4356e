// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include <juce_audio_processors/juce_audio_processors.h>

#include "hosts/adapter/HostedUnit.hpp"

namespace quillo {

/// The unit as the toolkit's audio processor, out of which the toolkit's wrapper makes the VST3 plug-in. MIDI
/// goes through the rules. Audio comes out as it went in, so that the plug-in is silent by itself and mutes
/// nothing where a host puts it into a track with sound.
///
/// Threads: `processBlock` and `processBlockBypassed` [render], the state [any but render], everything else [main].
class QuilloProcessor final : public juce::AudioProcessor {
public:
    /// The wrapper hands no more events than this to the host in a block. The unit learns that the rest is
    /// refused, as it does of messages that are longer than an event can be.
    static constexpr std::size_t mostEvents = 2048;

    QuilloProcessor();
    ~QuilloProcessor() override;

    [[nodiscard]] HostedUnit& hosted() { return hosted_; }

    void prepareToPlay(double sampleRate, int longestBlock) override;
    void releaseResources() override;

    /// As many channels in as out, or none on one side; up to 8, as the unit's busses.
    [[nodiscard]] bool isBusesLayoutSupported(const BusesLayout& layout) const override;

    void processBlock(juce::AudioBuffer<float>& audio, juce::MidiBuffer& messages) override;
    using AudioProcessor::processBlock;

    /// Messages pass as they came, and no rule sees them. What rules have sent before with a delay leaves at its
    /// time, so that no note hangs.
    void processBlockBypassed(juce::AudioBuffer<float>& audio, juce::MidiBuffer& messages) override;
    using AudioProcessor::processBlockBypassed;

    /// Without end: there is always something to wait for.
    [[nodiscard]] double getTailLengthSeconds() const override;

    [[nodiscard]] const juce::String getName() const override;
    [[nodiscard]] bool acceptsMidi() const override { return true; }
    [[nodiscard]] bool producesMidi() const override { return true; }

    /// False on a machine without typefaces, where nothing could be read.
    [[nodiscard]] bool hasEditor() const override;
    [[nodiscard]] juce::AudioProcessorEditor* createEditor() override;

    /// One nameless program: a preset file is the only preset.
    [[nodiscard]] int getNumPrograms() override { return 1; }
    [[nodiscard]] int getCurrentProgram() override { return 0; }
    void setCurrentProgram(int /*index*/) override {}
    [[nodiscard]] const juce::String getProgramName(int /*index*/) override { return {}; }
    void changeProgramName(int /*index*/, const juce::String& /*name*/) override {}

    /// The bytes of the state document and nothing else. What cannot be saved or restored, the editor's user is
    /// told of; the rules stay then.
    void getStateInformation(juce::MemoryBlock& destination) override;
    void setStateInformation(const void* data, int size) override;

private:
    void passOn(const juce::MidiBuffer& messages);
    void send(juce::MidiBuffer& messages);
    [[nodiscard]] BlockRenderer::Room roomFor(std::span<const std::uint8_t> bytes) QUILLO_REALTIME;
    void keepAudio(juce::AudioBuffer<float>& audio) const;

    HostedUnit hosted_;

    /// [render] What goes into the wrapper's place for a buffer, once after each `prepareToPlay`: its own is
    /// small, and would grow on the render thread.
    juce::MidiBuffer roomyBuffer_;
    bool bufferIsToBeSwapped_ = false;

    std::size_t eventsInBlock_ = 0;  ///< [render]
};

}  // namespace quillo
