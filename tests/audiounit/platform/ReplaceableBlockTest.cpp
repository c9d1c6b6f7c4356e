// SPDX-License-Identifier: GPL-3.0-or-later
#include "audiounit/platform/ReplaceableBlock.hpp"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>

#include "platform/RealTimeFunction.hpp"

namespace quillo {
namespace {

using Block = RealTimeFunction<int()>;
using Blocks = ReplaceableBlock<Block>;

/// A block that answers with a number, and how one sees whether it is still there.
struct Made {
    explicit Made(int number) : owned(std::make_shared<const int>(number)), watched(owned) {}

    Block take() {
        return [held = std::move(owned)] { return *held; };
    }

    std::shared_ptr<const int> owned;
    std::weak_ptr<const int> watched;
};

int answer(const Blocks::Use& use) {
    return (*use.get())();
}

TEST(ReplaceableBlock, IsAbsentUntilTheHostSetsIt) {
    Blocks blocks;
    EXPECT_FALSE(blocks);
    EXPECT_EQ(blocks.use().get(), nullptr);
}

TEST(ReplaceableBlock, ACycleUsesTheBlockThatWasSetLast) {
    Blocks blocks;
    blocks = Made(1).take();
    blocks = Made(2).take();
    EXPECT_TRUE(blocks);
    EXPECT_EQ(answer(blocks.use()), 2);
    blocks = Block();
    EXPECT_FALSE(blocks);
    EXPECT_EQ(blocks.use().get(), nullptr);
}

TEST(ReplaceableBlock, ABlockThatNoCycleUsesIsFreedWhenItIsReplaced) {
    Blocks blocks;
    Made first(1);
    blocks = first.take();
    static_cast<void>(blocks.use());
    EXPECT_FALSE(first.watched.expired());
    blocks = Block();
    EXPECT_TRUE(first.watched.expired());
}

TEST(ReplaceableBlock, ABlockThatACycleUsesStaysAndIsFreedWithTheNextReplacement) {
    Blocks blocks;
    Made first(1);
    blocks = first.take();
    {
        const auto cycle = blocks.use();
        blocks = Made(2).take();
        blocks = Made(3).take();
        EXPECT_EQ(answer(cycle), 1);
    }
    EXPECT_FALSE(first.watched.expired());
    EXPECT_EQ(answer(blocks.use()), 3);
    blocks = Made(4).take();
    EXPECT_TRUE(first.watched.expired());
}

/// Knows where it was freed.
class Mortal {
public:
    Mortal(std::atomic<int>& living, std::thread::id& renderThread)
        : living_(living), renderThread_(renderThread) {
        ++living_;
    }
    ~Mortal() {
        --living_;
        EXPECT_NE(std::this_thread::get_id(), renderThread_);
    }
    Mortal(const Mortal&) = delete;
    Mortal& operator=(const Mortal&) = delete;

private:
    std::atomic<int>& living_;
    std::thread::id& renderThread_;
};

TEST(ReplaceableBlock, IsReplacedWhileItIsUsedAndNeverFreedByTheRenderThread) {
    constexpr int replacements = 20000;
    Blocks blocks;
    std::atomic<int> living = 0;
    std::atomic<bool> started = false;
    std::atomic<bool> done = false;
    std::thread::id renderThread;
    std::thread render([&] {
        renderThread = std::this_thread::get_id();
        started = true;
        started.notify_one();
        for (int last = 0; !done;) {
            const auto cycle = blocks.use();
            const int now = cycle.get() != nullptr ? answer(cycle) : last;
            EXPECT_GE(now, last);
            last = now;
        }
    });
    started.wait(false);
    for (int number = 1; number <= replacements; ++number) {
        blocks = [number, mortal = std::make_shared<Mortal>(living, renderThread)] { return number; };
        EXPECT_LE(living, 3);
    }
    done = true;
    render.join();
    blocks = Block();
    EXPECT_EQ(living, 0);
}

}  // namespace
}  // namespace quillo
