// SPDX-License-Identifier: GPL-3.0-or-later
#include "simulation/Scenario.hpp"

#include <array>
#include <sstream>

#include "platform/HexText.hpp"
#include "words/PlainWords.hpp"

namespace quillo::test {

namespace {

std::string words(const RuleOutputVariantsV2& message) {
    return inPlainWords(RuleOutputV2{message, {}}, RuleTriggerV2::OnLoad{});
}

/// Writes one step.
struct Writer {
    std::ostream& out;

    void operator()(const BlockStep& step) const {
        out << "block of " << step.frames << " frames";
        if (step.count > 1) {
            out << ", " << step.count << " times";
        }
        if (step.room) {
            out << ", room for " << step.room->bytes << " bytes"
                << (step.room->takesSystemExclusive ? "" : " and no system exclusive");
        }
        for (const auto& event : step.events) {
            out << "\n      at " << event.offset << ": ";
            std::visit(*this, event.what);
            if (event.times > 1) {
                out << ", " << event.times << " times";
            }
        }
    }
    void operator()(const Bytes& bytes) const { out << hexText(bytes, HexCase::upper); }
    void operator()(const TransportReport& report) const {
        out << "the " << (report.isOfBlock ? "block's " : "") << "transport "
            << (report.moves ? "moves" : "stands");
        out << (report.records ? " and records" : "");
        out << (report.cycles ? " and cycles" : "") << (report.starts ? " and is about to start" : "");
        if (report.moves && report.speed != 1.0) {
            out << " " << report.speed << " times as fast";
        }
        if (report.position) {
            out << " at " << *report.position;
        }
    }
    void operator()(const EditStep& step) const {
        out << "edit: " << step.rules.size() << " rules";
        for (const auto& rule : step.rules) {
            out << "\n      " << inPlainWords(rule);
        }
    }
    void operator()(const SendStep& step) const { out << "send by hand: " << words(step.message); }
    void operator()(const PanicStep& /*step*/) const { out << "panic"; }
    void operator()(const RateStep& step) const { out << "sample rate " << step.rate; }
    void operator()(const SaveStep& /*step*/) const { out << "save the state"; }
    void operator()(const RestoreStep& /*step*/) const { out << "restore the saved state"; }
    void operator()(const DamagedStep& step) const {
        out << "restore a state that ends too early (" << step.length << ")";
    }
    void operator()(const MoveStep& /*step*/) const { out << "save, and restore in another instance"; }
    void operator()(const RestartStep& step) const {
        out << (step.isReset ? "reset, or miss cycles" : "deactivate and activate") << ", " << step.frames
            << " frames later";
    }
    void operator()(const UserStep& step) const {
        constexpr std::array actions{
            "open", "close", "add", "duplicate", "remove", "move", "switch off or on", "undo", "redo"};
        out << "editor: " << actions[static_cast<std::size_t>(step.action)] << " (" << step.number << ")";
    }
};

}  // namespace

std::string nameOf(Format format) {
    switch (format) {
    case Format::renderer: return "block renderer";
    case Format::unit: return "unit";
    case Format::lv2: return "LV2";
    case Format::clap: return "CLAP";
    default: return "JACK";
    }
}

std::size_t costOf(std::size_t bytes) {
    constexpr std::size_t head = 16;
    return head + (bytes + 7) / 8 * 8;
}

std::string describe(const Scenario& scenario) {
    std::ostringstream out;
    out << "  " << nameOf(scenario.format) << ", " << scenario.rate << " frames a second"
        << (scenario.stopsAsleep ? ", stops what may sleep\n" : "\n");
    for (std::size_t i = 0; i < scenario.steps.size(); ++i) {
        out << "  " << i + 1 << ". ";
        std::visit(Writer{out}, scenario.steps[i]);
        out << "\n";
    }
    return out.str();
}

}  // namespace quillo::test
