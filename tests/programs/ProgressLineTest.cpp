// SPDX-License-Identifier: GPL-3.0-or-later
#include "programs/ProgressLine.hpp"

#include <gmock/gmock.h>

#include <optional>
#include <sstream>

namespace quillo {
namespace {

using namespace std::chrono_literals;

/// A progress line whose clock the test turns.
class ProgressLineTest : public testing::Test {
protected:
    void begin(bool isTerminal) {
        line_.emplace(out_, isTerminal, "rendering", [this] { return now_; });
    }

    void updateAt(std::chrono::milliseconds time, double done) {
        now_ = start_ + time;
        line_->update(done);
    }

    void end() { line_.reset(); }

    std::string takeWritten() {
        auto written = out_.str();
        out_.str({});
        return written;
    }

private:
    ProgressLine::Clock::time_point start_;
    ProgressLine::Clock::time_point now_;
    std::ostringstream out_;
    std::optional<ProgressLine> line_;
};

TEST_F(ProgressLineTest, StaysSilentForASecondAndLeavesNothingBehind) {
    begin(true);
    updateAt(0ms, 0);
    updateAt(999ms, 0.9);
    end();
    EXPECT_EQ(takeWritten(), "");
}

TEST_F(ProgressLineTest, AppearsAfterASecondAndIsErasedAtTheEnd) {
    begin(true);
    updateAt(1000ms, 0.256);
    EXPECT_EQ(takeWritten(), "\r\x1b[Krendering 25 %");
    end();
    EXPECT_EQ(takeWritten(), "\r\x1b[K");
}

TEST_F(ProgressLineTest, ChangesAtMostFiveTimesASecond) {
    begin(true);
    updateAt(1000ms, 0.1);
    takeWritten();
    updateAt(1199ms, 0.2);
    EXPECT_EQ(takeWritten(), "");
    updateAt(1200ms, 0.3);
    EXPECT_EQ(takeWritten(), "\r\x1b[Krendering 30 %");
}

TEST_F(ProgressLineTest, WritesNothingWithoutATerminal) {
    begin(false);
    updateAt(5000ms, 0.5);
    end();
    EXPECT_EQ(takeWritten(), "");
}

}  // namespace
}  // namespace quillo
