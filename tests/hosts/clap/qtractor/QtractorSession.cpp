// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/clap/qtractor/QtractorSession.hpp"

#include <fstream>
#include <stdexcept>
#include <string>

#include "midifile/MIDIFile.hpp"
#include "persistence/PluginData.hpp"
#include "platform/Base64.hpp"
#include "support/TestRules.hpp"

namespace quillo::test {

namespace {

void append(Bytes& bytes, std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8) {
        bytes.push_back(static_cast<std::uint8_t>(number >> shift));
    }
}

std::uint32_t adler32(const Bytes& bytes) {
    constexpr std::uint32_t modulus = 65521;
    std::uint32_t low = 1;
    std::uint32_t high = 0;
    for (const auto byte : bytes) {
        low = (low + byte) % modulus;
        high = (high + low) % modulus;
    }
    return high << 16U | low;
}

/// The bytes as the session keeps them: their number, and a zlib stream that stores them as they are.
Bytes packed(const Bytes& bytes) {
    const auto length = static_cast<std::uint16_t>(bytes.size());
    if (length != bytes.size()) {
        throw std::length_error("too long for one block");
    }
    const auto inverse = static_cast<std::uint16_t>(~length);
    Bytes result;
    append(result, length);
    for (const auto byte : {0x78, 0x01, 0x01, length & 0xFF, length >> 8, inverse & 0xFF, inverse >> 8}) {
        result.push_back(static_cast<std::uint8_t>(byte));
    }
    result.insert(result.end(), bytes.begin(), bytes.end());
    append(result, adler32(bytes));
    return result;
}

Bytes clip() {
    MIDITrack track;
    for (const auto& message : sessionMessages()) {
        track.events.push_back({message.time / framesPerTick, MIDIFileEvent::Kind::channel, message.bytes});
    }
    track.endTick = track.events.back().tick + 100;
    MIDIFile file;
    file.division = TicksPerQuarter{960};
    file.tracks = {track};
    return writeMIDIFile(file);
}

std::string pluginElement(const std::filesystem::path& file, const std::string& state = "") {
    return "<plugin type=\"CLAP\"><filename>" + file.string() +
           "</filename><index>0</index><activated>1</activated><configs>" + state +
           "</configs><params/></plugin>\n";
}

std::string session(const std::filesystem::path& folder, const std::filesystem::path& plugin,
                    const std::filesystem::path& probe) {
    const auto state = encodeBase64(packed(PluginData{sessionRules()}.write()));
    return R"(<!DOCTYPE qtractor-session>
<session name="session" version="0.9.31">
<properties><directory>)" +
           folder.string() + R"(</directory><sample-rate>48000</sample-rate><tempo>120</tempo>
<ticks-per-beat>960</ticks-per-beat><beats-per-bar>4</beats-per-bar>
<beat-divisor>2</beat-divisor></properties>
<files><audio-list/><midi-list><file name="clip">clip.mid</file></midi-list></files>
<devices>
<audio-engine><audio-bus name="Master" mode="duplex"><channels>2</channels></audio-bus></audio-engine>
<midi-engine><midi-bus name="Master" mode="duplex"/></midi-engine>
</devices>
<tracks><track name="Track" type="midi">
<properties><input-bus>Master</input-bus><output-bus>Master</output-bus>
<midi-channel>0</midi-channel></properties>
<state><gain>1</gain></state>
<clips><clip name="clip">
<properties><name>clip</name><start>0</start><offset>0</offset>
<length>480000</length><gain>1</gain></properties>
<midi-clip><filename>clip.mid</filename><track-channel>0</track-channel><revision>0</revision></midi-clip>
</clip></clips>
<plugins>
)" + pluginElement(plugin, "<config key=\"state\">" + state + "</config>") +
           pluginElement(probe) + R"(</plugins>
</track></tracks>
</session>
)";
}

template <class Text>
void write(const std::filesystem::path& file, const Text& text) {
    std::ofstream out(file, std::ios::binary);
    out.write(reinterpret_cast<const char*>(text.data()), static_cast<std::streamsize>(text.size()));
    if (!out.flush()) {
        throw std::runtime_error("cannot write " + file.string());
    }
}

}  // namespace

std::vector<Rule> sessionRules() {
    return {rule(onNoteOn(), send(protocol(StatusV2::noteOn, triggerChannel, triggerByte, byte(5)), 100)),
            rule(onHost(HostTransportTriggerVariantsV2::Start), send(controlChange(0, 20, 1))),
            rule(onHost(HostTransportTriggerVariantsV2::Continue), send(controlChange(0, 20, 1)))};
}

std::vector<ScriptMessage> sessionMessages() {
    std::vector<ScriptMessage> messages;
    const auto add = [&](std::int64_t tick, const Bytes& bytes) {
        messages.push_back({tick * framesPerTick, bytes});
    };
    for (std::uint8_t note = 60; note < 64; ++note) {
        const std::int64_t tick = 7 + (note - 60) * 607;
        add(tick, {0x90, note, 100});
        add(tick + 101, {0xB0, 7, note});
        add(tick + 300, {0x80, note, 0});
        add(tick + 400, {0xE0, 1, note});
    }
    for (std::int64_t tick = 2800; tick < 3600; tick += 100) {
        add(tick, {0xC0, 5});
    }
    return messages;
}

void writeSession(const std::filesystem::path& folder, const std::filesystem::path& plugin,
                  const std::filesystem::path& probe) {
    write(folder / "clip.mid", clip());
    write(folder / "session.qtr", session(folder, plugin, probe));
}

}  // namespace quillo::test
