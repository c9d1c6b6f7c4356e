// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/ProgressLine.hpp"

#include <ostream>
#include <utility>

namespace quillo {

namespace {

using namespace std::chrono_literals;

constexpr auto patience = 1s;
constexpr auto interval = 200ms;

/// Back to the beginning of the terminal's line, which is then erased.
constexpr const char* emptyLine = "\r\x1b[K";

}  // namespace

ProgressLine::ProgressLine(std::ostream& out, bool isTerminal, std::string what, Now now)
    : out_(out),
      isTerminal_(isTerminal),
      what_(std::move(what)),
      now_(std::move(now)),
      nextUpdate_(now_() + patience) {}

ProgressLine::~ProgressLine() {
    if (isShown_) {
        out_ << emptyLine << std::flush;
    }
}

void ProgressLine::update(double done) {
    if (!isTerminal_ || now_() < nextUpdate_) {
        return;
    }
    out_ << emptyLine << what_ << ' ' << static_cast<int>(done * 100) << " %" << std::flush;
    isShown_ = true;
    nextUpdate_ = now_() + interval;
}

}  // namespace quillo
