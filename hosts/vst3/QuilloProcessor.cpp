// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/vst3/QuilloProcessor.hpp"

#include <algorithm>
#include <cstring>
#include <exception>
#include <limits>
#include <string>

#include "editor/Fonts.hpp"
#include "hosts/vst3/MIDIBufferWriter.hpp"
#include "hosts/vst3/PlayHead.hpp"
#include "hosts/vst3/QuilloProcessorEditor.hpp"
#include "platform/FatalError.hpp"

namespace quillo {

namespace {

constexpr int mostChannels = 8;
constexpr std::uint8_t systemExclusive = 0xF0;
constexpr std::uint8_t endOfExclusive = 0xF7;

/// Hosts count in frames but may round; and JUCE reports no position below zero.
HostTransport transportOfTheWrapper() {
    constexpr double tolerance = 1.0;
    return HostTransport(tolerance, HostTransport::Positions::noneBelowZero);
}

std::uint32_t offsetOf(const juce::MidiMessageMetadata& message) {
    return static_cast<std::uint32_t>(std::max(message.samplePosition, 0));
}

std::span<const std::uint8_t> bytesOf(const juce::MidiMessageMetadata& message) {
    return {message.data, static_cast<std::size_t>(message.numBytes)};
}

/// The wrapper puts both ends around what the host gives, and the buffer then ends the message at the first
/// end. So of what had its ends before, only the first is there twice.
bool lacksItsSecondEnd(std::span<const std::uint8_t> bytes) {
    return bytes.size() > 2 && bytes.size() < MIDIBufferWriter::longestMessage &&
           bytes[0] == systemExclusive && bytes[1] == systemExclusive;
}

}  // namespace

QuilloProcessor::QuilloProcessor()
    : AudioProcessor(BusesProperties()
                         .withInput("Input", juce::AudioChannelSet::stereo())
                         .withOutput("Output", juce::AudioChannelSet::stereo())),
      hosted_(transportOfTheWrapper()) {
    hosted_.setOnEdit([this] { updateHostDisplay(ChangeDetails().withNonParameterStateChanged(true)); });
    hosted_.renderer().setAsk(
        [this](std::uint32_t, std::span<const std::uint8_t> bytes)
            QUILLO_REALTIME { return roomFor(bytes); });
}

QuilloProcessor::~QuilloProcessor() = default;

const juce::String QuilloProcessor::getName() const {
    return "MIDI Quillo";
}

std::int32_t QuilloProcessor::queryIAudioProcessor(const Steinberg::TUID id, void** object) {
    constexpr std::int32_t found = 0;
    const bool isMeant = std::memcmp(id, interfaceId, sizeof interfaceId) == 0;
    *object = isMeant ? this : nullptr;
    return isMeant ? found : VST3ClientExtensions::queryIAudioProcessor(id, object);
}

void QuilloProcessor::prepareToPlay(double sampleRate, int longestBlock) {
    const auto problem = whyNotReady(sampleRate, longestBlock);
    canRender_ = !problem;
    if (problem) {
        hosted_.tellUser(*problem);
    }
}

std::optional<std::string> QuilloProcessor::whyNotReady(double sampleRate, int longestBlock) try {
    roomyBuffer_.ensureSize(
        MIDIBufferWriter::storageFor(BlockRenderer::outgoingCapacity, BlockRenderer::outgoingBytes));
    bufferIsToBeSwapped_ = true;
    bothEndsTwice_.reserve(MIDIBufferWriter::longestMessage);
    return hosted_.activate(sampleRate, static_cast<std::uint32_t>(std::max(longestBlock, 0)));
} catch (const std::exception& error) {
    return "MIDI Quillo cannot get ready to render: " + wordsOf(error);
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
    keepAudio(audio);
    if (!canRender_) {
        messages.clear();
        return;
    }
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
}

/// Before the first block that is not bypassed nothing is due, and the rules have not been loaded either.
void QuilloProcessor::processBlockBypassed(juce::AudioBuffer<float>& audio, juce::MidiBuffer& messages) {
    keepAudio(audio);
    auto& renderer = hosted_.renderer();
    const bool isRunning = canRender_ && renderer.now() > 0;
    renderer.begin(static_cast<std::uint32_t>(audio.getNumSamples()));
    eventsInBlock_ = 0;
    if (isRunning) {
        renderer.end();
    }
    passOn(messages);
    send(messages);
}

/// Behind what is due at the same time; what finds no more room stays away, as it would from the host.
void QuilloProcessor::passOn(const juce::MidiBuffer& messages) {
    for (const auto message : messages) {
        auto bytes = bytesOf(message);
        if (lacksItsSecondEnd(bytes)) {
            bothEndsTwice_.assign(bytes.begin(), bytes.end());
            bothEndsTwice_.push_back(endOfExclusive);
            bytes = bothEndsTwice_;
        }
        static_cast<void>(hosted_.renderer().outgoing().tryPush(offsetOf(message), bytes));
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

/// JUCE's buffer comes with the input in its first channels, and goes out as it is.
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

/// JUCE connects to the X server with its desktop: that comes first, so that the shield covers the
/// connection.
juce::AudioProcessorEditor* QuilloProcessor::createEditor() try {
    if (!shield_) {
        juce::Desktop::getInstance();
        shield_.emplace();
    }
    return std::make_unique<QuilloProcessorEditor>(*this).release();
} catch (const std::exception& error) {
    hosted_.tellUser("The editor cannot be opened: " + wordsOf(error));
    return nullptr;
}

void QuilloProcessor::getStateInformation(juce::MemoryBlock& destination) try {
    saved_ = false;
    const auto document = hosted_.save();
    destination.replaceAll(document.data(), document.size());
    saved_ = true;
} catch (const std::exception& error) {
    hosted_.tellUser("The rules cannot be saved with the project: " + wordsOf(error));
}

void QuilloProcessor::setStateInformation(const void* data, int size) {
    const auto* bytes = static_cast<const std::uint8_t*>(data);
    restored_ = !hosted_.restore({bytes, static_cast<std::size_t>(size)});
}

bool QuilloProcessor::endRestoring() {
    if (!restored_) {
        hosted_.tellUser("The saved rules cannot be restored: the project's data are damaged.");
    }
    return restored_.value_or(false);
}

}  // namespace quillo
