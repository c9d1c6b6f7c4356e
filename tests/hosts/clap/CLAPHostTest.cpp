// SPDX-License-Identifier: GPL-3.0-or-later
// What the plug-in asks of hosts that offer everything, something and nothing.
#include "hosts/clap/CLAPHost.hpp"

#include <gtest/gtest.h>

#include <string>

namespace quillo {
namespace {

using Asked = std::vector<std::string>;

class CLAPHostTest : public testing::Test {
protected:
    static CLAPHostTest& of(const clap_host_t* self) { return *static_cast<CLAPHostTest*>(self->host_data); }

    static const void* offer(const clap_host_t* caller, const char* name) {
        auto& self = of(caller);
        if (name == std::string(CLAP_EXT_STATE)) {
            return self.hasState ? &self.state : nullptr;
        }
        return name == std::string(CLAP_EXT_TIMER_SUPPORT) ? &self.timers : nullptr;
    }

    static void note(const clap_host_t* caller, const char* what) { of(caller).asked.emplace_back(what); }

    Asked asked;
    bool hasState = true;
    bool hasTimer = true;
    clap_host_state_t state{[](const clap_host_t* self) { note(self, "dirty"); }};
    clap_host_timer_support_t timers{[](const clap_host_t* self, std::uint32_t milliseconds, clap_id* timer) {
                                         note(self, ("start " + std::to_string(milliseconds)).c_str());
                                         *timer = 5;
                                         return of(self).hasTimer;
                                     },
                                     [](const clap_host_t* self, clap_id timer) {
                                         note(self, ("stop " + std::to_string(timer)).c_str());
                                         return true;
                                     }};
    clap_host_t host{CLAP_VERSION,
                     this,
                     "test",
                     "",
                     "",
                     "1",
                     &offer,
                     nullptr,
                     [](const clap_host_t* self) { note(self, "process"); },
                     [](const clap_host_t* self) { note(self, "callback"); }};
};

TEST_F(CLAPHostTest, IsAskedForWhatItOffers) {
    const CLAPHost asking(host);
    asking.markDirty();
    asking.requestProcess();
    asking.requestCallback();
    EXPECT_EQ(asking.startTimer(33), clap_id{5});
    asking.stopTimer(5);
    EXPECT_EQ(asked, (Asked{"dirty", "process", "callback", "start 33", "stop 5"}));
}

TEST_F(CLAPHostTest, WithoutFunctionsIsAskedForNothing) {
    const clap_host_t bare{};
    const CLAPHost asking(bare);
    asking.markDirty();
    asking.requestProcess();
    asking.requestCallback();
    EXPECT_EQ(asking.startTimer(33), std::nullopt);
}

TEST_F(CLAPHostTest, WhoseStateCannotBeDirtyIsNotToldThatItIs) {
    state.mark_dirty = nullptr;
    CLAPHost(host).markDirty();
    hasState = false;
    CLAPHost(host).markDirty();
    EXPECT_EQ(asked, Asked{});
}

TEST_F(CLAPHostTest, ThatHasNoTimerLeftGivesNone) {
    hasTimer = false;
    EXPECT_EQ(CLAPHost(host).startTimer(33), std::nullopt);
    EXPECT_EQ(asked, Asked{"start 33"});
}

TEST_F(CLAPHostTest, WhoseTimersCannotBeStartedOrStoppedIsAskedForNone) {
    const auto whole = timers;
    timers.unregister_timer = nullptr;
    EXPECT_EQ(CLAPHost(host).startTimer(33), std::nullopt);
    timers = whole;
    timers.register_timer = nullptr;
    EXPECT_EQ(CLAPHost(host).startTimer(33), std::nullopt);
    EXPECT_EQ(asked, Asked{});
}

}  // namespace
}  // namespace quillo
