// SPDX-License-Identifier: GPL-3.0-or-later
// Simulated hosts: `quillo-simulate SECONDS [--jobs N] [--seed N]` for so long, from any seed or from this
// on, or `quillo-simulate --seed N [--scenarios N]` for so many.
#include <sys/mman.h>
#include <sys/wait.h>
#include <time.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <charconv>
#include <chrono>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "simulation/ScenarioMaker.hpp"
#include "simulation/Simulation.hpp"

namespace quillo::test {
namespace {

using Clock = std::chrono::steady_clock;

/// How a worker is getting on, seen by all processes.
struct Progress {
    std::atomic<std::uint64_t> seed{0};  ///< that runs
    std::atomic<std::uint64_t> scenarios{0};
    std::atomic<double> simulated{0.0};  ///< seconds
    std::atomic<double> processor{0.0};  ///< seconds
};

struct Options {
    std::optional<std::uint64_t> seconds;  ///< 60 without a seed; with one, `scenarios` instead
    std::uint64_t jobs = 1;
    std::optional<std::uint64_t> seed;  ///< of the first scenario; any other one without it
    std::uint64_t scenarios = 1;        ///< from the seed on
};

double processorSeconds() {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Whether the scenario passes; tells all about one that does not.
bool passes(std::uint64_t seed, Progress& progress) {
    progress.seed = seed;
    const auto scenario = makeScenario(seed);
    const auto outcome = simulate(scenario);
    progress.scenarios = progress.scenarios + 1;
    progress.simulated = progress.simulated + outcome.seconds;
    progress.processor = processorSeconds();
    if (!outcome.failure) {
        return true;
    }
    std::fprintf(stderr, "\nSeed %llu fails in %s\nIt is made smaller...\n",
                 static_cast<unsigned long long>(seed), outcome.failure->c_str());
    const auto smallest = shrink(scenario);
    std::fprintf(stderr, "%s  %s\nAgain: ./dev simulate --seed %llu\n", describe(smallest).c_str(),
                 simulate(smallest).failure.value_or("").c_str(), static_cast<unsigned long long>(seed));
    return false;
}

/// A worker's scenarios, until the time is over: every so many-th seed.
int work(std::uint64_t seed, std::uint64_t step, Clock::time_point end, Progress& progress) {
    for (; Clock::now() < end; seed += step) {
        if (!passes(seed, progress)) {
            return 1;
        }
    }
    return 0;
}

void report(const std::vector<Progress*>& workers, const char* end) {
    double simulated = 0.0;
    double processor = 0.0;
    std::uint64_t scenarios = 0;
    for (const auto* worker : workers) {
        simulated += worker->simulated;
        processor += worker->processor;
        scenarios += worker->scenarios;
    }
    std::fprintf(stderr, "%llu scenarios, %.1f hours simulated, %.0f times real time on a core%s",
                 static_cast<unsigned long long>(scenarios), simulated / 3600.0,
                 processor > 0.0 ? simulated / processor : 0.0, end);
}

/// Memory that the workers and their parent share.
Progress& sharedProgress() {
    void* memory =
        ::mmap(nullptr, sizeof(Progress), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) {
        std::perror("quillo-simulate");
        std::exit(71);
    }
    return *new (memory) Progress;
}

/// Waits for the worker that ends next; false when it failed or died.
bool waitForOne(const std::vector<pid_t>& processes, const std::vector<Progress*>& workers) {
    int status = 0;
    pid_t ended = 0;
    while ((ended = ::waitpid(-1, &status, WNOHANG)) == 0) {
        ::usleep(200000);
        if (::isatty(STDERR_FILENO) != 0) {
            report(workers, "\r");
        }
    }
    const auto which = std::ranges::find(processes, ended) - processes.begin();
    if (WIFSIGNALED(status)) {
        std::fprintf(stderr, "\nSeed %llu ends by signal %d (%s)\n",
                     static_cast<unsigned long long>(workers[static_cast<std::size_t>(which)]->seed),
                     WTERMSIG(status), ::strsignal(WTERMSIG(status)));
    }
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

int simulateOnAllJobs(const Options& options) {
    const auto first = options.seed.value_or(std::uint64_t{std::random_device()()} << 20U);
    const auto end = Clock::now() + std::chrono::seconds(options.seconds.value_or(60));
    std::vector<Progress*> workers;
    std::vector<pid_t> processes;
    for (std::uint64_t job = 0; job < options.jobs; ++job) {
        workers.push_back(&sharedProgress());
        const auto process = ::fork();
        if (process == 0) {
            ::_exit(work(first + job, options.jobs, end, *workers.back()));
        }
        processes.push_back(process);
    }
    bool passed = true;
    for (std::uint64_t job = 0; job < options.jobs; ++job) {
        passed = waitForOne(processes, workers) && passed;
    }
    report(workers, "\n");
    return passed ? 0 : 1;
}

int simulateFrom(std::uint64_t seed, std::uint64_t scenarios) {
    Progress progress;
    for (auto left = scenarios; left > 0; --left, ++seed) {
        if (!passes(seed, progress)) {
            return 1;
        }
    }
    report({&progress}, "\n");
    return 0;
}

std::optional<std::uint64_t> number(const std::string& text) {
    std::uint64_t value = 0;
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() && result.ptr == end ? std::optional(value) : std::nullopt;
}

/// Nothing when they are wrong.
std::optional<Options> parse(const std::vector<std::string>& arguments) {
    Options options;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const bool isOption = arguments[i].starts_with("--");
        const auto value = number(!isOption                  ? arguments[i]
                                  : i + 1 < arguments.size() ? arguments[i + 1]
                                                             : "");
        if (!value) {
            return std::nullopt;
        }
        if (!isOption) {
            options.seconds = *value;
        } else if (arguments[i] == "--seed") {
            options.seed = value;
        } else if (arguments[i] == "--jobs") {
            options.jobs = std::max<std::uint64_t>(*value, 1);
        } else if (arguments[i] == "--scenarios") {
            options.scenarios = *value;
        } else {
            return std::nullopt;
        }
        i += isOption ? 1 : 0;
    }
    return options;
}

}  // namespace
}  // namespace quillo::test

int main(int count, char** arguments) {
    using namespace quillo::test;
    const auto options = parse({arguments + 1, arguments + count});
    if (!options) {
        std::fputs("usage: quillo-simulate [SECONDS] [--jobs N] [--seed N] [--scenarios N]\n", stderr);
        return 64;
    }
    return options->seed && !options->seconds ? simulateFrom(*options->seed, options->scenarios)
                                              : simulateOnAllJobs(*options);
}
