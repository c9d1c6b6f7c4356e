// SPDX-License-Identifier: GPL-3.0-or-later
// The audio of the stereo variant.
#include <gtest/gtest.h>

#include <array>
#include <numeric>

#include "hosts/lv2/LV2TestHost.hpp"

namespace quillo {
namespace {

using namespace test;

constexpr std::size_t frames = 1000;
using Channel = std::array<float, frames + 1>;

class LV2Audio : public testing::Test {
protected:
    LV2Audio() {
        host.activate();
        std::iota(left.begin(), left.end(), 1.0F);
        std::iota(right.begin(), right.end(), -5000.0F);
        outLeft.fill(0.5F);
        outRight.fill(0.5F);
    }

    void run(void* inLeft, void* inRight, void* toLeft, void* toRight) {
        host.connect(2, inLeft);
        host.connect(3, inRight);
        host.connect(4, toLeft);
        host.connect(5, toRight);
        host.run(frames);
    }

    /// What a channel is after a block: these frames, and behind them what was there.
    static Channel with(const Channel& played, const Channel& before) {
        auto result = played;
        result.back() = before.back();
        return result;
    }

    LV2TestHost host{lv2Stereo};
    Channel left{};
    Channel right{};
    Channel outLeft{};
    Channel outRight{};
};

TEST_F(LV2Audio, GoesOutAsItCameIn) {
    const auto before = outLeft;
    run(left.data(), right.data(), outLeft.data(), outRight.data());
    EXPECT_EQ(outLeft, with(left, before));
    EXPECT_EQ(outRight, with(right, before));
}

TEST_F(LV2Audio, StaysWhereItIsInOneBuffer) {
    const auto [wasLeft, wasRight] = std::pair(left, right);
    run(left.data(), right.data(), left.data(), right.data());
    EXPECT_EQ(left, wasLeft);
    EXPECT_EQ(right, wasRight);
}

TEST_F(LV2Audio, ChangesSidesWhenTheBuffersAreCrossed) {
    const auto [wasLeft, wasRight] = std::pair(left, right);
    run(left.data(), right.data(), right.data(), left.data());
    EXPECT_EQ(right, with(wasLeft, wasRight));
    EXPECT_EQ(left, with(wasRight, wasLeft));
}

TEST_F(LV2Audio, IsSilenceWhereNothingComesIn) {
    const auto before = outLeft;
    run(nullptr, right.data(), outLeft.data(), nullptr);
    EXPECT_EQ(outLeft, with(Channel{}, before));
}

TEST_F(LV2Audio, IsSilenceInOneOutputAloneToo) {
    const auto before = outRight;
    run(nullptr, nullptr, nullptr, outRight.data());
    EXPECT_EQ(outRight, with(Channel{}, before));
}

TEST_F(LV2Audio, PassesThroughAnInactivePluginToo) {
    host.deactivate();
    const auto before = outLeft;
    run(left.data(), right.data(), outLeft.data(), outRight.data());
    EXPECT_EQ(outLeft, with(left, before));
}

TEST_F(LV2Audio, MayBeMissing) {
    run(nullptr, nullptr, nullptr, nullptr);
    host.run(64, Bytes{0x90, 60, 1});
    EXPECT_EQ(host.take().size(), 1U);
}

}  // namespace
}  // namespace quillo
