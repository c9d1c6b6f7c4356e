// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hosts/jack/JackPlayer.hpp"
#include "hosts/jack/JackServer.hpp"
#include "hosts/jack/SessionFiles.hpp"
#include "persistence/PluginData.hpp"
#include "platform/AtomicFile.hpp"
#include "platform/Data.hpp"
#include "support/ChildProcess.hpp"
#include "support/TemporaryFolder.hpp"
#include "support/TestRules.hpp"

namespace quillo::test {

/// Runs the program as its user would, on servers of the test's own and with a home of the test's own.
class JackProgramFixture {
protected:
    using Words = std::vector<std::string>;

    /// The program, without a window.
    std::unique_ptr<ChildProcess> run(Words words) {
        words.insert(words.begin(), {QUILLO_JACK_PROGRAM, "--no-window"});
        return runAsItIs(words);
    }
    std::unique_ptr<ChildProcess> runAsItIs(const Words& words, std::string display = "") {
        return std::make_unique<ChildProcess>(words, environmentOf(std::move(display)));
    }
    std::map<std::string, std::string> environmentOf(std::string display) {
        return {{"HOME", folder.path().string()},
                {"XDG_STATE_HOME", (folder / "state").string()},
                {"JACK_DEFAULT_SERVER", ""},
                {"JACK_NO_START_SERVER", ""},
                {"NSM_URL", ""},
                {"DISPLAY", std::move(display)}};
    }

    /// The program with these rules on this server, when it is there.
    std::unique_ptr<ChildProcess> runOn(const std::string& server, const std::vector<Rule>& rules,
                                        Words words = {}) {
        return runWithDocument(server, PluginData{rules}.write(), std::move(words));
    }
    std::unique_ptr<ChildProcess> runWithDocument(const std::string& server, const Data& document,
                                                  Words words = {}) {
        writePreset(document);
        words.insert(words.end(), {"--server", server, "--preset", preset().string()});
        auto program = run(std::move(words));
        program->err().waitFor("on the JACK server \"" + server + "\"");
        return program;
    }

    [[nodiscard]] std::filesystem::path preset() const { return folder / "preset.json"; }
    void writePreset(const Data& document) const { writeWholeFile(preset(), document, Existing::replace); }

    /// Ends it as its user would. Its exit status.
    static int end(ChildProcess& program, int signal = SIGTERM) {
        program.signal(signal);
        return program.wait();
    }

    [[nodiscard]] SessionFiles session(const std::string& name = "midi-quillo") const {
        return {folder / "state" / "midi-quillo", name};
    }

    TemporaryFolder folder;
};

/// A program whose file the test's own rules are written to: a rule that sends controller 20 for note 60.
inline std::vector<Rule> controllerForNote(std::uint8_t controller, std::int64_t delayMs = 0) {
    return {rule(onNoteOn(exactly(60), any, PassThroughV2::EatMatching),
                 send(controlChange(0, controller, 1), delayMs))};
}

}  // namespace quillo::test
