// SPDX-License-Identifier: GPL-3.0-or-later
// What an editor wants to know, and what it costs the host's thread.
#include <array>
#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "benchmarks/Sections.hpp"
#include "benchmarks/Sinks.hpp"
#include "benchmarks/Table.hpp"
#include "engine/CompiledRules.hpp"
#include "session/Session.hpp"
#include "session/SoundingNotes.hpp"
#include "support/TestRules.hpp"

namespace quillo::bench {

namespace {

constexpr std::size_t messages = 256;
constexpr std::uint32_t frames = 512;

using Message = std::array<std::uint8_t, 3>;

/// Notes that begin and end.
std::vector<Message> notes() {
    std::vector<Message> list;
    for (std::size_t i = 0; i < messages; ++i) {
        const auto status = static_cast<std::uint8_t>(i % 2 == 0 ? 0x98 : 0x88);
        list.push_back({status, static_cast<std::uint8_t>(i / 2 * 77 % 128), 100});
    }
    return list;
}

/// Takes every message and looks at it.
class HostSink final : public HostOutput {
public:
    [[nodiscard]] Room roomFor(Bytes /*bytes*/, const Waiting& /*waiting*/) const QUILLO_REALTIME override {
        return Room::enough;
    }
    void write(std::uint32_t offset, std::span<const std::uint8_t> bytes) QUILLO_REALTIME override {
        benchmark::DoNotOptimize(offset);
        benchmark::DoNotOptimize(bytes.data());
    }
};

/// Which editor there is beside the host's thread.
enum class Editor { none, closed, open, watching };

class SessionSetup {
public:
    SessionSetup(std::vector<Rule> rules, Editor editor) {
        session_.install(std::move(rules));
        if (editor == Editor::none) {
            return;
        }
        session_.viewDidLoad();
        session_.watchWaiting(editor == Editor::watching);
        if (editor != Editor::closed) {
            drains_.emplace([this](const std::stop_token& stop) { drain(stop); });
        }
    }

    void render() {
        auto& renderer = session_.renderer();
        renderer.begin(frames, output_);
        std::uint32_t offset = 0;
        for (const auto& message : notes_) {
            renderer.receive(offset, message);
            offset += 2;
        }
        renderer.end();
    }

    /// What is left of `render` when nobody asks for rules.
    void forward() {
        HostOutput& output = output_;
        for (std::uint32_t i = 0; i < messages; ++i) {
            if (output.roomFor(notes_[i], {}) == HostOutput::Room::enough) {
                output.write(2 * i, notes_[i]);
            }
        }
    }

private:
    /// 30 times a second, as a window does it.
    void drain(const std::stop_token& stop) {
        std::mutex mutex;
        std::condition_variable_any stopped;
        std::unique_lock lock(mutex);
        while (!stop.stop_requested()) {
            session_.drain();
            stopped.wait_for(lock, stop, std::chrono::milliseconds(33), [] { return false; });
        }
    }

    Session session_;
    HostSink output_;
    const std::vector<Message> notes_ = notes();
    std::optional<std::jthread> drains_;  ///< last, so that it ends first
};

void addSessionRow(const Section& section, const std::string& name, const std::vector<Rule>& rules,
                   Editor editor) {
    section.addRow(name, messages, [rules, editor] {
        return [setup = std::make_shared<SessionSetup>(rules, editor)] { setup->render(); };
    });
}

void addSessionRows(const Section& section, const std::vector<Rule>& rules) {
    section.addFloor("forward only", messages, [] {
        return
            [setup = std::make_shared<SessionSetup>(std::vector<Rule>{}, Editor::none)] { setup->forward(); };
    });
    addSessionRow(section, "no editor so far", rules, Editor::none);
    addSessionRow(section, "the editor was closed", rules, Editor::closed);
    addSessionRow(section, "the editor is open", rules, Editor::open);
    addSessionRow(section, "the editor shows what waits", rules, Editor::watching);
}

void addPartRows() {
    const Section parts("What is kept for an editor", "message");
    const auto look = [list = notes()] {
        for (const auto& message : list) {
            benchmark::DoNotOptimize(message.data());
        }
    };
    parts.addFloor("a look at the message", messages, [look] { return look; });
    parts.addRow("a hit is counted", messages, [] {
        return [list = notes(), counts = std::make_shared<FiringCounts>(messages),
                time = SampleTime{0}]() mutable {
            for (const auto& message : list) {
                benchmark::DoNotOptimize(message.data());
                counts->count(message[1], ++time);
            }
        };
    });
    parts.addRow("a note is kept in the table", messages, [] {
        return [list = notes(), sounding = std::make_shared<SoundingNotes>()] {
            for (const auto& message : list) {
                benchmark::DoNotOptimize(message.data());
                sounding->sent(message);
            }
        };
    });
}

}  // namespace

void addSessionBenchmarks() {
    addPartRows();
    addSessionRows(Section("Session, 0 rules", "event"), {});
    addSessionRows(Section("Session, each note-on fires a rule", "event"),
                   {test::rule(test::onNoteOn(test::any, test::any, PassThroughV2::EatMatching),
                               test::send(test::noteOn(0, 60, 100)))});
}

}  // namespace quillo::bench
