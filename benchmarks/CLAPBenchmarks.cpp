// SPDX-License-Identifier: GPL-3.0-or-later
// The plug-in as CLAP hosts run it: the binary that was built.
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "benchmarks/BenchmarkRules.hpp"
#include "benchmarks/Sections.hpp"
#include "benchmarks/Table.hpp"
#include "hosts/clap/CLAPBinary.hpp"
#include "hosts/clap/CLAPEvents.hpp"
#include "persistence/PluginData.hpp"

namespace quillo::bench {

namespace {

constexpr std::uint32_t blockLength = 512;

/// A host with one instance, and a block that it processes again and again.
class CLAPPlayer {
public:
    CLAPPlayer(std::vector<Rule> rules, std::size_t count) {
        if (plugin_ == nullptr || !plugin_->init(plugin_) || !load(PluginData{std::move(rules)}.write()) ||
            !plugin_->activate(plugin_, test::clapSampleRate, 1, blockLength) ||
            !plugin_->start_processing(plugin_)) {
            throw std::runtime_error("the plug-in does not start");
        }
        constexpr std::size_t scramble = 77;
        for (std::size_t number = 0; number < count; ++number) {
            const auto note = static_cast<std::uint8_t>(number * scramble % 128);
            events_.addMIDI(static_cast<std::uint32_t>(2 * number), {0x90 | eventChannel, note, 100});
        }
    }
    ~CLAPPlayer() { plugin_->destroy(plugin_); }
    CLAPPlayer(const CLAPPlayer&) = delete;
    CLAPPlayer& operator=(const CLAPPlayer&) = delete;

    void process() { plugin_->process(plugin_, &block_); }

    /// What is left of `process` when a plug-in hands each event on.
    void forward() {
        const auto count = block_.in_events->size(block_.in_events);
        for (std::uint32_t i = 0; i < count; ++i) {
            block_.out_events->try_push(block_.out_events, block_.in_events->get(block_.in_events, i));
        }
    }

private:
    [[nodiscard]] bool load(const std::vector<std::uint8_t>& document) const {
        std::string_view left(reinterpret_cast<const char*>(document.data()), document.size());
        const clap_istream_t stream{&left, [](const clap_istream_t* from, void* buffer, std::uint64_t size) {
                                        auto& text = *static_cast<std::string_view*>(from->ctx);
                                        const auto copied = text.copy(static_cast<char*>(buffer), size);
                                        text.remove_prefix(copied);
                                        return static_cast<std::int64_t>(copied);
                                    }};
        const auto* state =
            static_cast<const clap_plugin_state_t*>(plugin_->get_extension(plugin_, CLAP_EXT_STATE));
        return state->load(plugin_, &stream);
    }

    test::CLAPBinary binary_;
    clap_host_t host_{CLAP_VERSION, nullptr, "benchmark", "", "", "1", nullptr, nullptr, nullptr, nullptr};
    const clap_plugin_t* plugin_ = binary_.factory().create_plugin(&binary_.factory(), &host_, test::clapId);
    test::CLAPEvents events_;
    clap_output_events_t sink_{nullptr, [](const clap_output_events_t*, const clap_event_header_t* event) {
                                   benchmark::DoNotOptimize(event->time);
                                   return true;
                               }};
    clap_process_t block_{-1, blockLength, nullptr, nullptr, nullptr, 0, 0, events_.list(), &sink_};
};

void addSection(std::size_t count, const std::string& when, const std::string& item) {
    const auto items = count == 0 ? 1 : count;
    const Section section("CLAP, " + when, item);
    section.addFloor("the host's lists alone", items, [count] {
        return [player = std::make_shared<CLAPPlayer>(std::vector<Rule>{}, count)] { player->forward(); };
    });
    for (const auto rules : Counts{0, 128}) {
        const auto label = std::to_string(rules) + " rules" + (rules == 0 ? "" : ", none matches");
        section.addRow(label, items, [count, rules] {
            return [player = std::make_shared<CLAPPlayer>(rulesThatMatchNothing(rules), count)] {
                player->process();
            };
        });
    }
}

}  // namespace

std::vector<MemoryRow> clapMemory() {
    return {{"CLAP, MIDI Quillo", [] {
                 const auto player = std::make_shared<CLAPPlayer>(std::vector<Rule>{}, 1);
                 player->process();
                 return player;
             }}};
}

void addCLAPBenchmarks() {
    addSection(0, "blocks without events", "block");
    addSection(1, "1 event a block", "event");
    addSection(16, "16 events a block", "event");
    addSection(256, "256 events a block", "event");
}

}  // namespace quillo::bench
