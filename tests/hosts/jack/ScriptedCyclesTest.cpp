// SPDX-License-Identifier: GPL-3.0-or-later
// The scripts that are played through every format, played through the cycles of a server.
#include <gtest/gtest.h>

#include <algorithm>

#include "hosts/formats/FormatScript.hpp"
#include "hosts/jack/FakePorts.hpp"
#include "hosts/jack/ProcessCycle.hpp"
#include "session/Session.hpp"

namespace quillo {
namespace {

using namespace test;

/// A server counts its transport's frames from 0: it knows no time before the beginning.
FormatScript withoutTimeBeforeTheBeginning(FormatScript script) {
    std::erase_if(script.transport, [](const ScriptTransport& told) { return told.position < 0.0; });
    return script;
}

/// The same blocks, cut where the transport changes: a server changes it between two cycles.
std::vector<std::uint32_t> cutAtChanges(const FormatScript& script,
                                        const std::vector<std::uint32_t>& blocks) {
    std::vector<std::uint32_t> cut;
    SampleTime start = 0;
    auto told = script.transport.begin();
    for (const auto block : blocks) {
        const auto end = start + block;
        for (; told != script.transport.end() && told->time < end; ++told) {
            if (told->time > start) {
                cut.push_back(static_cast<std::uint32_t>(told->time - start));
                start = told->time;
            }
        }
        cut.push_back(static_cast<std::uint32_t>(end - start));
        start = end;
    }
    return cut;
}

/// A server's cycles, one after the other.
class ScriptedCycles {
public:
    explicit ScriptedCycles(const FormatScript& script) : script_(script) {
        EXPECT_EQ(session_.restore(script.state), std::nullopt);
        EXPECT_EQ(session_.setSampleRate(scriptSampleRate), std::nullopt);
        cycle_.release();
        FakeOutput nothing;
        cycle_.run(1, {}, FakeInput(), nothing);
        cycle_.run(1, {}, FakeInput(), nothing);
    }

    std::vector<ScriptMessage> play(const std::vector<std::uint32_t>& blocks) {
        for (const auto frames : blocks) {
            run(frames);
        }
        EXPECT_EQ(session_.renderer().refused().refused(), 0U);
        return sent_;
    }

private:
    void run(std::uint32_t frames) {
        for (; told_ != script_.transport.end() && told_->time <= start_; ++told_) {
            transport_ = {told_->moves, static_cast<std::uint32_t>(told_->position)};
        }
        transport_.clock = static_cast<std::uint32_t>(start_);
        Timed events;
        for (; message_ != script_.messages.end() && message_->time < start_ + frames; ++message_) {
            events.emplace_back(static_cast<std::uint32_t>(message_->time - start_), message_->bytes);
        }
        FakeOutput out;
        cycle_.run(frames, transport_, FakeInput(std::move(events)), out);
        for (const auto& [offset, bytes] : out.written) {
            sent_.push_back({start_ + offset, bytes});
        }
        transport_.frame += transport_.isRolling ? frames : 0;
        start_ += frames;
    }

    const FormatScript& script_;
    Session session_;
    ProcessCycle cycle_{session_.renderer()};
    SampleTime start_ = 0;
    ServerTransport transport_;
    std::vector<ScriptTransport>::const_iterator told_ = script_.transport.begin();
    std::vector<ScriptMessage>::const_iterator message_ = script_.messages.begin();
    std::vector<ScriptMessage> sent_;
};

std::vector<std::string> namesOfScripts() {
    std::vector<std::string> names;
    for (const auto& script : formatScripts()) {
        names.push_back(script.name);
    }
    return names;
}

class ScriptedCyclesTest : public testing::TestWithParam<std::string> {};

INSTANTIATE_TEST_SUITE_P(All, ScriptedCyclesTest, testing::ValuesIn(namesOfScripts()),
                         [](const auto& name) { return name.param; });

TEST_P(ScriptedCyclesTest, WhatLeavesIsWhatTheUnitSendsWhateverTheLengthsOfTheCycles) {
    const auto script = withoutTimeBeforeTheBeginning(formatScript(GetParam()));
    expectAsTheUnit(script, [&](const auto& blocks) {
        return ScriptedCycles(script).play(cutAtChanges(script, blocks));
    });
}

}  // namespace
}  // namespace quillo
