// SPDX-License-Identifier: GPL-3.0-or-later
#include "hosts/jack/ServerNews.hpp"

#include <gtest/gtest.h>

#include <poll.h>

#include "support/Threads.hpp"

namespace quillo {
namespace {

bool canBeRead(const ServerNews& news) {
    pollfd watched{news.descriptor(), POLLIN, 0};
    return ::poll(&watched, 1, 0) == 1;
}

TEST(ServerNews, EachPieceOfNewsIsTakenOnce) {
    ServerNews news;
    EXPECT_FALSE(canBeRead(news));
    news.serverIsGone();
    news.portHasAppeared(7);
    news.portHasAppeared(5);
    EXPECT_TRUE(canBeRead(news));
    const auto taken = news.take();
    EXPECT_TRUE(taken.isGone);
    EXPECT_FALSE(taken.formatChanged);
    EXPECT_EQ(taken.newPorts, (std::vector<std::uint32_t>{7, 5}));
    EXPECT_FALSE(canBeRead(news));
    const auto again = news.take();
    EXPECT_FALSE(again.isGone);
    EXPECT_TRUE(again.newPorts.empty());
}

TEST(ServerNews, TellsTheKindsApart) {
    ServerNews news;
    news.formatHasChanged();
    EXPECT_TRUE(canBeRead(news));
    const auto taken = news.take();
    EXPECT_TRUE(taken.formatChanged);
    EXPECT_FALSE(taken.isGone);
    EXPECT_TRUE(taken.newPorts.empty());
}

TEST(ServerNews, APortThatAppearsIsAChangeOfThePortsAndNotTheOnlyOne) {
    ServerNews news;
    news.portHasAppeared(7);
    EXPECT_TRUE(news.take().portsChanged);
    news.portsHaveChanged();
    EXPECT_TRUE(canBeRead(news));
    const auto taken = news.take();
    EXPECT_TRUE(taken.portsChanged);
    EXPECT_TRUE(taken.newPorts.empty());
    EXPECT_FALSE(news.take().portsChanged);
}

TEST(ServerNews, NothingIsLostBetweenThreads) {
    constexpr std::size_t tellers = 2;
    constexpr std::uint32_t count = 5000;
    ServerNews news;
    const auto tell = [&](std::size_t) {
        for (std::uint32_t number = 0; number < count; ++number) {
            news.portHasAppeared(number);
            news.formatHasChanged();
        }
    };
    std::size_t heard = 0;
    {
        const Threads threads(tellers, tell);
        while (heard < tellers * count) {
            pollfd watched{news.descriptor(), POLLIN, 0};
            ::poll(&watched, 1, -1);
            heard += news.take().newPorts.size();
        }
    }
    EXPECT_EQ(heard, tellers * count);
}

}  // namespace
}  // namespace quillo
