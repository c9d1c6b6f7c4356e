// SPDX-License-Identifier: GPL-3.0-or-later
// The plug-in as hosts run it, beside plug-ins of other makers that do something alike.
#include <filesystem>
#include <memory>
#include <string>
#include <utility>

#include "benchmarks/BenchmarkRules.hpp"
#include "benchmarks/LV2Player.hpp"
#include "benchmarks/Sections.hpp"
#include "benchmarks/Table.hpp"
#include "hosts/lv2/LV2URIDs.hpp"
#include "persistence/PluginData.hpp"
#include "support/TestRules.hpp"

namespace quillo::bench {

namespace {

constexpr std::size_t notesInABlock = 126;
constexpr std::size_t transposition = 2;

constexpr const char* ourBundle = QUILLO_LV2_BUNDLE;
constexpr const char* filterBundle = "/usr/lib/lv2/midifilter.lv2";
constexpr const char* mapBundle = "/usr/lib/lv2/midimap.lv2";

/// So many notes in a block of 512 frames, in a scrambled order.
test::LV2Sequence events(std::size_t count) {
    constexpr std::size_t scramble = 77;
    test::LV2Sequence sequence;
    for (std::size_t number = 0; number < count; ++number) {
        const auto note = static_cast<std::uint8_t>(number * scramble % notesInABlock);
        sequence.addMIDI(static_cast<std::int64_t>(2 * number), {0x98, note, 100});
    }
    return sequence;
}

/// A rule for each note, that sends it two higher.
std::string ourRules() {
    std::vector<Rule> rules;
    for (std::size_t note = 0; note < notesInABlock; ++note) {
        rules.push_back(
            test::rule(test::onNoteOn(test::exactly(static_cast<std::uint8_t>(note)), test::any,
                                      PassThroughV2::EatMatching),
                       test::send(test::protocol(StatusV2::noteOn, test::triggerChannel,
                                                 test::byte(static_cast<std::uint8_t>(note + transposition)),
                                                 test::triggerByte))));
    }
    const auto document = PluginData{std::move(rules)}.write();
    return {document.begin(), document.end()};
}

std::string rulesOfTheMap() {
    std::string rules = "midimap v1\nforward-unmatched\n";
    for (std::size_t note = 0; note < notesInABlock; ++note) {
        rules += "NOTE " + std::to_string(note) + " ANY | SAME " + std::to_string(note + transposition) +
                 " SAME\n";
    }
    return rules;
}

Step stepOf(std::shared_ptr<LV2Player> player, std::size_t count) {
    player->setEvents(events(count), count);
    return [player = std::move(player)] { player->run(); };
}

/// A section compares a plug-in of another maker, where it is installed, with ours.
void addSections(std::size_t count, const std::string& when, const std::string& item) {
    const auto items = count == 0 ? 1 : count;
    const Section passing("LV2, " + when, item);
    if (std::filesystem::exists(filterBundle)) {
        passing.addFloor("midifilter.lv2 #passthru", items, [count] {
            return stepOf(
                std::make_shared<LV2Player>(filterBundle, "http://gareus.org/oss/lv2/midifilter#passthru"),
                count);
        });
    }
    passing.addRow("MIDI Quillo, 0 rules", items, [count] {
        return stepOf(std::make_shared<LV2Player>(ourBundle, "urn:midi-quillo:lv2"), count);
    });
    const Section mapping("LV2 with 126 rules, " + when, item);
    if (std::filesystem::exists(mapBundle)) {
        mapping.addFloor("midimap.lv2, the first match", items, [count] {
            auto player = std::make_shared<LV2Player>(mapBundle, "http://gareus.org/oss/lv2/midimap");
            player->restore("http://gareus.org/oss/lv2/midimap#state", rulesOfTheMap());
            return stepOf(std::move(player), count);
        });
    }
    mapping.addRow("MIDI Quillo, the matching one consumes", items, [count] {
        auto player = std::make_shared<LV2Player>(ourBundle, "urn:midi-quillo:lv2");
        player->restore(lv2StateKey, ourRules());
        return stepOf(std::move(player), count);
    });
}

MemoryRow memoryOf(const std::string& label, const char* bundle, const char* uri) {
    return {label, [bundle, uri] {
                const auto player = std::make_shared<LV2Player>(bundle, uri);
                player->run();
                return player;
            }};
}

}  // namespace

std::vector<MemoryRow> lv2Memory() {
    std::vector<MemoryRow> rows{memoryOf("LV2, MIDI Quillo", ourBundle, "urn:midi-quillo:lv2")};
    if (std::filesystem::exists(filterBundle)) {
        rows.push_back(memoryOf("LV2, midifilter.lv2 #passthru", filterBundle,
                                "http://gareus.org/oss/lv2/midifilter#passthru"));
    }
    return rows;
}

void addLV2Benchmarks() {
    addSections(0, "no events", "cycle");
    addSections(1, "1 event a cycle", "event");
    addSections(16, "16 events a cycle", "event");
    addSections(256, "256 events a cycle", "event");
}

}  // namespace quillo::bench
