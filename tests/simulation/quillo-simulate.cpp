// SPDX-License-Identifier: GPL-3.0-or-later
// Simulated hosts: `quillo-simulate [SECONDS] [--seed N] [--jobs N]` for so long, from this seed on or any,
// or `quillo-simulate [--scenarios N] [--seed N] [--jobs N]` for so many. With a seed alone, its scenario.
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <charconv>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <optional>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "simulation/Player.hpp"
#include "simulation/ScenarioMaker.hpp"
#include "simulation/Simulation.hpp"

namespace quillo::test {
namespace {

using Clock = std::chrono::steady_clock;

/// How a worker is getting on, seen by all processes.
struct Progress {
    std::atomic<std::uint64_t> seed{0};  ///< that runs
    std::atomic<std::uint64_t> scenarios{0};
    std::atomic<std::uint64_t> leftOut{0};  ///< of formats that were not built
    std::atomic<double> simulated{0.0};     ///< seconds
    std::atomic<double> processor{0.0};     ///< seconds
};

/// A process, and what is seen of it.
struct Worker {
    pid_t process = 0;  ///< 0 once it has ended
    Progress* progress = nullptr;
    std::uint64_t seedSeen = 0;
    std::uint64_t looks = 0;  ///< that have seen this seed
};

struct Options {
    std::string program;
    std::optional<std::uint64_t> seconds;    ///< 60 without a seed and `scenarios`
    std::optional<std::uint64_t> scenarios;  ///< in place of seconds: 1 with a seed alone
    std::optional<std::uint64_t> seed;       ///< of the first scenario; any other one without it
    std::uint64_t jobs = 1;
    /// Seconds after which a scenario that goes on is ended. Some take eight seconds; in a busy
    /// emulator, two minutes.
    std::uint64_t patience = 300;
};

using Seed = unsigned long long;

/// How often the parent looks at its workers. Time in which the parent itself is stopped does not count
/// against their patience.
constexpr unsigned looksASecond = 20;

/// The end of a worker that has told what fails. A sanitizer has others.
constexpr int toldStatus = 3;

double processorSeconds() {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

/// Whether the scenario passes, or is one of a format that is not here; tells all about one that does not.
bool passes(std::uint64_t seed, const std::string& program, Progress& progress) {
    progress.seed = seed;
    const auto scenario = makeScenario(seed);
    if (!isBuilt(scenario.format)) {
        progress.leftOut = progress.leftOut + 1;
        return true;
    }
    const auto outcome = simulate(scenario);
    progress.scenarios = progress.scenarios + 1;
    progress.simulated = progress.simulated + outcome.seconds;
    progress.processor = processorSeconds();
    if (!outcome.failure) {
        return true;
    }
    std::fprintf(stderr, "\nSeed %llu fails in %s\nIt is made smaller...\n", Seed{seed},
                 outcome.failure->c_str());
    const auto smallest = shrink(scenario);
    std::fprintf(stderr, "%s  %s\nAgain: %s --seed %llu\n", describe(smallest).c_str(),
                 simulate(smallest).failure.value_or("").c_str(), program.c_str(), Seed{seed});
    return false;
}

/// A worker's scenarios, every so many-th seed, until the time is over or all are played. Its status.
int work(std::uint64_t job, std::uint64_t first, Clock::time_point end, const Options& options,
         Progress& progress) {
    for (auto number = job; options.scenarios ? number < *options.scenarios : Clock::now() < end;
         number += options.jobs) {
        if (!passes(first + number, options.program, progress)) {
            return toldStatus;
        }
    }
    return 0;
}

/// How many scenarios were played so far.
std::uint64_t report(const std::vector<Worker>& workers, const char* end) {
    double simulated = 0.0;
    double processor = 0.0;
    std::uint64_t scenarios = 0;
    std::uint64_t leftOut = 0;
    for (const auto& worker : workers) {
        simulated += worker.progress->simulated;
        processor += worker.progress->processor;
        scenarios += worker.progress->scenarios;
        leftOut += worker.progress->leftOut;
    }
    std::fprintf(stderr, "%llu scenarios, %.1f hours simulated, %.0f times real time on a core",
                 Seed{scenarios}, simulated / 3600.0, processor > 0.0 ? simulated / processor : 0.0);
    if (leftOut > 0) {
        std::fprintf(stderr, "; left out %llu of formats that were not built", Seed{leftOut});
    }
    std::fputs(end, stderr);
    return scenarios;
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

/// Ends a worker whose scenario goes on for too long, and says which one it is.
void watch(Worker& worker, std::uint64_t patience) {
    const std::uint64_t seed = worker.progress->seed;
    if (std::exchange(worker.seedSeen, seed) != seed) {
        worker.looks = 0;
    } else if (worker.process != 0 && ++worker.looks > patience * looksASecond) {
        std::fprintf(stderr, "\nSeed %llu goes on for more than %llu seconds\n", Seed{seed}, Seed{patience});
        ::kill(worker.process, SIGKILL);
        worker.looks = 0;
    }
}

/// Whether the worker that has ended so found nothing; names the seed where the worker could not.
bool hasPassed(Worker& worker, int status) {
    worker.process = 0;
    const Seed seed = worker.progress->seed;
    if (WIFSIGNALED(status)) {
        std::fprintf(stderr, "\nSeed %llu ends by signal %d (%s)\n", seed, WTERMSIG(status),
                     ::strsignal(WTERMSIG(status)));
    } else if (WEXITSTATUS(status) != 0 && WEXITSTATUS(status) != toldStatus) {
        std::fprintf(stderr, "\nSeed %llu ends with status %d\n", seed, WEXITSTATUS(status));
    }
    return status == 0;
}

/// Waits for the worker that ends next; whether it found nothing.
bool waitForOne(std::vector<Worker>& workers, std::uint64_t patience) {
    int status = 0;
    pid_t ended = 0;
    while ((ended = ::waitpid(-1, &status, WNOHANG)) == 0) {
        ::usleep(1'000'000 / looksASecond);
        for (auto& worker : workers) {
            watch(worker, patience);
        }
        if (::isatty(STDERR_FILENO) != 0) {
            report(workers, "\r");
        }
    }
    const auto which = std::ranges::find(workers, ended, &Worker::process);
    return which != workers.end() && hasPassed(*which, status);
}

int simulateOnAllJobs(const Options& options) {
    const auto first = options.seed.value_or(std::uint64_t{std::random_device()()} << 20U);
    const auto end = Clock::now() + std::chrono::seconds(options.seconds.value_or(60));
    std::vector<Worker> workers;
    bool passed = true;
    for (std::uint64_t job = 0; job < options.jobs; ++job) {
        auto& progress = sharedProgress();
        progress.seed = first + job;
        const auto process = ::fork();
        if (process == 0) {
            ::prctl(PR_SET_PDEATHSIG, SIGKILL);
            std::exit(work(job, first, end, options, progress));
        }
        if (process < 0) {
            std::perror("quillo-simulate");
            passed = false;
            break;
        }
        workers.push_back({process, &progress, first + job});
    }
    for (auto left = workers.size(); left > 0; --left) {
        passed = waitForOne(workers, options.patience) && passed;
    }
    const bool playedAny = report(workers, "\n") > 0;
    return passed && playedAny ? 0 : 1;
}

std::optional<std::uint64_t> number(const std::string& text) {
    std::uint64_t value = 0;
    const auto* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() && result.ptr == end ? std::optional(value) : std::nullopt;
}

/// Nothing when they are wrong.
std::optional<Options> parse(const std::string& program, const std::vector<std::string>& arguments) {
    Options options;
    options.program = program;
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const bool isOption = arguments[i].starts_with("--");
        const auto value = number(!isOption                  ? arguments[i]
                                  : i + 1 < arguments.size() ? arguments[i + 1]
                                                             : "");
        if (!value) {
            return std::nullopt;
        }
        if (!isOption) {
            options.seconds = value;
        } else if (arguments[i] == "--seed") {
            options.seed = value;
        } else if (arguments[i] == "--jobs") {
            options.jobs = std::max<std::uint64_t>(*value, 1);
        } else if (arguments[i] == "--scenarios") {
            options.scenarios = value;
        } else if (arguments[i] == "--patience") {
            options.patience = *value;
        } else {
            return std::nullopt;
        }
        i += isOption ? 1 : 0;
    }
    if (options.seconds && options.scenarios) {
        return std::nullopt;
    }
    if (options.seed && !options.seconds && !options.scenarios) {
        options.scenarios = 1;
    }
    return options;
}

}  // namespace
}  // namespace quillo::test

int main(int count, char** arguments) {
    using namespace quillo::test;
    const auto options = parse(arguments[0], {arguments + 1, arguments + count});
    if (!options) {
        std::fputs(
            "usage: quillo-simulate [SECONDS | --scenarios N] [--seed N] [--jobs N] [--patience SECONDS]\n",
            stderr);
        return 64;
    }
    return simulateOnAllJobs(*options);
}
