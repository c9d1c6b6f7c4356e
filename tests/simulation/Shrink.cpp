// SPDX-License-Identifier: GPL-3.0-or-later
#include <algorithm>
#include <ctime>

#include "simulation/Simulation.hpp"

namespace quillo::test {

namespace {

constexpr int mostTrials = 3000;
/// Of the processor, in all, however busy it is.
constexpr std::clock_t longest = 20 * CLOCKS_PER_SEC;

/// Makes a failing scenario smaller as long as it still fails.
class Shrinker {
public:
    explicit Shrinker(Scenario failing) : best_(std::move(failing)) {}

    Scenario result() {
        while (!isOver() && tryOnce()) {
        }
        return best_;
    }

private:
    [[nodiscard]] bool isOver() const { return trials_ >= mostTrials || std::clock() >= end_; }

    /// False when nothing could be left out any more.
    bool tryOnce() {
        bool smaller = leaveOut([](Scenario& scenario) -> auto& { return scenario.steps; });
        for (std::size_t i = 0; i < best_.steps.size(); ++i) {
            if (std::holds_alternative<BlockStep>(best_.steps[i])) {
                smaller = shrinkBlock(i) || smaller;
            } else if (std::holds_alternative<EditStep>(best_.steps[i])) {
                smaller =
                    leaveOut([i](Scenario& s) -> auto& { return std::get<EditStep>(s.steps[i]).rules; }) ||
                    smaller;
            }
        }
        return smaller;
    }

    bool shrinkBlock(std::size_t step) {
        const auto block = [step](Scenario& s) -> auto& { return std::get<BlockStep>(s.steps[step]); };
        bool smaller = leaveOut([&](Scenario& s) -> auto& { return block(s).events; });
        smaller = lower([&](Scenario& s) -> auto& { return block(s).count; }, 1) || smaller;
        smaller = lower([&](Scenario& s) -> auto& { return block(s).frames; }, 0) || smaller;
        for (std::size_t i = 0; i < block(best_).events.size(); ++i) {
            smaller = lower([&](Scenario& s) -> auto& { return block(s).events[i].times; }, 1) || smaller;
            smaller = lower([&](Scenario& s) -> auto& { return block(s).events[i].offset; }, 0) || smaller;
        }
        if (block(best_).room) {
            auto next = best_;
            block(next).room.reset();
            smaller = keepIfItFails(std::move(next)) || smaller;
        }
        return smaller;
    }

    /// Leaves out pieces of a list, long ones first.
    template <class List>
    bool leaveOut(List listOf) {
        bool smaller = false;
        for (auto piece = listOf(best_).size(); piece > 0; piece /= 2) {
            for (std::size_t first = 0; first < listOf(best_).size();) {
                auto next = best_;
                auto& list = listOf(next);
                const auto end = std::min(first + piece, list.size());
                list.erase(list.begin() + static_cast<std::ptrdiff_t>(first),
                           list.begin() + static_cast<std::ptrdiff_t>(end));
                if (keepIfItFails(std::move(next))) {
                    smaller = true;
                } else {
                    first += piece;
                }
            }
        }
        return smaller;
    }

    /// Lowers a number: to the least, to the half, by one.
    template <class Number>
    bool lower(Number numberOf, std::uint32_t least) {
        bool smaller = false;
        for (bool goesOn = true; goesOn && numberOf(best_) > least;) {
            const auto now = numberOf(best_);
            goesOn = false;
            for (const auto value : {least, now / 2, now - 1}) {
                auto next = best_;
                numberOf(next) = std::max(value, least);
                if (value < now && keepIfItFails(std::move(next))) {
                    smaller = goesOn = true;
                    break;
                }
            }
        }
        return smaller;
    }

    bool keepIfItFails(Scenario scenario) {
        if (isOver()) {
            return false;
        }
        ++trials_;
        if (!simulate(scenario).failure) {
            return false;
        }
        best_ = std::move(scenario);
        return true;
    }

    Scenario best_;
    int trials_ = 0;
    const std::clock_t end_ = std::clock() + longest;
};

}  // namespace

Scenario shrink(Scenario scenario) {
    return Shrinker(std::move(scenario)).result();
}

}  // namespace quillo::test
