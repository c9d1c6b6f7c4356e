// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/vst3/QuilloProcessor.hpp"

#include <algorithm>
#include <exception>
#include <limits>

#include "editor/Fonts.hpp"
#include "hosts/vst3/MIDIBufferWriter.hpp"
#include "hosts/vst3/PlayHead.hpp"
#include "hosts/vst3/QuilloProcessorEditor.hpp"

namespace quillo {

namespace {

constexpr int mostChannels = 8;

/// Hosts count in frames but may round; and the toolkit tells no position below zero.
HostTransport transportOfTheToolkit() {
    constexpr double tolerance = 1.0;
    return HostTransport(tolerance, HostTransport::Positions::noneBelowZero);
}

std::uint32_t offsetOf(const juce::MidiMessageMetadata& message) {
    return static_cast<std::uint32_t>(std::max(message.samplePosition, 0));
}

std::span<const std::uint8_t> bytesOf(const juce::MidiMessageMetadata& message) {
    return {message.data, static_cast<std::size_t>(message.numBytes)};
}

}  // namespace

QuilloProcessor::QuilloProcessor()
    : AudioProcessor(BusesProperties()
                         .withInput("Input", juce::AudioChannelSet::stereo())
                         .withOutput("Output", juce::AudioChannelSet::stereo())),
      hosted_(transportOfTheToolkit()) {
    hosted_.setOnEdit([this] { updateHostDisplay(ChangeDetails().withNonParameterStateChanged(true)); });
    hosted_.renderer().setAsk([this](std::uint32_t, std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
        return roomFor(bytes);
    });
}

QuilloProcessor::~QuilloProcessor() = default;

const juce::String QuilloProcessor::getName() const {
    return "MIDI Quillo";
}

void QuilloProcessor::prepareToPlay(double sampleRate, int longestBlock) {
    if (auto reason = hosted_.activate(sampleRate, static_cast<std::uint32_t>(std::max(longestBlock, 0)))) {
        hosted_.tellUser(*std::move(reason));
    }
    roomyBuffer_.ensureSize(
        MIDIBufferWriter::storageFor(BlockRenderer::outgoingCapacity, BlockRenderer::outgoingBytes));
    bufferIsToBeSwapped_ = true;
}

void QuilloProcessor::releaseResources() {
    hosted_.deactivate();
}

bool QuilloProcessor::isBusesLayoutSupported(const BusesLayout& layout) const {
    const auto input = layout.getMainInputChannelSet();
    const auto output = layout.getMainOutputChannelSet();
    return (input == output || input.isDisabled() || output.isDisabled()) &&
           std::max(input.size(), output.size()) <= mostChannels;
}

void QuilloProcessor::processBlock(juce::AudioBuffer<float>& audio, juce::MidiBuffer& messages) {
    auto& renderer = hosted_.renderer();
    renderer.begin(static_cast<std::uint32_t>(audio.getNumSamples()));
    eventsInBlock_ = 0;
    if (const auto told = toldTransport(getPlayHead())) {
        renderer.tellTransport(0, told->flags, told->position);
    }
    for (const auto message : messages) {
        renderer.receive(offsetOf(message), bytesOf(message));
    }
    renderer.end();
    send(messages);
    keepAudio(audio);
}

/// Before the first block that is not bypassed nothing is due, and the rules have not been loaded either.
void QuilloProcessor::processBlockBypassed(juce::AudioBuffer<float>& audio, juce::MidiBuffer& messages) {
    auto& renderer = hosted_.renderer();
    if (renderer.now() > 0) {
        renderer.begin(static_cast<std::uint32_t>(audio.getNumSamples()));
        eventsInBlock_ = 0;
        renderer.end();
        passOn(messages);
        send(messages);
    }
    keepAudio(audio);
}

/// Behind what is due at the same time; what finds no more room stays away, as it would from the host.
void QuilloProcessor::passOn(const juce::MidiBuffer& messages) {
    for (const auto message : messages) {
        static_cast<void>(hosted_.renderer().outgoing().tryPush(offsetOf(message), bytesOf(message)));
    }
}

void QuilloProcessor::send(juce::MidiBuffer& messages) {
    if (bufferIsToBeSwapped_) {
        messages.swapWith(roomyBuffer_);
        bufferIsToBeSwapped_ = false;
    }
    MIDIBufferWriter writer(messages);
    for (const auto& message : hosted_.renderer().outgoing().inTimeOrder()) {
        writer.append(message.offset, message.bytes);
    }
}

BlockRenderer::Room QuilloProcessor::roomFor(std::span<const std::uint8_t> bytes) QUILLO_REALTIME {
    using Room = BlockRenderer::Room;
    if (bytes.size() > MIDIBufferWriter::longestMessage) {
        return Room::never;
    }
    return eventsInBlock_++ < mostEvents ? Room::enough : Room::full;
}

/// The toolkit's buffer comes with the input in its first channels, and goes out as it is.
void QuilloProcessor::keepAudio(juce::AudioBuffer<float>& audio) const {
    for (int channel = getTotalNumInputChannels(); channel < audio.getNumChannels(); ++channel) {
        audio.clear(channel, 0, audio.getNumSamples());
    }
}

double QuilloProcessor::getTailLengthSeconds() const {
    return std::numeric_limits<double>::infinity();
}

bool QuilloProcessor::hasEditor() const {
    return requireTypefaces().isEmpty();
}

juce::AudioProcessorEditor* QuilloProcessor::createEditor() {
    return std::make_unique<QuilloProcessorEditor>(*this).release();
}

void QuilloProcessor::getStateInformation(juce::MemoryBlock& destination) {
    try {
        const auto document = hosted_.save();
        destination.replaceAll(document.data(), document.size());
    } catch (const std::exception& error) {
        hosted_.tellUser(std::string("The rules cannot be saved with the project: ") + error.what());
    }
}

void QuilloProcessor::setStateInformation(const void* data, int size) {
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    static_cast<void>(hosted_.restore({bytes, static_cast<std::size_t>(size)}));
}

}  // namespace quillo
