// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/vst3/QuilloProcessor.hpp"

#include <algorithm>
#include <cstring>
#include <exception>
#include <limits>
#include <string>
#include <utility>

#include "editor/Fonts.hpp"
#include "hosts/vst3/PlayHead.hpp"
#include "hosts/vst3/QuilloProcessorEditor.hpp"
#include "midi/Status.hpp"
#include "platform/FatalError.hpp"

namespace quillo {

namespace {

constexpr int mostChannels = 8;

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

std::uint32_t framesOf(const juce::AudioBuffer<float>& audio) {
    return static_cast<std::uint32_t>(audio.getNumSamples());
}

/// What is due waits for a block with frames, unless messages come that have to stay in order with it.
bool isNoBlock(const juce::AudioBuffer<float>& audio, const juce::MidiBuffer& messages) {
    return audio.getNumSamples() == 0 && messages.isEmpty();
}

/// The wrapper puts both ends around what the host gives, and the buffer then ends the message at the first
/// end. So of what had its ends before, only the first is there twice.
bool lacksItsSecondEnd(std::span<const std::uint8_t> bytes) {
    return bytes.size() > 2 && bytes.size() < MIDIBufferWriter::longestMessage &&
           bytes[0] == midi::systemExclusive && bytes[1] == midi::systemExclusive;
}

}  // namespace

QuilloProcessor::QuilloProcessor()
    : AudioProcessor(BusesProperties()
                         .withInput("Input", juce::AudioChannelSet::stereo())
                         .withOutput("Output", juce::AudioChannelSet::stereo())),
      session_(transportOfTheWrapper()) {
    session_.setOnEdit([this] { updateHostDisplay(ChangeDetails().withNonParameterStateChanged(true)); });
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

void QuilloProcessor::prepareToPlay(double sampleRate, int /*longestBlock*/) {
    session_.renderer().losePosition();
    const auto problem = whyNotReady(sampleRate);
    canRender_ = !problem;
    if (problem) {
        session_.tellUser(*problem);
    }
}

std::optional<std::string> QuilloProcessor::whyNotReady(double sampleRate) try {
    roomyBuffer_.ensureSize(
        MIDIBufferWriter::storageFor(MIDIBufferWriter::mostEvents, MessageStore::mostBytes));
    bufferIsToBeSwapped_ = true;
    bothEndsTwice_.reserve(MIDIBufferWriter::longestMessage);
    return session_.setSampleRate(sampleRate);
} catch (const std::exception& error) {
    return "MIDI Quillo cannot get ready to render: " + wordsOf(error);
}

bool QuilloProcessor::isBusesLayoutSupported(const BusesLayout& layout) const {
    const auto input = layout.getMainInputChannelSet();
    const auto output = layout.getMainOutputChannelSet();
    return (input == output || input.isDisabled() || output.isDisabled()) &&
           std::max(input.size(), output.size()) <= mostChannels;
}

void QuilloProcessor::releaseResources() {
    endNotes();
}

void QuilloProcessor::reset() {
    session_.renderer().losePosition();
    endNotes();
}

void QuilloProcessor::endNotes() {
    session_.renderer().requests().ask(RenderRequests::Kind::endOfNotes);
}

void QuilloProcessor::processBlock(juce::AudioBuffer<float>& audio, juce::MidiBuffer& messages) {
    if (isNoBlock(audio, messages)) {
        return;
    }
    keepAudio(audio);
    noteBypass(false);
    if (!canRender_) {
        messages.clear();
        return;
    }
    auto& renderer = session_.renderer();
    renderer.begin(framesOf(audio), output_, BlockRenderer::Delivery::atTheEnd);
    if (const auto reported = reportedTransport(getPlayHead())) {
        renderer.reportTransport(0, reported->state, reported->position);
    }
    for (const auto message : messages) {
        renderer.receive(offsetOf(message), bytesOf(message));
    }
    end(messages);
}

/// Before the first block that is not bypassed nothing is due, and the rules have not been loaded either.
void QuilloProcessor::processBlockBypassed(juce::AudioBuffer<float>& audio, juce::MidiBuffer& messages) {
    if (isNoBlock(audio, messages)) {
        return;
    }
    keepAudio(audio);
    noteBypass(true);
    auto& renderer = session_.renderer();
    if (canRender_ && renderer.now() > 0) {
        renderer.begin(framesOf(audio), output_, BlockRenderer::Delivery::atTheEnd);
    } else {
        renderer.beginPassing(framesOf(audio), output_, BlockRenderer::Delivery::atTheEnd);
    }
    passOn(messages);
    end(messages);
}

/// What hears the ends of notes from now on is not what heard their beginnings: the rules, or the
/// host.
void QuilloProcessor::noteBypass(bool isBypassed) {
    if (std::exchange(isBypassed_, isBypassed) != isBypassed) {
        endNotes();
    }
}

/// Behind what is due at the same time; what finds no more room stays away, as it would from the host.
void QuilloProcessor::passOn(const juce::MidiBuffer& messages) {
    for (const auto message : messages) {
        auto bytes = bytesOf(message);
        if (lacksItsSecondEnd(bytes)) {
            bothEndsTwice_.assign(bytes.begin(), bytes.end());
            bothEndsTwice_.push_back(midi::endOfExclusive);
            bytes = bothEndsTwice_;
        }
        session_.renderer().pass(offsetOf(message), bytes);
    }
}

/// Now that the input has been read, its buffer takes the output.
void QuilloProcessor::end(juce::MidiBuffer& messages) {
    if (bufferIsToBeSwapped_) {
        messages.swapWith(roomyBuffer_);
        bufferIsToBeSwapped_ = false;
    }
    output_.open(messages);
    session_.renderer().end();
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
    session_.tellUser("The editor cannot be opened: " + wordsOf(error));
    return nullptr;
}

void QuilloProcessor::getStateInformation(juce::MemoryBlock& destination) {
    const auto document = session_.trySave();
    saved_ = document.has_value();
    if (document) {
        destination.replaceAll(document->data(), document->size());
    }
}

}  // namespace quillo
