// SPDX-License-Identifier: GPL-3.0-or-later
#include "session/Session.hpp"

#include <gtest/gtest.h>

#include <atomic>

#include "persistence/PluginData.hpp"
#include "support/TestRules.hpp"
#include "support/Threads.hpp"

namespace quillo {
namespace {

using namespace test;

std::vector<Rule> namedRules(const std::string& name) {
    return {rule(onNoteOn(), send(noteOn(1, 2, 3)), name)};
}

/// The whole of one document: a rule, and one that is switched off, of the same name.
PluginData namedDocument(const std::string& name) {
    return {namedRules(name), {{1, namedRules(name)[0]}}};
}

TEST(SessionThreads, AHostSavesAndRestoresWhileTheUserEditsAndTheRateChanges) {
    Session session;
    session.viewDidLoad();
    std::atomic<bool> stops{false};
    const auto host = [&](std::size_t) {
        for (int times = 0; times < 100; ++times) {
            EXPECT_EQ(session.restore(namedDocument("restored").write()), std::nullopt);
            const auto saved = PluginData::read(session.save());
            EXPECT_TRUE(saved == namedDocument("restored") || saved == namedDocument("edited"));
        }
        stops = true;
    };
    {
        const Threads threads(1, host);
        for (bool isFast = false; !stops; isFast = !isFast) {
            for (int drains = 0; drains < 10; ++drains) {
                session.drain();
            }
            EXPECT_EQ(session.setSampleRate(isFast ? 48000.0 : 44100.0), std::nullopt);
            auto [rules, shelf] = namedDocument("edited");
            session.onRulesChanged(std::move(rules), std::move(shelf));
        }
    }
    session.drain();
    EXPECT_EQ(session.model()->rules().size(), 2U);
}

}  // namespace
}  // namespace quillo
