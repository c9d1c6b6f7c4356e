// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/JackProgram.hpp"

#include <csignal>
#include <cstdlib>
#include <ostream>

#include "commandline/CommandFailure.hpp"
#include "hosts/jack/JackHelpText.hpp"
#include "hosts/jack/JackHost.hpp"
#include "hosts/jack/LibraryMessages.hpp"
#include "hosts/jack/PollLoop.hpp"

namespace quillo {

namespace {

constexpr const char* programName = "midi-quillo-jack";

int printHistory(const JackOptions& options, const Console& console) {
    const auto folder = stateFolder(std::getenv("XDG_STATE_HOME"), std::getenv("HOME"));
    if (!folder) {
        throw CommandFailure(exitNoInput, "neither XDG_STATE_HOME nor HOME is set");
    }
    console.out << historyText(SessionFiles(*folder, options.name));
    return exitSuccess;
}

int run(JackOptions options, const Console& console, RunJack runWithWindow) {
    if (options.help) {
        console.out << jackUsage() << '\n' << jackHelp();
        return exitSuccess;
    }
    if (options.version) {
        console.out << programName << " " QUILLO_VERSION << (runWithWindow ? "" : " (without a window)")
                    << '\n';
        return exitSuccess;
    }
    if (options.history) {
        return printHistory(options, console);
    }
    if (options.window && runWithWindow == nullptr) {
        console.err << programName << ": built without a window; runs as with --no-window\n";
        options.window = false;
    }
    LibraryMessages::silenceLibrary();
    return options.window ? runWithWindow(options, console) : runWithoutWindow(options, console);
}

}  // namespace

int runWithoutWindow(const JackOptions& options, const Console& console) {
    SignalDescriptor signals(JackHost::ownSignals);
    PollLoop loop;
    JackHost host(options, console, loop, signals);
    host.loadRules();
    host.start();
    const auto status = loop.run();
    return host.finish(status);
}

int runJackProgram(std::span<const std::string> words, const Console& console, RunJack runWithWindow) {
    // Who reads the log may go; the MIDI goes on. Programs that are started from here do not inherit this.
    std::signal(SIGPIPE, [](int) {});
    const auto command = [&] { return run(readJackOptions(words), console, runWithWindow); };
    const auto teach = [&] { console.err << jackUsage() << "Try: " << programName << " --help\n"; };
    return reportErrors(programName, console.err, command, teach);
}

}  // namespace quillo
