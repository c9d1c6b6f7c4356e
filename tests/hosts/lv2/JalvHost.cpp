// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/lv2/JalvHost.hpp"

#include <fcntl.h>
#include <jack/midiport.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <stdexcept>
#include <thread>
#include <utility>

namespace quillo::test {

namespace {

/// A message that no rule of a test waits for.
const Bytes probe{0xBF, 119, 99};

constexpr int noSuchProgram = 127;

[[noreturn]] void become(const std::vector<std::string>& words,
                         const std::map<std::string, std::string>& environment) {
    ::prctl(PR_SET_PDEATHSIG, SIGTERM);
    for (const auto& [name, value] : environment) {
        ::setenv(name.c_str(), value.c_str(), 1);
    }
    std::vector<char*> arguments;
    for (const auto& word : words) {
        arguments.push_back(const_cast<char*>(word.c_str()));
    }
    arguments.push_back(nullptr);
    ::execvp(arguments[0], arguments.data());
    ::_exit(noSuchProgram);
}

}  // namespace

RunningProgram::RunningProgram(const std::vector<std::string>& words,
                               const std::map<std::string, std::string>& environment) {
    std::array<int, 2> pipe{};
    if (::pipe2(pipe.data(), O_CLOEXEC) != 0) {
        throw std::runtime_error("no pipe");
    }
    process_ = ::fork();
    if (process_ == 0) {
        ::dup2(pipe[0], STDIN_FILENO);
        const int nowhere = ::open("/dev/null", O_WRONLY);
        ::dup2(nowhere, STDOUT_FILENO);
        ::dup2(nowhere, STDERR_FILENO);
        become(words, environment);
    }
    ::close(pipe[0]);
    input_ = pipe[1];
}

RunningProgram::~RunningProgram() {
    if (process_ > 0) {
        ::kill(process_, SIGTERM);
        endInput();
    }
}

void RunningProgram::endInput() {
    ::close(std::exchange(input_, -1));
    ::waitpid(std::exchange(process_, -1), nullptr, 0);
}

bool RunningProgram::hasEnded() {
    if (process_ > 0 && ::waitpid(process_, nullptr, WNOHANG) == process_) {
        process_ = -1;
    }
    return process_ <= 0;
}

JalvHost::JalvHost(const std::string& pluginPath, const std::string& uri, const std::string& stateFolder)
    : server_("quillo-lv2-" + std::to_string(::getpid())) {
    ::jack_set_error_function([](const char*) {});
    ::jack_set_info_function([](const char*) {});
    jackd_ = std::make_unique<RunningProgram>(
        std::vector<std::string>{"jackd", "-r", "-S", "-n", server_, "-d", "dummy", "-r",
                                 std::to_string(scriptSampleRate), "-p", std::to_string(period)},
        std::map<std::string, std::string>{});
    openClient();
    jalv_ = std::make_unique<RunningProgram>(
        std::vector<std::string>{"jalv", "-n", "quillo", "-l", stateFolder, uri},
        std::map<std::string, std::string>{{"JACK_DEFAULT_SERVER", server_}, {"LV2_PATH", pluginPath}});
    connect("test:out", "quillo:in");
    connect("quillo:out", "test:in");
    waitUntilItPasses();
}

JalvHost::~JalvHost() {
    jalv_->endInput();
    client_.reset();
}

void JalvHost::openClient() {
    while (!client_) {
        if (jackd_->hasEnded()) {
            throw std::runtime_error(
                "A JACK server cannot run here. Is jackd2 installed, and /dev/shm writable?");
        }
        std::this_thread::yield();
        client_.reset(::jack_client_open("test",
                                         static_cast<jack_options_t>(JackNoStartServer | JackServerName),
                                         nullptr, server_.c_str()));
    }
    in_ = ::jack_port_register(client_.get(), "in", JACK_DEFAULT_MIDI_TYPE, JackPortIsInput, 0);
    out_ = ::jack_port_register(client_.get(), "out", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
    ::jack_set_process_callback(
        client_.get(),
        [](jack_nframes_t frames, void* self) {
            static_cast<JalvHost*>(self)->process(frames);
            return 0;
        },
        this);
    ::jack_set_xrun_callback(
        client_.get(),
        [](void* data) {
            auto& self = *static_cast<JalvHost*>(data);
            const std::lock_guard lock(self.mutex_);
            ++self.xruns_;
            return 0;
        },
        this);
    ::jack_activate(client_.get());
}

void JalvHost::connect(const std::string& from, const std::string& to) {
    while (::jack_connect(client_.get(), from.c_str(), to.c_str()) != 0) {
        if (jalv_->hasEnded()) {
            throw std::runtime_error("jalv does not run the plug-in. Is it installed?");
        }
        letOneCyclePass();
    }
}

void JalvHost::letOneCyclePass() {
    std::unique_lock lock(mutex_);
    cyclePassed_.wait(lock, [this, before = now_] { return now_ > before; });
}

void JalvHost::waitUntilItPasses() {
    std::unique_lock lock(mutex_);
    probing_ = true;
    cyclePassed_.wait(lock, [this] { return !arrived_.empty(); });
    probing_ = false;
    arrived_.clear();
    cyclePassed_.wait(lock, [this, until = now_ + SampleTime{4} * period] { return now_ >= until; });
}

std::vector<ScriptMessage> JalvHost::play(const std::vector<ScriptMessage>& messages, SampleTime length) {
    for (;;) {
        const auto before = xruns_;
        auto result = playOnce(messages, length);
        const std::lock_guard lock(mutex_);
        if (xruns_ == before) {
            return result;
        }
    }
}

std::vector<ScriptMessage> JalvHost::playOnce(const std::vector<ScriptMessage>& messages, SampleTime length) {
    std::unique_lock lock(mutex_);
    const auto start = now_ + SampleTime{2} * period;
    arrived_.clear();
    for (const auto& message : messages) {
        toSend_.push_back({start + message.time, message.bytes});
    }
    cyclePassed_.wait(lock, [&] { return now_ >= start + length; });
    std::vector<ScriptMessage> result;
    for (const auto& message : arrived_) {
        result.push_back({message.time - start, message.bytes});
    }
    return result;
}

void JalvHost::process(jack_nframes_t frames) {
    auto* in = ::jack_port_get_buffer(in_, frames);
    auto* out = ::jack_port_get_buffer(out_, frames);
    ::jack_midi_clear_buffer(out);
    const std::lock_guard lock(mutex_);
    for (std::uint32_t index = 0; index < ::jack_midi_get_event_count(in); ++index) {
        jack_midi_event_t event;
        ::jack_midi_event_get(&event, in, index);
        arrived_.push_back({now_ + event.time, {event.buffer, event.buffer + event.size}});
    }
    if (probing_) {
        ::jack_midi_event_write(out, 0, probe.data(), probe.size());
    }
    for (; !toSend_.empty() && toSend_.front().time < now_ + frames; toSend_.pop_front()) {
        const auto& message = toSend_.front();
        ::jack_midi_event_write(out, static_cast<jack_nframes_t>(message.time - now_), message.bytes.data(),
                                message.bytes.size());
    }
    now_ += frames;
    cyclePassed_.notify_all();
}

}  // namespace quillo::test
